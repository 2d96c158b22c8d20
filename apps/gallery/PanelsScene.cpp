// Content panels styled by statement strings, then swatches of the application palette and of
// the crayons. Colours that follow the appearance change between the light and the dark picture.
#include "apps/gallery/Gallery.hpp"

#include "kit/CorvaneUIKit.hpp"
#include "platform/graphics/ColorList.hpp"
#include "platform/graphics/Font.hpp"
#include "platform/views/StackView.hpp"
#include "platform/views/TextField.hpp"

namespace {

using corvane::CVContentView;
using ns::LayoutAttribute;

// A panel whose caption is held by four offset constraints, so "tlbr:" can move it, and which
// also understands "gradient": a subclass adds statements by extending the table.
class CaptionPanel : public CVContentView {
public:
    using CVContentView::CVContentView;
    static ns::Ref<CaptionPanel> make() { return ns::create<CaptionPanel>(ns::Rect{0, 0, 240, 60}); }

    void setCaption(const std::string& text) {
        auto label = ns::TextField::labelWithString(text);
        label->setFont(ns::Font::userFixedPitchFontOfSize(10));
        label->setTranslatesAutoresizingMaskIntoConstraints(false);
        addSubview(label);
        using A = LayoutAttribute;
        setTopOffsetConstraint(corvane::addEqualConstraintToSelfForItem(*this, label, A::Top, 8));
        setLeftOffsetConstraint(corvane::addEqualConstraintToSelfForItem(*this, label, A::Left, 10));
        auto bottom = ns::LayoutConstraint::constraintWithItem(
            self<ns::View>(), A::Bottom, ns::LayoutRelation::Equal, label, A::Bottom, 1, 8);
        auto right = ns::LayoutConstraint::constraintWithItem(
            self<ns::View>(), A::Right, ns::LayoutRelation::GreaterThanOrEqual, label, A::Right, 1, 10);
        addConstraints({bottom, right});
        setBottomOffsetConstraint(bottom);
        setRightOffsetConstraint(right);
    }

protected:
    // The gradient's ends follow the appearance, replacing the class's light greys.
    ns::Ref<ns::Color> classStartColor() const override {
        return corvane::CVDynamicColor::newWithAquaColor(CVContentView::classStartColor(),
                                                         ns::Color::colorWithCalibratedWhite(0.16, 1));
    }
    ns::Ref<ns::Color> classEndColor() const override {
        return corvane::CVDynamicColor::newWithAquaColor(CVContentView::classEndColor(),
                                                         ns::Color::colorWithCalibratedWhite(0.3, 1));
    }

