#include "platform/graphics/GraphicsContext.hpp"

#include "platform/foundation/Log.hpp"
#include "platform/graphics/BitmapImageRep.hpp"
#include "platform/graphics/Image.hpp"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace ns {

namespace {

thread_local Ref<GraphicsContext> t_currentContext;
thread_local std::vector<Ref<GraphicsContext>> t_savedContexts;

cairo_matrix_t toCairo(const AffineTransform& t) {
    cairo_matrix_t m;
    cairo_matrix_init(&m, t.a, t.b, t.c, t.d, t.tx, t.ty);
    return m;
}

AffineTransform fromCairo(const cairo_matrix_t& m) {
    return {m.xx, m.yx, m.xy, m.yy, m.x0, m.y0};
}

// One pass of a running-sum box blur of the given radius along rows (or columns) of an 8-bit
// channel; `line` is scratch space of the line's length.
void boxBlurLines(unsigned char* data, int count, int length, int step, int lineStride, int radius,
                  std::vector<int>& line) {
    if (radius <= 0)
        return;
    int window = 2 * radius + 1;
    for (int l = 0; l < count; ++l) {
        unsigned char* p = data + static_cast<ptrdiff_t>(l) * lineStride;
        for (int i = 0; i < length; ++i)
            line[i] = p[static_cast<ptrdiff_t>(i) * step];
        int sum = 0;
        for (int i = -radius; i <= radius; ++i)
            sum += (i >= 0 && i < length) ? line[i] : 0;
        for (int i = 0; i < length; ++i) {
            p[static_cast<ptrdiff_t>(i) * step] = static_cast<unsigned char>((sum + window / 2) / window);
            int out = i - radius, in = i + radius + 1;
            sum += (in < length ? line[in] : 0) - (out >= 0 ? line[out] : 0);
        }
    }
}

// Approximates a Gaussian of standard deviation sigma by three box blurs in each direction.
void blurAlpha(cairo_surface_t* surface, double sigma) {
    if (sigma <= 0.1)
        return;
    cairo_surface_flush(surface);
    unsigned char* data = cairo_image_surface_get_data(surface);
    int width = cairo_image_surface_get_width(surface);
    int height = cairo_image_surface_get_height(surface);
    int stride = cairo_image_surface_get_stride(surface);
    if (!data || width == 0 || height == 0)
        return;
    // Box sizes whose three-fold convolution has the requested variance.
    double ideal = std::sqrt(12 * sigma * sigma / 3 + 1);
    int radius = std::max(1, static_cast<int>(std::lround((ideal - 1) / 2)));
    std::vector<int> line(static_cast<size_t>(std::max(width, height)));
    for (int pass = 0; pass < 3; ++pass) {
        boxBlurLines(data, height, width, 1, stride, radius, line);
        boxBlurLines(data, width, height, stride, 1, radius, line);
    }
    cairo_surface_mark_dirty(surface);
}

} // namespace

