#pragma once

#include "platform/graphics/Geometry.hpp"
#include "platform/layout/LayoutConstraint.hpp"
#include "platform/views/Responder.hpp"

#include <optional>
#include <string>
#include <vector>

namespace ns {

constexpr double ViewNoIntrinsicMetric = -1;
constexpr double ViewNoInstrinsicMetric = ViewNoIntrinsicMetric;

// A rectangle in a window's view tree. Its frame is in its superview's coordinates; its origin
// is the lower-left corner unless the superview is flipped.
class View : public Responder {
public:
    explicit View(Rect frame = {}) : m_frame(frame) {}
    static Ref<View> make(Rect frame = {}) { return create<View>(frame); }

    // --- Geometry -----------------------------------------------------------------------------
    Rect frame() const { return m_frame; }
    virtual void setFrame(Rect frame);
    void setFrameSize(Size size) { setFrame({m_frame.origin, size}); }
    void setFrameOrigin(Point origin) { setFrame({origin, m_frame.size}); }
    Rect bounds() const { return {{0, 0}, m_frame.size}; }
    virtual bool isFlipped() const { return false; }

    // --- Tree -------------------------------------------------------------------------------
    Ref<View> superview() const { return m_superview.lock(); }
    const std::vector<Ref<View>>& subviews() const { return m_subviews; }
    // Adds at the end; a view with another superview is taken out of it first.
    void addSubview(const Ref<View>& view);
    void removeFromSuperview();
    bool isDescendantOf(const View& view) const;
    virtual void viewWillMoveToSuperview(const Ref<View>&) {}
    virtual void viewDidMoveToSuperview() {}

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
    Rect m_frame;
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
