#include "core/SafelyRemoveObserver.hpp"

namespace corvane::core {

bool safelyRemoveObserver(ns::Object& observed, ns::Object& observer, std::string_view keyPath,
                          void* context) {
    // Asking first keeps the platform from reporting the absent observation as a programming error.
    if (!observed.isObservedBy(observer, keyPath, context))
        return false;
    return observed.removeObserver(observer, keyPath, context);
}

} // namespace corvane::core
