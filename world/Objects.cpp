#include "world/Objects.h"

#include <algorithm>
#include <array>
#include <memory>
#include <source_location>

#include "core/Container.h"
#include "core/Exception.h"
#include "core/Paths.h"
#include "core/Script.h"
#include "core/Text.h"

namespace {

using TTypeTable = vector<TObjectEntry>;

struct TObjectTables {
  TTypeTable Objects{FIRST_OBJECT_TYPE, FIRST_OBJECT_TYPE - 1};
  TTypeTable Outfits{1, 0};
  TTypeTable Effects{1, 0};
  TTypeTable Missiles{1, 0};
  std::uint32_t Signature = 0;
  std::vector<int> MarketList;
};

std::unique_ptr<const TObjectTables> Loaded;

// Without loaded tables every table is empty, so each query fails as for a
// number outside it.
const TObjectTables& Tables() {
  static const TObjectTables Empty;
  return Loaded != nullptr ? *Loaded : Empty;
}

const TObjectEntry& ObjectEntry(int Type) { return Tables().Objects.at(Type); }
const TObjectEntry& OutfitEntry(int Type) { return Tables().Outfits.at(Type); }
const TObjectEntry& EffectEntry(int Type) { return Tables().Effects.at(Type); }
const TObjectEntry& MissileEntry(int Type) { return Tables().Missiles.at(Type); }

// The entry of a type whose operand is asked for, which must have the flag.
const TObjectEntry& EntryWithFlag(const TObjectEntry& Entry, int Type, int Flag,
                                  const char* Assertion,
                                  std::source_location Where = std::source_location::current()) {
  Check(Entry.Flags.test(static_cast<size_t>(Flag)), Assertion, {"Type", Type}, Where);
  return Entry;
}

void SetOperands(TObjectEntry& Entry, const TFlagRecord& Flag) {
  const std::vector<std::uint16_t>& Op = Flag.Operands;
  switch (Flag.Flag) {
    case BANK: Entry.Waypoints = Op[0]; break;
    case WRITE:
    case WRITEONCE: Entry.TextLength = Op[0]; break;
    case LIGHT: Entry.LightBrightness = Op[0], Entry.LightColor = Op[1]; break;
    case SHIFT: Entry.ShiftX = Op[0], Entry.ShiftY = Op[1]; break;
    case HEIGHT: Entry.Elevation = Op[0]; break;
    case AUTOMAP: Entry.AutomapColor = Op[0]; break;
    case LENSHELP: Entry.LensHelpId = Op[0]; break;
    case CLOTHES: Entry.ClothSlot = Op[0]; break;
    case MARKET:
      Entry.MarketCategory = Op[0], Entry.TradeAs = Op[1], Entry.ShowAs = Op[2];
      Entry.RestrictProfession = Op[3], Entry.MinimumLevel = Op[4];
      Entry.Name = Flag.Name.c_str();  // the name ends at its terminator
      break;
    default: break;
  }
}

TObjectEntry MakeEntry(const TObjectRecord& Record) {
  TObjectEntry Entry;
  for (const TFlagRecord& Flag : Record.Flags) {
    Entry.Flags.set(Flag.Flag);
    SetOperands(Entry, Flag);
  }
  Entry.Width = Record.Width;
  Entry.Height = Record.Height;
  Entry.DisplaySize = Record.DisplaySize;
  Entry.Layers = Record.Layers;
  Entry.PatternWidth = Record.PatternWidth;
  Entry.PatternHeight = Record.PatternHeight;
  Entry.PatternDepth = Record.PatternDepth;
  Entry.Phases = Record.Phases;
  if (Record.Phases > 1) {
    const TAnimationRecord& A = Record.Animation;
    Entry.Animation = new TAnimation(Record.Phases, A.StartPhase + 1, A.LoopCount,
                                     static_cast<TAnimationType>(A.AnimationType), A.Durations);
  }
  Entry.Sprites = Record.Sprites;
  return Entry;
}

// A failure in a record names the table and the type number.
void ReadTable(TBinaryFileReader& Reader, TTypeTable& Table, const char* Kind) {
  for (int Type = Table.low(); Type <= Table.high(); ++Type) {
    try {
      Table.at(Type) = MakeEntry(ReadObjectRecord(Reader));
    } catch (const TMyException& E) {
      throw TMyException(std::source_location::current(), "exception occurred",
                         {{"Table", Kind}, {"Type", std::to_string(Type)}}, E.what());
    }
  }
}

// Case-insensitive over at most MARKET_NAME_LENGTH characters.
bool NameBefore(const std::string& A, const std::string& B) {
  const size_t Length = std::min<size_t>(std::max(A.size(), B.size()), MARKET_NAME_LENGTH);
  for (size_t I = 0; I < Length; ++I) {
    const auto CharA = static_cast<unsigned char>(I < A.size() ? toLowerChar(A[I]) : 0);
    const auto CharB = static_cast<unsigned char>(I < B.size() ? toLowerChar(B[I]) : 0);
    if (CharA != CharB) return CharA < CharB;
  }
  return false;
}

void BuildMarketList(TObjectTables& T) {
  for (int Type = T.Objects.low(); Type <= T.Objects.high(); ++Type) {
    const TObjectEntry& Entry = T.Objects.at(Type);
    if (Entry.Flags.test(MARKET) && Entry.TradeAs == Type) T.MarketList.push_back(Type);
  }
  std::stable_sort(T.MarketList.begin(), T.MarketList.end(), [&T](int A, int B) {
    return NameBefore(T.Objects.at(A).Name, T.Objects.at(B).Name);
  });
}

std::unique_ptr<TObjectTables> ReadTables(TBinaryFileReader& Reader) {
  const TObjectFileHeader Header = ReadObjectFileHeader(Reader);
  auto T = std::make_unique<TObjectTables>(TObjectTables{
      TTypeTable(FIRST_OBJECT_TYPE, Header.HighestObject), TTypeTable(1, Header.HighestOutfit),
      TTypeTable(1, Header.HighestEffect), TTypeTable(1, Header.HighestMissile),
      Header.Signature, {}});
  ReadTable(Reader, T->Objects, "objects");
  ReadTable(Reader, T->Outfits, "outfits");
  ReadTable(Reader, T->Effects, "effects");
  ReadTable(Reader, T->Missiles, "missiles");
  BuildMarketList(*T);
  return T;
}

std::uint32_t SpriteOf(const TObjectEntry& Entry, int X, int Y, int Layer, int PatternX,
                       int PatternY, int PatternZ, int Phase) {
  Check(X >= 1 && X <= Entry.Width, "In(X,1,Entry.Width)", {"X", X}, {"Entry.Width", Entry.Width});
  Check(Y >= 1 && Y <= Entry.Height, "In(Y,1,Entry.Height)", {"Y", Y},
        {"Entry.Height", Entry.Height});
  Check(Layer >= 1 && Layer <= Entry.Layers, "In(Layer,1,Entry.Layers)", {"Layer", Layer},
        {"Entry.Layers", Entry.Layers});
  Check(PatternX >= 1 && PatternX <= Entry.PatternWidth, "In(PatternX,1,Entry.PatternWidth)",
        {"PatternX", PatternX}, {"Entry.PatternWidth", Entry.PatternWidth});
  Check(PatternY >= 1 && PatternY <= Entry.PatternHeight, "In(PatternY,1,Entry.PatternHeight)",
        {"PatternY", PatternY}, {"Entry.PatternHeight", Entry.PatternHeight});
  Check(PatternZ >= 1 && PatternZ <= Entry.PatternDepth, "In(PatternZ,1,Entry.PatternDepth)",
        {"PatternZ", PatternZ}, {"Entry.PatternDepth", Entry.PatternDepth});
  Check(Phase >= 1 && Phase <= Entry.Phases, "In(Phase,1,Entry.Phases)", {"Phase", Phase},
        {"Entry.Phases", Entry.Phases});
  long long Index = Phase - 1;
  Index = Index * Entry.PatternDepth + PatternZ - 1;
  Index = Index * Entry.PatternHeight + PatternY - 1;
  Index = Index * Entry.PatternWidth + PatternX - 1;
  Index = Index * Entry.Layers + Layer - 1;
  Index = Index * Entry.Height + Y - 1;
  Index = Index * Entry.Width + X - 1;
  return Entry.Sprites[static_cast<size_t>(Index)];
}

// Value modulo Count, plus 1; a picture without patterns along an axis has only 1.
int PatternIndex(long long Value, int Count) {
  if (Count <= 0) return 1;
  return static_cast<int>((Value % Count + Count) % Count) + 1;
}

// The x, y cell of a stack of Count in the coin-pile pictures.
std::pair<int, int> CumulativeCell(int Count) {
  if (Count < 2) return {0, 0};
  if (Count <= 4) return {Count - 1, 0};
  if (Count < 10) return {0, 1};
  if (Count < 25) return {1, 1};
  if (Count < 50) return {2, 1};
  return {3, 1};
}

int LiquidColor(int LiquidType) {
  switch (LiquidType) {
    case 0: return 0;
    case 5: case 11: return 2;
    case 3: case 4: case 7: case 13: case 16: case 17: return 3;
    case 6: return 4;
    case 8: case 12: case 14: return 5;
    case 9: case 15: return 6;
    case 2: case 10: return 7;
    default: return 1;
  }
}

}  // namespace

