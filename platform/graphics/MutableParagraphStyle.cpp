#include "platform/graphics/MutableParagraphStyle.hpp"

namespace ns {

Ref<MutableParagraphStyle> MutableParagraphStyle::make() {
    return create<MutableParagraphStyle>();
}

void MutableParagraphStyle::setParagraphStyle(const Ref<ParagraphStyle>& style) {
    if (style)
        m_settings = style->settings();
}

} // namespace ns
