#include "platform/foundation/Log.hpp"
#include "platform/graphics/BitmapImageRep.hpp"
#include "platform/graphics/Filter.hpp"
#include "platform/graphics/Image.hpp"

#include <gtest/gtest.h>

using namespace ns;

namespace {

using Pixel = std::array<uint64_t, 4>;

// A one-row image of the given pixels (premultiplied samples).
Ref<Image> imageOf(const std::vector<Pixel>& pixels) {
    auto rep = BitmapImageRep::make(static_cast<int64_t>(pixels.size()), 1);
    for (size_t x = 0; x < pixels.size(); ++x)
        rep->setPixel(pixels[x].data(), static_cast<int64_t>(x), 0);
    auto image = Image::make({static_cast<double>(pixels.size()), 1});
    image->addRepresentation(rep);
    return image;
}

std::vector<Pixel> pixelsOf(const Ref<Image>& image) {
    auto rep = image->bitmapRepresentation();
    std::vector<Pixel> pixels(static_cast<size_t>(rep->pixelsWide()));
    for (size_t x = 0; x < pixels.size(); ++x)
        rep->getPixel(pixels[x].data(), static_cast<int64_t>(x), 0);
    return pixels;
}

Ref<Image> colorControls(const Ref<Image>& input, double saturation, double brightness, double contrast) {
    auto filter = Filter::filterWithName("CIColorControls");
    filter->setDefaults();
    filter->setValueForKey(input, InputImageKey);
    filter->setValueForKey(static_cast<float>(saturation), InputSaturationKey);
    filter->setValueForKey(static_cast<float>(brightness), InputBrightnessKey);
    filter->setValueForKey(static_cast<float>(contrast), InputContrastKey);
    return filter->valueForKey(OutputImageKey).objectAs<Image>();
}

} // namespace

TEST(Filter, ColorInvertOnKnownPixels) {
    auto input = imageOf({{255, 0, 0, 255}, {100, 150, 200, 255}, {64, 0, 0, 128}, {0, 0, 0, 0}});
    auto filter = Filter::filterWithName("CIColorInvert");
    ASSERT_TRUE(filter);
    EXPECT_EQ(filter->inputKeys(), (std::vector<std::string>{InputImageKey}));
    EXPECT_FALSE(filter->outputImage());
    filter->setValueForKey(input, InputImageKey);
    auto output = filter->outputImage();
    ASSERT_TRUE(output);
    EXPECT_EQ(output->size(), input->size());
    EXPECT_EQ(pixelsOf(output), (std::vector<Pixel>{{0, 255, 255, 255},
                                                    {155, 105, 55, 255},
                                                    {64, 128, 128, 128}, // half alpha: 0.5 and 1.0 inverted
                                                    {0, 0, 0, 0}}));
    // The input is untouched.
    EXPECT_EQ(pixelsOf(input)[0], (Pixel{255, 0, 0, 255}));
}

TEST(Filter, ColorControlsSaturationContrastBrightness) {
    auto input = imageOf({{255, 0, 0, 255}, {0, 255, 0, 255}, {128, 128, 128, 255}, {150, 150, 150, 255}});
    // Defaults change nothing.
    EXPECT_EQ(pixelsOf(colorControls(input, 1, 0, 1)), pixelsOf(input));
    // Saturation 0: the luma grey (0.2125 and 0.7154 of full scale).
    auto grey = pixelsOf(colorControls(input, 0, 0, 1));
    EXPECT_EQ(grey[0], (Pixel{54, 54, 54, 255}));
    EXPECT_EQ(grey[1], (Pixel{182, 182, 182, 255}));
    // Contrast 3 around the middle: 150/255 -> (150 * 3 - 255) / 255, and the clamp at black.
    auto contrasted = pixelsOf(colorControls(input, 1, 0, 3));
    EXPECT_EQ(contrasted[3], (Pixel{195, 195, 195, 255}));
    EXPECT_EQ(contrasted[2], (Pixel{129, 129, 129, 255}));
    EXPECT_EQ(contrasted[0], (Pixel{255, 0, 0, 255}));
    // Brightness adds and clamps.
    auto brighter = pixelsOf(colorControls(input, 1, 0.1, 1));
    EXPECT_EQ(brighter[2], (Pixel{154, 154, 154, 255}));
    EXPECT_EQ(brighter[0], (Pixel{255, 26, 26, 255}));
    // Saturation beyond 1 extrapolates away from the grey.
    auto vivid = pixelsOf(colorControls(imageOf({{200, 100, 100, 255}}), 2, 0, 1));
    EXPECT_GT(vivid[0][0], 200u);
    EXPECT_LT(vivid[0][1], 100u);
}

TEST(Filter, ColorControlsStepOrder) {
    // Saturation, then contrast, then brightness: red goes to grey 0.2125, contrast 2 takes it to
    // -0.075, brightness 0.1 to 0.025 (6 of 255). Brightness before contrast would give 32.
    auto output = pixelsOf(colorControls(imageOf({{255, 0, 0, 255}}), 0, 0.1, 2));
    EXPECT_EQ(output[0], (Pixel{6, 6, 6, 255}));
}

TEST(Filter, InputsThroughKeyValueCoding) {
    EXPECT_FALSE(Filter::filterWithName("CIGaussianBlur"));
    auto filter = Filter::filterWithName("CIColorControls");
    EXPECT_EQ(filter->valueForKey(InputContrastKey).doubleValue(), 1);
    filter->setValueForKey(0.5, InputContrastKey);
    EXPECT_EQ(filter->valueForKey(InputContrastKey).doubleValue(), 0.5);
    filter->setDefaults();
    EXPECT_EQ(filter->valueForKey(InputContrastKey).doubleValue(), 1);

    LogCapture log;
    filter->setValueForKey("strong", InputContrastKey);
    EXPECT_EQ(filter->valueForKey(InputContrastKey).doubleValue(), 1);
    filter->setValueForKey(1.0, "inputRadius");
    EXPECT_EQ(log.messages().size(), 2u);
    // Anything but an image as input gives no output.
    filter->setValueForKey(3, InputImageKey);
    EXPECT_FALSE(filter->outputImage());
    // A bitmap works as well as an image, and the output keeps the bitmap's point size.
    auto rep = BitmapImageRep::make(4, 2);
    rep->setSize({2, 1});
    filter->setValueForKey(rep, InputImageKey);
    auto output = filter->outputImage();
    ASSERT_TRUE(output);
    EXPECT_EQ(output->size(), (Size{2, 1}));
    EXPECT_EQ(output->bitmapRepresentation()->pixelsWide(), 4);
}
