#include "tools/databuild/Fonts.h"

#include <ft2build.h>
#include FT_FREETYPE_H

#include <algorithm>
#include <memory>

#include "core/Exception.h"
#include "core/Script.h"

namespace {

// Glyph ink: white, so that the client's tint gives the text colour; the rim
// of a rimmed font is black, which no tint lightens.
const TRGBA INK = {255, 255, 255, 255};
const TRGBA RIM_INK = {0, 0, 0, 255};
// Coverage below this is left out: the files know no half-transparent pixel.
constexpr int COVERAGE_THRESHOLD = 90;

struct TLibraryCloser {
  void operator()(FT_Library Library) const { FT_Done_FreeType(Library); }
};
struct TFaceCloser {
  void operator()(FT_Face Face) const { FT_Done_Face(Face); }
};
using TLibrary = std::unique_ptr<std::remove_pointer_t<FT_Library>, TLibraryCloser>;
using TFace = std::unique_ptr<std::remove_pointer_t<FT_Face>, TFaceCloser>;

// A glyph as FreeType draws it: coverage per pixel and where it stands.
struct TGlyphInk {
  int Width = 0, Height = 0, Left = 0, Top = 0, Advance = 0;
  std::vector<std::uint8_t> Coverage;
};

// The ink cut to the pixels that stay: the glyph is placed by what shows.
TGlyphInk Trimmed(const TGlyphInk& Ink) {
  int L = Ink.Width, T = Ink.Height, R = -1, B = -1;
  for (int Y = 0; Y < Ink.Height; ++Y) {
    for (int X = 0; X < Ink.Width; ++X) {
      if (Ink.Coverage[static_cast<size_t>(Y * Ink.Width + X)] < COVERAGE_THRESHOLD) continue;
      L = std::min(L, X), T = std::min(T, Y), R = std::max(R, X), B = std::max(B, Y);
    }
  }
  TGlyphInk Result = Ink;
  Result.Coverage.clear();
  if (R < 0) {
    Result.Width = Result.Height = 0;
    return Result;
  }
  Result.Width = R - L + 1, Result.Height = B - T + 1, Result.Left = Ink.Left + L, Result.Top = Ink.Top - T;
  for (int Y = T; Y <= B; ++Y) {
    for (int X = L; X <= R; ++X) Result.Coverage.push_back(Ink.Coverage[static_cast<size_t>(Y * Ink.Width + X)]);
  }
  return Result;
}

TGlyphInk Load(FT_Face Face, unsigned Code, int Size, double Squeeze, double Flatten = 1.0) {
  FT_Set_Pixel_Sizes(Face, 0, static_cast<FT_UInt>(Size));
  FT_Matrix Matrix{static_cast<FT_Fixed>(Squeeze * 0x10000), 0, 0, static_cast<FT_Fixed>(Flatten * 0x10000)};
  FT_Set_Transform(Face, &Matrix, nullptr);
  if (FT_Load_Char(Face, Code, FT_LOAD_RENDER | FT_LOAD_TARGET_LIGHT) != 0) {
    ThrowException("failed to render glyph", {{"Code", std::to_string(Code)}});
  }
  const FT_GlyphSlot Slot = Face->glyph;
  TGlyphInk Ink;
  Ink.Width = static_cast<int>(Slot->bitmap.width);
  Ink.Height = static_cast<int>(Slot->bitmap.rows);
  Ink.Left = Slot->bitmap_left;
  Ink.Top = Slot->bitmap_top;
  Ink.Advance = static_cast<int>((Slot->advance.x + 32) >> 6);
  for (int Y = 0; Y < Ink.Height; ++Y) {
    const std::uint8_t* Row = Slot->bitmap.buffer + static_cast<ptrdiff_t>(Y) * Slot->bitmap.pitch;
    Ink.Coverage.insert(Ink.Coverage.end(), Row, Row + Ink.Width);
  }
  return Trimmed(Ink);
}

// The replacement glyph of bytes without a printable character: a box.
TCanvas BoxGlyph(const TFontGrid& Grid, const TFontStyle& Style, int& Wanted) {
  TCanvas Cell(Grid.CellWidth, Grid.CellHeight);
  const int Height = std::min(Style.Baseline - 1, Grid.CellHeight - 2);
  Wanted = 5;
  Cell.frame(1, Style.Baseline - Height, 4, Height, INK);
  return Cell;
}

// The Latin-1 capital of a small letter; other characters stay.
unsigned CapitalOf(unsigned Code) {
  if (Code >= 'a' && Code <= 'z') return Code - 0x20;
  if (Code >= 0xE0 && Code <= 0xFE && Code != 0xF7) return Code - 0x20;
  if (Code == 0xFF) return 0x178;
  return Code;
}

// Renders one glyph into its cell; Wanted is the width that its advance asks for.
TCanvas Glyph(FT_Face Face, unsigned Code, const TFontGrid& Grid, const TFontStyle& Style, int& Wanted) {
  const int Size = Style.SmallCaps > 0 && CapitalOf(Code) != Code ? Style.SmallCaps : Style.PixelSize;
  // The soft hyphen has no ink of its own; shown, it is a hyphen.
  const unsigned Shown = Style.SmallCaps > 0 ? CapitalOf(Code) : Code == 0xAD ? '-' : Code;
  const int Rim = Style.Rim ? 1 : 0;
  TGlyphInk Ink = Load(Face, Shown, Size, 1.0);
  // Too tall for the cell (an accented capital in a small font): flatten it.
  for (double Flatten = 0.9; Ink.Height + 2 * Rim > Grid.CellHeight && Flatten > 0.5; Flatten -= 0.1) {
    const int Advance = Ink.Advance;
    Ink = Load(Face, Shown, Size, 1.0, Flatten);
    Ink.Advance = Advance;
  }
  // Too wide for the cell: squeeze the outline until it fits.
  for (double Squeeze = 0.92; Ink.Width + 2 * Rim > Grid.CellWidth && Squeeze > 0.4; Squeeze -= 0.08) {
    const int Advance = Ink.Advance;
    Ink = Load(Face, Shown, Size, Squeeze);
    Ink.Advance = std::min(Advance, Ink.Width + 2 * Rim + Grid.CharSpacing);
  }
  // The ink's right edge (with the rim) lands where the advance wants it.
  Wanted = std::clamp(Ink.Advance - Grid.CharSpacing, 2, Grid.CellWidth);
  const int X0 = std::clamp(Wanted - Ink.Width - Rim, Rim, Grid.CellWidth - Ink.Width - Rim);
  // Ink that would leave the cell (an accent, a descender) moves into it.
  const int Y0 = std::clamp(Style.Baseline - Ink.Top, 0, std::max(0, Grid.CellHeight - Ink.Height));
  TCanvas Cell(Grid.CellWidth, Grid.CellHeight);
  for (int Y = 0; Y < Ink.Height; ++Y) {
    for (int X = 0; X < Ink.Width; ++X) {
      const int C = Ink.Coverage[static_cast<size_t>(Y * Ink.Width + X)];
      if (C < COVERAGE_THRESHOLD) continue;
      const auto Grey = static_cast<std::uint8_t>(std::min(255, 96 + C * 160 / 255));
      Cell.set(X0 + X, Y0 + Y, Style.Rim ? INK : TRGBA{Grey, Grey, Grey, 255});
    }
  }
  if (Style.Rim) Cell.outline(RIM_INK);
  return Cell;
}

// The client's measure: the rightmost column from 1 with ink, plus 1; the
// cell's width for a cell without.
int InkWidth(const TCanvas& Cell) {
  for (int X = Cell.width() - 1; X >= 1; --X) {
    for (int Y = 0; Y < Cell.height(); ++Y) {
      if (Cell.at(X, Y).a) return X + 1;
    }
  }
  return Cell.width();
}

int LowestRow(const TCanvas& Cell) {
  for (int Y = Cell.height() - 1; Y >= 1; --Y) {
    for (int X = 0; X < Cell.width(); ++X) {
      if (Cell.at(X, Y).a) return Y + 1;
    }
  }
  return 0;
}

// The byte of a glyph index, and whether Latin-1 has a printable character there.
unsigned Byte(int Index) { return static_cast<unsigned>(Index + 0x20); }
bool Printable(unsigned Byte) { return (Byte > 0x20 && Byte < 0x7F) || Byte >= 0xA0; }

}  // namespace

