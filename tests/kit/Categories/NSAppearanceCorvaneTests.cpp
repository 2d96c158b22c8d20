#include "kit/Categories/NSAppearance+Corvane.hpp"

#include "support/PlatformScopes.hpp"

#include <gtest/gtest.h>

using corvane::cv_isDarkMode;

TEST(AppearanceDarkMode, DarkAquaAndWhatDerivesFromItAreDark) {
    EXPECT_FALSE(cv_isDarkMode(*aqua()));
    EXPECT_TRUE(cv_isDarkMode(*darkAqua()));
    EXPECT_TRUE(cv_isDarkMode(*ns::Appearance::appearanceNamed(ns::AppearanceNameVibrantDark)));
    EXPECT_FALSE(cv_isDarkMode(*ns::Appearance::appearanceNamed(ns::AppearanceNameVibrantLight)));
    // One that matches neither name is not dark.
    EXPECT_FALSE(cv_isDarkMode(ns::Appearance("Sepia", {"Sepia"})));
}

TEST(AppearanceDarkMode, NothingIsDarkBelowTenFourteen) {
    auto dark = darkAqua();
    PlatformVersionScope old({10, 13, 6});
    EXPECT_FALSE(cv_isDarkMode(*dark));
}
