#include "platform/views/Cell.hpp"

#include "platform/graphics/AttributedString.hpp"
#include "platform/graphics/Color.hpp"
#include "platform/graphics/Font.hpp"
#include "platform/graphics/MutableParagraphStyle.hpp"

namespace ns {

std::string Cell::stringValue() const {
    if (auto text = m_objectValue.string())
        return *text;
    return m_objectValue.isNil() ? std::string() : m_objectValue.description();
}

Ref<Font> Cell::font() const {
    return m_font ? m_font : Font::systemFontOfSize(Font::systemFontSizeForControlSize(m_controlSize));
}

Size Cell::cellSize() const {
    return AttributedString::make(stringValue(), {{FontAttributeName, font()}})->size();
}

void Cell::drawWithFrame(Rect frame, View&) {
    auto style = MutableParagraphStyle::make();
    style->setAlignment(m_alignment);
    auto color = m_enabled ? Color::controlTextColor() : Color::disabledControlTextColor();
    AttributedString::make(stringValue(), {{FontAttributeName, font()},
                                           {ForegroundColorAttributeName, color},
                                           {ParagraphStyleAttributeName, style}})
        ->drawInRect(frame);
}

} // namespace ns
