#pragma once

typedef struct _PangoContext PangoContext;
typedef struct _cairo cairo_t;

namespace ns {

// The Pango contexts text is laid out in, one set per thread (Pango objects are not shared
// between threads). Both lay out with unhinted metrics and unrounded glyph positions, so a text
// measures the same whatever the scale it is later drawn at.
class TextSystem {
public:
    // For measuring; owned by the thread.
    static PangoContext* measuringContext();
    // For drawing into `cairo`: the thread's drawing context, brought up to date with the
    // Cairo context's transform and surface. Layouts made from it are for that drawing only.
    static PangoContext* drawingContext(cairo_t* cairo);
};

} // namespace ns
