#pragma once

#include "platform/foundation/Block.hpp"
#include "platform/foundation/Selector.hpp"

#include <concepts>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

namespace ns {

class Object;
class Class;
class Value;

template <class T>
using Ref = std::shared_ptr<T>;
template <class T>
using WeakRef = std::weak_ptr<T>;

using Array = std::vector<Value>;
using Dictionary = std::map<std::string, Value, std::less<>>;

// The null object: a placeholder that is present, unlike nil.
struct Null {
    bool operator==(const Null&) const = default;
};

// One dynamic value, as held by arrays, dictionaries, key-value coding and represented objects.
// Arrays and dictionaries are immutable once wrapped; copying a Value is cheap.
class Value {
public:
    enum class Kind {
        Nil,
        Null,
        Bool,
        Integer,
        Double,
        String,
        Object,
        Block,
        Array,
        Dictionary,
        Class,
        Selector
    };

    Value() = default;
    Value(std::nullptr_t) {}
    Value(Null) : m_storage(Null{}) {}
    Value(bool value) : m_storage(value) {}
    template <std::integral I>
    requires(!std::same_as<I, bool> && !std::same_as<I, char>) Value(I value)
        : m_storage(static_cast<int64_t>(value)) {}
    Value(double value) : m_storage(value) {}
    Value(float value) : m_storage(static_cast<double>(value)) {}
    Value(std::string value) : m_storage(std::move(value)) {}
    Value(std::string_view value) : m_storage(std::string(value)) {}
    Value(const char* value);
    Value(const std::optional<std::string>& value);
    Value(Block value);
    Value(Array value);
    Value(Dictionary value);
    Value(Selector value) : m_storage(std::move(value)) {}
    Value(Ref<Object> object);
    template <class T>
    requires std::derived_from<T, Object> Value(const Ref<T>& object)
        : Value(std::static_pointer_cast<Object>(object)) {}

    Kind kind() const { return static_cast<Kind>(m_storage.index()); }
    bool isNil() const { return kind() == Kind::Nil; }
    bool isNull() const { return kind() == Kind::Null; }
    bool isNumber() const;
    bool isString() const { return kind() == Kind::String; }
    bool isArray() const { return kind() == Kind::Array; }
    bool isDictionary() const { return kind() == Kind::Dictionary; }
    bool isBlock() const { return kind() == Kind::Block; }

    // The platform's conversions. Strings follow the scanning rules of the platform's string
    // type; anything that is not a number or a string converts to 0 or false.
    bool boolValue() const;
    int64_t integerValue() const;
    float floatValue() const;
    double doubleValue() const;
    // A string for strings, the description of numbers, "" for everything else.
    std::string stringValue() const;

    // The held string, or nullptr when the value is not a string.
    const std::string* string() const { return std::get_if<std::string>(&m_storage); }
    // The held object (a class counts as an object), or nullptr.
    Ref<Object> object() const;
    template <class T>
    Ref<T> objectAs() const {
        return std::dynamic_pointer_cast<T>(object());
    }
    const Block* block() const { return std::get_if<Block>(&m_storage); }
    // The held array or dictionary; an empty one when the value holds something else.
    const Array& array() const;
    const Dictionary& dictionary() const;
    Ref<Class> classValue() const;
    const Selector* selector() const { return std::get_if<Selector>(&m_storage); }

    // Dictionary lookup; nil when the value is no dictionary or lacks the key.
    Value operator[](std::string_view key) const;

    // What "%@" prints: "(null)" for nil, "<null>" for the null object, the string itself for a
    // string, a bracketed listing for arrays and dictionaries.
    std::string description() const;

    // Equality as the platform's isEqual: numbers compare by value across kinds, strings by
    // content, objects through Object::isEqual, containers element by element.
    bool operator==(const Value& other) const;

private:
    using Storage =
        std::variant<std::monostate, Null, bool, int64_t, double, std::string, Ref<Object>, Block,
                     std::shared_ptr<const Array>, std::shared_ptr<const Dictionary>, Ref<Class>, Selector>;
    Storage m_storage;

    std::string describe(int indent) const;
};

// The platform string's scanning rules, usable on plain strings.
bool stringBoolValue(std::string_view text);
int64_t stringIntegerValue(std::string_view text);
float stringFloatValue(std::string_view text);
double stringDoubleValue(std::string_view text);

// Shortest text that reads back as the same double ("0.5", "1", "1e+100").
std::string formatDouble(double value);

} // namespace ns
