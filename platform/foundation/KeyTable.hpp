#pragma once

#include "platform/foundation/ValueConverter.hpp"

#include <functional>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace ns {

class Object;
class Error;

// One property as key-value coding sees it.
struct PropertyAccess {
    std::function<Value(const Object&)> get;
    // Returns false when the value cannot be stored (wrong kind, nil for a scalar).
    std::function<bool(Object&, const Value&)> set;
    // Optional validator: may replace the value, or fail by returning false and filling the error.
    std::function<bool(Object&, Value&, Ref<Error>*)> validate;
    // True when the setter announces its own changes to observers; otherwise setValueForKey
    // wraps it in will-change/did-change.
    bool notifiesItself = false;
};

// The properties of one class, chained to those of its base class. Each class that adds
// properties keeps one static table and returns it from Object::keyTable().
class KeyTable {
public:
    KeyTable() = default;
    KeyTable(const KeyTable& base,
             std::initializer_list<std::pair<const std::string, PropertyAccess>> entries)
        : m_base(&base), m_entries(entries) {}

    // The property for the key, looking through the base tables; nullptr when there is none.
    const PropertyAccess* find(std::string_view key) const;
    // Every key of this class and its bases, sorted.
    std::vector<std::string> keys() const;

private:
    const KeyTable* m_base = nullptr;
    std::map<std::string, PropertyAccess, std::less<>> m_entries;
};

namespace detail {

template <class C, class G>
std::function<Value(const Object&)> getter(G (C::*get)() const) {
    return [get](const Object& object) {
        using Plain = std::remove_cvref_t<G>;
        return ValueConverter<Plain>::to((static_cast<const C&>(object).*get)());
    };
}

template <class C, class S>
std::function<bool(Object&, const Value&)> setter(void (C::*set)(S)) {
    return [set](Object& object, const Value& value) {
        using Plain = std::remove_cvref_t<S>;
        auto converted = ValueConverter<Plain>::from(value);
        if (!converted)
            return false;
        (static_cast<C&>(object).*set)(std::move(*converted));
        return true;
    };
}

} // namespace detail

// A read-only property.
template <class C, class G>
PropertyAccess property(G (C::*get)() const) {
    return PropertyAccess{detail::getter(get), nullptr, nullptr, false};
}

// A read-write property whose setter does not announce changes itself.
template <class C, class G, class S>
PropertyAccess property(G (C::*get)() const, void (C::*set)(S)) {
    return PropertyAccess{detail::getter(get), detail::setter(set), nullptr, false};
}

// A read-write property whose setter calls will-change/did-change itself.
template <class C, class G, class S>
PropertyAccess observable(G (C::*get)() const, void (C::*set)(S)) {
    return PropertyAccess{detail::getter(get), detail::setter(set), nullptr, true};
}

// Adds a validator to a property: `validate(object, value, error)`.
template <class C>
PropertyAccess validated(PropertyAccess access, bool (C::*validate)(Value&, Ref<Error>*)) {
    access.validate = [validate](Object& object, Value& value, Ref<Error>* error) {
        return (static_cast<C&>(object).*validate)(value, error);
    };
    return access;
}

} // namespace ns
