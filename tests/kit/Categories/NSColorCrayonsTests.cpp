#include "kit/Categories/NSColor+Crayons.hpp"

#include "kit/Categories/NSColor+Corvane.hpp"
#include "kit/Objects/CVDynamicColor.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <iostream>
#include <set>

using namespace corvane;

namespace {

// "Sea Foam" -> "seafoam": the stem its operation is named by.
std::string stemOf(const std::string& key) {
    std::string stem;
    for (char c : key)
        if (c != ' ')
            stem += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return stem;
}

} // namespace

TEST(Crayons, TheListIsFoundOnceAndKept) {
    auto list = cv_crayonsColorList();
    ASSERT_TRUE(list);
    EXPECT_EQ(list, ns::ColorList::colorListNamed("Crayons"));
    EXPECT_EQ(cv_crayonsColorList(), list);
}

TEST(Crayons, EachOperationAnswersTheListsColourForItsKey) {
    auto list = cv_crayonsColorList();
    ASSERT_TRUE(list);
    EXPECT_EQ(cv_seafoamColor(), list->colorWithKey("Sea Foam"));
    EXPECT_EQ(cv_lavendarColor(), list->colorWithKey("Lavendar"));
    EXPECT_DOUBLE_EQ(cv_snowColor()->whiteComponent(), 1);
    EXPECT_DOUBLE_EQ(cv_tungstenColor()->redComponent(), 0x33 / 255.0);

    std::set<std::string> keysAnswered;
    for (const auto& [name, operation] : cv_crayonOperations()) {
        SCOPED_TRACE(std::string(name));
        auto color = operation();
        ASSERT_TRUE(color);
        for (const std::string& key : list->allKeys())
            if (list->colorWithKey(key) == color) {
                EXPECT_EQ(name, "cv_" + stemOf(key) + "Color");
                keysAnswered.insert(key);
            }
    }
    EXPECT_EQ(keysAnswered.size(), 48u);
    EXPECT_EQ(keysAnswered.size(), list->allKeys().size());
}

// Runs in a process of its own (the list, once found, is kept for the process): without a
// "Crayons" list every crayon is nil and is asked for again; a list that lacks a key leaves
// only that crayon nil.
TEST(CrayonsDeathTest, WithoutTheListCrayonsAreNilAndTheListIsAskedForAgain) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    auto run = [] {
        auto check = [](bool holds, const char* what) {
            if (!holds) {
                std::cerr << "failed: " << what << std::endl;
                std::exit(1);
            }
        };
        ns::ColorList::colorListNamed("Crayons")->removeFile();
        check(!cv_crayonsColorList(), "no list");
        for (const auto& entry : cv_crayonOperations())
            check(!entry.operation(), "every crayon nil");
        auto border = std::dynamic_pointer_cast<CVDynamicColor>(cv_borderColor());
        check(border && !border->aquaColor() && !border->darkAquaColor(), "the pairs hold nil colours");

        auto partial = ns::ColorList::make("Crayons");
        partial->setColor(ns::Color::whiteColor(), "Snow");
        check(cv_crayonsColorList() == partial, "asked again");
        check(cv_snowColor() == ns::Color::whiteColor(), "a present key");
        check(!cv_leadColor(), "a missing key");
        std::exit(0);
    };
    EXPECT_EXIT(run(), ::testing::ExitedWithCode(0), "");
}
