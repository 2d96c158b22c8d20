#pragma once

#include "platform/graphics/BitmapImageRep.hpp"
#include "platform/graphics/GraphicsContext.hpp"
#include "support/PixelProbe.hpp"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <ostream>

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
        return pixelAt(bitmap, x, y);
    }
};
