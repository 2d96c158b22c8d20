#pragma once

#include "platform/graphics/Geometry.hpp"

#include <cstdint>
#include <vector>

typedef struct _PangoContext PangoContext;
typedef struct _PangoLayout PangoLayout;
typedef struct _cairo cairo_t;

namespace ns {

class AttributedString;

// The Pango layout of an attributed string: one Pango layout per paragraph, stacked from the
// top with the paragraph styles' spacing. Used by AttributedString to measure and draw; the
// same inputs give the same geometry either way.
class TextLayout {
public:
    // Lays the text out within `width` (0 or less, or not finite: unbounded) with the string
    // drawing options. For drawing, colours and decorations are added; measuring needs only
    // what changes the geometry.
    TextLayout(const AttributedString& text, double width, uint64_t options, PangoContext* context,
               bool forDrawing);
    ~TextLayout();
    TextLayout(const TextLayout&) = delete;
    TextLayout& operator=(const TextLayout&) = delete;

    // The widest line and the total height; (0, 0) for empty text.
    Size size() const { return m_size; }
    // From the top of the text to the first line's baseline.
    double firstBaseline() const { return m_firstBaseline; }
    int lineCount() const;
    // Each line as a range of the text (without the line break that ends a paragraph) and
    // whether it is the last line of its paragraph.
    struct Line {
        uint64_t location;
        uint64_t length;
        bool endsParagraph;
    };
    std::vector<Line> lines() const;
    // Draws with the top-left of the text at the origin of Cairo's user space, y growing down.
    void draw(cairo_t* cairo) const;

private:
    struct Paragraph {
        PangoLayout* layout;
        uint64_t start;
        double x;
        double y;
    };

    void addParagraph(const AttributedString& text, uint64_t start, uint64_t end, double width,
                      uint64_t options, PangoContext* context, bool forDrawing, bool singleLine);

    std::vector<Paragraph> m_paragraphs;
    Size m_size;
    double m_firstBaseline = 0;
    double m_pendingSpacing = 0;
};

} // namespace ns
