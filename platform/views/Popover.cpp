#include "platform/views/Popover.hpp"

#include "platform/foundation/Format.hpp"
#include "platform/graphics/Appearance.hpp"

namespace ns {

void Popover::setAppearance(Ref<Appearance> appearance) {
    ChangeScope change(*this, "appearance");
    m_appearance = std::move(appearance);
}

Ref<Appearance> Popover::effectiveAppearance() const {
    return m_appearance ? m_appearance : Appearance::applicationEffectiveAppearance();
}

std::string Popover::description() const {
    return format("<Popover: appearance %@>", m_appearance);
}

} // namespace ns
