#pragma once

#include "platform/views/ClipView.hpp"

namespace ns {

enum class BorderType : int64_t { NoBorder = 0, LineBorder = 1, BezelBorder = 2, GrooveBorder = 3 };
enum class ScrollElasticity : int64_t { Automatic = 0, None = 1, Allowed = 2 };

// A clip view framed by an optional border and scrollers. The clip view (content view) fills
// what the border and the shown scrollers leave.
class ScrollView : public View {
public:
    explicit ScrollView(Rect frame = {}) : View(frame) {}
    static Ref<ScrollView> make(Rect frame = {}) { return create<ScrollView>(frame); }
    void didInit() override;

    const Ref<ClipView>& contentView() const { return m_contentView; }
    // Replaces the clip view (nil is ignored); the document view moves along.
    void setContentView(const Ref<ClipView>& contentView);
    Ref<View> documentView() const { return m_contentView->documentView(); }
    void setDocumentView(const Ref<View>& view);
    // The size the clip view has inside the border and shown scrollers.
    Size contentSize() const { return m_contentView->frame().size; }
    Rect documentVisibleRect() const { return m_contentView->documentVisibleRect(); }

    bool hasVerticalScroller() const { return m_hasVerticalScroller; }
    void setHasVerticalScroller(bool has);
    bool hasHorizontalScroller() const { return m_hasHorizontalScroller; }
    void setHasHorizontalScroller(bool has);
    bool autohidesScrollers() const { return m_autohidesScrollers; }
    void setAutohidesScrollers(bool autohides);
    // Shown: wanted, and with autohiding only when the document is larger than the view.
    bool isVerticalScrollerShown() const;
    bool isHorizontalScrollerShown() const;
    BorderType borderType() const { return m_borderType; }
    void setBorderType(BorderType type);
    ScrollElasticity verticalScrollElasticity() const { return m_verticalElasticity; }
    void setVerticalScrollElasticity(ScrollElasticity elasticity) { m_verticalElasticity = elasticity; }
    ScrollElasticity horizontalScrollElasticity() const { return m_horizontalElasticity; }
    void setHorizontalScrollElasticity(ScrollElasticity elasticity) { m_horizontalElasticity = elasticity; }
    bool drawsBackground() const { return m_contentView->drawsBackground(); }
    void setDrawsBackground(bool draws) { m_contentView->setDrawsBackground(draws); }

    // Places the clip view inside the border and the shown scrollers.
    void tile();
    void setFrame(Rect frame) override;
    void layout() override;
    void drawRect(Rect dirtyRect) override;

    static constexpr double ScrollerWidth = 15;
    static double borderWidth(BorderType type);

private:
    Ref<ClipView> m_contentView;
    bool m_hasVerticalScroller = false;
    bool m_hasHorizontalScroller = false;
    bool m_autohidesScrollers = false;
    BorderType m_borderType = BorderType::NoBorder;
    ScrollElasticity m_verticalElasticity = ScrollElasticity::Automatic;
    ScrollElasticity m_horizontalElasticity = ScrollElasticity::Automatic;
};

} // namespace ns
