#include "Canvas.hpp"
#include "support/PlatformScopes.hpp"

#include "platform/foundation/Log.hpp"
#include "platform/graphics/Appearance.hpp"
#include "platform/graphics/CGColor.hpp"
#include "platform/graphics/Color.hpp"
#include "platform/graphics/ColorList.hpp"
#include "platform/graphics/Graphics.hpp"
#include "platform/graphics/Image.hpp"
#include "platform/graphics/PlatformVersion.hpp"

#include <gtest/gtest.h>

using namespace ns;

namespace {

// A colour that stands for one of two colours, chosen by a switch at each call.
class SwitchColor : public Color {
public:
    SwitchColor(Ref<Color> off, Ref<Color> on) : m_off(std::move(off)), m_on(std::move(on)) {}
    Ref<Color> resolvedColor() const override { return m_useOn ? m_on : m_off; }
    bool m_useOn = false;

private:
    Ref<Color> m_off, m_on;
};

class LoopColor : public Color {
public:
    Ref<Color> resolvedColor() const override { return target; }
    Ref<Color> target;
};

Ref<Color> patternColor() {
    auto image = Image::make({2, 2});
    image->lockFocus();
    Color::redColor()->set();
    RectFill({0, 0, 2, 2});
    image->unlockFocus();
    return Color::colorWithPatternImage(image);
}

} // namespace

TEST(Color, RGBSpacesKeepTheirComponentsAndReportTheirNames) {
    auto calibrated = Color::colorWithCalibratedRed(0.2, 0.4, 0.6, 0.8);
    EXPECT_EQ(calibrated->colorSpaceName(), CalibratedRGBColorSpace);
    EXPECT_EQ(calibrated->numberOfComponents(), 4);
    EXPECT_EQ(calibrated->components(), (std::vector<double>{0.2, 0.4, 0.6, 0.8}));

    auto device = calibrated->colorUsingColorSpaceName(DeviceRGBColorSpace);
    ASSERT_TRUE(device);
    EXPECT_EQ(device->colorSpaceName(), DeviceRGBColorSpace);
    EXPECT_DOUBLE_EQ(device->redComponent(), 0.2);
    EXPECT_DOUBLE_EQ(device->blueComponent(), 0.6);
    EXPECT_DOUBLE_EQ(device->alphaComponent(), 0.8);

    // The plain constructor is sRGB, which reports the custom space name.
    auto plain = Color::colorWithRed(1, 0.5, 0, 1);
    EXPECT_EQ(plain->colorSpaceName(), CustomColorSpace);
    EXPECT_EQ(plain->colorSpace(), ColorSpace::sRGBColorSpace());
    auto asCalibrated = plain->colorUsingColorSpaceName(CalibratedRGBColorSpace);
    ASSERT_TRUE(asCalibrated);
    EXPECT_DOUBLE_EQ(asCalibrated->greenComponent(), 0.5);

    // A colour already in the space is the same object.
    EXPECT_EQ(calibrated->colorUsingColorSpaceName(CalibratedRGBColorSpace), calibrated);
}

TEST(Color, GreyConvertsToRGBAndBackByLuma) {
    auto grey = Color::colorWithCalibratedWhite(0.25, 0.5);
    EXPECT_EQ(grey->colorSpaceName(), CalibratedWhiteColorSpace);
    EXPECT_EQ(grey->numberOfComponents(), 2);
    EXPECT_DOUBLE_EQ(grey->whiteComponent(), 0.25);
    auto rgb = grey->colorUsingColorSpaceName(CalibratedRGBColorSpace);
    ASSERT_TRUE(rgb);
    EXPECT_EQ(rgb->components(), (std::vector<double>{0.25, 0.25, 0.25, 0.5}));

    auto green = Color::colorWithDeviceRed(0, 1, 0, 1)->colorUsingColorSpaceName(DeviceWhiteColorSpace);
    ASSERT_TRUE(green);
    EXPECT_NEAR(green->whiteComponent(), 0.7154, 1e-12);
    // Reading a grey component of an RGB colour converts on the fly.
    EXPECT_NEAR(Color::colorWithCalibratedRed(1, 1, 1, 1)->whiteComponent(), 1.0, 1e-12);
    EXPECT_DOUBLE_EQ(Color::colorWithDeviceWhite(0.3, 1)->redComponent(), 0.3);
}

