#pragma once

#include "platform/foundation/Object.hpp"
#include "platform/graphics/Geometry.hpp"

namespace ns {

class Color;

// A shadow that later drawing casts once it is set: an offset (positive height is up, also in
// flipped drawing), a blur radius and a colour (black at one-third alpha unless set).
class Shadow : public Object {
public:
    Shadow();
    static Ref<Shadow> make();

    Size shadowOffset() const { return m_offset; }
    void setShadowOffset(Size offset) { m_offset = offset; }
    double shadowBlurRadius() const { return m_blurRadius; }
    // Negative radii are taken as 0.
    void setShadowBlurRadius(double radius) { m_blurRadius = radius > 0 ? radius : 0; }
    const Ref<Color>& shadowColor() const { return m_color; }
    void setShadowColor(const Ref<Color>& color) { m_color = color; }

    // Makes the shadow part of the current context's graphics state, its colour resolved now.
    // A shadow without a colour (or one with no RGB form) removes the shadow instead. Nothing
    // happens without a current context.
    void set() const;

    std::string description() const override;

private:
    Size m_offset;
    double m_blurRadius = 0;
    Ref<Color> m_color;
};

} // namespace ns
