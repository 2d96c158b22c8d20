#include "platform/foundation/Class.hpp"
#include "platform/foundation/Value.hpp"

#include <climits>
#include <gtest/gtest.h>

using ns::Value;

TEST(ValueConversions, BoolReadsFirstSignificantCharacter) {
    // Leading white space, one sign and zeros are skipped; the character after them decides.
    for (const char* yes : {"YES", "  y", "true", "T", "1", "9", "-0007", "+01", "\t\n 0042"}) {
        EXPECT_TRUE(Value(yes).boolValue()) << yes;
    }
    for (const char* no : {"no", "0", "000", "", "  ", "false", "-", " x1", "0.5", "--1"}) {
        EXPECT_FALSE(Value(no).boolValue()) << no;
    }
}

TEST(ValueConversions, FloatIsSinglePrecisionAndSkipsLeadingWhiteSpace) {
    EXPECT_EQ(Value("0.929").floatValue(), 0.929f);
    EXPECT_EQ(static_cast<double>(Value("0.929").floatValue()), static_cast<double>(0.929f));
    EXPECT_NE(static_cast<double>(Value("0.929").floatValue()), 0.929);
    EXPECT_EQ(Value("  320").floatValue(), 320.0f);
    EXPECT_EQ(Value("12px").floatValue(), 12.0f);
    EXPECT_EQ(Value("abc").floatValue(), 0.0f);
    EXPECT_EQ(Value("").floatValue(), 0.0f);
    EXPECT_EQ(Value("-.5").floatValue(), -0.5f);
    EXPECT_EQ(Value("1e3").floatValue(), 1000.0f);
    EXPECT_EQ(Value("1e").floatValue(), 1.0f); // a dangling exponent is not part of the number
    EXPECT_EQ(Value(".").floatValue(), 0.0f);
    EXPECT_EQ(Value("inf").floatValue(), 0.0f);
    EXPECT_EQ(Value("0x10").floatValue(), 0.0f);
}

TEST(ValueConversions, DoubleAndIntegerFromStrings) {
    EXPECT_DOUBLE_EQ(Value(" 2.5e-1 ").doubleValue(), 0.25);
    EXPECT_EQ(Value("  -42abc").integerValue(), -42);
    EXPECT_EQ(Value("+7").integerValue(), 7);
    EXPECT_EQ(Value("3.9").integerValue(), 3);
    EXPECT_EQ(Value("99999999999999999999").integerValue(), INT64_MAX);
    EXPECT_EQ(Value("-99999999999999999999").integerValue(), INT64_MIN);
    EXPECT_EQ(Value("-9223372036854775808").integerValue(), INT64_MIN);
    EXPECT_EQ(Value("x").integerValue(), 0);
}

TEST(ValueConversions, NumbersAndOtherKinds) {
    EXPECT_EQ(Value(2.9).integerValue(), 2);
    EXPECT_EQ(Value(-2.9).integerValue(), -2);
    EXPECT_EQ(Value(1e300).integerValue(), INT64_MAX);
    EXPECT_TRUE(Value(0.1).boolValue());
    EXPECT_FALSE(Value(0).boolValue());
    EXPECT_EQ(Value(true).integerValue(), 1);
    EXPECT_EQ(Value().integerValue(), 0);
    EXPECT_FALSE(Value(ns::Null{}).boolValue());
    EXPECT_EQ(Value(ns::Array{1, 2}).doubleValue(), 0.0);
    EXPECT_EQ(Value(42).stringValue(), "42");
    EXPECT_EQ(Value().stringValue(), "");
}

TEST(ValueDescription, EveryKind) {
    EXPECT_EQ(Value().description(), "(null)");
    EXPECT_EQ(Value(ns::Null{}).description(), "<null>");
    EXPECT_EQ(Value(true).description(), "1");
    EXPECT_EQ(Value(-12).description(), "-12");
    EXPECT_EQ(Value(0.5).description(), "0.5");
    EXPECT_EQ(Value(1.0).description(), "1");
    EXPECT_EQ(Value(0.1).description(), "0.1");
    EXPECT_EQ(Value("text").description(), "text");
    EXPECT_EQ(Value(ns::Selector("menuAction:")).description(), "menuAction:");
    EXPECT_EQ(Value(ns::Array{}).description(), "(\n)");
    EXPECT_EQ(Value(ns::Array{1, "a b"}).description(), "(\n    1,\n    \"a b\"\n)");
    EXPECT_EQ(Value(ns::Dictionary{{"path", "/tmp/x"}}).description(), "{\n    path = /tmp/x;\n}");
    EXPECT_EQ(Value(ns::Dictionary{{"list", ns::Array{1}}}).description(),
              "{\n    list = (\n        1\n    );\n}");
    auto block = ns::Block::from([](int) {});
    EXPECT_NE(Value(block).description().find("<Block"), std::string::npos);
    auto cls = ns::classOf<ns::Object>();
    EXPECT_EQ(Value(cls).description(), "Object");
    EXPECT_EQ(Value(cls).kind(), Value::Kind::Class);
}

TEST(ValueEquality, NumbersCompareAcrossKindsContainersByElement) {
    EXPECT_EQ(Value(1), Value(true));
    EXPECT_EQ(Value(2), Value(2.0));
    EXPECT_NE(Value(2), Value(2.5));
    EXPECT_NE(Value("1"), Value(1));
    EXPECT_EQ(Value(ns::Array{1, "a"}), Value(ns::Array{1.0, "a"}));
    EXPECT_NE(Value(), Value(ns::Null{}));
    EXPECT_EQ(Value(ns::Dictionary{{"k", 1}}), Value(ns::Dictionary{{"k", 1}}));
}

TEST(ValueAccess, WrongKindGivesEmptyNotCrash) {
    Value number(3);
    EXPECT_EQ(number.string(), nullptr);
    EXPECT_EQ(number.object(), nullptr);
    EXPECT_TRUE(number.array().empty());
    EXPECT_TRUE(number.dictionary().empty());
    EXPECT_TRUE(number["key"].isNil());
    EXPECT_EQ(number.block(), nullptr);
    EXPECT_EQ(Value(static_cast<const char*>(nullptr)).kind(), Value::Kind::Nil);
    EXPECT_EQ(Value(std::optional<std::string>()).kind(), Value::Kind::Nil);
    EXPECT_EQ(Value(ns::Block()).kind(), Value::Kind::Nil);
    EXPECT_EQ(Value(ns::Ref<ns::Object>()).kind(), Value::Kind::Nil);
}
