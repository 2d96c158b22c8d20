#include "platform/foundation/Notification.hpp"

#include "platform/foundation/Format.hpp"

namespace ns {

std::string Notification::description() const {
    return format("%@ name = %@, object = %@, userInfo = %@", className(), m_name, m_object,
                  Value(m_userInfo));
}

} // namespace ns
