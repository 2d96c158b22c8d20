#include "kit/Categories/NSView+Utility.hpp"

#include "platform/foundation/Log.hpp"
#include "platform/graphics/AttributedString.hpp"
#include "support/PlatformScopes.hpp"

#include <gtest/gtest.h>

using namespace corvane;
using ns::LayoutAttribute;
using ns::LayoutRelation;
using ns::Rect;

namespace {

using Constraints = std::vector<ns::Ref<ns::LayoutConstraint>>;

// A compact picture of one constraint, so a failure shows the whole equation.
std::string describe(const ns::LayoutConstraint& c, const std::map<const ns::View*, std::string>& names) {
    auto name = [&](const ns::Ref<ns::View>& v) {
        return v ? names.at(v.get()) : std::string("nil");
    };
    return name(c.firstItem()) + "." + std::to_string(int(c.firstAttribute())) + " " +
           std::to_string(int(c.relation())) + " " + name(c.secondItem()) + "." +
           std::to_string(int(c.secondAttribute())) + " *" + ns::format("%g", c.multiplier()) + " +" +
           ns::format("%g", c.constant()) + " @" + ns::format("%g", double(c.priority()));
}

std::vector<std::string> describeAll(const Constraints& constraints,
                                     const std::map<const ns::View*, std::string>& names) {
    std::vector<std::string> out;
    for (const auto& c : constraints)
        out.push_back(describe(*c, names));
    return out;
}

class Container : public ::testing::Test {
protected:
    ns::Ref<ns::View> container = ns::View::make({0, 0, 200, 100});
    ns::Ref<ns::View> subview = ns::View::make({0, 0, 30, 40});
    std::map<const ns::View*, std::string> names{{container.get(), "c"}, {subview.get(), "s"}};

    std::vector<std::string> held() const { return describeAll(container->constraints(), names); }
};

class FlippedView : public ns::View {
public:
    using ns::View::View;
    bool isFlipped() const override { return true; }
};

} // namespace

TEST_F(Container, EdgeInsetsPinLeftAndTopRequiredAndLetRightAndBottomGiveWay) {
    addSubview(*container, subview, ns::EdgeInsets{5, 10, 15, 20});

    EXPECT_FALSE(subview->translatesAutoresizingMaskIntoConstraints());
    EXPECT_EQ(subview->superview(), container);
    // Horizontal formats run leading to trailing (attributes 5 and 6).
    EXPECT_EQ(held(), (std::vector<std::string>{"s.5 0 c.5 *1 +10 @1000", "c.6 0 s.6 *1 +20 @990",
                                                "s.3 0 c.3 *1 +5 @1000", "c.4 0 s.4 *1 +15 @990"}));

    container->layoutSubtreeIfNeeded();
    EXPECT_EQ(subview->frame(), Rect(10, 15, 170, 80));

    // A subview wider and taller than the container allows pushes the right and bottom out.
    addWidthConstraintWithConstant(*subview, 300, 1000);
    addHeightConstraintWithConstant(*subview, 120);
    container->layoutSubtreeIfNeeded();
    EXPECT_EQ(subview->frame(), Rect(10, -25, 300, 120));
}

TEST_F(Container, EdgeInsetsMeasureFromTheTopInAFlippedContainer) {
    auto flipped = ns::create<FlippedView>(Rect(0, 0, 200, 100));
    addSubview(*flipped, subview, ns::EdgeInsets{5, 10, 15, 20});
    flipped->layoutSubtreeIfNeeded();
    EXPECT_EQ(subview->frame(), Rect(10, 5, 170, 80));
}

TEST_F(Container, UnitInsetsAndTheFillFrameChoices) {
    addSubviewWithUnitEdgeInsets(*container, subview);
    container->layoutSubtreeIfNeeded();
    EXPECT_EQ(subview->frame(), Rect(1, 1, 198, 98));

    // Neither filling by frame nor asking for auto layout still pins on all four sides.
    auto other = ns::View::make({3, 3, 3, 3});
    addSubview(*container, other, false, false);
    container->layoutSubtreeIfNeeded();
    EXPECT_EQ(other->frame(), Rect(0, 0, 200, 100));
    EXPECT_EQ(container->constraints().size(), 8u);

    // Filling by frame makes no constraint at all.
    auto framed = ns::View::make({7, 7, 7, 7});
    addSubview(*container, framed, true, false);
    EXPECT_EQ(framed->frame(), Rect(0, 0, 200, 100));
    EXPECT_TRUE(framed->translatesAutoresizingMaskIntoConstraints());
    EXPECT_EQ(container->constraints().size(), 8u);
}

