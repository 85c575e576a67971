#include "world/Map.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <source_location>

#include "core/Clock.h"
#include "core/Container.h"
#include "core/Exception.h"
#include "world/Creatures.h"
#include "world/Objects.h"

namespace {

constexpr int FIELDS = MapPoint_High + 1;

struct TMapPoint {
  int ObjectCount = 0;
  std::array<int, OBJECTS_PER_POINT> DrawOrder{};
  std::array<TObject, OBJECTS_PER_POINT> Objects{};
  int EffectNumber = -1;

  int getObjectCount() const { return ObjectCount; }
  int getEffectNumber() const { return EffectNumber; }
};

struct TEffect {
  int Status = EFFECT_FREE;
  int Type = 0;
  int Color = 0;
  std::string Text;
  int Timer = 0;
  int MissileType = 0;
  int Direction = 0;
  int DestX = 0, DestY = 0, DestZ = 0;
  int CurrentX = 0, CurrentY = 0;
  int OffsetX = 0, OffsetY = 0;
  int EndTime = 0;
  int TotalX = 0, TotalY = 0;
  int Duration = 0;
  int Field = 0;
  int Previous = -1, Next = -1;
  boost::intrusive_ptr<TAnimation> Animation;
};

struct TMapStore {
  vector<TMapPoint> Points{MapPoint_Low, MapPoint_High};
  // The scrolling table: which field holds each map position. Scrolling
  // moves these numbers, never the fields' contents.
  std::array<int, FIELDS> FieldNumbers{};
  std::array<TEffect, EFFECTS> Effects{};
  int MapX = 0, MapY = 0, MapZ = 0;
  TCreatureLeftMapCallback CreatureLeftMap;
  int IteratorField = MapPoint_Low;
  int IteratorIndex = 0;
  int EffectIterator = -1;
  // Not -1: the game reset's SetAmbiente(-1, 0) must leave the actual light
  // as it is until the server's first value arrives.
  int TargetBrightness = 0;
  int ActualBrightness = 0;
  TRGB TargetColor;
  TRGB ActualColor;
};

std::unique_ptr<TMapStore> Store;

TMapStore& Map() {
  Check(Store != nullptr, "Map!=NULL");
  return *Store;
}

int TableIndex(int rx, int ry, int rz) { return rx + MAPSIZE_X * (ry + MAPSIZE_Y * rz); }

// The checks of the scrolling table's entries.
int ReadEntry(int Index) {
  const int Value = Map().FieldNumbers[static_cast<size_t>(Index)];
  Check(Value >= MapPoint_Low, "*pValue >= MapPoint_Low", {"Value", Value});
  Check(Value <= MapPoint_High, "*pValue <= MapPoint_High", {"Value", Value});
  return Value;
}

void WriteEntry(int Index, int NewValue) {
  Check(NewValue >= MapPoint_Low, "NewValue >= MapPoint_Low", {"NewValue", NewValue});
  Check(NewValue <= MapPoint_High, "NewValue <= MapPoint_High", {"NewValue", NewValue});
  Map().FieldNumbers[static_cast<size_t>(Index)] = NewValue;
}

void CopyEntry(int Index, int OtherIndex) {
  const int Other = Map().FieldNumbers[static_cast<size_t>(OtherIndex)];
  Check(Other >= MapPoint_Low, "*Other.pValue >= MapPoint_Low", {"Value", Other});
  Check(Other <= MapPoint_High, "*Other.pValue <= MapPoint_High", {"Value", Other});
  Map().FieldNumbers[static_cast<size_t>(Index)] = Other;
}

void CheckCoordinates(int rx, int ry, int rz,
                      std::source_location Where = std::source_location::current()) {
  Check(rx >= 0 && rx <= MAPSIZE_X - 1, "In(rx,0,MAPSIZE_X-1) [bug0000013]", {"rx", rx}, Where);
  Check(ry >= 0 && ry <= MAPSIZE_Y - 1, "In(ry,0,MAPSIZE_Y-1) [bug0000013]", {"ry", ry}, Where);
  Check(rz >= 0 && rz <= MAPSIZE_Z - 1, "In(rz,0,MAPSIZE_Z-1) [bug0000013]", {"rz", rz}, Where);
}

bool InBlock(int rx, int ry, int rz) {
  return rx >= 0 && rx < MAPSIZE_X && ry >= 0 && ry < MAPSIZE_Y && rz >= 0 && rz < MAPSIZE_Z;
}

int FieldAt(int rx, int ry, int rz) { return ReadEntry(TableIndex(rx, ry, rz)); }

TMapPoint& Point(int rx, int ry, int rz,
                 std::source_location Where = std::source_location::current()) {
  CheckCoordinates(rx, ry, rz, Where);
  return Map().Points.at(FieldAt(rx, ry, rz));
}

bool IsCreature(const TObject& Object) { return Object.Type == CREATURE; }

bool HasFlag(const TObject& Object, int Flag) { return GetObjectFlag(Object.Type, Flag); }

bool IsGroundLayer(const TObject& Object) {
  return HasFlag(Object, BANK) || HasFlag(Object, EDGE) || HasFlag(Object, BOTTOM);
}

bool IsLowClass(const TObject& Object) { return IsGroundLayer(Object) || HasFlag(Object, TOP); }

void CreatureLeft(const TObject& Object) {
  if (Map().CreatureLeftMap) Map().CreatureLeftMap(Object.Data);
}

bool IsMonster(const TObject& Object) {
  return IsCreature(Object) && Object.Data >= FIRST_MONSTER_ID;
}

// Ground, edges and low objects from the lowest up, then everything else
// from the top position down; and the hook marks of hanging objects.
void RebuildField(TMapPoint& Point) {
  int Next = 0;
  int k = 0;
  while (k < Point.ObjectCount && IsGroundLayer(Point.Objects[static_cast<size_t>(k)])) {
    Point.DrawOrder[static_cast<size_t>(Next++)] = k++;
  }
  for (int p = Point.ObjectCount - 1; p >= k; --p) Point.DrawOrder[static_cast<size_t>(Next++)] = p;

  TObject* Hanging = nullptr;
  const TObject* Hook = nullptr;
  for (int p = Point.ObjectCount - 1; p >= 0; --p) {
    TObject& Object = Point.Objects[static_cast<size_t>(p)];
    if (HasFlag(Object, HANG)) Hanging = &Object;
    if (HasFlag(Object, HOOKSOUTH) || HasFlag(Object, HOOKEAST)) Hook = &Object;
  }
  if (Hanging != nullptr && Hook != nullptr) Hanging->Hook = HasFlag(*Hook, HOOKSOUTH) ? HOOKSOUTH : HOOKEAST;
}

// The position at which the stacking rule puts Object; the object count if
// it belongs on top.
int StackingPosition(const TMapPoint& Point, const TObject& Object) {
  static constexpr std::array<int, 4> Classes{BANK, EDGE, BOTTOM, TOP};
  for (int i = 0; i < Point.ObjectCount; ++i) {
    const TObject& Standing = Point.Objects[static_cast<size_t>(i)];
    bool Passed = false;
    for (int Flag : Classes) {
      const bool New = HasFlag(Object, Flag);
      const bool Old = HasFlag(Standing, Flag);
      if (New && !Old) return i;
      if (New != Old) {
        Passed = true;
        break;
      }
    }
    if (!Passed && !IsCreature(Standing)) return i;
  }
  return Point.ObjectCount;
}

// The walk up the pile that use and multi-use share: an object with
// FORCEUSE is the answer at once (Forced); ground, edges, low and top objects
// are passed, and creatures too unless they stop the walk.
int UseWalk(const TMapPoint& Point, bool CreaturesStop, bool& Forced) {
  int p = 0;
  while (p < Point.ObjectCount - 1) {
    const TObject& Object = Point.Objects[static_cast<size_t>(p)];
    if (HasFlag(Object, FORCEUSE)) {
      Forced = true;
      return p;
    }
    const bool Passed = IsLowClass(Object) || (!CreaturesStop && IsCreature(Object));
    if (!Passed) break;
    ++p;
  }
  return p;
}

// Effect records and their field lists.
TEffect& Effect(int Number) { return Map().Effects[static_cast<size_t>(Number)]; }

void CheckListLink(int Link, const char* Text) { Check(Link >= -1 && Link <= EFFECTS - 1, Text, {"Link", Link}); }

void LinkEffect(int Number, int rx, int ry, int rz) {
  if (!InBlock(rx, ry, rz)) rx = ry = rz = 0;
  const int Field = FieldAt(rx, ry, rz);
  TMapPoint& Head = Map().Points.at(Field);
  CheckListLink(Head.getEffectNumber(), "In(Point.getEffectNumber(),-1,EFFECTS-1) [bug0000913]");
  TEffect& E = Effect(Number);
  E.Field = Field;
  E.Previous = -1;
  E.Next = Head.EffectNumber;
  if (E.Next != -1) Effect(E.Next).Previous = Number;
  Head.EffectNumber = Number;
}

void UnlinkEffect(int Number) {
  TEffect& E = Effect(Number);
  CheckListLink(E.Next, "In(Effect.Next,-1,EFFECTS-1) [bug0000913]");
  CheckListLink(E.Previous, "In(Effect.Previous,-1,EFFECTS-1) [bug0000913]");
  if (E.Previous != -1) {
    Effect(E.Previous).Next = E.Next;
  } else {
    Map().Points.at(E.Field).EffectNumber = E.Next;
  }
  if (E.Next != -1) Effect(E.Next).Previous = E.Previous;
  E.Previous = E.Next = -1;
}

void DeleteEffect(int Number) {
  Check(Number >= 0 && Number <= EFFECTS - 1, "In(Number,0,EFFECTS-1)", {"Number", Number});
  TEffect& E = Effect(Number);
  Check(E.Status != EFFECT_FREE, "Effect.Status!=0", {"Number", Number});
  UnlinkEffect(Number);
  E = TEffect{};
}

// The lowest free record, linked at the head of the field's list; -1 if all
// are taken, in which case the effect is dropped.
int AddEffect(int rx, int ry, int rz, int Status) {
  auto& Effects = Map().Effects;
  const auto Free = std::find_if(Effects.begin(), Effects.end(),
                                 [](const TEffect& E) { return E.Status == EFFECT_FREE; });
  if (Free == Effects.end()) return -1;
  const int Number = static_cast<int>(Free - Effects.begin());
  Free->Status = Status;
  LinkEffect(Number, rx, ry, rz);
  return Number;
}

void ClearEffects(TMapPoint& Point) {
  while (Point.EffectNumber != -1) DeleteEffect(Point.EffectNumber);
}

void ClearPoint(TMapPoint& Point, bool WithEffects, bool TellCreatures) {
  for (int p = 0; p < Point.ObjectCount; ++p) {
    TObject& Object = Point.Objects[static_cast<size_t>(p)];
    if (TellCreatures && IsCreature(Object)) CreatureLeft(Object);
    Object = TObject{};
  }
  Point.ObjectCount = 0;
  if (WithEffects) ClearEffects(Point);
}

const TEffect& EffectWithStatus(int EffectNumber, int Status, const char* Text) {
  Check(EffectNumber >= 0 && EffectNumber <= EFFECTS - 1, "In(EffectNumber,0,EFFECTS-1)",
        {"EffectNumber", EffectNumber});
  const TEffect& E = Effect(EffectNumber);
  Check(E.Status == Status, Text, {"Status", E.Status});
  return E;
}

bool IsWholeNumber(const std::string& Text) {
  return !Text.empty() && std::all_of(Text.begin(), Text.end(), [](char C) { return C >= '0' && C <= '9'; });
}

std::string NumberText(long long Number) {
  char Buffer[10];
  std::snprintf(Buffer, sizeof Buffer, "%lli", Number);
  return Buffer;
}

int Clamp(int Value, int High) { return std::clamp(Value, 0, High); }

int MissileDirection(int dx, int dy) {
  if (dx == 0) return dy > 0 ? 4 : 0;
  const long long s = dy * 256LL;
  const long long a = std::abs(dx);
  const bool East = dx > 0;
  if (s > a * 618) return 4;
  if (s > a * 106) return East ? 3 : 5;
  if (s > a * -106) return East ? 2 : 6;
  if (s > a * -618) return East ? 1 : 7;
  return 0;
}

// Lets the offset shrink linearly to 0 over the flight.
void ShrinkOffset(int& Offset, int Total, const TEffect& E, int Now) {
  const long long Left = static_cast<long long>(E.EndTime - Now) * Total;
  while (Offset > 0 && static_cast<long long>(E.Duration) * Offset > Left) --Offset;
  while (Offset < 0 && static_cast<long long>(E.Duration) * -Offset > Left) ++Offset;
}

void MoveMissile(int Number, int Now) {
  TEffect& E = Effect(Number);
  ShrinkOffset(E.OffsetX, E.TotalX, E, Now);
  ShrinkOffset(E.OffsetY, E.TotalY, E, Now);
  if (E.OffsetX == 0 && E.OffsetY == 0 && E.EndTime < Now) {
    DeleteEffect(Number);
    return;
  }
  const int FieldX = (E.DestX * 32 + E.OffsetX + 31) / 32;
  const int FieldY = (E.DestY * 32 + E.OffsetY + 31) / 32;
  if (FieldX == E.CurrentX && FieldY == E.CurrentY) return;
  UnlinkEffect(Number);
  E.CurrentX = FieldX;
  E.CurrentY = FieldY;
  int rx = FieldX, ry = FieldY, rz = E.DestZ;
  WorldToMap(rx, ry, rz);
  LinkEffect(Number, rx, ry, rz);
}

int StepToward(int Actual, int Target) { return Actual < Target ? Actual + 1 : Actual > Target ? Actual - 1 : Actual; }

// One unit of scrolling along x or y over all floors: the number at the far
// end wraps round to the near end, and that field is cleared.
void RotateX(bool Up) {
  for (int rz = 0; rz < MAPSIZE_Z; ++rz) {
    for (int ry = 0; ry < MAPSIZE_Y; ++ry) {
      const int First = TableIndex(0, ry, rz);
      const int Last = TableIndex(MAPSIZE_X - 1, ry, rz);
      const int Saved = ReadEntry(Up ? Last : First);
      if (Up) {
        for (int i = Last; i > First; --i) CopyEntry(i, i - 1);
      } else {
        for (int i = First; i < Last; ++i) CopyEntry(i, i + 1);
      }
      WriteEntry(Up ? First : Last, Saved);
      ClearField(Up ? 0 : MAPSIZE_X - 1, ry, rz, true);
    }
  }
}

void RotateY(bool Up) {
  for (int rz = 0; rz < MAPSIZE_Z; ++rz) {
    for (int rx = 0; rx < MAPSIZE_X; ++rx) {
      const int First = TableIndex(rx, 0, rz);
      const int Last = TableIndex(rx, MAPSIZE_Y - 1, rz);
      const int Saved = ReadEntry(Up ? Last : First);
      if (Up) {
        for (int i = Last; i > First; i -= MAPSIZE_X) CopyEntry(i, i - MAPSIZE_X);
      } else {
        for (int i = First; i < Last; i += MAPSIZE_X) CopyEntry(i, i + MAPSIZE_X);
      }
      WriteEntry(Up ? First : Last, Saved);
      ClearField(rx, Up ? 0 : MAPSIZE_Y - 1, rz, true);
    }
  }
}

// One floor rotation; Up moves each floor's numbers one rz up and wraps rz 7 to 0.
void RotateZ(bool Up) {
  constexpr int Layer = MAPSIZE_X * MAPSIZE_Y;
  for (int i = 0; i < Layer; ++i) {
    const int First = i;
    const int Last = i + Layer * (MAPSIZE_Z - 1);
    const int Saved = ReadEntry(Up ? Last : First);
    if (Up) {
      for (int j = Last; j > First; j -= Layer) CopyEntry(j, j - Layer);
    } else {
      for (int j = First; j < Last; j += Layer) CopyEntry(j, j + Layer);
    }
    WriteEntry(Up ? First : Last, Saved);
  }
  const int Cleared = Up ? 0 : MAPSIZE_Z - 1;
  for (int ry = 0; ry < MAPSIZE_Y; ++ry) {
    for (int rx = 0; rx < MAPSIZE_X; ++rx) ClearField(rx, ry, Cleared, true);
  }
}

}  // namespace