void InitObjects() {
  const std::string FileName = GetFileName(TFileKind::OBJECT_TYPES, false);
  if (!FileExists(FileName)) throw PROGRAM_ERROR::DAT_NOT_FOUND;
  LoadObjects(FileName);
}

void ExitObjects() { Loaded.reset(); }

void LoadObjects(const std::string& FileName) try {
  ExitObjects();
  TBinaryFileReader Reader;
  try {
    Reader.open(FileName);
  } catch (const TMyException&) {
    throw PROGRAM_ERROR::DAT_NOT_OPENED;
  }
  Loaded = ReadTables(Reader);
} catch (...) {
  RethrowGuarded();
}

std::uint32_t GetObjectFileSignature() { return Tables().Signature; }
std::vector<int> GetMarketList() { return Tables().MarketList; }

bool GetObjectFlag(int Type, int Flag) {
  if (Type == CREATURE) return Flag == BLOCKPATH;
  const TTypeTable& Objects = Tables().Objects;
  Check(Type >= Objects.low() && Type <= Objects.high(),
        "In(Type,ObjectProperties->low(),ObjectProperties->high())", {"Type", Type},
        {"Flag", Flag});
  return Objects.at(Type).Flags.test(static_cast<size_t>(Flag));
}

int GetObjectWaypoints(int Type) {
  return EntryWithFlag(ObjectEntry(Type), Type, BANK, "GetEntryFlag(Entry,BANK)").Waypoints;
}
int GetObjectTextLength(int Type) { return ObjectEntry(Type).TextLength; }
int GetObjectLightBrightness(int Type) {
  return EntryWithFlag(ObjectEntry(Type), Type, LIGHT, "GetEntryFlag(Entry,LIGHT)").LightBrightness;
}
int GetObjectLightColor(int Type) {
  return EntryWithFlag(ObjectEntry(Type), Type, LIGHT, "GetEntryFlag(Entry,LIGHT)").LightColor;
}
int GetObjectShiftX(int Type) {
  return EntryWithFlag(ObjectEntry(Type), Type, SHIFT, "GetEntryFlag(Entry,SHIFT)").ShiftX;
}
int GetObjectShiftY(int Type) {
  return EntryWithFlag(ObjectEntry(Type), Type, SHIFT, "GetEntryFlag(Entry,SHIFT)").ShiftY;
}
int GetObjectElevation(int Type) {
  return EntryWithFlag(ObjectEntry(Type), Type, HEIGHT, "GetEntryFlag(Entry,HEIGHT)").Elevation;
}
int GetObjectAutomapColor(int Type) {
  return EntryWithFlag(ObjectEntry(Type), Type, AUTOMAP, "GetEntryFlag(Entry,AUTOMAP)")
      .AutomapColor;
}
int GetObjectLensHelp(int Type) {
  return EntryWithFlag(ObjectEntry(Type), Type, LENSHELP, "GetEntryFlag(Entry,LENSHELP)")
      .LensHelpId;
}
int GetObjectClothSlot(int Type) { return ObjectEntry(Type).ClothSlot; }
std::string GetObjectName(int Type) { return ObjectEntry(Type).Name; }
int GetObjectMarketCategory(int Type) { return ObjectEntry(Type).MarketCategory; }
int GetObjectTradeAs(int Type) { return ObjectEntry(Type).TradeAs; }
int GetObjectShowAs(int Type) { return ObjectEntry(Type).ShowAs; }
int GetObjectRestrictProfession(int Type) { return ObjectEntry(Type).RestrictProfession; }
int GetObjectMinimumLevel(int Type) { return ObjectEntry(Type).MinimumLevel; }
int GetObjectWidth(int Type) { return ObjectEntry(Type).Width; }
int GetObjectHeight(int Type) { return ObjectEntry(Type).Height; }
int GetObjectDisplaySize(int Type) { return ObjectEntry(Type).DisplaySize; }
int GetObjectLayers(int Type) { return ObjectEntry(Type).Layers; }
int GetObjectPatternWidth(int Type) { return ObjectEntry(Type).PatternWidth; }
int GetObjectPatternHeight(int Type) { return ObjectEntry(Type).PatternHeight; }
int GetObjectPatternDepth(int Type) { return ObjectEntry(Type).PatternDepth; }
int GetObjectPhases(int Type) { return ObjectEntry(Type).Phases; }
const boost::intrusive_ptr<TAnimation>& GetObjectAnimation(int Type) {
  return ObjectEntry(Type).Animation;
}
std::uint32_t GetObjectSprite(int Type, int X, int Y, int Layer, int PatternX, int PatternY,
                              int PatternZ, int Phase) {
  return SpriteOf(ObjectEntry(Type), X, Y, Layer, PatternX, PatternY, PatternZ, Phase);
}

