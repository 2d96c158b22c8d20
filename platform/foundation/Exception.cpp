#include "platform/foundation/Exception.hpp"

namespace ns {

Exception::Exception(std::string name, std::string reason)
    : std::runtime_error(name + ": " + reason), m_name(std::move(name)), m_reason(std::move(reason)) {}

std::string Exception::description() const {
    return m_name + ": " + m_reason;
}

void Exception::raise(std::string name, std::string reason) {
    throw Exception(std::move(name), std::move(reason));
}

} // namespace ns