void InitMap(TCreatureLeftMapCallback CreatureLeftMap) {
  Store = std::make_unique<TMapStore>();
  for (int i = 0; i < FIELDS; ++i) WriteEntry(i, i);
  ClearMap();
  Store->CreatureLeftMap = std::move(CreatureLeftMap);
}

void ExitMap() { Store.reset(); }

void GetMapPosition(int& x, int& y, int& z) {
  const TMapStore& M = Map();
  x = M.MapX, y = M.MapY, z = M.MapZ;
}

void SetMapPosition(int x, int y, int z) {
  TMapStore& M = Map();
  M.MapX = x, M.MapY = y, M.MapZ = z;
}

int GetPlayerFloor() {
  const int MapZ = Map().MapZ;
  return MapZ <= 7 ? 7 - MapZ : 2;
}

void MapToWorld(int& x, int& y, int& z) {
  const TMapStore& M = Map();
  const int d = z - GetPlayerFloor();
  x = x + M.MapX - 8 + d;
  y = y + M.MapY - 6 + d;
  z = M.MapZ - d;
}

void WorldToMap(int& x, int& y, int& z) {
  const TMapStore& M = Map();
  const int d = M.MapZ - z;
  x = x + 8 - M.MapX - d;
  y = y + 6 - M.MapY - d;
  z = GetPlayerFloor() + d;
}

