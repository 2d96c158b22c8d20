// A form of labels, fields and buttons, arranged by stack views and laid out by constraints.
#include "apps/gallery/FormRow.hpp"
#include "apps/gallery/Gallery.hpp"

#include "platform/graphics/Font.hpp"
#include "platform/views/Button.hpp"
#include "platform/views/StackView.hpp"
#include "platform/views/TextField.hpp"

namespace {

using ns::LayoutAttribute;

ns::Ref<ns::View> row(const std::string& caption, const std::string& value) {
    return gallery::formRow(caption, value, 130, 220);
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
