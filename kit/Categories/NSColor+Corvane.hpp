#pragma once

#include "platform/graphics/Color.hpp"

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

} // namespace corvane
