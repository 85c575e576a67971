// The fonts measured from a picture file whose glyphs have known sizes, and
// the text measures built on them. No display is needed: measuring reads the
// memory cache only.
#include <gtest/gtest.h>

#include "core/Exception.h"
#include "graphics/Fonts.h"
#include "graphics/Graphics.h"
#include "tests/graphics/TestFiles.h"

namespace {

using namespace testfiles;

struct TCellGrid {
  int Picture, CellWidth, CellHeight;
};
constexpr TCellGrid Grids[] = {{4, 8, 16}, {6, 16, 16}, {7, 8, 8}, {9, 8, 16}};
constexpr int EMPTY_GLYPH = 95;

// Glyph i of a grid is an inked block from the cell's corner, InkWidth by InkHeight.
int InkWidth(const TCellGrid& Grid, int Glyph) { return 2 + Glyph % (Grid.CellWidth - 1); }
int InkHeight(const TCellGrid& Grid, int Glyph) { return 2 + Glyph % (Grid.CellHeight - 1); }

TPictureSource FontSheet(const TCellGrid& Grid) {
  const int Width = 32 * Grid.CellWidth;
  const int Height = 7 * Grid.CellHeight;
  return {(Width + 31) / 32, (Height + 31) / 32, {255, 0, 255},
          [Grid](int x, int y) -> std::optional<TRGBColor> {
            const int Glyph = (y / Grid.CellHeight) * 32 + x / Grid.CellWidth;
            if (Glyph >= 224 || Glyph == EMPTY_GLYPH) return std::nullopt;
            if (x % Grid.CellWidth >= InkWidth(Grid, Glyph) || y % Grid.CellHeight >= InkHeight(Grid, Glyph)) {
              return std::nullopt;
            }
            return TRGBColor{255, 255, 255};
          }};
}

class FontsTest : public ::testing::Test {
 protected:
  FontsTest() {
    std::vector<TPictureSource> Pictures;
    for (int Number = 1; Number <= 9; ++Number) {
      const TCellGrid* Grid = nullptr;
      for (const TCellGrid& Candidate : Grids) {
        if (Candidate.Picture == Number) Grid = &Candidate;
      }
      Pictures.push_back(Grid ? FontSheet(*Grid) : TPictureSource{1, 1, {0, 0, 0}, [](int, int) {
        return std::optional<TRGBColor>();
      }});
    }
    PictureFile(1, Pictures).Save(Directory.File("Kelmo.pic"));
    LoadPictures(Directory.File("Kelmo.pic"));
    InitFonts();
  }
  ~FontsTest() override { ExitGraphics(); }

  static std::string FailureOf(const std::function<void()>& Action) {
    try {
      Action();
    } catch (const TMyException& Error) {
      return Error.Text();
    }
    return "";
  }

