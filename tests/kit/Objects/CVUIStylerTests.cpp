#include "kit/Objects/CVUIStyler.hpp"

#include "core/CoreLog.hpp"
#include "core/CoreLogCapture.hpp"

#include <gtest/gtest.h>

using corvane::CVUIStyler;

namespace {

struct Call {
    std::string name;
    std::optional<std::string> arguments;
    std::optional<std::vector<std::string>> currentArgs;
};

// A styler whose definitions record every call in order.
class Styling : public ::testing::Test {
protected:
    void SetUp() override {
        previousLevel = corvane::core::coreLogLevel.load();
        corvane::core::coreLogLevel = corvane::core::CoreLogLevelWarning;
        target = ns::create<ns::Object>();
        auto withArguments = [this](const char* name) {
            return CVUIStyler::definition(corvane::CVStylingArgumentBlock(
                [this, name](CVUIStyler& styler, const ns::Ref<ns::Object>& t, const std::string& arguments) {
                    EXPECT_EQ(t, target);
                    calls.push_back({name, arguments, styler.currentArgs()});
                }));
        };
        auto plain = [this](const char* name) {
            return CVUIStyler::definition(
                corvane::CVStylingBlock([this, name](CVUIStyler& styler, const ns::Ref<ns::Object>& t) {
                    EXPECT_EQ(t, target);
                    calls.push_back({name, std::nullopt, styler.currentArgs()});
                }));
        };
        styler = CVUIStyler::make({{"width:", withArguments("width:")},
                                   {"border:", withArguments("border:")},
                                   {"tlbr:", withArguments("tlbr:")},
                                   {"fitWidth", plain("fitWidth")},
                                   {"uniqueWidth", plain("uniqueWidth")},
                                   {"footer", "fitWidth;inner;width:5"},
                                   {"inner", "uniqueWidth;border:1"},
                                   {"number", 42}});
    }
    void TearDown() override { corvane::core::coreLogLevel = previousLevel; }

    std::vector<std::string> names() const {
        std::vector<std::string> out;
        for (const auto& call : calls)
            out.push_back(call.name);
        return out;
    }
    std::vector<std::string> warnings() {
        corvane::core::CoreLog::flush();
        return capture.messages();
    }

    uint64_t previousLevel = 0;
    corvane::core::CoreLogCapture capture;
    ns::Ref<ns::Object> target;
    ns::Ref<CVUIStyler> styler;
    std::vector<Call> calls;
};

} // namespace

TEST_F(Styling, EmptyPiecesAreSkippedAndStateClearedAfterTheRun) {
    styler->style(target, "");
    EXPECT_TRUE(calls.empty());
    styler->style(target, "fitWidth;;border:1;");
    EXPECT_EQ(names(), (std::vector<std::string>{"fitWidth", "border:"}));
    EXPECT_TRUE(warnings().empty());
    EXPECT_EQ(styler->currentTarget(), nullptr);
    EXPECT_FALSE(styler->currentStatements());
    EXPECT_FALSE(styler->currentStatement());
}

TEST_F(Styling, ArgumentsSplitAtCommasKeepingEmptyPieces) {
    styler->style(target, "tlbr:1,,3;width:");
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[0].arguments, "1,,3");
    EXPECT_EQ(calls[0].currentArgs, (std::vector<std::string>{"1", "", "3"}));
    EXPECT_EQ(calls[1].arguments, "");
    EXPECT_EQ(calls[1].currentArgs, (std::vector<std::string>{""}));
    // kept after the run; cleared by a callback without arguments
    EXPECT_EQ(styler->currentArgs(), (std::vector<std::string>{""}));
    styler->style(target, "width:7;fitWidth");
    EXPECT_FALSE(styler->currentArgs());
}

TEST_F(Styling, NamesAreLookedUpExactlyWithOrWithoutTheColon) {
    styler->style(target, " width:10;width;fitWidth:;number;a:b:c");
    EXPECT_TRUE(calls.empty());
    auto logged = warnings();
    ASSERT_EQ(logged.size(), 5u);
    EXPECT_EQ(logged[0], "Cannot style with  width: ((null))");
    EXPECT_EQ(logged[1], "Cannot style with width ((null))");
    EXPECT_EQ(logged[2], "Cannot style with fitWidth: ((null))");
    EXPECT_EQ(logged[3], "Cannot style with number (42)");
    EXPECT_EQ(logged[4], "Invalid attribute a:b:c");
}

TEST_F(Styling, WarningsCarryTheirSourceAndAreGatedByLevel) {
    styler->style(target, "nothing");
    corvane::core::coreLogLevel = corvane::core::CoreLogLevelError;
    styler->style(target, "silent");
    auto records = (corvane::core::CoreLog::flush(), capture.records());
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].flag, corvane::core::CoreLogFlagWarning);
    EXPECT_EQ(records[0].file, "Objects/CVUIStyler");
    EXPECT_EQ(records[0].function, "style:as:");
    EXPECT_EQ(records[0].context, 0);
    EXPECT_FALSE(records[0].tag);
}

TEST_F(Styling, AliasesExpandDepthFirstThenTheOuterRunGoesOn) {
    styler->style(target, "footer;width:9");
    EXPECT_EQ(names(), (std::vector<std::string>{"fitWidth", "uniqueWidth", "border:", "width:", "width:"}));
    EXPECT_EQ(calls[3].arguments, "5");
    EXPECT_EQ(calls[4].arguments, "9");
    EXPECT_TRUE(warnings().empty());
}

TEST_F(Styling, AfterANestedRunTheOuterStateReadsNil) {
    std::optional<std::string> statementsSeen, statementSeen;
    ns::Ref<ns::Object> targetSeen = target;
    auto defs = styler->stylingDefinitions();
    defs["probe"] =
        CVUIStyler::definition(corvane::CVStylingBlock([&](CVUIStyler& s, const ns::Ref<ns::Object>&) {
            statementsSeen = s.currentStatements();
            statementSeen = s.currentStatement();
            targetSeen = s.currentTarget();
        }));
    styler->setStylingDefinitions(defs);
    styler->style(target, "inner;probe");
    EXPECT_FALSE(statementsSeen);
    EXPECT_EQ(targetSeen, nullptr);
    EXPECT_EQ(statementSeen, "probe");
}

TEST(StatementSplitting, KeepsEveryEmptyPiece) {
    EXPECT_EQ(corvane::componentsSeparatedBy("", ';'), (std::vector<std::string>{""}));
    EXPECT_EQ(corvane::componentsSeparatedBy(";a;", ';'), (std::vector<std::string>{"", "a", ""}));
}
