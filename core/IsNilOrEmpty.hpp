#pragma once

#include <optional>
#include <string>

namespace corvane::core {

// True for a missing string or one of length 0.
bool isNilOrEmpty(const std::optional<std::string>& string);

} // namespace corvane::core