TFontSources ReadFontSources(const std::string& FileName) {
  TFontSources Sources;
  std::array<bool, NUMBER_OF_FONTS> Given{};
  TScriptReader Reader;
  Reader.open(FileName);
  for (Reader.nextToken(); Reader.getToken() != TOKEN::ENDOFFILE; Reader.nextToken()) {
    const std::string Word = Reader.getIdentifier();
    if (Word == "directory") {
      Reader.readSymbol('=');
      Sources.Directory = Reader.readString();
      continue;
    }
    if (Word != "font") Reader.error("directory or font expected");
    const int Font = Reader.readNumber();
    if (Font < 1 || Font > NUMBER_OF_FONTS || Given[static_cast<size_t>(Font - 1)]) {
      Reader.error("font 1 to 4, each once");
    }
    Given[static_cast<size_t>(Font - 1)] = true;
    TFontStyle& Style = Sources.Styles[static_cast<size_t>(Font - 1)];
    Reader.readSymbol('{');
    for (Reader.nextToken(); Reader.getToken() != TOKEN::SPECIAL || Reader.getSpecial() != '}'; Reader.nextToken()) {
      const std::string Property = Reader.getIdentifier();
      if (Property == "rim") {
        Style.Rim = true;
        continue;
      }
      Reader.readSymbol('=');
      if (Property == "file") Style.File = Reader.readString();
      else if (Property == "size") Style.PixelSize = Reader.readNumber();
      else if (Property == "baseline") Style.Baseline = Reader.readNumber();
      else if (Property == "smallcaps") Style.SmallCaps = Reader.readNumber();
      else Reader.error("file, size, baseline, smallcaps or rim expected");
    }
    if (Style.File.empty() || Style.PixelSize < 4 || Style.Baseline < 1) Reader.error("font needs file, size and baseline");
  }
  Reader.close();
  if (std::find(Given.begin(), Given.end(), false) != Given.end()) ThrowException("fonts 1 to 4 expected");
  return Sources;
}

