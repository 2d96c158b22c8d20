#pragma once

#include "platform/graphics/MutableParagraphStyle.hpp"

namespace corvane {

// New paragraph styles with every setting of the default style but the alignment; each call
// makes a new object.
ns::Ref<ns::MutableParagraphStyle> cv_centredDefaultParagraphStyle();
ns::Ref<ns::MutableParagraphStyle> cv_rightDefaultParagraphStyle();

} // namespace corvane
