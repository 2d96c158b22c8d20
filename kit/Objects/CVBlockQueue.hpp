#pragma once

#include "platform/foundation/Object.hpp"

#include <cstdint>
#include <functional>
#include <vector>

namespace ns {
class Alert;
class Window;
} // namespace ns

namespace corvane {

class CVBlockQueue;

// One step of a flow; it receives the queue that runs it.
using CVBlockQueueBlock = std::function<void(CVBlockQueue&)>;
// What an alert's sheet or modal run answers.
using CVBlockQueueCompletionHandler = std::function<void(int64_t response)>;
// A sender's confirm and cancel callbacks.
using CVSenderCallback = std::function<bool()>;

constexpr int64_t CVBlockQueueStateContinue = 0;
constexpr int64_t CVBlockQueueStateWait = 1;
constexpr int64_t CVBlockQueueStateAbort = 2;

// What waitOnSender needs of a sender: two callbacks that it keeps and calls when its work is
// confirmed (onContinue) or cancelled (onCancel).
class CVQueueSender {
public:
    virtual ~CVQueueSender() = default;
    virtual CVSenderCallback onContinue() const = 0;
    virtual void setOnContinue(CVSenderCallback callback) = 0;
    virtual CVSenderCallback onCancel() const = 0;
    virtual void setOnCancel(CVSenderCallback callback) = 0;
};

// Runs a user flow as an ordered list of steps. A step either lets the run go on, or puts the
// queue in the wait state and returns; a later event then calls continueQueue() or abort().
// While a run is under way the queue holds itself, so the caller need not keep it.
//
// Everything runs on the thread that calls invoke or continueQueue; there is no locking.
class CVBlockQueue : public ns::Object {
public:
    static ns::Ref<CVBlockQueue> make() { return ns::create<CVBlockQueue>(); }
    // A new queue holding the steps, not started (initWithBlocks:).
    static ns::Ref<CVBlockQueue> make(const std::vector<CVBlockQueueBlock>& blocks);
    static ns::Ref<CVBlockQueue> queueWithBlocks(const std::vector<CVBlockQueueBlock>& blocks);
    // Makes a queue with the steps and starts it; the running queue keeps itself alive.
    static void invokeQueue(const std::vector<CVBlockQueueBlock>& blocks);

    void enqueueBlocks(const std::vector<CVBlockQueueBlock>& blocks);
    // Appends a copy of the step; allowed during a run too (it runs in its turn).
    void enqueueBlock(CVBlockQueueBlock block);

    // Starts a run from the first step; only in the wait (ready) state. In state 0 or 2 it writes
    // "invocation failed for state : %lu" to the console log; other states do nothing.
    void invoke();
    // The run loop, used by invoke and continueQueue.
    void runQueue();
    // Resumes a waiting run from the cursor. Outside the wait state it logs an error.
    // (The platform calls this operation "continue", a reserved word here.)
    void continueQueue();
    void suspend() { m_state = CVBlockQueueStateWait; }
    void abort();
    // Drops the self-reference; state and cursor stay as they are.
    void terminate() { m_retainCycle.reset(); }

    // Shows the alert as a sheet on the window (the key window when nil) and waits; with no
    // window at all it runs the alert modally and calls the handler at once, without waiting.
    void waitOnAlert(const ns::Ref<ns::Alert>& alert, const ns::Ref<ns::Window>& window,
                     CVBlockQueueCompletionHandler completionHandler);
    // Installs continue and cancel callbacks on the sender where it has none, waits, and calls
    // perform. A nil perform raises "Invalid queue request." / "Perform blk is nil.".
    void waitOnSender(CVQueueSender& sender, const std::function<void()>& perform);

    const std::vector<CVBlockQueueBlock>& store() const { return m_store; }
    void setStore(std::vector<CVBlockQueueBlock> store) { m_store = std::move(store); }
    const ns::Ref<ns::Object>& retainCycle() const { return m_retainCycle; }
    void setRetainCycle(ns::Ref<ns::Object> object) { m_retainCycle = std::move(object); }
    uint64_t cursor() const { return m_cursor; }
    void setCursor(uint64_t cursor) { m_cursor = cursor; }
    int64_t state() const { return m_state; }
    void setState(int64_t state) { m_state = state; }
    int64_t defaultState() const { return m_defaultState; }
    void setDefaultState(int64_t state) { m_defaultState = state; }

private:
    std::vector<CVBlockQueueBlock> m_store;
    ns::Ref<ns::Object> m_retainCycle;
    uint64_t m_cursor = 0;
    int64_t m_state = CVBlockQueueStateWait;
    int64_t m_defaultState = CVBlockQueueStateContinue;
    bool m_inStep = false;
};

} // namespace corvane
