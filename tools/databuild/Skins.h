#pragma once
// The skin table: numbered rectangles of the interface sheet (picture 5).
// One source (data/skins.txt) gives each skin a name, a size, the art that
// paints it and, where the client fixes it, its place; the builder places the
// rest and paints the sheet, and writes the same table as a C++ header that
// the client compiles in.
#include <string>
#include <vector>

#include "tools/databuild/Image.h"

// Skin numbers run from 0 to 429; the client calls the count LASTSKIN.
constexpr int SKIN_TABLE_SIZE = 430;
constexpr int SKIN_SHEET_WIDTH = 512;

struct TSkin {
  int Number = 0;
  std::string Name;  // empty: no skin
  std::string Art;
  int X = 0, Y = 0, Width = 0, Height = 0;
  bool Fixed = false;  // the source gives the place
  int SameAs = 0;      // shares the rectangle of that skin
};

struct TSkinTable {
  std::vector<TSkin> Skins;  // indexed by number, 0 to SKIN_TABLE_SIZE - 1
  int SheetHeight = 0;

  const TSkin& operator[](int Number) const { return Skins[static_cast<size_t>(Number)]; }
};

// Reads and places the table. A mistake fails with the script reader's error;
// skins that overlap or leave the sheet fail with "skins overlap" and
// "skin outside the sheet".
TSkinTable ReadSkinTable(const std::string& FileName);

// The header: the rectangles as Skins, and a constant per name (SKIN_...).
void WriteSkinHeader(const TSkinTable& Table, const std::string& FileName);

// The interface sheet with every skin painted in its rectangle.
TCanvas DrawInterfaceSheet(const TSkinTable& Table);
// Registered skin art, for the check of the source.
bool IsSkinArt(const std::string& Art);
