#include "Canvas.hpp"

#include "platform/foundation/Log.hpp"
#include "platform/graphics/BitmapImageRep.hpp"
#include "platform/graphics/Color.hpp"
#include "platform/graphics/Graphics.hpp"
#include "platform/graphics/Image.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <unistd.h>

using namespace ns;

namespace {

constexpr RGBA kRed{255, 0, 0, 255};
constexpr RGBA kBlue{0, 0, 255, 255};

// A 1 x 2 image: red on top, blue below.
Ref<Image> redOverBlue() {
    auto image = Image::make({1, 2});
    image->lockFocus();
    Color::blueColor()->set();
    RectFill({0, 0, 1, 1});
    Color::redColor()->set();
    RectFill({0, 1, 1, 1});
    image->unlockFocus();
    return image;
}

} // namespace

TEST(BitmapImageRep, OnlyEightBitInterleavedGreyOrRGB) {
    auto rgba = BitmapImageRep::make(3, 2, 8, 4, true, false, CalibratedRGBColorSpace);
    ASSERT_TRUE(rgba);
    EXPECT_EQ(rgba->pixelsWide(), 3);
    EXPECT_EQ(rgba->samplesPerPixel(), 4);
    EXPECT_EQ(rgba->bytesPerRow(), 12);
    EXPECT_EQ(rgba->size(), (Size{3, 2}));
    EXPECT_TRUE(BitmapImageRep::make(3, 2, 8, 1, false, false, DeviceWhiteColorSpace));
    EXPECT_TRUE(BitmapImageRep::make(3, 2, 8, 3, false, false, DeviceRGBColorSpace, 9, 24));

    LogCapture log;
    EXPECT_FALSE(BitmapImageRep::make(3, 2, 16, 4, true, false, CalibratedRGBColorSpace));
    EXPECT_FALSE(BitmapImageRep::make(3, 2, 8, 4, false, false, CalibratedRGBColorSpace));
    EXPECT_FALSE(BitmapImageRep::make(3, 2, 8, 4, true, true, CalibratedRGBColorSpace));
    EXPECT_FALSE(BitmapImageRep::make(3, 2, 8, 5, true, false, DeviceCMYKColorSpace));
    EXPECT_FALSE(BitmapImageRep::make(0, 2, 8, 4, true, false, CalibratedRGBColorSpace));
    EXPECT_FALSE(BitmapImageRep::make(-3, 2));
    EXPECT_FALSE(BitmapImageRep::make(3, 2, 8, 4, true, false, CalibratedRGBColorSpace, 4));
    EXPECT_TRUE(log.contains("unsupported bitmap"));
}

TEST(BitmapImageRep, PixelAccess) {
    auto rep = BitmapImageRep::make(4, 4);
    uint64_t p[4] = {200, 100, 50, 255};
    rep->setPixel(p, 1, 2);
    uint64_t q[4] = {};
    rep->getPixel(q, 1, 2);
    EXPECT_EQ(std::vector<uint64_t>(q, q + 4), (std::vector<uint64_t>{200, 100, 50, 255}));
    rep->setColor(Color::colorWithDeviceRed(1, 0, 0, 0.5), 0, 0);
    rep->getPixel(q, 0, 0);
    EXPECT_EQ(q[0], 128u); // stored premultiplied
    auto color = rep->colorAtX(0, 0);
    EXPECT_EQ(color->colorSpaceName(), CalibratedRGBColorSpace);
    EXPECT_NEAR(color->redComponent(), 1, 0.01);
    EXPECT_NEAR(color->alphaComponent(), 0.5, 0.01);

    auto grey = BitmapImageRep::make(2, 2, 8, 2, true, false, CalibratedWhiteColorSpace);
    uint64_t g[2] = {90, 255};
    grey->setPixel(g, 1, 1);
    uint64_t h[2] = {};
    grey->getPixel(h, 1, 1);
    EXPECT_EQ(h[0], 90u);
    EXPECT_NEAR(grey->colorAtX(1, 1)->whiteComponent(), 90 / 255.0, 1e-9);
    EXPECT_EQ(grey->colorAtX(1, 1)->colorSpaceName(), CalibratedWhiteColorSpace);

    LogCapture log;
    uint64_t out[4] = {9, 9, 9, 9};
    rep->getPixel(out, 4, 0);
    EXPECT_EQ(out[0], 0u);
    EXPECT_FALSE(rep->colorAtX(-1, 0));
    rep->setPixel(p, 0, 99);
    rep->getPixel(nullptr, 0, 0);
    EXPECT_TRUE(log.contains("outside the 4x4 bitmap"));
}

