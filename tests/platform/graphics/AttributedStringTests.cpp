#include "Canvas.hpp"

#include "platform/foundation/Log.hpp"
#include "platform/graphics/Appearance.hpp"
#include "platform/graphics/Color.hpp"
#include "platform/graphics/Font.hpp"
#include "platform/graphics/FontManager.hpp"
#include "platform/graphics/MutableAttributedString.hpp"
#include "platform/graphics/MutableParagraphStyle.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace ns;

namespace {

Dictionary fontAttributes(double size = 13) {
    return {{FontAttributeName, Font::systemFontOfSize(size)}};
}

Dictionary withStyle(Dictionary attributes, const std::function<void(MutableParagraphStyle&)>& configure) {
    auto style = MutableParagraphStyle::make();
    configure(*style);
    attributes[ParagraphStyleAttributeName] = style;
    return attributes;
}

// Columns and rows of the canvas where any ink (alpha > 0) fell.
struct Ink {
    int left = 1 << 20, right = -1, top = 1 << 20, bottom = -1, count = 0;
};

Ink inkOf(const Canvas& canvas, int width, int height, const std::function<bool(const RGBA&)>& isInk) {
    Ink ink;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            if (isInk(canvas.pixel(x, y))) {
                ink.left = std::min(ink.left, x);
                ink.right = std::max(ink.right, x);
                ink.top = std::min(ink.top, y);
                ink.bottom = std::max(ink.bottom, y);
                ++ink.count;
            }
    return ink;
}

bool anyInk(const RGBA& p) {
    return p.a > 0;
}

} // namespace

TEST(AttributedString, RunsAndEffectiveRanges) {
    auto text = MutableAttributedString::make("Hello world", fontAttributes());
    text->addAttribute(ForegroundColorAttributeName, Color::redColor(), {6, 5});
    ASSERT_EQ(text->runs().size(), 2u);
    Range range;
    auto attributes = text->attributesAtIndex(7, &range);
    EXPECT_EQ(range, (Range{6, 5}));
    EXPECT_EQ(attributes.size(), 2u);
    // The font is the same over both runs: its effective range is the whole text.
    EXPECT_TRUE(text->attributeAtIndex(FontAttributeName, 8, &range).objectAs<Font>());
    EXPECT_EQ(range, (Range{0, 11}));
    EXPECT_TRUE(text->attributeAtIndex(ForegroundColorAttributeName, 2, &range).isNil());
    EXPECT_EQ(range, (Range{0, 6}));

    std::vector<Range> seen;
    text->enumerateAttributesInRange({3, 6},
                                     [&](const Dictionary&, Range part, bool&) { seen.push_back(part); });
    EXPECT_EQ(seen, (std::vector<Range>{{3, 3}, {6, 3}}));
    auto sub = text->attributedSubstringFromRange({4, 4});
    EXPECT_EQ(sub->string(), "o wo");
    EXPECT_EQ(sub->runs().size(), 2u);
    EXPECT_EQ(sub->runs()[1].location, 2u);

    LogCapture log;
    EXPECT_TRUE(text->attributesAtIndex(11).empty());
    EXPECT_FALSE(text->attributedSubstringFromRange({8, 4}));
    text->addAttribute(UnderlineStyleAttributeName, 1, {10, 2});
    EXPECT_TRUE(log.contains("out of bounds"));
    EXPECT_EQ(text->runs().size(), 2u);
}

TEST(AttributedString, EditingKeepsAttributesInPlace) {
    auto bold = Dictionary{{FontAttributeName, Font::boldSystemFontOfSize(13)}};
    auto text = MutableAttributedString::make("ac", fontAttributes());
    text->replaceCharactersInRange({1, 0}, "b"); // inherits from the character before
    EXPECT_EQ(text->string(), "abc");
    EXPECT_EQ(text->runs().size(), 1u);
    text->appendAttributedString(AttributedString::make("D", bold));
    text->insertAttributedString(AttributedString::make("_", bold), 0);
    EXPECT_EQ(text->string(), "_abcD");
    ASSERT_EQ(text->runs().size(), 3u);
    EXPECT_EQ(text->runs()[1].location, 1u);
    EXPECT_EQ(text->runs()[2].location, 4u);

    text->deleteCharactersInRange({0, 1});
    EXPECT_EQ(text->string(), "abcD");
    EXPECT_EQ(text->runs().size(), 2u);
    text->replaceCharactersInRange({3, 1}, "xyz"); // takes the replaced character's attributes
    EXPECT_EQ(text->string(), "abcxyz");
    EXPECT_TRUE(text->attributesAtIndex(5) == bold);
    text->setAttributes(bold, {0, 3}); // now one run again
    EXPECT_EQ(text->runs().size(), 1u);
    text->removeAttribute(FontAttributeName, {1, 1});
    EXPECT_EQ(text->runs().size(), 3u);
    EXPECT_TRUE(text->attributesAtIndex(1).empty());
    text->addAttributes(bold, {0, 6});
    EXPECT_EQ(text->runs().size(), 1u);

    // Appending the string to itself, and replacing at the start of an empty string.
    text->appendAttributedString(text);
    EXPECT_EQ(text->string(), "abcxyzabcxyz");
    auto empty = MutableAttributedString::make();
    empty->replaceCharactersInRange({0, 0}, "new");
    EXPECT_TRUE(empty->attributesAtIndex(0).empty());
    empty->appendAttributedString(nullptr);
    empty->setAttributedString(AttributedString::make(""));
    EXPECT_EQ(empty->length(), 0u);
    EXPECT_TRUE(empty->runs().empty());
}

