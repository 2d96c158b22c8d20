#pragma once

#include "platform/graphics/BezierPath.hpp"

namespace corvane {

// A path of one straight segment from `from` to `to` (zero length when they are equal).
ns::Ref<ns::BezierPath> cv_bezierPathLineFrom(ns::Point from, ns::Point to);

// A closed rectangle with rounded corners. The radius is capped at half the shorter side, so
// a radius that is too large gives semicircular ends and 0 gives a plain rectangle.
ns::Ref<ns::BezierPath> bezierPathWithRoundRectInRect(ns::Rect rect, float radius);

} // namespace corvane
