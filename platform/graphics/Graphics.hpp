#pragma once

#include "platform/graphics/Geometry.hpp"

#include <cstdint>
#include <span>

namespace ns {

// How drawn pixels combine with those already there (S source, D destination).
enum class CompositingOperation : int64_t {
    Clear = 0,
    Copy = 1,       // S replaces D wherever the shape covers
    SourceOver = 2, // the usual painting
    SourceIn = 3,
    SourceOut = 4,
    SourceAtop = 5,
    DestinationOver = 6,
    DestinationIn = 7,
    DestinationOut = 8,
    DestinationAtop = 9,
    XOR = 10,
    PlusDarker = 11, // drawn as Darken: Cairo has no saturating subtraction
    Highlight = 12,  // drawn as SourceOver
    PlusLighter = 13,
    Multiply = 14,
    Screen = 15,
    Overlay = 16,
    Darken = 17,
    Lighten = 18,
    ColorDodge = 19,
    ColorBurn = 20,
    SoftLight = 21,
    HardLight = 22,
    Difference = 23,
    Exclusion = 24,
    Hue = 25,
    Saturation = 26,
    Color = 27,
    Luminosity = 28,
};

// How images are resampled when drawn at another size.
enum class ImageInterpolation : int64_t {
    Default = 0, // as Medium
    None = 1,    // nearest pixel
    Low = 2,
    High = 3,
    Medium = 4,
};

// Fills with the current context's fill colour using the copy operation (the rectangle's
// pixels become the colour, alpha included). Empty or negative rectangles, and calls without a
// current context, draw nothing.
void RectFill(const Rect& rect);
void RectFillUsingOperation(const Rect& rect, CompositingOperation operation);
void RectFillList(std::span<const Rect> rects);
// Strokes the inside edge of the rectangle, 1 point (or `width`) wide, with the fill colour.
void FrameRect(const Rect& rect);
void FrameRectWithWidth(const Rect& rect, double width);
// Intersects the current context's clip with the rectangle.
void RectClip(const Rect& rect);

} // namespace ns
