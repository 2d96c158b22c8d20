#include "platform/graphics/TextSystem.hpp"

#include <pango/pangocairo.h>

namespace ns {

namespace {

PangoContext* makeContext(PangoFontMap* fontMap) {
    PangoContext* context = pango_font_map_create_context(fontMap);
    pango_context_set_round_glyph_positions(context, FALSE);
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    pango_cairo_context_set_font_options(context, options);
    cairo_font_options_destroy(options);
    return context;
}

// The thread's own font map (Pango font maps are not shared between threads) and contexts,
// released when the thread ends.
struct Contexts {
    PangoFontMap* fontMap = nullptr;
    PangoContext* measuring = nullptr;
    PangoContext* drawing = nullptr;
    PangoFontMap* map() {
        if (!fontMap)
            fontMap = pango_cairo_font_map_new();
        return fontMap;
    }
    ~Contexts() {
        if (measuring)
            g_object_unref(measuring);
        if (drawing)
            g_object_unref(drawing);
        if (fontMap)
            g_object_unref(fontMap);
    }
};

thread_local Contexts t_contexts;

} // namespace

PangoContext* TextSystem::measuringContext() {
    if (!t_contexts.measuring)
        t_contexts.measuring = makeContext(t_contexts.map());
    return t_contexts.measuring;
}

PangoContext* TextSystem::drawingContext(cairo_t* cairo) {
    if (!t_contexts.drawing)
        t_contexts.drawing = makeContext(t_contexts.map());
    // Picks up the transform and the surface's options; our own options still take precedence.
    pango_cairo_update_context(cairo, t_contexts.drawing);
    return t_contexts.drawing;
}

} // namespace ns

#if defined(__SANITIZE_ADDRESS__)
// fontconfig loses a block while it parses its XML configuration, once per process; it is not
// ours to free, and its frames carry no symbols, so the library is named. Weak, so that another
// part of a program may provide its own list instead.
extern "C" __attribute__((weak)) const char* __lsan_default_suppressions() {
    return "leak:libfontconfig.so\n";
}
extern "C" __attribute__((weak)) const char* __lsan_default_options() {
    return "print_suppressions=0";
}
#endif
