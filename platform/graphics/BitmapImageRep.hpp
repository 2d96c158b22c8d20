#pragma once

#include "platform/foundation/Object.hpp"
#include "platform/graphics/ImageRep.hpp"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ns {

class Color;

enum class BitmapImageFileType : int64_t {
    TIFF = 0,
    BMP = 1,
    GIF = 2,
    JPEG = 3,
    PNG = 4,
    JPEG2000 = 5,
};

// Pixels in memory: 8 bits per sample, grey or RGB, with or without alpha, samples interleaved.
// Pixel (0, 0) is the top-left pixel. Samples are stored with colour premultiplied by alpha, and
// getPixel/setPixel read and write them as stored; colorAtX/setColor work in plain colours.
class BitmapImageRep : public ImageRep {
public:
    BitmapImageRep(cairo_surface_t* surface, int64_t samplesPerPixel, bool hasAlpha,
                   std::string colorSpaceName);
    ~BitmapImageRep() override;

    // Fresh, transparent (or black, without alpha) pixels. Supported: 8 bits per sample,
    // not planar, 1 to 4 samples per pixel (grey, grey + alpha, RGB, RGB + alpha, the alpha
    // flag agreeing), in a calibrated or device RGB / white space by name. bytesPerRow and
    // bitsPerPixel of 0 let the rep choose; other values must fit the pixels. Anything else,
    // and an extent below 1, gives nil and a log line.
    static Ref<BitmapImageRep> make(int64_t pixelsWide, int64_t pixelsHigh, int64_t bitsPerSample,
                                    int64_t samplesPerPixel, bool hasAlpha, bool isPlanar,
                                    std::string_view colorSpaceName, int64_t bytesPerRow = 0,
                                    int64_t bitsPerPixel = 0);
    // Calibrated RGB with alpha.
    static Ref<BitmapImageRep> make(int64_t pixelsWide, int64_t pixelsHigh);
    // Reads PNG data; nil when the bytes are not a PNG image.
    static Ref<BitmapImageRep> imageRepWithData(const std::vector<uint8_t>& data);
    static Ref<BitmapImageRep> imageRepWithContentsOfFile(const std::string& path);

    int64_t samplesPerPixel() const { return m_samplesPerPixel; }
    int64_t bitsPerPixel() const { return m_samplesPerPixel * 8; }
    int64_t bytesPerRow() const;
    bool isPlanar() const { return false; }

    // Samples of the pixel (samplesPerPixel values, 0-255); outside the bitmap zeros and a
    // log line. A null pointer is ignored.
    void getPixel(uint64_t* pixel, int64_t x, int64_t y) const;
    void setPixel(const uint64_t* pixel, int64_t x, int64_t y);
    // The pixel as a colour in the rep's space, alpha not premultiplied; nil outside.
    Ref<Color> colorAtX(int64_t x, int64_t y) const;
    void setColor(const Ref<Color>& color, int64_t x, int64_t y);

    // The encoded image; PNG is the only type written: others give no bytes and a log line.
    std::vector<uint8_t> representationUsingType(BitmapImageFileType type) const;
    // Writes PNG; false (and a log line) when the file cannot be written.
    bool writeToFile(const std::string& path) const;

    // A rep with the same pixels and size.
    Ref<BitmapImageRep> copy() const;

    cairo_surface_t* cairoSurface() const override { return m_surface; }

private:
    // Reads the stored pixel as premultiplied r, g, b, a (0-255).
    void readRGBA(int64_t x, int64_t y, uint8_t rgba[4]) const;
    void writeRGBA(int64_t x, int64_t y, const uint8_t rgba[4]);
    bool checkBounds(int64_t x, int64_t y, const char* what) const;

    cairo_surface_t* m_surface;
    int64_t m_samplesPerPixel;
};

} // namespace ns
