#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "core/Exception.h"
#include "tests/databuild/ArtFixture.h"
#include "tools/databuild/Art.h"
#include "tools/databuild/Pictures.h"

namespace {

using testing_databuild::BuiltFile;
using testing_databuild::ObjectSources;
using testing_databuild::ReadBytes;
using testing_databuild::TFolderTest;

const TTypeSources& Demo() {
  static const TTypeSources Sources = ReadTypeSourcesWithArt(ObjectSources());
  return Sources;
}

const TSpriteFile& DemoSprites() {
  static const TSpriteFile File = DrawSprites(Demo(), ReadArtSignatures(KELMO_ART_SIGNATURES).Sprites);
  return File;
}

TPictureSources DemoPictureSources() {
  return {ReadSkinTable(KELMO_SKIN_SOURCE), ReadFontSources(KELMO_FONT_SOURCE)};
}

const TPictureFile& DemoPictures() {
  static const TPictureFile File =
      BuildPictureFile(DemoPictureSources(), ReadArtSignatures(KELMO_ART_SIGNATURES).Pictures);
  return File;
}

bool Empty(const TCell& Cell) {
  for (int I = 0; I < CELL_PIXELS; ++I) {
    if (!Cell.isTransparent(I)) return false;
  }
  return true;
}

const TCell& Sprite(std::uint32_t Number) { return DemoSprites().Sprites.at(Number - 1); }

class Art : public TFolderTest {};

TEST_F(Art, EverySpriteThatATypeNamesIsDrawn) {
  std::uint32_t Highest = 0;
  for (TTypeKind Kind : TYPE_KINDS) {
    for (size_t I = 0; I < Demo().File.Table(Kind).size(); ++I) {
      EXPECT_FALSE(Demo().art(Kind)[I].empty()) << KindName(Kind) << " " << I;
      for (std::uint32_t S : Demo().File.Table(Kind)[I].Sprites) Highest = std::max(Highest, S);
    }
  }
  EXPECT_EQ(DemoSprites().Sprites.size(), Highest);
  // Each type shows something in its first sprites (an addon row may leave a
  // direction empty, the first row never does).
  for (TTypeKind Kind : TYPE_KINDS) {
    for (const TObjectRecord& R : Demo().File.Table(Kind)) {
      const int PerLayer = R.Width * R.Height;
      bool Any = false;
      for (int S = 0; S < PerLayer; ++S) Any = Any || !Empty(Sprite(R.Sprites[static_cast<size_t>(S)]));
      EXPECT_TRUE(Any) << KindName(Kind) << " with first sprite " << R.Sprites[0];
    }
  }
}

TEST_F(Art, OutfitMasksHoldOnlyTheFourColours) {
  const std::set<std::tuple<int, int, int>> Allowed{{255, 255, 0}, {255, 0, 0}, {0, 255, 0}, {0, 0, 255}};
  int Masks = 0;
  for (const TObjectRecord& R : Demo().File.Table(TTypeKind::OUTFIT)) {
    if (R.Layers != 2) continue;
    for (size_t S = 0; S < R.Sprites.size(); ++S) {
      const TCell& Cell = Sprite(R.Sprites[S]);
      if ((S / (R.Width * R.Height)) % 2 == 0) continue;  // layer 1
      ++Masks;
      for (int I = 0; I < CELL_PIXELS; ++I) {
        const TColour P = Cell.Pixels[static_cast<size_t>(I)];
        if (!Cell.isTransparent(I)) {
          EXPECT_TRUE(Allowed.contains({P.r, P.g, P.b})) << R.Sprites[S];
        }
      }
    }
  }
  EXPECT_GT(Masks, 0);
}

TEST_F(Art, CreaturesFaceFourWaysAndStepWhileWalking) {
  const TObjectRecord& Citizen = Demo().File.Table(TTypeKind::OUTFIT)[0];
  ASSERT_EQ(Citizen.PatternWidth, 4);
  ASSERT_EQ(Citizen.Phases, 3);
  const auto At = [&Citizen](int Direction, int Phase) {
    // layer 1, addon row 1: index ((Phase x rows + 0) x 4 + Direction) x 2
    return Sprite(Citizen.Sprites[static_cast<size_t>(((Phase * Citizen.PatternHeight) * 4 + Direction) * 2)]);
  };
  for (int A = 0; A < 4; ++A) {
    for (int B = A + 1; B < 4; ++B) EXPECT_NE(At(A, 0), At(B, 0)) << A << " " << B;
    EXPECT_NE(At(A, 0), At(A, 1));
    EXPECT_NE(At(A, 1), At(A, 2));
  }
}

TEST_F(Art, AnimatedGroundsChangeFromPhaseToPhase) {
  const TObjectRecord& Water = Demo().File.Table(TTypeKind::OBJECT)[109 - 100];
  ASSERT_EQ(Water.Phases, 4);
  const size_t PerPhase = 16;
  for (size_t P = 1; P < 4; ++P) EXPECT_NE(Sprite(Water.Sprites[0]), Sprite(Water.Sprites[P * PerPhase]));
}

TEST_F(Art, TheBuiltFilesHoldTheDrawnArtBitForBit) {
  const TSpriteFile Sprites = ReadSpriteFile(BuiltFile("Kelmo.spr"));
  EXPECT_EQ(Sprites.Signature, ReadArtSignatures(KELMO_ART_SIGNATURES).Sprites);
  EXPECT_TRUE(Sprites.Sprites == DemoSprites().Sprites);
  const TPictureFile Built = ReadPictureFile(BuiltFile("Kelmo.pic"));
  const TPictureFile& Drawn = DemoPictures();
  EXPECT_EQ(Built.Signature, Drawn.Signature);
  ASSERT_EQ(Built.Pictures.size(), Drawn.Pictures.size());
  for (size_t P = 0; P < Built.Pictures.size(); ++P) {
    EXPECT_EQ(Built.Pictures[P].TilesX, Drawn.Pictures[P].TilesX) << P + 1;
    EXPECT_EQ(Built.Pictures[P].Key, Drawn.Pictures[P].Key) << P + 1;
    EXPECT_TRUE(Built.Pictures[P].Tiles == Drawn.Pictures[P].Tiles) << P + 1;
  }
}

// A second drawing gives the very bytes of the files that the build wrote.
TEST_F(Art, TwoBuildsGiveTheSameBytes) {
  WriteSpriteFile(DrawSprites(Demo(), DemoSprites().Signature), File("again.spr"));
  EXPECT_TRUE(ReadBytes(File("again.spr")) == ReadBytes(BuiltFile("Kelmo.spr")));
  WritePictureFile(BuildPictureFile(DemoPictureSources(), DemoPictures().Signature), File("again.pic"));
  EXPECT_TRUE(ReadBytes(File("again.pic")) == ReadBytes(BuiltFile("Kelmo.pic")));
}

TEST_F(Art, PicturesHaveTheirFixedSizes) {
  const TPictureFile Built = ReadPictureFile(BuiltFile("Kelmo.pic"));
  ASSERT_EQ(Built.Pictures.size(), 9u);
  const auto Covers = [&Built](int Number, int Width, int Height) {
    const TPicture& P = Built.Pictures[static_cast<size_t>(Number - 1)];
    return P.TilesX == (Width + 31) / 32 && P.TilesY == (Height + 31) / 32;
  };
  EXPECT_TRUE(Covers(TITLE_PICTURE, TITLE_WIDTH, TITLE_HEIGHT));
  EXPECT_TRUE(Covers(TUTORIAL_PICTURE, TUTORIAL_WIDTH, TUTORIAL_HEIGHT));
  EXPECT_TRUE(Covers(BLACK_PICTURE, 32, 32));
  const TPicture& Black = Built.Pictures[BLACK_PICTURE - 1];
  EXPECT_NE(Black.Key, TColour{});  // black must not be the key, or the cell would vanish
  for (TColour P : Black.tile(0, 0).Pixels) EXPECT_EQ(P, TColour{});
  // the logo fits beside the title's right margin of 216 pixels
  EXPECT_LE(Built.Pictures[LOGO_PICTURE - 1].TilesX * 32, 216 - 15);
  // every tutorial image has something in it
  const TCanvas Tutorial = ImageFromPicture(Built.Pictures[TUTORIAL_PICTURE - 1]);
  for (const TTutorialImage& R : TUTORIAL_IMAGES) {
    EXPECT_TRUE(Tutorial.at(R.X + R.Width / 2, R.Y + R.Height / 2).a || Tutorial.at(R.X + 1, R.Y + 1).a);
  }
}

TEST_F(Art, MistakesInTheArtNamesAreFound) {
  const auto Build = [this](const std::string& Text) {
    DrawSprites(ReadTypeSourcesWithArt({Source("t.txt", "signature = 1\n" + Text)}), 1);
  };
  EXPECT_NO_THROW(Build("object 100 { art = \"grass\" patterns = (2, 2, 1) }"));
  EXPECT_THROW(Build("object 100 { art = \"no such art\" }"), TMyException);
  EXPECT_THROW(Build("object 100 { art = \"grass\" }"), TMyException);       // the wrong geometry
  EXPECT_THROW(Build("object 100 { }"), TMyException);                         // no art for its sprite
  EXPECT_THROW(ReadTypeSourcesWithArt({Source("u.txt", "signature = 1\nobject 100 { art = \"rug\" sprites = (1) }")}),
               TMyException);
}

}  // namespace