TEST_F(Container, ConstraintFlagsPlaceTheSubviewInTheirOrder) {
    addSubview(*container, subview,
               QSConstraintFlagFixedWidth | QSConstraintFlagFixedHeight | QSConstraintFlagTop20 |
                   QSConstraintFlagLeft20 | 0x10000);
    EXPECT_EQ(describeAll(subview->constraints(), names),
              (std::vector<std::string>{"s.7 0 nil.0 *1 +30 @1000", "s.8 0 nil.0 *1 +40 @1000"}));
    EXPECT_EQ(held(), (std::vector<std::string>{"s.3 0 c.3 *1 +20 @1000", "s.1 0 c.1 *1 +20 @1000"}));
    container->layoutSubtreeIfNeeded();
    EXPECT_EQ(subview->frame(), Rect(20, 40, 30, 40));
}

TEST_F(Container, RightAndBottom20LieBeyondTheContainer) {
    addSubview(*container, subview,
               QSConstraintFlagFixedWidth | QSConstraintFlagFixedHeight | QSConstraintFlagRight20 |
                   QSConstraintFlagBottom20);
    container->layoutSubtreeIfNeeded();
    EXPECT_EQ(subview->frame().maxX(), 220);
    // Constraint offsets run downwards: plus 20 on the bottom is 20 below the container.
    EXPECT_EQ(subview->frame().minY(), -20);
}

TEST_F(Container, EveryPositionFlagMakesItsConstraintEvenWhenTheyContradict) {
    ns::LogCapture capture; // the contradiction is reported by the layout, not here
    addSubview(*container, subview, QSConstraintFlags{0xFFC});
    EXPECT_EQ(held(), (std::vector<std::string>{"s.9 0 c.9 *1 +0 @1000", "s.10 0 c.10 *1 +0 @1000",
                                                "s.3 0 c.3 *1 +20 @1000", "s.2 0 c.2 *1 +20 @1000",
                                                "s.4 0 c.4 *1 +20 @1000", "s.1 0 c.1 *1 +20 @1000",
                                                "s.3 0 c.3 *1 +0 @1000", "s.2 0 c.2 *1 +0 @1000",
                                                "s.4 0 c.4 *1 +0 @1000", "s.1 0 c.1 *1 +0 @1000"}));
}

TEST_F(Container, AFixedWidthIsTakenFromTheFrameEvenWhenItIsZero) {
    auto thin = ns::View::make({0, 0, 0, 10});
    names[thin.get()] = "t";
    addSubview(*container, thin, QSConstraintFlagFixedWidth);
    EXPECT_EQ(describeAll(thin->constraints(), names), (std::vector<std::string>{"t.7 0 nil.0 *1 +0 @1000"}));

    addSubview(*container, nullptr, QSConstraintFlagFixedWidth | QSConstraintFlagTop);
    EXPECT_TRUE(container->constraints().empty());
}

