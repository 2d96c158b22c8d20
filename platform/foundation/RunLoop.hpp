#pragma once

#include "platform/foundation/Object.hpp"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>

namespace ns {

using EventDispatcher = std::function<void(const Ref<Object>&)>;

// The main thread's run loop: a queue of work posted from any thread (the main queue) and the
// application's event queue. Nothing runs by itself: the main thread runs the queued work when
// it pumps the loop (runOnce, drain, runUntil), always in the order it was posted.
class RunLoop {
public:
    RunLoop() = default;
    RunLoop(const RunLoop&) = delete;
    RunLoop& operator=(const RunLoop&) = delete;

    // The main thread's loop; lives for the whole process.
    static RunLoop& main();

    // --- Main queue ---------------------------------------------------------------------------
    // Queues `work` from any thread; an empty function is ignored.
    void perform(std::function<void()> work);

    // Runs the work queued when it is called (not what that work queues in turn), then dispatches
    // the events pending at that moment when a dispatcher is installed. Returns how many work items
    // and events it handled. An exception escaping a work item is logged; the loop goes on.
    size_t runOnce();
    // Repeats runOnce until nothing is left; returns the total handled. Work that keeps queuing
    // more work keeps this running.
    size_t drain();
    // Pumps the loop on the calling thread until `predicate` holds or `timeout` has passed,
    // waiting for new work when there is none. Returns whether the predicate held; it is checked
    // before anything runs, and once more when time is up.
    bool runUntil(const std::function<bool()>& predicate, std::chrono::milliseconds timeout);
    // Number of queued work items.
    size_t pendingWorkCount() const;

    // --- Application events -------------------------------------------------------------------
    // Queues an event from any thread; nil is ignored.
    void postEvent(Ref<Object> event);
    // Takes the oldest pending event without waiting; nil when there is none.
    Ref<Object> nextEvent();
    // Hands the event to the installed dispatcher. Returns false (and drops the event) when no
    // dispatcher is installed or the event is nil.
    bool sendEvent(const Ref<Object>& event);
    // Installs the function that sendEvent calls; an empty function removes it.
    void setEventDispatcher(EventDispatcher dispatcher);
    size_t pendingEventCount() const;

private:
    bool hasDispatcher() const;

    mutable std::mutex m_mutex;
    std::condition_variable m_wakeup;
    std::deque<std::function<void()>> m_work;
    std::deque<Ref<Object>> m_events;
    EventDispatcher m_dispatcher;
};

// Queues work on the main run loop, from any thread.
void mainQueueAsync(std::function<void()> work);

// Runs `work` on the main thread and returns when it is done: directly when called on the main
// thread, otherwise by queuing it on the main run loop and blocking until the main thread has
// pumped the loop and run it. An exception thrown by the work is rethrown to the caller.
void performOnMainThreadAndWait(const std::function<void()>& work);

} // namespace ns
