#include "platform/layout/LayoutVariable.hpp"

#include "platform/layout/LayoutExpression.hpp"

namespace ns {

LayoutVariable::LayoutVariable(std::string name) : m_data(std::make_shared<Data>()) {
    m_data->name = std::move(name);
}

std::string LayoutVariable::description() const {
    return (name().empty() ? std::string("<variable>") : name()) + " = " + formatLayoutNumber(value());
}

} // namespace ns
