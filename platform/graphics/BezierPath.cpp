#include "platform/graphics/BezierPath.hpp"

#include "platform/foundation/Log.hpp"
#include "platform/graphics/GraphicsContext.hpp"

#include <cairo.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>

namespace ns {

namespace {

std::atomic<double> g_defaultLineWidth{1.0};

// Control-point distance, as a fraction of the radius, for a quarter circle drawn as a cubic.
constexpr double kQuarterArc = 0.5522847498307936;

double degreesToRadians(double degrees) {
    return degrees * M_PI / 180.0;
}

// Parameters in (0, 1) where one coordinate of a cubic has a turning point.
void cubicExtrema(double p0, double p1, double p2, double p3, std::vector<double>& out) {
    // Derivative / 3: a t^2 + b t + c.
    double a = -p0 + 3 * p1 - 3 * p2 + p3;
    double b = 2 * (p0 - 2 * p1 + p2);
    double c = p1 - p0;
    auto keep = [&out](double t) {
        if (t > 0 && t < 1)
            out.push_back(t);
    };
    if (std::fabs(a) < 1e-12) {
        if (std::fabs(b) > 1e-12)
            keep(-c / b);
        return;
    }
    double disc = b * b - 4 * a * c;
    if (disc < 0)
        return;
    double root = std::sqrt(disc);
    keep((-b + root) / (2 * a));
    keep((-b - root) / (2 * a));
}

double cubicAt(double p0, double p1, double p2, double p3, double t) {
    double u = 1 - t;
    return u * u * u * p0 + 3 * u * u * t * p1 + 3 * u * t * t * p2 + t * t * t * p3;
}

struct Extent {
    double x0 = std::numeric_limits<double>::infinity(), y0 = x0;
    double x1 = -x0, y1 = -x0;
    void add(Point p) {
        x0 = std::min(x0, p.x);
        y0 = std::min(y0, p.y);
        x1 = std::max(x1, p.x);
        y1 = std::max(y1, p.y);
    }
    Rect rect() const { return x0 > x1 ? Rect{} : Rect{x0, y0, x1 - x0, y1 - y0}; }
};

} // namespace

BezierPath::BezierPath() : m_lineWidth(g_defaultLineWidth.load()) {}

Ref<BezierPath> BezierPath::make() {
    return create<BezierPath>();
}

Ref<BezierPath> BezierPath::bezierPathWithRect(const Rect& rect) {
    auto path = make();
    path->appendBezierPathWithRect(rect);
    return path;
}

Ref<BezierPath> BezierPath::bezierPathWithOvalInRect(const Rect& rect) {
    auto path = make();
    path->appendBezierPathWithOvalInRect(rect);
    return path;
}

Ref<BezierPath> BezierPath::bezierPathWithRoundedRect(const Rect& rect, double xRadius, double yRadius) {
    auto path = make();
    path->appendBezierPathWithRoundedRect(rect, xRadius, yRadius);
    return path;
}

void BezierPath::fillRect(const Rect& rect) {
    bezierPathWithRect(rect)->fill();
}

void BezierPath::strokeRect(const Rect& rect) {
    bezierPathWithRect(rect)->stroke();
}

void BezierPath::clipRect(const Rect& rect) {
    bezierPathWithRect(rect)->addClip();
}

void BezierPath::strokeLineFromPoint(Point from, Point to) {
    auto path = make();
    path->moveToPoint(from);
    path->lineToPoint(to);
    path->stroke();
}

double BezierPath::defaultLineWidth() {
    return g_defaultLineWidth.load();
}

void BezierPath::setDefaultLineWidth(double width) {
    g_defaultLineWidth = width > 0 ? width : 0;
}

// --- Building -----------------------------------------------------------------------------------

bool BezierPath::requireCurrentPoint(const char* what) const {
    if (!m_hasCurrentPoint)
        Log("BezierPath: %s needs a current point; the path has none.", what);
    return m_hasCurrentPoint;
}

bool BezierPath::requireFinite(std::initializer_list<Point> points, const char* what) const {
    for (const auto& point : points)
        if (!isFinite(point)) {
            Log("BezierPath: %s with a coordinate that is not a finite number ignored.", what);
            return false;
        }
    return true;
}

void BezierPath::moveToPoint(Point point) {
    if (!requireFinite({point}, "moveToPoint"))
        return;
    m_elements.push_back({BezierPathElement::MoveTo, {point, {}, {}}});
    m_currentPoint = m_subpathStart = point;
    m_hasCurrentPoint = true;
}

void BezierPath::lineToPoint(Point point) {
    if (!requireCurrentPoint("lineToPoint") || !requireFinite({point}, "lineToPoint"))
        return;
    m_elements.push_back({BezierPathElement::LineTo, {point, {}, {}}});
    m_currentPoint = point;
}

void BezierPath::curveToPoint(Point end, Point controlPoint1, Point controlPoint2) {
    if (!requireCurrentPoint("curveToPoint") ||
        !requireFinite({end, controlPoint1, controlPoint2}, "curveToPoint"))
        return;
    m_elements.push_back({BezierPathElement::CurveTo, {controlPoint1, controlPoint2, end}});
    m_currentPoint = end;
}

void BezierPath::closePath() {
    if (!m_hasCurrentPoint)
        return;
    m_elements.push_back({BezierPathElement::ClosePath, {}});
    m_currentPoint = m_subpathStart;
}

void BezierPath::relativeMoveToPoint(Point offset) {
    if (requireCurrentPoint("relativeMoveToPoint"))
        moveToPoint({m_currentPoint.x + offset.x, m_currentPoint.y + offset.y});
}

void BezierPath::relativeLineToPoint(Point offset) {
    if (requireCurrentPoint("relativeLineToPoint"))
        lineToPoint({m_currentPoint.x + offset.x, m_currentPoint.y + offset.y});
}

void BezierPath::relativeCurveToPoint(Point end, Point controlPoint1, Point controlPoint2) {
    if (!requireCurrentPoint("relativeCurveToPoint"))
        return;
    Point o = m_currentPoint;
    curveToPoint({o.x + end.x, o.y + end.y}, {o.x + controlPoint1.x, o.y + controlPoint1.y},
                 {o.x + controlPoint2.x, o.y + controlPoint2.y});
}

void BezierPath::appendBezierPath(const BezierPath& path) {
    // Copied first: the path may be this one.
    std::vector<Element> elements = path.m_elements;
    for (const auto& e : elements) {
        switch (e.type) {
        case BezierPathElement::MoveTo:
            moveToPoint(e.points[0]);
            break;
        case BezierPathElement::LineTo:
            lineToPoint(e.points[0]);
            break;
        case BezierPathElement::CurveTo:
            curveToPoint(e.points[2], e.points[0], e.points[1]);
            break;
        case BezierPathElement::ClosePath:
            closePath();
            break;
        }
    }
}

void BezierPath::appendBezierPathWithRect(const Rect& rect) {
    moveToPoint({rect.minX(), rect.minY()});
    lineToPoint({rect.maxX(), rect.minY()});
    lineToPoint({rect.maxX(), rect.maxY()});
    lineToPoint({rect.minX(), rect.maxY()});
    closePath();
}

void BezierPath::appendBezierPathWithOvalInRect(const Rect& rect) {
    double rx = rect.width() / 2, ry = rect.height() / 2, cx = rect.midX(), cy = rect.midY();
    double kx = rx * kQuarterArc, ky = ry * kQuarterArc;
    moveToPoint({cx + rx, cy});
    curveToPoint({cx, cy + ry}, {cx + rx, cy + ky}, {cx + kx, cy + ry});
    curveToPoint({cx - rx, cy}, {cx - kx, cy + ry}, {cx - rx, cy + ky});
    curveToPoint({cx, cy - ry}, {cx - rx, cy - ky}, {cx - kx, cy - ry});
    curveToPoint({cx + rx, cy}, {cx + kx, cy - ry}, {cx + rx, cy - ky});
    closePath();
}

void BezierPath::appendBezierPathWithRoundedRect(const Rect& rect, double xRadius, double yRadius) {
    double rx = std::clamp(xRadius, 0.0, std::max(0.0, rect.width() / 2));
    double ry = std::clamp(yRadius, 0.0, std::max(0.0, rect.height() / 2));
    if (!(rx > 0 && ry > 0)) {
        appendBezierPathWithRect(rect);
        return;
    }
    double kx = rx * kQuarterArc, ky = ry * kQuarterArc;
    double x0 = rect.minX(), y0 = rect.minY(), x1 = rect.maxX(), y1 = rect.maxY();
    moveToPoint({x0 + rx, y0});
    lineToPoint({x1 - rx, y0});
    curveToPoint({x1, y0 + ry}, {x1 - rx + kx, y0}, {x1, y0 + ry - ky});
    lineToPoint({x1, y1 - ry});
    curveToPoint({x1 - rx, y1}, {x1, y1 - ry + ky}, {x1 - rx + kx, y1});
    lineToPoint({x0 + rx, y1});
    curveToPoint({x0, y1 - ry}, {x0 + rx - kx, y1}, {x0, y1 - ry + ky});
    lineToPoint({x0, y0 + ry});
    curveToPoint({x0 + rx, y0}, {x0, y0 + ry - ky}, {x0 + rx - kx, y0});
    closePath();
}

void BezierPath::appendBezierPathWithPoints(std::span<const Point> points) {
    for (size_t i = 0; i < points.size(); ++i) {
        if (i == 0 && !m_hasCurrentPoint)
            moveToPoint(points[i]);
        else
            lineToPoint(points[i]);
    }
}

void BezierPath::appendBezierPathWithArcWithCenter(Point center, double radius, double startAngle,
                                                   double endAngle, bool clockwise) {
    if (!std::isfinite(startAngle) || !std::isfinite(endAngle) || !std::isfinite(radius) ||
        !isFinite(center)) {
        Log("BezierPath: arc with a non-finite radius or angle ignored.");
        return;
    }
    double r = std::max(0.0, radius);
    // Signed sweep in the asked direction, at most one full turn.
    double sweep = endAngle - startAngle;
    if (clockwise) {
        sweep = std::fmod(sweep, 360.0);
        if (sweep > 0)
            sweep -= 360;
        if (sweep == 0 && endAngle != startAngle)
            sweep = -360;
    } else {
        sweep = std::fmod(sweep, 360.0);
        if (sweep < 0)
            sweep += 360;
        if (sweep == 0 && endAngle != startAngle)
            sweep = 360;
    }
    double a0 = degreesToRadians(startAngle);
    Point start{center.x + r * std::cos(a0), center.y + r * std::sin(a0)};
    if (m_hasCurrentPoint)
        lineToPoint(start);
    else
        moveToPoint(start);
    if (r == 0 || sweep == 0)
        return;
    int segments = std::max(1, static_cast<int>(std::ceil(std::fabs(sweep) / 90.0 - 1e-9)));
    double step = degreesToRadians(sweep) / segments;
    double k = 4.0 / 3.0 * std::tan(step / 4);
    for (int i = 0; i < segments; ++i) {
        double t0 = a0 + step * i, t1 = a0 + step * (i + 1);
        double c0 = std::cos(t0), s0 = std::sin(t0), c1 = std::cos(t1), s1 = std::sin(t1);
        Point cp1{center.x + r * (c0 - k * s0), center.y + r * (s0 + k * c0)};
        Point cp2{center.x + r * (c1 + k * s1), center.y + r * (s1 - k * c1)};
        Point end{center.x + r * c1, center.y + r * s1};
        curveToPoint(end, cp1, cp2);
    }
}

void BezierPath::removeAllPoints() {
    m_elements.clear();
    m_hasCurrentPoint = false;
    m_currentPoint = m_subpathStart = {};
}

void BezierPath::transformUsingAffineTransform(const AffineTransform& transform) {
    if (!isFinite(transform)) {
        Log("BezierPath: transform with a value that is not a finite number ignored.");
        return;
    }
    for (auto& e : m_elements) {
        int count = e.type == BezierPathElement::CurveTo ? 3 : e.type == BezierPathElement::ClosePath ? 0 : 1;
        for (int i = 0; i < count; ++i)
            e.points[i] = transform.apply(e.points[i]);
    }
    m_currentPoint = transform.apply(m_currentPoint);
    m_subpathStart = transform.apply(m_subpathStart);
}

// --- Reading ------------------------------------------------------------------------------------

Point BezierPath::currentPoint() const {
    if (!requireCurrentPoint("currentPoint"))
        return {};
    return m_currentPoint;
}

BezierPathElement BezierPath::elementAtIndex(int64_t index, Point* points) const {
    if (index < 0 || index >= elementCount()) {
        Log("BezierPath: element index %lld beyond the %lld elements of the path.",
            static_cast<long long>(index), static_cast<long long>(elementCount()));
        return BezierPathElement::ClosePath;
    }
    const Element& e = m_elements[static_cast<size_t>(index)];
    if (points) {
        int count = e.type == BezierPathElement::CurveTo ? 3 : e.type == BezierPathElement::ClosePath ? 0 : 1;
        std::copy_n(e.points.begin(), count, points);
    }
    return e.type;
}

Rect BezierPath::bounds() const {
    Extent extent;
    Point current;
    std::vector<double> ts;
    for (const auto& e : m_elements) {
        switch (e.type) {
        case BezierPathElement::MoveTo:
        case BezierPathElement::LineTo:
            current = e.points[0];
            extent.add(current);
            break;
        case BezierPathElement::CurveTo: {
            const Point &p1 = e.points[0], &p2 = e.points[1], &p3 = e.points[2];
            extent.add(p3);
            ts.clear();
            cubicExtrema(current.x, p1.x, p2.x, p3.x, ts);
            cubicExtrema(current.y, p1.y, p2.y, p3.y, ts);
            for (double t : ts)
                extent.add(
                    {cubicAt(current.x, p1.x, p2.x, p3.x, t), cubicAt(current.y, p1.y, p2.y, p3.y, t)});
            current = p3;
            break;
        }
        case BezierPathElement::ClosePath:
            break;
        }
    }
    return extent.rect();
}

Rect BezierPath::controlPointBounds() const {
    Extent extent;
    for (const auto& e : m_elements) {
        int count = e.type == BezierPathElement::CurveTo ? 3 : e.type == BezierPathElement::ClosePath ? 0 : 1;
        for (int i = 0; i < count; ++i)
            extent.add(e.points[i]);
    }
    return extent.rect();
}

bool BezierPath::containsPoint(Point point) const {
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_A8, 1, 1);
    cairo_t* cr = cairo_create(surface);
    appendToCairo(cr);
    cairo_set_fill_rule(cr, m_windingRule == WindingRule::EvenOdd ? CAIRO_FILL_RULE_EVEN_ODD
                                                                  : CAIRO_FILL_RULE_WINDING);
    bool inside = cairo_in_fill(cr, point.x, point.y);
    cairo_destroy(cr);
    cairo_surface_destroy(surface);
    return inside;
}