TEST(Color, CMYKConvertsBothWays) {
    auto cmyk = Color::colorWithDeviceCyan(0.2, 0.4, 0.6, 0.5, 1);
    EXPECT_EQ(cmyk->colorSpaceName(), DeviceCMYKColorSpace);
    EXPECT_EQ(cmyk->numberOfComponents(), 5);
    EXPECT_DOUBLE_EQ(cmyk->blackComponent(), 0.5);
    auto rgb = cmyk->colorUsingColorSpaceName(CalibratedRGBColorSpace);
    ASSERT_TRUE(rgb);
    EXPECT_DOUBLE_EQ(rgb->redComponent(), 0.8 * 0.5);
    EXPECT_DOUBLE_EQ(rgb->greenComponent(), 0.6 * 0.5);
    EXPECT_DOUBLE_EQ(rgb->blueComponent(), 0.4 * 0.5);

    // Going back takes as much black as possible, so (0.4, 0.3, 0.2) is 60% black.
    auto back = rgb->colorUsingColorSpaceName(DeviceCMYKColorSpace);
    ASSERT_TRUE(back);
    double c, m, y, k, a;
    back->getCyan(&c, &m, &y, &k, &a);
    EXPECT_NEAR(c, 0, 1e-12);
    EXPECT_NEAR(m, 0.25, 1e-12);
    EXPECT_NEAR(y, 0.5, 1e-12);
    EXPECT_NEAR(k, 0.6, 1e-12);
    EXPECT_DOUBLE_EQ(a, 1);
    auto again = back->colorUsingColorSpaceName(CalibratedRGBColorSpace);
    EXPECT_NEAR(again->redComponent(), 0.4, 1e-12);
    EXPECT_NEAR(again->blueComponent(), 0.2, 1e-12);
    // Black has no colour left to describe.
    EXPECT_DOUBLE_EQ(Color::blackColor()->cyanComponent(), 0);
    EXPECT_DOUBLE_EQ(Color::blackColor()->blackComponent(), 1);
}

TEST(Color, HueSaturationBrightness) {
    auto green = Color::colorWithCalibratedHue(1.0 / 3.0, 1, 1, 1);
    EXPECT_NEAR(green->redComponent(), 0, 1e-12);
    EXPECT_NEAR(green->greenComponent(), 1, 1e-12);
    double h, s, b, a;
    Color::colorWithCalibratedRed(0.5, 0.25, 0.25, 1)->getHue(&h, &s, &b, &a);
    EXPECT_NEAR(h, 0, 1e-12);
    EXPECT_NEAR(s, 0.5, 1e-12);
    EXPECT_NEAR(b, 0.5, 1e-12);
    // Hue 1 wraps to red; magenta-ish hues come back from their RGB.
    EXPECT_NEAR(Color::colorWithHue(1.0, 1, 1, 1)->redComponent(), 1, 1e-12);
    EXPECT_NEAR(Color::colorWithHue(0.9, 0.5, 0.8, 1)->hueComponent(), 0.9, 1e-12);
}

