// The creature table and walking under a simulated clock: step times, the
// picture's way over a step, the own character's predicted steps against the
// server's moves and refusals, the auto-walk, outfit phases, health colours,
// the battle list and the spare record. Server messages go through the real
// receive path, so the map readers and the creature table are tested together.
#include "world/Creatures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "core/Clock.h"
#include "core/MessageQueue.h"
#include "core/Preferences.h"
#include "core/ProgramState.h"
#include "net/Communication.h"
#include "net/Connection.h"
#include "net/Login.h"
#include "net/Network.h"
#include "net/Xtea.h"
#include "tests/net/ServerPacket.h"
#include "tests/world/DatBytes.h"
#include "tests/world/PlayerMessageFixture.h"
#include "tests/world/WorldModules.h"
#include "tests/world/WorldTest.h"
#include "world/Map.h"
#include "world/Objects.h"
#include "world/Player.h"
#include "world/WorldMessages.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing_player::TPayload;
using testing_world::FailureReport;
using testing_world::TDatBytes;

constexpr int GROUND = 100;  // BANK, 150 waypoints
constexpr int WALL = 101;    // UNPASSABLE
constexpr int BUSH = 102;    // AVOID
constexpr int BOX = 103;     // HEIGHT
constexpr int MUD = 104;     // BANK, 300 waypoints
constexpr int WALKER = 1;    // three phases
constexpr int RUNNER = 2;    // five phases
constexpr int GLOW = 3;      // IDLEANIMATION, two phases
constexpr int STILL = 4;     // one phase

constexpr std::uint32_t PLAYER = 0x10000005;
constexpr std::uint32_t FRIEND = 0x10000006;
constexpr std::uint32_t WOLF = 0x40000020;
constexpr int MAP_X = 1000, MAP_Y = 1000, MAP_Z = 7;
constexpr int FLOOR = 0;  // the player's floor in the block on the surface

void Outfit(TDatBytes& B, int Phases) {
  B.U8(255).U8(1).U8(1).U8(1).U8(4).U8(1).U8(1).U8(Phases);
  if (Phases > 1) {
    B.U8(ANIMATION_ASYNCHRON).U32(0).U8(0);
    for (int Phase = 0; Phase < Phases; ++Phase) B.U32(100).U32(100);
  }
  for (int Sprite = 0; Sprite < 4 * Phases; ++Sprite) B.U32(static_cast<std::uint32_t>(Sprite + 1));
}

TDatBytes TypeFile() {
  TDatBytes B;
  B.Header(0x43524541, MUD, STILL, 0, 0);
  B.U8(BANK).U16(150).Plain(1);
  B.U8(UNPASSABLE).Plain(2);
  B.U8(AVOID).Plain(3);
  B.U8(HEIGHT).U16(8).Plain(4);
  B.U8(BANK).U16(300).Plain(5);
  Outfit(B, 3);
  Outfit(B, 5);
  B.U8(IDLEANIMATION);
  Outfit(B, 2);
  Outfit(B, 1);
  return B;
}

// The speed formula of the local server: speed 220 walks 500 waypoints a second.
constexpr double SERVER_A = 857.36, SERVER_B = 261.29, SERVER_C = -4795.01;

TObject Item(int Type, std::uint32_t Data = 0) {
  TObject Object;
  Object.Type = Type;
  Object.Data = Data;
  return Object;
}

// ---- Server messages

TPayload& Position(TPayload& P, int x, int y, int z) { return P.U16(x).U16(y).U8(z); }

// A step of the creature at the given place, to the field beside it.
TPayload Move(int x, int y, int Stack, int dx, int dy) {
  TPayload P;
  P.U8(SMOVECREATURE);
  Position(P, x, y, MAP_Z).U8(Stack);
  return Position(P, x + dx, y + dy, MAP_Z);
}

// A new edge of the block after the player's step: grass on the player's
// floor, nothing on the floors above.
TPayload& Row(TPayload& P, int Command, int FieldsPerFloor) {
  P.U8(Command);
  for (int Field = 0; Field < FieldsPerFloor; ++Field) {
    P.U16(0).U16(GROUND).U8(255);
    P.U16(0xFF00 + (Field + 1 < FieldsPerFloor ? 0 : 7 * FieldsPerFloor));
  }
  return P;
}