// --- Style and drawing ----------------------------------------------------------------------------

void BezierPath::setLineWidth(double width) {
    m_lineWidth = width > 0 ? width : 0;
}

void BezierPath::setLineDash(std::vector<double> pattern, double phase) {
    bool usable = !pattern.empty() &&
                  std::all_of(pattern.begin(), pattern.end(), [](double v) { return v >= 0; }) &&
                  std::any_of(pattern.begin(), pattern.end(), [](double v) { return v > 0; });
    m_dash = usable ? std::move(pattern) : std::vector<double>{};
    m_dashPhase = usable ? phase : 0;
}

void BezierPath::appendToCairo(cairo_t* cairo) const {
    for (const auto& e : m_elements) {
        switch (e.type) {
        case BezierPathElement::MoveTo:
            cairo_move_to(cairo, e.points[0].x, e.points[0].y);
            break;
        case BezierPathElement::LineTo:
            cairo_line_to(cairo, e.points[0].x, e.points[0].y);
            break;
        case BezierPathElement::CurveTo:
            cairo_curve_to(cairo, e.points[0].x, e.points[0].y, e.points[1].x, e.points[1].y, e.points[2].x,
                           e.points[2].y);
            break;
        case BezierPathElement::ClosePath:
            cairo_close_path(cairo);
            break;
        }
    }
}

