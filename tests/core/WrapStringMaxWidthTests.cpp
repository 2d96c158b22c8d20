#include "core/WrapStringMaxWidth.hpp"

#include "platform/graphics/AttributedString.hpp"

#include <gtest/gtest.h>

#include <sstream>

using corvane::core::wrapStringMaxWidth;

namespace {

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::stringstream stream(text);
    std::string line;
    while (std::getline(stream, line))
        lines.push_back(line);
    if (!text.empty() && text.back() == '\n')
        lines.push_back("");
    return lines;
}

double widthOf(const std::string& line, const ns::Ref<ns::Font>& font) {
    return ns::AttributedString::make(line, {{ns::FontAttributeName, font}})->size().width;
}

} // namespace

TEST(WrapStringMaxWidth, EveryLineFitsAndNoWordIsLost) {
    auto font = ns::Font::systemFontOfSize(13);
    std::string text = "Payslips for the current period are ready to be reviewed and approved";
    for (double width : {300.0, 150.0, 80.0}) {
        std::string wrapped = wrapStringMaxWidth(text, font, width);
        auto lines = linesOf(wrapped);
        EXPECT_GT(lines.size(), 1u) << width;
        for (const auto& line : lines) {
            EXPECT_LE(widthOf(line, font), width) << '"' << line << '"';
            EXPECT_FALSE(line.empty());
            EXPECT_NE(line.back(), ' ');
        }
        // The breaks replaced the spaces they fell on: joining with spaces gives the text back.
        std::string joined;
        for (const auto& line : lines)
            joined += (joined.empty() ? "" : " ") + line;
        EXPECT_EQ(joined, text);
    }
    // Wide enough: unchanged.
    EXPECT_EQ(wrapStringMaxWidth(text, font, 2000), text);
}

TEST(WrapStringMaxWidth, KeepsExistingBreaksAndBreaksLongWords) {
    auto font = ns::Font::systemFontOfSize(13);
    EXPECT_EQ(wrapStringMaxWidth("one\ntwo\n", font, 500), "one\ntwo\n");
    std::string wrapped = wrapStringMaxWidth("first line\nsecond line here", font, 60);
    auto lines = linesOf(wrapped);
    ASSERT_GE(lines.size(), 3u);
    EXPECT_EQ(lines[0], "first line");
    std::string word = "Supercalifragilisticexpialidocious";
    auto pieces = linesOf(wrapStringMaxWidth(word, font, 50));
    EXPECT_GT(pieces.size(), 2u);
    std::string joined;
    for (const auto& piece : pieces) {
        EXPECT_LE(widthOf(piece, font), 50);
        joined += piece;
    }
    EXPECT_EQ(joined, word);
}

TEST(WrapStringMaxWidth, BadInputGivesTheStringBack) {
    auto font = ns::Font::systemFontOfSize(13);
    EXPECT_EQ(wrapStringMaxWidth("a b c", nullptr, 1), "a b c");
    EXPECT_EQ(wrapStringMaxWidth("a b c", font, 0), "a b c");
    EXPECT_EQ(wrapStringMaxWidth("a b c", font, -5), "a b c");
    EXPECT_EQ(wrapStringMaxWidth("a b c", font, NAN), "a b c");
    EXPECT_EQ(wrapStringMaxWidth("", font, 10), "");
    // A larger font needs more lines for the same width.
    std::string text = "alpha beta gamma delta epsilon zeta";
    EXPECT_GT(linesOf(wrapStringMaxWidth(text, ns::Font::systemFontOfSize(20), 120)).size(),
              linesOf(wrapStringMaxWidth(text, ns::Font::systemFontOfSize(10), 120)).size());
}