TPayload& UnknownCreature(TPayload& P, std::uint32_t Id, const std::string& Name) {
  P.U16(UNKNOWNCREATURE).U32(0).U32(Id).U8(0).Text(Name);
  P.U8(100).U8(2).U16(WALKER).U8(1).U8(2).U8(3).U8(4).U8(0).U16(0);
  P.U8(0).U8(0).U16(220).U8(0).U8(0).U8(0).U8(0).U8(0);
  return P.U8(255).U16(0).U8(1);
}

class CreaturesTest : public testing_world::TFileTest {
 protected:
  void SetUp() override {
    TFileTest::SetUp();
    TypeFile().Write(File("Kelmo.dat"));
    m_Modules = std::make_unique<testing_world::TWorldModules>(File("Kelmo.dat"), m_Clock);
    SetStatusTextHandler([this](const std::string& Text) { m_StatusTexts.push_back(Text); });
  }
  void TearDown() override {
    m_Modules.reset();
    TFileTest::TearDown();
  }

  static void Receive(const TPayload& Payload) {
    testing_world::ReceiveGamePacket(Payload.Get());
  }

  // SLOGINSUCCESS with the beat and the speed formula, in hundredths.
  static void LogIn(int Beat, double A, double B, double C) {
    TPayload P;
    P.U8(SLOGINSUCCESS).U32(PLAYER).U16(Beat);
    for (double Value : {A, B, C})
      P.U8(2).U32(static_cast<std::uint32_t>(std::lround(Value * 100) + 0x7FFFFFFF));
    Receive(P.U8(0).U8(0));
  }
  // Every creature walks V waypoints a second, whatever its speed.
  static void LogInWithVelocity(int Beat, int V) { LogIn(Beat, 0, 1, V); }

  // Grass on every field of the player's floor, the player in the middle.
  TCreature& Meadow() {
    SetMapPosition(MAP_X, MAP_Y, MAP_Z);
    for (int rx = 0; rx < MAPSIZE_X; ++rx)
      for (int ry = 0; ry < MAPSIZE_Y; ++ry) AppendObject(rx, ry, FLOOR, Item(GROUND));
    SetHitPoints(150, 150);
    return Place(PLAYER, 8, 6, 220);
  }

  static TCreature& Place(std::uint32_t Id, int rx, int ry, int Speed) {
    TCreature& Creature = NewCreature(0, Id);
    Creature.X = MAP_X - 8 + rx, Creature.Y = MAP_Y - 6 + ry, Creature.Z = MAP_Z;
    Creature.Speed = Speed;
    Creature.Health = 100;
    Creature.OutfitType = WALKER;
    Creature.OnMap = true;
    InsertObject(rx, ry, FLOOR, Item(CREATURE, Id));
    return Creature;
  }

  // The server's word on the player's step east: the move, and the new
  // column of fields in the east.
  static void ConfirmEast() {
    const TCreature& Player = *FindCreature(PLAYER);
    TPayload P = Move(Player.X, Player.Y, 1, 1, 0);
    Receive(Row(P, SRIGHTROW, MAPSIZE_Y));
  }

  // A path finder that walks east to the target, ten steps at a time.
  static int EastToTarget(int X, int, int) {
    const int Left = GetWalkState().DestX - X;
    const int Steps = std::min(Left, MAX_WALK_STEPS);
    SetWalkSteps(std::vector<int>(static_cast<size_t>(Steps), 1));
    return Steps == Left ? 1 : 2;
  }

  void Advance(int Milliseconds) { m_Clock->AdvanceMilliseconds(Milliseconds); }
  static int Now() { return GetProgramTime(); }

  std::vector<std::string> m_StatusTexts;

 private:
  std::shared_ptr<TManualClock> m_Clock = std::make_shared<TManualClock>();
  std::unique_ptr<testing_world::TWorldModules> m_Modules;
};

// ---- Step times