TObject GetFirstObject(int rx, int ry, int rz) {
  CheckCoordinates(rx, ry, rz);
  Map().IteratorField = FieldAt(rx, ry, rz);
  Map().IteratorIndex = 0;
  return GetNextObject();
}

TObject GetNextObject() {
  TMapStore& M = Map();
  const TMapPoint& P = M.Points.at(M.IteratorField);
  if (M.IteratorIndex >= P.ObjectCount) return {};
  return P.Objects[static_cast<size_t>(P.DrawOrder[static_cast<size_t>(M.IteratorIndex++)])];
}

TObject GetObject(int rx, int ry, int rz, int Position) {
  const TMapPoint& P = Point(rx, ry, rz);
  Check(Position >= 0 && Position <= OBJECTS_PER_POINT - 1, "In(Position,0,OBJECTS_PER_POINT-1)",
        {"Position", Position});
  if (Position >= P.ObjectCount) return {};
  return P.Objects[static_cast<size_t>(Position)];
}

int GetObjectCount(int rx, int ry, int rz) { return Point(rx, ry, rz).getObjectCount(); }

TObject GetMoveObject(int rx, int ry, int rz, int& Position) {
  const TMapPoint& P = Point(rx, ry, rz);
  int p = 0;
  while (p < P.ObjectCount - 1) {
    const TObject& Object = P.Objects[static_cast<size_t>(p)];
    if (!IsLowClass(Object) && !IsCreature(Object)) break;
    ++p;
  }
  if (p > 0 && HasFlag(P.Objects[static_cast<size_t>(p)], UNMOVABLE)) --p;
  Position = p;
  return GetObject(rx, ry, rz, p);
}

