#include "platform/foundation/Data.hpp"

#include <gtest/gtest.h>

using ns::Data;

TEST(Data, EqualByContentNotIdentity) {
    auto a = Data::fromString(std::string("a\0c", 3));
    auto b = Data::make(std::vector<uint8_t>{'a', 0, 'c'});
    EXPECT_TRUE(a->isEqual(*b));
    EXPECT_EQ(a->hash(), b->hash());
    EXPECT_TRUE(ns::Value(a) == ns::Value(b));
    EXPECT_FALSE(a->isEqual(*Data::fromString("abc")));
    EXPECT_FALSE(a->isEqual(*ns::create<ns::Object>()));
    EXPECT_TRUE(Data::make(nullptr, 12)->isEmpty());
    EXPECT_EQ(Data::make(std::vector<uint8_t>{0x0a, 0xff})->description(), "{length = 2, bytes = 0x0aff}");
}
