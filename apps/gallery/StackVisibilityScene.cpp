// A form whose sections are hidden and shown again inside a gravity stack view: the stack keeps
// the hidden sections in their places, so a section shown again returns between its neighbours.
#include "apps/gallery/FormRow.hpp"
#include "apps/gallery/Gallery.hpp"

#include "kit/Views/QSStackView.hpp"
#include "platform/graphics/Color.hpp"
#include "platform/graphics/Font.hpp"
#include "platform/views/StackView.hpp"
#include "platform/views/TextField.hpp"

namespace {

using ns::LayoutAttribute;

ns::Ref<ns::View> row(const std::string& caption, const std::string& value) {
    return gallery::formRow(caption, value, 110, 170);
}

ns::Ref<ns::View> section(const std::string& heading, std::vector<ns::Ref<ns::View>> rows) {
    auto title = ns::TextField::labelWithString(heading);
    title->setFont(ns::Font::boldSystemFontOfSize(13));
    rows.insert(rows.begin(), title);
    auto stack = ns::StackView::stackViewWithViews(rows);
    stack->setOrientation(ns::UserInterfaceLayoutOrientation::Vertical);
    stack->setAlignment(LayoutAttribute::Leading);
    stack->setSpacing(6);
    return stack;
}

// One form; `step` 0 shows every section, 1 hides the address and the bank sections, 2 shows them
// again.
ns::Ref<ns::View> form(int step, const std::string& caption) {
    auto heading = ns::TextField::labelWithString(caption);
    heading->setFont(ns::Font::boldSystemFontOfSize(15));
    auto person = section("Person", {row("First name", "Ada"), row("Last name", "Lovelace")});
    auto address = section("Address", {row("Street", "12 St James's Sq."), row("City", "London")});
    auto bank = section("Bank", {row("Account", "40-11-22 7781"), row("Holder", "A. Lovelace")});
    auto pay = section("Pay", {row("Monthly salary", "4,250.00")});

    auto stack =
        corvane::QSStackView::stackViewWithViews(ns::Array{heading, ns::Array{person, address, bank}, pay});
    stack->setOrientation(ns::UserInterfaceLayoutOrientation::Vertical);
    stack->setAlignment(LayoutAttribute::Leading);
    stack->setEdgeInsets({16, 16, 16, 16});
    stack->setSpacing(14);
    stack->setBackgroundColor(ns::Color::controlBackgroundColor());
    stack->setIntrinsicContentSizeOptions(corvane::QSStackViewContentSizeHeight);
    if (step >= 1)
        stack->hideViews({address, bank});
    if (step >= 2) {
        // One rebuild for both sections.
        stack->suspendAutoLayoutWhenSubviewVisibilityChanges();
        stack->showViews({bank, address});
        stack->resumeAutoLayoutWhenSubviewVisibilityChanges();
    }
    stack->updateLayer();
    return stack;
}

ns::Ref<ns::View> buildScene() {
    auto row = ns::StackView::stackViewWithViews(
        {form(0, "All sections"), form(1, "Address and bank hidden"), form(2, "Shown again")});
    row->setAlignment(LayoutAttribute::Top);
    row->setEdgeInsets({20, 20, 20, 20});
    row->setSpacing(20);
    ns::Size size = row->fittingSize();
    auto scene = ns::View::make({0, 0, size.width, size.height});
    row->setTranslatesAutoresizingMaskIntoConstraints(false);
    scene->addSubview(row);
    scene->addConstraints(
        ns::LayoutConstraint::constraintsWithVisualFormat("H:|[row]|", 0, {}, {{"row", row}}));
    scene->addConstraints(
        ns::LayoutConstraint::constraintsWithVisualFormat("V:|[row]|", 0, {}, {{"row", row}}));
    return scene;
}

gallery::SceneRegistration stackVisibility{
    {30, "stack-visibility", "Sections hidden and shown again",
     "A form in a gravity stack view. Hiding the address and bank sections closes the gap; showing "
     "them again, in a suspended batch, puts each back between its former neighbours.",
     buildScene}};

} // namespace
