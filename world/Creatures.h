#pragma once
// The creature table: 1300 records and a spare one behind them, which is
// never searched, for a creature that arrives when the table is full.
// Walking, the battle list and the player's own steps build on it.
#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "world/Colors.h"

constexpr int MAX_CREATURES = 1300;
constexpr int MAX_TRAPPERS = 8;
// Identifiers from here on are monsters and NPCs; below are players.
constexpr std::uint32_t FIRST_MONSTER_ID = 0x40000000;
constexpr int MAX_WALK_STEPS = 10;
// BattleNext of a creature that is not in the battle list.
constexpr int NOT_IN_BATTLE_LIST = 0x7FFFFFFF;

struct TCreature {
  std::uint32_t CreatureID = 0;  // 0: the record is free
  std::string Name;
  int Z = 0, Y = 0, X = 0;
  int OffsetY = 0, OffsetX = 0;
  int Direction = 0;
  int WalkEndTime = 0;
  int NextStepTime = 0;
  int TotalY = 0, TotalX = 0;
  int WalkDuration = 0;
  bool Walking = false;
  int WalkDirection = 0;
  int BattlePrevious = -1;
  int BattleNext = NOT_IN_BATTLE_LIST;
  int OutfitType = 0;
  std::array<int, 5> OutfitData{};
  int MountOutfitType = 0;
  int Brightness = 0, LightColor = 0;
  int MarkColor = 0, MarkEndTime = 0;
  int Health = 0;
  int Speed = 0;
  bool Unpassable = true;
  int PKFlag = 0;
  int PARTYFlag = 0;
  int GUILDFlag = 0;
  bool OnMap = false;
  int SquareRed = 0, SquareGreen = 0, SquareBlue = 0;
  bool Squared = false;
  int PvPHelpers = 0;
  int CreatureKind = 0;
  int SpeechFlag = 0;
};

// The player's state (Player.h) lives and is cleared with the table.
void InitCreatures();
void ExitCreatures();
// Empties the table, the trapper and battle lists and the walk, and clears
// the player's state.
void ClearCreatures();

// The first record whose identifier is either of the two (OldCreatureID 0
// finds a free one), else the spare record; reset for a fresh description.
TCreature& NewCreature(std::uint32_t OldCreatureID, std::uint32_t NewCreatureID);
// Null if no searched record has the identifier.
TCreature* FindCreature(std::uint32_t CreatureID);
TCreature* FindCreatureByName(const std::string& Name);

// The creatures that the player may walk through although they block others.
void SetTrappers(const std::vector<std::uint32_t>& CreatureIDs);
bool IsTrapper(std::uint32_t CreatureID);

// A full map: no creature stands on the map until the description says so.
void MarkAllCreaturesOffMap();
// The map store's callback: the creature's object has left the map.
void CreatureLeftMap(std::uint32_t CreatureID);

// The own character's record, null before the server has described it.
TCreature* FindPlayer();
bool IsPlayer(const TCreature& Creature);

// A new position ends a running step's picture at once.
void SetCreaturePosition(TCreature& Creature, int X, int Y, int Z);
// A flash of the creature's square for a second.
void SetMark(TCreature& Creature, int Color);
// Waypoints per second at the creature's speed, by the session's formula.
int GetVelocity(const TCreature& Creature);
// Starts the picture of a step of dx, dy fields over a ground of Waypoints;
// the player's step confirms or replaces the predicted one.
void MoveCreature(TCreature& Creature, int dx, int dy, int Waypoints);

// What a creature looks like while it walks: the offsets of the picture
// from its field (the player's own include the predicted step), the way it
// faces, and the phase of its outfit or mount.
int GetOffsetX(const TCreature& Creature);
int GetOffsetY(const TCreature& Creature);
int GetCreatureDirection(const TCreature& Creature);
int GetAnimationPhase(const TCreature& Creature, bool ForMount);
TRGB GetHealthColor(const TCreature& Creature);

// Advances every running step to the present; true if the own walk has
// planned a new part of its path, which the caller sends.
bool ProcessCreatures();

// The battle list: creatures round the player on its floor, in the order in
// which they came into view.
bool IsInBattleList(const TCreature& Creature);
// Links newcomers at the tail and unlinks those that no longer qualify;
// answers the list's length.
int UpdateBattleList();
// The creature at place Number of the list, null beyond its end.
TCreature* GetBattleEntry(int Number);

// The player's own walk: the step started ahead of the server, and the list
// of steps of an automatic walk.
struct TWalkState {
  int PredictedDx = 0, PredictedDy = 0;
  int PredictedDirection = 0;
  std::array<int, MAX_WALK_STEPS> Steps{};  // step codes: 1 east, then anticlockwise to 8 south-east
  int Number = 0;
  int Step = 0;
  int DestX = 0, DestY = 0, DestZ = 0;
  bool MustReach = false, ForceDiagonal = false;
  bool RecalculatePending = false;
  int Line = 0;  // source line of the last change of the list, for the failure report
};
const TWalkState& GetWalkState();

// Plans from the start toward the walk's target (DestX, DestY, DestZ), fills
// the walk list with SetWalkSteps and answers 1 (a path to the target), 2 (the
// beginning of a longer one), 0 (no step), -1 (target upstairs), -2
// (downstairs), -3 (out of range) or -4 (no way).
using TPathFinder = std::function<int(int StartX, int StartY, int StartZ)>;
// Without a path finder a target is dropped and nothing is sent.
void SetPathFinder(TPathFinder PathFinder);
// Where the walk's texts for the status line go; until one is set, nowhere.
void SetStatusTextHandler(std::function<void(const std::string&)> Handler);

// The path finder's result: up to 10 step codes.
void SetWalkSteps(const std::vector<int>& Steps);
// The list as it goes out to the server.
std::vector<int> GetWalkSteps();
// The code of step n; outside the list "invalid player step".
int GetStep(int n);

// 0 nothing to send, 1 send the path, 2 send a stop.
int SetDestination(int X, int Y, int Z, bool MustReach, bool ForceDiagonal);
// 1 if a new path was found and is to be sent, else 0.
int CalculateNextPath();
// Starts the next step of the list on the client's own, if the field allows.
void PredictNextStep();
void StopAutoWalk();
void CancelPrediction();
// The server refused a step; true if the path is to be sent again.
bool HandleSnapback(int NewDirection);
