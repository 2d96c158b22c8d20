#include "platform/foundation/PropertyListSerialization.hpp"

#include <gtest/gtest.h>

#include <climits>

using namespace ns;

TEST(PropertyListSerialization, RoundTripsEveryPropertyListKind) {
    Dictionary nested{{"flag", true}, {"list", Array{Value(1), Value("two"), Value(3.5)}}};
    Dictionary root{{"yes", true},      {"no", false},
                    {"small", 7},       {"negative", -42},
                    {"min", INT64_MIN}, {"max", INT64_MAX},
                    {"pi", 3.14159},    {"text", "h\u00e9llo \u2603"},
                    {"empty", ""},      {"bytes", Data::fromString(std::string("\0\1\2", 3))},
                    {"nested", nested}, {"emptyList", Array{}}};
    Ref<Error> error;
    Ref<Data> data = PropertyListSerialization::dataWithPropertyList(root, &error);
    ASSERT_TRUE(data) << error->description();
    EXPECT_EQ(data->string().substr(0, 8), "bplist00");

    Value back = PropertyListSerialization::propertyListWithData(*data, &error);
    ASSERT_TRUE(back.isDictionary());
    EXPECT_EQ(back, Value(root));
    // Kinds survive, not only values that compare equal across kinds.
    EXPECT_EQ(back["yes"].kind(), Value::Kind::Bool);
    EXPECT_EQ(back["min"].kind(), Value::Kind::Integer);
    EXPECT_EQ(back["min"].integerValue(), INT64_MIN);
    EXPECT_EQ(back["pi"].kind(), Value::Kind::Double);
    EXPECT_TRUE(back["bytes"].objectAs<Data>());
}

TEST(PropertyListSerialization, RefusesValuesThatAreNotPropertyLists) {
    const Value refused[] = {Value(),
                             Value(Null{}),
                             Value(create<Object>()),
                             Value(Block::from([] {})),
                             Value(Array{Value(1), Value(Null{})}),
                             Value(Dictionary{{"deep", Dictionary{{"obj", create<Object>()}}}})};
    for (const Value& value : refused) {
        Ref<Error> error;
        EXPECT_FALSE(PropertyListSerialization::isPropertyList(value)) << value.description();
        EXPECT_FALSE(PropertyListSerialization::dataWithPropertyList(value, &error));
        ASSERT_TRUE(error);
        EXPECT_EQ(error->code(), PropertyListWriteInvalidError);
    }
}

TEST(PropertyListSerialization, DamagedBytesGiveNilAndAnError) {
    Ref<Data> good =
        PropertyListSerialization::dataWithPropertyList(Dictionary{{"a", Array{Value(1), Value("x")}}});
    ASSERT_TRUE(good);
    std::vector<Ref<Data>> bad{Data::make(), Data::fromString("not a plist at all"),
                               Data::fromString("bplist00"),
                               Data::make(good->bytes().data(), good->length() / 2)};
    for (const auto& data : bad) {
        Ref<Error> error;
        EXPECT_TRUE(PropertyListSerialization::propertyListWithData(*data, &error).isNil());
        ASSERT_TRUE(error);
        EXPECT_EQ(error->code(), PropertyListReadCorruptError);
    }
}

TEST(PropertyListSerialization, ReadsXmlPropertyLists) {
    auto xml = Data::fromString(R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict><key>name</key><string>Ada</string><key>n</key><integer>-3</integer></dict></plist>)");
    Value value = PropertyListSerialization::propertyListWithData(*xml);
    EXPECT_EQ(value["name"], Value("Ada"));
    EXPECT_EQ(value["n"].integerValue(), -3);
}
