#include "apps/gallery/FormRow.hpp"

#include "platform/views/TextField.hpp"

namespace gallery {

namespace {
ns::Ref<ns::LayoutConstraint> fixedWidth(const ns::Ref<ns::View>& view, double width) {
    return ns::LayoutConstraint::constraintWithItem(view, ns::LayoutAttribute::Width,
                                                    ns::LayoutRelation::Equal, nullptr,
                                                    ns::LayoutAttribute::NotAnAttribute, 1, width);
}
} // namespace

ns::Ref<ns::StackView> formRow(const std::string& caption, const std::string& value, double captionWidth,
                               double fieldWidth) {
    auto label = ns::TextField::labelWithString(caption);
    label->setAlignment(ns::TextAlignment::Right);
    label->addConstraint(fixedWidth(label, captionWidth));
    auto field = ns::TextField::textFieldWithString(value);
    field->addConstraint(fixedWidth(field, fieldWidth));
    auto stack = ns::StackView::stackViewWithViews({label, field});
    stack->setAlignment(ns::LayoutAttribute::FirstBaseline);
    stack->setSpacing(10);
    return stack;
}

} // namespace gallery
