#include "graphics/Fonts.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include "core/Exception.h"
#include "graphics/Graphics.h"
#include "graphics/Recorder.h"

namespace {

// Picture, cell width, cell height, spacing, line height of fonts 1 to 4.
struct TFontLayout {
  int Picture, CellWidth, CellHeight, Spacing, LineHeight;
};
constexpr std::array<TFontLayout, NumberOfFonts> Layouts{{
    {4, 8, 16, 1, 12},
    {6, 16, 16, -1, 15},
    {7, 8, 8, 0, 10},
    {9, 8, 16, 1, 14},
}};

// Glyph indexes of the characters that have none of their own.
constexpr int BLANK = -1;
constexpr int HIGHLIGHT_ON = -2;
constexpr int HIGHLIGHT_OFF = -3;
constexpr int UNKNOWN_GLYPH = 95;
// A blank is as wide as the comma's cell.
constexpr int BLANK_WIDTH_GLYPH = 12;

std::unique_ptr<std::array<TFont, NumberOfFonts>> Fonts;

const TFont& CheckedFont(int FontNumber) {
  Check(FontNumber >= 1 && FontNumber <= NumberOfFonts, "In(FontNumber,1,NumberOfFonts)",
        {"FontNumber", FontNumber});
  Check(Fonts != nullptr, "Fonts!=NULL");
  return (*Fonts)[FontNumber - 1];
}

int GlyphIndex(unsigned char Byte, bool Highlight) {
  if (Highlight && Byte == '{') return HIGHLIGHT_ON;
  if (Highlight && Byte == '}') return HIGHLIGHT_OFF;
  if (Byte >= 0x21) return Byte - 0x20;
  if (Byte == 0x20 || Byte == 0x0A) return BLANK;
  return UNKNOWN_GLYPH;
}

// The horizontal step of one character; braces under highlighting take none.
int Advance(const TFont& Font, int Index) {
  if (Index == BLANK) return Font.CharSpacing + Font.CharWidth[BLANK_WIDTH_GLYPH];
  if (Index < 0) return 0;
  return Font.CharWidth[Index] + Font.CharSpacing;
}

// The glyph's pixels on the sheet as one 32 x 32 tile of the memory cache holds them.
class TGlyphCell {
 public:
  TGlyphCell(const TFont& Font, int Index)
      : m_Font(Font),
        m_CellX((Index % Font.CharsPerRow) * Font.CellWidth),
        m_CellY((Index / Font.CharsPerRow) * Font.CellHeight),
        m_Tile(GetMemoryPictureTile(Font.PictureNumber, m_CellX / CELL_SIZE, m_CellY / CELL_SIZE)),
        m_Background(GetPictureColor(Font.PictureNumber)) {}

  bool IsInk(int Column, int Row) const {
    const int x = m_CellX % CELL_SIZE + Column;
    const int y = m_CellY % CELL_SIZE + Row;
    const std::uint8_t* Pixel = m_Tile.Data + (y * CELL_SIZE + x) * 3;
    return Pixel[0] != m_Background.r || Pixel[1] != m_Background.g || Pixel[2] != m_Background.b;
  }

  // The rightmost column with ink, looking no further left than column 1; -1 if none.
  int LastInkColumn() const {
    for (int Column = m_Font.CellWidth - 1; Column >= 1; --Column) {
      for (int Row = 0; Row < m_Font.CellHeight; ++Row) {
        if (IsInk(Column, Row)) return Column;
      }
    }
    return -1;
  }

  int LastInkRow() const {
    for (int Row = m_Font.CellHeight - 1; Row >= 1; --Row) {
      for (int Column = 0; Column < m_Font.CellWidth; ++Column) {
        if (IsInk(Column, Row)) return Row;
      }
    }
    return -1;
  }

