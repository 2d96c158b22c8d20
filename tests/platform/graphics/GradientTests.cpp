#include "Canvas.hpp"

#include "platform/graphics/BezierPath.hpp"
#include "platform/graphics/Color.hpp"
#include "platform/graphics/Gradient.hpp"
#include "platform/graphics/Image.hpp"

#include <gtest/gtest.h>

using namespace ns;

TEST(Gradient, VerticalGradientRunsFromSmallestToLargestY) {
    Canvas canvas(4, 10);
    auto gradient = Gradient::make(Color::colorWithDeviceWhite(0, 1), Color::colorWithDeviceWhite(1, 1));
    ASSERT_TRUE(gradient);
    gradient->drawInRect({0, 0, 4, 10}, 90);
    // Pixel centres sit at 5% and 95% of the height: the first (top) row is nearly the end
    // colour, the last (bottom) row nearly the start colour.
    EXPECT_TRUE(near(canvas.pixel(2, 0), {242, 242, 242, 255}, 2)) << canvas.pixel(2, 0);
    EXPECT_TRUE(near(canvas.pixel(2, 9), {13, 13, 13, 255}, 2)) << canvas.pixel(2, 9);
    for (int y = 1; y < 10; ++y)
        EXPECT_LT(canvas.pixel(2, y).r, canvas.pixel(2, y - 1).r);
}

TEST(Gradient, AngleZeroRunsLeftToRightAndFillsOnlyTheRectangle) {
    Canvas canvas(12, 4);
    auto gradient = Gradient::make(Color::redColor(), Color::blueColor());
    gradient->drawInRect({1, 0, 10, 4}, 0);
    EXPECT_GT(canvas.pixel(1, 1).r, 200);
    EXPECT_GT(canvas.pixel(10, 1).b, 200);
    EXPECT_EQ(canvas.pixel(0, 1).a, 0);
    EXPECT_EQ(canvas.pixel(11, 1).a, 0);
}

TEST(Gradient, LinearBetweenPointsExtendsOnlyWhenAsked) {
    auto gradient = Gradient::make(Color::redColor(), Color::blueColor());
    {
        Canvas canvas(10, 1);
        gradient->drawFromPoint({3, 0}, {7, 0}, 0);
        EXPECT_EQ(canvas.pixel(1, 0).a, 0);
        EXPECT_EQ(canvas.pixel(8, 0).a, 0);
        EXPECT_EQ(canvas.pixel(5, 0).a, 255);
    }
    {
        Canvas canvas(10, 1);
        gradient->drawFromPoint({3, 0}, {7, 0}, GradientDrawsBeforeStartingLocation);
        EXPECT_EQ(canvas.pixel(1, 0), (RGBA{255, 0, 0, 255}));
        EXPECT_EQ(canvas.pixel(8, 0).a, 0);
    }
    {
        Canvas canvas(10, 1);
        gradient->drawFromPoint({3, 0}, {7, 0},
                                GradientDrawsBeforeStartingLocation | GradientDrawsAfterEndingLocation);
        EXPECT_EQ(canvas.pixel(1, 0), (RGBA{255, 0, 0, 255}));
        EXPECT_EQ(canvas.pixel(8, 0), (RGBA{0, 0, 255, 255}));
        gradient->drawFromPoint({3, 0}, {3, 0}, 0); // coincident points: nothing
    }
}

TEST(Gradient, FadingStopsKeepTheirAlpha) {
    // Five stops of one grey fading in and out, as a separator line uses.
    std::vector<Ref<Color>> colors;
    for (double alpha : {0.0, 0.3, 0.3, 0.3, 0.0})
        colors.push_back(Color::colorWithDeviceRed(0.5, 0.5, 0.5, alpha));
    auto gradient = Gradient::make(colors, {0, 0.1, 0.5, 0.9, 1}, ColorSpace::deviceRGBColorSpace());
    ASSERT_TRUE(gradient);
    EXPECT_EQ(gradient->numberOfColorStops(), 5);
    Canvas canvas(100, 1);
    gradient->drawFromPoint({0, 0.5}, {100, 0.5}, 0);
    EXPECT_LE(canvas.pixel(0, 0).a, 5);
    EXPECT_TRUE(near(canvas.pixel(50, 0), {38, 38, 38, 77}, 1)) << canvas.pixel(50, 0);
    EXPECT_LE(canvas.pixel(99, 0).a, 5);
}

TEST(Gradient, StopsAndInterpolation) {
    auto gradient = Gradient::make({Color::whiteColor(), Color::blackColor()}, {1.0, 0.0}, nullptr);
    ASSERT_TRUE(gradient);
    EXPECT_EQ(gradient->colorSpace(), ColorSpace::genericRGBColorSpace());
    Ref<Color> color;
    double location = -1;
    gradient->getColor(&color, &location, 0); // sorted: black first
    EXPECT_EQ(location, 0);
    EXPECT_EQ(color->colorSpaceName(), CalibratedRGBColorSpace);
    EXPECT_DOUBLE_EQ(color->redComponent(), 0);
    EXPECT_NEAR(gradient->interpolatedColorAtLocation(0.25)->greenComponent(), 0.25, 1e-12);
    EXPECT_DOUBLE_EQ(gradient->interpolatedColorAtLocation(7)->blueComponent(), 1);
    gradient->getColor(&color, &location, 5); // logs, leaves the outputs
    EXPECT_EQ(location, 0);

    EXPECT_FALSE(Gradient::make({Color::redColor()}));
    EXPECT_FALSE(Gradient::make({Color::redColor(), Color::blueColor()}, {0.0}, nullptr));
    EXPECT_FALSE(Gradient::make(Color::redColor(), nullptr));
    auto image = Image::make({1, 1});
    EXPECT_FALSE(Gradient::make(Color::colorWithPatternImage(image), Color::redColor()));
}

TEST(Gradient, DrawInPathStaysInsideThePath) {
    Canvas canvas(10, 10);
    auto gradient = Gradient::make(Color::redColor(), Color::redColor());
    gradient->drawInBezierPath(*BezierPath::bezierPathWithOvalInRect({0, 0, 10, 10}), 45);
    EXPECT_EQ(canvas.pixel(5, 5), (RGBA{255, 0, 0, 255}));
    EXPECT_EQ(canvas.pixel(0, 0).a, 0);
    EXPECT_EQ(canvas.pixel(9, 9).a, 0);
}

TEST(Gradient, RadialGradient) {
    Canvas canvas(21, 21);
    auto gradient = Gradient::make(Color::whiteColor(), Color::blackColor());
    gradient->drawFromCenter({10.5, 10.5}, 0, {10.5, 10.5}, 8, 0);
    EXPECT_GT(canvas.pixel(10, 10).r, 240);
    EXPECT_EQ(canvas.pixel(0, 0).a, 0);
    gradient->drawFromCenter({10.5, 10.5}, 0, {10.5, 10.5}, 8, GradientDrawsAfterEndingLocation);
    EXPECT_EQ(canvas.pixel(0, 0), (RGBA{0, 0, 0, 255}));
}
