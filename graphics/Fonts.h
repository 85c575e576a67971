#pragma once
// The four bitmap fonts and the one routine that draws text. A font is a grid
// of glyph cells on a picture of Kelmo.pic; the advance of each glyph is
// measured from the picture's pixels when the pictures are loaded. Text is
// Latin-1, one byte one character.
#include <array>
#include <string_view>

#include "graphics/Surface.h"

constexpr int NumberOfFonts = 4;
constexpr int GLYPHS = 224;
// A length that means the whole text.
constexpr int WHOLE_TEXT = 0x7FFFFFFF;

enum : int {
  LEFT_ALIGN = 0,
  CENTER_ALIGN = 1,
  RIGHT_ALIGN = 2,
};

// The colour of text between "{" and "}" when highlighting is asked for.
constexpr TRGBColor HIGHLIGHT_COLOR{32, 160, 255};

struct TFont {
  int PictureNumber = 0;
  int CharsPerRow = 32;
  int CellWidth = 0;
  int CellHeight = 0;
  std::array<int, GLYPHS> CharWidth{};
  std::array<int, GLYPHS> CharHeight{};
  int CharSpacing = 0;
  int FontHeight = 0;
  int LineHeight = 0;
};

// Font, colour and alignment of a text widget.
struct TextStyle {
  int Font = 4;
  int Red = 224;
  int Green = 224;
  int Blue = 224;
  int Alignment = LEFT_ALIGN;

  TRGBColor Color() const { return {Red, Green, Blue}; }
  bool operator==(const TextStyle&) const = default;
};

struct TTextStart {
  int x = 0;
  int y = 0;
};

// Measures the glyphs; needs the picture table. Runs again after a reload.
void InitFonts();
void ExitFonts();
const TFont& GetFont(int FontNumber);

int FontHeight(int FontNumber);
// A number above NumberOfFonts takes font 3's distance.
int LineHeight(int FontNumber);
int TextHeight(int FontNumber, std::string_view Text, bool Highlight);
int TextWidth(int FontNumber, std::string_view Text, int Length, bool Highlight);
int CharsThatFit(int FontNumber, std::string_view Text, int Width, bool Highlight);

void PrintText(int Surface, int x, int y, int FontNumber, TRGBColor Color, bool Highlight, const char* Text,
               int Length, int Alignment, TRect ClipRect);
void PrintCentred(int Surface, int x, int y, TRGBColor Color, const char* Text, int Length);
void PrintClipped(int Surface, int x, int y, int FontNumber, TRGBColor Color, const char* Text, int Alignment,
                  TRect ClipRect);
void PrintPlain(int Surface, int x, int y, int FontNumber, TRGBColor Color, const char* Text, int Alignment);
void PrintStyled(int Surface, int x, int y, const TextStyle& Style, const char* Text);
void PrintStyledClipped(int Surface, int x, int y, const TextStyle& Style, const char* Text, TRect ClipRect);
void PrintStyledN(int Surface, int x, int y, const TextStyle& Style, const char* Text, int Length);

// Where a styled text starts in a rectangle of Width by Height.
int GetStyleOffset(const TextStyle& Style, int Width);
TTextStart GetStyledStart(int x, int y, int Width, int Height, const TextStyle& Style);
