#pragma once
// The creature table: 1300 records and a spare one behind them, which is
// never searched, for a creature that arrives when the table is full.
// Walking, the battle list and the player's own steps build on it.
#include <array>
#include <cstdint>
#include <string>
#include <vector>

constexpr int MAX_CREATURES = 1300;
constexpr int MAX_TRAPPERS = 8;
// Identifiers from here on are monsters and NPCs; below are players.
constexpr std::uint32_t FIRST_MONSTER_ID = 0x40000000;

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
  int BattleNext = 0x7FFFFFFF;
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

void InitCreatures();
void ExitCreatures();
// Empties the table and the trapper list.
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

// The player's own walk: the step started ahead of the server, and the list
// of steps of an automatic walk.
struct TWalkState {
  int PredictedDx = 0, PredictedDy = 0;
  int PredictedDirection = 0;
  std::array<int, 10> Steps{};  // step codes: 1 east, then anticlockwise to 8 south-east
  int Number = 0;
  int Step = 0;
  int DestX = 0, DestY = 0, DestZ = 0;
  bool MustReach = false, ForceDiagonal = false;
  bool RecalculatePending = false;
};
const TWalkState& GetWalkState();
void StopAutoWalk();
void CancelPrediction();
// The server refused a step; true if the path is to be sent again.
bool HandleSnapback(int NewDirection);
// 1 if a new path was found and is to be sent, else 0.
int CalculateNextPath();
