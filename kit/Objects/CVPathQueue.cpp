#include "kit/Objects/CVPathQueue.hpp"

#include "platform/foundation/Exception.hpp"
#include "platform/foundation/Format.hpp"
#include "platform/foundation/Log.hpp"
#include "platform/foundation/RecursiveLock.hpp"
#include "platform/foundation/RunLoop.hpp"
#include "platform/foundation/Thread.hpp"
#include "platform/system/KernelQueue.hpp"
#include "platform/system/Workspace.hpp"

#include <cerrno>
#include <ctime>
#include <exception>
#include <mutex>
#include <system_error>
#include <unordered_map>

namespace corvane {

namespace {

constexpr uint32_t AllChanges = 0x7F;
constexpr uint16_t RegistrationFlags = ns::EV_ADD | ns::EV_ENABLE | ns::EV_CLEAR;

// The order in which one change's names are produced.
struct NamedChange {
    uint32_t bit;
    const char* name;
};
constexpr NamedChange NamedChanges[] = {
    {ns::NOTE_RENAME, CVPathQueueRenameNotification},
    {ns::NOTE_WRITE, CVPathQueueWriteNotification},
    {ns::NOTE_DELETE, CVPathQueueDeleteNotification},
    {ns::NOTE_ATTRIB, CVPathQueueAttributeChangeNotification},
    {ns::NOTE_EXTEND, CVPathQueueSizeIncreaseNotification},
    {ns::NOTE_LINK, CVPathQueueLinkCountChangeNotification},
    {ns::NOTE_REVOKE, CVPathQueueAccessRevocationNotification},
};

void closeKernelQueue(int queueFD) {
    if (ns::closeDescriptor(queueFD) == -1) {
        int error = errno;
        ns::Log("CVPathQueue watcherThread: Couldn't close main kqueue (%d)", error);
    }
}

} // namespace

// What the watcher and its thread share. The thread holds this, never the watcher, so dropping
// the last reference to a watcher tears it down even while its thread waits.
//
// Events name their entry by a tag, never by address: an event can be taken off the kernel queue
// just before its descriptor is closed, so its user data may outlive the entry. The thread looks
// the tag up under the lock, and a tag is never used twice.
struct CVPathQueue::State {
    struct Watch {
        ns::Ref<CVPathQueueEntry> entry;
        uintptr_t tag;
    };

    explicit State(int queueFD) : queueFD(queueFD), workspace(ns::Workspace::shared()) {}

    // The watched path of a live registration, read from its entry.
    std::optional<std::string> pathForTag(uintptr_t tag) const {
        std::lock_guard guard(lock);
        auto found = entriesByTag.find(tag);
        if (found == entriesByTag.end()) {
            return std::nullopt;
        }
        return found->second->path();
    }

    bool isWatching(uintptr_t tag) const {
        std::lock_guard guard(lock);
        return entriesByTag.count(tag) != 0;
    }

    const int queueFD;
    // Held here so that it outlives the thread, whatever the order of teardown at exit.
    const ns::Ref<ns::Workspace> workspace;
    // Set before the thread starts, read-only afterwards.
    ns::WeakRef<CVPathQueue> owner;
    std::atomic<bool> keepWatcherThreadRunning{false};

