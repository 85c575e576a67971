#include "world/Creatures.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "core/Exception.h"
#include "core/Clock.h"
#include "net/Login.h"
#include "world/Colors.h"

namespace {

struct TCreatureTable {
  // The last record is the spare one.
  std::array<TCreature, MAX_CREATURES + 1> Records;
  std::vector<std::uint32_t> Trappers;
  TWalkState Walk;
};

std::unique_ptr<TCreatureTable> Table;

TCreatureTable& Creatures() {
  Check(Table != nullptr, "Creatures!=NULL");
  return *Table;
}

void ResetRecord(TCreature& Creature, std::uint32_t CreatureID) {
  if (Creature.CreatureID == 0) Creature.BattleNext = 0x7FFFFFFF;
  Creature.PKFlag = Creature.PARTYFlag = Creature.GUILDFlag = Creature.PvPHelpers = 0;
  Creature.Squared = false;
  const TRGB Unmarked = Color216(255);
  Creature.SquareRed = Unmarked.Red;
  Creature.SquareGreen = Unmarked.Green;
  Creature.SquareBlue = Unmarked.Blue;
  Creature.Unpassable = true;
  Creature.CreatureID = CreatureID;
}

}  // namespace

void InitCreatures() { Table = std::make_unique<TCreatureTable>(); }
void ExitCreatures() { Table.reset(); }

void ClearCreatures() {
  TCreatureTable& T = Creatures();
  std::fill(T.Records.begin(), T.Records.end(), TCreature{});
  T.Trappers.clear();
  T.Walk = TWalkState{};
}

TCreature& NewCreature(std::uint32_t OldCreatureID, std::uint32_t NewCreatureID) {
  Check(NewCreatureID != 0, "NewCreatureID!=0");
  auto& Records = Creatures().Records;
  const auto Searched = Records.begin() + MAX_CREATURES;
  auto Found = std::find_if(Records.begin(), Searched, [&](const TCreature& C) {
    return C.CreatureID == OldCreatureID || C.CreatureID == NewCreatureID;
  });
  TCreature& Creature = Found != Searched ? *Found : Records.back();
  ResetRecord(Creature, NewCreatureID);
  return Creature;
}

TCreature* FindCreature(std::uint32_t CreatureID) {
  Check(CreatureID != 0, "CreatureID!=0");
  auto& Records = Creatures().Records;
  const auto Searched = Records.begin() + MAX_CREATURES;
  const auto Found = std::find_if(Records.begin(), Searched,
                                  [&](const TCreature& C) { return C.CreatureID == CreatureID; });
  return Found != Searched ? &*Found : nullptr;
}

TCreature* FindCreatureByName(const std::string& Name) {
  auto& Records = Creatures().Records;
  const auto Searched = Records.begin() + MAX_CREATURES;
  const auto Found = std::find_if(Records.begin(), Searched, [&](const TCreature& C) {
    return C.CreatureID != 0 && C.Name == Name;
  });
  return Found != Searched ? &*Found : nullptr;
}

void SetTrappers(const std::vector<std::uint32_t>& CreatureIDs) {
  if (CreatureIDs.size() > MAX_TRAPPERS) ThrowException("illegal number of trappers");
  Creatures().Trappers = CreatureIDs;
}

bool IsTrapper(std::uint32_t CreatureID) {
  const auto& Trappers = Creatures().Trappers;
  return std::find(Trappers.begin(), Trappers.end(), CreatureID) != Trappers.end();
}

void MarkAllCreaturesOffMap() {
  for (TCreature& Creature : Creatures().Records) Creature.OnMap = false;
}

void CreatureLeftMap(std::uint32_t CreatureID) {
  if (CreatureID == 0) return;
  if (TCreature* Creature = FindCreature(CreatureID)) Creature->OnMap = false;
}

TCreature* FindPlayer() {
  const std::uint32_t PlayerId = GetSessionInfo().PlayerId;
  return PlayerId != 0 ? FindCreature(PlayerId) : nullptr;
}

bool IsPlayer(const TCreature& Creature) {
  return Creature.CreatureID != 0 && Creature.CreatureID == GetSessionInfo().PlayerId;
}

void SetCreaturePosition(TCreature& Creature, int X, int Y, int Z) {
  if (Creature.X == X && Creature.Y == Y && Creature.Z == Z) return;
  Creature.X = X, Creature.Y = Y, Creature.Z = Z;
  Creature.OffsetX = Creature.OffsetY = 0;
  Creature.Walking = false;
}

