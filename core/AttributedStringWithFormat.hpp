#pragma once

#include "platform/foundation/Format.hpp"
#include "platform/graphics/MutableAttributedString.hpp"

#include <span>
#include <string_view>

namespace corvane::core {

// The formatted text (ns::format, with %@) carrying `attributes` over its whole length.
ns::Ref<ns::MutableAttributedString>
attributedStringWithFormatArguments(std::string_view format, const ns::Dictionary& attributes,
                                    std::span<const ns::FormatArgument> arguments);

template <class... Args>
ns::Ref<ns::MutableAttributedString>
attributedStringWithFormat(std::string_view format, const ns::Dictionary& attributes, const Args&... args) {
    if constexpr (sizeof...(Args) == 0) {
        return attributedStringWithFormatArguments(format, attributes, {});
    } else {
        const ns::FormatArgument arguments[] = {ns::FormatArgument(args)...};
        return attributedStringWithFormatArguments(format, attributes, arguments);
    }
}

} // namespace corvane::core
