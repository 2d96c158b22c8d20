#include "platform/graphics/BitmapImageRep.hpp"

#include "platform/foundation/Log.hpp"
#include "platform/graphics/Color.hpp"
#include "platform/graphics/ColorSpace.hpp"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace ns {

namespace {

bool isGrayName(std::string_view name) {
    return name == CalibratedWhiteColorSpace || name == DeviceWhiteColorSpace;
}

bool isRGBName(std::string_view name) {
    return name == CalibratedRGBColorSpace || name == DeviceRGBColorSpace;
}

struct ReadBuffer {
    const std::vector<uint8_t>* data;
    size_t offset = 0;
};

cairo_status_t readChunk(void* closure, unsigned char* out, unsigned int length) {
    auto* buffer = static_cast<ReadBuffer*>(closure);
    if (buffer->data->size() - buffer->offset < length)
        return CAIRO_STATUS_READ_ERROR;
    std::memcpy(out, buffer->data->data() + buffer->offset, length);
    buffer->offset += length;
    return CAIRO_STATUS_SUCCESS;
}

cairo_status_t writeChunk(void* closure, const unsigned char* data, unsigned int length) {
    auto* out = static_cast<std::vector<uint8_t>*>(closure);
    out->insert(out->end(), data, data + length);
    return CAIRO_STATUS_SUCCESS;
}

uint8_t luma(const uint8_t rgba[4]) {
    return static_cast<uint8_t>(std::lround(0.2125 * rgba[0] + 0.7154 * rgba[1] + 0.0721 * rgba[2]));
}

Ref<BitmapImageRep> fromSurface(cairo_surface_t* surface) {
    if (cairo_surface_status(surface) != CAIRO_STATUS_SUCCESS) {
        cairo_surface_destroy(surface);
        return nullptr;
    }
    bool alpha = cairo_image_surface_get_format(surface) == CAIRO_FORMAT_ARGB32;
    if (!alpha && cairo_image_surface_get_format(surface) != CAIRO_FORMAT_RGB24) {
        cairo_surface_destroy(surface);
        return nullptr;
    }
    return create<BitmapImageRep>(surface, alpha ? 4 : 3, alpha, CalibratedRGBColorSpace);
}

} // namespace

BitmapImageRep::BitmapImageRep(cairo_surface_t* surface, int64_t samplesPerPixel, bool hasAlpha,
                               std::string colorSpaceName)
    : ImageRep(cairo_image_surface_get_width(surface), cairo_image_surface_get_height(surface), hasAlpha, 8,
               std::move(colorSpaceName)),
      m_surface(surface), m_samplesPerPixel(samplesPerPixel) {}

BitmapImageRep::~BitmapImageRep() {
    cairo_surface_destroy(m_surface);
}

Ref<BitmapImageRep> BitmapImageRep::make(int64_t pixelsWide, int64_t pixelsHigh, int64_t bitsPerSample,
                                         int64_t samplesPerPixel, bool hasAlpha, bool isPlanar,
                                         std::string_view colorSpaceName, int64_t bytesPerRow,
                                         int64_t bitsPerPixel) {
    bool gray = isGrayName(colorSpaceName), rgb = isRGBName(colorSpaceName);
    int64_t colorSamples = gray ? 1 : 3;
    bool valid = pixelsWide >= 1 && pixelsHigh >= 1 && pixelsWide <= 32767 && pixelsHigh <= 32767 &&
                 bitsPerSample == 8 && !isPlanar && (gray || rgb) &&
                 samplesPerPixel == colorSamples + (hasAlpha ? 1 : 0) &&
                 (bitsPerPixel == 0 || bitsPerPixel >= samplesPerPixel * 8) &&
                 (bytesPerRow == 0 || bytesPerRow >= pixelsWide * samplesPerPixel);
    if (!valid) {
        Log("BitmapImageRep: unsupported bitmap %lldx%lld, %lld bits per sample, %lld samples, alpha %d, "
            "planar %d, "
            "%@",
            static_cast<long long>(pixelsWide), static_cast<long long>(pixelsHigh),
            static_cast<long long>(bitsPerSample), static_cast<long long>(samplesPerPixel), hasAlpha ? 1 : 0,
            isPlanar ? 1 : 0, colorSpaceName);
        return nullptr;
    }
    cairo_surface_t* surface =
        cairo_image_surface_create(hasAlpha ? CAIRO_FORMAT_ARGB32 : CAIRO_FORMAT_RGB24,
                                   static_cast<int>(pixelsWide), static_cast<int>(pixelsHigh));
    if (cairo_surface_status(surface) != CAIRO_STATUS_SUCCESS) {
        cairo_surface_destroy(surface);
        Log("BitmapImageRep: cannot allocate %lldx%lld pixels", static_cast<long long>(pixelsWide),
            static_cast<long long>(pixelsHigh));
        return nullptr;
    }
    if (!hasAlpha) {
        // Opaque black rather than whatever the unused byte holds.
        cairo_t* cr = cairo_create(surface);
        cairo_set_source_rgb(cr, 0, 0, 0);
        cairo_paint(cr);
        cairo_destroy(cr);
    }
    return create<BitmapImageRep>(surface, samplesPerPixel, hasAlpha, std::string(colorSpaceName));
}

