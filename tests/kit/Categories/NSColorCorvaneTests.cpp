#include "kit/Categories/NSColor+Corvane.hpp"

#include "kit/Categories/NSColor+Crayons.hpp"
#include "kit/Objects/CVDynamicColor.hpp"
#include "platform/graphics/ColorSpace.hpp"
#include "platform/graphics/Image.hpp"
#include "support/PlatformScopes.hpp"

#include <gtest/gtest.h>

using namespace corvane;

namespace {

struct RGBA {
    double r, g, b, a;
};

RGBA rgba(const ns::Ref<ns::Color>& color) {
    RGBA c{};
    color->getRed(&c.r, &c.g, &c.b, &c.a);
    return c;
}

void expectRGBA(const ns::Ref<ns::Color>& color, double r, double g, double b, double a) {
    ASSERT_TRUE(color);
    RGBA c = rgba(color);
    EXPECT_DOUBLE_EQ(c.r, r);
    EXPECT_DOUBLE_EQ(c.g, g);
    EXPECT_DOUBLE_EQ(c.b, b);
    EXPECT_DOUBLE_EQ(c.a, a);
}

} // namespace

// --- Reading hex strings -------------------------------------------------------------------------

TEST(HexReading, PrefixCaseAndLeadingWhiteSpaceDoNotMatter) {
    for (const char* text : {"db7100", "0xdb7100", "0XDB7100", "  \t\n0XDB7100",
                             "\xC2\xA0"
                             "db7100;rest"}) {
        SCOPED_TRACE(text);
        auto color = colorFromHexRGB(std::string(text));
        expectRGBA(color, 219 / 255.0, 113 / 255.0, 0, 1);
        EXPECT_EQ(color->colorSpaceName(), ns::CalibratedRGBColorSpace);
    }
}

TEST(HexReading, UnreadableStringsGiveBlackWithTheRequestedAlpha) {
    expectRGBA(colorFromHexRGB(std::nullopt, 0.25), 0, 0, 0, 0.25);
    expectRGBA(colorFromHexRGB(std::string(""), 0.5), 0, 0, 0, 0.5);
    expectRGBA(colorFromHexRGB(std::string("   ")), 0, 0, 0, 1);
    // "#" is not a prefix the scanner knows, so CSS strings do not read back.
    expectRGBA(colorFromHexRGB(std::string("#ffffff")), 0, 0, 0, 1);
    expectRGBA(colorFromHexRGB(std::string("0x")), 0, 0, 0, 1);
}

TEST(HexReading, DigitsAreOneNumberNotAShorthand) {
    // Three digits are the number 0xfff.
    expectRGBA(colorFromHexRGB(std::string("fff")), 0, 15 / 255.0, 1, 1);
    // Eight digits: the top byte is dropped and does not become alpha.
    expectRGBA(colorFromHexRGB(std::string("ff336699"), 0.75), 0x33 / 255.0, 0x66 / 255.0, 0x99 / 255.0,
               0.75);
    // A value past 32 bits saturates, which reads as white.
    expectRGBA(colorFromHexRGB(std::string("123456789")), 1, 1, 1, 1);
    expectRGBA(colorFromHexRGB(std::string("0x000000000000000000")), 0, 0, 0, 1);
}

// --- Writing hex strings -------------------------------------------------------------------------

TEST(HexWriting, ReadingAndWritingGiveTheSameDigits) {
    EXPECT_EQ(cv_hexRGBString(*colorFromHexRGB(std::string("0xf0f0f0"))), "0xf0f0f0");
    for (uint32_t value : {0x000000u, 0x010203u, 0x7f8081u, 0xdb7100u, 0xfefeffu}) {
        char text[16];
        std::snprintf(text, sizeof text, "0x%06x", value);
        EXPECT_EQ(cv_hexRGBString(*colorFromHexRGB(std::string(text))), text);
    }
    // The "0x" form can be read back; the CSS form cannot.
    auto color = colorFromHexRGB(std::string("0x425374"));
    EXPECT_EQ(cv_hexRGBString(*colorFromHexRGB(cv_hexRGBString(*color))), "0x425374");
    EXPECT_EQ(cv_hexRGBString(*colorFromHexRGB(cv_cssRGBString(*color))), "0x000000");
}

TEST(HexWriting, ChannelsTruncateAndAlphaIsNotWritten) {
    EXPECT_EQ(cv_hexRGBString(*ns::Color::colorWithCalibratedRed(0.5, 0, 1, 0.3)), "0x7f00ff");
    EXPECT_EQ(cv_cssRGBString(*ns::Color::whiteColor()), "#ffffff");
    EXPECT_EQ(cv_hexRGBStringWithPrefix(*ns::Color::colorWithDeviceCyan(1, 0, 0, 0, 1), "rgb:"),
              "rgb:00ffff");
}

