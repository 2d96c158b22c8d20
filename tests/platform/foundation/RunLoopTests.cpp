#include "platform/foundation/RunLoop.hpp"

#include "platform/foundation/Log.hpp"
#include "platform/foundation/Thread.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>

using namespace ns;
using namespace std::chrono_literals;

namespace {

// Leaves the shared main loop as it found it: no work, no events, no dispatcher.
class RunLoopTest : public ::testing::Test {
protected:
    void TearDown() override {
        loop.setEventDispatcher({});
        loop.drain();
        while (loop.nextEvent()) {
        }
    }
    RunLoop& loop = RunLoop::main();
};

} // namespace

TEST_F(RunLoopTest, WorkFromManyThreadsRunsOnTheMainThreadAllOfItInOrderPerThread) {
    constexpr int Threads = 4, PerThread = 250;
    std::vector<std::vector<int>> seen(Threads); // touched only on the main thread
    int total = 0;
    std::atomic<bool> offMain{false};
    std::vector<std::thread> posters;
    for (int t = 0; t < Threads; ++t)
        posters.emplace_back([&, t] {
            for (int i = 0; i < PerThread; ++i)
                mainQueueAsync([&, t, i] {
                    offMain = offMain || !Thread::isMainThread();
                    seen[t].push_back(i);
                    ++total;
                });
        });
    EXPECT_TRUE(loop.runUntil([&] { return total == Threads * PerThread; }, 10s));
    for (auto& poster : posters)
        poster.join();
    EXPECT_FALSE(offMain);
    for (int t = 0; t < Threads; ++t)
        for (int i = 0; i < PerThread; ++i)
            ASSERT_EQ(seen[t][i], i) << "thread " << t;
}

TEST_F(RunLoopTest, PerformAndWaitRunsOnTheMainThreadAndBlocksTheWorker) {
    int direct = 0;
    performOnMainThreadAndWait([&] { ++direct; }); // on the main thread: no pumping needed
    EXPECT_EQ(direct, 1);

    std::atomic<bool> workerDone{false};
    bool ranOnMain = false, finishedBeforeReturn = false;
    std::thread worker([&] {
        bool ran = false;
        performOnMainThreadAndWait([&] {
            std::this_thread::sleep_for(20ms); // the worker must still be waiting
            ranOnMain = Thread::isMainThread();
            ran = true;
        });
        finishedBeforeReturn = ran;
        workerDone = true;
    });
    EXPECT_TRUE(loop.runUntil([&] { return workerDone.load(); }, 10s));
    worker.join();
    EXPECT_TRUE(ranOnMain);
    EXPECT_TRUE(finishedBeforeReturn);
}

TEST_F(RunLoopTest, RunUntilHonoursItsTimeBoundAndSeesConditionsSetElsewhere) {
    auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(loop.runUntil([] { return false; }, 100ms));
    auto elapsed = std::chrono::steady_clock::now() - start;
    EXPECT_GE(elapsed, 100ms);
    EXPECT_LT(elapsed, 2s);

    int ran = 0;
    mainQueueAsync([&] { ++ran; });
    EXPECT_TRUE(loop.runUntil([] { return true; }, 0ms));
    EXPECT_EQ(ran, 0) << "a predicate that holds already runs nothing";

    std::atomic<bool> flag{false};
    std::thread setter([&] {
        std::this_thread::sleep_for(30ms);
        flag = true; // no work is posted to wake the loop
    });
    start = std::chrono::steady_clock::now();
    EXPECT_TRUE(loop.runUntil([&] { return flag.load(); }, 5s));
    EXPECT_LT(std::chrono::steady_clock::now() - start, 2s);
    setter.join();
}

TEST_F(RunLoopTest, RunOnceRunsOnlyWhatWasQueuedWhenCalledAndSurvivesExceptions) {
    std::vector<std::string> order;
    mainQueueAsync([&] {
        order.push_back("a");
        mainQueueAsync([&] { order.push_back("c"); });
    });
    mainQueueAsync([] { throw std::runtime_error("work failed"); });
    mainQueueAsync([&] { order.push_back("b"); });
    LogCapture log;
    EXPECT_EQ(loop.runOnce(), 3u);
    EXPECT_EQ(order, (std::vector<std::string>{"a", "b"}));
    EXPECT_TRUE(log.contains("work failed"));
    EXPECT_EQ(loop.drain(), 1u);
    EXPECT_EQ(order.back(), "c");
}

TEST_F(RunLoopTest, EventsAreTakenWithoutWaitingAndDispatchedThroughTheDispatcher) {
    EXPECT_EQ(loop.nextEvent(), nullptr);
    auto first = create<Object>();
    auto second = create<Object>();
    loop.postEvent(first);
    loop.postEvent(nullptr);
    loop.postEvent(second);
    EXPECT_EQ(loop.pendingEventCount(), 2u);
    EXPECT_EQ(loop.nextEvent(), first);
    EXPECT_FALSE(loop.sendEvent(first)) << "no dispatcher yet";

    std::vector<std::string> order;
    std::vector<Ref<Object>> dispatched;
    loop.setEventDispatcher([&](const Ref<Object>& event) {
        dispatched.push_back(event);
        order.push_back("event");
    });
    EXPECT_TRUE(loop.sendEvent(first));
    mainQueueAsync([&] { order.push_back("work"); });
    loop.runOnce(); // pending events follow the queued work
    EXPECT_EQ(dispatched, (std::vector<Ref<Object>>{first, second}));
    EXPECT_EQ(order, (std::vector<std::string>{"event", "work", "event"}));
}