 private:
  const TFont& m_Font;
  int m_CellX;
  int m_CellY;
  const TMemoryCacheItem& m_Tile;
  TRGBColor m_Background;
};

void MeasureFont(TFont& Font) {
  Font.FontHeight = 0;
  for (int Index = 0; Index < GLYPHS; ++Index) {
    const TGlyphCell Cell(Font, Index);
    const int Column = Cell.LastInkColumn();
    Font.CharWidth[Index] = Column >= 0 ? Column + 1 : Font.CellWidth;
    const int Row = Cell.LastInkRow();
    Font.CharHeight[Index] = Row >= 0 ? Row + 1 : 1;
    if (Row >= 0) Font.FontHeight = std::max(Font.FontHeight, Row + 1);
  }
}

int CheckedLength(std::string_view Text, int Length) {
  if (Length == WHOLE_TEXT) return static_cast<int>(Text.size());
  Check(Length <= static_cast<int>(Text.size()), "Length <= (int) strlen(Text)", {"Length", Length});
  return Length;
}

}  // namespace

void InitFonts() {
  auto Measured = std::make_unique<std::array<TFont, NumberOfFonts>>();
  for (int Number = 0; Number < NumberOfFonts; ++Number) {
    const TFontLayout& Layout = Layouts[Number];
    TFont& Font = (*Measured)[Number];
    Font.PictureNumber = Layout.Picture;
    Font.CellWidth = Layout.CellWidth;
    Font.CellHeight = Layout.CellHeight;
    Font.CharSpacing = Layout.Spacing;
    Font.LineHeight = Layout.LineHeight;
    MeasureFont(Font);
  }
  Fonts = std::move(Measured);
}

void ExitFonts() { Fonts.reset(); }

const TFont& GetFont(int FontNumber) { return CheckedFont(FontNumber); }

int FontHeight(int FontNumber) { return CheckedFont(FontNumber).FontHeight; }

int LineHeight(int FontNumber) { return CheckedFont(FontNumber > NumberOfFonts ? 3 : FontNumber).LineHeight; }

int TextHeight(int FontNumber, std::string_view Text, bool Highlight) {
  const TFont& Font = CheckedFont(FontNumber);
  int Height = 0;
  for (const char Character : Text) {
    const int Index = GlyphIndex(static_cast<unsigned char>(Character), Highlight);
    if (Index > 0) Height = std::max(Height, Font.CharHeight[Index]);
  }
  return Height;
}

int TextWidth(int FontNumber, std::string_view Text, int Length, bool Highlight) {
  const TFont& Font = CheckedFont(FontNumber);
  const int Count = CheckedLength(Text, Length);
  int Width = 0;
  for (int Position = 0; Position < Count; ++Position) {
    Width += Advance(Font, GlyphIndex(static_cast<unsigned char>(Text[Position]), Highlight));
  }
  if (Count > 0) Width -= Font.CharSpacing;
  return Width;
}

int CharsThatFit(int FontNumber, std::string_view Text, int Width, bool Highlight) {
  const TFont& Font = CheckedFont(FontNumber);
  int Sum = -Font.CharSpacing;
  for (size_t Position = 0; Position < Text.size(); ++Position) {
    Sum += Advance(Font, GlyphIndex(static_cast<unsigned char>(Text[Position]), Highlight));
    if (Sum > Width) return static_cast<int>(Position);
  }
  return static_cast<int>(Text.size());
}

