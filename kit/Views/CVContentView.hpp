#pragma once

#include "kit/Objects/CVUIStyler.hpp"
#include "kit/Views/CVView.hpp"
#include "platform/graphics/Color.hpp"
#include "platform/views/TextField.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace corvane {

class CVContentView;

// How a content view paints its background (fillStyle). Other values paint nothing.
constexpr int64_t CVFillStyleNone = 0;
constexpr int64_t CVFillStyleColor = 1;
constexpr int64_t CVFillStyleGradient = 2;

// Which colour borderColorDefault gives the borders. Other values give nil.
constexpr int64_t CVBorderColorDefaultStandard = 0;
constexpr int64_t CVBorderColorDefaultDarkGray = 1;

// layoutOptions: a panel that keeps its own width when a stack gives its views a common one.
constexpr uint64_t CVLayoutOptionUniqueWidth = 1;

// The context of a content view's observation of its own look; only its address matters.
extern void* CVContextDisplay;

// Hears when a content view lays out or changes frame. Both operations are optional: a delegate
// answers true from implements...() for each one it wants to be called with.
class CVContentViewDelegate {
public:
    virtual ~CVContentViewDelegate() = default;

    virtual bool implementsContentViewDidLayout() const { return false; }
    // Called between two layout passes, so constraint changes made here take effect at once.
    virtual void contentViewDidLayout(CVContentView&) {}

    virtual bool implementsViewFrameDidChange() const { return false; }
    virtual void viewFrameDidChange(CVContentView&) {}
};

// The kit's general panel. It fills its bounds with a flat colour or a vertical two-colour
// gradient, draws any of its four edges as one-point lines inside an inset rectangle, reports
// itself flipped on demand, tells a delegate when it lays out or changes frame, and restyles
// itself from statements such as "border:1,0,0,0;fillColor:windowBackgroundColor".
//
// It redisplays by observing nine of its own properties (the four edge flags, drawsBackground,
// the three colours and the fill style). The edge colours, borderColor, borderEdgeInsets and
// reportAsFlipped are not observed: whoever changes them asks for display.
class CVContentView : public CVView {
public:
    explicit CVContentView(ns::Rect frame = {}) : CVView(frame) {}
    ~CVContentView() override;
    static ns::Ref<CVContentView> make(ns::Rect frame = {}) { return ns::create<CVContentView>(frame); }
    void didInit() override;

    // --- Styling ---------------------------------------------------------------------------------
    // Applies the statements through this view's styler; unknown statements are logged by it.
    void styleAs(const std::string& statements);
    // Made on first use from classStylingDefinitions(), then kept.
    ns::Ref<CVUIStyler> uiStyler();
    // The statements every content view understands: "width:", "height:",
    // "right-column-width:", "uniqueWidth", "sheetButtonsFooter", "fitWidth", "fillColor:",
    // "tlbr:" and "border:". Built once for the process.
    static const ns::Dictionary& stylingDefinitions();

    // --- Look ----------------------------------------------------------------------------------
    bool hasTopBorder() const { return m_hasTopBorder; }
    void setHasTopBorder(bool value);
    bool hasLeftBorder() const { return m_hasLeftBorder; }
    void setHasLeftBorder(bool value);
    bool hasBottomBorder() const { return m_hasBottomBorder; }
    void setHasBottomBorder(bool value);
    bool hasRightBorder() const { return m_hasRightBorder; }
    void setHasRightBorder(bool value);
    // True only when all four edges are on; setting sets all four.
    bool hasBorder() const;
    void setHasBorder(bool value);

    bool reportAsFlipped() const { return m_reportAsFlipped; }
    void setReportAsFlipped(bool value) { m_reportAsFlipped = value; }
    bool drawsBackground() const { return m_drawsBackground; }
    void setDrawsBackground(bool value);

    const ns::Ref<ns::Color>& fillColor() const { return m_fillColor; }
    void setFillColor(ns::Ref<ns::Color> color);
    const ns::Ref<ns::Color>& startColor() const { return m_startColor; }
    void setStartColor(ns::Ref<ns::Color> color);
    const ns::Ref<ns::Color>& endColor() const { return m_endColor; }
    void setEndColor(ns::Ref<ns::Color> color);
    int64_t fillStyle() const { return m_fillStyle; }
    // Also turns drawsBackground on for every style but none.
    void setFillStyle(int64_t style);

