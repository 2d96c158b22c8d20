#pragma once

#include "platform/graphics/Geometry.hpp"
#include "platform/layout/LayoutConstraint.hpp"
#include "platform/views/Responder.hpp"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ns {

class Appearance;
class BitmapImageRep;
class ConstraintLayoutEngine;
class GraphicsContext;
class Layer;
class ScrollView;
class Window;

constexpr double ViewNoIntrinsicMetric = -1;
constexpr double ViewNoInstrinsicMetric = ViewNoIntrinsicMetric;

// A rectangle in a window's view tree. Its frame is in its superview's coordinates; its origin
// is the lower-left corner unless the superview is flipped.
class View : public Responder {
public:
    explicit View(Rect frame = {});
    ~View() override;
    static Ref<View> make(Rect frame = {}) { return create<View>(frame); }

    // --- Geometry -----------------------------------------------------------------------------
    Rect frame() const { return m_frame; }
    virtual void setFrame(Rect frame);
    void setFrameSize(Size size) { setFrame({m_frame.origin, size}); }
    void setFrameOrigin(Point origin) { setFrame({origin, m_frame.size}); }
    // The view's own coordinate rectangle: its size, at the bounds origin (a clip view moves the
    // origin to scroll its document).
    Rect bounds() const { return {m_boundsOrigin, m_frame.size}; }
    void setBoundsOrigin(Point origin);
    virtual bool isFlipped() const { return false; }

    // --- Tree -------------------------------------------------------------------------------
    Ref<View> superview() const { return m_superview.lock(); }
    const std::vector<Ref<View>>& subviews() const { return m_subviews; }
    // Adds at the end; a view with another superview is taken out of it first.
    void addSubview(const Ref<View>& view);
    void removeFromSuperview();
    bool isDescendantOf(const View& view) const;
    // The nearest scroll view above this view, or nil.
    Ref<ScrollView> enclosingScrollView() const;
    virtual void viewWillMoveToSuperview(const Ref<View>&) {}
    virtual void viewDidMoveToSuperview() {}
    // The window of the tree's root, or nil.
    Ref<Window> window() const;
    // Set by the window on its content view.
    void setWindow(const Ref<Window>& window) { m_window = window; }

    // --- Identity and state -------------------------------------------------------------------
    const std::optional<std::string>& identifier() const { return m_identifier; }
    void setIdentifier(std::optional<std::string> identifier) { m_identifier = std::move(identifier); }
    virtual int64_t tag() const { return -1; }
    bool isHidden() const { return m_hidden; }
    // Observable; announces every call, changed or not.
    void setHidden(bool hidden);
    bool isHiddenOrHasHiddenAncestor() const;

    // --- Constraints --------------------------------------------------------------------------
    const std::vector<Ref<LayoutConstraint>>& constraints() const { return m_constraints; }
    void addConstraint(const Ref<LayoutConstraint>& constraint);
    void addConstraints(const std::vector<Ref<LayoutConstraint>>& constraints);
    // Removing a constraint the view does not hold does nothing.
    void removeConstraint(const Ref<LayoutConstraint>& constraint);
    void removeConstraints(const std::vector<Ref<LayoutConstraint>>& constraints);
    bool translatesAutoresizingMaskIntoConstraints() const { return m_translatesAutoresizingMask; }
    void setTranslatesAutoresizingMaskIntoConstraints(bool translates);

    // --- Intrinsic size -----------------------------------------------------------------------
    // The size the content wants; ViewNoIntrinsicMetric along an axis that has none.
    virtual Size intrinsicContentSize() const { return {ViewNoIntrinsicMetric, ViewNoIntrinsicMetric}; }
    // Asks the next layout pass to read intrinsicContentSize again.
    virtual void invalidateIntrinsicContentSize();
    LayoutPriority contentHuggingPriority(LayoutConstraintOrientation orientation) const;
    void setContentHuggingPriority(LayoutPriority priority, LayoutConstraintOrientation orientation);
    LayoutPriority contentCompressionResistancePriority(LayoutConstraintOrientation orientation) const;
    void setContentCompressionResistancePriority(LayoutPriority priority,
                                                 LayoutConstraintOrientation orientation);

