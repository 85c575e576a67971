#include <gtest/gtest.h>

#include "tests/databuild/ArtFixture.h"
#include "tools/databuild/Fonts.h"
#include "tools/databuild/Pictures.h"

namespace {

using testing_databuild::BuiltFile;

const TPictureFile& Built() {
  static const TPictureFile File = ReadPictureFile(BuiltFile("Kelmo.pic"));
  return File;
}

const TPicture& FontPicture(int Font) {
  return Built().Pictures.at(static_cast<size_t>(FONT_GRIDS[static_cast<size_t>(Font - 1)].PictureNumber - 1));
}

bool Printable(int Index) {
  const int Byte = Index + 0x20;
  return (Byte > 0x20 && Byte < 0x7F) || Byte >= 0xA1;
}

class Fonts : public testing::TestWithParam<int> {};

TEST_P(Fonts, TheClientMeasuresTheWidthsTheGlyphsWereDrawnFor) {
  const int Font = GetParam();
  const TFontGrid& Grid = FONT_GRIDS[static_cast<size_t>(Font - 1)];
  const TRenderedFont Rendered = RenderFont(Font, ReadFontSources(KELMO_FONT_SOURCE));
  const TPicture& Picture = FontPicture(Font);
  // the grid fits the tiles, and every cell lies within one tile
  EXPECT_EQ(Picture.TilesX, (CHARS_PER_ROW * Grid.CellWidth + 31) / 32);
  EXPECT_EQ(Picture.TilesY, (7 * Grid.CellHeight + 31) / 32);
  EXPECT_EQ(32 % Grid.CellWidth, 0);
  EXPECT_EQ(32 % Grid.CellHeight, 0);
  const TFontMetrics Measured = MeasureFont(Font, Picture);
  EXPECT_EQ(Measured.CharWidth, Rendered.Intended.CharWidth);
  EXPECT_EQ(Measured.CharHeight, Rendered.Intended.CharHeight);
  EXPECT_EQ(Measured.FontHeight, Rendered.Intended.FontHeight);
  EXPECT_LE(Measured.FontHeight, Grid.CellHeight);
  // The measure finds what the outline font's advance asks for; where a
  // glyph's ink reaches past its advance (A, V, w), by at most two columns.
  int Printables = 0, AsWanted = 0;
  for (int I = 1; I < GLYPHS; ++I) {
    if (!Printable(I)) continue;
    ++Printables;
    const int Width = Measured.CharWidth[static_cast<size_t>(I)], Wanted = Rendered.Wanted[static_cast<size_t>(I)];
    AsWanted += Width == Wanted;
    EXPECT_GE(Width, Wanted) << "byte " << I + 0x20;
    EXPECT_LE(Width, Wanted + 2) << "byte " << I + 0x20;
  }
  EXPECT_GE(AsWanted * 100, Printables * 70) << AsWanted << " of " << Printables;
  // a blank is as wide as the comma's cell: it must be narrower than a letter
  EXPECT_LT(Measured.CharWidth[12], Measured.CharWidth['m' - 0x20]);
}

TEST_P(Fonts, Latin1IsComplete) {
  const int Font = GetParam();
  const TFontGrid& Grid = FONT_GRIDS[static_cast<size_t>(Font - 1)];
  const TCanvas Sheet = ImageFromPicture(FontPicture(Font));
  for (int I = 1; I < GLYPHS; ++I) {
    if (!Printable(I)) continue;
    int Ink = 0;
    const int X0 = (I % CHARS_PER_ROW) * Grid.CellWidth, Y0 = (I / CHARS_PER_ROW) * Grid.CellHeight;
    for (int Y = 0; Y < Grid.CellHeight; ++Y) {
      for (int X = 0; X < Grid.CellWidth; ++X) Ink += Sheet.at(X0 + X, Y0 + Y).a ? 1 : 0;
    }
    EXPECT_GT(Ink, 0) << "font " << Font << " byte " << I + 0x20;
  }
}

INSTANTIATE_TEST_SUITE_P(AllFour, Fonts, testing::Values(1, 2, 3, 4));

}  // namespace
