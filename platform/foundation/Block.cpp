#include "platform/foundation/Block.hpp"

#include "platform/foundation/Demangle.hpp"

#include <cstdio>

namespace ns {

std::string Block::signature() const {
    return m_signature ? demangle(*m_signature) : std::string();
}

std::string Block::description() const {
    char address[32];
    std::snprintf(address, sizeof address, "%p", identity());
    return "<Block " + signature() + ": " + address + ">";
}

} // namespace ns
