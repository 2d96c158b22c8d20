// Text measurement through the platform layer against Pango called directly, in the same run.
// Both sides lay out in a Pango context set up the same way (a font map of their own, unhinted
// metrics, unrounded glyph positions) with the same font description, so the difference is the
// layer's own cost: reading attribute runs, splitting paragraphs, applying paragraph styles.
#include "core/WrapStringMaxWidth.hpp"
#include "platform/graphics/AttributedString.hpp"
#include "platform/graphics/Font.hpp"
#include "platform/graphics/MutableAttributedString.hpp"
#include "platform/graphics/MutableParagraphStyle.hpp"

#include <benchmark/benchmark.h>
#include <pango/pangocairo.h>

#include <string>

namespace {

const std::string kShort = "Gross pay for March";
const std::string kParagraph =
    "The payslips for the current period have been calculated. Review the totals for each employee, "
    "correct any hours that were entered late, and approve the run before the bank file is created; "
    "approved runs can still be reopened until the payments are sent.";
constexpr double kWrapWidth = 300;

// A Pango context like the layer's own: its own font map, unhinted metrics, unrounded positions.
struct DirectPango {
    PangoFontMap* fontMap = pango_cairo_font_map_new();
    PangoContext* context = pango_font_map_create_context(fontMap);
    DirectPango() {
        pango_context_set_round_glyph_positions(context, FALSE);
        cairo_font_options_t* options = cairo_font_options_create();
        cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
        cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
        pango_cairo_context_set_font_options(context, options);
        cairo_font_options_destroy(options);
    }
    ~DirectPango() {
        g_object_unref(context);
        g_object_unref(fontMap);
    }
};

PangoRectangle measureDirect(PangoContext* context, const std::string& text, const PangoFontDescription* font,
                             double width, PangoAttrList* attributes = nullptr) {
    PangoLayout* layout = pango_layout_new(context);
    pango_layout_set_text(layout, text.data(), static_cast<int>(text.size()));
    pango_layout_set_font_description(layout, font);
    if (attributes)
        pango_layout_set_attributes(layout, attributes);
    if (width > 0) {
        pango_layout_set_width(layout, static_cast<int>(width * PANGO_SCALE));
        pango_layout_set_wrap(layout, PANGO_WRAP_WORD_CHAR);
    }
    PangoRectangle logical;
    pango_layout_get_extents(layout, nullptr, &logical);
    g_object_unref(layout);
    return logical;
}

ns::Dictionary attributes() {
    auto style = ns::MutableParagraphStyle::make();
    style->setAlignment(ns::TextAlignment::Left);
    return {{ns::FontAttributeName, ns::Font::systemFontOfSize(13)},
            {ns::ParagraphStyleAttributeName, style}};
}

// --- One short line ---------------------------------------------------------------------------

void PangoShortLine(benchmark::State& state) {
    DirectPango pango;
    auto font = ns::Font::systemFontOfSize(13);
    for (auto _ : state)
        benchmark::DoNotOptimize(measureDirect(pango.context, kShort, font->pangoFontDescription(), 0));
}
BENCHMARK(PangoShortLine);

void LayerShortLine(benchmark::State& state) {
    auto text = ns::AttributedString::make(kShort, attributes());
    for (auto _ : state)
        benchmark::DoNotOptimize(text->size());
}
BENCHMARK(LayerShortLine);

// Includes making the attributed string, as a caller measuring a fresh label does.
void LayerShortLineFresh(benchmark::State& state) {
    auto shared = attributes();
    for (auto _ : state)
        benchmark::DoNotOptimize(ns::AttributedString::make(kShort, shared)->size());
}
BENCHMARK(LayerShortLineFresh);

// --- A paragraph wrapped to a width -------------------------------------------------------------

void PangoWrappedParagraph(benchmark::State& state) {
    DirectPango pango;
    auto font = ns::Font::systemFontOfSize(13);
    for (auto _ : state)
        benchmark::DoNotOptimize(
            measureDirect(pango.context, kParagraph, font->pangoFontDescription(), kWrapWidth));
}
BENCHMARK(PangoWrappedParagraph);

void LayerWrappedParagraph(benchmark::State& state) {
    auto text = ns::AttributedString::make(kParagraph, attributes());
    for (auto _ : state)
        benchmark::DoNotOptimize(
            text->boundingRectWithSize({kWrapWidth, 1e9}, ns::StringDrawingUsesLineFragmentOrigin));
}
BENCHMARK(LayerWrappedParagraph);

// --- Mixed fonts: a bold label followed by regular text --------------------------------------------

void PangoMixedFonts(benchmark::State& state) {
    DirectPango pango;
    auto regular = ns::Font::systemFontOfSize(13);
    auto bold = ns::Font::boldSystemFontOfSize(13);
    std::string text = "Employee: " + kShort;
    for (auto _ : state) {
        PangoAttrList* list = pango_attr_list_new();
        PangoAttribute* attribute = pango_attr_font_desc_new(bold->pangoFontDescription());
        attribute->start_index = 0;
        attribute->end_index = 10;
        pango_attr_list_insert(list, attribute);
        benchmark::DoNotOptimize(
            measureDirect(pango.context, text, regular->pangoFontDescription(), 0, list));
        pango_attr_list_unref(list);
    }
}
BENCHMARK(PangoMixedFonts);

// The same layout built the way the layer builds it: the paragraph's first font as the base,
// the other font as an attribute.
void PangoMixedFontsMirror(benchmark::State& state) {
    DirectPango pango;
    auto regular = ns::Font::systemFontOfSize(13);
    auto bold = ns::Font::boldSystemFontOfSize(13);
    std::string text = "Employee: " + kShort;
    for (auto _ : state) {
        PangoAttrList* list = pango_attr_list_new();
        PangoAttribute* attribute = pango_attr_font_desc_new(regular->pangoFontDescription());
        attribute->start_index = 10;
        attribute->end_index = text.size();
        pango_attr_list_insert(list, attribute);
        benchmark::DoNotOptimize(measureDirect(pango.context, text, bold->pangoFontDescription(), 0, list));
        pango_attr_list_unref(list);
    }
}
BENCHMARK(PangoMixedFontsMirror);

void LayerMixedFonts(benchmark::State& state) {
    auto text = ns::MutableAttributedString::make("Employee: " + kShort, attributes());
    text->addAttribute(ns::FontAttributeName, ns::Font::boldSystemFontOfSize(13), {0, 10});
    for (auto _ : state)
        benchmark::DoNotOptimize(text->size());
}
BENCHMARK(LayerMixedFonts);

// --- Wrapping a string into lines ------------------------------------------------------------------

void LayerWrapStringMaxWidth(benchmark::State& state) {
    auto font = ns::Font::systemFontOfSize(13);
    for (auto _ : state)
        benchmark::DoNotOptimize(corvane::core::wrapStringMaxWidth(kParagraph, font, kWrapWidth));
}
BENCHMARK(LayerWrapStringMaxWidth);

} // namespace

BENCHMARK_MAIN();
