#include "Canvas.hpp"

#include "platform/foundation/Log.hpp"
#include "platform/graphics/BezierPath.hpp"
#include "platform/graphics/Color.hpp"
#include "platform/graphics/Graphics.hpp"
#include "platform/graphics/Shadow.hpp"

#include <gtest/gtest.h>

using namespace ns;

namespace {

constexpr RGBA kClear{0, 0, 0, 0};
constexpr RGBA kBlack{0, 0, 0, 255};
constexpr RGBA kRed{255, 0, 0, 255};

void horizontalLineAt(double y, double width) {
    Color::blackColor()->setStroke();
    BezierPath::strokeLineFromPoint({0, y}, {width, y});
}

} // namespace

TEST(GraphicsContext, OnePointLineLandsOnOnePixelRow) {
    {
        // Unflipped: y 2...3 is the third row from the bottom of a 10-pixel bitmap, row 7.
        Canvas canvas(10, 10);
        horizontalLineAt(2.5, 10);
        EXPECT_EQ(canvas.pixel(4, 7), kBlack);
        EXPECT_EQ(canvas.pixel(4, 6), kClear);
        EXPECT_EQ(canvas.pixel(4, 8), kClear);
    }
    {
        Canvas canvas(10, 10, /*flipped*/ true);
        EXPECT_TRUE(canvas.context->isFlipped());
        horizontalLineAt(2.5, 10);
        EXPECT_EQ(canvas.pixel(4, 2), kBlack);
        EXPECT_EQ(canvas.pixel(4, 7), kClear);
    }
    {
        // A flipped view drawn inside an unflipped one.
        Canvas canvas(10, 10);
        canvas.context->translateBy(0, 4);
        canvas.context->flipUserSpace(6);
        EXPECT_TRUE(canvas.context->isFlipped());
        horizontalLineAt(0.5, 10); // top row of the 6-point band starting 4 points up
        EXPECT_EQ(canvas.pixel(4, 0), kBlack);
        EXPECT_EQ(canvas.pixel(4, 1), kClear);
    }
}

TEST(GraphicsContext, DeviceScaleFollowsTheBitmapsPointSize) {
    auto bitmap = BitmapImageRep::make(20, 20);
    bitmap->setSize({10, 10});
    auto context = GraphicsContext::graphicsContextWithBitmapImageRep(bitmap);
    EXPECT_DOUBLE_EQ(context->deviceScaleX(), 2);
    GraphicsContext::saveCurrentGraphicsState();
    GraphicsContext::setCurrentContext(context);
    Color::redColor()->set();
    RectFill({0, 0, 1, 1}); // the lower-left point: pixels (0...1, 18...19)
    GraphicsContext::restoreCurrentGraphicsState();
    context->flushGraphics();
    uint64_t p[4];
    bitmap->getPixel(p, 1, 18);
    EXPECT_EQ(p[0], 255u);
    bitmap->getPixel(p, 2, 18);
    EXPECT_EQ(p[3], 0u);
    bitmap->getPixel(p, 1, 17);
    EXPECT_EQ(p[3], 0u);
}

TEST(GraphicsContext, SaveAndRestoreCoverPaintOperationAntialiasAndClip) {
    Canvas canvas(10, 10);
    auto& context = *canvas.context;
    Color::redColor()->set();
    context.saveGraphicsState();
    Color::blueColor()->set();
    context.setCompositingOperation(CompositingOperation::XOR);
    context.setShouldAntialias(false);
    context.setImageInterpolation(ImageInterpolation::None);
    RectClip({0, 0, 1, 1});
    context.restoreGraphicsState();
    EXPECT_EQ(context.compositingOperation(), CompositingOperation::SourceOver);
    EXPECT_TRUE(context.shouldAntialias());
    EXPECT_EQ(context.imageInterpolation(), ImageInterpolation::Default);
    RectFill({0, 0, 10, 10});
    EXPECT_EQ(canvas.pixel(9, 0), kRed);

    LogCapture log;
    context.restoreGraphicsState();
    EXPECT_TRUE(log.contains("without a matching save"));
}