TRenderedFont RenderFont(int Font, const TFontSources& Sources) {
  const TFontGrid& Grid = FONT_GRIDS[static_cast<size_t>(Font - 1)];
  const TFontStyle& Style = Sources.Styles[static_cast<size_t>(Font - 1)];
  FT_Library RawLibrary = nullptr;
  if (FT_Init_FreeType(&RawLibrary) != 0) ThrowException("failed to start FreeType");
  const TLibrary Library(RawLibrary);
  const std::string Path = Sources.Directory + "/" + Style.File;
  FT_Face RawFace = nullptr;
  if (FT_New_Face(Library.get(), Path.c_str(), 0, &RawFace) != 0) {
    ThrowException("failed to load font", {{"FileName", Path}});
  }
  const TFace Face(RawFace);
  TRenderedFont Result;
  Result.Sheet = TCanvas(CHARS_PER_ROW * Grid.CellWidth, (GLYPHS / CHARS_PER_ROW) * Grid.CellHeight);
  Result.Wanted[0] = Grid.CellWidth;
  for (int I = 1; I < GLYPHS; ++I) {
    int& Wanted = Result.Wanted[static_cast<size_t>(I)];
    const TCanvas Cell = Printable(Byte(I)) ? Glyph(Face.get(), Byte(I), Grid, Style, Wanted)
                                           : BoxGlyph(Grid, Style, Wanted);
    Result.Sheet.paste(Cell, (I % CHARS_PER_ROW) * Grid.CellWidth, (I / CHARS_PER_ROW) * Grid.CellHeight);
    const int Lowest = LowestRow(Cell);
    Result.Intended.CharWidth[static_cast<size_t>(I)] = InkWidth(Cell);
    Result.Intended.CharHeight[static_cast<size_t>(I)] = std::max(Lowest, 1);
    Result.Intended.FontHeight = std::max(Result.Intended.FontHeight, Lowest);
  }
  Result.Intended.CharWidth[0] = Grid.CellWidth;
  Result.Intended.CharHeight[0] = 1;
  return Result;
}

