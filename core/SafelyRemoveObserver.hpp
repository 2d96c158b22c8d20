#pragma once

#include "platform/foundation/Object.hpp"

#include <string_view>

namespace corvane::core {

// Removes the observation of `keyPath` on `observed` by `observer` with `context` when there is
// one. An absent observation is not an error here: nothing is logged and false is returned.
bool safelyRemoveObserver(ns::Object& observed, ns::Object& observer, std::string_view keyPath,
                          void* context);

} // namespace corvane::core
