#include "platform/graphics/Filter.hpp"

#include "platform/foundation/Log.hpp"
#include "platform/graphics/BitmapImageRep.hpp"
#include "platform/graphics/Image.hpp"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace ns {

namespace {

constexpr const char* kColorControls = "CIColorControls";
constexpr const char* kColorInvert = "CIColorInvert";

struct Controls {
    double saturation = 1, brightness = 0, contrast = 1;
};

// Colour in 0...1 (not premultiplied) for one pixel, changed in place.
void applyControls(double rgb[3], const Controls& c) {
    double grey = 0.2125 * rgb[0] + 0.7154 * rgb[1] + 0.0721 * rgb[2];
    for (int i = 0; i < 3; ++i) {
        double v = grey + (rgb[i] - grey) * c.saturation;
        v = (v - 0.5) * c.contrast + 0.5;
        rgb[i] = v + c.brightness;
    }
}

void applyInvert(double rgb[3]) {
    for (int i = 0; i < 3; ++i)
        rgb[i] = 1 - rgb[i];
}

// The pixels of the image as a bitmap, and its size in points.
Ref<BitmapImageRep> inputBitmap(const Value& value, Size& size) {
    if (auto image = value.objectAs<Image>()) {
        size = image->size();
        return image->bitmapRepresentation();
    }
    if (auto rep = value.objectAs<BitmapImageRep>()) {
        size = rep->size();
        return rep;
    }
    return nullptr;
}

} // namespace

Filter::Filter(std::string name) : m_name(std::move(name)) {}

Ref<Filter> Filter::filterWithName(std::string_view name) {
    if (name != kColorControls && name != kColorInvert)
        return nullptr;
    auto filter = create<Filter>(std::string(name));
    filter->setDefaults();
    return filter;
}

std::vector<std::string> Filter::inputKeys() const {
    if (m_name == kColorControls)
        return {InputImageKey, InputSaturationKey, InputBrightnessKey, InputContrastKey};
    return {InputImageKey};
}

bool Filter::isInputKey(std::string_view key) const {
    auto keys = inputKeys();
    return std::find(keys.begin(), keys.end(), key) != keys.end();
}

void Filter::setDefaults() {
    if (m_name == kColorControls) {
        m_inputs[InputSaturationKey] = 1.0;
        m_inputs[InputBrightnessKey] = 0.0;
        m_inputs[InputContrastKey] = 1.0;
    }
}

Value Filter::valueForUndefinedKey(std::string_view key) const {
    if (key == OutputImageKey)
        return outputImage();
    if (isInputKey(key)) {
        auto it = m_inputs.find(key);
        return it == m_inputs.end() ? Value() : it->second;
    }
    return Object::valueForUndefinedKey(key);
}

void Filter::setValueForUndefinedKey(const Value& value, std::string_view key) {
    if (!isInputKey(key)) {
        Object::setValueForUndefinedKey(value, key);
        return;
    }
    if (key != InputImageKey && !value.isNil() && !value.isNumber()) {
        Log("Filter %@: %@ needs a number, not %@.", m_name, key, value);
        return;
    }
    if (value.isNil())
        m_inputs.erase(std::string(key));
    else
        m_inputs[std::string(key)] = value;
}

Ref<Image> Filter::outputImage() const {
    auto imageInput = m_inputs.find(InputImageKey);
    Size size;
    auto source = imageInput == m_inputs.end() ? nullptr : inputBitmap(imageInput->second, size);
    if (!source)
        return nullptr;
    auto number = [this](const char* key, double fallback) {
        auto it = m_inputs.find(key);
        return it == m_inputs.end() ? fallback : it->second.doubleValue();
    };
    Controls controls{number(InputSaturationKey, 1), number(InputBrightnessKey, 0),
                      number(InputContrastKey, 1)};
    bool invert = m_name == kColorInvert;

    auto output = source->copy();
    cairo_surface_t* surface = output->cairoSurface();
    cairo_surface_flush(surface);
    unsigned char* data = cairo_image_surface_get_data(surface);
    int stride = cairo_image_surface_get_stride(surface);
    bool hasAlpha = output->hasAlpha();
    for (int64_t y = 0; y < output->pixelsHigh(); ++y) {
        auto* row = data + y * stride;
        for (int64_t x = 0; x < output->pixelsWide(); ++x) {
            uint32_t pixel;
            std::memcpy(&pixel, row + x * 4, 4);
            int alpha = hasAlpha ? static_cast<int>(pixel >> 24) : 255;
            if (alpha == 0)
                continue;
            double a = alpha / 255.0;
            double rgb[3] = {((pixel >> 16) & 0xFF) / 255.0 / a, ((pixel >> 8) & 0xFF) / 255.0 / a,
                             (pixel & 0xFF) / 255.0 / a};
            if (invert)
                applyInvert(rgb);
            else
                applyControls(rgb, controls);
            uint32_t result = static_cast<uint32_t>(alpha) << 24;
            for (int i = 0; i < 3; ++i) {
                double v = std::isnan(rgb[i]) ? 0 : std::clamp(rgb[i], 0.0, 1.0);
                result |= static_cast<uint32_t>(std::lround(v * alpha)) << (16 - 8 * i);
            }
            std::memcpy(row + x * 4, &result, 4);
        }
    }
    cairo_surface_mark_dirty(surface);
    auto image = Image::make(size);
    image->addRepresentation(output);
    return image;
}

std::string Filter::description() const {
    return format("<Filter: %@>", m_name);
}

} // namespace ns