TEST_F(Container, SingleConstraintRecipes) {
    auto& s = *subview;
    const std::vector<std::string> made{
        describe(*addHeightConstraintWithConstant(s, 11), names),
        describe(*addHeightConstraintWithConstant(s, 12, 250), names),
        describe(*addMinHeightConstraintWithConstant(s, 13), names),
        describe(*addMinHeightConstraintWithConstant(s, 14, 990), names),
        describe(*addMaxHeightConstraintWithConstant(s, 15), names),
        describe(*addMaxHeightConstraintWithConstant(s, 16, 750), names),
        describe(*addWidthConstraintWithConstant(s, 17, 900), names),
        describe(*addMinWidthConstraintWithConstant(s, 18), names),
        describe(*addMaxWidthConstraintWithConstant(s, 19), names),
        describe(*addAspectRatioConstraint(s, 0.5), names),
        describe(*addEqualConstraintToSelfForItem(*container, subview, LayoutAttribute::CenterY, 4), names),
    };
    EXPECT_EQ(made, (std::vector<std::string>{
                        "s.8 0 nil.0 *1 +11 @1000", "s.8 0 nil.0 *1 +12 @250", "s.8 1 nil.0 *1 +13 @1000",
                        "s.8 1 nil.0 *1 +14 @990", "s.8 -1 nil.0 *1 +15 @1000", "s.8 -1 nil.0 *1 +16 @750",
                        "s.7 0 nil.0 *1 +17 @900", "s.7 1 nil.0 *1 +18 @1000", "s.7 -1 nil.0 *1 +19 @1000",
                        "s.8 0 s.7 *0.5 +0 @1000", "s.10 0 c.10 *1 +4 @1000"}));
    EXPECT_EQ(subview->constraints().size(), 10u);
    EXPECT_EQ(container->constraints().size(), 1u);

    addMinWidthHeightConstraintWithSize(s, {5, 6});
    EXPECT_EQ(describeAll({subview->constraints().end() - 2, subview->constraints().end()}, names),
              (std::vector<std::string>{"s.8 1 nil.0 *1 +6 @1000", "s.7 1 nil.0 *1 +5 @1000"}));

    auto fixed = viewWithConstrainedHeight(44);
    ASSERT_EQ(fixed->constraints().size(), 1u);
    EXPECT_EQ(fixed->constraints()[0]->constant(), 44);
    EXPECT_EQ(fixed->constraints()[0]->firstAttribute(), LayoutAttribute::Height);
}

TEST_F(Container, AspectRatioAndLeftRightPlacementOnceSolved) {
    container->addSubview(subview);
    subview->setTranslatesAutoresizingMaskIntoConstraints(false);
    constrainLeftRightWithinView(*subview, *container, 25);
    addEqualConstraintToSelfForItem(*container, subview, LayoutAttribute::Top, 0);
    addAspectRatioConstraint(*subview, 0.25);
    EXPECT_EQ(held(), (std::vector<std::string>{"s.1 0 c.1 *1 +25 @1000", "s.2 0 c.2 *1 +-25 @1000",
                                                "s.3 0 c.3 *1 +0 @1000"}));
    container->layoutSubtreeIfNeeded();
    EXPECT_EQ(subview->frame(), Rect(25, 62.5, 150, 37.5));
}

TEST(NSViewUtilityGroups, EqualWidthsAndHeightsChainNeighboursAtPriority750) {
    auto container = ns::View::make();
    auto a = ns::View::make(), b = ns::View::make(), c = ns::View::make();
    std::map<const ns::View*, std::string> names{{a.get(), "a"}, {b.get(), "b"}, {c.get(), "c"}};
    qs_constrainSubviewsToEqualWidths(*container, {a, b, c});
    qs_constrainSubviewsToEqualHeights(*container, {a, b});
    EXPECT_EQ(
        describeAll(container->constraints(), names),
        (std::vector<std::string>{"a.7 0 b.7 *1 +0 @750", "b.7 0 c.7 *1 +0 @750", "a.8 0 b.8 *1 +0 @750"}));

    qs_constrainSubviewsToEqualWidths(*container, {a});
    qs_constrainSubviewsToEqualHeights(*container, {});
    EXPECT_EQ(container->constraints().size(), 3u);
}

TEST(NSViewUtilityGroups, WidestSubviewWinsByFrameAndTheFirstOfEqualsIsKept) {
    auto container = ns::View::make();
    auto a = ns::View::make({0, 0, 50, 10}), b = ns::View::make({0, 0, 80, 10}),
         c = ns::View::make({0, 0, 80, 10});
    std::map<const ns::View*, std::string> names{{a.get(), "a"}, {b.get(), "b"}, {c.get(), "c"}};
    constrainSubviewsToWidthOfWidestSubview(*container, {a, b, c});
    EXPECT_EQ(describeAll(container->constraints(), names),
              (std::vector<std::string>{"a.7 0 b.7 *1 +0 @1000", "c.7 0 b.7 *1 +0 @1000"}));

    constrainSubviewsToWidthOfWidestSubview(*container, {});
    EXPECT_EQ(container->constraints().size(), 2u);
}