TEST(AttributedString, EqualityAndDescription) {
    auto a = AttributedString::make("Hi", fontAttributes());
    EXPECT_TRUE(a->isEqual(*AttributedString::make("Hi", fontAttributes())));
    EXPECT_FALSE(a->isEqual(*AttributedString::make("Hi", fontAttributes(12))));
    EXPECT_FALSE(a->isEqual(*AttributedString::make("Ho", fontAttributes())));
    EXPECT_TRUE(a->mutableCopy()->isEqual(*a));
    EXPECT_EQ(a->description(), "Hi{\n    NSFont = DejaVuSans 13.00 pt.;\n}");
}

TEST(AttributedString, MeasuresLinesAndParagraphs) {
    auto font = Font::systemFontOfSize(13);
    double lineHeight = font->ascender() - font->descender();
    auto one = AttributedString::make("Hello", fontAttributes());
    Size size = one->size();
    EXPECT_GT(size.width, 20);
    EXPECT_LT(size.width, 50);
    EXPECT_NEAR(size.height, lineHeight, 1.0);

    EXPECT_NEAR(AttributedString::make("Hello\nHello", fontAttributes())->size().height, 2 * size.height,
                0.01);
    // A trailing line break opens an empty last line.
    EXPECT_NEAR(AttributedString::make("Hello\n", fontAttributes())->size().height, 2 * size.height, 0.01);
    EXPECT_EQ(AttributedString::make("")->size(), (Size{}));
    // Without a font attribute the default text font (12 pt) is used.
    EXPECT_LT(AttributedString::make("Hello")->size().width, size.width);
    auto bold = Dictionary{{FontAttributeName, Font::boldSystemFontOfSize(13)}};
    EXPECT_GT(AttributedString::make("Hello", bold)->size().width, size.width);
    auto kerned = fontAttributes();
    kerned[KernAttributeName] = 2.0;
    // Kerning opens the four gaps between the five letters.
    EXPECT_NEAR(AttributedString::make("Hello", kerned)->size().width, size.width + 8, 0.5);
}

TEST(AttributedString, ParagraphSpacingFallsBetweenParagraphs) {
    auto spaced = withStyle(fontAttributes(), [](MutableParagraphStyle& s) { s.setParagraphSpacing(5); });
    double single = AttributedString::make("One", spaced)->size().height;
    double two = AttributedString::make("One\nTwo", spaced)->size().height;
    EXPECT_NEAR(two, 2 * single + 5, 0.01);
    auto before =
        withStyle(fontAttributes(), [](MutableParagraphStyle& s) { s.setParagraphSpacingBefore(3); });
    EXPECT_NEAR(AttributedString::make("One\nTwo", before)->size().height, 2 * single + 3, 0.01);
    auto lines = withStyle(fontAttributes(), [](MutableParagraphStyle& s) { s.setLineSpacing(4); });
    auto wrapped = AttributedString::make("one two three four five six", lines);
    Rect r = wrapped->boundingRectWithSize({60, 1000}, StringDrawingUsesLineFragmentOrigin);
    auto plain = AttributedString::make("one two three four five six", fontAttributes());
    Rect p = plain->boundingRectWithSize({60, 1000}, StringDrawingUsesLineFragmentOrigin);
    int lineCount = static_cast<int>(std::lround(p.height() / single));
    EXPECT_GE(lineCount, 3);
    EXPECT_NEAR(r.height(), p.height() + 4 * (lineCount - 1), 0.01);
}