TEST_F(CreaturesTest, StepTimeIsRoundedUpToTheBeat) {
  LogInWithVelocity(50, 100);
  TCreature& Wolf = NewCreature(0, WOLF);
  Wolf.Speed = 100;
  MoveCreature(Wolf, 1, 0, 150);
  EXPECT_EQ(Wolf.WalkDuration, 1500);
  EXPECT_EQ(Wolf.WalkEndTime, 1500);
  EXPECT_EQ(Wolf.NextStepTime, 1500);

  LogInWithVelocity(50, 220);
  MoveCreature(Wolf, 0, -1, 150);  // 681 ms
  EXPECT_EQ(Wolf.WalkDuration, 700);
  EXPECT_EQ(Wolf.NextStepTime, 700);
  EXPECT_EQ(Wolf.Direction, 0);
  EXPECT_EQ(Wolf.OffsetY, 32);
  EXPECT_EQ(Wolf.TotalY, 32);
  EXPECT_EQ(Wolf.TotalX, 0);
}

TEST_F(CreaturesTest, DiagonalStepIsDrawnInTheRoundedTimeButHoldsTheNextForThreeTimesTheUnrounded) {
  LogInWithVelocity(50, 220);
  Advance(40);
  TCreature& Wolf = NewCreature(0, WOLF);
  MoveCreature(Wolf, -1, 1, 150);
  EXPECT_EQ(Wolf.WalkDuration, 700);
  EXPECT_EQ(Wolf.WalkEndTime, 740);
  EXPECT_EQ(Wolf.NextStepTime, 40 + 150 * 3000 / 220);
  EXPECT_EQ(Wolf.Direction, 3) << "west wins over south";
}

TEST_F(CreaturesTest, VelocityFromTheSessionsFormula) {
  LogIn(50, SERVER_A, SERVER_B, SERVER_C);
  TCreature& Wolf = NewCreature(0, WOLF);
  Wolf.Speed = 220;
  EXPECT_EQ(GetVelocity(Wolf), 500);
  Wolf.Speed = -262;
  EXPECT_EQ(GetVelocity(Wolf), 0);
  MoveCreature(Wolf, 1, 0, 150);
  EXPECT_EQ(Wolf.WalkDuration, 150000) << "a creature that can't walk counts one waypoint a second";
}

// ---- The picture over a step

TEST_F(CreaturesTest, ProcessCreaturesRunsTheOffsetToTheFieldAndEndsAfterNextStepTime) {
  LogInWithVelocity(50, 100);
  TCreature& Wolf = NewCreature(0, WOLF);
  MoveCreature(Wolf, 1, 0, 150);  // 1500 ms for 32 pixels
  std::vector<int> Offsets;
  for (int Time = 0; Time <= 1500; Time += 375) {
    EXPECT_FALSE(ProcessCreatures());
    Offsets.push_back(Wolf.OffsetX);
    Advance(375);
  }
  EXPECT_THAT(Offsets, ElementsAre(-32, -24, -16, -8, 0));
  EXPECT_TRUE(Wolf.Walking) << "the step counts as running up to its NextStepTime";
  Advance(1 - 375);
  ProcessCreatures();
  EXPECT_FALSE(Wolf.Walking);
}

TEST_F(CreaturesTest, AJumpOrAnUnknownStepTimeEndsAtOnce) {
  LogInWithVelocity(50, 100);
  TCreature& Wolf = NewCreature(0, WOLF);
  MoveCreature(Wolf, 0, 0, 0);
  EXPECT_TRUE(Wolf.Walking);
  Advance(1);
  ProcessCreatures();
  EXPECT_FALSE(Wolf.Walking);
}

TEST_F(CreaturesTest, ANewPositionEndsTheStepsPicture) {
  LogInWithVelocity(50, 100);
  TCreature& Wolf = NewCreature(0, WOLF);
  MoveCreature(Wolf, 1, 0, 150);
  SetCreaturePosition(Wolf, 5, 6, 7);
  EXPECT_EQ(Wolf.OffsetX, 0);
  EXPECT_FALSE(Wolf.Walking);
}

// ---- The own steps

