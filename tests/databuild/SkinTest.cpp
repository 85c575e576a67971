#include <gtest/gtest.h>

#include "core/Exception.h"
#include "data/SkinTable.h"
#include "tests/databuild/ArtFixture.h"
#include "tools/databuild/CellFiles.h"
#include "tools/databuild/Pictures.h"
#include "tools/databuild/Skins.h"

namespace {

using testing_databuild::BuiltFile;
using testing_databuild::TFolderTest;

const TSkinTable& Table() {
  static const TSkinTable Skins = ReadSkinTable(KELMO_SKIN_SOURCE);
  return Skins;
}

struct TRect {
  int X, Y, Width, Height;
  bool operator==(const TRect&) const = default;
};

TRect Rect(int Skin) { return {Table()[Skin].X, Table()[Skin].Y, Table()[Skin].Width, Table()[Skin].Height}; }
TRect Size(int Skin) { return {0, 0, Table()[Skin].Width, Table()[Skin].Height}; }

TEST(Skins, ThePointersStandWhereTheClientWantsThem) {
  EXPECT_EQ(Rect(1), (TRect{290, 12, 11, 19}));
  EXPECT_EQ(Rect(2), (TRect{301, 12, 9, 20}));
  EXPECT_EQ(Rect(3), (TRect{329, 10, 13, 22}));
  EXPECT_EQ(Rect(4), (TRect{310, 12, 19, 19}));
  EXPECT_EQ(Rect(5), (TRect{310, 12, 19, 19}));
  EXPECT_EQ(Rect(6), (TRect{271, 96, 17, 17}));
  EXPECT_EQ(Rect(0), (TRect{0, 0, 0, 0}));
}

TEST(Skins, FramesHaveTheSizesTheLayoutCountsOn) {
  // the modal dialog's frame
  for (auto [Skin, W, H] : {std::tuple{48, 4, 17}, {54, 96, 17}, {49, 4, 17}, {52, 4, 96}, {53, 4, 96},
                            {50, 4, 4}, {55, 96, 4}, {51, 4, 4}, {56, 96, 96}}) {
    EXPECT_EQ(Size(Skin), (TRect{0, 0, W, H})) << Skin;
  }
  // a content window: body at (4, 15, -4, -4), minimised height 19, icon 12 x 12
  for (int Skin : {163, 164, 167}) EXPECT_EQ(Table()[Skin].Height, 15);
  for (int Skin : {165, 166, 168}) EXPECT_EQ(Table()[Skin].Height, 4);
  for (int Skin : {163, 165, 169, 164, 166, 170}) EXPECT_EQ(Table()[Skin].Width, 4);
  for (int Skin : {184, 185}) EXPECT_EQ(Size(Skin), (TRect{0, 0, 12, 12}));
  // the close and minimise buttons fit their places at -15 and -28 from the right
  for (int Skin = 171; Skin <= 179; ++Skin) EXPECT_LE(Table()[Skin].Width, 11) << Skin;
  // scroll bars and sliders are 12 across; the arrow buttons leave 14 for the knob in 38
  for (int Skin = 193; Skin <= 200; ++Skin) EXPECT_EQ(Table()[Skin].Width, 12) << Skin;
  for (int Skin = 201; Skin <= 208; ++Skin) EXPECT_EQ(Table()[Skin].Height, 12) << Skin;
  EXPECT_LE(Table()[197].Height + Table()[199].Height + 14, 38);
  // the title panel's buttons stand 30 pixels apart in a panel 86 wide
  for (int Skin : {21, 22, 23, 24}) EXPECT_EQ(Size(Skin), (TRect{0, 0, 86, 20}));
  // the check box's mark at (6, 5) leaves room for the text at 24
  EXPECT_LE(6 + Table()[190].Width, 24);
}

TEST(Skins, TheHeaderHoldsTheSameTable) {
  static_assert(LASTSKIN == 430);
  for (int Skin = 0; Skin < LASTSKIN; ++Skin) {
    const TSkinRect& Compiled = SkinTable[static_cast<size_t>(Skin)];
    EXPECT_EQ((TRect{Compiled.x, Compiled.y, Compiled.width, Compiled.height}), Rect(Skin)) << Skin;
  }
  EXPECT_EQ(SKIN_POINTER, 1);
  EXPECT_EQ(SKIN_CLOSE, 171);
}

TEST(Skins, EverySkinIsPaintedOnTheInterfaceSheet) {
  const TPictureFile Built = ReadPictureFile(BuiltFile("Kelmo.pic"));
  const TCanvas Sheet = ImageFromPicture(Built.Pictures.at(INTERFACE_PICTURE - 1));
  int Skins = 0;
  for (const TSkin& Skin : Table().Skins) {
    if (Skin.Name.empty()) continue;
    ++Skins;
    ASSERT_LE(Skin.X + Skin.Width, Sheet.width()) << Skin.Number;
    ASSERT_LE(Skin.Y + Skin.Height, Sheet.height()) << Skin.Number;
    int Painted = 0;
    for (int Y = Skin.Y; Y < Skin.Y + Skin.Height; ++Y) {
      for (int X = Skin.X; X < Skin.X + Skin.Width; ++X) Painted += Sheet.at(X, Y).a ? 1 : 0;
    }
    EXPECT_GT(Painted, 0) << Skin.Number << " " << Skin.Name;
  }
  EXPECT_GT(Skins, 250);
}

class SkinSources : public TFolderTest {};

TEST_F(SkinSources, PlacesThatCollideAreRefused) {
  EXPECT_NO_THROW(ReadSkinTable(Source("a.txt", "skin 1 { name = \"a\" size = (4, 4) art = \"button\" at = (0, 0) }\n"
                                                "skin 2 { name = \"b\" size = (4, 4) art = \"button\" }\n")));
  EXPECT_THROW(ReadSkinTable(Source("b.txt", "skin 1 { name = \"a\" size = (4, 4) art = \"button\" at = (0, 0) }\n"
                                             "skin 2 { name = \"b\" size = (4, 4) art = \"button\" at = (2, 2) }\n")),
               TMyException);
  EXPECT_THROW(ReadSkinTable(Source("c.txt", "skin 1 { name = \"a\" size = (4, 4) art = \"button\" at = (510, 0) }\n")),
               TMyException);
  EXPECT_THROW(ReadSkinTable(Source("d.txt", "skin 1 { name = \"a\" size = (4, 4) art = \"no such art\" }\n")),
               TMyException);
  EXPECT_THROW(ReadSkinTable(Source("e.txt", "skin 1 { name = \"a\" size = (4, 4) art = \"button\" }\n"
                                             "skin 2 { name = \"a\" size = (4, 4) art = \"button\" }\n")),
               TMyException);
}

}  // namespace
