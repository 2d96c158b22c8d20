#include "kit/Views/CVContentView.hpp"

#include "core/CoreLog.hpp"
#include "core/CoreLogCapture.hpp"
#include "kit/Categories/NSColor+Corvane.hpp"
#include "kit/Categories/NSView+Utility.hpp"
#include "support/PixelProbe.hpp"

#include <gtest/gtest.h>

using namespace corvane;

namespace {

const RGBA Clear{0, 0, 0, 0};
const RGBA Red{255, 0, 0, 255};
const RGBA Green{0, 255, 0, 255};
const RGBA Blue{0, 0, 255, 255};
const RGBA Black{0, 0, 0, 255};

ns::Ref<ns::Color> rgb(double r, double g, double b) {
    return ns::Color::colorWithSRGBRed(r, g, b, 1);
}

// Counts the delegate calls.
class RecordingDelegate : public CVContentViewDelegate {
public:
    bool wantsLayout = true;
    int layouts = 0;
    int frameChanges = 0;
    bool implementsContentViewDidLayout() const override { return wantsLayout; }
    void contentViewDidLayout(CVContentView&) override { ++layouts; }
    bool implementsViewFrameDidChange() const override { return true; }
    void viewFrameDidChange(CVContentView&) override { ++frameChanges; }
};

} // namespace

// --- Drawing ------------------------------------------------------------------------------------

TEST(CVContentViewDrawing, OnlyTheColourStylePaintsYetEveryStyleButNoneIsOpaque) {
    auto panel = CVContentView::make({0, 0, 20, 10});
    EXPECT_FALSE(panel->isOpaque());
    EXPECT_EQ(pixelAt(panel->renderedBitmap(), 10, 5), Clear);
    panel->setFillColor(rgb(1, 0, 0));
    panel->setFillStyle(5);
    EXPECT_TRUE(panel->isOpaque());
    EXPECT_EQ(pixelAt(panel->renderedBitmap(), 10, 5), Clear);

    auto light = CVLightContentView::make({0, 0, 20, 10});
    EXPECT_TRUE(light->isOpaque());
    light->setFillColor(rgb(1, 0, 0));
    auto bitmap = light->renderedBitmap();
    EXPECT_EQ(pixelAt(bitmap, 0, 0), Red);
    EXPECT_EQ(pixelAt(bitmap, 19, 9), Red);
}

TEST(CVContentViewDrawing, TheGradientRunsFromSmallestToLargestY) {
    for (bool flipped : {false, true}) {
        SCOPED_TRACE(flipped ? "flipped" : "unflipped");
        auto panel = CVContentView::make({0, 0, 10, 100});
        panel->setReportAsFlipped(flipped);
        panel->setStartColor(rgb(1, 0, 0));
        panel->setEndColor(rgb(0, 0, 1));
        panel->setFillStyle(CVFillStyleGradient);
        auto bitmap = panel->renderedBitmap();
        // Rows count from the top of the image; the smallest y is at the bottom unless flipped.
        RGBA top = pixelAt(bitmap, 5, 0), bottom = pixelAt(bitmap, 5, 99);
        RGBA start = flipped ? top : bottom, end = flipped ? bottom : top;
        EXPECT_GT(start.r, 245);
        EXPECT_LT(start.b, 10);
        EXPECT_GT(end.b, 245);
        EXPECT_LT(end.r, 10);
        RGBA middle = pixelAt(bitmap, 5, 50);
        EXPECT_NEAR(middle.r, 128, 6);
    }
}

TEST(CVContentViewDrawing, EdgesSitInsideTheInsetRectangleByCoordinate) {
    for (bool flipped : {false, true}) {
        SCOPED_TRACE(flipped ? "flipped" : "unflipped");
        auto panel = CVContentView::make({0, 0, 100, 50});
        panel->setReportAsFlipped(flipped);
        panel->setBorderEdgeInsets({2, 3, 0, 0});
        panel->setBottomColor(rgb(1, 0, 0));
        panel->setTopColor(rgb(0, 1, 0));
        panel->setLeftColor(rgb(0, 0, 1));
        panel->setRightColor(rgb(0, 0, 0));
        panel->setHasBorder(true);
        auto bitmap = panel->renderedBitmap();
        // Image row of the point band [y, y + 1).
        auto row = [&](int y) {
            return flipped ? y : 49 - y;
        };

        // Bottom: (3, 2.5) to (100, 2.5); top: y = 49.5; left: x = 3.5 from y 2 to 50; right: x = 99.5.
        EXPECT_EQ(pixelAt(bitmap, 50, row(2)), Red);
        EXPECT_EQ(pixelAt(bitmap, 50, row(1)), Clear);
        EXPECT_EQ(pixelAt(bitmap, 50, row(3)), Clear);
        EXPECT_EQ(pixelAt(bitmap, 50, row(49)), Green);
        EXPECT_EQ(pixelAt(bitmap, 3, row(25)), Blue);
        EXPECT_EQ(pixelAt(bitmap, 2, row(25)), Clear);
        EXPECT_EQ(pixelAt(bitmap, 99, row(25)), Black);
        EXPECT_EQ(pixelAt(bitmap, 2, row(2)), Clear); // the line starts at the inset
        EXPECT_EQ(pixelAt(bitmap, 3, row(1)), Clear);
    }
}

