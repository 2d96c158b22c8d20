#include "platform/foundation/Log.hpp"
#include "platform/layout/LayoutConstraint.hpp"
#include "platform/views/View.hpp"

#include <gtest/gtest.h>

using ns::LayoutAttribute;
using ns::LayoutRelation;
using ns::Rect;

namespace {

// A view that is always flipped, to check that frames follow the superview's flipping.
class FlippedView : public ns::View {
public:
    using View::View;
    bool isFlipped() const override { return true; }
};

// A view with a fixed intrinsic size.
class Sized : public ns::View {
public:
    Sized(double width, double height) : m_size{width, height} {}
    ns::Size intrinsicContentSize() const override { return m_size; }
    void setSize(ns::Size size) {
        m_size = size;
        invalidateIntrinsicContentSize();
    }

private:
    ns::Size m_size;
};

ns::Ref<ns::View> constrainedView() {
    auto view = ns::View::make();
    view->setTranslatesAutoresizingMaskIntoConstraints(false);
    return view;
}

void add(const ns::Ref<ns::View>& holder, const char* format, ns::Dictionary views,
         ns::Dictionary metrics = {}) {
    holder->addConstraints(ns::LayoutConstraint::constraintsWithVisualFormat(format, 0, metrics, views));
}

ns::Ref<ns::LayoutConstraint> equal(const ns::Ref<ns::View>& a, LayoutAttribute attribute, double constant,
                                    float priority = 1000) {
    auto constraint = ns::LayoutConstraint::constraintWithItem(a, attribute, LayoutRelation::Equal, nullptr,
                                                               LayoutAttribute::NotAnAttribute, 1, constant);
    constraint->setPriority(priority);
    return constraint;
}

} // namespace

TEST(ConstraintLayout, ChainOfViewsInUnflippedAndFlippedSuperviews) {
    for (bool flipped : {false, true}) {
        SCOPED_TRACE(flipped ? "flipped" : "unflipped");
        ns::Ref<ns::View> root =
            flipped ? ns::create<FlippedView>(Rect(0, 0, 300, 100)) : ns::View::make({0, 0, 300, 100});
        auto a = constrainedView(), b = constrainedView(), c = constrainedView();
        for (auto& v : {a, b, c})
            root->addSubview(v);
        add(root, "H:|-10-[a(50)]-[b(==a)]-5-[c]-20-|", {{"a", a}, {"b", b}, {"c", c}});
        add(root, "V:|-10-[a(30)]", {{"a", a}});
        add(root, "V:|-10-[b(30)]", {{"b", b}});
        add(root, "V:|-10-[c]-10-|", {{"c", c}});
        root->layoutSubtreeIfNeeded();
        double aY = flipped ? 10 : 60; // 10 from the top edge
        EXPECT_EQ(a->frame(), Rect(10, aY, 50, 30));
        EXPECT_EQ(b->frame(), Rect(68, aY, 50, 30));
        EXPECT_EQ(c->frame(), Rect(123, 10, 157, 80));
    }
}

TEST(ConstraintLayout, HigherPriorityWinsRequiredStaysRemovalRestores) {
    auto root = ns::View::make({0, 0, 400, 400});
    auto box = constrainedView();
    root->addSubview(box);
    add(root, "H:|[box]", {{"box", box}});
    add(root, "V:|[box]", {{"box", box}});
    box->addConstraint(equal(box, LayoutAttribute::Height, 10));
    auto weak = equal(box, LayoutAttribute::Width, 100, 250);
    auto strong = equal(box, LayoutAttribute::Width, 200, 251);
    box->addConstraints({weak, strong});
    root->layoutSubtreeIfNeeded();
    EXPECT_EQ(box->frame().width(), 200);

    // a required maximum beats both preferences
    auto cap =
        ns::LayoutConstraint::constraintWithItem(box, LayoutAttribute::Width, LayoutRelation::LessThanOrEqual,
                                                 nullptr, LayoutAttribute::NotAnAttribute, 1, 150);
    box->addConstraint(cap);
    root->layoutSubtreeIfNeeded();
    EXPECT_EQ(box->frame().width(), 150);

    // a contradicting required constraint is left out, with a log line, and changes nothing
    ns::LogCapture capture;
    auto contradiction = equal(box, LayoutAttribute::Width, 300);
    box->addConstraint(contradiction);
    root->layoutSubtreeIfNeeded();
    EXPECT_EQ(box->frame().width(), 150);
    EXPECT_TRUE(capture.contains("Unable to simultaneously satisfy constraints"));

    box->removeConstraints({cap, contradiction});
    root->layoutSubtreeIfNeeded();
    EXPECT_EQ(box->frame().width(), 200);
    box->removeConstraint(strong);
    root->layoutSubtreeIfNeeded();
    EXPECT_EQ(box->frame().width(), 100);
    box->removeConstraint(strong); // not held any more: ignored
}

