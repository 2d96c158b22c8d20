#pragma once

#include "platform/foundation/Notification.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

namespace ns {

using NotificationCallback = std::function<void(const Notification&)>;

// Handed out by addObserver; 0 is never a valid token.
using NotificationObserverToken = uint64_t;

// Delivers posted notifications to the observers whose name and object filters match.
// Delivery is synchronous, on the posting thread, in registration order. Registration and
// removal are safe from any thread and from inside a callback; an observer removed while a post
// is being delivered is not called by that post from then on, and one added during a post is
// first called by the next post.
class NotificationCenter : public Object {
public:
    NotificationCenter();
    ~NotificationCenter() override;

    // The process-wide centre.
    static Ref<NotificationCenter> defaultCenter();
    // A centre of its own (the workspace keeps one).
    static Ref<NotificationCenter> make() { return create<NotificationCenter>(); }

    // Calls `callback` for every notification named `name` (any name when empty) whose object
    // is `object` (any object when nil). The object is compared by identity and not retained: once
    // a shared-owned filter object dies, the registration no longer matches. An empty callback
    // registers nothing and gives token 0.
    NotificationObserverToken addObserver(std::string_view name, const Object* object,
                                          NotificationCallback callback);
    NotificationObserverToken addObserver(std::string_view name, const Ref<Object>& object,
                                          NotificationCallback callback) {
        return addObserver(name, object.get(), std::move(callback));
    }

    // Removes one registration; unknown tokens (and 0) are ignored. Returns whether it removed.
    bool removeObserver(NotificationObserverToken token);

    void post(const Ref<Notification>& notification);
    void post(std::string_view name, const Ref<Object>& object = nullptr, Dictionary userInfo = {});

    // Number of live registrations.
    size_t observerCount() const;

private:
    struct Registration;
    using RegistrationPtr = std::shared_ptr<Registration>;

    NotificationObserverToken add(RegistrationPtr registration);
    static bool matches(const Registration& registration, const Notification& notification);

    mutable std::mutex m_mutex;
    std::vector<RegistrationPtr> m_registrations;
    NotificationObserverToken m_nextToken = 1;
};

} // namespace ns
