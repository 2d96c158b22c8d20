#pragma once

#include "kit/Objects/CVPathQueueDelegate.hpp"
#include "kit/Objects/CVPathQueueEntry.hpp"
#include "platform/foundation/Object.hpp"
#include "platform/system/KernelQueue.hpp" // the NOTE_ bits that addPath takes

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

// The names a change becomes, in the order one change produces them (the NOTE_ bit behind each is
// beside it). Posted notifications carry the watcher as their object and {"path": the watched
// path} as their user info.
inline constexpr const char* CVPathQueueRenameNotification = "CVPathQueueFileRenamedNotification";  // RENAME
inline constexpr const char* CVPathQueueWriteNotification = "CVPathQueueFileWrittenToNotification"; // WRITE
inline constexpr const char* CVPathQueueDeleteNotification = "CVPathQueueFileDeletedNotification";  // DELETE
inline constexpr const char* CVPathQueueAttributeChangeNotification =
    "CVPathQueueFileAttributesChangedNotification"; // ATTRIB
inline constexpr const char* CVPathQueueSizeIncreaseNotification =
    "CVPathQueueFileSizeIncreasedNotification"; // EXTEND
inline constexpr const char* CVPathQueueLinkCountChangeNotification =
    "CVPathQueueLinkCountChangedNotification"; // LINK
inline constexpr const char* CVPathQueueAccessRevocationNotification =
    "CVPathQueueAccessWasRevokedNotification"; // REVOKE

// Watches file-system paths through the kernel event queue. Each change of a watched path becomes
// one or more of the notification names above; on the main queue, each name goes to the delegate
// and, when there is no delegate or alwaysPostNotifications is set, is posted on the shared
// workspace's notification centre.
//
// One background thread per watcher waits for changes, looking at its run flag at least once a
// second; it starts with the first path added. stop(), or the watcher's destruction, clears the
// flag and removes every path; the thread then closes the kernel queue and ends within a second.
// The thread shares only an internal state block with the watcher, so it never keeps the watcher
// alive and never reaches a destroyed one: work it queued for a watcher that is gone, or for a
// path removed meanwhile, is dropped.
//
// All operations may be called from any thread; delegate calls and posts happen on the main
// thread as it runs the main queue.
class CVPathQueue : public ns::Object {
    struct Private {
        explicit Private() = default;
    };

public:
    // A watcher with a kernel event queue of its own; nullptr when the queue cannot be made (the
    // descriptor or inotify instance limit reached).
    static ns::Ref<CVPathQueue> make();

    CVPathQueue(Private, int queueFD);
    // Stops the watcher (see stop()).
    ~CVPathQueue() override;
    void didInit() override;

    // Watches the path for all seven kinds of change. Does nothing for nil, nor for a path already
    // watched (its flags stay as they are). A path that cannot be opened is logged on the console
    // ("CVPathQueue tried to add the path ...") and not stored. Does nothing once stopped.
    void addPath(const std::optional<std::string>& path);
    // As above, for the given NOTE_ bits only.
    void addPath(const std::optional<std::string>& path, uint32_t notifyingAbout);

    // The registration step behind addPath: returns the path's entry, registered for at least
    // `notifyingAbout`. An entry that already has every requested bit is returned unchanged; one
    // that lacks some is registered again for the union of both. nullptr for nil, for a path that
    // cannot be opened (nothing is logged here), and once stopped. Starts the watcher thread on the
    // first success.
    ns::Ref<CVPathQueueEntry> addPathToQueue(const std::optional<std::string>& path, uint32_t notifyingAbout);

    // Stops watching the path: its entry leaves the table and, unless the caller still holds it, is
    // freed, closing its descriptor. Changes of it not yet delivered are dropped. Nil or an unknown
    // path: nothing happens.
    void removePath(const std::optional<std::string>& path);
    void removeAllPaths();
    uint64_t numberOfWatchedPaths() const;

    // Ends watching for good: removes every path, and the thread closes the kernel queue and ends
    // within a second (the queue is closed at once when no thread was started). Changes not yet
    // delivered are dropped, and later additions do nothing. Calling it again does nothing.
    void stop();
    bool isStopped() const;

    // Not owned and not cleared automatically: clear it before the delegate goes. Read each time a
    // change is delivered, not when it happened.
    CVPathQueueDelegate* delegate() const { return m_delegate.load(); }
    void setDelegate(CVPathQueueDelegate* delegate) { m_delegate.store(delegate); }
    // Post notifications even when a delegate is set (after its call, name by name). Initially false.
    bool alwaysPostNotifications() const { return m_alwaysPostNotifications.load(); }
    void setAlwaysPostNotifications(bool alwaysPost) { m_alwaysPostNotifications.store(alwaysPost); }

    // The watcher's recursive lock, which guards its path table. Hold it (std::lock_guard on the
    // watcher) to make several changes at once: meanwhile the watcher thread waits before handling
    // its next change, and changes keep gathering in the kernel queue.
    void lock();
    void unlock();

    std::string description() const override;

private:
    struct State;

    static void watcherThread(const std::shared_ptr<State>& state);
    void deliver(uintptr_t tag, const std::vector<std::string>& names, const std::string& path);

    const std::shared_ptr<State> m_state;
    std::atomic<CVPathQueueDelegate*> m_delegate{nullptr};
    std::atomic<bool> m_alwaysPostNotifications{false};
};

} // namespace corvane
