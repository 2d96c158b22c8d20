#include "platform/graphics/Font.hpp"
#include "platform/graphics/FontManager.hpp"
#include "platform/graphics/MutableParagraphStyle.hpp"

#include <gtest/gtest.h>

#include <algorithm>

using namespace ns;

TEST(Font, StandardFontsAndSizes) {
    EXPECT_EQ(Font::systemFontSize(), 13);
    EXPECT_EQ(Font::smallSystemFontSize(), 11);
    EXPECT_EQ(Font::labelFontSize(), 10);
    auto system = Font::systemFontOfSize(0);
    ASSERT_TRUE(system);
    EXPECT_EQ(system->pointSize(), 13);
    EXPECT_EQ(system->familyName(), "DejaVu Sans");
    EXPECT_EQ(system->fontName(), "DejaVuSans");
    EXPECT_EQ(system->description(), "DejaVuSans 13.00 pt.");
    EXPECT_EQ(Font::systemFontOfSize(-4)->pointSize(), 13);
    EXPECT_EQ(Font::systemFontOfSize(13), system);
    EXPECT_EQ(Font::controlContentFontOfSize(Font::systemFontSize()), system);
    EXPECT_EQ(Font::menuFontOfSize(0)->pointSize(), 13);
    EXPECT_EQ(Font::menuBarFontOfSize(0)->pointSize(), 14);
    EXPECT_EQ(Font::labelFontOfSize(0)->pointSize(), 10);
    EXPECT_EQ(Font::boldSystemFontOfSize(0)->fontName(), "DejaVuSans-Bold");
    EXPECT_TRUE(Font::userFixedPitchFontOfSize(0)->isFixedPitch());
    EXPECT_EQ(Font::defaultTextFont()->pointSize(), 12);

    EXPECT_EQ(Font::systemFontSizeForControlSize(ControlSize::Regular), 13);
    EXPECT_EQ(Font::systemFontSizeForControlSize(ControlSize::Small), 11);
    EXPECT_EQ(Font::systemFontSizeForControlSize(ControlSize::Mini), 9);
    EXPECT_EQ(Font::systemFontSizeForControlSize(static_cast<ControlSize>(42)), 13);
}

TEST(Font, ByPostScriptOrFamilyName) {
    auto bold = Font::fontWithName("DejaVuSans-Bold", 12);
    ASSERT_TRUE(bold);
    EXPECT_EQ(bold->face().weight, 700);
    EXPECT_EQ(bold->displayName(), "DejaVu Sans Bold");
    auto family = Font::fontWithName("DejaVu Serif", 0);
    ASSERT_TRUE(family);
    EXPECT_EQ(family->fontName(), "DejaVuSerif");
    EXPECT_EQ(family->pointSize(), 12);
    EXPECT_FALSE(Font::fontWithName("No Such Font", 12));
    EXPECT_FALSE(Font::fontWithName("", 12));
    EXPECT_EQ(bold->fontWithSize(20)->fontName(), "DejaVuSans-Bold");
    EXPECT_TRUE(bold->isEqual(*Font::fontWithName("DejaVuSans-Bold", 12)));
    EXPECT_FALSE(bold->isEqual(*bold->fontWithSize(13)));
}

TEST(Font, MetricsScaleWithSize) {
    auto font = Font::systemFontOfSize(20);
    EXPECT_GT(font->ascender(), 15);
    EXPECT_LT(font->descender(), -3);
    EXPECT_GE(font->leading(), 0);
    EXPECT_GT(font->capHeight(), font->xHeight());
    EXPECT_LT(font->capHeight(), font->ascender());
    EXPECT_GT(font->xHeight(), 5);
    EXPECT_NEAR(font->defaultLineHeight(), font->ascender() - font->descender() + font->leading(), 1e-9);
    EXPECT_NEAR(Font::systemFontOfSize(10)->ascender() * 2, font->ascender(), 0.2);
}

