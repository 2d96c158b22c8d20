#pragma once

#include "platform/views/View.hpp"

namespace ns {

class Color;

// Shows a part of its document view: the part at its bounds origin. Scrolling moves the bounds
// origin, kept within the document.
class ClipView : public View {
public:
    explicit ClipView(Rect frame = {}) : View(frame) {}
    static Ref<ClipView> make(Rect frame = {}) { return create<ClipView>(frame); }

    const Ref<View>& documentView() const { return m_documentView; }
    // Replaces the document view (nil removes it) and scrolls to its origin.
    void setDocumentView(const Ref<View>& view);
    Rect documentRect() const;
    Rect documentVisibleRect() const { return bounds(); }
    // Scrolls so that the point is at the bounds origin, as far as the document allows.
    void scrollToPoint(Point point);
    Point constrainScrollPoint(Point point) const;

    bool drawsBackground() const { return m_drawsBackground; }
    void setDrawsBackground(bool draws);
    // nil draws the control background colour of the appearance.
    const Ref<Color>& backgroundColor() const { return m_backgroundColor; }
    void setBackgroundColor(Ref<Color> color);

    // Flipped exactly when the document view is, so that a flipped document starts at its top.
    bool isFlipped() const override;
    void drawRect(Rect dirtyRect) override;

private:
    Ref<View> m_documentView;
    bool m_drawsBackground = true;
    Ref<Color> m_backgroundColor;
};

} // namespace ns
