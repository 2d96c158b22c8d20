#pragma once

#include <cstdint>

namespace ns {

// How large a control is drawn; its text size follows (Font::systemFontSizeForControlSize).
enum class ControlSize : uint64_t {
    Regular = 0,
    Small = 1,
    Mini = 2,
    Large = 3,
};

} // namespace ns
