#pragma once

#include "platform/foundation/Object.hpp"
#include "platform/graphics/Geometry.hpp"

#include <array>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <vector>

typedef struct _cairo cairo_t;

namespace ns {

enum class BezierPathElement : int64_t {
    MoveTo = 0,
    LineTo = 1,
    CurveTo = 2, // a cubic curve: points are the first control point, the second, the end point
    ClosePath = 3,
};

enum class LineCapStyle : int64_t { Butt = 0, Round = 1, Square = 2 };
enum class LineJoinStyle : int64_t { Miter = 0, Round = 1, Bevel = 2 };
enum class WindingRule : int64_t { NonZero = 0, EvenOdd = 1 };

// A path of lines and cubic curves in user space, with the style it strokes and fills with.
// Operations that need a current point (lineTo, curveTo, relative moves) log and do nothing on
// an empty path; points that are not finite numbers are logged and ignored. Drawing operations do nothing
// without a current graphics context.
class BezierPath : public Object {
public:
    struct Element {
        BezierPathElement type;
        std::array<Point, 3> points; // MoveTo/LineTo use [0]; CurveTo [0], [1] controls, [2] end
    };

    BezierPath();

    static Ref<BezierPath> make();
    static Ref<BezierPath> bezierPathWithRect(const Rect& rect);
    static Ref<BezierPath> bezierPathWithOvalInRect(const Rect& rect);
    // Corner radii are limited to half the width and half the height; radii of 0 give the
    // plain rectangle.
    static Ref<BezierPath> bezierPathWithRoundedRect(const Rect& rect, double xRadius, double yRadius);

    // Immediate drawing with the default line width.
    static void fillRect(const Rect& rect);
    static void strokeRect(const Rect& rect);
    static void clipRect(const Rect& rect);
    static void strokeLineFromPoint(Point from, Point to);
    // The line width new paths start with; 1 unless changed (process-wide). Negative values are
    // taken as 0 (the thinnest line the device can show).
    static double defaultLineWidth();
    static void setDefaultLineWidth(double width);

    // --- Building ---------------------------------------------------------------------------
    void moveToPoint(Point point);
    void lineToPoint(Point point);
    void curveToPoint(Point end, Point controlPoint1, Point controlPoint2);
    void closePath();
    void relativeMoveToPoint(Point offset);
    void relativeLineToPoint(Point offset);
    void relativeCurveToPoint(Point end, Point controlPoint1, Point controlPoint2);
    void appendBezierPath(const BezierPath& path);
    void appendBezierPathWithRect(const Rect& rect);
    void appendBezierPathWithOvalInRect(const Rect& rect);
    void appendBezierPathWithRoundedRect(const Rect& rect, double xRadius, double yRadius);
    // A polyline through the points: a line to the first when the path has a current point,
    // else a move, then lines to the others.
    void appendBezierPathWithPoints(std::span<const Point> points);
    // An arc of the circle around `center`, from startAngle to endAngle in degrees (0 along +x,
    // counter-clockwise in user space, or clockwise when asked), joined to the current point by a
    // straight line, or begun with a move on an empty path. The arc turns at most one full
    // circle. A radius of 0 (or less) adds only the join to the centre.
    void appendBezierPathWithArcWithCenter(Point center, double radius, double startAngle, double endAngle,
                                           bool clockwise = false);
    void removeAllPoints();
    void transformUsingAffineTransform(const AffineTransform& transform);

    // --- Reading ----------------------------------------------------------------------------
    bool isEmpty() const { return m_elements.empty(); }
    // The point the next segment starts from; (0, 0) and a log line when there is none.
    Point currentPoint() const;
    bool hasCurrentPoint() const { return m_hasCurrentPoint; }
    const std::vector<Element>& elements() const { return m_elements; }
    int64_t elementCount() const { return static_cast<int64_t>(m_elements.size()); }
    // The element's type, with its points copied to `points` (room for 3) when given. An index
    // outside the path logs and answers ClosePath with no points.
    BezierPathElement elementAtIndex(int64_t index, Point* points = nullptr) const;
    // The tight bounds of the curves (not the control points); a zero rectangle when empty.
    Rect bounds() const;
    Rect controlPointBounds() const;
    // Whether the filled path covers the point, by the winding rule.
    bool containsPoint(Point point) const;

    // --- Style ------------------------------------------------------------------------------
    double lineWidth() const { return m_lineWidth; }
    void setLineWidth(double width);
    LineCapStyle lineCapStyle() const { return m_lineCap; }
    void setLineCapStyle(LineCapStyle style) { m_lineCap = style; }
    LineJoinStyle lineJoinStyle() const { return m_lineJoin; }
    void setLineJoinStyle(LineJoinStyle style) { m_lineJoin = style; }
    double miterLimit() const { return m_miterLimit; }
    void setMiterLimit(double limit) { m_miterLimit = limit > 1 ? limit : 1; }
    // How far curves may stray from their flattened form, in device pixels (0.6 by default).
    double flatness() const { return m_flatness; }
    void setFlatness(double flatness) { m_flatness = flatness > 0.01 ? flatness : 0.01; }
    WindingRule windingRule() const { return m_windingRule; }
    void setWindingRule(WindingRule rule) { m_windingRule = rule; }
    // Dash lengths (on, off, ...) and the offset into them; an empty pattern draws solid lines.
    // Negative lengths, or all zero, give solid lines.
    void setLineDash(std::vector<double> pattern, double phase);
    const std::vector<double>& lineDash() const { return m_dash; }
    double lineDashPhase() const { return m_dashPhase; }

    // --- Drawing ----------------------------------------------------------------------------
    // With the current context's fill (stroke) paint and compositing operation, casting its
    // shadow. A line width of 0 strokes one device pixel wide.
    void fill() const;
    void stroke() const;
    // Intersects the current clip with the filled path; setClip replaces the clip with it.
    void addClip() const;
    void setClip() const;

    Ref<BezierPath> copy() const;
    // Adds the path to Cairo's current path.
    void appendToCairo(cairo_t* cairo) const;

    std::string description() const override;

private:
    void applyStrokeStyle(cairo_t* cairo) const;
    bool requireCurrentPoint(const char* what) const;
    bool requireFinite(std::initializer_list<Point> points, const char* what) const;

    std::vector<Element> m_elements;
    Point m_currentPoint;
    Point m_subpathStart;
    bool m_hasCurrentPoint = false;
    double m_lineWidth;
    LineCapStyle m_lineCap = LineCapStyle::Butt;
    LineJoinStyle m_lineJoin = LineJoinStyle::Miter;
    double m_miterLimit = 10;
    double m_flatness = 0.6;
    WindingRule m_windingRule = WindingRule::NonZero;
    std::vector<double> m_dash;
    double m_dashPhase = 0;
};

} // namespace ns
