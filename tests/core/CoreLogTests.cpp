#include "core/CoreLog.hpp"

#include "core/CoreLogCapture.hpp"
#include "platform/foundation/Object.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <regex>
#include <thread>

using namespace corvane::core;

namespace {

class LevelScope {
public:
    explicit LevelScope(uint64_t level) : m_old(coreLogLevel.exchange(level)) {}
    ~LevelScope() { coreLogLevel = m_old; }

private:
    uint64_t m_old;
};

// Counts how often a message naming it is formatted.
class Counted : public ns::Object {
public:
    std::string description() const override {
        ++described;
        return "counted";
    }
    mutable std::atomic<int> described{0};
};

std::vector<std::string> messagesAfterFlush(const CoreLogCapture& capture) {
    CoreLog::flush();
    return capture.messages();
}

} // namespace

TEST(CoreLog, LevelGatesEachFlagAndSkipsFormatting) {
    EXPECT_EQ(coreLogLevel.load(), CoreLogFlagError | CoreLogFlagWarning) << "the default level";
    CoreLogCapture capture;
    auto counted = ns::create<Counted>();
    {
        LevelScope level(CoreLogLevelWarning);
        CORE_LOG_ERROR("F", "f", "error %@", counted);
        CORE_LOG_WARN("F", "f", "warning %@", counted);
        CORE_LOG_INFO("F", "f", "info %@", counted);
        CORE_LOG_DEBUG("F", "f", "debug %@", counted);
        CORE_LOG_VERBOSE("F", "f", "verbose %@", counted);
        EXPECT_EQ(messagesAfterFlush(capture),
                  (std::vector<std::string>{"error counted", "warning counted"}));
        EXPECT_EQ(counted->described.load(), 2);
    }
    LevelScope debugOnly(CoreLogFlagDebug); // flags are bits, not a threshold
    CORE_LOG_ERROR("F", "f", "error");
    CORE_LOG_DEBUG("F", "f", "debug");
    EXPECT_EQ(messagesAfterFlush(capture).back(), "debug");
    EXPECT_EQ(capture.messages().size(), 3u);
}

TEST(CoreLog, RecordCarriesFileFunctionLineAndNoContextOrTag) {
    LevelScope level(CoreLogLevelVerbose);
    CoreLogCapture capture;
    std::string statement = "a:b:c";
    const uint64_t line = __LINE__ + 1;
    CORE_LOG_WARN("Objects/CVUIStyler", "style:as:", "Invalid attribute %@", statement);
    CORE_LOG_ERROR("Views/CVContentView", "stylingDefinitions", "Required arguments missing.");
    CoreLog::flush();
    auto records = capture.records();
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(records[0].flag, CoreLogFlagWarning);
    EXPECT_EQ(records[0].file, "Objects/CVUIStyler");
    EXPECT_EQ(records[0].function, "style:as:");
    EXPECT_EQ(records[0].line, line);
    EXPECT_EQ(records[0].context, 0);
    EXPECT_FALSE(records[0].tag);
    EXPECT_EQ(records[0].message, "Invalid attribute a:b:c");
    EXPECT_EQ(records[1].flag, CoreLogFlagError);
    EXPECT_EQ(records[1].line, line + 1);
}

TEST(CoreLog, AnErrorIsWrittenBeforeItReturnsAfterEverythingBeforeIt) {
    LevelScope level(CoreLogLevelVerbose);
    CoreLogCapture capture;
    for (int i = 0; i < 200; ++i)
        CORE_LOG_INFO("F", "f", "async %d", i);
    CORE_LOG_ERROR("F", "f", "sync");
    auto messages = capture.messages(); // no flush: the error waited for the writer
    ASSERT_EQ(messages.size(), 201u);
    EXPECT_EQ(messages[199], "async 199");
    EXPECT_EQ(messages.back(), "sync");
    CORE_LOG_WARN("F", "f", "after");
    EXPECT_EQ(messagesAfterFlush(capture).back(), "after");
}

TEST(CoreLog, ConcurrentLoggersKeepTheirOwnOrder) {
    LevelScope level(CoreLogLevelVerbose);
    CoreLogCapture capture;
    auto logger = [](int t) {
        for (int i = 0; i < 300; ++i)
            CoreLog::log(i % 50 == 49 ? CoreLogFlagError : CoreLogFlagDebug, "F", "f", 1, "%d %d", t, i);
    };
    std::thread a(logger, 0), b(logger, 1);
    a.join();
    b.join();
    int next[2] = {0, 0};
    for (const auto& message : messagesAfterFlush(capture)) {
        int t = 0, i = 0;
        ASSERT_EQ(std::sscanf(message.c_str(), "%d %d", &t, &i), 2);
        ASSERT_EQ(i, next[t]++) << "thread " << t;
    }
    EXPECT_EQ(next[0] + next[1], 600);
}

TEST(CoreLog, WritesOneFormattedLinePerRecordToStandardError) {
    LevelScope level(CoreLogLevelWarning);
    ::testing::internal::CaptureStderr();
    CORE_LOG_WARN("Objects/CVUIStyler", "style:as:", "Cannot style with %@ (%@)", "width", nullptr);
    {
        CoreLogCapture quiet;
        CORE_LOG_ERROR("F", "f", "captured only");
    }
    CoreLog::flush();
    std::string written = ::testing::internal::GetCapturedStderr();
    EXPECT_TRUE(std::regex_match(
        written, std::regex(R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} \[W\] )"
                            R"(Objects/CVUIStyler:style:as::\d+ Cannot style with width \(\(null\)\)\n)")))
        << written;
    CoreLogRecord record;
    record.flag = CoreLogFlagError;
    EXPECT_NE(CoreLog::formatRecord(record).find(" [E] "), std::string::npos);
}
