#include "kit/Views/QSStackView.hpp"

#include "kit/Views/QSClipView.hpp"
#include "platform/foundation/Log.hpp"
#include "platform/graphics/Color.hpp"
#include "platform/views/Layer.hpp"
#include "platform/views/ScrollView.hpp"

#include <gtest/gtest.h>

using corvane::QSStackView;
using ns::StackViewGravity;
using Views = QSStackView::ViewList;

namespace {

constexpr auto Top = StackViewGravity::Top;
constexpr auto Center = StackViewGravity::Center;
constexpr auto Bottom = StackViewGravity::Bottom;

// A view of a fixed size, so that fitting sizes are known.
ns::Ref<ns::View> box(double width, double height) {
    auto view = ns::View::make();
    using A = ns::LayoutAttribute;
    view->addConstraint(ns::LayoutConstraint::constraintWithItem(view, A::Width, ns::LayoutRelation::Equal,
                                                                 nullptr, A::NotAnAttribute, 1, width));
    view->addConstraint(ns::LayoutConstraint::constraintWithItem(view, A::Height, ns::LayoutRelation::Equal,
                                                                 nullptr, A::NotAnAttribute, 1, height));
    return view;
}

ns::Ref<ns::View> hiddenBox() {
    auto view = box(10, 10);
    view->setHidden(true);
    return view;
}

// Records callbacks as "+name" (shown) and "-name" (hidden).
struct Recorder {
    std::vector<std::string> calls;
    std::map<const ns::View*, std::string> names;

    void attach(QSStackView& stack) {
        stack.setOnBoundViewVisible(
            [this](QSStackView&, const ns::Ref<ns::View>& v) { calls.push_back("+" + names[v.get()]); });
        stack.setOnBoundViewHidden(
            [this](QSStackView&, const ns::Ref<ns::View>& v) { calls.push_back("-" + names[v.get()]); });
    }
};

class QSStackViewTest : public ::testing::Test {
protected:
    void SetUp() override {
        stack = QSStackView::make();
        a = box(10, 30);
        b = box(10, 40);
        c = box(10, 50);
        rec.names = {{a.get(), "a"}, {b.get(), "b"}, {c.get(), "c"}};
        rec.attach(*stack);
    }
    ns::Ref<QSStackView> stack;
    ns::Ref<ns::View> a, b, c;
    Recorder rec;
};

bool observedByAnyStack(const ns::View& view) {
    return view.observationCount() != 0;
}

} // namespace

// --- Visibility ---------------------------------------------------------------------------------

TEST_F(QSStackViewTest, HidingAndShowingInApplyingModeRebuildsAtOnceAndCallsBack) {
    stack->setViews({a, b, c}, Center);
    b->setHidden(true);
    EXPECT_EQ(stack->viewsInGravity(Center), (Views{a, c}));
    EXPECT_EQ(*stack->observedViewsInGravity(Center), (Views{a, b, c}));
    EXPECT_EQ(stack->gravityForView(b), corvane::QSGravityNotFound);
    EXPECT_EQ(stack->gravityForObservedView(b), Center);
    b->setHidden(false);
    EXPECT_EQ(stack->viewsInGravity(Center), (Views{a, b, c}));
    EXPECT_EQ(rec.calls, (std::vector<std::string>{"-b", "+b"}));
    EXPECT_TRUE(stack->pendingHiddenViews().empty());
    EXPECT_TRUE(stack->pendingVisibleViews().empty());
}

TEST_F(QSStackViewTest, SettingTheSameFlagRecordsNothing) {
    stack->setViews({a, b}, Top);
    a->setHidden(false);
    EXPECT_TRUE(rec.calls.empty());
    EXPECT_EQ(stack->viewsInGravity(Top), (Views{a, b}));
}

TEST_F(QSStackViewTest, SuspendedChangesWaitAndAreAppliedInObservedOrderAtResume) {
    stack->setViews({a, b, c}, Center);
    stack->suspendAutoLayoutWhenSubviewVisibilityChanges();
    stack->suspendAutoLayoutWhenSubviewVisibilityChanges(); // a flag, not a counter
    stack->hideViews({c, a, b});
    EXPECT_EQ(stack->viewsInGravity(Center), (Views{a, b, c}));
    EXPECT_EQ(stack->pendingHiddenViews(), (Views{c, a, b}));
    EXPECT_TRUE(rec.calls.empty());
    stack->resumeAutoLayoutWhenSubviewVisibilityChanges();
    EXPECT_TRUE(stack->viewsInGravity(Center).empty());
    EXPECT_EQ(rec.calls, (std::vector<std::string>{"-a", "-b", "-c"}));
    EXPECT_TRUE(stack->pendingHiddenViews().empty());
    EXPECT_TRUE(stack->viewsInGravity(Bottom).empty());
}

