// Walking in the server's world: the step-time rule, the pace of a walk,
// steps that are refused, the ways between floors, and the creatures that
// move by themselves.
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "tools/server/World.h"

namespace {

using namespace server;

constexpr int GRASS = 100;   // 150 waypoints
constexpr int ROAD = 101;    // 100 waypoints
constexpr int WATER = 102;
constexpr int WALL = 103;
constexpr int DOWN = 104;    // stairs down: a ground of 100 waypoints
constexpr int UP = 105;      // stairs up, lying on a ground
constexpr int COINS = 106;
constexpr int OPEN_DOOR = 107;
constexpr int CLOSED_DOOR = 108;
constexpr std::uint32_t PLAYER = 1000;
constexpr std::uint32_t OTHER = 1001;

std::shared_ptr<const TObjectTypes> Types() {
  auto Types = std::make_shared<TObjectTypes>();
  const auto Ground = [](int Waypoints) {
    TObjectType Type;
    Type.Flags.set(BANK);
    Type.Waypoints = Waypoints;
    return Type;
  };
  Types->AddObject(Ground(150));
  Types->AddObject(Ground(100));
  TObjectType Water = Ground(500);
  Water.Flags.set(UNPASSABLE);
  Types->AddObject(Water);
  TObjectType Wall;
  Wall.Flags.set(BOTTOM);
  Wall.Flags.set(UNPASSABLE);
  Wall.Flags.set(UNMOVABLE);
  Types->AddObject(Wall);
  Types->AddObject(Ground(100));
  TObjectType Up;
  Up.Flags.set(BOTTOM);
  Types->AddObject(Up);
  TObjectType Coins;
  Coins.Flags.set(CUMULATIVE);
  Types->AddObject(Coins);
  Types->AddObject(Up);  // an open door lies low and lets one pass
  Types->AddObject(Wall);
  Types->AddOutfit({4});
  return Types;
}

// What the world told its listener, one line per event.
class TRecorder : public TWorldListener {
 public:
  void CreatureAppeared(const TCreature& C, int) override { Add("appeared", C); }
  void CreatureDisappeared(const TCreature& C, int) override { Add("disappeared", C); }
  void CreatureMoved(const TCreature& C, const TPosition& From, int) override {
    Add("moved from " + PositionText(From), C);
  }
  void CreatureTurned(const TCreature& C, int) override { Add("turned", C); }
  void CreatureTalked(const TCreature& C, std::uint32_t, std::string_view Text) override {
    Add("said " + std::string(Text), C);
  }
  void StepRefused(const TCreature& C) override { Add("refused", C); }
  void ObjectCreated(const TPosition& P, int S) override { Events.push_back("created " + Place(P, S)); }
  void ObjectChanged(const TPosition& P, int S) override { Events.push_back("changed " + Place(P, S)); }
  void ObjectDeleted(const TPosition& P, int S) override { Events.push_back("deleted " + Place(P, S)); }

  std::vector<std::string> Events;

 private:
  void Add(const std::string& What, const TCreature& C) {
    Events.push_back(std::to_string(C.Id) + ' ' + What + " to " + PositionText(C.Position));
  }
  static std::string Place(const TPosition& P, int S) { return PositionText(P) + '/' + std::to_string(S); }
};

// A yard of grass, x 10 to 15 and y 10 to 15 on floor 7, with a road along
// y 10, water at [12,12,7], a wall at [13,12,7], an open door at [10,12,7],
// stairs down at [15,11,7] to a cellar of grass below, and two stairs up in
// the cellar: [11,11,8] and [10,13,8], which leads west out of the yard.
class WalkingTest : public testing::Test {
 protected:
  void SetUp() override { Make({}); }

  void Make(std::vector<TCreatureSetup> Creatures) {
    TWorldSetup Setup{TWorldMap(Types()), {}, std::move(Creatures), {DOWN}, {UP}, {{OPEN_DOOR, CLOSED_DOOR}}};
    for (int X = 10; X <= 15; ++X)
      for (int Y = 10; Y <= 15; ++Y) {
        Setup.Map.Insert({X, Y, 7}, {Y == 10 ? ROAD : GRASS, 0});
        Setup.Map.Insert({X, Y, 8}, {GRASS, 0});
      }
    Setup.Map.Change({12, 12, 7}, 0, {WATER, 0});
    Setup.Map.Insert({13, 12, 7}, {WALL, 0});
    Setup.Map.Change({15, 11, 7}, 0, {DOWN, 0});
    Setup.Map.Insert({10, 12, 7}, {OPEN_DOOR, 0});
    Setup.Map.Insert({12, 11, 7}, {COINS, 10});
    Setup.Map.Insert({11, 11, 8}, {UP, 0});
    Setup.Map.Insert({10, 13, 8}, {UP, 0});
    Setup.Player.Position = {11, 11, 7};
    Setup.Player.Outfit = {1, 0, 0, 0, 0, 0};
    Setup.Player.Speed = 220;  // 500 waypoints a second
    World = std::make_unique<TGameWorld>(std::move(Setup), 7, [this](const TStepRecord& S) { Steps.push_back(S); });
    World->AddListener(Recorder);
  }

