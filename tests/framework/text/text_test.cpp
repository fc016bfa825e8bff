#include "text/text.h"

#include <gtest/gtest.h>

TEST(Text, SplitKeepsEmptyPieces)
{
    EXPECT_EQ(text::split("a,,b,", ','), (std::vector<std::string>{"a", "", "b", ""}));
    EXPECT_EQ(text::split("", ','), std::vector<std::string>{""});
}

TEST(Text, JoinIsTheOppositeOfSplit)
{
    EXPECT_EQ(text::join({"a", "", "b"}, ", "), "a, , b");
    EXPECT_EQ(text::join({}, ","), "");
}

TEST(Text, TrimTakesBlanksOfBothEndsOnly)
{
    EXPECT_EQ(text::trim(" \t a b\r\n"), "a b");
    EXPECT_EQ(text::trim(" \r\n"), "");
}

TEST(Text, CaseChangesAsciiLettersOnly)
{
    EXPECT_EQ(text::toLower("ABz\xC3\x84"), "abz\xC3\x84");
    EXPECT_EQ(text::toUpper("abZ\xC3\xA4"), "ABZ\xC3\xA4");
}

TEST(Text, StartsWithComparesTheBeginning)
{
    EXPECT_TRUE(text::startsWith("SUCCESS-a", "SUCCESS-"));
    EXPECT_FALSE(text::startsWith("SUC", "SUCCESS-"));
}

TEST(Text, VisibleShowsControlCharactersAndKeepsUtf8)
{
    EXPECT_EQ(text::visible("a\x1B[31m\n\x7F"), "a\\x1B[31m\\x0A\\x7F");
    EXPECT_EQ(text::visible("\xE6\xBC\xA2\xC3\xA9"), "\xE6\xBC\xA2\xC3\xA9");
    EXPECT_EQ(text::visible("\xC2\x9B"), "\\xC2\\x9B") << "U+009B begins a control sequence on some terminals";
    EXPECT_EQ(text::visible("\xE2\x80\xAE"), "\\xE2\\x80\\xAE") << "U+202E turns the writing direction";
}

TEST(Text, VisibleShowsBytesThatAreNoUtf8)
{
    EXPECT_EQ(text::visible("\xFF\x80"), "\\xFF\\x80");
    EXPECT_EQ(text::visible("\xC0\xAF"), "\\xC0\\xAF") << "overlong";
    EXPECT_EQ(text::visible("\xED\xA0\x80"), "\\xED\\xA0\\x80") << "surrogate";
    EXPECT_EQ(text::visible("\xF4\x90\x80\x80"), "\\xF4\\x90\\x80\\x80") << "above U+10FFFF";
    EXPECT_EQ(text::visible("\xE6\xBC"), "\\xE6\\xBC") << "cut off";
    EXPECT_EQ(text::visible(std::string("\0", 1)), "\\x00");
}

TEST(Text, ValidXmlReplacesWhatXmlForbids)
{
    EXPECT_EQ(text::validXml("a\tb\n\x01\xFF"), "a\tb\n\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(text::validXml("\xEF\xBF\xBF"), "\xEF\xBF\xBD") << "U+FFFF";
    EXPECT_EQ(text::validXml("\xF0\x9F\x98\x80"), "\xF0\x9F\x98\x80");
}

TEST(Text, DisplayWidthCountsColumns)
{
    EXPECT_EQ(text::displayWidth("abc"), 3U);
    EXPECT_EQ(text::displayWidth("\xE6\xBC\xA2"), 2U);
    EXPECT_EQ(text::displayWidth("e\xCC\x81"), 1U) << "combining accent";
    EXPECT_EQ(text::displayWidth("\xC3\xA9"), 1U);
    EXPECT_EQ(text::displayWidth("\xF0\x9F\x98\x80"), 2U);
    EXPECT_EQ(text::displayWidth(""), 0U);
}
