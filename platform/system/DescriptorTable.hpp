#pragma once

#include "platform/system/KernelQueue.hpp"

#include <memory>
#include <mutex>
#include <set>
#include <unordered_map>

namespace ns {

// The process-wide record of the descriptors that openForEvents and kqueue handed out: which are
// watched files and on which queues they are registered, and which are queues. It is what lets
// closing a descriptor end its registrations, and it keeps a queue alive while a thread waits on
// it even if another thread closes it.
//
// Lock order: the table's lock, then a queue's. A waiting thread holds only its queue's lock, and
// only while it reads notifications, never while it sleeps.
class DescriptorTable {
public:
    static DescriptorTable& shared();

    // See openForEvents, kqueue, kevent and closeDescriptor in KernelQueue.hpp.
    int openForEvents(const char* path, int flags);
    int makeQueue();
    int kevent(int kq, const KernelEvent* changelist, int nchanges, KernelEvent* eventlist, int nevents,
               const struct timespec* timeout);
    int close(int descriptor);

    // The open queue named `kq`, or nullptr.
    std::shared_ptr<KernelQueue> queue(int kq) const;

private:
    struct File {
        std::set<int> queues; // queues holding a registration of it, or having held one
    };

    DescriptorTable() = default;

    int applyChangesLocked(int kq, KernelQueue& queue, const KernelEvent* changelist, int nchanges,
                           KernelEvent* eventlist, int nevents);
    void forgetFileLocked(int descriptor);

    mutable std::mutex m_mutex;
    std::unordered_map<int, File> m_files;
    std::unordered_map<int, std::shared_ptr<KernelQueue>> m_queues;
};

} // namespace ns