void PrintText(int Surface, int x, int y, int FontNumber, TRGBColor Color, bool Highlight, const char* Text,
               int Length, int Alignment, TRect ClipRect) {
  Check(FontNumber >= 1 && FontNumber <= NumberOfFonts, "In(FontNumber,1,NumberOfFonts)",
        {"FontNumber", FontNumber});
  Check(Text != nullptr, "Text!=NULL");
  Check(Alignment == LEFT_ALIGN || Alignment == CENTER_ALIGN || Alignment == RIGHT_ALIGN,
        "Alignment==LEFT_ALIGN || Alignment==CENTER_ALIGN || Alignment==RIGHT_ALIGN", {"Alignment", Alignment});
  const TFont& Font = CheckedFont(FontNumber);
  const std::string_view Whole(Text);
  const std::string_view Part = Whole.substr(0, static_cast<size_t>(std::min<long long>(Length, Whole.size())));
  if (CDrawingRecorder* Recorder = ActiveRecorder()) {
    Recorder->Text(Surface, x, y, FontNumber, Color, Highlight, Alignment, ClipRect, Part);
  }
  if (Alignment != LEFT_ALIGN) {
    const int Width = TextWidth(FontNumber, Part, WHOLE_TEXT, Highlight);
    x -= Alignment == CENTER_ALIGN ? Width / 2 : Width;
  }
  CSurface& Target = *GetSurface();
  const TRGBColor Key = GetPictureColor(Font.PictureNumber);
  TRGBColor Present = Color;
  for (const char Character : Part) {
    const int Index = GlyphIndex(static_cast<unsigned char>(Character), Highlight);
    if (Index == HIGHLIGHT_ON || Index == HIGHLIGHT_OFF) {
      Present = Index == HIGHLIGHT_ON ? HIGHLIGHT_COLOR : Color;
      continue;
    }
    if (Index != BLANK) {
      const int CellX = (Index % Font.CharsPerRow) * Font.CellWidth;
      const int CellY = (Index / Font.CharsPerRow) * Font.CellHeight;
      const TVideoCacheItem& Item = GetVideoFontTile(FontNumber, CellX / CELL_SIZE, CellY / CELL_SIZE, Present);
      Target.BlitKeyedClipped(Surface, x, y, SPRITE_SURFACE + Item.Page, Item.X + CellX % CELL_SIZE,
                              Item.Y + CellY % CELL_SIZE, Font.CellWidth, Font.CellHeight, Key, ClipRect);
    }
    x += Advance(Font, Index);
  }
}

void PrintCentred(int Surface, int x, int y, TRGBColor Color, const char* Text, int Length) {
  PrintText(Surface, x, y, 2, Color, false, Text, Length, CENTER_ALIGN, NO_CLIP);
}

void PrintClipped(int Surface, int x, int y, int FontNumber, TRGBColor Color, const char* Text, int Alignment,
                  TRect ClipRect) {
  PrintText(Surface, x, y, FontNumber, Color, false, Text, WHOLE_TEXT, Alignment, ClipRect);
}

void PrintPlain(int Surface, int x, int y, int FontNumber, TRGBColor Color, const char* Text, int Alignment) {
  PrintText(Surface, x, y, FontNumber, Color, false, Text, WHOLE_TEXT, Alignment, NO_CLIP);
}

void PrintStyled(int Surface, int x, int y, const TextStyle& Style, const char* Text) {
  PrintText(Surface, x, y, Style.Font, Style.Color(), false, Text, WHOLE_TEXT, Style.Alignment, NO_CLIP);
}

void PrintStyledClipped(int Surface, int x, int y, const TextStyle& Style, const char* Text, TRect ClipRect) {
  PrintText(Surface, x, y, Style.Font, Style.Color(), false, Text, WHOLE_TEXT, Style.Alignment, ClipRect);
}

void PrintStyledN(int Surface, int x, int y, const TextStyle& Style, const char* Text, int Length) {
  PrintText(Surface, x, y, Style.Font, Style.Color(), false, Text, Length, Style.Alignment, NO_CLIP);
}

int GetStyleOffset(const TextStyle& Style, int Width) {
  switch (Style.Alignment) {
    case CENTER_ALIGN:
      return Width / 2;
    case RIGHT_ALIGN:
      return Width;
    default:
      return 0;
  }
}

TTextStart GetStyledStart(int x, int y, int Width, int Height, const TextStyle& Style) {
  return {x + GetStyleOffset(Style, Width), y + (Height - FontHeight(Style.Font)) / 2};
}
