#include <gtest/gtest.h>

#include "core/Exception.h"
#include "core/Script.h"
#include "tests/databuild/ArtFixture.h"
#include "tools/databuild/CellFiles.h"

namespace {

using testing_databuild::TFolderTest;

constexpr TColour KEY{255, 0, 255};

TCell Transparent() {
  TCell Cell;
  Cell.Key = KEY;
  Cell.Pixels.fill(KEY);
  return Cell;
}

TCell Pattern(std::uint32_t Seed) {
  TCell Cell = Transparent();
  for (int I = 0; I < CELL_PIXELS; ++I) {
    if ((I * 7 + Seed) % 5 < 2) continue;
    Cell.Pixels[static_cast<size_t>(I)] = {static_cast<std::uint8_t>(I), static_cast<std::uint8_t>(Seed),
                                           static_cast<std::uint8_t>(I >> 2)};
  }
  return Cell;
}

std::vector<std::uint8_t> Runs(std::initializer_list<int> Bytes) {
  return {Bytes.begin(), Bytes.end()};
}

TEST(CellRuns, CellsSurviveEncodingBitForBit) {
  TCell Full = Transparent();
  Full.Pixels.fill({1, 2, 3});
  for (const TCell& Cell : {Transparent(), Full, Pattern(1), Pattern(4)}) {
    EXPECT_EQ(DecodeRuns(EncodeRuns(Cell), KEY), Cell);
  }
}

TEST(CellRuns, TheEncodingIsTheFilesRunForm) {
  EXPECT_TRUE(EncodeRuns(Transparent()).empty());  // wholly transparent: no group at all
  TCell Cell = Transparent();
  Cell.Pixels[3] = {10, 20, 30};
  Cell.Pixels[4] = {40, 50, 60};
  // skip 3, colour 2, and no group for the transparent rest
  EXPECT_EQ(EncodeRuns(Cell), Runs({3, 0, 2, 0, 10, 20, 30, 40, 50, 60}));
  Cell.Pixels[1023] = {1, 1, 1};
  EXPECT_EQ(EncodeRuns(Cell).size(), 10u + 4u + 3u);
}

TEST(CellRuns, DecodingFollowsTheRules) {
  // skip 4 with no coloured pixel, then skip 2 and colour 1
  const TCell Cell = DecodeRuns(Runs({4, 0, 0, 0, 2, 0, 1, 0, 9, 9, 9}), KEY);
  for (int I : {0, 3, 4, 5, 7, 1023}) EXPECT_TRUE(Cell.isTransparent(I)) << I;
  EXPECT_EQ(Cell.Pixels[6], (TColour{9, 9, 9}));
  EXPECT_THROW(DecodeRuns(Runs({0xFF, 0x03, 2, 0, 1, 1, 1, 2, 2, 2}), KEY), TMyException);  // passes pixel 1023
  EXPECT_THROW(DecodeRuns(Runs({0, 0, 2, 0, 1, 1, 1}), KEY), TMyException);                 // cut short
}

TEST(CellRuns, ADrawnPixelOfTheKeyColourStaysVisible) {
  TCanvas Image(32, 32);
  Image.set(5, 5, {255, 0, 255, 255});
  const TCell Cell = CellFromImage(Image, 0, 0, KEY);
  EXPECT_FALSE(Cell.isTransparent(5 * 32 + 5));
  EXPECT_TRUE(Cell.isTransparent(0));
}

class CellFiles : public TFolderTest {};

TEST_F(CellFiles, SpriteFilesSurviveWritingAndReading) {
  TSpriteFile File{1234, {Pattern(1), Transparent(), Pattern(2)}};
  WriteSpriteFile(File, this->File("a.spr"));
  const TSpriteFile Read = ReadSpriteFile(this->File("a.spr"));
  EXPECT_EQ(Read.Signature, 1234u);
  EXPECT_EQ(Read.Sprites, File.Sprites);
  // header, three offsets, then the first record with its key colour
  TBinaryFileReader Reader;
  Reader.open(this->File("a.spr"));
  EXPECT_EQ(Reader.readQuad(), 1234u);
  EXPECT_EQ(Reader.readQuad(), 3u);
  EXPECT_EQ(Reader.readQuad(), 8u + 12u);
  Reader.seek(20);
  EXPECT_EQ(Reader.readByte(), 255);
}

TEST_F(CellFiles, AnEmptySpriteReadsAsBlack) {
  Source("empty.spr", std::string("\x07\0\0\0\x01\0\0\0\0\0\0\0", 12));
  const TSpriteFile Read = ReadSpriteFile(File("empty.spr"));
  ASSERT_EQ(Read.Sprites.size(), 1u);
  EXPECT_EQ(Read.Sprites[0].Key, TColour{});
  EXPECT_EQ(Read.Sprites[0].Pixels[500], TColour{});
}

TEST_F(CellFiles, PictureFilesKeepTheirTilesRowByRow) {
  TCanvas Image(40, 70, {0, 0, 0, 0});
  Image.fillRect(33, 0, 7, 70, {9, 8, 7, 255});
  const TPicture Picture = PictureFromImage(Image, KEY);
  EXPECT_EQ(Picture.TilesX, 2);
  EXPECT_EQ(Picture.TilesY, 3);
  TPictureFile File{77, {Picture, PictureFromImage(TCanvas(32, 32, {0, 0, 0, 255}), {1, 2, 3})}};
  WritePictureFile(File, this->File("a.pic"));
  const TPictureFile Read = ReadPictureFile(this->File("a.pic"));
  EXPECT_EQ(Read.Signature, 77u);
  ASSERT_EQ(Read.Pictures.size(), 2u);
  for (size_t P = 0; P < 2; ++P) {
    EXPECT_EQ(Read.Pictures[P].Tiles, File.Pictures[P].Tiles);
    EXPECT_EQ(Read.Pictures[P].Key, File.Pictures[P].Key);
  }
  EXPECT_FALSE(Read.Pictures[0].tile(1, 2).isTransparent(5 * 32 + 1));  // (33, 69)
  EXPECT_TRUE(Read.Pictures[0].tile(1, 2).isTransparent(6 * 32 + 1));   // below the image
  EXPECT_TRUE(Read.Pictures[0].tile(0, 2).isTransparent(0));
  // both picture records stand before any tile, and the first tile follows them
  TBinaryFileReader Reader;
  Reader.open(this->File("a.pic"));
  Reader.seek(6 + 5);
  EXPECT_EQ(Reader.readQuad(), 6u + (5 + 4 * 6) + (5 + 4 * 1));
}

}  // namespace
