#include "platform/foundation/Log.hpp"
#include "platform/layout/LayoutConstraint.hpp"
#include "platform/views/View.hpp"

#include <gtest/gtest.h>

using ns::LayoutAttribute;
using ns::LayoutRelation;

namespace {

struct Expected {
    ns::View* first;
    LayoutAttribute firstAttribute;
    LayoutRelation relation;
    ns::View* second;
    LayoutAttribute secondAttribute;
    double constant;
    float priority = 1000;
};

class VisualFormat : public ::testing::Test {
protected:
    void SetUp() override {
        container = ns::View::make({0, 0, 400, 300});
        for (auto* view : {&a, &b, &c}) {
            *view = ns::View::make({0, 0, 10, 10});
            container->addSubview(*view);
        }
        views = {{"a", a}, {"b", b}, {"c", c}, {"subview", a}, {"self", a}, {"button", b}};
    }

    std::vector<ns::Ref<ns::LayoutConstraint>> parse(const char* format, ns::Dictionary metrics = {},
                                                     uint64_t options = 0) {
        return ns::LayoutConstraint::constraintsWithVisualFormat(format, options, metrics, views);
    }

    static void expectConstraints(const std::vector<ns::Ref<ns::LayoutConstraint>>& made,
                                  const std::vector<Expected>& expected) {
        ASSERT_EQ(made.size(), expected.size());
        for (size_t i = 0; i < made.size(); ++i) {
            SCOPED_TRACE(made[i]->description());
            EXPECT_EQ(made[i]->firstItem().get(), expected[i].first);
            EXPECT_EQ(made[i]->firstAttribute(), expected[i].firstAttribute);
            EXPECT_EQ(made[i]->relation(), expected[i].relation);
            EXPECT_EQ(made[i]->secondItem().get(), expected[i].second);
            EXPECT_EQ(made[i]->secondAttribute(), expected[i].secondAttribute);
            EXPECT_EQ(made[i]->multiplier(), 1.0);
            EXPECT_EQ(made[i]->constant(), expected[i].constant);
            EXPECT_EQ(made[i]->priority(), expected[i].priority);
        }
    }

    ns::Ref<ns::View> container, a, b, c;
    ns::Dictionary views;
};

constexpr auto Eq = LayoutRelation::Equal;
constexpr auto Ge = LayoutRelation::GreaterThanOrEqual;
constexpr auto Le = LayoutRelation::LessThanOrEqual;
constexpr auto None = LayoutAttribute::NotAnAttribute;

} // namespace

TEST_F(VisualFormat, PinnedWithMetricsAndAWeakerTrailingEdge) {
    ns::Dictionary metrics{{"left", 10}, {"right", 20}, {"top", 5}, {"bottom", 15}};
    auto* sup = container.get();
    expectConstraints(parse("H:|-left-[subview]-(right@990)-|", metrics),
                      {{a.get(), LayoutAttribute::Leading, Eq, sup, LayoutAttribute::Leading, 10},
                       {sup, LayoutAttribute::Trailing, Eq, a.get(), LayoutAttribute::Trailing, 20, 990}});
    expectConstraints(parse("V:|-top-[subview]-(bottom@990)-|", metrics),
                      {{a.get(), LayoutAttribute::Top, Eq, sup, LayoutAttribute::Top, 5},
                       {sup, LayoutAttribute::Bottom, Eq, a.get(), LayoutAttribute::Bottom, 15, 990}});
    expectConstraints(parse("H:|-0-[self]-0-|"),
                      {{a.get(), LayoutAttribute::Leading, Eq, sup, LayoutAttribute::Leading, 0},
                       {sup, LayoutAttribute::Trailing, Eq, a.get(), LayoutAttribute::Trailing, 0}});
}

TEST_F(VisualFormat, ViewSizePredicates) {
    expectConstraints(parse("V:[button(==height)]", {{"height", 24}}),
                      {{b.get(), LayoutAttribute::Height, Eq, nullptr, None, 24}});
    expectConstraints(parse("[a(100)]"), {{a.get(), LayoutAttribute::Width, Eq, nullptr, None, 100}});
    expectConstraints(parse("H:[a(>=50,<=200@750)]"),
                      {{a.get(), LayoutAttribute::Width, Ge, nullptr, None, 50},
                       {a.get(), LayoutAttribute::Width, Le, nullptr, None, 200, 750}});
    expectConstraints(parse("H:[a(==b)]"),
                      {{a.get(), LayoutAttribute::Width, Eq, b.get(), LayoutAttribute::Width, 0}});
    expectConstraints(parse("V:[a(b@p)]", {{"p", 20}}),
                      {{a.get(), LayoutAttribute::Height, Eq, b.get(), LayoutAttribute::Height, 0, 20}});
}

