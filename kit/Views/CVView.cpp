#include "kit/Views/CVView.hpp"

#include "kit/Categories/NSView+Utility.hpp"

namespace corvane {

namespace {

double constantOr(const ns::Ref<ns::LayoutConstraint>& constraint, double fallback) {
    return constraint ? constraint->constant() : fallback;
}

void setConstantIfConnected(const ns::Ref<ns::LayoutConstraint>& constraint, double constant) {
    if (constraint)
        constraint->setConstant(constant);
}

} // namespace

void CVView::awakeFromNib() {
    m_offsetBase = {constantOr(m_topOffset, 0), constantOr(m_leftOffset, 0), constantOr(m_bottomOffset, 0),
                    constantOr(m_rightOffset, 0)};
}

ns::EdgeInsets CVView::offsetConstraintConstants() const {
    return {constantOr(m_topOffset, m_offsetBase.top), constantOr(m_leftOffset, m_offsetBase.left),
            constantOr(m_bottomOffset, m_offsetBase.bottom), constantOr(m_rightOffset, m_offsetBase.right)};
}

void CVView::setOffsetConstraintConstants(ns::EdgeInsets insets) {
    m_offsetBase = insets;
    setConstantIfConnected(m_topOffset, insets.top);
    setConstantIfConnected(m_leftOffset, insets.left);
    setConstantIfConnected(m_bottomOffset, insets.bottom);
    setConstantIfConnected(m_rightOffset, insets.right);
    setNeedsLayout(true);
}

void CVView::updateOffsetConstraintConstants(const ns::Array& values) {
    if (values.size() == 4) {
        setConstantIfConnected(m_topOffset, values[0].doubleValue());
        setConstantIfConnected(m_leftOffset, values[1].doubleValue());
        setConstantIfConnected(m_bottomOffset, values[2].doubleValue());
        setConstantIfConnected(m_rightOffset, values[3].doubleValue());
    } else if (values.size() == 2) {
        setConstantIfConnected(m_topOffset, values[0].doubleValue());
        setConstantIfConnected(m_bottomOffset, values[1].doubleValue());
    }
    setNeedsLayout(true);
}

void CVView::addFittingSizeWidthConstraint() {
    if (m_width)
        removeConstraint(m_width);
    const double width = fittingSize().width;
    m_width = addWidthConstraintWithConstant(*this, width, 900);
}

void CVView::keyDown(const ns::Ref<ns::Event>& event) {
    if (m_onKeyDown)
        m_onKeyDown(event);
    ns::View::keyDown(event);
}

} // namespace corvane
