#include "platform/foundation/Thread.hpp"

#include "platform/foundation/RecursiveLock.hpp"

#include <gtest/gtest.h>

#include <future>
#include <thread>

using namespace ns;

TEST(Thread, MainThreadIsTheOneRunningMain) {
    EXPECT_TRUE(Thread::isMainThread());
    std::promise<bool> onWorker;
    Thread::detachNewThread([&] { onWorker.set_value(Thread::isMainThread()); });
    EXPECT_FALSE(onWorker.get_future().get());
}

TEST(RecursiveLock, ReentrantForItsHolderHeldUntilEveryLockIsUndone) {
    RecursiveLock lock;
    auto otherThreadGetsIt = [&] {
        return std::async(std::launch::async,
                          [&] {
                              std::unique_lock guard(lock, std::try_to_lock);
                              return guard.owns_lock();
                          })
            .get();
    };
    {
        std::lock_guard outer(lock);
        std::lock_guard inner(lock); // would deadlock with a plain mutex
        EXPECT_TRUE(lock.tryLock());
        lock.unlock();
        EXPECT_FALSE(otherThreadGetsIt());
    }
    lock.lock();
    lock.lock();
    lock.unlock();
    EXPECT_FALSE(otherThreadGetsIt());
    lock.unlock();
    EXPECT_TRUE(otherThreadGetsIt());
}