TObject GetLookObject(int rx, int ry, int rz, int& Position) {
  const TMapPoint& P = Point(rx, ry, rz);
  int Candidate = -1;
  for (int p = 0; p < P.ObjectCount; ++p) {
    const TObject& Object = P.Objects[static_cast<size_t>(p)];
    if (Candidate != -1 && HasFlag(Object, LOOKTHROUGH)) continue;
    Candidate = p;
    if (!IsLowClass(Object)) break;
  }
  Position = Candidate == -1 ? 0 : Candidate;
  return GetObject(rx, ry, rz, Position);
}

TObject GetUseObject(int rx, int ry, int rz, int& Position) {
  const TMapPoint& P = Point(rx, ry, rz);
  bool Forced = false;
  int p = UseWalk(P, false, Forced);
  if (!Forced) {
    while (p > 0) {
      const TObject& Object = P.Objects[static_cast<size_t>(p)];
      if (!IsCreature(Object) && !HasFlag(Object, LIQUIDPOOL)) break;
      --p;
    }
  }
  Position = p;
  return GetObject(rx, ry, rz, p);
}

TObject GetMultiUseTarget(int rx, int ry, int rz, int& Position) {
  const TMapPoint& P = Point(rx, ry, rz);
  bool Forced = false;
  int p = UseWalk(P, true, Forced);
  if (!Forced && p > 0 && HasFlag(P.Objects[static_cast<size_t>(p)], LIQUIDPOOL)) --p;
  Position = p;
  return GetObject(rx, ry, rz, p);
}

