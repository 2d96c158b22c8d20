#include "platform/graphics/Font.hpp"

#include "platform/foundation/Format.hpp"

#include "platform/graphics/TextSystem.hpp"

#include <fontconfig/fontconfig.h>
#include <hb-ot.h>
#include <pango/pangocairo.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <set>

namespace ns {

namespace {

constexpr const char* kSystemFamily = "DejaVu Sans";
constexpr const char* kFixedPitchFamily = "DejaVu Sans Mono";

std::string fcString(FcPattern* pattern, const char* object) {
    FcChar8* value = nullptr;
    if (FcPatternGetString(pattern, object, 0, &value) == FcResultMatch && value)
        return reinterpret_cast<const char*>(value);
    return {};
}

int fcInteger(FcPattern* pattern, const char* object, int fallback) {
    int value;
    if (FcPatternGetInteger(pattern, object, 0, &value) == FcResultMatch)
        return value;
    double real;
    if (FcPatternGetDouble(pattern, object, 0, &real) == FcResultMatch)
        return static_cast<int>(std::lround(real));
    return fallback;
}

// Every installed scalable face, read once.
const std::vector<Font::Face>& installedFaces() {
    static const std::vector<Font::Face> faces = [] {
        std::vector<Font::Face> result;
        FcPattern* pattern = FcPatternCreate();
        FcObjectSet* objects = FcObjectSetBuild(FC_FAMILY, FC_STYLE, FC_POSTSCRIPT_NAME, FC_WEIGHT, FC_SLANT,
                                                FC_WIDTH, FC_SPACING, nullptr);
        FcFontSet* set = FcFontList(nullptr, pattern, objects);
        std::set<std::string> seen;
        for (int i = 0; set && i < set->nfont; ++i) {
            FcPattern* font = set->fonts[i];
            Font::Face face;
            face.family = fcString(font, FC_FAMILY);
            face.style = fcString(font, FC_STYLE);
            face.postScriptName = fcString(font, FC_POSTSCRIPT_NAME);
            if (face.family.empty() || face.postScriptName.empty() ||
                !seen.insert(face.postScriptName).second)
                continue;
            face.weight = FcWeightToOpenType(fcInteger(font, FC_WEIGHT, FC_WEIGHT_REGULAR));
            face.italic = fcInteger(font, FC_SLANT, FC_SLANT_ROMAN) != FC_SLANT_ROMAN;
            face.width = fcInteger(font, FC_WIDTH, FC_WIDTH_NORMAL);
            face.fixedPitch = fcInteger(font, FC_SPACING, FC_PROPORTIONAL) >= FC_MONO;
            result.push_back(std::move(face));
        }
        if (set)
            FcFontSetDestroy(set);
        FcObjectSetDestroy(objects);
        FcPatternDestroy(pattern);
        std::sort(result.begin(), result.end(), [](const Font::Face& a, const Font::Face& b) {
            return a.postScriptName < b.postScriptName;
        });
        return result;
    }();
    return faces;
}

// How far a face is from regular upright normal width; smaller is more regular.
int regularity(const Font::Face& face) {
    return std::abs(face.weight - 400) + (face.italic ? 1000 : 0) + std::abs(face.width - 100) * 10;
}

PangoStretch stretchFor(int width) {
    static constexpr std::pair<int, PangoStretch> table[] = {
        {50, PANGO_STRETCH_ULTRA_CONDENSED}, {63, PANGO_STRETCH_EXTRA_CONDENSED},
        {75, PANGO_STRETCH_CONDENSED},       {87, PANGO_STRETCH_SEMI_CONDENSED},
        {100, PANGO_STRETCH_NORMAL},         {113, PANGO_STRETCH_SEMI_EXPANDED},
        {125, PANGO_STRETCH_EXPANDED},       {150, PANGO_STRETCH_EXTRA_EXPANDED},
        {200, PANGO_STRETCH_ULTRA_EXPANDED},
    };
    PangoStretch best = PANGO_STRETCH_NORMAL;
    int distance = 1 << 30;
    for (const auto& [w, stretch] : table)
        if (std::abs(w - width) < distance) {
            distance = std::abs(w - width);
            best = stretch;
        }
    return best;
}

double effectiveSize(double size, double fallback) {
    return std::isfinite(size) && size > 0 ? size : fallback;
}

Ref<Font> standardFont(const char* family, bool bold, double size, double fallback) {
    auto faces = Font::facesOfFamily(family);
    if (faces.empty())
        return nullptr;
    auto pick =
        std::min_element(faces.begin(), faces.end(), [bold](const Font::Face& a, const Font::Face& b) {
            auto score = [bold](const Font::Face& f) {
                return regularity(f) + (bold ? std::abs(f.weight - 700) - std::abs(f.weight - 400) : 0);
            };
            return score(a) < score(b);
        });
    return Font::fontWithFace(*pick, effectiveSize(size, fallback));
}

} // namespace

Font::Font(Face face, double pointSize) : m_face(std::move(face)), m_pointSize(pointSize) {
    m_description = pango_font_description_new();
    pango_font_description_set_family(m_description, m_face.family.c_str());
    pango_font_description_set_weight(m_description, static_cast<PangoWeight>(m_face.weight));
    pango_font_description_set_style(m_description, m_face.italic ? PANGO_STYLE_ITALIC : PANGO_STYLE_NORMAL);
    pango_font_description_set_stretch(m_description, stretchFor(m_face.width));
    // Absolute size: one point is one unit of user space, whatever the resolution.
    pango_font_description_set_absolute_size(m_description, m_pointSize * PANGO_SCALE);
}

Font::~Font() {
    pango_font_description_free(m_description);
}

std::vector<Font::Face> Font::availableFaces() {
    return installedFaces();
}

std::vector<Font::Face> Font::facesOfFamily(std::string_view family) {
    std::vector<Face> result;
    for (const auto& face : installedFaces())
        if (face.family == family)
            result.push_back(face);
    return result;
}

std::vector<std::string> Font::availableFamilies() {
    std::set<std::string> families;
    for (const auto& face : installedFaces())
        families.insert(face.family);
    return {families.begin(), families.end()};
}

Ref<Font> Font::fontWithFace(const Face& face, double size) {
    static std::mutex mutex;
    static std::map<std::pair<std::string, double>, Ref<Font>> cache;
    double pointSize = effectiveSize(size, 12);
    std::lock_guard lock(mutex);
    auto key = std::make_pair(face.postScriptName, pointSize);
    auto it = cache.find(key);
    if (it != cache.end())
        return it->second;
    auto font = create<Font>(face, pointSize);
    cache.emplace(key, font);
    return font;
}

Ref<Font> Font::fontWithName(std::string_view name, double size) {
    const auto& faces = installedFaces();
    for (const auto& face : faces)
        if (face.postScriptName == name)
            return fontWithFace(face, size);
    const Face* best = nullptr;
    for (const auto& face : faces)
        if (face.family == name && (!best || regularity(face) < regularity(*best)))
            best = &face;
    return best ? fontWithFace(*best, size) : nullptr;
}

Ref<Font> Font::systemFontOfSize(double size) {
    return standardFont(kSystemFamily, false, size, 13);
}
Ref<Font> Font::boldSystemFontOfSize(double size) {
    return standardFont(kSystemFamily, true, size, 13);
}
Ref<Font> Font::controlContentFontOfSize(double size) {
    return standardFont(kSystemFamily, false, size, 13);
}
Ref<Font> Font::labelFontOfSize(double size) {
    return standardFont(kSystemFamily, false, size, 10);
}
Ref<Font> Font::menuFontOfSize(double size) {
    return standardFont(kSystemFamily, false, size, 13);
}
Ref<Font> Font::menuBarFontOfSize(double size) {
    return standardFont(kSystemFamily, false, size, 14);
}
Ref<Font> Font::messageFontOfSize(double size) {
    return standardFont(kSystemFamily, false, size, 13);
}
Ref<Font> Font::titleBarFontOfSize(double size) {
    return standardFont(kSystemFamily, true, size, 13);
}
Ref<Font> Font::toolTipsFontOfSize(double size) {
    return standardFont(kSystemFamily, false, size, 11);
}
Ref<Font> Font::paletteFontOfSize(double size) {
    return standardFont(kSystemFamily, false, size, 11);
}
Ref<Font> Font::userFontOfSize(double size) {
    return standardFont(kSystemFamily, false, size, 12);
}
Ref<Font> Font::userFixedPitchFontOfSize(double size) {
    return standardFont(kFixedPitchFamily, false, size, 11);
}

Ref<Font> Font::defaultTextFont() {
    static const Ref<Font> font = userFontOfSize(12);
    return font;
}

double Font::systemFontSizeForControlSize(ControlSize controlSize) {
    switch (controlSize) {
    case ControlSize::Small:
        return 11;
    case ControlSize::Mini:
        return 9;
    default:
        return 13;
    }
}

std::string Font::displayName() const {
    if (m_face.style.empty() || m_face.style == "Book" || m_face.style == "Regular")
        return m_face.family;
    return format("%@ %@", m_face.family, m_face.style);
}

Ref<Font> Font::fontWithSize(double size) const {
    return fontWithFace(m_face, size);
}

const Font::Metrics& Font::metrics() const {
    std::call_once(m_metricsOnce, [this] {
        PangoContext* context = TextSystem::measuringContext();
        PangoFont* font = pango_context_load_font(context, m_description);
        if (!font)
            return;
        PangoFontMetrics* metrics = pango_font_get_metrics(font, nullptr);
        double ascent = pango_font_metrics_get_ascent(metrics) / double(PANGO_SCALE);
        double descent = pango_font_metrics_get_descent(metrics) / double(PANGO_SCALE);
        double height = pango_font_metrics_get_height(metrics) / double(PANGO_SCALE);
        m_metrics.ascender = ascent;
        m_metrics.descender = -descent;
        m_metrics.leading = std::max(0.0, height - ascent - descent);
        m_metrics.underlinePosition =
            pango_font_metrics_get_underline_position(metrics) / double(PANGO_SCALE);
        m_metrics.underlineThickness =
            pango_font_metrics_get_underline_thickness(metrics) / double(PANGO_SCALE);
        pango_font_metrics_unref(metrics);

        // Cap and x heights from the font's tables, in font units scaled to the point size.
        hb_face_t* face = hb_font_get_face(pango_font_get_hb_font(font));
        hb_font_t* unscaled = hb_font_create(face);
        double perUnit = m_pointSize / std::max(1u, hb_face_get_upem(face));
        // Older tables lack them; then the heights of "H" and "x" stand in.
        auto letterHeight = [&](hb_ot_metrics_tag_t tag, hb_codepoint_t letter) {
            hb_position_t position = 0;
            if (hb_ot_metrics_get_position(unscaled, tag, &position) && position > 0)
                return position * perUnit;
            hb_codepoint_t glyph;
            hb_glyph_extents_t extents;
            if (hb_font_get_nominal_glyph(unscaled, letter, &glyph) &&
                hb_font_get_glyph_extents(unscaled, glyph, &extents))
                return extents.y_bearing * perUnit;
            return 0.0;
        };
        m_metrics.capHeight = letterHeight(HB_OT_METRICS_TAG_CAP_HEIGHT, 'H');
        m_metrics.xHeight = letterHeight(HB_OT_METRICS_TAG_X_HEIGHT, 'x');
        hb_font_destroy(unscaled);
        g_object_unref(font);
    });
    return m_metrics;
}

double Font::ascender() const {
    return metrics().ascender;
}
double Font::descender() const {
    return metrics().descender;
}
double Font::leading() const {
    return metrics().leading;
}
double Font::capHeight() const {
    return metrics().capHeight;
}
double Font::xHeight() const {
    return metrics().xHeight;
}
double Font::underlinePosition() const {
    return metrics().underlinePosition;
}
double Font::underlineThickness() const {
    return metrics().underlineThickness;
}
double Font::defaultLineHeight() const {
    return ascender() - descender() + leading();
}

bool Font::isEqual(const Object& other) const {
    auto* font = dynamic_cast<const Font*>(&other);
    return font && font->m_face.postScriptName == m_face.postScriptName && font->m_pointSize == m_pointSize;
}

size_t Font::hash() const {
    return std::hash<std::string>{}(m_face.postScriptName) ^ std::hash<double>{}(m_pointSize);
}

std::string Font::description() const {
    return format("%@ %.2f pt.", m_face.postScriptName, m_pointSize);
}

} // namespace ns
