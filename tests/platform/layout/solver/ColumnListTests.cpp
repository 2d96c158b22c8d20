#include "platform/layout/solver/ColumnList.hpp"

#include <gtest/gtest.h>

#include <vector>

using ns::solver::ColumnList;
using ns::solver::RowId;

TEST(ColumnList, GrowsPastItsInlineSlotsAndShrinksBack) {
    ColumnList list;
    std::vector<RowId> expected;
    for (RowId id = 0; id < 10; ++id) {
        list.push_back(id * 3);
        expected.push_back(id * 3);
        ASSERT_EQ(std::vector<RowId>(list.begin(), list.end()), expected);
    }
    list[4] = 99;
    EXPECT_EQ(list[4], 99u);
    while (!list.empty()) {
        list.pop_back();
    }
    list.push_back(5);
    EXPECT_EQ(list.size(), 1u);
    EXPECT_EQ(list.back(), 5u);
}

TEST(ColumnList, CopiesAndMovesKeepTheirRows) {
    for (RowId count : {2u, 9u}) {
        ColumnList list;
        for (RowId id = 0; id < count; ++id) {
            list.push_back(id);
        }
        ColumnList copy = list;
        copy[0] = 42;
        EXPECT_EQ(list[0], 0u);
        ColumnList moved = std::move(list);
        EXPECT_EQ(moved.size(), count);
        EXPECT_EQ(moved.back(), count - 1);
        EXPECT_TRUE(list.empty()); // NOLINT(bugprone-use-after-move)
        list = moved;
        EXPECT_EQ(list.size(), count);
    }
}
