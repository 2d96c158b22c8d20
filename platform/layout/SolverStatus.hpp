#pragma once

namespace ns {

// What a Solver operation did. Every refusal leaves the solver as it was.
enum class SolverStatus {
    Ok,
    DuplicateConstraint,     // the constraint is already in the solver
    UnknownConstraint,       // the constraint is not in the solver
    UnsatisfiableConstraint, // a required constraint (or a required constant) contradicts the others
    InvalidPriority,         // outside (0, 1000], not a number, or required where only a preference may be
    DuplicateEditVariable,   // the variable is already being edited
    UnknownEditVariable,     // the variable is not being edited
    InvalidValue,            // a coefficient, constant or suggested value is infinite or not a number
};

// The enumerator's name, e.g. "UnsatisfiableConstraint".
const char* toString(SolverStatus status);

} // namespace ns
