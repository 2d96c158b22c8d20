#include "kit/Categories/NSApplication+Corvane.hpp"

#include "support/PlatformScopes.hpp"

#include <gtest/gtest.h>

using corvane::cv_effectiveAppearanceIsDarkMode;

TEST(ApplicationDarkMode, FollowsTheApplicationsAppearanceNotTheDrawingOne) {
    auto& application = *ns::Application::shared();
    {
        ApplicationAppearanceScope light(ns::AppearanceNameAqua);
        darkAqua()->performAsCurrentDrawingAppearance(
            [&] { EXPECT_FALSE(cv_effectiveAppearanceIsDarkMode(application)); });
    }
    ApplicationAppearanceScope dark(ns::AppearanceNameDarkAqua);
    EXPECT_TRUE(cv_effectiveAppearanceIsDarkMode(application));
    PlatformVersionScope old({10, 13, 6});
    EXPECT_FALSE(cv_effectiveAppearanceIsDarkMode(application));
}
