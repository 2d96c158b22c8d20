#include "kit/Categories/NSView+Utility.hpp"

#include "kit/Categories/NSAppearance+Corvane.hpp"
#include "kit/Views/CVContentView.hpp"
#include "platform/foundation/Log.hpp"
#include "platform/graphics/Appearance.hpp"
#include "platform/graphics/AttributedString.hpp"
#include "platform/graphics/Color.hpp"
#include "platform/graphics/Font.hpp"
#include "platform/graphics/PlatformVersion.hpp"

namespace corvane {

namespace {

using ns::LayoutAttribute;
using ns::LayoutRelation;
using Constraint = ns::Ref<ns::LayoutConstraint>;

ns::Ref<ns::View> refOf(ns::View& view) {
    return std::static_pointer_cast<ns::View>(view.shared_from_this());
}

// view.attribute <relation> constant, on the view alone.
Constraint addSizeConstraint(ns::View& view, LayoutAttribute attribute, LayoutRelation relation,
                             double constant, float priority = ns::LayoutPriorityRequired) {
    auto constraint = ns::LayoutConstraint::constraintWithItem(
        refOf(view), attribute, relation, nullptr, LayoutAttribute::NotAnAttribute, 1.0, constant);
    constraint->setPriority(priority);
    view.addConstraint(constraint);
    return constraint;
}

void addVisualFormat(ns::View& container, std::string_view format, const ns::Dictionary& metrics,
                     const ns::Dictionary& views) {
    container.addConstraints(ns::LayoutConstraint::constraintsWithVisualFormat(format, 0, metrics, views));
}

// The placement constraints of a flags mask, in the order they are made.
struct FlagPlacement {
    QSConstraintFlags flag;
    LayoutAttribute attribute;
    double constant;
};
constexpr FlagPlacement flagPlacements[] = {
    {QSConstraintFlagCenterX, LayoutAttribute::CenterX, 0},
    {QSConstraintFlagCenterY, LayoutAttribute::CenterY, 0},
    {QSConstraintFlagTop20, LayoutAttribute::Top, 20},
    {QSConstraintFlagRight20, LayoutAttribute::Right, 20},
    {QSConstraintFlagBottom20, LayoutAttribute::Bottom, 20},
    {QSConstraintFlagLeft20, LayoutAttribute::Left, 20},
    {QSConstraintFlagTop, LayoutAttribute::Top, 0},
    {QSConstraintFlagRight, LayoutAttribute::Right, 0},
    {QSConstraintFlagBottom, LayoutAttribute::Bottom, 0},
    {QSConstraintFlagLeft, LayoutAttribute::Left, 0},
};

ns::Ref<ns::TextField> makeLabel(const ns::Dictionary& options) {
    const ns::Rect frame{{0, 0}, {100, 20}};
    auto option = options.find("textFieldClass");
    if (option == options.end())
        return ns::TextField::make(frame);
    auto cls = option->second.classValue();
    auto label = cls ? std::dynamic_pointer_cast<ns::TextField>(cls->instantiate()) : nullptr;
    if (!label) {
        ns::Log("qs_addSubviewWithMessage: %@ does not make text fields; a plain text field is used",
                option->second);
        return ns::TextField::make(frame);
    }
    label->setFrame(frame);
    return label;
}

void setLabelText(ns::TextField& label, const ns::Value& message) {
    if (message.isString())
        label.setStringValue(message.stringValue());
    else if (auto text = message.objectAs<ns::AttributedString>())
        label.setAttributedStringValue(text);
    else
        label.setStringValue(message.description());
}

void applyLabelOptions(ns::TextField& label, const ns::Dictionary& options) {
    if (auto it = options.find("bezeled"); it != options.end())
        label.setBezeled(it->second.boolValue());
    if (auto it = options.find("backgroundColor"); it != options.end())
        label.setBackgroundColor(it->second.objectAs<ns::Color>());
    if (auto it = options.find("textColor"); it != options.end())
        label.setTextColor(it->second.objectAs<ns::Color>());
    if (auto it = options.find("font"); it != options.end())
        label.setFont(it->second.objectAs<ns::Font>());
    if (auto it = options.find("alignment"); it != options.end())
        label.setAlignment(static_cast<ns::TextAlignment>(it->second.integerValue()));
}

// Each neighbour equal to the next in the attribute, at priority 750.
void chainEqual(ns::View& container, const std::vector<ns::Ref<ns::View>>& views, LayoutAttribute attribute) {
    if (views.size() < 2)
        return;
    for (size_t i = 0; i + 1 < views.size(); ++i) {
        auto constraint = ns::LayoutConstraint::constraintWithItem(views[i], attribute, LayoutRelation::Equal,
                                                                   views[i + 1], attribute, 1.0, 0);
        constraint->setPriority(ns::LayoutPriorityDefaultHigh);
        container.addConstraint(constraint);
    }
}

ns::Ref<CVContentView> wrap(ns::Ref<CVContentView> container, ns::View& view, ns::EdgeInsets edgeInsets) {
    addSubview(*container, refOf(view), edgeInsets);
    return container;
}

} // namespace

bool cv_isDarkMode(const ns::View& view) {
    if (!ns::platformHasDarkAppearance())
        return false;
    auto appearance = view.effectiveAppearance();
    return appearance && cv_isDarkMode(*appearance);
}

ns::Ref<CVContentView> qs_containerViewWithEdgeInsets(ns::View& view, ns::EdgeInsets edgeInsets) {
    return wrap(CVContentView::make(view.frame()), view, edgeInsets);
}

ns::Ref<CVContentView> qs_lightContainerViewWithEdgeInsets(ns::View& view, ns::EdgeInsets edgeInsets) {
    return wrap(CVLightContentView::make(view.frame()), view, edgeInsets);
}

bool qs_visible(const ns::View& view) {
    return !view.isHidden();
}

void setQs_visible(ns::View& view, bool visible) {
    view.setHidden(!visible);
}

ns::Ref<ns::View> viewWithConstrainedHeight(double height) {
    auto view = ns::View::make();
    addHeightConstraintWithConstant(*view, height);
    return view;
}

void addSubview(ns::View& container, const ns::Ref<ns::View>& subview, ns::EdgeInsets edgeInsets) {
    if (!subview)
        return;
    subview->setTranslatesAutoresizingMaskIntoConstraints(false);
    container.addSubview(subview);
    const ns::Dictionary views{{"subview", subview}};
    const ns::Dictionary metrics{{"top", edgeInsets.top},
                                 {"right", edgeInsets.right},
                                 {"bottom", edgeInsets.bottom},
                                 {"left", edgeInsets.left}};
    addVisualFormat(container, "H:|-left-[subview]-(right@990)-|", metrics, views);
    addVisualFormat(container, "V:|-top-[subview]-(bottom@990)-|", metrics, views);
}

void addSubviewWithUnitEdgeInsets(ns::View& container, const ns::Ref<ns::View>& subview) {
    addSubview(container, subview, ns::EdgeInsets{1.0, 1.0, 1.0, 1.0});
}

void addSubview(ns::View& container, const ns::Ref<ns::View>& subview, bool fillFrame, bool autoLayout) {
    if (!subview)
        return;
    if (fillFrame && !autoLayout) {
        subview->setFrame({{0, 0}, container.frame().size});
        subview->setTranslatesAutoresizingMaskIntoConstraints(true);
        container.addSubview(subview);
        return;
    }
    addSubview(container, subview, ns::EdgeInsets{});
}

void addSubview(ns::View& container, const ns::Ref<ns::View>& subview, QSConstraintFlags constraintFlags) {
    if (!subview)
        return;
    subview->setTranslatesAutoresizingMaskIntoConstraints(false);
    const ns::Size size = subview->frame().size;
    if (constraintFlags & QSConstraintFlagFixedWidth)
        addWidthConstraintWithConstant(*subview, size.width, ns::LayoutPriorityRequired);
    if (constraintFlags & QSConstraintFlagFixedHeight)
        addHeightConstraintWithConstant(*subview, size.height);
    container.addSubview(subview);
    for (const auto& placement : flagPlacements)
        if (constraintFlags & placement.flag)
            addEqualConstraintToSelfForItem(container, subview, placement.attribute, placement.constant);
}

ns::Ref<ns::TextField> qs_addSubviewWithMessage(ns::View& container, const ns::Value& message,
                                                QSConstraintFlags constraintFlags,
                                                const ns::Dictionary& options) {
    auto label = makeLabel(options);
    setLabelText(*label, message);
    label->setDrawsBackground(false);
    applyLabelOptions(*label, options);
    label->sizeToFit();
    label->setEditable(false);
    label->setBezeled(false);
    addSubview(container, label, constraintFlags);
    return label;
}

void constrainLeftRightWithinView(ns::View& view, ns::View& within, double constant) {
    auto item = refOf(view);
    addEqualConstraintToSelfForItem(within, item, LayoutAttribute::Left, constant);
    addEqualConstraintToSelfForItem(within, item, LayoutAttribute::Right, -constant);
}

ns::Ref<ns::View> qs_enclosingView(const ns::View& view, const ns::Ref<ns::Class>& cls) {
    if (!cls)
        return nullptr;
    for (auto ancestor = view.superview(); ancestor; ancestor = ancestor->superview())
        if (cls->isInstance(ancestor.get()))
            return ancestor;
    return nullptr;
}

Constraint addEqualConstraintToSelfForItem(ns::View& view, const ns::Ref<ns::View>& item,
                                           LayoutAttribute attribute, double constant) {
    auto constraint = ns::LayoutConstraint::constraintWithItem(item, attribute, LayoutRelation::Equal,
                                                               refOf(view), attribute, 1.0, constant);
    view.addConstraint(constraint);
    return constraint;
}

Constraint addHeightConstraintWithConstant(ns::View& view, double constant) {
    return addSizeConstraint(view, LayoutAttribute::Height, LayoutRelation::Equal, constant);
}

Constraint addHeightConstraintWithConstant(ns::View& view, double constant, float priority) {
    return addSizeConstraint(view, LayoutAttribute::Height, LayoutRelation::Equal, constant, priority);
}

Constraint addMinHeightConstraintWithConstant(ns::View& view, double constant) {
    return addMinHeightConstraintWithConstant(view, constant, ns::LayoutPriorityRequired);
}

Constraint addMinHeightConstraintWithConstant(ns::View& view, double constant, float priority) {
    return addSizeConstraint(view, LayoutAttribute::Height, LayoutRelation::GreaterThanOrEqual, constant,
                             priority);
}

Constraint addMaxHeightConstraintWithConstant(ns::View& view, double constant) {
    return addMaxHeightConstraintWithConstant(view, constant, ns::LayoutPriorityRequired);
}

Constraint addMaxHeightConstraintWithConstant(ns::View& view, double constant, float priority) {
    return addSizeConstraint(view, LayoutAttribute::Height, LayoutRelation::LessThanOrEqual, constant,
                             priority);
}

Constraint addWidthConstraintWithConstant(ns::View& view, double constant, float priority) {
    return addSizeConstraint(view, LayoutAttribute::Width, LayoutRelation::Equal, constant, priority);
}

Constraint addMinWidthConstraintWithConstant(ns::View& view, double constant) {
    return addSizeConstraint(view, LayoutAttribute::Width, LayoutRelation::GreaterThanOrEqual, constant);
}

Constraint addMaxWidthConstraintWithConstant(ns::View& view, double constant) {
    return addSizeConstraint(view, LayoutAttribute::Width, LayoutRelation::LessThanOrEqual, constant);
}

Constraint addAspectRatioConstraint(ns::View& view, double ratio) {
    auto self = refOf(view);
    auto constraint = ns::LayoutConstraint::constraintWithItem(
        self, LayoutAttribute::Height, LayoutRelation::Equal, self, LayoutAttribute::Width, ratio, 0);
    view.addConstraint(constraint);
    return constraint;
}

void addMinWidthHeightConstraintWithSize(ns::View& view, ns::Size size) {
    addMinHeightConstraintWithConstant(view, size.height);
    addMinWidthConstraintWithConstant(view, size.width);
}

void constrainSubviewsToWidthOfWidestSubview(ns::View& container,
                                             const std::vector<ns::Ref<ns::View>>& views) {
    ns::Ref<ns::View> widest;
    for (const auto& view : views)
        if (view && (!widest || view->frame().size.width > widest->frame().size.width))
            widest = view;
    if (!widest)
        return;
    for (const auto& view : views) {
        if (!view || view == widest)
            continue;
        container.addConstraint(ns::LayoutConstraint::constraintWithItem(
            view, LayoutAttribute::Width, LayoutRelation::Equal, widest, LayoutAttribute::Width, 1.0, 0));
    }
}

void qs_constrainSubviewsToEqualWidths(ns::View& container, const std::vector<ns::Ref<ns::View>>& views) {
    chainEqual(container, views, LayoutAttribute::Width);
}

void qs_constrainSubviewsToEqualHeights(ns::View& container, const std::vector<ns::Ref<ns::View>>& views) {
    chainEqual(container, views, LayoutAttribute::Height);
}

} // namespace corvane
