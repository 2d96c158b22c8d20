#pragma once

#include "platform/graphics/Color.hpp"

namespace corvane {

// A colour with one value for the light (aqua) and one for the dark (dark aqua) appearance. It
// has no value of its own: every colour operation acts on effectiveColor(), chosen anew at each
// call, so a colour derived from it (with another alpha, blended ...) is a fixed colour of the
// appearance in force when it was derived.
//
// Archived securely as "CVDynamicColor" with the keys "aquaColor" (always) and "darkAquaColor"
// (only when there is a dark colour).
class CVDynamicColor : public ns::Color {
public:
    CVDynamicColor(ns::Ref<ns::Color> aquaColor, ns::Ref<ns::Color> darkAquaColor);

    // A nil dark colour makes the light one serve in both appearances. A nil light colour makes
    // the colour answer as nil wherever the light one applies.
    static ns::Ref<CVDynamicColor> newWithAquaColor(ns::Ref<ns::Color> aquaColor,
                                                    ns::Ref<ns::Color> darkAquaColor);

    const ns::Ref<ns::Color>& aquaColor() const { return m_aquaColor; }
    void setAquaColor(ns::Ref<ns::Color> color) { m_aquaColor = std::move(color); }
    const ns::Ref<ns::Color>& darkAquaColor() const { return m_darkAquaColor; }
    void setDarkAquaColor(ns::Ref<ns::Color> color) { m_darkAquaColor = std::move(color); }

    // The dark colour when the platform has a dark appearance, there is a dark colour, and the
    // current drawing appearance (else the application's) matches dark aqua better than aqua;
    // the light colour otherwise.
    ns::Ref<ns::Color> effectiveColor() const;
    ns::Ref<ns::Color> resolvedColor() const override;

    static const ns::CodingClass& codingClass();
    const ns::CodingClass& classForCoder() const override;
    void encodeWithCoder(ns::KeyedArchiver& coder) const override;

    std::string description() const override;

private:
    ns::Ref<ns::Color> m_aquaColor;
    ns::Ref<ns::Color> m_darkAquaColor;
};

} // namespace corvane
