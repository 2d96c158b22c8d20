#include "platform/foundation/Thread.hpp"

#include "platform/foundation/Log.hpp"

#include <chrono>
#include <exception>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

namespace ns {

void Thread::detachNewThread(std::function<void()> function) {
    if (!function)
        return;
    std::thread([function = std::move(function)] {
        try {
            function();
        } catch (const std::exception& e) {
            Log("*** Terminating thread due to uncaught exception: %s", e.what());
        } catch (...) {
            Log("*** Terminating thread due to uncaught exception of unknown type");
        }
    }).detach();
}

bool Thread::isMainThread() {
    // On Linux the main thread's id is the process id, whichever thread asks and whenever.
    return static_cast<pid_t>(syscall(SYS_gettid)) == getpid();
}

void Thread::sleepForTimeInterval(double seconds) {
    if (seconds > 0)
        std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

} // namespace ns
