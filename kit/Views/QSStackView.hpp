#pragma once

#include "platform/foundation/Range.hpp"
#include "platform/foundation/Value.hpp"
#include "platform/views/StackView.hpp"

#include <cstdint>
#include <functional>
#include <map>
#include <vector>

namespace ns {
class Color;
class ScrollView;
} // namespace ns

namespace corvane {

class QSStackView;

// Marks the stack's observations of its views' "hidden" flags; only its address matters.
extern void* CVContextHidden;

// Which axes follow the content (intrinsicContentSizeOptions, autoContentSizeOptions).
constexpr uint64_t QSStackViewContentSizeWidth = 1;
constexpr uint64_t QSStackViewContentSizeHeight = 2;

// The gravity of a view that is in none.
constexpr ns::StackViewGravity QSGravityNotFound = static_cast<ns::StackViewGravity>(ns::NotFound);

// Called with the stack and the view once a recorded show or hide has been applied.
using QSStackViewVisibilityBlock = std::function<void(QSStackView& stack, const ns::Ref<ns::View>& view)>;
// Called at the end of every stack's set-up.
using QSStackViewAwakeBlock = std::function<void(QSStackView& stack)>;
// Called once with the scroll view that a stack has just built around itself.
using QSScrollViewContainerAwakeBlock = std::function<void(ns::ScrollView& scrollView)>;

// A stack view that keeps hidden views in their places. For each gravity it keeps the observed
// list (every view given to it, hidden or not, in order) beside the base stack's placed list
// (the visible ones). It observes each observed view's hidden flag and, while applying, rebuilds
// that view's gravity at every change; while suspended it only records changes and applies them
// all at resume.
//
// Main thread only.
class QSStackView : public ns::StackView {
public:
    using ViewList = std::vector<ns::Ref<ns::View>>;

    explicit QSStackView(ns::Rect frame = {});
    ~QSStackView() override;
    static ns::Ref<QSStackView> make(ns::Rect frame = {}) { return ns::create<QSStackView>(frame); }
    void didInit() override;

    // --- Class level --------------------------------------------------------------------------
    // One slot for the class and all subclasses; the callback is copied.
    static void setAwakeBlock(QSStackViewAwakeBlock block);
    static QSStackViewAwakeBlock awakeBlock();
    static void setScrollViewContainerAwakeBlock(QSScrollViewContainerAwakeBlock block);
    static QSScrollViewContainerAwakeBlock scrollViewContainerAwakeBlock();

    // A new stack with the (possibly nested) views in gravity 1.
    static ns::Ref<QSStackView> stackViewWithViews(const ns::Array& views);
    // A new stack with the (possibly nested) views in the gravity; the other gravities are empty.
    static ns::Ref<QSStackView> stackViewWithViews(const ns::Array& views, ns::StackViewGravity gravity);
    // The views of the list and of its nested lists, depth first, in order. Anything else is
    // logged ("Cannot flatten this : %@") and skipped.
    static ViewList flattenViews(const ns::Array& views);

    // --- Visibility ---------------------------------------------------------------------------
    // Places the visible members of the list and applies the recorded changes of its views.
    void setVisibleViews(const ViewList& views, ns::StackViewGravity gravity);
    // Replaces the gravity's observed list; observations follow, placed and pending lists don't.
    void setObservedViews(const ViewList& views, ns::StackViewGravity gravity);
    // The gravity's observed list itself, or nullptr when the gravity was never given views.
    ViewList* observedViewsInGravity(ns::StackViewGravity gravity);
    ViewList* allViewsInGravity(ns::StackViewGravity gravity) { return observedViewsInGravity(gravity); }
    // The observed lists of gravities 1, 2 and 3, joined.
    ViewList allViews() const;
    void showViews(const ViewList& views);
    void hideViews(const ViewList& views);
    // On the gravity's placed list: hidden views of the gravity stay hidden.
    void showViewsInGravity(ns::StackViewGravity gravity);
    void hideViewsInGravity(ns::StackViewGravity gravity);
    // The first gravity whose observed (respectively placed) list holds the view, or
    // QSGravityNotFound.
    ns::StackViewGravity gravityForObservedView(const ns::Ref<ns::View>& view) const;
    ns::StackViewGravity gravityForView(const ns::Ref<ns::View>& view) const;
    // A flag, not a counter: one resume ends any number of suspends.
    void suspendAutoLayoutWhenSubviewVisibilityChanges();
    void resumeAutoLayoutWhenSubviewVisibilityChanges();