TPattern GetCumulativePattern(int Type, int Count) {
  Check(GetObjectFlag(Type, CUMULATIVE), "GetObjectFlag(Obj,CUMULATIVE)", {"Type", Type});
  const TObjectEntry& Entry = ObjectEntry(Type);
  const auto [X, Y] = CumulativeCell(Count);
  return {PatternIndex(X, Entry.PatternWidth), PatternIndex(Y, Entry.PatternHeight), 1};
}

TPattern GetLiquidPattern(int Type, int LiquidType) {
  Check(GetObjectFlag(Type, LIQUIDPOOL) || GetObjectFlag(Type, LIQUIDCONTAINER),
        "GetObjectFlag(Obj,LIQUIDPOOL) || GetObjectFlag(Obj,LIQUIDCONTAINER)", {"Type", Type});
  const TObjectEntry& Entry = ObjectEntry(Type);
  const int Color = LiquidColor(LiquidType);
  return {PatternIndex(Color % 4, Entry.PatternWidth), PatternIndex(Color / 4, Entry.PatternHeight),
          1};
}

TPattern GetHangPattern(int Type, int HookMark) {
  Check(GetObjectFlag(Type, HANG), "GetObjectFlag(Obj,HANG)", {"Type", Type});
  const int Width = ObjectEntry(Type).PatternWidth;
  if (HookMark == HOOKSOUTH && Width >= 2) return {2, 1, 1};
  if (HookMark == HOOKEAST && Width >= 3) return {3, 1, 1};
  return {1, 1, 1};
}

