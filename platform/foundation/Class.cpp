#include "platform/foundation/Class.hpp"

#include "platform/foundation/Log.hpp"

#include <mutex>

namespace ns {

namespace {

std::mutex& registryMutex() {
    static std::mutex mutex;
    return mutex;
}

std::map<std::string, Ref<Class>, std::less<>>& registry() {
    static std::map<std::string, Ref<Class>, std::less<>> classes;
    return classes;
}

} // namespace

Class::Class(std::string name, InstanceTest isInstance, Factory factory)
    : m_name(std::move(name)), m_isInstance(std::move(isInstance)), m_factory(std::move(factory)) {}

Ref<Class> Class::registered(const std::string& name, InstanceTest isInstance, Factory factory) {
    std::lock_guard lock(registryMutex());
    auto& slot = registry()[name];
    if (!slot)
        slot = create<Class>(name, std::move(isInstance), std::move(factory));
    return slot;
}

Ref<Class> Class::named(std::string_view name) {
    std::lock_guard lock(registryMutex());
    auto found = registry().find(name);
    return found == registry().end() ? nullptr : found->second;
}

void Class::setAction(const Selector& selector, ActionHandler handler) {
    m_actions[selector.name()] = std::move(handler);
}

bool Class::respondsToSelector(const Selector& selector) const {
    return m_actions.count(selector.name()) > 0 || Object::respondsToSelector(selector);
}

Value Class::perform(const Selector& selector, const Value& argument) {
    auto found = m_actions.find(selector.name());
    if (found != m_actions.end())
        return found->second(*this, argument);
    return Object::perform(selector, argument);
}

} // namespace ns
