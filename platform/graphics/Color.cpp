#include "platform/graphics/Color.hpp"

#include "platform/foundation/KeyedArchiver.hpp"
#include "platform/foundation/KeyedUnarchiver.hpp"
#include "platform/foundation/Log.hpp"
#include "platform/graphics/Appearance.hpp"
#include "platform/graphics/CGColor.hpp"
#include "platform/graphics/ColorList.hpp"
#include "platform/graphics/Graphics.hpp"
#include "platform/graphics/GraphicsContext.hpp"
#include "platform/graphics/Image.hpp"
#include "platform/graphics/SystemColorCatalog.hpp"

#include <algorithm>
#include <cmath>
#include <functional>

namespace ns {

namespace {

constexpr double kLumaRed = 0.2125;
constexpr double kLumaGreen = 0.7154;
constexpr double kLumaBlue = 0.0721;

double clampUnit(double value) {
    if (std::isnan(value))
        return 0;
    return std::clamp(value, 0.0, 1.0);
}

Ref<Color> makeComponents(const Ref<ColorSpace>& space, std::array<double, 4> components, double alpha) {
    Color::Data data;
    data.kind = Color::Kind::Components;
    data.space = space;
    data.components = components;
    data.alpha = clampUnit(alpha);
    return create<Color>(std::move(data));
}

Ref<Color> makeRGB(const Ref<ColorSpace>& space, double r, double g, double b, double a) {
    return makeComponents(space, {r, g, b, 0}, a);
}

Ref<Color> makeGray(const Ref<ColorSpace>& space, double w, double a) {
    return makeComponents(space, {w, 0, 0, 0}, a);
}

// Component values of a component colour, moved to another model (see ColorSpace).
struct RGB {
    double r, g, b;
};

RGB toRGB(const Color::Data& d) {
    const auto& c = d.components;
    switch (d.space->colorSpaceModel()) {
    case ColorSpaceModel::Gray:
        return {c[0], c[0], c[0]};
    case ColorSpaceModel::CMYK:
        return {(1 - c[0]) * (1 - c[3]), (1 - c[1]) * (1 - c[3]), (1 - c[2]) * (1 - c[3])};
    default:
        return {c[0], c[1], c[2]};
    }
}

double toGray(const Color::Data& d) {
    if (d.space->colorSpaceModel() == ColorSpaceModel::Gray)
        return d.components[0];
    RGB rgb = toRGB(d);
    return kLumaRed * rgb.r + kLumaGreen * rgb.g + kLumaBlue * rgb.b;
}

std::array<double, 4> toCMYK(const Color::Data& d) {
    if (d.space->colorSpaceModel() == ColorSpaceModel::CMYK)
        return d.components;
    RGB rgb = toRGB(d);
    double k = 1 - std::max({rgb.r, rgb.g, rgb.b});
    if (k >= 1)
        return {0, 0, 0, 1};
    return {(1 - rgb.r - k) / (1 - k), (1 - rgb.g - k) / (1 - k), (1 - rgb.b - k) / (1 - k), k};
}

std::array<double, 3> rgbToHSB(RGB rgb) {
    double maxc = std::max({rgb.r, rgb.g, rgb.b});
    double minc = std::min({rgb.r, rgb.g, rgb.b});
    double delta = maxc - minc;
    double hue = 0;
    if (delta > 0) {
        if (maxc == rgb.r)
            hue = std::fmod((rgb.g - rgb.b) / delta, 6.0);
        else if (maxc == rgb.g)
            hue = (rgb.b - rgb.r) / delta + 2;
        else
            hue = (rgb.r - rgb.g) / delta + 4;
        hue /= 6;
        if (hue < 0)
            hue += 1;
    }
    double saturation = maxc > 0 ? delta / maxc : 0;
    return {hue, saturation, maxc};
}

RGB hsbToRGB(double h, double s, double v) {
    h = h - std::floor(h);
    double sector = h * 6;
    int i = static_cast<int>(sector) % 6;
    double f = sector - std::floor(sector);
    double p = v * (1 - s), q = v * (1 - s * f), t = v * (1 - s * (1 - f));
    switch (i) {
    case 0:
        return {v, t, p};
    case 1:
        return {q, v, p};
    case 2:
        return {p, v, t};
    case 3:
        return {p, q, v};
    case 4:
        return {t, p, v};
    default:
        return {v, p, q};
    }
}

Ref<Color> convert(const Color& concrete, const Ref<ColorSpace>& space) {
    const auto& d = concrete.data();
    if (d.space == space)
        return concrete.resolvedColor();
    switch (space->colorSpaceModel()) {
    case ColorSpaceModel::Gray:
        return makeGray(space, toGray(d), d.alpha);
    case ColorSpaceModel::RGB: {
        RGB rgb = toRGB(d);
        return makeRGB(space, rgb.r, rgb.g, rgb.b, d.alpha);
    }
    case ColorSpaceModel::CMYK:
        return makeComponents(space, toCMYK(d), d.alpha);
    default:
        return nullptr;
    }
}

std::string componentText(const Color::Data& d) {
    std::string text;
    for (int64_t i = 0; i < d.space->numberOfColorComponents(); ++i)
        text += format(" %@", formatDouble(d.components[i]));
    return text + format(" %@", formatDouble(d.alpha));
}

} // namespace

Color::Color() = default;

Color::Color(Data data) : m_data(std::move(data)) {}

// --- Making colours ---------------------------------------------------------------------------

Ref<Color> Color::colorWithCalibratedRed(double red, double green, double blue, double alpha) {
    return makeRGB(ColorSpace::genericRGBColorSpace(), red, green, blue, alpha);
}

Ref<Color> Color::colorWithDeviceRed(double red, double green, double blue, double alpha) {
    return makeRGB(ColorSpace::deviceRGBColorSpace(), red, green, blue, alpha);
}

Ref<Color> Color::colorWithRed(double red, double green, double blue, double alpha) {
    return makeRGB(ColorSpace::sRGBColorSpace(), red, green, blue, alpha);
}

Ref<Color> Color::colorWithSRGBRed(double red, double green, double blue, double alpha) {
    return makeRGB(ColorSpace::sRGBColorSpace(), red, green, blue, alpha);
}

Ref<Color> Color::colorWithCalibratedWhite(double white, double alpha) {
    return makeGray(ColorSpace::genericGrayColorSpace(), white, alpha);
}

Ref<Color> Color::colorWithDeviceWhite(double white, double alpha) {
    return makeGray(ColorSpace::deviceGrayColorSpace(), white, alpha);
}

Ref<Color> Color::colorWithWhite(double white, double alpha) {
    return makeGray(ColorSpace::genericGamma22GrayColorSpace(), white, alpha);
}

Ref<Color> Color::colorWithGenericGamma22White(double white, double alpha) {
    return colorWithWhite(white, alpha);
}

Ref<Color> Color::colorWithDeviceCyan(double cyan, double magenta, double yellow, double black,
                                      double alpha) {
    return makeComponents(ColorSpace::deviceCMYKColorSpace(), {cyan, magenta, yellow, black}, alpha);
}

Ref<Color> Color::colorWithCalibratedHue(double hue, double saturation, double brightness, double alpha) {
    RGB rgb = hsbToRGB(hue, saturation, brightness);
    return colorWithCalibratedRed(rgb.r, rgb.g, rgb.b, alpha);
}

Ref<Color> Color::colorWithDeviceHue(double hue, double saturation, double brightness, double alpha) {
    RGB rgb = hsbToRGB(hue, saturation, brightness);
    return colorWithDeviceRed(rgb.r, rgb.g, rgb.b, alpha);
}

Ref<Color> Color::colorWithHue(double hue, double saturation, double brightness, double alpha) {
    RGB rgb = hsbToRGB(hue, saturation, brightness);
    return colorWithRed(rgb.r, rgb.g, rgb.b, alpha);
}

Ref<Color> Color::colorWithColorSpace(const Ref<ColorSpace>& space, std::span<const double> components) {
    if (!space)
        return nullptr;
    auto count = static_cast<size_t>(space->numberOfColorComponents());
    if (count == 0 || components.size() != count + 1)
        return nullptr;
    std::array<double, 4> values{};
    std::copy_n(components.begin(), count, values.begin());
    return makeComponents(space, values, components[count]);
}

Ref<Color> Color::colorWithCatalogName(std::string_view catalogName, std::string_view colorName) {
    if (catalogName == "System")
        return SystemColorCatalog::shared().colorNamed(colorName);
    auto list = ColorList::colorListNamed(catalogName);
    if (!list)
        return nullptr;
    auto value = list->colorWithKey(colorName);
    if (!value)
        return nullptr;
    Data data;
    data.kind = Kind::Catalog;
    data.catalogName = std::string(catalogName);
    data.colorName = std::string(colorName);
    data.lightValue = value;
    return create<Color>(std::move(data));
}

Ref<Color> Color::colorWithPatternImage(const Ref<Image>& image) {
    if (!image)
        return nullptr;
    Data data;
    data.kind = Kind::Pattern;
    data.patternImage = image;
    return create<Color>(std::move(data));
}

Ref<Color> Color::colorWithCGColor(const Ref<ns::CGColor>& color) {
    if (!color)
        return nullptr;
    if (color->pattern()) {
        auto pattern = colorWithPatternImage(color->pattern());
        return pattern->colorWithAlphaComponent(color->alpha());
    }
    return colorWithColorSpace(color->colorSpace(), color->components());
}

// --- Fixed and system colours -------------------------------------------------------------------

Ref<Color> Color::blackColor() {
    return SystemColorCatalog::shared().colorNamed("blackColor");
}
Ref<Color> Color::darkGrayColor() {
    return SystemColorCatalog::shared().colorNamed("darkGrayColor");
}
Ref<Color> Color::grayColor() {
    return SystemColorCatalog::shared().colorNamed("grayColor");
}
Ref<Color> Color::lightGrayColor() {
    return SystemColorCatalog::shared().colorNamed("lightGrayColor");
}
Ref<Color> Color::whiteColor() {
    return SystemColorCatalog::shared().colorNamed("whiteColor");
}
Ref<Color> Color::clearColor() {
    return SystemColorCatalog::shared().colorNamed("clearColor");
}
Ref<Color> Color::redColor() {
    return SystemColorCatalog::shared().colorNamed("redColor");
}
Ref<Color> Color::greenColor() {
    return SystemColorCatalog::shared().colorNamed("greenColor");
}
Ref<Color> Color::blueColor() {
    return SystemColorCatalog::shared().colorNamed("blueColor");
}
Ref<Color> Color::cyanColor() {
    return SystemColorCatalog::shared().colorNamed("cyanColor");
}
Ref<Color> Color::yellowColor() {
    return SystemColorCatalog::shared().colorNamed("yellowColor");
}
Ref<Color> Color::magentaColor() {
    return SystemColorCatalog::shared().colorNamed("magentaColor");
}
Ref<Color> Color::orangeColor() {
    return SystemColorCatalog::shared().colorNamed("orangeColor");
}
Ref<Color> Color::purpleColor() {
    return SystemColorCatalog::shared().colorNamed("purpleColor");
}
Ref<Color> Color::brownColor() {
    return SystemColorCatalog::shared().colorNamed("brownColor");
}

Ref<Color> Color::textColor() {
    return SystemColorCatalog::shared().colorNamed("textColor");
}
Ref<Color> Color::textBackgroundColor() {
    return SystemColorCatalog::shared().colorNamed("textBackgroundColor");
}
Ref<Color> Color::labelColor() {
    return SystemColorCatalog::shared().colorNamed("labelColor");
}
Ref<Color> Color::secondaryLabelColor() {
    return SystemColorCatalog::shared().colorNamed("secondaryLabelColor");
}
Ref<Color> Color::tertiaryLabelColor() {
    return SystemColorCatalog::shared().colorNamed("tertiaryLabelColor");
}
Ref<Color> Color::controlTextColor() {
    return SystemColorCatalog::shared().colorNamed("controlTextColor");
}
Ref<Color> Color::disabledControlTextColor() {
    return SystemColorCatalog::shared().colorNamed("disabledControlTextColor");
}
Ref<Color> Color::linkColor() {
    return SystemColorCatalog::shared().colorNamed("linkColor");
}
Ref<Color> Color::windowBackgroundColor() {
    return SystemColorCatalog::shared().colorNamed("windowBackgroundColor");
}
Ref<Color> Color::controlBackgroundColor() {
    return SystemColorCatalog::shared().colorNamed("controlBackgroundColor");
}
Ref<Color> Color::controlColor() {
    return SystemColorCatalog::shared().colorNamed("controlColor");
}
Ref<Color> Color::selectedContentBackgroundColor() {
    return SystemColorCatalog::shared().colorNamed("selectedContentBackgroundColor");
}
Ref<Color> Color::selectedTextBackgroundColor() {
    return SystemColorCatalog::shared().colorNamed("selectedTextBackgroundColor");
}
Ref<Color> Color::gridColor() {
    return SystemColorCatalog::shared().colorNamed("gridColor");
}
Ref<Color> Color::separatorColor() {
    return SystemColorCatalog::shared().colorNamed("separatorColor");
}
Ref<Color> Color::headerTextColor() {
    return SystemColorCatalog::shared().colorNamed("headerTextColor");
}

Ref<Color> Color::systemColorNamed(std::string_view name) {
    return SystemColorCatalog::shared().colorNamed(name);
}

bool Color::replaceSystemColorLazily(std::string_view name, std::function<Ref<Color>()> provider) {
    return SystemColorCatalog::shared().replaceLazily(name, std::move(provider));
}

std::vector<std::string> Color::systemColorNames() {
    return SystemColorCatalog::shared().names();
}

bool Color::replaceSystemColor(std::string_view name, const Ref<Color>& replacement) {
    return SystemColorCatalog::shared().replace(name, replacement);
}

// --- Resolution ---------------------------------------------------------------------------------

Ref<Color> Color::resolvedColor() const {
    auto self = weak_from_this().lock();
    return std::const_pointer_cast<Color>(std::static_pointer_cast<const Color>(self));
}

Ref<Color> Color::concreteColor() const {
    // Bounded, so that colours that name each other in a circle answer nil rather than hang.
    Ref<Color> color = resolvedColor();
    for (int depth = 0; color && depth < 32; ++depth) {
        Ref<Color> next = color->resolvedColor();
        if (next != color) {
            color = next;
            continue;
        }
        switch (color->m_data.kind) {
        case Kind::Components:
        case Kind::Pattern:
            return color;
        case Kind::Catalog: {
            const auto& d = color->m_data;
            color = d.darkValue && Appearance::currentDrawingAppearanceIsDark() ? d.darkValue : d.lightValue;
            continue;
        }
        case Kind::None:
            return nullptr;
        }
    }
    return nullptr;
}

bool Color::deviceRGBA(double rgba[4]) const {
    auto c = concreteColor();
    if (!c || c->m_data.kind != Kind::Components)
        return false;
    RGB rgb = toRGB(c->m_data);
    rgba[0] = rgb.r;
    rgba[1] = rgb.g;
    rgba[2] = rgb.b;
    rgba[3] = c->m_data.alpha;
    return true;
}

// --- Colour space -------------------------------------------------------------------------------

std::string Color::colorSpaceName() const {
    auto r = resolvedColor();
    if (!r)
        return "";
    if (r.get() != this)
        return r->colorSpaceName();
    switch (m_data.kind) {
    case Kind::Catalog:
        return NamedColorSpace;
    case Kind::Pattern:
        return PatternColorSpace;
    case Kind::Components:
        return m_data.space->colorSpaceName();
    case Kind::None:
        return "";
    }
    return "";
}

Ref<ColorSpace> Color::colorSpace() const {
    auto c = concreteColor();
    if (!c || c->m_data.kind != Kind::Components)
        return nullptr;
    return c->m_data.space;
}

Ref<Color> Color::colorUsingColorSpaceName(std::string_view name) const {
    auto r = resolvedColor();
    if (!r)
        return nullptr;
    if (name == NamedColorSpace) {
        // Follow the hook to a named colour, if that is what this colour stands for.
        for (int depth = 0; r && depth < 32; ++depth) {
            auto next = r->resolvedColor();
            if (next == r)
                break;
            r = next;
        }
        return r && r->m_data.kind == Kind::Catalog ? r : nullptr;
    }
    auto c = concreteColor();
    if (!c)
        return nullptr;
    if (name == PatternColorSpace)
        return c->m_data.kind == Kind::Pattern ? c : nullptr;
    auto space = ColorSpace::colorSpaceForName(name);
    if (!space || c->m_data.kind != Kind::Components)
        return nullptr;
    return convert(*c, space);
}

Ref<Color> Color::colorUsingColorSpace(const Ref<ColorSpace>& space) const {
    if (!space)
        return nullptr;
    auto c = concreteColor();
    if (!c || c->m_data.kind != Kind::Components)
        return nullptr;
    return convert(*c, space);
}

// --- Components ---------------------------------------------------------------------------------

namespace {

// The concrete component colour behind `color`, or nil with a log line naming what was asked.
Ref<Color> componentColor(const Color& color, const char* what) {
    auto c = color.concreteColor();
    if (c && c->data().kind == Color::Kind::Components)
        return c;
    Log("*** -%s not valid for the color %@; need to first convert colorspace.", what,
        c ? Value(c) : Value(color.description()));
    return nullptr;
}

} // namespace

int64_t Color::numberOfComponents() const {
    auto c = concreteColor();
    if (!c || c->m_data.kind != Kind::Components)
        return 0;
    return c->m_data.space->numberOfColorComponents() + 1;
}

void Color::getComponents(double* components) const {
    if (!components)
        return;
    auto values = this->components();
    std::copy(values.begin(), values.end(), components);
}

std::vector<double> Color::components() const {
    auto c = concreteColor();
    if (!c || c->m_data.kind != Kind::Components)
        return {};
    const auto& d = c->m_data;
    std::vector<double> values(d.components.begin(),
                               d.components.begin() + d.space->numberOfColorComponents());
    values.push_back(d.alpha);
    return values;
}

double Color::alphaComponent() const {
    auto c = concreteColor();
    return c ? c->m_data.alpha : 0;
}

double Color::redComponent() const {
    auto c = componentColor(*this, "redComponent");
    return c ? toRGB(c->m_data).r : 0;
}

double Color::greenComponent() const {
    auto c = componentColor(*this, "greenComponent");
    return c ? toRGB(c->m_data).g : 0;
}

double Color::blueComponent() const {
    auto c = componentColor(*this, "blueComponent");
    return c ? toRGB(c->m_data).b : 0;
}

void Color::getRed(double* red, double* green, double* blue, double* alpha) const {
    auto c = componentColor(*this, "getRed:green:blue:alpha:");
    RGB rgb = c ? toRGB(c->m_data) : RGB{0, 0, 0};
    if (red)
        *red = rgb.r;
    if (green)
        *green = rgb.g;
    if (blue)
        *blue = rgb.b;
    if (alpha)
        *alpha = c ? c->m_data.alpha : 0;
}

double Color::hueComponent() const {
    auto c = componentColor(*this, "hueComponent");
    return c ? rgbToHSB(toRGB(c->m_data))[0] : 0;
}

double Color::saturationComponent() const {
    auto c = componentColor(*this, "saturationComponent");
    return c ? rgbToHSB(toRGB(c->m_data))[1] : 0;
}

double Color::brightnessComponent() const {
    auto c = componentColor(*this, "brightnessComponent");
    return c ? rgbToHSB(toRGB(c->m_data))[2] : 0;
}

void Color::getHue(double* hue, double* saturation, double* brightness, double* alpha) const {
    auto c = componentColor(*this, "getHue:saturation:brightness:alpha:");
    std::array<double, 3> hsb = c ? rgbToHSB(toRGB(c->m_data)) : std::array<double, 3>{};
    if (hue)
        *hue = hsb[0];
    if (saturation)
        *saturation = hsb[1];
    if (brightness)
        *brightness = hsb[2];
    if (alpha)
        *alpha = c ? c->m_data.alpha : 0;
}

double Color::whiteComponent() const {
    auto c = componentColor(*this, "whiteComponent");
    return c ? toGray(c->m_data) : 0;
}

void Color::getWhite(double* white, double* alpha) const {
    auto c = componentColor(*this, "getWhite:alpha:");
    if (white)
        *white = c ? toGray(c->m_data) : 0;
    if (alpha)
        *alpha = c ? c->m_data.alpha : 0;
}

double Color::cyanComponent() const {
    auto c = componentColor(*this, "cyanComponent");
    return c ? toCMYK(c->m_data)[0] : 0;
}

double Color::magentaComponent() const {
    auto c = componentColor(*this, "magentaComponent");
    return c ? toCMYK(c->m_data)[1] : 0;
}

double Color::yellowComponent() const {
    auto c = componentColor(*this, "yellowComponent");
    return c ? toCMYK(c->m_data)[2] : 0;
}

double Color::blackComponent() const {
    auto c = componentColor(*this, "blackComponent");
    return c ? toCMYK(c->m_data)[3] : 0;
}

void Color::getCyan(double* cyan, double* magenta, double* yellow, double* black, double* alpha) const {
    auto c = componentColor(*this, "getCyan:magenta:yellow:black:alpha:");
    std::array<double, 4> cmyk = c ? toCMYK(c->m_data) : std::array<double, 4>{};
    if (cyan)
        *cyan = cmyk[0];
    if (magenta)
        *magenta = cmyk[1];
    if (yellow)
        *yellow = cmyk[2];
    if (black)
        *black = cmyk[3];
    if (alpha)
        *alpha = c ? c->m_data.alpha : 0;
}

namespace {

// The named colour this colour stands for (through the hook), or nil with a log line.
Ref<Color> namedColor(const Color& color, const char* what) {
    auto named = color.colorUsingColorSpaceName(NamedColorSpace);
    if (!named)
        Log("*** -%s not valid for the color %@; need to first convert colorspace.", what,
            color.description());
    return named;
}

} // namespace

std::string Color::catalogNameComponent() const {
    auto named = namedColor(*this, "catalogNameComponent");
    return named ? named->m_data.catalogName : "";
}

std::string Color::colorNameComponent() const {
    auto named = namedColor(*this, "colorNameComponent");
    return named ? named->m_data.colorName : "";
}

std::string Color::localizedCatalogNameComponent() const {
    auto named = namedColor(*this, "localizedCatalogNameComponent");
    return named ? named->m_data.catalogName : "";
}

std::string Color::localizedColorNameComponent() const {
    auto named = namedColor(*this, "localizedColorNameComponent");
    return named ? named->m_data.colorName : "";
}

Ref<Image> Color::patternImage() const {
    auto c = concreteColor();
    return c && c->m_data.kind == Kind::Pattern ? c->m_data.patternImage : nullptr;
}

// --- Derived colours ----------------------------------------------------------------------------

Ref<Color> Color::colorWithAlphaComponent(double alpha) const {
    auto c = concreteColor();
    if (!c)
        return nullptr;
    Data data = c->m_data;
    data.alpha = clampUnit(alpha);
    return create<Color>(std::move(data));
}

Ref<Color> Color::blendedColorWithFraction(double fraction, const Ref<Color>& other) const {
    if (!other)
        return nullptr;
    auto a = concreteColor();
    auto b = other->concreteColor();
    if (!a || !b || a->m_data.kind != Kind::Components || b->m_data.kind != Kind::Components)
        return nullptr;
    double f = clampUnit(fraction);
    auto mix = [f](double x, double y) {
        return x * (1 - f) + y * f;
    };
    const auto& da = a->m_data;
    const auto& db = b->m_data;
    double alpha = mix(da.alpha, db.alpha);
    auto modelA = da.space->colorSpaceModel();
    if (modelA == ColorSpaceModel::Gray && db.space->colorSpaceModel() == ColorSpaceModel::Gray)
        return makeGray(da.space, mix(toGray(da), toGray(db)), alpha);
    auto space = modelA == ColorSpaceModel::RGB ? da.space : ColorSpace::genericRGBColorSpace();
    RGB x = toRGB(da), y = toRGB(db);
    return makeRGB(space, mix(x.r, y.r), mix(x.g, y.g), mix(x.b, y.b), alpha);
}

Ref<Color> Color::highlightWithLevel(double level) const {
    return blendedColorWithFraction(level, whiteColor());
}

Ref<Color> Color::shadowWithLevel(double level) const {
    return blendedColorWithFraction(level, blackColor());
}

Ref<Color> Color::colorWithSystemEffect(ColorSystemEffect effect) const {
    switch (effect) {
    case ColorSystemEffect::Pressed:
        return shadowWithLevel(0.2);
    case ColorSystemEffect::DeepPressed:
        return shadowWithLevel(0.4);
    case ColorSystemEffect::Rollover:
        return highlightWithLevel(0.1);
    case ColorSystemEffect::Disabled: {
        auto c = concreteColor();
        return c ? c->colorWithAlphaComponent(c->m_data.alpha * 0.5) : nullptr;
    }
    default:
        return concreteColor();
    }
}

// --- Drawing ------------------------------------------------------------------------------------

namespace {

bool paintOf(const Color& color, Paint& paint) {
    auto c = color.concreteColor();
    if (!c)
        return false;
    if (c->data().kind == Color::Kind::Pattern) {
        paint = Paint{0, 0, 0, c->data().alpha, c->data().patternImage};
        return true;
    }
    double rgba[4] = {0, 0, 0, 1};
    c->deviceRGBA(rgba);
    paint = Paint{rgba[0], rgba[1], rgba[2], rgba[3], nullptr};
    return true;
}

} // namespace

void Color::set() const {
    auto context = GraphicsContext::currentContext();
    Paint paint;
    if (!context || !paintOf(*this, paint))
        return;
    context->setFillPaint(paint);
    context->setStrokePaint(paint);
}

void Color::setFill() const {
    auto context = GraphicsContext::currentContext();
    Paint paint;
    if (context && paintOf(*this, paint))
        context->setFillPaint(paint);
}

void Color::setStroke() const {
    auto context = GraphicsContext::currentContext();
    Paint paint;
    if (context && paintOf(*this, paint))
        context->setStrokePaint(paint);
}

void Color::drawSwatchInRect(const Rect& rect) const {
    auto context = GraphicsContext::currentContext();
    Paint paint;
    if (!context || !paintOf(*this, paint))
        return;
    context->saveGraphicsState();
    context->setFillPaint(paint);
    RectFillUsingOperation(rect, CompositingOperation::SourceOver);
    context->restoreGraphicsState();
}

Ref<ns::CGColor> Color::CGColor() const {
    auto c = concreteColor();
    if (!c)
        return nullptr;
    const auto& d = c->m_data;
    if (d.kind == Kind::Pattern)
        return create<ns::CGColor>(nullptr, std::vector<double>{d.alpha}, d.patternImage);
    return create<ns::CGColor>(d.space, c->components(), nullptr);
}

// --- Archiving ----------------------------------------------------------------------------------

namespace {

constexpr const char* kSpaceKey = "NSColorSpace";
constexpr const char* kComponentsKey = "NSComponents";
constexpr const char* kCatalogKey = "NSCatalogName";
constexpr const char* kColorNameKey = "NSColorName";

// Spaces are written by their localized name: several report the same colour-space name.
Ref<ColorSpace> spaceWithLocalizedName(std::string_view name) {
    for (const auto& space : {ColorSpace::genericRGBColorSpace(), ColorSpace::deviceRGBColorSpace(),
                              ColorSpace::sRGBColorSpace(), ColorSpace::genericGrayColorSpace(),
                              ColorSpace::deviceGrayColorSpace(), ColorSpace::genericGamma22GrayColorSpace(),
                              ColorSpace::genericCMYKColorSpace(), ColorSpace::deviceCMYKColorSpace()})
        if (space->localizedName() == name)
            return space;
    return nullptr;
}

} // namespace

const CodingClass& Color::codingClass() {
    static const CodingClass cls{"NSColor", {}, true, [](KeyedUnarchiver& coder) -> Ref<Object> {
                                     return colorWithCoder(coder);
                                 }};
    return cls;
}

const CodingClass& Color::classForCoder() const {
    return codingClass();
}

void Color::encodeWithCoder(KeyedArchiver& coder) const {
    const auto& d = m_data;
    switch (d.kind) {
    case Kind::Components: {
        Array components;
        for (int64_t i = 0; i < d.space->numberOfColorComponents(); ++i)
            components.push_back(d.components[static_cast<size_t>(i)]);
        components.push_back(d.alpha);
        coder.encodeObject(d.space->localizedName(), kSpaceKey);
        coder.encodeObject(std::move(components), kComponentsKey);
        break;
    }
    case Kind::Catalog:
        coder.encodeObject(d.catalogName, kCatalogKey);
        coder.encodeObject(d.colorName, kColorNameKey);
        break;
    case Kind::Pattern:
        coder.failWithError(
            Error::make(CocoaErrorDomain, CoderInvalidValueError,
                        {{LocalizedDescriptionKey, std::string("a pattern colour cannot be archived.")}}));
        break;
    case Kind::None:
        break;
    }
}

Ref<Color> Color::colorWithCoder(KeyedUnarchiver& coder) {
    if (coder.containsValueForKey(kCatalogKey))
        return colorWithCatalogName(coder.decodeObjectForKey(kCatalogKey).stringValue(),
                                    coder.decodeObjectForKey(kColorNameKey).stringValue());
    auto space = spaceWithLocalizedName(coder.decodeObjectForKey(kSpaceKey).stringValue());
    std::vector<double> components;
    for (const Value& component : coder.decodeObjectForKey(kComponentsKey).array())
        components.push_back(component.doubleValue());
    return colorWithColorSpace(space, components);
}

// --- Identity -----------------------------------------------------------------------------------

bool Color::isEqual(const Object& other) const {
    if (this == &other)
        return true;
    auto* color = dynamic_cast<const Color*>(&other);
    if (!color || m_data.kind == Kind::None || color->m_data.kind != m_data.kind)
        return false;
    if (typeid(*this) != typeid(*color))
        return false;
    const auto& a = m_data;
    const auto& b = color->m_data;
    switch (a.kind) {
    case Kind::Components:
        return a.space == b.space && a.components == b.components && a.alpha == b.alpha;
    case Kind::Catalog:
        return a.catalogName == b.catalogName && a.colorName == b.colorName && a.lightValue == b.lightValue &&
               a.darkValue == b.darkValue;
    case Kind::Pattern:
        return a.patternImage == b.patternImage && a.alpha == b.alpha;
    case Kind::None:
        return false;
    }
    return false;
}

size_t Color::hash() const {
    const auto& d = m_data;
    switch (d.kind) {
    case Kind::Components: {
        size_t h = std::hash<const void*>{}(d.space.get());
        for (double c : d.components)
            h = h * 31 + std::hash<double>{}(c);
        return h * 31 + std::hash<double>{}(d.alpha);
    }
    case Kind::Catalog:
        return std::hash<std::string>{}(d.catalogName) * 31 + std::hash<std::string>{}(d.colorName);
    case Kind::Pattern:
        return std::hash<const void*>{}(d.patternImage.get());
    case Kind::None:
        return Object::hash();
    }
    return 0;
}

std::string Color::description() const {
    const auto& d = m_data;
    switch (d.kind) {
    case Kind::Components:
        if (d.space->colorSpaceName() == CustomColorSpace)
            return format("%@ colorspace%@", d.space->localizedName(), componentText(d));
        return format("%@%@", d.space->colorSpaceName(), componentText(d));
    case Kind::Catalog:
        return format("%s %@ %@", NamedColorSpace, d.catalogName, d.colorName);
    case Kind::Pattern:
        return format("%s %@", PatternColorSpace, d.patternImage);
    case Kind::None:
        break;
    }
    auto c = concreteColor();
    return format("<%@: %@>", className(), c ? c->description() : std::string("nil"));
}

} // namespace ns
