#pragma once

#include "platform/graphics/Font.hpp"

#include <string>

namespace corvane::core {

// The string with line breaks inserted so that each line, set in the font, is no wider than
// `width` points. Breaks go between words, replacing the spaces there; a word wider than the
// width is broken between characters. Existing line breaks stay. A nil font, a width that is not
// positive, or an empty string give the string unchanged.
std::string wrapStringMaxWidth(const std::string& string, const ns::Ref<ns::Font>& font, double width);

} // namespace corvane::core
