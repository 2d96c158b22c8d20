#include "platform/foundation/Data.hpp"

#include <gtest/gtest.h>

using ns::Data;

TEST(Data, EqualityAndHashFollowContentNotIdentity) {
    auto a = Data::fromString("abc");
    auto b = Data::make(std::vector<uint8_t>{'a', 'b', 'c'});
    auto c = Data::fromString("abd");
    EXPECT_NE(a.get(), b.get());
    EXPECT_TRUE(a->isEqual(*b));
    EXPECT_EQ(a->hash(), b->hash());
    EXPECT_FALSE(a->isEqual(*c));
    EXPECT_FALSE(a->isEqual(*ns::create<ns::Object>()));
    EXPECT_TRUE(ns::Value(a) == ns::Value(b));
}

TEST(Data, NullPointerAndBinaryBytes) {
    EXPECT_TRUE(Data::make(nullptr, 12)->isEmpty());
    const char bytes[] = {'x', '\0', 'y'};
    auto data = Data::make(bytes, 3);
    EXPECT_EQ(data->length(), 3u);
    EXPECT_EQ(data->string(), std::string("x\0y", 3));
}

TEST(Data, DescriptionShowsLengthAndBytes) {
    EXPECT_EQ(Data::make(std::vector<uint8_t>{0x0a, 0xff})->description(), "{length = 2, bytes = 0x0aff}");
    std::vector<uint8_t> many(100, 0x11);
    std::string text = Data::make(many)->description();
    EXPECT_NE(text.find("length = 100"), std::string::npos);
    EXPECT_NE(text.find(" ... "), std::string::npos);
}
