#include "kit/Categories/NSAlert+Corvane.hpp"
#include "kit/Objects/CVBlockQueue.hpp"

#include "core/CoreLog.hpp"
#include "core/CoreLogCapture.hpp"
#include "platform/foundation/Exception.hpp"
#include "platform/foundation/Log.hpp"
#include "platform/views/Application.hpp"
#include "platform/views/Button.hpp"

#include <gtest/gtest.h>

using corvane::CVBlockQueue;

namespace {

// A sender as an application would write one: it keeps the two callbacks and calls one of them
// when its work is confirmed or cancelled.
class Sheet : public corvane::CVQueueSender {
public:
    corvane::CVSenderCallback onContinue() const override { return m_continue; }
    void setOnContinue(corvane::CVSenderCallback callback) override { m_continue = std::move(callback); }
    corvane::CVSenderCallback onCancel() const override { return m_cancel; }
    void setOnCancel(corvane::CVSenderCallback callback) override { m_cancel = std::move(callback); }
    bool confirm() { return m_continue(); }
    bool cancel() { return m_cancel(); }

private:
    corvane::CVSenderCallback m_continue, m_cancel;
};

corvane::CVBlockQueueBlock record(std::vector<std::string>& log, std::string name) {
    return [&log, name](CVBlockQueue&) {
        log.push_back(name);
    };
}

} // namespace

TEST(BlockQueue, ThreeStepsRunInOrderAndTheQueueLetsGoOfItself) {
    std::vector<std::string> log;
    std::weak_ptr<CVBlockQueue> watch;
    {
        auto queue =
            CVBlockQueue::queueWithBlocks({record(log, "one"), record(log, "two"), record(log, "three")});
        watch = queue;
        queue->invoke();
        EXPECT_EQ(queue->retainCycle(), nullptr);
        EXPECT_EQ(queue->cursor(), 3u);
        ns::LogCapture console;
        queue->invoke(); // a queue runs once
        EXPECT_EQ(console.messages(), (std::vector<std::string>{"invocation failed for state : 0"}));
    }
    EXPECT_EQ(log, (std::vector<std::string>{"one", "two", "three"}));
    EXPECT_TRUE(watch.expired());
}

TEST(BlockQueue, AWaitingRunKeepsItselfAliveUntilContinuedThenEnds) {
    std::vector<std::string> log;
    std::weak_ptr<CVBlockQueue> watch;
    {
        auto queue = CVBlockQueue::make();
        queue->enqueueBlock([&](CVBlockQueue& q) {
            log.push_back("ask");
            q.suspend();
        });
        queue->enqueueBlock([&](CVBlockQueue& q) {
            log.push_back("answer");
            q.enqueueBlock(record(log, "appended"));
        });
        queue->enqueueBlock(record(log, "last"));
        watch = queue;
        queue->invoke();
    }
    ASSERT_FALSE(watch.expired()); // nothing but the run holds it
    auto queue = watch.lock();
    EXPECT_EQ(queue->cursor(), 1u);
    EXPECT_EQ(queue->state(), corvane::CVBlockQueueStateWait);
    queue->continueQueue();
    EXPECT_EQ(log, (std::vector<std::string>{"ask", "answer", "last", "appended"}));
    EXPECT_EQ(queue->retainCycle(), nullptr);
    queue.reset();
    EXPECT_TRUE(watch.expired());
}

TEST(BlockQueue, AbortEndsTheRunAndMisuseIsReported) {
    corvane::core::CoreLogCapture capture;
    std::vector<std::string> log;
    auto queue = CVBlockQueue::queueWithBlocks({[&](CVBlockQueue& q) {
                                                    log.push_back("first");
                                                    q.abort();
                                                },
                                                record(log, "never")});
    queue->invoke();
    EXPECT_EQ(log, (std::vector<std::string>{"first"}));
    EXPECT_EQ(queue->state(), corvane::CVBlockQueueStateAbort);
    queue->continueQueue();
    corvane::core::CoreLog::flush();
    auto records = capture.records();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].message, "continue called but wait state is not set. This is a programming error.");
    EXPECT_EQ(records[0].flag, corvane::core::CoreLogFlagError);
    EXPECT_EQ(records[0].file, "Objects/CVBlockQueue");
    EXPECT_EQ(records[0].function, "continue");
    ns::LogCapture console;
    queue->invoke();
    EXPECT_EQ(console.messages(), (std::vector<std::string>{"invocation failed for state : 2"}));
}

