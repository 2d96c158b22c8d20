#include "platform/layout/ConstraintLayoutEngine.hpp"

#include "platform/foundation/Log.hpp"
#include "platform/views/View.hpp"

namespace ns {

namespace {

using Relation = SolverConstraint::Relation;

Relation relationOf(LayoutRelation relation) {
    switch (relation) {
    case LayoutRelation::LessThanOrEqual:
        return Relation::LessOrEqual;
    case LayoutRelation::GreaterThanOrEqual:
        return Relation::GreaterOrEqual;
    default:
        return Relation::Equal;
    }
}

LayoutExpression constantExpression(double constant) {
    return LayoutExpression(std::vector<LayoutTerm>{}, constant);
}

// Slots of the generated constraints of one view.
enum : int {
    SlotLeft,
    SlotTop,
    SlotWidth,
    SlotHeight,
    SlotHugWidth,
    SlotResistWidth,
    SlotHugHeight,
    SlotResistHeight
};

} // namespace

ConstraintLayoutEngine::ConstraintLayoutEngine(View& root, bool fitting) : m_root(root), m_fitting(fitting) {}

ConstraintLayoutEngine::~ConstraintLayoutEngine() {
    if (m_fitting)
        return;
    for (auto& [pointer, installed] : m_installed)
        if (installed.source->engine() == this)
            installed.source->setEngine(nullptr);
}

ConstraintLayoutEngine::Variables& ConstraintLayoutEngine::variablesFor(const View& view) {
    auto found = m_variables.find(&view);
    if (found != m_variables.end() && !found->second.owner.owner_before(view.weak_from_this()) &&
        !view.weak_from_this().owner_before(found->second.owner))
        return found->second;
    Variables fresh;
    fresh.owner = view.weak_from_this();
    fresh.tracked = !fresh.owner.expired();
    return m_variables.insert_or_assign(&view, std::move(fresh)).first->second;
}

LayoutExpression ConstraintLayoutEngine::attribute(const View* view, LayoutAttribute attribute) {
    const Variables& v = variablesFor(*view);
    switch (attribute) {
    case LayoutAttribute::Left:
    case LayoutAttribute::Leading:
        return LayoutExpression(v.left);
    case LayoutAttribute::Right:
    case LayoutAttribute::Trailing:
        return LayoutExpression(v.left) + LayoutExpression(v.width);
    case LayoutAttribute::Top:
        return LayoutExpression(v.top);
    case LayoutAttribute::Bottom:
        return LayoutExpression(v.top) + LayoutExpression(v.height);
    case LayoutAttribute::Width:
        return LayoutExpression(v.width);
    case LayoutAttribute::Height:
        return LayoutExpression(v.height);
    case LayoutAttribute::CenterX:
        return LayoutExpression(v.left) + LayoutExpression(v.width, 0.5);
    case LayoutAttribute::CenterY:
        return LayoutExpression(v.top) + LayoutExpression(v.height, 0.5);
    case LayoutAttribute::FirstBaseline:
        return LayoutExpression(v.top) + constantExpression(view->firstBaselineOffsetFromTop());
    case LayoutAttribute::LastBaseline:
        return LayoutExpression(v.top) + LayoutExpression(v.height) +
               constantExpression(-view->lastBaselineOffsetFromBottom());
    case LayoutAttribute::NotAnAttribute:
        break;
    }
    return constantExpression(0);
}

std::optional<SolverConstraint> ConstraintLayoutEngine::translate(const LayoutConstraint& constraint) {
    Ref<View> first = constraint.firstItem();
    Ref<View> second = constraint.secondItem();
    if (!first || constraint.firstAttribute() == LayoutAttribute::NotAnAttribute)
        return std::nullopt;
    bool hasSecond = second && constraint.secondAttribute() != LayoutAttribute::NotAnAttribute;
    if (m_fitting && (!m_liveViews.count(first.get()) || (hasSecond && !m_liveViews.count(second.get()))))
        return std::nullopt;
    LayoutExpression lhs = attribute(first.get(), constraint.firstAttribute());
    LayoutExpression rhs =
        hasSecond ? attribute(second.get(), constraint.secondAttribute()) * constraint.multiplier()
                  : constantExpression(0);
    rhs += constantExpression(constraint.constant());
    return SolverConstraint(lhs, relationOf(constraint.relation()), rhs, constraint.priority());
}

bool ConstraintLayoutEngine::install(const SolverConstraint& constraint, const LayoutConstraint* source) {
    SolverStatus status = m_solver.addConstraint(constraint);
    if (status == SolverStatus::Ok)
        return true;
    if (source && m_reportedUnsatisfiable.insert(source).second)
        Log("Unable to simultaneously satisfy constraints; leaving out %@ (%s)", source->description(),
            toString(status));
    return false;
}

void ConstraintLayoutEngine::want(Slot slot, const LayoutExpression& expression, Relation relation,
                                  double constant, float priority, const void* basis) {
    auto found = m_generated.find(slot);
    if (found != m_generated.end()) {
        Generated& generated = found->second;
        bool sameShape = generated.basis == basis && generated.priority == priority &&
                         generated.constraint.relation() == relation;
        if (sameShape) {
            if (generated.constant != constant && generated.installed)
                m_solver.setConstant(generated.constraint, -constant);
            generated.constant = constant;
            generated.live = true;
            return;
        }
        if (generated.installed)
            m_solver.removeConstraint(generated.constraint);
        m_generated.erase(found);
    }
    SolverConstraint constraint(expression, relation, constantExpression(constant), priority);
    bool installed = install(constraint, nullptr);
    m_generated.emplace(slot, Generated{constraint, basis, constant, priority, installed, true});
}

void ConstraintLayoutEngine::gatherFrame(View& view) {
    const Variables& v = variablesFor(view);
    Rect frame = view.frame();
    if (&view == &m_root) {
        want({&view, SlotLeft}, LayoutExpression(v.left), Relation::Equal, 0, 1000, nullptr);
        want({&view, SlotTop}, LayoutExpression(v.top), Relation::Equal, 0, 1000, nullptr);
        float sizePriority = m_fitting ? LayoutPriorityFittingSizeCompression : 1000;
        want({&view, SlotWidth}, LayoutExpression(v.width), Relation::Equal, m_fitting ? 0 : frame.width(),
             sizePriority, nullptr);
        want({&view, SlotHeight}, LayoutExpression(v.height), Relation::Equal, m_fitting ? 0 : frame.height(),
             sizePriority, nullptr);
        return;
    }
    if (!view.translatesAutoresizingMaskIntoConstraints())
        return;
    Ref<View> superview = view.superview();
    const Variables& s = variablesFor(*superview);
    bool flipped = superview->isFlipped();
    // The basis tells a flipped superview from an unflipped one: the top equation differs.
    const void* basis = reinterpret_cast<const char*>(superview.get()) + (flipped ? 1 : 0);
    want({&view, SlotLeft}, LayoutExpression(v.left) - LayoutExpression(s.left), Relation::Equal, frame.x(),
         1000, basis);
    if (flipped)
        want({&view, SlotTop}, LayoutExpression(v.top) - LayoutExpression(s.top), Relation::Equal, frame.y(),
             1000, basis);
    else
        want({&view, SlotTop}, LayoutExpression(v.top) - LayoutExpression(s.top) - LayoutExpression(s.height),
             Relation::Equal, -frame.maxY(), 1000, basis);
    want({&view, SlotWidth}, LayoutExpression(v.width), Relation::Equal, frame.width(), 1000, basis);
    want({&view, SlotHeight}, LayoutExpression(v.height), Relation::Equal, frame.height(), 1000, basis);
}

void ConstraintLayoutEngine::gatherIntrinsicSize(View& view) {
    Size intrinsic = view.intrinsicContentSize();
    const Variables& v = variablesFor(view);
    auto horizontal = LayoutConstraintOrientation::Horizontal,
         vertical = LayoutConstraintOrientation::Vertical;
    if (intrinsic.width != ViewNoIntrinsicMetric) {
        want({&view, SlotHugWidth}, LayoutExpression(v.width), Relation::LessOrEqual, intrinsic.width,
             view.contentHuggingPriority(horizontal), nullptr);
        want({&view, SlotResistWidth}, LayoutExpression(v.width), Relation::GreaterOrEqual, intrinsic.width,
             view.contentCompressionResistancePriority(horizontal), nullptr);
    }
    if (intrinsic.height != ViewNoIntrinsicMetric) {
        want({&view, SlotHugHeight}, LayoutExpression(v.height), Relation::LessOrEqual, intrinsic.height,
             view.contentHuggingPriority(vertical), nullptr);
        want({&view, SlotResistHeight}, LayoutExpression(v.height), Relation::GreaterOrEqual,
             intrinsic.height, view.contentCompressionResistancePriority(vertical), nullptr);
    }
}

void ConstraintLayoutEngine::gather(View& view) {
    m_liveViews.insert(&view);
    variablesFor(view);
    for (const auto& subview : view.subviews())
        gather(*subview);
}

// Adds what the tree wants and is not yet in the solver, adjusts what changed, and removes what
// the tree no longer wants.
void ConstraintLayoutEngine::reconcile() {
    m_liveViews.clear();
    gather(m_root);
    for (auto& [slot, generated] : m_generated)
        generated.live = false;
    for (auto& [pointer, installed] : m_installed)
        installed.live = false;

    for (const View* view : m_liveViews) {
        View& mutableView = const_cast<View&>(*view);
        gatherFrame(mutableView);
        gatherIntrinsicSize(mutableView);
    }
    for (const View* view : m_liveViews) {
        for (const auto& constraint : view->constraints()) {
            if (constraint->hasExpiredItem())
                continue;
            auto found = m_installed.find(constraint.get());
            if (found != m_installed.end()) {
                found->second.live = true;
                if (!found->second.installed)
                    found->second.installed = install(found->second.constraint, constraint.get());
                continue;
            }
            auto translated = translate(*constraint);
            if (!translated)
                continue;
            bool installed = install(*translated, constraint.get());
            m_installed.emplace(constraint.get(), Installed{constraint, *translated, installed, true});
            if (!m_fitting)
                constraint->setEngine(this);
        }
    }

    std::erase_if(m_installed, [&](auto& entry) {
        const Installed& installed = entry.second;
        if (installed.live)
            return false;
        if (installed.installed)
            m_solver.removeConstraint(installed.constraint);
        if (!m_fitting && installed.source->engine() == this)
            installed.source->setEngine(nullptr);
        m_reportedUnsatisfiable.erase(entry.first);
        return true;
    });
    std::erase_if(m_generated, [&](auto& entry) {
        if (entry.second.live)
            return false;
        if (entry.second.installed)
            m_solver.removeConstraint(entry.second.constraint);
        return true;
    });
    std::erase_if(m_variables,
                  [](const auto& entry) { return entry.second.tracked && entry.second.owner.expired(); });
}

bool ConstraintLayoutEngine::updateIfNeeded() {
    if (m_needsUpdate) {
        m_needsUpdate = false;
        reconcile();
        m_needsSolve = true;
    }
    if (!m_needsSolve)
        return false;
    m_needsSolve = false;
    m_solver.updateVariables();
    return true;
}

std::optional<Rect> ConstraintLayoutEngine::solvedFrame(const View& view) const {
    Ref<View> superview = view.superview();
    if (!superview)
        return std::nullopt;
    auto mine = m_variables.find(&view);
    auto theirs = m_variables.find(superview.get());
    if (mine == m_variables.end() || theirs == m_variables.end())
        return std::nullopt;
    const Variables& v = mine->second;
    const Variables& s = theirs->second;
    double x = v.left.value() - s.left.value();
    double y = superview->isFlipped()
                   ? v.top.value() - s.top.value()
                   : (s.top.value() + s.height.value()) - (v.top.value() + v.height.value());
    return Rect(x, y, v.width.value(), v.height.value());
}

Size ConstraintLayoutEngine::rootSize() const {
    auto found = m_variables.find(&m_root);
    if (found == m_variables.end())
        return {};
    return {found->second.width.value(), found->second.height.value()};
}

void ConstraintLayoutEngine::applyFrames(View& superview) {
    for (const auto& subview : superview.subviews()) {
        if (subview->translatesAutoresizingMaskIntoConstraints())
            continue;
        if (auto frame = solvedFrame(*subview); frame && *frame != subview->frame())
            subview->setFrameFromLayout(*frame);
    }
}

Size ConstraintLayoutEngine::fittingSize(View& view) {
    ConstraintLayoutEngine engine(view, true);
    engine.updateIfNeeded();
    return engine.rootSize();
}

void ConstraintLayoutEngine::constraintConstantDidChange(LayoutConstraint& constraint) {
    auto found = m_installed.find(&constraint);
    if (found == m_installed.end() || !found->second.installed) {
        m_needsUpdate = true;
        return;
    }
    m_solver.setConstant(found->second.constraint, -constraint.constant());
    m_needsSolve = true;
}

void ConstraintLayoutEngine::constraintPriorityDidChange(LayoutConstraint& constraint) {
    auto found = m_installed.find(&constraint);
    if (found != m_installed.end()) {
        if (found->second.installed)
            m_solver.removeConstraint(found->second.constraint);
        m_installed.erase(found);
    }
    m_needsUpdate = true;
}

} // namespace ns
