#include "core/CoreLog.hpp"

#include "core/CoreLogCapture.hpp"

#include <condition_variable>
#include <cstdlib>
#include <ctime>
#include <deque>
#include <mutex>
#include <thread>
#include <unistd.h>
#include <vector>

namespace corvane::core {

namespace {

// Where records end up: the current capture, standard error, or both.
struct Sink {
    std::mutex mutex;
    CoreLogCapture* capture = nullptr;
};

Sink& sink() {
    static Sink* instance = new Sink; // outlives every thread that may still log at exit
    return *instance;
}

void emit(const CoreLogRecord& record) {
    std::lock_guard lock(sink().mutex);
    if (CoreLogCapture* capture = sink().capture)
        if (!capture->receive(record))
            return;
    std::string line = CoreLog::formatRecord(record);
    line += '\n';
    // One write per record keeps lines whole when other writers share standard error.
    ssize_t ignored = ::write(STDERR_FILENO, line.data(), line.size());
    (void)ignored;
}

// The asynchronous writer: one thread that writes queued records in order. Sequence numbers let
// an error (and flush) wait for exactly the records logged before it.
class Writer {
public:
    static Writer& shared() {
        static Writer* instance = new Writer; // never destroyed; stopped by the exit handler
        return *instance;
    }

    void submit(CoreLogRecord record, bool waitUntilWritten) {
        std::unique_lock lock(m_mutex);
        if (m_stopped) {
            lock.unlock();
            emit(record);
            return;
        }
        ensureThread();
        uint64_t sequence = ++m_queued;
        m_queue.push_back(std::move(record));
        m_wake.notify_one();
        if (waitUntilWritten)
            m_progress.wait(lock, [&] { return m_written >= sequence; });
    }

    void flush() {
        std::unique_lock lock(m_mutex);
        uint64_t target = m_queued;
        m_progress.wait(lock, [&] { return m_written >= target; });
    }

    void stop() {
        std::unique_lock lock(m_mutex);
        if (m_stopped)
            return;
        m_stopping = true;
        m_wake.notify_one();
        std::thread thread = std::move(m_thread);
        lock.unlock();
        if (thread.joinable())
            thread.join();
        lock.lock();
        m_stopped = true;
    }

private:
    // Called with the mutex held.
    void ensureThread() {
        pid_t pid = getpid();
        if (m_thread.joinable() && m_threadPid == pid)
            return;
        if (m_thread.joinable()) {
            // A forked child inherits the thread object but not the thread: start afresh, and let
            // the parent write what it had queued. The stale handle is parked, never joined.
            static auto* orphans = new std::vector<std::thread>;
            orphans->push_back(std::move(m_thread));
            m_queue.clear();
            m_written = m_queued;
        }
        static const bool registered = std::atexit([] { Writer::shared().stop(); }) == 0;
        (void)registered;
        m_threadPid = pid;
        m_thread = std::thread([this] { run(); });
    }

    void run() {
        std::unique_lock lock(m_mutex);
        while (true) {
            m_wake.wait(lock, [&] { return !m_queue.empty() || m_stopping; });
            if (m_queue.empty())
                break;
            std::deque<CoreLogRecord> batch;
            batch.swap(m_queue);
            lock.unlock();
            for (const CoreLogRecord& record : batch)
                emit(record);
            lock.lock();
            m_written += batch.size();
            m_progress.notify_all();
        }
    }

    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::condition_variable m_progress;
    std::deque<CoreLogRecord> m_queue;
    uint64_t m_queued = 0;
    uint64_t m_written = 0;
    std::thread m_thread;
    pid_t m_threadPid = 0;
    bool m_stopping = false;
    bool m_stopped = false;
};

char flagLetter(uint64_t flag) {
    if (flag & CoreLogFlagError)
        return 'E';
    if (flag & CoreLogFlagWarning)
        return 'W';
    if (flag & CoreLogFlagInfo)
        return 'I';
    if (flag & CoreLogFlagDebug)
        return 'D';
    return 'V';
}

} // namespace

void CoreLog::write(uint64_t flag, std::string_view file, std::string_view function, uint64_t line,
                    std::string message) {
    CoreLogRecord record;
    record.flag = flag;
    record.file = std::string(file);
    record.function = std::string(function);
    record.line = line;
    record.message = std::move(message);
    record.timestamp = std::chrono::system_clock::now();
    Writer::shared().submit(std::move(record), (flag & CoreLogFlagError) != 0);
}

void CoreLog::flush() {
    Writer::shared().flush();
}

std::string CoreLog::formatRecord(const CoreLogRecord& record) {
    std::time_t seconds = std::chrono::system_clock::to_time_t(record.timestamp);
    auto millis =
        std::chrono::duration_cast<std::chrono::milliseconds>(record.timestamp.time_since_epoch()).count() %
        1000;
    std::tm local{};
    localtime_r(&seconds, &local);
    char stamp[40];
    size_t length = std::strftime(stamp, sizeof stamp, "%Y-%m-%d %H:%M:%S", &local);
    std::snprintf(stamp + length, sizeof stamp - length, ".%03d", static_cast<int>(millis));
    return ns::format("%s [%c] %@:%@:%lu %@", stamp, flagLetter(record.flag), record.file, record.function,
                      record.line, record.message);
}

CoreLogCapture* CoreLog::installCapture(CoreLogCapture* capture) {
    std::lock_guard lock(sink().mutex);
    CoreLogCapture* previous = sink().capture;
    sink().capture = capture;
    return previous;
}

void CoreLog::removeCapture(CoreLogCapture* capture, CoreLogCapture* previous) {
    std::lock_guard lock(sink().mutex);
    if (sink().capture == capture)
        sink().capture = previous;
}

} // namespace corvane::core