TEST_F(VisualFormat, ConnectionsBetweenViews) {
    // standard spacing, flush views, explicit and relational spacing
    expectConstraints(parse("[a]-[b][c]"),
                      {{b.get(), LayoutAttribute::Leading, Eq, a.get(), LayoutAttribute::Trailing, 8},
                       {c.get(), LayoutAttribute::Leading, Eq, b.get(), LayoutAttribute::Trailing, 0}});
    expectConstraints(parse("V:[a]-(>=4,<=12@300)-[b]"),
                      {{b.get(), LayoutAttribute::Top, Ge, a.get(), LayoutAttribute::Bottom, 4},
                       {b.get(), LayoutAttribute::Top, Le, a.get(), LayoutAttribute::Bottom, 12, 300}});
    expectConstraints(
        parse("|-[a]-|"),
        {{a.get(), LayoutAttribute::Leading, Eq, container.get(), LayoutAttribute::Leading, 20},
         {container.get(), LayoutAttribute::Trailing, Eq, a.get(), LayoutAttribute::Trailing, 20}});
    expectConstraints(parse("H:[a]-(-5)-[b]"),
                      {{b.get(), LayoutAttribute::Leading, Eq, a.get(), LayoutAttribute::Trailing, -5}});
    expectConstraints(parse("V:[a]|"),
                      {{container.get(), LayoutAttribute::Bottom, Eq, a.get(), LayoutAttribute::Bottom, 0}});
    expectConstraints(parse("H:[a]-1.5e1-[b]"),
                      {{b.get(), LayoutAttribute::Leading, Eq, a.get(), LayoutAttribute::Trailing, 15}});
}

TEST_F(VisualFormat, DirectionAndAlignmentOptions) {
    expectConstraints(parse("H:[a]-[b]", {}, ns::LayoutFormatDirectionLeftToRight),
                      {{b.get(), LayoutAttribute::Left, Eq, a.get(), LayoutAttribute::Right, 8}});
    expectConstraints(parse("H:[a]-[b]", {}, ns::LayoutFormatDirectionRightToLeft),
                      {{a.get(), LayoutAttribute::Left, Eq, b.get(), LayoutAttribute::Right, 8}});
    expectConstraints(parse("H:[a][b]", {}, ns::LayoutFormatAlignAllTop | ns::LayoutFormatAlignAllCenterY),
                      {{b.get(), LayoutAttribute::Leading, Eq, a.get(), LayoutAttribute::Trailing, 0},
                       {a.get(), LayoutAttribute::Top, Eq, b.get(), LayoutAttribute::Top, 0},
                       {a.get(), LayoutAttribute::CenterY, Eq, b.get(), LayoutAttribute::CenterY, 0}});
}

TEST_F(VisualFormat, MalformedFormatsLogAndMakeNothing) {
    const char* bad[] = {
        "V|[a]",          // missing ':'
        "H:[missing]",    // unknown view
        "H:[a]-x-[b]",    // unknown metric
        "H:[a(=10)]",     // bad relation
        "H:[a(<10)]",     // bad relation
        "H:[a",           // unclosed view
        "H:[a]-10[b]",    // unterminated connection
        "H:[a](b)",       // stray text
        "H:[a]-|x",       // text after the superview
        "H:[a(10@2000)]", // priority out of range
        "H:[a]-(10",      // unclosed predicate list
        "",               // nothing at all
        "H:|-[a]",        // a view without a superview (see below)
    };
    auto orphan = ns::View::make();
    for (const char* format : bad) {
        views["a"] = std::string(format) == "H:|-[a]" ? orphan : a;
        ns::LogCapture capture;
        SCOPED_TRACE(format);
        EXPECT_TRUE(parse(format, {{"p", 1}}).empty());
        ASSERT_EQ(capture.messages().size(), 1u);
        EXPECT_EQ(capture.messages()[0].rfind("Unable to parse constraint format: \n", 0), 0u);
    }
}

TEST_F(VisualFormat, ErrorMessagesNameTheProblem) {
    ns::LogCapture capture;
    parse("V|[a]");
    parse("H:[blackBox]");
    parse("H:[a(=<5)]");
    auto messages = capture.messages();
    ASSERT_EQ(messages.size(), 3u);
    EXPECT_NE(messages[0].find("Expected ':' after 'V' to specify vertical arrangement"), std::string::npos);
    EXPECT_NE(messages[1].find("Unable to find view with name blackBox"), std::string::npos);
    EXPECT_NE(messages[2].find("Unknown relation. Must be ==, >=, or <="), std::string::npos);
    EXPECT_NE(messages[1].find("H:[blackBox]\n"), std::string::npos); // the format and a caret follow
}