Ref<BitmapImageRep> BitmapImageRep::make(int64_t pixelsWide, int64_t pixelsHigh) {
    return make(pixelsWide, pixelsHigh, 8, 4, true, false, CalibratedRGBColorSpace);
}

Ref<BitmapImageRep> BitmapImageRep::imageRepWithData(const std::vector<uint8_t>& data) {
    static constexpr uint8_t signature[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    if (data.size() < 8 || std::memcmp(data.data(), signature, 8) != 0)
        return nullptr;
    ReadBuffer buffer{&data};
    return fromSurface(cairo_image_surface_create_from_png_stream(readChunk, &buffer));
}

Ref<BitmapImageRep> BitmapImageRep::imageRepWithContentsOfFile(const std::string& path) {
    return fromSurface(cairo_image_surface_create_from_png(path.c_str()));
}

int64_t BitmapImageRep::bytesPerRow() const {
    return pixelsWide() * m_samplesPerPixel;
}

bool BitmapImageRep::checkBounds(int64_t x, int64_t y, const char* what) const {
    if (x >= 0 && y >= 0 && x < pixelsWide() && y < pixelsHigh())
        return true;
    Log("BitmapImageRep: %s at (%lld, %lld) is outside the %lldx%lld bitmap.", what,
        static_cast<long long>(x), static_cast<long long>(y), static_cast<long long>(pixelsWide()),
        static_cast<long long>(pixelsHigh()));
    return false;
}

void BitmapImageRep::readRGBA(int64_t x, int64_t y, uint8_t rgba[4]) const {
    cairo_surface_flush(m_surface);
    const unsigned char* row =
        cairo_image_surface_get_data(m_surface) + y * cairo_image_surface_get_stride(m_surface);
    uint32_t value;
    std::memcpy(&value, row + x * 4, 4);
    rgba[0] = (value >> 16) & 0xFF;
    rgba[1] = (value >> 8) & 0xFF;
    rgba[2] = value & 0xFF;
    rgba[3] = hasAlpha() ? (value >> 24) & 0xFF : 0xFF;
}

void BitmapImageRep::writeRGBA(int64_t x, int64_t y, const uint8_t rgba[4]) {
    cairo_surface_flush(m_surface);
    unsigned char* row =
        cairo_image_surface_get_data(m_surface) + y * cairo_image_surface_get_stride(m_surface);
    uint8_t a = hasAlpha() ? rgba[3] : 0xFF;
    // Premultiplied storage cannot hold colour brighter than its alpha.
    uint32_t value = (uint32_t{a} << 24) | (uint32_t{std::min(rgba[0], a)} << 16) |
                     (uint32_t{std::min(rgba[1], a)} << 8) | std::min(rgba[2], a);
    std::memcpy(row + x * 4, &value, 4);
    cairo_surface_mark_dirty_rectangle(m_surface, static_cast<int>(x), static_cast<int>(y), 1, 1);
}

void BitmapImageRep::getPixel(uint64_t* pixel, int64_t x, int64_t y) const {
    if (!pixel)
        return;
    if (!checkBounds(x, y, "getPixel")) {
        std::fill(pixel, pixel + m_samplesPerPixel, 0);
        return;
    }
    uint8_t rgba[4];
    readRGBA(x, y, rgba);
    if (isGrayName(colorSpaceName())) {
        pixel[0] = luma(rgba);
        if (hasAlpha())
            pixel[1] = rgba[3];
        return;
    }
    for (int64_t i = 0; i < m_samplesPerPixel; ++i)
        pixel[i] = rgba[i];
}

void BitmapImageRep::setPixel(const uint64_t* pixel, int64_t x, int64_t y) {
    if (!pixel || !checkBounds(x, y, "setPixel"))
        return;
    auto sample = [](uint64_t v) {
        return static_cast<uint8_t>(std::min<uint64_t>(v, 255));
    };
    uint8_t rgba[4];
    if (isGrayName(colorSpaceName())) {
        rgba[0] = rgba[1] = rgba[2] = sample(pixel[0]);
        rgba[3] = hasAlpha() ? sample(pixel[1]) : 255;
    } else {
        for (int i = 0; i < 3; ++i)
            rgba[i] = sample(pixel[i]);
        rgba[3] = hasAlpha() ? sample(pixel[3]) : 255;
    }
    writeRGBA(x, y, rgba);
}

Ref<Color> BitmapImageRep::colorAtX(int64_t x, int64_t y) const {
    if (!checkBounds(x, y, "colorAtX:y:"))
        return nullptr;
    uint8_t rgba[4];
    readRGBA(x, y, rgba);
    double a = rgba[3] / 255.0;
    auto plain = [a](uint8_t v) {
        return a > 0 ? std::min(1.0, v / 255.0 / a) : 0.0;
    };
    auto space = ColorSpace::colorSpaceForName(colorSpaceName());
    if (isGrayName(colorSpaceName())) {
        double values[2] = {plain(luma(rgba)), a};
        return Color::colorWithColorSpace(space, values);
    }
    double values[4] = {plain(rgba[0]), plain(rgba[1]), plain(rgba[2]), a};
    return Color::colorWithColorSpace(space, values);
}

void BitmapImageRep::setColor(const Ref<Color>& color, int64_t x, int64_t y) {
    double c[4];
    if (!color || !checkBounds(x, y, "setColor:atX:y:") || !color->deviceRGBA(c))
        return;
    auto sample = [](double v) {
        return std::isnan(v) ? uint8_t{0} : static_cast<uint8_t>(std::lround(std::clamp(v, 0.0, 1.0) * 255));
    };
    double a = hasAlpha() ? c[3] : 1.0;
    uint8_t rgba[4] = {sample(c[0] * a), sample(c[1] * a), sample(c[2] * a), sample(a)};
    writeRGBA(x, y, rgba);
}

std::vector<uint8_t> BitmapImageRep::representationUsingType(BitmapImageFileType type) const {
    std::vector<uint8_t> out;
    if (type != BitmapImageFileType::PNG) {
        Log("BitmapImageRep: only PNG data can be written (asked for type %lld).",
            static_cast<long long>(type));
        return out;
    }
    cairo_surface_flush(m_surface);
    if (cairo_surface_write_to_png_stream(m_surface, writeChunk, &out) != CAIRO_STATUS_SUCCESS)
        out.clear();
    return out;
}

bool BitmapImageRep::writeToFile(const std::string& path) const {
    cairo_surface_flush(m_surface);
    cairo_status_t status = cairo_surface_write_to_png(m_surface, path.c_str());
    if (status != CAIRO_STATUS_SUCCESS) {
        Log("BitmapImageRep: cannot write %@: %s", path, cairo_status_to_string(status));
        return false;
    }
    return true;
}

Ref<BitmapImageRep> BitmapImageRep::copy() const {
    cairo_surface_flush(m_surface);
    cairo_surface_t* surface =
        cairo_image_surface_create(cairo_image_surface_get_format(m_surface), static_cast<int>(pixelsWide()),
                                   static_cast<int>(pixelsHigh()));
    cairo_t* cr = cairo_create(surface);
    cairo_set_operator(cr, CAIRO_OPERATOR_SOURCE);
    cairo_set_source_surface(cr, m_surface, 0, 0);
    cairo_paint(cr);
    cairo_destroy(cr);
    auto rep = create<BitmapImageRep>(surface, m_samplesPerPixel, hasAlpha(), colorSpaceName());
    rep->setSize(size());
    return rep;
}

} // namespace ns
