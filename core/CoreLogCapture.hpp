#pragma once

#include "core/CoreLog.hpp"

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::core {

// While alive, receives every CoreLog record that is written (records logged before it was made
// are written first, elsewhere). With passThrough false the records do not reach standard error.
// Captures nest; the newest receives the records. Reading the records does not flush: call
// CoreLog::flush() first to see asynchronous ones.
class CoreLogCapture {
public:
    explicit CoreLogCapture(bool passThrough = false);
    ~CoreLogCapture();
    CoreLogCapture(const CoreLogCapture&) = delete;
    CoreLogCapture& operator=(const CoreLogCapture&) = delete;

    std::vector<CoreLogRecord> records() const;
    std::vector<std::string> messages() const;
    bool contains(std::string_view text) const;
    void clear();

    // Called by the log for each record; answers whether the record should also go to stderr.
    bool receive(const CoreLogRecord& record);

private:
    bool m_passThrough;
    CoreLogCapture* m_previous = nullptr;
    mutable std::mutex m_mutex;
    std::vector<CoreLogRecord> m_records;
};

} // namespace corvane::core