TEST(CVContentViewDrawing, EdgeFlagsAndBorderColourDefaults) {
    auto panel = CVContentView::make({0, 0, 20, 10});
    EXPECT_EQ(panel->borderColor(), cv_borderColor());
    EXPECT_EQ(panel->topColor(), cv_borderColor());

    panel->setHasBorder(true);
    panel->setHasLeftBorder(false);
    EXPECT_FALSE(panel->hasBorder());
    EXPECT_TRUE(panel->hasTopBorder());

    panel->setBorderColorDefault(CVBorderColorDefaultDarkGray);
    for (const auto& color :
         {panel->topColor(), panel->leftColor(), panel->bottomColor(), panel->rightColor()})
        EXPECT_EQ(color, ns::Color::darkGrayColor());

    panel->setBorderColorDefault(7);
    EXPECT_EQ(panel->borderColor(), nullptr);
    EXPECT_EQ(panel->rightColor(), nullptr);
    panel->renderedBitmap(); // edges without colours draw without crashing
}

// --- Redisplay ----------------------------------------------------------------------------------

TEST(CVContentViewRedisplay, OnlyTheNineObservedPropertiesAskForDisplay) {
    auto panel = CVContentView::make({0, 0, 20, 10});
    EXPECT_EQ(
        panel->selfObservationKeyPaths(),
        (std::vector<std::string>{"hasTopBorder", "hasBottomBorder", "hasLeftBorder", "hasRightBorder",
                                  "drawsBackground", "startColor", "endColor", "fillColor", "fillStyle"}));

    auto asksForDisplay = [&](const std::function<void()>& change) {
        const auto before = panel->displayRequestCount();
        change();
        return panel->displayRequestCount() > before;
    };
    EXPECT_TRUE(asksForDisplay([&] { panel->setHasTopBorder(true); }));
    EXPECT_TRUE(asksForDisplay([&] { panel->setHasBottomBorder(true); }));
    EXPECT_TRUE(asksForDisplay([&] { panel->setHasLeftBorder(true); }));
    EXPECT_TRUE(asksForDisplay([&] { panel->setHasRightBorder(true); }));
    EXPECT_TRUE(asksForDisplay([&] { panel->setDrawsBackground(true); }));
    EXPECT_TRUE(asksForDisplay([&] { panel->setStartColor(rgb(1, 0, 0)); }));
    EXPECT_TRUE(asksForDisplay([&] { panel->setEndColor(rgb(1, 0, 0)); }));
    EXPECT_TRUE(asksForDisplay([&] { panel->setFillColor(rgb(1, 0, 0)); }));
    EXPECT_TRUE(asksForDisplay([&] { panel->setFillStyle(CVFillStyleGradient); }));
    EXPECT_TRUE(asksForDisplay([&] { panel->setValueForKey(ns::Value(false), "hasTopBorder"); }));

    EXPECT_FALSE(asksForDisplay([&] { panel->setTopColor(rgb(0, 1, 0)); }));
    EXPECT_FALSE(asksForDisplay([&] { panel->setBorderColor(rgb(0, 1, 0)); }));
    EXPECT_FALSE(asksForDisplay([&] { panel->setBorderEdgeInsets({1, 1, 1, 1}); }));
    EXPECT_FALSE(asksForDisplay([&] { panel->setReportAsFlipped(true); }));
    EXPECT_FALSE(asksForDisplay([&] { panel->setTag(4); }));
    EXPECT_FALSE(asksForDisplay([&] { panel->setLayoutOptions(CVLayoutOptionUniqueWidth); }));
}

