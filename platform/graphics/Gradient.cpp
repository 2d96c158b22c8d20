#include "platform/graphics/Gradient.hpp"

#include "platform/foundation/Log.hpp"
#include "platform/graphics/BezierPath.hpp"
#include "platform/graphics/Color.hpp"
#include "platform/graphics/ColorSpace.hpp"
#include "platform/graphics/GraphicsContext.hpp"

#include <cairo.h>

#include <algorithm>
#include <cmath>

namespace ns {

namespace {

void addStops(cairo_pattern_t* pattern, const std::vector<Gradient::Stop>& stops,
              const std::vector<std::array<double, 4>>& rgba) {
    for (size_t i = 0; i < stops.size(); ++i)
        cairo_pattern_add_color_stop_rgba(pattern, std::clamp(stops[i].location, 0.0, 1.0), rgba[i][0],
                                          rgba[i][1], rgba[i][2], rgba[i][3]);
}

// Clips to the side of the line through `point` (perpendicular to `direction`) that the
// direction points to.
void clipToHalfPlane(cairo_t* cr, Point point, Point direction) {
    double x0, y0, x1, y1;
    cairo_clip_extents(cr, &x0, &y0, &x1, &y1);
    double reach = std::hypot(x1 - x0, y1 - y0) + std::hypot(point.x - x0, point.y - y0) +
                   std::hypot(point.x - x1, point.y - y1) + 1;
    Point n{-direction.y * reach, direction.x * reach};
    Point d{direction.x * reach, direction.y * reach};
    cairo_new_path(cr);
    cairo_move_to(cr, point.x + n.x, point.y + n.y);
    cairo_line_to(cr, point.x - n.x, point.y - n.y);
    cairo_line_to(cr, point.x - n.x + d.x, point.y - n.y + d.y);
    cairo_line_to(cr, point.x + n.x + d.x, point.y + n.y + d.y);
    cairo_close_path(cr);
    cairo_clip(cr);
}

} // namespace

Gradient::Gradient(std::vector<Stop> stops, Ref<ColorSpace> space)
    : m_stops(std::move(stops)), m_space(std::move(space)) {
    for (const auto& stop : m_stops) {
        std::array<double, 4> rgba{};
        stop.color->deviceRGBA(rgba.data());
        m_rgba.push_back(rgba);
    }
}

Ref<Gradient> Gradient::make(const Ref<Color>& startingColor, const Ref<Color>& endingColor) {
    return make({startingColor, endingColor}, {0.0, 1.0}, nullptr);
}

Ref<Gradient> Gradient::make(const std::vector<Ref<Color>>& colors) {
    if (colors.size() < 2)
        return nullptr;
    std::vector<double> locations;
    for (size_t i = 0; i < colors.size(); ++i)
        locations.push_back(static_cast<double>(i) / static_cast<double>(colors.size() - 1));
    return make(colors, locations, nullptr);
}

Ref<Gradient> Gradient::make(const std::vector<Ref<Color>>& colors, const std::vector<double>& locations,
                             const Ref<ColorSpace>& space) {
    if (colors.empty() || colors.size() != locations.size())
        return nullptr;
    Ref<ColorSpace> target = space ? space : ColorSpace::genericRGBColorSpace();
    std::vector<Stop> stops;
    for (size_t i = 0; i < colors.size(); ++i) {
        Ref<Color> color = colors[i] ? colors[i]->colorUsingColorSpace(target) : nullptr;
        if (!color) {
            Log("Gradient: colour %zu has no form in %@.", i, target->description());
            return nullptr;
        }
        stops.push_back({color, std::isfinite(locations[i]) ? locations[i] : 0.0});
    }
    std::stable_sort(stops.begin(), stops.end(),
                     [](const Stop& a, const Stop& b) { return a.location < b.location; });
    return create<Gradient>(std::move(stops), target);
}

void Gradient::getColor(Ref<Color>* color, double* location, int64_t index) const {
    if (index < 0 || index >= numberOfColorStops()) {
        Log("Gradient: stop %lld beyond the %lld stops.", static_cast<long long>(index),
            static_cast<long long>(numberOfColorStops()));
        return;
    }
    const Stop& stop = m_stops[static_cast<size_t>(index)];
    if (color)
        *color = stop.color;
    if (location)
        *location = stop.location;
}

Ref<Color> Gradient::interpolatedColorAtLocation(double location) const {
    if (location <= m_stops.front().location || std::isnan(location))
        return m_stops.front().color;
    if (location >= m_stops.back().location)
        return m_stops.back().color;
    size_t i = 1;
    while (m_stops[i].location < location)
        ++i;
    const Stop &a = m_stops[i - 1], &b = m_stops[i];
    double span = b.location - a.location;
    double f = span > 0 ? (location - a.location) / span : 1;
    auto ca = a.color->components(), cb = b.color->components();
    std::vector<double> mixed(ca.size());
    for (size_t k = 0; k < ca.size(); ++k)
        mixed[k] = ca[k] + (cb[k] - ca[k]) * f;
    return Color::colorWithColorSpace(m_space, mixed);
}

void Gradient::drawInRect(const Rect& rect, double angle) const {
    auto context = GraphicsContext::currentContext();
    if (!context || !isFinite(rect) || !std::isfinite(angle) || !(rect.width() > 0 && rect.height() > 0))
        return;
    double radians = angle * M_PI / 180.0;
    Point direction{std::cos(radians), std::sin(radians)};
    double half = (std::fabs(rect.width() * direction.x) + std::fabs(rect.height() * direction.y)) / 2;
    Point start{rect.midX() - direction.x * half, rect.midY() - direction.y * half};
    Point end{rect.midX() + direction.x * half, rect.midY() + direction.y * half};
    context->saveGraphicsState();
    context->clipToRect(rect);
    drawFromPoint(start, end, GradientDrawsBeforeStartingLocation | GradientDrawsAfterEndingLocation);
    context->restoreGraphicsState();
}

void Gradient::drawInBezierPath(const BezierPath& path, double angle) const {
    auto context = GraphicsContext::currentContext();
    Rect bounds = path.bounds();
    if (!context || !(bounds.width() > 0 && bounds.height() > 0))
        return;
    context->saveGraphicsState();
    path.addClip();
    drawInRect(bounds, angle);
    context->restoreGraphicsState();
}

void Gradient::drawFromPoint(Point start, Point end, uint64_t options) const {
    auto context = GraphicsContext::currentContext();
    double length = std::hypot(end.x - start.x, end.y - start.y);
    if (!context || !(length > 0))
        return;
    cairo_t* cr = context->cairo();
    Point direction{(end.x - start.x) / length, (end.y - start.y) / length};
    cairo_pattern_t* pattern = cairo_pattern_create_linear(start.x, start.y, end.x, end.y);
    addStops(pattern, m_stops, m_rgba);
    cairo_pattern_set_extend(pattern, CAIRO_EXTEND_PAD);
    cairo_save(cr);
    if (!(options & GradientDrawsBeforeStartingLocation))
        clipToHalfPlane(cr, start, direction);
    if (!(options & GradientDrawsAfterEndingLocation))
        clipToHalfPlane(cr, end, {-direction.x, -direction.y});
    context->drawWithShadow([&] {
        cairo_set_source(cr, pattern);
        cairo_paint(cr);
    });
    cairo_restore(cr);
    cairo_pattern_destroy(pattern);
}

void Gradient::drawFromCenter(Point startCenter, double startRadius, Point endCenter, double endRadius,
                              uint64_t options) const {
    auto context = GraphicsContext::currentContext();
    if (!context || !isFinite(startCenter) || !isFinite(endCenter) || !std::isfinite(startRadius) ||
        !std::isfinite(endRadius))
        return;
    cairo_t* cr = context->cairo();
    cairo_pattern_t* pattern =
        cairo_pattern_create_radial(startCenter.x, startCenter.y, std::max(0.0, startRadius), endCenter.x,
                                    endCenter.y, std::max(0.0, endRadius));
    addStops(pattern, m_stops, m_rgba);
    cairo_pattern_set_extend(pattern, (options & GradientDrawsAfterEndingLocation) ? CAIRO_EXTEND_PAD
                                                                                   : CAIRO_EXTEND_NONE);
    cairo_save(cr);
    context->drawWithShadow([&] {
        cairo_set_source(cr, pattern);
        cairo_paint(cr);
    });
    cairo_restore(cr);
    cairo_pattern_destroy(pattern);
}

std::string Gradient::description() const {
    std::string text = format("<Gradient: %@,", m_space->description());
    for (const auto& stop : m_stops)
        text += format(" %@: %@;", formatDouble(stop.location), stop.color);
    return text + ">";
}

} // namespace ns
