#pragma once

#include "platform/foundation/Format.hpp"

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace ns {

// Writes one record to the console log (standard error), always: a time stamp, the process
// name and id, then the message. Safe from any thread; records never interleave.
void logMessage(std::string_view message);

template <class... Args>
void Log(std::string_view format, const Args&... args) {
    logMessage(ns::format(format, args...));
}

// While alive, collects the message of every console record (from any thread). With
// passThrough false, captured records are not written to standard error. Captures nest; the
// newest one receives the records.
class LogCapture {
public:
    explicit LogCapture(bool passThrough = false);
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    std::vector<std::string> messages() const;
    bool contains(std::string_view text) const;
    void clear();

private:
    friend void logMessage(std::string_view message);
    void append(std::string_view message);

    bool m_passThrough;
    LogCapture* m_previous;
    mutable std::mutex m_mutex;
    std::vector<std::string> m_messages;
};

} // namespace ns
