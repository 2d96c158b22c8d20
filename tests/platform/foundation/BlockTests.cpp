#include "platform/foundation/Block.hpp"

#include <gtest/gtest.h>

TEST(Block, SignatureIsCheckedOnEveryUse) {
    int calls = 0;
    auto block = ns::Block::from([&](int value) { calls += value; });
    EXPECT_TRUE(block.is<void(int)>());
    EXPECT_FALSE(block.is<void(long)>());
    EXPECT_FALSE(block.is<void()>());
    EXPECT_FALSE(block.as<void(double)>()); // wrong signature: empty function
    EXPECT_FALSE(block.invoke(2.0));
    EXPECT_TRUE(block.invoke(3));
    block.as<void(int)>()(4);
    EXPECT_EQ(calls, 7);
}

TEST(Block, CopiesShareTheCallbackAndEmptyBlocksAreFalse) {
    auto block = ns::Block::from([] { return 5; });
    ns::Block copy = block;
    EXPECT_EQ(copy, block);
    EXPECT_EQ(copy.identity(), block.identity());
    EXPECT_EQ(copy.as<int()>()(), 5);
    EXPECT_FALSE(ns::Block());
    EXPECT_FALSE(ns::Block::make(std::function<void()>()));
    EXPECT_NE(block.signature().find("int"), std::string::npos);
}
