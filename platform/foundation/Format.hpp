#pragma once

#include "platform/foundation/Value.hpp"

#include <concepts>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace ns {

class Object;

// One argument of format(): remembers what was passed without copying it.
class FormatArgument {
public:
    template <std::integral I>
    requires(!std::same_as<I, bool>) FormatArgument(I value) {
        if constexpr (std::is_signed_v<I>)
            m_value = static_cast<int64_t>(value);
        else
            m_value = static_cast<uint64_t>(value);
    }
    FormatArgument(bool value) : m_value(static_cast<int64_t>(value)) {}
    FormatArgument(double value) : m_value(value) {}
    FormatArgument(float value) : m_value(static_cast<double>(value)) {}
    FormatArgument(const char* value) : m_value(value ? std::string_view(value) : std::string_view()) {
        m_isNullString = value == nullptr;
    }
    FormatArgument(const std::string& value) : m_value(std::string_view(value)) {}
    FormatArgument(std::string_view value) : m_value(value) {}
    FormatArgument(const std::optional<std::string>& value);
    FormatArgument(const Value& value) : m_value(&value) {}
    FormatArgument(const Object& object) : m_value(&object) {}
    FormatArgument(const Object* object) : m_value(object) {}
    template <class T>
    requires std::derived_from<T, Object> FormatArgument(const Ref<T>& object)
        : m_value(static_cast<const Object*>(object.get())) {}
    FormatArgument(const Selector& selector) : m_value(std::string_view(selector.name())) {}
    FormatArgument(std::nullptr_t) : m_value(static_cast<const Object*>(nullptr)) {}
    FormatArgument(const void* pointer) : m_value(pointer) {}

    int64_t asSigned() const;
    uint64_t asUnsigned() const;
    double asDouble() const;
    std::string asString() const;      // for %s
    std::string asDescription() const; // for %@
    const void* asPointer() const;

private:
    std::variant<int64_t, uint64_t, double, std::string_view, const Value*, const Object*, const void*>
        m_value;
    bool m_isNullString = false;
};

// printf-style formatting plus %@, which prints an object's or value's description and
// "(null)" for nil. A conversion without an argument prints nothing; an argument of another
// kind than the conversion asks for is converted rather than misread.
std::string formatArguments(std::string_view format, std::span<const FormatArgument> arguments);

template <class... Args>
std::string format(std::string_view format, const Args&... args) {
    if constexpr (sizeof...(Args) == 0) {
        return formatArguments(format, {});
    } else {
        const FormatArgument arguments[] = {FormatArgument(args)...};
        return formatArguments(format, arguments);
    }
}

} // namespace ns
