#include "kit/Categories/NSPopover+Corvane.hpp"

#include "support/PlatformScopes.hpp"

#include <gtest/gtest.h>

using namespace corvane;

TEST(PopoverAppearance, AdoptsTheApplicationsLookOnceAndKeepsIt) {
    auto popover = ns::Popover::make();
    ApplicationAppearanceScope dark(ns::AppearanceNameDarkAqua);
    cv_adoptAppearance(*popover);
    EXPECT_EQ(popover->appearance(), darkAqua());
    ns::Appearance::setApplicationEffectiveAppearance(aqua());
    EXPECT_EQ(popover->appearance(), darkAqua());
    cv_adoptAppearance(*popover);
    EXPECT_EQ(popover->appearance(), aqua());
}

TEST(PopoverAppearance, HUDIsDarkEvenInALightApplication) {
    auto popover = ns::Popover::make();
    ApplicationAppearanceScope light(ns::AppearanceNameAqua);
    cv_adoptHUDAppearance(*popover);
    EXPECT_EQ(popover->appearance(), darkAqua());
    EXPECT_EQ(popover->effectiveAppearance(), darkAqua());
}

TEST(PopoverAppearance, BelowTenFourteenBothAreLight) {
    auto popover = ns::Popover::make();
    ApplicationAppearanceScope dark(ns::AppearanceNameDarkAqua);
    PlatformVersionScope old({10, 13, 6});
    cv_adoptHUDAppearance(*popover);
    EXPECT_EQ(popover->appearance(), aqua());
    popover->setAppearance(nullptr);
    cv_adoptAppearance(*popover);
    EXPECT_EQ(popover->appearance(), aqua());
}
