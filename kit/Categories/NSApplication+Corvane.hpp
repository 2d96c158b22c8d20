#pragma once

#include "platform/views/Application.hpp"

namespace corvane {

// Whether the application's effective appearance is dark (cv_isDarkMode); false below 10.14.
bool cv_effectiveAppearanceIsDarkMode(const ns::Application& application);

} // namespace corvane
