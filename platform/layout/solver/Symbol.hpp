#pragma once

#include <cstdint>

namespace ns::solver {

// The solver's own unknowns. External symbols stand for layout variables; the others are the
// bookkeeping columns each constraint brings: a slack for an inequality, a pair of errors (or one)
// for a preference, a dummy that marks a required equality so it can be found again on removal.
using Symbol = std::uint32_t;
inline constexpr Symbol NoSymbol = 0xffffffffu;

enum class SymbolKind : std::uint8_t { External, Slack, Error, Dummy };

// Index of a row slot in the tableau.
using RowId = std::uint32_t;
inline constexpr RowId NoRow = 0xffffffffu;

// Coefficients closer to zero than this are cancellation noise and are dropped, so that noise
// never keeps a cell alive. It is far below any coefficient a layout produces and far above the
// rounding error of the sums that produce them.
inline constexpr double Epsilon = 1.0e-10;

inline bool nearZero(double value) {
    return value < Epsilon && value > -Epsilon;
}

// How far a constant may miss zero and still count as zero when deciding whether a constraint
// holds: a basic slack that small is feasible, a redundant equation that far off still agrees.
// Deciding such questions wrongly because of rounding would refuse good constraints.
inline constexpr double FeasibilityEpsilon = 1.0e-8;

inline bool nearZeroConstant(double value) {
    return value < FeasibilityEpsilon && value > -FeasibilityEpsilon;
}

// Objective coefficients smaller than this count as zero when looking for a symbol to enter:
// rounding noise in the objective must not send the simplex chasing improvements that are not
// there (or, worse, past real ones, since entering candidates are taken lowest symbol first).
inline constexpr double OptimalityEpsilon = 1.0e-6;

// The smallest coefficient the simplex pivots on. Dividing by rounding noise would flood the
// tableau with huge coefficients, so such cells are passed over as if they were zero.
inline constexpr double PivotEpsilon = 1.0e-6;

inline bool canPivotOn(double coefficient) {
    return coefficient >= PivotEpsilon || coefficient <= -PivotEpsilon;
}

} // namespace ns::solver
