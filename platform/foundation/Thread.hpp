#pragma once

#include <functional>

namespace ns {

// Threads as the platform sees them: a main thread (the one that ran static initialisation and
// main) and detached workers.
class Thread {
public:
    Thread() = delete;

    // Runs `function` on a new detached thread. The function owns whatever it captures for as
    // long as it runs. An exception escaping it is logged and ends only that thread. An empty
    // function starts nothing.
    static void detachNewThread(std::function<void()> function);

    // True on the process's main thread.
    static bool isMainThread();

    // Blocks the calling thread for the given number of seconds (nothing for 0 or less).
    static void sleepForTimeInterval(double seconds);
};

} // namespace ns
