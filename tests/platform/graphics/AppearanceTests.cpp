#include "platform/graphics/Appearance.hpp"
#include "platform/graphics/PlatformVersion.hpp"

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

using namespace ns;

TEST(Appearance, NamedAppearancesAreSharedAndUnknownNamesAreNil) {
    auto aqua = Appearance::appearanceNamed(AppearanceNameAqua);
    ASSERT_TRUE(aqua);
    EXPECT_EQ(aqua->name(), "NSAppearanceNameAqua");
    EXPECT_EQ(Appearance::appearanceNamed("NSAppearanceNameAqua"), aqua);
    EXPECT_EQ(Appearance::appearanceNamed(AppearanceNameDarkAqua)->name(), "NSAppearanceNameDarkAqua");
    EXPECT_FALSE(Appearance::appearanceNamed("NSAppearanceNameSepia"));
    EXPECT_FALSE(Appearance::appearanceNamed(""));
}

TEST(Appearance, BestMatchPrefersItsOwnNameThenWhatItDerivesFrom) {
    auto dark = Appearance::appearanceNamed(AppearanceNameDarkAqua);
    auto vibrantDark = Appearance::appearanceNamed(AppearanceNameVibrantDark);
    std::vector<std::string> both{AppearanceNameAqua, AppearanceNameDarkAqua};
    EXPECT_EQ(dark->bestMatchFromAppearancesWithNames(both), AppearanceNameDarkAqua);
    EXPECT_EQ(Appearance::appearanceNamed(AppearanceNameAqua)->bestMatchFromAppearancesWithNames(both),
              AppearanceNameAqua);
    EXPECT_EQ(vibrantDark->bestMatchFromAppearancesWithNames(both), AppearanceNameDarkAqua);
    EXPECT_EQ(
        vibrantDark->bestMatchFromAppearancesWithNames({AppearanceNameDarkAqua, AppearanceNameVibrantDark}),
        AppearanceNameVibrantDark);
    EXPECT_EQ(dark->bestMatchFromAppearancesWithNames({AppearanceNameAqua}), std::nullopt);
    EXPECT_EQ(dark->bestMatchFromAppearancesWithNames({}), std::nullopt);
}

TEST(Appearance, CurrentAppearanceIsPerThreadAndRestoredAfterPerform) {
    auto dark = Appearance::appearanceNamed(AppearanceNameDarkAqua);
    EXPECT_FALSE(Appearance::currentAppearance());
    EXPECT_EQ(Appearance::currentDrawingAppearance()->name(), AppearanceNameAqua);
    dark->performAsCurrentDrawingAppearance([&] {
        EXPECT_EQ(Appearance::currentAppearance(), dark);
        EXPECT_TRUE(Appearance::currentDrawingAppearanceIsDark());
        Ref<Appearance> seenElsewhere = dark;
        std::thread([&] { seenElsewhere = Appearance::currentAppearance(); }).join();
        EXPECT_FALSE(seenElsewhere);
    });
    EXPECT_FALSE(Appearance::currentAppearance());
    EXPECT_THROW(dark->performAsCurrentDrawingAppearance([] { throw std::runtime_error("drawing failed"); }),
                 std::runtime_error);
    EXPECT_FALSE(Appearance::currentAppearance());
}

TEST(Appearance, ApplicationAppearanceIsTheFallback) {
    EXPECT_EQ(Appearance::applicationEffectiveAppearance()->name(), AppearanceNameAqua);
    Appearance::setApplicationEffectiveAppearance(Appearance::appearanceNamed(AppearanceNameDarkAqua));
    EXPECT_TRUE(Appearance::currentDrawingAppearanceIsDark());
    Appearance::performWithCurrentAppearance(Appearance::appearanceNamed(AppearanceNameAqua), [] {
        EXPECT_FALSE(Appearance::currentDrawingAppearanceIsDark());
    });
    Appearance::setApplicationEffectiveAppearance(nullptr);
    EXPECT_EQ(Appearance::applicationEffectiveAppearance()->name(), AppearanceNameAqua);
}

TEST(Appearance, BelowTenFourteenThereIsNoDarkAppearance) {
    auto dark = Appearance::appearanceNamed(AppearanceNameDarkAqua);
    auto saved = platformVersion();
    setPlatformVersion({10, 13, 6});
    EXPECT_FALSE(platformHasDarkAppearance());
    EXPECT_FALSE(Appearance::appearanceNamed(AppearanceNameDarkAqua));
    EXPECT_TRUE(Appearance::appearanceNamed(AppearanceNameAqua));
    dark->performAsCurrentDrawingAppearance(
        [] { EXPECT_FALSE(Appearance::currentDrawingAppearanceIsDark()); });
    setPlatformVersion({10, 14, 0});
    EXPECT_TRUE(platformHasDarkAppearance());
    EXPECT_TRUE(isPlatformVersionAtLeast({10, 13, 99}));
    EXPECT_FALSE(isPlatformVersionAtLeast({11, 0, 0}));
    setPlatformVersion(saved);
    EXPECT_EQ(describe(platformVersion()), "10.15.0");
}
