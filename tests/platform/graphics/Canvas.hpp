#pragma once

#include "platform/graphics/BitmapImageRep.hpp"
#include "platform/graphics/GraphicsContext.hpp"

#include <array>
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

// A bitmap with a current context drawing into it for the lifetime of the object, and pixel
// probes.
struct Canvas {
    ns::Ref<ns::BitmapImageRep> bitmap;
    ns::Ref<ns::GraphicsContext> context;

    explicit Canvas(int width, int height, bool flipped = false) {
        bitmap = ns::BitmapImageRep::make(width, height);
        context = ns::GraphicsContext::graphicsContextWithBitmapImageRep(bitmap, flipped);
        ns::GraphicsContext::saveCurrentGraphicsState();
        ns::GraphicsContext::setCurrentContext(context);
    }
    ~Canvas() { ns::GraphicsContext::restoreCurrentGraphicsState(); }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    // Pixel (x, y) counted from the top-left.
    RGBA pixel(int x, int y) const {
        context->flushGraphics();
        uint64_t p[4] = {};
        bitmap->getPixel(p, x, y);
        return {int(p[0]), int(p[1]), int(p[2]), int(p[3])};
    }
};
