#pragma once

#include "platform/views/StackView.hpp"

#include <string>

namespace gallery {

// A form row: a right-aligned caption of a fixed width, then a field of a fixed width, on one
// text baseline.
ns::Ref<ns::StackView> formRow(const std::string& caption, const std::string& value, double captionWidth,
                               double fieldWidth);

} // namespace gallery
