#include "Canvas.hpp"

#include "platform/foundation/Log.hpp"
#include "platform/graphics/BezierPath.hpp"
#include "platform/graphics/Color.hpp"

#include <gtest/gtest.h>

#include <cmath>

using namespace ns;

namespace {

std::vector<BezierPathElement> types(const BezierPath& path) {
    std::vector<BezierPathElement> result;
    for (const auto& e : path.elements())
        result.push_back(e.type);
    return result;
}

void expectNear(Point a, Point b) {
    EXPECT_NEAR(a.x, b.x, 1e-9);
    EXPECT_NEAR(a.y, b.y, 1e-9);
}

using E = BezierPathElement;

} // namespace

TEST(BezierPath, ArcsJoinTheCurrentPointOrStartTheSubpath) {
    auto path = BezierPath::make();
    path->appendBezierPathWithArcWithCenter({10, 10}, 5, 180, 270);
    EXPECT_EQ(types(*path), (std::vector{E::MoveTo, E::CurveTo}));
    expectNear(path->elements()[0].points[0], {5, 10});
    expectNear(path->currentPoint(), {10, 5});

    path->appendBezierPathWithArcWithCenter({20, 10}, 5, 270, 360);
    EXPECT_EQ(types(*path), (std::vector{E::MoveTo, E::CurveTo, E::LineTo, E::CurveTo}));
    expectNear(path->elements()[2].points[0], {20, 5});
    expectNear(path->currentPoint(), {25, 10});

    // A full turn is four quarter curves; its bounds are the circle's square.
    auto circle = BezierPath::make();
    circle->appendBezierPathWithArcWithCenter({0, 0}, 2, 0, 360);
    EXPECT_EQ(circle->elementCount(), 5);
    Rect b = circle->bounds();
    EXPECT_NEAR(b.x(), -2, 1e-9);
    EXPECT_NEAR(b.width(), 4, 1e-9);
    EXPECT_NEAR(b.height(), 4, 1e-9);

    // Clockwise from 90 to 0 is a quarter through the first quadrant, end angle below start.
    auto clockwise = BezierPath::make();
    clockwise->appendBezierPathWithArcWithCenter({0, 0}, 1, 90, 0, true);
    EXPECT_EQ(clockwise->elementCount(), 2);
    expectNear(clockwise->currentPoint(), {1, 0});
    EXPECT_GT(clockwise->elements()[1].points[0].x, 0); // bulges through +x, +y
    // Counter-clockwise from 90 to 0 goes the long way, three quarters.
    auto longWay = BezierPath::make();
    longWay->appendBezierPathWithArcWithCenter({0, 0}, 1, 90, 0);
    EXPECT_EQ(longWay->elementCount(), 4);
}

TEST(BezierPath, ZeroRadiusArcsMakeAPlainPolygon) {
    // Four zero-radius corners: four points joined by straight lines.
    auto path = BezierPath::make();
    path->appendBezierPathWithArcWithCenter({0, 0}, 0, 180, 270);
    path->appendBezierPathWithArcWithCenter({40, 0}, 0, 270, 360);
    path->appendBezierPathWithArcWithCenter({40, 10}, 0, 0, 90);
    path->appendBezierPathWithArcWithCenter({0, 10}, 0, 90, 180);
    path->closePath();
    EXPECT_EQ(types(*path), (std::vector{E::MoveTo, E::LineTo, E::LineTo, E::LineTo, E::ClosePath}));
    EXPECT_EQ(path->bounds(), (Rect{0, 0, 40, 10}));
    // Equal points give one zero-length segment.
    auto line = BezierPath::make();
    line->moveToPoint({3, 3});
    line->lineToPoint({3, 3});
    EXPECT_EQ(line->elementCount(), 2);
}

TEST(BezierPath, BoundsFollowTheCurveNotItsControlPoints) {
    auto path = BezierPath::make();
    path->moveToPoint({0, 0});
    path->curveToPoint({10, 0}, {0, 10}, {10, 10});
    EXPECT_EQ(path->controlPointBounds(), (Rect{0, 0, 10, 10}));
    EXPECT_NEAR(path->bounds().height(), 7.5, 1e-9); // the curve peaks at 3/4 of the control height
    EXPECT_EQ(BezierPath::make()->bounds(), Rect());
}

TEST(BezierPath, ReadingElementsAndBadCalls) {
    auto path = BezierPath::bezierPathWithRect({1, 2, 3, 4});
    Point points[3];
    EXPECT_EQ(path->elementAtIndex(2, points), E::LineTo);
    EXPECT_EQ(points[0], (Point{4, 6}));
    EXPECT_EQ(path->elementAtIndex(4), E::ClosePath);
    expectNear(path->currentPoint(), {1, 2});

    LogCapture log;
    EXPECT_EQ(path->elementAtIndex(9, points), E::ClosePath);
    EXPECT_TRUE(log.contains("element index 9"));
    auto empty = BezierPath::make();
    empty->lineToPoint({1, 1});
    empty->curveToPoint({1, 1}, {0, 0}, {0, 0});
    empty->relativeLineToPoint({1, 1});
    EXPECT_TRUE(empty->isEmpty());
    EXPECT_TRUE(log.contains("lineToPoint needs a current point"));
    EXPECT_EQ(empty->currentPoint(), (Point{}));
    empty->appendBezierPathWithArcWithCenter({0, 0}, 1, NAN, 90);
    EXPECT_TRUE(empty->isEmpty());
}

