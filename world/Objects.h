#pragma once
// Object types: the four tables read from Kelmo.dat and the questions about
// them. The tables hold no instance data. A number outside a table fails with
// the checked array's "index out of range"; a query of an operand whose flag
// the type lacks fails with "GetEntryFlag(Entry,<flag>)".
#include <bitset>
#include <cstdint>
#include <string>
#include <vector>

#include "world/Animation.h"
#include "world/ObjectFile.h"

// Type numbers below the object table. 97 and 98 occur only on the wire.
constexpr int UNKNOWNCREATURE = 97;
constexpr int OUTDATEDCREATURE = 98;
constexpr int CREATURE = 99;
constexpr int FIRST_OBJECT_TYPE = 100;

struct TObjectEntry {
  std::string Name = "unknown";  // set by MARKET
  int Width = 1;
  int Height = 1;
  int DisplaySize = 32;
  int Layers = 1;
  int PatternWidth = 1;
  int PatternHeight = 1;
  int PatternDepth = 1;
  int Phases = 1;
  boost::intrusive_ptr<TAnimation> Animation;  // the prototype; none with one phase
  std::vector<std::uint32_t> Sprites;
  std::bitset<256> Flags;
  std::uint16_t Waypoints = 0;
  std::uint16_t TextLength = 0;
  std::uint16_t LightBrightness = 0;
  std::uint16_t LightColor = 0;
  std::uint16_t ShiftX = 0;
  std::uint16_t ShiftY = 0;
  std::uint16_t Elevation = 0;
  std::uint16_t AutomapColor = 0;
  std::uint16_t LensHelpId = 0;
  std::uint16_t ClothSlot = 0;
  std::uint16_t MarketCategory = 0;
  std::uint16_t TradeAs = 0;
  std::uint16_t ShowAs = 0;
  std::uint16_t RestrictProfession = 0;
  std::uint16_t MinimumLevel = 0;
};

// 1-based pattern indices of a picture.
struct TPattern {
  int X = 1;
  int Y = 1;
  int Z = 1;
  bool operator==(const TPattern&) const = default;
};

// Loads Kelmo.dat from the program directory: program error 1 if it is missing.
void InitObjects();
// Frees the tables and empties the market list.
void ExitObjects();
// Reads a type file into fresh tables: program error 4 if it can't be opened;
// a damaged file fails and leaves no tables.
void LoadObjects(const std::string& FileName);

// The u32 at the head of the file, which the login sends; 0 with no tables.
std::uint32_t GetObjectFileSignature();
// Object types traded under their own number, by name; a copy.
std::vector<int> GetMarketList();

// For CREATURE only BLOCKPATH is set, with or without tables.
bool GetObjectFlag(int Type, int Flag);
int GetObjectWaypoints(int Type);
int GetObjectTextLength(int Type);
int GetObjectLightBrightness(int Type);
int GetObjectLightColor(int Type);
int GetObjectShiftX(int Type);
int GetObjectShiftY(int Type);
int GetObjectElevation(int Type);
int GetObjectAutomapColor(int Type);
int GetObjectLensHelp(int Type);
// Clothes and market operands are 0 for a type without the flag.
int GetObjectClothSlot(int Type);
std::string GetObjectName(int Type);
int GetObjectMarketCategory(int Type);
int GetObjectTradeAs(int Type);
int GetObjectShowAs(int Type);
int GetObjectRestrictProfession(int Type);
int GetObjectMinimumLevel(int Type);
int GetObjectWidth(int Type);
int GetObjectHeight(int Type);
int GetObjectDisplaySize(int Type);
int GetObjectLayers(int Type);
int GetObjectPatternWidth(int Type);
int GetObjectPatternHeight(int Type);
int GetObjectPatternDepth(int Type);
int GetObjectPhases(int Type);
const boost::intrusive_ptr<TAnimation>& GetObjectAnimation(int Type);
// All arguments 1-based; X and Y count tiles from the lower right.
std::uint32_t GetObjectSprite(int Type, int X, int Y, int Layer, int PatternX, int PatternY,
                              int PatternZ, int Phase);

// The pattern of an instance: a cumulative object's by its count, a liquid's
// by its liquid type, a hanging object's by its hook mark (19 HOOKSOUTH,
// 20 HOOKEAST, else none), and any other by its world position.
TPattern GetCumulativePattern(int Type, int Count);
TPattern GetLiquidPattern(int Type, int LiquidType);
TPattern GetHangPattern(int Type, int HookMark);
TPattern GetPositionPattern(int Type, int X, int Y, int Z);
// Picks one of the four by the type's flags; Data is the count or the liquid type.
TPattern GetObjectPattern(int Type, std::uint32_t Data, int HookMark, int X, int Y, int Z);

bool GetOutfitFlag(int Type, int Flag);
int GetOutfitLightBrightness(int Type);
int GetOutfitLightColor(int Type);
int GetOutfitShiftX(int Type);
int GetOutfitShiftY(int Type);
int GetOutfitWidth(int Type);
int GetOutfitHeight(int Type);
int GetOutfitDisplaySize(int Type);
int GetOutfitLayers(int Type);
int GetOutfitPatternWidth(int Type);
int GetOutfitPatternHeight(int Type);
int GetOutfitPatternDepth(int Type);
int GetOutfitPhases(int Type);
const boost::intrusive_ptr<TAnimation>& GetOutfitAnimation(int Type);
// The addons the pictures have: PatternHeight 2 gives 1, 3 gives 3, 4 gives 7, else 0.
int GetOutfitAddons(int Type);
// Direction 0 to 3 (north, east, south, west) selects PatternX.
std::uint32_t GetOutfitSprite(int Type, int X, int Y, int Layer, int Direction, int PatternY,
                              int PatternZ, int Phase);

bool GetEffectFlag(int Type, int Flag);
int GetEffectLightBrightness(int Type);
int GetEffectLightColor(int Type);
int GetEffectWidth(int Type);
int GetEffectHeight(int Type);
int GetEffectLayers(int Type);
int GetEffectPatternWidth(int Type);
int GetEffectPatternHeight(int Type);
int GetEffectPhases(int Type);
const boost::intrusive_ptr<TAnimation>& GetEffectAnimation(int Type);
std::uint32_t GetEffectSprite(int Type, int X, int Y, int Layer, int PatternX, int PatternY,
                              int Phase);

bool GetMissileFlag(int Type, int Flag);
int GetMissileLightBrightness(int Type);
int GetMissileLightColor(int Type);
int GetMissileWidth(int Type);
int GetMissileHeight(int Type);
int GetMissileLayers(int Type);
// Direction 0 to 7 selects the pattern: 0 is north, then clockwise.
std::uint32_t GetMissileSprite(int Type, int X, int Y, int Layer, int Direction);
