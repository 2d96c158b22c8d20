#include "kit/Categories/NSBezierPath+Corvane.hpp"

#include <gtest/gtest.h>

using corvane::bezierPathWithRoundRectInRect;
using corvane::cv_bezierPathLineFrom;
using ns::BezierPathElement;

namespace {

std::vector<BezierPathElement> kinds(const ns::BezierPath& path) {
    std::vector<BezierPathElement> out;
    for (const auto& element : path.elements())
        out.push_back(element.type);
    return out;
}

bool samePoints(const ns::BezierPath& a, const ns::BezierPath& b) {
    if (a.elementCount() != b.elementCount())
        return false;
    for (size_t i = 0; i < a.elements().size(); ++i)
        for (size_t p = 0; p < 3; ++p)
            if (std::abs(a.elements()[i].points[p].x - b.elements()[i].points[p].x) > 1e-9 ||
                std::abs(a.elements()[i].points[p].y - b.elements()[i].points[p].y) > 1e-9)
                return false;
    return true;
}

} // namespace

TEST(RoundRectPath, ARadiusBeyondHalfTheShorterSideGivesSemicircularEnds) {
    const ns::Rect rect(0, 0, 40, 10);
    auto path = bezierPathWithRoundRectInRect(rect, 8);
    EXPECT_EQ(path->bounds(), rect);
    EXPECT_EQ(kinds(*path).back(), BezierPathElement::ClosePath);
    // Radius 5 around (5, 5): the end is round, and the corner itself is outside.
    EXPECT_TRUE(path->containsPoint({1, 5}));
    EXPECT_FALSE(path->containsPoint({0.6, 0.6}));
    EXPECT_FALSE(path->containsPoint({39.4, 9.4}));
    EXPECT_TRUE(path->containsPoint({20, 0.2}));

    // Exactly half the shorter side is the same shape.
    EXPECT_TRUE(samePoints(*path, *bezierPathWithRoundRectInRect(rect, 5)));
    EXPECT_FALSE(samePoints(*path, *bezierPathWithRoundRectInRect(rect, 4)));
}

TEST(RoundRectPath, RadiusZeroIsAPlainRectangleOfFourPoints) {
    auto path = bezierPathWithRoundRectInRect({10, 20, 30, 40}, 0);
    EXPECT_EQ(kinds(*path),
              (std::vector<BezierPathElement>{BezierPathElement::MoveTo, BezierPathElement::LineTo,
                                              BezierPathElement::LineTo, BezierPathElement::LineTo,
                                              BezierPathElement::ClosePath}));
    EXPECT_EQ(path->elements()[0].points[0], (ns::Point{10, 20}));
    EXPECT_EQ(path->elements()[2].points[0], (ns::Point{40, 60}));
}

TEST(LinePath, OneSegmentEvenWhenItsEndsMeet) {
    auto line = cv_bezierPathLineFrom({1, 2}, {3, 4});
    EXPECT_EQ(kinds(*line),
              (std::vector<BezierPathElement>{BezierPathElement::MoveTo, BezierPathElement::LineTo}));
    EXPECT_EQ(line->elements()[1].points[0], (ns::Point{3, 4}));

    auto dot = cv_bezierPathLineFrom({5, 5}, {5, 5});
    EXPECT_EQ(dot->elementCount(), 2);
    EXPECT_EQ(dot->currentPoint(), (ns::Point{5, 5}));
}
