#pragma once

#include "platform/views/View.hpp"

#include <array>
#include <cfloat>
#include <map>
#include <unordered_map>

namespace ns {

enum class StackViewGravity : int64_t { Top = 1, Leading = 1, Center = 2, Bottom = 3, Trailing = 3 };

enum class UserInterfaceLayoutOrientation : int64_t { Horizontal = 0, Vertical = 1 };

// The spacing value that means "use the stack's spacing".
constexpr double StackViewSpacingUseDefault = FLT_MAX;

// Arranges the views it holds in a row or a column of three gravity areas (top or leading,
// centre, bottom or trailing) by constraints of its own, which it remakes whenever its views or
// settings change. It lays out every view it holds, hidden or not.
class StackView : public View {
public:
    explicit StackView(Rect frame = {}) : View(frame) {}
    static Ref<StackView> make(Rect frame = {}) { return create<StackView>(frame); }

    // A new stack of class T holding the views in the top (leading) gravity, placed through the
    // virtual setViews so that subclasses see the insertion.
    template <class T = StackView>
    static Ref<T> stackViewWithViews(const std::vector<Ref<View>>& views) {
        Ref<T> stack = T::make(Rect{});
        stack->setViews(views, StackViewGravity::Top);
        return stack;
    }

    // --- Views --------------------------------------------------------------------------------
    // Every placed view, top (leading) gravity first.
    std::vector<Ref<View>> views() const;
    // A snapshot of one gravity's views; later changes do not alter it.
    std::vector<Ref<View>> viewsInGravity(StackViewGravity gravity) const;
    // Replaces the gravity's views; views that end up in no gravity leave the stack.
    virtual void setViews(const std::vector<Ref<View>>& views, StackViewGravity gravity);
    // Appends through insertView.
    virtual void addView(const Ref<View>& view, StackViewGravity gravity);
    // Inserts at the index (clamped to the gravity's count); nil is ignored.
    virtual void insertView(const Ref<View>& view, uint64_t index, StackViewGravity gravity);
    // Takes the view out of whichever gravity holds it; a view the stack does not hold is ignored.
    virtual void removeView(const Ref<View>& view);

    // --- Arrangement settings -----------------------------------------------------------------
    UserInterfaceLayoutOrientation orientation() const { return m_orientation; }
    void setOrientation(UserInterfaceLayoutOrientation orientation);
    // Perpendicular alignment: Leading/Left, Trailing/Right, CenterX or Width (fill) for a column;
    // Top, Bottom, CenterY or Height for a row. The default is the centre.
    LayoutAttribute alignment() const { return m_alignment; }
    void setAlignment(LayoutAttribute alignment);
    double spacing() const { return m_spacing; }
    void setSpacing(double spacing);
    EdgeInsets edgeInsets() const { return m_edgeInsets; }
    void setEdgeInsets(EdgeInsets insets);
    // The spacing after the view, or StackViewSpacingUseDefault when none was set.
    double customSpacingAfterView(const Ref<View>& view) const;
    void setCustomSpacing(double spacing, const Ref<View>& afterView);
    // How strongly the stack hugs its content, and resists being made smaller than it.
    LayoutPriority huggingPriority(LayoutConstraintOrientation orientation) const;
    void setHuggingPriority(LayoutPriority priority, LayoutConstraintOrientation orientation);
    LayoutPriority clippingResistancePriority(LayoutConstraintOrientation orientation) const;
    void setClippingResistancePriority(LayoutPriority priority, LayoutConstraintOrientation orientation);

    // The constraints the stack made for its arrangement (a subset of constraints()).
    const std::vector<Ref<LayoutConstraint>>& arrangementConstraints() const { return m_arrangement; }

private:
    std::vector<Ref<View>>& gravityList(StackViewGravity gravity);
    const std::vector<Ref<View>>* findGravityList(StackViewGravity gravity) const;
    bool holds(const View* view) const;
    void adopt(const Ref<View>& view);
    void releaseIfUnheld(const Ref<View>& view);
    void rearrange();

    std::array<std::vector<Ref<View>>, 3> m_gravities;
    // Which gravity holds each view, so that membership questions do not search the lists.
    std::unordered_map<const View*, StackViewGravity> m_gravityOf;
    std::vector<Ref<LayoutConstraint>> m_arrangement;
    Ref<View> m_centreGuide; // spans the centre area; constraints hold their items only weakly
    UserInterfaceLayoutOrientation m_orientation = UserInterfaceLayoutOrientation::Horizontal;
    LayoutAttribute m_alignment = LayoutAttribute::CenterY;
    double m_spacing = 8;
    EdgeInsets m_edgeInsets;
    std::map<const View*, double> m_customSpacing;
    LayoutPriority m_hugging[2] = {LayoutPriorityDefaultLow, LayoutPriorityDefaultLow};
    LayoutPriority m_clippingResistance[2] = {LayoutPriorityRequired, LayoutPriorityRequired};
};

} // namespace ns