void BezierPath::applyStrokeStyle(cairo_t* cr) const {
    double width = m_lineWidth;
    if (width <= 0) {
        double dx = 1, dy = 0;
        cairo_device_to_user_distance(cr, &dx, &dy);
        width = std::hypot(dx, dy);
    }
    cairo_set_line_width(cr, width);
    static constexpr cairo_line_cap_t caps[] = {CAIRO_LINE_CAP_BUTT, CAIRO_LINE_CAP_ROUND,
                                                CAIRO_LINE_CAP_SQUARE};
    static constexpr cairo_line_join_t joins[] = {CAIRO_LINE_JOIN_MITER, CAIRO_LINE_JOIN_ROUND,
                                                  CAIRO_LINE_JOIN_BEVEL};
    auto cap = static_cast<size_t>(m_lineCap), join = static_cast<size_t>(m_lineJoin);
    cairo_set_line_cap(cr, cap < 3 ? caps[cap] : CAIRO_LINE_CAP_BUTT);
    cairo_set_line_join(cr, join < 3 ? joins[join] : CAIRO_LINE_JOIN_MITER);
    cairo_set_miter_limit(cr, m_miterLimit);
    cairo_set_dash(cr, m_dash.data(), static_cast<int>(m_dash.size()), m_dashPhase);
}

