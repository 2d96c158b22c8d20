#pragma once

#include "platform/foundation/Value.hpp"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ns {

class Object;
class KeyPathLink;

// The observations registered on one object, and the old values captured between a
// will-change and its did-change. Dotted key paths are followed by a link object that watches
// the rest of the path on whatever the first key currently leads to.
class ObservationRegistry {
public:
    struct Observation {
        Object* observer = nullptr;
        WeakRef<Object> observerRef;
        bool tracked = false; // observer was shared-owned at registration, so expiry is detectable
        std::string keyPath;
        std::string firstKey;
        std::string restPath;
        uint64_t options = 0;
        void* context = nullptr;
        Ref<KeyPathLink> link;
        bool removed = false;

        bool observerAlive() const { return !tracked || !observerRef.expired(); }
    };

    explicit ObservationRegistry(Object& owner) : m_owner(owner) {}
    ~ObservationRegistry();

    void add(Object& observer, std::string_view keyPath, uint64_t options, void* context);
    // Removes the newest registration matching observer and key path, and context unless
    // anyContext. False when there is none.
    bool remove(const Object& observer, std::string_view keyPath, void* context, bool anyContext);
    bool contains(const Object& observer, std::string_view keyPath, void* context) const;
    size_t count() const { return m_observations.size(); }
    bool observes(std::string_view key) const;

    void willChange(std::string_view key);
    void didChange(std::string_view key);

    // Delivers a change that a link saw further down an observation's key path.
    void forward(const Observation& observation, const Dictionary& change);

private:
    using ObservationPtr = std::shared_ptr<Observation>;
    struct Pending {
        std::string key;
        std::vector<std::pair<ObservationPtr, Value>> oldValues;
    };

    std::vector<ObservationPtr> matching(std::string_view key) const;
    void notify(const Observation& observation, Dictionary change);
    void relink(Observation& observation);
    static void unlink(Observation& observation);

    Object& m_owner;
    std::vector<ObservationPtr> m_observations;
    std::vector<Pending> m_pending;
};

} // namespace ns
