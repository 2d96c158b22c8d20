#include "platform/graphics/Graphics.hpp"

#include "platform/graphics/GraphicsContext.hpp"

#include <cairo.h>

#include <algorithm>

namespace ns {

void RectFill(const Rect& rect) {
    RectFillUsingOperation(rect, CompositingOperation::Copy);
}

void RectFillUsingOperation(const Rect& rect, CompositingOperation operation) {
    if (auto context = GraphicsContext::currentContext())
        context->fillRect(rect, operation);
}

void RectFillList(std::span<const Rect> rects) {
    for (const auto& rect : rects)
        RectFill(rect);
}

void FrameRect(const Rect& rect) {
    FrameRectWithWidth(rect, 1.0);
}

void FrameRectWithWidth(const Rect& rect, double width) {
    auto context = GraphicsContext::currentContext();
    if (!context || !isFinite(rect) || !(rect.width() > 0 && rect.height() > 0) || !(width > 0))
        return;
    // Four bands inside the rectangle, so a frame never spills over its edges.
    double w = std::min(width, rect.width() / 2), h = std::min(width, rect.height() / 2);
    cairo_t* cr = context->cairo();
    cairo_save(cr);
    cairo_set_operator(cr, static_cast<cairo_operator_t>(cairoOperatorFor(context->compositingOperation())));
    context->drawWithShadow([&] {
        cairo_new_path(cr);
        cairo_rectangle(cr, rect.x(), rect.y(), rect.width(), h);
        cairo_rectangle(cr, rect.x(), rect.maxY() - h, rect.width(), h);
        cairo_rectangle(cr, rect.x(), rect.y() + h, w, rect.height() - 2 * h);
        cairo_rectangle(cr, rect.maxX() - w, rect.y() + h, w, rect.height() - 2 * h);
        context->applyFillSource();
        cairo_fill(cr);
    });
    cairo_restore(cr);
}

void RectClip(const Rect& rect) {
    if (auto context = GraphicsContext::currentContext())
        context->clipToRect(rect);
}

} // namespace ns
