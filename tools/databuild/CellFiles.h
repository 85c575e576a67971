#pragma once
// Kelmo.spr and Kelmo.pic: 32 x 32 cells in run-length form, each with its
// transparent colour. The writers and, for the contact sheets and the tests,
// the readers.
#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "tools/databuild/Image.h"

constexpr int CELL_SIZE = 32;
constexpr int CELL_PIXELS = CELL_SIZE * CELL_SIZE;

// The transparent colour of everything the builder draws. A drawn pixel of
// this colour would vanish, so cells move such pixels one step off it.
constexpr TColour KEY_COLOUR{255, 0, 255};

struct TCell {
  TColour Key;
  std::array<TColour, CELL_PIXELS> Pixels{};
  bool operator==(const TCell&) const = default;

  bool isTransparent(int Index) const { return Pixels[static_cast<size_t>(Index)] == Key; }
};

// The cell of Image at (X, Y): pixels with alpha up to half become Key.
TCell CellFromImage(const TCanvas& Image, int X, int Y, TColour Key = KEY_COLOUR);
// A cell as an image, its transparent pixels with alpha 0.
TCanvas ImageFromCell(const TCell& Cell);

// Run data: (transparent count, coloured count, colours) groups; a trailing
// transparent stretch has no group.
std::vector<std::uint8_t> EncodeRuns(const TCell& Cell);
// Fails with "run passes pixel 1023" or "run data cut short".
TCell DecodeRuns(std::span<const std::uint8_t> Runs, TColour Key);

struct TPicture {
  int TilesX = 0;
  int TilesY = 0;
  TColour Key;
  std::vector<TCell> Tiles;  // row by row

  const TCell& tile(int X, int Y) const { return Tiles[static_cast<size_t>(Y * TilesX + X)]; }
};

// Cuts Image into tiles; the part beyond its edge up to the next tile is Key.
TPicture PictureFromImage(const TCanvas& Image, TColour Key = KEY_COLOUR);
TCanvas ImageFromPicture(const TPicture& Picture);

struct TSpriteFile {
  std::uint32_t Signature = 0;
  std::vector<TCell> Sprites;  // sprite 1 first
};

struct TPictureFile {
  std::uint32_t Signature = 0;
  std::vector<TPicture> Pictures;  // picture 1 first
};

// Both write the file in one piece, through a temporary name.
void WriteSpriteFile(const TSpriteFile& File, const std::string& FileName);
void WritePictureFile(const TPictureFile& File, const std::string& FileName);
// An offset of 0 reads as a black cell with black as its transparent colour.
TSpriteFile ReadSpriteFile(const std::string& FileName);
TPictureFile ReadPictureFile(const std::string& FileName);
