#include "platform/layout/solver/ValueProgram.hpp"

namespace ns::solver {

void ValueProgram::compile(Tableau& tableau, const std::vector<Symbol>& targets,
                           std::uint64_t targetsVersion) {
    m_steps.clear();
    m_terms.clear();
    m_targetSteps.clear();
    if (m_stepOfSymbol.size() < tableau.symbolCapacity()) {
        m_stepOfSymbol.resize(tableau.symbolCapacity());
    }
    std::uint32_t mark = tableau.newMark(); // marked: the symbol has a step
    for (Symbol target : targets) {
        m_targetSteps.push_back(tableau.isBasic(target) ? stepFor(tableau, target, mark) : NoStep);
    }
    m_values.assign(m_steps.size(), 0.0);
    m_compiled = true;
    m_structureVersion = tableau.structureVersion();
    m_targetsVersion = targetsVersion;
}

// Depth first, so that every basic symbol a row refers to gets its step before the row does.
std::uint32_t ValueProgram::stepFor(Tableau& tableau, Symbol symbol, std::uint32_t mark) {
    m_walk.clear();
    m_walk.emplace_back(symbol, false);
    while (!m_walk.empty()) {
        auto [current, expanded] = m_walk.back();
        if (tableau.isMarked(current, mark)) {
            m_walk.pop_back();
            continue;
        }
        const Row& row = tableau.row(tableau.rowOf(current));
        if (!expanded) {
            m_walk.back().second = true;
            row.cells().forEach([&](Symbol child, const Cell&) {
                if (tableau.isBasic(child) && !tableau.isMarked(child, mark)) {
                    m_walk.emplace_back(child, false);
                }
            });
            continue;
        }
        m_walk.pop_back();
        Step step{tableau.rowOf(current), static_cast<std::uint32_t>(m_terms.size()), 0};
        row.cells().forEach([&](Symbol child, const Cell& cell) {
            if (tableau.isBasic(child)) {
                m_terms.push_back({m_stepOfSymbol[child], cell.coefficient});
                ++step.termCount;
            }
        });
        tableau.mark(current, mark);
        m_stepOfSymbol[current] = static_cast<std::uint32_t>(m_steps.size());
        m_steps.push_back(step);
    }
    return m_stepOfSymbol[symbol];
}

void ValueProgram::run(const Tableau& tableau) {
    const Term* terms = m_terms.data();
    for (std::size_t i = 0; i < m_steps.size(); ++i) {
        const Step& step = m_steps[i];
        double value = tableau.row(step.row).constant();
        for (const Term* term = terms + step.firstTerm; term != terms + step.firstTerm + step.termCount;
             ++term) {
            value += term->coefficient * m_values[term->step];
        }
        m_values[i] = value;
    }
}

void ValueProgram::clear() {
    m_steps.clear();
    m_terms.clear();
    m_values.clear();
    m_targetSteps.clear();
    m_compiled = false;
}

} // namespace ns::solver
