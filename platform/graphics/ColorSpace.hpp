#pragma once

#include "platform/foundation/Object.hpp"

#include <cstdint>
#include <string>
#include <string_view>

namespace ns {

// Names of the colour spaces a colour can be asked to convert to by name.
inline constexpr const char* CalibratedRGBColorSpace = "NSCalibratedRGBColorSpace";
inline constexpr const char* DeviceRGBColorSpace = "NSDeviceRGBColorSpace";
inline constexpr const char* CalibratedWhiteColorSpace = "NSCalibratedWhiteColorSpace";
inline constexpr const char* DeviceWhiteColorSpace = "NSDeviceWhiteColorSpace";
inline constexpr const char* DeviceCMYKColorSpace = "NSDeviceCMYKColorSpace";
inline constexpr const char* NamedColorSpace = "NSNamedColorSpace";
inline constexpr const char* PatternColorSpace = "NSPatternColorSpace";
inline constexpr const char* CustomColorSpace = "NSCustomColorSpace";

enum class ColorSpaceModel : int64_t {
    Unknown = -1,
    Gray = 0,
    RGB = 1,
    CMYK = 2,
    LAB = 3,
    DeviceN = 4,
    Indexed = 5,
    Patterned = 6,
};

// A colour space: its model (grey, RGB, CMYK), the number of colour components, and the name a
// colour in it reports. Every space here is one of a fixed set, made once for the process.
//
// This platform does no colour matching: the components of a colour are drawn as they are,
// whatever RGB (or grey) space holds them, and moving a colour between spaces of one model keeps
// its components. Between models, grey w is RGB (w, w, w); RGB goes to grey by the luma weights
// 0.2125 R + 0.7154 G + 0.0721 B; CMYK c, m, y, k is RGB ((1-c)(1-k), (1-m)(1-k), (1-y)(1-k)).
class ColorSpace : public Object {
public:
    ColorSpace(std::string localizedName, ColorSpaceModel model, std::string colorSpaceName);

    static Ref<ColorSpace> genericRGBColorSpace();         // reports NSCalibratedRGBColorSpace
    static Ref<ColorSpace> deviceRGBColorSpace();          // reports NSDeviceRGBColorSpace
    static Ref<ColorSpace> sRGBColorSpace();               // reports NSCustomColorSpace
    static Ref<ColorSpace> genericGrayColorSpace();        // reports NSCalibratedWhiteColorSpace
    static Ref<ColorSpace> deviceGrayColorSpace();         // reports NSDeviceWhiteColorSpace
    static Ref<ColorSpace> genericGamma22GrayColorSpace(); // reports NSCustomColorSpace
    static Ref<ColorSpace> genericCMYKColorSpace();        // reports NSCustomColorSpace
    static Ref<ColorSpace> deviceCMYKColorSpace();         // reports NSDeviceCMYKColorSpace

    // The space behind a colour-space name; nil for the named, pattern and custom names (which
    // stand for no single space) and for unknown names.
    static Ref<ColorSpace> colorSpaceForName(std::string_view name);

    ColorSpaceModel colorSpaceModel() const { return m_model; }
    // Components without alpha: 1 for grey, 3 for RGB, 4 for CMYK.
    int64_t numberOfColorComponents() const;
    const std::string& localizedName() const { return m_localizedName; }
    // The name a colour in this space reports as its colorSpaceName.
    const std::string& colorSpaceName() const { return m_colorSpaceName; }

    std::string description() const override { return m_localizedName + " colorspace"; }

private:
    std::string m_localizedName;
    ColorSpaceModel m_model;
    std::string m_colorSpaceName;
};

} // namespace ns
