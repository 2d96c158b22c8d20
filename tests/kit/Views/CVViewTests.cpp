#include "kit/Views/CVView.hpp"

#include "kit/Categories/NSView+Utility.hpp"

#include <gtest/gtest.h>

using corvane::CVView;
using ns::EdgeInsets;

namespace {

// A panel whose content is held by four offset constraints, each constant a distance inwards
// from the panel's edge, as an interface file would connect them.
ns::Ref<ns::LayoutConstraint> offset(const ns::Ref<ns::View>& outer, const ns::Ref<ns::View>& inner,
                                     ns::LayoutAttribute attribute, double constant) {
    return ns::LayoutConstraint::constraintWithItem(outer, attribute, ns::LayoutRelation::Equal, inner,
                                                    attribute, 1, constant);
}

struct Panel {
    ns::Ref<CVView> view = CVView::make({0, 0, 200, 100});
    ns::Ref<ns::View> content = ns::View::make();
    ns::Ref<ns::LayoutConstraint> top, left, bottom, right;

    explicit Panel(bool connectAll = true) {
        using A = ns::LayoutAttribute;
        view->addSubview(content);
        content->setTranslatesAutoresizingMaskIntoConstraints(false);
        top = offset(content, view, A::Top, 4);
        bottom = offset(view, content, A::Bottom, 6);
        left = offset(content, view, A::Left, 8);
        right = offset(view, content, A::Right, 10);
        view->addConstraints({top, bottom, left, right});
        view->setTopOffsetConstraint(top);
        view->setBottomOffsetConstraint(bottom);
        if (connectAll) {
            view->setLeftOffsetConstraint(left);
            view->setRightOffsetConstraint(right);
        }
    }
};

class KeyRecorder : public ns::View {
public:
    using ns::View::View;
    std::vector<std::string>* log = nullptr;
    void keyDown(const ns::Ref<ns::Event>& event) override {
        log->push_back("platform " + event->characters());
    }
};

} // namespace

TEST(CVViewOffsets, DesignOffsetsAreRecordedFromTheConnectedConstraints) {
    Panel panel(false);
    panel.view->awakeFromNib();
    EXPECT_EQ(panel.view->offsetConstraintConstantsBase(), (EdgeInsets{4, 0, 6, 0}));
}

TEST(CVViewOffsets, UnconnectedOffsetsReadFromTheBase) {
    Panel panel(false);
    panel.view->setOffsetConstraintConstantsBase({1, 2, 3, 5});
    panel.top->setConstant(40);
    EXPECT_EQ(panel.view->offsetConstraintConstants(), (EdgeInsets{40, 2, 6, 5}));
}

TEST(CVViewOffsets, SettingInsetsChangesTheBaseAndEveryConnectedConstant) {
    Panel panel;
    const auto requests = panel.view->layoutRequestCount();
    panel.view->setOffsetConstraintConstants({1, 2, 3, 4});
    EXPECT_EQ(panel.view->offsetConstraintConstantsBase(), (EdgeInsets{1, 2, 3, 4}));
    EXPECT_EQ(panel.right->constant(), 4);
    EXPECT_GT(panel.view->layoutRequestCount(), requests);

    panel.view->layoutSubtreeIfNeeded();
    EXPECT_EQ(panel.content->frame(), ns::Rect(2, 3, 194, 96));
}

TEST(CVViewOffsets, UpdatingByListTakesFourOrTwoValuesAndKeepsTheBase) {
    Panel panel;
    panel.view->setOffsetConstraintConstants({1, 2, 3, 4});

    panel.view->updateOffsetConstraintConstants(
        {ns::Value("10"), ns::Value(20), ns::Value(30.5), ns::Value("40")});
    EXPECT_EQ(panel.view->offsetConstraintConstants(), (EdgeInsets{10, 20, 30.5, 40}));

    panel.view->updateOffsetConstraintConstants({ns::Value(7), ns::Value("8")});
    EXPECT_EQ(panel.view->offsetConstraintConstants(), (EdgeInsets{7, 20, 8, 40}));
    EXPECT_EQ(panel.view->offsetConstraintConstantsBase(), (EdgeInsets{1, 2, 3, 4}));

    const auto requests = panel.view->layoutRequestCount();
    panel.view->updateOffsetConstraintConstants({ns::Value(1), ns::Value(1), ns::Value(1)});
    EXPECT_EQ(panel.view->offsetConstraintConstants(), (EdgeInsets{7, 20, 8, 40}));
    EXPECT_GT(panel.view->layoutRequestCount(), requests);
}

TEST(CVViewFitting, TheFittingWidthConstraintReplacesThePreviousOne) {
    auto view = CVView::make({0, 0, 500, 50});
    auto content = ns::View::make();
    corvane::addSubview(*view, content, ns::EdgeInsets{0, 5, 0, 5});
    corvane::addWidthConstraintWithConstant(*content, 120, 1000);
    corvane::addHeightConstraintWithConstant(*content, 20);

    view->addFittingSizeWidthConstraint();
    auto first = view->widthConstraint();
    ASSERT_TRUE(first);
    EXPECT_EQ(first->constant(), 130);
    EXPECT_EQ(first->priority(), 900);

    view->addFittingSizeWidthConstraint();
    auto widths = std::count_if(view->constraints().begin(), view->constraints().end(), [](const auto& c) {
        return c->firstAttribute() == ns::LayoutAttribute::Width && !c->secondItem();
    });
    EXPECT_EQ(widths, 1);
    EXPECT_NE(view->widthConstraint(), first);
    EXPECT_EQ(view->widthConstraint()->constant(), 130);
}

TEST(CVViewKeys, TheCallbackSeesAKeyBeforeThePlatformHandlesIt) {
    std::vector<std::string> log;
    auto parent = ns::create<KeyRecorder>(ns::Rect{});
    parent->log = &log;
    auto view = CVView::make();
    parent->addSubview(view);
    auto key = ns::Event::keyEvent(ns::EventType::KeyDown, "k", 40);

    view->keyDown(key);
    view->setOnKeyDown(
        [&](const ns::Ref<ns::Event>& event) { log.push_back("callback " + event->characters()); });
    view->keyDown(key);
    EXPECT_EQ(log, (std::vector<std::string>{"platform k", "callback k", "platform k"}));
}
