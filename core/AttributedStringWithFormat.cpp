#include "core/AttributedStringWithFormat.hpp"

namespace corvane::core {

ns::Ref<ns::MutableAttributedString>
attributedStringWithFormatArguments(std::string_view format, const ns::Dictionary& attributes,
                                    std::span<const ns::FormatArgument> arguments) {
    return ns::MutableAttributedString::make(ns::formatArguments(format, arguments), attributes);
}

} // namespace corvane::core