TEST_F(QSStackViewTest, HiddenAndShownWhileSuspendedGivesOneShowAndLeavesTheHideRecorded) {
    stack->setViews({a, b}, Top);
    stack->suspendAutoLayoutWhenSubviewVisibilityChanges();
    a->setHidden(true);
    a->setHidden(false);
    EXPECT_EQ(stack->pendingHiddenViews(), (Views{a}));
    EXPECT_EQ(stack->pendingVisibleViews(), (Views{a}));
    stack->resumeAutoLayoutWhenSubviewVisibilityChanges();
    EXPECT_EQ(rec.calls, (std::vector<std::string>{"+a"}));
    // The hide no longer agrees with the view, so it waits.
    EXPECT_EQ(stack->pendingHiddenViews(), (Views{a}));
    EXPECT_EQ(stack->viewsInGravity(Top), (Views{a, b}));
}

TEST_F(QSStackViewTest, PendingListsEmptyWithoutCallbacks) {
    stack->setOnBoundViewHidden(nullptr);
    stack->setViews({a}, Top);
    stack->suspendAutoLayoutWhenSubviewVisibilityChanges();
    a->setHidden(true);
    stack->resumeAutoLayoutWhenSubviewVisibilityChanges();
    EXPECT_TRUE(stack->pendingHiddenViews().empty());
}

TEST_F(QSStackViewTest, ShowInGravityActsOnPlacedViewsOnly) {
    stack->setViews({a, b}, Top);
    b->setHidden(true);
    stack->showViewsInGravity(Top);
    EXPECT_TRUE(b->isHidden());
    stack->showViews(*stack->observedViewsInGravity(Top));
    EXPECT_FALSE(b->isHidden());
    stack->hideViewsInGravity(Top);
    EXPECT_TRUE(stack->viewsInGravity(Top).empty());
}

TEST_F(QSStackViewTest, ListsAndLookups) {
    EXPECT_EQ(stack->observedViewsInGravity(Bottom), nullptr);
    EXPECT_TRUE(stack->allViews().empty());
    stack->setObservedViews({a}, Top);
    stack->setObservedViews({a, b}, Bottom);
    EXPECT_EQ(stack->gravityForObservedView(a), Top); // the lower gravity wins
    EXPECT_EQ(stack->allViews(), (Views{a, a, b}));
    EXPECT_EQ(stack->gravityForObservedView(c), corvane::QSGravityNotFound);
}

TEST(QSStackViewClass, AwakeCallbackRunsForEveryNewStackAfterSetUp) {
    int awakened = 0;
    bool layered = false;
    QSStackView::setAwakeBlock([&](QSStackView& stack) {
        ++awakened;
        layered = stack.wantsLayer();
    });
    auto one = QSStackView::make();
    auto two = QSStackView::stackViewWithViews(ns::Array{});
    QSStackView::setAwakeBlock(nullptr);
    EXPECT_EQ(awakened, 2);
    EXPECT_TRUE(layered);
    EXPECT_TRUE(one->doLayout());
}

// --- Observation lifetime -----------------------------------------------------------------------

TEST(QSStackViewLifetime, NoObservationOutlivesTheStack) {
    auto kept = box(10, 10);
    auto hidden = hiddenBox();
    auto removed = box(10, 10);
    {
        auto stack = QSStackView::make();
        stack->setViews({kept, hidden}, Top);
        stack->addView(removed, Bottom);
        EXPECT_TRUE(kept->isObservedBy(*stack, "hidden", &corvane::CVContextHidden));
        stack->removeView(removed);
        EXPECT_FALSE(observedByAnyStack(*removed));
        stack->setViews({kept}, Top); // hidden leaves the observed list
        EXPECT_FALSE(observedByAnyStack(*hidden));
    }
    EXPECT_FALSE(observedByAnyStack(*kept));
    kept->setHidden(true);
    kept->setHidden(false);
}

TEST(QSStackViewLifetime, CommittingTwiceMovesTheViewAndKeepsOneObservation) {
    auto stack = QSStackView::make();
    auto view = box(10, 10);
    stack->addView(view, Top);
    stack->addView(view, Bottom);
    EXPECT_EQ(*stack->observedViewsInGravity(Top), Views{});
    EXPECT_EQ(*stack->observedViewsInGravity(Bottom), Views{view});
    EXPECT_EQ(view->observationCount(), 1u);
    stack->removeView(view);
    EXPECT_EQ(view->observationCount(), 0u);
    view->setHidden(true);
}

TEST(QSStackViewLifetime, AnObservedViewInNoListChangesWithoutHarm) {
    auto stack = QSStackView::make();
    auto view = box(10, 10);
    stack->addViewObservation(view);
    view->setHidden(true);
    EXPECT_EQ(stack->pendingHiddenViews(), Views{view});
    EXPECT_TRUE(stack->views().empty());
    stack->removeViewObservation(view);
    stack->removeViewObservation(view); // absent: tolerated
}

