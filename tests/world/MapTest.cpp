#include "world/Map.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "core/Clock.h"
#include "world/Creatures.h"
#include "world/Objects.h"
#include "tests/world/DatBytes.h"
#include "tests/world/WorldTest.h"

namespace {

using testing_world::FailureReport;
using testing_world::TDatBytes;

// The object types of these tests, from 100 on.
constexpr int GROUND = 100;
constexpr int EDGING = 101;
constexpr int LOW = 102;
constexpr int ARCH = 103;
constexpr int STONE = 104;
constexpr int COIN = 105;
constexpr int WALL = 106;
constexpr int BUSH = 107;
constexpr int PICTURE = 108;
constexpr int HOOK_SOUTH = 109;
constexpr int HOOK_EAST = 110;
constexpr int POOL = 111;
constexpr int LEVER = 112;
constexpr int TABLE = 113;
constexpr int PARCEL = 114;
constexpr int LAMP = 115;
constexpr int GLASS_FLOOR = 116;
constexpr int CURTAIN = 117;
constexpr int LAST_TYPE = CURTAIN;

constexpr std::uint32_t PLAYER_ID = 0x10000001;
constexpr std::uint32_t MONSTER_ID = 0x40000010;

// Effect 1 has three phases of 100 ms, played once; effect 2 has one phase.
TDatBytes TypeFile() {
  TDatBytes B;
  B.Header(0x4B4D4150, LAST_TYPE, 0, 2, 0);
  B.U8(BANK).U16(150).Plain(1);
  B.U8(EDGE).Plain(2);
  B.U8(BOTTOM).Plain(3);
  B.U8(TOP).Plain(4);
  B.Plain(5);
  B.U8(CUMULATIVE).Plain(6);
  B.U8(UNPASSABLE).U8(BLOCKSIGHT).Plain(7);
  B.U8(AVOID).Plain(8);
  B.U8(HANG).Plain(9);
  B.U8(HOOKSOUTH).Plain(10);
  B.U8(HOOKEAST).Plain(11);
  B.U8(LIQUIDPOOL).Plain(12);
  B.U8(FORCEUSE).Plain(13);
  B.U8(UNMOVABLE).Plain(14);
  B.U8(HEIGHT).U16(8).Plain(15);
  B.U8(DIMLIGHT).Plain(16);
  B.U8(BANK).U16(100).U8(LOOKTHROUGH).Plain(17);
  B.U8(LOOKTHROUGH).Plain(18);
  B.U8(255).U8(1).U8(1).U8(1).U8(1).U8(1).U8(1).U8(3);
  B.U8(ANIMATION_ASYNCHRON).U32(1).U8(0);
  for (int Phase = 0; Phase < 3; ++Phase) B.U32(100).U32(100);
  B.U32(20).U32(21).U32(22);
  B.Plain(23);
  return B;
}

TObject Object(int Type, std::uint32_t Data = 0) {
  TObject O;
  O.Type = Type;
  O.Data = Data;
  return O;
}

TObject Creature(std::uint32_t Id) { return Object(CREATURE, Id); }

class MapTest : public testing_world::TFileTest {
 protected:
  void SetUp() override {
    TFileTest::SetUp();
    TypeFile().Write(File("Kelmo.dat"));
    LoadObjects(File("Kelmo.dat").string());
    SetClockSource(m_Clock);
    InitCreatures();
    InitMap([this](std::uint32_t Id) { m_LeftMap.push_back(Id); });
    SetMapPosition(32000, 32000, 7);
  }
  void TearDown() override {
    ExitMap();
    ExitCreatures();
    SetClockSource(nullptr);
    ExitObjects();
    TFileTest::TearDown();
  }

  // The pile of a field, in position order, as type numbers.
  static std::vector<int> Pile(int rx, int ry, int rz) {
    std::vector<int> Types;
    for (int p = 0; p < GetObjectCount(rx, ry, rz); ++p) Types.push_back(GetObject(rx, ry, rz, p).Type);
    return Types;
  }
  static std::vector<int> DrawOrder(int rx, int ry, int rz) {
    std::vector<int> Types;
    for (TObject O = GetFirstObject(rx, ry, rz); O.Type != 0; O = GetNextObject()) Types.push_back(O.Type);
    return Types;
  }
  static std::vector<int> Effects(int rx, int ry, int rz) {
    std::vector<int> Numbers;
    for (int E = GetFirstEffect(rx, ry, rz); E != -1; E = GetNextEffect()) Numbers.push_back(E);
    return Numbers;
  }

