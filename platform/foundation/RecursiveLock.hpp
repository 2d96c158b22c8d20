#pragma once

#include <mutex>

namespace ns {

// A lock that its holder may take again; each lock() needs its unlock(). Meets the standard
// Lockable requirements, so std::lock_guard, std::unique_lock and std::scoped_lock work with it.
// Unlocking a lock the calling thread does not hold is undefined, as with any mutex.
class RecursiveLock {
public:
    RecursiveLock() = default;
    RecursiveLock(const RecursiveLock&) = delete;
    RecursiveLock& operator=(const RecursiveLock&) = delete;

    void lock() { m_mutex.lock(); }
    void unlock() { m_mutex.unlock(); }
    // Takes the lock when no other thread holds it; returns whether it did.
    bool tryLock() { return m_mutex.try_lock(); }
    bool try_lock() { return tryLock(); }

private:
    std::recursive_mutex m_mutex;
};

} // namespace ns