TPattern GetPositionPattern(int Type, int X, int Y, int Z) {
  const TObjectEntry& Entry = ObjectEntry(Type);
  return {PatternIndex(X, Entry.PatternWidth), PatternIndex(Y, Entry.PatternHeight),
          PatternIndex(Z, Entry.PatternDepth)};
}

TPattern GetObjectPattern(int Type, std::uint32_t Data, int HookMark, int X, int Y, int Z) {
  if (GetObjectFlag(Type, CUMULATIVE)) return GetCumulativePattern(Type, static_cast<int>(Data));
  if (GetObjectFlag(Type, LIQUIDPOOL) || GetObjectFlag(Type, LIQUIDCONTAINER)) {
    return GetLiquidPattern(Type, static_cast<int>(Data));
  }
  if (GetObjectFlag(Type, HANG)) return GetHangPattern(Type, HookMark);
  return GetPositionPattern(Type, X, Y, Z);
}

bool GetOutfitFlag(int Type, int Flag) {
  return OutfitEntry(Type).Flags.test(static_cast<size_t>(Flag));
}
int GetOutfitLightBrightness(int Type) {
  return EntryWithFlag(OutfitEntry(Type), Type, LIGHT, "GetEntryFlag(Entry,LIGHT)").LightBrightness;
}
int GetOutfitLightColor(int Type) {
  return EntryWithFlag(OutfitEntry(Type), Type, LIGHT, "GetEntryFlag(Entry,LIGHT)").LightColor;
}
int GetOutfitShiftX(int Type) {
  return EntryWithFlag(OutfitEntry(Type), Type, SHIFT, "GetEntryFlag(Entry,SHIFT)").ShiftX;
}
int GetOutfitShiftY(int Type) {
  return EntryWithFlag(OutfitEntry(Type), Type, SHIFT, "GetEntryFlag(Entry,SHIFT)").ShiftY;
}
int GetOutfitWidth(int Type) { return OutfitEntry(Type).Width; }
int GetOutfitHeight(int Type) { return OutfitEntry(Type).Height; }
int GetOutfitDisplaySize(int Type) { return OutfitEntry(Type).DisplaySize; }
int GetOutfitLayers(int Type) { return OutfitEntry(Type).Layers; }
int GetOutfitPatternWidth(int Type) { return OutfitEntry(Type).PatternWidth; }
int GetOutfitPatternHeight(int Type) { return OutfitEntry(Type).PatternHeight; }
int GetOutfitPatternDepth(int Type) { return OutfitEntry(Type).PatternDepth; }
int GetOutfitPhases(int Type) { return OutfitEntry(Type).Phases; }
const boost::intrusive_ptr<TAnimation>& GetOutfitAnimation(int Type) {
  return OutfitEntry(Type).Animation;
}
int GetOutfitAddons(int Type) {
  switch (OutfitEntry(Type).PatternHeight) {
    case 2: return 1;
    case 3: return 3;
    case 4: return 7;
    default: return 0;
  }
}
std::uint32_t GetOutfitSprite(int Type, int X, int Y, int Layer, int Direction, int PatternY,
                              int PatternZ, int Phase) {
  return SpriteOf(OutfitEntry(Type), X, Y, Layer, Direction + 1, PatternY, PatternZ, Phase);
}

