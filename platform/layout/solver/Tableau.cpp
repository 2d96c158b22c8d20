#include "platform/layout/solver/Tableau.hpp"

#include <cassert>

namespace ns::solver {

Symbol Tableau::createSymbol(SymbolKind kind) {
    Symbol symbol;
    if (!m_freeSymbols.empty()) {
        symbol = m_freeSymbols.back();
        m_freeSymbols.pop_back();
    } else {
        symbol = static_cast<Symbol>(m_symbols.size());
        m_symbols.emplace_back();
    }
    m_symbols[symbol].kind = kind;
    return symbol;
}

void Tableau::releaseSymbol(Symbol symbol) {
    assert(isUnused(symbol));
    m_freeSymbols.push_back(symbol);
}

RowId Tableau::insertRow(Symbol subject, Row row) {
    ++m_structureVersion;
    assert(!isBasic(subject));
    RowId id;
    if (!m_freeRows.empty()) {
        id = m_freeRows.back();
        m_freeRows.pop_back();
    } else {
        id = static_cast<RowId>(m_rows.size());
        m_rows.emplace_back();
    }
    if (m_journaling && m_rows[id].journalStamp != m_journalCounter) {
        m_rows[id].journalStamp = m_journalCounter;
        m_saved.push_back({id, NoSymbol, Row()});
    }
    RowSlot& slot = m_rows[id];
    slot.subject = subject;
    slot.row = std::move(row);
    m_symbols[subject].row = id;
    enterColumns(id);
    return id;
}

Row Tableau::extractRow(RowId id) {
    ++m_structureVersion;
    save(id);
    leaveColumns(id);
    RowSlot& slot = m_rows[id];
    m_symbols[slot.subject].row = NoRow;
    slot.subject = NoSymbol;
    Row row = std::move(slot.row);
    slot.row = Row();
    (m_journaling ? m_pendingFreeRows : m_freeRows).push_back(id);
    return row;
}

void Tableau::addToConstant(RowId id, double delta) {
    save(id);
    m_rows[id].row.addToConstant(delta);
}

void Tableau::addToCell(RowId id, Symbol symbol, double delta) {
    ++m_structureVersion;
    save(id);
    m_rows[id].row.add(symbol, delta, keeper(id));
}

double Tableau::removeCell(RowId id, Symbol symbol) {
    ++m_structureVersion;
    save(id);
    return m_rows[id].row.remove(symbol, keeper(id));
}

void Tableau::addRow(RowId id, const Row& other, double factor) {
    ++m_structureVersion;
    save(id);
    m_rows[id].row.addRow(other, factor, keeper(id));
}

void Tableau::substitute(RowId id, Symbol symbol, const Row& expression) {
    ++m_structureVersion;
    save(id);
    m_rows[id].row.substitute(symbol, expression, keeper(id));
}

void Tableau::pivot(RowId id, Symbol entering) {
    ++m_structureVersion;
    save(id);
    RowSlot& slot = m_rows[id];
    Symbol leaving = slot.subject;
    // leaving = c + a * entering + rest  =>  entering = (leaving - c - rest) / a
    double coefficient = slot.row.remove(entering, keeper(id));
    assert(coefficient != 0);
    slot.row.scale(-1.0 / coefficient);
    slot.row.add(leaving, 1.0 / coefficient, keeper(id));
    m_symbols[leaving].row = NoRow;
    m_symbols[entering].row = id;
    slot.subject = entering;
}

std::uint32_t Tableau::newMark() {
    if (++m_markCounter == 0) {
        for (SymbolInfo& info : m_symbols) {
            info.mark = 0;
        }
        m_markCounter = 1;
    }
    return m_markCounter;
}

bool Tableau::mark(Symbol symbol, std::uint32_t mark) {
    if (m_symbols[symbol].mark == mark) {
        return false;
    }
    m_symbols[symbol].mark = mark;
    return true;
}

void Tableau::ColumnKeeper::added(Symbol symbol, Cell& cell) {
    ColumnList& column = tableau.m_symbols[symbol].column;
    cell.columnPosition = column.size();
    column.push_back(id);
}

void Tableau::ColumnKeeper::removed(Symbol symbol, const Cell& cell) {
    tableau.removeFromColumn(symbol, cell.columnPosition);
}

void Tableau::removeFromColumn(Symbol symbol, std::uint32_t position) {
    ColumnList& column = m_symbols[symbol].column;
    RowId moved = column.back();
    column[position] = moved;
    column.pop_back();
    if (position < column.size()) {
        m_rows[moved].row.cells().find(symbol)->columnPosition = position;
    }
}

void Tableau::enterColumns(RowId id) {
    m_rows[id].row.cells().forEachMutable([&](Symbol symbol, Cell& cell) { keeper(id).added(symbol, cell); });
}

void Tableau::leaveColumns(RowId id) {
    m_rows[id].row.cells().forEach(
        [&](Symbol symbol, const Cell& cell) { removeFromColumn(symbol, cell.columnPosition); });
}

void Tableau::save(RowId id) {
    RowSlot& slot = m_rows[id];
    if (!m_journaling || slot.journalStamp == m_journalCounter) {
        return;
    }
    slot.journalStamp = m_journalCounter;
    m_saved.push_back({id, slot.subject, slot.row});
}

void Tableau::beginJournal() {
    assert(!m_journaling);
    m_journaling = true;
    ++m_journalCounter;
}

void Tableau::commitJournal() {
    m_journaling = false;
    m_saved.clear();
    m_freeRows.insert(m_freeRows.end(), m_pendingFreeRows.begin(), m_pendingFreeRows.end());
    m_pendingFreeRows.clear();
}

void Tableau::rollbackJournal() {
    ++m_structureVersion;
    m_journaling = false;
    // First empty every slot the journal saw, then put the saved rows back, so that subjects and
    // column entries never point at a half-restored row.
    for (const SavedRow& saved : m_saved) {
        RowSlot& slot = m_rows[saved.id];
        if (slot.subject == NoSymbol) {
            continue;
        }
        leaveColumns(saved.id);
        m_symbols[slot.subject].row = NoRow;
        slot.subject = NoSymbol;
        slot.row = Row();
    }
    for (SavedRow& saved : m_saved) {
        if (saved.subject == NoSymbol) {
            m_freeRows.push_back(saved.id);
            continue;
        }
        RowSlot& slot = m_rows[saved.id];
        slot.subject = saved.subject;
        slot.row = std::move(saved.row);
        m_symbols[saved.subject].row = saved.id;
        enterColumns(saved.id);
    }
    m_saved.clear();
    m_pendingFreeRows.clear();
}

void Tableau::clear() {
    ++m_structureVersion;
    m_symbols.clear();
    m_freeSymbols.clear();
    m_rows.clear();
    m_freeRows.clear();
    m_markCounter = 0;
    m_journaling = false;
    m_saved.clear();
    m_pendingFreeRows.clear();
}

} // namespace ns::solver
