#include "platform/views/Button.hpp"

#include "platform/graphics/AttributedString.hpp"
#include "platform/graphics/BezierPath.hpp"
#include "platform/graphics/Color.hpp"
#include "platform/graphics/Font.hpp"
#include "platform/graphics/Image.hpp"
#include "platform/graphics/MutableParagraphStyle.hpp"

#include <algorithm>
#include <cmath>

namespace ns {

namespace {
constexpr double BezelSidePadding = 12;
constexpr double RegularPushHeight = 21;
constexpr double CheckBoxSize = 14;
} // namespace

Button::Button(Rect frame) : Control(frame) {
    cell()->setBordered(true);
    cell()->setAlignment(TextAlignment::Center);
}

Ref<Button> Button::buttonWithTitle(std::string title, const Ref<Object>& target, Selector action) {
    auto button = make();
    button->setTitle(std::move(title));
    button->setTarget(target);
    button->setAction(std::move(action));
    button->sizeToFit();
    return button;
}

Ref<Button> Button::checkboxWithTitle(std::string title, const Ref<Object>& target, Selector action) {
    auto button = buttonWithTitle(std::move(title), target, std::move(action));
    button->setButtonType(ButtonType::Switch);
    button->setAlignment(TextAlignment::Left);
    button->sizeToFit();
    return button;
}

void Button::setAttributedTitle(Ref<AttributedString> title) {
    if (title)
        setStringValue(title->string());
    m_attributedTitle = std::move(title);
    contentDidChange();
}

void Button::setImage(Ref<Image> image) {
    cell()->setImage(std::move(image));
    if (m_imagePosition == CellImagePosition::NoImage && cell()->image())
        m_imagePosition = CellImagePosition::ImageOnly;
    contentDidChange();
}

void Button::setImagePosition(CellImagePosition position) {
    m_imagePosition = position;
    contentDidChange();
}

void Button::setImageScaling(ImageScaling scaling) {
    m_imageScaling = scaling;
    setNeedsDisplay(true);
}

void Button::setBezelStyle(BezelStyle style) {
    m_bezelStyle = style;
    contentDidChange();
}

void Button::setBordered(bool bordered) {
    cell()->setBordered(bordered);
    contentDidChange();
}

void Button::setButtonType(ButtonType type) {
    m_buttonType = type;
    contentDidChange();
}

void Button::setState(ControlStateValue state) {
    ChangeScope change(*this, "state");
    cell()->setState(state);
    setNeedsDisplay(true);
}

void Button::setBackgroundColor(Ref<Color> color) {
    cell()->setBackgroundColor(std::move(color));
    setNeedsDisplay(true);
}

void Button::performClick() {
    if (!isEnabled())
        return;
    switch (m_buttonType) {
    case ButtonType::PushOnPushOff:
    case ButtonType::Toggle:
    case ButtonType::Switch:
    case ButtonType::OnOff:
        setState(state() == ControlStateValueOn ? ControlStateValueOff : ControlStateValueOn);
        break;
    case ButtonType::Radio:
        setState(ControlStateValueOn);
        break;
    default:
        break;
    }
    Control::performClick();
}

Ref<AttributedString> Button::titleToDraw() const {
    if (m_attributedTitle && m_attributedTitle->string() == title())
        return m_attributedTitle;
    auto style = MutableParagraphStyle::make();
    style->setAlignment(alignment());
    auto color = isEnabled() ? Color::controlTextColor() : Color::disabledControlTextColor();
    return AttributedString::make(title(), {{FontAttributeName, font()},
                                            {ForegroundColorAttributeName, color},
                                            {ParagraphStyleAttributeName, style}});
}

Size Button::imageSizeIn(Size available) const {
    auto image = cell()->image();
    if (!image)
        return {};
    Size size = image->size();
    if (m_imageScaling == ImageScaling::None || size.width <= 0 || size.height <= 0)
        return size;
    if (m_imageScaling == ImageScaling::AxesIndependently)
        return available;
    double scale = std::min(available.width / size.width, available.height / size.height);
    if (m_imageScaling == ImageScaling::ProportionallyDown)
        scale = std::min(scale, 1.0);
    return {size.width * scale, size.height * scale};
}

Size Button::intrinsicContentSize() const {
    Size text =
        title().empty() || m_imagePosition == CellImagePosition::ImageOnly ? Size{} : titleToDraw()->size();
    Size image =
        cell()->image() && m_imagePosition != CellImagePosition::NoImage ? cell()->image()->size() : Size{};
    Size content;
    bool stacked =
        m_imagePosition == CellImagePosition::ImageAbove || m_imagePosition == CellImagePosition::ImageBelow;
    bool both = text.width > 0 && image.width > 0 && m_imagePosition != CellImagePosition::ImageOverlaps;
    if (stacked)
        content = {std::max(text.width, image.width),
                   text.height + image.height + (both ? ImageTitleGap : 0)};
    else
        content = {text.width + image.width + (both ? ImageTitleGap : 0),
                   std::max(text.height, image.height)};
    if (isCheckOrRadio())
        return {std::ceil(CheckBoxSize + ImageTitleGap + content.width),
                std::max(CheckBoxSize, std::ceil(content.height))};
    if (!isBordered())
        return {std::ceil(content.width), std::ceil(content.height)};
    return {std::ceil(content.width + 2 * BezelSidePadding),
            std::max(RegularPushHeight, std::ceil(content.height) + 6)};
}

// Places the image and the title inside the content rectangle by the image position.
void Button::drawImageAndTitle(Rect content) {
    auto image = cell()->image();
    bool showImage = image && m_imagePosition != CellImagePosition::NoImage;
    bool showTitle = !title().empty() && m_imagePosition != CellImagePosition::ImageOnly;
    Size imageSize = showImage ? imageSizeIn(content.size) : Size{};
    Rect titleRect = content;
    Rect imageRect{content.midX() - imageSize.width / 2, content.midY() - imageSize.height / 2,
                   imageSize.width, imageSize.height};
    double gap = showImage && showTitle ? ImageTitleGap : 0;
    switch (m_imagePosition) {
    case CellImagePosition::ImageLeft:
    case CellImagePosition::ImageLeading:
        imageRect.origin.x = content.minX();
        titleRect = {content.minX() + imageSize.width + gap, content.minY(),
                     content.width() - imageSize.width - gap, content.height()};
        break;
    case CellImagePosition::ImageRight:
    case CellImagePosition::ImageTrailing:
        imageRect.origin.x = content.maxX() - imageSize.width;
        titleRect.size.width = content.width() - imageSize.width - gap;
        break;
    case CellImagePosition::ImageAbove:
    case CellImagePosition::ImageBelow: {
        bool imageAtHighY = (m_imagePosition == CellImagePosition::ImageAbove) != isFlipped();
        imageRect.origin.y = imageAtHighY ? content.maxY() - imageSize.height : content.minY();
        titleRect = {content.minX(), imageAtHighY ? content.minY() : content.minY() + imageSize.height + gap,
                     content.width(), content.height() - imageSize.height - gap};
        break;
    }
    default:
        break;
    }
    if (showImage)
        image->drawInRect(imageRect, {}, CompositingOperation::SourceOver, isEnabled() ? 1.0 : 0.5, true, {});
    if (showTitle) {
        auto text = titleToDraw();
        double height = text->size().height;
        Rect line{titleRect.minX(), titleRect.midY() - height / 2, titleRect.width(), height};
        text->drawWithRect(line, StringDrawingUsesLineFragmentOrigin);
    }
}

// A tick for a check box, a dot for a radio button, in white on the selected fill.
void Button::drawMark(Rect box) {
    Color::whiteColor()->set();
    if (m_buttonType == ButtonType::Radio) {
        BezierPath::bezierPathWithOvalInRect(box.insetBy(4.5, 4.5))->fill();
        return;
    }
    double top = isFlipped() ? box.minY() : box.maxY(), down = isFlipped() ? 1 : -1;
    auto tick = BezierPath::make();
    tick->setLineWidth(2);
    tick->moveToPoint({box.minX() + 3, top + down * 7.5});
    tick->lineToPoint({box.minX() + 6, top + down * 10.5});
    tick->lineToPoint({box.minX() + 11, top + down * 3.5});
    tick->stroke();
}

void Button::drawRect(Rect) {
    Rect bounds = this->bounds();
    if (isCheckOrRadio()) {
        Rect box{0, bounds.midY() - CheckBoxSize / 2, CheckBoxSize, CheckBoxSize};
        auto path = m_buttonType == ButtonType::Radio
                        ? BezierPath::bezierPathWithOvalInRect(box.insetBy(0.5, 0.5))
                        : BezierPath::bezierPathWithRoundedRect(box.insetBy(0.5, 0.5), 3, 3);
        (state() == ControlStateValueOn ? Color::selectedContentBackgroundColor() : Color::controlColor())
            ->setFill();
        path->fill();
        Color::separatorColor()->setStroke();
        path->stroke();
        if (state() == ControlStateValueOn)
            drawMark(box);
        drawImageAndTitle({CheckBoxSize + ImageTitleGap, 0, bounds.width() - CheckBoxSize - ImageTitleGap,
                           bounds.height()});
        return;
    }
    if (isBordered()) {
        double radius =
            m_bezelStyle == BezelStyle::Circular || m_bezelStyle == BezelStyle::Inline ? bounds.height() / 2
            : m_bezelStyle == BezelStyle::SmallSquare || m_bezelStyle == BezelStyle::RegularSquare ? 0
                                                                                                   : 4;
        auto bezel = BezierPath::bezierPathWithRoundedRect(bounds.insetBy(0.5, 0.5), radius, radius);
        Ref<Color> fill = backgroundColor() ? backgroundColor() : Color::controlColor();
        if (state() == ControlStateValueOn && m_buttonType != ButtonType::MomentaryPushIn)
            fill = Color::selectedContentBackgroundColor();
        fill->setFill();
        bezel->fill();
        Color::separatorColor()->setStroke();
        bezel->stroke();
    }
    drawImageAndTitle(isBordered() ? bounds.insetBy(BezelSidePadding / 2, 2) : bounds);
}

const KeyTable& Button::keyTable() const {
    static const KeyTable table(Control::keyTable(),
                                {{"state", observable(&Button::state, &Button::setState)},
                                 {"title", property(&Button::title, &Button::setTitle)}});
    return table;
}

} // namespace ns
