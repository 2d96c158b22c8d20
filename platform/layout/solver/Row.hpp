#pragma once

#include "platform/layout/solver/FlatMap.hpp"
#include "platform/layout/solver/Symbol.hpp"

#include <cstdint>

namespace ns::solver {

// One coefficient of a row, and where the row sits in the column list of the cell's symbol (kept
// by the tableau so a cell can leave its column in constant time).
struct Cell {
    double coefficient = 0;
    std::uint32_t columnPosition = 0;
};

// A linear form `constant + sum(coefficient * symbol)`. In the tableau a row is the value of its
// subject; on its way in it is an equation `form = 0`.
//
// The editing operations take a listener told of every cell that appears or disappears, which is
// how the tableau keeps its column index; rows outside the tableau use the silent default.
class Row {
public:
    struct Silent {
        void added(Symbol, Cell&) {}
        void removed(Symbol, const Cell&) {}
    };

    Row() = default;
    explicit Row(double constant) : m_constant(constant) {}

    double constant() const { return m_constant; }
    void setConstant(double constant) { m_constant = constant; }
    void addToConstant(double delta) { m_constant += delta; }

    using Cells = FlatSymbolMap<Cell, 4>; // most rows have three cells or fewer

    const Cells& cells() const { return m_cells; }
    Cells& cells() { return m_cells; }
    double coefficientFor(Symbol symbol) const {
        const Cell* cell = m_cells.find(symbol);
        return cell ? cell->coefficient : 0;
    }

    // coefficient(symbol) += delta; a cell that cancels to (near) zero is removed.
    template <typename Listener = Silent>
    void add(Symbol symbol, double delta, Listener&& listener = Listener{}) {
        Cell* cell = m_cells.find(symbol);
        if (!cell) {
            if (nearZero(delta)) {
                return;
            }
            cell = m_cells.findOrInsert(symbol).first;
            cell->coefficient = delta;
            listener.added(symbol, *cell);
            return;
        }
        cell->coefficient += delta;
        if (nearZero(cell->coefficient)) {
            Cell old = *cell;
            m_cells.erase(symbol);
            listener.removed(symbol, old);
        }
    }

    // Removes the cell of `symbol`, returning its coefficient (0 when there was none).
    template <typename Listener = Silent>
    double remove(Symbol symbol, Listener&& listener = Listener{}) {
        Cell* cell = m_cells.find(symbol);
        if (!cell) {
            return 0;
        }
        Cell old = *cell;
        m_cells.erase(symbol);
        listener.removed(symbol, old);
        return old.coefficient;
    }

    // this += factor * other.
    template <typename Listener = Silent>
    void addRow(const Row& other, double factor, Listener&& listener = Listener{}) {
        m_constant += other.m_constant * factor;
        other.m_cells.forEach(
            [&](Symbol symbol, const Cell& cell) { add(symbol, cell.coefficient * factor, listener); });
    }

    // Replaces `symbol` by `expression` (the row of a subject), if the symbol occurs here.
    template <typename Listener = Silent>
    void substitute(Symbol symbol, const Row& expression, Listener&& listener = Listener{}) {
        double coefficient = remove(symbol, listener);
        if (coefficient != 0) {
            addRow(expression, coefficient, listener);
        }
    }

    // Multiplies the constant and every coefficient; cells keep their column positions.
    void scale(double factor);

    // Turns the equation `this = 0` into the value of `symbol`, which must occur here.
    void solveFor(Symbol symbol);

private:
    Cells m_cells;
    double m_constant = 0;
};

} // namespace ns::solver
