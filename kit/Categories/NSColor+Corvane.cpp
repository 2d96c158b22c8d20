#include "kit/Categories/NSColor+Corvane.hpp"

#include "kit/Categories/NSColor+Crayons.hpp"
#include "kit/Objects/CVDynamicColor.hpp"
#include "platform/graphics/ColorSpace.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>

namespace corvane {

namespace {

// --- Hex scanning ------------------------------------------------------------------------------

// Byte length of the white space or newline character at `at` (UTF-8), or 0 when there is none.
size_t whiteSpaceLength(std::string_view text, size_t at) {
    auto byte = [&](size_t i) {
        return i < text.size() ? static_cast<unsigned char>(text[i]) : 0u;
    };
    unsigned char first = byte(at);
    if (first == ' ' || (first >= '\t' && first <= '\r'))
        return 1;
    if (first == 0xC2 && (byte(at + 1) == 0x85 || byte(at + 1) == 0xA0))
        return 2; // next line, no-break space
    if (first == 0xE1 && byte(at + 1) == 0x9A && byte(at + 2) == 0x80)
        return 3; // ogham space mark
    if (first == 0xE2 && byte(at + 1) == 0x80) {
        unsigned char third = byte(at + 2);
        if ((third >= 0x80 && third <= 0x8A) || third == 0xA8 || third == 0xA9 || third == 0xAF)
            return 3; // en quad ... hair space, line and paragraph separators, narrow no-break space
    }
    if (first == 0xE2 && byte(at + 1) == 0x81 && byte(at + 2) == 0x9F)
        return 3; // medium mathematical space
    if (first == 0xE3 && byte(at + 1) == 0x80 && byte(at + 2) == 0x80)
        return 3; // ideographic space
    return 0;
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

// One unsigned 32-bit hex integer from the start of the text, read the way a string scanner
// reads one: leading white space skipped, "0x" optional, digits up to the first non-digit.
// No digits gives 0; a value that does not fit gives the largest one.
uint32_t scanHexInt(std::string_view text) {
    size_t at = 0;
    while (size_t length = whiteSpaceLength(text, at))
        at += length;
    if (std::string_view prefix = text.substr(at, 2); prefix == "0x" || prefix == "0X")
        at += 2;
    uint64_t value = 0;
    bool overflow = false;
    for (int digit; at < text.size() && (digit = hexDigit(text[at])) >= 0; ++at) {
        value = value * 16 + static_cast<uint64_t>(digit);
        if (value > std::numeric_limits<uint32_t>::max()) {
            overflow = true;
            value = 0; // only whether it overflowed matters from here on
        }
    }
    return overflow ? std::numeric_limits<uint32_t>::max() : static_cast<uint32_t>(value);
}

// --- Hex writing -------------------------------------------------------------------------------

// The largest single-precision number below 256: a channel read from n/255 lands in [n, n + 1),
// so writing a colour read from a hex string gives its digits back.
constexpr double kChannelScale = 255.99998474121094;

std::string hexField(double channel) {
    double scaled = channel * kChannelScale;
    // Out-of-range channels (a darkened colour below 0, say) are written as the 32-bit integer
    // they truncate to, as "%02x" shows a negative int.
    int32_t value = 0;
    if (!std::isnan(scaled))
        value = static_cast<int32_t>(std::clamp(scaled, double(std::numeric_limits<int32_t>::min()),
                                                double(std::numeric_limits<int32_t>::max())));
    char field[16];
    std::snprintf(field, sizeof field, "%02x", static_cast<unsigned>(value));
    return field;
}

} // namespace

ns::Ref<ns::Color> colorFromHexRGB(const std::optional<std::string>& hex, double alpha) {
    uint32_t value = hex ? scanHexInt(*hex) : 0;
    double red = ((value >> 16) & 0xFF) / 255.0;
    double green = ((value >> 8) & 0xFF) / 255.0;
    double blue = (value & 0xFF) / 255.0;
    return ns::Color::colorWithCalibratedRed(red, green, blue, 1.0)->colorWithAlphaComponent(alpha);
}

ns::Ref<ns::Color> colorFromHexRGB(const std::optional<std::string>& hex) {
    return colorFromHexRGB(hex, 1.0);
}

std::optional<std::string> cv_hexRGBStringWithPrefix(const ns::Color& color, std::string_view prefix) {
    auto rgb = color.colorUsingColorSpaceName(ns::CalibratedRGBColorSpace);
    if (!rgb)
        return std::nullopt;
    double red = 0, green = 0, blue = 0;
    rgb->getRed(&red, &green, &blue, nullptr);
    return std::string(prefix) + hexField(red) + hexField(green) + hexField(blue);
}

std::optional<std::string> cv_hexRGBString(const ns::Color& color) {
    return cv_hexRGBStringWithPrefix(color, "0x");
}

std::optional<std::string> cv_cssRGBString(const ns::Color& color) {
    return cv_hexRGBStringWithPrefix(color, "#");
}

ns::Ref<ns::Color> colorWithRGBDelta(const ns::Color& color, double delta) {
    double red = 0, green = 0, blue = 0, alpha = 0;
    color.getRed(&red, &green, &blue, &alpha);
    return ns::Color::colorWithRed(std::min(red + delta, 1.0), std::min(green + delta, 1.0),
                                   std::min(blue + delta, 1.0), alpha);
}

// --- Base colours -----------------------------------------------------------------------------

namespace {

ns::Ref<ns::Color> rgb255(double red, double green, double blue) {
    return ns::Color::colorWithRed(red / 255.0, green / 255.0, blue / 255.0, 1.0);
}

} // namespace

ns::Ref<ns::Color> cv_appColor() {
    return colorFromHexRGB("db7100", 1.0);
}
ns::Ref<ns::Color> cv_lightGrey() {
    return colorFromHexRGB("0xf0f0f0", 1.0);
}
ns::Ref<ns::Color> cv_paleBlue() {
    return colorFromHexRGB("0xb2efff", 1.0);
}
ns::Ref<ns::Color> cv_darkBlue() {
    return colorFromHexRGB("0x425374", 1.0);
}
ns::Ref<ns::Color> cv_green() {
    return colorFromHexRGB("0xa8b417", 1.0);
}
ns::Ref<ns::Color> cv_oliveGreen() {
    return colorFromHexRGB("0x7d9d1d");
}
ns::Ref<ns::Color> cv_greenText() {
    return colorFromHexRGB("0x7d9d1d");
}
ns::Ref<ns::Color> cv_pastelRed() {
    return rgb255(255, 179, 186);
}
ns::Ref<ns::Color> cv_pastelOrange() {
    return rgb255(255, 223, 186);
}
ns::Ref<ns::Color> cv_pastelYellow() {
    return rgb255(255, 255, 186);
}
ns::Ref<ns::Color> cv_pastelGreen() {
    return rgb255(223, 240, 217);
}
ns::Ref<ns::Color> cv_pastelBlue() {
    return rgb255(186, 225, 255);
}

// --- Roles -------------------------------------------------------------------------------------

ns::Ref<ns::Color> cv_appTitleColor() {
    return cv_appColor();
}
ns::Ref<ns::Color> cv_appMessageColor() {
    return cv_ironColor();
}
ns::Ref<ns::Color> cv_errorBackgroundColor() {
    return cv_pastelRed();
}
ns::Ref<ns::Color> cv_confirmationBackgroundColor() {
    return cv_green();
}
ns::Ref<ns::Color> cv_confirmationTextColor() {
    return ns::Color::whiteColor();
}
ns::Ref<ns::Color> cv_emptyBackgroundColor() {
    return cv_controlBackgroundColor();
}
ns::Ref<ns::Color> cv_disabledTextFieldBackgroundColor() {
    return cv_lightGrey();
}
ns::Ref<ns::Color> cv_benefitLetterBackgroundColor() {
    return cv_darkBlue();
}
ns::Ref<ns::Color> cv_linkColor() {
    return ns::Color::linkColor();
}

// --- Light/dark pairs --------------------------------------------------------------------------
// Each is made once, at its first call; its two colours are looked up then and kept.

namespace {

ns::Ref<ns::Color> pair(ns::Ref<ns::Color> aqua, ns::Ref<ns::Color> darkAqua) {
    return CVDynamicColor::newWithAquaColor(std::move(aqua), std::move(darkAqua));
}

} // namespace

ns::Ref<ns::Color> cv_appLabelColor() {
    static const auto color = pair(cv_ironColor(), cv_aluminumColor());
    return color;
}
ns::Ref<ns::Color> cv_warnTextColor() {
    static const auto color = pair(cv_salmonColor(), cv_tangerineColor());
    return color;
}
ns::Ref<ns::Color> cv_notificationBackgroundColor() {
    static const auto color = pair(cv_pastelYellow(), cv_ironColor());
    return color;
}
ns::Ref<ns::Color> cv_helpTipBackgroundColor() {
    static const auto color = pair(cv_pastelBlue(), cv_ironColor());
    return color;
}
ns::Ref<ns::Color> cv_stateConfirmedBackgroundColor() {
    static const auto color = pair(rgb255(218, 237, 246), cv_ironColor());
    return color;
}
ns::Ref<ns::Color> cv_payslipDarkGridColor() {
    static const auto color = pair(ns::Color::darkGrayColor(), cv_nickelColor());
    return color;
}
ns::Ref<ns::Color> cv_payslipLightGridColor() {
    static const auto color = pair(cv_magnesiumColor(), ns::Color::darkGrayColor());
    return color;
}
ns::Ref<ns::Color> cv_borderColor() {
    static const auto color = pair(cv_silverColor(), cv_leadColor());
    return color;
}
ns::Ref<ns::Color> cv_controlBackgroundColor() {
    static const auto color = pair(cv_snowColor(), cv_tungstenColor());
    return color;
}
ns::Ref<ns::Color> cv_altControlBackgroundColor() {
    static const auto color = [] {
        auto tungsten = cv_tungstenColor();
        return pair(cv_snowColor(), tungsten ? colorWithRGBDelta(*tungsten, -0.07) : nullptr);
    }();
    return color;
}

// The kit's pair stands in for the platform's controlBackgroundColor in the whole process, so
// every control that asks the platform for its background gets it. It is installed while the
// program loads, as a provider that makes the pair at the first request: nothing (the crayon
// list included) is looked up before it is needed, and nothing here depends on other units'
// statics (the platform's tables are function-local). A static kit archive would drop this unit
// from programs that never call into it, so the kit's link options name the anchor below and
// the linker keeps the unit wherever the kit is linked.
extern "C" const bool corvane_uikit_controlBackgroundInstalled;
const bool corvane_uikit_controlBackgroundInstalled =
    ns::Color::replaceSystemColorLazily("controlBackgroundColor", &cv_controlBackgroundColor);

// --- Colours by name ---------------------------------------------------------------------------

namespace {

// The palette's operations by the names the colour type knows them by; the control background
// pair answers for the platform's name it replaces.
constexpr CVNamedColorOperation kPaletteOperations[] = {
    {"cv_appColor", &cv_appColor},
    {"cv_lightGrey", &cv_lightGrey},
    {"cv_paleBlue", &cv_paleBlue},
    {"cv_darkBlue", &cv_darkBlue},
    {"cv_green", &cv_green},
    {"cv_oliveGreen", &cv_oliveGreen},
    {"cv_greenText", &cv_greenText},
    {"cv_pastelRed", &cv_pastelRed},
    {"cv_pastelOrange", &cv_pastelOrange},
    {"cv_pastelYellow", &cv_pastelYellow},
    {"cv_pastelGreen", &cv_pastelGreen},
    {"cv_pastelBlue", &cv_pastelBlue},
    {"cv_appTitleColor", &cv_appTitleColor},
    {"cv_appMessageColor", &cv_appMessageColor},
    {"cv_errorBackgroundColor", &cv_errorBackgroundColor},
    {"cv_confirmationBackgroundColor", &cv_confirmationBackgroundColor},
    {"cv_confirmationTextColor", &cv_confirmationTextColor},
    {"cv_emptyBackgroundColor", &cv_emptyBackgroundColor},
    {"cv_disabledTextFieldBackgroundColor", &cv_disabledTextFieldBackgroundColor},
    {"cv_benefitLetterBackgroundColor", &cv_benefitLetterBackgroundColor},
    {"cv_linkColor", &cv_linkColor},
    {"cv_appLabelColor", &cv_appLabelColor},
    {"cv_warnTextColor", &cv_warnTextColor},
    {"cv_notificationBackgroundColor", &cv_notificationBackgroundColor},
    {"cv_helpTipBackgroundColor", &cv_helpTipBackgroundColor},
    {"cv_stateConfirmedBackgroundColor", &cv_stateConfirmedBackgroundColor},
    {"cv_payslipDarkGridColor", &cv_payslipDarkGridColor},
    {"cv_payslipLightGridColor", &cv_payslipLightGridColor},
    {"cv_borderColor", &cv_borderColor},
    {"controlBackgroundColor", &cv_controlBackgroundColor},
    {"cv_altControlBackgroundColor", &cv_altControlBackgroundColor},
};

std::optional<CVColorOperation> findOperation(std::span<const CVNamedColorOperation> operations,
                                              std::string_view name) {
    for (const auto& entry : operations)
        if (entry.name == name)
            return CVColorOperation(entry.operation);
    return std::nullopt;
}

} // namespace

std::optional<CVColorOperation> cv_colorOperationNamed(std::string_view name) {
    if (auto operation = findOperation(kPaletteOperations, name))
        return operation;
    if (auto operation = findOperation(cv_crayonOperations(), name))
        return operation;
    for (const std::string& systemName : ns::Color::systemColorNames())
        if (systemName == name)
            return CVColorOperation([systemName] { return ns::Color::systemColorNamed(systemName); });
    return std::nullopt;
}

} // namespace corvane