TEST(Color, BadInputGivesNilOrZero) {
    EXPECT_FALSE(
        Color::colorWithColorSpace(ColorSpace::genericRGBColorSpace(), std::vector<double>{1, 0, 0}));
    EXPECT_FALSE(Color::colorWithColorSpace(nullptr, std::vector<double>{1, 1}));
    EXPECT_FALSE(Color::colorWithPatternImage(nullptr));
    EXPECT_FALSE(Color::colorWithCatalogName("System", "noSuchColor"));
    EXPECT_FALSE(Color::colorWithCatalogName("No Such List", "Snow"));
    EXPECT_FALSE(Color::systemColorNamed("noSuchColor"));
    auto red = Color::redColor();
    EXPECT_FALSE(red->colorUsingColorSpaceName("NoSuchSpace"));
    EXPECT_FALSE(red->colorUsingColorSpaceName(CustomColorSpace));
    EXPECT_FALSE(red->colorUsingColorSpaceName(NamedColorSpace));
    EXPECT_FALSE(red->colorUsingColorSpace(nullptr));
    EXPECT_FALSE(red->blendedColorWithFraction(0.5, nullptr));
    // Alpha is clamped; other components are kept as given.
    EXPECT_DOUBLE_EQ(Color::colorWithCalibratedRed(-0.5, 2, 0, 7)->alphaComponent(), 1);
    EXPECT_DOUBLE_EQ(Color::colorWithCalibratedRed(-0.5, 2, 0, 7)->redComponent(), -0.5);
    EXPECT_DOUBLE_EQ(red->colorWithAlphaComponent(-3)->alphaComponent(), 0);

    LogCapture log;
    EXPECT_EQ(red->catalogNameComponent(), "");
    EXPECT_TRUE(log.contains("catalogNameComponent not valid"));
}

TEST(Color, PatternColourHasNoRGBForm) {
    auto pattern = patternColor();
    ASSERT_TRUE(pattern);
    EXPECT_EQ(pattern->colorSpaceName(), PatternColorSpace);
    EXPECT_TRUE(pattern->patternImage());
    EXPECT_FALSE(pattern->colorUsingColorSpaceName(CalibratedRGBColorSpace));
    EXPECT_FALSE(pattern->colorUsingColorSpace(ColorSpace::deviceRGBColorSpace()));
    EXPECT_FALSE(pattern->blendedColorWithFraction(0.5, Color::whiteColor()));
    EXPECT_EQ(pattern->colorUsingColorSpaceName(PatternColorSpace), pattern);
    EXPECT_EQ(pattern->numberOfComponents(), 0);
    double rgba[4];
    EXPECT_FALSE(pattern->deviceRGBA(rgba));

    LogCapture log;
    EXPECT_EQ(pattern->redComponent(), 0);
    EXPECT_TRUE(log.contains("redComponent not valid"));
}

TEST(Color, PatternColourTilesItsImage) {
    Canvas canvas(6, 6);
    patternColor()->setFill();
    RectFill({0, 0, 6, 6});
    EXPECT_EQ(canvas.pixel(0, 0), (RGBA{255, 0, 0, 255}));
    EXPECT_EQ(canvas.pixel(5, 5), (RGBA{255, 0, 0, 255}));
}

TEST(Color, DerivedColours) {
    auto grey = Color::colorWithCalibratedWhite(0.2, 1);
    auto mixed = grey->blendedColorWithFraction(0.5, Color::colorWithCalibratedWhite(0.6, 0));
    ASSERT_TRUE(mixed);
    EXPECT_EQ(mixed->colorSpaceName(), CalibratedWhiteColorSpace);
    EXPECT_NEAR(mixed->whiteComponent(), 0.4, 1e-12);
    EXPECT_NEAR(mixed->alphaComponent(), 0.5, 1e-12);

    // Mixing into a device RGB colour stays device RGB; into grey with RGB gives calibrated RGB.
    auto device = Color::colorWithDeviceRed(1, 0, 0, 1);
    EXPECT_EQ(device->blendedColorWithFraction(0.25, Color::blueColor())->colorSpaceName(),
              DeviceRGBColorSpace);
    EXPECT_EQ(grey->blendedColorWithFraction(0.25, device)->colorSpaceName(), CalibratedRGBColorSpace);
    EXPECT_NEAR(device->blendedColorWithFraction(2.0, Color::blueColor())->blueComponent(), 1, 1e-12);

    auto highlight = device->highlightWithLevel(0.5);
    EXPECT_NEAR(highlight->greenComponent(), 0.5, 1e-12);
    auto shadow = device->shadowWithLevel(0.25);
    EXPECT_NEAR(shadow->redComponent(), 0.75, 1e-12);

    EXPECT_NEAR(device->colorWithSystemEffect(ColorSystemEffect::Pressed)->redComponent(), 0.8, 1e-12);
    EXPECT_NEAR(device->colorWithSystemEffect(ColorSystemEffect::Disabled)->alphaComponent(), 0.5, 1e-12);
    EXPECT_TRUE(device->colorWithSystemEffect(ColorSystemEffect::None)->isEqual(*device));

    auto translucent = device->colorWithAlphaComponent(0.3);
    EXPECT_EQ(translucent->colorSpaceName(), DeviceRGBColorSpace);
    EXPECT_DOUBLE_EQ(translucent->alphaComponent(), 0.3);
    EXPECT_DOUBLE_EQ(device->alphaComponent(), 1);
}

