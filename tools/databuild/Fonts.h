#pragma once
// The four bitmap fonts of Kelmo.pic, rendered at build time from a free
// outline font. A glyph's cell holds its ink so that the client's measure
// (the rightmost column with ink, plus 1) gives the font's own advance less
// the font's spacing: text set with the measured widths keeps the spacing
// that the outline font intends.
#include <array>
#include <string>
#include <vector>

#include "tools/databuild/CellFiles.h"

constexpr int NUMBER_OF_FONTS = 4;
constexpr int GLYPHS = 224;
constexpr int CHARS_PER_ROW = 32;

// The grid of a font, as the client knows it.
struct TFontGrid {
  int PictureNumber;
  int CellWidth;
  int CellHeight;
  int CharSpacing;
  int LineHeight;
};

constexpr std::array<TFontGrid, NUMBER_OF_FONTS> FONT_GRIDS{{
    {4, 8, 16, 1, 12},
    {6, 16, 16, -1, 15},
    {7, 8, 8, 0, 10},
    {9, 8, 16, 1, 14},
}};

// How a font is rendered: from data/fonts.txt.
struct TFontStyle {
  std::string File;       // the outline font
  int PixelSize = 0;
  int Baseline = 0;       // row of the cell on which the glyphs stand
  bool Rim = false;       // a dark rim round every glyph
  int SmallCaps = 0;      // lower case as capitals of this size; 0 for none
};

struct TFontSources {
  std::string Directory;  // where the outline fonts are
  std::array<TFontStyle, NUMBER_OF_FONTS> Styles;
};

TFontSources ReadFontSources(const std::string& FileName);

// What the client measures on a font picture.
struct TFontMetrics {
  std::array<int, GLYPHS> CharWidth{};
  std::array<int, GLYPHS> CharHeight{};
  int FontHeight = 0;
};

struct TRenderedFont {
  TCanvas Sheet;           // CHARS_PER_ROW x 7 cells
  TFontMetrics Intended;  // the client's measure of the cells as drawn
  // Per glyph the width that the outline font's advance asks for (advance
  // less CharSpacing); it differs from the measure only where a glyph is
  // wider than its advance or its cell.
  std::array<int, GLYPHS> Wanted{};
};

// Font is 1 to 4. Fails with "failed to load font" for a missing file.
TRenderedFont RenderFont(int Font, const TFontSources& Sources);

// The client's measure of glyph widths and heights on a decoded font picture.
TFontMetrics MeasureFont(int Font, const TPicture& Picture);

// Text in one line, as alpha coverage of white, for the logo.
TCanvas RenderLine(const std::string& FontPath, int PixelSize, const std::string& Text);
