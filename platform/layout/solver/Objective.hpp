#pragma once

#include "platform/layout/solver/Row.hpp"
#include "platform/layout/solver/SymbolicWeight.hpp"
#include "platform/layout/solver/Tableau.hpp"

#include <cstdint>
#include <optional>
#include <queue>
#include <utility>
#include <vector>

namespace ns::solver {

// The function the solver minimises: for every preference, its priority level times its errors,
// written over non-basic symbols only. Its cells are symbolic weights, so levels never mix.
//
// Every cell that turns negative is queued, which lets the simplex find entering symbols without
// scanning the whole objective after each change; symbols come out lowest first (Bland's rule,
// which keeps degenerate pivots from cycling).
class Objective {
public:
    explicit Objective(const Tableau& tableau) : m_tableau(&tableau) {}
    // Points the objective at the tableau of its owner again, after the two moved together.
    void attach(const Tableau& tableau) { m_tableau = &tableau; }

    const SymbolicWeight* weightFor(Symbol symbol) const {
        return symbol < m_cells.size() && !m_cells[symbol].isZero() ? &m_cells[symbol] : nullptr;
    }

    // cell(symbol) += value at `priority`.
    void add(Symbol symbol, float priority, double value);
    // += value at `priority` times every cell of `row` (its constant does not matter here).
    void addRow(const Row& row, float priority, double value);
    // Replaces `symbol` by `expression`, if the symbol occurs here.
    void substitute(Symbol symbol, const Row& expression);
    void erase(Symbol symbol);

    // The lowest symbol whose cell is negative and that may enter the basis, or NoSymbol. It
    // leaves the queue; a caller that cannot pivot it in simply drops it.
    Symbol nextEntering();
    // Forgets every queued symbol (the simplex gave up on them).
    void clearQueue();

    // Calls f(symbol, weight) for every non-zero cell.
    template <typename F>
    void forEach(F&& f) const {
        for (Symbol symbol = 0; symbol < m_cells.size(); ++symbol) {
            if (!m_cells[symbol].isZero()) {
                f(symbol, m_cells[symbol]);
            }
        }
    }

    void beginJournal();
    void commitJournal();
    void rollbackJournal();

    void clear();

private:
    SymbolicWeight* cellForChange(Symbol symbol);
    void changed(Symbol symbol, const SymbolicWeight& weight);
    bool wantsToEnter(Symbol symbol, const SymbolicWeight& weight) const;

    const Tableau* m_tableau;
    // Indexed by symbol, zero where a symbol has no cell. Symbols are numbered as they are made,
    // so the cells a change touches sit together, which a hash table would scatter.
    std::vector<SymbolicWeight> m_cells;
    std::priority_queue<Symbol, std::vector<Symbol>, std::greater<Symbol>> m_queue;
    std::vector<std::uint8_t> m_queued;

    bool m_journaling = false;
    std::uint32_t m_journalCounter = 0;
    std::vector<std::uint32_t> m_journalStamp;
    std::vector<std::pair<Symbol, std::optional<SymbolicWeight>>> m_saved;
};

} // namespace ns::solver
