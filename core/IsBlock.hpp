#pragma once

#include "platform/foundation/Value.hpp"

namespace corvane::core {

// True when the value holds a callback (an ns::Block), whatever its signature; false for nil.
bool isBlock(const ns::Value& value);

} // namespace corvane::core
