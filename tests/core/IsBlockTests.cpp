#include "core/IsBlock.hpp"

#include "platform/foundation/Object.hpp"

#include <gtest/gtest.h>

using corvane::core::isBlock;

TEST(IsBlock, TrueOnlyForCallbacksOfAnySignature) {
    EXPECT_TRUE(isBlock(ns::Block::from([] {})));
    EXPECT_TRUE(isBlock(ns::Block::from([](ns::Object*, const std::string&) {})));
    // An empty callback stores as nil.
    EXPECT_FALSE(isBlock(ns::Block()));
    EXPECT_FALSE(isBlock(ns::Value()));
    EXPECT_FALSE(isBlock("width:10"));
    EXPECT_FALSE(isBlock(12));
    EXPECT_FALSE(isBlock(ns::create<ns::Object>()));
    EXPECT_FALSE(isBlock(ns::Array{ns::Value(ns::Block::from([] {}))}));
}
