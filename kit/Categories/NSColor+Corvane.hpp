#pragma once

#include "platform/graphics/Color.hpp"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {

// --- Hex strings and colour arithmetic --------------------------------------------------------

// The colour of a hex RGB string: optional white space, an optional "0x" (either case), then hex
// digits whose low 24 bits are RRGGBB (anything above is ignored; a value past 32 bits reads as
// 0xFFFFFFFF). Calibrated RGB with the given alpha. A nil or unreadable string gives black.
ns::Ref<ns::Color> colorFromHexRGB(const std::optional<std::string>& hex, double alpha);
// The same with alpha 1.
ns::Ref<ns::Color> colorFromHexRGB(const std::optional<std::string>& hex);

// The prefix followed by red, green and blue as lower-case "%02x" fields (alpha is not written);
// nil when the colour has no calibrated RGB form (a pattern, say).
std::optional<std::string> cv_hexRGBStringWithPrefix(const ns::Color& color, std::string_view prefix);
// With the prefix "0x": readable again by colorFromHexRGB.
std::optional<std::string> cv_hexRGBString(const ns::Color& color);
// With the prefix "#", as CSS writes it. colorFromHexRGB cannot read this back.
std::optional<std::string> cv_cssRGBString(const ns::Color& color);

// Red, green and blue each moved by delta, capped at 1 but not floored at 0 (a darkened channel
// may go below 0); alpha unchanged. A plain RGB colour. The receiver must have RGB components:
// for a pattern the platform logs and the channels read as 0.
ns::Ref<ns::Color> colorWithRGBDelta(const ns::Color& color, double delta);

// --- The application's palette ----------------------------------------------------------------
// Colours by role. None fails; a colour built from a crayon is nil when the platform has no
// crayon list (a dynamic one then has a nil light or dark colour).

// Base colours: a new colour on every call.
ns::Ref<ns::Color> cv_appColor();   // 0xdb7100
ns::Ref<ns::Color> cv_lightGrey();  // 0xf0f0f0
ns::Ref<ns::Color> cv_paleBlue();   // 0xb2efff
ns::Ref<ns::Color> cv_darkBlue();   // 0x425374
ns::Ref<ns::Color> cv_green();      // 0xa8b417
ns::Ref<ns::Color> cv_oliveGreen(); // 0x7d9d1d
ns::Ref<ns::Color> cv_greenText();  // 0x7d9d1d
ns::Ref<ns::Color> cv_pastelRed();  // plain RGB from here on
ns::Ref<ns::Color> cv_pastelOrange();
ns::Ref<ns::Color> cv_pastelYellow();
ns::Ref<ns::Color> cv_pastelGreen();
ns::Ref<ns::Color> cv_pastelBlue();

// Roles that pass on to another colour.
ns::Ref<ns::Color> cv_appTitleColor();                    // cv_appColor
ns::Ref<ns::Color> cv_appMessageColor();                  // crayon Iron
ns::Ref<ns::Color> cv_errorBackgroundColor();             // cv_pastelRed
ns::Ref<ns::Color> cv_confirmationBackgroundColor();      // cv_green
ns::Ref<ns::Color> cv_confirmationTextColor();            // the platform's white
ns::Ref<ns::Color> cv_emptyBackgroundColor();             // cv_controlBackgroundColor
ns::Ref<ns::Color> cv_disabledTextFieldBackgroundColor(); // cv_lightGrey
ns::Ref<ns::Color> cv_benefitLetterBackgroundColor();     // cv_darkBlue
ns::Ref<ns::Color> cv_linkColor();                        // the platform's link colour

// Light/dark pairs (CVDynamicColor), each made at its first call and the same object ever after.
ns::Ref<ns::Color> cv_appLabelColor();                 // Iron / Aluminum
ns::Ref<ns::Color> cv_warnTextColor();                 // Salmon / Tangerine
ns::Ref<ns::Color> cv_notificationBackgroundColor();   // cv_pastelYellow / Iron
ns::Ref<ns::Color> cv_helpTipBackgroundColor();        // cv_pastelBlue / Iron
ns::Ref<ns::Color> cv_stateConfirmedBackgroundColor(); // RGB 218, 237, 246 / Iron
ns::Ref<ns::Color> cv_payslipDarkGridColor();          // the platform's dark grey / Nickel
ns::Ref<ns::Color> cv_payslipLightGridColor();         // Magnesium / the platform's dark grey
ns::Ref<ns::Color> cv_borderColor();                   // Silver / Lead
// Snow / Tungsten. It also stands in for the platform's controlBackgroundColor in the whole
// process: ns::Color::controlBackgroundColor() and systemColorNamed answer this very object.
ns::Ref<ns::Color> cv_controlBackgroundColor();
ns::Ref<ns::Color> cv_altControlBackgroundColor(); // Snow / Tungsten darkened by 0.07

// --- Colours by name --------------------------------------------------------------------------

// A class-level colour operation that takes no argument.
using CVColorOperation = std::function<ns::Ref<ns::Color>()>;
// The colour type's class-level operation of exactly that name ("windowBackgroundColor",
// "controlBackgroundColor", "cv_appColor", "cv_snowColor"); nullopt when it has none.
std::optional<CVColorOperation> cv_colorOperationNamed(std::string_view name);

} // namespace corvane