int cairoOperatorFor(CompositingOperation operation) {
    switch (operation) {
    case CompositingOperation::Clear:
        return CAIRO_OPERATOR_CLEAR;
    case CompositingOperation::Copy:
        return CAIRO_OPERATOR_SOURCE;
    case CompositingOperation::SourceOver:
    case CompositingOperation::Highlight:
        return CAIRO_OPERATOR_OVER;
    case CompositingOperation::SourceIn:
        return CAIRO_OPERATOR_IN;
    case CompositingOperation::SourceOut:
        return CAIRO_OPERATOR_OUT;
    case CompositingOperation::SourceAtop:
        return CAIRO_OPERATOR_ATOP;
    case CompositingOperation::DestinationOver:
        return CAIRO_OPERATOR_DEST_OVER;
    case CompositingOperation::DestinationIn:
        return CAIRO_OPERATOR_DEST_IN;
    case CompositingOperation::DestinationOut:
        return CAIRO_OPERATOR_DEST_OUT;
    case CompositingOperation::DestinationAtop:
        return CAIRO_OPERATOR_DEST_ATOP;
    case CompositingOperation::XOR:
        return CAIRO_OPERATOR_XOR;
    case CompositingOperation::PlusDarker:
    case CompositingOperation::Darken:
        return CAIRO_OPERATOR_DARKEN;
    case CompositingOperation::PlusLighter:
        return CAIRO_OPERATOR_ADD;
    case CompositingOperation::Multiply:
        return CAIRO_OPERATOR_MULTIPLY;
    case CompositingOperation::Screen:
        return CAIRO_OPERATOR_SCREEN;
    case CompositingOperation::Overlay:
        return CAIRO_OPERATOR_OVERLAY;
    case CompositingOperation::Lighten:
        return CAIRO_OPERATOR_LIGHTEN;
    case CompositingOperation::ColorDodge:
        return CAIRO_OPERATOR_COLOR_DODGE;
    case CompositingOperation::ColorBurn:
        return CAIRO_OPERATOR_COLOR_BURN;
    case CompositingOperation::SoftLight:
        return CAIRO_OPERATOR_SOFT_LIGHT;
    case CompositingOperation::HardLight:
        return CAIRO_OPERATOR_HARD_LIGHT;
    case CompositingOperation::Difference:
        return CAIRO_OPERATOR_DIFFERENCE;
    case CompositingOperation::Exclusion:
        return CAIRO_OPERATOR_EXCLUSION;
    case CompositingOperation::Hue:
        return CAIRO_OPERATOR_HSL_HUE;
    case CompositingOperation::Saturation:
        return CAIRO_OPERATOR_HSL_SATURATION;
    case CompositingOperation::Color:
        return CAIRO_OPERATOR_HSL_COLOR;
    case CompositingOperation::Luminosity:
        return CAIRO_OPERATOR_HSL_LUMINOSITY;
    }
    Log("GraphicsContext: unknown compositing operation %lld; drawing source-over.",
        static_cast<long long>(operation));
    return CAIRO_OPERATOR_OVER;
}

GraphicsContext::GraphicsContext(cairo_surface_t* surface, Size pointSize, bool flipped, Ref<Object> owner)
    : m_pointSize{std::max(0.0, pointSize.width), std::max(0.0, pointSize.height)},
      m_owner(std::move(owner)) {
    m_cairo = cairo_create(surface);
    double pixelsWide = 0, pixelsHigh = 0;
    if (cairo_surface_get_type(surface) == CAIRO_SURFACE_TYPE_IMAGE) {
        pixelsWide = cairo_image_surface_get_width(surface);
        pixelsHigh = cairo_image_surface_get_height(surface);
    }
    m_scaleX = m_pointSize.width > 0 && pixelsWide > 0 ? pixelsWide / m_pointSize.width : 1;
    m_scaleY = m_pointSize.height > 0 && pixelsHigh > 0 ? pixelsHigh / m_pointSize.height : 1;
    cairo_matrix_t base;
    if (flipped)
        cairo_matrix_init(&base, m_scaleX, 0, 0, m_scaleY, 0, 0);
    else
        cairo_matrix_init(&base, m_scaleX, 0, 0, -m_scaleY, 0, m_pointSize.height * m_scaleY);
    cairo_set_matrix(m_cairo, &base);
    cairo_set_line_width(m_cairo, 1.0);
    m_state.flipped = flipped;
}

GraphicsContext::~GraphicsContext() {
    if (m_cairo)
        cairo_destroy(m_cairo);
}

Ref<GraphicsContext> GraphicsContext::graphicsContextWithBitmapImageRep(const Ref<BitmapImageRep>& bitmap,
                                                                        bool flipped) {
    if (!bitmap || !bitmap->cairoSurface())
        return nullptr;
    return create<GraphicsContext>(bitmap->cairoSurface(), bitmap->size(), flipped, bitmap);
}

// --- Current context --------------------------------------------------------------------------

Ref<GraphicsContext> GraphicsContext::currentContext() {
    return t_currentContext;
}

void GraphicsContext::setCurrentContext(const Ref<GraphicsContext>& context) {
    t_currentContext = context;
}

void GraphicsContext::saveCurrentGraphicsState() {
    t_savedContexts.push_back(t_currentContext);
    if (t_currentContext)
        t_currentContext->saveGraphicsState();
}

void GraphicsContext::restoreCurrentGraphicsState() {
    if (t_savedContexts.empty()) {
        Log("GraphicsContext: restoreGraphicsState without a matching save.");
        return;
    }
    Ref<GraphicsContext> context = std::move(t_savedContexts.back());
    t_savedContexts.pop_back();
    t_currentContext = context;
    if (context)
        context->restoreGraphicsState();
}

