#pragma once

#include "platform/foundation/Value.hpp"

#include <concepts>
#include <optional>

namespace ns {

// How a C++ type travels in and out of a Value for key-value coding. `from` returns nullopt when
// the value cannot become a T (wrong kind, or nil for a scalar); the caller logs and leaves the
// property alone. Other headers add specialisations for their own value types.
template <class T>
struct ValueConverter;

template <>
struct ValueConverter<Value> {
    static Value to(const Value& value) { return value; }
    static std::optional<Value> from(const Value& value) { return value; }
};

template <>
struct ValueConverter<bool> {
    static Value to(bool value) { return value; }
    static std::optional<bool> from(const Value& value) {
        if (value.isNil())
            return std::nullopt;
        return value.boolValue();
    }
};

template <class I>
requires(std::integral<I> && !std::same_as<I, bool>) struct ValueConverter<I> {
    static Value to(I value) { return value; }
    static std::optional<I> from(const Value& value) {
        if (value.isNil())
            return std::nullopt;
        return static_cast<I>(value.integerValue());
    }
};

template <std::floating_point F>
struct ValueConverter<F> {
    static Value to(F value) { return static_cast<double>(value); }
    static std::optional<F> from(const Value& value) {
        if (value.isNil())
            return std::nullopt;
        return static_cast<F>(value.doubleValue());
    }
};

template <>
struct ValueConverter<std::string> {
    static Value to(const std::string& value) { return value; }
    static std::optional<std::string> from(const Value& value) {
        if (auto s = value.string())
            return *s;
        return std::nullopt;
    }
};

template <>
struct ValueConverter<std::optional<std::string>> {
    static Value to(const std::optional<std::string>& value) { return value; }
    static std::optional<std::optional<std::string>> from(const Value& value) {
        if (value.isNil())
            return std::optional<std::string>();
        if (auto s = value.string())
            return std::optional<std::string>(*s);
        return std::nullopt;
    }
};

template <class T>
requires std::derived_from<T, Object>
struct ValueConverter<Ref<T>> {
    static Value to(const Ref<T>& value) { return value; }
    static std::optional<Ref<T>> from(const Value& value) {
        if (value.isNil())
            return Ref<T>();
        auto object = value.objectAs<T>();
        if (!object)
            return std::nullopt;
        return object;
    }
};

template <>
struct ValueConverter<Array> {
    static Value to(const Array& value) { return value; }
    static std::optional<Array> from(const Value& value) {
        if (value.isNil() || value.isArray())
            return value.array();
        return std::nullopt;
    }
};

template <>
struct ValueConverter<Dictionary> {
    static Value to(const Dictionary& value) { return value; }
    static std::optional<Dictionary> from(const Value& value) {
        if (value.isNil() || value.isDictionary())
            return value.dictionary();
        return std::nullopt;
    }
};

template <>
struct ValueConverter<Block> {
    static Value to(const Block& value) { return value; }
    static std::optional<Block> from(const Value& value) {
        if (value.isNil())
            return Block();
        if (auto block = value.block())
            return *block;
        return std::nullopt;
    }
};

} // namespace ns
