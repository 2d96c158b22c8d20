#pragma once

#include "platform/graphics/ParagraphStyle.hpp"

namespace ns {

// A paragraph style that can be changed. Spacing and indents below 0 are taken as 0 (tail
// indent excepted, where negative values measure from the trailing margin); values outside
// an enumeration are kept and laid out as left-aligned word wrapping.
class MutableParagraphStyle : public ParagraphStyle {
public:
    using ParagraphStyle::ParagraphStyle;

    // A new style with the default settings.
    static Ref<MutableParagraphStyle> make();

    // Copies every setting of the style (nothing for nil).
    void setParagraphStyle(const Ref<ParagraphStyle>& style);
    void setAlignment(TextAlignment alignment) { m_settings.alignment = alignment; }
    void setLineBreakMode(LineBreakMode mode) { m_settings.lineBreakMode = mode; }
    void setLineSpacing(double value) { m_settings.lineSpacing = nonNegative(value); }
    void setParagraphSpacing(double value) { m_settings.paragraphSpacing = nonNegative(value); }
    void setParagraphSpacingBefore(double value) { m_settings.paragraphSpacingBefore = nonNegative(value); }
    void setFirstLineHeadIndent(double value) { m_settings.firstLineHeadIndent = nonNegative(value); }
    void setHeadIndent(double value) { m_settings.headIndent = nonNegative(value); }
    void setTailIndent(double value) { m_settings.tailIndent = value; }
    void setMinimumLineHeight(double value) { m_settings.minimumLineHeight = nonNegative(value); }
    void setMaximumLineHeight(double value) { m_settings.maximumLineHeight = nonNegative(value); }
    void setLineHeightMultiple(double value) { m_settings.lineHeightMultiple = nonNegative(value); }
    void setBaseWritingDirection(WritingDirection direction) { m_settings.baseWritingDirection = direction; }

private:
    static double nonNegative(double value) { return value > 0 ? value : 0; }
};

} // namespace ns