  const TPosition& Where(std::uint32_t Id) const { return World->Find(Id)->Position; }

  std::unique_ptr<TGameWorld> World;
  TRecorder Recorder;
  std::vector<TStepRecord> Steps;
};

// Velocity: the whole part of 857.36 ln(speed + 261.29) - 4795.01 + 0.5.
TEST(StepTimes, FollowTheSpeedFormulaAndTheBeat) {
  EXPECT_EQ(Velocity(SPEED_FORMULA, 220), 500);  // 857.36 x 6.17647 - 4794.51 = 500.98
  EXPECT_EQ(Velocity(SPEED_FORMULA, 110), 278);
  EXPECT_EQ(Velocity(SPEED_FORMULA, -262), 1) << "no speed still moves";
  EXPECT_EQ(Velocity({50, 1.0, 0.0, 0.0}, 1), 1) << "never below one";

  const TSpeedFormula Flat{50, 0.0, 0.0, 100.0};  // V 100 whatever the speed
  EXPECT_EQ(StepTimes(Flat, 1, 150, false).Duration, 1500);
  EXPECT_EQ(StepTimes(Flat, 1, 150, false).Pause, 1500);
  const TSpeedFormula Fast{50, 0.0, 0.0, 220.0};
  EXPECT_EQ(StepTimes(Fast, 1, 150, false).Duration, 700) << "681 is rounded up to the beat";
  EXPECT_EQ(StepTimes(Fast, 1, 150, true).Duration, 700);
  EXPECT_EQ(StepTimes(Fast, 1, 150, true).Pause, 2045) << "three times the unrounded time";
  EXPECT_EQ(StepTimes(SPEED_FORMULA, 110, 100, false).Duration, 400);  // 359 rounded up
}

TEST(StepCodes, RunAnticlockwiseFromEast) {
  EXPECT_EQ(StepOfCode(1), (TStep{1, 0}));
  EXPECT_EQ(StepOfCode(3), (TStep{0, -1}));
  EXPECT_EQ(StepOfCode(6), (TStep{-1, 1}));
  EXPECT_EQ(StepOfCode(8), (TStep{1, 1}));
  EXPECT_FALSE(StepOfCode(0));
  EXPECT_FALSE(StepOfCode(9));
  EXPECT_EQ(FacingOf({1, -1}), EAST);
  EXPECT_EQ(FacingOf({0, -1}), NORTH);
  EXPECT_EQ(FacingOf({-1, 1}), WEST);
}

TEST_F(WalkingTest, StepsArePacedByTheGroundAndTheSpeed) {
  World->AddPlayer(PLAYER, "Ayla");
  World->Walk(PLAYER, {{0, -1}, {1, 0}, {0, 1}});
  World->Tick(1000);
  ASSERT_EQ(Steps.size(), 1u);
  EXPECT_EQ(Steps[0].From, (TPosition{11, 11, 7}));
  EXPECT_EQ(Steps[0].To, (TPosition{11, 10, 7}));
  EXPECT_EQ(Steps[0].EndTime, 1200) << "onto the road: 100 waypoints at 500 a second";
  World->Tick(1199);
  EXPECT_EQ(Steps.size(), 1u) << "the next step waits for the first to end";
  World->Tick(1200);
  ASSERT_EQ(Steps.size(), 2u);
  EXPECT_EQ(Steps[1].To, (TPosition{12, 10, 7}));
  EXPECT_EQ(Steps[1].EndTime, 1400);
  World->Tick(1400);
  ASSERT_EQ(Steps.size(), 3u);
  EXPECT_EQ(Steps[2].EndTime, 1700) << "onto grass: 150 waypoints";
  EXPECT_EQ(World->Find(PLAYER)->Direction, SOUTH);
  EXPECT_EQ(Recorder.Events.back(), "1000 moved from [12,10,7] to [12,11,7]");
}

TEST_F(WalkingTest, DiagonalStepBlocksTheNextForThreeTimesItsTime) {
  World->AddPlayer(PLAYER, "Ayla");
  World->Walk(PLAYER, {{1, -1}, {1, 0}});
  World->Tick(0);
  ASSERT_EQ(Steps.size(), 1u);
  EXPECT_EQ(Steps[0].EndTime, 200) << "drawn in the time of a straight step onto the road";
  World->Tick(599);
  EXPECT_EQ(Steps.size(), 1u);
  World->Tick(600);
  EXPECT_EQ(Steps.size(), 2u);
}

TEST_F(WalkingTest, StepsIntoWaterWallsAndCreaturesAreRefused) {
  World->AddPlayer(PLAYER, "Ayla");
  World->AddPlayer(OTHER, "Borin");
  EXPECT_EQ(Where(OTHER), (TPosition{11, 10, 7})) << "the start is taken: the field north of it";
  Recorder.Events.clear();
  for (const TStep Step : {TStep{1, 1}, TStep{0, -1}}) {  // water, the other player
    World->Walk(PLAYER, {Step, {-1, 0}});
    World->Tick(0);
  }
  World->Turn(PLAYER, EAST);
  World->Walk(OTHER, {{1, 0}, {0, 1}, {1, 1}, {0, 1}});  // into the wall: the rest is dropped
  for (const int Time : {0, 1000, 2000, 3000}) World->Tick(Time);
  EXPECT_EQ(Where(PLAYER), (TPosition{11, 11, 7}));
  EXPECT_EQ(Where(OTHER), (TPosition{12, 11, 7}));
  const std::vector<std::string> Expected = {
      "1000 refused to [11,11,7]", "1000 refused to [11,11,7]", "1000 turned to [11,11,7]",
      "1001 moved from [11,10,7] to [12,10,7]", "1001 moved from [12,10,7] to [12,11,7]",
      "1001 refused to [12,11,7]"};
  EXPECT_EQ(Recorder.Events, Expected);
  EXPECT_EQ(Steps.size(), 2u);
}

TEST_F(WalkingTest, StairsLeadDownBelowAndUpOneFieldOn) {
  World->AddPlayer(PLAYER, "Ayla");
  World->Walk(PLAYER, {{1, 0}, {1, 0}, {1, 0}, {1, 0}});  // the last onto the stairs down
  for (int Time = 0; Time <= 2000; Time += 50) World->Tick(Time);
  EXPECT_EQ(Where(PLAYER), (TPosition{15, 11, 8}));
  ASSERT_EQ(Steps.size(), 4u);
  EXPECT_EQ(Steps.back().From, (TPosition{14, 11, 7}));
  EXPECT_EQ(Steps.back().To, (TPosition{15, 11, 8}));
  EXPECT_EQ(Steps.back().EndTime, 1100) << "three steps on grass, then the stairs' 100 waypoints";

  World->Walk(PLAYER, {{-1, 0}, {-1, 0}, {-1, 0}, {-1, 0}});  // the last onto the stairs up
  for (int Time = 2000; Time <= 4000; Time += 50) World->Tick(Time);
  EXPECT_EQ(Where(PLAYER), (TPosition{10, 11, 7}));
  EXPECT_EQ(Steps.back().To, (TPosition{10, 11, 7}));
}

TEST_F(WalkingTest, AWayDownLandsEvenWhereACreatureStands) {
  World->AddPlayer(PLAYER, "Ayla");
  World->AddPlayer(OTHER, "Borin");
  World->Walk(OTHER, {{1, 0}, {1, 0}, {1, 0}, {1, 0}, {0, 1}});  // down the stairs first
  for (int Time = 0; Time <= 3000; Time += 50) World->Tick(Time);
  ASSERT_EQ(Where(OTHER), (TPosition{15, 11, 8}));
  World->Walk(PLAYER, {{1, 0}, {1, 0}, {1, 0}, {1, 0}});
  for (int Time = 3000; Time <= 5000; Time += 50) World->Tick(Time);
  EXPECT_EQ(Where(PLAYER), (TPosition{15, 11, 8}));
  EXPECT_EQ(Where(OTHER), (TPosition{15, 11, 8}));

  World->Walk(OTHER, {{-1, 0}});  // but on one floor, a creature still blocks
  World->Walk(PLAYER, {{0, 1}, {-1, -1}});
  for (int Time = 5000; Time <= 7000; Time += 50) World->Tick(Time);
  EXPECT_EQ(Where(OTHER), (TPosition{14, 11, 8}));
  EXPECT_EQ(Where(PLAYER), (TPosition{15, 12, 8})) << "[14,11,8] is taken";
}

TEST_F(WalkingTest, AWayUpThatEndsNowhereIsRefused) {
  World->AddPlayer(PLAYER, "Ayla");
  World->Walk(PLAYER, {{1, 0}, {1, 0}, {1, 0}, {1, 0}});
  for (int Time = 0; Time <= 2000; Time += 50) World->Tick(Time);
  Recorder.Events.clear();
  World->Walk(PLAYER, {{-1, 1}, {-1, 1}, {-1, 0}, {-1, 0}, {-1, 0}});
  for (int Time = 2000; Time <= 6000; Time += 50) World->Tick(Time);
  EXPECT_EQ(Where(PLAYER), (TPosition{11, 13, 8})) << "[9,13,7] beyond the stairs has no field";
  EXPECT_EQ(Recorder.Events.back(), "1000 refused to [11,13,8]");
}

TEST_F(WalkingTest, MonstersWanderOnFreeFieldsNearTheirPlaceAtTheirPace) {
  TCreatureSetup Rat;
  Rat.Name = "rat";
  Rat.Position = {13, 13, 7};
  Rat.Outfit = {1, 0, 0, 0, 0, 0};
  Rat.Speed = 110;  // 278 waypoints a second: 550 ms a step on grass
  Rat.Range = 1;
  Make({Rat});
  std::int64_t LastStart = -100000;
  for (int Time = 0; Time <= 60000; Time += 10) {
    const std::size_t Before = Steps.size();
    World->Tick(Time);
    if (Steps.size() == Before) continue;
    const TStepRecord& Step = Steps.back();
    EXPECT_LE(std::abs(Step.To.X - 13), 1);
    EXPECT_LE(std::abs(Step.To.Y - 13), 1);
    EXPECT_NE(Step.To, (TPosition{13, 12, 7})) << "the wall";
    EXPECT_GE(Time - LastStart, Step.EndTime - Time) << "a step begins only when the last has ended";
    EXPECT_EQ(Step.EndTime - Time, 550);
    LastStart = Time;
  }
  EXPECT_GT(Steps.size(), 20u);
}

TEST_F(WalkingTest, NpcsSayTheirLinesInTurn) {
  TCreatureSetup Npc;
  Npc.Name = "Tess";
  Npc.Kind = ECreatureKind::NPC;
  Npc.Position = {14, 14, 7};
  Npc.Outfit = {1, 0, 0, 0, 0, 0};
  Npc.Lines = {"one", "two"};
  Npc.TalkIntervalMs = 5000;
  Make({Npc});
  for (int Time = 0; Time <= 10000; Time += 100) World->Tick(Time);
  const std::vector<std::string> Expected = {"1073741824 said one to [14,14,7]", "1073741824 said two to [14,14,7]",
                                             "1073741824 said one to [14,14,7]"};
  EXPECT_EQ(Recorder.Events, Expected);
  EXPECT_TRUE(Steps.empty()) << "an NPC stands";
}

TEST_F(WalkingTest, DoorsTurnAndObjectsMoveNextToThePlayer) {
  World->AddPlayer(PLAYER, "Ayla");
  Recorder.Events.clear();
  EXPECT_FALSE(World->Use(PLAYER, {13, 12, 7}, WALL, 1)) << "no use for a wall, and out of reach";
  EXPECT_FALSE(World->Use(PLAYER, {10, 12, 7}, WALL, 1)) << "the client names another type";
  EXPECT_TRUE(World->Use(PLAYER, {10, 12, 7}, OPEN_DOOR, 1));
  World->Walk(PLAYER, {{-1, 1}});
  World->Tick(0);
  EXPECT_EQ(Where(PLAYER), (TPosition{11, 11, 7})) << "the door is closed";
  EXPECT_FALSE(World->MoveObject(PLAYER, {10, 12, 7}, CLOSED_DOOR, 1, {11, 12, 7}, 1)) << "doors don't move";
  EXPECT_FALSE(World->MoveObject(PLAYER, {12, 11, 7}, COINS, 1, {12, 12, 7}, 4)) << "not into water";
  EXPECT_TRUE(World->MoveObject(PLAYER, {12, 11, 7}, COINS, 1, {11, 12, 7}, 4));
  EXPECT_TRUE(World->MoveObject(PLAYER, {12, 11, 7}, COINS, 1, {11, 12, 7}, 6));
  EXPECT_EQ(World->Map().Pile({11, 12, 7}), (TPile{{GRASS, 0}, {COINS, 6}, {COINS, 4}}));
  EXPECT_EQ(World->Map().Pile({12, 11, 7}), (TPile{{GRASS, 0}}));
  const std::vector<std::string> Expected = {"changed [10,12,7]/1", "1000 refused to [11,11,7]",
                                             "changed [12,11,7]/1", "created [11,12,7]/1",
                                             "deleted [12,11,7]/1", "created [11,12,7]/1"};
  EXPECT_EQ(Recorder.Events, Expected);
}

}  // namespace
