#include "platform/graphics/TextLayout.hpp"

#include "platform/graphics/AttributedString.hpp"
#include "platform/graphics/Color.hpp"
#include "platform/graphics/Font.hpp"
#include "platform/graphics/ParagraphStyle.hpp"

#include <pango/pangocairo.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

namespace ns {

namespace {

const Dictionary& emptyAttributes() {
    static const Dictionary empty;
    return empty;
}

const Value* lookup(const Dictionary& attributes, const char* name) {
    auto it = attributes.find(name);
    return it == attributes.end() ? nullptr : &it->second;
}

const Font* fontIn(const Dictionary& attributes) {
    const Value* value = lookup(attributes, FontAttributeName);
    if (!value)
        return nullptr;
    return dynamic_cast<const Font*>(value->object().get());
}

// Points to Pango units, kept inside what Pango can hold (about two million points).
int pangoUnits(double points) {
    constexpr double limit = static_cast<double>(std::numeric_limits<int>::max() - 1);
    double units = points * PANGO_SCALE;
    if (std::isnan(units))
        return 0;
    return static_cast<int>(std::clamp(units, -limit, limit));
}

// Widths beyond what Pango can hold are as good as unbounded.
constexpr double kMaximumWidth = static_cast<double>(std::numeric_limits<int>::max() / PANGO_SCALE);

guint16 channel(double value) {
    return static_cast<guint16>(std::lround(std::clamp(value, 0.0, 1.0) * 65535));
}

// Adds `attribute` over [start, end) of the paragraph; the list is made on first use, since
// most paragraphs need none and Pango lays out faster without one.
void add(PangoAttrList*& list, PangoAttribute* attribute, guint start, guint end) {
    if (!list)
        list = pango_attr_list_new();
    attribute->start_index = start;
    attribute->end_index = end;
    pango_attr_list_insert(list, attribute);
}

void addColor(PangoAttrList*& list, const Value* value, guint start, guint end,
              PangoAttribute* (*make)(guint16, guint16, guint16), PangoAttribute* (*makeAlpha)(guint16)) {
    if (!value)
        return;
    auto color = value->objectAs<Color>();
    double rgba[4];
    if (!color || !color->deviceRGBA(rgba))
        return;
    add(list, make(channel(rgba[0]), channel(rgba[1]), channel(rgba[2])), start, end);
    if (makeAlpha && rgba[3] < 1)
        add(list, makeAlpha(std::max<guint16>(1, channel(rgba[3]))), start, end);
}

PangoUnderline underlineFor(int64_t style) {
    if ((style & 0xFF) == UnderlineStyleDouble)
        return PANGO_UNDERLINE_DOUBLE;
    return (style & 0xFF) != 0 ? PANGO_UNDERLINE_SINGLE : PANGO_UNDERLINE_NONE;
}

// The style's settings that decide wrapping, read defensively: values outside the
// enumerations set left-aligned word wrapping.
LineBreakMode breakMode(const ParagraphStyle& style) {
    auto mode = style.lineBreakMode();
    return static_cast<int64_t>(mode) >= 0 && static_cast<int64_t>(mode) <= 5 ? mode
                                                                              : LineBreakMode::ByWordWrapping;
}

} // namespace

TextLayout::TextLayout(const AttributedString& text, double width, uint64_t options, PangoContext* context,
                       bool forDrawing) {
    const std::string& string = text.string();
    if (string.empty())
        return;
    bool singleLine = !(options & StringDrawingUsesLineFragmentOrigin);
    bool bounded = std::isfinite(width) && width > 0 && width < kMaximumWidth;
    if (singleLine) {
        addParagraph(text, 0, string.size(), 0, options, context, forDrawing, true);
    } else {
        uint64_t start = 0;
        while (true) {
            size_t newline = string.find('\n', start);
            uint64_t end = newline == std::string::npos ? string.size() : newline;
            addParagraph(text, start, end, bounded ? width : 0, options, context, forDrawing, false);
            if (newline == std::string::npos)
                break;
            start = newline + 1;
        }
    }
}

TextLayout::~TextLayout() {
    for (auto& paragraph : m_paragraphs)
        g_object_unref(paragraph.layout);
}

void TextLayout::addParagraph(const AttributedString& text, uint64_t start, uint64_t end, double width,
                              uint64_t options, PangoContext* context, bool forDrawing, bool singleLine) {
    // 1. The paragraph's own attributes: those of its first character; an empty paragraph
    //    takes those of the line break that opened it.
    const auto& runs = text.runs();
    auto runAt = [&](uint64_t index) -> size_t {
        auto it =
            std::upper_bound(runs.begin(), runs.end(), index,
                             [](uint64_t i, const AttributedString::Run& run) { return i < run.location; });
        return it == runs.begin() ? 0 : static_cast<size_t>(it - runs.begin() - 1);
    };
    const Dictionary& leading = runs.empty()
                                    ? emptyAttributes()
                                    : runs[runAt(start < end || start == 0 ? start : start - 1)].attributes;
    const Font* baseFont = fontIn(leading);
    if (!baseFont)
        baseFont = Font::defaultTextFont().get();
    const Value* styleValue = lookup(leading, ParagraphStyleAttributeName);
    auto styleObject = styleValue ? styleValue->objectAs<ParagraphStyle>() : nullptr;
    const ParagraphStyle& style = styleObject ? *styleObject : *ParagraphStyle::defaultParagraphStyle();

    PangoLayout* layout = pango_layout_new(context);
    const char* bytes = text.string().data() + start;
    auto length = static_cast<gssize>(end - start);
    std::string repaired;
    const char* invalid = nullptr;
    if (!g_utf8_validate(bytes, length, &invalid)) {
        // Bytes that are not UTF-8 show as "?", one for one, so positions keep their meaning.
        repaired.assign(bytes, static_cast<size_t>(length));
        while (!g_utf8_validate(repaired.data(), length, &invalid))
            repaired[static_cast<size_t>(invalid - repaired.data())] = '?';
        bytes = repaired.data();
    }
    pango_layout_set_text(layout, bytes, static_cast<int>(length));
    pango_layout_set_font_description(layout, baseFont->pangoFontDescription());
    if (singleLine)
        pango_layout_set_single_paragraph_mode(layout, TRUE);

    // 2. Character attributes, run by run; measuring needs only those that change geometry.
    PangoAttrList* list = nullptr;
    for (size_t i = runs.empty() ? 0 : runAt(start); i < runs.size() && runs[i].location < end; ++i) {
        uint64_t runEnd = i + 1 < runs.size() ? runs[i + 1].location : text.length();
        auto s = static_cast<guint>(std::max(runs[i].location, start) - start);
        auto e = static_cast<guint>(std::min(runEnd, end) - start);
        if (s >= e)
            continue;
        const Dictionary& attributes = runs[i].attributes;
        if (attributes.empty())
            continue;
        const Font* font = fontIn(attributes);
        if (!font)
            font = Font::defaultTextFont().get();
        if (font != baseFont)
            add(list, pango_attr_font_desc_new(font->pangoFontDescription()), s, e);
        if (const Value* kern = lookup(attributes, KernAttributeName); kern && kern->isNumber())
            add(list, pango_attr_letter_spacing_new(pangoUnits(kern->doubleValue())), s, e);
        if (!forDrawing)
            continue;
        addColor(list, lookup(attributes, ForegroundColorAttributeName), s, e, pango_attr_foreground_new,
                 pango_attr_foreground_alpha_new);
        addColor(list, lookup(attributes, BackgroundColorAttributeName), s, e, pango_attr_background_new,
                 pango_attr_background_alpha_new);
        if (const Value* strike = lookup(attributes, StrikethroughStyleAttributeName);
            strike && strike->integerValue() != 0) {
            add(list, pango_attr_strikethrough_new(TRUE), s, e);
            addColor(list, lookup(attributes, StrikethroughColorAttributeName), s, e,
                     pango_attr_strikethrough_color_new, nullptr);
        }
        if (const Value* underline = lookup(attributes, UnderlineStyleAttributeName);
            underline && underline->integerValue() != 0) {
            add(list, pango_attr_underline_new(underlineFor(underline->integerValue())), s, e);
            addColor(list, lookup(attributes, UnderlineColorAttributeName), s, e,
                     pango_attr_underline_color_new, nullptr);
        }
    }
    if (list) {
        pango_layout_set_attributes(layout, list);
        pango_attr_list_unref(list);
    }

    // 3. The paragraph style: indents, line width, wrapping or truncation, alignment, spacing.
    const auto& settings = style.settings();
    bool bounded = !singleLine && width > 0 && width < kMaximumWidth;
    double indentBase = std::min(settings.firstLineHeadIndent, settings.headIndent);
    LineBreakMode mode = breakMode(style);
    bool clipping = mode == LineBreakMode::ByClipping;
    double lineWidth = 0;
    if (bounded) {
        double right = settings.tailIndent > 0 ? settings.tailIndent : width + settings.tailIndent;
        lineWidth = std::max(1.0, right - indentBase);
        if (!clipping)
            pango_layout_set_width(layout, pangoUnits(lineWidth));
        switch (mode) {
        case LineBreakMode::ByCharWrapping:
            pango_layout_set_wrap(layout, PANGO_WRAP_CHAR);
            break;
        case LineBreakMode::ByTruncatingHead:
            pango_layout_set_ellipsize(layout, PANGO_ELLIPSIZE_START);
            break;
        case LineBreakMode::ByTruncatingTail:
            pango_layout_set_ellipsize(layout, PANGO_ELLIPSIZE_END);
            break;
        case LineBreakMode::ByTruncatingMiddle:
            pango_layout_set_ellipsize(layout, PANGO_ELLIPSIZE_MIDDLE);
            break;
        default:
            pango_layout_set_wrap(layout, PANGO_WRAP_WORD_CHAR);
            break;
        }
    }
    auto alignment = style.alignment();
    pango_layout_set_auto_dir(layout, alignment == TextAlignment::Natural);
    if (bounded && !clipping) {
        pango_layout_set_alignment(layout, alignment == TextAlignment::Right    ? PANGO_ALIGN_RIGHT
                                           : alignment == TextAlignment::Center ? PANGO_ALIGN_CENTER
                                                                                : PANGO_ALIGN_LEFT);
        pango_layout_set_justify(layout, alignment == TextAlignment::Justified);
    }
    if (settings.firstLineHeadIndent != settings.headIndent)
        pango_layout_set_indent(layout, pangoUnits(settings.firstLineHeadIndent - settings.headIndent));
    if (settings.lineSpacing > 0)
        pango_layout_set_spacing(layout, pangoUnits(settings.lineSpacing));

    // 4. Geometry: stacked below the previous paragraph with the spacing between them.
    PangoRectangle logical;
    pango_layout_get_extents(layout, nullptr, &logical);
    double paragraphWidth = logical.width / double(PANGO_SCALE);
    double paragraphHeight = logical.height / double(PANGO_SCALE);
    if (options & StringDrawingUsesFontLeading)
        paragraphHeight += baseFont->leading() * pango_layout_get_line_count(layout);
    double x = indentBase;
    if (bounded && clipping) {
        double free = lineWidth - paragraphWidth;
        if (alignment == TextAlignment::Right)
            x += free;
        else if (alignment == TextAlignment::Center)
            x += free / 2;
    }
    double y = m_size.height;
    if (!m_paragraphs.empty())
        y += m_pendingSpacing + settings.paragraphSpacingBefore;
    if (m_paragraphs.empty())
        m_firstBaseline = pango_layout_get_baseline(layout) / double(PANGO_SCALE);
    m_paragraphs.push_back({layout, start, x, y});
    m_size.width = std::max(m_size.width, indentBase + paragraphWidth);
    m_size.height = y + paragraphHeight;
    m_pendingSpacing = settings.paragraphSpacing;
}

int TextLayout::lineCount() const {
    int lines = 0;
    for (const auto& paragraph : m_paragraphs)
        lines += pango_layout_get_line_count(paragraph.layout);
    return lines;
}

std::vector<TextLayout::Line> TextLayout::lines() const {
    std::vector<Line> result;
    for (const auto& paragraph : m_paragraphs) {
        GSList* lines = pango_layout_get_lines_readonly(paragraph.layout);
        for (GSList* item = lines; item; item = item->next) {
            auto* line = static_cast<PangoLayoutLine*>(item->data);
            result.push_back({paragraph.start + static_cast<uint64_t>(line->start_index),
                              static_cast<uint64_t>(line->length), item->next == nullptr});
        }
    }
    return result;
}

void TextLayout::draw(cairo_t* cairo) const {
    for (const auto& paragraph : m_paragraphs) {
        cairo_move_to(cairo, paragraph.x, paragraph.y);
        pango_cairo_show_layout(cairo, paragraph.layout);
    }
}

} // namespace ns
