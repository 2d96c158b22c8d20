#include "platform/views/ScrollView.hpp"

#include "platform/graphics/BezierPath.hpp"
#include "platform/graphics/Color.hpp"
#include "platform/graphics/Graphics.hpp"

namespace ns {

void ScrollView::didInit() {
    View::didInit();
    setContentView(ClipView::make());
}

void ScrollView::setContentView(const Ref<ClipView>& contentView) {
    if (!contentView)
        return;
    Ref<View> document = m_contentView ? m_contentView->documentView() : nullptr;
    if (m_contentView)
        m_contentView->removeFromSuperview();
    m_contentView = contentView;
    addSubview(contentView);
    if (document)
        contentView->setDocumentView(document);
    tile();
}

void ScrollView::setDocumentView(const Ref<View>& view) {
    m_contentView->setDocumentView(view);
    tile();
}

void ScrollView::setHasVerticalScroller(bool has) {
    m_hasVerticalScroller = has;
    tile();
}

void ScrollView::setHasHorizontalScroller(bool has) {
    m_hasHorizontalScroller = has;
    tile();
}

void ScrollView::setAutohidesScrollers(bool autohides) {
    m_autohidesScrollers = autohides;
    tile();
}

void ScrollView::setBorderType(BorderType type) {
    m_borderType = type;
    tile();
}

double ScrollView::borderWidth(BorderType type) {
    switch (type) {
    case BorderType::LineBorder:
    case BorderType::BezelBorder:
        return 1;
    case BorderType::GrooveBorder:
        return 2;
    default:
        return 0;
    }
}

bool ScrollView::isVerticalScrollerShown() const {
    if (!m_hasVerticalScroller)
        return false;
    Ref<View> document = documentView();
    double available = frame().height() - 2 * borderWidth(m_borderType);
    return !m_autohidesScrollers || (document && document->frame().height() > available);
}

bool ScrollView::isHorizontalScrollerShown() const {
    if (!m_hasHorizontalScroller)
        return false;
    Ref<View> document = documentView();
    double available = frame().width() - 2 * borderWidth(m_borderType);
    return !m_autohidesScrollers || (document && document->frame().width() > available);
}

void ScrollView::tile() {
    if (!m_contentView)
        return;
    double border = borderWidth(m_borderType);
    Rect inside = bounds().insetBy(border, border);
    if (isVerticalScrollerShown())
        inside.size.width -= ScrollerWidth;
    if (isHorizontalScrollerShown()) {
        inside.size.height -= ScrollerWidth;
        if (!isFlipped())
            inside.origin.y += ScrollerWidth; // the horizontal scroller runs along the bottom
    }
    inside.size = {std::max(0.0, inside.width()), std::max(0.0, inside.height())};
    m_contentView->setFrame(inside);
    setNeedsDisplay(true);
}

void ScrollView::setFrame(Rect frame) {
    View::setFrame(frame);
    tile();
}

void ScrollView::layout() {
    View::layout();
    tile();
}

void ScrollView::drawRect(Rect) {
    Rect bounds = this->bounds();
    Rect clip = m_contentView->frame();
    Color::controlColor()->setFill();
    if (isVerticalScrollerShown())
        RectFill({clip.maxX(), clip.minY(), ScrollerWidth, clip.height()});
    if (isHorizontalScrollerShown())
        RectFill({clip.minX(), isFlipped() ? clip.maxY() : clip.minY() - ScrollerWidth, clip.width(),
                  ScrollerWidth});
    if (m_borderType == BorderType::NoBorder)
        return;
    (m_borderType == BorderType::LineBorder ? Color::blackColor() : Color::gridColor())->setStroke();
    BezierPath::strokeRect(bounds.insetBy(0.5, 0.5));
    if (m_borderType == BorderType::GrooveBorder) {
        Color::whiteColor()->setStroke();
        BezierPath::strokeRect(bounds.insetBy(1.5, 1.5));
    }
}

} // namespace ns