TEST(GraphicsContext, CurrentContextStackRestoresThePreviousContext) {
    EXPECT_FALSE(GraphicsContext::currentContext());
    {
        Canvas outer(4, 4);
        {
            Canvas inner(2, 2);
            EXPECT_EQ(GraphicsContext::currentContext(), inner.context);
        }
        EXPECT_EQ(GraphicsContext::currentContext(), outer.context);
    }
    EXPECT_FALSE(GraphicsContext::currentContext());
    LogCapture log;
    GraphicsContext::restoreCurrentGraphicsState();
    EXPECT_TRUE(log.contains("without a matching save"));
    // Drawing without a context is a quiet no-op.
    RectFill({0, 0, 1, 1});
    BezierPath::fillRect({0, 0, 1, 1});
}

TEST(GraphicsContext, CompositingOperations) {
    Canvas canvas(4, 1);
    Color::whiteColor()->set();
    RectFill({0, 0, 4, 1});
    Color::colorWithDeviceRed(1, 0, 0, 0.5)->set();
    RectFillUsingOperation({0, 0, 1, 1}, CompositingOperation::SourceOver);
    RectFill({1, 0, 1, 1}); // copy: the pixel becomes the translucent colour
    RectFillUsingOperation({2, 0, 1, 1}, CompositingOperation::Clear);
    RectFillUsingOperation({3, 0, 1, 1}, CompositingOperation::DestinationOver);
    EXPECT_TRUE(near(canvas.pixel(0, 0), {255, 127, 127, 255}));
    EXPECT_TRUE(near(canvas.pixel(1, 0), {128, 0, 0, 128}));
    EXPECT_EQ(canvas.pixel(2, 0), kClear);
    EXPECT_EQ(canvas.pixel(3, 0), (RGBA{255, 255, 255, 255}));

    LogCapture log;
    RectFillUsingOperation({2, 0, 1, 1}, static_cast<CompositingOperation>(99));
    EXPECT_TRUE(log.contains("unknown compositing operation 99"));
    EXPECT_TRUE(near(canvas.pixel(2, 0), {128, 0, 0, 128}));
}

TEST(GraphicsContext, AntialiasingSwitch) {
    Canvas canvas(4, 1);
    Color::blackColor()->set();
    BezierPath::fillRect({0.5, 0, 2, 1});
    EXPECT_TRUE(near(canvas.pixel(0, 0), {0, 0, 0, 128}));
    canvas.context->setShouldAntialias(false);
    Color::redColor()->set();
    BezierPath::fillRect({0.5, 0, 2, 1});
    for (int x = 0; x < 4; ++x) {
        int alpha = canvas.pixel(x, 0).a;
        EXPECT_TRUE(alpha == 0 || alpha == 255 || canvas.pixel(x, 0).r == 0) << "pixel " << x;
    }
}

TEST(GraphicsContext, ClippingAndTransforms) {
    Canvas canvas(10, 10);
    auto& context = *canvas.context;
    context.saveGraphicsState();
    RectClip({2, 2, 3, 3});
    EXPECT_EQ(context.clipBoundingBox(), (Rect{2, 2, 3, 3}));
    Color::redColor()->set();
    RectFill({0, 0, 10, 10});
    context.restoreGraphicsState();
    EXPECT_EQ(canvas.pixel(3, 6), kRed);   // user (3, 3)
    EXPECT_EQ(canvas.pixel(1, 6), kClear); // user (1, 3)
    EXPECT_EQ(canvas.pixel(3, 8), kClear); // user (3, 1)

    context.saveGraphicsState();
    context.translateBy(5, 0);
    context.scaleBy(2, 1);
    Color::blueColor()->set();
    RectFill({0, 0, 1, 1}); // user x 5...7 after the transform
    auto t = context.currentTransform();
    EXPECT_EQ(t.apply({0, 0}), (Point{5, 10}));
    context.restoreGraphicsState();
    EXPECT_EQ(canvas.pixel(6, 9), (RGBA{0, 0, 255, 255}));
    EXPECT_EQ(canvas.pixel(7, 9), kClear);

    LogCapture log;
    context.concat(AffineTransform::scale(0, 1));
    EXPECT_TRUE(log.contains("cannot be inverted"));
}