TEST_F(CreaturesTest, PredictedStepConfirmedByTheServerChangesNothing) {
  LogIn(50, SERVER_A, SERVER_B, SERVER_C);
  TCreature& Player = Meadow();
  SetWalkSteps({1});
  PredictNextStep();
  EXPECT_EQ(GetWalkState().PredictedDx, 1);
  EXPECT_EQ(GetWalkState().Step, 1);
  EXPECT_EQ(Player.WalkDuration, 300);
  EXPECT_EQ(GetOffsetX(Player), 0) << "drawn one field ahead, starting where it stands";
  EXPECT_EQ(GetCreatureDirection(Player), 1);

  Advance(150);
  ProcessCreatures();
  const TCreature Before = Player;
  EXPECT_EQ(GetOffsetX(Player), 16);
  ConfirmEast();
  EXPECT_EQ(Player.X, MAP_X + 1);
  EXPECT_EQ(GetWalkState().PredictedDx, 0);
  EXPECT_EQ(GetWalkState().Step, 1) << "the confirmation doesn't count the step again";
  EXPECT_EQ(Player.OffsetX, Before.OffsetX);
  EXPECT_EQ(Player.WalkEndTime, Before.WalkEndTime);
  EXPECT_EQ(Player.NextStepTime, Before.NextStepTime);
  EXPECT_EQ(GetOffsetX(Player), -16) << "the map has moved under the player";
  int x = 0, y = 0, z = 0;
  GetMapPosition(x, y, z);
  EXPECT_EQ(x, MAP_X + 1);
  EXPECT_EQ(GetObject(8, 6, FLOOR, 1).Data, PLAYER);
}

TEST_F(CreaturesTest, RefusedStepSnapsBack) {
  LogIn(50, SERVER_A, SERVER_B, SERVER_C);
  TCreature& Player = Meadow();
  SetWalkSteps({1, 1});
  PredictNextStep();
  Advance(100);
  ProcessCreatures();
  ASSERT_EQ(GetOffsetX(Player), 11);
  TPayload P;
  Receive(P.U8(SSNAPBACK).U8(2));
  EXPECT_EQ(GetWalkState().PredictedDx, 0);
  EXPECT_EQ(GetWalkState().Number, 0);
  EXPECT_EQ(GetOffsetX(Player), 0) << "back on its field at once";
  EXPECT_EQ(Player.X, MAP_X);
  EXPECT_EQ(GetCreatureDirection(Player), 2) << "facing the way the server says";
  Advance(1);
  EXPECT_FALSE(ProcessCreatures());
  EXPECT_FALSE(Player.Walking);
}

TEST_F(CreaturesTest, ServerMoveInAnotherDirectionReplacesThePrediction) {
  LogIn(50, SERVER_A, SERVER_B, SERVER_C);
  TCreature& Player = Meadow();
  SetWalkSteps({1, 1});
  PredictNextStep();
  Advance(200);
  ProcessCreatures();
  TPayload P = Move(MAP_X, MAP_Y, 1, 0, 1);
  Receive(Row(P, SBOTTOMROW, MAPSIZE_X));
  EXPECT_EQ(GetWalkState().PredictedDx, 0);
  EXPECT_EQ(GetWalkState().Step, 2) << "the server's own step counts as well";
  EXPECT_EQ(GetOffsetX(Player), 0);
  EXPECT_EQ(GetOffsetY(Player), -32) << "the server's step plays from its start";
  EXPECT_EQ(Player.WalkEndTime, 500);
  EXPECT_EQ(GetCreatureDirection(Player), 2);
}

