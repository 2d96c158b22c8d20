#pragma once

#include "platform/layout/LayoutExpression.hpp"

#include <cstddef>
#include <memory>
#include <string>

namespace ns {

class SolverImpl;

// One linear relation for the layout solver: `expression relation 0`, held at a priority.
// Priorities run from 1 to 1000; 1000 is required (always holds, or the solver refuses it), and
// any lower priority is a preference that gives way, strictly, to every higher one.
//
// Copies share the same constraint; equality is identity. A solver changes the constant and the
// priority through Solver::setConstant / Solver::setPriority, which keep this handle up to date.
class SolverConstraint {
public:
    enum class Relation { LessOrEqual, Equal, GreaterOrEqual };

    static constexpr float Required = 1000;

    // `lhs relation rhs`, stored simplified (each variable once) as `lhs - rhs relation 0`.
    // There is deliberately no form without the right-hand side: a bare number there would read as
    // a priority. Write `SolverConstraint(expression, relation, 0)`.
    SolverConstraint(const LayoutExpression& lhs, Relation relation, const LayoutExpression& rhs,
                     float priority = Required);

    const LayoutExpression& expression() const { return m_data->expression; }
    Relation relation() const { return m_data->relation; }
    float priority() const { return m_data->priority; }
    bool isRequired() const { return m_data->priority >= Required; }

    bool operator==(const SolverConstraint& other) const { return m_data == other.m_data; }
    std::size_t hash() const { return std::hash<const void*>{}(m_data.get()); }
    // What equality compares: the same for every copy, different for every constraint.
    const void* identity() const { return m_data.get(); }

    // "x + -1 * y + -8 == 0 @750" (no "@" part when required).
    std::string description() const;

private:
    friend class SolverImpl;

    struct Data {
        LayoutExpression expression;
        Relation relation;
        float priority;
    };
    std::shared_ptr<Data> m_data;
};

} // namespace ns

template <>
struct std::hash<ns::SolverConstraint> {
    std::size_t operator()(const ns::SolverConstraint& constraint) const { return constraint.hash(); }
};
