#include "world/Objects.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "core/Paths.h"
#include "tests/world/DatBytes.h"
#include "tests/world/WorldTest.h"

namespace {

using testing_world::FailureReport;
using testing_world::TDatBytes;

bool Reports(const std::string& Report, const std::string& Text) {
  return Report.find(Text) != std::string::npos;
}

class ObjectsTest : public testing_world::TFileTest {
 protected:
  void TearDown() override {
    ExitObjects();
    TFileTest::TearDown();
  }

  void Load(const TDatBytes& Bytes) {
    Bytes.Write(File("Kelmo.dat"));
    LoadObjects(File("Kelmo.dat").string());
  }
  std::string LoadFailure(const TDatBytes& Bytes) {
    return FailureReport([&] { Load(Bytes); });
  }
};

// Object 100 has every flag with a meaning, in order, with its operands.
TDatBytes EveryFlag() {
  TDatBytes Bytes;
  Bytes.Header(0x11223344, 101, 0, 0, 0);
  Bytes.U8(BANK).U16(150);
  for (int Flag = EDGE; Flag <= MULTIUSE; ++Flag) Bytes.U8(Flag);
  Bytes.U8(WRITE).U16(300).U8(WRITEONCE).U16(400);
  for (int Flag = LIQUIDCONTAINER; Flag <= ROTATABLE; ++Flag) Bytes.U8(Flag);
  Bytes.U8(LIGHT).U16(7).U16(215).U8(ROOFLESS).U8(DIMLIGHT);
  Bytes.U8(SHIFT).U16(8).U16(16).U8(HEIGHT).U16(12).U8(LYING).U8(IDLEANIMATION);
  Bytes.U8(AUTOMAP).U16(24).U8(LENSHELP).U16(1100).U8(FULLBANK).U8(LOOKTHROUGH);
  Bytes.U8(CLOTHES).U16(4).Market(9, 100, 101, "everything", 6, 20).U8(DEFAULTACTION).U16(7);
  Bytes.Plain(1);
  Bytes.Plain(2);
  return Bytes;
}

TEST_F(ObjectsTest, EveryFlagAndOperandIsRead) {
  Load(EveryFlag());
  EXPECT_EQ(GetObjectFileSignature(), 0x11223344u);
  for (int Flag = BANK; Flag <= DEFAULTACTION; ++Flag) {
    EXPECT_TRUE(GetObjectFlag(100, Flag)) << Flag;
    EXPECT_FALSE(GetObjectFlag(101, Flag)) << Flag;
  }
  EXPECT_FALSE(GetObjectFlag(100, 36));
  EXPECT_EQ(GetObjectWaypoints(100), 150);
  EXPECT_EQ(GetObjectTextLength(100), 400);
  EXPECT_EQ(GetObjectLightBrightness(100), 7);
  EXPECT_EQ(GetObjectLightColor(100), 215);
  EXPECT_EQ(GetObjectShiftX(100), 8);
  EXPECT_EQ(GetObjectShiftY(100), 16);
  EXPECT_EQ(GetObjectElevation(100), 12);
  EXPECT_EQ(GetObjectAutomapColor(100), 24);
  EXPECT_EQ(GetObjectLensHelp(100), 1100);
  EXPECT_EQ(GetObjectClothSlot(100), 4);
  EXPECT_EQ(GetObjectMarketCategory(100), 9);
  EXPECT_EQ(GetObjectTradeAs(100), 100);
  EXPECT_EQ(GetObjectShowAs(100), 101);
  EXPECT_EQ(GetObjectName(100), "everything");
  EXPECT_EQ(GetObjectRestrictProfession(100), 6);
  EXPECT_EQ(GetObjectMinimumLevel(100), 20);
  EXPECT_EQ(GetObjectSprite(100, 1, 1, 1, 1, 1, 1, 1), 1u);
  EXPECT_EQ(GetObjectSprite(101, 1, 1, 1, 1, 1, 1, 1), 2u);
}

TEST_F(ObjectsTest, OperandsOfMissingFlagsFailOrAreZero) {
  Load(EveryFlag());
  const std::vector<std::pair<int (*)(int), std::string>> Asserting{
      {GetObjectWaypoints, "GetEntryFlag(Entry,BANK) (Type: 101)"},
      {GetObjectLightBrightness, "GetEntryFlag(Entry,LIGHT)"},
      {GetObjectLightColor, "GetEntryFlag(Entry,LIGHT)"},
      {GetObjectShiftX, "GetEntryFlag(Entry,SHIFT)"},
      {GetObjectShiftY, "GetEntryFlag(Entry,SHIFT)"},
      {GetObjectElevation, "GetEntryFlag(Entry,HEIGHT)"},
      {GetObjectAutomapColor, "GetEntryFlag(Entry,AUTOMAP)"},
      {GetObjectLensHelp, "GetEntryFlag(Entry,LENSHELP)"}};
  for (const auto& [Getter, Text] : Asserting) {
    EXPECT_TRUE(Reports(FailureReport([&] { Getter(101); }), Text)) << Text;
  }
  for (auto* Getter : {GetObjectClothSlot, GetObjectMarketCategory, GetObjectTradeAs,
                       GetObjectShowAs, GetObjectRestrictProfession, GetObjectMinimumLevel}) {
    EXPECT_EQ(Getter(101), 0);
  }
  EXPECT_EQ(GetObjectName(101), "unknown");
}

TEST_F(ObjectsTest, DefaultActionConsumesTwoBytesAndLeavesOnlyItsBit) {
  Load(TDatBytes().Header(1, 100, 0, 0, 0).U8(DEFAULTACTION).U16(0xFFFF).Plain(77));
  EXPECT_TRUE(GetObjectFlag(100, DEFAULTACTION));
  EXPECT_EQ(GetObjectSprite(100, 1, 1, 1, 1, 1, 1, 1), 77u);
}

// A flag byte above 35 has no operand and no meaning, but its bit is set.
TEST_F(ObjectsTest, AFlagWithoutMeaningSetsItsBitOnly) {
  Load(TDatBytes().Header(1, 100, 0, 0, 0).U8(40).U8(254).U8(CONTAINER).Plain(5));
  EXPECT_TRUE(GetObjectFlag(100, 40));
  EXPECT_TRUE(GetObjectFlag(100, 254));
  EXPECT_TRUE(GetObjectFlag(100, CONTAINER));
  EXPECT_EQ(GetObjectSprite(100, 1, 1, 1, 1, 1, 1, 1), 5u);
}

TEST_F(ObjectsTest, DisplaySizeIsStoredOnlyForPicturesOfMoreThanOneTile) {
  TDatBytes Bytes;
  Bytes.Header(1, 101, 0, 0, 0);
  Bytes.U8(255).U8(1).U8(1).U8(1).U8(1).U8(1).U8(1).U8(1).U32(10);
  Bytes.U8(255).U8(1).U8(2).U8(48).U8(1).U8(1).U8(1).U8(1).U8(1).U32(11).U32(12);
  Load(Bytes);
  EXPECT_EQ(GetObjectDisplaySize(100), 32);
  EXPECT_EQ(GetObjectWidth(101), 1);
  EXPECT_EQ(GetObjectHeight(101), 2);
  EXPECT_EQ(GetObjectDisplaySize(101), 48);
  EXPECT_EQ(GetObjectSprite(101, 1, 2, 1, 1, 1, 1, 1), 12u);
}

TEST_F(ObjectsTest, AnAnimatedRecordGetsAPrototype) {
  TDatBytes Bytes;
  Bytes.Header(1, 102, 0, 0, 0);
  // Three phases, synchronous, ping-pong, start phase 2 (stored as 1).
  Bytes.U8(255).U8(1).U8(1).U8(1).U8(1).U8(1).U8(1).U8(3);
  Bytes.U8(ANIMATION_SYNCHRON).U32(0xFFFFFFFF).U8(1);
  Bytes.U32(100).U32(100).U32(200).U32(200).U32(300).U32(300);
  Bytes.U32(1).U32(2).U32(3);
  // Two phases, asynchronous, once, start phase 0 (stored as -1): random.
  Bytes.U8(255).U8(1).U8(1).U8(1).U8(1).U8(1).U8(1).U8(2);
  Bytes.U8(ANIMATION_ASYNCHRON).U32(1).U8(0xFF).U32(50).U32(60).U32(50).U32(60);
  Bytes.U32(4).U32(5);
  // One phase: no animation block at all.
  Bytes.Plain(6);
  Load(Bytes);
  ASSERT_NE(GetObjectAnimation(100), nullptr);
  EXPECT_EQ(GetObjectPhases(100), 3);
  EXPECT_EQ(GetObjectAnimation(100)->GetAnimationType(), ANIMATION_SYNCHRON);
  EXPECT_EQ(GetObjectAnimation(100)->GetPhaseCount(), 3u);
  ASSERT_NE(GetObjectAnimation(101), nullptr);
  EXPECT_EQ(GetObjectAnimation(101)->GetAnimationType(), ANIMATION_ASYNCHRON);
  EXPECT_EQ(GetObjectAnimation(102), nullptr);
  EXPECT_EQ(GetObjectSprite(100, 1, 1, 1, 1, 1, 1, 3), 3u);
  EXPECT_EQ(GetObjectSprite(102, 1, 1, 1, 1, 1, 1, 1), 6u);
}

// The start phase as stored plus 1 reaches the animation: phase 2 here.
TEST_F(ObjectsTest, TheStoredStartPhaseIsOneLess) {
  TDatBytes Bytes;
  Bytes.Header(1, 100, 0, 0, 0);
  Bytes.U8(255).U8(1).U8(1).U8(1).U8(1).U8(1).U8(1).U8(3);
  Bytes.U8(ANIMATION_ASYNCHRON).U32(0).U8(1).U32(100).U32(100).U32(100).U32(100).U32(100).U32(100);
  Bytes.U32(1).U32(2).U32(3);
  Load(Bytes);
  EXPECT_EQ(GetObjectAnimation(100)->GetCurrentPhase(), 2u);
}

// Width 2, height 2, two of everything: 128 sprites, numbered 1000 on.
TDatBytes Cube() {
  TDatBytes Bytes;
  Bytes.Header(1, 100, 1, 1, 1);
  for (int Record = 0; Record < 3; ++Record) {
    Bytes.U8(255).U8(2).U8(2).U8(64).U8(2).U8(2).U8(2).U8(2).U8(2);
    Bytes.U8(ANIMATION_ASYNCHRON).U32(0).U8(0).U32(100).U32(100).U32(100).U32(100);
    for (std::uint32_t I = 0; I < 128; ++I) Bytes.U32(1000 + I);
  }
  // The missile: 1 x 1, 3 x 3 patterns, a sprite per direction.
  Bytes.U8(255).U8(1).U8(1).U8(1).U8(3).U8(3).U8(1).U8(1);
  for (std::uint32_t I = 0; I < 9; ++I) Bytes.U32(500 + I);
  return Bytes;
}

TEST_F(ObjectsTest, TheSpriteIndexRunsXFastestAndPhaseSlowest) {
  Load(Cube());
  EXPECT_EQ(GetObjectSprite(100, 1, 1, 1, 1, 1, 1, 1), 1000u);
  EXPECT_EQ(GetObjectSprite(100, 2, 1, 1, 1, 1, 1, 1), 1001u);
  EXPECT_EQ(GetObjectSprite(100, 1, 2, 1, 1, 1, 1, 1), 1002u);
  EXPECT_EQ(GetObjectSprite(100, 1, 1, 2, 1, 1, 1, 1), 1004u);
  EXPECT_EQ(GetObjectSprite(100, 1, 1, 1, 2, 1, 1, 1), 1008u);
  EXPECT_EQ(GetObjectSprite(100, 1, 1, 1, 1, 2, 1, 1), 1016u);
  EXPECT_EQ(GetObjectSprite(100, 1, 1, 1, 1, 1, 2, 1), 1032u);
  EXPECT_EQ(GetObjectSprite(100, 1, 1, 1, 1, 1, 1, 2), 1064u);
  EXPECT_EQ(GetObjectSprite(100, 2, 2, 2, 2, 2, 2, 2), 1127u);
}

TEST_F(ObjectsTest, SpriteArgumentsAreCheckedInOrder) {
  Load(Cube());
  const std::vector<std::pair<std::vector<int>, std::string>> Cases{
      {{3, 0, 0, 0, 0, 0, 0}, "In(X,1,Entry.Width) (X: 3, Entry.Width: 2)"},
      {{1, 0, 0, 0, 0, 0, 0}, "In(Y,1,Entry.Height) (Y: 0, Entry.Height: 2)"},
      {{1, 1, 3, 0, 0, 0, 0}, "In(Layer,1,Entry.Layers)"},
      {{1, 1, 1, 0, 0, 0, 0}, "In(PatternX,1,Entry.PatternWidth)"},
      {{1, 1, 1, 1, 3, 0, 0}, "In(PatternY,1,Entry.PatternHeight)"},
      {{1, 1, 1, 1, 1, 0, 0}, "In(PatternZ,1,Entry.PatternDepth)"},
      {{1, 1, 1, 1, 1, 1, 3}, "In(Phase,1,Entry.Phases) (Phase: 3, Entry.Phases: 2)"}};
  for (const auto& [A, Text] : Cases) {
    EXPECT_TRUE(Reports(
        FailureReport([&] { GetObjectSprite(100, A[0], A[1], A[2], A[3], A[4], A[5], A[6]); }),
        Text))
        << Text;
  }
}

TEST_F(ObjectsTest, OutfitsEffectsAndMissilesHaveTheirOwnSpriteQueries) {
  Load(Cube());
  // The direction is zero-based: east is PatternX 2.
  EXPECT_EQ(GetOutfitSprite(1, 1, 1, 1, 1, 1, 1, 1), 1008u);
  EXPECT_EQ(GetOutfitSprite(1, 2, 2, 2, 0, 2, 2, 2), 1119u);
  EXPECT_EQ(GetEffectSprite(1, 1, 1, 1, 2, 2, 2), 1088u);
  const std::vector<std::uint32_t> ByDirection{501, 502, 505, 508, 507, 506, 503, 500};
  for (int Direction = 0; Direction < 8; ++Direction) {
    EXPECT_EQ(GetMissileSprite(1, 1, 1, 1, Direction), ByDirection[static_cast<size_t>(Direction)])
        << Direction;
  }
  EXPECT_TRUE(Reports(FailureReport([] { GetMissileSprite(1, 1, 1, 1, 8); }),
                      "In(Direction,0,7) (Direction: 8)"));
  EXPECT_EQ(GetMissileWidth(1), 1);
  EXPECT_EQ(GetMissileLayers(1), 1);
  EXPECT_EQ(GetEffectPhases(1), 2);
  EXPECT_NE(GetEffectAnimation(1), nullptr);
  EXPECT_EQ(GetOutfitDisplaySize(1), 64);
}

TEST_F(ObjectsTest, TheAddonMaskFollowsThePatternHeight) {
  TDatBytes Bytes;
  Bytes.Header(1, 99, 5, 0, 0);
  for (int Height = 1; Height <= 5; ++Height) {
    Bytes.U8(255).U8(1).U8(1).U8(1).U8(4).U8(Height).U8(1).U8(1);
    for (int I = 0; I < 4 * Height; ++I) Bytes.U32(1);
  }
  Load(Bytes);
  const std::vector<int> Masks{0, 1, 3, 7, 0};
  for (int Outfit = 1; Outfit <= 5; ++Outfit) {
    EXPECT_EQ(GetOutfitAddons(Outfit), Masks[static_cast<size_t>(Outfit - 1)]) << Outfit;
  }
}

TEST_F(ObjectsTest, LightAndShiftOfOutfitsEffectsAndMissiles) {
  TDatBytes Bytes;
  Bytes.Header(1, 99, 1, 1, 1);
  Bytes.U8(LIGHT).U16(3).U16(4).U8(SHIFT).U16(5).U16(6).U8(IDLEANIMATION).Plain(1);
  Bytes.U8(LIGHT).U16(7).U16(8).Plain(2);
  Bytes.U8(LIGHT).U16(9).U16(10).Plain(3);
  Load(Bytes);
  EXPECT_TRUE(GetOutfitFlag(1, IDLEANIMATION));
  EXPECT_EQ(GetOutfitLightBrightness(1), 3);
  EXPECT_EQ(GetOutfitLightColor(1), 4);
  EXPECT_EQ(GetOutfitShiftX(1), 5);
  EXPECT_EQ(GetOutfitShiftY(1), 6);
  EXPECT_TRUE(GetEffectFlag(1, LIGHT));
  EXPECT_EQ(GetEffectLightBrightness(1), 7);
  EXPECT_EQ(GetEffectLightColor(1), 8);
  EXPECT_TRUE(GetMissileFlag(1, LIGHT));
  EXPECT_EQ(GetMissileLightBrightness(1), 9);
  EXPECT_EQ(GetMissileLightColor(1), 10);
}

TEST_F(ObjectsTest, NumbersOutsideTheTablesFail) {
  Load(EveryFlag());
  EXPECT_TRUE(Reports(FailureReport([] { GetObjectWidth(99); }),
                      "index out of range (original i:99, i:-1, min:100, d:2)"));
  EXPECT_TRUE(Reports(FailureReport([] { GetObjectWidth(102); }), "index out of range"));
  EXPECT_TRUE(Reports(FailureReport([] { GetOutfitWidth(1); }), "index out of range"));
  EXPECT_TRUE(Reports(FailureReport([] { GetObjectFlag(102, BANK); }),
                      "In(Type,ObjectProperties->low(),ObjectProperties->high()) "
                      "(Type: 102, Flag: 0)"));
}

TEST_F(ObjectsTest, ACreatureOnlyBlocksThePathWithOrWithoutTables) {
  EXPECT_TRUE(GetObjectFlag(CREATURE, BLOCKPATH));
  EXPECT_FALSE(GetObjectFlag(CREATURE, BANK));
  EXPECT_TRUE(Reports(FailureReport([] { GetObjectFlag(100, BANK); }),
                      "In(Type,ObjectProperties->low(),ObjectProperties->high())"));
  Load(EveryFlag());
  EXPECT_TRUE(GetObjectFlag(CREATURE, BLOCKPATH));
  EXPECT_FALSE(GetObjectFlag(CREATURE, BANK));
}

// Objects 100 to 106: a cumulative one (4 x 2 patterns), one with 2 x 1, a
// liquid container and a pool (4 x 2), hanging ones with 3, 2 and 1 patterns.
TDatBytes PatternObjects() {
  TDatBytes Bytes;
  Bytes.Header(1, 107, 0, 0, 0);
  const auto Patterned = [&Bytes](std::vector<int> Flags, int Width, int Height, int Depth) {
    for (int Flag : Flags) Bytes.U8(Flag);
    Bytes.U8(255).U8(1).U8(1).U8(1).U8(Width).U8(Height).U8(Depth).U8(1);
    for (int I = 0; I < Width * Height * Depth; ++I) Bytes.U32(1);
  };
  Patterned({CUMULATIVE}, 4, 2, 1);
  Patterned({CUMULATIVE}, 2, 1, 1);
  Patterned({LIQUIDCONTAINER}, 4, 2, 1);
  Patterned({LIQUIDPOOL}, 4, 2, 1);
  Patterned({HANG}, 3, 1, 1);
  Patterned({HANG}, 2, 1, 1);
  Patterned({HANG}, 1, 1, 1);
  Patterned({}, 4, 3, 2);
  return Bytes;
}

TEST_F(ObjectsTest, ACumulativeObjectPicksItsPatternByCount) {
  Load(PatternObjects());
  const std::vector<std::pair<int, TPattern>> Cases{
      {0, {1, 1, 1}},  {1, {1, 1, 1}},  {2, {2, 1, 1}},  {3, {3, 1, 1}},
      {4, {4, 1, 1}},  {5, {1, 2, 1}},  {9, {1, 2, 1}},  {10, {2, 2, 1}},
      {24, {2, 2, 1}}, {25, {3, 2, 1}}, {49, {3, 2, 1}}, {50, {4, 2, 1}},
      {100, {4, 2, 1}}};
  for (const auto& [Count, Pattern] : Cases) {
    EXPECT_EQ(GetCumulativePattern(100, Count), Pattern) << Count;
  }
  // Fewer patterns: the cell wraps round.
  EXPECT_EQ(GetCumulativePattern(101, 4), (TPattern{2, 1, 1}));
  EXPECT_EQ(GetCumulativePattern(101, 30), (TPattern{1, 1, 1}));
  EXPECT_TRUE(Reports(FailureReport([] { GetCumulativePattern(102, 1); }),
                      "GetObjectFlag(Obj,CUMULATIVE)"));
}

TEST_F(ObjectsTest, ALiquidPicksItsPatternByColour) {
  Load(PatternObjects());
  // Liquid type, and the colour's cell: x = colour % 4, y = colour / 4.
  const std::vector<std::pair<int, TPattern>> Cases{
      {0, {1, 1, 1}},  {1, {2, 1, 1}},  {18, {2, 1, 1}}, {5, {3, 1, 1}}, {11, {3, 1, 1}},
      {3, {4, 1, 1}},  {4, {4, 1, 1}},  {7, {4, 1, 1}},  {13, {4, 1, 1}}, {16, {4, 1, 1}},
      {17, {4, 1, 1}}, {6, {1, 2, 1}},  {8, {2, 2, 1}},  {12, {2, 2, 1}}, {14, {2, 2, 1}},
      {9, {3, 2, 1}},  {15, {3, 2, 1}}, {2, {4, 2, 1}},  {10, {4, 2, 1}}};
  for (const auto& [Liquid, Pattern] : Cases) {
    EXPECT_EQ(GetLiquidPattern(102, Liquid), Pattern) << Liquid;
    EXPECT_EQ(GetLiquidPattern(103, Liquid), Pattern) << Liquid;
  }
  EXPECT_TRUE(Reports(FailureReport([] { GetLiquidPattern(100, 1); }),
                      "GetObjectFlag(Obj,LIQUIDPOOL) || GetObjectFlag(Obj,LIQUIDCONTAINER)"));
}

TEST_F(ObjectsTest, AHangingObjectPicksItsPatternByHook) {
  Load(PatternObjects());
  EXPECT_EQ(GetHangPattern(104, HOOKSOUTH), (TPattern{2, 1, 1}));
  EXPECT_EQ(GetHangPattern(104, HOOKEAST), (TPattern{3, 1, 1}));
  EXPECT_EQ(GetHangPattern(104, 0), (TPattern{1, 1, 1}));
  EXPECT_EQ(GetHangPattern(105, HOOKSOUTH), (TPattern{2, 1, 1}));
  EXPECT_EQ(GetHangPattern(105, HOOKEAST), (TPattern{1, 1, 1}));
  EXPECT_EQ(GetHangPattern(106, HOOKSOUTH), (TPattern{1, 1, 1}));
  EXPECT_TRUE(Reports(FailureReport([] { GetHangPattern(100, HOOKSOUTH); }),
                      "GetObjectFlag(Obj,HANG)"));
}

TEST_F(ObjectsTest, AnyOtherObjectPicksItsPatternByPosition) {
  Load(PatternObjects());
  EXPECT_EQ(GetPositionPattern(107, 32000, 31001, 7), (TPattern{1, 3, 2}));
  EXPECT_EQ(GetPositionPattern(107, 32003, 31002, 6), (TPattern{4, 1, 1}));
  EXPECT_EQ(GetObjectPattern(107, 0, 0, 32001, 31000, 0), (TPattern{2, 2, 1}));
  EXPECT_EQ(GetObjectPattern(100, 25, 0, 32001, 31000, 0), (TPattern{3, 2, 1}));
  EXPECT_EQ(GetObjectPattern(103, 6, 0, 32001, 31000, 0), (TPattern{1, 2, 1}));
  EXPECT_EQ(GetObjectPattern(104, 0, HOOKEAST, 32001, 31000, 0), (TPattern{3, 1, 1}));
}

TDatBytes MarketObjects() {
  TDatBytes Bytes;
  Bytes.Header(1, 105, 0, 0, 0);
  Bytes.Market(1, 100, 0, "Sword").Plain(1);
  Bytes.Market(1, 101, 0, "axe").Plain(1);
  Bytes.Market(1, 100, 0, "old sword").Plain(1);  // traded as 100: not listed
  Bytes.Market(1, 103, 0, "sword").Plain(1);      // equal to 100 but for case
  Bytes.Plain(1);
  Bytes.Market(1, 105, 0, "Bow").Plain(1);
  return Bytes;
}

TEST_F(ObjectsTest, TheMarketListHoldsOwnTradesSortedByName) {
  Load(MarketObjects());
  EXPECT_EQ(GetMarketList(), (std::vector<int>{101, 105, 100, 103}));
  ExitObjects();
  EXPECT_TRUE(GetMarketList().empty());
}

TEST_F(ObjectsTest, ExitObjectsFreesTheTables) {
  Load(EveryFlag());
  ExitObjects();
  EXPECT_EQ(GetObjectFileSignature(), 0u);
  EXPECT_TRUE(Reports(FailureReport([] { GetObjectWidth(100); }), "index out of range"));
}

TEST_F(ObjectsTest, AReloadReplacesTheTables) {
  Load(EveryFlag());
  Load(MarketObjects());
  EXPECT_EQ(GetObjectFileSignature(), 1u);
  EXPECT_FALSE(GetObjectFlag(100, BANK));
  EXPECT_EQ(GetObjectName(101), "axe");
}

TEST_F(ObjectsTest, ATruncatedFileFailsAndLeavesNoTables) {
  Load(EveryFlag());
  TDatBytes Short;
  Short.Header(1, 101, 0, 0, 0).Plain(1).U8(BANK).U8(1);
  const std::string Report = LoadFailure(Short);
  EXPECT_TRUE(Reports(Report, "(Table: objects, Type: 101)")) << Report;
  EXPECT_TRUE(Reports(Report, "out of data")) << Report;
  EXPECT_EQ(GetObjectFileSignature(), 0u);
  EXPECT_TRUE(Reports(FailureReport([] { GetObjectWidth(100); }), "index out of range"));
  EXPECT_TRUE(Reports(LoadFailure(TDatBytes().U32(1).U16(100)), "out of data"));
}

TEST_F(ObjectsTest, AMissingRecordOfALaterTableIsOutOfData) {
  const std::string Report = LoadFailure(TDatBytes().Header(1, 100, 0, 2, 0).Plain(1).Plain(2));
  EXPECT_TRUE(Reports(Report, "(Table: effects, Type: 2)")) << Report;
  EXPECT_TRUE(Reports(Report, "out of data")) << Report;
}

// A flag byte without meaning reads no operand, so a word after it is taken
// as more flags: here BANK, which swallows the end of the flags.
TEST_F(ObjectsTest, AnOperandAfterAFlagWithoutMeaningBreaksTheRecord) {
  TDatBytes Bytes;
  Bytes.Header(1, 100, 0, 0, 0).U8(36).U16(0).Plain(1);
  const std::string Report = LoadFailure(Bytes);
  EXPECT_TRUE(Reports(Report, "out of data")) << Report;
}

TEST_F(ObjectsTest, AnUnknownAnimationTypeFails) {
  TDatBytes Bytes;
  Bytes.Header(1, 100, 0, 0, 0).U8(255).U8(1).U8(1).U8(1).U8(1).U8(1).U8(1).U8(2);
  Bytes.U8(2).U32(0).U8(0).U32(1).U32(1).U32(1).U32(1).U32(1).U32(2);
  EXPECT_TRUE(Reports(
      LoadFailure(Bytes),
      "AnimationType == ANIMATION_ASYNCHRON || AnimationType == ANIMATION_SYNCHRON "
      "(AnimationType: 2)"));
}

TEST_F(ObjectsTest, AMarketNameOfThirtyBytesFails) {
  const std::string Longest(29, 'a');
  Load(TDatBytes().Header(1, 100, 0, 0, 0).Market(1, 100, 0, Longest).Plain(1));
  EXPECT_EQ(GetObjectName(100), Longest);
  const std::string Report =
      LoadFailure(TDatBytes().Header(1, 100, 0, 0, 0).Market(1, 100, 0, Longest + "a").Plain(1));
  EXPECT_TRUE(Reports(Report, "NameLength < MARKET_NAME_LENGTH (NameLength: 30)")) << Report;
}

TEST_F(ObjectsTest, MoreThan16384SpritesFail) {
  TDatBytes Bytes;
  Bytes.Header(1, 100, 0, 0, 0).U8(255).U8(1).U8(1).U8(1).U8(128).U8(128).U8(1).U8(1);
  for (int I = 0; I < 16384; ++I) Bytes.U32(static_cast<std::uint32_t>(I));
  Load(Bytes);
  EXPECT_EQ(GetObjectSprite(100, 1, 1, 1, 128, 128, 1, 1), 16383u);
  TDatBytes TooMany;
  TooMany.Header(1, 100, 0, 0, 0).U8(255).U8(2).U8(1).U8(32).U8(1).U8(128).U8(128).U8(1).U8(1);
  EXPECT_TRUE(Reports(LoadFailure(TooMany),
                      "SpriteCount <= MAX_SPRITES_PER_TYPE (SpriteCount: 32768)"));
}

TEST_F(ObjectsTest, AHighestObjectNumberBelow99Fails) {
  EXPECT_TRUE(Reports(LoadFailure(TDatBytes().Header(1, 50, 0, 0, 0)), "High>=Low-1"));
  Load(TDatBytes().Header(1, 99, 0, 0, 0));
  EXPECT_TRUE(GetMarketList().empty());
}

TEST_F(ObjectsTest, AFileThatCannotBeOpenedIsProgramError4) {
  try {
    LoadObjects(File("missing.dat").string());
    FAIL() << "no failure";
  } catch (PROGRAM_ERROR Error) {
    EXPECT_EQ(Error, PROGRAM_ERROR::DAT_NOT_OPENED);
  }
}

// InitObjects looks in the program directory, the current one.
class InitObjectsTest : public ObjectsTest {
 protected:
  void SetUp() override {
    ObjectsTest::SetUp();
    m_Previous = std::filesystem::current_path();
    setenv("XDG_DATA_HOME", (Root() / "data").c_str(), 1);
    setenv("XDG_CACHE_HOME", (Root() / "cache").c_str(), 1);
    std::filesystem::current_path(Root());
    InitPaths("");
  }
  void TearDown() override {
    std::filesystem::current_path(m_Previous);
    ObjectsTest::TearDown();
  }

 private:
  std::filesystem::path m_Previous;
};

TEST_F(InitObjectsTest, AMissingFileIsProgramError1) {
  try {
    InitObjects();
    FAIL() << "no failure";
  } catch (PROGRAM_ERROR Error) {
    EXPECT_EQ(Error, PROGRAM_ERROR::DAT_NOT_FOUND);
  }
}

TEST_F(InitObjectsTest, KelmoDatInTheProgramDirectoryLoads) {
  EveryFlag().Write(File("Kelmo.dat"));
  InitObjects();
  EXPECT_EQ(GetObjectFileSignature(), 0x11223344u);
}

}  // namespace
