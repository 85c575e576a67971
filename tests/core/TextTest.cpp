#include "core/Text.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <initializer_list>
#include <string>

#include "tests/core/Caught.h"

namespace {

char Latin1(int Byte) { return static_cast<char>(Byte); }

TEST(TextTest, SpacesIncludeTheNonBreakingBlank) {
  for (const char C : std::string(" \f\n\r\t\v")) EXPECT_TRUE(isSpace(C)) << int(C);
  EXPECT_TRUE(isSpace(Latin1(0xA0))) << "a non-breaking blank ends a word";
  EXPECT_FALSE(isSpace('\0'));
  EXPECT_FALSE(isSpace('x'));
  EXPECT_FALSE(isSpace(Latin1(0x85)));
}

TEST(TextTest, LettersAreAsciiAndTheGermanUmlauts) {
  EXPECT_TRUE(isLetter('A'));
  EXPECT_TRUE(isLetter('z'));
  for (const int Umlaut : {0xE4, 0xF6, 0xFC, 0xC4, 0xD6, 0xDC, 0xDF}) {
    EXPECT_TRUE(isLetter(Latin1(Umlaut))) << Umlaut;
  }
  for (const int Other : std::initializer_list<int>{'@', '[', '`', '{', '0', '_', 0xE9, 0xC0, 0xFF}) {
    EXPECT_FALSE(isLetter(Latin1(Other))) << Other;
  }
}

TEST(TextTest, CaseMappingsFollowTheLatin1Ranges) {
  EXPECT_EQ(toLowerChar('A'), 'a');
  EXPECT_EQ(toLowerChar(Latin1(0xC4)), Latin1(0xE4));
  EXPECT_EQ(toLowerChar(Latin1(0xD7)), Latin1(0xF7)) << "the multiplication sign is not spared";
  EXPECT_EQ(toLowerChar(Latin1(0xDE)), Latin1(0xFE));
  for (const int Kept : std::initializer_list<int>{'@', '[', 'a', '1', 0xBF, 0xDF, 0xE4}) {
    EXPECT_EQ(toLowerChar(Latin1(Kept)), Latin1(Kept)) << Kept;
  }
  EXPECT_EQ(toUpperChar('z'), 'Z');
  EXPECT_EQ(toUpperChar(Latin1(0xE0)), Latin1(0xC0));
  EXPECT_EQ(toUpperChar(Latin1(0xF7)), Latin1(0xD7));
  EXPECT_EQ(toUpperChar(Latin1(0xFE)), Latin1(0xDE));
  for (const int Kept : std::initializer_list<int>{'`', '{', 'A', '1', 0xDF, 0xFF, 0xC4}) {
    EXPECT_EQ(toUpperChar(Latin1(Kept)), Latin1(Kept)) << Kept;
  }
}

TEST(TextTest, LowerTextAndCapitalizeWorkInPlace) {
  std::string Text = "\xC4rger MIT \xDC" "BEL";
  std::string& Lowered = lowerText(Text);
  EXPECT_EQ(&Lowered, &Text);
  EXPECT_EQ(Text, "\xE4rger mit \xFC" "bel");
  EXPECT_EQ(&capitalize(Text), &Text);
  EXPECT_EQ(Text, "\xC4rger mit \xFC" "bel");
  std::string Empty;
  EXPECT_EQ(capitalize(Empty), "");
}

TEST(TextTest, CompareNoCaseIgnoresCaseAndOrdersAsStrcmp) {
  EXPECT_EQ(compareNoCase("\xC4", "\xE4"), 0);
  for (int Byte = 1; Byte < 256; ++Byte) {
    const std::string Lower(1, toLowerChar(Latin1(Byte)));
    const std::string Upper(1, toUpperChar(Latin1(Byte)));
    EXPECT_EQ(compareNoCase(Lower, Upper), 0) << Byte;
  }
  EXPECT_LT(compareNoCase("abc", "ABD"), 0);
  EXPECT_GT(compareNoCase("ABD", "abc"), 0);
  EXPECT_LT(compareNoCase("ab", "abc"), 0) << "the end compares as a terminator";
  EXPECT_GT(compareNoCase("abc", "ab"), 0);
  EXPECT_LT(compareNoCase("a", "\xE4"), 0) << "bytes compare as unsigned";
}

TEST(TextTest, CompareNoCaseStopsAfterCountCharacters) {
  EXPECT_EQ(compareNoCase("abX", "ABy", 2), 0);
  EXPECT_LT(compareNoCase("abX", "ABy", 3), 0);
  EXPECT_LT(compareNoCase("abX", "ABy", -1), 0);
  EXPECT_EQ(compareNoCase("x", "y", 0), 0);
  EXPECT_LT(compareNoCase("ab", "abc", 5), 0);
}

TEST(TextTest, CopyTextKeepsRoomForTheTerminator) {
  EXPECT_EQ(copyText("abcdef", 4), "abc");
  EXPECT_EQ(copyText("abc", 4), "abc");
  EXPECT_EQ(copyText("abc", 3), "ab");
  EXPECT_EQ(copyText("abc", 1), "");
  EXPECT_EQ(Caught([] { copyText("abc", 0); }).Text(), "Count>0");
  EXPECT_EQ(Caught([] { copyText("abc", -1); }).Text(), "Count>0");
}

TEST(TextTest, FormatTextPrintsIntoCountBytes) {
  const std::string Host = "example";
  EXPECT_EQ(formatText(33, "%s:%d", Host, 7171), "example:7171");
  EXPECT_EQ(formatText(33, "%03u %s", 7u, "x"), "007 x");
  EXPECT_EQ(formatText(8, "%s:%d", Host, 7171), "example");
  EXPECT_EQ(formatText(1, "%d", 5), "");
  EXPECT_EQ(formatText(4, "100%%"), "100");
}

TEST(TextTest, FormatTextRefusesAnUnusableBuffer) {
  EXPECT_EQ(Caught([] { formatText(0, "%d", 1); }).Text(), "Count>0");
  EXPECT_EQ(Caught([] { formatText(std::size_t{INT_MAX} + 1, "%d", 1); }).Text(),
            "Count<=INT_MAX");
  const char* NoFormat = nullptr;
  EXPECT_EQ(Caught([&] { formatText(8, NoFormat); }).Text(), "Format!=NULL");
}

TEST(TextTest, TrimTextDropsSpacesAtBothEnds) {
  EXPECT_EQ(trimText(" \t\xA0" "ab c\r\n\v"), "ab c");
  EXPECT_EQ(trimText("abc"), "abc");
  EXPECT_EQ(trimText(" \n\xA0 "), "");
  EXPECT_EQ(trimText(""), "");
}

TEST(TextTest, ShortenTextEndsInDots) {
  const auto Shortened = [](std::string Text, int Length) {
    shortenText(Text, Length);
    return Text;
  };
  EXPECT_EQ(Shortened("abcdef", 5), "ab...");
  EXPECT_EQ(Shortened("abcde", 5), "abcde") << "a text of Length characters stays";
  EXPECT_EQ(Shortened("abcdef", 3), "...");
  EXPECT_EQ(Shortened("abcdef", 2), "..");
  EXPECT_EQ(Shortened("abcdef", 1), ".");
  EXPECT_EQ(Shortened("abcdef", 0), "");
  EXPECT_EQ(Shortened("", 0), "");
}

TEST(TextTest, LineBreakHelpers) {
  std::string Text = "one\r\ntwo\nthree\r";
  lineFeedsToBlanks(Text);
  EXPECT_EQ(Text, "one\r two three\r");
  removeCarriageReturns(Text);
  EXPECT_EQ(Text, "one two three");
  std::string Lines = "\r\r\na\r";
  removeCarriageReturns(Lines);
  EXPECT_EQ(Lines, "\na");
}

TEST(TextTest, FormatNumberGroupsThousands) {
  EXPECT_EQ(formatNumber(32, 1234567), "1,234,567");
  EXPECT_EQ(formatNumber(32, 999), "999");
  EXPECT_EQ(formatNumber(32, 1000), "1,000");
  EXPECT_EQ(formatNumber(32, 100000), "100,000");
  EXPECT_EQ(formatNumber(32, 0), "0");
  EXPECT_EQ(formatNumber(32, INT64_MAX), "9,223,372,036,854,775,807");
  EXPECT_EQ(Caught([] { formatNumber(32, -1); }).Text(), "Number>=0");
}

TEST(TextTest, FormatNumberGroupsOnlyWhatFitsWithItsTerminator) {
  EXPECT_EQ(formatNumber(10, 1234567), "1,234,567");
  EXPECT_EQ(formatNumber(9, 1234567), "1234567");
  EXPECT_EQ(formatNumber(8, 1234567), "1234567");
  EXPECT_EQ(formatNumber(5, 1234567), "1234") << "the plain digits are cut to the buffer";
  EXPECT_EQ(formatNumber(0, 1234567), "");
}

TEST(TextTest, FormatMinutesShowsHoursAndMinutes) {
  EXPECT_EQ(formatMinutes(16, 125), " 2:05");
  EXPECT_EQ(formatMinutes(16, 0), " 0:00");
  EXPECT_EQ(formatMinutes(16, 59), " 0:59");
  EXPECT_EQ(formatMinutes(16, 754), " 12:34");
  EXPECT_EQ(formatMinutes(16, 6000), " 100:00");
  EXPECT_EQ(formatMinutes(4, 125), " 2:");
  EXPECT_EQ(formatMinutes(0, 125), "");
  EXPECT_EQ(Caught([] { formatMinutes(16, -1); }).Text(), "Number >= 0");
}

}  // namespace
