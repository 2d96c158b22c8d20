#pragma once

#include "platform/layout/solver/ColumnList.hpp"
#include "platform/layout/solver/Row.hpp"
#include "platform/layout/solver/Symbol.hpp"

#include <cstdint>
#include <vector>

namespace ns::solver {

// The solver's rows and symbols, with a column index (for each symbol, the rows that mention it)
// so that substitution and pivoting visit only the rows concerned.
//
// A row's subject is either a restricted symbol (slack, error, dummy), in which case the row is
// kept fully reduced, or an external one, in which case the row may still mention other basic
// symbols (see SolverImpl). The tableau itself only does the bookkeeping; the rules live in the
// solver.
//
// While a journal is open, every row is copied before its first change, so a tentative step
// (an artificial-variable phase, a required constant change) can be undone exactly.
class Tableau {
public:
    Symbol createSymbol(SymbolKind kind);
    // The symbol must be non-basic and mentioned by no row.
    void releaseSymbol(Symbol symbol);

    SymbolKind kind(Symbol symbol) const { return m_symbols[symbol].kind; }
    bool isBasic(Symbol symbol) const { return m_symbols[symbol].row != NoRow; }
    bool isRestricted(Symbol symbol) const { return m_symbols[symbol].kind != SymbolKind::External; }
    RowId rowOf(Symbol symbol) const { return m_symbols[symbol].row; }
    // Rows whose cells mention the symbol (its own row, if basic, is not among them).
    const ColumnList& column(Symbol symbol) const { return m_symbols[symbol].column; }
    // A symbol that is neither basic nor mentioned anywhere.
    bool isUnused(Symbol symbol) const { return !isBasic(symbol) && column(symbol).empty(); }
    std::size_t symbolCapacity() const { return m_symbols.size(); }
    // Changes whenever a row is added, removed or has a cell changed; constants alone leave it.
    std::uint64_t structureVersion() const { return m_structureVersion; }

    Symbol subject(RowId id) const { return m_rows[id].subject; }
    const Row& row(RowId id) const { return m_rows[id].row; }
    bool isRestrictedRow(RowId id) const { return isRestricted(m_rows[id].subject); }
    std::size_t rowCount() const { return m_rows.size() - m_freeRows.size() - m_pendingFreeRows.size(); }

    // Calls f(rowId) for every row in the tableau.
    template <typename F>
    void forEachRow(F&& f) const {
        for (RowId id = 0; id < m_rows.size(); ++id) {
            if (m_rows[id].subject != NoSymbol) {
                f(id);
            }
        }
    }

    RowId insertRow(Symbol subject, Row row);
    // Takes a row out; its subject becomes non-basic.
    Row extractRow(RowId id);

    void addToConstant(RowId id, double delta);
    void addToCell(RowId id, Symbol symbol, double delta);
    double removeCell(RowId id, Symbol symbol);
    void addRow(RowId id, const Row& other, double factor);
    // Replaces `symbol` in row `id` by `expression`.
    void substitute(RowId id, Symbol symbol, const Row& expression);
    // Exchanges the row's subject for `entering`, which must occur in it; the old subject becomes
    // a non-basic symbol of the row.
    void pivot(RowId id, Symbol entering);

    // Marks for graph walks: newMark() returns a fresh mark value, mark() tags a symbol and says
    // whether it was untagged.
    std::uint32_t newMark();
    bool mark(Symbol symbol, std::uint32_t mark);
    bool isMarked(Symbol symbol, std::uint32_t mark) const { return m_symbols[symbol].mark == mark; }

    void beginJournal();
    void commitJournal();
    void rollbackJournal();
    bool isJournaling() const { return m_journaling; }

    void clear();

private:
    struct SymbolInfo {
        SymbolKind kind = SymbolKind::External;
        RowId row = NoRow;
        std::uint32_t mark = 0;
        ColumnList column;
    };
    struct RowSlot {
        Symbol subject = NoSymbol;
        Row row;
        std::uint32_t journalStamp = 0;
    };
    struct SavedRow {
        RowId id;
        Symbol subject; // NoSymbol: the slot was empty before the journal opened
        Row row;
    };
    // Keeps the column index in step with the cells of one row.
    struct ColumnKeeper {
        Tableau& tableau;
        RowId id;
        void added(Symbol symbol, Cell& cell);
        void removed(Symbol symbol, const Cell& cell);
    };

    ColumnKeeper keeper(RowId id) { return ColumnKeeper{*this, id}; }
    void enterColumns(RowId id);
    void leaveColumns(RowId id);
    void removeFromColumn(Symbol symbol, std::uint32_t position);
    void save(RowId id);

    std::vector<SymbolInfo> m_symbols;
    std::vector<Symbol> m_freeSymbols;
    std::vector<RowSlot> m_rows;
    std::vector<RowId> m_freeRows;
    std::uint32_t m_markCounter = 0;
    std::uint64_t m_structureVersion = 1;

    bool m_journaling = false;
    std::uint32_t m_journalCounter = 0;
    std::vector<SavedRow> m_saved;
    // Slots emptied while the journal is open are not reused until it closes, so a rollback can
    // put their rows back in place.
    std::vector<RowId> m_pendingFreeRows;
};

} // namespace ns::solver
