#include "platform/system/KernelQueue.hpp"

#include "platform/system/DescriptorTable.hpp"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdio>
#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace ns {

namespace {

// Every watch asks for the same events: inotify keeps one mask per file per instance, and a file
// may be watched as a subject and as the parent of a watched folder at once.
constexpr uint32_t WatchMask = IN_MODIFY | IN_ATTRIB | IN_MOVE_SELF | IN_DELETE_SELF | IN_CREATE | IN_DELETE |
                               IN_MOVED_FROM | IN_MOVED_TO;

constexpr uint32_t EntryEvents = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO;

// Room for a few thousand notifications per read; a full inotify queue takes a handful of reads.
constexpr size_t BufferSize = 64 * 1024;

// A bound on one drain, so that a file written without pause cannot keep a waiter reading forever.
// What is left is read by the next wait.
constexpr int MaxReadsPerDrain = 64;

std::string procPath(int descriptor) {
    return "/proc/self/fd/" + std::to_string(descriptor);
}

void appendUnique(std::vector<int>& list, int value) {
    if (std::find(list.begin(), list.end(), value) == list.end()) {
        list.push_back(value);
    }
}

void erase(std::vector<int>& list, int value) {
    list.erase(std::remove(list.begin(), list.end(), value), list.end());
}

} // namespace

// --- the C-style calls ---------------------------------------------------------------------------

int openForEvents(const char* path, int flags, mode_t) {
    return DescriptorTable::shared().openForEvents(path, flags);
}

int kqueue() {
    return DescriptorTable::shared().makeQueue();
}

int kevent(int kq, const KernelEvent* changelist, int nchanges, KernelEvent* eventlist, int nevents,
           const struct timespec* timeout) {
    return DescriptorTable::shared().kevent(kq, changelist, nchanges, eventlist, nevents, timeout);
}

int closeDescriptor(int descriptor) {
    return DescriptorTable::shared().close(descriptor);
}

// --- KernelQueue ---------------------------------------------------------------------------------

std::shared_ptr<KernelQueue> KernelQueue::make() {
    int inotify = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (inotify < 0) {
        return nullptr;
    }
    // Wakes waiters when the queue is closed under them.
    int wake = ::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    if (wake < 0) {
        int error = errno;
        ::close(inotify);
        errno = error;
        return nullptr;
    }
    return std::shared_ptr<KernelQueue>(new KernelQueue(inotify, wake));
}

KernelQueue::KernelQueue(int inotify, int wake)
    : m_inotify(inotify), m_wake(wake), m_buffer(new char[BufferSize]) {}

KernelQueue::~KernelQueue() {
    ::close(m_wake);
    ::close(m_inotify);
}

int KernelQueue::change(const KernelEvent& change) {
    std::lock_guard lock(m_mutex);
    if (m_closed) {
        return EBADF;
    }
    if (change.filter != EVFILT_VNODE) {
        return EINVAL;
    }
    if (change.ident > static_cast<uintptr_t>(INT_MAX)) {
        return EBADF;
    }
    int descriptor = static_cast<int>(change.ident);

    // What inotify holds so far happened before this change, so it goes to the registrations as
    // they were: a new registration on an already watched file must not hear older changes, and
    // a widened one must not report earlier changes it did not ask for.
    drainLocked();

    Registration* registration = findLocked(descriptor);
    if (change.flags & EV_DELETE) {
        if (!registration) {
            return ENOENT;
        }
        removeLocked(descriptor);
        return 0;
    }
    if (!registration) {
        if (!(change.flags & EV_ADD)) {
            return ENOENT;
        }
        if (int error = addLocked(change)) {
            return error;
        }
        registration = findLocked(descriptor);
    } else if (change.flags & EV_ADD) {
        registration->interest = change.fflags;
        registration->udata = change.udata;
        registration->flags = change.flags;
    }

    if (change.flags & EV_DISABLE) {
        registration->enabled = false;
    } else if (change.flags & (EV_ENABLE | EV_ADD)) {
        registration->enabled = true;
    }
    noteLocked(*registration, 0);
    return 0;
}

