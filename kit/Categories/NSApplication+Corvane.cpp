#include "kit/Categories/NSApplication+Corvane.hpp"

#include "kit/Categories/NSAppearance+Corvane.hpp"

namespace corvane {

bool cv_effectiveAppearanceIsDarkMode(const ns::Application& application) {
    return cv_isDarkMode(*application.effectiveAppearance());
}

} // namespace corvane
