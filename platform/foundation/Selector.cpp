#include "platform/foundation/Selector.hpp"

#include <algorithm>

namespace ns {

size_t Selector::argumentCount() const {
    return static_cast<size_t>(std::count(m_name.begin(), m_name.end(), ':'));
}

} // namespace ns
