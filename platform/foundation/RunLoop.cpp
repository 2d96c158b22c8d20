#include "platform/foundation/RunLoop.hpp"

#include "platform/foundation/Log.hpp"
#include "platform/foundation/Thread.hpp"

#include <algorithm>
#include <exception>
#include <future>

namespace ns {

namespace {

// How long runUntil sleeps at most before looking at its predicate again: the predicate may be
// made true by another thread without posting anything.
constexpr std::chrono::milliseconds PollInterval{5};

void runGuarded(const std::function<void()>& work) {
    try {
        work();
    } catch (const std::exception& e) {
        Log("*** Exception in main-queue work: %s", e.what());
    } catch (...) {
        Log("*** Exception of unknown type in main-queue work");
    }
}

} // namespace

RunLoop& RunLoop::main() {
    // Never destroyed: work queued from other threads may still arrive while the process exits.
    static RunLoop* loop = new RunLoop;
    return *loop;
}

void RunLoop::perform(std::function<void()> work) {
    if (!work)
        return;
    {
        std::lock_guard lock(m_mutex);
        m_work.push_back(std::move(work));
    }
    m_wakeup.notify_all();
}

size_t RunLoop::runOnce() {
    std::deque<std::function<void()>> batch;
    size_t events = 0;
    {
        std::lock_guard lock(m_mutex);
        batch.swap(m_work);
        if (m_dispatcher)
            events = m_events.size();
    }
    size_t handled = 0;
    while (!batch.empty()) {
        std::function<void()> work = std::move(batch.front());
        batch.pop_front();
        runGuarded(work);
        ++handled;
    }
    // A work item may have removed the dispatcher or taken the events itself.
    for (; events > 0 && hasDispatcher(); --events) {
        Ref<Object> event = nextEvent();
        if (!event)
            break;
        sendEvent(event);
        ++handled;
    }
    return handled;
}

size_t RunLoop::drain() {
    size_t total = 0;
    while (size_t handled = runOnce())
        total += handled;
    return total;
}

bool RunLoop::runUntil(const std::function<bool()>& predicate, std::chrono::milliseconds timeout) {
    if (!predicate)
        return false;
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (!predicate()) {
        auto now = std::chrono::steady_clock::now();
        if (now >= deadline)
            return predicate();
        if (runOnce() > 0)
            continue;
        std::unique_lock lock(m_mutex);
        auto wake = std::min(deadline, now + PollInterval);
        m_wakeup.wait_until(lock, wake,
                            [&] { return !m_work.empty() || (m_dispatcher && !m_events.empty()); });
    }
    return true;
}

size_t RunLoop::pendingWorkCount() const {
    std::lock_guard lock(m_mutex);
    return m_work.size();
}

void RunLoop::postEvent(Ref<Object> event) {
    if (!event)
        return;
    {
        std::lock_guard lock(m_mutex);
        m_events.push_back(std::move(event));
    }
    m_wakeup.notify_all();
}

Ref<Object> RunLoop::nextEvent() {
    std::lock_guard lock(m_mutex);
    if (m_events.empty())
        return nullptr;
    Ref<Object> event = std::move(m_events.front());
    m_events.pop_front();
    return event;
}

bool RunLoop::sendEvent(const Ref<Object>& event) {
    EventDispatcher dispatcher;
    {
        std::lock_guard lock(m_mutex);
        dispatcher = m_dispatcher;
    }
    if (!event || !dispatcher)
        return false;
    dispatcher(event);
    return true;
}

void RunLoop::setEventDispatcher(EventDispatcher dispatcher) {
    {
        std::lock_guard lock(m_mutex);
        m_dispatcher = std::move(dispatcher);
    }
    m_wakeup.notify_all();
}

size_t RunLoop::pendingEventCount() const {
    std::lock_guard lock(m_mutex);
    return m_events.size();
}

bool RunLoop::hasDispatcher() const {
    std::lock_guard lock(m_mutex);
    return static_cast<bool>(m_dispatcher);
}

void mainQueueAsync(std::function<void()> work) {
    RunLoop::main().perform(std::move(work));
}

void performOnMainThreadAndWait(const std::function<void()>& work) {
    if (!work)
        return;
    if (Thread::isMainThread()) {
        work();
        return;
    }
    auto task = std::make_shared<std::packaged_task<void()>>(work);
    std::future<void> done = task->get_future();
    RunLoop::main().perform([task] { (*task)(); });
    done.get();
}

} // namespace ns
