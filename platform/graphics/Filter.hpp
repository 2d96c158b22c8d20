#pragma once

#include "platform/foundation/Object.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace ns {

class Image;

inline constexpr const char* InputImageKey = "inputImage";
inline constexpr const char* InputSaturationKey = "inputSaturation";
inline constexpr const char* InputBrightnessKey = "inputBrightness";
inline constexpr const char* InputContrastKey = "inputContrast";
inline constexpr const char* OutputImageKey = "outputImage";

// An image filter by name, its inputs and output read and written through key-value coding
// (setValueForKey(value, InputSaturationKey), valueForKey(OutputImageKey)). Two filters exist:
//
// "CIColorControls" (inputs inputImage, inputSaturation 1, inputBrightness 0, inputContrast 1):
//   per pixel, with colour taken out of its premultiplied form and the 8-bit values used as
//   they are (no linearisation: the working space is the encoded RGB of the bitmap):
//     1. saturation s: c = g + (c - g) * s, where g = 0.2125 R + 0.7154 G + 0.0721 B;
//     2. contrast k:   c = (c - 0.5) * k + 0.5;
//     3. brightness b: c = c + b;
//   then each channel is clamped to 0...1, multiplied by alpha again and rounded to 8 bits.
//   Parameters are not limited to their usual ranges; values beyond them extrapolate.
// "CIColorInvert" (input inputImage): c = 1 - c, treated the same way.
// Alpha is never changed, so transparent pixels stay transparent.
//
// The output is a new image of the input's size holding one bitmap of the input's pixel size;
// it is nil while there is no input image (or it has no pixels).
class Filter : public Object {
public:
    explicit Filter(std::string name);

    // Nil for an unknown name. The inputs start at their defaults.
    static Ref<Filter> filterWithName(std::string_view name);

    const std::string& name() const { return m_name; }
    std::vector<std::string> inputKeys() const;
    std::vector<std::string> outputKeys() const { return {OutputImageKey}; }
    // Sets every input but the image to its default.
    void setDefaults();
    // The filtered image, computed on each call; nil without an input image.
    Ref<Image> outputImage() const;

    // Input keys store (an image: an Image or a BitmapImageRep; numbers: any number), the
    // output key computes; other keys log as for any object.
    Value valueForUndefinedKey(std::string_view key) const override;
    void setValueForUndefinedKey(const Value& value, std::string_view key) override;

    std::string description() const override;

private:
    bool isInputKey(std::string_view key) const;

    std::string m_name;
    Dictionary m_inputs;
};

} // namespace ns