    // The colour last given to setBorderColor; setting it colours all four edges.
    const ns::Ref<ns::Color>& borderColor() const { return m_borderColor; }
    void setBorderColor(ns::Ref<ns::Color> color);
    int64_t borderColorDefault() const { return m_borderColorDefault; }
    void setBorderColorDefault(int64_t value);
    const ns::Ref<ns::Color>& topColor() const { return m_topColor; }
    void setTopColor(ns::Ref<ns::Color> color) { m_topColor = std::move(color); }
    const ns::Ref<ns::Color>& leftColor() const { return m_leftColor; }
    void setLeftColor(ns::Ref<ns::Color> color) { m_leftColor = std::move(color); }
    const ns::Ref<ns::Color>& bottomColor() const { return m_bottomColor; }
    void setBottomColor(ns::Ref<ns::Color> color) { m_bottomColor = std::move(color); }
    const ns::Ref<ns::Color>& rightColor() const { return m_rightColor; }
    void setRightColor(ns::Ref<ns::Color> color) { m_rightColor = std::move(color); }
    ns::EdgeInsets borderEdgeInsets() const { return m_borderEdgeInsets; }
    void setBorderEdgeInsets(ns::EdgeInsets insets) { m_borderEdgeInsets = insets; }

    // --- Other state ---------------------------------------------------------------------------
    int64_t tag() const override { return m_tag; }
    void setTag(int64_t tag) { m_tag = tag; }
    uint64_t layoutOptions() const { return m_layoutOptions; }
    void setLayoutOptions(uint64_t options) { m_layoutOptions = options; }
    // A free slot for what the panel shows; the panel never reads it.
    const ns::Value& objectValue() const { return m_objectValue; }
    void setObjectValue(ns::Value value) { m_objectValue = std::move(value); }
    // Held weakly.
    ns::Ref<CVContentViewDelegate> delegate() const { return m_delegate.lock(); }
    void setDelegate(const ns::Ref<CVContentViewDelegate>& delegate) { m_delegate = delegate; }
    const std::vector<std::string>& selfObservationKeyPaths() const { return m_selfObservationKeyPaths; }

    // --- Helpers for the application's layout ----------------------------------------------------
    // Sets the field's preferred maximum width to this view's width less the offset. Nil: nothing.
    void updatePreferredMaxLayoutWidth(const ns::Ref<ns::TextField>& field, double offset);
    // The same, less the field's own x as well.
    void updatePreferredMaxLayoutWidthRightOffset(const ns::Ref<ns::TextField>& field, double rightOffset);
    void informDelegateViewFrameDidChange();

    // --- Platform overrides --------------------------------------------------------------------
    void drawRect(ns::Rect dirtyRect) override;
    void layout() override;
    void setFrame(ns::Rect frame) override;
    void viewDidMoveToSuperview() override;
    bool isFlipped() const override { return m_reportAsFlipped; }
    bool isOpaque() const override { return m_drawsBackground; }
    void observeValueForKeyPath(const std::string& keyPath, ns::Object* object, const ns::Dictionary& change,
                                void* context) override;
    const ns::KeyTable& keyTable() const override;
    std::string description() const override;

protected:
    // A subclass's look; called once at the end of construction, after which changes redisplay.
    virtual void customise() {}
    // Defaults asked of the view's own class; a subclass overrides them to change its look.
    virtual ns::Ref<ns::Color> classStartColor() const;
    virtual ns::Ref<ns::Color> classEndColor() const;
    virtual ns::Ref<ns::Color> classFillColor() const;
    virtual const ns::Dictionary& classStylingDefinitions() const { return stylingDefinitions(); }

private:
    void setup();
    void drawBackground(const ns::Rect& bounds) const;
    void drawEdges(const ns::Rect& bounds) const;

    int64_t m_tag = 0;
    bool m_hasTopBorder = false;
    bool m_hasLeftBorder = false;
    bool m_hasBottomBorder = false;
    bool m_hasRightBorder = false;
    bool m_reportAsFlipped = false;
    bool m_drawsBackground = false;
    ns::Ref<ns::Color> m_borderColor;
    uint64_t m_layoutOptions = 0;
    ns::Value m_objectValue;
    ns::Ref<ns::Color> m_fillColor;
    ns::Ref<ns::Color> m_startColor;
    ns::Ref<ns::Color> m_endColor;
    int64_t m_fillStyle = CVFillStyleNone;
    ns::Ref<ns::Color> m_topColor;
    ns::Ref<ns::Color> m_bottomColor;
    ns::Ref<ns::Color> m_leftColor;
    ns::Ref<ns::Color> m_rightColor;
    int64_t m_borderColorDefault = CVBorderColorDefaultStandard;
    ns::EdgeInsets m_borderEdgeInsets;
    ns::WeakRef<CVContentViewDelegate> m_delegate;
    ns::Ref<CVUIStyler> m_uiStyler;
    std::vector<std::string> m_selfObservationKeyPaths;
};

// A content view that paints its fill colour from the start.
class CVLightContentView : public CVContentView {
public:
    using CVContentView::CVContentView;
    static ns::Ref<CVLightContentView> make(ns::Rect frame = {}) {
        return ns::create<CVLightContentView>(frame);
    }

protected:
    void customise() override;
};

} // namespace corvane
