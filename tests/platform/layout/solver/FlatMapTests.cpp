#include "platform/layout/solver/FlatMap.hpp"

#include <gtest/gtest.h>

#include <random>
#include <unordered_map>

using ns::solver::FlatMap;
using ns::solver::Symbol;

namespace {

// Drives a FlatMap and std::unordered_map through the same random inserts and erases (keys from a
// small range, so probe runs collide and wrap around the table) and checks they always agree.
template <typename Map>
void agreeWithReference(unsigned seed) {
    std::mt19937 random(seed);
    Map map;
    std::unordered_map<Symbol, int> reference;
    for (int step = 0; step < 4000; ++step) {
        Symbol key = std::uniform_int_distribution<Symbol>(0, 40)(random);
        if (random() % 3 == 0) {
            ASSERT_EQ(map.erase(key), reference.erase(key) == 1) << "step " << step;
        } else {
            auto [value, inserted] = map.findOrInsert(key);
            ASSERT_EQ(inserted, !reference.contains(key)) << "step " << step;
            *value = step;
            reference[key] = step;
        }
        ASSERT_EQ(map.size(), reference.size());
        if (step % 97 == 0) {
            for (Symbol probe = 0; probe <= 40; ++probe) {
                const int* found = map.find(probe);
                ASSERT_EQ(found != nullptr, reference.contains(probe)) << "key " << probe;
                if (found) {
                    ASSERT_EQ(*found, reference[probe]);
                }
            }
            std::size_t visited = 0;
            map.forEach([&](Symbol key, int value) {
                ++visited;
                EXPECT_EQ(reference.at(key), value);
            });
            ASSERT_EQ(visited, reference.size());
        }
    }
}

} // namespace

TEST(FlatMap, AgreesWithAReferenceMapThroughInsertsAndErases) {
    for (unsigned seed = 1; seed <= 5; ++seed) {
        agreeWithReference<FlatMap<Symbol, int>>(seed);
        agreeWithReference<FlatMap<Symbol, int, 4>>(seed);
    }
}

TEST(FlatMap, CopiesAreIndependentAndMovedFromMapsAreEmpty) {
    for (int count : {2, 20}) { // inside the inline slots, and spilled to the heap
        FlatMap<Symbol, int, 4> original;
        for (int i = 0; i < count; ++i) {
            *original.findOrInsert(i).first = i * 10;
        }
        FlatMap<Symbol, int, 4> copy = original;
        *copy.find(1) = -1;
        EXPECT_EQ(*original.find(1), 10);

        FlatMap<Symbol, int, 4> moved = std::move(original);
        EXPECT_EQ(moved.size(), static_cast<std::size_t>(count));
        EXPECT_EQ(*moved.find(count - 1), (count - 1) * 10);
        EXPECT_TRUE(original.empty()); // NOLINT(bugprone-use-after-move): it must be reusable
        *original.findOrInsert(7).first = 70;
        EXPECT_EQ(*original.find(7), 70);
    }
}

TEST(FlatMap, PointerKeys) {
    int a = 0;
    int b = 0;
    FlatMap<const void*, int> map;
    *map.findOrInsert(&a).first = 1;
    *map.findOrInsert(&b).first = 2;
    EXPECT_EQ(*map.find(&a), 1);
    EXPECT_EQ(*map.find(&b), 2);
    EXPECT_TRUE(map.erase(&a));
    EXPECT_FALSE(map.contains(&a));
    EXPECT_EQ(*map.find(&b), 2);
}