TEST_F(CreaturesTest, WalkAcrossTenFieldsArrivesOnTime) {
  LogIn(50, SERVER_A, SERVER_B, SERVER_C);
  TCreature& Player = Meadow();
  SetPathFinder(EastToTarget);
  ASSERT_EQ(SetDestination(MAP_X + 10, MAP_Y, MAP_Z, true, false), 1);
  EXPECT_EQ(GetWalkSteps(), std::vector<int>(10, 1));

  // The server confirms each step 20 ms after the client has started it; the
  // frames come every 10 ms.
  std::vector<int> Arrivals;
  int Confirm = -1;
  for (int Frame = 0; Frame < 400 && GetWalkState().Number > 0; ++Frame) {
    if (Arrivals.empty() || Player.WalkEndTime != Arrivals.back()) {
      Arrivals.push_back(Player.WalkEndTime);
      Confirm = Now() + 20;
    }
    Advance(10);
    if (Now() == Confirm) ConfirmEast();
    EXPECT_FALSE(ProcessCreatures());
  }
  // Each step takes 300 ms; the next starts at the first frame after it.
  std::vector<int> Expected;
  for (int Step = 0; Step < 10; ++Step) Expected.push_back(310 * Step + 300);
  EXPECT_EQ(Arrivals, Expected);
  EXPECT_EQ(Player.X, MAP_X + 10);
  EXPECT_EQ(GetWalkState().DestX, 0);
  EXPECT_FALSE(Player.Walking);
  EXPECT_EQ(GetOffsetX(Player), 0);
}

TEST_F(CreaturesTest, ALongerPathIsPlannedAgainAndSentWhenItsStepsAreDone) {
  LogIn(50, SERVER_A, SERVER_B, SERVER_C);
  TCreature& Player = Meadow();
  SetPathFinder(EastToTarget);
  ASSERT_EQ(SetDestination(MAP_X + 12, MAP_Y, MAP_Z, true, false), 1);
  EXPECT_EQ(GetWalkState().DestX, MAP_X + 12) << "the path reaches only part of the way";
  bool Sent = false;
  for (int Frame = 0; Frame < 400 && !Sent; ++Frame) {
    const bool Predicted = GetWalkState().PredictedDx != 0;
    Advance(10);
    if (Predicted && Now() == Player.WalkEndTime - 280) ConfirmEast();
    Sent = ProcessCreatures();
  }
  ASSERT_TRUE(Sent);
  EXPECT_EQ(Player.X, MAP_X + 10);
  EXPECT_EQ(GetWalkSteps(), std::vector<int>(2, 1));
  EXPECT_EQ(GetWalkState().DestX, 0);
  EXPECT_EQ(GetWalkState().PredictedDx, 1) << "the first step of the new part runs";
}

TEST_F(CreaturesTest, PredictionWaitsForTheServerOnFieldsItMayNotTake) {
  LogIn(50, SERVER_A, SERVER_B, SERVER_C);
  TCreature& Player = Meadow();
  AppendObject(9, 6, FLOOR, Item(BUSH));
  SetWalkSteps({1, 1});
  PredictNextStep();
  EXPECT_EQ(GetWalkState().PredictedDx, 0) << "a field to avoid is the server's to allow";
  EXPECT_EQ(GetWalkState().Step, 0);
  EXPECT_FALSE(Player.Walking);
  ConfirmEast();
  EXPECT_EQ(GetWalkState().Step, 1) << "the server's move counts the step";
  EXPECT_EQ(Player.OffsetX, -32);
}

TEST_F(CreaturesTest, PredictionIsRefusedWithoutGroundOrPassageOrForAClimb) {
  LogIn(50, SERVER_A, SERVER_B, SERVER_C);
  Meadow();
  const auto Predicts = [](int Code) {
    SetWalkSteps({Code});
    PredictNextStep();
    const bool Predicted = GetWalkState().PredictedDx != 0 || GetWalkState().PredictedDy != 0;
    CancelPrediction();
    return Predicted;
  };
  ClearField(9, 6, FLOOR, true);
  AppendObject(9, 6, FLOOR, Item(WALL));
  EXPECT_FALSE(Predicts(1)) << "no ground";
  AppendObject(8, 5, FLOOR, Item(WALL));
  EXPECT_FALSE(Predicts(3)) << "a wall";
  AppendObject(7, 6, FLOOR, Item(BOX));
  AppendObject(7, 6, FLOOR, Item(BOX));
  EXPECT_FALSE(Predicts(5)) << "two levels up";
  AppendObject(8, 6, FLOOR, Item(BOX));
  EXPECT_TRUE(Predicts(5)) << "one level up";
  EXPECT_TRUE(Predicts(7));
  SetHitPoints(0, 150);
  EXPECT_FALSE(Predicts(7)) << "no hit points";
}

