#include "platform/graphics/Font.hpp"
#include "platform/views/Button.hpp"
#include "platform/views/StackView.hpp"
#include "platform/views/TextField.hpp"

#include <gtest/gtest.h>

namespace {

class Receiver : public ns::Object {
public:
    void pressed(const ns::Value& sender) { senders.push_back(sender.object()); }
    const ns::ActionTable& actionTable() const override {
        static const ns::ActionTable table(Object::actionTable(),
                                           {{"pressed:", ns::action(&Receiver::pressed)}});
        return table;
    }
    std::vector<ns::Ref<ns::Object>> senders;
};

} // namespace

TEST(TextField, LabelsFitTheirTextAndWrapAtThePreferredWidth) {
    auto label = ns::TextField::labelWithString("Gross pay for the period");
    ns::Size one = label->frame().size;
    EXPECT_GT(one.width, 100);
    EXPECT_EQ(one, label->intrinsicContentSize());
    EXPECT_FALSE(label->isEditable());
    EXPECT_FALSE(label->isBezeled());

    label->setPreferredMaxLayoutWidth(60);
    ns::Size wrapped = label->intrinsicContentSize();
    EXPECT_EQ(wrapped.width, 60);
    EXPECT_GT(wrapped.height, 2 * one.height);
    EXPECT_EQ(label->fittingSize(), wrapped);

    // a bezeled field is taller than a label of the same text by its padding
    auto field = ns::TextField::textFieldWithString("Gross pay for the period");
    EXPECT_EQ(field->frame().height(), one.height + 2 * ns::TextField::BezelPadding);
    EXPECT_TRUE(field->acceptsFirstResponder());

    // a longer value asks for layout again and grows
    uint64_t requests = label->layoutRequestCount();
    label->setPreferredMaxLayoutWidth(0);
    label->setStringValue("Gross pay for the period, before tax and deductions");
    EXPECT_GT(label->layoutRequestCount(), requests);
    EXPECT_GT(label->intrinsicContentSize().width, one.width);
}

TEST(TextField, AStackOfLabelsFitsItsWidestLabel) {
    auto stack = ns::StackView::make();
    stack->setOrientation(ns::UserInterfaceLayoutOrientation::Vertical);
    auto a = ns::TextField::labelWithString("Name");
    auto b = ns::TextField::labelWithString("Employee number");
    stack->setViews({a, b}, ns::StackViewGravity::Top);
    stack->setEdgeInsets({4, 6, 4, 6});
    ns::Size fitting = stack->fittingSize();
    EXPECT_EQ(fitting.width, b->intrinsicContentSize().width + 12);
    EXPECT_EQ(fitting.height, a->intrinsicContentSize().height + b->intrinsicContentSize().height + 8 + 8);
}

TEST(Button, ClicksSendTheActionAndToggleOnOffTypes) {
    auto receiver = ns::create<Receiver>();
    auto button = ns::Button::buttonWithTitle("Save", receiver, ns::Selector("pressed:"));
    button->performClick();
    ASSERT_EQ(receiver->senders.size(), 1u);
    EXPECT_EQ(receiver->senders[0], button);
    EXPECT_EQ(button->state(), ns::ControlStateValueOff); // a push button has no state

    auto check = ns::Button::checkboxWithTitle("Paid", receiver, ns::Selector("pressed:"));
    check->performClick();
    EXPECT_EQ(check->state(), ns::ControlStateValueOn);
    check->performClick();
    EXPECT_EQ(check->state(), ns::ControlStateValueOff);

    check->setEnabled(false);
    check->performClick();
    EXPECT_EQ(check->state(), ns::ControlStateValueOff);
    EXPECT_EQ(receiver->senders.size(), 3u);

    button->setAction(ns::Selector("missing:"));
    EXPECT_FALSE(button->sendAction(button->action(), receiver));
}

TEST(Button, SizeFollowsTitleBezelAndImage) {
    auto shortButton = ns::Button::buttonWithTitle("OK", nullptr, {});
    auto longButton = ns::Button::buttonWithTitle("Check for Updates\u2026", nullptr, {});
    EXPECT_GE(shortButton->frame().height(), 21);
    EXPECT_EQ(shortButton->frame().height(), longButton->frame().height()); // one line either way
    EXPECT_GT(longButton->frame().width(), shortButton->frame().width());
    double bordered = longButton->intrinsicContentSize().width;
    longButton->setBordered(false);
    EXPECT_LT(longButton->intrinsicContentSize().width, bordered);
    EXPECT_EQ(shortButton->valueForKey("title"), ns::Value("OK"));
}
