#include "kit/Objects/CVDynamicColor.hpp"

#include "platform/foundation/Format.hpp"
#include "platform/foundation/KeyedArchiver.hpp"
#include "platform/foundation/KeyedUnarchiver.hpp"
#include "platform/graphics/Appearance.hpp"
#include "platform/graphics/PlatformVersion.hpp"

namespace corvane {

namespace {
constexpr const char* AquaColorKey = "aquaColor";
constexpr const char* DarkAquaColorKey = "darkAquaColor";
} // namespace

CVDynamicColor::CVDynamicColor(ns::Ref<ns::Color> aquaColor, ns::Ref<ns::Color> darkAquaColor)
    : m_aquaColor(std::move(aquaColor)), m_darkAquaColor(std::move(darkAquaColor)) {}

ns::Ref<CVDynamicColor> CVDynamicColor::newWithAquaColor(ns::Ref<ns::Color> aquaColor,
                                                         ns::Ref<ns::Color> darkAquaColor) {
    return ns::create<CVDynamicColor>(std::move(aquaColor), std::move(darkAquaColor));
}

ns::Ref<ns::Color> CVDynamicColor::effectiveColor() const {
    if (!ns::platformHasDarkAppearance())
        return m_aquaColor;
    ns::Ref<ns::Appearance> appearance = ns::Appearance::currentAppearance();
    if (!appearance)
        appearance = ns::Appearance::applicationEffectiveAppearance();
    // Light is asked first, so an appearance that matches both equally counts as light.
    auto match =
        appearance->bestMatchFromAppearancesWithNames({ns::AppearanceNameAqua, ns::AppearanceNameDarkAqua});
    if (m_darkAquaColor && match == ns::AppearanceNameDarkAqua)
        return m_darkAquaColor;
    return m_aquaColor;
}

ns::Ref<ns::Color> CVDynamicColor::resolvedColor() const {
    return effectiveColor();
}

const ns::CodingClass& CVDynamicColor::codingClass() {
    static const ns::CodingClass cls{"CVDynamicColor",
                                     {ns::Color::codingClass().name},
                                     true,
                                     [](ns::KeyedUnarchiver& coder) -> ns::Ref<ns::Object> {
                                         return newWithAquaColor(
                                             coder.decodeObjectOfClass<ns::Color>(AquaColorKey),
                                             coder.decodeObjectOfClass<ns::Color>(DarkAquaColorKey));
                                     }};
    return cls;
}

const ns::CodingClass& CVDynamicColor::classForCoder() const {
    return codingClass();
}

void CVDynamicColor::encodeWithCoder(ns::KeyedArchiver& coder) const {
    ns::Color::encodeWithCoder(coder);
    coder.encodeObject(m_aquaColor, AquaColorKey);
    if (m_darkAquaColor)
        coder.encodeObject(m_darkAquaColor, DarkAquaColorKey);
}

std::string CVDynamicColor::description() const {
    return ns::format("<CVDynamicColor: aqua %@, dark aqua %@, now %@>", m_aquaColor, m_darkAquaColor,
                      effectiveColor());
}

namespace {
// Archives name the class; a reader that has not made one yet must still know it.
const bool registeredForCoding = (ns::Coding::registerClass(CVDynamicColor::codingClass()), true);
} // namespace

} // namespace corvane
