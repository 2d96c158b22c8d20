#include "platform/foundation/Error.hpp"

#include "platform/foundation/Format.hpp"

namespace ns {

std::string Error::localizedDescription() const {
    auto found = m_userInfo.find(LocalizedDescriptionKey);
    if (found != m_userInfo.end() && found->second.isString())
        return *found->second.string();
    return format("The operation couldn\u2019t be completed. (%@ error %ld.)", m_domain, m_code);
}

std::string Error::description() const {
    return format("Error Domain=%@ Code=%ld \"%@\"", m_domain, m_code, localizedDescription());
}

} // namespace ns
