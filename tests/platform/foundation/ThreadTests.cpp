#include "platform/foundation/Thread.hpp"

#include "platform/foundation/Log.hpp"
#include "platform/foundation/RecursiveLock.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <stdexcept>
#include <thread>

using namespace ns;

TEST(Thread, MainThreadIsTheOneRunningMain) {
    EXPECT_TRUE(Thread::isMainThread());
    std::promise<bool> onWorker;
    Thread::detachNewThread([&] { onWorker.set_value(Thread::isMainThread()); });
    EXPECT_FALSE(onWorker.get_future().get());
    EXPECT_FALSE(std::async(std::launch::async, [] { return Thread::isMainThread(); }).get());
}

TEST(Thread, DetachedThreadOwnsItsCapturesAndSurvivesAnException) {
    LogCapture log;
    auto shared = std::make_shared<int>(5);
    std::promise<int> seen;
    Thread::detachNewThread([shared, &seen] { seen.set_value(*shared); });
    shared.reset();
    EXPECT_EQ(seen.get_future().get(), 5);

    std::promise<void> thrown;
    Thread::detachNewThread([&] {
        struct Signal {
            std::promise<void>& p;
            ~Signal() { p.set_value(); }
        } signal{thrown};
        throw std::runtime_error("worker failed");
    });
    thrown.get_future().wait();
    for (int i = 0; i < 200 && !log.contains("worker failed"); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    EXPECT_TRUE(log.contains("worker failed"));
}

TEST(RecursiveLock, ReentrantForItsHolderExclusiveForOthers) {
    RecursiveLock lock;
    std::lock_guard outer(lock);
    {
        std::lock_guard inner(lock); // would deadlock with a plain mutex
        EXPECT_TRUE(lock.tryLock());
        lock.unlock();
    }
    EXPECT_FALSE(std::async(std::launch::async, [&] { return lock.tryLock(); }).get());
}

TEST(RecursiveLock, ReleasedOnlyAfterEveryLockIsUnlocked) {
    RecursiveLock lock;
    lock.lock();
    lock.lock();
    lock.unlock();
    EXPECT_FALSE(std::async(std::launch::async, [&] { return lock.tryLock(); }).get());
    lock.unlock();
    EXPECT_TRUE(std::async(std::launch::async, [&] {
                    std::unique_lock guard(lock, std::try_to_lock);
                    return guard.owns_lock();
                }).get());
}

TEST(RecursiveLock, GuardsSharedStateAcrossThreads) {
    RecursiveLock lock;
    int counter = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 1000; ++i) {
                std::lock_guard guard(lock);
                std::lock_guard again(lock);
                ++counter;
            }
        });
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(counter, 4000);
}