  CTempDirectory Directory;
};

TEST_F(FontsTest, WidthsAndHeightsComeFromTheGlyphsInk) {
  for (int Font = 1; Font <= NumberOfFonts; ++Font) {
    const TCellGrid& Grid = Grids[Font - 1];
    const TFont& Measured = GetFont(Font);
    EXPECT_EQ(Measured.PictureNumber, Grid.Picture);
    EXPECT_EQ(Measured.CellWidth, Grid.CellWidth);
    for (int Glyph = 0; Glyph < GLYPHS; ++Glyph) {
      if (Glyph == EMPTY_GLYPH) continue;
      ASSERT_EQ(Measured.CharWidth[Glyph], InkWidth(Grid, Glyph)) << "font " << Font << " glyph " << Glyph;
      ASSERT_EQ(Measured.CharHeight[Glyph], InkHeight(Grid, Glyph)) << "font " << Font << " glyph " << Glyph;
    }
    // A cell without ink counts as full width and one row, and not for the font's height.
    EXPECT_EQ(Measured.CharWidth[EMPTY_GLYPH], Grid.CellWidth);
    EXPECT_EQ(Measured.CharHeight[EMPTY_GLYPH], 1);
    EXPECT_EQ(FontHeight(Font), Grid.CellHeight);
  }
}

TEST_F(FontsTest, TheFixedValuesOfTheFourFonts) {
  EXPECT_EQ(GetFont(1).CharSpacing, 1);
  EXPECT_EQ(GetFont(2).CharSpacing, -1);
  EXPECT_EQ(GetFont(3).CharSpacing, 0);
  EXPECT_EQ(GetFont(4).CharSpacing, 1);
  EXPECT_EQ(LineHeight(1), 12);
  EXPECT_EQ(LineHeight(2), 15);
  EXPECT_EQ(LineHeight(3), 10);
  EXPECT_EQ(LineHeight(4), 14);
  EXPECT_EQ(LineHeight(7), 10);
  EXPECT_EQ(FailureOf([] { FontHeight(5); }), "In(FontNumber,1,NumberOfFonts)");
  EXPECT_EQ(FailureOf([] { FontHeight(0); }), "In(FontNumber,1,NumberOfFonts)");
}

TEST_F(FontsTest, TheEmptyTextHasNoWidthAndNothingFits) {
  EXPECT_EQ(TextWidth(1, "", WHOLE_TEXT, false), 0);
  EXPECT_EQ(CharsThatFit(1, "", 100, false), 0);
  EXPECT_EQ(TextHeight(1, "", false), 0);
}

// 'A' is glyph 33, 'B' 34; font 1 is 8 wide: 7 and 8 columns of ink.
TEST_F(FontsTest, OneGlyphHasItsWidthWithoutSpacing) {
  EXPECT_EQ(TextWidth(1, "A", WHOLE_TEXT, false), 7);
  EXPECT_EQ(TextWidth(1, "AB", WHOLE_TEXT, false), 7 + 1 + 8);
  EXPECT_EQ(TextWidth(1, "AB", 1, false), 7);
  EXPECT_EQ(TextHeight(1, "AB", false), 6);
}

// Font 2 has spacing -1: two glyphs overlap by one column.
TEST_F(FontsTest, NegativeSpacingOverlapsNeighbours) {
  const int A = GetFont(2).CharWidth[33];
  const int B = GetFont(2).CharWidth[34];
  EXPECT_EQ(TextWidth(2, "AB", WHOLE_TEXT, false), A + B - 1);
}

// A blank advances as the comma's cell does; a line feed is a blank.
TEST_F(FontsTest, BlanksAndLineFeedsAdvanceByTheCommasWidth) {
  const int Comma = GetFont(1).CharWidth[12];
  EXPECT_EQ(TextWidth(1, "A B", WHOLE_TEXT, false), 7 + 1 + Comma + 1 + 8);
  EXPECT_EQ(TextWidth(1, "A\nB", WHOLE_TEXT, false), TextWidth(1, "A B", WHOLE_TEXT, false));
  EXPECT_EQ(TextHeight(1, " \n", false), 0);
}

TEST_F(FontsTest, BracesHaveNoWidthOnlyUnderHighlighting) {
  EXPECT_EQ(TextWidth(1, "{A}", WHOLE_TEXT, true), 7);
  const int Brace = GetFont(1).CharWidth['{' - 0x20];
  const int Closing = GetFont(1).CharWidth['}' - 0x20];
  EXPECT_EQ(TextWidth(1, "{A}", WHOLE_TEXT, false), Brace + 1 + 7 + 1 + Closing);
}

TEST_F(FontsTest, OtherControlBytesDrawTheUnknownGlyph) {
  EXPECT_EQ(TextWidth(1, "\x05", WHOLE_TEXT, false), GetFont(1).CharWidth[EMPTY_GLYPH]);
  EXPECT_EQ(TextWidth(1, "\x7F", WHOLE_TEXT, false), GetFont(1).CharWidth[EMPTY_GLYPH]);
  // Latin-1 letters have glyphs of their own: 0xE9 is glyph 201.
  EXPECT_EQ(TextWidth(1, "\xE9", WHOLE_TEXT, false), GetFont(1).CharWidth[201]);
}

TEST_F(FontsTest, CharsThatFitStopsAtTheFirstCharacterThatPassesTheWidth) {
  EXPECT_EQ(CharsThatFit(1, "AB", 6, false), 0);
  EXPECT_EQ(CharsThatFit(1, "AB", 7, false), 1);
  EXPECT_EQ(CharsThatFit(1, "AB", 15, false), 1);
  EXPECT_EQ(CharsThatFit(1, "AB", 16, false), 2);
  EXPECT_EQ(CharsThatFit(1, "{A}B", 7, true), 3);
}

TEST_F(FontsTest, ALengthBeyondTheTextFails) {
  EXPECT_EQ(FailureOf([] { TextWidth(1, "AB", 3, false); }), "Length <= (int) strlen(Text)");
}

TEST_F(FontsTest, StyledStartsFollowTheAlignment) {
  const TextStyle Left{};
  const TextStyle Centre{4, 224, 224, 224, CENTER_ALIGN};
  const TextStyle Right{4, 224, 224, 224, RIGHT_ALIGN};
  EXPECT_EQ(GetStyleOffset(Left, 100), 0);
  EXPECT_EQ(GetStyleOffset(Centre, 101), 50);
  EXPECT_EQ(GetStyleOffset(Right, 100), 100);
  const TTextStart Start = GetStyledStart(10, 20, 100, 30, Centre);
  EXPECT_EQ(Start.x, 60);
  EXPECT_EQ(Start.y, 20 + (30 - 16) / 2);
}

}  // namespace
