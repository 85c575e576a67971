#pragma once
// The map store: the block of the world round the player, 18 x 14 fields on
// up to 8 floors, with the objects and creatures of each field in stacking
// order, the effects, texts and missiles passing over it, and the ambient
// light. One program-wide store; the incoming world messages are its only
// writers.
//
// Map coordinates rx, ry, rz count from 0; rz grows upward. The player stands
// at (8, 6) on the player floor, and each floor up is skewed by one field.
#include <boost/intrusive_ptr.hpp>
#include <array>
#include <cstdint>
#include <functional>
#include <string>

#include "world/Animation.h"
#include "world/Colors.h"

constexpr int MAPSIZE_X = 18;
constexpr int MAPSIZE_Y = 14;
constexpr int MAPSIZE_Z = 8;
constexpr int OBJECTS_PER_POINT = 10;
constexpr int EFFECTS = 200;
constexpr int MapPoint_Low = 0;
constexpr int MapPoint_High = MAPSIZE_X * MAPSIZE_Y * MAPSIZE_Z - 1;

// One object instance; also serves containers and inventory slots.
struct TObject {
  int Hook = 0;             // a HANG object's hook mark: 19 or 20
  std::uint32_t Data = 0;   // count, liquid, or the creature's identifier
  int Type = 0;             // 0 no object, 99 a creature
  int MarkRed = 0, MarkGreen = 0, MarkBlue = 0;
  bool Marked = false;
  boost::intrusive_ptr<TAnimation> Animation;
};

enum EFFECT_STATUS : int { EFFECT_FREE = 0, EFFECT_GRAPHICAL = 1, EFFECT_TEXT = 2, EFFECT_MISSILE = 3 };

// Told the identifier of a creature whose object leaves the map by clearing
// or by being pushed off a full field.
using TCreatureLeftMapCallback = std::function<void(std::uint32_t CreatureID)>;

// Identity scrolling table, empty map, position 0, 0, 0.
void InitMap(TCreatureLeftMapCallback CreatureLeftMap);
void ExitMap();

void GetMapPosition(int& x, int& y, int& z);
void SetMapPosition(int x, int y, int z);
int GetPlayerFloor();
void MapToWorld(int& x, int& y, int& z);
void WorldToMap(int& x, int& y, int& z);

// The object iterator: one walk at a time, program-wide, in draw order.
TObject GetFirstObject(int rx, int ry, int rz);
TObject GetNextObject();
TObject GetObject(int rx, int ry, int rz, int Position);
int GetObjectCount(int rx, int ry, int rz);

// The object that a mouse action on the field means, and its position.
TObject GetMoveObject(int rx, int ry, int rz, int& Position);
TObject GetLookObject(int rx, int ry, int rz, int& Position);
TObject GetUseObject(int rx, int ry, int rz, int& Position);
TObject GetMultiUseTarget(int rx, int ry, int rz, int& Position);

void InsertObject(int rx, int ry, int rz, const TObject& Object);
void AppendObject(int rx, int ry, int rz, const TObject& Object);
void InsertObjectAt(int rx, int ry, int rz, int Position, const TObject& Object);
void DeleteObject(int rx, int ry, int rz, int Position);
void ChangeObject(int rx, int ry, int rz, int Position, const TObject& Object);
void ClearField(int rx, int ry, int rz, bool ClearEffects);
void ClearMap();
void ShiftMap(int dx, int dy);
void ShiftFloors(int dz);

void AddGraphicalEffect(int rx, int ry, int rz, int Type);
void AddTextualEffect(int rx, int ry, int rz, int Color, const std::string& Text);
void AddMissile(int srx, int sry, int srz, int drx, int dry, int drz, int Type);
// The effect iterator over one field's list; record numbers, -1 at the end.
int GetFirstEffect(int rx, int ry, int rz);
int GetNextEffect();
void ProcessEffects();
void ProcessMissiles();

int GetEffectStatus(int EffectNumber);
int GetEffectType(int EffectNumber);
int GetEffectPhase(int EffectNumber);
int GetEffectTextColor(int EffectNumber);
std::string GetEffectText(int EffectNumber);
int GetEffectTextTimer(int EffectNumber);
int GetEffectMissileType(int EffectNumber);
int GetEffectMissileDirection(int EffectNumber);
// Pixels from the field that holds the missile now.
int GetEffectMissileOffsetX(int EffectNumber);
int GetEffectMissileOffsetY(int EffectNumber);

int GetElevationCount(int rx, int ry, int rz);
// 0 free, 1 passable with reservation, 2 blocked.
int GetObstacle(int rx, int ry, int rz, bool CheckRoof);
bool IsSightFree(int rx, int ry, int rz);
bool HasDimLight(int rx, int ry, int rz);

void SetAmbiente(int Brightness, int Color);
void StepAmbiente();
int GetAmbienteBrightness();
TRGB GetAmbienteColor();

// For tests and the benchmark: the field number that the scrolling table
// holds at a map position.
int GetFieldNumber(int rx, int ry, int rz);