void BezierPath::fill() const {
    auto context = GraphicsContext::currentContext();
    if (!context || m_elements.empty())
        return;
    cairo_t* cr = context->cairo();
    cairo_save(cr);
    cairo_set_tolerance(cr, m_flatness);
    context->drawWithShadow([&] {
        cairo_new_path(cr);
        appendToCairo(cr);
        cairo_set_fill_rule(cr, m_windingRule == WindingRule::EvenOdd ? CAIRO_FILL_RULE_EVEN_ODD
                                                                      : CAIRO_FILL_RULE_WINDING);
        context->applyFillSource();
        cairo_fill(cr);
    });
    cairo_restore(cr);
}

void BezierPath::stroke() const {
    auto context = GraphicsContext::currentContext();
    if (!context || m_elements.empty())
        return;
    cairo_t* cr = context->cairo();
    cairo_save(cr);
    cairo_set_tolerance(cr, m_flatness);
    applyStrokeStyle(cr);
    context->drawWithShadow([&] {
        cairo_new_path(cr);
        appendToCairo(cr);
        context->applyStrokeSource();
        cairo_stroke(cr);
    });
    cairo_restore(cr);
}

void BezierPath::addClip() const {
    auto context = GraphicsContext::currentContext();
    if (!context)
        return;
    cairo_t* cr = context->cairo();
    cairo_new_path(cr);
    appendToCairo(cr);
    cairo_set_fill_rule(cr, m_windingRule == WindingRule::EvenOdd ? CAIRO_FILL_RULE_EVEN_ODD
                                                                  : CAIRO_FILL_RULE_WINDING);
    cairo_clip(cr);
    cairo_set_fill_rule(cr, CAIRO_FILL_RULE_WINDING);
}

