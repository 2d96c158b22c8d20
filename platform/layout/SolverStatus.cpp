#include "platform/layout/SolverStatus.hpp"

namespace ns {

const char* toString(SolverStatus status) {
    switch (status) {
    case SolverStatus::Ok:
        return "Ok";
    case SolverStatus::DuplicateConstraint:
        return "DuplicateConstraint";
    case SolverStatus::UnknownConstraint:
        return "UnknownConstraint";
    case SolverStatus::UnsatisfiableConstraint:
        return "UnsatisfiableConstraint";
    case SolverStatus::InvalidPriority:
        return "InvalidPriority";
    case SolverStatus::DuplicateEditVariable:
        return "DuplicateEditVariable";
    case SolverStatus::UnknownEditVariable:
        return "UnknownEditVariable";
    case SolverStatus::InvalidValue:
        return "InvalidValue";
    }
    return "?";
}

} // namespace ns
