#include "platform/graphics/Geometry.hpp"

#include "platform/foundation/Value.hpp"

namespace ns {

std::string describe(const Point& point) {
    return "{" + formatDouble(point.x) + ", " + formatDouble(point.y) + "}";
}

std::string describe(const Size& size) {
    return "{" + formatDouble(size.width) + ", " + formatDouble(size.height) + "}";
}

std::string describe(const Rect& rect) {
    return "{" + describe(rect.origin) + ", " + describe(rect.size) + "}";
}

std::string describe(const EdgeInsets& insets) {
    return "{" + formatDouble(insets.top) + ", " + formatDouble(insets.left) + ", " +
           formatDouble(insets.bottom) + ", " + formatDouble(insets.right) + "}";
}

std::string describe(const AffineTransform& t) {
    return "[" + formatDouble(t.a) + ", " + formatDouble(t.b) + ", " + formatDouble(t.c) + ", " +
           formatDouble(t.d) + ", " + formatDouble(t.tx) + ", " + formatDouble(t.ty) + "]";
}

} // namespace ns
