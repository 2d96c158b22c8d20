#include "platform/system/DescriptorTable.hpp"

#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace ns {

DescriptorTable& DescriptorTable::shared() {
    // Never destroyed: a watcher thread may still be waiting on a queue while the process exits.
    static DescriptorTable* table = new DescriptorTable;
    return *table;
}

int DescriptorTable::openForEvents(const char* path, int flags) {
    if (!path) {
        errno = EFAULT;
        return -1;
    }
    if (!(flags & O_EVTONLY) || (flags & ~(O_EVTONLY | O_CLOEXEC))) {
        errno = EINVAL;
        return -1;
    }
    // O_PATH: the descriptor pins the file for watching and allows nothing else, so it never
    // blocks on a FIFO nor wakes a device the way a real open would.
    int descriptor = ::open(path, O_PATH | O_CLOEXEC);
    if (descriptor < 0) {
        return -1;
    }
    // O_PATH needs no permission on the file, but watching it does: refuse here, where the caller
    // looks for failures, rather than at registration.
    std::string procPath = "/proc/self/fd/" + std::to_string(descriptor);
    if (::faccessat(AT_FDCWD, procPath.c_str(), R_OK, AT_EACCESS) != 0) {
        int error = errno;
        ::close(descriptor);
        errno = error;
        return -1;
    }

    std::lock_guard lock(m_mutex);
    // An entry under this number is left over from a descriptor closed behind the table's back.
    forgetFileLocked(descriptor);
    m_files[descriptor] = File{};
    return descriptor;
}

int DescriptorTable::makeQueue() {
    std::shared_ptr<KernelQueue> queue = KernelQueue::make();
    if (!queue) {
        return -1;
    }
    std::lock_guard lock(m_mutex);
    int kq = queue->descriptor();
    forgetFileLocked(kq);
    m_queues[kq] = std::move(queue);
    return kq;
}

int DescriptorTable::kevent(int kq, const KernelEvent* changelist, int nchanges, KernelEvent* eventlist,
                            int nevents, const struct timespec* timeout) {
    if (nchanges < 0 || nevents < 0) {
        errno = EINVAL;
        return -1;
    }
    if ((nchanges > 0 && !changelist) || (nevents > 0 && !eventlist)) {
        errno = EFAULT;
        return -1;
    }
    if (timeout && (timeout->tv_sec < 0 || timeout->tv_nsec < 0 || timeout->tv_nsec >= 1'000'000'000)) {
        errno = EINVAL;
        return -1;
    }

    std::shared_ptr<KernelQueue> queue;
    {
        std::lock_guard lock(m_mutex);
        auto found = m_queues.find(kq);
        if (found == m_queues.end()) {
            errno = EBADF;
            return -1;
        }
        queue = found->second;
        if (int errors = applyChangesLocked(kq, *queue, changelist, nchanges, eventlist, nevents);
            errors != 0) {
            return errors;
        }
    }
    if (nevents == 0) {
        return 0;
    }
    // The table's lock is not held while waiting: other threads change registrations meanwhile,
    // and the shared pointer keeps the queue alive if one of them closes it.
    return queue->wait(eventlist, nevents, timeout);
}

int DescriptorTable::applyChangesLocked(int kq, KernelQueue& queue, const KernelEvent* changelist,
                                        int nchanges, KernelEvent* eventlist, int nevents) {
    int errors = 0;
    for (int index = 0; index < nchanges; ++index) {
        // A copy: the event list may be the change list itself, and error records overwrite it.
        KernelEvent change = changelist[index];
        int error = EBADF;
        auto file = change.ident <= static_cast<uintptr_t>(INT_MAX)
                        ? m_files.find(static_cast<int>(change.ident))
                        : m_files.end();
        if (file != m_files.end()) {
            error = queue.change(change);
            if (error == 0 && (change.flags & EV_ADD)) {
                file->second.queues.insert(kq);
            }
        }
        if (error == 0) {
            continue;
        }
        if (errors >= nevents) {
            errno = error;
            return -1;
        }
        change.flags = EV_ERROR;
        change.data = error;
        eventlist[errors++] = change;
    }
    return errors;
}

int DescriptorTable::close(int descriptor) {
    std::lock_guard lock(m_mutex);
    if (m_files.count(descriptor)) {
        // Registrations end before the number is released, so nothing meant for this file can
        // reach a file that is given the same number next. The table's lock stays held over the
        // close for the same reason.
        forgetFileLocked(descriptor);
        return ::close(descriptor);
    }
    if (auto found = m_queues.find(descriptor); found != m_queues.end()) {
        std::shared_ptr<KernelQueue> queue = std::move(found->second);
        m_queues.erase(found);
        for (int watched : queue->descriptors()) {
            if (auto file = m_files.find(watched); file != m_files.end()) {
                file->second.queues.erase(descriptor);
            }
        }
        // The inotify descriptor itself is closed when the last waiter lets go of the queue.
        queue->close();
        return 0;
    }
    return ::close(descriptor);
}

std::shared_ptr<KernelQueue> DescriptorTable::queue(int kq) const {
    std::lock_guard lock(m_mutex);
    auto found = m_queues.find(kq);
    return found == m_queues.end() ? nullptr : found->second;
}

void DescriptorTable::forgetFileLocked(int descriptor) {
    auto file = m_files.find(descriptor);
    if (file == m_files.end()) {
        return;
    }
    for (int kq : file->second.queues) {
        if (auto found = m_queues.find(kq); found != m_queues.end()) {
            found->second->forget(descriptor);
        }
    }
    m_files.erase(file);
}

} // namespace ns