TEST_F(CreaturesTest, PendingPredictionKeepsThePlayerWaiting) {
  LogIn(50, SERVER_A, SERVER_B, SERVER_C);
  TCreature& Player = Meadow();
  SetWalkSteps({8, 1});
  PredictNextStep();  // diagonal: 300 ms to draw, 900 to the next
  EXPECT_EQ(Player.NextStepTime, 150 * 3000 / 500);
  Advance(1000);
  EXPECT_FALSE(ProcessCreatures());
  EXPECT_TRUE(Player.Walking) << "waiting for the server";
  EXPECT_EQ(GetWalkState().Step, 1);
  EXPECT_EQ(GetCreatureDirection(Player), 1);
}

TEST_F(CreaturesTest, CancelPredictionPutsThePlayerBack) {
  LogIn(50, SERVER_A, SERVER_B, SERVER_C);
  TCreature& Player = Meadow();
  SetWalkSteps({3});
  PredictNextStep();
  EXPECT_EQ(GetOffsetY(Player), 0);
  EXPECT_EQ(GetCreatureDirection(Player), 0);
  CancelPrediction();
  EXPECT_EQ(GetOffsetY(Player), 0);
  EXPECT_EQ(Player.OffsetY, 0);
  EXPECT_FALSE(Player.Walking);
  EXPECT_EQ(GetWalkState().Number, 0);
}

TEST_F(CreaturesTest, AStepOutsideTheListIsReported) {
  LogIn(50, SERVER_A, SERVER_B, SERVER_C);
  Meadow();
  SetWalkSteps({1, 2});
  EXPECT_EQ(GetStep(1), 2);
  EXPECT_THAT(FailureReport([] { GetStep(2); }), HasSubstr("invalid player step (Step: 2 Number: 2 Line: "));
  StopAutoWalk();
  EXPECT_THAT(FailureReport([] { PredictNextStep(); }), HasSubstr("invalid player step (Step: 0 Number: 0 Line: "));
}

// ---- Destinations

TEST_F(CreaturesTest, WithoutAPathFinderATargetIsDropped) {
  LogIn(50, SERVER_A, SERVER_B, SERVER_C);
  Meadow();
  EXPECT_EQ(SetDestination(MAP_X + 3, MAP_Y, MAP_Z, true, false), 0);
  EXPECT_EQ(GetWalkState().DestX, 0);
  EXPECT_TRUE(m_StatusTexts.empty());
}

TEST_F(CreaturesTest, DestinationRules) {
  LogIn(50, SERVER_A, SERVER_B, SERVER_C);
  Meadow();
  SetPathFinder(EastToTarget);
  EXPECT_EQ(SetDestination(MAP_X, MAP_Y, MAP_Z, true, false), 0) << "the player's own field";
  EXPECT_EQ(GetWalkState().DestX, 0);

  AppendObject(10, 6, FLOOR, Item(WALL));
  EXPECT_EQ(SetDestination(MAP_X + 2, MAP_Y, MAP_Z, true, false), 0);
  EXPECT_THAT(m_StatusTexts, ElementsAre("Sorry, not possible."));
  EXPECT_EQ(GetWalkState().DestX, 0);

  ASSERT_EQ(SetDestination(MAP_X + 20, MAP_Y, MAP_Z, true, true), 1);
  EXPECT_TRUE(GetWalkState().ForceDiagonal);
  EXPECT_EQ(SetDestination(MAP_X + 20, MAP_Y, MAP_Z, true, false), 0) << "the same target";
  EXPECT_EQ(SetDestination(MAP_X + 5, MAP_Y, MAP_Z, false, false), 2) << "the running path is stopped";
  EXPECT_TRUE(GetWalkState().RecalculatePending);
  EXPECT_EQ(SetDestination(MAP_X + 6, MAP_Y, MAP_Z, false, false), 0);
  EXPECT_EQ(GetWalkState().DestX, MAP_X + 6);
}