// --- Membership ---------------------------------------------------------------------------------

TEST_F(QSStackViewTest, HiddenViewsAreObservedButNotPlacedAndShowUpInTheirPlace) {
    auto h = hiddenBox();
    stack->addView(a, Top);
    stack->addView(h, Top);
    stack->addView(b, Top);
    EXPECT_EQ(*stack->observedViewsInGravity(Top), (Views{a, h, b}));
    EXPECT_EQ(stack->viewsInGravity(Top), (Views{a, b}));
    EXPECT_TRUE(h->isObservedBy(*stack, "hidden", &corvane::CVContextHidden));
    EXPECT_FALSE(h->translatesAutoresizingMaskIntoConstraints());
    h->setHidden(false);
    EXPECT_EQ(stack->viewsInGravity(Top), (Views{a, h, b}));
}

TEST_F(QSStackViewTest, InsertionCountsVisibleViewsAndKeepsHiddenOnesInFront) {
    b->setHidden(true);
    auto d = box(10, 10);
    struct Case {
        Views before;
        size_t index; // among the visible views
        Views after;
    };
    for (const Case& test : {Case{{a, b, c}, 1, {a, b, d, c}}, Case{{a, b, c}, 0, {d, a, b, c}},
                             Case{{a, b, c}, 5, {a, b, c, d}}, Case{{b, a}, 0, {b, d, a}}}) {
        auto s = QSStackView::make();
        s->setViews(test.before, Top);
        s->insertView(d, test.index, Top);
        EXPECT_EQ(*s->observedViewsInGravity(Top), test.after) << test.index;
        Views visible = test.after;
        std::erase(visible, b);
        EXPECT_EQ(s->viewsInGravity(Top), visible) << test.index;
    }
}

TEST_F(QSStackViewTest, RemovingViews) {
    b->setHidden(true);
    stack->setViews({a, b, c}, Top);
    stack->removeView(b); // hidden: out of the observed list only
    EXPECT_EQ(*stack->observedViewsInGravity(Top), (Views{a, c}));
    EXPECT_EQ(b->observationCount(), 0u);
    stack->removeView(a);
    EXPECT_EQ(stack->viewsInGravity(Top), (Views{c}));
    {
        ns::LogCapture log;
        stack->removeView(box(1, 1));
        EXPECT_EQ(log.messages(), std::vector<std::string>{"View not found in stack."});
    }
    stack->addView(a, Center);
    stack->removeAllViews();
    EXPECT_TRUE(stack->views().empty());
    EXPECT_TRUE(stack->allViews().empty());
    EXPECT_EQ(a->observationCount() + c->observationCount(), 0u);
}

TEST_F(QSStackViewTest, FlatteningNestedListsSkipsAndLogsOtherItems) {
    ns::LogCapture log;
    auto flat = QSStackView::flattenViews(ns::Array{a, ns::Array{b, ns::Array{c}}, "a string"});
    EXPECT_EQ(flat, (Views{a, b, c}));
    EXPECT_EQ(log.messages(), std::vector<std::string>{"Cannot flatten this : a string"});
}

TEST_F(QSStackViewTest, ClassConstructorsFillTheRequestedGravity) {
    auto bottom = QSStackView::stackViewWithViews(ns::Array{a, ns::Array{b, c}}, Bottom);
    EXPECT_EQ(bottom->viewsInGravity(Bottom), (Views{a, b, c}));
    EXPECT_EQ(*bottom->observedViewsInGravity(Bottom), (Views{a, b, c}));
    EXPECT_TRUE(bottom->viewsInGravity(Top).empty());
    EXPECT_TRUE(bottom->viewsInGravity(Center).empty());

    auto d = box(1, 1);
    d->setHidden(true);
    auto top = QSStackView::stackViewWithViews(ns::Array{d, ns::Array{a}});
    EXPECT_EQ(*top->observedViewsInGravity(Top), (Views{d, a}));
    EXPECT_EQ(top->viewsInGravity(Top), (Views{a}));
    EXPECT_TRUE(d->isObservedBy(*top, "hidden", &corvane::CVContextHidden));
}

// --- Content size -------------------------------------------------------------------------------

class QSStackViewSizeTest : public QSStackViewTest {
protected:
    void SetUp() override {
        QSStackViewTest::SetUp();
        stack->setOrientation(ns::UserInterfaceLayoutOrientation::Vertical);
        stack->setEdgeInsets({10, 3, 20, 4});
        stack->setSpacing(8);
        stack->setViews({a, b}, Top);
    }
};

