#include "world/WorldMessages.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <source_location>
#include <utility>
#include <vector>

#include "core/Exception.h"
#include "core/Text.h"
#include "net/Commands.h"
#include "net/Communication.h"
#include "net/Network.h"
#include "world/Creatures.h"
#include "world/Objects.h"

namespace {

constexpr int SKIP_MARK = 0xFF00;
constexpr std::uint16_t UNNAMED_PLACE = 0xFFFF;

struct TReaderState {
  int SkipFields = 0;
  bool MapChanged = false;
  TWirePosition LastSnapbackTarget;
  int SnapbackRepeats = 0;
  std::function<void(const TTalkRecord&)> TalkHandler;
};

TReaderState& State() {
  static TReaderState Reader;
  return Reader;
}

std::string Text(long long Value) { return std::to_string(Value); }

bool IsCreatureType(int Type) {
  return Type == UNKNOWNCREATURE || Type == OUTDATEDCREATURE || Type == CREATURE;
}

// Map coordinates of a world position.
void ToMap(const TWirePosition& Position, int& rx, int& ry, int& rz) {
  rx = Position.x, ry = Position.y, rz = Position.z;
  WorldToMap(rx, ry, rz);
}

TRGB ColorByte(int Byte) { return Color216(Byte); }

// ---- Creature records

struct TOutfit {
  int OutfitType = 0;
  std::array<int, 5> OutfitData{};
  int MountOutfitType = 0;
};

TOutfit ReadOutfit() {
  TOutfit Outfit;
  Outfit.OutfitType = ReadU16();
  if (Outfit.OutfitType == 0) {
    Outfit.OutfitData[0] = ReadU16();
  } else {
    for (int I = 0; I < 4; ++I) Outfit.OutfitData[static_cast<size_t>(I)] = ReadU8();
    Outfit.OutfitData[4] = ReadU8();
    if (GetOutfitPatternWidth(Outfit.OutfitType) != 4) {
      ThrowException("outfit has not all four directions", {{"OutfitType", Text(Outfit.OutfitType)}});
    }
  }
  Outfit.MountOutfitType = ReadU16();
  return Outfit;
}

void SetOutfit(TCreature* Creature, const TOutfit& Outfit) {
  if (Creature == nullptr) return;
  Creature->OutfitType = Outfit.OutfitType;
  Creature->OutfitData = Outfit.OutfitData;
  Creature->MountOutfitType = Outfit.MountOutfitType;
}

void SetSquare(TCreature& Creature, int Color) {
  Creature.Squared = Color != 255;
  const TRGB Square = ColorByte(Color);
  Creature.SquareRed = Square.Red;
  Creature.SquareGreen = Square.Green;
  Creature.SquareBlue = Square.Blue;
}

// The fields from health to unpassable; the guild only in the full form.
// A null creature reads them all the same.
void ReadCreatureDescription(TCreature* Creature, bool WithGuild) {
  const int Health = ReadU8();
  const int Direction = ReadU8();
  const TOutfit Outfit = ReadOutfit();
  const int Brightness = ReadU8();
  const int LightColor = ReadU8();
  const int Speed = ReadU16();
  const int Skull = ReadU8();
  const int Party = ReadU8();
  const int Guild = WithGuild ? ReadU8() : 0;
  const int Kind = ReadU8();
  const int Speech = ReadU8();
  const int Square = ReadU8();
  const int PvPHelpers = ReadU16();
  const bool Unpassable = ReadU8() != 0;
  if (Creature == nullptr) return;
  if (Speech > 5) ThrowException("Invalid speech flag", {{"SpeechFlag", Text(Speech)}});
  Creature->Health = Health;
  Creature->Direction = Direction;
  SetOutfit(Creature, Outfit);
  Creature->Brightness = Brightness;
  Creature->LightColor = LightColor;
  Creature->Speed = Speed;
  Creature->PKFlag = Skull;
  Creature->PARTYFlag = Party;
  if (WithGuild) Creature->GUILDFlag = Guild;
  Creature->CreatureKind = Kind;
  Creature->SpeechFlag = Speech;
  SetSquare(*Creature, Square);
  Creature->PvPHelpers = PvPHelpers;
  Creature->Unpassable = Unpassable;
}

TCreature* ReadUnknownCreature() {
  const std::uint32_t OldId = ReadU32();
  const std::uint32_t NewId = ReadU32();
  TCreature* Creature = &NewCreature(OldId, NewId);
  Check(Creature != nullptr, "Creature!=NULL");
  ReadU8();  // reserved
  Creature->Name = ReadLimitedString(30);
  // The name of a monster or NPC gets an upper-case first letter. (The
  // creature table's description speaks of every word; the wire's layout,
  // which names the one helper, is followed here.)
  if (NewId >= FIRST_MONSTER_ID) capitalize(Creature->Name);
  ReadCreatureDescription(Creature, true);
  return Creature;
}

// A creature record of any of the three forms; the record of a known creature
// or null. The identifier is what the map's object carries.
TCreature* ReadCreatureRecord(int Type, std::uint32_t& Id) {
  if (Type == UNKNOWNCREATURE) {
    TCreature* Creature = ReadUnknownCreature();
    Id = Creature->CreatureID;
    return Creature;
  }
  Id = ReadU32();
  TCreature* Creature = Id != 0 ? FindCreature(Id) : nullptr;
  if (Type == OUTDATEDCREATURE) {
    ReadCreatureDescription(Creature, false);
    return Creature;
  }
  const int Direction = ReadU8();
  const bool Unpassable = ReadU8() != 0;
  if (Creature != nullptr) {
    Creature->Direction = Direction;
    Creature->Unpassable = Unpassable;
  }
  return Creature;
}

// An item that stands on a field at a world position: a creature is placed
// there, an object is read.
TObject ReadItem(int Type, const TWirePosition& Where) {
  if (!IsCreatureType(Type)) return ReadObjectExtras(Type);
  std::uint32_t Id = 0;
  if (TCreature* Creature = ReadCreatureRecord(Type, Id)) {
    SetCreaturePosition(*Creature, Where.x, Where.y, Where.z);
    Creature->OnMap = true;
  }
  TObject Object;
  Object.Type = CREATURE;
  Object.Data = Id;
  return Object;
}

// ---- Fields and areas

TWirePosition WorldPosition(int rx, int ry, int rz) {
  MapToWorld(rx, ry, rz);
  return {rx, ry, rz};
}

void ReadFieldItems(int rx, int ry, int rz, int& Type, int& OldType) {
  const int Head = ReadU16();
  if (Head >= SKIP_MARK) {
    State().SkipFields = Head - SKIP_MARK;
    return;
  }
  const TWirePosition Where = WorldPosition(rx, ry, rz);
  for (int Count = 0;; ++Count) {
    OldType = Type;
    Type = ReadU16();
    if (Type >= SKIP_MARK) {
      State().SkipFields = Type - SKIP_MARK;
      return;
    }
    if (Type == 0) {
      ThrowException("creature expected but got",
                     {{"rx", Text(rx)}, {"ry", Text(ry)}, {"rz", Text(rz)}});
    }
    const TObject Item = ReadItem(Type, Where);
    // An eleventh creature is read but not placed; an eleventh object fails.
    if (Count < OBJECTS_PER_POINT || Item.Type != CREATURE) AppendObject(rx, ry, rz, Item);
  }
}

void ReadField(int rx, int ry, int rz) {
  if (State().SkipFields > 0) {
    --State().SkipFields;
    return;
  }
  int Type = 0, OldType = 0;
  try {
    ReadFieldItems(rx, ry, rz, Type, OldType);
  } catch (...) {
    RethrowGuarded("exception occurred (rx: " + Text(rx) + ", ry: " + Text(ry) + ", rz: " + Text(rz) +
                   ", Type: " + Text(Type) + ", OldType: " + Text(OldType) + ")");
  }
}

void ReadMapArea(int X0, int Y0, int X1, int Y1) {
  State().SkipFields = 0;
  int MapX = 0, MapY = 0, MapZ = 0;
  GetMapPosition(MapX, MapY, MapZ);
  std::vector<int> Layers;
  if (MapZ <= 7) {
    for (int rz = 0; rz < MAPSIZE_Z; ++rz) Layers.push_back(rz);
  } else {
    for (int rz = 4; rz >= std::max(MapZ - 13, 0); --rz) Layers.push_back(rz);
  }
  for (int rz : Layers) {
    for (int x = X0; x <= X1; ++x) {
      for (int y = Y0; y <= Y1; ++y) ReadField(x, y, rz);
    }
  }
}

void ReadFloor(int rz) {
  for (int x = 0; x < MAPSIZE_X; ++x) {
    for (int y = 0; y < MAPSIZE_Y; ++y) ReadField(x, y, rz);
  }
}

void ReadFullMap() {
  const TWirePosition Player = ReadWirePosition();
  SetMapPosition(Player.x, Player.y, Player.z);
  ClearMap();
  MarkAllCreaturesOffMap();
  ReadMapArea(0, 0, MAPSIZE_X - 1, MAPSIZE_Y - 1);
  State().MapChanged = true;
  CancelPrediction();
}

void ReadRow(int dx, int dy, int X0, int Y0, int X1, int Y1) {
  ShiftMap(dx, dy);
  ReadMapArea(X0, Y0, X1, Y1);
  State().MapChanged = true;
}

void ReadTopRow() { ReadRow(0, 1, 0, 0, MAPSIZE_X - 1, 0); }
void ReadRightRow() { ReadRow(-1, 0, MAPSIZE_X - 1, 0, MAPSIZE_X - 1, MAPSIZE_Y - 1); }
void ReadBottomRow() { ReadRow(0, -1, 0, MAPSIZE_Y - 1, MAPSIZE_X - 1, MAPSIZE_Y - 1); }
void ReadLeftRow() { ReadRow(1, 0, 0, 0, 0, MAPSIZE_Y - 1); }

void ReadFieldData() {
  int rx = 0, ry = 0, rz = 0;
  ToMap(ReadWirePosition(), rx, ry, rz);
  ClearField(rx, ry, rz, false);
  State().SkipFields = 0;
  ReadField(rx, ry, rz);
}

void FloorChanged() {
  State().MapChanged = true;
  CancelPrediction();
}

void ReadTopFloor() {
  int x = 0, y = 0, z = 0;
  GetMapPosition(x, y, z);
  SetMapPosition(x + 1, y + 1, z - 1);
  if (z - 1 >= 8) {
    ShiftFloors(-1);
    State().SkipFields = 0;
    ReadFloor(4);
  } else if (z - 1 == 7) {
    ShiftFloors(-3);
    State().SkipFields = 0;
    for (int rz = 2; rz <= 7; ++rz) ReadFloor(rz);
  }
  FloorChanged();
}

void ReadBottomFloor() {
  int x = 0, y = 0, z = 0;
  GetMapPosition(x, y, z);
  SetMapPosition(x - 1, y - 1, z + 1);
  if (z + 1 >= 9) {
    ShiftFloors(1);
    State().SkipFields = 0;
    if (z + 1 < 14) ReadFloor(0);
  } else if (z + 1 == 8) {
    ShiftFloors(3);
    State().SkipFields = 0;
    for (int rz = 2; rz >= 0; --rz) ReadFloor(rz);
  }
  FloorChanged();
}

// ---- Objects and creatures on fields

// The pile of a field as type numbers, in draw order and in all ten places.
std::string Cylinder(int rx, int ry, int rz, bool InDrawOrder) {
  std::string Text;
  if (InDrawOrder) {
    for (TObject O = GetFirstObject(rx, ry, rz); O.Type != 0; O = GetNextObject()) {
      Text += std::to_string(O.Type) + " ";
    }
  } else {
    for (int p = 0; p < OBJECTS_PER_POINT; ++p) Text += std::to_string(GetObject(rx, ry, rz, p).Type) + " ";
  }
  return Text;
}

std::vector<TNamedValue> FieldDump(int rx, int ry, int rz) {
  int hx = 0, hy = 0, hz = 0;
  GetMapPosition(hx, hy, hz);
  return {{"Pos", Text(rx) + "," + Text(ry) + "," + Text(rz)},
          {"hx", Text(hx)},
          {"hy", Text(hy)},
          {"hz", Text(hz)},
          {"Cylinder (1)", Cylinder(rx, ry, rz, true)},
          {"Cylinder (2)", Cylinder(rx, ry, rz, false)}};
}

struct TPlace {
  int rx = 0, ry = 0, rz = 0;
  int StackPosition = 0;
};

// y, z and a stack position after x; the object there must exist.
TPlace ReadPlace(int x) {
  TWirePosition Where{x, ReadU16(), ReadU8()};
  TPlace Place;
  Place.StackPosition = ReadU8();
  ToMap(Where, Place.rx, Place.ry, Place.rz);
  if (Place.StackPosition >= OBJECTS_PER_POINT ||
      GetObject(Place.rx, Place.ry, Place.rz, Place.StackPosition).Type == 0) {
    ThrowException("Object is not where it should be", FieldDump(Place.rx, Place.ry, Place.rz));
  }
  return Place;
}

void LeaveMap(const TObject& Object) {
  if (Object.Type != CREATURE || Object.Data == 0) return;
  if (TCreature* Creature = FindCreature(Object.Data)) Creature->OnMap = false;
}

void LeaveMap(std::uint32_t Id) {
  if (TCreature* Creature = Id != 0 ? FindCreature(Id) : nullptr) Creature->OnMap = false;
}

void ReadCreateOnMap() {
  const TWirePosition Where = ReadWirePosition();
  const int StackPosition = ReadU8();
  const int Type = ReadU16();
  const TObject Item = ReadItem(Type, Where);
  int rx = 0, ry = 0, rz = 0;
  ToMap(Where, rx, ry, rz);
  if (StackPosition == 255) {
    InsertObject(rx, ry, rz, Item);
  } else {
    InsertObjectAt(rx, ry, rz, StackPosition, Item);
  }
  const TCreature* Creature = Item.Type == CREATURE && Item.Data != 0 ? FindCreature(Item.Data) : nullptr;
  if (Creature != nullptr && IsPlayer(*Creature)) CancelPrediction();
}

void ReadChangeOnMap() {
  const int x = ReadU16();
  if (x == UNNAMED_PLACE) {
    LeaveMap(ReadU32());
    const int Type = ReadU16();
    if (!IsCreatureType(Type)) ThrowException("Received an object when a creature was expected.");
    std::uint32_t Id = 0;
    ReadCreatureRecord(Type, Id);
    return;
  }
  const TPlace Place = ReadPlace(x);
  LeaveMap(GetObject(Place.rx, Place.ry, Place.rz, Place.StackPosition));
  const int Type = ReadU16();
  const TObject Item = ReadItem(Type, WorldPosition(Place.rx, Place.ry, Place.rz));
  ChangeObject(Place.rx, Place.ry, Place.rz, Place.StackPosition, Item);
}

void ReadDeleteOnMap() {
  const int x = ReadU16();
  if (x == UNNAMED_PLACE) {
    LeaveMap(ReadU32());
    return;
  }
  const TPlace Place = ReadPlace(x);
  LeaveMap(GetObject(Place.rx, Place.ry, Place.rz, Place.StackPosition));
  DeleteObject(Place.rx, Place.ry, Place.rz, Place.StackPosition);
}

// ---- Creature moves

void CheckPlayerField() {
  if (GetObjectCount(8, 6, GetPlayerFloor()) == 0) {
    ThrowException("Player object is not where it should be", FieldDump(8, 6, GetPlayerFloor()));
  }
}

// A step of at most one field starts the walking picture over the ground of
// the destination; a jump turns the creature and shows no step.
void StartMove(TCreature& Creature, int dx, int dy, int dz, int rx, int ry, int rz) {
  if (std::abs(dx) <= 1 && std::abs(dy) <= 1 && dz == 0) {
    const TObject Ground = GetObject(rx, ry, rz, 0);
    if (Ground.Type == 0 || !GetObjectFlag(Ground.Type, BANK)) {
      ThrowException(
          "MoveCreature has been received for a coordinate where there is no bank as first object "
          "[bug0000484]",
          FieldDump(rx, ry, rz));
    }
    MoveCreature(Creature, dx, dy, GetObjectWaypoints(Ground.Type));
    return;
  }
  const bool Player = IsPlayer(Creature);
  if (Player) CancelPrediction();
  if (dx > 0) {
    Creature.Direction = 1;
  } else if (dx < 0) {
    Creature.Direction = 3;
  } else if (dy < 0) {
    Creature.Direction = 0;
  } else if (dy > 0) {
    Creature.Direction = 2;
  }
  if (!Player) MoveCreature(Creature, 0, 0, 0);
}

void ReadMoveUnnamed() {
  const std::uint32_t Id = ReadU32();
  const TWirePosition Destination = ReadWirePosition();
  TCreature* Creature = Id != 0 ? FindCreature(Id) : nullptr;
  if (Creature == nullptr) return;
  int rx = 0, ry = 0, rz = 0;
  ToMap(Destination, rx, ry, rz);
  StartMove(*Creature, Destination.x - Creature->X, Destination.y - Creature->Y,
            Destination.z - Creature->Z, rx, ry, rz);
  Creature->X = Destination.x, Creature->Y = Destination.y, Creature->Z = Destination.z;
  TObject Object;
  Object.Type = CREATURE;
  Object.Data = Id;
  InsertObject(rx, ry, rz, Object);
}

[[noreturn]] void NoCreatureThere(const TWirePosition& Start, const TWirePosition& Destination,
                                  const TPlace& From, int drx, int dry, int drz, const TObject& Found) {
  std::vector<TNamedValue> Dump{
      {"Found", Text(Found.Type)},
      {"StartX", Text(Start.x)}, {"StartY", Text(Start.y)}, {"StartZ", Text(Start.z)},
      {"DestX", Text(Destination.x)}, {"DestY", Text(Destination.y)}, {"DestZ", Text(Destination.z)},
      {"DeltaX", Text(Destination.x - Start.x)}, {"DeltaY", Text(Destination.y - Start.y)},
      {"dz", Text(Destination.z - Start.z)},
      {"abs_sx", Text(From.rx)}, {"abs_sy", Text(From.ry)}, {"abs_sz", Text(From.rz)},
      {"abs_zx", Text(drx)}, {"abs_zy", Text(dry)}, {"abs_zz", Text(drz)},
      {"RNum", Text(From.StackPosition)}};
  try {
    Dump.push_back({"Start Cylinder (1)", Cylinder(From.rx, From.ry, From.rz, true)});
    Dump.push_back({"Start Cylinder (2)", Cylinder(From.rx, From.ry, From.rz, false)});
    Dump.push_back({"Destination Cylinder (1)", Cylinder(drx, dry, drz, true)});
    Dump.push_back({"Destination Cylinder (2)", Cylinder(drx, dry, drz, false)});
  } catch (const TMyException& E) {
    Dump.push_back({"Exception during cylinder looping", E.what()});
  }
  ThrowException("MoveCreature has been received for a coordinate where there is no creature anymore [bug0000017]",
                 std::move(Dump));
}

void ReadMoveFromPlace(int x) {
  const TWirePosition Start{x, ReadU16(), ReadU8()};
  TPlace From;
  From.StackPosition = ReadU8();
  const TWirePosition Destination = ReadWirePosition();
  const int dx = Destination.x - Start.x, dy = Destination.y - Start.y, dz = Destination.z - Start.z;
  ToMap(Start, From.rx, From.ry, From.rz);
  int rx = 0, ry = 0, rz = 0;
  ToMap(Destination, rx, ry, rz);
  const TObject Object = From.StackPosition < OBJECTS_PER_POINT
                             ? GetObject(From.rx, From.ry, From.rz, From.StackPosition)
                             : TObject{};
  if (Object.Type != CREATURE) NoCreatureThere(Start, Destination, From, rx, ry, rz, Object);
  if (TCreature* Creature = Object.Data != 0 ? FindCreature(Object.Data) : nullptr) {
    StartMove(*Creature, dx, dy, dz, rx, ry, rz);
    Creature->X += dx, Creature->Y += dy, Creature->Z += dz;
  }
  DeleteObject(From.rx, From.ry, From.rz, From.StackPosition);
  InsertObject(rx, ry, rz, Object);
}

void ReadMoveCreature() {
  CheckPlayerField();
  const int x = ReadU16();
  if (x == UNNAMED_PLACE) {
    ReadMoveUnnamed();
  } else {
    ReadMoveFromPlace(x);
  }
}

// ---- Effects

void ReadAmbiente() {
  const int Brightness = ReadU8();
  const int Color = ReadU8();
  SetAmbiente(Brightness, Color);
}

void ReadGraphicalEffect() {
  int rx = 0, ry = 0, rz = 0;
  ToMap(ReadWirePosition(), rx, ry, rz);
  AddGraphicalEffect(rx, ry, rz, ReadU8());
}

void ReadMissileEffect() {
  int sx = 0, sy = 0, sz = 0, dx = 0, dy = 0, dz = 0;
  ToMap(ReadWirePosition(), sx, sy, sz);
  ToMap(ReadWirePosition(), dx, dy, dz);
  AddMissile(sx, sy, sz, dx, dy, dz, ReadU8());
}

// ---- Creature updates: an unknown creature's fields are read and dropped.

TCreature* ReadKnownCreature() {
  const std::uint32_t Id = ReadU32();
  return Id != 0 ? FindCreature(Id) : nullptr;
}

void ReadMarkCreature() {
  TCreature* Creature = ReadKnownCreature();
  const int Color = ReadU8();
  if (Creature != nullptr) SetMark(*Creature, Color);
}

void ReadTrappers() {
  const int Count = ReadU8();
  std::vector<std::uint32_t> Ids;
  for (int I = 0; I < Count; ++I) Ids.push_back(ReadU32());
  SetTrappers(Ids);
}

template <typename TSet>
void ReadCreatureU8(TSet&& Set) {
  TCreature* Creature = ReadKnownCreature();
  const int Value = ReadU8();
  if (Creature != nullptr) Set(*Creature, Value);
}

template <typename TSet>
void ReadCreatureU16(TSet&& Set) {
  TCreature* Creature = ReadKnownCreature();
  const int Value = ReadU16();
  if (Creature != nullptr) Set(*Creature, Value);
}

void ReadCreatureHealth() { ReadCreatureU8([](TCreature& C, int V) { C.Health = V; }); }
void ReadCreatureSkull() { ReadCreatureU8([](TCreature& C, int V) { C.PKFlag = V; }); }
void ReadCreatureParty() { ReadCreatureU8([](TCreature& C, int V) { C.PARTYFlag = V; }); }
void ReadCreatureUnpass() { ReadCreatureU8([](TCreature& C, int V) { C.Unpassable = V != 0; }); }
void ReadCreatureType() { ReadCreatureU8([](TCreature& C, int V) { C.CreatureKind = V; }); }
void ReadCreatureSpeed() { ReadCreatureU16([](TCreature& C, int V) { C.Speed = V; }); }
void ReadCreaturePvPHelpers() { ReadCreatureU16([](TCreature& C, int V) { C.PvPHelpers = V; }); }

void ReadCreatureLight() {
  TCreature* Creature = ReadKnownCreature();
  const int Brightness = ReadU8();
  const int Color = ReadU8();
  if (Creature == nullptr) return;
  Creature->Brightness = Brightness;
  Creature->LightColor = Color;
}

void ReadCreatureOutfit() {
  TCreature* Creature = ReadKnownCreature();
  SetOutfit(Creature, ReadOutfit());
}

void ReadCreatureMarks() {
  TCreature* Creature = ReadKnownCreature();
  const int Kind = ReadU8();
  const int Color = ReadU8();
  if (Creature == nullptr) return;
  if (Kind == 1) {
    SetMark(*Creature, Color);
  } else {
    SetSquare(*Creature, Color);
  }
}

// ---- The own steps

void ReadSnapback() {
  const int Direction = ReadU8();
  int x = 0, y = 0, z = 0;
  GetMapPosition(x, y, z);
  const TWalkState& Walk = GetWalkState();
  const TWirePosition Target{x + Walk.PredictedDx, y + Walk.PredictedDy, z};
  TReaderState& S = State();
  S.SnapbackRepeats = Target == S.LastSnapbackTarget ? S.SnapbackRepeats + 1 : 0;
  S.LastSnapbackTarget = Target;
  if (S.SnapbackRepeats > 15) {
    StopAutoWalk();
    CombatTargets().AttackTarget = CombatTargets().FollowTarget = 0;
    SendCancel();
    S.SnapbackRepeats = 0;
  }
  if (!HandleSnapback(Direction)) return;
  const TWalkState& Path = GetWalkState();
  SendGoPath(std::vector<int>(Path.Steps.begin(), Path.Steps.begin() + Path.Number));
}

void ReadWait() {
  const int Milliseconds = ReadU16();
  if (TCreature* Player = FindPlayer()) Player->NextStepTime += Milliseconds;
}

// ---- Speech

bool HasTalkPosition(int Mode) {
  switch (Mode) {
    case 1: case 2: case 3: case 9: case 10: case 35: case 36: return true;
    default: return false;
  }
}

bool HasTalkChannel(int Mode) { return Mode == 7 || Mode == 8 || Mode == 14; }

void ReadTalk() {
  TTalkRecord Talk;
  Talk.StatementId = ReadU32();
  Talk.Speaker = ReadLimitedString(30);
  Talk.SpeakerLevel = ReadU16();
  Talk.Mode = ReadU8();
  CheckChatMessageMode(Talk.Mode);
  if (HasTalkPosition(Talk.Mode)) Talk.Position = ReadWirePosition();
  if (HasTalkChannel(Talk.Mode)) Talk.Channel = ReadU16();
  Talk.Text = ReadLimitedString(4096);
  if (State().TalkHandler) State().TalkHandler(Talk);
}

}  // namespace

