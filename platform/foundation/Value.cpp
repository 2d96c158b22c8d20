#include "platform/foundation/Value.hpp"

#include "platform/foundation/Class.hpp"
#include "platform/foundation/Object.hpp"

#include <cctype>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstdlib>

namespace ns {

namespace {

bool isWhite(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}

std::string_view skipWhite(std::string_view text) {
    size_t i = 0;
    while (i < text.size() && isWhite(text[i]))
        ++i;
    return text.substr(i);
}

// The longest prefix that reads as a decimal number: sign, digits, point, digits, exponent.
// Returns an empty view when there are no digits at all.
std::string_view decimalPrefix(std::string_view text) {
    size_t i = 0;
    if (i < text.size() && (text[i] == '+' || text[i] == '-'))
        ++i;
    size_t digits = 0;
    while (i < text.size() && std::isdigit(static_cast<unsigned char>(text[i])))
        ++i, ++digits;
    if (i < text.size() && text[i] == '.') {
        ++i;
        while (i < text.size() && std::isdigit(static_cast<unsigned char>(text[i])))
            ++i, ++digits;
    }
    if (digits == 0)
        return {};
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        size_t j = i + 1;
        if (j < text.size() && (text[j] == '+' || text[j] == '-'))
            ++j;
        size_t exponentStart = j;
        while (j < text.size() && std::isdigit(static_cast<unsigned char>(text[j])))
            ++j;
        if (j > exponentStart)
            i = j;
    }
    return text.substr(0, i);
}

bool isPlainWord(const std::string& text) {
    if (text.empty())
        return false;
    for (char c : text)
        if (!std::isalnum(static_cast<unsigned char>(c)) && c != '_' && c != '.' && c != '$' && c != '/')
            return false;
    return true;
}

const Array& emptyArray() {
    static const Array empty;
    return empty;
}

const Dictionary& emptyDictionary() {
    static const Dictionary empty;
    return empty;
}

} // namespace

bool stringBoolValue(std::string_view text) {
    text = skipWhite(text);
    size_t i = 0;
    if (i < text.size() && (text[i] == '+' || text[i] == '-'))
        ++i;
    while (i < text.size() && text[i] == '0')
        ++i;
    if (i == text.size())
        return false;
    char c = text[i];
    return c == 'Y' || c == 'y' || c == 'T' || c == 't' || (c >= '1' && c <= '9');
}

int64_t stringIntegerValue(std::string_view text) {
    text = skipWhite(text);
    size_t i = 0;
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-'))
        negative = text[i++] == '-';
    // Accumulate towards the sign so that INT64_MIN is reachable; saturate on overflow.
    int64_t value = 0;
    for (; i < text.size() && std::isdigit(static_cast<unsigned char>(text[i])); ++i) {
        int digit = text[i] - '0';
        if (negative) {
            if (value < (INT64_MIN + digit) / 10)
                return INT64_MIN;
            value = value * 10 - digit;
        } else {
            if (value > (INT64_MAX - digit) / 10)
                return INT64_MAX;
            value = value * 10 + digit;
        }
    }
    return value;
}

double stringDoubleValue(std::string_view text) {
    std::string number(decimalPrefix(skipWhite(text)));
    return number.empty() ? 0.0 : std::strtod(number.c_str(), nullptr);
}

float stringFloatValue(std::string_view text) {
    std::string number(decimalPrefix(skipWhite(text)));
    return number.empty() ? 0.0f : std::strtof(number.c_str(), nullptr);
}

