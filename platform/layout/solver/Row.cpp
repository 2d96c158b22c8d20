#include "platform/layout/solver/Row.hpp"

namespace ns::solver {

void Row::scale(double factor) {
    m_constant *= factor;
    m_cells.forEachMutable([factor](Symbol, Cell& cell) { cell.coefficient *= factor; });
}

void Row::solveFor(Symbol symbol) {
    double coefficient = remove(symbol);
    scale(-1.0 / coefficient);
}

} // namespace ns::solver