TEST(BitmapImageRep, PNGRoundTrip) {
    auto rep = BitmapImageRep::make(3, 2);
    uint64_t colours[6][4] = {{255, 0, 0, 255},  {0, 255, 0, 255}, {0, 0, 255, 255},
                              {10, 20, 30, 255}, {0, 0, 0, 0},     {64, 64, 64, 128}};
    for (int i = 0; i < 6; ++i)
        rep->setPixel(colours[i], i % 3, i / 3);
    auto data = rep->representationUsingType(BitmapImageFileType::PNG);
    ASSERT_GT(data.size(), 8u);
    EXPECT_EQ(data[1], 'P');
    auto back = BitmapImageRep::imageRepWithData(data);
    ASSERT_TRUE(back);
    EXPECT_EQ(back->pixelsWide(), 3);
    EXPECT_EQ(back->pixelsHigh(), 2);
    EXPECT_TRUE(back->hasAlpha());
    for (int i = 0; i < 6; ++i) {
        uint64_t p[4];
        back->getPixel(p, i % 3, i / 3);
        for (int k = 0; k < 4; ++k)
            EXPECT_NEAR(double(p[k]), double(colours[i][k]), 1) << "pixel " << i;
    }

    EXPECT_FALSE(BitmapImageRep::imageRepWithData({1, 2, 3}));
    auto truncated = std::vector<uint8_t>(data.begin(), data.begin() + data.size() / 2);
    EXPECT_FALSE(BitmapImageRep::imageRepWithData(truncated));
    LogCapture log;
    EXPECT_TRUE(rep->representationUsingType(BitmapImageFileType::JPEG).empty());
    EXPECT_FALSE(rep->writeToFile("/nonexistent-dir/x.png"));
}

TEST(Image, LockFocusDrawsIntoTheImageAndDataReadsBack) {
    auto image = Image::make({4, 3});
    EXPECT_FALSE(image->isValid());
    image->lockFocus();
    ASSERT_TRUE(GraphicsContext::currentContext());
    Color::redColor()->set();
    RectFill({0, 0, 4, 3});
    image->unlockFocus();
    EXPECT_FALSE(GraphicsContext::currentContext());
    EXPECT_TRUE(image->isValid());
    ASSERT_EQ(image->representations().size(), 1u);
    auto data = image->dataRepresentation();
    EXPECT_EQ(image->TIFFRepresentation(), data);
    auto back = Image::imageWithData(data);
    ASSERT_TRUE(back);
    EXPECT_EQ(back->size(), (Size{4, 3}));
    uint64_t p[4];
    back->bitmapRepresentation()->getPixel(p, 3, 2);
    EXPECT_EQ(p[0], 255u);

    // Drawing into it again keeps what was there.
    image->lockFocus();
    Color::blueColor()->set();
    RectFill({0, 0, 1, 1});
    image->unlockFocus();
    image->bitmapRepresentation()->getPixel(p, 3, 0);
    EXPECT_EQ(p[0], 255u);
    image->bitmapRepresentation()->getPixel(p, 0, 2);
    EXPECT_EQ(p[2], 255u);

    EXPECT_FALSE(Image::imageWithData({}));
}

TEST(Image, BadSizesAndUnbalancedFocusAreHarmless) {
    auto image = Image::make({-5, 3});
    EXPECT_EQ(image->size(), (Size{0, 3}));
    LogCapture log;
    image->lockFocus();
    EXPECT_FALSE(GraphicsContext::currentContext());
    RectFill({0, 0, 1, 1});
    image->unlockFocus();
    image->unlockFocus();
    EXPECT_TRUE(log.contains("nothing to draw into"));
    EXPECT_TRUE(log.contains("unlockFocus without lockFocus"));
    auto huge = Image::make({1e300, 10});
    huge->lockFocus();
    EXPECT_FALSE(GraphicsContext::currentContext());
    huge->unlockFocus();
    EXPECT_TRUE(log.contains("beyond what a bitmap can hold"));
    EXPECT_TRUE(image->dataRepresentation().empty());
    Canvas canvas(2, 2);
    image->drawInRect({0, 0, 2, 2}); // nothing to draw, nothing fails
    EXPECT_EQ(canvas.pixel(0, 0).a, 0);
}

TEST(Image, FlippedContextsShowTheImageUprightOnlyWhenAsked) {
    auto image = redOverBlue();
    {
        Canvas canvas(1, 2);
        image->drawInRect({0, 0, 1, 2});
        EXPECT_EQ(canvas.pixel(0, 0), kRed);
        EXPECT_EQ(canvas.pixel(0, 1), kBlue);
    }
    {
        Canvas canvas(1, 2, /*flipped*/ true);
        image->drawInRect({0, 0, 1, 2}, {}, CompositingOperation::SourceOver, 1, true, {});
        EXPECT_EQ(canvas.pixel(0, 0), kRed);
        image->drawInRect({0, 0, 1, 2}, {}, CompositingOperation::SourceOver, 1, false, {});
        EXPECT_EQ(canvas.pixel(0, 0), kBlue);
        EXPECT_EQ(canvas.pixel(0, 1), kRed);
    }
}

