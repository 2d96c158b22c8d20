#pragma once

#include "platform/foundation/Coding.hpp"
#include "platform/foundation/Object.hpp"
#include "platform/graphics/ColorSpace.hpp"
#include "platform/graphics/Geometry.hpp"

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ns {

class CGColor;
class Image;

enum class ColorSystemEffect : int64_t {
    None = 0,
    Pressed = 1,
    DeepPressed = 2,
    Disabled = 3,
    Rollover = 4,
};

// A colour: components in a colour space (grey, RGB, CMYK), a named colour of a catalogue (the
// system colours, colour lists), or a pattern that tiles an image.
//
// Every operation first asks resolvedColor() which colour to act on. A plain colour answers
// itself; a subclass overrides that one hook to stand for another colour chosen at the moment
// of each call (a colour that follows the light or dark appearance, say), and every operation
// below then behaves exactly as that colour would. A subclass made with the default constructor
// has no value of its own: it answers as nil (components 0, conversions nil, set() does nothing)
// until its hook names a colour.
//
// System colours are catalogue colours with a light and a dark value; which one applies is
// decided at each use by the current drawing appearance (Appearance::currentDrawingAppearanceIsDark).
//
// Components are doubles, nominally 0 to 1, and are kept as given (not clamped), except alpha,
// which is clamped to 0...1. Colours are immutable once made.
//
// Colours can be archived, securely, under the class name "NSColor": a component colour as its
// space and components, a catalogue colour as its catalogue and colour names (read back, it is
// the catalogue's colour of the reading process). A pattern cannot be archived: the archiver
// records an error. A subclass with no value of its own writes nothing here and codes its own
// keys after these.
class Color : public Object, public Coding {
public:
    enum class Kind { None, Components, Catalog, Pattern };
    struct Data {
        Kind kind = Kind::None;
        Ref<ColorSpace> space;
        std::array<double, 4> components{};
        double alpha = 1;
        std::string catalogName;
        std::string colorName;
        Ref<Color> lightValue;
        Ref<Color> darkValue;
        Ref<Image> patternImage;
    };

    Color();
    explicit Color(Data data);

    // --- Making colours ---------------------------------------------------------------------
    static Ref<Color> colorWithCalibratedRed(double red, double green, double blue, double alpha);
    static Ref<Color> colorWithDeviceRed(double red, double green, double blue, double alpha);
    // The plain RGB constructor: sRGB components.
    static Ref<Color> colorWithRed(double red, double green, double blue, double alpha);
    static Ref<Color> colorWithSRGBRed(double red, double green, double blue, double alpha);
    static Ref<Color> colorWithCalibratedWhite(double white, double alpha);
    static Ref<Color> colorWithDeviceWhite(double white, double alpha);
    // The plain grey constructor: generic gamma 2.2 grey.
    static Ref<Color> colorWithWhite(double white, double alpha);
    static Ref<Color> colorWithGenericGamma22White(double white, double alpha);
    static Ref<Color> colorWithDeviceCyan(double cyan, double magenta, double yellow, double black,
                                          double alpha);
    // Hue, saturation and brightness in 0...1 (hue 1 is red again).
    static Ref<Color> colorWithCalibratedHue(double hue, double saturation, double brightness, double alpha);
    static Ref<Color> colorWithDeviceHue(double hue, double saturation, double brightness, double alpha);
    static Ref<Color> colorWithHue(double hue, double saturation, double brightness, double alpha);
    // Colour components followed by alpha; nil when the space is nil or the count is not the
    // space's component count plus one.
    static Ref<Color> colorWithColorSpace(const Ref<ColorSpace>& space, std::span<const double> components);
    // The catalogue "System" gives the system colours by method name ("windowBackgroundColor");
    // any other catalogue is a colour list of that name. Nil for an unknown catalogue or key.
    static Ref<Color> colorWithCatalogName(std::string_view catalogName, std::string_view colorName);
    // A colour that tiles the image; nil for a nil image.
    static Ref<Color> colorWithPatternImage(const Ref<Image>& image);
    // Nil for a nil handle.
    static Ref<Color> colorWithCGColor(const Ref<ns::CGColor>& color);

    // --- Fixed colours (the same object on every call) --------------------------------------
    static Ref<Color> blackColor();     // grey 0
    static Ref<Color> darkGrayColor();  // grey 1/3
    static Ref<Color> grayColor();      // grey 0.5
    static Ref<Color> lightGrayColor(); // grey 2/3
    static Ref<Color> whiteColor();     // grey 1
    static Ref<Color> clearColor();     // grey 0, alpha 0
    static Ref<Color> redColor();
    static Ref<Color> greenColor();
    static Ref<Color> blueColor();
    static Ref<Color> cyanColor();
    static Ref<Color> yellowColor();
    static Ref<Color> magentaColor();
    static Ref<Color> orangeColor();
    static Ref<Color> purpleColor();
    static Ref<Color> brownColor();

    // --- System colours: light and dark values, resolved at each use ------------------------
    static Ref<Color> textColor();
    static Ref<Color> textBackgroundColor();
    static Ref<Color> labelColor();
    static Ref<Color> secondaryLabelColor();
    static Ref<Color> tertiaryLabelColor();
    static Ref<Color> controlTextColor();
    static Ref<Color> disabledControlTextColor();
    static Ref<Color> linkColor();
    static Ref<Color> windowBackgroundColor();
    static Ref<Color> controlBackgroundColor();
    static Ref<Color> controlColor();
    static Ref<Color> selectedContentBackgroundColor();
    static Ref<Color> selectedTextBackgroundColor();
    static Ref<Color> gridColor();
    static Ref<Color> separatorColor();
    static Ref<Color> headerTextColor();

    // The fixed or system colour of that method name ("windowBackgroundColor", "blackColor");
    // nil for a name that is neither. Honours replacements.
    static Ref<Color> systemColorNamed(std::string_view name);
    // Every name systemColorNamed answers, sorted.
    static std::vector<std::string> systemColorNames();
    // Makes every later request for the system colour `name` (controlBackgroundColor(),
    // systemColorNamed, the "System" catalogue) answer `replacement` itself, for the whole
    // process; nil restores the platform's own. False (and a log line) for an unknown name.
    static bool replaceSystemColor(std::string_view name, const Ref<Color>& replacement);
    // The same, with the replacement made by `provider` when the colour is first asked for and
    // kept from then on; for replacements that must not be built before they are needed. A
    // provider answering nil leaves the platform's own colour in place.
    static bool replaceSystemColorLazily(std::string_view name, std::function<Ref<Color>()> provider);

    // --- The hook ---------------------------------------------------------------------------
    // The colour that every operation acts on now: this colour, unless a subclass says
    // otherwise. Nil makes the colour answer as nil.
    virtual Ref<Color> resolvedColor() const;

    // --- Colour space -----------------------------------------------------------------------
    // NSNamedColorSpace for catalogue colours, NSPatternColorSpace for patterns, else the name
    // the colour's space reports; "" for nil.
    std::string colorSpaceName() const;
    // The space of the colour's components (a catalogue colour: that of the value it stands
    // for now); nil for patterns and nil.
    Ref<ColorSpace> colorSpace() const;
    // The colour in the named space, or nil: a pattern converts to nothing but the pattern
    // space, only catalogue colours are in the named space, and the custom name or an unknown
    // name gives nil. A colour already in the space is returned as it is.
    Ref<Color> colorUsingColorSpaceName(std::string_view name) const;
    Ref<Color> colorUsingColorSpace(const Ref<ColorSpace>& space) const;

    // --- Components -------------------------------------------------------------------------
    // Component reads convert between grey, RGB and CMYK as the colour space notes say, so
    // they answer for any colour but a pattern; for a pattern (or nil) they log and answer 0.
    // Alpha is always available.
    int64_t numberOfComponents() const; // colour components plus alpha; 0 for patterns
    // Writes numberOfComponents() values (colour components, then alpha).
    void getComponents(double* components) const;
    std::vector<double> components() const;
    double alphaComponent() const;
    double redComponent() const;
    double greenComponent() const;
    double blueComponent() const;
    void getRed(double* red, double* green, double* blue, double* alpha) const;
    double hueComponent() const;
    double saturationComponent() const;
    double brightnessComponent() const;
    void getHue(double* hue, double* saturation, double* brightness, double* alpha) const;
    double whiteComponent() const;
    void getWhite(double* white, double* alpha) const;
    double cyanComponent() const;
    double magentaComponent() const;
    double yellowComponent() const;
    double blackComponent() const;
    void getCyan(double* cyan, double* magenta, double* yellow, double* black, double* alpha) const;
    // Catalogue and colour names of a named colour; "" (and a log line) for any other colour.
    std::string catalogNameComponent() const;
    std::string colorNameComponent() const;
    std::string localizedCatalogNameComponent() const;
    std::string localizedColorNameComponent() const;
    // The tiled image of a pattern colour; nil otherwise.
    Ref<Image> patternImage() const;

    // --- Derived colours (fixed colours of the moment they are made) ------------------------
    // Same space and components, alpha replaced (clamped to 0...1); nil for nil.
    Ref<Color> colorWithAlphaComponent(double alpha) const;
    // fraction (clamped to 0...1) of `other` mixed into this colour, alpha included. Both grey
    // gives grey; otherwise RGB, in this colour's RGB space or calibrated RGB. Nil when either
    // colour has no RGB form.
    Ref<Color> blendedColorWithFraction(double fraction, const Ref<Color>& other) const;
    // Mixed with white, respectively black, by the level (0...1).
    Ref<Color> highlightWithLevel(double level) const;
    Ref<Color> shadowWithLevel(double level) const;
    // How a control draws in a state: pressed is 20% towards black, deep pressed 40%, rollover
    // 10% towards white, disabled half the alpha; None (and unknown effects) the colour itself.
    Ref<Color> colorWithSystemEffect(ColorSystemEffect effect) const;

    // --- Drawing ----------------------------------------------------------------------------
    // Make the colour the current context's fill and stroke colour, fill only, or stroke only.
    // Nothing happens without a current context or for a nil colour.
    void set() const;
    void setFill() const;
    void setStroke() const;
    // Fills the rectangle with the colour (source-over) in the current context.
    void drawSwatchInRect(const Rect& rect) const;
    // A handle to the colour as drawn now; the caller keeps it alive. Nil for nil.
    Ref<ns::CGColor> CGColor() const;

    // --- Archiving --------------------------------------------------------------------------
    static const CodingClass& codingClass();
    const CodingClass& classForCoder() const override;
    void encodeWithCoder(KeyedArchiver& coder) const override;
    // The colour that encodeWithCoder wrote into the entry being decoded; nil when the entry
    // holds none that this process can make (an unknown space, catalogue or key).
    static Ref<Color> colorWithCoder(KeyedUnarchiver& coder);

    // Two plain colours are equal when kind, space and values match; a colour with no value
    // of its own (a subclass) equals only itself unless it overrides this.
    bool isEqual(const Object& other) const override;
    size_t hash() const override;
    std::string description() const override;

    // The component or pattern colour that this colour stands for now, through the hook and
    // through catalogue values; nil when there is none. For drawing code of this layer.
    Ref<Color> concreteColor() const;
    // Red, green, blue and alpha as drawn; false for patterns and nil.
    bool deviceRGBA(double rgba[4]) const;

    const Data& data() const { return m_data; }

private:
    Data m_data;
};

} // namespace ns