TEST(AttributedString, MeasuredHeightGrowsWithWrapping) {
    auto text = AttributedString::make("The quick brown fox jumps over the lazy dog", fontAttributes());
    Size unwrapped = text->size();
    Rect wide = text->boundingRectWithSize({1000, 1000}, StringDrawingUsesLineFragmentOrigin);
    EXPECT_EQ(wide.size, unwrapped);
    double previousHeight = unwrapped.height;
    for (double width : {200.0, 120.0, 60.0}) {
        Rect rect = text->boundingRectWithSize({width, 1e308}, StringDrawingUsesLineFragmentOrigin);
        EXPECT_EQ(rect.origin, (Point{0, 0}));
        EXPECT_LE(rect.width(), width);
        EXPECT_GT(rect.height(), previousHeight) << width;
        previousHeight = rect.height();
    }
    // A word longer than the width breaks between characters rather than overflowing.
    auto word = AttributedString::make("Incomprehensibilities", fontAttributes());
    Rect narrow = word->boundingRectWithSize({40, 1000}, StringDrawingUsesLineFragmentOrigin);
    EXPECT_LE(narrow.width(), 40);
    EXPECT_GT(narrow.height(), word->size().height);
    // Width 0 or not finite means unbounded.
    EXPECT_EQ(text->boundingRectWithSize({0, 0}, StringDrawingUsesLineFragmentOrigin).size, unwrapped);
    EXPECT_EQ(text->boundingRectWithSize({INFINITY, 0}, StringDrawingUsesLineFragmentOrigin).size, unwrapped);
    // So is the largest finite width, as callers pass when they mean "no limit".
    Size largest{std::numeric_limits<double>::max(), std::numeric_limits<double>::max()};
    EXPECT_EQ(text->boundingRectWithSize(largest, 3).size, unwrapped);
}

TEST(AttributedString, TruncationKeepsOneLinePerParagraph) {
    auto tail = withStyle(fontAttributes(), [](MutableParagraphStyle& s) {
        s.setLineBreakMode(LineBreakMode::ByTruncatingTail);
    });
    auto text = AttributedString::make("The quick brown fox jumps over the lazy dog", tail);
    double line = AttributedString::make("x", fontAttributes())->size().height;
    Rect rect = text->boundingRectWithSize({80, 1000}, StringDrawingUsesLineFragmentOrigin);
    EXPECT_NEAR(rect.height(), line, 0.01);
    EXPECT_LE(rect.width(), 80);
    auto clipped = withStyle(fontAttributes(),
                             [](MutableParagraphStyle& s) { s.setLineBreakMode(LineBreakMode::ByClipping); });
    Rect clip = AttributedString::make("The quick brown fox", clipped)->boundingRectWithSize({40, 100}, 1);
    EXPECT_NEAR(clip.height(), line, 0.01);
    EXPECT_GT(clip.width(), 40);
}

TEST(AttributedString, BaselineRectangleWithoutLineFragmentOrigin) {
    auto font = Font::systemFontOfSize(13);
    auto text = AttributedString::make("Hello\nworld", fontAttributes());
    Rect rect = text->boundingRectWithSize({0, 0}, 0);
    EXPECT_NEAR(rect.y(), font->descender(), 0.5);
    EXPECT_NEAR(rect.height(), text->attributedSubstringFromRange({0, 5})->size().height, 0.01);
    Rect leading = text->boundingRectWithSize({0, 0}, StringDrawingUsesLineFragmentOrigin |
                                                          StringDrawingUsesFontLeading);
    EXPECT_NEAR(leading.height(), text->size().height + 2 * font->leading(), 0.01);
}

TEST(AttributedString, DrawInRectStartsAtTheTopAndClips) {
    for (bool flipped : {false, true}) {
        Canvas canvas(80, 40, flipped);
        auto attributes = fontAttributes();
        attributes[ForegroundColorAttributeName] = Color::redColor();
        auto text = AttributedString::make("Hello", attributes);
        Rect rect{10, flipped ? 5.0 : 15.0, 60, 20}; // rows 5 to 25 either way
        text->drawInRect(rect);
        Ink ink = inkOf(canvas, 80, 40, anyInk);
        ASSERT_GT(ink.count, 0) << flipped;
        EXPECT_GE(ink.left, 10);
        EXPECT_GE(ink.top, 5);
        EXPECT_LE(ink.top, 9) << "text hangs from the top of the rectangle";
        EXPECT_LE(ink.bottom, 24);
        // The ink is red, and upright: capitals reach higher than the baseline descends.
        auto sample = canvas.pixel(ink.left + 1, (ink.top + ink.bottom) / 2);
        EXPECT_GE(sample.r, sample.g);
    }
    {
        // A rectangle lower than the text shows only its top part.
        Canvas canvas(80, 40);
        AttributedString::make("Hello", fontAttributes(30))->drawInRect({0, 30, 80, 10});
        Ink ink = inkOf(canvas, 80, 40, anyInk);
        EXPECT_GE(ink.top, 0);
        EXPECT_LE(ink.bottom, 9);
    }
}