void BezierPath::setClip() const {
    auto context = GraphicsContext::currentContext();
    if (!context)
        return;
    cairo_reset_clip(context->cairo());
    addClip();
}

Ref<BezierPath> BezierPath::copy() const {
    auto path = make();
    path->m_elements = m_elements;
    path->m_currentPoint = m_currentPoint;
    path->m_subpathStart = m_subpathStart;
    path->m_hasCurrentPoint = m_hasCurrentPoint;
    path->m_lineWidth = m_lineWidth;
    path->m_lineCap = m_lineCap;
    path->m_lineJoin = m_lineJoin;
    path->m_miterLimit = m_miterLimit;
    path->m_flatness = m_flatness;
    path->m_windingRule = m_windingRule;
    path->m_dash = m_dash;
    path->m_dashPhase = m_dashPhase;
    return path;
}

std::string BezierPath::description() const {
    std::string text = format("<BezierPath: bounds %@\n", describe(bounds()));
    for (const auto& e : m_elements) {
        switch (e.type) {
        case BezierPathElement::MoveTo:
            text += format("  %@ %@ moveto\n", formatDouble(e.points[0].x), formatDouble(e.points[0].y));
            break;
        case BezierPathElement::LineTo:
            text += format("  %@ %@ lineto\n", formatDouble(e.points[0].x), formatDouble(e.points[0].y));
            break;
        case BezierPathElement::CurveTo:
            text += "  ";
            for (const auto& p : e.points)
                text += format("%@ %@ ", formatDouble(p.x), formatDouble(p.y));
            text += "curveto\n";
            break;
        case BezierPathElement::ClosePath:
            text += "  closepath\n";
            break;
        }
    }
    return text + ">";
}

} // namespace ns