TEST(Image, CopyWithAFractionReplacesTheDestination) {
    auto image = redOverBlue();
    Canvas canvas(3, 2);
    Color::whiteColor()->set();
    RectFill({0, 0, 3, 2});
    image->drawAtPoint({0, 0}, {}, CompositingOperation::Copy, 0.5);
    image->drawAtPoint({1, 0}, {}, CompositingOperation::SourceOver, 0.5);
    EXPECT_TRUE(near(canvas.pixel(0, 0), {128, 0, 0, 128})) << canvas.pixel(0, 0);
    EXPECT_TRUE(near(canvas.pixel(1, 0), {255, 127, 127, 255})) << canvas.pixel(1, 0);
    EXPECT_EQ(canvas.pixel(2, 0), (RGBA{255, 255, 255, 255}));
}

TEST(Image, PartsScalingAndInterpolation) {
    auto image = redOverBlue();
    {
        // Only the lower (blue) point, drawn at the origin.
        Canvas canvas(1, 2);
        image->drawAtPoint({0, 1}, {0, 0, 1, 1}, CompositingOperation::SourceOver, 1);
        EXPECT_EQ(canvas.pixel(0, 0), kBlue);
        EXPECT_EQ(canvas.pixel(0, 1).a, 0);
    }
    {
        // Scaled up eight times without interpolation: hard halves.
        Canvas canvas(8, 16);
        Dictionary hints{{ImageHintInterpolation, static_cast<int64_t>(ImageInterpolation::None)}};
        image->drawInRect({0, 0, 8, 16}, {}, CompositingOperation::Copy, 1, true, hints);
        EXPECT_EQ(canvas.pixel(4, 7), kRed);
        EXPECT_EQ(canvas.pixel(4, 8), kBlue);
    }
    {
        // With high-quality interpolation the seam is blended.
        Canvas canvas(8, 16);
        Dictionary hints{{ImageHintInterpolation, static_cast<int64_t>(ImageInterpolation::High)}};
        image->drawInRect({0, 0, 8, 16}, {}, CompositingOperation::Copy, 1, true, hints);
        auto seam = canvas.pixel(4, 7);
        EXPECT_GT(seam.b, 0);
        EXPECT_GT(seam.r, seam.b);
    }
}

TEST(Image, NamedImagesAndSearchDirectories) {
    EXPECT_FALSE(Image::imageNamed("corvane-test-missing"));
    auto made = redOverBlue();
    EXPECT_TRUE(made->setName(std::string("corvane-test-made")));
    EXPECT_EQ(Image::imageNamed("corvane-test-made"), made);
    EXPECT_FALSE(redOverBlue()->setName(std::string("corvane-test-made")));
    EXPECT_TRUE(made->setName(std::nullopt));
    EXPECT_FALSE(Image::imageNamed("corvane-test-made"));

    auto directory = std::filesystem::temp_directory_path() / ("corvane-images-" + std::to_string(getpid()));
    std::filesystem::create_directories(directory);
    ASSERT_TRUE(made->bitmapRepresentation()->writeToFile((directory / "corvane-test-file.png").string()));
    Image::addImageSearchDirectory(directory.string());
    auto loaded = Image::imageNamed("corvane-test-file");
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->size(), (Size{1, 2}));
    EXPECT_EQ(Image::imageNamed("corvane-test-file.png"), Image::imageNamed("corvane-test-file.png"));
    EXPECT_EQ(Image::imageNamed("corvane-test-file"), loaded);
    std::filesystem::remove_all(directory);
}

TEST(Image, RepresentationsAndCopies) {
    auto image = redOverBlue();
    auto big = BitmapImageRep::make(4, 8);
    image->addRepresentation(big);
    image->addRepresentation(big);
    image->addRepresentation(nullptr);
    EXPECT_EQ(image->representations().size(), 2u);
    EXPECT_EQ(image->bestRepresentation(), big);
    image->removeRepresentation(big);
    auto copy = image->copy();
    EXPECT_EQ(copy->size(), image->size());
    EXPECT_NE(copy->bitmapRepresentation(), image->bitmapRepresentation());
    // Drawing into the copy leaves the original alone.
    copy->lockFocus();
    RectFillUsingOperation({0, 0, 1, 2}, CompositingOperation::Clear);
    copy->unlockFocus();
    uint64_t p[4];
    image->bitmapRepresentation()->getPixel(p, 0, 0);
    EXPECT_EQ(p[3], 255u);
}
