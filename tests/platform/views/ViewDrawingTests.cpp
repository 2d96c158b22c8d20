#include "platform/graphics/Appearance.hpp"
#include "platform/graphics/BitmapImageRep.hpp"
#include "platform/graphics/Color.hpp"
#include "platform/graphics/Graphics.hpp"
#include "platform/views/Layer.hpp"
#include "platform/views/View.hpp"
#include "support/PixelProbe.hpp"

#include <gtest/gtest.h>

namespace {

// Fills a band at y 0 to 1 of its own coordinates, from x 0 to bandWidth.
class BottomBand : public ns::View {
public:
    using View::View;
    bool flipped = false;
    double bandWidth = 5;
    bool isFlipped() const override { return flipped; }
    void drawRect(ns::Rect) override {
        ns::Color::redColor()->setFill();
        ns::RectFill({0, 0, bandWidth, 1});
        drawnDark = ns::Appearance::currentDrawingAppearanceIsDark();
    }
    bool drawnDark = false;
};

RGBA pixel(const ns::Ref<ns::BitmapImageRep>& bitmap, int64_t x, int64_t y) {
    return pixelAt(bitmap, x, y);
}

const RGBA Red{255, 0, 0, 255}, White{255, 255, 255, 255};

ns::Ref<ns::View> whiteRoot(bool flipped) {
    auto root = ns::create<BottomBand>(ns::Rect(0, 0, 20, 10));
    root->flipped = flipped;
    root->setWantsLayer(true);
    root->layer()->setBackgroundColor(ns::Color::whiteColor()->CGColor());
    return root;
}

} // namespace

TEST(ViewDrawing, SubviewsLandWhereTheirSuperviewsFlippingPutsThem) {
    for (bool rootFlipped : {false, true})
        for (bool childFlipped : {false, true}) {
            SCOPED_TRACE(testing::Message()
                         << "root flipped " << rootFlipped << ", child flipped " << childFlipped);
            auto root = whiteRoot(rootFlipped);
            auto child = ns::create<BottomBand>(ns::Rect(10, 0, 10, 4));
            child->flipped = childFlipped;
            child->bandWidth = 10;
            root->addSubview(child);
            auto bitmap = root->renderedBitmap();
            ASSERT_EQ(bitmap->pixelsWide(), 20);
            // The root's own band: the last pixel row when unflipped, the first when flipped.
            EXPECT_EQ(pixel(bitmap, 2, rootFlipped ? 0 : 9), Red);
            EXPECT_EQ(pixel(bitmap, 2, rootFlipped ? 9 : 0), White);
            // The child sits at y 0 of its superview: the bottom four rows, or the top four.
            int64_t childTop = rootFlipped ? 0 : 6;
            int64_t bandRow = childFlipped ? childTop : childTop + 3;
            EXPECT_EQ(pixel(bitmap, 15, bandRow), Red);
            EXPECT_EQ(pixel(bitmap, 15, childFlipped ? childTop + 3 : childTop), White);
        }
}

TEST(ViewDrawing, HiddenViewsAreNotDrawnAndAppearanceIsInherited) {
    auto root = whiteRoot(false);
    auto hidden = ns::create<BottomBand>(ns::Rect(0, 5, 20, 5));
    hidden->setHidden(true);
    auto dark = ns::create<BottomBand>(ns::Rect(0, 0, 5, 5));
    root->addSubview(hidden);
    root->addSubview(dark);
    root->setAppearance(ns::Appearance::appearanceNamed(ns::AppearanceNameDarkAqua));
    auto bitmap = root->renderedBitmap();
    EXPECT_EQ(pixel(bitmap, 10, 4), White); // the hidden band would be here
    EXPECT_TRUE(dark->drawnDark);
    EXPECT_FALSE(hidden->drawnDark);
    EXPECT_EQ(dark->effectiveAppearance()->name(), ns::AppearanceNameDarkAqua);
}
