#include "platform/foundation/ObservationRegistry.hpp"

#include "platform/foundation/Object.hpp"

#include <algorithm>

namespace ns {

// Watches the rest of a dotted key path on the object the first key leads to, and hands each
// change back to the registry that owns the observation.
class KeyPathLink final : public Object {
public:
    KeyPathLink(ObservationRegistry& registry, std::weak_ptr<ObservationRegistry::Observation> observation)
        : m_registry(registry), m_observation(std::move(observation)) {}

    void attach(const Ref<Object>& child, const std::string& restPath, uint64_t options) {
        detach(restPath);
        m_child = child;
        if (child)
            child->addObserver(*this, restPath, options & ~KeyValueObservingOptionInitial, nullptr);
    }

    void detach(const std::string& restPath) {
        if (auto child = m_child.lock())
            child->removeObserver(*this, restPath, nullptr);
        m_child.reset();
    }

    void observeValueForKeyPath(const std::string&, Object*, const Dictionary& change, void*) override {
        if (auto observation = m_observation.lock())
            if (!observation->removed)
                m_registry.forward(*observation, change);
    }

private:
    ObservationRegistry& m_registry;
    std::weak_ptr<ObservationRegistry::Observation> m_observation;
    WeakRef<Object> m_child;
};

ObservationRegistry::~ObservationRegistry() {
    for (auto& observation : m_observations)
        unlink(*observation);
}

void ObservationRegistry::add(Object& observer, std::string_view keyPath, uint64_t options, void* context) {
    auto observation = std::make_shared<Observation>();
    observation->observer = &observer;
    observation->observerRef = observer.weak_from_this();
    observation->tracked = !observation->observerRef.expired();
    observation->keyPath = std::string(keyPath);
    size_t dot = keyPath.find('.');
    observation->firstKey = std::string(keyPath.substr(0, dot));
    if (dot != std::string_view::npos)
        observation->restPath = std::string(keyPath.substr(dot + 1));
    observation->options = options;
    observation->context = context;
    m_observations.push_back(observation);
    relink(*observation);

    if (options & KeyValueObservingOptionInitial) {
        Dictionary change{{KeyValueChangeKindKey, KeyValueChangeSetting}};
        if (options & KeyValueObservingOptionNew) {
            Value value = m_owner.valueForKeyPath(keyPath);
            change[KeyValueChangeNewKey] = value.isNil() ? Value(Null{}) : value;
        }
        notify(*observation, std::move(change));
    }
}

bool ObservationRegistry::remove(const Object& observer, std::string_view keyPath, void* context,
                                 bool anyContext) {
    for (auto it = m_observations.rbegin(); it != m_observations.rend(); ++it) {
        Observation& observation = **it;
        if (observation.observer == &observer && observation.keyPath == keyPath &&
            (anyContext || observation.context == context)) {
            observation.removed = true;
            unlink(observation);
            m_observations.erase(std::next(it).base());
            return true;
        }
    }
    return false;
}

bool ObservationRegistry::contains(const Object& observer, std::string_view keyPath, void* context) const {
    return std::any_of(m_observations.begin(), m_observations.end(), [&](const ObservationPtr& observation) {
        return observation->observer == &observer && observation->keyPath == keyPath &&
               observation->context == context;
    });
}

bool ObservationRegistry::observes(std::string_view key) const {
    return std::any_of(m_observations.begin(), m_observations.end(),
                       [&](const ObservationPtr& observation) { return observation->firstKey == key; });
}

std::vector<ObservationRegistry::ObservationPtr> ObservationRegistry::matching(std::string_view key) const {
    std::vector<ObservationPtr> found;
    for (const auto& observation : m_observations)
        if (observation->firstKey == key)
            found.push_back(observation);
    return found;
}

void ObservationRegistry::willChange(std::string_view key) {
    Pending pending{std::string(key), {}};
    for (auto& observation : matching(key)) {
        if (!(observation->options & (KeyValueObservingOptionOld | KeyValueObservingOptionPrior)))
            continue;
        Value old = m_owner.valueForKeyPath(observation->keyPath);
        pending.oldValues.emplace_back(observation, old);
        if (observation->options & KeyValueObservingOptionPrior) {
            Dictionary change{{KeyValueChangeKindKey, KeyValueChangeSetting},
                              {KeyValueChangeNotificationIsPriorKey, true}};
            if (observation->options & KeyValueObservingOptionOld)
                change[KeyValueChangeOldKey] = old.isNil() ? Value(Null{}) : old;
            notify(*observation, std::move(change));
        }
    }
    m_pending.push_back(std::move(pending));
}

void ObservationRegistry::didChange(std::string_view key) {
    Pending pending;
    auto open =
        std::find_if(m_pending.rbegin(), m_pending.rend(), [&](const Pending& p) { return p.key == key; });
    if (open != m_pending.rend()) {
        pending = std::move(*open);
        m_pending.erase(std::next(open).base());
    }
    for (auto& observation : matching(key)) {
        if (observation->removed)
            continue;
        if (!observation->restPath.empty())
            relink(*observation);
        Dictionary change{{KeyValueChangeKindKey, KeyValueChangeSetting}};
        if (observation->options & KeyValueObservingOptionOld) {
            Value old;
            for (auto& [owner, value] : pending.oldValues)
                if (owner == observation)
                    old = value;
            change[KeyValueChangeOldKey] = old.isNil() ? Value(Null{}) : old;
        }
        if (observation->options & KeyValueObservingOptionNew) {
            Value value = m_owner.valueForKeyPath(observation->keyPath);
            change[KeyValueChangeNewKey] = value.isNil() ? Value(Null{}) : value;
        }
        notify(*observation, std::move(change));
    }
}

void ObservationRegistry::forward(const Observation& observation, const Dictionary& change) {
    notify(observation, change);
}

void ObservationRegistry::notify(const Observation& observation, Dictionary change) {
    if (observation.removed || !observation.observerAlive())
        return;
    // Keep a shared-owned observer alive for the length of its callback.
    Ref<Object> keepAlive = observation.tracked ? observation.observerRef.lock() : nullptr;
    if (observation.tracked && !keepAlive)
        return;
    observation.observer->observeValueForKeyPath(observation.keyPath, &m_owner, change, observation.context);
}

void ObservationRegistry::relink(Observation& observation) {
    if (observation.restPath.empty())
        return;
    if (!observation.link) {
        std::weak_ptr<Observation> weak;
        for (auto& candidate : m_observations)
            if (candidate.get() == &observation)
                weak = candidate;
        observation.link = create<KeyPathLink>(*this, weak);
    }
    observation.link->attach(m_owner.valueForKey(observation.firstKey).object(), observation.restPath,
                             observation.options);
}

void ObservationRegistry::unlink(Observation& observation) {
    if (observation.link) {
        observation.link->detach(observation.restPath);
        observation.link.reset();
    }
}

} // namespace ns