void InsertObject(int rx, int ry, int rz, const TObject& Object) {
  const int Position = StackingPosition(Point(rx, ry, rz), Object);
  if (Position < OBJECTS_PER_POINT) {
    InsertObjectAt(rx, ry, rz, Position, Object);
  } else if (IsMonster(Object)) {
    CreatureLeft(Object);
  }
}

void AppendObject(int rx, int ry, int rz, const TObject& Object) {
  TMapPoint& P = Point(rx, ry, rz);
  if (P.ObjectCount >= OBJECTS_PER_POINT) {
    ThrowException("too many objects on map point",
                   {{"ObjectCount", std::to_string(P.ObjectCount)},
                    {"rx", std::to_string(rx)},
                    {"ry", std::to_string(ry)},
                    {"rz", std::to_string(rz)}});
  }
  P.Objects[static_cast<size_t>(P.ObjectCount++)] = Object;
  RebuildField(P);
}

void InsertObjectAt(int rx, int ry, int rz, int Position, const TObject& Object) {
  TMapPoint& P = Point(rx, ry, rz);
  Check(Position <= P.getObjectCount(), "Position<=Point.getObjectCount()", {"Position", Position},
        {"ObjectCount", P.getObjectCount()});
  Check(Position >= 0 && Position <= OBJECTS_PER_POINT - 1, "In(Position,0,OBJECTS_PER_POINT-1)",
        {"Position", Position});
  if (P.ObjectCount == OBJECTS_PER_POINT) {
    const TObject& Last = P.Objects.back();
    if (IsMonster(Last)) CreatureLeft(Last);
  } else {
    ++P.ObjectCount;
  }
  for (int p = P.ObjectCount - 1; p > Position; --p) {
    P.Objects[static_cast<size_t>(p)] = std::move(P.Objects[static_cast<size_t>(p - 1)]);
  }
  P.Objects[static_cast<size_t>(Position)] = Object;
  RebuildField(P);
}