  void Advance(int Milliseconds) { m_Clock->AdvanceMilliseconds(Milliseconds); }

  std::vector<std::uint32_t> m_LeftMap;

 private:
  std::shared_ptr<TManualClock> m_Clock = std::make_shared<TManualClock>();
};

// Stacking and drawing.

TEST_F(MapTest, StackingPutsEachClassInItsPlace) {
  for (int Type : {STONE, GROUND, CREATURE, COIN}) InsertObject(8, 6, 0, Object(Type, 5));
  EXPECT_EQ(Pile(8, 6, 0), (std::vector<int>{GROUND, CREATURE, COIN, STONE}));
  EXPECT_EQ(DrawOrder(8, 6, 0), (std::vector<int>{GROUND, STONE, COIN, CREATURE}));
}

TEST_F(MapTest, DrawOrderIsGroundEdgesLowThenOldestFirstCreaturesAndTop) {
  for (int Type : {GROUND, EDGING, LOW, ARCH, CREATURE, STONE, COIN}) {
    InsertObject(3, 3, 0, Object(Type, 7));
  }
  EXPECT_EQ(Pile(3, 3, 0), (std::vector<int>{GROUND, EDGING, LOW, ARCH, CREATURE, COIN, STONE}));
  EXPECT_EQ(DrawOrder(3, 3, 0), (std::vector<int>{GROUND, EDGING, LOW, STONE, COIN, CREATURE, ARCH}));
}

TEST_F(MapTest, NewObjectOfAClassGoesInFrontOfItsClassAndCreaturesQueue) {
  InsertObject(1, 1, 0, Object(GROUND));
  InsertObject(1, 1, 0, Creature(1));
  InsertObject(1, 1, 0, Creature(2));
  InsertObject(1, 1, 0, Object(GLASS_FLOOR));
  EXPECT_EQ(GetObject(1, 1, 0, 0).Type, GLASS_FLOOR);
  EXPECT_EQ(GetObject(1, 1, 0, 2).Data, 1u);
  EXPECT_EQ(GetObject(1, 1, 0, 3).Data, 2u);
}

TEST_F(MapTest, FullFieldDropsTheNewObjectOrItsTopmost) {
  InsertObject(2, 2, 0, Object(GROUND));
  for (int I = 0; I < 9; ++I) InsertObject(2, 2, 0, Object(STONE, static_cast<std::uint32_t>(I)));
  // An arch lands inside the pile, so the tenth object falls off.
  InsertObject(2, 2, 0, Object(ARCH));
  EXPECT_EQ(GetObjectCount(2, 2, 0), 10);
  EXPECT_EQ(GetObject(2, 2, 0, 1).Type, ARCH);
  EXPECT_EQ(GetObject(2, 2, 0, 9).Data, 1u) << "the oldest stone, on position 9, fell off";

  // Ten arches leave no place for a stone: it is dropped.
  for (int I = 0; I < 10; ++I) InsertObject(4, 4, 0, Object(ARCH));
  InsertObject(4, 4, 0, Object(STONE));
  EXPECT_EQ(Pile(4, 4, 0), std::vector<int>(10, ARCH));
  EXPECT_TRUE(m_LeftMap.empty());
}

TEST_F(MapTest, DroppedOrPushedOffMonstersAreReported) {
  for (std::uint32_t I = 0; I < 10; ++I) InsertObject(5, 5, 0, Creature(MONSTER_ID + I));
  InsertObject(5, 5, 0, Creature(MONSTER_ID + 10));
  InsertObject(5, 5, 0, Creature(PLAYER_ID));
  EXPECT_EQ(m_LeftMap, (std::vector<std::uint32_t>{MONSTER_ID + 10}))
      << "a dropped player is not reported, a dropped monster is";

  InsertObject(5, 5, 0, Object(GROUND));
  EXPECT_EQ(GetObject(5, 5, 0, 0).Type, GROUND);
  EXPECT_EQ(m_LeftMap.back(), MONSTER_ID + 9) << "the last creature was pushed off";
}

TEST_F(MapTest, AppendFailsOnAFullField) {
  for (int I = 0; I < 10; ++I) AppendObject(0, 0, 0, Object(STONE));
  EXPECT_EQ(GetObjectCount(0, 0, 0), 10);
  const std::string Report = FailureReport([] { AppendObject(0, 0, 0, Object(COIN)); });
  EXPECT_NE(Report.find("too many objects on map point (ObjectCount: 10, rx: 0, ry: 0, rz: 0)"),
            std::string::npos)
      << Report;
}

TEST_F(MapTest, PositionsAndCoordinatesAreChecked) {
  AppendObject(0, 0, 0, Object(STONE));
  EXPECT_NE(FailureReport([] { DeleteObject(0, 0, 0, 1); }).find("In(Position,0,Point.getObjectCount()-1)"),
            std::string::npos);
  EXPECT_NE(FailureReport([] { InsertObjectAt(0, 0, 0, 2, Object(STONE)); })
                .find("Position<=Point.getObjectCount()"),
            std::string::npos);
  EXPECT_NE(FailureReport([] { GetObject(18, 0, 0, 0); }).find("In(rx,0,MAPSIZE_X-1) [bug0000013]"),
            std::string::npos);
  EXPECT_NE(FailureReport([] { GetObject(0, -1, 0, 0); }).find("In(ry,0,MAPSIZE_Y-1) [bug0000013]"),
            std::string::npos);
  EXPECT_NE(FailureReport([] { ClearField(0, 0, 8, false); }).find("In(rz,0,MAPSIZE_Z-1) [bug0000013]"),
            std::string::npos);
  EXPECT_NE(FailureReport([] { GetObject(0, 0, 0, 10); }).find("In(Position,0,OBJECTS_PER_POINT-1)"),
            std::string::npos);
}

TEST_F(MapTest, DeleteAndChangeKeepThePileInOrder) {
  for (int Type : {GROUND, STONE, COIN}) InsertObject(6, 6, 0, Object(Type));
  ChangeObject(6, 6, 0, 1, Object(LEVER));
  EXPECT_EQ(Pile(6, 6, 0), (std::vector<int>{GROUND, LEVER, STONE}));
  DeleteObject(6, 6, 0, 0);
  EXPECT_EQ(Pile(6, 6, 0), (std::vector<int>{LEVER, STONE}));
  EXPECT_EQ(DrawOrder(6, 6, 0), (std::vector<int>{STONE, LEVER}));
}

TEST_F(MapTest, HangingObjectsTakeTheMarkOfTheirHook) {
  InsertObject(1, 2, 0, Object(HOOK_SOUTH));
  InsertObject(1, 2, 0, Object(PICTURE));
  InsertObject(2, 1, 0, Object(HOOK_EAST));
  InsertObject(2, 1, 0, Object(PICTURE));
  InsertObject(3, 1, 0, Object(PICTURE));
  int Position = 0;
  EXPECT_EQ(GetLookObject(1, 2, 0, Position).Hook, HOOKSOUTH);
  EXPECT_EQ(GetLookObject(2, 1, 0, Position).Hook, HOOKEAST);
  EXPECT_EQ(GetLookObject(3, 1, 0, Position).Hook, 0) << "no hook on the field";
  EXPECT_EQ(GetObjectPattern(PICTURE, 0, GetObject(3, 1, 0, 0).Hook, 0, 0, 7), (TPattern{1, 1, 1}));
}

// The object that a mouse action means.

TEST_F(MapTest, MoveObjectSkipsGroundAndCreaturesAndNotUnmovables) {
  int Position = -1;
  for (int Type : {GROUND, CREATURE, STONE}) InsertObject(1, 1, 0, Object(Type, 1));
  EXPECT_EQ(GetMoveObject(1, 1, 0, Position).Type, STONE);
  EXPECT_EQ(Position, 2);

  InsertObject(2, 2, 0, Object(GROUND));
  InsertObject(2, 2, 0, Object(TABLE));
  EXPECT_EQ(GetMoveObject(2, 2, 0, Position).Type, GROUND) << "the table below is not moved";
  EXPECT_EQ(Position, 0);

  EXPECT_EQ(GetMoveObject(3, 3, 0, Position).Type, 0);
  EXPECT_EQ(Position, 0);
}

TEST_F(MapTest, LookObjectSeesThroughLookThroughObjects) {
  int Position = -1;
  InsertObject(1, 1, 0, Object(GLASS_FLOOR));
  EXPECT_EQ(GetLookObject(1, 1, 0, Position).Type, GLASS_FLOOR) << "only a ground to look at";

  InsertObject(2, 2, 0, Object(GROUND));
  InsertObject(2, 2, 0, Object(STONE));
  InsertObject(2, 2, 0, Object(CURTAIN));
  EXPECT_EQ(Pile(2, 2, 0), (std::vector<int>{GROUND, CURTAIN, STONE}));
  EXPECT_EQ(GetLookObject(2, 2, 0, Position).Type, STONE);
  EXPECT_EQ(Position, 2);

  EXPECT_EQ(GetLookObject(3, 3, 0, Position).Type, 0);
  EXPECT_EQ(Position, 0);
}

TEST_F(MapTest, UseObjectPrefersForceUseAndSkipsPoolsAndCreatures) {
  int Position = -1;
  for (int Type : {GROUND, STONE, LEVER}) InsertObject(1, 1, 0, Object(Type));
  EXPECT_EQ(GetUseObject(1, 1, 0, Position).Type, LEVER);
  EXPECT_EQ(Position, 1);

  for (int Type : {GROUND, POOL, CREATURE}) InsertObject(2, 2, 0, Object(Type, 3));
  EXPECT_EQ(Pile(2, 2, 0), (std::vector<int>{GROUND, CREATURE, POOL}));
  EXPECT_EQ(GetUseObject(2, 2, 0, Position).Type, GROUND);
  EXPECT_EQ(GetMultiUseTarget(2, 2, 0, Position).Type, CREATURE) << "a creature stops the walk";
  EXPECT_EQ(Position, 1);

  for (int Type : {GROUND, POOL}) InsertObject(3, 3, 0, Object(Type));
  EXPECT_EQ(GetMultiUseTarget(3, 3, 0, Position).Type, GROUND) << "one step down past a pool";
}

// Obstacles, elevation, sight, light.

TEST_F(MapTest, ObstaclesOfObjectsAndCreatures) {
  InsertObject(1, 1, 0, Object(GROUND));
  EXPECT_EQ(GetObstacle(1, 1, 0, false), 0);
  InsertObject(1, 1, 0, Object(BUSH));
  EXPECT_EQ(GetObstacle(1, 1, 0, false), 1);
  InsertObject(1, 1, 0, Object(WALL));
  EXPECT_EQ(GetObstacle(1, 1, 0, false), 2);

  NewCreature(0, PLAYER_ID);
  NewCreature(0, MONSTER_ID).Unpassable = true;
  InsertObject(2, 2, 0, Creature(PLAYER_ID));
  InsertObject(3, 3, 0, Creature(MONSTER_ID));
  EXPECT_EQ(GetObstacle(2, 2, 0, false), 1) << "a player";
  EXPECT_EQ(GetObstacle(3, 3, 0, false), 2) << "a monster";
  SetTrappers({MONSTER_ID});
  EXPECT_EQ(GetObstacle(3, 3, 0, false), 0) << "a trapper";
  SetTrappers({});
  FindCreature(MONSTER_ID)->Unpassable = false;
  EXPECT_EQ(GetObstacle(3, 3, 0, false), 0);

  // Only the first creature counts; one without a record blocks nothing.
  InsertObject(4, 4, 0, Creature(0x40000099));
  InsertObject(4, 4, 0, Creature(PLAYER_ID));
  EXPECT_EQ(GetObstacle(4, 4, 0, false), 0);
}

TEST_F(MapTest, RoofCheckIgnoresFieldsUnderHighPiles) {
  InsertObject(8, 6, 0, Object(WALL));
  EXPECT_EQ(GetObstacle(8, 6, 0, true), 2);
  for (int I = 0; I < 3; ++I) InsertObject(8, 6, 0, Object(PARCEL));
  EXPECT_EQ(GetElevationCount(8, 6, 0), 3);
  EXPECT_EQ(GetObstacle(8, 6, 0, true), 0) << "the player stands on a high pile";
  EXPECT_EQ(GetObstacle(8, 6, 0, false), 2);

  ClearField(8, 6, 0, false);
  InsertObject(5, 5, 1, Object(WALL));
  for (int I = 0; I < 3; ++I) InsertObject(6, 6, 0, Object(PARCEL));
  EXPECT_EQ(GetObstacle(5, 5, 1, true), 0) << "the same world position one floor down is high";
  InsertObject(5, 5, 1, Object(GROUND));
  EXPECT_EQ(GetObstacle(5, 5, 1, true), 2) << "a ground on the upper field keeps the check";
}

TEST_F(MapTest, SightAndDimLight) {
  InsertObject(1, 1, 0, Object(GROUND));
  EXPECT_TRUE(IsSightFree(1, 1, 0));
  EXPECT_FALSE(HasDimLight(1, 1, 0));
  InsertObject(1, 1, 0, Object(WALL));
  InsertObject(1, 1, 0, Object(LAMP));
  EXPECT_FALSE(IsSightFree(1, 1, 0));
  EXPECT_TRUE(HasDimLight(1, 1, 0));
}

// Coordinates.

TEST_F(MapTest, CoordinatesOnAndAboveTheSurface) {
  SetMapPosition(32000, 32010, 7);
  EXPECT_EQ(GetPlayerFloor(), 0);
  int x = 32000, y = 32010, z = 7;
  WorldToMap(x, y, z);
  EXPECT_EQ((std::vector<int>{x, y, z}), (std::vector<int>{8, 6, 0}));
  x = 32000, y = 32010, z = 5;
  WorldToMap(x, y, z);
  EXPECT_EQ((std::vector<int>{x, y, z}), (std::vector<int>{6, 4, 2})) << "two floors up, skewed by two";
  MapToWorld(x, y, z);
  EXPECT_EQ((std::vector<int>{x, y, z}), (std::vector<int>{32000, 32010, 5}));

  SetMapPosition(32000, 32010, 4);
  EXPECT_EQ(GetPlayerFloor(), 3);
  x = 32001, y = 32009, z = 7;
  WorldToMap(x, y, z);
  EXPECT_EQ((std::vector<int>{x, y, z}), (std::vector<int>{12, 8, 0})) << "the surface below";
}

TEST_F(MapTest, CoordinatesUnderground) {
  SetMapPosition(100, 200, 14);
  EXPECT_EQ(GetPlayerFloor(), 2);
  int x = 100, y = 200, z = 15;
  WorldToMap(x, y, z);
  EXPECT_EQ((std::vector<int>{x, y, z}), (std::vector<int>{9, 7, 1}));
  for (int rz = 0; rz < MAPSIZE_Z; ++rz) {
    int wx = 3, wy = 4, wz = rz;
    MapToWorld(wx, wy, wz);
    EXPECT_EQ(wz, 14 - (rz - 2));
    WorldToMap(wx, wy, wz);
    EXPECT_EQ((std::vector<int>{wx, wy, wz}), (std::vector<int>{3, 4, rz}));
  }
}

// Effects.

TEST_F(MapTest, DamageNumbersWithinATickAddUp) {
  AddTextualEffect(4, 4, 0, 180, "12");
  AddTextualEffect(4, 4, 0, 180, "30");
  ASSERT_EQ(Effects(4, 4, 0).size(), 1u);
  EXPECT_EQ(GetEffectText(Effects(4, 4, 0)[0]), "42");

  AddTextualEffect(4, 4, 0, 181, "5");
  AddTextualEffect(4, 4, 0, 180, "hit");
  AddTextualEffect(5, 4, 0, 180, "8");
  EXPECT_EQ(Effects(4, 4, 0).size(), 3u) << "another colour and a word make their own records";

  ProcessEffects();
  AddTextualEffect(4, 4, 0, 180, "1");
  EXPECT_EQ(Effects(4, 4, 0).size(), 4u) << "after a tick the old number is no longer added to";
}

TEST_F(MapTest, NumbersAreNotAddedPastAFreeRecord) {
  AddTextualEffect(1, 1, 0, 10, "a");
  AddTextualEffect(2, 2, 0, 10, "12");
  ClearField(1, 1, 0, true);
  ASSERT_EQ(GetEffectStatus(0), EFFECT_FREE);
  // The scan for a number to add to stops at the free record 0.
  AddTextualEffect(2, 2, 0, 10, "30");
  EXPECT_EQ(Effects(2, 2, 0), (std::vector<int>{0, 1}));
  EXPECT_EQ(GetEffectText(0), "30");
  EXPECT_EQ(GetEffectText(1), "12");
}

TEST_F(MapTest, TextsLiveElevenTicks) {
  AddTextualEffect(4, 4, 0, 10, "ouch");
  const int Number = Effects(4, 4, 0)[0];
  for (int I = 0; I < 10; ++I) ProcessEffects();
  EXPECT_EQ(GetEffectTextTimer(Number), 10);
  ProcessEffects();
  EXPECT_EQ(GetEffectStatus(Number), EFFECT_FREE);
  EXPECT_TRUE(Effects(4, 4, 0).empty());
}

TEST_F(MapTest, TextsAreClampedIntoTheBlockAndLimitedInLength) {
  AddTextualEffect(-3, 20, 9, 10, "far");
  EXPECT_EQ(Effects(0, 13, 7).size(), 1u);
  EXPECT_NE(FailureReport([] { AddTextualEffect(1, 1, 0, 10, "0123456789"); }).find("strlen(Text)<10"),
            std::string::npos);
}

TEST_F(MapTest, GraphicalEffectsEndWithTheirAnimation) {
  AddGraphicalEffect(2, 2, 0, 2);
  AddGraphicalEffect(3, 3, 0, 1);
  const int Animated = Effects(3, 3, 0)[0];
  EXPECT_EQ(GetEffectPhase(Effects(2, 2, 0)[0]), 1);
  Advance(100);
  ProcessEffects();
  EXPECT_TRUE(Effects(2, 2, 0).empty()) << "a single picture lasts one tick";
  EXPECT_EQ(GetEffectStatus(Animated), EFFECT_GRAPHICAL);
  EXPECT_EQ(GetEffectType(Animated), 1);
  for (int I = 0; I < 5; ++I) {
    Advance(100);
    ProcessEffects();
  }
  EXPECT_EQ(GetEffectStatus(Animated), EFFECT_FREE);
  EXPECT_NE(FailureReport([&] { GetEffectType(Animated); }).find("Effects[EffectNumber].Status==1"),
            std::string::npos);
}

TEST_F(MapTest, TwoHundredEffectsAtMostNewestFirst) {
  for (int I = 0; I < 201; ++I) AddTextualEffect(1, 1, 0, I, "x");
  const std::vector<int> List = Effects(1, 1, 0);
  ASSERT_EQ(List.size(), 200u);
  EXPECT_EQ(List.front(), 199);
  EXPECT_EQ(List.back(), 0);
  ClearField(1, 1, 0, true);
  EXPECT_TRUE(Effects(1, 1, 0).empty());
  EXPECT_EQ(GetEffectStatus(199), EFFECT_FREE);
}

TEST_F(MapTest, MissileDirectionsAndDurations) {
  struct TCase {
    int dx, dy, Direction, Duration;
  };
  const std::vector<TCase> Cases{
      {0, -4, 0, 300}, {4, 0, 2, 300}, {0, 1, 4, 150}, {-1, 0, 6, 150}, {3, 3, 3, 300},
      {-2, 2, 5, 150}, {2, -2, 1, 150}, {-3, -3, 7, 300}, {5, 1, 2, 300}, {1, 5, 4, 300},
      {-5, 2, 6, 300}, {0, 0, 0, 0},
  };
  for (const TCase& C : Cases) {
    ClearMap();
    AddMissile(8, 6, 0, 8 + C.dx, 6 + C.dy, 0, 3);
    const int Number = Effects(8, 6, 0).at(0);
    EXPECT_EQ(GetEffectMissileDirection(Number), C.Direction) << C.dx << "," << C.dy;
    EXPECT_EQ(GetEffectMissileOffsetX(Number), 0) << "it starts on the field that holds it";
    EXPECT_EQ(GetEffectMissileType(Number), 3);
    // The flight ends at its duration: on the destination then, gone a moment later.
    Advance(C.Duration);
    ProcessMissiles();
    EXPECT_EQ(Effects(8 + C.dx, 6 + C.dy, 0), (std::vector<int>{Number})) << C.dx << "," << C.dy;
    Advance(1);
    ProcessMissiles();
    EXPECT_EQ(GetEffectStatus(Number), EFFECT_FREE) << C.dx << "," << C.dy;
    ClearMap();
  }
}

TEST_F(MapTest, MissileFliesAcrossFieldsAndEnds) {
  AddMissile(8, 6, 0, 12, 6, 0, 1);
  const int Number = Effects(8, 6, 0).at(0);
  // After 90 of 300 ms, 89 of 128 pixels are still to fly: the missile is
  // held by the field two short of the target and drawn 25 pixels west of it.
  Advance(90);
  ProcessMissiles();
  EXPECT_EQ(Effects(10, 6, 0), (std::vector<int>{Number}));
  EXPECT_TRUE(Effects(8, 6, 0).empty());
  EXPECT_EQ(GetEffectMissileOffsetX(Number), -25);
  EXPECT_EQ(GetEffectMissileOffsetY(Number), 0);
  Advance(210);
  ProcessMissiles();
  EXPECT_EQ(Effects(12, 6, 0), (std::vector<int>{Number}));
  EXPECT_EQ(GetEffectStatus(Number), EFFECT_MISSILE) << "arrived, but not past its end time";
  Advance(1);
  ProcessMissiles();
  EXPECT_EQ(GetEffectStatus(Number), EFFECT_FREE);
}

TEST_F(MapTest, MissilesOnOtherFloorsAreIgnoredAndTwoToOneFieldBothFly) {
  AddMissile(8, 6, 1, 8, 2, 0, 1);
  AddMissile(8, 6, 0, 8, 2, 1, 1);
  for (int rz = 0; rz < 2; ++rz) EXPECT_TRUE(Effects(8, 6, rz).empty());

  AddMissile(8, 6, 0, 10, 6, 0, 1);
  AddMissile(9, 6, 0, 10, 6, 0, 2);
  Advance(150);
  ProcessMissiles();
  EXPECT_EQ(Effects(10, 6, 0).size(), 2u);
  EXPECT_NE(FailureReport([] { AddMissile(1, 1, 0, 2, 2, 0, 0); }).find("Type>0"), std::string::npos);
}

// Ambient light.

TEST_F(MapTest, AmbientLightStepsTowardItsTarget) {
  SetAmbiente(-1, 0);
  SetAmbiente(200, 215);
  EXPECT_EQ(GetAmbienteBrightness(), 200) << "the first value after a reset is taken at once";
  EXPECT_EQ(GetAmbienteColor(), (TRGB{255, 255, 255}));
  SetAmbiente(198, 0);
  EXPECT_EQ(GetAmbienteBrightness(), 200);
  StepAmbiente();
  EXPECT_EQ(GetAmbienteBrightness(), 199);
  EXPECT_EQ(GetAmbienteColor(), (TRGB{254, 254, 254}));
  StepAmbiente();
  StepAmbiente();
  EXPECT_EQ(GetAmbienteBrightness(), 198);
  SetAmbiente(-1, 0);
  EXPECT_EQ(GetAmbienteBrightness(), 198) << "a reset keeps the light until the next value";
  StepAmbiente();
  EXPECT_EQ(GetAmbienteBrightness(), 198) << "and does not move it toward -1";
  SetAmbiente(-1, 0);
  EXPECT_NE(FailureReport([] { GetAmbienteBrightness(); }).find("AmbienteActualBrightness>=0"),
            std::string::npos);
}

// Scrolling.

TEST_F(MapTest, ShiftMovesNumbersAndClearsTheNewEdge) {
  InsertObject(17, 3, 2, Object(STONE));
  InsertObject(0, 3, 2, Object(COIN, 9));
  InsertObject(0, 3, 2, Creature(MONSTER_ID));
  const int Field = GetFieldNumber(0, 3, 2);
  ShiftMap(-1, 0);
  int x = 0, y = 0, z = 0;
  GetMapPosition(x, y, z);
  EXPECT_EQ(x, 32001);
  EXPECT_EQ(GetFieldNumber(17, 3, 2), Field) << "the west column wrapped round to the east";
  EXPECT_TRUE(Pile(17, 3, 2).empty());
  EXPECT_EQ(Pile(16, 3, 2), (std::vector<int>{STONE}));
  EXPECT_EQ(m_LeftMap, (std::vector<std::uint32_t>{MONSTER_ID}));
}

TEST_F(MapTest, FloorShiftDownRotatesAndClearsTheTopFloors) {
  SetMapPosition(32000, 32000, 9);
  InsertObject(4, 4, 2, Object(STONE));
  InsertObject(4, 4, 7, Object(COIN));
  InsertObject(4, 4, 4, Object(LEVER));
  AddTextualEffect(4, 4, 7, 1, "up");
  ShiftFloors(1);
  EXPECT_EQ(Pile(4, 4, 3), (std::vector<int>{STONE}));
  EXPECT_TRUE(Pile(4, 4, 0).empty()) << "rz 7 wrapped to 0 and was cleared";
  EXPECT_TRUE(Pile(4, 4, 5).empty()) << "rz 5 to 7 are cleared after the last rotation";
  EXPECT_EQ(GetEffectStatus(0), EFFECT_FREE);

  InsertObject(4, 4, 1, Object(WALL));
  ShiftFloors(-1);
  EXPECT_EQ(Pile(4, 4, 0), (std::vector<int>{WALL}));
  EXPECT_EQ(Pile(4, 4, 2), (std::vector<int>{STONE}));
  EXPECT_TRUE(Pile(4, 4, 7).empty());
}

// Every field carries a marker of the world position it was filled for; the
// caller's part (moving the position, filling the cleared fields) is played
// as the server's messages would.
class MapShiftProperty : public MapTest {
 protected:
  static std::uint32_t Marker(int x, int y, int z) {
    return static_cast<std::uint32_t>((x & 0x3FF) | (y & 0x3FF) << 10 | z << 20);
  }
  static std::uint32_t MarkerAt(int rx, int ry, int rz) {
    MapToWorld(rx, ry, rz);
    return Marker(rx, ry, rz);
  }
  // Fills every empty field; returns how many there were.
  static int FillEmptyFields() {
    int Filled = 0;
    ForEachField([&](int rx, int ry, int rz) {
      if (GetObjectCount(rx, ry, rz) != 0) return;
      AppendObject(rx, ry, rz, Object(STONE, MarkerAt(rx, ry, rz)));
      ++Filled;
    });
    return Filled;
  }
  template <typename TVisit>
  static void ForEachField(TVisit&& Visit) {
    for (int rz = 0; rz < MAPSIZE_Z; ++rz) {
      for (int ry = 0; ry < MAPSIZE_Y; ++ry) {
        for (int rx = 0; rx < MAPSIZE_X; ++rx) Visit(rx, ry, rz);
      }
    }
  }
  static void ExpectConsistent() {
    std::set<int> Numbers;
    int Misplaced = 0;
    ForEachField([&](int rx, int ry, int rz) {
      Numbers.insert(GetFieldNumber(rx, ry, rz));
      if (GetObject(rx, ry, rz, 0).Data != MarkerAt(rx, ry, rz)) ++Misplaced;
    });
    EXPECT_EQ(Numbers.size(), static_cast<size_t>(MapPoint_High + 1)) << "the table is a permutation";
    EXPECT_EQ(Misplaced, 0);
  }
};

TEST_F(MapShiftProperty, ContentsStayWhereTheWorldSaysAfterRandomShifts) {
  std::mt19937 Random(20261123);
  SetMapPosition(500, 500, 10);
  FillEmptyFields();
  for (int Step = 0; Step < 300; ++Step) {
    int x = 0, y = 0, z = 0;
    GetMapPosition(x, y, z);
    const int Kind = static_cast<int>(Random() % 6);
    if (Kind < 4) {
      const int dx = static_cast<int>(Random() % 5) - 2;
      const int dy = static_cast<int>(Random() % 5) - 2;
      ShiftMap(dx, dy);
      const int Filled = FillEmptyFields();
      const int Expected = MAPSIZE_Z * (std::abs(dx) * MAPSIZE_Y + std::abs(dy) * MAPSIZE_X) -
                           MAPSIZE_Z * std::abs(dx) * std::abs(dy);
      ASSERT_EQ(Filled, Expected) << "only the new rows and columns were cleared";
    } else if (Kind == 4 && z < 14) {
      SetMapPosition(x - 1, y - 1, z + 1);  // down
      ShiftFloors(1);
      ASSERT_EQ(FillEmptyFields(), 4 * MAPSIZE_X * MAPSIZE_Y);
    } else if (Kind == 5 && z > 8) {
      SetMapPosition(x + 1, y + 1, z - 1);  // up
      ShiftFloors(-1);
      ASSERT_EQ(FillEmptyFields(), MAPSIZE_X * MAPSIZE_Y);
    }
    ExpectConsistent();
    if (HasFailure()) FAIL() << "after step " << Step;
  }
}

}  // namespace
