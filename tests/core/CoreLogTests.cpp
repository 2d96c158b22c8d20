#include "core/CoreLog.hpp"

#include "core/CoreLogCapture.hpp"
#include "platform/foundation/Object.hpp"

#include <gmock/gmock.h>
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

// Counts how often it is asked to describe itself, i.e. how often a message naming it is formatted.
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

TEST(CoreLog, DefaultLevelLetsErrorsAndWarningsThrough) {
    EXPECT_EQ(coreLogLevel.load(), CoreLogFlagError | CoreLogFlagWarning);
    EXPECT_EQ(CoreLogLevelVerbose, 31u);
}

TEST(CoreLog, LevelGatesEachFlagAndSkipsFormatting) {
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
    capture.clear();
    {
        // Flags are bits, not a threshold: debug alone lets only debug through.
        LevelScope level(CoreLogFlagDebug);
        CORE_LOG_ERROR("F", "f", "error");
        CORE_LOG_DEBUG("F", "f", "debug");
        CoreLog::log(CoreLogFlagInfo, "F", "f", 1, "info %@", counted);
        EXPECT_EQ(messagesAfterFlush(capture), (std::vector<std::string>{"debug"}));
    }
    capture.clear();
    {
        LevelScope level(CoreLogLevelOff);
        CORE_LOG_ERROR("F", "f", "error %@", counted);
        EXPECT_TRUE(messagesAfterFlush(capture).empty());
        EXPECT_EQ(counted->described.load(), 2);
    }
}

TEST(CoreLog, RecordCarriesFileFunctionLineAndNoContextOrTag) {
    LevelScope level(CoreLogLevelVerbose);
    CoreLogCapture capture;
    std::string statement = "a:b:c";
    CORE_LOG_WARN("Objects/CVUIStyler", "style:as:", "Invalid attribute %@", statement);
    const uint64_t line = __LINE__ - 1;
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
    EXPECT_EQ(records[1].line, line + 2);
    EXPECT_LE(records[0].timestamp, records[1].timestamp);
}

TEST(CoreLog, AnErrorIsWrittenBeforeItReturnsAfterEverythingBeforeIt) {
    LevelScope level(CoreLogLevelVerbose);
    CoreLogCapture capture;
    for (int i = 0; i < 200; ++i)
        CORE_LOG_INFO("F", "f", "async %d", i);
    CORE_LOG_ERROR("F", "f", "sync");
    // No flush: the error has waited for the writer to catch up with it.
    auto messages = capture.messages();
    ASSERT_EQ(messages.size(), 201u);
    EXPECT_EQ(messages.front(), "async 0");
    EXPECT_EQ(messages[199], "async 199");
    EXPECT_EQ(messages.back(), "sync");

    CORE_LOG_WARN("F", "f", "after");
    CORE_LOG_ERROR("F", "f", "last");
    EXPECT_THAT(messagesAfterFlush(capture), ::testing::ElementsAreArray([&] {
                    auto expected = messages;
                    expected.push_back("after");
                    expected.push_back("last");
                    return expected;
                }()));
}

TEST(CoreLog, ConcurrentLoggersKeepTheirOwnOrder) {
    LevelScope level(CoreLogLevelVerbose);
    CoreLogCapture capture;
    constexpr int Threads = 4;
    constexpr int PerThread = 300;
    std::vector<std::thread> threads;
    for (int t = 0; t < Threads; ++t)
        threads.emplace_back([t] {
            for (int i = 0; i < PerThread; ++i) {
                if (i % 50 == 49)
                    CORE_LOG_ERROR("F", "f", "%d %d", t, i);
                else
                    CORE_LOG_DEBUG("F", "f", "%d %d", t, i);
            }
        });
    for (auto& thread : threads)
        thread.join();
    auto messages = messagesAfterFlush(capture);
    ASSERT_EQ(messages.size(), size_t(Threads * PerThread));
    std::vector<int> next(Threads, 0);
    for (const auto& message : messages) {
        int t = 0, i = 0;
        ASSERT_EQ(std::sscanf(message.c_str(), "%d %d", &t, &i), 2);
        EXPECT_EQ(i, next[t]++) << "thread " << t;
    }
}

TEST(CoreLog, LineFormatOnStandardError) {
    CoreLogRecord record;
    record.flag = CoreLogFlagWarning;
    record.file = "Objects/CVUIStyler";
    record.function = "style:as:";
    record.line = 123;
    record.message = "Cannot style with width (null)";
    record.timestamp = std::chrono::system_clock::now();
    std::string line = CoreLog::formatRecord(record);
    EXPECT_TRUE(std::regex_match(
        line, std::regex(R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} \[W\] )"
                         R"(Objects/CVUIStyler:style:as::123 Cannot style with width \(null\))")))
        << line;
    record.flag = CoreLogFlagError;
    EXPECT_NE(CoreLog::formatRecord(record).find(" [E] "), std::string::npos);
    record.flag = CoreLogFlagVerbose;
    EXPECT_NE(CoreLog::formatRecord(record).find(" [V] "), std::string::npos);

    LevelScope level(CoreLogLevelWarning);
    ::testing::internal::CaptureStderr();
    CORE_LOG_WARN("Objects/CVBlockQueue", "next", "to the console");
    CoreLog::flush();
    std::string written = ::testing::internal::GetCapturedStderr();
    EXPECT_NE(written.find("[W] Objects/CVBlockQueue:next:"), std::string::npos) << written;
    EXPECT_NE(written.find(" to the console\n"), std::string::npos);
}

TEST(CoreLog, CapturesNestAndPassThroughReachesStandardError) {
    LevelScope level(CoreLogLevelWarning);
    CoreLogCapture outer;
    {
        CoreLogCapture inner(true);
        ::testing::internal::CaptureStderr();
        CORE_LOG_WARN("F", "f", "inner");
        CoreLog::flush();
        EXPECT_NE(::testing::internal::GetCapturedStderr().find("inner"), std::string::npos);
        EXPECT_TRUE(inner.contains("inner"));
    }
    CORE_LOG_WARN("F", "f", "outer");
    EXPECT_EQ(messagesAfterFlush(outer), std::vector<std::string>{"outer"});
}