void DeleteObject(int rx, int ry, int rz, int Position) {
  TMapPoint& P = Point(rx, ry, rz);
  Check(Position >= 0 && Position <= P.getObjectCount() - 1, "In(Position,0,Point.getObjectCount()-1)",
        {"Position", Position}, {"ObjectCount", P.getObjectCount()});
  for (int p = Position; p < P.ObjectCount - 1; ++p) {
    P.Objects[static_cast<size_t>(p)] = std::move(P.Objects[static_cast<size_t>(p + 1)]);
  }
  P.Objects[static_cast<size_t>(--P.ObjectCount)] = TObject{};
  RebuildField(P);
}

void ChangeObject(int rx, int ry, int rz, int Position, const TObject& Object) {
  TMapPoint& P = Point(rx, ry, rz);
  Check(Position >= 0 && Position <= P.getObjectCount() - 1, "In(Position,0,Point.getObjectCount()-1)",
        {"Position", Position}, {"ObjectCount", P.getObjectCount()});
  P.Objects[static_cast<size_t>(Position)] = Object;
  RebuildField(P);
}

void ClearField(int rx, int ry, int rz, bool ClearEffects) {
  ClearPoint(Point(rx, ry, rz), ClearEffects, true);
}

void ClearMap() {
  TMapStore& M = Map();
  for (int Field = MapPoint_Low; Field <= MapPoint_High; ++Field) ClearPoint(M.Points.at(Field), false, false);
  for (int Field = MapPoint_Low; Field <= MapPoint_High; ++Field) M.Points.at(Field).EffectNumber = -1;
  M.Effects.fill(TEffect{});
}

void ShiftMap(int dx, int dy) {
  TMapStore& M = Map();
  M.MapX -= dx;
  M.MapY -= dy;
  for (int i = 0; i < std::abs(dx); ++i) RotateX(dx > 0);
  for (int i = 0; i < std::abs(dy); ++i) RotateY(dy > 0);
}

void ShiftFloors(int dz) {
  for (int i = 0; i < std::abs(dz); ++i) RotateZ(dz > 0);
  if (dz <= 0) return;
  for (int rz = 5; rz < MAPSIZE_Z; ++rz) {
    for (int ry = 0; ry < MAPSIZE_Y; ++ry) {
      for (int rx = 0; rx < MAPSIZE_X; ++rx) ClearField(rx, ry, rz, true);
    }
  }
}

void AddGraphicalEffect(int rx, int ry, int rz, int Type) {
  const int Number = AddEffect(rx, ry, rz, EFFECT_GRAPHICAL);
  if (Number == -1) return;
  TEffect& E = Effect(Number);
  E.Type = Type;
  E.Animation = TakeAnimation(GetEffectAnimation(Type));
}

void AddTextualEffect(int rx, int ry, int rz, int Color, const std::string& Text) {
  Check(Text.size() < 10, "strlen(Text)<10", {"Length", static_cast<long long>(Text.size())});
  rx = Clamp(rx, MAPSIZE_X - 1);
  ry = Clamp(ry, MAPSIZE_Y - 1);
  rz = Clamp(rz, MAPSIZE_Z - 1);
  if (IsWholeNumber(Text)) {
    const int Field = FieldAt(rx, ry, rz);
    for (TEffect& E : Map().Effects) {
      if (E.Status == EFFECT_FREE) break;
      if (E.Status == EFFECT_TEXT && E.Color == Color && E.Field == Field && E.Timer == 0 &&
          IsWholeNumber(E.Text)) {
        E.Text = NumberText(std::stoll(E.Text) + std::stoll(Text));
        return;
      }
    }
  }
  const int Number = AddEffect(rx, ry, rz, EFFECT_TEXT);
  if (Number == -1) return;
  TEffect& E = Effect(Number);
  E.Color = Color;
  E.Text = Text;
  E.Timer = 0;
}