// --- Layout and frame ---------------------------------------------------------------------------

TEST(CVContentViewDelegateCalls, LayoutTellsTheDelegateBetweenTwoPasses) {
    // The delegate moves the content; the move shows when the same layout call returns.
    struct Insetting : RecordingDelegate {
        ns::Ref<ns::View> content;
        ns::Ref<ns::LayoutConstraint> leading;
        double seenX = -1;
        void contentViewDidLayout(CVContentView& view) override {
            RecordingDelegate::contentViewDidLayout(view);
            seenX = content->frame().x();
            leading->setConstant(10);
        }
    };
    auto panel = CVContentView::make({0, 0, 200, 100});
    auto delegate = std::make_shared<Insetting>();
    delegate->content = ns::View::make();
    addSubview(*panel, delegate->content, ns::EdgeInsets{});
    delegate->leading = panel->constraints().front();
    panel->setDelegate(delegate);

    panel->layout();
    EXPECT_EQ(delegate->layouts, 1);
    EXPECT_EQ(delegate->seenX, 0);
    EXPECT_EQ(delegate->content->frame(), ns::Rect(10, 0, 190, 100));

    delegate->wantsLayout = false;
    panel->layout();
    EXPECT_EQ(delegate->layouts, 1);
}

TEST(CVContentViewDelegateCalls, FrameChangesAndMovesAreReported) {
    auto panel = CVContentView::make({0, 0, 20, 10});
    auto delegate = std::make_shared<RecordingDelegate>();
    panel->setDelegate(delegate);
    panel->setFrame({0, 0, 30, 10});
    EXPECT_EQ(delegate->frameChanges, 1);
    auto host = ns::View::make();
    host->addSubview(panel);
    EXPECT_EQ(delegate->frameChanges, 2);

    delegate.reset(); // held weakly: a gone delegate is simply not called
    panel->setFrame({0, 0, 40, 10});
    EXPECT_EQ(panel->delegate(), nullptr);
}

// --- Statements ---------------------------------------------------------------------------------

class CVContentViewStatements : public ::testing::Test {
protected:
    ns::Ref<CVContentView> panel = CVContentView::make({0, 0, 200, 100});
    corvane::core::CoreLogCapture capture;

    std::vector<std::string> warnings() {
        corvane::core::CoreLog::flush();
        return capture.messages();
    }
};

TEST_F(CVContentViewStatements, FooterAndFillColourByName) {
    panel->styleAs("sheetButtonsFooter");
    EXPECT_TRUE(panel->hasTopBorder());
    EXPECT_FALSE(panel->hasBottomBorder());
    EXPECT_EQ(panel->fillColor(), ns::Color::windowBackgroundColor());
    EXPECT_EQ(panel->fillStyle(), CVFillStyleColor);

    auto other = CVContentView::make();
    other->styleAs("fillColor:cv_appColor");
    EXPECT_EQ(cv_hexRGBString(*other->fillColor()), "0xdb7100");
    EXPECT_EQ(other->fillStyle(), CVFillStyleColor);

    auto before = other->fillColor();
    other->styleAs("fillColor:noSuchColour");
    EXPECT_EQ(other->fillColor(), before);
    EXPECT_TRUE(warnings().empty());
}

TEST_F(CVContentViewStatements, OffsetsAndBordersWalkUpToFourArguments) {
    auto offset = [&](double k) {
        return ns::LayoutConstraint::constraintWithItem(panel, ns::LayoutAttribute::Width,
                                                        ns::LayoutRelation::Equal, nullptr,
                                                        ns::LayoutAttribute::NotAnAttribute, 1, k);
    };
    panel->setTopOffsetConstraint(offset(1));
    panel->setLeftOffsetConstraint(offset(2));
    panel->setBottomOffsetConstraint(offset(3));
    panel->styleAs("tlbr:10,,20");
    EXPECT_EQ(panel->offsetConstraintConstants(), (ns::EdgeInsets{10, 2, 20, 0}));
    panel->styleAs("tlbr:1,2,3,4,5"); // no right constraint: its value and the fifth are dropped
    EXPECT_EQ(panel->offsetConstraintConstants(), (ns::EdgeInsets{1, 2, 3, 0}));

    panel->setHasLeftBorder(true);
    panel->styleAs("border:1,0,yes,no");
    EXPECT_TRUE(panel->hasTopBorder());
    EXPECT_FALSE(panel->hasLeftBorder());
    EXPECT_TRUE(panel->hasBottomBorder());
    EXPECT_FALSE(panel->hasRightBorder());
    panel->styleAs("border:,1");
    EXPECT_TRUE(panel->hasTopBorder());
    EXPECT_TRUE(panel->hasLeftBorder());
    EXPECT_TRUE(warnings().empty());
}

