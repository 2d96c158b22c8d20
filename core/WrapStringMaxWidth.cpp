#include "core/WrapStringMaxWidth.hpp"

#include "platform/graphics/AttributedString.hpp"
#include "platform/graphics/MutableParagraphStyle.hpp"
#include "platform/graphics/TextLayout.hpp"
#include "platform/graphics/TextSystem.hpp"

#include <cmath>

namespace corvane::core {

std::string wrapStringMaxWidth(const std::string& string, const ns::Ref<ns::Font>& font, double width) {
    if (!font || !(width > 0) || !std::isfinite(width) || string.empty())
        return string;
    // Left-aligned word wrapping, whatever the default style says.
    auto style = ns::MutableParagraphStyle::make();
    style->setAlignment(ns::TextAlignment::Left);
    style->setLineBreakMode(ns::LineBreakMode::ByWordWrapping);
    auto text = ns::AttributedString::make(
        string, {{ns::FontAttributeName, font}, {ns::ParagraphStyleAttributeName, style}});
    ns::TextLayout layout(*text, width, ns::StringDrawingUsesLineFragmentOrigin,
                          ns::TextSystem::measuringContext(), false);

    std::string result;
    result.reserve(string.size() + 16);
    auto lines = layout.lines();
    for (size_t i = 0; i < lines.size(); ++i) {
        std::string line = string.substr(lines[i].location, lines[i].length);
        if (!lines[i].endsParagraph) {
            // A break made here replaces the blanks it falls on.
            while (!line.empty() && (line.back() == ' ' || line.back() == '\t'))
                line.pop_back();
        }
        result += line;
        if (i + 1 < lines.size())
            result += '\n';
    }
    return result;
}

} // namespace corvane::core