void AddMissile(int srx, int sry, int srz, int drx, int dry, int drz, int Type) {
  Check(Type > 0, "Type>0", {"Type", Type});
  const int Floor = GetPlayerFloor();
  if (srz != Floor || drz != Floor) return;
  const int Number = AddEffect(srx, sry, srz, EFFECT_MISSILE);
  if (Number == -1) return;
  const int dx = drx - srx;
  const int dy = dry - sry;
  TEffect& E = Effect(Number);
  E.MissileType = Type;
  E.Direction = MissileDirection(dx, dy);
  E.Duration = static_cast<int>(std::sqrt(std::sqrt(static_cast<double>(dx * dx + dy * dy)))) * 150;
  E.OffsetX = -dx * 32;
  E.OffsetY = -dy * 32;
  E.TotalX = std::abs(E.OffsetX);
  E.TotalY = std::abs(E.OffsetY);
  E.EndTime = GetProgramTime() + E.Duration;
  int x = srx, y = sry, z = srz;
  MapToWorld(x, y, z);
  E.CurrentX = x, E.CurrentY = y;
  x = drx, y = dry, z = drz;
  MapToWorld(x, y, z);
  E.DestX = x, E.DestY = y, E.DestZ = z;
}

int GetFirstEffect(int rx, int ry, int rz) {
  TMapStore& M = Map();
  M.EffectIterator = Point(rx, ry, rz).getEffectNumber();
  return GetNextEffect();
}

int GetNextEffect() {
  TMapStore& M = Map();
  const int Number = M.EffectIterator;
  if (Number != -1) M.EffectIterator = Effect(Number).Next;
  return Number;
}

void ProcessEffects() {
  const auto Now = static_cast<std::uint32_t>(GetProgramTime());
  for (int Number = 0; Number < EFFECTS; ++Number) {
    TEffect& E = Effect(Number);
    switch (E.Status) {
      case EFFECT_GRAPHICAL:
        Check(E.Type > 0, "Effect.Type > 0", {"Type", E.Type});
        if (E.Animation != nullptr) E.Animation->Animate(Now);
        if (E.Animation == nullptr || E.Animation->IsFinished()) DeleteEffect(Number);
        break;
      case EFFECT_TEXT:
        if (++E.Timer > 10) DeleteEffect(Number);
        break;
      case EFFECT_MISSILE:
        if (E.Animation != nullptr) E.Animation->Animate(Now);
        break;
      default:
        break;
    }
  }
}

void ProcessMissiles() {
  const int Now = GetProgramTime();
  for (int Number = 0; Number < EFFECTS; ++Number) {
    if (Effect(Number).Status == EFFECT_MISSILE) MoveMissile(Number, Now);
  }
}

int GetEffectStatus(int EffectNumber) {
  Check(EffectNumber >= 0 && EffectNumber <= EFFECTS - 1, "In(EffectNumber,0,EFFECTS-1)",
        {"EffectNumber", EffectNumber});
  return Effect(EffectNumber).Status;
}

int GetEffectType(int EffectNumber) {
  return EffectWithStatus(EffectNumber, EFFECT_GRAPHICAL, "Effects[EffectNumber].Status==1").Type;
}

int GetEffectPhase(int EffectNumber) {
  const TEffect& E = EffectWithStatus(EffectNumber, EFFECT_GRAPHICAL, "Effects[EffectNumber].Status==1");
  return E.Animation != nullptr ? static_cast<int>(E.Animation->GetCurrentPhase()) : 1;
}

int GetEffectTextColor(int EffectNumber) {
  return EffectWithStatus(EffectNumber, EFFECT_TEXT, "Effects[EffectNumber].Status==2").Color;
}

std::string GetEffectText(int EffectNumber) {
  return EffectWithStatus(EffectNumber, EFFECT_TEXT, "Effects[EffectNumber].Status==2").Text;
}

int GetEffectTextTimer(int EffectNumber) {
  return EffectWithStatus(EffectNumber, EFFECT_TEXT, "Effects[EffectNumber].Status==2").Timer;
}

int GetEffectMissileType(int EffectNumber) {
  return EffectWithStatus(EffectNumber, EFFECT_MISSILE, "Effects[EffectNumber].Status==3").MissileType;
}

