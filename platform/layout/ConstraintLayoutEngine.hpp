#pragma once

#include "platform/graphics/Geometry.hpp"
#include "platform/layout/LayoutConstraint.hpp"
#include "platform/layout/LayoutEngine.hpp"
#include "platform/layout/LayoutExpression.hpp"
#include "platform/layout/LayoutVariable.hpp"
#include "platform/layout/Solver.hpp"
#include "platform/layout/SolverConstraint.hpp"

#include <optional>
#include <unordered_map>
#include <unordered_set>

namespace ns {

class View;

// Lays out one view tree by its constraints. Each view has four variables in the root's space,
// where y grows downwards whatever the views' flipping: left, top, width and height. An update
// has two named steps: gather (what the tree wants now: the views' own constraints, the frames
// of views that translate their autoresizing mask, intrinsic sizes, the root's frame) and
// reconcile (add and remove only what changed in the incremental solver). Applying turns the
// solved variables into frames in each superview's own coordinates.
class ConstraintLayoutEngine final : public LayoutEngine {
public:
    // `fitting` makes an engine that measures the root: its size is pulled towards zero instead
    // of held at its frame, and constraints that reach outside the tree are left out.
    explicit ConstraintLayoutEngine(View& root, bool fitting = false);
    ~ConstraintLayoutEngine() override;
    ConstraintLayoutEngine(const ConstraintLayoutEngine&) = delete;
    ConstraintLayoutEngine& operator=(const ConstraintLayoutEngine&) = delete;

    // Marks the tree as changed; the next update gathers again.
    void setNeedsUpdate() { m_needsUpdate = true; }
    // Gathers and reconciles when the tree changed, then solves. Returns whether anything moved.
    bool updateIfNeeded();
    bool needsUpdate() const { return m_needsUpdate || m_needsSolve; }
    // Sets the frames of the superview's subviews that are placed by constraints.
    void applyFrames(View& superview);
    // The frame the solver gives the view, in its superview's coordinates; nil for the root or a
    // view the engine does not know.
    std::optional<Rect> solvedFrame(const View& view) const;
    // The solved size of the root.
    Size rootSize() const;

    // The smallest size that satisfies the constraints inside the view's subtree.
    static Size fittingSize(View& view);

    void constraintConstantDidChange(LayoutConstraint& constraint) override;
    void constraintPriorityDidChange(LayoutConstraint& constraint) override;

private:
    struct Variables {
        WeakRef<const Object> owner; // tells a view from a later one at the same address
        bool tracked = false;        // the view was shared-owned, so its end can be seen
        LayoutVariable left, top, width, height;
    };
    struct Slot {
        const View* view;
        int index;
        bool operator==(const Slot&) const = default;
    };
    struct SlotHash {
        size_t operator()(const Slot& slot) const {
            return std::hash<const void*>{}(slot.view) ^ (static_cast<size_t>(slot.index) << 1);
        }
    };
    // A constraint the engine makes itself; remade when its basis (the view's superview and its
    // flipping) or priority changes, adjusted in place when only its constant does.
    struct Generated {
        SolverConstraint constraint;
        const void* basis;
        double constant;
        float priority;
        bool installed;
        bool live;
    };
    struct Installed {
        Ref<LayoutConstraint> source;
        SolverConstraint constraint;
        bool installed;
        bool live;
    };

    Variables& variablesFor(const View& view);
    LayoutExpression attribute(const View* view, LayoutAttribute attribute);
    std::optional<SolverConstraint> translate(const LayoutConstraint& constraint);
    bool install(const SolverConstraint& constraint, const LayoutConstraint* source);

    void gather(View& view);
    void gatherFrame(View& view);
    void gatherIntrinsicSize(View& view);
    void want(Slot slot, const LayoutExpression& expression, SolverConstraint::Relation relation,
              double constant, float priority, const void* basis);
    void reconcile();

    View& m_root;
    bool m_fitting;
    Solver m_solver;
    bool m_needsUpdate = true;
    bool m_needsSolve = true;
    std::unordered_map<const View*, Variables> m_variables;
    std::unordered_set<const View*> m_liveViews;
    std::unordered_map<const LayoutConstraint*, Installed> m_installed;
    std::unordered_map<Slot, Generated, SlotHash> m_generated;
    std::unordered_set<const LayoutConstraint*> m_reportedUnsatisfiable;
};

} // namespace ns