TEST(Color, EqualityComparesSpaceAndValues) {
    auto a = Color::colorWithCalibratedRed(0.1, 0.2, 0.3, 1);
    EXPECT_TRUE(a->isEqual(*Color::colorWithCalibratedRed(0.1, 0.2, 0.3, 1)));
    EXPECT_EQ(a->hash(), Color::colorWithCalibratedRed(0.1, 0.2, 0.3, 1)->hash());
    EXPECT_FALSE(a->isEqual(*Color::colorWithDeviceRed(0.1, 0.2, 0.3, 1)));
    EXPECT_FALSE(a->isEqual(*Color::colorWithCalibratedRed(0.1, 0.2, 0.3, 0.5)));
    EXPECT_EQ(a->description(), "NSCalibratedRGBColorSpace 0.1 0.2 0.3 1");
    EXPECT_EQ(Color::windowBackgroundColor()->description(),
              "NSNamedColorSpace System windowBackgroundColor");
}

TEST(Color, SystemColoursFollowTheDrawingAppearance) {
    auto window = Color::windowBackgroundColor();
    EXPECT_EQ(window, Color::windowBackgroundColor());
    EXPECT_EQ(window->colorSpaceName(), NamedColorSpace);
    EXPECT_EQ(window->catalogNameComponent(), "System");
    EXPECT_EQ(window->colorNameComponent(), "windowBackgroundColor");
    EXPECT_EQ(Color::colorWithCatalogName("System", "windowBackgroundColor"), window);
    aqua()->performAsCurrentDrawingAppearance([&] {
        EXPECT_NEAR(window->redComponent(), 236 / 255.0, 1e-12);
        EXPECT_NEAR(Color::linkColor()->blueComponent(), 0xDA / 255.0, 1e-12);
    });
    Ref<Color> fixedInDark;
    darkAqua()->performAsCurrentDrawingAppearance([&] {
        EXPECT_NEAR(window->redComponent(), 50 / 255.0, 1e-12);
        EXPECT_NEAR(Color::textColor()->whiteComponent(), 1, 1e-12);
        fixedInDark = window->colorWithAlphaComponent(1);
    });
    // Vibrant dark derives from dark aqua; a colour derived in the dark stays dark.
    Appearance::appearanceNamed(AppearanceNameVibrantDark)->performAsCurrentDrawingAppearance([&] {
        EXPECT_NEAR(window->redComponent(), 50 / 255.0, 1e-12);
    });
    aqua()->performAsCurrentDrawingAppearance(
        [&] { EXPECT_NEAR(fixedInDark->redComponent(), 50 / 255.0, 1e-12); });
}

TEST(Color, WithoutADrawingAppearanceTheApplicationsDecides) {
    ASSERT_FALSE(Appearance::currentAppearance());
    Appearance::setApplicationEffectiveAppearance(darkAqua());
    EXPECT_NEAR(Color::controlBackgroundColor()->redComponent(), 0x1E / 255.0, 1e-12);
    // The drawing appearance wins over the application's.
    aqua()->performAsCurrentDrawingAppearance(
        [] { EXPECT_NEAR(Color::controlBackgroundColor()->redComponent(), 1, 1e-12); });
    {
        // Below 10.14 there is no dark appearance: light values throughout.
        PlatformVersionScope old({10, 13, 6});
        EXPECT_NEAR(Color::controlBackgroundColor()->redComponent(), 1, 1e-12);
    }
    Appearance::setApplicationEffectiveAppearance(nullptr);
    EXPECT_NEAR(Color::controlBackgroundColor()->redComponent(), 1, 1e-12);
}

