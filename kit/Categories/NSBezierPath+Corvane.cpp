#include "kit/Categories/NSBezierPath+Corvane.hpp"

#include <algorithm>

namespace corvane {

ns::Ref<ns::BezierPath> cv_bezierPathLineFrom(ns::Point from, ns::Point to) {
    auto path = ns::BezierPath::make();
    path->moveToPoint(from);
    path->lineToPoint(to);
    return path;
}

ns::Ref<ns::BezierPath> bezierPathWithRoundRectInRect(ns::Rect rect, float radius) {
    const double half = std::min(rect.size.width, rect.size.height) * 0.5;
    const double r = half > radius ? radius : static_cast<float>(half);
    const ns::Rect inner = rect.insetBy(r, r);

    // Each arc is joined to the end of the previous one by a straight side.
    auto path = ns::BezierPath::make();
    path->appendBezierPathWithArcWithCenter({inner.minX(), inner.minY()}, r, 180, 270);
    path->appendBezierPathWithArcWithCenter({inner.maxX(), inner.minY()}, r, 270, 360);
    path->appendBezierPathWithArcWithCenter({inner.maxX(), inner.maxY()}, r, 0, 90);
    path->appendBezierPathWithArcWithCenter({inner.minX(), inner.maxY()}, r, 90, 180);
    path->closePath();
    return path;
}

} // namespace corvane
