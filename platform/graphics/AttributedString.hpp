#pragma once

#include "platform/foundation/Object.hpp"
#include "platform/foundation/Range.hpp"
#include "platform/graphics/Geometry.hpp"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace ns {

class Font;
class MutableAttributedString;

// Attribute names and what their values are.
inline constexpr const char* FontAttributeName = "NSFont";                        // Ref<Font>
inline constexpr const char* ForegroundColorAttributeName = "NSColor";            // Ref<Color>
inline constexpr const char* BackgroundColorAttributeName = "NSBackgroundColor";  // Ref<Color>
inline constexpr const char* ParagraphStyleAttributeName = "NSParagraphStyle";    // Ref<ParagraphStyle>
inline constexpr const char* StrikethroughStyleAttributeName = "NSStrikethrough"; // integer, UnderlineStyle
inline constexpr const char* StrikethroughColorAttributeName = "NSStrikethroughColor"; // Ref<Color>
inline constexpr const char* UnderlineStyleAttributeName = "NSUnderline";      // integer, UnderlineStyle
inline constexpr const char* UnderlineColorAttributeName = "NSUnderlineColor"; // Ref<Color>
inline constexpr const char* KernAttributeName = "NSKern"; // number: extra points between characters

// Values of the strikethrough and underline attributes (0 is none).
constexpr int64_t UnderlineStyleNone = 0x00;
constexpr int64_t UnderlineStyleSingle = 0x01;
constexpr int64_t UnderlineStyleThick = 0x02;
constexpr int64_t UnderlineStyleDouble = 0x09;

// Options of boundingRectWithSize and drawWithRect.
constexpr uint64_t StringDrawingUsesLineFragmentOrigin = 1 << 0;
constexpr uint64_t StringDrawingUsesFontLeading = 1 << 1;
constexpr uint64_t StringDrawingUsesDeviceMetrics = 1 << 3;
constexpr uint64_t StringDrawingTruncatesLastVisibleLine = 1 << 5;

// Text (UTF-8) with attributes over runs of it. Positions and lengths count bytes, as
// std::string does; ranges should fall on character boundaries. Operations given a range that
// does not fit the text log and do nothing (or answer nil / empty attributes).
//
// Text is laid out by Pango, paragraph by paragraph ("\n" ends a paragraph), each in the
// paragraph style of its first character; characters without a font are set in
// Font::defaultTextFont() and without a colour in black. Measuring and drawing share one
// layout, so drawn text fills exactly the size it measured.
class AttributedString : public Object {
public:
    struct Run {
        uint64_t location;
        Dictionary attributes;
    };

    AttributedString() = default;
    AttributedString(std::string text, std::vector<Run> runs);

    // The text with the attributes over its whole length.
    static Ref<AttributedString> make(std::string text, const Dictionary& attributes = {});

    const std::string& string() const { return m_string; }
    uint64_t length() const { return m_string.size(); }
    // Runs in order, each until the next (the last until the end); none for empty text.
    const std::vector<Run>& runs() const { return m_runs; }

    // The attributes at the position, and through `effectiveRange` the run they hold over.
    Dictionary attributesAtIndex(uint64_t index, Range* effectiveRange = nullptr) const;
    // One attribute at the position (nil when absent), with the range over which it is the same.
    Value attributeAtIndex(std::string_view name, uint64_t index, Range* effectiveRange = nullptr) const;
    // Calls `body` for each run in the range (clipped to it) until it sets `stop`.
    void
    enumerateAttributesInRange(Range range,
                               const std::function<void(const Dictionary&, Range, bool& stop)>& body) const;
    Ref<AttributedString> attributedSubstringFromRange(Range range) const;

    // --- Measuring and drawing --------------------------------------------------------------
    // The size the text takes unwrapped: its widest line, all its lines.
    Size size() const;
    // The rectangle the text takes when set within `size` (width bounds the lines; a width of
    // 0 or less, or not finite, means unbounded; the height does not cut lines). With
    // StringDrawingUsesLineFragmentOrigin the text is laid out as lines from the top and the
    // rectangle starts at (0, 0); without it the text is one line and the rectangle is given
    // from its baseline (origin y is minus the descent). StringDrawingUsesFontLeading adds each
    // line's font leading.
    Rect boundingRectWithSize(Size size, uint64_t options) const;
    // Draws the text, unwrapped, with the lower-left corner of its box at the point (top-left in
    // flipped drawing).
    void drawAtPoint(Point point) const;
    // Draws the text wrapped to the rectangle's width from its top, clipped to the rectangle.
    void drawInRect(const Rect& rect) const;
    // As drawInRect, with the measuring options.
    void drawWithRect(const Rect& rect, uint64_t options) const;

    Ref<AttributedString> copy() const;
    Ref<MutableAttributedString> mutableCopy() const;

    // Same text and same attributes over the same ranges.
    bool isEqual(const Object& other) const override;
    size_t hash() const override;
    // Each run's text followed by its attributes in braces.
    std::string description() const override;

protected:
    // Keeps at most one run per position with neighbours of different attributes.
    void normalizeRuns();
    bool checkRange(Range range, const char* what) const;
    size_t runIndexAt(uint64_t index) const;
    uint64_t runEnd(size_t runIndex) const;

    std::string m_string;
    std::vector<Run> m_runs;
};

} // namespace ns
