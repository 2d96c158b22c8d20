#include "kit/Objects/CVDynamicColor.hpp"

#include "platform/foundation/KeyedArchiver.hpp"
#include "platform/foundation/KeyedUnarchiver.hpp"
#include "platform/graphics/Graphics.hpp"
#include "platform/views/View.hpp"
#include "support/PixelProbe.hpp"
#include "support/PlatformScopes.hpp"

#include <gtest/gtest.h>

using corvane::CVDynamicColor;

namespace {

class DynamicColor : public ::testing::Test {
protected:
    ns::Ref<ns::Color> light = ns::Color::colorWithCalibratedRed(1, 0, 0, 1);
    ns::Ref<ns::Color> dark = ns::Color::colorWithCalibratedRed(0, 0, 1, 1);
    ns::Ref<CVDynamicColor> color = CVDynamicColor::newWithAquaColor(light, dark);
    // Every test starts in a light application and restores whatever it changes.
    ApplicationAppearanceScope lightApplication{ns::AppearanceNameAqua};
};

// Fills its bounds with a colour.
class Swatch : public ns::View {
public:
    using View::View;
    ns::Ref<ns::Color> fill;
    void drawRect(ns::Rect) override {
        fill->setFill();
        ns::RectFill(bounds());
    }
};

ns::Ref<ns::Data> archive(const ns::Ref<ns::Color>& color) {
    ns::Ref<ns::Error> error;
    auto data = ns::KeyedArchiver::archivedDataWithRootObject(color, true, &error);
    EXPECT_FALSE(error);
    return data;
}

bool archiveMentions(const ns::Data& data, std::string_view text) {
    std::string bytes(data.bytes().begin(), data.bytes().end());
    return bytes.find(text) != std::string::npos;
}

} // namespace

TEST_F(DynamicColor, TheDrawingAppearanceDecidesElseTheApplications) {
    EXPECT_EQ(color->effectiveColor(), light);
    darkAqua()->performAsCurrentDrawingAppearance([&] {
        EXPECT_EQ(color->effectiveColor(), dark);
        EXPECT_DOUBLE_EQ(color->blueComponent(), 1);
        // Derived now, it is a fixed dark colour.
        auto faded = color->colorWithAlphaComponent(0.5);
        ns::Appearance::setCurrentAppearance(aqua());
        EXPECT_DOUBLE_EQ(faded->blueComponent(), 1);
        EXPECT_DOUBLE_EQ(color->redComponent(), 1);
    });

    ns::Appearance::setApplicationEffectiveAppearance(darkAqua());
    EXPECT_EQ(color->effectiveColor(), dark);
    // A light drawing pass in a dark application is light.
    aqua()->performAsCurrentDrawingAppearance([&] { EXPECT_EQ(color->effectiveColor(), light); });
    // Vibrant dark derives from dark aqua.
    ns::Appearance::appearanceNamed(ns::AppearanceNameVibrantDark)->performAsCurrentDrawingAppearance([&] {
        EXPECT_EQ(color->effectiveColor(), dark);
    });
}

TEST_F(DynamicColor, AColourTakenInTheLightStaysLight) {
    auto faded = color->colorWithAlphaComponent(0.25);
    auto blended = color->blendedColorWithFraction(0.5, ns::Color::whiteColor());
    ns::Appearance::setApplicationEffectiveAppearance(darkAqua());
    EXPECT_DOUBLE_EQ(faded->redComponent(), 1);
    EXPECT_DOUBLE_EQ(faded->alphaComponent(), 0.25);
    EXPECT_DOUBLE_EQ(blended->blueComponent(), 0.5);
    EXPECT_DOUBLE_EQ(color->blueComponent(), 1);
}

TEST_F(DynamicColor, WithoutADarkColourTheLightOneServesBoth) {
    auto lightOnly = CVDynamicColor::newWithAquaColor(light, nullptr);
    darkAqua()->performAsCurrentDrawingAppearance([&] { EXPECT_EQ(lightOnly->effectiveColor(), light); });
    color->setDarkAquaColor(nullptr);
    darkAqua()->performAsCurrentDrawingAppearance([&] { EXPECT_EQ(color->effectiveColor(), light); });
    color->setAquaColor(dark);
    EXPECT_EQ(color->effectiveColor(), dark);
}

TEST_F(DynamicColor, BelowTenFourteenEverythingIsLight) {
    auto darkAppearance = darkAqua();
    ns::Appearance::setApplicationEffectiveAppearance(darkAppearance);
    PlatformVersionScope mojaveLess({10, 13, 6});
    darkAppearance->performAsCurrentDrawingAppearance([&] {
        EXPECT_EQ(color->effectiveColor(), light);
        EXPECT_DOUBLE_EQ(color->redComponent(), 1);
    });
}

TEST_F(DynamicColor, ADarkViewDrawsTheDarkColourInALightApplication) {
    auto root = ns::create<Swatch>(ns::Rect(0, 0, 20, 10));
    root->fill = color;
    auto darkChild = ns::create<Swatch>(ns::Rect(0, 0, 10, 10));
    darkChild->fill = color;
    darkChild->setAppearance(darkAqua());
    root->addSubview(darkChild);

    auto bitmap = root->renderedBitmap();
    EXPECT_EQ(pixelAt(bitmap, 5, 5), (RGBA{0, 0, 255, 255}));
    EXPECT_EQ(pixelAt(bitmap, 15, 5), (RGBA{255, 0, 0, 255}));
    EXPECT_EQ(color->effectiveColor(), light); // nothing stays behind after the pass
}

TEST_F(DynamicColor, ArchivesBothColoursUnderTheirKeys) {
    auto data = archive(color);
    ASSERT_TRUE(data);
    EXPECT_TRUE(archiveMentions(*data, "CVDynamicColor"));
    EXPECT_TRUE(archiveMentions(*data, "darkAquaColor"));

    ns::Ref<ns::Error> error;
    auto decoded = std::dynamic_pointer_cast<CVDynamicColor>(
        ns::KeyedUnarchiver::unarchivedObjectOfClass<ns::Color>(*data, &error));
    ASSERT_TRUE(decoded) << (error ? error->localizedDescription() : "");
    EXPECT_TRUE(decoded->aquaColor()->isEqual(*light));
    EXPECT_TRUE(decoded->darkAquaColor()->isEqual(*dark));
    darkAqua()->performAsCurrentDrawingAppearance([&] { EXPECT_DOUBLE_EQ(decoded->blueComponent(), 1); });
}

TEST_F(DynamicColor, WithoutADarkColourNoDarkEntryIsWritten) {
    auto data = archive(CVDynamicColor::newWithAquaColor(light, nullptr));
    ASSERT_TRUE(data);
    EXPECT_TRUE(archiveMentions(*data, "aquaColor"));
    EXPECT_FALSE(archiveMentions(*data, "darkAquaColor"));

    auto decoded = std::dynamic_pointer_cast<CVDynamicColor>(
        ns::KeyedUnarchiver::unarchivedObjectOfClass<ns::Color>(*data));
    ASSERT_TRUE(decoded);
    EXPECT_TRUE(decoded->aquaColor()->isEqual(*light));
    EXPECT_EQ(decoded->darkAquaColor(), nullptr);
}
