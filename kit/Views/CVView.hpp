#pragma once

#include "platform/foundation/Value.hpp"
#include "platform/layout/LayoutConstraint.hpp"
#include "platform/views/Event.hpp"
#include "platform/views/View.hpp"

#include <functional>

namespace corvane {

using CVKeyDownBlock = std::function<void(const ns::Ref<ns::Event>&)>;

// The base view of the kit's panels: named handles on the constraints that place its content
// (four offsets from its edges, a right-hand column's width, its height and width, horizontal
// centring), the offsets it was designed with, and a key-down callback. Any handle may be nil;
// the view makes none of them itself, except the width constraint of
// addFittingSizeWidthConstraint().
class CVView : public ns::View {
public:
    explicit CVView(ns::Rect frame = {}) : ns::View(frame) {}
    static ns::Ref<CVView> make(ns::Rect frame = {}) { return ns::create<CVView>(frame); }

    // Records the connected offsets as the design offsets; call once the offset constraints are
    // connected (an interface-file loader does so after connecting them).
    virtual void awakeFromNib();

    // The offsets in force: each connected offset constraint's constant, else the design value.
    ns::EdgeInsets offsetConstraintConstants() const;
    // Makes the insets the design offsets and applies them to the connected constraints.
    void setOffsetConstraintConstants(ns::EdgeInsets insets);
    // Four values set top, left, bottom and right; two set top and bottom; any other count
    // changes nothing. Values are read as numbers (strings included). The design offsets stay.
    // Layout is asked for in every case.
    void updateOffsetConstraintConstants(const ns::Array& values);

    // Replaces the width constraint by one fixing the width at the fitting width, priority 900.
    void addFittingSizeWidthConstraint();

    // The callback sees every key-down first; the event then goes on as usual.
    void keyDown(const ns::Ref<ns::Event>& event) override;

    const ns::Ref<ns::LayoutConstraint>& topOffsetConstraint() const { return m_topOffset; }
    void setTopOffsetConstraint(ns::Ref<ns::LayoutConstraint> c) { m_topOffset = std::move(c); }
    const ns::Ref<ns::LayoutConstraint>& leftOffsetConstraint() const { return m_leftOffset; }
    void setLeftOffsetConstraint(ns::Ref<ns::LayoutConstraint> c) { m_leftOffset = std::move(c); }
    const ns::Ref<ns::LayoutConstraint>& bottomOffsetConstraint() const { return m_bottomOffset; }
    void setBottomOffsetConstraint(ns::Ref<ns::LayoutConstraint> c) { m_bottomOffset = std::move(c); }
    const ns::Ref<ns::LayoutConstraint>& rightOffsetConstraint() const { return m_rightOffset; }
    void setRightOffsetConstraint(ns::Ref<ns::LayoutConstraint> c) { m_rightOffset = std::move(c); }
    const ns::Ref<ns::LayoutConstraint>& rightColumnConstraint() const { return m_rightColumn; }
    void setRightColumnConstraint(ns::Ref<ns::LayoutConstraint> c) { m_rightColumn = std::move(c); }
    const ns::Ref<ns::LayoutConstraint>& heightConstraint() const { return m_height; }
    void setHeightConstraint(ns::Ref<ns::LayoutConstraint> c) { m_height = std::move(c); }
    const ns::Ref<ns::LayoutConstraint>& widthConstraint() const { return m_width; }
    void setWidthConstraint(ns::Ref<ns::LayoutConstraint> c) { m_width = std::move(c); }
    const ns::Ref<ns::LayoutConstraint>& centreXConstraint() const { return m_centreX; }
    void setCentreXConstraint(ns::Ref<ns::LayoutConstraint> c) { m_centreX = std::move(c); }

    const CVKeyDownBlock& onKeyDown() const { return m_onKeyDown; }
    void setOnKeyDown(CVKeyDownBlock block) { m_onKeyDown = std::move(block); }

    ns::EdgeInsets offsetConstraintConstantsBase() const { return m_offsetBase; }
    void setOffsetConstraintConstantsBase(ns::EdgeInsets insets) { m_offsetBase = insets; }

private:
    ns::Ref<ns::LayoutConstraint> m_topOffset;
    ns::Ref<ns::LayoutConstraint> m_leftOffset;
    ns::Ref<ns::LayoutConstraint> m_bottomOffset;
    ns::Ref<ns::LayoutConstraint> m_rightOffset;
    ns::Ref<ns::LayoutConstraint> m_rightColumn;
    ns::Ref<ns::LayoutConstraint> m_height;
    ns::Ref<ns::LayoutConstraint> m_width;
    ns::Ref<ns::LayoutConstraint> m_centreX;
    CVKeyDownBlock m_onKeyDown;
    ns::EdgeInsets m_offsetBase;
};

} // namespace corvane