TEST(ConstraintLayout, ConstantChangesAndIntrinsicSizes) {
    auto root = ns::View::make({0, 0, 400, 200});
    auto label = ns::create<Sized>(80, 20);
    label->setTranslatesAutoresizingMaskIntoConstraints(false);
    root->addSubview(label);
    auto left = ns::LayoutConstraint::constraintWithItem(label, LayoutAttribute::Left, LayoutRelation::Equal,
                                                         root, LayoutAttribute::Left, 1, 8);
    root->addConstraint(left);
    add(root, "V:|-4-[label]", {{"label", label}});
    root->layoutSubtreeIfNeeded();
    EXPECT_EQ(label->frame(), Rect(8, 176, 80, 20));

    left->setConstant(30);
    label->setSize({120, 24});
    root->layoutSubtreeIfNeeded();
    EXPECT_EQ(label->frame(), Rect(30, 172, 120, 24));

    // compression resistance (750) gives way to a required maximum; hugging (250) to a stronger pull
    auto narrow = ns::LayoutConstraint::constraintWithItem(label, LayoutAttribute::Width,
                                                           LayoutRelation::LessThanOrEqual, nullptr,
                                                           LayoutAttribute::NotAnAttribute, 1, 60);
    label->addConstraint(narrow);
    root->layoutSubtreeIfNeeded();
    EXPECT_EQ(label->frame().width(), 60);
    label->removeConstraint(narrow);
    label->addConstraint(equal(label, LayoutAttribute::Width, 200, 300));
    root->layoutSubtreeIfNeeded();
    EXPECT_EQ(label->frame().width(), 200);
}

TEST(ConstraintLayout, FittingSizeOfNestedContent) {
    auto panel = constrainedView();
    auto a = ns::create<Sized>(100, 20), b = ns::create<Sized>(60, 30);
    for (auto& v : {a, b}) {
        v->setTranslatesAutoresizingMaskIntoConstraints(false);
        panel->addSubview(v);
    }
    add(panel, "H:|-10-[a]-(>=10)-|", {{"a", a}});
    add(panel, "H:|-10-[b]-(>=10)-|", {{"b", b}});
    add(panel, "V:|-5-[a]-8-[b]-5-|", {{"a", a}, {"b", b}});
    EXPECT_EQ(panel->fittingSize(), (ns::Size{120, 68}));
    EXPECT_EQ(a->fittingSize(), (ns::Size{100, 20}));
    EXPECT_EQ(ns::View::make()->fittingSize(), (ns::Size{0, 0}));
}

TEST(ConstraintLayout, FramesOfTranslatingViewsAreKeptAndFollowedByOthers) {
    auto root = ns::View::make({0, 0, 200, 100});
    auto fixed = ns::View::make({20, 30, 40, 10}); // translates its frame
    auto follower = constrainedView();
    root->addSubview(fixed);
    root->addSubview(follower);
    add(root, "H:[fixed]-4-[follower(10)]", {{"fixed", fixed}, {"follower", follower}});
    root->addConstraint(ns::LayoutConstraint::constraintWithItem(
        follower, LayoutAttribute::Top, LayoutRelation::Equal, fixed, LayoutAttribute::Top, 1, 0));
    root->addConstraint(equal(follower, LayoutAttribute::Height, 5));
    root->layoutSubtreeIfNeeded();
    EXPECT_EQ(fixed->frame(), Rect(20, 30, 40, 10));
    EXPECT_EQ(follower->frame(), Rect(64, 35, 10, 5));
    fixed->setFrame({50, 0, 40, 10});
    root->layoutSubtreeIfNeeded();
    EXPECT_EQ(follower->frame(), Rect(94, 5, 10, 5));
}

TEST(ConstraintLayout, ConstraintsOfRemovedViewsLeaveTheLayout) {
    auto root = ns::View::make({0, 0, 200, 100});
    auto box = constrainedView();
    root->addSubview(box);
    add(root, "H:|-10-[box(50)]", {{"box", box}});
    add(root, "V:|-10-[box(20)]", {{"box", box}});
    root->layoutSubtreeIfNeeded();
    EXPECT_EQ(box->frame(), Rect(10, 70, 50, 20));
    {
        auto other = constrainedView();
        root->addSubview(other);
        add(root, "H:[box]-[other(==box)]", {{"box", box}, {"other", other}});
        root->layoutSubtreeIfNeeded();
        other->removeFromSuperview();
    }
    // the constraint to the vanished view is still held by the root but no longer counts
    root->layoutSubtreeIfNeeded();
    EXPECT_EQ(box->frame(), Rect(10, 70, 50, 20));
    EXPECT_EQ(box->constraintsAffectingLayoutForOrientation(ns::LayoutConstraintOrientation::Vertical).size(),
              2u);
}