TEST(Color, ControlBackgroundCanBeReplacedForTheProcess) {
    auto original = Color::controlBackgroundColor();
    auto replacement = Color::colorWithCalibratedRed(0.1, 0.2, 0.3, 1);
    EXPECT_TRUE(Color::replaceSystemColor("controlBackgroundColor", replacement));
    EXPECT_EQ(Color::controlBackgroundColor(), replacement);
    EXPECT_EQ(Color::systemColorNamed("controlBackgroundColor"), replacement);
    EXPECT_EQ(Color::colorWithCatalogName("System", "controlBackgroundColor"), replacement);
    EXPECT_TRUE(Color::replaceSystemColor("controlBackgroundColor", nullptr));
    EXPECT_EQ(Color::controlBackgroundColor(), original);

    LogCapture log;
    EXPECT_FALSE(Color::replaceSystemColor("noSuchColor", replacement));
    EXPECT_TRUE(log.contains("noSuchColor"));
}

TEST(Color, ALazyReplacementIsMadeAtTheFirstRequestAndKept) {
    auto original = Color::controlBackgroundColor();
    auto replacement = Color::colorWithCalibratedRed(0.1, 0.2, 0.3, 1);
    int made = 0;
    EXPECT_TRUE(Color::replaceSystemColorLazily("controlBackgroundColor", [&] {
        ++made;
        return replacement;
    }));
    EXPECT_EQ(made, 0);
    EXPECT_EQ(Color::colorWithCatalogName("System", "controlBackgroundColor"), replacement);
    EXPECT_EQ(Color::controlBackgroundColor(), replacement);
    EXPECT_EQ(made, 1);

    // A provider may ask for colours itself; one that answers nil leaves the platform's colour.
    EXPECT_TRUE(Color::replaceSystemColorLazily("controlBackgroundColor",
                                                [] { return Color::windowBackgroundColor(); }));
    EXPECT_EQ(Color::controlBackgroundColor(), Color::windowBackgroundColor());
    EXPECT_TRUE(Color::replaceSystemColorLazily("controlBackgroundColor", [] { return Ref<Color>(); }));
    EXPECT_EQ(Color::controlBackgroundColor(), original);

    // A plain replacement or nil supersedes a provider that has not run yet.
    EXPECT_TRUE(Color::replaceSystemColorLazily("controlBackgroundColor", [&] { return replacement; }));
    EXPECT_TRUE(Color::replaceSystemColor("controlBackgroundColor", nullptr));
    EXPECT_EQ(Color::controlBackgroundColor(), original);

    LogCapture log;
    EXPECT_FALSE(Color::replaceSystemColorLazily("noSuchColor", [&] { return replacement; }));
    EXPECT_TRUE(log.contains("noSuchColor"));
}

TEST(Color, FixedColoursAreSystemColoursByName) {
    EXPECT_EQ(Color::whiteColor(), Color::systemColorNamed("whiteColor"));
    auto names = Color::systemColorNames();
    EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));
    EXPECT_NE(std::find(names.begin(), names.end(), "windowBackgroundColor"), names.end());
}

