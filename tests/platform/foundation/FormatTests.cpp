#include "platform/foundation/Format.hpp"
#include "platform/foundation/Log.hpp"
#include "platform/foundation/Object.hpp"

#include <gtest/gtest.h>
#include <thread>

namespace {
class Described : public ns::Object {
public:
    std::string description() const override { return "described"; }
};
} // namespace

TEST(Format, PrintfConversions) {
    EXPECT_EQ(ns::format("%d|%5d|%-4d|%05d", 1, 2, 3, -4), "1|    2|3   |-0004");
    EXPECT_EQ(ns::format("%lu %llu %ld", uint64_t(18446744073709551615ull), 7ull, -9L),
              "18446744073709551615 7 -9");
    EXPECT_EQ(ns::format("%x %X %o", 255, 255, 8), "ff FF 10");
    EXPECT_EQ(ns::format("%.2f %e %g", 3.14159, 1500.0, 0.0001), "3.14 1.500000e+03 0.0001");
    EXPECT_EQ(ns::format("%s/%.3s/%5s", "abc", std::string("abcdef"), "x"), "abc/abc/    x");
    EXPECT_EQ(ns::format("%c%c", 'o', 'k'), "ok");
    EXPECT_EQ(ns::format("100%%"), "100%");
    EXPECT_EQ(ns::format("%*d", 4, 7), "   7");
}

TEST(Format, ObjectConversionPrintsDescriptionOrNull) {
    auto object = ns::create<Described>();
    EXPECT_EQ(ns::format("[%@]", object), "[described]");
    EXPECT_EQ(ns::format("[%@]", ns::Ref<ns::Object>()), "[(null)]");
    EXPECT_EQ(ns::format("[%@]", nullptr), "[(null)]");
    EXPECT_EQ(ns::format("%@ (%@)", std::string("width:"), ns::Value()), "width: ((null))");
    EXPECT_EQ(ns::format("%@", ns::Value(12)), "12");
    EXPECT_EQ(ns::format("%@", std::optional<std::string>()), "(null)");
}

TEST(Format, MissingOrMismatchedArgumentsDoNotMisread) {
    EXPECT_EQ(ns::format("a %d b %@ c"), "a  b  c");
    EXPECT_EQ(ns::format("%d", 2.9), "2");
    EXPECT_EQ(ns::format("%f", 2), "2.000000");
    EXPECT_EQ(ns::format("%s", 12), "12");
    EXPECT_EQ(ns::format("%lu", ns::Value("17")), "17");
    EXPECT_EQ(ns::format("trailing %"), "trailing ");
}

TEST(ConsoleLog, CaptureCollectsOneMessagePerCallFromAnyThread) {
    ns::LogCapture capture;
    ns::Log("invocation failed for state : %lu", uint64_t(5));
    std::thread worker([] { ns::Log("from %@", std::string("worker")); });
    worker.join();
    auto messages = capture.messages();
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_EQ(messages[0], "invocation failed for state : 5");
    EXPECT_EQ(messages[1], "from worker");
    EXPECT_TRUE(capture.contains("state : 5"));
}
