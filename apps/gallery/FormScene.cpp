// A form of labels, fields and buttons, arranged by stack views and laid out by constraints.
#include "apps/gallery/Gallery.hpp"

#include "platform/graphics/Font.hpp"
#include "platform/views/Button.hpp"
#include "platform/views/StackView.hpp"
#include "platform/views/TextField.hpp"

namespace {

using ns::LayoutAttribute;

ns::Ref<ns::LayoutConstraint> fixedWidth(const ns::Ref<ns::View>& view, double width) {
    return ns::LayoutConstraint::constraintWithItem(view, LayoutAttribute::Width, ns::LayoutRelation::Equal,
                                                    nullptr, LayoutAttribute::NotAnAttribute, 1, width);
}

ns::Ref<ns::View> row(const std::string& caption, const std::string& value) {
    auto label = ns::TextField::labelWithString(caption);
    label->setAlignment(ns::TextAlignment::Right);
    label->addConstraint(fixedWidth(label, 130));
    auto field = ns::TextField::textFieldWithString(value);
    field->addConstraint(fixedWidth(field, 220));
    auto stack = ns::StackView::stackViewWithViews({label, field});
    stack->setAlignment(LayoutAttribute::FirstBaseline);
    stack->setSpacing(10);
    return stack;
}

ns::Ref<ns::View> buildForm() {
    auto title = ns::TextField::labelWithString("Employee details");
    title->setFont(ns::Font::boldSystemFontOfSize(15));
    auto paid = ns::Button::checkboxWithTitle("Paid monthly", nullptr, {});
    paid->setState(ns::ControlStateValueOn);

    auto buttons = ns::StackView::make();
    buttons->addView(ns::Button::buttonWithTitle("Cancel", nullptr, ns::Selector("cancel:")),
                     ns::StackViewGravity::Trailing);
    buttons->addView(ns::Button::buttonWithTitle("Save", nullptr, ns::Selector("save:")),
                     ns::StackViewGravity::Trailing);

    auto column = ns::StackView::stackViewWithViews(
        {title, row("First name", "Ada"), row("Last name", "Lovelace"), row("Employee number", "E-1815"),
         row("Monthly salary", "4,250.00"), paid, buttons});
    column->setOrientation(ns::UserInterfaceLayoutOrientation::Vertical);
    column->setAlignment(LayoutAttribute::Leading);
    column->setEdgeInsets({20, 20, 20, 20});
    column->setSpacing(10);
    column->setCustomSpacing(16, title);
    column->setCustomSpacing(20, paid);
    // The button row spans the column, so its trailing gravity puts the buttons at the right.
    column->addConstraint(ns::LayoutConstraint::constraintWithItem(
        buttons, LayoutAttribute::Width, ns::LayoutRelation::Equal, column, LayoutAttribute::Width, 1, -40));

    ns::Size size = column->fittingSize();
    auto form = ns::View::make({0, 0, size.width, size.height});
    column->setTranslatesAutoresizingMaskIntoConstraints(false);
    form->addSubview(column);
    form->addConstraints(
        ns::LayoutConstraint::constraintsWithVisualFormat("H:|[column]|", 0, {}, {{"column", column}}));
    form->addConstraints(
        ns::LayoutConstraint::constraintsWithVisualFormat("V:|[column]|", 0, {}, {{"column", column}}));
    return form;
}

gallery::SceneRegistration form{
    {10, "form", "A form in stacks",
     "Labels, fields, a check box and buttons in nested stack views, placed by the "
     "constraint solver: rows aligned on their text baselines, buttons in the "
     "trailing gravity of their row.",
     buildForm}};

} // namespace