TEST(Color, EveryOperationFollowsTheResolutionHook) {
    auto off = Color::colorWithCalibratedRed(1, 0, 0, 1);
    auto on = Color::colorWithDeviceWhite(0.5, 0.5);
    auto color = create<SwitchColor>(off, on);
    EXPECT_EQ(color->colorSpaceName(), CalibratedRGBColorSpace);
    EXPECT_DOUBLE_EQ(color->redComponent(), 1);
    EXPECT_EQ(color->numberOfComponents(), 4);
    auto fixed = color->colorWithAlphaComponent(0.25);

    color->m_useOn = true;
    EXPECT_EQ(color->colorSpaceName(), DeviceWhiteColorSpace);
    EXPECT_DOUBLE_EQ(color->whiteComponent(), 0.5);
    EXPECT_DOUBLE_EQ(color->alphaComponent(), 0.5);
    EXPECT_EQ(color->numberOfComponents(), 2);
    EXPECT_EQ(color->colorUsingColorSpaceName(DeviceWhiteColorSpace), on);
    EXPECT_EQ(color->CGColor()->components(), (std::vector<double>{0.5, 0.5}));
    EXPECT_DOUBLE_EQ(color->highlightWithLevel(1)->whiteComponent(), 1);
    // What was derived before the switch keeps the earlier colour.
    EXPECT_DOUBLE_EQ(fixed->redComponent(), 1);
    EXPECT_EQ(fixed->colorSpaceName(), CalibratedRGBColorSpace);

    Canvas canvas(2, 2);
    color->set();
    RectFill({0, 0, 2, 2});
    EXPECT_TRUE(near(canvas.pixel(0, 0), {64, 64, 64, 128}));
    // Resolving colours compare by identity, not by what they stand for now.
    EXPECT_FALSE(color->isEqual(*create<SwitchColor>(off, on)));
    EXPECT_TRUE(color->isEqual(*color));
}

TEST(Color, AColourThatResolvesToNothingAnswersAsNil) {
    auto nothing = create<SwitchColor>(nullptr, nullptr);
    EXPECT_EQ(nothing->colorSpaceName(), "");
    EXPECT_FALSE(nothing->colorSpace());
    EXPECT_FALSE(nothing->colorUsingColorSpaceName(CalibratedRGBColorSpace));
    EXPECT_FALSE(nothing->colorWithAlphaComponent(1));
    EXPECT_FALSE(nothing->CGColor());
    EXPECT_EQ(nothing->alphaComponent(), 0);
    {
        LogCapture log;
        EXPECT_EQ(nothing->greenComponent(), 0);
    }
    Canvas canvas(2, 2);
    Color::blueColor()->set();
    nothing->set(); // leaves blue in place
    RectFill({0, 0, 2, 2});
    EXPECT_EQ(canvas.pixel(1, 1), (RGBA{0, 0, 255, 255}));
}

TEST(Color, ColoursStandingForEachOtherInACircleAnswerNil) {
    auto a = create<LoopColor>();
    auto b = create<LoopColor>();
    a->target = b;
    b->target = a;
    EXPECT_FALSE(a->colorWithAlphaComponent(1));
    EXPECT_FALSE(a->colorUsingColorSpaceName(NamedColorSpace));
    a->target = nullptr; // break the reference cycle
}

TEST(Color, CGColorHandleOutlivesItsColour) {
    Ref<CGColor> handle;
    {
        auto color = Color::colorWithCalibratedRed(0.1, 0.2, 0.3, 0.4);
        handle = color->CGColor();
    }
    ASSERT_TRUE(handle);
    EXPECT_EQ(handle->colorSpace(), ColorSpace::genericRGBColorSpace());
    EXPECT_EQ(handle->components(), (std::vector<double>{0.1, 0.2, 0.3, 0.4}));
    EXPECT_DOUBLE_EQ(handle->alpha(), 0.4);
    auto back = Color::colorWithCGColor(handle);
    EXPECT_TRUE(back->isEqual(*Color::colorWithCalibratedRed(0.1, 0.2, 0.3, 0.4)));
    EXPECT_FALSE(CGColor::make(ColorSpace::genericGrayColorSpace(), {0.5}));
}

TEST(Color, SwatchFillsTheRectangleSourceOver) {
    Canvas canvas(10, 10);
    Color::whiteColor()->set();
    RectFill({0, 0, 10, 10});
    // Bottom half in unflipped space: rows 5 to 9.
    Color::colorWithCalibratedRed(1, 0, 0, 0.5)->drawSwatchInRect({0, 0, 10, 5});
    EXPECT_TRUE(near(canvas.pixel(3, 7), {255, 127, 127, 255}));
    EXPECT_EQ(canvas.pixel(3, 2), (RGBA{255, 255, 255, 255}));
    // The swatch does not change the current fill colour.
    RectFill({0, 0, 10, 10});
    EXPECT_EQ(canvas.pixel(3, 7), (RGBA{255, 255, 255, 255}));
    // Without a current context nothing happens and nothing fails.
    GraphicsContext::saveCurrentGraphicsState();
    GraphicsContext::setCurrentContext(nullptr);
    Color::redColor()->drawSwatchInRect({0, 0, 10, 10});
    Color::redColor()->set();
    GraphicsContext::restoreCurrentGraphicsState();
}

