#pragma once

#include "platform/foundation/Object.hpp"
#include "platform/graphics/Geometry.hpp"
#include "platform/graphics/Graphics.hpp"

#include <functional>
#include <optional>
#include <vector>

typedef struct _cairo cairo_t;
typedef struct _cairo_surface cairo_surface_t;

namespace ns {

class BitmapImageRep;
class Image;

// What fills or strokes: a colour as drawn (device RGB with alpha), or a tiled image.
struct Paint {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;
    Ref<Image> pattern;
};

// A shadow as the graphics state holds it: offset in points (positive height is up, whatever
// the flipping), blur radius in points, colour as drawn.
struct ShadowStyle {
    Size offset;
    double blurRadius = 0;
    double rgba[4] = {0, 0, 0, 1.0 / 3.0};
};

// A drawing destination on Cairo with a graphics state: fill and stroke paint, compositing
// operation, antialiasing, image interpolation, shadow, clip and transform, saved and restored
// together.
//
// User space: points with the origin at the lower left and y growing upward, unless the
// context (or a flip applied while drawing a flipped view) makes it grow downward; isFlipped()
// tells which. The current transform maps user space to device pixels, whose origin is the top
// left of the destination with y growing downward.
//
// Each thread has a current context (nil until set) and a stack of saved ones.
class GraphicsContext : public Object {
public:
    // Draws into `surface`, whose user space is `pointSize` points; the surface's pixel size
    // sets the scale. `owner` is kept alive with the context.
    GraphicsContext(cairo_surface_t* surface, Size pointSize, bool flipped, Ref<Object> owner);
    ~GraphicsContext() override;

    // A context drawing into the bitmap (its point size is the user space); nil for nil.
    static Ref<GraphicsContext> graphicsContextWithBitmapImageRep(const Ref<BitmapImageRep>& bitmap,
                                                                  bool flipped = false);

    // --- The thread's current context -------------------------------------------------------
    static Ref<GraphicsContext> currentContext();
    static void setCurrentContext(const Ref<GraphicsContext>& context);
    // Pushes the current context (and saves its state); restoring pops it back as current and
    // restores its state. Restoring with nothing saved logs and does nothing.
    static void saveCurrentGraphicsState();
    static void restoreCurrentGraphicsState();

    // --- This context's state ---------------------------------------------------------------
    // Unbalanced restores log and do nothing.
    void saveGraphicsState();
    void restoreGraphicsState();

    bool isFlipped() const { return m_state.flipped; }
    // Only records how user space runs (for text and images), the transform is unchanged.
    void setFlipped(bool flipped) { m_state.flipped = flipped; }
    // Mirrors user space within a band of `height` (y becomes height - y) and toggles
    // isFlipped: how a flipped view is drawn inside an unflipped one, and back.
    void flipUserSpace(double height);

    bool shouldAntialias() const { return m_state.antialias; }
    void setShouldAntialias(bool antialias);
    CompositingOperation compositingOperation() const { return m_state.operation; }
    void setCompositingOperation(CompositingOperation operation);
    ImageInterpolation imageInterpolation() const { return m_state.interpolation; }
    void setImageInterpolation(ImageInterpolation interpolation) { m_state.interpolation = interpolation; }

    const Paint& fillPaint() const { return m_state.fill; }
    const Paint& strokePaint() const { return m_state.stroke; }
    void setFillPaint(const Paint& paint) { m_state.fill = paint; }
    void setStrokePaint(const Paint& paint) { m_state.stroke = paint; }
    const std::optional<ShadowStyle>& shadow() const { return m_state.shadow; }
    void setShadow(const std::optional<ShadowStyle>& shadow) { m_state.shadow = shadow; }

    // --- Transform and clip -----------------------------------------------------------------
    AffineTransform currentTransform() const;
    void setCurrentTransform(const AffineTransform& transform);
    // Applies `transform` to user space before the current transform.
    void concat(const AffineTransform& transform);
    void translateBy(double dx, double dy);
    void scaleBy(double sx, double sy);
    void rotateByDegrees(double degrees);
    // Device pixels per point along x and y at creation.
    double deviceScaleX() const { return m_scaleX; }
    double deviceScaleY() const { return m_scaleY; }
    // The user-space bounds of the current clip.
    Rect clipBoundingBox() const;
    void clipToRect(const Rect& rect);

    // --- For the drawing code of this layer -------------------------------------------------
    cairo_t* cairo() const { return m_cairo; }
    Size pointSize() const { return m_pointSize; }
    // Makes the fill (or stroke) paint Cairo's source.
    void applyFillSource();
    void applyStrokeSource();
    // Runs `draw` (which draws with Cairo) so that it casts the current shadow, if any. Shadows
    // composite source-over beneath what `draw` paints.
    void drawWithShadow(const std::function<void()>& draw);
    // Fills the rectangle with the fill paint under the operation, shadow included.
    void fillRect(const Rect& rect, CompositingOperation operation);
    // Finishes pending drawing so the destination's pixels can be read.
    void flushGraphics();

    std::string description() const override;

private:
    struct State {
        Paint fill;
        Paint stroke;
        bool flipped = false;
        bool antialias = true;
        CompositingOperation operation = CompositingOperation::SourceOver;
        ImageInterpolation interpolation = ImageInterpolation::Default;
        std::optional<ShadowStyle> shadow;
    };

    void applyPaint(const Paint& paint);

    cairo_t* m_cairo = nullptr;
    Size m_pointSize;
    double m_scaleX = 1;
    double m_scaleY = 1;
    Ref<Object> m_owner;
    State m_state;
    std::vector<State> m_saved;
};

// Cairo's operator for a compositing operation; source-over (and a log line) for values
// outside the enumeration. Returns an int to keep Cairo out of this header.
int cairoOperatorFor(CompositingOperation operation);

} // namespace ns
