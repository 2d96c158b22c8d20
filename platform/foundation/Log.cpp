#include "platform/foundation/Log.hpp"

#include <chrono>
#include <ctime>
#include <fstream>
#include <sys/syscall.h>
#include <unistd.h>

namespace ns {

namespace {

std::mutex& captureMutex() {
    static std::mutex mutex;
    return mutex;
}

LogCapture*& currentCapture() {
    static LogCapture* capture = nullptr;
    return capture;
}

std::string processName() {
    std::ifstream comm("/proc/self/comm");
    std::string name;
    std::getline(comm, name);
    return name.empty() ? "process" : name;
}

std::string timestamp() {
    auto now = std::chrono::system_clock::now();
    std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    auto millis =
        std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
    std::tm local{};
    localtime_r(&seconds, &local);
    char buffer[40];
    size_t length = std::strftime(buffer, sizeof buffer, "%Y-%m-%d %H:%M:%S", &local);
    std::snprintf(buffer + length, sizeof buffer - length, ".%03d", static_cast<int>(millis));
    return buffer;
}

} // namespace

void logMessage(std::string_view message) {
    {
        std::lock_guard lock(captureMutex());
        if (LogCapture* capture = currentCapture()) {
            capture->append(message);
            if (!capture->m_passThrough)
                return;
        }
    }
    static const std::string name = processName();
    std::string line = timestamp() + " " + name + "[" + std::to_string(getpid()) + ":" +
                       std::to_string(static_cast<long>(syscall(SYS_gettid))) + "] ";
    line.append(message);
    line += '\n';
    // One write per record keeps concurrent records from interleaving.
    ssize_t ignored = ::write(STDERR_FILENO, line.data(), line.size());
    (void)ignored;
}

LogCapture::LogCapture(bool passThrough) : m_passThrough(passThrough) {
    std::lock_guard lock(captureMutex());
    m_previous = currentCapture();
    currentCapture() = this;
}

LogCapture::~LogCapture() {
    std::lock_guard lock(captureMutex());
    currentCapture() = m_previous;
}

void LogCapture::append(std::string_view message) {
    std::lock_guard lock(m_mutex);
    m_messages.emplace_back(message);
}

std::vector<std::string> LogCapture::messages() const {
    std::lock_guard lock(m_mutex);
    return m_messages;
}

bool LogCapture::contains(std::string_view text) const {
    std::lock_guard lock(m_mutex);
    for (const auto& message : m_messages)
        if (message.find(text) != std::string::npos)
            return true;
    return false;
}

void LogCapture::clear() {
    std::lock_guard lock(m_mutex);
    m_messages.clear();
}

} // namespace ns