    const ns::Dictionary& classStylingDefinitions() const override {
        static const ns::Dictionary table = [] {
            ns::Dictionary definitions = stylingDefinitions();
            definitions["gradient"] =
                corvane::CVUIStyler::definition([](corvane::CVUIStyler&, const ns::Ref<ns::Object>& target) {
                    if (auto panel = std::dynamic_pointer_cast<CVContentView>(target))
                        panel->setFillStyle(corvane::CVFillStyleGradient);
                });
            return definitions;
        }();
        return table;
    }
};

ns::Ref<ns::View> styledPanel(const std::string& statements) {
    auto panel = CaptionPanel::make();
    // Wide enough for most captions; a caption moved far in widens its panel.
    corvane::addMinWidthConstraintWithConstant(*panel, 420);
    panel->setCaption(statements);
    panel->styleAs(statements);
    return panel;
}

ns::Ref<ns::StackView> stackOf(const std::vector<ns::Ref<ns::View>>& views, bool vertical, double spacing) {
    auto stack = ns::StackView::stackViewWithViews(views);
    stack->setOrientation(vertical ? ns::UserInterfaceLayoutOrientation::Vertical
                                   : ns::UserInterfaceLayoutOrientation::Horizontal);
    stack->setAlignment(vertical ? LayoutAttribute::Leading : LayoutAttribute::Top);
    stack->setSpacing(spacing);
    return stack;
}

ns::Ref<ns::View> heading(const std::string& text) {
    auto label = ns::TextField::labelWithString(text);
    label->setFont(ns::Font::boldSystemFontOfSize(13));
    return label;
}

// A bordered chip of the colour above its name.
ns::Ref<ns::View> swatch(const std::string& name, const ns::Ref<ns::Color>& color, double labelWidth) {
    auto chip = corvane::CVLightContentView::make({0, 0, 64, 26});
    chip->setFillColor(color);
    chip->setHasBorder(true);
    corvane::addWidthConstraintWithConstant(*chip, 64, 1000);
    corvane::addHeightConstraintWithConstant(*chip, 26);
    auto label = ns::TextField::labelWithString(name);
    label->setFont(ns::Font::systemFontOfSize(9));
    corvane::addWidthConstraintWithConstant(*label, labelWidth, 1000);
    return stackOf({chip, label}, true, 2);
}

ns::Ref<ns::View> swatchGrid(const std::vector<std::pair<std::string, ns::Ref<ns::Color>>>& colors,
                             size_t perRow, double labelWidth) {
    std::vector<ns::Ref<ns::View>> rows;
    for (size_t start = 0; start < colors.size(); start += perRow) {
        std::vector<ns::Ref<ns::View>> row;
        for (size_t i = start; i < std::min(colors.size(), start + perRow); ++i)
            row.push_back(swatch(colors[i].first, colors[i].second, labelWidth));
        rows.push_back(stackOf(row, false, 4));
    }
    return stackOf(rows, true, 8);
}

std::vector<std::pair<std::string, ns::Ref<ns::Color>>> paletteColors() {
    static const char* const names[] = {"cv_appColor",
                                        "cv_appLabelColor",
                                        "cv_appMessageColor",
                                        "cv_warnTextColor",
                                        "cv_borderColor",
                                        "controlBackgroundColor",
                                        "cv_altControlBackgroundColor",
                                        "cv_notificationBackgroundColor",
                                        "cv_helpTipBackgroundColor",
                                        "cv_stateConfirmedBackgroundColor",
                                        "cv_payslipDarkGridColor",
                                        "cv_payslipLightGridColor",
                                        "cv_errorBackgroundColor",
                                        "cv_confirmationBackgroundColor",
                                        "cv_benefitLetterBackgroundColor",
                                        "cv_lightGrey",
                                        "cv_paleBlue",
                                        "cv_darkBlue",
                                        "cv_green",
                                        "cv_oliveGreen",
                                        "cv_pastelRed",
                                        "cv_pastelOrange",
                                        "cv_pastelYellow",
                                        "cv_pastelGreen",
                                        "cv_pastelBlue",
                                        "cv_linkColor"};
    std::vector<std::pair<std::string, ns::Ref<ns::Color>>> colors;
    for (const char* name : names)
        if (auto operation = corvane::cv_colorOperationNamed(name))
            colors.emplace_back(name, (*operation)());
    return colors;
}

std::vector<std::pair<std::string, ns::Ref<ns::Color>>> crayonColors() {
    std::vector<std::pair<std::string, ns::Ref<ns::Color>>> colors;
    if (auto list = corvane::cv_crayonsColorList())
        for (const auto& key : list->allKeys())
            colors.emplace_back(key, list->colorWithKey(key));
    return colors;
}

ns::Ref<ns::View> buildScene() {
    auto pair = [](const std::string& left, const std::string& right) {
        return stackOf({styledPanel(left), styledPanel(right)}, false, 16);
    };
    auto panels =
        stackOf({pair("border:1,1,1,1;fillColor:cv_helpTipBackgroundColor", "gradient;border:0,0,1,0"),
                 pair("sheetButtonsFooter", "fillColor:cv_stateConfirmedBackgroundColor;border:1,0,1,0"),
                 pair("fillColor:cv_notificationBackgroundColor;border:1,1,1,1;tlbr:20,40",
                      "fillColor:cv_altControlBackgroundColor;border:0,1,0,1;tlbr:14,60,14,10")},
                true, 16);
    auto content =
        stackOf({heading("Panels styled by statements"), panels, heading("Application palette"),
                 swatchGrid(paletteColors(), 5, 172), heading("Crayons"), swatchGrid(crayonColors(), 10, 78)},
                true, 14);
    content->setEdgeInsets({20, 20, 20, 20});

    const ns::Size size = content->fittingSize();
    auto scene = corvane::CVLightContentView::make({0, 0, size.width, size.height});
    corvane::addSubview(*scene, content, ns::EdgeInsets{});
    return scene;
}

gallery::SceneRegistration panelsScene{
    {20, "content-panels", "Content panels, palette and crayons",
     "Each panel shows the statement string it was styled with: borders, fills by colour name, a "
     "gradient and caption insets moved by \"tlbr:\". Below, the application palette (colours that "
     "follow the appearance change between the pictures) and the 48 crayons.",
     buildScene}};

} // namespace