TEST_F(QSStackViewSizeTest, IntrinsicSizeFollowsTheOptionsAndTheVisibleViews) {
    EXPECT_EQ(stack->intrinsicContentSize(),
              (ns::Size{ns::ViewNoInstrinsicMetric, ns::ViewNoInstrinsicMetric}));
    stack->setIntrinsicContentSizeOptions(corvane::QSStackViewContentSizeHeight);
    EXPECT_EQ(stack->intrinsicContentSize(), (ns::Size{ns::ViewNoInstrinsicMetric, 108}));
    stack->setCustomSpacing(2, a);
    stack->setCustomSpacing(50, b); // after the last view: not counted
    EXPECT_DOUBLE_EQ(stack->intrinsicContentSize().height, 102);
    b->setHidden(true);
    EXPECT_DOUBLE_EQ(stack->intrinsicContentSize().height, 60);
    stack->setIntrinsicContentSizeOptions(corvane::QSStackViewContentSizeWidth | 4);
    EXPECT_EQ(stack->intrinsicContentSize(), (ns::Size{3 + 4 + 10, ns::ViewNoInstrinsicMetric}));
    stack->removeAllViews();
    EXPECT_DOUBLE_EQ(stack->intrinsicContentSize().width, 7);
}

TEST_F(QSStackViewSizeTest, AutoHeightConstraintFollowsTheLastVisibleView) {
    auto holds = [&](const ns::Ref<ns::LayoutConstraint>& constraint) {
        const auto& all = stack->constraints();
        return std::count(all.begin(), all.end(), constraint);
    };
    stack->setAutoContentSizeOptions(corvane::QSStackViewContentSizeHeight);
    auto first = stack->autoContentHeightConstraint();
    ASSERT_TRUE(first);
    EXPECT_EQ(first->firstItem(), b);
    EXPECT_EQ(first->firstAttribute(), ns::LayoutAttribute::Bottom);
    EXPECT_EQ(first->secondItem(), stack);
    EXPECT_EQ(holds(first), 1);
    EXPECT_EQ(stack->autoContentWidthConstraint(), nullptr);

    b->setHidden(true);
    auto second = stack->autoContentHeightConstraint();
    EXPECT_EQ(second->firstItem(), a);
    EXPECT_EQ(holds(first), 0);
    EXPECT_EQ(holds(second), 1);

    a->setHidden(true);
    EXPECT_EQ(holds(second), 0);
    for (const auto& constraint : stack->constraints()) {
        bool tiesContent = constraint->secondItem() == stack &&
                           (constraint->firstItem() == a || constraint->firstItem() == b);
        EXPECT_FALSE(tiesContent) << "no content constraint stands when every view is hidden";
    }

    stack->setAutoContentSizeOptions(corvane::QSStackViewContentSizeWidth);
    a->setHidden(false);
    ASSERT_TRUE(stack->autoContentWidthConstraint());
    EXPECT_EQ(stack->autoContentWidthConstraint()->firstAttribute(), ns::LayoutAttribute::Right);
    EXPECT_EQ(holds(stack->autoContentHeightConstraint()), 0);
}

TEST_F(QSStackViewSizeTest, ScrollContainerIsBuiltOnceAndPinsTheCrossAxis) {
    int awakened = 0;
    QSStackView::setScrollViewContainerAwakeBlock([&](ns::ScrollView&) { ++awakened; });
    auto scroll = stack->scrollViewContainer();
    auto again = stack->scrollViewContainer();
    QSStackView::setScrollViewContainerAwakeBlock(nullptr);
    EXPECT_EQ(scroll, again);
    EXPECT_EQ(awakened, 1);
    EXPECT_TRUE(stack->scrollViewAllocated());
    EXPECT_TRUE(scroll->contentView()->isFlipped());
    EXPECT_TRUE(ns::isKind<corvane::QSClipView>(scroll->contentView()));
    ASSERT_EQ(stack->stackViewConstraints().size(), 2u);
    for (const auto& constraint : stack->stackViewConstraints()) {
        auto attribute = constraint->firstAttribute();
        EXPECT_TRUE(attribute == ns::LayoutAttribute::Leading || attribute == ns::LayoutAttribute::Trailing ||
                    attribute == ns::LayoutAttribute::Left || attribute == ns::LayoutAttribute::Right);
    }
    stack->removeFromSuperview();
    EXPECT_EQ(stack->scrollViewContainer(), nullptr);
}

TEST(QSStackViewBackground, TheColourReachesTheLayerAtItsUpdate) {
    auto stack = QSStackView::make({{0, 0}, {20, 20}});
    auto color = ns::Color::colorWithSRGBRed(1, 0, 0, 1);
    stack->setBackgroundColor(color);
    EXPECT_EQ(stack->layer()->backgroundColor(), nullptr);
    stack->updateLayer();
    ASSERT_TRUE(stack->layer()->backgroundColor());
    EXPECT_EQ(stack->layer()->backgroundColor()->components(), color->CGColor()->components());
}