TEST_F(CVContentViewStatements, SizesAddConstraintsAtPriority900) {
    panel->styleAs("width:abc;height: 42.5;width:320");
    ASSERT_EQ(panel->constraints().size(), 3u);
    const auto& c = panel->constraints();
    EXPECT_EQ(c[0]->firstAttribute(), ns::LayoutAttribute::Width);
    EXPECT_EQ(c[0]->constant(), 0);
    EXPECT_EQ(c[0]->priority(), 900);
    EXPECT_EQ(c[1]->firstAttribute(), ns::LayoutAttribute::Height);
    EXPECT_EQ(c[1]->constant(), 42.5);
    EXPECT_EQ(c[2]->constant(), 320);

    panel->styleAs("uniqueWidth;right-column-width:80");
    EXPECT_EQ(panel->layoutOptions(), CVLayoutOptionUniqueWidth);
    auto column = addWidthConstraintWithConstant(*panel, 10, 1000);
    panel->setRightColumnConstraint(column);
    panel->styleAs("right-column-width:80.25");
    EXPECT_EQ(column->constant(), 80.25);
}

TEST_F(CVContentViewStatements, ASizeWithoutArgumentsWarns) {
    // Reached only through a table that names the callback without its colon.
    class Aliased : public CVContentView {
    public:
        using CVContentView::CVContentView;
        const ns::Dictionary& classStylingDefinitions() const override {
            static const ns::Dictionary table = [] {
                auto t = stylingDefinitions();
                t["width"] = t.at("width:");
                return t;
            }();
            return table;
        }
    };
    auto aliased = ns::create<Aliased>(ns::Rect{});
    aliased->styleAs("width");
    EXPECT_TRUE(aliased->constraints().empty());
    corvane::core::CoreLog::flush();
    auto records = capture.records();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].message, "Required arguments missing.");
    EXPECT_EQ(records[0].file, "Views/CVContentView");
    EXPECT_EQ(records[0].function, "stylingDefinitions");
    EXPECT_EQ(records[0].flag, corvane::core::CoreLogFlagWarning);
}

TEST_F(CVContentViewStatements, ANilTargetIsLeftAloneSilently) {
    panel->uiStyler()->style(nullptr,
                             "width:10;height:5;fillColor:cv_appColor;border:1;tlbr:1;sheetButtonsFooter;"
                             "uniqueWidth;fitWidth;right-column-width:3");
    EXPECT_TRUE(panel->constraints().empty());
    EXPECT_FALSE(panel->hasTopBorder());
    EXPECT_TRUE(warnings().empty());
}

TEST_F(CVContentViewStatements, FitWidthPinsTheFittingWidth) {
    auto label = ns::View::make();
    addSubview(*panel, label, ns::EdgeInsets{0, 4, 0, 6});
    addWidthConstraintWithConstant(*label, 90, 1000);
    panel->styleAs("fitWidth");
    ASSERT_TRUE(panel->widthConstraint());
    EXPECT_EQ(panel->widthConstraint()->constant(), 100);
    EXPECT_EQ(panel->widthConstraint()->priority(), 900);
}

// --- Containers ---------------------------------------------------------------------------------

TEST(CVContentViewContainers, WrappingAViewTakesItsFrameAndPinsItInside) {
    auto host = ns::View::make({0, 0, 300, 300});
    auto view = ns::View::make({10, 20, 100, 40});
    host->addSubview(view);
    auto container = qs_containerViewWithEdgeInsets(*view, {5, 5, 5, 5});
    EXPECT_EQ(container->frame(), ns::Rect(10, 20, 100, 40));
    EXPECT_EQ(view->superview(), container);
    EXPECT_TRUE(host->subviews().empty());
    container->layoutSubtreeIfNeeded();
    EXPECT_EQ(view->frame(), ns::Rect(5, 5, 90, 30));
    EXPECT_EQ(container->fillStyle(), CVFillStyleNone);

    auto light = qs_lightContainerViewWithEdgeInsets(*ns::View::make(), {});
    EXPECT_TRUE(ns::isKind<CVLightContentView>(light));
    EXPECT_TRUE(light->isOpaque());
}
