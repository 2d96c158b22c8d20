#include "platform/views/StackView.hpp"

#include <algorithm>

namespace ns {

namespace {

int indexOf(StackViewGravity gravity) {
    return std::clamp(static_cast<int>(gravity), 1, 3) - 1;
}

// The guide that spans the centre area so that the area as a whole can be centred.
class StackCentreGuide final : public View {};

} // namespace

std::vector<Ref<View>> StackView::views() const {
    std::vector<Ref<View>> all;
    for (const auto& list : m_gravities)
        all.insert(all.end(), list.begin(), list.end());
    return all;
}

std::vector<Ref<View>> StackView::viewsInGravity(StackViewGravity gravity) const {
    auto* list = findGravityList(gravity);
    return list ? *list : std::vector<Ref<View>>();
}

const std::vector<Ref<View>>* StackView::findGravityList(StackViewGravity gravity) const {
    int value = static_cast<int>(gravity);
    return value >= 1 && value <= 3 ? &m_gravities[static_cast<size_t>(value - 1)] : nullptr;
}

std::vector<Ref<View>>& StackView::gravityList(StackViewGravity gravity) {
    return m_gravities[static_cast<size_t>(indexOf(gravity))];
}

bool StackView::holds(const View* view) const {
    return m_gravityOf.count(view) > 0;
}

void StackView::adopt(const Ref<View>& view) {
    view->setTranslatesAutoresizingMaskIntoConstraints(false);
    if (view->superview().get() != this)
        addSubview(view);
}

void StackView::releaseIfUnheld(const Ref<View>& view) {
    if (holds(view.get()))
        return;
    m_customSpacing.erase(view.get());
    if (view->superview().get() == this)
        view->removeFromSuperview();
}

void StackView::setViews(const std::vector<Ref<View>>& views, StackViewGravity gravity) {
    if (!findGravityList(gravity))
        return;
    std::vector<Ref<View>> incoming;
    std::unordered_map<const View*, bool> incomingSet;
    for (const auto& view : views)
        if (view && view.get() != this && incomingSet.emplace(view.get(), true).second)
            incoming.push_back(view);
    // A view stands in one gravity only: take the incoming views out of the others.
    for (const auto& view : incoming) {
        auto found = m_gravityOf.find(view.get());
        if (found != m_gravityOf.end() && indexOf(found->second) != indexOf(gravity))
            std::erase(gravityList(found->second), view);
    }
    std::vector<Ref<View>> previous = std::move(gravityList(gravity));
    for (const auto& view : previous)
        m_gravityOf.erase(view.get());
    gravityList(gravity) = incoming;
    for (const auto& view : incoming) {
        m_gravityOf[view.get()] = gravity;
        adopt(view);
    }
    for (const auto& view : previous)
        releaseIfUnheld(view);
    rearrange();
}

void StackView::addView(const Ref<View>& view, StackViewGravity gravity) {
    if (!findGravityList(gravity))
        return;
    insertView(view, gravityList(gravity).size(), gravity);
}

void StackView::insertView(const Ref<View>& view, uint64_t index, StackViewGravity gravity) {
    if (!view || view.get() == this || !findGravityList(gravity))
        return;
    if (auto found = m_gravityOf.find(view.get()); found != m_gravityOf.end())
        std::erase(gravityList(found->second), view);
    m_gravityOf[view.get()] = gravity;
    auto& list = gravityList(gravity);
    list.insert(list.begin() + static_cast<std::ptrdiff_t>(std::min<uint64_t>(index, list.size())), view);
    adopt(view);
    rearrange();
}

void StackView::removeView(const Ref<View>& view) {
    auto found = view ? m_gravityOf.find(view.get()) : m_gravityOf.end();
    if (found == m_gravityOf.end())
        return;
    std::erase(gravityList(found->second), view);
    m_gravityOf.erase(found);
    releaseIfUnheld(view);
    rearrange();
}

void StackView::setOrientation(UserInterfaceLayoutOrientation orientation) {
    bool vertical = orientation == UserInterfaceLayoutOrientation::Vertical;
    if (m_alignment == (vertical ? LayoutAttribute::CenterY : LayoutAttribute::CenterX))
        m_alignment = vertical ? LayoutAttribute::CenterX : LayoutAttribute::CenterY;
    m_orientation = orientation;
    rearrange();
}

void StackView::setAlignment(LayoutAttribute alignment) {
    m_alignment = alignment;
    rearrange();
}

void StackView::setSpacing(double spacing) {
    m_spacing = spacing;
    rearrange();
}

void StackView::setEdgeInsets(EdgeInsets insets) {
    m_edgeInsets = insets;
    rearrange();
}

double StackView::customSpacingAfterView(const Ref<View>& view) const {
    auto found = m_customSpacing.find(view.get());
    return found == m_customSpacing.end() ? StackViewSpacingUseDefault : found->second;
}

void StackView::setCustomSpacing(double spacing, const Ref<View>& afterView) {
    if (!afterView || !holds(afterView.get()))
        return;
    if (spacing == StackViewSpacingUseDefault)
        m_customSpacing.erase(afterView.get());
    else
        m_customSpacing[afterView.get()] = spacing;
    rearrange();
}

LayoutPriority StackView::huggingPriority(LayoutConstraintOrientation orientation) const {
    return m_hugging[static_cast<int>(orientation) & 1];
}

void StackView::setHuggingPriority(LayoutPriority priority, LayoutConstraintOrientation orientation) {
    m_hugging[static_cast<int>(orientation) & 1] = priority;
    rearrange();
}

LayoutPriority StackView::clippingResistancePriority(LayoutConstraintOrientation orientation) const {
    return m_clippingResistance[static_cast<int>(orientation) & 1];
}

void StackView::setClippingResistancePriority(LayoutPriority priority,
                                              LayoutConstraintOrientation orientation) {
    m_clippingResistance[static_cast<int>(orientation) & 1] = priority;
    rearrange();
}

// Remakes the arrangement in three steps: each area's views chained one after the other, the
// areas placed along the axis (the first area pinned to the leading edge, the last one to the
// trailing edge, the centre one centred, free space between areas), and every view aligned
// across the axis inside the insets.
void StackView::rearrange() {
    removeConstraints(m_arrangement);
    m_arrangement.clear();
    const bool vertical = m_orientation == UserInterfaceLayoutOrientation::Vertical;
    const auto axis =
        vertical ? LayoutConstraintOrientation::Vertical : LayoutConstraintOrientation::Horizontal;
    const auto across =
        vertical ? LayoutConstraintOrientation::Horizontal : LayoutConstraintOrientation::Vertical;
    const auto lead = vertical ? LayoutAttribute::Top : LayoutAttribute::Leading;
    const auto trail = vertical ? LayoutAttribute::Bottom : LayoutAttribute::Trailing;
    const auto centre = vertical ? LayoutAttribute::CenterY : LayoutAttribute::CenterX;
    const auto crossLead = vertical ? LayoutAttribute::Leading : LayoutAttribute::Top;
    const auto crossTrail = vertical ? LayoutAttribute::Trailing : LayoutAttribute::Bottom;
    const auto crossCentre = vertical ? LayoutAttribute::CenterX : LayoutAttribute::CenterY;
    const double leadInset = vertical ? m_edgeInsets.top : m_edgeInsets.left;
    const double trailInset = vertical ? m_edgeInsets.bottom : m_edgeInsets.right;
    const double crossLeadInset = vertical ? m_edgeInsets.left : m_edgeInsets.top;
    const double crossTrailInset = vertical ? m_edgeInsets.right : m_edgeInsets.bottom;
    const LayoutPriority clip = clippingResistancePriority(axis);
    // Gaps give way just below the stack's hugging, so a stack larger than its content spreads
    // its gravity areas apart rather than stretching views that hug at the same priority.
    const LayoutPriority gap = std::max(1.0f, huggingPriority(axis) - 1), centring = huggingPriority(axis);
    const LayoutPriority crossHug = huggingPriority(across), crossClip = clippingResistancePriority(across);
    Ref<View> stack = self<View>();

    auto add = [&](const Ref<View>& first, LayoutAttribute a1, LayoutRelation relation,
                   const Ref<View>& second, LayoutAttribute a2, double constant, LayoutPriority priority) {
        auto constraint =
            LayoutConstraint::constraintWithItem(first, a1, relation, second, a2, 1.0, constant);
        constraint->setPriority(priority);
        m_arrangement.push_back(constraint);
    };
    auto spacingAfter = [&](const Ref<View>& view) {
        double custom = customSpacingAfterView(view);
        return custom == StackViewSpacingUseDefault ? m_spacing : custom;
    };
    constexpr auto Eq = LayoutRelation::Equal;
    constexpr auto Ge = LayoutRelation::GreaterThanOrEqual;

    // Step 1 and 2: along the axis.
    Ref<View> previous; // last view of the previous area, nil before the first
    for (int g = 0; g < 3; ++g) {
        const auto& area = m_gravities[static_cast<size_t>(g)];
        if (area.empty())
            continue;
        for (size_t i = 1; i < area.size(); ++i)
            add(area[i], lead, Eq, area[i - 1], trail, spacingAfter(area[i - 1]), LayoutPriorityRequired);
        const Ref<View>& first = area.front();
        Ref<View> edgeItem = previous ? previous : stack;
        LayoutAttribute edge = previous ? trail : lead;
        double spacing = previous ? spacingAfter(previous) : leadInset;
        if (g == 0) {
            add(first, lead, Eq, edgeItem, edge, spacing, LayoutPriorityRequired);
        } else {
            add(first, lead, Ge, edgeItem, edge, spacing, clip);
            add(first, lead, Eq, edgeItem, edge, spacing, gap);
        }
        if (g == 1) {
            if (!m_centreGuide) {
                m_centreGuide = create<StackCentreGuide>();
                m_centreGuide->setTranslatesAutoresizingMaskIntoConstraints(false);
            }
            const Ref<View>& guide = m_centreGuide;
            add(guide, lead, Eq, first, lead, 0, LayoutPriorityRequired);
            add(guide, trail, Eq, area.back(), trail, 0, LayoutPriorityRequired);
            add(guide, centre, Eq, stack, centre, (leadInset - trailInset) / 2, centring);
        }
        previous = area.back();
    }
    if (previous) {
        bool lastIsTrailingArea = !m_gravities[2].empty();
        add(stack, trail, Ge, previous, trail, trailInset, clip);
        add(stack, trail, Eq, previous, trail, trailInset, lastIsTrailingArea ? LayoutPriorityRequired : gap);
    }

    // Step 3: across the axis.
    const bool alignLead = m_alignment == crossLead ||
                           m_alignment == (vertical ? LayoutAttribute::Left : LayoutAttribute::Top) ||
                           m_alignment == (vertical ? LayoutAttribute::Width : LayoutAttribute::Height);
    const bool alignTrail = m_alignment == crossTrail ||
                            m_alignment == (vertical ? LayoutAttribute::Right : LayoutAttribute::Bottom) ||
                            m_alignment == (vertical ? LayoutAttribute::Width : LayoutAttribute::Height);
    // Hugging across the axis pulls the stack's own size down to its widest view; pulling
    // each view's edges would stretch the views instead.
    if (!views().empty())
        add(stack, vertical ? LayoutAttribute::Width : LayoutAttribute::Height, Eq, nullptr,
            LayoutAttribute::NotAnAttribute, 0, crossHug);
    for (const auto& view : views()) {
        add(view, crossLead, Ge, stack, crossLead, crossLeadInset, crossClip);
        add(stack, crossTrail, Ge, view, crossTrail, crossTrailInset, crossClip);
        if (alignLead)
            add(view, crossLead, Eq, stack, crossLead, crossLeadInset, LayoutPriorityRequired);
        if (alignTrail)
            add(stack, crossTrail, Eq, view, crossTrail, crossTrailInset, LayoutPriorityRequired);
        if (!alignLead && !alignTrail)
            add(view, crossCentre, Eq, stack, crossCentre, (crossLeadInset - crossTrailInset) / 2,
                LayoutPriorityRequired);
    }
    addConstraints(m_arrangement);
    setNeedsLayout(true);
}

} // namespace ns