int GetEffectMissileDirection(int EffectNumber) {
  return EffectWithStatus(EffectNumber, EFFECT_MISSILE, "Effects[EffectNumber].Status==3").Direction;
}

int GetEffectMissileOffsetX(int EffectNumber) {
  const TEffect& E = EffectWithStatus(EffectNumber, EFFECT_MISSILE, "Effects[EffectNumber].Status==3");
  return (E.DestX - E.CurrentX) * 32 + E.OffsetX;
}

int GetEffectMissileOffsetY(int EffectNumber) {
  const TEffect& E = EffectWithStatus(EffectNumber, EFFECT_MISSILE, "Effects[EffectNumber].Status==3");
  return (E.DestY - E.CurrentY) * 32 + E.OffsetY;
}

int GetElevationCount(int rx, int ry, int rz) {
  const TMapPoint& P = Point(rx, ry, rz);
  return static_cast<int>(std::count_if(P.Objects.begin(), P.Objects.begin() + P.ObjectCount,
                                        [](const TObject& O) { return HasFlag(O, HEIGHT); }));
}

int GetObstacle(int rx, int ry, int rz, bool CheckRoof) {
  const TMapPoint& P = Point(rx, ry, rz);
  if (CheckRoof) {
    if (rz > 0 && rx < MAPSIZE_X - 1 && ry < MAPSIZE_Y - 1) {
      const bool NoBank = P.ObjectCount == 0 || !HasFlag(P.Objects[0], BANK);
      if (NoBank && GetElevationCount(rx + 1, ry + 1, rz - 1) > 2) return 0;
    }
    if (GetElevationCount(8, 6, GetPlayerFloor()) > 2) return 0;
  }
  bool CreatureSeen = false;
  for (int p = 0; p < P.ObjectCount; ++p) {
    const TObject& Object = P.Objects[static_cast<size_t>(p)];
    if (IsCreature(Object)) {
      if (CreatureSeen) continue;
      CreatureSeen = true;
      if (Object.Data == 0 || IsTrapper(Object.Data)) continue;
      const TCreature* Creature = FindCreature(Object.Data);
      if (Creature != nullptr && Creature->Unpassable) return Object.Data < FIRST_MONSTER_ID ? 1 : 2;
      continue;
    }
    if (HasFlag(Object, UNPASSABLE)) return 2;
    if (HasFlag(Object, AVOID)) return 1;
  }
  return 0;
}

bool IsSightFree(int rx, int ry, int rz) {
  const TMapPoint& P = Point(rx, ry, rz);
  return std::none_of(P.Objects.begin(), P.Objects.begin() + P.ObjectCount,
                      [](const TObject& O) { return HasFlag(O, BLOCKSIGHT); });
}

bool HasDimLight(int rx, int ry, int rz) {
  const TMapPoint& P = Point(rx, ry, rz);
  return std::any_of(P.Objects.begin(), P.Objects.begin() + P.ObjectCount,
                     [](const TObject& O) { return HasFlag(O, DIMLIGHT); });
}

void SetAmbiente(int Brightness, int Color) {
  TMapStore& M = Map();
  const bool Immediate = M.TargetBrightness == -1;
  M.TargetBrightness = Brightness;
  M.TargetColor = Color216(Color);
  if (Immediate) {
    M.ActualBrightness = Brightness;
    M.ActualColor = M.TargetColor;
  }
}

// While the reset's -1 waits for the server's first value, nothing moves.
void StepAmbiente() {
  TMapStore& M = Map();
  if (M.TargetBrightness < 0) return;
  M.ActualBrightness = StepToward(M.ActualBrightness, M.TargetBrightness);
  M.ActualColor.Red = StepToward(M.ActualColor.Red, M.TargetColor.Red);
  M.ActualColor.Green = StepToward(M.ActualColor.Green, M.TargetColor.Green);
  M.ActualColor.Blue = StepToward(M.ActualColor.Blue, M.TargetColor.Blue);
}

int GetAmbienteBrightness() {
  const int AmbienteActualBrightness = Map().ActualBrightness;
  Check(AmbienteActualBrightness >= 0, "AmbienteActualBrightness>=0",
        {"AmbienteActualBrightness", AmbienteActualBrightness});
  return AmbienteActualBrightness;
}

TRGB GetAmbienteColor() { return Map().ActualColor; }

int GetFieldNumber(int rx, int ry, int rz) {
  CheckCoordinates(rx, ry, rz);
  return FieldAt(rx, ry, rz);
}