void SetMark(TCreature& Creature, int Color) {
  Creature.MarkColor = Color;
  Creature.MarkEndTime = GetProgramTime() + 1000;
}

int GetVelocity(const TCreature& Creature) {
  const TSessionInfo& Session = GetSessionInfo();
  if (Creature.Speed <= -Session.SpeedB) return 0;
  return static_cast<int>(Session.SpeedA * std::log(Creature.Speed + Session.SpeedB) + Session.SpeedC + 0.5);
}

namespace {

// 0 north, 1 east, 2 south, 3 west.
int StepDirection(int dx, int dy, int Current) {
  if (dx > 0) return 1;
  if (dx < 0) return 3;
  if (dy < 0) return 0;
  if (dy > 0) return 2;
  return Current;
}

// Waypoints x Factor / V whole milliseconds, for V at least 1.
int StepTime(int Waypoints, int Factor, int Velocity) {
  return Waypoints * Factor / std::max(Velocity, 1);
}

int RoundUpToBeat(int Time) {
  const int Beat = GetSessionInfo().Beat;
  if (Beat <= 0) return Time;
  return (Time + Beat - 1) / Beat * Beat;
}

}  // namespace

void MoveCreature(TCreature& Creature, int dx, int dy, int Waypoints) {
  Creature.Direction = StepDirection(dx, dy, Creature.Direction);
  TWalkState& Walk = Creatures().Walk;
  if (Waypoints != 0 && IsPlayer(Creature)) {
    const bool Confirmed = Walk.PredictedDx == dx && Walk.PredictedDy == dy;
    Walk.PredictedDx = Walk.PredictedDy = 0;
    if (Confirmed) return;
    ++Walk.Step;
  }
  Creature.WalkDirection = Creature.Direction;
  const int Velocity = std::max(GetVelocity(Creature), 1);
  int Time = RoundUpToBeat(StepTime(Waypoints, 1000, Velocity));
  const int Now = GetProgramTime();
  Creature.OffsetX = -dx * 32;
  Creature.OffsetY = -dy * 32;
  Creature.TotalX = std::abs(Creature.OffsetX);
  Creature.TotalY = std::abs(Creature.OffsetY);
  Creature.WalkDuration = Time;
  Creature.WalkEndTime = Now + Time;
  if (dx != 0 && dy != 0) Time = StepTime(Waypoints, 3000, Velocity);
  Creature.NextStepTime = Now + Time;
  Creature.Walking = true;
}

const TWalkState& GetWalkState() { return Creatures().Walk; }

void StopAutoWalk() {
  TWalkState& Walk = Creatures().Walk;
  Walk.DestX = 0;
  Walk.Number = 0;
  Walk.Step = 0;
  Walk.RecalculatePending = false;
}

void CancelPrediction() {
  StopAutoWalk();
  TWalkState& Walk = Creatures().Walk;
  Walk.PredictedDx = Walk.PredictedDy = 0;
  if (TCreature* Player = FindPlayer()) {
    Player->WalkDirection = Player->Direction;
    Player->Walking = false;
    Player->OffsetX = Player->OffsetY = 0;
  }
}

bool HandleSnapback(int NewDirection) {
  TWalkState& Walk = Creatures().Walk;
  Walk.Number = 0;
  TCreature* Player = FindPlayer();
  if (Player == nullptr) {
    Walk.PredictedDx = Walk.PredictedDy = 0;
    return false;
  }
  Player->Direction = NewDirection;
  const bool Predicted = Walk.PredictedDx != 0 || Walk.PredictedDy != 0;
  if (!Predicted && Player->Walking) return false;
  MoveCreature(*Player, 0, 0, -1);
  return CalculateNextPath() == 1;
}

// Without the path finder there is no path to go on with: a pending target is
// dropped, and the caller sends nothing.
int CalculateNextPath() {
  TWalkState& Walk = Creatures().Walk;
  Walk.Number = 0;
  Walk.RecalculatePending = false;
  if (Walk.DestX == 0) return 0;
  if (std::abs(Walk.PredictedDx) + std::abs(Walk.PredictedDy) > 1) {
    if (TCreature* Player = FindPlayer()) Player->Walking = true;
    return 0;
  }
  Walk.DestX = 0;
  return 0;
}
