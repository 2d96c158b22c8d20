#include "apps/gallery/FormRow.hpp"

#include "kit/Categories/NSView+Utility.hpp"
#include "platform/views/TextField.hpp"

namespace gallery {

ns::Ref<ns::StackView> formRow(const std::string& caption, const std::string& value, double captionWidth,
                               double fieldWidth) {
    auto label = ns::TextField::labelWithString(caption);
    label->setAlignment(ns::TextAlignment::Right);
    corvane::addWidthConstraintWithConstant(*label, captionWidth, ns::LayoutPriorityRequired);
    auto field = ns::TextField::textFieldWithString(value);
    corvane::addWidthConstraintWithConstant(*field, fieldWidth, ns::LayoutPriorityRequired);
    auto stack = ns::StackView::stackViewWithViews({label, field});
    stack->setAlignment(ns::LayoutAttribute::FirstBaseline);
    stack->setSpacing(10);
    return stack;
}

} // namespace gallery
