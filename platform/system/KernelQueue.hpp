#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <sys/stat.h>
#include <sys/types.h>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/system/VnodeSnapshot.hpp"

struct inotify_event;

namespace ns {

// A kernel event queue in the BSD mould (kqueue/kevent with the vnode filter), built on Linux
// inotify so that file watchers written against the BSD calls work here almost line for line.
//
// How inotify's notifications become NOTE_ bits (only bits a registration asked for are reported):
//   IN_MOVE_SELF (renamed, or moved to another folder) -> NOTE_RENAME
//   IN_MODIFY (written, truncated)                     -> NOTE_WRITE
//   IN_ATTRIB (metadata changed)                       -> NOTE_ATTRIB
//   IN_DELETE_SELF                                     -> NOTE_DELETE
//   IN_UNMOUNT                                         -> NOTE_REVOKE
//   in a watched folder: IN_CREATE, IN_DELETE,         -> NOTE_WRITE, plus NOTE_LINK when the entry is
//   IN_MOVED_FROM, IN_MOVED_TO                            a folder (its ".." is one of our links)
// Each notification also refreshes the file's status snapshot (size, link count, times), and what
// moved since the last one adds bits of its own:
//   the size grew (not for folders)                    -> NOTE_WRITE | NOTE_EXTEND
//   the link count changed                             -> NOTE_LINK
//   the link count reached 0                           -> NOTE_DELETE
// The last rule is how deletion is seen at all: the held descriptor keeps the inode alive, so
// IN_DELETE_SELF does not come while it is open, and an unlink (or a rename over the file) shows
// up as IN_ATTRIB with no links left. So an unlink reports NOTE_ATTRIB | NOTE_LINK | NOTE_DELETE.
// A folder removed while held open gets no notification at all; its parent is watched as well
// (and followed when the folder moves), and a folder leaving the parent prompts a look at the
// watched folder's link count.
// Writes to, or attribute changes of, entries inside a watched folder are not changes of the
// folder and report nothing.
//
// Several descriptors on one file share its inotify watch and each hears every change; the
// watch goes with the last of them. The inotify queue drops notifications past its limit
// (fs.inotify.max_queued_events), while a BSD queue never loses a change, it only merges them.
// So every wait drains inotify completely into per-registration pending bits, and after an
// overflow every registration is compared with the status it had when last seen: size and
// modification time -> NOTE_WRITE (NOTE_EXTEND for growth), link count -> NOTE_LINK and
// NOTE_DELETE as above, mode, owner or an otherwise unexplained status change -> NOTE_ATTRIB,
// another name or folder -> NOTE_RENAME. An unmount during an overflow goes unreported.
//
// Needs /proc: watches are placed through /proc/self/fd so they land on the very file that was
// opened, whatever has happened to its path since.

// Open flag: a descriptor used only to watch the file (no reading or writing through it). It keeps
// the value BSD code knows; only openForEvents takes it, so it never reaches Linux's open, where
// that bit means something else.
inline constexpr int O_EVTONLY = 0x8000;

inline constexpr int16_t EVFILT_VNODE = -4;

// Change and event flags.
inline constexpr uint16_t EV_ADD = 0x0001;     // add the registration, or update it if it exists
inline constexpr uint16_t EV_DELETE = 0x0002;  // remove the registration
inline constexpr uint16_t EV_ENABLE = 0x0004;  // report it again after EV_DISABLE
inline constexpr uint16_t EV_DISABLE = 0x0008; // keep collecting changes but do not report them
inline constexpr uint16_t EV_ONESHOT = 0x0010; // remove the registration once it has been reported
inline constexpr uint16_t EV_CLEAR = 0x0020;   // reset the pending changes each time they are reported
inline constexpr uint16_t EV_ERROR = 0x4000;   // in a returned record: a change failed, data holds errno

// Vnode filter flags: what happened to the file.
inline constexpr uint32_t NOTE_DELETE = 0x01; // removed
inline constexpr uint32_t NOTE_WRITE = 0x02;  // contents changed (for a folder: its entries changed)
inline constexpr uint32_t NOTE_EXTEND = 0x04; // grew
inline constexpr uint32_t NOTE_ATTRIB = 0x08; // metadata changed
inline constexpr uint32_t NOTE_LINK = 0x10;   // link count changed
inline constexpr uint32_t NOTE_RENAME = 0x20; // renamed or moved
inline constexpr uint32_t NOTE_REVOKE = 0x40; // its file system went away

// One change to apply, or one event returned; the same record serves both, as with the BSD call.
struct KernelEvent {
    uintptr_t ident; // the watched descriptor
    int16_t filter;  // EVFILT_VNODE
    uint16_t flags;  // EV_ flags
    uint32_t fflags; // NOTE_ bits: those to watch for in a change, those that happened in an event
    intptr_t data;   // 0, or errno in an EV_ERROR record
    void* udata;     // handed back untouched in every event of the registration
};

// Opens `path` for event notification only. `flags` must hold O_EVTONLY and nothing else (O_CLOEXEC
// is also accepted; the descriptor is close-on-exec anyway); `mode` is ignored. The file needs read
// permission, as it does for watching. Returns the descriptor, or -1 with errno set: ENOENT for a
// missing path, EACCES without permission, EMFILE/ENFILE at the descriptor limit, EINVAL for other
// flags, EFAULT for a null path. Close it with closeDescriptor, which also ends its registrations.
int openForEvents(const char* path, int flags = O_EVTONLY, mode_t mode = 0);

// Makes a new, empty queue. Returns its descriptor, or -1 with errno set (EMFILE when the per-user
// inotify instance limit or the descriptor limit is reached, ENOMEM). Close it with closeDescriptor.
int kqueue();

// Applies `nchanges` records of `changelist` in order, then waits for events and stores up to
// `nevents` of them in `eventlist`, returning how many. With `nevents` 0 it returns 0 right after the
// changes. `timeout` null waits without limit, zero polls. Each returned event reports one
// registration: the NOTE_ bits gathered since it was last reported (EV_CLEAR) or since it began.
// A change that fails is written to `eventlist` as an EV_ERROR record with the errno in `data` while
// there is room (the call then returns at once with the number of such records); without room the
// call stops there and returns -1 with that errno. Change errors: EBADF for an ident that is not a
// descriptor from openForEvents, EINVAL for another filter, ENOENT for EV_DELETE, EV_ENABLE or
// EV_DISABLE of a registration that does not exist, EACCES/ENOSPC when inotify refuses the watch.
// The call itself fails with -1 and errno: EBADF when `kq` is not an open queue (including a queue
// closed while waiting), EINVAL for negative counts or a malformed timeout, EFAULT for a null list
// with a non-zero count. Thread-safe: registrations may be changed while another thread waits.
int kevent(int kq, const KernelEvent* changelist, int nchanges, KernelEvent* eventlist, int nevents,
           const struct timespec* timeout);

// Closes a descriptor from openForEvents or kqueue (any other descriptor is simply closed). Closing a
// watched descriptor ends all its registrations, and changes still pending for them are dropped.
// Closing a queue wakes its waiters, which return -1 with EBADF. Returns 0, or -1 with errno (EBADF
// when the descriptor is not open).
int closeDescriptor(int descriptor);

// One queue: an inotify instance, the registrations on it and their pending changes. The functions
// above reach it through the process-wide DescriptorTable; use those rather than this class.
class KernelQueue {
public:
    // A new queue with its own inotify instance, or nullptr with errno set.
    static std::shared_ptr<KernelQueue> make();
    ~KernelQueue();
    KernelQueue(const KernelQueue&) = delete;
    KernelQueue& operator=(const KernelQueue&) = delete;