std::string formatDouble(double value) {
    if (std::isnan(value))
        return "nan";
    if (std::isinf(value))
        return value > 0 ? "inf" : "-inf";
    char buffer[64];
    auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

Value::Value(const char* value) {
    if (value)
        m_storage = std::string(value);
}

Value::Value(const std::optional<std::string>& value) {
    if (value)
        m_storage = *value;
}

Value::Value(Block value) {
    if (value)
        m_storage = std::move(value);
}

Value::Value(Array value) : m_storage(std::make_shared<const Array>(std::move(value))) {}

Value::Value(Dictionary value) : m_storage(std::make_shared<const Dictionary>(std::move(value))) {}

Value::Value(Ref<Object> object) {
    if (!object)
        return;
    if (auto cls = std::dynamic_pointer_cast<Class>(object))
        m_storage = std::move(cls);
    else
        m_storage = std::move(object);
}

bool Value::isNumber() const {
    Kind k = kind();
    return k == Kind::Bool || k == Kind::Integer || k == Kind::Double;
}

bool Value::boolValue() const {
    switch (kind()) {
    case Kind::Bool:
        return std::get<bool>(m_storage);
    case Kind::Integer:
        return std::get<int64_t>(m_storage) != 0;
    case Kind::Double:
        return std::get<double>(m_storage) != 0.0;
    case Kind::String:
        return stringBoolValue(std::get<std::string>(m_storage));
    default:
        return false;
    }
}

int64_t Value::integerValue() const {
    switch (kind()) {
    case Kind::Bool:
        return std::get<bool>(m_storage) ? 1 : 0;
    case Kind::Integer:
        return std::get<int64_t>(m_storage);
    case Kind::Double: {
        double d = std::get<double>(m_storage);
        if (std::isnan(d))
            return 0;
        if (d >= 9223372036854775807.0)
            return INT64_MAX;
        if (d <= -9223372036854775808.0)
            return INT64_MIN;
        return static_cast<int64_t>(d);
    }
    case Kind::String:
        return stringIntegerValue(std::get<std::string>(m_storage));
    default:
        return 0;
    }
}

double Value::doubleValue() const {
    switch (kind()) {
    case Kind::Bool:
        return std::get<bool>(m_storage) ? 1.0 : 0.0;
    case Kind::Integer:
        return static_cast<double>(std::get<int64_t>(m_storage));
    case Kind::Double:
        return std::get<double>(m_storage);
    case Kind::String:
        return stringDoubleValue(std::get<std::string>(m_storage));
    default:
        return 0.0;
    }
}

float Value::floatValue() const {
    if (kind() == Kind::String)
        return stringFloatValue(std::get<std::string>(m_storage));
    return static_cast<float>(doubleValue());
}

std::string Value::stringValue() const {
    if (auto s = string())
        return *s;
    return isNumber() ? description() : std::string();
}

Ref<Object> Value::object() const {
    if (auto object = std::get_if<Ref<Object>>(&m_storage))
        return *object;
    if (auto cls = std::get_if<Ref<Class>>(&m_storage))
        return *cls;
    return nullptr;
}

const Array& Value::array() const {
    auto array = std::get_if<std::shared_ptr<const Array>>(&m_storage);
    return array ? **array : emptyArray();
}

const Dictionary& Value::dictionary() const {
    auto dictionary = std::get_if<std::shared_ptr<const Dictionary>>(&m_storage);
    return dictionary ? **dictionary : emptyDictionary();
}

Ref<Class> Value::classValue() const {
    auto cls = std::get_if<Ref<Class>>(&m_storage);
    return cls ? *cls : nullptr;
}

Value Value::operator[](std::string_view key) const {
    const Dictionary& dictionary = this->dictionary();
    auto found = dictionary.find(key);
    return found == dictionary.end() ? Value() : found->second;
}

std::string Value::description() const {
    return describe(0);
}

std::string Value::describe(int indent) const {
    const std::string pad(static_cast<size_t>(indent) * 4, ' ');
    const std::string inner(static_cast<size_t>(indent + 1) * 4, ' ');
    auto element = [&](const Value& value) {
        if (auto s = value.string())
            return isPlainWord(*s) ? *s : "\"" + *s + "\"";
        return value.describe(indent + 1);
    };
    switch (kind()) {
    case Kind::Nil:
        return "(null)";
    case Kind::Null:
        return "<null>";
    case Kind::Bool:
        return std::get<bool>(m_storage) ? "1" : "0";
    case Kind::Integer:
        return std::to_string(std::get<int64_t>(m_storage));
    case Kind::Double:
        return formatDouble(std::get<double>(m_storage));
    case Kind::String:
        return std::get<std::string>(m_storage);
    case Kind::Object:
        return std::get<Ref<Object>>(m_storage)->description();
    case Kind::Block:
        return std::get<Block>(m_storage).description();
    case Kind::Array: {
        std::string text = "(\n";
        const Array& items = array();
        for (size_t i = 0; i < items.size(); ++i)
            text += inner + element(items[i]) + (i + 1 < items.size() ? ",\n" : "\n");
        return text + pad + ")";
    }
    case Kind::Dictionary: {
        std::string text = "{\n";
        for (const auto& [key, value] : dictionary())
            text += inner + (isPlainWord(key) ? key : "\"" + key + "\"") + " = " + element(value) + ";\n";
        return text + pad + "}";
    }
    case Kind::Class:
        return std::get<Ref<Class>>(m_storage)->name();
    case Kind::Selector:
        return std::get<Selector>(m_storage).name();
    }
    return {};
}

bool Value::operator==(const Value& other) const {
    if (isNumber() && other.isNumber()) {
        if (kind() == Kind::Double || other.kind() == Kind::Double)
            return doubleValue() == other.doubleValue();
        return integerValue() == other.integerValue();
    }
    if (kind() != other.kind())
        return false;
    switch (kind()) {
    case Kind::Object: {
        auto a = object(), b = other.object();
        return a == b || a->isEqual(*b);
    }
    case Kind::Array:
        return array() == other.array();
    case Kind::Dictionary:
        return dictionary() == other.dictionary();
    default:
        return m_storage == other.m_storage;
    }
}

} // namespace ns
