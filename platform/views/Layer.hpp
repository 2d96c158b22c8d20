#pragma once

#include "platform/graphics/CGColor.hpp"

namespace ns {

// What a layer-backed view draws behind its content: a background fill.
class Layer : public Object {
public:
    static Ref<Layer> make() { return create<Layer>(); }
    const Ref<CGColor>& backgroundColor() const { return m_backgroundColor; }
    // nil draws no background.
    void setBackgroundColor(Ref<CGColor> color) { m_backgroundColor = std::move(color); }

private:
    Ref<CGColor> m_backgroundColor;
};

} // namespace ns
