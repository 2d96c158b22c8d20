#pragma once

#include "platform/layout/solver/Symbol.hpp"
#include "platform/layout/solver/Tableau.hpp"

#include <cstdint>
#include <vector>

namespace ns::solver {

// Computes the values of a list of symbols from the tableau. A variable row may refer to other
// basic symbols, so values are found by walking rows in dependency order. That order, and the
// coefficients along it, change only when the tableau's structure does; an edit moves constants
// only. So the walk is compiled into a flat list of steps once and replayed on later updates,
// which keeps an update to one pass over contiguous memory.
class ValueProgram {
public:
    // Whether the program was compiled for this tableau structure and this list of targets.
    bool isCompiledFor(const Tableau& tableau, std::uint64_t targetsVersion) const {
        return m_compiled && m_structureVersion == tableau.structureVersion() &&
               m_targetsVersion == targetsVersion;
    }

    void compile(Tableau& tableau, const std::vector<Symbol>& targets, std::uint64_t targetsVersion);

    // Recomputes every step from the tableau's current constants.
    void run(const Tableau& tableau);

    // The value of targets[index] as of the last run (0 for a non-basic symbol).
    double value(std::size_t index) const {
        std::uint32_t step = m_targetSteps[index];
        return step == NoStep ? 0.0 : m_values[step];
    }

    void clear();

private:
    static constexpr std::uint32_t NoStep = 0xffffffffu;

    struct Step {
        RowId row;
        std::uint32_t firstTerm;
        std::uint32_t termCount;
    };
    struct Term {
        std::uint32_t step; // the step that computes the referenced symbol
        double coefficient;
    };

    std::uint32_t stepFor(Tableau& tableau, Symbol symbol, std::uint32_t mark);

    std::vector<Step> m_steps;
    std::vector<Term> m_terms;
    std::vector<double> m_values;
    std::vector<std::uint32_t> m_targetSteps;
    std::vector<std::uint32_t> m_stepOfSymbol;
    std::vector<std::pair<Symbol, bool>> m_walk;
    bool m_compiled = false;
    std::uint64_t m_structureVersion = 0;
    std::uint64_t m_targetsVersion = 0;
};

} // namespace ns::solver