    // The fields below are guarded by the lock. It is recursive: the add operations hold it while
    // calling addPathToQueue, which takes it again.
    mutable ns::RecursiveLock lock;
    std::unordered_map<std::string, Watch> watchedPathEntries;
    std::unordered_map<uintptr_t, ns::Ref<CVPathQueueEntry>> entriesByTag;
    uintptr_t nextTag = 1;
    bool stopped = false;
};

ns::Ref<CVPathQueue> CVPathQueue::make() {
    int queueFD = ns::kqueue();
    if (queueFD == -1) {
        return nullptr;
    }
    return ns::create<CVPathQueue>(Private{}, queueFD);
}

CVPathQueue::CVPathQueue(Private, int queueFD) : m_state(std::make_shared<State>(queueFD)) {}

CVPathQueue::~CVPathQueue() {
    stop();
}

void CVPathQueue::didInit() {
    ns::Object::didInit();
    m_state->owner = self<CVPathQueue>();
}

void CVPathQueue::addPath(const std::optional<std::string>& path) {
    addPath(path, AllChanges);
}

void CVPathQueue::addPath(const std::optional<std::string>& path, uint32_t notifyingAbout) {
    if (!path) {
        return;
    }
    std::lock_guard guard(m_state->lock);
    if (m_state->stopped || m_state->watchedPathEntries.count(*path)) {
        return;
    }
    if (!addPathToQueue(path, notifyingAbout)) {
        ns::Log(
            "CVPathQueue tried to add the path %@ to watchedPathEntries, but the CVPathQueueEntry was nil. "
            "\nIt's possible that the host process has hit its max open file descriptors limit.",
            *path);
    }
}

ns::Ref<CVPathQueueEntry> CVPathQueue::addPathToQueue(const std::optional<std::string>& path,
                                                      uint32_t notifyingAbout) {
    if (!path) {
        return nullptr;
    }
    State& state = *m_state;
    std::lock_guard guard(state.lock);
    if (state.stopped) {
        return nullptr;
    }

    ns::Ref<CVPathQueueEntry> entry;
    uintptr_t tag = 0;
    uint32_t flags = notifyingAbout;
    if (auto found = state.watchedPathEntries.find(*path); found != state.watchedPathEntries.end()) {
        entry = found->second.entry;
        tag = found->second.tag;
        uint32_t subscribed = entry->subscriptionFlags();
        if ((notifyingAbout & ~subscribed) == 0) {
            return entry;
        }
        flags = notifyingAbout | subscribed;
    } else {
        entry = CVPathQueueEntry::make(*path, notifyingAbout);
        if (!entry) {
            return nullptr;
        }
        tag = state.nextTag++;
    }

    const auto ident = static_cast<uintptr_t>(entry->watchedFD());
    ns::KernelEvent change{
        ident, ns::EVFILT_VNODE, RegistrationFlags, flags, 0, reinterpret_cast<void*>(tag)};
    entry->setSubscriptionFlags(flags);
    state.watchedPathEntries.insert_or_assign(*path, State::Watch{entry, tag});
    state.entriesByTag.insert_or_assign(tag, entry);
    // A registration the kernel refuses (inotify's watch limit) is not reported back.
    const timespec noWait{0, 0};
    ns::kevent(state.queueFD, &change, 1, nullptr, 0, &noWait);

    if (!state.keepWatcherThreadRunning.load()) {
        state.keepWatcherThreadRunning.store(true);
        try {
            ns::Thread::detachNewThread([shared = m_state] { watcherThread(shared); });
        } catch (const std::system_error&) {
            // No thread could be made; the next addition tries again.
            state.keepWatcherThreadRunning.store(false);
        }
    }
    return entry;
}

void CVPathQueue::removePath(const std::optional<std::string>& path) {
    if (!path) {
        return;
    }
    std::lock_guard guard(m_state->lock);
    auto found = m_state->watchedPathEntries.find(*path);
    if (found == m_state->watchedPathEntries.end()) {
        return;
    }
    m_state->entriesByTag.erase(found->second.tag);
    m_state->watchedPathEntries.erase(found);
}

void CVPathQueue::removeAllPaths() {
    std::lock_guard guard(m_state->lock);
    m_state->entriesByTag.clear();
    m_state->watchedPathEntries.clear();
}

uint64_t CVPathQueue::numberOfWatchedPaths() const {
    std::lock_guard guard(m_state->lock);
    return m_state->watchedPathEntries.size();
}

void CVPathQueue::stop() {
    std::lock_guard guard(m_state->lock);
    if (m_state->stopped) {
        return;
    }
    m_state->stopped = true;
    bool threadRunning = m_state->keepWatcherThreadRunning.exchange(false);
    removeAllPaths();
    // A running thread closes the queue when it next looks at its flag; without one, nobody would.
    if (!threadRunning) {
        closeKernelQueue(m_state->queueFD);
    }
}

bool CVPathQueue::isStopped() const {
    std::lock_guard guard(m_state->lock);
    return m_state->stopped;
}

void CVPathQueue::lock() {
    m_state->lock.lock();
}

void CVPathQueue::unlock() {
    m_state->lock.unlock();
}

std::string CVPathQueue::description() const {
    std::lock_guard guard(m_state->lock);
    return ns::format("%@ %llu watched paths%s", ns::Object::description(),
                      static_cast<unsigned long long>(m_state->watchedPathEntries.size()),
                      m_state->stopped ? ", stopped" : "");
}

void CVPathQueue::watcherThread(const std::shared_ptr<State>& state) {
    const int queueFD = state->queueFD;
    // Reused from pass to pass; each event's task gets a copy.
    std::vector<std::string> names;
    names.reserve(5);

    while (state->keepWatcherThreadRunning.load()) {
        try {
            ns::KernelEvent event{};
            const timespec oneSecond{1, 0};
            int count = ns::kevent(queueFD, nullptr, 0, &event, 1, &oneSecond);
            if (count < 0 && errno != EINTR) {
                // The queue was closed under us: wait as long as a quiet pass would instead of
                // spinning, and keep looking at the flag.
                ns::Thread::sleepForTimeInterval(1.0);
                continue;
            }
            if (count < 1 || event.filter != ns::EVFILT_VNODE || event.fflags == 0) {
                continue;
            }
            const auto tag = reinterpret_cast<uintptr_t>(event.udata);
            std::optional<std::string> path = state->pathForTag(tag);
            if (!path) {
                continue; // removed since the kernel queued the event
            }
            state->workspace->noteFileSystemChanged(*path);

            names.clear();
            for (const NamedChange& change : NamedChanges) {
                if (event.fflags & change.bit) {
                    names.emplace_back(change.name);
                }
            }
            ns::mainQueueAsync([owner = state->owner, tag, names = std::vector<std::string>(names),
                                path = std::move(*path)] {
                if (ns::Ref<CVPathQueue> queue = owner.lock()) {
                    queue->deliver(tag, names, path);
                }
            });
        } catch (const ns::Exception& exception) {
            ns::Log("Error in CVPathQueue watcherThread: %@", exception.description());
        } catch (const std::exception& exception) {
            ns::Log("Error in CVPathQueue watcherThread: %@", exception.what());
        } catch (...) {
            ns::Log("Error in CVPathQueue watcherThread: %@", "unknown exception");
        }
    }
    closeKernelQueue(queueFD);
}

void CVPathQueue::deliver(uintptr_t tag, const std::vector<std::string>& names, const std::string& path) {
    // A path removed (or a watcher stopped) after the change was seen hears nothing more of it.
    if (!m_state->isWatching(tag)) {
        return;
    }
    ns::Ref<CVPathQueue> self = this->self<CVPathQueue>();
    for (const std::string& name : names) {
        if (CVPathQueueDelegate* delegate = this->delegate()) {
            delegate->pathQueue(*this, name, path);
        }
        if (!this->delegate() || alwaysPostNotifications()) {
            m_state->workspace->notificationCenter()->post(name, self,
                                                           ns::Dictionary{{"path", ns::Value(path)}});
        }
    }
}

} // namespace corvane
