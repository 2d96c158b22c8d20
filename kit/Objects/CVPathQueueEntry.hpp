#pragma once

#include "platform/foundation/Object.hpp"

#include <cstdint>
#include <mutex>
#include <string>

namespace corvane {

// The record of one watched path: the path as it was given, the descriptor the kernel watches for
// it, and the change kinds (NOTE_ bits) registered for that descriptor. The entry owns the
// descriptor and closes it when it goes, which also ends the descriptor's kernel registration.
//
// The properties may be read and written from any thread; each is read and written under the
// entry's own guard, as the watcher thread reads the path while the main thread works.
class CVPathQueueEntry : public ns::Object {
public:
    // Opens the path for event notification only and keeps the flags. nullptr when the path cannot
    // be opened (missing, no read permission, descriptor limit reached); errno then says why.
    static ns::Ref<CVPathQueueEntry> make(std::string path, uint32_t subscriptionFlags);

    // Takes over an open descriptor; make() is the usual way in.
    CVPathQueueEntry(std::string path, int32_t watchedFD, uint32_t subscriptionFlags);
    // Closes the descriptor unless it is negative.
    ~CVPathQueueEntry() override;

    std::string path() const;
    void setPath(std::string path);
    // -1 once closed. Setting it does not close the descriptor held before: the entry only closes
    // what it holds when it goes.
    int32_t watchedFD() const;
    void setWatchedFD(int32_t watchedFD);
    uint32_t subscriptionFlags() const;
    void setSubscriptionFlags(uint32_t subscriptionFlags);

    // "<CVPathQueueEntry: 0x...> path = ..., watchedFD = ..., subscriptionFlags = 0x..."
    std::string description() const override;

private:
    mutable std::mutex m_mutex;
    std::string m_path;
    int32_t m_watchedFD;
    uint32_t m_subscriptionFlags;
};

} // namespace corvane
