#include "platform/graphics/CGColor.hpp"

#include "platform/foundation/Format.hpp"

#include "platform/graphics/Image.hpp"

namespace ns {

CGColor::CGColor(Ref<ColorSpace> space, std::vector<double> components, Ref<Image> pattern)
    : m_space(std::move(space)), m_components(std::move(components)), m_pattern(std::move(pattern)) {}

Ref<CGColor> CGColor::make(const Ref<ColorSpace>& space, std::vector<double> components) {
    if (!space || components.size() != static_cast<size_t>(space->numberOfColorComponents()) + 1)
        return nullptr;
    return create<CGColor>(space, std::move(components), nullptr);
}

bool CGColor::isEqual(const Object& other) const {
    auto* color = dynamic_cast<const CGColor*>(&other);
    return color && color->m_space == m_space && color->m_components == m_components &&
           color->m_pattern == m_pattern;
}

std::string CGColor::description() const {
    std::string values;
    for (size_t i = 0; i < m_components.size(); ++i)
        values += format(i ? " %@" : "%@", formatDouble(m_components[i]));
    return format("<CGColor %@ (%@)>", m_space ? m_space->description() : std::string("pattern"), values);
}

} // namespace ns
