#include "platform/layout/SolverConstraint.hpp"

namespace ns {

SolverConstraint::SolverConstraint(const LayoutExpression& lhs, Relation relation,
                                   const LayoutExpression& rhs, float priority)
    : m_data(std::make_shared<Data>(Data{(lhs - rhs).simplified(), relation, priority})) {}

std::string SolverConstraint::description() const {
    static constexpr const char* symbols[] = {"<=", "==", ">="};
    std::string text = expression().description() + " " + symbols[static_cast<int>(relation())] + " 0";
    if (!isRequired()) {
        text += " @" + formatLayoutNumber(priority());
    }
    return text;
}

} // namespace ns
