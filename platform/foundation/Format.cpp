#include "platform/foundation/Format.hpp"

#include "platform/foundation/Object.hpp"

#include <cinttypes>
#include <cstdio>
#include <cstring>

namespace ns {

FormatArgument::FormatArgument(const std::optional<std::string>& value) {
    if (value)
        m_value = std::string_view(*value);
    else
        m_value = static_cast<const Object*>(nullptr);
}

int64_t FormatArgument::asSigned() const {
    return std::visit(
        [](const auto& v) -> int64_t {
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_same_v<T, int64_t>)
                return v;
            else if constexpr (std::is_same_v<T, uint64_t>)
                return static_cast<int64_t>(v);
            else if constexpr (std::is_same_v<T, double>)
                return static_cast<int64_t>(v);
            else if constexpr (std::is_same_v<T, const Value*>)
                return v->integerValue();
            else if constexpr (std::is_same_v<T, std::string_view>)
                return stringIntegerValue(v);
            else
                return static_cast<int64_t>(reinterpret_cast<uintptr_t>(v));
        },
        m_value);
}

uint64_t FormatArgument::asUnsigned() const {
    if (auto u = std::get_if<uint64_t>(&m_value))
        return *u;
    return static_cast<uint64_t>(asSigned());
}

double FormatArgument::asDouble() const {
    if (auto d = std::get_if<double>(&m_value))
        return *d;
    if (auto v = std::get_if<const Value*>(&m_value))
        return (*v)->doubleValue();
    if (auto s = std::get_if<std::string_view>(&m_value))
        return stringDoubleValue(*s);
    if (auto u = std::get_if<uint64_t>(&m_value))
        return static_cast<double>(*u);
    return static_cast<double>(asSigned());
}

std::string FormatArgument::asString() const {
    if (m_isNullString)
        return "(null)";
    if (auto s = std::get_if<std::string_view>(&m_value))
        return std::string(*s);
    return asDescription();
}

std::string FormatArgument::asDescription() const {
    return std::visit(
        [](const auto& v) -> std::string {
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_same_v<T, int64_t> || std::is_same_v<T, uint64_t>)
                return std::to_string(v);
            else if constexpr (std::is_same_v<T, double>)
                return formatDouble(v);
            else if constexpr (std::is_same_v<T, std::string_view>)
                return std::string(v);
            else if constexpr (std::is_same_v<T, const Value*>)
                return v->description();
            else if constexpr (std::is_same_v<T, const Object*>)
                return v ? v->description() : std::string("(null)");
            else {
                char buffer[32];
                std::snprintf(buffer, sizeof buffer, "%p", v);
                return buffer;
            }
        },
        m_value);
}

const void* FormatArgument::asPointer() const {
    if (auto p = std::get_if<const void*>(&m_value))
        return *p;
    if (auto o = std::get_if<const Object*>(&m_value))
        return *o;
    return reinterpret_cast<const void*>(static_cast<uintptr_t>(asUnsigned()));
}

namespace {

// One conversion specification, "%-08.3lf" and the like, split into its parts.
struct Conversion {
    std::string flags;
    std::string width;
    std::string precision; // includes the '.'
    char type = 0;
};

bool isFlag(char c) {
    return c == '-' || c == '+' || c == ' ' || c == '#' || c == '0' || c == '\'';
}

// Reads the specification after '%' starting at i; returns the index after it.
size_t parseConversion(std::string_view format, size_t i, Conversion& conversion, size_t& nextArgument,
                       std::span<const FormatArgument> arguments) {
    auto starValue = [&]() {
        return nextArgument < arguments.size() ? std::to_string(arguments[nextArgument++].asSigned()) : "0";
    };
    while (i < format.size() && isFlag(format[i]))
        if (format[i++] != '\'')
            conversion.flags += format[i - 1];
    if (i < format.size() && format[i] == '*') {
        conversion.width = starValue();
        ++i;
    }
    while (i < format.size() && std::isdigit(static_cast<unsigned char>(format[i])))
        conversion.width += format[i++];
    if (i < format.size() && format[i] == '.') {
        conversion.precision = ".";
        ++i;
        if (i < format.size() && format[i] == '*') {
            conversion.precision += starValue();
            ++i;
        }
        while (i < format.size() && std::isdigit(static_cast<unsigned char>(format[i])))
            conversion.precision += format[i++];
    }
    // Length modifiers only matter to C's varargs; every argument here knows its own size.
    while (i < format.size() && std::strchr("hlqLjzt", format[i]))
        ++i;
    if (i < format.size())
        conversion.type = format[i++];
    return i;
}

template <class T>
std::string printfOne(const std::string& pattern, T value) {
    char small[128];
    int length = std::snprintf(small, sizeof small, pattern.c_str(), value);
    if (length < 0)
        return {};
    if (static_cast<size_t>(length) < sizeof small)
        return std::string(small, static_cast<size_t>(length));
    std::string big(static_cast<size_t>(length) + 1, '\0');
    std::snprintf(big.data(), big.size(), pattern.c_str(), value);
    big.resize(static_cast<size_t>(length));
    return big;
}

std::string pad(const std::string& text, const Conversion& conversion) {
    size_t width = conversion.width.empty() ? 0 : static_cast<size_t>(std::stoul(conversion.width));
    if (text.size() >= width)
        return text;
    bool left = conversion.flags.find('-') != std::string::npos;
    std::string fill(width - text.size(), ' ');
    return left ? text + fill : fill + text;
}

std::string convert(const Conversion& conversion, const FormatArgument& argument) {
    const std::string base = "%" + conversion.flags + conversion.width + conversion.precision;
    switch (conversion.type) {
    case 'd':
    case 'i':
        return printfOne(base + PRId64, argument.asSigned());
    case 'u':
        return printfOne(base + PRIu64, argument.asUnsigned());
    case 'x':
        return printfOne(base + PRIx64, argument.asUnsigned());
    case 'X':
        return printfOne(base + PRIX64, argument.asUnsigned());
    case 'o':
        return printfOne(base + PRIo64, argument.asUnsigned());
    case 'c':
        return printfOne(base + "c", static_cast<int>(argument.asSigned()));
    case 'f':
    case 'F':
    case 'e':
    case 'E':
    case 'g':
    case 'G':
    case 'a':
    case 'A':
        return printfOne(base + conversion.type, argument.asDouble());
    case 'p':
        return printfOne(base + "p", argument.asPointer());
    case 's': {
        std::string text = argument.asString();
        if (conversion.precision.size() > 1)
            text = text.substr(0, std::stoul(conversion.precision.substr(1)));
        return pad(text, conversion);
    }
    case '@':
        return pad(argument.asDescription(), conversion);
    default:
        return {};
    }
}

} // namespace

std::string formatArguments(std::string_view format, std::span<const FormatArgument> arguments) {
    std::string out;
    out.reserve(format.size() + 16 * arguments.size());
    size_t nextArgument = 0;
    for (size_t i = 0; i < format.size();) {
        char c = format[i];
        if (c != '%') {
            out += c;
            ++i;
            continue;
        }
        if (i + 1 < format.size() && format[i + 1] == '%') {
            out += '%';
            i += 2;
            continue;
        }
        Conversion conversion;
        i = parseConversion(format, i + 1, conversion, nextArgument, arguments);
        if (conversion.type == 0)
            break;
        if (nextArgument < arguments.size())
            out += convert(conversion, arguments[nextArgument++]);
    }
    return out;
}

} // namespace ns
