#pragma once

#include "platform/foundation/Object.hpp"

#include <cstdint>

namespace ns {

class MutableParagraphStyle;

enum class TextAlignment : int64_t {
    Left = 0,
    Right = 1,
    Center = 2,
    Justified = 3,
    Natural = 4, // left for left-to-right text, right for right-to-left
};

enum class LineBreakMode : int64_t {
    ByWordWrapping = 0, // at word boundaries; a word longer than the line breaks between characters
    ByCharWrapping = 1,
    ByClipping = 2,         // one line per paragraph, cut at the edge
    ByTruncatingHead = 3,   // one line per paragraph, "…" replacing the start
    ByTruncatingTail = 4,   // ... the end
    ByTruncatingMiddle = 5, // ... the middle
};

enum class WritingDirection : int64_t { Natural = -1, LeftToRight = 0, RightToLeft = 1 };

// How the paragraphs of a text are set. Immutable; MutableParagraphStyle adds setters. Layout
// honours alignment, line-break mode, line spacing, paragraph spacing before and after, head
// and tail indents; the line-height settings are kept for those who read them.
class ParagraphStyle : public Object {
public:
    struct Settings {
        TextAlignment alignment = TextAlignment::Natural;
        LineBreakMode lineBreakMode = LineBreakMode::ByWordWrapping;
        double lineSpacing = 0;            // extra space between the lines of a paragraph
        double paragraphSpacing = 0;       // space after a paragraph (none after the last)
        double paragraphSpacingBefore = 0; // space before a paragraph (none before the first)
        double firstLineHeadIndent = 0;
        double headIndent = 0;
        double tailIndent = 0; // > 0 from the leading margin, <= 0 from the trailing one
        double minimumLineHeight = 0;
        double maximumLineHeight = 0;
        double lineHeightMultiple = 0;
        WritingDirection baseWritingDirection = WritingDirection::Natural;
        bool operator==(const Settings&) const = default;
    };

    ParagraphStyle();
    explicit ParagraphStyle(Settings settings);

    // The shared default style: natural alignment, word wrapping, no spacing or indents.
    static Ref<ParagraphStyle> defaultParagraphStyle();

    const Settings& settings() const { return m_settings; }
    TextAlignment alignment() const { return m_settings.alignment; }
    LineBreakMode lineBreakMode() const { return m_settings.lineBreakMode; }
    double lineSpacing() const { return m_settings.lineSpacing; }
    double paragraphSpacing() const { return m_settings.paragraphSpacing; }
    double paragraphSpacingBefore() const { return m_settings.paragraphSpacingBefore; }
    double firstLineHeadIndent() const { return m_settings.firstLineHeadIndent; }
    double headIndent() const { return m_settings.headIndent; }
    double tailIndent() const { return m_settings.tailIndent; }
    double minimumLineHeight() const { return m_settings.minimumLineHeight; }
    double maximumLineHeight() const { return m_settings.maximumLineHeight; }
    double lineHeightMultiple() const { return m_settings.lineHeightMultiple; }
    WritingDirection baseWritingDirection() const { return m_settings.baseWritingDirection; }

    // New objects with the same settings.
    Ref<ParagraphStyle> copy() const;
    Ref<MutableParagraphStyle> mutableCopy() const;

    // Equal when the settings are, whether mutable or not.
    bool isEqual(const Object& other) const override;
    size_t hash() const override;
    std::string description() const override;

protected:
    Settings m_settings;
};

} // namespace ns