TEST(BezierPath, StyleDefaultsAndCopies) {
    auto path = BezierPath::make();
    EXPECT_EQ(path->lineWidth(), 1);
    EXPECT_EQ(path->miterLimit(), 10);
    EXPECT_EQ(path->windingRule(), WindingRule::NonZero);
    BezierPath::setDefaultLineWidth(3);
    EXPECT_EQ(BezierPath::make()->lineWidth(), 3);
    EXPECT_EQ(path->lineWidth(), 1);
    BezierPath::setDefaultLineWidth(1);
    path->setLineWidth(-2);
    EXPECT_EQ(path->lineWidth(), 0);
    path->setLineDash({2, -1}, 1);
    EXPECT_TRUE(path->lineDash().empty());
    path->setLineDash({2, 1}, 1);
    EXPECT_EQ(path->lineDash(), (std::vector<double>{2, 1}));

    path->appendBezierPathWithRect({0, 0, 2, 2});
    auto copy = path->copy();
    copy->transformUsingAffineTransform(AffineTransform::translation(10, 0));
    EXPECT_EQ(copy->bounds(), (Rect{10, 0, 2, 2}));
    EXPECT_EQ(path->bounds(), (Rect{0, 0, 2, 2}));
    EXPECT_EQ(copy->lineDash(), path->lineDash());
    copy->appendBezierPath(*copy);
    EXPECT_EQ(copy->elementCount(), 10);
}

TEST(BezierPath, ContainsPointByWindingRule) {
    auto path = BezierPath::bezierPathWithRect({0, 0, 10, 10});
    path->appendBezierPathWithRect({2, 2, 6, 6});
    EXPECT_TRUE(path->containsPoint({5, 5}));
    path->setWindingRule(WindingRule::EvenOdd);
    EXPECT_FALSE(path->containsPoint({5, 5}));
    EXPECT_TRUE(path->containsPoint({1, 1}));
    EXPECT_FALSE(path->containsPoint({11, 1}));
}

TEST(BezierPath, RoundedRectangleCornersAreCut) {
    Canvas canvas(20, 20);
    Color::redColor()->set();
    BezierPath::bezierPathWithRoundedRect({0, 0, 20, 20}, 6, 6)->fill();
    EXPECT_EQ(canvas.pixel(0, 0).a, 0);
    EXPECT_EQ(canvas.pixel(19, 19).a, 0);
    EXPECT_EQ(canvas.pixel(1, 0).a, 0);
    EXPECT_EQ(canvas.pixel(0, 1).a, 0);
    EXPECT_GT(canvas.pixel(1, 1).a, 0); // the arc passes through this pixel
    EXPECT_LT(canvas.pixel(1, 1).a, 255);
    EXPECT_EQ(canvas.pixel(0, 10), (RGBA{255, 0, 0, 255}));
    EXPECT_EQ(canvas.pixel(10, 0), (RGBA{255, 0, 0, 255}));
    EXPECT_EQ(canvas.pixel(3, 3), (RGBA{255, 0, 0, 255}));
    // Radii beyond half the sides are limited: a 20 x 8 rectangle with radius 10 has round ends.
    auto pill = BezierPath::bezierPathWithRoundedRect({0, 0, 20, 8}, 10, 10);
    EXPECT_TRUE(pill->containsPoint({10, 7.9}));
    EXPECT_FALSE(pill->containsPoint({0.2, 0.2}));
    EXPECT_EQ(BezierPath::bezierPathWithRoundedRect({0, 0, 4, 4}, 0, 0)->elementCount(), 5);
}

TEST(BezierPath, StrokeUsesStrokeColourAndLineWidth) {
    Canvas canvas(10, 10);
    Color::redColor()->setFill();
    Color::blueColor()->setStroke();
    auto path = BezierPath::make();
    path->moveToPoint({0, 5});
    path->lineToPoint({10, 5});
    path->setLineWidth(4); // y 3...7: rows 3 to 6
    path->stroke();
    EXPECT_EQ(canvas.pixel(5, 3), (RGBA{0, 0, 255, 255}));
    EXPECT_EQ(canvas.pixel(5, 6), (RGBA{0, 0, 255, 255}));
    EXPECT_EQ(canvas.pixel(5, 2).a, 0);
    RectFill({0, 0, 1, 1}); // the fill colour is still the fill's
    EXPECT_EQ(canvas.pixel(0, 9), (RGBA{255, 0, 0, 255}));
    // Width 0 is the thinnest visible line.
    path->setLineWidth(0);
    path->transformUsingAffineTransform(AffineTransform::translation(0, 4.5)); // y 9.5: row 0
    path->stroke();
    EXPECT_EQ(canvas.pixel(5, 0), (RGBA{0, 0, 255, 255}));
}

TEST(BezierPath, ClippingToAPath) {
    Canvas canvas(10, 10);
    canvas.context->saveGraphicsState();
    BezierPath::bezierPathWithOvalInRect({0, 0, 10, 10})->addClip();
    Color::redColor()->set();
    RectFill({0, 0, 10, 10});
    canvas.context->restoreGraphicsState();
    EXPECT_EQ(canvas.pixel(5, 5), (RGBA{255, 0, 0, 255}));
    EXPECT_EQ(canvas.pixel(0, 0).a, 0);
    // setClip replaces the clip.
    RectClip({0, 0, 1, 1});
    BezierPath::bezierPathWithRect({5, 5, 5, 5})->setClip();
    Color::blueColor()->set();
    RectFill({0, 0, 10, 10});
    EXPECT_EQ(canvas.pixel(7, 2), (RGBA{0, 0, 255, 255}));
    EXPECT_EQ(canvas.pixel(0, 9).a, 0);
}
