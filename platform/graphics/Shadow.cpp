#include "platform/graphics/Shadow.hpp"

#include "platform/foundation/Format.hpp"

#include "platform/graphics/Color.hpp"
#include "platform/graphics/GraphicsContext.hpp"

namespace ns {

Shadow::Shadow() : m_color(Color::colorWithCalibratedWhite(0, 1.0 / 3.0)) {}

Ref<Shadow> Shadow::make() {
    return create<Shadow>();
}

void Shadow::set() const {
    auto context = GraphicsContext::currentContext();
    if (!context)
        return;
    ShadowStyle style;
    if (!m_color || !m_color->deviceRGBA(style.rgba)) {
        context->setShadow(std::nullopt);
        return;
    }
    style.offset = m_offset;
    style.blurRadius = m_blurRadius;
    context->setShadow(style);
}

std::string Shadow::description() const {
    return format("<Shadow: offset %@, blur %@, color %@>", describe(m_offset), formatDouble(m_blurRadius),
                  m_color);
}

} // namespace ns