TEST(FontManager, TraitConversions) {
    auto manager = FontManager::sharedFontManager();
    EXPECT_EQ(manager, FontManager::sharedFontManager());
    auto regular = Font::systemFontOfSize(13);
    auto bold = manager->convertFontToHaveTrait(regular, BoldFontMask);
    ASSERT_TRUE(bold);
    EXPECT_EQ(bold->fontName(), "DejaVuSans-Bold");
    EXPECT_EQ(bold->pointSize(), 13);
    EXPECT_EQ(manager->convertFontToHaveTrait(bold, BoldFontMask), bold);
    EXPECT_EQ(manager->convertFontToHaveTrait(bold, UnboldFontMask), regular);
    EXPECT_EQ(manager->convertFontToNotHaveTrait(bold, BoldFontMask), regular);
    auto italic = manager->convertFontToHaveTrait(bold, ItalicFontMask);
    EXPECT_EQ(italic->fontName(), "DejaVuSans-BoldOblique");
    EXPECT_EQ(manager->traitsOfFont(italic), BoldFontMask | ItalicFontMask);
    EXPECT_EQ(manager->weightOfFont(regular), 5);
    EXPECT_EQ(manager->weightOfFont(bold), 9);
    EXPECT_TRUE(manager->traitsOfFont(Font::userFixedPitchFontOfSize(0)) & FixedPitchFontMask);

    // A family without a bold face leaves the font as it is; nil stays nil.
    auto math = Font::fontWithName("DejaVu Math TeX Gyre", 12);
    if (math) {
        EXPECT_EQ(manager->convertFontToHaveTrait(math, BoldFontMask), math);
    }
    EXPECT_FALSE(manager->convertFontToHaveTrait(nullptr, BoldFontMask));
    EXPECT_EQ(manager->convertFontToHaveTrait(regular, SmallCapsFontMask), regular);

    EXPECT_EQ(manager->convertFontToFamily(bold, "DejaVu Serif")->fontName(), "DejaVuSerif-Bold");
    EXPECT_EQ(manager->convertFontToFamily(bold, "No Such Family"), bold);
    EXPECT_EQ(manager->convertFontToSize(bold, 20)->pointSize(), 20);
    EXPECT_EQ(manager->fontWithFamily("DejaVu Sans", BoldFontMask, 5, 11)->fontName(), "DejaVuSans-Bold");
    EXPECT_FALSE(manager->fontWithFamily("No Such Family", 0, 5, 11));
    EXPECT_TRUE(manager->fontNamedHasTraits("DejaVuSans-Bold", BoldFontMask));
    EXPECT_FALSE(manager->fontNamedHasTraits("DejaVuSans", BoldFontMask));
    auto families = manager->availableFontFamilies();
    EXPECT_NE(std::find(families.begin(), families.end(), "DejaVu Sans"), families.end());
}

TEST(ParagraphStyle, DefaultsCopiesAndEquality) {
    auto standard = ParagraphStyle::defaultParagraphStyle();
    EXPECT_EQ(standard, ParagraphStyle::defaultParagraphStyle());
    EXPECT_EQ(standard->alignment(), TextAlignment::Natural);
    EXPECT_EQ(standard->lineBreakMode(), LineBreakMode::ByWordWrapping);
    EXPECT_EQ(standard->paragraphSpacing(), 0);

    auto centred = MutableParagraphStyle::make();
    centred->setParagraphStyle(standard);
    centred->setAlignment(TextAlignment::Center);
    centred->setParagraphSpacing(5);
    auto right = standard->mutableCopy();
    right->setAlignment(TextAlignment::Right);
    EXPECT_EQ(centred->alignment(), TextAlignment::Center);
    EXPECT_EQ(right->alignment(), TextAlignment::Right);
    EXPECT_EQ(standard->alignment(), TextAlignment::Natural);
    EXPECT_NE(centred, right);

    auto copy = centred->copy();
    EXPECT_TRUE(copy->isEqual(*centred));
    EXPECT_EQ(copy->hash(), centred->hash());
    centred->setParagraphSpacing(-3);
    EXPECT_EQ(centred->paragraphSpacing(), 0);
    EXPECT_FALSE(copy->isEqual(*centred));
    EXPECT_EQ(copy->paragraphSpacing(), 5);
    centred->setParagraphStyle(nullptr);
    EXPECT_EQ(centred->alignment(), TextAlignment::Center);
}