TWirePosition ReadWirePosition() {
  TWirePosition Position;
  Position.x = ReadU16();
  Position.y = ReadU16();
  Position.z = ReadU8();
  return Position;
}

TObject ReadObjectExtras(int Type) {
  TObject Object;
  Object.Type = Type;
  const int Mark = ReadU8();
  if (Mark != 255) {
    const TRGB Color = ColorByte(Mark);
    Object.Marked = true;
    Object.MarkRed = Color.Red, Object.MarkGreen = Color.Green, Object.MarkBlue = Color.Blue;
  }
  if (GetObjectFlag(Type, LIQUIDCONTAINER) || GetObjectFlag(Type, LIQUIDPOOL) ||
      GetObjectFlag(Type, CUMULATIVE)) {
    Object.Data = ReadU8();
  }
  Object.Animation = TakeAnimation(GetObjectAnimation(Type));
  if (GetObjectPhases(Type) > 1) {
    const std::uint8_t Phase = ReadU8();
    if (Object.Animation != nullptr) Object.Animation->Reset(Phase);
  }
  return Object;
}

void CheckChatMessageMode(int ChatMessageMode) {
  const bool Valid = ChatMessageMode >= 0 && ChatMessageMode < 42 && ChatMessageMode != 5 &&
                     ChatMessageMode != 12 && ChatMessageMode != 16 && ChatMessageMode != 39;
  Check(Valid,
        "(ChatMessageMode >= CHATMESSAGE_NONE) && (ChatMessageMode < CHATMESSAGE_BEYONDLAST) && "
        "(ChatMessageMode != CHATMESSAGE_PRIVATE_TO) && (ChatMessageMode != CHATMESSAGE_NPC_TO) && "
        "(ChatMessageMode != CHATMESSAGE_GAMEMASTER_PRIVATE_TO) && "
        "(ChatMessageMode != CHATMESSAGE_TUTORIAL_HINT)",
        {"ChatMessageMode", ChatMessageMode});
}

