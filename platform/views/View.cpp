#include "platform/views/View.hpp"

#include <algorithm>

namespace ns {

void View::setFrame(Rect frame) {
    m_frame = frame;
}

void View::addSubview(const Ref<View>& view) {
    if (!view || view.get() == this)
        return;
    Ref<View> self = this->self<View>();
    view->viewWillMoveToSuperview(self);
    view->removeFromSuperview();
    m_subviews.push_back(view);
    view->m_superview = self;
    view->setNextResponder(self);
    view->viewDidMoveToSuperview();
}

void View::removeFromSuperview() {
    Ref<View> superview = m_superview.lock();
    if (!superview)
        return;
    Ref<View> keepAlive = self<View>();
    auto& siblings = superview->m_subviews;
    siblings.erase(std::remove(siblings.begin(), siblings.end(), keepAlive), siblings.end());
    m_superview.reset();
    setNextResponder(nullptr);
}

bool View::isDescendantOf(const View& view) const {
    for (const View* v = this; v; v = v->m_superview.lock().get())
        if (v == &view)
            return true;
    return false;
}

void View::setHidden(bool hidden) {
    ChangeScope change(*this, "hidden");
    m_hidden = hidden;
}

bool View::isHiddenOrHasHiddenAncestor() const {
    for (auto view = std::static_pointer_cast<const View>(shared_from_this()); view; view = view->superview())
        if (view->m_hidden)
            return true;
    return false;
}

void View::addConstraint(const Ref<LayoutConstraint>& constraint) {
    if (constraint)
        m_constraints.push_back(constraint);
}

void View::addConstraints(const std::vector<Ref<LayoutConstraint>>& constraints) {
    for (const auto& constraint : constraints)
        addConstraint(constraint);
}

void View::removeConstraint(const Ref<LayoutConstraint>& constraint) {
    m_constraints.erase(std::remove(m_constraints.begin(), m_constraints.end(), constraint),
                        m_constraints.end());
}

void View::removeConstraints(const std::vector<Ref<LayoutConstraint>>& constraints) {
    for (const auto& constraint : constraints)
        removeConstraint(constraint);
}

void View::setTranslatesAutoresizingMaskIntoConstraints(bool translates) {
    m_translatesAutoresizingMask = translates;
    setNeedsLayout(true);
}

void View::invalidateIntrinsicContentSize() {
    setNeedsLayout(true);
}

LayoutPriority View::contentHuggingPriority(LayoutConstraintOrientation orientation) const {
    return m_hugging[static_cast<int>(orientation) & 1];
}

void View::setContentHuggingPriority(LayoutPriority priority, LayoutConstraintOrientation orientation) {
    m_hugging[static_cast<int>(orientation) & 1] = priority;
    setNeedsLayout(true);
}

LayoutPriority View::contentCompressionResistancePriority(LayoutConstraintOrientation orientation) const {
    return m_compressionResistance[static_cast<int>(orientation) & 1];
}

void View::setContentCompressionResistancePriority(LayoutPriority priority,
                                                   LayoutConstraintOrientation orientation) {
    m_compressionResistance[static_cast<int>(orientation) & 1] = priority;
    setNeedsLayout(true);
}

void View::setNeedsLayout(bool needsLayout) {
    m_needsLayout = needsLayout;
    if (needsLayout)
        ++m_layoutRequests;
}

void View::setNeedsDisplay(bool needsDisplay) {
    m_needsDisplay = needsDisplay;
    if (needsDisplay)
        ++m_displayRequests;
}

const KeyTable& View::keyTable() const {
    static const KeyTable table(Responder::keyTable(),
                                {{"hidden", observable(&View::isHidden, &View::setHidden)}});
    return table;
}

} // namespace ns
