#include "platform/graphics/ParagraphStyle.hpp"

#include "platform/foundation/Format.hpp"

#include "platform/graphics/MutableParagraphStyle.hpp"

#include <functional>

namespace ns {

ParagraphStyle::ParagraphStyle() = default;

ParagraphStyle::ParagraphStyle(Settings settings) : m_settings(settings) {}

Ref<ParagraphStyle> ParagraphStyle::defaultParagraphStyle() {
    static const Ref<ParagraphStyle> style = create<ParagraphStyle>();
    return style;
}

Ref<ParagraphStyle> ParagraphStyle::copy() const {
    return create<ParagraphStyle>(m_settings);
}

Ref<MutableParagraphStyle> ParagraphStyle::mutableCopy() const {
    return create<MutableParagraphStyle>(m_settings);
}

bool ParagraphStyle::isEqual(const Object& other) const {
    auto* style = dynamic_cast<const ParagraphStyle*>(&other);
    return style && style->m_settings == m_settings;
}

size_t ParagraphStyle::hash() const {
    const auto& s = m_settings;
    size_t h = std::hash<int64_t>{}(static_cast<int64_t>(s.alignment));
    for (double v : {s.lineSpacing, s.paragraphSpacing, s.paragraphSpacingBefore, s.firstLineHeadIndent,
                     s.headIndent, s.tailIndent})
        h = h * 31 + std::hash<double>{}(v);
    return h * 31 + std::hash<int64_t>{}(static_cast<int64_t>(s.lineBreakMode));
}

std::string ParagraphStyle::description() const {
    const auto& s = m_settings;
    return format(
        "Alignment %lld, LineSpacing %@, ParagraphSpacing %@, ParagraphSpacingBefore %@, HeadIndent %@, "
        "TailIndent %@, FirstLineHeadIndent %@, LineHeight %@/%@, LineHeightMultiple %@, LineBreakMode %lld, "
        "BaseWritingDirection %lld",
        static_cast<long long>(s.alignment), formatDouble(s.lineSpacing), formatDouble(s.paragraphSpacing),
        formatDouble(s.paragraphSpacingBefore), formatDouble(s.headIndent), formatDouble(s.tailIndent),
        formatDouble(s.firstLineHeadIndent), formatDouble(s.minimumLineHeight),
        formatDouble(s.maximumLineHeight), formatDouble(s.lineHeightMultiple),
        static_cast<long long>(s.lineBreakMode), static_cast<long long>(s.baseWritingDirection));
}

} // namespace ns