    // Distances of the text baselines from the top and the bottom edge (0 for views without text).
    virtual double firstBaselineOffsetFromTop() const { return 0; }
    virtual double lastBaselineOffsetFromBottom() const { return 0; }

    // --- Layout pass --------------------------------------------------------------------------
    // Places the subviews that are laid out by constraints. Subclasses that override it call
    // the base, and may call it again after changing constraints.
    virtual void layout();
    // Lays out the whole tree of this view's root, top down, where layout is needed.
    void layoutSubtreeIfNeeded();
    // The smallest size that satisfies the constraints inside this view's subtree.
    Size fittingSize();
    // The constraints that decide the view's position or size along the orientation.
    std::vector<Ref<LayoutConstraint>>
    constraintsAffectingLayoutForOrientation(LayoutConstraintOrientation orientation);
    // Sets the frame that layout computed; a size change asks for layout of the view itself.
    void setFrameFromLayout(Rect frame);

    // --- Appearance and drawing ----------------------------------------------------------------
    const Ref<Appearance>& appearance() const { return m_appearance; }
    void setAppearance(Ref<Appearance> appearance);
    // The view's own appearance, else its nearest ancestor's, else the application's.
    Ref<Appearance> effectiveAppearance() const;
    // Draws the view's own content; the current context is in the view's coordinates (flipped
    // when the view is) and clipped to its bounds.
    virtual void drawRect(Rect dirtyRect);
    virtual bool isOpaque() const { return false; }
    bool wantsLayer() const { return m_layer != nullptr; }
    void setWantsLayer(bool wantsLayer);
    // The backing layer of a view that wants one, else nil.
    const Ref<Layer>& layer() const { return m_layer; }
    // Draws the view and its visible subviews in the current context, whose user space must be
    // this view's coordinate system.
    void displayRectIgnoringOpacity(Rect rect);
    // A new bitmap of the view's bounds (one pixel per point) with the view tree drawn in it.
    Ref<BitmapImageRep> renderedBitmap();
    // Draws now what needs display (the platform has no screen to refresh).
    void display();

    // --- Layout and display requests ----------------------------------------------------------
    bool needsLayout() const { return m_needsLayout; }
    void setNeedsLayout(bool needsLayout);
    bool needsDisplay() const { return m_needsDisplay; }
    void setNeedsDisplay(bool needsDisplay);
    // How often layout and display were asked for since the view was made (for tests and tools).
    uint64_t layoutRequestCount() const { return m_layoutRequests; }
    uint64_t displayRequestCount() const { return m_displayRequests; }

    const KeyTable& keyTable() const override;

private:
    View* root();
    ConstraintLayoutEngine* engine();
    // Tells the tree's engine that what it gathers has changed.
    void invalidateLayoutEngine();
    void drawSubtree(GraphicsContext& context);

    Rect m_frame;
    Point m_boundsOrigin;
    WeakRef<Window> m_window;
    Ref<Appearance> m_appearance;
    Ref<Layer> m_layer;
    std::unique_ptr<ConstraintLayoutEngine> m_layoutEngine; // only on a root that was laid out
    bool m_applyingLayout = false;
    WeakRef<View> m_superview;
    std::vector<Ref<View>> m_subviews;
    std::optional<std::string> m_identifier;
    bool m_hidden = false;
    bool m_translatesAutoresizingMask = true;
    std::vector<Ref<LayoutConstraint>> m_constraints;
    LayoutPriority m_hugging[2] = {LayoutPriorityDefaultLow, LayoutPriorityDefaultLow};
    LayoutPriority m_compressionResistance[2] = {LayoutPriorityDefaultHigh, LayoutPriorityDefaultHigh};
    bool m_needsLayout = false;
    bool m_needsDisplay = false;
    uint64_t m_layoutRequests = 0;
    uint64_t m_displayRequests = 0;
};

} // namespace ns