bool GetEffectFlag(int Type, int Flag) {
  return EffectEntry(Type).Flags.test(static_cast<size_t>(Flag));
}
int GetEffectLightBrightness(int Type) {
  return EntryWithFlag(EffectEntry(Type), Type, LIGHT, "GetEntryFlag(Entry,LIGHT)").LightBrightness;
}
int GetEffectLightColor(int Type) {
  return EntryWithFlag(EffectEntry(Type), Type, LIGHT, "GetEntryFlag(Entry,LIGHT)").LightColor;
}
int GetEffectWidth(int Type) { return EffectEntry(Type).Width; }
int GetEffectHeight(int Type) { return EffectEntry(Type).Height; }
int GetEffectLayers(int Type) { return EffectEntry(Type).Layers; }
int GetEffectPatternWidth(int Type) { return EffectEntry(Type).PatternWidth; }
int GetEffectPatternHeight(int Type) { return EffectEntry(Type).PatternHeight; }
int GetEffectPhases(int Type) { return EffectEntry(Type).Phases; }
const boost::intrusive_ptr<TAnimation>& GetEffectAnimation(int Type) {
  return EffectEntry(Type).Animation;
}
std::uint32_t GetEffectSprite(int Type, int X, int Y, int Layer, int PatternX, int PatternY,
                              int Phase) {
  return SpriteOf(EffectEntry(Type), X, Y, Layer, PatternX, PatternY, 1, Phase);
}

bool GetMissileFlag(int Type, int Flag) {
  return MissileEntry(Type).Flags.test(static_cast<size_t>(Flag));
}
int GetMissileLightBrightness(int Type) {
  return EntryWithFlag(MissileEntry(Type), Type, LIGHT, "GetEntryFlag(Entry,LIGHT)")
      .LightBrightness;
}
int GetMissileLightColor(int Type) {
  return EntryWithFlag(MissileEntry(Type), Type, LIGHT, "GetEntryFlag(Entry,LIGHT)").LightColor;
}
int GetMissileWidth(int Type) { return MissileEntry(Type).Width; }
int GetMissileHeight(int Type) { return MissileEntry(Type).Height; }
int GetMissileLayers(int Type) { return MissileEntry(Type).Layers; }
std::uint32_t GetMissileSprite(int Type, int X, int Y, int Layer, int Direction) {
  Check(Direction >= 0 && Direction <= 7, "In(Direction,0,7)", {"Direction", Direction});
  static constexpr std::array<int, 8> PatternX{2, 3, 3, 3, 2, 1, 1, 1};
  static constexpr std::array<int, 8> PatternY{1, 1, 2, 3, 3, 3, 2, 1};
  return SpriteOf(MissileEntry(Type), X, Y, Layer, PatternX[static_cast<size_t>(Direction)],
                  PatternY[static_cast<size_t>(Direction)], 1, 1);
}
