#include "platform/graphics/Geometry.hpp"

#include "platform/foundation/Format.hpp"
#include "platform/foundation/Value.hpp"

namespace ns {

std::string describe(const Point& point) {
    return format("{%@, %@}", formatDouble(point.x), formatDouble(point.y));
}

std::string describe(const Size& size) {
    return format("{%@, %@}", formatDouble(size.width), formatDouble(size.height));
}

std::string describe(const Rect& rect) {
    return format("{%@, %@}", describe(rect.origin), describe(rect.size));
}

std::string describe(const EdgeInsets& insets) {
    return format("{%@, %@, %@, %@}", formatDouble(insets.top), formatDouble(insets.left),
                  formatDouble(insets.bottom), formatDouble(insets.right));
}

std::string describe(const AffineTransform& t) {
    return format("[%@, %@, %@, %@, %@, %@]", formatDouble(t.a), formatDouble(t.b), formatDouble(t.c),
                  formatDouble(t.d), formatDouble(t.tx), formatDouble(t.ty));
}

} // namespace ns
