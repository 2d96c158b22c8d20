#include "kit/Categories/NSPopover+Corvane.hpp"

#include "kit/Categories/NSApplication+Corvane.hpp"
#include "platform/graphics/Appearance.hpp"
#include "platform/graphics/PlatformVersion.hpp"

namespace corvane {

namespace {
void adopt(ns::Popover& popover, bool dark) {
    popover.setAppearance(
        ns::Appearance::appearanceNamed(dark ? ns::AppearanceNameDarkAqua : ns::AppearanceNameAqua));
}
} // namespace

void cv_adoptAppearance(ns::Popover& popover) {
    // Already false below 10.14.
    adopt(popover, cv_effectiveAppearanceIsDarkMode(*ns::Application::shared()));
}

void cv_adoptHUDAppearance(ns::Popover& popover) {
    adopt(popover, ns::platformHasDarkAppearance());
}

} // namespace corvane
