#pragma once

#include "platform/foundation/Selector.hpp"
#include "platform/foundation/Value.hpp"

#include <functional>
#include <initializer_list>
#include <map>
#include <string>
#include <type_traits>

namespace ns {

class Object;

// Performs an action on an object with one argument (normally the sender) and answers a value
// (nil for actions that answer nothing).
using ActionHandler = std::function<Value(Object& receiver, const Value& argument)>;

// The actions one class answers to, chained to its base class's. Each class that adds actions
// keeps one static table and returns it from Object::actionTable().
class ActionTable {
public:
    ActionTable() = default;
    ActionTable(const ActionTable& base,
                std::initializer_list<std::pair<const std::string, ActionHandler>> entries)
        : m_base(&base), m_entries(entries) {}

    // The handler for the selector, looking through the base tables; nullptr when there is none.
    const ActionHandler* find(const Selector& selector) const;

private:
    const ActionTable* m_base = nullptr;
    std::map<std::string, ActionHandler, std::less<>> m_entries;
};

// An action handler from a member function taking the argument, or taking nothing.
template <class C, class R>
ActionHandler action(R (C::*method)(const Value&)) {
    return [method](Object& receiver, const Value& argument) -> Value {
        if constexpr (std::is_void_v<R>) {
            (static_cast<C&>(receiver).*method)(argument);
            return {};
        } else {
            return Value((static_cast<C&>(receiver).*method)(argument));
        }
    };
}

template <class C, class R>
ActionHandler action(R (C::*method)()) {
    return [method](Object& receiver, const Value&) -> Value {
        if constexpr (std::is_void_v<R>) {
            (static_cast<C&>(receiver).*method)();
            return {};
        } else {
            return Value((static_cast<C&>(receiver).*method)());
        }
    };
}

} // namespace ns
