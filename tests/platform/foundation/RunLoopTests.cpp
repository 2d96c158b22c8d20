#include "platform/foundation/RunLoop.hpp"

#include "platform/foundation/Log.hpp"
#include "platform/foundation/Thread.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <map>
#include <stdexcept>
#include <thread>

using namespace ns;
using namespace std::chrono_literals;

namespace {

// Leaves the shared main loop as it found it: no work, no events, no dispatcher.
class RunLoopTest : public ::testing::Test {
protected:
    void TearDown() override {
        RunLoop::main().setEventDispatcher({});
        RunLoop::main().drain();
        while (RunLoop::main().nextEvent()) {
        }
    }
};

} // namespace

TEST_F(RunLoopTest, WorkFromManyThreadsArrivesCompleteAndInOrderPerThread) {
    constexpr int Threads = 4;
    constexpr int PerThread = 250;
    std::map<int, std::vector<int>> seen; // touched only on the main thread
    std::atomic<bool> offMain{false};
    std::vector<std::thread> posters;
    for (int t = 0; t < Threads; ++t)
        posters.emplace_back([&, t] {
            for (int i = 0; i < PerThread; ++i)
                mainQueueAsync([&, t, i] {
                    if (!Thread::isMainThread())
                        offMain = true;
                    seen[t].push_back(i);
                });
        });
    auto total = [&] {
        size_t n = 0;
        for (auto& [t, list] : seen)
            n += list.size();
        return n;
    };
    EXPECT_TRUE(RunLoop::main().runUntil([&] { return total() == Threads * PerThread; }, 10s));
    for (auto& poster : posters)
        poster.join();
    EXPECT_FALSE(offMain);
    for (int t = 0; t < Threads; ++t) {
        ASSERT_EQ(seen[t].size(), size_t(PerThread));
        for (int i = 0; i < PerThread; ++i)
            ASSERT_EQ(seen[t][i], i) << "thread " << t;
    }
}

TEST_F(RunLoopTest, PerformAndWaitFromAWorkerRunsOnTheMainThread) {
    std::atomic<bool> workerDone{false};
    bool ranOnMain = false;
    bool finishedBeforeReturn = false;
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
    EXPECT_TRUE(RunLoop::main().runUntil([&] { return workerDone.load(); }, 10s));
    worker.join();
    EXPECT_TRUE(ranOnMain);
    EXPECT_TRUE(finishedBeforeReturn);
}

TEST_F(RunLoopTest, PerformAndWaitOnTheMainThreadRunsDirectlyAndPassesExceptionsBack) {
    int calls = 0;
    performOnMainThreadAndWait([&] { ++calls; });
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(RunLoop::main().pendingWorkCount(), 0u);

    std::atomic<bool> caught{false};
    std::thread worker([&] {
        try {
            performOnMainThreadAndWait([] { throw std::runtime_error("boom"); });
        } catch (const std::runtime_error&) {
            caught = true;
        }
    });
    EXPECT_TRUE(RunLoop::main().runUntil([&] { return caught.load(); }, 10s));
    worker.join();
}

TEST_F(RunLoopTest, RunUntilHonoursItsTimeBound) {
    auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(RunLoop::main().runUntil([] { return false; }, 100ms));
    auto elapsed = std::chrono::steady_clock::now() - start;
    EXPECT_GE(elapsed, 100ms);
    EXPECT_LT(elapsed, 2s);

    // A predicate that already holds returns at once without running anything.
    int ran = 0;
    mainQueueAsync([&] { ++ran; });
    EXPECT_TRUE(RunLoop::main().runUntil([] { return true; }, 0ms));
    EXPECT_EQ(ran, 0);
}

TEST_F(RunLoopTest, RunUntilNoticesAConditionSetWithoutPostingWork) {
    std::atomic<bool> flag{false};
    std::thread setter([&] {
        std::this_thread::sleep_for(30ms);
        flag = true;
    });
    auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(RunLoop::main().runUntil([&] { return flag.load(); }, 5s));
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
    EXPECT_EQ(RunLoop::main().runOnce(), 3u);
    EXPECT_EQ(order, (std::vector<std::string>{"a", "b"}));
    EXPECT_TRUE(log.contains("work failed"));
    EXPECT_EQ(RunLoop::main().drain(), 1u);
    EXPECT_EQ(order.back(), "c");
    EXPECT_EQ(RunLoop::main().runOnce(), 0u);
}

TEST_F(RunLoopTest, EventQueueTakesWithoutWaitingAndDispatchesThroughTheDispatcher) {
    RunLoop& loop = RunLoop::main();
    EXPECT_EQ(loop.nextEvent(), nullptr);
    auto first = create<Object>();
    auto second = create<Object>();
    loop.postEvent(first);
    loop.postEvent(nullptr);
    loop.postEvent(second);
    EXPECT_EQ(loop.pendingEventCount(), 2u);
    EXPECT_EQ(loop.nextEvent(), first);
    EXPECT_FALSE(loop.sendEvent(second)); // no dispatcher yet

    std::vector<Ref<Object>> dispatched;
    loop.setEventDispatcher([&](const Ref<Object>& event) { dispatched.push_back(event); });
    EXPECT_TRUE(loop.sendEvent(first));
    // Pumping the loop dispatches what is pending, after the queued work.
    std::vector<std::string> order;
    mainQueueAsync([&] { order.push_back("work"); });
    loop.setEventDispatcher([&](const Ref<Object>& event) {
        dispatched.push_back(event);
        order.push_back("event");
    });
    loop.runOnce();
    EXPECT_EQ(dispatched, (std::vector<Ref<Object>>{first, second}));
    EXPECT_EQ(order, (std::vector<std::string>{"work", "event"}));
    EXPECT_EQ(loop.pendingEventCount(), 0u);
}

TEST_F(RunLoopTest, EventsPostedFromAWorkerWakeAWaitingLoop) {
    RunLoop& loop = RunLoop::main();
    int dispatched = 0;
    loop.setEventDispatcher([&](const Ref<Object>&) { ++dispatched; });
    std::thread poster([] {
        std::this_thread::sleep_for(20ms);
        RunLoop::main().postEvent(create<Object>());
    });
    EXPECT_TRUE(loop.runUntil([&] { return dispatched == 1; }, 5s));
    poster.join();
}
