// The sprite and picture stores on the software engine: decoding, the memory
// cache and the video cache, shown with their counters.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <set>
#include <tuple>

#include "core/Exception.h"
#include "core/Preferences.h"
#include "graphics/Engines.h"
#include "graphics/Graphics.h"
#include "graphics/SurfaceDX.h"
#include "tests/graphics/TestFiles.h"

namespace {

using namespace testfiles;

void ExpectFailure(const std::function<void()>& Action, const std::string& Text) {
  try {
    Action();
    ADD_FAILURE() << "no failure, expected " << Text;
  } catch (const TMyException& Failure) {
    EXPECT_EQ(Failure.Text(), Text);
  }
}

TRGBColor PixelOf(const TCell& Cell, int x, int y) {
  const size_t Index = static_cast<size_t>(y * 32 + x) * 3;
  return {Cell[Index], Cell[Index + 1], Cell[Index + 2]};
}

TRGBColor PixelOf(const TImage& Image, int x, int y) {
  const size_t Index = (static_cast<size_t>(y) * Image.Width + x) * 3;
  return {Image.Pixels[Index], Image.Pixels[Index + 1], Image.Pixels[Index + 2]};
}

// Sprite n is a block of colour n in its top half, transparent (n, n, n) below.
TSpriteSource NumberedSprite(int Number) {
  return {{Number % 256, Number % 256, Number % 256}, [Number](int, int y) -> std::optional<TRGBColor> {
            if (y >= 16) return std::nullopt;
            return TRGBColor{Number % 251, (Number / 251) % 256, 200};
          }};
}

class StoresTest : public ::testing::Test {
 protected:
  StoresTest() {
    InitPreferences();
    SetCurrentEngine(ENGINE_DIRECTX5);
    ReplaceSurface(std::make_unique<CSurfaceDX>());
    GetSurface()->Startup();
    GetSurface()->ResumeSurfaces();
  }
  ~StoresTest() override {
    ExitGraphics();
    ReleaseSurface();
    ExitPreferences();
  }

  void Load(const CBytes& Sprites, const CBytes& Pictures) {
    Sprites.Save(Directory.File("Kelmo.spr"));
    Pictures.Save(Directory.File("Kelmo.pic"));
    LoadSprites(Directory.File("Kelmo.spr"));
    LoadPictures(Directory.File("Kelmo.pic"));
    ResetVideoCache();
    ResetGraphicsCounters();
  }

  // Many sprites that share one record, and a small picture file.
  void LoadNumbered(int Count) {
    std::vector<TSpriteSource> Sources;
    for (int Number = 1; Number <= Count; ++Number) Sources.push_back(NumberedSprite(Number));
    Load(SpriteFile(7, Sources), StandardPictures());
  }

  // Picture 1: 2 x 2 tiles, each tile its own colour; 2 to 9 one tile each,
  // picture 8 a black cell; the font sheets 4, 6, 7, 9 white glyph bars on magenta.
  static CBytes StandardPictures() {
    std::vector<TPictureSource> Pictures;
    Pictures.push_back({2, 2, {255, 0, 255}, [](int x, int y) -> std::optional<TRGBColor> {
                          if (x % 32 == 0) return std::nullopt;
                          return TRGBColor{x / 32 * 100 + 50, y / 32 * 100 + 50, 10};
                        }});
    for (int Number = 2; Number <= 9; ++Number) {
      Pictures.push_back({1, 1, {255, 0, 255}, [Number](int x, int) -> std::optional<TRGBColor> {
                            if (Number == 8) return TRGBColor{0, 0, 0};
                            if (x % 4 == 3) return std::nullopt;
                            return TRGBColor{200, 200, 200};
                          }});
    }
    return PictureFile(9, Pictures);
  }

