#pragma once

#include "platform/foundation/Object.hpp"
#include "platform/graphics/ControlSize.hpp"
#include "platform/graphics/Geometry.hpp"

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

typedef struct _PangoFontDescription PangoFontDescription;

namespace ns {

// A typeface at a point size. Fonts come from fontconfig and are laid out by Pango; the system
// family is DejaVu Sans. One point is one unit of user space. The same face and size give the
// same object. Immutable; safe to share between threads.
class Font : public Object {
public:
    // One installed face.
    struct Face {
        std::string family;         // "DejaVu Sans"
        std::string style;          // "Bold"
        std::string postScriptName; // "DejaVuSans-Bold"
        int weight = 400;           // 100...1000, 400 regular, 700 bold
        bool italic = false;
        int width = 100; // percent of normal
        bool fixedPitch = false;
    };

    Font(Face face, double pointSize);
    ~Font() override;

    // By PostScript name ("DejaVuSans-Bold") or family name ("DejaVu Sans", its regular face);
    // nil when no installed face has that name. A size of 0 or less means 12.
    static Ref<Font> fontWithName(std::string_view name, double size);

    // The standard fonts; a size of 0 or less means the font's default size.
    static Ref<Font> systemFontOfSize(double size);         // 13
    static Ref<Font> boldSystemFontOfSize(double size);     // 13
    static Ref<Font> controlContentFontOfSize(double size); // 13
    static Ref<Font> labelFontOfSize(double size);          // 10
    static Ref<Font> menuFontOfSize(double size);           // 13
    static Ref<Font> menuBarFontOfSize(double size);        // 14
    static Ref<Font> messageFontOfSize(double size);        // 13
    static Ref<Font> titleBarFontOfSize(double size);       // 13, bold
    static Ref<Font> toolTipsFontOfSize(double size);       // 11
    static Ref<Font> paletteFontOfSize(double size);        // 11
    static Ref<Font> userFontOfSize(double size);           // 12
    static Ref<Font> userFixedPitchFontOfSize(double size); // 11, DejaVu Sans Mono
    // What attributed text without a font attribute is measured and drawn in: userFontOfSize(12).
    static Ref<Font> defaultTextFont();

    static double systemFontSize() { return 13; }
    static double smallSystemFontSize() { return 11; }
    static double labelFontSize() { return 10; }
    // Regular 13, small 11, mini 9; large and unknown sizes 13.
    static double systemFontSizeForControlSize(ControlSize controlSize);

    const std::string& fontName() const { return m_face.postScriptName; }
    const std::string& familyName() const { return m_face.family; }
    // "DejaVu Sans Bold"; the family alone for the regular face.
    std::string displayName() const;
    double pointSize() const { return m_pointSize; }
    bool isFixedPitch() const { return m_face.fixedPitch; }
    const Face& face() const { return m_face; }

    // Metrics in points: ascender above the baseline (positive), descender below it
    // (negative), the extra space between lines the font asks for, and so on.
    double ascender() const;
    double descender() const;
    double leading() const;
    double capHeight() const;
    double xHeight() const;
    double underlinePosition() const;
    double underlineThickness() const;
    // Ascender - descender + leading: the distance between baselines of set-solid lines.
    double defaultLineHeight() const;

    // The same face at another size (0 or less means 12).
    Ref<Font> fontWithSize(double size) const;

    // For text code of this layer; owned by the font.
    PangoFontDescription* pangoFontDescription() const { return m_description; }

    bool isEqual(const Object& other) const override;
    size_t hash() const override;
    // "DejaVuSans 13.00 pt."
    std::string description() const override;

    // Every installed face of a family (empty for an unknown family), and every family.
    static std::vector<Face> facesOfFamily(std::string_view family);
    static std::vector<std::string> availableFamilies();
    static std::vector<Face> availableFaces();
    // The font of that face and size (shared).
    static Ref<Font> fontWithFace(const Face& face, double size);

private:
    struct Metrics {
        double ascender = 0, descender = 0, leading = 0, capHeight = 0, xHeight = 0, underlinePosition = 0,
               underlineThickness = 0;
    };
    const Metrics& metrics() const;

    Face m_face;
    double m_pointSize;
    PangoFontDescription* m_description;
    mutable std::once_flag m_metricsOnce;
    mutable Metrics m_metrics;
};

} // namespace ns
