#pragma once

#include "platform/graphics/BitmapImageRep.hpp"

#include <cstdint>
#include <cstdlib>
#include <ostream>

// A pixel's samples as stored: premultiplied red, green, blue, alpha, 0-255.
struct RGBA {
    int r = 0, g = 0, b = 0, a = 0;
    bool operator==(const RGBA&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const RGBA& p) {
    return out << "(" << p.r << ", " << p.g << ", " << p.b << ", " << p.a << ")";
}

inline bool near(const RGBA& x, const RGBA& y, int tolerance = 1) {
    return std::abs(x.r - y.r) <= tolerance && std::abs(x.g - y.g) <= tolerance &&
           std::abs(x.b - y.b) <= tolerance && std::abs(x.a - y.a) <= tolerance;
}

// Pixel (x, y) of the bitmap, counted from the top-left.
inline RGBA pixelAt(const ns::Ref<ns::BitmapImageRep>& bitmap, int64_t x, int64_t y) {
    uint64_t p[4] = {};
    bitmap->getPixel(p, x, y);
    return {int(p[0]), int(p[1]), int(p[2]), int(p[3])};
}