TEST(GraphicsContext, FrameRectStaysInside) {
    Canvas canvas(6, 6);
    Color::redColor()->set();
    FrameRect({1, 1, 4, 4});
    EXPECT_EQ(canvas.pixel(1, 1), kRed);
    EXPECT_EQ(canvas.pixel(4, 4), kRed);
    EXPECT_EQ(canvas.pixel(2, 2), kClear);
    EXPECT_EQ(canvas.pixel(0, 0), kClear);
    FrameRectWithWidth({1, 1, 4, 4}, -1); // nothing
    RectFill({2, 2, -2, 1});              // nothing
    EXPECT_EQ(canvas.pixel(2, 2), kClear);
}

TEST(GraphicsContext, ShadowFallsByItsOffsetWhateverTheFlipping) {
    for (bool flipped : {false, true}) {
        Canvas canvas(10, 10, flipped);
        auto shadow = Shadow::make();
        shadow->setShadowOffset({3, -3}); // right and down on the page
        shadow->setShadowColor(Color::blueColor());
        canvas.context->saveGraphicsState();
        shadow->set();
        Color::redColor()->set();
        RectFillUsingOperation(flipped ? Rect{1, 1, 3, 3} : Rect{1, 6, 3, 3},
                               CompositingOperation::SourceOver);
        canvas.context->restoreGraphicsState();
        EXPECT_EQ(canvas.pixel(2, 2), kRed) << flipped;
        EXPECT_EQ(canvas.pixel(5, 5), (RGBA{0, 0, 255, 255})) << flipped;
        EXPECT_EQ(canvas.pixel(0, 5), kClear) << flipped;
        // After the restore, drawing casts no shadow.
        RectFillUsingOperation({6, flipped ? 0.0 : 9.0, 1, 1}, CompositingOperation::SourceOver);
        EXPECT_EQ(canvas.pixel(8, 2), kClear) << flipped;
    }
}

TEST(GraphicsContext, BlurredShadowFadesOut) {
    Canvas canvas(30, 10);
    auto shadow = Shadow::make();
    shadow->setShadowBlurRadius(6);
    shadow->setShadowColor(Color::blackColor());
    shadow->set();
    Color::whiteColor()->set();
    RectFillUsingOperation({10, 0, 10, 10}, CompositingOperation::SourceOver);
    int nearEdge = canvas.pixel(9, 5).a, farther = canvas.pixel(6, 5).a, far = canvas.pixel(0, 5).a;
    EXPECT_GT(nearEdge, farther);
    EXPECT_GT(farther, far);
    EXPECT_GT(nearEdge, 0);
    EXPECT_LT(nearEdge, 255);
    // A shadow without a colour removes the shadow.
    shadow->setShadowColor(nullptr);
    shadow->set();
    EXPECT_FALSE(canvas.context->shadow());
}

TEST(GraphicsContext, NonFiniteGeometryIsIgnoredAndTheContextStaysUsable) {
    Canvas canvas(4, 4);
    auto& context = *canvas.context;
    {
        LogCapture log;
        context.translateBy(NAN, 0);
        context.rotateByDegrees(INFINITY);
        context.flipUserSpace(NAN);
        RectClip({NAN, 0, 1, 1});
        Color::colorWithDeviceRed(NAN, 0, 0, 1)->set();
        RectFill({0, NAN, 2, 2});
        FrameRect({INFINITY, 0, 2, 2});
        auto path = BezierPath::make();
        path->moveToPoint({0, 0});
        path->lineToPoint({NAN, 1});
        path->curveToPoint({1, 1}, {INFINITY, 0}, {0, 0});
        path->appendBezierPathWithArcWithCenter({NAN, 0}, 1, 0, 90);
        path->fill();
        auto shadow = Shadow::make();
        shadow->setShadowOffset({NAN, 1});
        shadow->set();
        BezierPath::fillRect({1, 1, 1, 1});
        EXPECT_FALSE(log.messages().empty());
    }
    EXPECT_EQ(context.currentTransform(), (AffineTransform{1, 0, 0, -1, 0, 4}));
    Color::redColor()->set();
    RectFill({0, 0, 4, 4});
    EXPECT_EQ(canvas.pixel(0, 0), kRed);
    EXPECT_EQ(canvas.pixel(3, 3), kRed);
}
