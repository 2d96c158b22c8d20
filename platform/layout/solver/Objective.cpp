#include "platform/layout/solver/Objective.hpp"

#include <algorithm>

namespace ns::solver {

SymbolicWeight* Objective::cellForChange(Symbol symbol) {
    if (m_journaling) {
        if (m_journalStamp.size() <= symbol) {
            m_journalStamp.resize(m_tableau->symbolCapacity(), 0);
        }
        if (m_journalStamp[symbol] != m_journalCounter) {
            m_journalStamp[symbol] = m_journalCounter;
            const SymbolicWeight* current = weightFor(symbol);
            m_saved.emplace_back(symbol, current ? std::optional<SymbolicWeight>(*current) : std::nullopt);
        }
    }
    if (m_cells.size() <= symbol) {
        m_cells.resize(std::max<std::size_t>(m_tableau->symbolCapacity(), symbol + 1));
    }
    return &m_cells[symbol];
}

void Objective::add(Symbol symbol, float priority, double value) {
    SymbolicWeight* weight = cellForChange(symbol);
    weight->add(priority, value);
    changed(symbol, *weight);
}

void Objective::addRow(const Row& row, float priority, double value) {
    row.cells().forEach(
        [&](Symbol symbol, const Cell& cell) { add(symbol, priority, value * cell.coefficient); });
}

void Objective::substitute(Symbol symbol, const Row& expression) {
    const SymbolicWeight* found = weightFor(symbol);
    if (!found) {
        return;
    }
    SymbolicWeight weight = *found;
    erase(symbol);
    expression.cells().forEach([&](Symbol other, const Cell& cell) {
        SymbolicWeight* target = cellForChange(other);
        target->addScaled(weight, cell.coefficient);
        changed(other, *target);
    });
}

void Objective::erase(Symbol symbol) {
    if (weightFor(symbol)) {
        *cellForChange(symbol) = SymbolicWeight();
    }
}

void Objective::changed(Symbol symbol, const SymbolicWeight& weight) {
    if (weight.isZero()) {
        return;
    }
    if (!wantsToEnter(symbol, weight)) {
        return;
    }
    if (m_queued.size() <= symbol) {
        m_queued.resize(m_tableau->symbolCapacity(), 0);
    }
    if (!m_queued[symbol]) {
        m_queued[symbol] = 1;
        m_queue.push(symbol);
    }
}

bool Objective::wantsToEnter(Symbol symbol, const SymbolicWeight& weight) const {
    // A dummy is pinned at zero, so it never enters.
    return weight.sign() < 0 && m_tableau->kind(symbol) != SymbolKind::Dummy && !m_tableau->isBasic(symbol);
}

Symbol Objective::nextEntering() {
    while (!m_queue.empty()) {
        Symbol symbol = m_queue.top();
        m_queue.pop();
        m_queued[symbol] = 0;
        const SymbolicWeight* weight = weightFor(symbol);
        if (weight && wantsToEnter(symbol, *weight)) {
            return symbol;
        }
    }
    return NoSymbol;
}

void Objective::beginJournal() {
    m_journaling = true;
    ++m_journalCounter;
}

void Objective::commitJournal() {
    m_journaling = false;
    m_saved.clear();
}

void Objective::rollbackJournal() {
    m_journaling = false;
    for (auto& [symbol, weight] : m_saved) {
        m_cells[symbol] = weight ? std::move(*weight) : SymbolicWeight();
    }
    m_saved.clear();
    // The state being restored was optimal, so nothing from the failed attempt stays queued.
    clearQueue();
}

void Objective::clearQueue() {
    while (!m_queue.empty()) {
        m_queued[m_queue.top()] = 0;
        m_queue.pop();
    }
}

void Objective::clear() {
    m_cells.clear();
    m_queue = {};
    m_queued.clear();
    m_journaling = false;
    m_journalStamp.clear();
    m_saved.clear();
}

} // namespace ns::solver
