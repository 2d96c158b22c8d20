#pragma once

#include "platform/foundation/ActionTable.hpp"
#include "platform/foundation/KeyTable.hpp"
#include "platform/foundation/Value.hpp"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace ns {

class Error;
class ObjectExtras;

// Options of addObserver.
constexpr uint64_t KeyValueObservingOptionNew = 0x01;
constexpr uint64_t KeyValueObservingOptionOld = 0x02;
constexpr uint64_t KeyValueObservingOptionInitial = 0x04;
constexpr uint64_t KeyValueObservingOptionPrior = 0x08;

// Keys of the change dictionary handed to observeValueForKeyPath.
inline constexpr const char* KeyValueChangeKindKey = "kind";
inline constexpr const char* KeyValueChangeNewKey = "new";
inline constexpr const char* KeyValueChangeOldKey = "old";
inline constexpr const char* KeyValueChangeNotificationIsPriorKey = "notificationIsPrior";
constexpr int64_t KeyValueChangeSetting = 1;

// Keys of infoForBinding.
inline constexpr const char* ObservedObjectKey = "NSObservedObject";
inline constexpr const char* ObservedKeyPathKey = "NSObservedKeyPath";
inline constexpr const char* OptionsKey = "NSOptions";

// The root of every object with identity. Objects live in Ref<T>; make them with create<T>(...)
// (or a class's own T::make), which runs the constructor and then didInit(), where
// shared_from_this() and virtual calls work.
class Object : public std::enable_shared_from_this<Object> {
public:
    Object();
    virtual ~Object();
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    // Second construction phase; subclasses chain to their base first.
    virtual void didInit() {}

    // The class name without namespaces ("View", "CVContentView").
    virtual std::string className() const;
    // What "%@" prints; by default "<ClassName: 0xADDRESS>".
    virtual std::string description() const;
    virtual bool isEqual(const Object& other) const { return this == &other; }
    virtual size_t hash() const { return std::hash<const void*>{}(this); }

    // --- Key-value coding -----------------------------------------------------------------
    // Properties come from keyTable(); unknown keys go to the undefined-key hooks, which log
    // and answer nil (respectively ignore the value).
    virtual const KeyTable& keyTable() const;
    Value valueForKey(std::string_view key) const;
    // A value that the property cannot take (wrong kind, nil for a scalar) is logged and ignored.
    void setValueForKey(const Value& value, std::string_view key);
    // Follows a dotted path through objects and dictionaries; nil as soon as a step is nil.
    Value valueForKeyPath(std::string_view keyPath) const;
    void setValueForKeyPath(const Value& value, std::string_view keyPath);
    // Runs the property's validator, which may replace the value. True when the value is valid
    // (or the property has no validator); false with *error filled when it is not.
    bool validateValue(Value& value, std::string_view keyPath, Ref<Error>* error = nullptr);
    virtual Value valueForUndefinedKey(std::string_view key) const;
    virtual void setValueForUndefinedKey(const Value& value, std::string_view key);

    // --- Key-value observing ----------------------------------------------------------------
    // Observers are not owned. An observer that dies while registered is skipped from then on.
    void addObserver(Object& observer, std::string_view keyPath, uint64_t options, void* context);
    // Removes the most recent matching registration. Removing one that is not there is a
    // programming error: it is logged and false is returned.
    bool removeObserver(Object& observer, std::string_view keyPath, void* context);
    bool removeObserver(Object& observer, std::string_view keyPath);
    bool isObservedBy(const Object& observer, std::string_view keyPath, void* context) const;
    // Number of registrations on this object (all observers, all key paths).
    size_t observationCount() const;
    // Observable setters bracket their change with these; calls may nest.
    void willChangeValueForKey(std::string_view key);
    void didChangeValueForKey(std::string_view key);
    // Called on the observer, synchronously, for each change of an observed key path.
    virtual void observeValueForKeyPath(const std::string& keyPath, Object* object, const Dictionary& change,
                                        void* context);

    // --- Bindings ---------------------------------------------------------------------------
    // Keeps the property named `binding` equal to `keyPath` of `source`: set at once, then
    // followed; a change of the bound property is written back to the source.
    void bind(std::string_view binding, const Ref<Object>& source, std::string_view keyPath,
              const Dictionary& options = {});
    void unbind(std::string_view binding);
    // {NSObservedObject, NSObservedKeyPath, NSOptions}, or nil when the binding is not bound.
    Value infoForBinding(std::string_view binding) const;

    // --- Actions ----------------------------------------------------------------------------
    virtual const ActionTable& actionTable() const;
    virtual bool respondsToSelector(const Selector& selector) const;
    // Performs the action; an action the object does not answer to is logged and gives nil.
    virtual Value perform(const Selector& selector, const Value& argument = {});
    // Performs the action when the object answers to it; returns whether it did.
    virtual bool tryToPerform(const Selector& selector, const Value& argument = {});

    // --- Values attached to an object under a key -------------------------------------------
    Value associatedValue(std::string_view key) const;
    void setAssociatedValue(std::string_view key, Value value);

protected:
    template <class T>
    Ref<T> self() {
        return std::static_pointer_cast<T>(shared_from_this());
    }

private:
    friend class ObservationRegistry;
    ObjectExtras& extras();
    std::unique_ptr<ObjectExtras> m_extras;
};

// Makes an object: the constructor, then didInit().
template <class T, class... Args>
Ref<T> create(Args&&... args) {
    auto object = std::make_shared<T>(std::forward<Args>(args)...);
    object->didInit();
    return object;
}

// True when the object is a T (or nil-safe: false for nil).
template <class T>
bool isKind(const Object* object) {
    return dynamic_cast<const T*>(object) != nullptr;
}
template <class T, class U>
bool isKind(const Ref<U>& object) {
    return dynamic_cast<const T*>(object.get()) != nullptr;
}

// An observable setter's bracket: will-change now, did-change when the scope ends.
class ChangeScope {
public:
    ChangeScope(Object& object, std::string_view key) : m_object(object), m_key(key) {
        m_object.willChangeValueForKey(m_key);
    }
    ~ChangeScope() { m_object.didChangeValueForKey(m_key); }
    ChangeScope(const ChangeScope&) = delete;
    ChangeScope& operator=(const ChangeScope&) = delete;

private:
    Object& m_object;
    std::string m_key;
};

} // namespace ns