std::string ReadLimitedString(int Limit) {
  std::vector<char> Buffer(static_cast<size_t>(Limit));
  ReadString(Buffer.data(), Limit);
  return Buffer.data();
}

void SetTalkHandler(std::function<void(const TTalkRecord&)> Handler) {
  State().TalkHandler = std::move(Handler);
}

bool TakeMapChanged() { return std::exchange(State().MapChanged, false); }

void ResetWorldMessageState() {
  TReaderState& S = State();
  S.SkipFields = 0;
  S.LastSnapbackTarget = {};
  S.SnapbackRepeats = 0;
}

void PrepareWorldForGame() {
  ClearMap();
  SetAmbiente(-1, 0);
  ClearCreatures();
  ResetWorldMessageState();
}

void InstallWorldMessageReaders() {
  const std::pair<int, TCommandReader> Readers[] = {
      {SFULLMAP, ReadFullMap},
      {STOPROW, ReadTopRow},
      {SRIGHTROW, ReadRightRow},
      {SBOTTOMROW, ReadBottomRow},
      {SLEFTROW, ReadLeftRow},
      {SFIELDDATA, ReadFieldData},
      {SCREATEONMAP, ReadCreateOnMap},
      {SCHANGEONMAP, ReadChangeOnMap},
      {SDELETEONMAP, ReadDeleteOnMap},
      {SMOVECREATURE, ReadMoveCreature},
      {SAMBIENTE, ReadAmbiente},
      {SGRAPHICALEFFECT, ReadGraphicalEffect},
      {SMISSILEEFFECT, ReadMissileEffect},
      {SMARKCREATURE, ReadMarkCreature},
      {STRAPPERS, ReadTrappers},
      {SCREATUREHEALTH, ReadCreatureHealth},
      {SCREATURELIGHT, ReadCreatureLight},
      {SCREATUREOUTFIT, ReadCreatureOutfit},
      {SCREATURESPEED, ReadCreatureSpeed},
      {SCREATURESKULL, ReadCreatureSkull},
      {SCREATUREPARTY, ReadCreatureParty},
      {SCREATUREUNPASS, ReadCreatureUnpass},
      {SCREATUREMARKS, ReadCreatureMarks},
      {SCREATUREPVPHELPERS, ReadCreaturePvPHelpers},
      {SCREATURETYPE, ReadCreatureType},
      {SSNAPBACK, ReadSnapback},
      {SWAIT, ReadWait},
      {STALK, ReadTalk},
      {STOPFLOOR, ReadTopFloor},
      {SBOTTOMFLOOR, ReadBottomFloor},
  };
  for (const auto& [Type, Reader] : Readers) SetCommandReader(Type, Reader);
}
