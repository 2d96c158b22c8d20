#include "core/IsNilOrEmpty.hpp"

namespace corvane::core {

bool isNilOrEmpty(const std::optional<std::string>& string) {
    return !string || string->empty();
}

} // namespace corvane::core
