// The data files that the build draws decode completely with these readers:
// every sprite, every picture tile, and the named skins lie on the sheet.
#include <gtest/gtest.h>

#include <filesystem>

#include "core/Preferences.h"
#include "graphics/Graphics.h"

#ifndef KELMO_DATA_DIR
#error "KELMO_DATA_DIR must name the built data files"
#endif

namespace {

const std::filesystem::path Data(KELMO_DATA_DIR);

class DataFilesTest : public ::testing::Test {
 protected:
  void SetUp() override {
    const auto Missing = [](const char* Name) {
      return !std::filesystem::exists(Data / Name) || std::filesystem::file_size(Data / Name) == 0;
    };
    if (Missing("Kelmo.spr") || Missing("Kelmo.pic")) {
      GTEST_SKIP() << "the data files are not built";
    }
    LoadSprites((Data / "Kelmo.spr").string());
    LoadPictures((Data / "Kelmo.pic").string());
  }
  void TearDown() override { ExitGraphics(); }
};

TEST_F(DataFilesTest, EverySpriteAndTileDecodes) {
  ASSERT_GT(GetNumberOfSprites(), 0);
  TCell Cell{};
  for (int Sprite = 1; Sprite <= GetNumberOfSprites(); ++Sprite) {
    ASSERT_NO_THROW(ReadSprite(Sprite, Cell)) << "sprite " << Sprite;
  }
  ASSERT_GE(GetNumberOfPictures(), EMPTY_SPRITE_PICTURE);
  for (int Picture = 1; Picture <= GetNumberOfPictures(); ++Picture) {
    const auto [TilesX, TilesY] = GetPictureTiles(Picture);
    for (int TileY = 0; TileY < TilesY; ++TileY) {
      for (int TileX = 0; TileX < TilesX; ++TileX) {
        ASSERT_NO_THROW(ReadPictureTile(Picture, TileX, TileY, Cell)) << "picture " << Picture;
      }
    }
  }
}

TEST_F(DataFilesTest, NamedSkinsLieOnTheInterfaceSheet) {
  const auto [TilesX, TilesY] = GetPictureTiles(INTERFACE_PICTURE);
  for (int Skin = 1; Skin <= 6; ++Skin) {
    const TSkin& Rect = GetSkin(Skin);
    EXPECT_LE(Rect.x + Rect.width, TilesX * CELL_SIZE) << Skin;
    EXPECT_LE(Rect.y + Rect.height, TilesY * CELL_SIZE) << Skin;
  }
}

}  // namespace
