#include "platform/graphics/Color.hpp"
#include "platform/graphics/Graphics.hpp"
#include "platform/views/ScrollView.hpp"
#include "support/PixelProbe.hpp"

#include <gtest/gtest.h>

using ns::Rect;

namespace {

// A document that paints its lowest ten points red.
class Document : public ns::View {
public:
    using View::View;
    void drawRect(Rect) override {
        ns::Color::redColor()->setFill();
        ns::RectFill({0, 0, bounds().width(), 10});
    }
};

} // namespace

TEST(ScrollView, ClipViewFillsWhatBorderAndShownScrollersLeave) {
    auto scroll = ns::ScrollView::make({0, 0, 200, 100});
    EXPECT_EQ(scroll->contentView()->frame(), Rect(0, 0, 200, 100));
    scroll->setBorderType(ns::BorderType::LineBorder);
    scroll->setHasVerticalScroller(true);
    scroll->setHasHorizontalScroller(true);
    EXPECT_EQ(scroll->contentView()->frame(), Rect(1, 16, 183, 83));
    scroll->setAutohidesScrollers(true);
    auto document = ns::View::make({0, 0, 150, 300}); // taller, not wider
    scroll->setDocumentView(document);
    EXPECT_TRUE(scroll->isVerticalScrollerShown());
    EXPECT_FALSE(scroll->isHorizontalScrollerShown());
    EXPECT_EQ(scroll->contentSize(), (ns::Size{183, 98}));
    EXPECT_EQ(document->enclosingScrollView(), scroll);
    EXPECT_EQ(scroll->enclosingScrollView(), nullptr);
    scroll->setFrame({0, 0, 300, 400});
    EXPECT_FALSE(scroll->isVerticalScrollerShown());
    EXPECT_EQ(scroll->contentSize(), (ns::Size{298, 398}));
}

TEST(ScrollView, ScrollingStaysInsideTheDocumentAndMovesWhatIsDrawn) {
    auto scroll = ns::ScrollView::make({0, 0, 50, 40});
    auto document = ns::create<Document>(Rect(0, 0, 50, 200));
    scroll->setDocumentView(document);
    auto clip = scroll->contentView();
    EXPECT_EQ(clip->bounds().origin, (ns::Point{0, 0}));
    EXPECT_EQ(pixelAt(scroll->renderedBitmap(), 5, 35), (RGBA{255, 0, 0, 255})); // the red band at the bottom

    clip->scrollToPoint({0, 500});
    EXPECT_EQ(clip->bounds().origin, (ns::Point{0, 160}));
    EXPECT_EQ(clip->documentVisibleRect(), Rect(0, 160, 50, 40));
    EXPECT_NE(pixelAt(scroll->renderedBitmap(), 5, 35), (RGBA{255, 0, 0, 255})); // scrolled away
    clip->scrollToPoint({-20, -20});
    EXPECT_EQ(clip->bounds().origin, (ns::Point{0, 0}));
}
