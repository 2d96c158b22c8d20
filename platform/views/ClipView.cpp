#include "platform/views/ClipView.hpp"

#include "platform/graphics/Color.hpp"
#include "platform/graphics/Graphics.hpp"

#include <algorithm>

namespace ns {

void ClipView::setDocumentView(const Ref<View>& view) {
    if (m_documentView)
        m_documentView->removeFromSuperview();
    m_documentView = view;
    if (view)
        addSubview(view);
    setBoundsOrigin(documentRect().origin);
}

Rect ClipView::documentRect() const {
    Rect document = m_documentView ? m_documentView->frame() : Rect{};
    // The document is never smaller than what the clip view shows.
    return {document.origin,
            {std::max(document.width(), frame().width()), std::max(document.height(), frame().height())}};
}

Point ClipView::constrainScrollPoint(Point point) const {
    Rect document = documentRect();
    Size visible = frame().size;
    return {std::clamp(point.x, document.minX(), document.maxX() - visible.width),
            std::clamp(point.y, document.minY(), document.maxY() - visible.height)};
}

void ClipView::scrollToPoint(Point point) {
    setBoundsOrigin(constrainScrollPoint(point));
}

void ClipView::setDrawsBackground(bool draws) {
    m_drawsBackground = draws;
    setNeedsDisplay(true);
}

void ClipView::setBackgroundColor(Ref<Color> color) {
    m_backgroundColor = std::move(color);
    setNeedsDisplay(true);
}

bool ClipView::isFlipped() const {
    return m_documentView && m_documentView->isFlipped();
}

void ClipView::drawRect(Rect dirtyRect) {
    if (!m_drawsBackground)
        return;
    (m_backgroundColor ? m_backgroundColor : Color::controlBackgroundColor())->setFill();
    RectFillUsingOperation(dirtyRect, CompositingOperation::SourceOver);
}

} // namespace ns
