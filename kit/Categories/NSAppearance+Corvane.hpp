#pragma once

#include "platform/graphics/Appearance.hpp"

namespace corvane {

// Whether the appearance is dark: it matches dark aqua at least as well as aqua. Always false
// on a platform release without a dark appearance (below 10.14).
bool cv_isDarkMode(const ns::Appearance& appearance);

} // namespace corvane
