#include "kit/Categories/NSAppearance+Corvane.hpp"

#include "platform/graphics/PlatformVersion.hpp"

namespace corvane {

bool cv_isDarkMode(const ns::Appearance& appearance) {
    if (!ns::platformHasDarkAppearance())
        return false;
    // Dark is asked first here (unlike a dynamic colour's choice), so an appearance that
    // matches both names equally counts as dark.
    auto match =
        appearance.bestMatchFromAppearancesWithNames({ns::AppearanceNameDarkAqua, ns::AppearanceNameAqua});
    return match == ns::AppearanceNameDarkAqua;
}

} // namespace corvane
