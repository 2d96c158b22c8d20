#include "platform/views/StackView.hpp"

#include <gtest/gtest.h>

using ns::Rect;
using ns::StackViewGravity;

namespace {

class Box : public ns::View {
public:
    Box(double width, double height) : m_size{width, height} {}
    ns::Size intrinsicContentSize() const override { return m_size; }

private:
    ns::Size m_size;
};

ns::Ref<ns::View> box(double width, double height) {
    return ns::create<Box>(width, height);
}

// A stack filling a 200 x 300 root, so its own frame is decided by the test.
ns::Ref<ns::StackView> stackIn(const ns::Ref<ns::View>& root,
                               ns::UserInterfaceLayoutOrientation orientation) {
    auto stack = ns::StackView::make();
    stack->setOrientation(orientation);
    root->addSubview(stack);
    stack->setFrame(root->bounds());
    return stack;
}

} // namespace

TEST(StackView, VerticalGravitiesWithInsetsAndCustomSpacing) {
    auto root = ns::View::make({0, 0, 200, 300});
    auto stack = stackIn(root, ns::UserInterfaceLayoutOrientation::Vertical);
    auto top1 = box(50, 20), top2 = box(80, 10), middle = box(60, 40), bottom = box(100, 30);
    stack->setViews({top1, top2}, StackViewGravity::Top);
    stack->addView(middle, StackViewGravity::Center);
    stack->addView(bottom, StackViewGravity::Bottom);
    stack->setEdgeInsets({5, 10, 15, 20});
    stack->setCustomSpacing(2, top1);
    root->layoutSubtreeIfNeeded();
    // unflipped stack: the top area starts 5 below the top edge (y = 300 - 5 - height)
    EXPECT_EQ(top1->frame(), Rect(70, 275, 50, 20)); // centred in x between the insets: 10 + (170 - 50) / 2
    EXPECT_EQ(top2->frame(), Rect(55, 263, 80, 10)); // 2 below top1
    EXPECT_EQ(bottom->frame(), Rect(45, 15, 100, 30));
    // the centre area is centred between the insets: (5 + 300 - 15) / 2 = 145 from the top
    EXPECT_EQ(middle->frame(), Rect(65, 135, 60, 40));
}

TEST(StackView, HorizontalRowAlignedTopHugsItsContentWhenFree) {
    auto root = ns::View::make({0, 0, 400, 100});
    auto stack = ns::StackView::make();
    stack->setTranslatesAutoresizingMaskIntoConstraints(false);
    root->addSubview(stack);
    root->addConstraints(
        ns::LayoutConstraint::constraintsWithVisualFormat("H:|-[stack]", 0, {}, {{"stack", stack}}));
    root->addConstraints(
        ns::LayoutConstraint::constraintsWithVisualFormat("V:|-[stack]", 0, {}, {{"stack", stack}}));
    auto a = box(30, 10), b = box(40, 25);
    stack->setViews({a, b}, StackViewGravity::Leading);
    stack->setAlignment(ns::LayoutAttribute::Top);
    stack->setSpacing(6);
    root->layoutSubtreeIfNeeded();
    EXPECT_EQ(stack->frame(), Rect(20, 55, 76, 25));
    EXPECT_EQ(a->frame(), Rect(0, 15, 30, 10)); // aligned to the top of the row
    EXPECT_EQ(b->frame(), Rect(36, 0, 40, 25));
    EXPECT_EQ(stack->fittingSize(), (ns::Size{76, 25}));
}

TEST(StackView, MembershipKeepsOneGravityPerViewAndSnapshots) {
    auto stack = ns::StackView::make();
    auto a = box(1, 1), b = box(1, 1), c = box(1, 1);
    stack->setViews({a, b}, StackViewGravity::Top);
    auto snapshot = stack->viewsInGravity(StackViewGravity::Top);
    stack->insertView(c, 0, StackViewGravity::Top);
    stack->addView(a, StackViewGravity::Bottom); // moves a
    EXPECT_EQ(snapshot.size(), 2u);
    EXPECT_EQ(stack->viewsInGravity(StackViewGravity::Top), (std::vector<ns::Ref<ns::View>>{c, b}));
    EXPECT_EQ(stack->views(), (std::vector<ns::Ref<ns::View>>{c, b, a}));
    EXPECT_EQ(a->superview(), stack);
    EXPECT_FALSE(a->translatesAutoresizingMaskIntoConstraints());
    stack->setViews({c}, StackViewGravity::Top); // b leaves the stack
    EXPECT_EQ(b->superview(), nullptr);
    stack->removeView(b); // not held: ignored
    stack->removeView(a);
    EXPECT_EQ(a->superview(), nullptr);
    EXPECT_EQ(stack->customSpacingAfterView(c), ns::StackViewSpacingUseDefault);
    EXPECT_TRUE(stack->viewsInGravity(static_cast<StackViewGravity>(7)).empty());
}

TEST(StackView, FactoryMakesTheClassItIsAskedFor) {
    class Counting : public ns::StackView {
    public:
        static ns::Ref<Counting> make(Rect frame) { return ns::create<Counting>(frame); }
        using StackView::StackView;
        void setViews(const std::vector<ns::Ref<ns::View>>& views, StackViewGravity gravity) override {
            ++calls;
            StackView::setViews(views, gravity);
        }
        int calls = 0;
    };
    auto stack = ns::StackView::stackViewWithViews<Counting>({box(1, 1)});
    EXPECT_EQ(stack->calls, 1);
    EXPECT_EQ(stack->views().size(), 1u);
}