TEST(HexWriting, ColoursWithoutAnRGBFormGiveNil) {
    auto image = ns::Image::make({2, 2});
    EXPECT_EQ(cv_hexRGBString(*ns::Color::colorWithPatternImage(image)), std::nullopt);
    EXPECT_EQ(cv_cssRGBString(*ns::create<ns::Color>()), std::nullopt);
}

// --- Shifting ------------------------------------------------------------------------------------

TEST(RGBDelta, CapsAtOneButHasNoLowerBound) {
    auto lighter = colorWithRGBDelta(*ns::Color::colorWithRed(0.9, 0.5, 0.05, 0.4), 0.2);
    expectRGBA(lighter, 1.0, 0.7, 0.25, 0.4);
    auto darker = colorWithRGBDelta(*ns::Color::colorWithRed(0.9, 0.5, 0.05, 0.4), -0.07);
    expectRGBA(darker, 0.9 - 0.07, 0.5 - 0.07, 0.05 - 0.07, 0.4);
    EXPECT_LT(rgba(darker).b, 0);
    EXPECT_EQ(darker->colorSpace(), ns::ColorSpace::sRGBColorSpace());
}

// --- The palette ---------------------------------------------------------------------------------

TEST(Palette, BaseColoursHaveTheirValues) {
    EXPECT_EQ(cv_hexRGBString(*cv_appColor()), "0xdb7100");
    EXPECT_EQ(cv_hexRGBString(*cv_lightGrey()), "0xf0f0f0");
    EXPECT_EQ(cv_hexRGBString(*cv_paleBlue()), "0xb2efff");
    EXPECT_EQ(cv_hexRGBString(*cv_darkBlue()), "0x425374");
    EXPECT_EQ(cv_hexRGBString(*cv_green()), "0xa8b417");
    EXPECT_TRUE(cv_oliveGreen()->isEqual(*cv_greenText()));
    EXPECT_EQ(cv_hexRGBString(*cv_greenText()), "0x7d9d1d");
    EXPECT_EQ(cv_appColor()->colorSpaceName(), ns::CalibratedRGBColorSpace);

    expectRGBA(cv_pastelRed(), 1, 179 / 255.0, 186 / 255.0, 1);
    expectRGBA(cv_pastelOrange(), 1, 223 / 255.0, 186 / 255.0, 1);
    expectRGBA(cv_pastelYellow(), 1, 1, 186 / 255.0, 1);
    expectRGBA(cv_pastelGreen(), 223 / 255.0, 240 / 255.0, 217 / 255.0, 1);
    expectRGBA(cv_pastelBlue(), 186 / 255.0, 225 / 255.0, 1, 1);
    EXPECT_EQ(cv_pastelBlue()->colorSpace(), ns::ColorSpace::sRGBColorSpace());

    // A new colour on every call, equal in value.
    EXPECT_NE(cv_appColor(), cv_appColor());
    EXPECT_TRUE(cv_appColor()->isEqual(*cv_appColor()));
}

TEST(Palette, RolesPassOnToTheirColours) {
    EXPECT_TRUE(cv_appTitleColor()->isEqual(*cv_appColor()));
    EXPECT_EQ(cv_appMessageColor(), cv_ironColor());
    EXPECT_TRUE(cv_errorBackgroundColor()->isEqual(*cv_pastelRed()));
    EXPECT_TRUE(cv_confirmationBackgroundColor()->isEqual(*cv_green()));
    EXPECT_EQ(cv_confirmationTextColor(), ns::Color::whiteColor());
    EXPECT_TRUE(cv_disabledTextFieldBackgroundColor()->isEqual(*cv_lightGrey()));
    EXPECT_TRUE(cv_benefitLetterBackgroundColor()->isEqual(*cv_darkBlue()));
    EXPECT_EQ(cv_linkColor(), ns::Color::linkColor());
    EXPECT_EQ(cv_emptyBackgroundColor(), cv_controlBackgroundColor());
}

