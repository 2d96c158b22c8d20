#pragma once

#include "platform/layout/LayoutVariable.hpp"
#include "platform/layout/SolverConstraint.hpp"
#include "platform/layout/SolverStatus.hpp"

#include <cstddef>
#include <memory>
#include <string>

namespace ns {

class SolverImpl;

// The layout constraint solver: an incremental simplex in the Cassowary family. Constraints are
// added, removed and changed one at a time, and each change re-solves from the previous
// solution, touching only the rows it concerns.
//
// Priorities are strict: a constraint at a higher priority always wins over any number of
// conflicting lower ones (one at 751 beats a thousand at 750). Within a priority, the solver
// minimises the sum of the errors. Required constraints (priority 1000) always hold; one that
// cannot is refused.
//
// Every operation that can be refused returns a status; a refused operation leaves the solver
// exactly as it was. The solver never throws. Solved values reach the variables only through
// updateVariables(). A moved-from solver may only be assigned to or destroyed.
class Solver {
public:
    Solver();
    ~Solver();
    Solver(Solver&& other) noexcept;
    Solver& operator=(Solver&& other) noexcept;
    Solver(const Solver&) = delete;
    Solver& operator=(const Solver&) = delete;

    // Adds a constraint and re-solves.
    // DuplicateConstraint if it is already here; InvalidPriority if its priority is outside
    // (0, 1000]; InvalidValue if its expression holds an infinite or NaN number;
    // UnsatisfiableConstraint if it is required and contradicts the required constraints already
    // here. Preferences are never refused for conflicting: they give way instead.
    SolverStatus addConstraint(const SolverConstraint& constraint);

    // Removes a constraint and re-solves; the solution is what it would be had the constraint
    // never been added (when several solutions are equally good, it may settle on another one of
    // them). UnknownConstraint if it is not here.
    SolverStatus removeConstraint(const SolverConstraint& constraint);

    bool hasConstraint(const SolverConstraint& constraint) const;

    // Replaces the constant of the constraint's expression (in its `expression relation 0` form)
    // and re-solves in place, without removing the constraint: the cheap way to follow a changed
    // offset or size. The constraint handle reports the new constant afterwards.
    // UnknownConstraint if it is not here; InvalidValue for an infinite or NaN constant;
    // UnsatisfiableConstraint if the constraint is required and the new constant contradicts the
    // other required constraints (the old constant stays).
    SolverStatus setConstant(const SolverConstraint& constraint, double constant);

    // Moves a constraint to another priority and re-solves. Between two preference levels this
    // happens in place; to or from required the constraint is replaced.
    // UnknownConstraint if it is not here; InvalidPriority if outside (0, 1000];
    // UnsatisfiableConstraint if making it required contradicts the required constraints (it
    // stays at its old priority).
    SolverStatus setPriority(const SolverConstraint& constraint, float priority);

    // Starts editing a variable: adds `variable == value` at the given priority, starting from
    // the variable's current value. DuplicateEditVariable if it is already being edited;
    // InvalidPriority unless the priority is a preference (in (0, 1000)).
    SolverStatus addEditVariable(const LayoutVariable& variable, float priority);

    // Stops editing a variable. UnknownEditVariable if it is not being edited.
    SolverStatus removeEditVariable(const LayoutVariable& variable);

    bool hasEditVariable(const LayoutVariable& variable) const;

    // Asks for a new value of an edited variable and re-solves; the variable takes it as far as
    // higher priorities allow. UnknownEditVariable if the variable is not being edited;
    // InvalidValue for an infinite or NaN value.
    SolverStatus suggestValue(const LayoutVariable& variable, double value);

    // Writes the current solution into every variable used by a constraint or an edit. A
    // variable no constraint determines gets 0.
    void updateVariables();

    // Forgets every constraint, edit and variable. Variables keep their last values.
    void reset();

    std::size_t constraintCount() const;

    // The constraints, the rows of the tableau and the objective, for diagnostics.
    std::string description() const;

private:
    std::unique_ptr<SolverImpl> m_impl;
};

} // namespace ns