  CTempDirectory Directory;
};

TEST_F(StoresTest, ReadsTheTablesAndDecodesRunsByteByByte) {
  CBytes Sprites;
  Sprites.U32(0xA1B2C3D4);
  Sprites.U32(4);
  Sprites.U32(24);  // sprite 1
  Sprites.U32(0);   // sprite 2: empty
  Sprites.U32(53);  // sprite 3: no run data
  Sprites.U32(58);  // sprite 4: a run past the last pixel
  // Sprite 1 at 24: transparent (10, 20, 30), 24 bytes of runs.
  Sprites.Color({10, 20, 30});
  Sprites.U16(24);
  Sprites.U16(2), Sprites.U16(3);  // skip 2, three pixels
  Sprites.Color({1, 2, 3}), Sprites.Color({4, 5, 6}), Sprites.Color({7, 8, 9});
  Sprites.U16(5), Sprites.U16(0);  // a run that only skips
  Sprites.U16(22), Sprites.U16(1);  // to pixel 32: the second row's first pixel
  Sprites.Color({11, 12, 13});
  ASSERT_EQ(Sprites.Size(), 53u);
  Sprites.Color({40, 50, 60});
  Sprites.U16(0);
  ASSERT_EQ(Sprites.Size(), 58u);
  Sprites.Color({0, 0, 0});
  Sprites.U16(7);
  Sprites.U16(1020), Sprites.U16(5);
  Sprites.U8(0), Sprites.U8(0), Sprites.U8(0);
  Load(Sprites, StandardPictures());

  EXPECT_EQ(GetSpriteSignature(), 0xA1B2C3D4u);
  EXPECT_EQ(GetNumberOfSprites(), 4);
  EXPECT_EQ(GetPictureSignature(), 9u);
  EXPECT_EQ(GetNumberOfPictures(), 9);

  TCell Cell{};
  ReadSprite(1, Cell);
  EXPECT_EQ(GetSpriteColor(1), (TRGBColor{10, 20, 30}));
  EXPECT_EQ(PixelOf(Cell, 0, 0), (TRGBColor{10, 20, 30}));
  EXPECT_EQ(PixelOf(Cell, 2, 0), (TRGBColor{1, 2, 3}));
  EXPECT_EQ(PixelOf(Cell, 4, 0), (TRGBColor{7, 8, 9}));
  EXPECT_EQ(PixelOf(Cell, 5, 0), (TRGBColor{10, 20, 30}));
  EXPECT_EQ(PixelOf(Cell, 0, 1), (TRGBColor{11, 12, 13}));
  EXPECT_EQ(PixelOf(Cell, 31, 31), (TRGBColor{10, 20, 30}));

  Cell.fill(99);
  ReadSprite(2, Cell);
  EXPECT_EQ(GetSpriteColor(2), (TRGBColor{0, 0, 0}));
  EXPECT_TRUE(std::all_of(Cell.begin(), Cell.end(), [](std::uint8_t Byte) { return Byte == 0; }));

  ReadSprite(3, Cell);
  for (int Pixel = 0; Pixel < 1024; ++Pixel) ASSERT_EQ(PixelOf(Cell, Pixel % 32, Pixel / 32), (TRGBColor{40, 50, 60}));

  ExpectFailure([&] { ReadSprite(4, Cell); }, "Pixel+ColoredPixels<=1024");
  ExpectFailure([&] { ReadSprite(5, Cell); }, "In(SpriteNumber,1,NumberOfSprites)");
  ExpectFailure([&] { ReadSprite(0, Cell); }, "In(SpriteNumber,1,NumberOfSprites)");
}

TEST_F(StoresTest, PictureTilesLieRowByRow) {
  LoadNumbered(1);
  EXPECT_EQ(GetPictureTiles(1), (std::array<int, 2>{2, 2}));
  EXPECT_EQ(GetPictureColor(1), (TRGBColor{255, 0, 255}));
  TCell Cell{};
  ReadPictureTile(1, 1, 0, Cell);
  EXPECT_EQ(PixelOf(Cell, 0, 0), (TRGBColor{255, 0, 255}));
  EXPECT_EQ(PixelOf(Cell, 5, 5), (TRGBColor{150, 50, 10}));
  ReadPictureTile(1, 0, 1, Cell);
  EXPECT_EQ(PixelOf(Cell, 5, 5), (TRGBColor{50, 150, 10}));
  ExpectFailure([&] { ReadPictureTile(10, 0, 0, Cell); }, "In(PictureNumber,1,NumberOfPictures)");
  ExpectFailure([&] { ReadPictureTile(1, 2, 0, Cell); }, "In(TileX,0,Picture.TilesX-1)");
  ExpectFailure([&] { ReadPictureTile(1, 0, -1, Cell); }, "In(TileY,0,Picture.TilesY-1)");
}

TEST_F(StoresTest, MissingFilesAreProgramErrorsTwoAndThree) {
  EXPECT_THROW(LoadSprites(Directory.File("Kelmo.spr")), PROGRAM_ERROR);
  try {
    LoadPictures(Directory.File("Kelmo.pic"));
  } catch (PROGRAM_ERROR Error) {
    EXPECT_EQ(Error, PROGRAM_ERROR::PIC_NOT_FOUND);
  }
  try {
    LoadSprites(Directory.File("Kelmo.spr"));
  } catch (PROGRAM_ERROR Error) {
    EXPECT_EQ(Error, PROGRAM_ERROR::SPR_NOT_FOUND);
  }
}

TEST_F(StoresTest, MemoryCacheReadsEachCellOnceAndEvictsTheLeastRecentlyUsed) {
  LoadNumbered(MEMORY_CACHE_SIZE + 1);
  for (int Number = 1; Number <= MEMORY_CACHE_SIZE; ++Number) GetMemorySprite(Number);
  EXPECT_EQ(GraphicsCounters().FileReads, MEMORY_CACHE_SIZE);
  // Sprite 1 was the oldest; a hit makes it the newest, so sprite 2 goes next.
  GetMemorySprite(1);
  EXPECT_EQ(GraphicsCounters().MemoryHits, 1);
  GetMemorySprite(MEMORY_CACHE_SIZE + 1);
  EXPECT_EQ(GraphicsCounters().FileReads, MEMORY_CACHE_SIZE + 1);
  GetMemorySprite(1);
  EXPECT_EQ(GraphicsCounters().FileReads, MEMORY_CACHE_SIZE + 1);
  GetMemorySprite(2);
  EXPECT_EQ(GraphicsCounters().FileReads, MEMORY_CACHE_SIZE + 2);
  // The item keeps what was read.
  const TMemoryCacheItem& Item = GetMemorySprite(3000);
  EXPECT_EQ(Item.Type, SPRITE_ITEM);
  EXPECT_EQ(Item.Data[0], 3000 % 251);
  EXPECT_EQ(Item.Data[1], 3000 / 251);
}

TEST_F(StoresTest, VideoCacheFillsAllPagesAndEvictsTheLeastRecentlyUsed) {
  LoadNumbered(4097);
  ASSERT_EQ(GetVideoCacheSize(), 4096);
  std::vector<std::tuple<int, int, int>> Places(1);
  for (int Number = 1; Number <= 4096; ++Number) {
    const TVideoCacheItem& Item = GetVideoSprite(Number);
    Places.push_back({Item.Page, Item.X, Item.Y});
  }
  EXPECT_EQ(std::set(Places.begin() + 1, Places.end()).size(), 4096u);
  EXPECT_EQ(GraphicsCounters().PageWrites, 4096);
  // Sprite 1 was the oldest; the hit saves it, and sprite 2 makes room.
  GetVideoSprite(1);
  const TVideoCacheItem Newcomer = GetVideoSprite(4097);
  EXPECT_EQ(GraphicsCounters().PageWrites, 4097);
  GetVideoSprite(1);
  EXPECT_EQ(GraphicsCounters().VideoHits, 2);
  const TVideoCacheItem Second = GetVideoSprite(2);
  EXPECT_EQ(GraphicsCounters().PageWrites, 4098);
  EXPECT_EQ(std::make_tuple(Newcomer.Page, Newcomer.X, Newcomer.Y), Places[2]);
  EXPECT_EQ(std::make_tuple(Second.Page, Second.X, Second.Y), Places[3]);
}

TEST_F(StoresTest, OutfitColoursAndTextColoursHaveCellsOfTheirOwn) {
  LoadNumbered(4);
  const TOutfitColors Red{{{255, 0, 0}, {0, 0, 255}, {0, 255, 0}, {255, 255, 255}}};
  const TOutfitColors Blue{{{0, 0, 255}, {0, 0, 255}, {0, 255, 0}, {255, 255, 255}}};
  const TVideoCacheItem A = GetVideoColoredSprite(1, 2, Red);
  const TVideoCacheItem B = GetVideoColoredSprite(1, 2, Blue);
  EXPECT_TRUE(A.Page != B.Page || A.X != B.X || A.Y != B.Y);
  const TVideoCacheItem Again = GetVideoColoredSprite(1, 2, Red);
  EXPECT_EQ(Again.X, A.X);
  EXPECT_EQ(Again.Y, A.Y);
  EXPECT_EQ(GraphicsCounters().PageWrites, 2);
  EXPECT_EQ(GraphicsCounters().VideoHits, 1);
  // Both cells of a coloured sprite come through the memory cache: two reads.
  EXPECT_EQ(GraphicsCounters().FileReads, 2);

  GetVideoFontTile(1, 0, 0, {255, 255, 255});
  GetVideoFontTile(1, 0, 0, {255, 0, 0});
  GetVideoFontTile(1, 0, 0, {255, 255, 255});
  EXPECT_EQ(GraphicsCounters().PageWrites, 4);
  EXPECT_EQ(GraphicsCounters().FileReads, 3);
}

TEST_F(StoresTest, AStillSceneDecodesNothingAndWritesNoPage) {
  LoadNumbered(20);
  const TOutfitColors Colors{{{255, 0, 0}, {0, 0, 255}, {0, 255, 0}, {255, 255, 0}}};
  const auto Scene = [&] {
    for (int Number = 1; Number <= 20; ++Number) DrawSprite(Number * 10, 0, Number);
    DrawColoredSprite(40, 40, 3, 4, Colors);
    DrawPicture(TEMP_SURFACE, 0, 100, 1);
    DrawSpriteStretched(CACHE_SURFACE, 0, 0, 64, 64, 5, {1, 2, 3}, NO_CLIP);
    GetVideoFontTile(4, 0, 0, {200, 100, 50});
  };
  Scene();
  EXPECT_GT(GraphicsCounters().FileReads, 0);
  ResetGraphicsCounters();
  Scene();
  EXPECT_EQ(GraphicsCounters().FileReads, 0);
  EXPECT_EQ(GraphicsCounters().MemoryMisses, 0);
  EXPECT_EQ(GraphicsCounters().PageWrites, 0);
  EXPECT_EQ(GraphicsCounters().VideoMisses, 0);
}

TEST_F(StoresTest, LostPagesAreWrittenAgainFromMemory) {
  LoadNumbered(10);
  for (int Number = 1; Number <= 10; ++Number) GetVideoSprite(Number);
  ResetGraphicsCounters();
  GetSurface()->CreateSurfaces();
  ASSERT_TRUE(GetSurface()->TestLost(1));
  ResetVideoCache();
  for (int Number = 1; Number <= 10; ++Number) GetVideoSprite(Number);
  EXPECT_EQ(GraphicsCounters().PageWrites, 10);
  EXPECT_EQ(GraphicsCounters().FileReads, 0);
  EXPECT_EQ(GraphicsCounters().MemoryHits, 10);
}

TEST_F(StoresTest, SpriteZeroDrawsNothingButThePictureCellInTheFieldCache) {
  LoadNumbered(3);
  CSurface& Surface = *GetSurface();
  Surface.ClearSurface(TEMP_SURFACE, {9, 9, 9}, 255);
  Surface.ClearSurface(CACHE_SURFACE, {9, 9, 9}, 255);
  DrawSprite(0, 0, 0);
  DrawSpriteClipped(CACHE_SURFACE, 0, 0, 0, NO_CLIP);
  EXPECT_EQ(GraphicsCounters().PageWrites, 0);
  EXPECT_EQ(PixelOf(Surface.ReadSurfaceImage(TEMP_SURFACE), 0, 0), (TRGBColor{9, 9, 9}));

  DrawFieldCacheSprite(32, 32, 0, {32, 32, 32, 32});
  DrawFieldCacheSprite(64, 32, 2, {64, 32, 32, 32});
  const TImage Cache = Surface.ReadSurfaceImage(CACHE_SURFACE);
  EXPECT_EQ(PixelOf(Cache, 32, 32), (TRGBColor{0, 0, 0}));
  EXPECT_EQ(PixelOf(Cache, 63, 63), (TRGBColor{0, 0, 0}));
  EXPECT_EQ(PixelOf(Cache, 64, 32), (TRGBColor{2, 0, 200}));
  // The sprite's transparent half leaves the cell as it was.
  EXPECT_EQ(PixelOf(Cache, 64, 63), (TRGBColor{9, 9, 9}));
  EXPECT_EQ(PixelOf(Cache, 31, 31), (TRGBColor{9, 9, 9}));
}

}  // namespace