    // The descriptor that names the queue (its inotify instance's).
    int descriptor() const { return m_inotify; }

    // Applies one change to the registration of change.ident, which must be an open descriptor.
    // Returns 0 or the errno value of the failure (see kevent).
    int change(const KernelEvent& change);

    // Ends the registration of `descriptor`, if any, dropping its pending changes.
    void forget(int descriptor);

    // The descriptors registered here.
    std::vector<int> descriptors() const;

    // Waits for events as kevent does. Returns how many were stored, or -1 with errno.
    int wait(KernelEvent* events, int capacity, const struct timespec* timeout);

    // Ends the queue: registrations go, waiters wake and return -1 with EBADF.
    void close();

    // How many times inotify dropped events and the registrations had to be checked one by one.
    uint64_t overflowCount() const;

    std::string description() const;

private:
    // Where a file sits: the folder holding it and its name there. A change here without a rename
    // notification means the notification was lost.
    struct Place {
        std::string name;
        dev_t folderDevice = 0;
        ino_t folderInode = 0;
        bool operator==(const Place&) const = default;
    };

    struct Registration {
        int descriptor = -1;
        uint64_t serial = 0; // tells a registration from an earlier one on a reused descriptor number
        uint32_t interest = 0;
        uint16_t flags = 0;
        bool enabled = true;
        void* udata = nullptr;
        uint32_t pending = 0;
        bool queued = false;
        int watch = -1;       // the file's own watch; -1 once the kernel has dropped it
        int parentWatch = -1; // folders only: the parent's watch, to hear the folder being removed
        VnodeSnapshot snapshot;
        Place place;
    };

    // Who listens on one inotify watch: registrations of the watched file itself, and registered
    // folders whose parent it is.
    struct Watch {
        std::vector<int> subjects;
        std::vector<int> children;
    };

    KernelQueue(int inotify, int wake);

    int addLocked(const KernelEvent& change);
    void removeLocked(int descriptor);
    void attachParentLocked(Registration& registration);
    void detachLocked(int watch, int descriptor, bool asChild);
    Registration* findLocked(int descriptor);

    void drainLocked();
    void dispatchLocked(const inotify_event& event);
    void noteSelfEventLocked(Registration& registration, const inotify_event& event);
    void noteFolderLeftLocked(Registration& registration);
    uint32_t refreshLocked(Registration& registration);
    void recheckAllLocked();
    void noteLocked(Registration& registration, uint32_t notes);
    int collectLocked(KernelEvent* events, int capacity);

    static Place placeOf(int descriptor);

    const int m_inotify;
    const int m_wake;
    mutable std::mutex m_mutex;
    bool m_closed = false;
    uint64_t m_nextSerial = 1;
    uint64_t m_overflows = 0;
    std::unordered_map<int, Registration> m_registrations;
    std::unordered_map<int, Watch> m_watches;
    std::deque<std::pair<int, uint64_t>> m_ready; // (descriptor, serial) in the order they became ready
    std::unique_ptr<char[]> m_buffer;
};

} // namespace ns