    bool doLayout() const { return m_doLayout; }
    const ViewList& pendingVisibleViews() const { return m_pendingVisible; }
    const ViewList& pendingHiddenViews() const { return m_pendingHidden; }
    const QSStackViewVisibilityBlock& onBoundViewVisible() const { return m_onVisible; }
    void setOnBoundViewVisible(QSStackViewVisibilityBlock block) { m_onVisible = std::move(block); }
    const QSStackViewVisibilityBlock& onBoundViewHidden() const { return m_onHidden; }
    void setOnBoundViewHidden(QSStackViewVisibilityBlock block) { m_onHidden = std::move(block); }

    // --- Observation --------------------------------------------------------------------------
    void addViewObservation(const ns::Ref<ns::View>& view);
    // Removing an observation that is not there does nothing.
    void removeViewObservation(const ns::Ref<ns::View>& view);
    void addViewObservations(const ViewList* views);
    void removeViewObservations(const ViewList* views);
    void removeAllViewObservations();
    void observeValueForKeyPath(const std::string& keyPath, ns::Object* object, const ns::Dictionary& change,
                                void* context) override;

    // --- Membership ---------------------------------------------------------------------------
    // Nil views are ignored by all of these.
    void setViews(const ViewList& views, ns::StackViewGravity gravity) override;
    void addView(const ns::Ref<ns::View>& view, ns::StackViewGravity gravity) override;
    void addViews(const ns::Array& views, ns::StackViewGravity gravity);
    // The index counts the gravity's placed (visible) views; a larger one appends.
    void insertView(const ns::Ref<ns::View>& view, uint64_t index, ns::StackViewGravity gravity) override;
    // A view in no observed list is logged ("View not found in stack.") and left alone.
    void removeView(const ns::Ref<ns::View>& view) override;
    void removeViews(const ViewList& views);
    void removeAllViews();
    // The observed-list half of an insertion: the view goes in front of the visible view that
    // has the index among the gravity's visible views, or to the end (ns::NotFound, or no match).
    void commitView(const ns::Ref<ns::View>& view, uint64_t index, ns::StackViewGravity gravity);

    // --- Content size -------------------------------------------------------------------------
    ns::Size intrinsicContentSize() const override;
    uint64_t intrinsicContentSizeOptions() const { return m_intrinsicOptions; }
    void setIntrinsicContentSizeOptions(uint64_t options);
    uint64_t autoContentSizeOptions() const { return m_autoOptions; }
    void setAutoContentSizeOptions(uint64_t options);
    // Asks for the intrinsic size again and remakes the content-size constraints.
    void invalidateContentSize();
    void updateAutoContentSizeConstraints();
    const ns::Ref<ns::LayoutConstraint>& autoContentHeightConstraint() const { return m_autoHeight; }
    const ns::Ref<ns::LayoutConstraint>& autoContentWidthConstraint() const { return m_autoWidth; }

    // --- Scroll container and background ------------------------------------------------------
    // Built at the first call; later calls answer the enclosing scroll view (nil once the stack
    // has left it). The caller puts the scroll view into its tree.
    ns::Ref<ns::ScrollView> scrollViewContainer();
    bool scrollViewAllocated() const { return m_scrollViewAllocated; }
    const std::vector<ns::Ref<ns::LayoutConstraint>>& stackViewConstraints() const {
        return m_stackViewConstraints;
    }
    bool wantsUpdateLayer() const { return true; }
    // Fills the layer with the background colour, when there is one.
    void updateLayer();
    const ns::Ref<ns::Color>& backgroundColor() const { return m_backgroundColor; }
    // Only stores the colour; the layer takes it at its next update.
    void setBackgroundColor(ns::Ref<ns::Color> color) { m_backgroundColor = std::move(color); }
    void layout() override;

    std::string description() const override;

private:
    void applyPending(const ns::Ref<ns::View>& view);

    std::map<int64_t, ViewList> m_observed;
    ViewList m_pendingVisible;
    ViewList m_pendingHidden;
    bool m_doLayout = true;
    QSStackViewVisibilityBlock m_onVisible;
    QSStackViewVisibilityBlock m_onHidden;
    uint64_t m_intrinsicOptions = 0;
    uint64_t m_autoOptions = 0;
    ns::Ref<ns::LayoutConstraint> m_autoHeight;
    ns::Ref<ns::LayoutConstraint> m_autoWidth;
    std::vector<ns::Ref<ns::LayoutConstraint>> m_stackViewConstraints;
    bool m_scrollViewAllocated = false;
    ns::Ref<ns::Color> m_backgroundColor;
};

} // namespace corvane
