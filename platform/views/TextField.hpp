#pragma once

#include "platform/views/Control.hpp"

#include <optional>

namespace ns {

class AttributedString;
class Color;

// Text shown in a control: a label (not editable, no bezel, no background) or an editable
// field (bezeled, white background). Its intrinsic size is its text's size plus padding; with a
// preferred maximum layout width, the text wraps at that width and the height grows instead.
class TextField : public Control {
public:
    explicit TextField(Rect frame = {});
    static Ref<TextField> make(Rect frame = {}) { return create<TextField>(frame); }
    static Ref<TextField> labelWithString(std::string text);
    static Ref<TextField> textFieldWithString(std::string text);

    bool isEditable() const { return m_editable; }
    void setEditable(bool editable);
    bool isSelectable() const { return m_selectable; }
    void setSelectable(bool selectable) { m_selectable = selectable; }
    bool isBezeled() const { return m_bezeled; }
    void setBezeled(bool bezeled);
    bool isBordered() const { return cell()->isBordered(); }
    void setBordered(bool bordered);
    bool drawsBackground() const { return m_drawsBackground; }
    void setDrawsBackground(bool draws);
    // nil draws the text background colour of the appearance.
    const Ref<Color>& backgroundColor() const { return m_backgroundColor; }
    void setBackgroundColor(Ref<Color> color);
    // nil draws the control text colour of the appearance.
    const Ref<Color>& textColor() const { return m_textColor; }
    void setTextColor(Ref<Color> color);
    const std::optional<std::string>& placeholderString() const { return m_placeholder; }
    void setPlaceholderString(std::optional<std::string> placeholder);

    // Styled text replaces the plain text and its font and colour until plain text is set.
    Ref<AttributedString> attributedStringValue() const;
    void setAttributedStringValue(Ref<AttributedString> text);

    double preferredMaxLayoutWidth() const { return m_preferredMaxLayoutWidth; }
    // 0 means no wrapping: the intrinsic width is the text's width.
    void setPreferredMaxLayoutWidth(double width);

    bool acceptsFirstResponder() const override { return m_editable || m_selectable; }
    Size intrinsicContentSize() const override;
    double firstBaselineOffsetFromTop() const override;
    double lastBaselineOffsetFromBottom() const override;
    void drawRect(Rect dirtyRect) override;

    static constexpr double HorizontalPadding = 2;
    // Space above and below the text inside a bezel.
    static constexpr double BezelPadding = 3;

private:
    double verticalPadding() const { return m_bezeled ? BezelPadding : 0; }
    Ref<AttributedString> textToDraw() const;

    bool m_editable = true;
    bool m_selectable = true;
    bool m_bezeled = true;
    bool m_drawsBackground = true;
    Ref<Color> m_backgroundColor;
    Ref<Color> m_textColor;
    std::optional<std::string> m_placeholder;
    Ref<AttributedString> m_attributedValue;
    double m_preferredMaxLayoutWidth = 0;
};

} // namespace ns