TEST(BlockQueue, CursorAndDefaultStateSteerTheRun) {
    std::vector<std::string> log;
    int passes = 0;
    auto queue = CVBlockQueue::queueWithBlocks({record(log, "a"),
                                                [&](CVBlockQueue& q) {
                                                    log.push_back("b");
                                                    if (++passes == 1)
                                                        q.setCursor(0); // step 1 runs next, not step 0
                                                },
                                                [&](CVBlockQueue& q) {
                                                    log.push_back("c");
                                                    q.setDefaultState(corvane::CVBlockQueueStateWait);
                                                },
                                                record(log, "d"), record(log, "e")});
    queue->invoke();
    EXPECT_EQ(log, (std::vector<std::string>{"a", "b", "b", "c", "d"}));
    queue->continueQueue(); // the last step asked to wait too, but no step is left: the run ends
    EXPECT_EQ(log.back(), "e");
    EXPECT_EQ(queue->retainCycle(), nullptr);

    auto empty = CVBlockQueue::make();
    empty->invoke();
    EXPECT_EQ(empty->state(), corvane::CVBlockQueueStateWait);
    EXPECT_EQ(empty->retainCycle(), nullptr);
}

TEST(BlockQueue, WaitingOnASheetResumesFromItsHandler) {
    auto window = ns::Window::make({0, 0, 400, 300});
    std::vector<std::string> log;
    ns::Ref<ns::Alert> alert;
    CVBlockQueue::invokeQueue({[&](CVBlockQueue& q) {
                                   alert = corvane::cv_okCancelAlertWithMessage("Close the pay run?",
                                                                                std::nullopt);
                                   q.waitOnAlert(alert, window, [&, queue = &q](int64_t response) {
                                       log.push_back("answered " + std::to_string(response));
                                       response == 1000 ? queue->continueQueue() : queue->abort();
                                   });
                               },
                               record(log, "closed")});
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(window->attachedSheet(), alert->window());
    alert->buttons()[0]->performClick();
    EXPECT_EQ(log, (std::vector<std::string>{"answered 1000", "closed"}));
    EXPECT_FALSE(alert->window()->isVisible());
}

TEST(BlockQueue, WithoutAWindowTheAlertRunsModallyInsideTheStep) {
    ns::Application::shared()->setKeyWindow(nullptr);
    ns::Alert::setModalResponder([](ns::Alert&) { return ns::AlertSecondButtonReturn; });
    std::vector<std::string> log;
    auto queue = CVBlockQueue::queueWithBlocks(
        {[&](CVBlockQueue& q) {
             q.waitOnAlert(corvane::cv_yesNoAlertWithMessage("Sure?", ""), nullptr, [&](int64_t response) {
                 log.push_back(std::to_string(response));
                 q.abort();
             });
         },
         record(log, "never")});
    queue->invoke();
    ns::Alert::setModalResponder(nullptr);
    EXPECT_EQ(log, (std::vector<std::string>{"1001"}));
}

TEST(BlockQueue, WaitingOnASenderThatConfirmsOrCancels) {
    for (bool confirm : {true, false}) {
        std::vector<std::string> log;
        Sheet sheet;
        bool performed = false;
        CVBlockQueue::invokeQueue({[&](CVBlockQueue& q) { q.waitOnSender(sheet, [&] { performed = true; }); },
                                   record(log, "after")});
        EXPECT_TRUE(performed);
        EXPECT_TRUE(log.empty());
        EXPECT_EQ(confirm ? sheet.confirm() : sheet.cancel(), confirm);
        EXPECT_EQ(log, confirm ? std::vector<std::string>{"after"} : std::vector<std::string>{});
    }
}

TEST(BlockQueue, ASendersOwnCallbackStaysAndANilPerformIsRefused) {
    Sheet sheet;
    bool own = false;
    sheet.setOnContinue([&] { return own = true; });
    auto queue = CVBlockQueue::make();
    try {
        queue->waitOnSender(sheet, nullptr);
        FAIL() << "no exception";
    } catch (const ns::Exception& e) {
        EXPECT_EQ(e.name(), "Invalid queue request.");
        EXPECT_EQ(e.reason(), "Perform blk is nil.");
    }
    EXPECT_EQ(queue->state(), corvane::CVBlockQueueStateWait);
    EXPECT_FALSE(sheet.onCancel());
    queue->waitOnSender(sheet, [] {});
    sheet.confirm();
    EXPECT_TRUE(own);
    EXPECT_TRUE(sheet.onCancel());
}
