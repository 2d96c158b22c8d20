#pragma once

#include "platform/foundation/Demangle.hpp"
#include "platform/foundation/Object.hpp"

#include <functional>
#include <map>
#include <string>

namespace ns {

// A class passed around as a value: its name, a test for its instances, an optional way to make
// one, and class-level actions so that a class can be the target of an action. Each name has
// one Class object for the life of the process.
class Class : public Object {
public:
    using InstanceTest = std::function<bool(const Object*)>;
    using Factory = std::function<Ref<Object>()>;

    Class(std::string name, InstanceTest isInstance, Factory factory);

    // The class registered under the name, made on first request; the test and factory of a
    // later request for a name already registered are ignored.
    static Ref<Class> registered(const std::string& name, InstanceTest isInstance, Factory factory);
    // The class of that name, or nil when none was registered.
    static Ref<Class> named(std::string_view name);

    const std::string& name() const { return m_name; }
    // Whether the object is an instance of this class or of a subclass; false for nil.
    bool isInstance(const Object* object) const { return object && m_isInstance && m_isInstance(object); }
    // A new instance, or nil when the class cannot make one by itself.
    Ref<Object> instantiate() const { return m_factory ? m_factory() : nullptr; }
    bool canInstantiate() const { return static_cast<bool>(m_factory); }

    std::string className() const override { return m_name; }
    std::string description() const override { return m_name; }

    // Class-level actions: the handler receives this Class object as its receiver.
    void setAction(const Selector& selector, ActionHandler handler);
    bool respondsToSelector(const Selector& selector) const override;
    Value perform(const Selector& selector, const Value& argument = {}) override;

private:
    std::string m_name;
    InstanceTest m_isInstance;
    Factory m_factory;
    std::map<std::string, ActionHandler, std::less<>> m_actions;
};

// The class token of T.
template <class T>
Ref<Class> classOf() {
    static const Ref<Class> cls = [] {
        Class::Factory factory;
        if constexpr (requires { T::make(); })
            factory = [] {
                return std::static_pointer_cast<Object>(T::make());
            };
        else if constexpr (std::is_default_constructible_v<T> && !std::is_abstract_v<T>)
            factory = [] {
                return std::static_pointer_cast<Object>(create<T>());
            };
        return Class::registered(
            shortTypeName(typeid(T)),
            [](const Object* object) { return dynamic_cast<const T*>(object) != nullptr; },
            std::move(factory));
    }();
    return cls;
}

} // namespace ns
