#include "platform/layout/solver/SymbolicWeight.hpp"

#include <gtest/gtest.h>

using ns::solver::SymbolicWeight;

TEST(SymbolicWeight, SignComesFromTheHighestLevel) {
    SymbolicWeight weight(250, 1000);
    weight.add(751, -1);
    EXPECT_EQ(weight.sign(), -1);
    weight.add(751, 1); // cancels: the level disappears
    EXPECT_EQ(weight.size(), 1u);
    EXPECT_EQ(weight.sign(), 1);
    weight.add(250, -1000);
    EXPECT_TRUE(weight.isZero());
    EXPECT_EQ(weight.sign(), 0);
}

TEST(SymbolicWeight, ComparesLevelByLevelWithScales) {
    SymbolicWeight a(750, 1);
    a.add(250, 100);
    SymbolicWeight b(750, 2);
    // a/1 = {750: 1, 250: 100} against b/2 = {750: 1}: equal at 750, a larger at 250.
    EXPECT_EQ(SymbolicWeight::compareScaled(&a, 1, &b, 0.5), 1);
    EXPECT_EQ(SymbolicWeight::compareScaled(&b, 0.5, &a, 1), -1);
    // A thousand units lower down never outweigh one unit above.
    SymbolicWeight many(500, 1000);
    SymbolicWeight one(501, 1);
    EXPECT_EQ(SymbolicWeight::compareScaled(&many, 1, &one, 1), -1);
    EXPECT_EQ(SymbolicWeight::compareScaled(nullptr, 1, &one, 1), -1);
    EXPECT_EQ(SymbolicWeight::compareScaled(nullptr, 1, nullptr, 1), 0);
}

TEST(SymbolicWeight, ManyLevelsKeepTheirOrderThroughCopiesAndMoves) {
    SymbolicWeight weight;
    for (float level : {1.f, 900.f, 50.f, 750.f, 250.f, 999.f}) {
        weight.add(level, level);
    }
    SymbolicWeight copy = weight;
    SymbolicWeight moved = std::move(weight);
    for (const SymbolicWeight* w : {&copy, &moved}) {
        ASSERT_EQ(w->size(), 6u);
        float previous = 2000;
        for (const SymbolicWeight::Component& component : *w) {
            EXPECT_LT(component.priority, previous);
            EXPECT_EQ(component.value, component.priority);
            previous = component.priority;
        }
    }
    EXPECT_EQ(moved.valueAt(750), 750);
    EXPECT_EQ(moved.valueAt(500), 0);
    moved.addScaled(copy, -1);
    EXPECT_TRUE(moved.isZero());
    EXPECT_EQ(copy.description(), "{999: 999, 900: 900, 750: 750, 250: 250, 50: 50, 1: 1}");
}
