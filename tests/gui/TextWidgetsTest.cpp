// The text rectangles: fitting with dots and the tooltip, where the lines are
// drawn, wrapping of long messages, and the markup of format texts with its
// tag parser, on the software engine with the built fonts.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "graphics/Fonts.h"
#include "graphics/Graphics.h"
#include "gui/Displays.h"
#include "gui/TextRectangle.h"
#include "tests/gui/Elements.h"
#include "tests/gui/WidgetFixture.h"

namespace {

using guitest::FailureOf;

constexpr TextStyle STYLE{4, 224, 224, 224, LEFT_ALIGN};

int WidthOf(int Font, const std::string& Text) { return TextWidth(Font, Text, WHOLE_TEXT, false); }

std::vector<std::string> TextsOf(const CGUIComposite& Parent) {
  std::vector<std::string> Texts;
  for (CGUIComponent* Child = Parent.GetFirstChild(); Child != nullptr; Child = Parent.ChildAfter(Child)) {
    if (const auto* Text = dynamic_cast<const CGUITextRectangle*>(Child)) Texts.push_back(Text->GetText());
  }
  return Texts;
}

using TextRectangleTest = guitest::CWidgetTest;

TEST_F(TextRectangleTest, MeasuresTheWidestLineByTheLinesHeight) {
  const CGUITextRectangle Text(STYLE, "short\nthe longer line", 5, 7);
  EXPECT_EQ(Text.getWidth(), WidthOf(4, "the longer line"));
  EXPECT_EQ(Text.getHeight(), 2 * LineHeight(4));
  EXPECT_EQ(Text.getX(), 5);
  EXPECT_EQ(Text.GetLines(), (std::vector<std::string>{"short", "the longer line"}));
  EXPECT_EQ(FailureOf([] { CGUITextRectangle(STYLE, nullptr); }), "Text!=NULL");
}

TEST_F(TextRectangleTest, ATextThatExactlyFillsItsWidthIsNotCut) {
  const std::string Line = "exactly this";
  CGUITextRectangle Text(STYLE, Line.c_str(), true, 0, 0, WidthOf(4, Line), 20);
  EXPECT_FALSE(Text.IsTruncated());
  EXPECT_EQ(Text.GetLines().front(), Line);
  ClearTooltip();
  Text.Hover(1, 1);
  EXPECT_EQ(GetTooltip(), "");
}

TEST_F(TextRectangleTest, OneCharacterTooManyEndsInDotsAndShowsTheWholeTextAsTooltip) {
  const std::string Line = "exactly this!";
  const int Width = WidthOf(4, "exactly this");
  CGUITextRectangle Text(STYLE, Line.c_str(), true, 0, 0, Width, 20);
  ASSERT_TRUE(Text.IsTruncated());
  const std::string Shown = Text.GetLines().front();
  const int Fitting = CharsThatFit(4, Line, Width, false);
  EXPECT_EQ(Shown, Line.substr(0, static_cast<size_t>(Fitting - 3)) + "...");
  EXPECT_EQ(Text.GetText(), Line);
  Text.Hover(1, 1);
  EXPECT_EQ(GetTooltip(), Line);
}

TEST_F(TextRectangleTest, ALineNarrowerThanThreeCharactersKeepsOnlyTheDots) {
  const CGUITextRectangle Text(STYLE, "wide text", true, 0, 0, 2, 20);
  EXPECT_EQ(Text.GetLines().front(), "...");
}

TEST_F(TextRectangleTest, OneLineIsCentredInTheHeightAndSeveralStartAtTheTopClipped) {
  CGUITextRectangle One(STYLE, "one", false, 0, 0, 100, 40);
  Recorder.Clear();
  One.Draw(TEMP_SURFACE, 10, 20);
  ASSERT_EQ(Recorder.Lines().size(), 1U);
  EXPECT_NE(Recorder.Lines()[0].find("at=10," + std::to_string(20 + (40 - FontHeight(4)) / 2)), std::string::npos);
  EXPECT_NE(Recorder.Lines()[0].find("clip=10,20,100,40"), std::string::npos);

  CGUITextRectangle Two(TextStyle{4, 224, 224, 224, RIGHT_ALIGN}, "a\nb", false, 0, 0, 100, 40);
  Recorder.Clear();
  Two.Draw(TEMP_SURFACE, 10, 20);
  ASSERT_EQ(Recorder.Lines().size(), 2U);
  EXPECT_NE(Recorder.Lines()[0].find("at=110,20 "), std::string::npos);
  EXPECT_NE(Recorder.Lines()[1].find("at=110," + std::to_string(20 + LineHeight(4)) + " "), std::string::npos);
}

TEST_F(TextRectangleTest, NeverTakesTheMouse) {
  CGUITextRectangle Text(STYLE, "text", 0, 0);
  EXPECT_FALSE(Text.LeftDown(1, 1, 0));
  EXPECT_FALSE(Text.RightUp(1, 1, 0));
  EXPECT_FALSE(Text.MouseEvent(1, 1, MOUSE_WHEEL_UP));
}

using WrappingTextTest = guitest::CWidgetTest;

TEST_F(WrappingTextTest, SplitsAtLineFeedsAndMeasuresItsEntries) {
  const CGUIWrappingTextRectangle Text("first\nsecond line", STYLE);
  EXPECT_EQ(Text.GetEntries(), (std::vector<std::string>{"first", "second line"}));
  EXPECT_EQ(Text.getWidth(), WidthOf(4, "second line"));
  EXPECT_EQ(Text.getHeight(), 2 * LineHeight(4));
}

TEST_F(WrappingTextTest, ALongEntryBreaksAtWhiteSpaceAndEveryPieceFits) {
  std::string Long;
  for (int Word = 0; Word < 60; ++Word) Long += "word" + std::to_string(Word) + "  ";
  const CGUIWrappingTextRectangle Text(Long.c_str(), STYLE);
  ASSERT_GT(Text.GetEntries().size(), 1U);
  std::string Joined;
  for (const std::string& Entry : Text.GetEntries()) {
    EXPECT_LE(WidthOf(4, Entry), CGUIWrappingTextRectangle::MaximumWidth);
    EXPECT_NE(Entry.front(), ' ') << Entry;
    EXPECT_EQ(Entry.rfind("word", 0), 0U) << "a piece starts with a whole word: " << Entry;
    Joined += Entry;
  }
  std::string Compact = Long;
  std::erase(Compact, ' ');
  std::erase(Joined, ' ');
  EXPECT_EQ(Joined, Compact);
}

TEST_F(WrappingTextTest, AnEntryWithoutWhiteSpaceBreaksWhereItIsFull) {
  const std::string Long(400, 'm');
  const CGUIWrappingTextRectangle Text(Long.c_str(), STYLE);
  ASSERT_GE(Text.GetEntries().size(), 2U);
  const auto Head = static_cast<size_t>(CharsThatFit(4, Long, CGUIWrappingTextRectangle::MaximumWidth - 1, false));
  EXPECT_EQ(Text.GetEntries()[0].size(), Head);
}

TEST_F(WrappingTextTest, HeightStopsAtTheLimitAndOnlyWhatFitsIsDrawn) {
  std::string Many;
  for (int Line = 0; Line < 200; ++Line) Many += "line\n";
  CGUIWrappingTextRectangle Text(Many.c_str(), STYLE);
  EXPECT_EQ(Text.getHeight(), CGUIWrappingTextRectangle::MaximumHeight);
  Recorder.Clear();
  Text.Draw(TEMP_SURFACE, 0, 0);
  EXPECT_EQ(static_cast<int>(Recorder.Lines().size()), CGUIWrappingTextRectangle::MaximumHeight / LineHeight(4));
}

using FormatTokenTest = ::testing::Test;

TEST_F(FormatTokenTest, ParsesPlainAndNumberedTags) {
  EXPECT_EQ(ParseFormatToken("<b>rest").Type, TFormatToken::BOLD);
  EXPECT_EQ(ParseFormatToken("<b>rest").Length, 3);
  EXPECT_EQ(ParseFormatToken("<H>").Type, TFormatToken::HIGHLIGHT);
  const TFormatToken Font = ParseFormatToken("<FONT=3>x");
  EXPECT_EQ(Font.Type, TFormatToken::FONT);
  EXPECT_EQ(Font.Data, 3);
  EXPECT_EQ(Font.Length, 8);
  EXPECT_EQ(ParseFormatToken("<tutorialhintimage=12>").Type, TFormatToken::TUTORIAL_HINT_IMAGE);
}

TEST_F(FormatTokenTest, AShortWordMatchesTheFirstTagThatStartsWithIt) {
  EXPECT_EQ(ParseFormatToken("<b=5>").Type, TFormatToken::BR);
  EXPECT_EQ(ParseFormatToken("<bl=5>").Type, TFormatToken::BLUE);
  EXPECT_EQ(ParseFormatToken("<t=1>").Type, TFormatToken::TUTORIAL_HINT_IMAGE);
}

TEST_F(FormatTokenTest, WhatDoesNotParseIsNoTag) {
  for (const char* Text : {"<", "<>", "<x>", "<bold>", "<font>", "<font=>", "<font=3", "<font=3x>", "<b", "< b>",
                           "<fonts=1>", "a<b>"}) {
    EXPECT_EQ(ParseFormatToken(Text).Length, 0) << Text;
  }
}

class FormatTextTest : public guitest::CWidgetTest {
 protected:
  static int X(const CGUIComponent* Child) { return Child->getX(); }
};

TEST_F(FormatTextTest, RunsBecomeTextRectanglesInTheStylesOfTheTags) {
  CGUIFormatTextRectangle Text("plain <b>bold<n> again");
  Text.SetSize(0, 0);
  ASSERT_EQ(TextsOf(Text), (std::vector<std::string>{"plain ", "bold", " again"}));
  const auto* First = dynamic_cast<const CGUITextRectangle*>(Text.GetFirstChild());
  const auto* Bold = dynamic_cast<const CGUITextRectangle*>(Text.ChildAfter(First));
  const auto* Last = dynamic_cast<const CGUITextRectangle*>(Text.GetLastChild());
  EXPECT_EQ(First->GetStyle(), (TextStyle{2, 224, 224, 224, LEFT_ALIGN}));
  EXPECT_EQ(Bold->GetStyle(), (TextStyle{2, 255, 128, 128, LEFT_ALIGN}));
  EXPECT_EQ(Bold->getX(), WidthOf(2, "plain "));
  EXPECT_EQ(Last->getX(), WidthOf(2, "plain ") + WidthOf(2, "bold"));
  EXPECT_EQ(Text.getWidth(), Last->getX() + Last->getWidth());
}

TEST_F(FormatTextTest, ALessThanThatStartsNoTagIsShownAsItStands) {
  CGUIFormatTextRectangle Text("a <x> b");
  Text.SetSize(0, 0);
  EXPECT_EQ(TextsOf(Text), (std::vector<std::string>{"a <x> b"}));
}

TEST_F(FormatTextTest, NumbersOutOfRangeChangeNothing) {
  CGUIFormatTextRectangle Text("a<hspace=0>b<br=51>c<font=9>d");
  Text.SetSize(0, 0);
  ASSERT_EQ(TextsOf(Text), (std::vector<std::string>{"a", "b", "c", "d"}));
  int Expected = 0;
  for (CGUIComponent* Child = Text.GetFirstChild(); Child != nullptr; Child = Text.ChildAfter(Child)) {
    EXPECT_EQ(Child->getX(), Expected);
    EXPECT_EQ(Child->getY(), 0);
    EXPECT_EQ(dynamic_cast<CGUITextRectangle*>(Child)->GetStyle().Font, 2);
    Expected += Child->getWidth();
  }
}

TEST_F(FormatTextTest, SpacingIndentLineFeedAndColourTags) {
  CGUIFormatTextRectangle Text("<indent=20><hspace=7>a\nb<br=5><color=215><red=10>c");
  Text.SetSize(0, 0);
  ASSERT_EQ(TextsOf(Text), (std::vector<std::string>{"a", "b", "c"}));
  CGUIComponent* A = Text.GetFirstChild();
  CGUIComponent* B = Text.ChildAfter(A);
  auto* C = dynamic_cast<CGUITextRectangle*>(Text.ChildAfter(B));
  EXPECT_EQ(A->getX(), 27);
  EXPECT_EQ(B->getX(), 20);
  EXPECT_EQ(B->getY(), LineHeight(2));
  EXPECT_EQ(C->getY(), LineHeight(2) + 5);
  EXPECT_EQ(C->GetStyle(), (TextStyle{2, 10, 255, 255, LEFT_ALIGN}));
}

TEST_F(FormatTextTest, LinesBreakAtTheLastBlankAndALongWordWhereItIsFull) {
  const int Limit = WidthOf(2, "one two");
  CGUIFormatTextRectangle Text("one two three");
  Text.SetSize(Limit, 100);
  ASSERT_EQ(TextsOf(Text), (std::vector<std::string>{"one two", "three"}));
  EXPECT_EQ(Text.GetLastChild()->getY(), LineHeight(2));

  const std::string Word = "abcdefghijkl";
  const int Narrow = WidthOf(2, "abcde");
  CGUIFormatTextRectangle Long(Word.c_str());
  Long.SetSize(Narrow, 100);
  const std::vector<std::string> Pieces = TextsOf(Long);
  ASSERT_GE(Pieces.size(), 2U);
  EXPECT_EQ(Pieces[0], Word.substr(0, static_cast<size_t>(CharsThatFit(2, Word, Narrow, false))));
  std::string Joined;
  for (const std::string& Piece : Pieces) Joined += Piece;
  EXPECT_EQ(Joined, Word);
}

TEST_F(FormatTextTest, PicturesBecomeChildrenAndWhatLiesBelowTheBottomIsCut) {
  CGUIFormatTextRectangle Text("<skin=10>x\ny\nz");
  Text.SetSize(200, LineHeight(2) + 2);
  ASSERT_NE(dynamic_cast<CGUISkinDisplay*>(Text.GetFirstChild()), nullptr);
  EXPECT_EQ(Text.ChildAfter(Text.GetFirstChild())->getX(), GetSkin(10).width);
  // "z" lies wholly below the bottom; "y" is cut to what remains.
  EXPECT_EQ(TextsOf(Text), (std::vector<std::string>{"x", "y"}));
  EXPECT_EQ(Text.GetLastChild()->getHeight(), 2);
}

}  // namespace