// --- State --------------------------------------------------------------------------------------

void GraphicsContext::saveGraphicsState() {
    cairo_save(m_cairo);
    m_saved.push_back(m_state);
}

void GraphicsContext::restoreGraphicsState() {
    if (m_saved.empty()) {
        Log("GraphicsContext: restoreGraphicsState without a matching save.");
        return;
    }
    cairo_restore(m_cairo);
    m_state = std::move(m_saved.back());
    m_saved.pop_back();
}

void GraphicsContext::flipUserSpace(double height) {
    if (!std::isfinite(height)) {
        Log("GraphicsContext: flip within a height that is not a finite number ignored.");
        return;
    }
    cairo_translate(m_cairo, 0, height);
    cairo_scale(m_cairo, 1, -1);
    m_state.flipped = !m_state.flipped;
}

void GraphicsContext::setShouldAntialias(bool antialias) {
    m_state.antialias = antialias;
    cairo_set_antialias(m_cairo, antialias ? CAIRO_ANTIALIAS_DEFAULT : CAIRO_ANTIALIAS_NONE);
}

void GraphicsContext::setCompositingOperation(CompositingOperation operation) {
    m_state.operation = operation;
    cairo_set_operator(m_cairo, static_cast<cairo_operator_t>(cairoOperatorFor(operation)));
}

// --- Transform and clip ---------------------------------------------------------------------------

AffineTransform GraphicsContext::currentTransform() const {
    cairo_matrix_t m;
    cairo_get_matrix(m_cairo, &m);
    return fromCairo(m);
}

void GraphicsContext::setCurrentTransform(const AffineTransform& transform) {
    if (!isFinite(transform) || !transform.isInvertible()) {
        Log("GraphicsContext: ignoring a transform that is not finite or cannot be inverted: %@",
            describe(transform));
        return;
    }
    cairo_matrix_t m = toCairo(transform);
    cairo_set_matrix(m_cairo, &m);
}

void GraphicsContext::concat(const AffineTransform& transform) {
    if (!isFinite(transform) || !transform.isInvertible()) {
        Log("GraphicsContext: ignoring a transform that is not finite or cannot be inverted: %@",
            describe(transform));
        return;
    }
    cairo_matrix_t m = toCairo(transform);
    cairo_transform(m_cairo, &m);
}

void GraphicsContext::translateBy(double dx, double dy) {
    concat(AffineTransform::translation(dx, dy));
}

void GraphicsContext::scaleBy(double sx, double sy) {
    concat(AffineTransform::scale(sx, sy));
}

void GraphicsContext::rotateByDegrees(double degrees) {
    concat(AffineTransform::rotationDegrees(degrees));
}

Rect GraphicsContext::clipBoundingBox() const {
    double x0, y0, x1, y1;
    cairo_clip_extents(m_cairo, &x0, &y0, &x1, &y1);
    return {std::min(x0, x1), std::min(y0, y1), std::fabs(x1 - x0), std::fabs(y1 - y0)};
}

void GraphicsContext::clipToRect(const Rect& rect) {
    if (!isFinite(rect))
        return;
    cairo_new_path(m_cairo);
    cairo_rectangle(m_cairo, rect.x(), rect.y(), rect.width(), rect.height());
    cairo_clip(m_cairo);
}

// --- Drawing ------------------------------------------------------------------------------------

void GraphicsContext::applyPaint(const Paint& paint) {
    cairo_surface_t* tile = paint.pattern ? paint.pattern->rasterSurface() : nullptr;
    if (!tile) {
        auto channel = [](double v) {
            return std::isnan(v) ? 0.0 : std::clamp(v, 0.0, 1.0);
        };
        cairo_set_source_rgba(m_cairo, channel(paint.red), channel(paint.green), channel(paint.blue),
                              channel(paint.alpha));
        return;
    }
    // Tiles sit on the device grid, at the image's point size.
    cairo_pattern_t* pattern = cairo_pattern_create_for_surface(tile);
    cairo_pattern_set_extend(pattern, CAIRO_EXTEND_REPEAT);
    Size size = paint.pattern->size();
    double px = cairo_image_surface_get_width(tile), py = cairo_image_surface_get_height(tile);
    cairo_matrix_t userToDevice, deviceToTile, userToTile;
    cairo_get_matrix(m_cairo, &userToDevice);
    cairo_matrix_init_scale(&deviceToTile, size.width > 0 ? px / (size.width * m_scaleX) : 1,
                            size.height > 0 ? py / (size.height * m_scaleY) : 1);
    cairo_matrix_multiply(&userToTile, &userToDevice, &deviceToTile);
    cairo_pattern_set_matrix(pattern, &userToTile);
    cairo_set_source(m_cairo, pattern);
    cairo_pattern_destroy(pattern);
}

