#include "kit/Categories/NSParagraphStyle+Corvane.hpp"

#include <gtest/gtest.h>

TEST(DefaultParagraphStyles, AlignedCopiesOfTheDefaultThatStandAlone) {
    auto centred = corvane::cv_centredDefaultParagraphStyle();
    auto right = corvane::cv_rightDefaultParagraphStyle();
    auto platformDefault = ns::ParagraphStyle::defaultParagraphStyle();
    EXPECT_EQ(centred->alignment(), ns::TextAlignment::Center);
    EXPECT_EQ(right->alignment(), ns::TextAlignment::Right);
    EXPECT_EQ(centred->lineBreakMode(), platformDefault->lineBreakMode());

    auto another = corvane::cv_centredDefaultParagraphStyle();
    EXPECT_NE(another, centred);
    another->setLineSpacing(12);
    another->setAlignment(ns::TextAlignment::Left);
    EXPECT_EQ(centred->lineSpacing(), 0);
    EXPECT_EQ(centred->alignment(), ns::TextAlignment::Center);
    EXPECT_EQ(platformDefault->lineSpacing(), 0);
    EXPECT_EQ(ns::ParagraphStyle::defaultParagraphStyle()->alignment(), platformDefault->alignment());
}
