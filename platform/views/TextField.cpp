#include "platform/views/TextField.hpp"

#include "platform/graphics/AttributedString.hpp"
#include "platform/graphics/BezierPath.hpp"
#include "platform/graphics/Color.hpp"
#include "platform/graphics/Font.hpp"
#include "platform/graphics/Graphics.hpp"
#include "platform/graphics/MutableParagraphStyle.hpp"

#include <cmath>

namespace ns {

TextField::TextField(Rect frame) : Control(frame) {}

Ref<TextField> TextField::labelWithString(std::string text) {
    auto label = make();
    label->setStringValue(std::move(text));
    label->setEditable(false);
    label->setSelectable(false);
    label->setBezeled(false);
    label->setDrawsBackground(false);
    label->sizeToFit();
    return label;
}

Ref<TextField> TextField::textFieldWithString(std::string text) {
    auto field = make();
    field->setStringValue(std::move(text));
    field->sizeToFit();
    return field;
}

void TextField::setEditable(bool editable) {
    m_editable = editable;
    if (editable)
        m_selectable = true;
}

void TextField::setBezeled(bool bezeled) {
    m_bezeled = bezeled;
    contentDidChange();
}

void TextField::setBordered(bool bordered) {
    cell()->setBordered(bordered);
    setNeedsDisplay(true);
}

void TextField::setDrawsBackground(bool draws) {
    m_drawsBackground = draws;
    setNeedsDisplay(true);
}

void TextField::setBackgroundColor(Ref<Color> color) {
    m_backgroundColor = std::move(color);
    setNeedsDisplay(true);
}

void TextField::setTextColor(Ref<Color> color) {
    m_textColor = std::move(color);
    setNeedsDisplay(true);
}

void TextField::setPlaceholderString(std::optional<std::string> placeholder) {
    m_placeholder = std::move(placeholder);
    contentDidChange();
}

Ref<AttributedString> TextField::attributedStringValue() const {
    return m_attributedValue ? m_attributedValue : textToDraw();
}

void TextField::setAttributedStringValue(Ref<AttributedString> text) {
    std::string plain = text ? text->string() : std::string();
    setStringValue(plain); // announces the change and forgets any earlier styled text
    m_attributedValue = std::move(text);
    contentDidChange();
}

void TextField::setPreferredMaxLayoutWidth(double width) {
    m_preferredMaxLayoutWidth = std::max(0.0, width);
    invalidateIntrinsicContentSize();
}

// The text as drawn: the styled value, or the plain value in the field's font, colour and
// alignment; the placeholder in a secondary colour when there is no value.
Ref<AttributedString> TextField::textToDraw() const {
    if (m_attributedValue && m_attributedValue->string() == stringValue())
        return m_attributedValue;
    auto style = MutableParagraphStyle::make();
    style->setAlignment(alignment());
    std::string text = stringValue();
    Ref<Color> color = m_textColor ? m_textColor : Color::controlTextColor();
    if (!isEnabled())
        color = Color::disabledControlTextColor();
    if (text.empty() && m_placeholder) {
        text = *m_placeholder;
        color = Color::secondaryLabelColor();
    }
    return AttributedString::make(text, {{FontAttributeName, font()},
                                         {ForegroundColorAttributeName, color},
                                         {ParagraphStyleAttributeName, style}});
}

Size TextField::intrinsicContentSize() const {
    auto text = textToDraw();
    double wrapWidth =
        m_preferredMaxLayoutWidth > 0 ? m_preferredMaxLayoutWidth - 2 * HorizontalPadding : 1e7;
    Rect used = text->boundingRectWithSize(
        {std::max(1.0, wrapWidth), 1e7}, StringDrawingUsesLineFragmentOrigin | StringDrawingUsesFontLeading);
    double lineHeight = font()->defaultLineHeight();
    double width = std::ceil(used.width()) + 2 * HorizontalPadding;
    if (m_preferredMaxLayoutWidth > 0 && used.height() > lineHeight * 1.5)
        width = m_preferredMaxLayoutWidth; // wrapped: take the whole width it may have
    double height = std::ceil(std::max(used.height(), lineHeight)) + 2 * verticalPadding();
    return {width, height};
}

double TextField::firstBaselineOffsetFromTop() const {
    return verticalPadding() + font()->ascender();
}

double TextField::lastBaselineOffsetFromBottom() const {
    return verticalPadding() - font()->descender();
}

void TextField::drawRect(Rect) {
    Rect bounds = this->bounds();
    if (m_drawsBackground) {
        (m_backgroundColor ? m_backgroundColor : Color::textBackgroundColor())->setFill();
        RectFillUsingOperation(bounds, CompositingOperation::SourceOver);
    }
    if (m_bezeled || isBordered()) {
        (m_bezeled ? Color::separatorColor() : Color::blackColor())->setStroke();
        BezierPath::strokeRect(bounds.insetBy(0.5, 0.5));
    }
    Rect textRect = bounds.insetBy(HorizontalPadding, verticalPadding());
    textToDraw()->drawWithRect(textRect, StringDrawingUsesLineFragmentOrigin);
}

} // namespace ns