TEST(NSViewUtilityLabels, MessagesOfEveryKindBecomeUneditableLabels) {
    auto container = ns::View::make({0, 0, 300, 100});
    auto number =
        qs_addSubviewWithMessage(*container, ns::Value(42), QSConstraintFlagTop | QSConstraintFlagLeft, {});
    EXPECT_EQ(number->stringValue(), "42");
    EXPECT_FALSE(number->isEditable());
    EXPECT_FALSE(number->drawsBackground());
    EXPECT_EQ(number->superview(), container);
    EXPECT_EQ(container->constraints().size(), 2u);

    auto text = qs_addSubviewWithMessage(*container, ns::Value("Net pay"), 0, {});
    EXPECT_EQ(text->stringValue(), "Net pay");
    auto attributed =
        qs_addSubviewWithMessage(*container, ns::Value(ns::AttributedString::make("Gross", {})), 0, {});
    EXPECT_EQ(attributed->stringValue(), "Gross");
}

TEST(NSViewUtilityLabels, BezeledOnlyChangesTheFittedSize) {
    auto container = ns::View::make({0, 0, 300, 100});
    auto plain = qs_addSubviewWithMessage(*container, ns::Value("Tax"), QSConstraintFlagFixedHeight,
                                          {{"bezeled", false}});
    auto bezeled = qs_addSubviewWithMessage(*container, ns::Value("Tax"), QSConstraintFlagFixedHeight,
                                            {{"bezeled", true}, {"alignment", int64_t(2)}});
    EXPECT_FALSE(bezeled->isBezeled());
    EXPECT_GT(bezeled->frame().height(), plain->frame().height());
    EXPECT_EQ(bezeled->constraints().back()->constant(), bezeled->frame().height());
    EXPECT_EQ(bezeled->alignment(), ns::TextAlignment::Center);
}

TEST(NSViewUtilityLabels, TheLabelClassOptionIsHonouredOrReplacedWithANote) {
    class PayslipLabel : public ns::TextField {
    public:
        using ns::TextField::TextField;
        static ns::Ref<PayslipLabel> make() { return ns::create<PayslipLabel>(); }
    };
    auto container = ns::View::make();
    auto label = qs_addSubviewWithMessage(*container, ns::Value("a"), 0,
                                          {{"textFieldClass", ns::classOf<PayslipLabel>()}});
    EXPECT_TRUE(ns::isKind<PayslipLabel>(label));

    ns::LogCapture capture;
    auto fallback = qs_addSubviewWithMessage(*container, ns::Value("b"), 0,
                                             {{"textFieldClass", ns::classOf<ns::View>()}});
    ASSERT_TRUE(fallback);
    EXPECT_EQ(fallback->stringValue(), "b");
    EXPECT_TRUE(capture.contains("does not make text fields"));
}

TEST(NSViewUtilityFinding, EnclosingViewLooksOnlyAtAncestors) {
    auto outer = ns::create<FlippedView>(Rect{});
    auto middle = ns::View::make();
    auto inner = ns::create<FlippedView>(Rect{});
    outer->addSubview(middle);
    middle->addSubview(inner);
    EXPECT_EQ(qs_enclosingView(*inner, ns::classOf<FlippedView>()), outer);
    EXPECT_EQ(qs_enclosingView(*inner, ns::classOf<ns::View>()), middle);
    EXPECT_EQ(qs_enclosingView(*outer, ns::classOf<FlippedView>()), nullptr);
    EXPECT_EQ(qs_enclosingView(*inner, nullptr), nullptr);
}

TEST(NSViewUtilityAppearance, AViewIsDarkByItsEffectiveAppearance) {
    ApplicationAppearanceScope light(ns::AppearanceNameAqua);
    auto window = ns::View::make();
    auto view = ns::View::make();
    window->addSubview(view);
    EXPECT_FALSE(cv_isDarkMode(*view));
    window->setAppearance(darkAqua());
    EXPECT_TRUE(cv_isDarkMode(*view));
    view->setAppearance(aqua());
    EXPECT_FALSE(cv_isDarkMode(*view));
    view->setAppearance(darkAqua());
    PlatformVersionScope mojaveLess({10, 13, 6});
    EXPECT_FALSE(cv_isDarkMode(*view));
}
