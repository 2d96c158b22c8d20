#include "kit/Objects/CVBlockQueue.hpp"

#include "core/CoreLog.hpp"
#include "platform/foundation/Exception.hpp"
#include "platform/foundation/Log.hpp"
#include "platform/views/Alert.hpp"
#include "platform/views/Application.hpp"
#include "platform/views/Window.hpp"

namespace corvane {

ns::Ref<CVBlockQueue> CVBlockQueue::make(const std::vector<CVBlockQueueBlock>& blocks) {
    auto queue = make();
    queue->enqueueBlocks(blocks);
    return queue;
}

ns::Ref<CVBlockQueue> CVBlockQueue::queueWithBlocks(const std::vector<CVBlockQueueBlock>& blocks) {
    return make(blocks);
}

void CVBlockQueue::invokeQueue(const std::vector<CVBlockQueueBlock>& blocks) {
    make(blocks)->invoke();
}

void CVBlockQueue::enqueueBlocks(const std::vector<CVBlockQueueBlock>& blocks) {
    m_store.reserve(m_store.size() + blocks.size());
    for (const auto& block : blocks)
        enqueueBlock(block);
}

void CVBlockQueue::enqueueBlock(CVBlockQueueBlock block) {
    m_store.push_back(std::move(block));
}

void CVBlockQueue::invoke() {
    int64_t state = m_state;
    if (state == CVBlockQueueStateWait) {
        m_defaultState = CVBlockQueueStateContinue;
        m_retainCycle = self<CVBlockQueue>();
        m_cursor = 0;
        runQueue();
    } else if (state == CVBlockQueueStateContinue || state == CVBlockQueueStateAbort) {
        ns::Log("invocation failed for state : %lu", static_cast<uint64_t>(state));
    }
}

void CVBlockQueue::runQueue() {
    // Keep the queue alive until the loop returns, even if a step drops the last reference.
    ns::Ref<CVBlockQueue> keepAlive = self<CVBlockQueue>();
    while (true) {
        if (m_cursor >= m_store.size()) {
            terminate();
            return;
        }
        m_state = m_defaultState;
        CVBlockQueueBlock step = m_store[m_cursor];
        m_inStep = true;
        if (step)
            step(*this);
        m_inStep = false;
        m_cursor = m_cursor + 1;
        if (m_cursor >= m_store.size() || m_state == CVBlockQueueStateAbort) {
            terminate();
            return;
        }
        if (m_state == CVBlockQueueStateWait)
            return;
    }
}

void CVBlockQueue::continueQueue() {
    int64_t state = m_state;
    if (state == CVBlockQueueStateWait && m_inStep) {
        // The step that asked to wait has not returned yet: running the loop from here would run
        // that same step again inside itself. Cancel the wait instead; the loop goes on when the
        // step returns.
        m_state = CVBlockQueueStateContinue;
    } else if (state == CVBlockQueueStateWait) {
        runQueue();
    } else if (state == CVBlockQueueStateContinue || state == CVBlockQueueStateAbort) {
        CORE_LOG_ERROR("Objects/CVBlockQueue", "continue",
                       "continue called but wait state is not set. This is a programming error.");
    }
}

void CVBlockQueue::abort() {
    m_state = CVBlockQueueStateAbort;
    terminate();
}

void CVBlockQueue::waitOnAlert(const ns::Ref<ns::Alert>& alert, const ns::Ref<ns::Window>& window,
                               CVBlockQueueCompletionHandler completionHandler) {
    ns::Ref<ns::Window> host = window ? window : ns::Application::shared()->keyWindow();
    if (!host) {
        int64_t response = alert->runModal();
        if (completionHandler)
            completionHandler(response);
        return;
    }
    suspend();
    alert->beginSheetModalForWindow(host, [alert, completionHandler](int64_t response) {
        alert->window()->close();
        if (completionHandler)
            completionHandler(response);
    });
}

void CVBlockQueue::waitOnSender(CVQueueSender& sender, const std::function<void()>& perform) {
    if (!perform)
        ns::Exception::raise("Invalid queue request.", "Perform blk is nil.");
    ns::Ref<CVBlockQueue> queue = self<CVBlockQueue>();
    if (!sender.onContinue())
        sender.setOnContinue([queue] {
            queue->continueQueue();
            return true;
        });
    if (!sender.onCancel())
        sender.setOnCancel([queue] {
            queue->abort();
            return false;
        });
    suspend();
    perform();
}

} // namespace corvane