TEST(Palette, PairsAreMadeOnceWithTheirLightAndDarkColours) {
    struct Expected {
        ns::Ref<ns::Color> (*operation)();
        ns::Ref<ns::Color> light, dark;
    };
    const Expected pairs[] = {
        {cv_appLabelColor, cv_ironColor(), cv_aluminumColor()},
        {cv_warnTextColor, cv_salmonColor(), cv_tangerineColor()},
        {cv_notificationBackgroundColor, cv_pastelYellow(), cv_ironColor()},
        {cv_helpTipBackgroundColor, cv_pastelBlue(), cv_ironColor()},
        {cv_stateConfirmedBackgroundColor, ns::Color::colorWithRed(218 / 255.0, 237 / 255.0, 246 / 255.0, 1),
         cv_ironColor()},
        {cv_payslipDarkGridColor, ns::Color::darkGrayColor(), cv_nickelColor()},
        {cv_payslipLightGridColor, cv_magnesiumColor(), ns::Color::darkGrayColor()},
        {cv_borderColor, cv_silverColor(), cv_leadColor()},
        {cv_controlBackgroundColor, cv_snowColor(), cv_tungstenColor()},
    };
    for (const auto& expected : pairs) {
        auto pair = std::dynamic_pointer_cast<CVDynamicColor>(expected.operation());
        ASSERT_TRUE(pair);
        SCOPED_TRACE(pair->description());
        EXPECT_EQ(expected.operation(), pair);
        EXPECT_TRUE(pair->aquaColor()->isEqual(*expected.light));
        EXPECT_TRUE(pair->darkAquaColor()->isEqual(*expected.dark));
    }

    auto alternate = std::dynamic_pointer_cast<CVDynamicColor>(cv_altControlBackgroundColor());
    ASSERT_TRUE(alternate);
    EXPECT_EQ(cv_altControlBackgroundColor(), alternate);
    EXPECT_EQ(alternate->aquaColor(), cv_snowColor());
    const double tungsten = 0x33 / 255.0;
    expectRGBA(alternate->darkAquaColor(), tungsten - 0.07, tungsten - 0.07, tungsten - 0.07, 1);
}

TEST(Palette, PairsDrawByTheAppearance) {
    ApplicationAppearanceScope light(ns::AppearanceNameAqua);
    EXPECT_DOUBLE_EQ(cv_borderColor()->redComponent(), 0xCC / 255.0);           // Silver
    EXPECT_DOUBLE_EQ(cv_payslipLightGridColor()->redComponent(), 0xB3 / 255.0); // Magnesium
    darkAqua()->performAsCurrentDrawingAppearance([] {
        EXPECT_DOUBLE_EQ(cv_borderColor()->redComponent(), 0x19 / 255.0); // Lead
        EXPECT_DOUBLE_EQ(cv_payslipLightGridColor()->whiteComponent(), 1.0 / 3.0);
    });
    ns::Appearance::setApplicationEffectiveAppearance(darkAqua());
    PlatformVersionScope old({10, 13, 6});
    EXPECT_DOUBLE_EQ(cv_borderColor()->redComponent(), 0xCC / 255.0);
}

TEST(Palette, TheKitsControlBackgroundIsThePlatformsEverywhere) {
    auto pair = cv_controlBackgroundColor();
    EXPECT_EQ(ns::Color::controlBackgroundColor(), pair);
    EXPECT_EQ(ns::Color::systemColorNamed("controlBackgroundColor"), pair);
    EXPECT_EQ(ns::Color::colorWithCatalogName("System", "controlBackgroundColor"), pair);
    EXPECT_EQ(cv_emptyBackgroundColor(), pair);

    ApplicationAppearanceScope dark(ns::AppearanceNameDarkAqua);
    EXPECT_DOUBLE_EQ(ns::Color::controlBackgroundColor()->redComponent(), 0x33 / 255.0); // Tungsten
}

// --- Colours by name -----------------------------------------------------------------------------

TEST(ColorOperations, NamesReachPlatformPaletteAndCrayonColours) {
    auto call = [](std::string_view name) -> ns::Ref<ns::Color> {
        auto operation = cv_colorOperationNamed(name);
        return operation ? (*operation)() : nullptr;
    };
    EXPECT_EQ(call("windowBackgroundColor"), ns::Color::windowBackgroundColor());
    EXPECT_EQ(call("blackColor"), ns::Color::blackColor());
    EXPECT_EQ(call("controlBackgroundColor"), cv_controlBackgroundColor());
    EXPECT_EQ(call("cv_borderColor"), cv_borderColor());
    EXPECT_EQ(cv_hexRGBString(*call("cv_appColor")), "0xdb7100");
    EXPECT_EQ(call("cv_snowColor"), cv_snowColor());
    EXPECT_EQ(call("cv_seafoamColor"), cv_seafoamColor());

    for (const std::string& name : ns::Color::systemColorNames())
        EXPECT_TRUE(call(name)) << name;
    for (const auto& crayon : cv_crayonOperations())
        EXPECT_TRUE(call(crayon.name)) << crayon.name;

    for (const char* name : {"", "cv_appcolor", "appColor", "colorFromHexRGB", "cv_crayonsColorList",
                             "cv_hexRGBString", "Snow", "cv_controlBackgroundColor"})
        EXPECT_FALSE(cv_colorOperationNamed(name)) << name;
}
