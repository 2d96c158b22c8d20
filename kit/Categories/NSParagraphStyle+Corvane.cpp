#include "kit/Categories/NSParagraphStyle+Corvane.hpp"

namespace corvane {

namespace {

ns::Ref<ns::MutableParagraphStyle> defaultStyleAligned(ns::TextAlignment alignment) {
    auto style = ns::MutableParagraphStyle::make();
    style->setParagraphStyle(ns::ParagraphStyle::defaultParagraphStyle());
    style->setAlignment(alignment);
    return style;
}

} // namespace

ns::Ref<ns::MutableParagraphStyle> cv_centredDefaultParagraphStyle() {
    return defaultStyleAligned(ns::TextAlignment::Center);
}

ns::Ref<ns::MutableParagraphStyle> cv_rightDefaultParagraphStyle() {
    return defaultStyleAligned(ns::TextAlignment::Right);
}

} // namespace corvane
