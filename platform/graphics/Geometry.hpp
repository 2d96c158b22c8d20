#pragma once

#include <algorithm>
#include <cmath>
#include <string>

namespace ns {

// Plain geometry values in points. A rectangle's origin is its corner of smallest x and y; in
// an unflipped view that is the lower-left corner.
struct Point {
    double x = 0;
    double y = 0;
    bool operator==(const Point&) const = default;
};

struct Size {
    double width = 0;
    double height = 0;
    bool operator==(const Size&) const = default;
};

// Insets from each edge of a rectangle: top, left, bottom, right.
struct EdgeInsets {
    double top = 0;
    double left = 0;
    double bottom = 0;
    double right = 0;
    bool operator==(const EdgeInsets&) const = default;
};

struct Rect {
    Point origin;
    Size size;

    Rect() = default;
    Rect(Point origin, Size size) : origin(origin), size(size) {}
    Rect(double x, double y, double width, double height) : origin{x, y}, size{width, height} {}

    double x() const { return origin.x; }
    double y() const { return origin.y; }
    double width() const { return size.width; }
    double height() const { return size.height; }
    double minX() const { return origin.x; }
    double minY() const { return origin.y; }
    double maxX() const { return origin.x + size.width; }
    double maxY() const { return origin.y + size.height; }
    double midX() const { return origin.x + size.width / 2; }
    double midY() const { return origin.y + size.height / 2; }
    bool isEmpty() const { return size.width <= 0 || size.height <= 0; }

    // Shrinks by dx on the left and right and dy at the bottom and top (grows for negatives).
    Rect insetBy(double dx, double dy) const {
        return {origin.x + dx, origin.y + dy, size.width - 2 * dx, size.height - 2 * dy};
    }
    Rect offsetBy(double dx, double dy) const {
        return {origin.x + dx, origin.y + dy, size.width, size.height};
    }
    // The smallest rectangle holding both; an empty rectangle adds nothing.
    Rect unionWith(const Rect& other) const {
        if (isEmpty())
            return other;
        if (other.isEmpty())
            return *this;
        double x0 = std::min(minX(), other.minX()), y0 = std::min(minY(), other.minY());
        double x1 = std::max(maxX(), other.maxX()), y1 = std::max(maxY(), other.maxY());
        return {x0, y0, x1 - x0, y1 - y0};
    }
    // The common part; a zero rectangle when they do not overlap.
    Rect intersection(const Rect& other) const {
        double x0 = std::max(minX(), other.minX()), y0 = std::max(minY(), other.minY());
        double x1 = std::min(maxX(), other.maxX()), y1 = std::min(maxY(), other.maxY());
        if (x1 <= x0 || y1 <= y0)
            return {};
        return {x0, y0, x1 - x0, y1 - y0};
    }
    bool intersects(const Rect& other) const { return !intersection(other).isEmpty(); }
    // Half-open: the minimum edges are inside, the maximum edges are not.
    bool contains(Point point) const {
        return point.x >= minX() && point.x < maxX() && point.y >= minY() && point.y < maxY();
    }
    bool contains(const Rect& other) const {
        return other.minX() >= minX() && other.maxX() <= maxX() && other.minY() >= minY() &&
               other.maxY() <= maxY();
    }

    bool operator==(const Rect&) const = default;
};

// An affine map of the plane: x' = a x + c y + tx, y' = b x + d y + ty.
struct AffineTransform {
    double a = 1, b = 0, c = 0, d = 1, tx = 0, ty = 0;

    static AffineTransform translation(double dx, double dy) { return {1, 0, 0, 1, dx, dy}; }
    static AffineTransform scale(double sx, double sy) { return {sx, 0, 0, sy, 0, 0}; }
    static AffineTransform rotationDegrees(double degrees) {
        double r = degrees * M_PI / 180.0, cs = std::cos(r), sn = std::sin(r);
        return {cs, sn, -sn, cs, 0, 0};
    }

    Point apply(Point p) const { return {a * p.x + c * p.y + tx, b * p.x + d * p.y + ty}; }
    // Applies the linear part only (no translation), as for a vector or a size.
    Point applyToVector(Point v) const { return {a * v.x + c * v.y, b * v.x + d * v.y}; }
    // This transform followed by `then`.
    AffineTransform appending(const AffineTransform& then) const {
        return {a * then.a + b * then.c,
                a * then.b + b * then.d,
                c * then.a + d * then.c,
                c * then.b + d * then.d,
                tx * then.a + ty * then.c + then.tx,
                tx * then.b + ty * then.d + then.ty};
    }
    // `first` followed by this transform.
    AffineTransform prepending(const AffineTransform& first) const { return first.appending(*this); }
    double determinant() const { return a * d - b * c; }
    bool isInvertible() const { return determinant() != 0; }
    // The inverse; the identity when the transform cannot be inverted.
    AffineTransform inverted() const {
        double det = determinant();
        if (det == 0)
            return {};
        return {d / det, -b / det, -c / det, a / det, (c * ty - d * tx) / det, (b * tx - a * ty) / det};
    }
    bool isIdentity() const { return *this == AffineTransform{}; }
    bool operator==(const AffineTransform&) const = default;
};

// Whether every coordinate is a finite number. Drawing ignores geometry that is not: one NaN
// would leave Cairo's context unusable for the rest of its life.
inline bool isFinite(Point p) {
    return std::isfinite(p.x) && std::isfinite(p.y);
}
inline bool isFinite(Size s) {
    return std::isfinite(s.width) && std::isfinite(s.height);
}
inline bool isFinite(const Rect& r) {
    return isFinite(r.origin) && isFinite(r.size);
}
inline bool isFinite(const AffineTransform& t) {
    return std::isfinite(t.a) && std::isfinite(t.b) && std::isfinite(t.c) && std::isfinite(t.d) &&
           std::isfinite(t.tx) && std::isfinite(t.ty);
}

// The rectangle inside the insets; top applies to the edge of largest y unless flipped.
inline Rect insetRect(const Rect& rect, const EdgeInsets& insets, bool flipped = false) {
    double bottom = flipped ? insets.top : insets.bottom;
    double top = flipped ? insets.bottom : insets.top;
    return {rect.x() + insets.left, rect.y() + bottom, rect.width() - insets.left - insets.right,
            rect.height() - top - bottom};
}

std::string describe(const Point& point);
std::string describe(const Size& size);
std::string describe(const Rect& rect);
std::string describe(const EdgeInsets& insets);
std::string describe(const AffineTransform& transform);

} // namespace ns
