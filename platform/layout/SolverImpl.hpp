#pragma once

#include "platform/layout/LayoutVariable.hpp"
#include "platform/layout/SolverConstraint.hpp"
#include "platform/layout/SolverStatus.hpp"
#include "platform/layout/solver/FlatMap.hpp"
#include "platform/layout/solver/Objective.hpp"
#include "platform/layout/solver/Row.hpp"
#include "platform/layout/solver/Tableau.hpp"
#include "platform/layout/solver/ValueProgram.hpp"

#include <cstdint>
#include <queue>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace ns {

// The incremental simplex behind Solver (see Solver.hpp for the contract of each operation).
//
// Rows come in two kinds. A row whose subject is restricted (slack, error, dummy) takes part in
// feasibility and optimality and is kept fully reduced: it mentions non-basic symbols only, as in
// the textbook tableau. A row whose subject is a layout variable is never tested by the simplex;
// it only says how to compute that variable, so it may mention other basic symbols and is left
// as the constraint wrote it. A chain of views then costs a few cells per link instead of a row
// per view that sums everything before it. The rows of variables form an acyclic graph; values
// are read by walking it (updateVariables).
//
// Invariants between operations:
//  - restricted rows and the objective mention no basic symbol, and no non-basic variable;
//  - every restricted row is feasible (constant >= 0; a basic dummy is 0) and no objective
//    cell is negative (no symbol could lower it by entering).
//
// Rounding: tolerances live in solver/Symbol.hpp; every simplex run has a pivot budget; and a
// tableau whose solution has drifted from the required constraints is rebuilt (checkDrift).
class SolverImpl {
public:
    SolverImpl();

    SolverStatus addConstraint(const SolverConstraint& constraint);
    SolverStatus removeConstraint(const SolverConstraint& constraint);
    bool hasConstraint(const SolverConstraint& constraint) const;
    SolverStatus setConstant(const SolverConstraint& constraint, double constant);
    SolverStatus setPriority(const SolverConstraint& constraint, float priority);

    SolverStatus addEditVariable(const LayoutVariable& variable, float priority);
    SolverStatus removeEditVariable(const LayoutVariable& variable);
    bool hasEditVariable(const LayoutVariable& variable) const;
    SolverStatus suggestValue(const LayoutVariable& variable, double value);

    void updateVariables();
    void reset();

    std::size_t constraintCount() const { return m_records.size(); }
    std::string description() const;

private:
    using Symbol = solver::Symbol;
    using RowId = solver::RowId;
    using Row = solver::Row;

    struct ConstraintRecord {
        // Held so that its identity, the key of m_recordIndex, stays taken while it is here.
        SolverConstraint constraint;
        // The marker identifies the constraint's equation inside every row; `other` is the second
        // symbol a preference brings (NoSymbol when there is none).
        Symbol marker = solver::NoSymbol;
        Symbol other = solver::NoSymbol;
        // The equation is sign * expression plus the marker and other terms; markerCoefficient is
        // the marker's coefficient in it.
        double sign = 1;
        double markerCoefficient = 1;
        double constant = 0;
        float priority = SolverConstraint::Required;

        bool isRequired() const { return priority >= SolverConstraint::Required; }
    };
    struct External {
        LayoutVariable variable;
        Symbol symbol;
        std::uint32_t uses; // constraints that mention the variable
    };

    // Adding.
    Row makeRow(const SolverConstraint& constraint, ConstraintRecord& record);
    bool placeRow(Row row, const ConstraintRecord& record);
    bool placeLazily(Row& row);
    void insertVariableRow(Symbol subject, Row row, bool rowIsReduced);
    Symbol restrictedSubject(const Row& row, const ConstraintRecord& record) const;
    bool placeWithArtificialVariable(Row row);
    void optimizePhaseOne(Row& phaseOne);
    void retireArtificial(Symbol artificial);
    void addErrorsToObjective(const ConstraintRecord& record, double factor);

    // Removing.
    void eliminateMarker(Symbol marker);
    RowId markerLeavingRow(Symbol marker);
    void discardSymbol(Symbol symbol);

    // Changing a constant.
    void shiftConstant(const ConstraintRecord& record, double delta);

    // The simplex.
    void pivot(Symbol entering, RowId id, Row* phaseOne = nullptr);
    void optimize();
    RowId primalLeavingRow(Symbol entering) const;
    bool dualOptimize();
    Symbol dualEntering(RowId id) const;
    bool isInfeasible(RowId id) const;
    void noteIfInfeasible(RowId id);
    bool restoreOptimality();
    std::size_t pivotBudget() const;

    // The graph of variable rows.
    Row expanded(const Row& row);
    bool refersToDependentOf(const Row& row, Symbol symbol);

    // Records.
    ConstraintRecord* recordFor(const SolverConstraint& constraint);
    void eraseRecord(const SolverConstraint& constraint);
    Symbol acquireVariable(const LayoutVariable& variable);
    void releaseVariables(const SolverConstraint& constraint);
    void releaseVariable(Symbol symbol);

    // Values and their upkeep.
    void computeValues();
    void checkDrift();
    void refreshObjective();
    bool hasDrifted();
    void rebuild();
    void adoptState(SolverImpl& other);

    void beginJournal();
    void commitJournal();
    void rollbackJournal();

    std::string symbolName(Symbol symbol) const;
    std::string rowDescription(const Row& row) const;

    solver::Tableau m_tableau;
    solver::Objective m_objective;
    // Constraints by identity, as indexes into m_records (kept dense).
    solver::FlatMap<const void*, std::uint32_t> m_recordIndex;
    std::vector<ConstraintRecord> m_records;
    // Layout variables by identity, and what the solver knows of each (m_externalIndex maps a
    // variable's symbol to its place in m_externals, which is kept dense).
    solver::FlatMap<const void*, Symbol> m_variableSymbols;
    std::vector<External> m_externals;
    std::vector<std::uint32_t> m_externalIndex;
    std::unordered_map<LayoutVariable, SolverConstraint> m_edits;
    std::priority_queue<Symbol, std::vector<Symbol>, std::greater<Symbol>> m_infeasible;

    // Scratch space reused across calls.
    std::vector<RowId> m_rowScratch;
    std::vector<Symbol> m_symbolScratch;
    std::vector<Symbol> m_backwardScratch;
    std::vector<std::pair<Symbol, bool>> m_walk;
    solver::ValueProgram m_values;
    std::vector<Symbol> m_externalSymbols;
    std::uint64_t m_externalsVersion = 1; // changes whenever m_externals does

    static constexpr double DriftTolerance = 1.0e-9; // relative miss of a required constraint
    std::size_t m_pivotsSinceCheck = 0;
    bool m_rebuilding = false;
};

} // namespace ns
