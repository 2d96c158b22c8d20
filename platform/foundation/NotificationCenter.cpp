#include "platform/foundation/NotificationCenter.hpp"

#include <algorithm>
#include <atomic>

namespace ns {

struct NotificationCenter::Registration {
    NotificationObserverToken token = 0;
    std::string name;
    const Object* object = nullptr;
    WeakRef<const Object> objectRef;
    bool objectTracked = false;
    NotificationCallback callback;
    std::atomic<bool> removed{false};
};

NotificationCenter::NotificationCenter() = default;
NotificationCenter::~NotificationCenter() = default;

Ref<NotificationCenter> NotificationCenter::defaultCenter() {
    // Never destroyed: observers may still post from other threads while the process exits.
    static const auto* center = new Ref<NotificationCenter>(make());
    return *center;
}

NotificationObserverToken NotificationCenter::add(RegistrationPtr registration) {
    std::lock_guard lock(m_mutex);
    registration->token = m_nextToken++;
    m_registrations.push_back(registration);
    return registration->token;
}

NotificationObserverToken NotificationCenter::addObserver(std::string_view name, const Object* object,
                                                          NotificationCallback callback) {
    if (!callback)
        return 0;
    auto registration = std::make_shared<Registration>();
    registration->name = std::string(name);
    registration->object = object;
    if (object) {
        registration->objectRef = object->weak_from_this();
        registration->objectTracked = !registration->objectRef.expired();
    }
    registration->callback = std::move(callback);
    return add(std::move(registration));
}

bool NotificationCenter::removeObserver(NotificationObserverToken token) {
    std::lock_guard lock(m_mutex);
    auto found =
        std::find_if(m_registrations.begin(), m_registrations.end(),
                     [&](const RegistrationPtr& registration) { return registration->token == token; });
    if (found == m_registrations.end())
        return false;
    (*found)->removed = true;
    m_registrations.erase(found);
    return true;
}

bool NotificationCenter::matches(const Registration& registration, const Notification& notification) {
    if (!registration.name.empty() && registration.name != notification.name())
        return false;
    if (!registration.object)
        return true;
    if (registration.objectTracked && registration.objectRef.expired())
        return false;
    return registration.object == notification.object().get();
}

void NotificationCenter::post(const Ref<Notification>& notification) {
    if (!notification)
        return;
    // Deliver from a snapshot so callbacks may add and remove observers freely.
    std::vector<RegistrationPtr> targets;
    {
        std::lock_guard lock(m_mutex);
        for (const auto& registration : m_registrations)
            if (matches(*registration, *notification))
                targets.push_back(registration);
    }
    for (const auto& registration : targets)
        if (!registration->removed)
            registration->callback(*notification);
}

void NotificationCenter::post(std::string_view name, const Ref<Object>& object, Dictionary userInfo) {
    post(Notification::make(std::string(name), object, std::move(userInfo)));
}

size_t NotificationCenter::observerCount() const {
    std::lock_guard lock(m_mutex);
    return m_registrations.size();
}

} // namespace ns
