#pragma once

#include "platform/foundation/Format.hpp"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace corvane::core {

class CoreLogCapture;

// Message flags; a message carries one of them.
constexpr uint64_t CoreLogFlagError = 1;
constexpr uint64_t CoreLogFlagWarning = 2;
constexpr uint64_t CoreLogFlagInfo = 4;
constexpr uint64_t CoreLogFlagDebug = 8;
constexpr uint64_t CoreLogFlagVerbose = 16;

// Levels: each lets its own flag and every more severe one through.
constexpr uint64_t CoreLogLevelOff = 0;
constexpr uint64_t CoreLogLevelError = CoreLogFlagError;
constexpr uint64_t CoreLogLevelWarning = CoreLogLevelError | CoreLogFlagWarning;
constexpr uint64_t CoreLogLevelInfo = CoreLogLevelWarning | CoreLogFlagInfo;
constexpr uint64_t CoreLogLevelDebug = CoreLogLevelInfo | CoreLogFlagDebug;
constexpr uint64_t CoreLogLevelVerbose = CoreLogLevelDebug | CoreLogFlagVerbose;

// The process-wide level: a message is written only when its flag is set here.
inline std::atomic<uint64_t> coreLogLevel{CoreLogLevelWarning};

// One written message.
struct CoreLogRecord {
    uint64_t flag = 0;
    std::string file;     // a logical source name, "Objects/CVUIStyler"
    std::string function; // the logging operation, "style:as:"
    uint64_t line = 0;
    int64_t context = 0;
    std::optional<std::string> tag;
    std::string message;
    std::chrono::system_clock::time_point timestamp;
};

// The levelled log. Errors are written before write() returns, after everything logged before
// them; every other flag is handed to one writer thread that writes records in the order they
// were logged. Records go to standard error (or to a CoreLogCapture). Safe from any thread.
class CoreLog {
public:
    CoreLog() = delete;

    static bool isEnabled(uint64_t flag) {
        return (coreLogLevel.load(std::memory_order_relaxed) & flag) != 0;
    }

    // Writes an already formatted message, without looking at the level (callers check it so that
    // a message that is not written is never formatted).
    static void write(uint64_t flag, std::string_view file, std::string_view function, uint64_t line,
                      std::string message);

    // Formats and writes the message when the level lets its flag through.
    template <class... Args>
    static void log(uint64_t flag, std::string_view file, std::string_view function, uint64_t line,
                    std::string_view format, const Args&... args) {
        if (isEnabled(flag))
            write(flag, file, function, line, ns::format(format, args...));
    }

    // Returns once every record logged before the call has been written.
    static void flush();

    // "2026-11-22 10:00:00.000 [W] Objects/CVUIStyler:style:as::123 message"
    static std::string formatRecord(const CoreLogRecord& record);

private:
    friend class CoreLogCapture;
    // Makes `capture` the receiver of records; returns the one it replaces.
    static CoreLogCapture* installCapture(CoreLogCapture* capture);
    // Puts `previous` back when `capture` is the current receiver.
    static void removeCapture(CoreLogCapture* capture, CoreLogCapture* previous);
};

} // namespace corvane::core

// One-line logging with the caller's line: CORE_LOG_WARN("Objects/CVUIStyler", "style:as:",
// "Invalid attribute %@", statement). The arguments are not formatted when the level is off.
#define CORE_LOG_AT(flag, file, function, ...)                                                               \
    do {                                                                                                     \
        if (::corvane::core::CoreLog::isEnabled(flag))                                                       \
            ::corvane::core::CoreLog::write(flag, file, function, __LINE__, ::ns::format(__VA_ARGS__));      \
    } while (0)
#define CORE_LOG_ERROR(file, function, ...)                                                                  \
    CORE_LOG_AT(::corvane::core::CoreLogFlagError, file, function, __VA_ARGS__)
#define CORE_LOG_WARN(file, function, ...)                                                                   \
    CORE_LOG_AT(::corvane::core::CoreLogFlagWarning, file, function, __VA_ARGS__)
#define CORE_LOG_INFO(file, function, ...)                                                                   \
    CORE_LOG_AT(::corvane::core::CoreLogFlagInfo, file, function, __VA_ARGS__)
#define CORE_LOG_DEBUG(file, function, ...)                                                                  \
    CORE_LOG_AT(::corvane::core::CoreLogFlagDebug, file, function, __VA_ARGS__)
#define CORE_LOG_VERBOSE(file, function, ...)                                                                \
    CORE_LOG_AT(::corvane::core::CoreLogFlagVerbose, file, function, __VA_ARGS__)
