#include "platform/foundation/Object.hpp"

#include "platform/foundation/BindingConnection.hpp"
#include "platform/foundation/Demangle.hpp"
#include "platform/foundation/Error.hpp"
#include "platform/foundation/Log.hpp"
#include "platform/foundation/ObservationRegistry.hpp"

#include <cstdio>
#include <map>

namespace ns {

// What an object needs only once it is observed, bound or given attached values; most objects
// never allocate it.
class ObjectExtras {
public:
    explicit ObjectExtras(Object& owner) : observations(owner) {}

    ObservationRegistry observations;
    std::map<std::string, Ref<BindingConnection>, std::less<>> bindings;
    Dictionary associated;
};

Object::Object() = default;

Object::~Object() {
    // Bindings end first, while this object's own observations can still be removed.
    if (m_extras) {
        for (auto& [name, connection] : m_extras->bindings)
            connection->disconnect();
        m_extras->bindings.clear();
    }
}

ObjectExtras& Object::extras() {
    if (!m_extras)
        m_extras = std::make_unique<ObjectExtras>(*this);
    return *m_extras;
}

std::string Object::className() const {
    return shortTypeName(typeid(*this));
}

std::string Object::description() const {
    char address[32];
    std::snprintf(address, sizeof address, "%p", static_cast<const void*>(this));
    return "<" + className() + ": " + address + ">";
}

// --- Key-value coding ----------------------------------------------------------------------

const KeyTable& Object::keyTable() const {
    static const KeyTable root;
    return root;
}

Value Object::valueForKey(std::string_view key) const {
    if (const PropertyAccess* access = keyTable().find(key); access && access->get)
        return access->get(*this);
    return valueForUndefinedKey(key);
}

void Object::setValueForKey(const Value& value, std::string_view key) {
    const PropertyAccess* access = keyTable().find(key);
    if (!access) {
        setValueForUndefinedKey(value, key);
        return;
    }
    if (!access->set) {
        Log("[<%@ %p> setValue:forKey:]: the key %@ is read-only.", className(), this, key);
        return;
    }
    bool stored;
    if (access->notifiesItself) {
        stored = access->set(*this, value);
    } else {
        ChangeScope change(*this, key);
        stored = access->set(*this, value);
    }
    if (!stored)
        Log("[<%@ %p> setValue:forKey:]: %@ is not a valid value for the key %@.", className(), this, value,
            key);
}

Value Object::valueForKeyPath(std::string_view keyPath) const {
    size_t dot = keyPath.find('.');
    Value first = valueForKey(keyPath.substr(0, dot));
    if (dot == std::string_view::npos)
        return first;
    std::string_view rest = keyPath.substr(dot + 1);
    // Walk the remaining steps through objects, dictionaries and arrays (arrays map each element).
    std::function<Value(const Value&, std::string_view)> walk = [&](const Value& value,
                                                                    std::string_view path) {
        if (path.empty() || value.isNil())
            return value;
        size_t next = path.find('.');
        std::string_view key = path.substr(0, next);
        std::string_view remaining =
            next == std::string_view::npos ? std::string_view() : path.substr(next + 1);
        if (auto object = value.object())
            return walk(object->valueForKey(key), remaining);
        if (value.isDictionary())
            return walk(value[key], remaining);
        if (value.isArray()) {
            Array mapped;
            for (const Value& element : value.array())
                mapped.push_back(walk(element, path));
            return Value(std::move(mapped));
        }
        return Value();
    };
    return walk(first, rest);
}

void Object::setValueForKeyPath(const Value& value, std::string_view keyPath) {
    size_t dot = keyPath.rfind('.');
    if (dot == std::string_view::npos) {
        setValueForKey(value, keyPath);
        return;
    }
    if (auto target = valueForKeyPath(keyPath.substr(0, dot)).object())
        target->setValueForKey(value, keyPath.substr(dot + 1));
}

bool Object::validateValue(Value& value, std::string_view keyPath, Ref<Error>* error) {
    size_t dot = keyPath.rfind('.');
    if (dot != std::string_view::npos) {
        auto target = valueForKeyPath(keyPath.substr(0, dot)).object();
        return target ? target->validateValue(value, keyPath.substr(dot + 1), error) : true;
    }
    const PropertyAccess* access = keyTable().find(keyPath);
    if (!access || !access->validate)
        return true;
    Ref<Error> failure;
    bool valid = access->validate(*this, value, &failure);
    if (!valid && error)
        *error = failure ? failure : Error::make(CocoaErrorDomain, KeyValueValidationError);
    return valid;
}

Value Object::valueForUndefinedKey(std::string_view key) const {
    Log("[<%@ %p> valueForUndefinedKey:]: this class is not key value coding-compliant for the key %@.",
        className(), this, key);
    return {};
}

void Object::setValueForUndefinedKey(const Value&, std::string_view key) {
    Log("[<%@ %p> setValue:forUndefinedKey:]: this class is not key value coding-compliant for the key %@.",
        className(), this, key);
}

// --- Key-value observing -------------------------------------------------------------------

void Object::addObserver(Object& observer, std::string_view keyPath, uint64_t options, void* context) {
    extras().observations.add(observer, keyPath, options, context);
}

bool Object::removeObserver(Object& observer, std::string_view keyPath, void* context) {
    if (m_extras && m_extras->observations.remove(observer, keyPath, context, false))
        return true;
    Log("Cannot remove an observer %@ for the key path \"%@\" from %@ because it is not registered as an "
        "observer.",
        observer.Object::description(), keyPath, Object::description());
    return false;
}

bool Object::removeObserver(Object& observer, std::string_view keyPath) {
    if (m_extras && m_extras->observations.remove(observer, keyPath, nullptr, true))
        return true;
    Log("Cannot remove an observer %@ for the key path \"%@\" from %@ because it is not registered as an "
        "observer.",
        observer.Object::description(), keyPath, Object::description());
    return false;
}

bool Object::isObservedBy(const Object& observer, std::string_view keyPath, void* context) const {
    return m_extras && m_extras->observations.contains(observer, keyPath, context);
}

size_t Object::observationCount() const {
    return m_extras ? m_extras->observations.count() : 0;
}

void Object::willChangeValueForKey(std::string_view key) {
    if (m_extras && m_extras->observations.count())
        m_extras->observations.willChange(key);
}

void Object::didChangeValueForKey(std::string_view key) {
    if (m_extras && m_extras->observations.count())
        m_extras->observations.didChange(key);
}

void Object::observeValueForKeyPath(const std::string& keyPath, Object* object, const Dictionary&, void*) {
    Log("%@: an observation of %@ for the key path \"%@\" was received but not handled.", description(),
        object ? object->description() : std::string("(null)"), keyPath);
}

// --- Bindings ------------------------------------------------------------------------------

void Object::bind(std::string_view binding, const Ref<Object>& source, std::string_view keyPath,
                  const Dictionary& options) {
    if (!source) {
        Log("%@: cannot bind %@ to a nil object.", description(), binding);
        return;
    }
    unbind(binding);
    auto connection =
        create<BindingConnection>(*this, std::string(binding), source, std::string(keyPath), options);
    extras().bindings[std::string(binding)] = std::move(connection);
}

void Object::unbind(std::string_view binding) {
    if (!m_extras)
        return;
    auto found = m_extras->bindings.find(binding);
    if (found == m_extras->bindings.end())
        return;
    Ref<BindingConnection> connection = std::move(found->second);
    m_extras->bindings.erase(found);
    connection->disconnect();
}

Value Object::infoForBinding(std::string_view binding) const {
    if (!m_extras)
        return {};
    auto found = m_extras->bindings.find(binding);
    return found == m_extras->bindings.end() ? Value() : found->second->info();
}

// --- Actions -------------------------------------------------------------------------------

const ActionTable& Object::actionTable() const {
    static const ActionTable root;
    return root;
}

bool Object::respondsToSelector(const Selector& selector) const {
    return actionTable().find(selector) != nullptr;
}

Value Object::perform(const Selector& selector, const Value& argument) {
    if (const ActionHandler* handler = actionTable().find(selector))
        return (*handler)(*this, argument);
    Log("-[%@ %@]: unrecognized selector sent to instance %p", className(), selector.name(), this);
    return {};
}

bool Object::tryToPerform(const Selector& selector, const Value& argument) {
    if (!respondsToSelector(selector))
        return false;
    perform(selector, argument);
    return true;
}

// --- Attached values -----------------------------------------------------------------------

Value Object::associatedValue(std::string_view key) const {
    if (!m_extras)
        return {};
    auto found = m_extras->associated.find(key);
    return found == m_extras->associated.end() ? Value() : found->second;
}

void Object::setAssociatedValue(std::string_view key, Value value) {
    if (value.isNil()) {
        if (m_extras) {
            auto found = m_extras->associated.find(key);
            if (found != m_extras->associated.end())
                m_extras->associated.erase(found);
        }
        return;
    }
    extras().associated[std::string(key)] = std::move(value);
}

} // namespace ns
