#include "platform/graphics/ImageRep.hpp"

#include "platform/foundation/Format.hpp"

#include "platform/graphics/GraphicsContext.hpp"

#include <cairo.h>

#include <algorithm>
#include <cstdio>

namespace ns {

ImageRep::ImageRep(int64_t pixelsWide, int64_t pixelsHigh, bool hasAlpha, int64_t bitsPerSample,
                   std::string colorSpaceName)
    : m_size{static_cast<double>(pixelsWide), static_cast<double>(pixelsHigh)}, m_pixelsWide(pixelsWide),
      m_pixelsHigh(pixelsHigh), m_hasAlpha(hasAlpha), m_bitsPerSample(bitsPerSample),
      m_colorSpaceName(std::move(colorSpaceName)) {}

void ImageRep::setSize(Size size) {
    m_size = {std::max(0.0, size.width), std::max(0.0, size.height)};
}

bool ImageRep::drawInRect(const Rect& rect) const {
    auto context = GraphicsContext::currentContext();
    cairo_surface_t* surface = cairoSurface();
    if (!context || !surface || m_pixelsWide == 0 || m_pixelsHigh == 0)
        return false;
    if (!isFinite(rect) || !(rect.width() > 0 && rect.height() > 0))
        return true;
    cairo_t* cr = context->cairo();
    cairo_save(cr);
    cairo_set_operator(cr, CAIRO_OPERATOR_OVER);
    // Pixel row 0 is the top: at the largest y unless user space is flipped.
    double sx = m_pixelsWide / rect.width(), sy = m_pixelsHigh / rect.height();
    cairo_matrix_t m;
    if (context->isFlipped())
        cairo_matrix_init(&m, sx, 0, 0, sy, -rect.x() * sx, -rect.y() * sy);
    else
        cairo_matrix_init(&m, sx, 0, 0, -sy, -rect.x() * sx, rect.maxY() * sy);
    cairo_pattern_t* pattern = cairo_pattern_create_for_surface(surface);
    cairo_pattern_set_matrix(pattern, &m);
    cairo_pattern_set_extend(pattern, CAIRO_EXTEND_PAD);
    context->drawWithShadow([&] {
        cairo_new_path(cr);
        cairo_rectangle(cr, rect.x(), rect.y(), rect.width(), rect.height());
        cairo_set_source(cr, pattern);
        cairo_fill(cr);
    });
    cairo_pattern_destroy(pattern);
    cairo_restore(cr);
    return true;
}

bool ImageRep::draw() const {
    return drawInRect({{0, 0}, m_size});
}

std::string ImageRep::description() const {
    return format("<%@ %p %@ %lldx%lld pixels, size %@%s>", className(), static_cast<const void*>(this),
                  m_colorSpaceName, static_cast<long long>(m_pixelsWide),
                  static_cast<long long>(m_pixelsHigh), describe(m_size), m_hasAlpha ? ", alpha" : "");
}

} // namespace ns
