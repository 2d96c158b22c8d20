#include "kit/Views/CVContentView.hpp"

#include "core/CoreLog.hpp"
#include "core/SafelyRemoveObserver.hpp"
#include "kit/Categories/NSBezierPath+Corvane.hpp"
#include "kit/Categories/NSColor+Corvane.hpp"
#include "kit/Categories/NSView+Utility.hpp"
#include "platform/foundation/Format.hpp"
#include "platform/foundation/KeyTable.hpp"
#include "platform/graphics/Gradient.hpp"
#include "platform/graphics/Graphics.hpp"
#include "platform/graphics/GraphicsContext.hpp"

namespace corvane {

void* CVContextDisplay = nullptr;

namespace {

const char* const SourceFile = "Views/CVContentView";
const char* const DefinitionsFunction = "stylingDefinitions";
constexpr float StatementConstraintPriority = 900;

const std::vector<std::string>& displayKeyPaths() {
    static const std::vector<std::string> paths{"hasTopBorder",   "hasBottomBorder", "hasLeftBorder",
                                                "hasRightBorder", "drawsBackground", "startColor",
                                                "endColor",       "fillColor",       "fillStyle"};
    return paths;
}

// --- Statement definitions --------------------------------------------------------------------

using ArgumentAction = std::function<void(CVContentView&, const std::vector<std::string>&)>;
using PlainAction = std::function<void(CVContentView&)>;

// A definition that needs at least one argument: without any it warns and does nothing.
ns::Value requiringArguments(ArgumentAction action) {
    return CVUIStyler::definition(
        [action](CVUIStyler& styler, const ns::Ref<ns::Object>& target, const std::string&) {
            auto arguments = styler.currentArgs();
            if (!arguments || arguments->empty()) {
                CORE_LOG_WARN(SourceFile, DefinitionsFunction, "Required arguments missing.");
                return;
            }
            if (auto view = std::dynamic_pointer_cast<CVContentView>(target))
                action(*view, *arguments);
        });
}

// A definition that walks up to four arguments; an empty one is skipped.
ns::Value perArgument(std::function<void(CVContentView&, size_t index, const std::string&)> apply) {
    return CVUIStyler::definition(
        [apply](CVUIStyler& styler, const ns::Ref<ns::Object>& target, const std::string&) {
            auto view = std::dynamic_pointer_cast<CVContentView>(target);
            auto arguments = styler.currentArgs();
            if (!view || !arguments)
                return;
            for (size_t i = 0; i < arguments->size() && i < 4; ++i)
                if (!(*arguments)[i].empty())
                    apply(*view, i, (*arguments)[i]);
        });
}

ns::Value plain(PlainAction action) {
    return CVUIStyler::definition([action](CVUIStyler&, const ns::Ref<ns::Object>& target) {
        if (auto view = std::dynamic_pointer_cast<CVContentView>(target))
            action(*view);
    });
}

double firstNumber(const std::vector<std::string>& arguments) {
    return static_cast<double>(ns::stringFloatValue(arguments.front()));
}

void setOffset(CVContentView& view, size_t index, const std::string& argument) {
    const ns::Ref<ns::LayoutConstraint>* constraints[] = {
        &view.topOffsetConstraint(), &view.leftOffsetConstraint(), &view.bottomOffsetConstraint(),
        &view.rightOffsetConstraint()};
    if (const auto& constraint = *constraints[index])
        constraint->setConstant(ns::stringDoubleValue(argument));
}

void setEdge(CVContentView& view, size_t index, const std::string& argument) {
    using EdgeSetter = void (CVContentView::*)(bool);
    constexpr EdgeSetter setters[] = {&CVContentView::setHasTopBorder, &CVContentView::setHasLeftBorder,
                                      &CVContentView::setHasBottomBorder, &CVContentView::setHasRightBorder};
    (view.*setters[index])(ns::stringBoolValue(argument));
}

void fillWithColorNamed(CVUIStyler&, const ns::Ref<ns::Object>& target, const std::string& name) {
    auto view = std::dynamic_pointer_cast<CVContentView>(target);
    auto operation = cv_colorOperationNamed(name);
    if (!view || !operation)
        return;
    view->setFillStyle(CVFillStyleColor);
    view->setFillColor((*operation)());
}

ns::Dictionary makeStylingDefinitions() {
    return {
        {"width:", requiringArguments([](CVContentView& view, const std::vector<std::string>& arguments) {
             addWidthConstraintWithConstant(view, firstNumber(arguments), StatementConstraintPriority);
         })},
        {"height:", requiringArguments([](CVContentView& view, const std::vector<std::string>& arguments) {
             addHeightConstraintWithConstant(view, firstNumber(arguments), StatementConstraintPriority);
         })},
        {"right-column-width:",
         requiringArguments([](CVContentView& view, const std::vector<std::string>& arguments) {
             if (const auto& column = view.rightColumnConstraint())
                 column->setConstant(firstNumber(arguments));
         })},
        {"uniqueWidth", plain([](CVContentView& view) { view.setLayoutOptions(CVLayoutOptionUniqueWidth); })},
        {"sheetButtonsFooter", plain([](CVContentView& view) {
             view.setHasTopBorder(true);
             view.setFillColor(ns::Color::windowBackgroundColor());
             view.setFillStyle(CVFillStyleColor);
         })},
        {"fitWidth", plain([](CVContentView& view) { view.addFittingSizeWidthConstraint(); })},
        {"fillColor:", CVUIStyler::definition(CVStylingArgumentBlock(fillWithColorNamed))},
        {"tlbr:", perArgument(setOffset)},
        {"border:", perArgument(setEdge)},
    };
}

} // namespace

// --- Life ---------------------------------------------------------------------------------------

CVContentView::~CVContentView() {
    for (const auto& keyPath : m_selfObservationKeyPaths)
        core::safelyRemoveObserver(*this, *this, keyPath, &CVContextDisplay);
}

void CVContentView::didInit() {
    CVView::didInit();
    setup();
}

void CVContentView::setup() {
    m_startColor = classStartColor();
    m_endColor = classEndColor();
    m_fillColor = classFillColor();
    setFillStyle(CVFillStyleNone);
    setBorderColorDefault(CVBorderColorDefaultStandard);
    m_borderEdgeInsets = {};
    m_selfObservationKeyPaths = displayKeyPaths();
    for (const auto& keyPath : m_selfObservationKeyPaths)
        addObserver(*this, keyPath, 0, &CVContextDisplay);
    customise();
}

ns::Ref<ns::Color> CVContentView::classStartColor() const {
    return ns::Color::colorWithCalibratedRed(0.875, 0.875, 0.875, 1.0);
}

ns::Ref<ns::Color> CVContentView::classEndColor() const {
    const double grey = static_cast<double>(0.929f);
    return ns::Color::colorWithCalibratedRed(grey, grey, grey, 1.0);
}

ns::Ref<ns::Color> CVContentView::classFillColor() const {
    return ns::Color::controlBackgroundColor();
}

void CVLightContentView::customise() {
    CVContentView::customise();
    setFillStyle(CVFillStyleColor);
}

// --- Styling ------------------------------------------------------------------------------------

const ns::Dictionary& CVContentView::stylingDefinitions() {
    static const ns::Dictionary definitions = makeStylingDefinitions();
    return definitions;
}

ns::Ref<CVUIStyler> CVContentView::uiStyler() {
    if (!m_uiStyler)
        m_uiStyler = CVUIStyler::make(classStylingDefinitions());
    return m_uiStyler;
}

void CVContentView::styleAs(const std::string& statements) {
    uiStyler()->style(self<ns::Object>(), statements);
}

// --- Observed look --------------------------------------------------------------------------------

void CVContentView::setHasTopBorder(bool value) {
    ns::ChangeScope change(*this, "hasTopBorder");
    m_hasTopBorder = value;
}

void CVContentView::setHasLeftBorder(bool value) {
    ns::ChangeScope change(*this, "hasLeftBorder");
    m_hasLeftBorder = value;
}

void CVContentView::setHasBottomBorder(bool value) {
    ns::ChangeScope change(*this, "hasBottomBorder");
    m_hasBottomBorder = value;
}

void CVContentView::setHasRightBorder(bool value) {
    ns::ChangeScope change(*this, "hasRightBorder");
    m_hasRightBorder = value;
}

bool CVContentView::hasBorder() const {
    return m_hasTopBorder && m_hasLeftBorder && m_hasBottomBorder && m_hasRightBorder;
}

void CVContentView::setHasBorder(bool value) {
    setHasLeftBorder(value);
    setHasBottomBorder(value);
    setHasRightBorder(value);
    setHasTopBorder(value);
}

void CVContentView::setDrawsBackground(bool value) {
    ns::ChangeScope change(*this, "drawsBackground");
    m_drawsBackground = value;
}

void CVContentView::setFillColor(ns::Ref<ns::Color> color) {
    ns::ChangeScope change(*this, "fillColor");
    m_fillColor = std::move(color);
}

void CVContentView::setStartColor(ns::Ref<ns::Color> color) {
    ns::ChangeScope change(*this, "startColor");
    m_startColor = std::move(color);
}

void CVContentView::setEndColor(ns::Ref<ns::Color> color) {
    ns::ChangeScope change(*this, "endColor");
    m_endColor = std::move(color);
}

void CVContentView::setFillStyle(int64_t style) {
    {
        ns::ChangeScope change(*this, "fillStyle");
        m_fillStyle = style;
    }
    setDrawsBackground(style != CVFillStyleNone);
}

void CVContentView::setBorderColor(ns::Ref<ns::Color> color) {
    m_borderColor = color;
    m_leftColor = color;
    m_bottomColor = color;
    m_rightColor = color;
    m_topColor = std::move(color);
}

void CVContentView::setBorderColorDefault(int64_t value) {
    m_borderColorDefault = value;
    if (value == CVBorderColorDefaultStandard)
        setBorderColor(cv_borderColor());
    else if (value == CVBorderColorDefaultDarkGray)
        setBorderColor(ns::Color::darkGrayColor());
    else
        setBorderColor(nullptr);
}

void CVContentView::observeValueForKeyPath(const std::string&, ns::Object*, const ns::Dictionary&,
                                           void* context) {
    if (context == &CVContextDisplay)
        setNeedsDisplay(true);
}

// --- Layout and frame -----------------------------------------------------------------------------

void CVContentView::layout() {
    CVView::layout();
    auto delegate = m_delegate.lock();
    if (!delegate || !delegate->implementsContentViewDidLayout())
        return;
    delegate->contentViewDidLayout(*this);
    CVView::layout();
}

void CVContentView::setFrame(ns::Rect frame) {
    CVView::setFrame(frame);
    informDelegateViewFrameDidChange();
}

void CVContentView::viewDidMoveToSuperview() {
    informDelegateViewFrameDidChange();
}

void CVContentView::informDelegateViewFrameDidChange() {
    if (auto delegate = m_delegate.lock(); delegate && delegate->implementsViewFrameDidChange())
        delegate->viewFrameDidChange(*this);
}

void CVContentView::updatePreferredMaxLayoutWidth(const ns::Ref<ns::TextField>& field, double offset) {
    if (field)
        field->setPreferredMaxLayoutWidth(frame().width() - offset);
}

void CVContentView::updatePreferredMaxLayoutWidthRightOffset(const ns::Ref<ns::TextField>& field,
                                                             double rightOffset) {
    if (field)
        field->setPreferredMaxLayoutWidth(frame().width() - field->frame().x() - rightOffset);
}

// --- Drawing --------------------------------------------------------------------------------------

// The whole bounds are painted whatever the dirty rectangle, so partial redraws match full ones.
void CVContentView::drawRect(ns::Rect) {
    const ns::Rect bounds = this->bounds();
    CVView::drawRect(bounds);
    drawBackground(bounds);
    drawEdges(bounds);
}

void CVContentView::drawBackground(const ns::Rect& bounds) const {
    if (m_fillStyle == CVFillStyleGradient) {
        // Crisp edges for the gradient and the lines over it; left off for the rest of this view.
        if (auto context = ns::GraphicsContext::currentContext())
            context->setShouldAntialias(false);
        if (auto gradient = ns::Gradient::make(m_startColor, m_endColor))
            gradient->drawInBezierPath(*ns::BezierPath::bezierPathWithRect(bounds), 90);
    } else if (m_fillStyle == CVFillStyleColor && m_fillColor) {
        m_fillColor->set();
        ns::RectFillUsingOperation(bounds, ns::CompositingOperation::SourceOver);
    }
}

// Each edge is a one-point line lying wholly inside the inset rectangle. "Bottom" is the
// smallest y and "top" the largest, flipped or not.
void CVContentView::drawEdges(const ns::Rect& bounds) const {
    const ns::EdgeInsets& in = m_borderEdgeInsets;
    const double x = bounds.x() + in.left;
    const double y = bounds.y() + in.top;
    const double w = bounds.width() - (in.left + in.right);
    const double h = bounds.height() - (in.top + in.bottom);
    auto stroke = [](const ns::Ref<ns::Color>& color, ns::Point from, ns::Point to) {
        if (color)
            color->set();
        cv_bezierPathLineFrom(from, to)->stroke();
    };
    if (m_hasBottomBorder)
        stroke(m_bottomColor, {x, y + 0.5}, {x + w, y + 0.5});
    if (m_hasTopBorder)
        stroke(m_topColor, {x, y + h - 0.5}, {x + w, y + h - 0.5});
    if (m_hasLeftBorder)
        stroke(m_leftColor, {x + 0.5, y}, {x + 0.5, y + h});
    if (m_hasRightBorder)
        stroke(m_rightColor, {x + w - 0.5, y}, {x + w - 0.5, y + h});
}

// --- Description and key-value coding -------------------------------------------------------------

std::string CVContentView::description() const {
    return ns::format("<%@ %@ fillStyle %lld borders %d%d%d%d>", className(), ns::describe(frame()),
                      static_cast<long long>(m_fillStyle), m_hasTopBorder, m_hasLeftBorder, m_hasBottomBorder,
                      m_hasRightBorder);
}

const ns::KeyTable& CVContentView::keyTable() const {
    using C = CVContentView;
    static const ns::KeyTable table(
        CVView::keyTable(),
        {
            {"hasTopBorder", ns::observable(&C::hasTopBorder, &C::setHasTopBorder)},
            {"hasLeftBorder", ns::observable(&C::hasLeftBorder, &C::setHasLeftBorder)},
            {"hasBottomBorder", ns::observable(&C::hasBottomBorder, &C::setHasBottomBorder)},
            {"hasRightBorder", ns::observable(&C::hasRightBorder, &C::setHasRightBorder)},
            {"drawsBackground", ns::observable(&C::drawsBackground, &C::setDrawsBackground)},
            {"fillColor", ns::observable(&C::fillColor, &C::setFillColor)},
            {"startColor", ns::observable(&C::startColor, &C::setStartColor)},
            {"endColor", ns::observable(&C::endColor, &C::setEndColor)},
            {"fillStyle", ns::observable(&C::fillStyle, &C::setFillStyle)},
            {"hasBorder", ns::property(&C::hasBorder, &C::setHasBorder)},
            {"reportAsFlipped", ns::property(&C::reportAsFlipped, &C::setReportAsFlipped)},
            {"borderColor", ns::property(&C::borderColor, &C::setBorderColor)},
            {"borderColorDefault", ns::property(&C::borderColorDefault, &C::setBorderColorDefault)},
            {"topColor", ns::property(&C::topColor, &C::setTopColor)},
            {"leftColor", ns::property(&C::leftColor, &C::setLeftColor)},
            {"bottomColor", ns::property(&C::bottomColor, &C::setBottomColor)},
            {"rightColor", ns::property(&C::rightColor, &C::setRightColor)},
            {"tag", ns::property(&C::tag, &C::setTag)},
            {"layoutOptions", ns::property(&C::layoutOptions, &C::setLayoutOptions)},
            {"objectValue", ns::property(&C::objectValue, &C::setObjectValue)},
        });
    return table;
}

} // namespace corvane