TEST_F(CreaturesTest, PathFailuresShowTheirTexts) {
  LogIn(50, SERVER_A, SERVER_B, SERVER_C);
  Meadow();
  int Answer = 0;
  SetPathFinder([&](int, int, int) { return Answer; });
  for (Answer = -1; Answer >= -4; --Answer) {
    EXPECT_EQ(SetDestination(MAP_X + 30 + Answer, MAP_Y, MAP_Z, true, false), 0);
    EXPECT_EQ(GetWalkState().DestX, 0);
  }
  EXPECT_THAT(m_StatusTexts, ElementsAre("First go upstairs.", "First go downstairs.",
                                         "Destination is out of range.", "There is no way."));
}

// ---- Looks

TEST_F(CreaturesTest, ThreePhasesAlternateEveryEightPixels) {
  LogInWithVelocity(50, 500);  // 300 ms a step
  TCreature& Wolf = NewCreature(0, WOLF);
  Wolf.OutfitType = WALKER;
  EXPECT_EQ(GetAnimationPhase(Wolf, false), 1) << "at rest";
  MoveCreature(Wolf, 1, 0, 150);
  std::vector<int> Phases;
  for (int Time = 0; Time <= 300; Time += 75) {
    ProcessCreatures();
    Phases.push_back(GetAnimationPhase(Wolf, false));
    Advance(75);
  }
  EXPECT_THAT(Phases, ElementsAre(2, 3, 2, 3, 1));
}

TEST_F(CreaturesTest, MorePhasesFollowTheStepsTime) {
  LogInWithVelocity(50, 500);
  TCreature& Wolf = NewCreature(0, WOLF);
  Wolf.OutfitType = RUNNER;
  MoveCreature(Wolf, 0, 1, 150);
  std::vector<int> Phases;
  for (int Time : {0, 74, 75, 150, 299}) {
    Advance(Time - Now());
    Phases.push_back(GetAnimationPhase(Wolf, false));
  }
  EXPECT_THAT(Phases, ElementsAre(2, 2, 3, 4, 5));
  Wolf.OutfitType = STILL;
  EXPECT_EQ(GetAnimationPhase(Wolf, false), 1);
}

TEST_F(CreaturesTest, IdleAnimationRunsByTheTickAndAMountIsAsked) {
  LogInWithVelocity(50, 500);
  TCreature& Wolf = NewCreature(0, WOLF);
  Wolf.OutfitType = STILL;
  Wolf.MountOutfitType = GLOW;
  const int Start = GetAnimationPhase(Wolf, true);
  EXPECT_EQ(Start, GetTickCounter() / 3 % 2 + 1);
  for (int Tick = 0; Tick < 3; ++Tick) AdvanceTickCounter();
  EXPECT_EQ(GetAnimationPhase(Wolf, true), 3 - Start);
  Wolf.MountOutfitType = 0;
  EXPECT_THAT(FailureReport([&] { GetAnimationPhase(Wolf, true); }), HasSubstr("MountOutfitType != 0"));
}

TEST_F(CreaturesTest, HealthColors) {
  TCreature Creature;
  const auto ColorAt = [&](int Health) {
    Creature.Health = Health;
    return GetHealthColor(Creature);
  };
  EXPECT_EQ(ColorAt(0), (TRGB{96, 0, 0}));
  EXPECT_EQ(ColorAt(3), (TRGB{96, 0, 0}));
  EXPECT_EQ(ColorAt(4), (TRGB{192, 0, 0}));
  EXPECT_EQ(ColorAt(9), (TRGB{192, 0, 0}));
  EXPECT_EQ(ColorAt(10), (TRGB{192, 48, 48}));
  EXPECT_EQ(ColorAt(29), (TRGB{192, 48, 48}));
  EXPECT_EQ(ColorAt(30), (TRGB{192, 192, 0}));
  EXPECT_EQ(ColorAt(59), (TRGB{192, 192, 0}));
  EXPECT_EQ(ColorAt(60), (TRGB{96, 192, 96}));
  EXPECT_EQ(ColorAt(94), (TRGB{96, 192, 96}));
  EXPECT_EQ(ColorAt(95), (TRGB{0, 192, 0}));
  EXPECT_EQ(ColorAt(100), (TRGB{0, 192, 0}));
}

TEST_F(CreaturesTest, MarkFlashesForASecond) {
  Advance(250);
  TCreature& Wolf = NewCreature(0, WOLF);
  SetMark(Wolf, 180);
  EXPECT_EQ(Wolf.MarkColor, 180);
  EXPECT_EQ(Wolf.MarkEndTime, 1250);
}