TFontMetrics MeasureFont(int Font, const TPicture& Picture) {
  const TFontGrid& Grid = FONT_GRIDS[static_cast<size_t>(Font - 1)];
  const auto Inked = [&Picture](int X, int Y) {
    return !Picture.tile(X / CELL_SIZE, Y / CELL_SIZE).isTransparent((Y % CELL_SIZE) * CELL_SIZE + X % CELL_SIZE);
  };
  TFontMetrics M;
  for (int I = 0; I < GLYPHS; ++I) {
    const int CX = (I % CHARS_PER_ROW) * Grid.CellWidth, CY = (I / CHARS_PER_ROW) * Grid.CellHeight;
    M.CharWidth[static_cast<size_t>(I)] = Grid.CellWidth;
    for (int X = Grid.CellWidth - 1; X >= 1; --X) {
      bool Found = false;
      for (int Y = 0; Y < Grid.CellHeight && !Found; ++Y) Found = Inked(CX + X, CY + Y);
      if (Found) {
        M.CharWidth[static_cast<size_t>(I)] = X + 1;
        break;
      }
    }
    M.CharHeight[static_cast<size_t>(I)] = 1;
    for (int Y = Grid.CellHeight - 1; Y >= 1; --Y) {
      bool Found = false;
      for (int X = 0; X < Grid.CellWidth && !Found; ++X) Found = Inked(CX + X, CY + Y);
      if (Found) {
        M.CharHeight[static_cast<size_t>(I)] = Y + 1;
        M.FontHeight = std::max(M.FontHeight, Y + 1);
        break;
      }
    }
  }
  return M;
}

TCanvas RenderLine(const std::string& FontPath, int PixelSize, const std::string& Text) {
  FT_Library RawLibrary = nullptr;
  if (FT_Init_FreeType(&RawLibrary) != 0) ThrowException("failed to start FreeType");
  const TLibrary Library(RawLibrary);
  FT_Face RawFace = nullptr;
  if (FT_New_Face(Library.get(), FontPath.c_str(), 0, &RawFace) != 0) {
    ThrowException("failed to load font", {{"FileName", FontPath}});
  }
  const TFace Face(RawFace);
  std::vector<std::pair<int, TGlyphInk>> Glyphs;
  int Pen = 0;
  for (char C : Text) {
    TGlyphInk Ink = Load(Face.get(), static_cast<unsigned char>(C), PixelSize, 1.0);
    Glyphs.emplace_back(Pen, Ink);
    Pen += Ink.Advance;
  }
  TCanvas Line(Pen + PixelSize / 4, PixelSize * 5 / 4);
  const int Baseline = PixelSize;
  for (const auto& [X0, Ink] : Glyphs) {
    for (int Y = 0; Y < Ink.Height; ++Y) {
      for (int X = 0; X < Ink.Width; ++X) {
        const std::uint8_t C = Ink.Coverage[static_cast<size_t>(Y * Ink.Width + X)];
        if (C) Line.blend(X0 + Ink.Left + X, Baseline - Ink.Top + Y, {255, 255, 255, C});
      }
    }
  }
  return Line;
}
