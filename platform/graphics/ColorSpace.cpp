#include "platform/graphics/ColorSpace.hpp"

namespace ns {

ColorSpace::ColorSpace(std::string localizedName, ColorSpaceModel model, std::string colorSpaceName)
    : m_localizedName(std::move(localizedName)), m_model(model), m_colorSpaceName(std::move(colorSpaceName)) {
}

int64_t ColorSpace::numberOfColorComponents() const {
    switch (m_model) {
    case ColorSpaceModel::Gray:
        return 1;
    case ColorSpaceModel::RGB:
    case ColorSpaceModel::LAB:
        return 3;
    case ColorSpaceModel::CMYK:
        return 4;
    default:
        return 0;
    }
}

Ref<ColorSpace> ColorSpace::genericRGBColorSpace() {
    static const auto space =
        create<ColorSpace>("Generic RGB", ColorSpaceModel::RGB, CalibratedRGBColorSpace);
    return space;
}

Ref<ColorSpace> ColorSpace::deviceRGBColorSpace() {
    static const auto space = create<ColorSpace>("Device RGB", ColorSpaceModel::RGB, DeviceRGBColorSpace);
    return space;
}

Ref<ColorSpace> ColorSpace::sRGBColorSpace() {
    static const auto space = create<ColorSpace>("sRGB IEC61966-2.1", ColorSpaceModel::RGB, CustomColorSpace);
    return space;
}

Ref<ColorSpace> ColorSpace::genericGrayColorSpace() {
    static const auto space =
        create<ColorSpace>("Generic Gray", ColorSpaceModel::Gray, CalibratedWhiteColorSpace);
    return space;
}

Ref<ColorSpace> ColorSpace::deviceGrayColorSpace() {
    static const auto space = create<ColorSpace>("Device Gray", ColorSpaceModel::Gray, DeviceWhiteColorSpace);
    return space;
}

Ref<ColorSpace> ColorSpace::genericGamma22GrayColorSpace() {
    static const auto space =
        create<ColorSpace>("Generic Gray Gamma 2.2", ColorSpaceModel::Gray, CustomColorSpace);
    return space;
}

Ref<ColorSpace> ColorSpace::genericCMYKColorSpace() {
    static const auto space = create<ColorSpace>("Generic CMYK", ColorSpaceModel::CMYK, CustomColorSpace);
    return space;
}

Ref<ColorSpace> ColorSpace::deviceCMYKColorSpace() {
    static const auto space = create<ColorSpace>("Device CMYK", ColorSpaceModel::CMYK, DeviceCMYKColorSpace);
    return space;
}

Ref<ColorSpace> ColorSpace::colorSpaceForName(std::string_view name) {
    if (name == CalibratedRGBColorSpace)
        return genericRGBColorSpace();
    if (name == DeviceRGBColorSpace)
        return deviceRGBColorSpace();
    if (name == CalibratedWhiteColorSpace)
        return genericGrayColorSpace();
    if (name == DeviceWhiteColorSpace)
        return deviceGrayColorSpace();
    if (name == DeviceCMYKColorSpace)
        return deviceCMYKColorSpace();
    return nullptr;
}

} // namespace ns
