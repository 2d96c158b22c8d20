#pragma once

#include "platform/foundation/Object.hpp"
#include "platform/graphics/Geometry.hpp"

#include <array>
#include <cstdint>
#include <vector>

namespace ns {

class BezierPath;
class Color;
class ColorSpace;

// Whether a gradient drawn between two points also covers what lies before its start and
// after its end (in the start and end colours).
constexpr uint64_t GradientDrawsBeforeStartingLocation = 1 << 0;
constexpr uint64_t GradientDrawsAfterEndingLocation = 1 << 1;

// Colour stops at locations 0...1 in a colour space, interpolated linearly. The colours are
// taken into the gradient's space when it is made, so a gradient is a fixed set of colours even
// when made from colours that follow the appearance. Drawing needs a current context.
class Gradient : public Object {
public:
    struct Stop {
        Ref<Color> color;
        double location;
    };

    Gradient(std::vector<Stop> stops, Ref<ColorSpace> space);

    // Nil when a colour is nil or has no form in the space (a pattern).
    static Ref<Gradient> make(const Ref<Color>& startingColor, const Ref<Color>& endingColor);
    // Evenly spaced; nil for fewer than two colours.
    static Ref<Gradient> make(const std::vector<Ref<Color>>& colors);
    // Nil when the counts differ or there are no colours. A nil space means generic RGB. Stops
    // are sorted by location.
    static Ref<Gradient> make(const std::vector<Ref<Color>>& colors, const std::vector<double>& locations,
                              const Ref<ColorSpace>& space);

    const Ref<ColorSpace>& colorSpace() const { return m_space; }
    int64_t numberOfColorStops() const { return static_cast<int64_t>(m_stops.size()); }
    // Outside the stops: both outputs untouched and a log line.
    void getColor(Ref<Color>* color, double* location, int64_t index) const;
    // The colour at the location (clamped to the first and last stops).
    Ref<Color> interpolatedColorAtLocation(double location) const;

    // Fills the rectangle: the gradient runs through its centre along `angle` degrees (0 from
    // left to right, 90 from the smallest y to the largest), stretched so the start and end
    // colours reach the corners.
    void drawInRect(const Rect& rect, double angle) const;
    // The same inside the path (its bounds give the extent).
    void drawInBezierPath(const BezierPath& path, double angle) const;
    // A linear gradient from one point to the other over the current clip; beyond the ends only
    // as the options say. Coincident points draw nothing.
    void drawFromPoint(Point start, Point end, uint64_t options) const;
    // A radial gradient between two circles; it continues beyond the end circle when
    // GradientDrawsAfterEndingLocation is set and stops at both circles otherwise.
    void drawFromCenter(Point startCenter, double startRadius, Point endCenter, double endRadius,
                        uint64_t options) const;

    std::string description() const override;

private:
    std::vector<Stop> m_stops;
    std::vector<std::array<double, 4>> m_rgba;
    Ref<ColorSpace> m_space;
};

} // namespace ns