void GraphicsContext::applyFillSource() {
    applyPaint(m_state.fill);
}

void GraphicsContext::applyStrokeSource() {
    applyPaint(m_state.stroke);
}

void GraphicsContext::drawWithShadow(const std::function<void()>& draw) {
    cairo_surface_t* target = cairo_get_target(m_cairo);
    if (!m_state.shadow || !(m_state.shadow->rgba[3] > 0) || !isFinite(m_state.shadow->offset) ||
        !std::isfinite(m_state.shadow->blurRadius) ||
        cairo_surface_get_type(target) != CAIRO_SURFACE_TYPE_IMAGE) {
        draw();
        return;
    }
    const ShadowStyle& shadow = *m_state.shadow;

    // 1. What `draw` paints, captured in a group.
    cairo_push_group(m_cairo);
    cairo_set_operator(m_cairo, CAIRO_OPERATOR_OVER);
    draw();
    cairo_pattern_t* content = cairo_pop_group(m_cairo);

    // 2. Its coverage in device space, blurred.
    int width = cairo_image_surface_get_width(target), height = cairo_image_surface_get_height(target);
    cairo_surface_t* mask = cairo_image_surface_create(CAIRO_FORMAT_A8, width, height);
    cairo_t* maskCairo = cairo_create(mask);
    cairo_matrix_t m;
    cairo_get_matrix(m_cairo, &m);
    cairo_set_matrix(maskCairo, &m);
    cairo_set_source(maskCairo, content);
    cairo_paint(maskCairo);
    cairo_destroy(maskCairo);
    blurAlpha(mask, shadow.blurRadius * 0.5 * m_scaleX);

    // 3. The shadow colour through the coverage, moved by the offset, then the content.
    cairo_save(m_cairo);
    cairo_identity_matrix(m_cairo);
    cairo_set_operator(m_cairo, CAIRO_OPERATOR_OVER);
    cairo_set_source_rgba(m_cairo, shadow.rgba[0], shadow.rgba[1], shadow.rgba[2], shadow.rgba[3]);
    cairo_mask_surface(m_cairo, mask, shadow.offset.width * m_scaleX, -shadow.offset.height * m_scaleY);
    cairo_restore(m_cairo);
    cairo_surface_destroy(mask);

    cairo_save(m_cairo);
    // Copying the whole group would wipe the shadow just drawn beside the shape.
    if (cairo_get_operator(m_cairo) == CAIRO_OPERATOR_SOURCE)
        cairo_set_operator(m_cairo, CAIRO_OPERATOR_OVER);
    cairo_set_source(m_cairo, content);
    cairo_paint(m_cairo);
    cairo_restore(m_cairo);
    cairo_pattern_destroy(content);
}

void GraphicsContext::fillRect(const Rect& rect, CompositingOperation operation) {
    if (!isFinite(rect) || !(rect.width() > 0 && rect.height() > 0))
        return;
    cairo_save(m_cairo);
    cairo_set_operator(m_cairo, static_cast<cairo_operator_t>(cairoOperatorFor(operation)));
    drawWithShadow([&] {
        cairo_new_path(m_cairo);
        cairo_rectangle(m_cairo, rect.x(), rect.y(), rect.width(), rect.height());
        applyFillSource();
        cairo_fill(m_cairo);
    });
    cairo_restore(m_cairo);
}

void GraphicsContext::flushGraphics() {
    cairo_surface_flush(cairo_get_target(m_cairo));
}

std::string GraphicsContext::description() const {
    return format("<GraphicsContext: %p size %@%s>", static_cast<const void*>(this), describe(m_pointSize),
                  m_state.flipped ? " flipped" : "");
}

} // namespace ns
