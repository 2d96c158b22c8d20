#pragma once

#include "platform/foundation/Object.hpp"
#include "platform/graphics/ColorSpace.hpp"

#include <vector>

namespace ns {

class Image;

// A drawing-level colour handle: a colour space and its components with alpha last, or a
// pattern image with an alpha. Immutable.
class CGColor : public Object {
public:
    CGColor(Ref<ColorSpace> space, std::vector<double> components, Ref<Image> pattern);

    // Components plus alpha in a space; nil when the count does not fit the space.
    static Ref<CGColor> make(const Ref<ColorSpace>& space, std::vector<double> components);

    // Nil for a pattern.
    const Ref<ColorSpace>& colorSpace() const { return m_space; }
    const std::vector<double>& components() const { return m_components; }
    size_t numberOfComponents() const { return m_components.size(); }
    double alpha() const { return m_components.empty() ? 0 : m_components.back(); }
    const Ref<Image>& pattern() const { return m_pattern; }

    bool isEqual(const Object& other) const override;
    std::string description() const override;

private:
    Ref<ColorSpace> m_space;
    std::vector<double> m_components;
    Ref<Image> m_pattern;
};

} // namespace ns