// ---- Battle list

TEST_F(CreaturesTest, BattleListKeepsTheOrderOfAppearance) {
  LogIn(50, SERVER_A, SERVER_B, SERVER_C);
  Meadow();
  TCreature& Early = Place(WOLF, 15, 6, 100);        // 7 east: in
  TCreature& Late = Place(WOLF + 1, 8, 1, 100);      // 5 north: in
  TCreature& Far = Place(WOLF + 2, 16, 6, 100);      // 8 east: out
  TCreature& Dead = Place(WOLF + 3, 9, 6, 100);
  TCreature& Ghost = Place(WOLF + 4, 9, 7, 100);
  TCreature& Friend = Place(FRIEND, 7, 7, 100);
  Dead.Health = 0;
  Ghost.OutfitType = 0;
  Ghost.OutfitData[0] = 0;
  Late.OnMap = false;
  EXPECT_EQ(UpdateBattleList(), 2);
  EXPECT_EQ(GetBattleEntry(0), &Early);
  EXPECT_EQ(GetBattleEntry(1), &Friend);
  EXPECT_EQ(GetBattleEntry(2), nullptr);
  EXPECT_FALSE(IsInBattleList(Far));
  EXPECT_FALSE(IsInBattleList(*FindPlayer()));

  Late.OnMap = true;
  Early.Z = MAP_Z + 1;
  EXPECT_EQ(UpdateBattleList(), 2);
  EXPECT_EQ(GetBattleEntry(0), &Friend);
  EXPECT_EQ(GetBattleEntry(1), &Late) << "newcomers join at the tail, whatever their record";
  Early.Z = MAP_Z;
  Ghost.OutfitData[0] = GROUND;  // looks like an object, but is seen
  EXPECT_EQ(UpdateBattleList(), 4);
  EXPECT_EQ(GetBattleEntry(2), &Early);
  EXPECT_EQ(GetBattleEntry(3), &Ghost);
  ClearCreatures();
  EXPECT_EQ(GetBattleEntry(0), nullptr);
}

// ---- The table

TEST_F(CreaturesTest, TheCreatureAfterTheLastRecordGoesToTheSpareOne) {
  LogIn(50, SERVER_A, SERVER_B, SERVER_C);
  Meadow();  // the player takes the first record
  for (std::uint32_t Id = 1; Id < MAX_CREATURES; ++Id) NewCreature(0, WOLF + Id);
  ASSERT_NE(FindCreature(WOLF + MAX_CREATURES - 1), nullptr);
  const std::uint32_t Extra = WOLF + MAX_CREATURES;
  TPayload P;
  P.U8(SCREATEONMAP);
  Position(P, MAP_X + 1, MAP_Y, MAP_Z).U8(255);
  Receive(UnknownCreature(P, Extra, "wolf"));
  EXPECT_EQ(FindCreature(Extra), nullptr);
  const TObject Object = GetObject(9, 6, FLOOR, 1);
  EXPECT_EQ(Object.Type, CREATURE);
  EXPECT_EQ(Object.Data, Extra) << "its map object stays";
  EXPECT_EQ(GetObstacle(9, 6, FLOOR, false), 0) << "with no record it blocks nothing";
  EXPECT_EQ(&NewCreature(0, Extra + 1), &NewCreature(0, Extra + 2)) << "one spare record for all";
  EXPECT_EQ(FindCreatureByName("Wolf"), nullptr);
}

TEST_F(CreaturesTest, ClearCreaturesEmptiesTableWalkAndPlayerState) {
  LogIn(50, SERVER_A, SERVER_B, SERVER_C);
  Meadow();
  SetWalkSteps({1, 1});
  PredictNextStep();
  ClearCreatures();
  EXPECT_EQ(FindPlayer(), nullptr);
  EXPECT_EQ(GetWalkState().Number, 0);
  EXPECT_EQ(GetWalkState().PredictedDx, 0);
  EXPECT_EQ(GetPlayerStats().HitPoints, 0);
}

}  // namespace
