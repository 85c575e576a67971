#include "world/Creatures.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <source_location>
#include <span>
#include <string>

#include "core/Clock.h"
#include "core/Exception.h"
#include "core/ProgramState.h"
#include "net/Login.h"
#include "world/Colors.h"
#include "world/Map.h"
#include "world/ObjectFile.h"
#include "world/Objects.h"
#include "world/Player.h"

namespace {

struct TCreatureTable {
  // The last record is the spare one.
  std::array<TCreature, MAX_CREATURES + 1> Records;
  std::vector<std::uint32_t> Trappers;
  TWalkState Walk;
  // Record numbers of the battle list's ends, -1 when it is empty.
  int BattleFirst = -1, BattleLast = -1;
  TPathFinder PathFinder;
  std::function<void(const std::string&)> StatusText;
};

std::unique_ptr<TCreatureTable> Table;

TCreatureTable& Creatures() {
  Check(Table != nullptr, "Creatures!=NULL");
  return *Table;
}

void ResetRecord(TCreature& Creature, std::uint32_t CreatureID) {
  if (Creature.CreatureID == 0) Creature.BattleNext = NOT_IN_BATTLE_LIST;
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

void InitCreatures() {
  Table = std::make_unique<TCreatureTable>();
  InitPlayer();
}

void ExitCreatures() {
  ExitPlayer();
  Table.reset();
}

void ClearCreatures() {
  TCreatureTable& T = Creatures();
  std::fill(T.Records.begin(), T.Records.end(), TCreature{});
  T.Trappers.clear();
  T.Walk = TWalkState{};
  T.BattleFirst = T.BattleLast = -1;
  ClearPlayer();
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

// The records that are searched: all but the spare one.
std::span<TCreature> SearchedRecords() { return std::span(Creatures().Records).first(MAX_CREATURES); }

// Notes which operation changed the walk list last, for the failure report.
void MarkLine(TWalkState& Walk, std::source_location Where = std::source_location::current()) {
  Walk.Line = static_cast<int>(Where.line());
}

bool HasPrediction(const TWalkState& Walk) { return Walk.PredictedDx != 0 || Walk.PredictedDy != 0; }

// 0 north, 1 east, 2 south, 3 west: east and west win over north and south.
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

void CheckStepCode(int Code) { Check(Code >= 1 && Code <= 8, "In(Code,1,8)", {"Code", Code}); }

// Step codes 1 to 8: east, then anticlockwise to south-east.
void StepOffset(int Code, int& dx, int& dy) {
  static constexpr int DX[] = {1, 1, 0, -1, -1, -1, 0, 1};
  static constexpr int DY[] = {0, -1, -1, -1, 0, 1, 1, 1};
  CheckStepCode(Code);
  dx = DX[Code - 1];
  dy = DY[Code - 1];
}

void ShowStatusText(const std::string& Text) {
  if (Creatures().StatusText) Creatures().StatusText(Text);
}

// The picture runs toward the field: |Offset| / Total is the part of the
// step's time that is left.
void AdvanceOffset(int& Offset, int Total, int Duration, int Left) {
  while (Offset > 0 && Duration * Offset > Left * Total) --Offset;
  while (Offset < 0 && Duration * -Offset > Left * Total) ++Offset;
}

// The player's step has ended: the walk goes on with the list, or plans anew.
bool ContinueWalk() {
  const TWalkState& Walk = Creatures().Walk;
  if (Walk.Step < Walk.Number) {
    PredictNextStep();
    return false;
  }
  return CalculateNextPath() == 1;
}

}  // namespace

void MoveCreature(TCreature& Creature, int dx, int dy, int Waypoints) {
  Creature.Direction = StepDirection(dx, dy, Creature.Direction);
  TWalkState& Walk = Creatures().Walk;
  if (Waypoints != 0 && IsPlayer(Creature)) {
    const bool Confirmed = Walk.PredictedDx == dx && Walk.PredictedDy == dy;
    Walk.PredictedDx = Walk.PredictedDy = 0;
    if (Confirmed) return;  // the server agrees with the step that already runs
    ++Walk.Step;
    MarkLine(Walk);
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
  // A diagonal step is drawn in the time of a straight one but holds the
  // next one back for three times as long.
  if (dx != 0 && dy != 0) Time = StepTime(Waypoints, 3000, Velocity);
  Creature.NextStepTime = Now + Time;
  Creature.Walking = true;
}

bool ProcessCreatures() {
  const int Now = GetProgramTime();
  bool SendPath = false;
  for (TCreature& Creature : SearchedRecords()) {
    if (!Creature.Walking) continue;
    const int Left = Creature.WalkEndTime - Now;
    AdvanceOffset(Creature.OffsetX, Creature.TotalX, Creature.WalkDuration, Left);
    AdvanceOffset(Creature.OffsetY, Creature.TotalY, Creature.WalkDuration, Left);
    if (Creature.OffsetX != 0 || Creature.OffsetY != 0 || Creature.NextStepTime >= Now) continue;
    Creature.Walking = false;
    if (IsPlayer(Creature) && ContinueWalk()) SendPath = true;
  }
  return SendPath;
}

// ---- What is drawn

int GetOffsetX(const TCreature& Creature) {
  const int Predicted = IsPlayer(Creature) ? Creatures().Walk.PredictedDx : 0;
  return Predicted * 32 + Creature.OffsetX;
}

int GetOffsetY(const TCreature& Creature) {
  const int Predicted = IsPlayer(Creature) ? Creatures().Walk.PredictedDy : 0;
  return Predicted * 32 + Creature.OffsetY;
}

int GetCreatureDirection(const TCreature& Creature) {
  const TWalkState& Walk = Creatures().Walk;
  if (IsPlayer(Creature) && HasPrediction(Walk)) return Walk.PredictedDirection;
  return Creature.Walking ? Creature.WalkDirection : Creature.Direction;
}

int GetAnimationPhase(const TCreature& Creature, bool ForMount) {
  if (ForMount) Check(Creature.MountOutfitType != 0, "MountOutfitType != 0");
  const int Outfit = ForMount ? Creature.MountOutfitType : Creature.OutfitType;
  const int Phases = GetOutfitPhases(Outfit);
  if (GetOutfitFlag(Outfit, IDLEANIMATION)) return GetTickCounter() / 3 % Phases + 1;
  const int Now = GetProgramTime();
  if (Phases == 1 || !Creature.Walking || Now >= Creature.WalkEndTime) return 1;
  // Three phases: the two walking pictures alternate every 8 pixels.
  if (Phases == 3) return std::max(std::abs(Creature.OffsetX), std::abs(Creature.OffsetY)) / 8 % 2 + 2;
  const double NormalizedTime =
      std::max(0.0, static_cast<double>(Creature.WalkDuration - (Creature.WalkEndTime - Now)) / Creature.WalkDuration);
  Check(NormalizedTime < 1.0, "NormalizedTime < 1.0");
  return static_cast<int>(std::floor((Phases - 1) * NormalizedTime)) + 2;
}

TRGB GetHealthColor(const TCreature& Creature) {
  const int Health = Creature.Health;
  if (Health < 4) return {96, 0, 0};
  if (Health < 10) return {192, 0, 0};
  if (Health < 30) return {192, 48, 48};
  if (Health < 60) return {192, 192, 0};
  if (Health < 95) return {96, 192, 96};
  return {0, 192, 0};
}

// ---- Battle list

bool IsInBattleList(const TCreature& Creature) {
  if (Creature.CreatureID == 0 || IsPlayer(Creature) || !Creature.OnMap || Creature.Health < 1) return false;
  const bool Invisible = Creature.CreatureID >= FIRST_MONSTER_ID && Creature.OutfitType == 0 && Creature.OutfitData[0] == 0;
  if (Invisible) return false;
  int MapX = 0, MapY = 0, MapZ = 0;
  GetMapPosition(MapX, MapY, MapZ);
  const TWalkState& Walk = Creatures().Walk;
  return Creature.Z == MapZ && std::abs(Creature.X - (MapX + Walk.PredictedDx)) <= 7 &&
         std::abs(Creature.Y - (MapY + Walk.PredictedDy)) <= 5;
}

int UpdateBattleList() {
  TCreatureTable& T = Creatures();
  int Count = 0;
  for (int Number = 0; Number < MAX_CREATURES; ++Number) {
    TCreature& Creature = T.Records[static_cast<size_t>(Number)];
    const bool Linked = Creature.BattleNext != NOT_IN_BATTLE_LIST;
    const bool Qualifies = IsInBattleList(Creature);
    if (Qualifies && !Linked) {
      Creature.BattlePrevious = T.BattleLast;
      Creature.BattleNext = -1;
      (T.BattleLast >= 0 ? T.Records[static_cast<size_t>(T.BattleLast)].BattleNext : T.BattleFirst) = Number;
      T.BattleLast = Number;
    } else if (!Qualifies && Linked) {
      const int Previous = Creature.BattlePrevious, Next = Creature.BattleNext;
      (Previous >= 0 ? T.Records[static_cast<size_t>(Previous)].BattleNext : T.BattleFirst) = Next;
      (Next >= 0 ? T.Records[static_cast<size_t>(Next)].BattlePrevious : T.BattleLast) = Previous;
      Creature.BattlePrevious = -1;
      Creature.BattleNext = NOT_IN_BATTLE_LIST;
    }
    Count += Qualifies;
  }
  return Count;
}

TCreature* GetBattleEntry(int Number) {
  TCreatureTable& T = Creatures();
  int Record = T.BattleFirst;
  for (; Record >= 0 && Number > 0; --Number) Record = T.Records[static_cast<size_t>(Record)].BattleNext;
  return Record >= 0 && Number == 0 ? &T.Records[static_cast<size_t>(Record)] : nullptr;
}

// ---- The own walk

const TWalkState& GetWalkState() { return Creatures().Walk; }

void SetPathFinder(TPathFinder PathFinder) { Creatures().PathFinder = std::move(PathFinder); }

void SetStatusTextHandler(std::function<void(const std::string&)> Handler) {
  Creatures().StatusText = std::move(Handler);
}

void SetWalkSteps(const std::vector<int>& Steps) {
  const int Count = static_cast<int>(Steps.size());
  Check(Count <= MAX_WALK_STEPS, "Number <= MAX_WALK_STEPS", {"Number", Count});
  TWalkState& Walk = Creatures().Walk;
  std::for_each(Steps.begin(), Steps.end(), CheckStepCode);
  std::copy(Steps.begin(), Steps.end(), Walk.Steps.begin());
  Walk.Number = Count;
  MarkLine(Walk);
}

std::vector<int> GetWalkSteps() {
  const TWalkState& Walk = Creatures().Walk;
  return {Walk.Steps.begin(), Walk.Steps.begin() + Walk.Number};
}

int GetStep(int n) {
  const TWalkState& Walk = Creatures().Walk;
  if (n < 0 || n >= Walk.Number) {
    ThrowException("invalid player step (Step: " + std::to_string(n) + " Number: " +
                   std::to_string(Walk.Number) + " Line: " + std::to_string(Walk.Line) + ")");
  }
  return Walk.Steps[static_cast<size_t>(n)];
}

void PredictNextStep() {
  TWalkState& Walk = Creatures().Walk;
  const int Code = GetStep(Walk.Step);
  TCreature* Player = FindPlayer();
  if (Walk.RecalculatePending || Player == nullptr || GetPlayerStats().HitPoints <= 0) return;
  if (HasPrediction(Walk)) {
    Player->Walking = true;  // still waiting for the server's word on the last one
    return;
  }
  int dx = 0, dy = 0;
  StepOffset(Code, dx, dy);
  const int rz = GetPlayerFloor(), rx = 8 + dx, ry = 6 + dy;
  if (GetObjectCount(rx, ry, rz) == 0) return;
  const TObject Ground = GetObject(rx, ry, rz, 0);
  if (!GetObjectFlag(Ground.Type, BANK)) return;
  const int Obstacle = GetObstacle(rx, ry, rz, false);
  if (Obstacle == 2 || GetElevationCount(rx, ry, rz) > GetElevationCount(8, 6, rz) + 1) return;
  // A field that may be taken only with the server's leave waits for its move.
  if (Obstacle != 0) return;
  MoveCreature(*Player, dx, dy, GetObjectWaypoints(Ground.Type));
  Walk.PredictedDx = dx;
  Walk.PredictedDy = dy;
  Walk.PredictedDirection = StepDirection(dx, dy, Player->Direction);
}

int CalculateNextPath() {
  TCreatureTable& T = Creatures();
  TWalkState& Walk = T.Walk;
  Walk.Number = 0;
  Walk.RecalculatePending = false;
  MarkLine(Walk);
  if (Walk.DestX == 0) return 0;
  if (std::abs(Walk.PredictedDx) + std::abs(Walk.PredictedDy) > 1) {
    if (TCreature* Player = FindPlayer()) Player->Walking = true;
    return 0;
  }
  int X = 0, Y = 0, Z = 0;
  GetMapPosition(X, Y, Z);
  // Without a path finder there is no path: the target is dropped.
  const int Result = T.PathFinder ? T.PathFinder(X + Walk.PredictedDx, Y + Walk.PredictedDy, Z) : 0;
  if (Result != 2) Walk.DestX = 0;
  switch (Result) {
    case -1: ShowStatusText("First go upstairs."); return 0;
    case -2: ShowStatusText("First go downstairs."); return 0;
    case -3: ShowStatusText("Destination is out of range."); return 0;
    case -4: ShowStatusText("There is no way."); return 0;
    case 0: return 0;
    default: break;
  }
  if (Walk.Number == 0) return 0;
  Walk.Step = 0;
  PredictNextStep();
  return 1;
}

int SetDestination(int X, int Y, int Z, bool MustReach, bool ForceDiagonal) {
  TWalkState& Walk = Creatures().Walk;
  if (X == Walk.DestX && Y == Walk.DestY && Z == Walk.DestZ) return 0;
  int MapX = 0, MapY = 0, MapZ = 0;
  GetMapPosition(MapX, MapY, MapZ);
  if (X == MapX + Walk.PredictedDx && Y == MapY + Walk.PredictedDy && Z == MapZ) return 0;
  Walk.DestX = X, Walk.DestY = Y, Walk.DestZ = Z;
  Walk.MustReach = MustReach;
  Walk.ForceDiagonal = ForceDiagonal;
  int rx = X, ry = Y, rz = Z;
  WorldToMap(rx, ry, rz);
  const bool Visible = rx >= 1 && rx <= 15 && ry >= 1 && ry <= 11 && rz == GetPlayerFloor();
  if (Visible && !(rx == 8 && ry == 6) && GetObstacle(rx, ry, rz, true) == 2) {
    ShowStatusText("Sorry, not possible.");
    Walk.DestX = 0;
    return 0;
  }
  if (Walk.RecalculatePending) return 0;
  if (Walk.Number == 0) return CalculateNextPath();
  if (Walk.Step < Walk.Number) {
    // The running path is stopped on the server; its answer starts the new one.
    Walk.RecalculatePending = true;
    return 2;
  }
  return 0;
}

void StopAutoWalk() {
  TWalkState& Walk = Creatures().Walk;
  Walk.DestX = 0;
  Walk.Number = 0;
  Walk.Step = 0;
  Walk.RecalculatePending = false;
  MarkLine(Walk);
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
  MarkLine(Walk);
  TCreature* Player = FindPlayer();
  if (Player == nullptr) {
    Walk.PredictedDx = Walk.PredictedDy = 0;
    return false;
  }
  Player->Direction = NewDirection;
  if (!HasPrediction(Walk) && Player->Walking) return false;
  // With a prediction this ends its picture at once: the player snaps back.
  MoveCreature(*Player, 0, 0, -1);
  return CalculateNextPath() == 1;
}