int KernelQueue::addLocked(const KernelEvent& change) {
    int descriptor = static_cast<int>(change.ident);
    VnodeSnapshot snapshot = VnodeSnapshot::of(descriptor);
    if (!snapshot.isValid()) {
        return errno;
    }
    int watch = ::inotify_add_watch(m_inotify, procPath(descriptor).c_str(), WatchMask);
    if (watch < 0) {
        return errno;
    }

    Registration registration;
    registration.descriptor = descriptor;
    registration.serial = m_nextSerial++;
    registration.interest = change.fflags;
    registration.flags = change.flags;
    registration.udata = change.udata;
    registration.watch = watch;
    registration.snapshot = snapshot;
    registration.place = placeOf(descriptor);
    appendUnique(m_watches[watch].subjects, descriptor);
    Registration& stored =
        m_registrations.insert_or_assign(descriptor, std::move(registration)).first->second;
    if (snapshot.isDirectory()) {
        attachParentLocked(stored);
    }
    return 0;
}

void KernelQueue::attachParentLocked(Registration& registration) {
    int watch = -1;
    int parent = ::openat(registration.descriptor, "..", O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (parent >= 0) { // fails once the folder is removed: then there is nothing left to hear
        watch = ::inotify_add_watch(m_inotify, procPath(parent).c_str(), WatchMask);
        ::close(parent);
    }
    if (watch == registration.watch) {
        watch = -1; // the root is its own parent
    }
    if (watch == registration.parentWatch) {
        return;
    }
    // The new parent is attached before the old one is let go, so that a parent shared with the
    // old place keeps its watch and the notifications already queued on it.
    if (watch >= 0) {
        appendUnique(m_watches[watch].children, registration.descriptor);
    }
    detachLocked(registration.parentWatch, registration.descriptor, true);
    registration.parentWatch = watch;
}

void KernelQueue::detachLocked(int watch, int descriptor, bool asChild) {
    auto found = m_watches.find(watch);
    if (found == m_watches.end()) {
        return;
    }
    erase(asChild ? found->second.children : found->second.subjects, descriptor);
    if (found->second.subjects.empty() && found->second.children.empty()) {
        ::inotify_rm_watch(m_inotify, watch);
        m_watches.erase(found);
    }
}

void KernelQueue::forget(int descriptor) {
    std::lock_guard lock(m_mutex);
    if (findLocked(descriptor)) {
        removeLocked(descriptor);
    }
}

void KernelQueue::removeLocked(int descriptor) {
    Registration* registration = findLocked(descriptor);
    detachLocked(registration->watch, descriptor, false);
    detachLocked(registration->parentWatch, descriptor, true);
    // Its entry in the ready list goes stale and is skipped, as its serial no longer matches.
    m_registrations.erase(descriptor);
}

KernelQueue::Registration* KernelQueue::findLocked(int descriptor) {
    auto found = m_registrations.find(descriptor);
    return found == m_registrations.end() ? nullptr : &found->second;
}

std::vector<int> KernelQueue::descriptors() const {
    std::lock_guard lock(m_mutex);
    std::vector<int> result;
    result.reserve(m_registrations.size());
    for (const auto& entry : m_registrations) {
        result.push_back(entry.first);
    }
    return result;
}

int KernelQueue::wait(KernelEvent* events, int capacity, const struct timespec* timeout) {
    using Clock = std::chrono::steady_clock;
    Clock::time_point deadline = Clock::time_point::max();
    if (timeout) {
        // Anything beyond a few centuries is as good as forever, and would overflow the clock.
        auto seconds = std::min<int64_t>(timeout->tv_sec, int64_t{1} << 33);
        deadline = Clock::now() + std::chrono::seconds(seconds) + std::chrono::nanoseconds(timeout->tv_nsec);
    }

    for (;;) {
        {
            std::lock_guard lock(m_mutex);
            if (m_closed) {
                errno = EBADF;
                return -1;
            }
            drainLocked();
            if (int count = collectLocked(events, capacity); count > 0 || capacity <= 0) {
                return count;
            }
        }

        struct timespec remaining {};
        struct timespec* limit = nullptr;
        if (timeout) {
            auto left = std::chrono::duration_cast<std::chrono::nanoseconds>(deadline - Clock::now());
            if (left.count() <= 0) {
                return 0;
            }
            remaining.tv_sec = static_cast<time_t>(left.count() / 1'000'000'000);
            remaining.tv_nsec = static_cast<long>(left.count() % 1'000'000'000);
            limit = &remaining;
        }
        struct pollfd sources[2] = {{m_inotify, POLLIN, 0}, {m_wake, POLLIN, 0}};
        if (::ppoll(sources, 2, limit, nullptr) < 0 && errno != EINTR) {
            return -1;
        }
    }
}

void KernelQueue::close() {
    std::lock_guard lock(m_mutex);
    m_closed = true;
    m_registrations.clear();
    m_watches.clear();
    m_ready.clear();
    uint64_t one = 1;
    [[maybe_unused]] ssize_t written = ::write(m_wake, &one, sizeof one);
}

uint64_t KernelQueue::overflowCount() const {
    std::lock_guard lock(m_mutex);
    return m_overflows;
}

std::string KernelQueue::description() const {
    std::lock_guard lock(m_mutex);
    char text[160];
    std::snprintf(text, sizeof text,
                  "<KernelQueue %d: %zu registrations, %zu watches, %zu ready, %llu overflows%s>", m_inotify,
                  m_registrations.size(), m_watches.size(), m_ready.size(),
                  static_cast<unsigned long long>(m_overflows), m_closed ? ", closed" : "");
    return text;
}

// --- from inotify to pending bits ----------------------------------------------------------------

void KernelQueue::drainLocked() {
    bool overflowed = false;
    for (int reads = 0; reads < MaxReadsPerDrain; ++reads) {
        ssize_t length = ::read(m_inotify, m_buffer.get(), BufferSize);
        if (length < 0 && errno == EINTR) {
            continue;
        }
        if (length <= 0) {
            break; // EAGAIN: nothing more for now
        }
        for (ssize_t offset = 0; offset < length;) {
            const auto& event = *reinterpret_cast<const inotify_event*>(m_buffer.get() + offset);
            if (event.mask & IN_Q_OVERFLOW) {
                overflowed = true;
            } else {
                dispatchLocked(event);
            }
            offset += static_cast<ssize_t>(sizeof(inotify_event) + event.len);
        }
    }
    // Checked after everything readable has been handled, so the snapshots compared are as fresh
    // as the notifications allow.
    if (overflowed) {
        ++m_overflows;
        recheckAllLocked();
    }
}

void KernelQueue::dispatchLocked(const inotify_event& event) {
    auto found = m_watches.find(event.wd);
    if (found == m_watches.end()) {
        return; // a watch already removed; its last notifications are of no interest
    }
    if (event.mask & IN_IGNORED) {
        // The kernel dropped the watch (the file is gone for good, or unmounted).
        for (int descriptor : found->second.subjects) {
            if (Registration* registration = findLocked(descriptor)) {
                registration->watch = -1;
            }
        }
        for (int descriptor : found->second.children) {
            if (Registration* registration = findLocked(descriptor)) {
                registration->parentWatch = -1;
            }
        }
        m_watches.erase(found);
        return;
    }

    // Copies: handling a move re-homes parent watches, which changes m_watches.
    const std::vector<int> subjects = found->second.subjects;
    const std::vector<int> children = found->second.children;
    for (int descriptor : subjects) {
        if (Registration* registration = findLocked(descriptor)) {
            noteSelfEventLocked(*registration, event);
        }
    }
    if ((event.mask & IN_ISDIR) && (event.mask & (IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO))) {
        for (int descriptor : children) {
            if (Registration* registration = findLocked(descriptor)) {
                noteFolderLeftLocked(*registration);
            }
        }
    }
}

void KernelQueue::noteSelfEventLocked(Registration& registration, const inotify_event& event) {
    uint32_t notes = 0;
    if (event.len > 0) {
        // Only notifications about entries of a watched folder carry a name. Entries coming and going
        // change the folder; entries being written to or having their attributes changed do not.
        if (!(event.mask & EntryEvents)) {
            return;
        }
        notes |= NOTE_WRITE;
        if (event.mask & IN_ISDIR) {
            notes |= NOTE_LINK; // a subfolder's ".." is one of the folder's links
        }
    } else {
        if (event.mask & IN_MODIFY) {
            notes |= NOTE_WRITE;
        }
        if (event.mask & IN_ATTRIB) {
            notes |= NOTE_ATTRIB;
        }
        if (event.mask & IN_MOVE_SELF) {
            notes |= NOTE_RENAME;
        }
        if (event.mask & IN_DELETE_SELF) {
            notes |= NOTE_DELETE;
        }
        if (event.mask & IN_UNMOUNT) {
            notes |= NOTE_REVOKE;
        }
    }
    notes |= refreshLocked(registration);
    if (event.mask & IN_MOVE_SELF) {
        registration.place = placeOf(registration.descriptor);
        if (registration.snapshot.isDirectory()) {
            attachParentLocked(registration);
        }
    }
    noteLocked(registration, notes);
}

void KernelQueue::noteFolderLeftLocked(Registration& registration) {
    // A folder leaving this parent may be the registered one being removed, which its own watch
    // does not report; its link count tells.
    noteLocked(registration, refreshLocked(registration));
}

uint32_t KernelQueue::refreshLocked(Registration& registration) {
    VnodeSnapshot now = VnodeSnapshot::of(registration.descriptor);
    if (!now.isValid()) {
        return 0;
    }
    uint32_t notes = now.countedChanges(registration.snapshot);
    if (now.linkCount() != registration.snapshot.linkCount()) {
        // The name that was followed may be the one that went.
        registration.place = placeOf(registration.descriptor);
    }
    registration.snapshot = now;
    return notes;
}

void KernelQueue::recheckAllLocked() {
    for (auto& [descriptor, registration] : m_registrations) {
        VnodeSnapshot now = VnodeSnapshot::of(descriptor);
        if (!now.isValid()) {
            continue;
        }
        Place place = placeOf(descriptor);
        bool renamed = now.linkCount() > 0 && place != registration.place;
        uint32_t notes = now.inferredChanges(registration.snapshot, renamed);
        if (renamed) {
            notes |= NOTE_RENAME;
        }
        registration.snapshot = now;
        registration.place = std::move(place);
        if (renamed && now.isDirectory()) {
            attachParentLocked(registration);
        }
        noteLocked(registration, notes);
    }
}

void KernelQueue::noteLocked(Registration& registration, uint32_t notes) {
    // Like a BSD knote, a registration only gathers what it asked for.
    registration.pending |= notes & registration.interest;
    if ((registration.pending & registration.interest) && registration.enabled && !registration.queued) {
        m_ready.emplace_back(registration.descriptor, registration.serial);
        registration.queued = true;
    }
}

int KernelQueue::collectLocked(KernelEvent* events, int capacity) {
    int count = 0;
    // Only what was ready on entry: a level-triggered registration put back at the end is not
    // reported twice in one call.
    size_t candidates = m_ready.size();
    while (count < capacity && candidates-- > 0) {
        auto [descriptor, serial] = m_ready.front();
        m_ready.pop_front();
        Registration* registration = findLocked(descriptor);
        if (!registration || registration->serial != serial) {
            continue;
        }
        registration->queued = false;
        uint32_t notes = registration->pending & registration->interest;
        if (!notes || !registration->enabled) {
            continue;
        }
        events[count++] = KernelEvent{static_cast<uintptr_t>(descriptor),
                                      EVFILT_VNODE,
                                      registration->flags,
                                      notes,
                                      0,
                                      registration->udata};
        if (registration->flags & EV_ONESHOT) {
            removeLocked(descriptor);
        } else if (registration->flags & EV_CLEAR) {
            registration->pending = 0;
        } else {
            noteLocked(*registration, 0);
        }
    }
    return count;
}

KernelQueue::Place KernelQueue::placeOf(int descriptor) {
    Place place;
    char target[PATH_MAX];
    ssize_t length = ::readlink(procPath(descriptor).c_str(), target, sizeof target - 1);
    if (length <= 0) {
        return place;
    }
    std::string path(target, static_cast<size_t>(length));
    size_t slash = path.rfind('/');
    if (slash == std::string::npos) {
        return place; // not a path (an anonymous file)
    }
    place.name = path.substr(slash + 1);
    std::string folder = slash == 0 ? "/" : path.substr(0, slash);
    struct stat status {};
    if (::stat(folder.c_str(), &status) == 0) {
        place.folderDevice = status.st_dev;
        place.folderInode = status.st_ino;
    }
    return place;
}

} // namespace ns