TEST(AttributedString, AlignmentPlacesTheLine) {
    auto inkFor = [](TextAlignment alignment) {
        Canvas canvas(200, 20);
        auto attributes =
            withStyle(fontAttributes(), [&](MutableParagraphStyle& s) { s.setAlignment(alignment); });
        AttributedString::make("Mid", attributes)->drawInRect({0, 0, 200, 20});
        return inkOf(canvas, 200, 20, anyInk);
    };
    Ink left = inkFor(TextAlignment::Left), centre = inkFor(TextAlignment::Center),
        right = inkFor(TextAlignment::Right);
    EXPECT_LT(left.left, 5);
    EXPECT_NEAR((centre.left + centre.right) / 2.0, 100, 3);
    EXPECT_GT(right.right, 194);
}

TEST(AttributedString, DrawAtPointPutsTheTextAboveThePointUnlessFlipped) {
    auto text = AttributedString::make("Hg", fontAttributes(20));
    double height = text->size().height;
    for (bool flipped : {false, true}) {
        Canvas canvas(60, 60, flipped);
        text->drawAtPoint({5, 10});
        // Unflipped, the box runs from y 10 up: rows 50 - height to 50; flipped, rows 10 down.
        Ink ink = inkOf(canvas, 60, 60, anyInk);
        EXPECT_GE(ink.top, flipped ? 10 : int(50 - height)) << flipped;
        EXPECT_LE(ink.bottom, flipped ? int(10 + height) : 50) << flipped;
    }
}

TEST(AttributedString, ColoursResolveWhenDrawnAndDecorationsShow) {
    auto attributes = fontAttributes(20);
    attributes[ForegroundColorAttributeName] = Color::textColor();
    auto text = AttributedString::make("TEXT", attributes);
    auto darkest = [](const Canvas& canvas) {
        int best = 0;
        for (int y = 0; y < 30; ++y)
            for (int x = 0; x < 80; ++x)
                best = std::max(best, canvas.pixel(x, y).a);
        return best;
    };
    {
        Canvas canvas(80, 30);
        Appearance::appearanceNamed(AppearanceNameDarkAqua)->performAsCurrentDrawingAppearance([&] {
            text->drawInRect({0, 0, 80, 30});
        });
        Ink white = inkOf(canvas, 80, 30, [](const RGBA& p) { return p.a > 200 && p.r > 200 && p.g > 200; });
        EXPECT_GT(white.count, 20);
        EXPECT_GT(darkest(canvas), 200);
    }
    {
        Canvas plain(80, 30), struck(80, 30);
        GraphicsContext::setCurrentContext(plain.context);
        text->drawInRect({0, 0, 80, 30});
        auto strikeAttributes = attributes;
        strikeAttributes[StrikethroughStyleAttributeName] = UnderlineStyleSingle;
        GraphicsContext::setCurrentContext(struck.context);
        AttributedString::make("TEXT", strikeAttributes)->drawInRect({0, 0, 80, 30});
        EXPECT_GT(inkOf(struck, 80, 30, anyInk).count, inkOf(plain, 80, 30, anyInk).count);
        // Measuring is not changed by decorations.
        EXPECT_EQ(AttributedString::make("TEXT", strikeAttributes)->size(), text->size());
    }
}

TEST(AttributedString, BadInputIsMeasuredAndDrawnWithoutHarm) {
    // Bytes that are not UTF-8, attributes of the wrong kind, NaN geometry.
    auto text = AttributedString::make(
        "ok \xff\xfe ok", {{FontAttributeName, std::string("Helvetica")},
                           {ParagraphStyleAttributeName, 7},
                           {ForegroundColorAttributeName, Color::colorWithPatternImage(nullptr)}});
    Size size = text->size();
    EXPECT_GT(size.width, 0);
    Canvas canvas(60, 20);
    text->drawInRect({0, 0, 60, 20});
    text->drawInRect({NAN, 0, 60, 20});
    text->drawAtPoint({INFINITY, 0});
    EXPECT_GT(inkOf(canvas, 60, 20, anyInk).count, 0);
    EXPECT_EQ(text->boundingRectWithSize({-10, -10}, StringDrawingUsesLineFragmentOrigin).size, size);
}
