#include "platform/layout/SolverImpl.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

namespace ns {

using solver::canPivotOn;
using solver::Cell;
using solver::nearZeroConstant;
using solver::NoRow;
using solver::NoSymbol;
using solver::SymbolKind;

namespace {

bool isValidPriority(float priority) {
    return std::isfinite(priority) && priority > 0 && priority <= SolverConstraint::Required;
}

// Among possible subjects, the one with the largest coefficient (ties: the lowest symbol): dividing
// by a small coefficient would magnify the rounding error of everything else in the row.
struct SubjectChoice {
    solver::Symbol symbol = solver::NoSymbol;
    double magnitude = 0;

    void consider(solver::Symbol candidate, double coefficient) {
        double size = std::fabs(coefficient);
        if (size > magnitude || (size == magnitude && candidate < symbol)) {
            symbol = candidate;
            magnitude = size;
        }
    }
};

bool isFinite(const LayoutExpression& expression) {
    if (!std::isfinite(expression.constant())) {
        return false;
    }
    return std::all_of(expression.terms().begin(), expression.terms().end(),
                       [](const LayoutTerm& term) { return std::isfinite(term.coefficient); });
}

} // namespace

SolverImpl::SolverImpl() : m_objective(m_tableau) {}

// ---------------------------------------------------------------------------------------------
// Adding a constraint

SolverStatus SolverImpl::addConstraint(const SolverConstraint& constraint) {
    if (m_recordIndex.contains(constraint.identity())) {
        return SolverStatus::DuplicateConstraint;
    }
    if (!isValidPriority(constraint.priority())) {
        return SolverStatus::InvalidPriority;
    }
    if (!isFinite(constraint.expression())) {
        return SolverStatus::InvalidValue;
    }
    ConstraintRecord record{constraint};
    Row row = makeRow(constraint, record);
    if (!placeRow(std::move(row), record)) {
        discardSymbol(record.marker);
        discardSymbol(record.other);
        releaseVariables(constraint);
        return SolverStatus::UnsatisfiableConstraint;
    }
    addErrorsToObjective(record, 1.0);
    m_recordIndex.findOrInsert(constraint.identity()).first[0] = static_cast<std::uint32_t>(m_records.size());
    m_records.push_back(std::move(record));
    restoreOptimality();
    if (!m_rebuilding) {
        checkDrift();
    }
    return SolverStatus::Ok;
}

// The constraint as an equation `row = 0`: the expression (negated for <=, so that every
// inequality reads `>= 0`) plus the constraint's own slack, error and dummy symbols. Variables
// that are basic stay as they are; placeRow decides how much to substitute.
solver::Row SolverImpl::makeRow(const SolverConstraint& constraint, ConstraintRecord& record) {
    const LayoutExpression& expression = constraint.expression();
    record.sign = constraint.relation() == SolverConstraint::Relation::LessOrEqual ? -1.0 : 1.0;
    record.constant = expression.constant();
    record.priority = constraint.priority();

    Row row(record.sign * expression.constant());
    for (const LayoutTerm& term : expression.terms()) {
        row.add(acquireVariable(term.variable), record.sign * term.coefficient);
    }

    if (constraint.relation() == SolverConstraint::Relation::Equal) {
        if (record.isRequired()) {
            record.marker = m_tableau.createSymbol(SymbolKind::Dummy);
            record.markerCoefficient = 1;
            row.add(record.marker, 1);
        } else {
            // expression = plus - minus, both errors >= 0 and minimised.
            record.marker = m_tableau.createSymbol(SymbolKind::Error);
            record.other = m_tableau.createSymbol(SymbolKind::Error);
            record.markerCoefficient = -1;
            row.add(record.marker, -1);
            row.add(record.other, 1);
        }
    } else {
        // expression = slack (>= 0), or slack - error for a preference.
        record.marker = m_tableau.createSymbol(SymbolKind::Slack);
        record.markerCoefficient = -1;
        row.add(record.marker, -1);
        if (!record.isRequired()) {
            record.other = m_tableau.createSymbol(SymbolKind::Error);
            row.add(record.other, 1);
        }
    }
    return row;
}

// Gives the row a subject and puts it in the tableau; false when a required constraint cannot
// hold together with the others (the tableau is then as it was).
bool SolverImpl::placeRow(Row row, const ConstraintRecord& record) {
    if (placeLazily(row)) {
        return true;
    }
    Row reduced = expanded(row);
    SubjectChoice variable;
    reduced.cells().forEach([&](Symbol symbol, const Cell& cell) {
        if (m_tableau.kind(symbol) == SymbolKind::External && canPivotOn(cell.coefficient)) {
            variable.consider(symbol, cell.coefficient);
        }
    });
    Symbol subject = variable.symbol;
    if (subject != NoSymbol) {
        insertVariableRow(subject, std::move(reduced), true);
        return true;
    }

    if (reduced.constant() < 0) {
        reduced.scale(-1);
    }
    subject = restrictedSubject(reduced, record);
    if (subject == NoSymbol) {
        bool onlyDummies = true;
        reduced.cells().forEach([&](Symbol symbol, const Cell&) {
            onlyDummies = onlyDummies && m_tableau.kind(symbol) == SymbolKind::Dummy;
        });
        if (onlyDummies) {
            // The equation repeats others: fine if its constant agrees, a contradiction otherwise.
            if (!nearZeroConstant(reduced.constant())) {
                return false;
            }
            subject = record.marker;
        }
    }
    if (subject != NoSymbol) {
        reduced.solveFor(subject);
        m_tableau.insertRow(subject, std::move(reduced));
        return true;
    }
    return placeWithArtificialVariable(std::move(reduced));
}

// Makes a non-basic variable of the row its subject without substituting anything, when that
// cannot close a cycle among variable rows. A variable no row mentions yet is always safe; one
// that is mentioned is safe unless the row refers to a basic symbol that depends on it.
bool SolverImpl::placeLazily(Row& row) {
    SubjectChoice fresh;
    SubjectChoice used;
    bool mentionsBasic = false;
    row.cells().forEach([&](Symbol symbol, const Cell& cell) {
        if (m_tableau.isBasic(symbol)) {
            mentionsBasic = true;
        } else if (m_tableau.kind(symbol) == SymbolKind::External && canPivotOn(cell.coefficient)) {
            (m_tableau.column(symbol).empty() ? fresh : used).consider(symbol, cell.coefficient);
        }
    });
    Symbol subject = fresh.symbol;
    if (subject == NoSymbol) {
        if (used.symbol == NoSymbol) {
            return false;
        }
        if (mentionsBasic && refersToDependentOf(row, used.symbol)) {
            return false;
        }
        subject = used.symbol;
    }
    insertVariableRow(subject, std::move(row), !mentionsBasic);
    return true;
}

void SolverImpl::insertVariableRow(Symbol subject, Row row, bool rowIsReduced) {
    row.solveFor(subject);
    bool reducedUsers = m_objective.weightFor(subject) != nullptr;
    for (RowId user : m_tableau.column(subject)) {
        reducedUsers = reducedUsers || m_tableau.isRestrictedRow(user);
    }
    RowId id = m_tableau.insertRow(subject, std::move(row));
    if (!reducedUsers) {
        return;
    }
    // Restricted rows and the objective never mention a non-basic variable, so this is only a
    // safety net: they must see the subject's full value now that it is basic.
    Row value = rowIsReduced ? m_tableau.row(id) : expanded(m_tableau.row(id));
    m_rowScratch.assign(m_tableau.column(subject).begin(), m_tableau.column(subject).end());
    for (RowId user : m_rowScratch) {
        if (m_tableau.isRestrictedRow(user)) {
            m_tableau.substitute(user, subject, value);
            noteIfInfeasible(user);
        }
    }
    m_objective.substitute(subject, value);
}

// A new slack or error that can take the row with a non-negative constant: one whose coefficient
// is negative, so that solving for it keeps the constant's sign.
solver::Symbol SolverImpl::restrictedSubject(const Row& row, const ConstraintRecord& record) const {
    for (Symbol symbol : {record.marker, record.other}) {
        if (symbol == NoSymbol || m_tableau.kind(symbol) == SymbolKind::Dummy) {
            continue;
        }
        if (row.coefficientFor(symbol) < 0) {
            return symbol;
        }
    }
    return NoSymbol;
}

// The row has no usable subject: add it as the row of a temporary artificial symbol, minimise
// that symbol, and keep the constraint only if it reaches zero. Every change made on the way is
// journaled, so a refusal restores the tableau and objective exactly.
bool SolverImpl::placeWithArtificialVariable(Row row) {
    beginJournal();
    Symbol artificial = m_tableau.createSymbol(SymbolKind::Slack);
    Row phaseOne = row;
    m_tableau.insertRow(artificial, std::move(row));
    optimizePhaseOne(phaseOne);
    if (!nearZeroConstant(phaseOne.constant())) {
        rollbackJournal();
        m_tableau.releaseSymbol(artificial);
        return false;
    }
    retireArtificial(artificial);
    commitJournal();
    m_tableau.releaseSymbol(artificial);
    return true;
}

void SolverImpl::optimizePhaseOne(Row& phaseOne) {
    // Symbols that turned out to have no row to stop them; only rounding produces those, and they
    // are passed over so that the real candidates still get their turn.
    std::vector<Symbol> unbounded;
    for (std::size_t budget = pivotBudget(); budget > 0; --budget) {
        Symbol entering = NoSymbol;
        phaseOne.cells().forEach([&](Symbol symbol, const Cell& cell) {
            if (cell.coefficient < -solver::OptimalityEpsilon &&
                m_tableau.kind(symbol) != SymbolKind::Dummy && symbol < entering &&
                std::find(unbounded.begin(), unbounded.end(), symbol) == unbounded.end()) {
                entering = symbol;
            }
        });
        if (entering == NoSymbol) {
            return;
        }
        RowId leaving = primalLeavingRow(entering);
        if (leaving == NoRow) {
            unbounded.push_back(entering);
            continue;
        }
        pivot(entering, leaving, &phaseOne);
    }
}

// The artificial symbol is zero now; take it out of the basis if it is still there, then out of
// every row.
void SolverImpl::retireArtificial(Symbol artificial) {
    if (m_tableau.isBasic(artificial)) {
        RowId id = m_tableau.rowOf(artificial);
        // Any symbol of the row can replace it (its value is zero, so nothing moves); prefer one
        // that is free to move, then a dummy, then a variable. A row of rounding noise alone says
        // nothing and is dropped.
        Symbol entering = NoSymbol;
        int entryRank = 4;
        m_tableau.row(id).cells().forEach([&](Symbol symbol, const Cell& cell) {
            SymbolKind kind = m_tableau.kind(symbol);
            int rank = !canPivotOn(cell.coefficient)                            ? 3
                       : kind == SymbolKind::Slack || kind == SymbolKind::Error ? 0
                       : kind == SymbolKind::Dummy                              ? 1
                                                                                : 2;
            if (rank < entryRank || (rank == entryRank && symbol < entering)) {
                entering = symbol;
                entryRank = rank;
            }
        });
        if (entering == NoSymbol || entryRank == 3) {
            m_tableau.extractRow(id);
        } else {
            pivot(entering, id);
        }
    }
    m_rowScratch.assign(m_tableau.column(artificial).begin(), m_tableau.column(artificial).end());
    for (RowId user : m_rowScratch) {
        m_tableau.removeCell(user, artificial);
    }
    m_objective.erase(artificial);
}

void SolverImpl::addErrorsToObjective(const ConstraintRecord& record, double factor) {
    if (record.isRequired()) {
        return;
    }
    for (Symbol symbol : {record.marker, record.other}) {
        if (symbol == NoSymbol || m_tableau.kind(symbol) != SymbolKind::Error) {
            continue;
        }
        if (m_tableau.isBasic(symbol)) {
            m_objective.addRow(m_tableau.row(m_tableau.rowOf(symbol)), record.priority, factor);
        } else {
            m_objective.add(symbol, record.priority, factor);
        }
    }
}

// ---------------------------------------------------------------------------------------------
// Removing a constraint

SolverStatus SolverImpl::removeConstraint(const SolverConstraint& constraint) {
    ConstraintRecord* found = recordFor(constraint);
    if (!found) {
        return SolverStatus::UnknownConstraint;
    }
    ConstraintRecord record = *found;
    eraseRecord(constraint);

    addErrorsToObjective(record, -1.0);
    eliminateMarker(record.marker);
    discardSymbol(record.marker);
    discardSymbol(record.other);
    releaseVariables(constraint);
    restoreOptimality();
    checkDrift();
    return SolverStatus::Ok;
}

// Brings the marker into the basis and drops its row. Only that row still holds the constraint's
// equation afterwards, so the remaining rows describe the other constraints alone.
void SolverImpl::eliminateMarker(Symbol marker) {
    RowId id = m_tableau.isBasic(marker) ? m_tableau.rowOf(marker) : markerLeavingRow(marker);
    if (id == NoRow) {
        return;
    }
    if (m_tableau.subject(id) != marker) {
        m_tableau.pivot(id, marker);
    }
    // The marker's value replaces it everywhere. A variable row may keep referring to basic
    // symbols; restricted rows and the objective need the value fully reduced.
    const Row& value = m_tableau.row(id);
    m_rowScratch.assign(m_tableau.column(marker).begin(), m_tableau.column(marker).end());
    bool needsReduced = m_objective.weightFor(marker) != nullptr;
    for (RowId user : m_rowScratch) {
        needsReduced = needsReduced || m_tableau.isRestrictedRow(user);
    }
    bool valueIsReduced = true;
    value.cells().forEach(
        [&](Symbol symbol, const Cell&) { valueIsReduced = valueIsReduced && !m_tableau.isBasic(symbol); });
    Row reducedValue;
    if (needsReduced && !valueIsReduced) {
        reducedValue = expanded(value);
    }
    const Row& restrictedValue = valueIsReduced ? value : reducedValue;
    for (RowId user : m_rowScratch) {
        m_tableau.substitute(user, marker, m_tableau.isRestrictedRow(user) ? restrictedValue : value);
        noteIfInfeasible(user);
    }
    m_objective.substitute(marker, restrictedValue);
    m_tableau.extractRow(id);
}

// The row through which the marker enters the basis. A restricted row is preferred, chosen by the
// ratio test so that the rows left behind stay feasible; failing that, a variable row whose other
// basic symbols do not depend on the marker (so the substitution cannot create a cycle).
solver::RowId SolverImpl::markerLeavingRow(Symbol marker) {
    RowId first = NoRow;
    RowId second = NoRow;
    double firstRatio = std::numeric_limits<double>::max();
    double secondRatio = std::numeric_limits<double>::max();
    bool anyVariableRow = false;
    for (RowId id : m_tableau.column(marker)) {
        if (!m_tableau.isRestrictedRow(id)) {
            anyVariableRow = true;
            continue;
        }
        const Row& row = m_tableau.row(id);
        double coefficient = row.coefficientFor(marker);
        if (!canPivotOn(coefficient)) {
            continue;
        }
        if (coefficient < 0) {
            double ratio = -row.constant() / coefficient;
            if (ratio < firstRatio) {
                firstRatio = ratio;
                first = id;
            }
        } else {
            double ratio = row.constant() / coefficient;
            if (ratio < secondRatio) {
                secondRatio = ratio;
                second = id;
            }
        }
    }
    if (first != NoRow) {
        return first;
    }
    if (second != NoRow) {
        return second;
    }
    if (!anyVariableRow) {
        return NoRow;
    }
    // A basic symbol can depend on the marker only through a row that mentions it, so when one
    // row is all there is, it is the one.
    const solver::ColumnList& column = m_tableau.column(marker);
    for (RowId id : column) {
        if (!m_tableau.isRestrictedRow(id) && canPivotOn(m_tableau.row(id).coefficientFor(marker)) &&
            (column.size() == 1 || !refersToDependentOf(m_tableau.row(id), marker))) {
            return id;
        }
    }
    return NoRow; // only rounding noise mentions the marker; discarding it is all that is left
}

// Drops a symbol that no constraint owns any more. Its coefficients are zero by construction;
// whatever rounding left behind is cleared so it cannot linger as a phantom column.
void SolverImpl::discardSymbol(Symbol symbol) {
    if (symbol == NoSymbol) {
        return;
    }
    if (m_tableau.isBasic(symbol)) {
        eliminateMarker(symbol);
    }
    m_rowScratch.assign(m_tableau.column(symbol).begin(), m_tableau.column(symbol).end());
    for (RowId user : m_rowScratch) {
        m_tableau.removeCell(user, symbol);
    }
    m_objective.erase(symbol);
    m_tableau.releaseSymbol(symbol);
}

// ---------------------------------------------------------------------------------------------
// Changing constants and priorities

SolverStatus SolverImpl::setConstant(const SolverConstraint& constraint, double constant) {
    ConstraintRecord* found = recordFor(constraint);
    if (!found) {
        return SolverStatus::UnknownConstraint;
    }
    if (!std::isfinite(constant)) {
        return SolverStatus::InvalidValue;
    }
    ConstraintRecord& record = *found;
    double delta = record.sign * (constant - record.constant);
    if (delta != 0) {
        // Only a required constant can make the system infeasible (preferences absorb any value),
        // but the change is journaled either way so that nothing is left half done.
        beginJournal();
        shiftConstant(record, delta);
        if (!restoreOptimality()) {
            rollbackJournal();
            return SolverStatus::UnsatisfiableConstraint;
        }
        commitJournal();
    }
    record.constant = constant;
    constraint.m_data->expression.setConstant(constant);
    checkDrift();
    return SolverStatus::Ok;
}

// Every row is a combination of constraint equations, and the marker appears in exactly one of
// them, so a row's marker coefficient says how much of this constraint's equation it carries and
// therefore how much of the constant change it takes. Only the rows that mention the marker move.
void SolverImpl::shiftConstant(const ConstraintRecord& record, double delta) {
    double perUnit = delta / record.markerCoefficient;
    if (m_tableau.isBasic(record.marker)) {
        RowId id = m_tableau.rowOf(record.marker);
        m_tableau.addToConstant(id, -perUnit);
        noteIfInfeasible(id);
    }
    for (RowId id : m_tableau.column(record.marker)) {
        m_tableau.addToConstant(id, m_tableau.row(id).coefficientFor(record.marker) * perUnit);
        noteIfInfeasible(id);
    }
}

SolverStatus SolverImpl::setPriority(const SolverConstraint& constraint, float priority) {
    ConstraintRecord* found = recordFor(constraint);
    if (!found) {
        return SolverStatus::UnknownConstraint;
    }
    if (!isValidPriority(priority)) {
        return SolverStatus::InvalidPriority;
    }
    ConstraintRecord& record = *found;
    if (priority == record.priority) {
        return SolverStatus::Ok;
    }
    bool nowRequired = priority >= SolverConstraint::Required;
    if (!record.isRequired() && !nowRequired) {
        // Same symbols, another level: move the errors' weight in the objective and re-optimise.
        addErrorsToObjective(record, -1.0);
        record.priority = priority;
        addErrorsToObjective(record, 1.0);
        constraint.m_data->priority = priority;
        restoreOptimality();
        checkDrift();
        return SolverStatus::Ok;
    }
    // Between required and preferred the constraint's symbols differ, so it is replaced. Only
    // becoming required can fail, so a stand-in at the new priority is tried first: a refusal
    // then leaves everything exactly as it was. (Adding and removing move records: `record` is
    // not used past this point.)
    float previous = record.priority;
    if (nowRequired) {
        SolverConstraint trial(constraint.expression(), constraint.relation(), 0, priority);
        SolverStatus status = addConstraint(trial);
        if (status != SolverStatus::Ok) {
            return status;
        }
        removeConstraint(trial);
    }
    removeConstraint(constraint);
    constraint.m_data->priority = priority;
    SolverStatus status = addConstraint(constraint);
    if (status != SolverStatus::Ok) { // only rounding could get here, the stand-in went in
        constraint.m_data->priority = previous;
        addConstraint(constraint);
    }
    return status;
}

// ---------------------------------------------------------------------------------------------
// Edit variables

SolverStatus SolverImpl::addEditVariable(const LayoutVariable& variable, float priority) {
    if (m_edits.contains(variable)) {
        return SolverStatus::DuplicateEditVariable;
    }
    if (!isValidPriority(priority) || priority >= SolverConstraint::Required) {
        return SolverStatus::InvalidPriority;
    }
    double start = std::isfinite(variable.value()) ? variable.value() : 0.0;
    SolverConstraint constraint(variable, SolverConstraint::Relation::Equal, start, priority);
    SolverStatus status = addConstraint(constraint);
    if (status == SolverStatus::Ok) {
        m_edits.emplace(variable, constraint);
    }
    return status;
}

SolverStatus SolverImpl::removeEditVariable(const LayoutVariable& variable) {
    auto found = m_edits.find(variable);
    if (found == m_edits.end()) {
        return SolverStatus::UnknownEditVariable;
    }
    removeConstraint(found->second);
    m_edits.erase(found);
    return SolverStatus::Ok;
}

bool SolverImpl::hasEditVariable(const LayoutVariable& variable) const {
    return m_edits.contains(variable);
}

SolverStatus SolverImpl::suggestValue(const LayoutVariable& variable, double value) {
    auto found = m_edits.find(variable);
    if (found == m_edits.end()) {
        return SolverStatus::UnknownEditVariable;
    }
    return setConstant(found->second, -value);
}

// ---------------------------------------------------------------------------------------------
// The simplex

// Makes `entering` the subject of row `id` and removes it from every row that must stay reduced.
// Variable rows keep referring to it: it is basic now, and its row mentions only non-basic
// symbols, so no cycle can form.
void SolverImpl::pivot(Symbol entering, RowId id, Row* phaseOne) {
    ++m_pivotsSinceCheck;
    m_tableau.pivot(id, entering);
    const Row& value = m_tableau.row(id);
    m_rowScratch.assign(m_tableau.column(entering).begin(), m_tableau.column(entering).end());
    for (RowId user : m_rowScratch) {
        if (m_tableau.isRestrictedRow(user)) {
            m_tableau.substitute(user, entering, value);
            noteIfInfeasible(user);
        }
    }
    m_objective.substitute(entering, value);
    if (phaseOne) {
        phaseOne->substitute(entering, value);
    }
}

// Primal simplex: pivot in symbols whose objective cell is negative until none is left.
void SolverImpl::optimize() {
    for (std::size_t budget = pivotBudget();; --budget) {
        Symbol entering = m_objective.nextEntering();
        if (entering == NoSymbol) {
            return;
        }
        RowId leaving = primalLeavingRow(entering);
        // With no row to stop it the symbol could grow without bound, which non-negative errors
        // rule out; only rounding gets here, and skipping it is the safe answer.
        if (leaving != NoRow) {
            pivot(entering, leaving);
        }
        if (budget == 0) {
            m_objective.clearQueue();
            return;
        }
    }
}

// The restricted row that first hits zero as `entering` grows. Among rows that tie (within
// rounding), the largest coefficient makes the most stable pivot; then the lowest subject, which is
// Bland's rule and keeps degenerate pivots from cycling.
solver::RowId SolverImpl::primalLeavingRow(Symbol entering) const {
    auto ratioOf = [&](RowId id, double& coefficient) {
        if (!m_tableau.isRestrictedRow(id)) {
            return -1.0;
        }
        const Row& row = m_tableau.row(id);
        coefficient = row.coefficientFor(entering);
        if (!canPivotOn(coefficient)) {
            return -1.0;
        }
        if (m_tableau.kind(m_tableau.subject(id)) == SymbolKind::Dummy) {
            return 0.0; // a basic dummy is pinned at zero whichever way it would move
        }
        return coefficient < 0 ? std::max(0.0, -row.constant() / coefficient) : -1.0;
    };
    double least = std::numeric_limits<double>::max();
    double coefficient = 0;
    for (RowId id : m_tableau.column(entering)) {
        double ratio = ratioOf(id, coefficient);
        if (ratio >= 0) {
            least = std::min(least, ratio);
        }
    }
    RowId best = NoRow;
    double bestSize = 0;
    double tolerance = solver::Epsilon * (1 + least);
    for (RowId id : m_tableau.column(entering)) {
        double ratio = ratioOf(id, coefficient);
        if (ratio < 0 || ratio > least + tolerance) {
            continue;
        }
        double size = std::fabs(coefficient);
        if (best == NoRow || size > bestSize * (1 + solver::Epsilon) ||
            (size >= bestSize * (1 - solver::Epsilon) && m_tableau.subject(id) < m_tableau.subject(best))) {
            best = id;
            bestSize = size;
        }
    }
    return best;
}

// Dual simplex: while a restricted row is infeasible, pivot in the symbol that repairs it at the
// least cost to the objective, which keeps the objective optimal. False when a row cannot be
// repaired: the required constraints contradict each other.
bool SolverImpl::dualOptimize() {
    for (std::size_t budget = pivotBudget(); !m_infeasible.empty(); --budget) {
        if (budget == 0) {
            m_infeasible = {};
            return false;
        }
        Symbol leaving = m_infeasible.top();
        m_infeasible.pop();
        if (!m_tableau.isBasic(leaving)) {
            continue;
        }
        RowId id = m_tableau.rowOf(leaving);
        if (!isInfeasible(id)) {
            continue;
        }
        Symbol entering = dualEntering(id);
        if (entering == NoSymbol) {
            m_infeasible = {};
            return false;
        }
        pivot(entering, id);
    }
    return true;
}

solver::Symbol SolverImpl::dualEntering(RowId id) const {
    const Row& row = m_tableau.row(id);
    // A negative row needs a symbol with a positive coefficient; a basic dummy that drifted
    // above zero needs one with a negative coefficient.
    double direction = row.constant() < 0 ? 1.0 : -1.0;
    Symbol best = NoSymbol;
    const solver::SymbolicWeight* bestWeight = nullptr;
    double bestCoefficient = 1;
    row.cells().forEach([&](Symbol symbol, const Cell& cell) {
        if (m_tableau.kind(symbol) == SymbolKind::Dummy) {
            return;
        }
        double coefficient = cell.coefficient * direction;
        if (coefficient < solver::PivotEpsilon) {
            return;
        }
        const solver::SymbolicWeight* weight = m_objective.weightFor(symbol);
        int order = best == NoSymbol ? -1
                                     : solver::SymbolicWeight::compareScaled(
                                           weight, 1.0 / coefficient, bestWeight, 1.0 / bestCoefficient);
        if (order < 0 || (order == 0 && symbol < best)) {
            best = symbol;
            bestWeight = weight;
            bestCoefficient = coefficient;
        }
    });
    return best;
}

bool SolverImpl::isInfeasible(RowId id) const {
    Symbol subject = m_tableau.subject(id);
    if (!m_tableau.isRestricted(subject)) {
        return false;
    }
    double constant = m_tableau.row(id).constant();
    if (m_tableau.kind(subject) == SymbolKind::Dummy) {
        return !nearZeroConstant(constant);
    }
    return constant < -solver::FeasibilityEpsilon;
}

void SolverImpl::noteIfInfeasible(RowId id) {
    if (isInfeasible(id)) {
        m_infeasible.push(m_tableau.subject(id));
    }
}

// A bound on the pivots of one simplex run. Exact arithmetic needs far fewer; the bound only
// matters when rounding makes the pivot rules go round in circles, and then stopping with a
// feasible answer beats hanging the layout.
std::size_t SolverImpl::pivotBudget() const {
    return 50 * (m_tableau.rowCount() + 100);
}

bool SolverImpl::restoreOptimality() {
    if (!dualOptimize()) {
        return false;
    }
    optimize();
    return true;
}

// ---------------------------------------------------------------------------------------------
// The graph of variable rows

// The row with every basic symbol replaced by its value, recursively. Rows are substituted
// dependents first, so each is substituted once, after all contributions to its coefficient.
solver::Row SolverImpl::expanded(const Row& row) {
    // Depth-first walk; a symbol is expanded the first time it is popped, so one reached again
    // through a longer path is finished after everything that depends on it.
    std::uint32_t mark = m_tableau.newMark();
    m_symbolScratch.clear(); // finishing order: dependencies before dependents
    m_walk.clear();
    row.cells().forEach([&](Symbol root, const Cell&) {
        if (m_tableau.isBasic(root)) {
            m_walk.emplace_back(root, false);
        }
    });
    while (!m_walk.empty()) {
        auto [symbol, expandedAlready] = m_walk.back();
        if (expandedAlready) {
            m_symbolScratch.push_back(symbol);
            m_walk.pop_back();
            continue;
        }
        if (!m_tableau.mark(symbol, mark)) {
            m_walk.pop_back();
            continue;
        }
        m_walk.back().second = true;
        m_tableau.row(m_tableau.rowOf(symbol)).cells().forEach([&](Symbol child, const Cell&) {
            if (m_tableau.isBasic(child) && !m_tableau.isMarked(child, mark)) {
                m_walk.emplace_back(child, false);
            }
        });
    }
    Row result = row;
    for (auto symbol = m_symbolScratch.rbegin(); symbol != m_symbolScratch.rend(); ++symbol) {
        result.substitute(*symbol, m_tableau.row(m_tableau.rowOf(*symbol)));
    }
    return result;
}

// Whether a basic symbol the row refers to depends on `symbol` (so making a row that refers to
// it the row of `symbol` would close a cycle). Searches from both ends at once: forward through
// the rows that mention `symbol`, backward through the rows the references are made of. Near
// either end of a long chain one side runs out after a few steps, so the answer costs about the
// smaller of the two searches.
bool SolverImpl::refersToDependentOf(const Row& row, Symbol symbol) {
    std::uint32_t forwardMark = m_tableau.newMark();
    std::uint32_t backwardMark = m_tableau.newMark();
    std::vector<Symbol>& forward = m_symbolScratch;
    std::vector<Symbol>& backward = m_backwardScratch;
    forward.assign(1, symbol);
    m_tableau.mark(symbol, forwardMark);
    backward.clear();
    bool found = false;
    row.cells().forEach([&](Symbol reference, const Cell&) {
        if (m_tableau.isBasic(reference) && m_tableau.mark(reference, backwardMark)) {
            backward.push_back(reference);
        }
    });
    while (!forward.empty() && !backward.empty() && !found) {
        Symbol ahead = forward.back();
        forward.pop_back();
        for (RowId id : m_tableau.column(ahead)) {
            Symbol dependent = m_tableau.subject(id);
            if (m_tableau.isMarked(dependent, backwardMark)) {
                return true;
            }
            if (m_tableau.mark(dependent, forwardMark)) {
                forward.push_back(dependent);
            }
        }
        Symbol behind = backward.back();
        backward.pop_back();
        m_tableau.row(m_tableau.rowOf(behind)).cells().forEach([&](Symbol reference, const Cell&) {
            if (reference == symbol || m_tableau.isMarked(reference, forwardMark)) {
                found = true;
            } else if (m_tableau.isBasic(reference) && m_tableau.mark(reference, backwardMark)) {
                backward.push_back(reference);
            }
        });
    }
    return found;
}

void SolverImpl::updateVariables() {
    computeValues();
    for (std::size_t i = 0; i < m_externals.size(); ++i) {
        m_externals[i].variable.setValue(m_values.value(i));
    }
}

void SolverImpl::computeValues() {
    if (!m_values.isCompiledFor(m_tableau, m_externalsVersion)) {
        m_externalSymbols.clear();
        for (const External& external : m_externals) {
            m_externalSymbols.push_back(external.symbol);
        }
        m_values.compile(m_tableau, m_externalSymbols, m_externalsVersion);
    }
    m_values.run(m_tableau);
}

// Every pivot adds a little rounding error to the rows it rewrites, and a long life of adding
// and removing conflicting constraints can let it grow until it decides which preference wins.
// So, once the pivots since the last look outnumber a quarter of the rows (which keeps the cost
// a constant per pivot), at the end of an operation that succeeded:
//  - the objective, which every pivot rewrites, is computed afresh from the rows and optimised
//    again, so that noise in a high level cannot hide a cost in a lower one;
//  - the solution is checked against the required constraints, which must hold exactly, and a
//    tableau that misses them is rebuilt.
void SolverImpl::checkDrift() {
    if (m_pivotsSinceCheck < std::max<std::size_t>(20, m_tableau.rowCount() / 4)) {
        return;
    }
    m_pivotsSinceCheck = 0;
    refreshObjective();
    computeValues();
    if (hasDrifted()) {
        rebuild();
    }
}

void SolverImpl::refreshObjective() {
    m_objective.clear();
    for (const ConstraintRecord& record : m_records) {
        addErrorsToObjective(record, 1.0);
    }
    restoreOptimality();
}

bool SolverImpl::hasDrifted() {
    for (const ConstraintRecord& record : m_records) {
        if (!record.isRequired()) {
            continue;
        }
        const LayoutExpression& expression = record.constraint.expression();
        double value = expression.constant();
        double scale = 1 + std::fabs(value);
        for (const LayoutTerm& term : expression.terms()) {
            Symbol symbol = *m_variableSymbols.find(term.variable.identity());
            double product = term.coefficient * m_values.value(m_externalIndex[symbol]);
            value += product;
            scale += std::fabs(product);
        }
        double miss = value;
        if (record.constraint.relation() != SolverConstraint::Relation::Equal) {
            miss = std::min(0.0, value * record.sign);
        }
        if (std::fabs(miss) > DriftTolerance * scale) {
            return true;
        }
    }
    return false;
}

// Builds the tableau again from the constraints as they are now (constants and priorities
// included), which leaves only the rounding of one pass. The new state is built aside and taken
// only if every constraint went in and it is accurate, so a rebuild can never lose a constraint.
// Constraints go in strongest first (required, then preferences from the highest priority down):
// the stronger ones then settle the basis before weaker ones can pull it through long detours,
// which in random trials gave far better conditioned tableaus than the order of arrival.
void SolverImpl::rebuild() {
    std::vector<const ConstraintRecord*> order;
    for (const ConstraintRecord& record : m_records) {
        order.push_back(&record);
    }
    std::stable_sort(order.begin(), order.end(), [](const ConstraintRecord* a, const ConstraintRecord* b) {
        return a->priority > b->priority;
    });
    auto fresh = std::make_unique<SolverImpl>();
    fresh->m_rebuilding = true;
    for (const ConstraintRecord* record : order) {
        if (fresh->addConstraint(record->constraint) != SolverStatus::Ok) {
            return;
        }
    }
    fresh->computeValues();
    if (fresh->hasDrifted()) {
        return;
    }
    fresh->m_rebuilding = false;
    fresh->m_edits = m_edits;
    adoptState(*fresh);
}

void SolverImpl::adoptState(SolverImpl& other) {
    std::swap(m_tableau, other.m_tableau);
    std::swap(m_objective, other.m_objective);
    m_objective.attach(m_tableau);
    other.m_objective.attach(other.m_tableau);
    std::swap(m_recordIndex, other.m_recordIndex);
    std::swap(m_records, other.m_records);
    std::swap(m_variableSymbols, other.m_variableSymbols);
    std::swap(m_externals, other.m_externals);
    std::swap(m_externalIndex, other.m_externalIndex);
    std::swap(m_edits, other.m_edits);
    std::swap(m_infeasible, other.m_infeasible);
    std::swap(m_values, other.m_values);
    m_externalsVersion = std::max(m_externalsVersion, other.m_externalsVersion) + 1;
    m_pivotsSinceCheck = 0;
}

// ---------------------------------------------------------------------------------------------
// Variables

SolverImpl::ConstraintRecord* SolverImpl::recordFor(const SolverConstraint& constraint) {
    const std::uint32_t* index = m_recordIndex.find(constraint.identity());
    return index ? &m_records[*index] : nullptr;
}

void SolverImpl::eraseRecord(const SolverConstraint& constraint) {
    std::uint32_t index = *m_recordIndex.find(constraint.identity());
    m_recordIndex.erase(constraint.identity());
    if (index + 1 != m_records.size()) {
        m_records[index] = std::move(m_records.back());
        *m_recordIndex.find(m_records[index].constraint.identity()) = index;
    }
    m_records.pop_back();
}

solver::Symbol SolverImpl::acquireVariable(const LayoutVariable& variable) {
    auto [symbol, inserted] = m_variableSymbols.findOrInsert(variable.identity());
    if (!inserted) {
        ++m_externals[m_externalIndex[*symbol]].uses;
        return *symbol;
    }
    *symbol = m_tableau.createSymbol(SymbolKind::External);
    if (m_externalIndex.size() <= *symbol) {
        m_externalIndex.resize(m_tableau.symbolCapacity());
    }
    m_externalIndex[*symbol] = static_cast<std::uint32_t>(m_externals.size());
    m_externals.push_back({variable, *symbol, 1});
    ++m_externalsVersion;
    return *symbol;
}

void SolverImpl::releaseVariables(const SolverConstraint& constraint) {
    for (const LayoutTerm& term : constraint.expression().terms()) {
        releaseVariable(*m_variableSymbols.find(term.variable.identity()));
    }
}

void SolverImpl::releaseVariable(Symbol symbol) {
    std::uint32_t index = m_externalIndex[symbol];
    if (--m_externals[index].uses > 0) {
        return;
    }
    m_variableSymbols.erase(m_externals[index].variable.identity());
    discardSymbol(symbol);
    if (index + 1 != m_externals.size()) {
        m_externals[index] = std::move(m_externals.back());
        m_externalIndex[m_externals[index].symbol] = index;
    }
    m_externals.pop_back();
    ++m_externalsVersion;
}

// ---------------------------------------------------------------------------------------------

void SolverImpl::beginJournal() {
    m_tableau.beginJournal();
    m_objective.beginJournal();
}

void SolverImpl::commitJournal() {
    m_tableau.commitJournal();
    m_objective.commitJournal();
}

void SolverImpl::rollbackJournal() {
    m_tableau.rollbackJournal();
    m_objective.rollbackJournal();
    m_infeasible = {};
}

void SolverImpl::reset() {
    m_recordIndex.clear();
    m_records.clear();
    m_variableSymbols.clear();
    m_externals.clear();
    m_externalIndex.clear();
    m_edits.clear();
    m_tableau.clear();
    m_objective.clear();
    m_infeasible = {};
    m_values.clear();
    ++m_externalsVersion;
    m_pivotsSinceCheck = 0;
}

bool SolverImpl::hasConstraint(const SolverConstraint& constraint) const {
    return m_recordIndex.contains(constraint.identity());
}

std::string SolverImpl::symbolName(Symbol symbol) const {
    switch (m_tableau.kind(symbol)) {
    case SymbolKind::External: {
        const std::string& name = m_externals[m_externalIndex[symbol]].variable.name();
        return name.empty() ? "v" + std::to_string(symbol) : name;
    }
    case SymbolKind::Slack:
        return "s" + std::to_string(symbol);
    case SymbolKind::Error:
        return "e" + std::to_string(symbol);
    case SymbolKind::Dummy:
        return "d" + std::to_string(symbol);
    }
    return "?";
}

std::string SolverImpl::rowDescription(const Row& row) const {
    std::vector<std::pair<Symbol, double>> cells;
    row.cells().forEach(
        [&](Symbol symbol, const Cell& cell) { cells.emplace_back(symbol, cell.coefficient); });
    std::sort(cells.begin(), cells.end());
    std::string text = formatLayoutNumber(row.constant());
    for (const auto& [symbol, coefficient] : cells) {
        text += " + " + formatLayoutNumber(coefficient) + " * " + symbolName(symbol);
    }
    return text;
}

std::string SolverImpl::description() const {
    std::string text = "Solver: " + std::to_string(m_records.size()) + " constraints, " +
                       std::to_string(m_edits.size()) + " edit variables, " +
                       std::to_string(m_tableau.rowCount()) + " rows\n";
    for (const ConstraintRecord& record : m_records) {
        text += "  constraint " + record.constraint.description() + "\n";
    }
    std::vector<RowId> rows;
    m_tableau.forEachRow([&](RowId id) { rows.push_back(id); });
    std::sort(rows.begin(), rows.end(),
              [&](RowId a, RowId b) { return m_tableau.subject(a) < m_tableau.subject(b); });
    for (RowId id : rows) {
        text += "  " + symbolName(m_tableau.subject(id)) + " = " + rowDescription(m_tableau.row(id)) + "\n";
    }
    std::vector<std::pair<Symbol, std::string>> objective;
    m_objective.forEach([&](Symbol symbol, const solver::SymbolicWeight& weight) {
        objective.emplace_back(symbol, weight.description());
    });
    std::sort(objective.begin(), objective.end());
    text += "  minimise";
    for (const auto& [symbol, weight] : objective) {
        text += " " + weight + " * " + symbolName(symbol);
    }
    return text + "\n";
}

} // namespace ns