TEST(ColorList, CrayonsHoldTheFortyEightCalibratedColours) {
    auto crayons = ColorList::colorListNamed("Crayons");
    ASSERT_TRUE(crayons);
    EXPECT_EQ(ColorList::colorListNamed("Crayons"), crayons);
    EXPECT_FALSE(crayons->isEditable());
    auto keys = crayons->allKeys();
    ASSERT_EQ(keys.size(), 48u);
    EXPECT_EQ(keys.front(), "Licorice");
    EXPECT_EQ(keys.back(), "Carnation");

    auto maraschino = crayons->colorWithKey("Maraschino");
    ASSERT_TRUE(maraschino);
    EXPECT_EQ(maraschino->colorSpaceName(), CalibratedRGBColorSpace);
    EXPECT_EQ(maraschino->components(), (std::vector<double>{1, 0, 0, 1}));
    EXPECT_EQ(crayons->colorWithKey("Maraschino"), maraschino);
    EXPECT_NEAR(crayons->colorWithKey("Iron")->redComponent(), 0x4C / 255.0, 1e-12);
    EXPECT_NEAR(crayons->colorWithKey("Carnation")->blueComponent(), 0xCF / 255.0, 1e-12);
    EXPECT_TRUE(crayons->colorWithKey("Sea Foam"));
    EXPECT_TRUE(crayons->colorWithKey("Lavendar"));
    EXPECT_FALSE(crayons->colorWithKey("Lavender"));
    EXPECT_FALSE(crayons->colorWithKey("SeaFoam"));

    auto named = Color::colorWithCatalogName("Crayons", "Snow");
    ASSERT_TRUE(named);
    EXPECT_EQ(named->colorSpaceName(), NamedColorSpace);
    EXPECT_EQ(named->catalogNameComponent(), "Crayons");
    EXPECT_DOUBLE_EQ(named->whiteComponent(), 1);

    LogCapture log;
    crayons->setColor(Color::redColor(), "Licorice");
    EXPECT_TRUE(log.contains("cannot be edited"));
    EXPECT_EQ(crayons->colorWithKey("Licorice")->redComponent(), 0);
}

TEST(ColorList, MadeListsCanBeEdited) {
    EXPECT_FALSE(ColorList::colorListNamed("Test Palette"));
    auto list = ColorList::make("Test Palette");
    EXPECT_EQ(ColorList::colorListNamed("Test Palette"), list);
    list->setColor(Color::redColor(), "a");
    list->setColor(Color::blueColor(), "b");
    list->insertColor(Color::greenColor(), "c", 0);
    list->insertColor(Color::whiteColor(), "a", 99);
    EXPECT_EQ(list->allKeys(), (std::vector<std::string>{"c", "b", "a"}));
    list->setColor(Color::blackColor(), "b");
    EXPECT_EQ(list->colorWithKey("b"), Color::blackColor());
    list->setColor(nullptr, "z");
    list->removeColorWithKey("c");
    EXPECT_EQ(list->allKeys(), (std::vector<std::string>{"b", "a"}));
    // A second list under a taken name is usable but not listed.
    auto shadowed = ColorList::make("Test Palette");
    EXPECT_EQ(ColorList::colorListNamed("Test Palette"), list);
    EXPECT_NE(shadowed, list);
    // Unlisting frees the name; the object goes on working.
    list->removeFile();
    EXPECT_FALSE(ColorList::colorListNamed("Test Palette"));
    EXPECT_EQ(list->colorWithKey("b"), Color::blackColor());
}
