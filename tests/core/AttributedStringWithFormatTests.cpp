#include "core/AttributedStringWithFormat.hpp"

#include "platform/graphics/Color.hpp"
#include "platform/graphics/Font.hpp"

#include <gtest/gtest.h>

using corvane::core::attributedStringWithFormat;

TEST(AttributedStringWithFormat, AttributesCoverTheWholeFormattedText) {
    ns::Dictionary attributes{{ns::FontAttributeName, ns::Font::systemFontOfSize(11)},
                              {ns::ForegroundColorAttributeName, ns::Color::darkGrayColor()}};
    auto value = ns::Value(std::string("Totals"));
    auto text = attributedStringWithFormat("%@: %d items", attributes, value, 3);
    ASSERT_TRUE(text);
    EXPECT_EQ(text->string(), "Totals: 3 items");
    ASSERT_EQ(text->runs().size(), 1u);
    ns::Range range;
    EXPECT_TRUE(text->attributesAtIndex(text->length() - 1, &range) == attributes);
    EXPECT_EQ(range, (ns::Range{0, text->length()}));
    // The result can be extended.
    text->appendAttributedString(ns::AttributedString::make("!"));
    EXPECT_EQ(text->runs().size(), 2u);

    EXPECT_EQ(attributedStringWithFormat("%@", attributes, nullptr)->string(), "(null)");
    auto empty = attributedStringWithFormat("", attributes);
    EXPECT_EQ(empty->length(), 0u);
    EXPECT_TRUE(empty->runs().empty());
}
