#pragma once

#include "platform/foundation/Class.hpp"
#include "platform/layout/LayoutConstraint.hpp"
#include "platform/views/TextField.hpp"
#include "platform/views/View.hpp"

#include <cstdint>
#include <vector>

// Constraint recipes that the kit's views and the application need over and over. Unless a
// comment says otherwise the first argument is the view that receives (and holds) the
// constraint. Nil views are tolerated: a recipe that needs a missing view makes nothing for it.
namespace corvane {

class CVContentView;

// Placement masks for addSubview(container, subview, constraintFlags). Other bits are ignored;
// bits that contradict each other both make their constraints.
using QSConstraintFlags = uint64_t;
constexpr QSConstraintFlags QSConstraintFlagFixedWidth = 0x1;
constexpr QSConstraintFlags QSConstraintFlagFixedHeight = 0x2;
constexpr QSConstraintFlags QSConstraintFlagCenterX = 0x4;
constexpr QSConstraintFlags QSConstraintFlagCenterY = 0x8;
constexpr QSConstraintFlags QSConstraintFlagTop20 = 0x10;
constexpr QSConstraintFlags QSConstraintFlagRight20 = 0x20;  // right edge 20 beyond the container's
constexpr QSConstraintFlags QSConstraintFlagBottom20 = 0x40; // bottom edge 20 beyond the container's
constexpr QSConstraintFlags QSConstraintFlagLeft20 = 0x80;
constexpr QSConstraintFlags QSConstraintFlagTop = 0x100;
constexpr QSConstraintFlags QSConstraintFlagRight = 0x200;
constexpr QSConstraintFlags QSConstraintFlagBottom = 0x400;
constexpr QSConstraintFlags QSConstraintFlagLeft = 0x800;

// --- Visibility ---------------------------------------------------------------------------------
// Whether the view's own hidden flag is off (ancestors are not consulted).
bool qs_visible(const ns::View& view);
void setQs_visible(ns::View& view, bool visible);

// Whether the view's effective appearance is dark; false below 10.14.
bool cv_isDarkMode(const ns::View& view);

// --- Wrapping in a content panel -------------------------------------------------------------------
// A new content panel with the view's frame, holding the view pinned by the insets (the view
// leaves its former superview). The light variant paints its fill colour.
ns::Ref<CVContentView> qs_containerViewWithEdgeInsets(ns::View& view, ns::EdgeInsets edgeInsets);
ns::Ref<CVContentView> qs_lightContainerViewWithEdgeInsets(ns::View& view, ns::EdgeInsets edgeInsets);

// --- Pinning and placing subviews -----------------------------------------------------------------
// A new plain view whose height is fixed by a required constraint.
ns::Ref<ns::View> viewWithConstrainedHeight(double height);

// Adds the subview and pins it inside the container: left and top at the insets (required),
// right and bottom at the insets with priority 990, so those give way first when the subview
// cannot fit. Nil subview: nothing.
void addSubview(ns::View& container, const ns::Ref<ns::View>& subview, ns::EdgeInsets edgeInsets);
void addSubviewWithUnitEdgeInsets(ns::View& container, const ns::Ref<ns::View>& subview);
// fillFrame without autoLayout: the subview takes the container's size at origin (0, 0) and keeps
// layout by frame. Any other combination pins it with zero insets.
void addSubview(ns::View& container, const ns::Ref<ns::View>& subview, bool fillFrame, bool autoLayout);
// Adds the subview and places it by the mask (see QSConstraintFlags). Nil subview: nothing.
void addSubview(ns::View& container, const ns::Ref<ns::View>& subview, QSConstraintFlags constraintFlags);

// Makes a label showing the message (a string, an attributed string, else the message's
// description), adds it to the container by the flags and returns it. Options, all optional:
// "textFieldClass" (a Class that makes text fields), "bezeled", "backgroundColor", "textColor",
// "font", "alignment". The label sizes itself before it loses its bezel, so "bezeled" only
// affects its size. A "textFieldClass" that cannot make a text field is logged and replaced by
// the plain text field.
ns::Ref<ns::TextField> qs_addSubviewWithMessage(ns::View& container, const ns::Value& message,
                                                QSConstraintFlags constraintFlags,
                                                const ns::Dictionary& options);

// Places `view` inside `within`: view.left = within.left + constant and view.right =
// within.right - constant, held by `within`.
void constrainLeftRightWithinView(ns::View& view, ns::View& within, double constant);

// --- Finding ------------------------------------------------------------------------------------
// The nearest ancestor (never the view itself) that is an instance of the class; nil if none.
ns::Ref<ns::View> qs_enclosingView(const ns::View& view, const ns::Ref<ns::Class>& cls);

// --- Single constraints: each is added to the view and returned -----------------------------------
// item.attribute = view.attribute + constant (the one recipe relating two items).
ns::Ref<ns::LayoutConstraint> addEqualConstraintToSelfForItem(ns::View& view, const ns::Ref<ns::View>& item,
                                                              ns::LayoutAttribute attribute, double constant);
ns::Ref<ns::LayoutConstraint> addHeightConstraintWithConstant(ns::View& view, double constant);
ns::Ref<ns::LayoutConstraint> addHeightConstraintWithConstant(ns::View& view, double constant,
                                                              float priority);
ns::Ref<ns::LayoutConstraint> addMinHeightConstraintWithConstant(ns::View& view, double constant);
ns::Ref<ns::LayoutConstraint> addMinHeightConstraintWithConstant(ns::View& view, double constant,
                                                                 float priority);
ns::Ref<ns::LayoutConstraint> addMaxHeightConstraintWithConstant(ns::View& view, double constant);
ns::Ref<ns::LayoutConstraint> addMaxHeightConstraintWithConstant(ns::View& view, double constant,
                                                                 float priority);
ns::Ref<ns::LayoutConstraint> addWidthConstraintWithConstant(ns::View& view, double constant, float priority);
ns::Ref<ns::LayoutConstraint> addMinWidthConstraintWithConstant(ns::View& view, double constant);
ns::Ref<ns::LayoutConstraint> addMaxWidthConstraintWithConstant(ns::View& view, double constant);
// view.height = view.width * ratio.
ns::Ref<ns::LayoutConstraint> addAspectRatioConstraint(ns::View& view, double ratio);
// A minimum height, then a minimum width, from the size.
void addMinWidthHeightConstraintWithSize(ns::View& view, ns::Size size);

// --- Constraints over several views, held by their common container -------------------------------
// Every view but the widest (by current frame; the first of equals) gets the widest one's width.
void constrainSubviewsToWidthOfWidestSubview(ns::View& container,
                                             const std::vector<ns::Ref<ns::View>>& views);
// Neighbours equal in width (height), at priority 750; fewer than two views make nothing.
void qs_constrainSubviewsToEqualWidths(ns::View& container, const std::vector<ns::Ref<ns::View>>& views);
void qs_constrainSubviewsToEqualHeights(ns::View& container, const std::vector<ns::Ref<ns::View>>& views);

} // namespace corvane
