#include "tools/databuild/TypeSources.h"

#include <algorithm>
#include <optional>
#include <ostream>

#include "core/Exception.h"
#include "core/Script.h"

namespace {

// The source names of the flags with a meaning, by flag number.
constexpr std::array<const char*, DEFAULTACTION + 1> FLAG_NAMES{
    "bank",       "edge",          "bottom",    "top",          "container",  "cumulative",
    "forceuse",   "multiuse",      "write",     "writeonce",    "liquidcontainer",
    "liquidpool", "unpassable",    "unmovable", "blocksight",   "blockpath",  "avoid",
    "takeable",   "hang",          "hooksouth", "hookeast",     "rotatable",  "light",
    "roofless",   "dimlight",      "shift",     "height",       "lying",      "idleanimation",
    "automap",    "lenshelp",      "fullbank",  "lookthrough",  "clothes",    "market",
    "defaultaction"};

// A flag byte without a meaning is written as "flag = <number>".
constexpr int FIRST_RAW_FLAG = DEFAULTACTION + 1;

std::optional<int> FlagByName(const std::string& Name) {
  const auto* Found = std::find(FLAG_NAMES.begin(), FLAG_NAMES.end(), Name);
  if (Found == FLAG_NAMES.end()) return std::nullopt;
  return static_cast<int>(Found - FLAG_NAMES.begin());
}

// The picture's pixel size when the source gives none.
int DefaultDisplaySize(const TObjectRecord& Record) {
  return 32 * std::max(Record.Width, Record.Height);
}

struct TSourceRecord {
  TObjectRecord Record;
  bool HasSprites = false;
  std::string Art;
};

// The parts of a record's picture that are checked once the record is closed.
struct TPictureSettings {
  bool HasDisplaySize = false;
  bool HasAnimation = false;  // any of animation, loops, start
  int StartPhase = 0;         // 0: random
};

class TSourceParser {
 public:
  void Parse(const std::string& FileName);
  TTypeSources Finish();

 private:
  void Statement();
  void Record(TTypeKind Kind);
  void Property(const std::string& Name, TSourceRecord& Source, TPictureSettings& Picture);
  bool PictureProperty(const std::string& Name, TSourceRecord& Source, TPictureSettings& Picture);
  bool AnimationProperty(const std::string& Name, TObjectRecord& Record,
                         TPictureSettings& Picture);
  void FlagProperty(int Flag, TObjectRecord& Record);
  void PhasesProperty(TObjectRecord& Record);
  void CheckPicture(TSourceRecord& Source, const TPictureSettings& Picture);
  void AddFlag(TObjectRecord& Record, TFlagRecord Flag);

  long long Number(long long Low, long long High);
  long long NumberOr(const char* Word, long long Value);
  std::vector<std::uint8_t> Dimensions(int Count);
  std::uint8_t Byte(int Low = 0) { return static_cast<std::uint8_t>(Number(Low, UINT8_MAX)); }
  std::uint16_t Word() { return static_cast<std::uint16_t>(Number(0, UINT16_MAX)); }
  // Any number up to 4294967295: the reader's numbers wrap, as 32-bit values do.
  std::uint32_t Quad() { return static_cast<std::uint32_t>(m_Reader.readNumber()); }
  // Reads ',' and answers true, or ')' and answers false.
  bool ListGoesOn();
  // Whether the current token is that special character.
  bool IsSpecial(char Special) {
    return m_Reader.getToken() == TOKEN::SPECIAL && m_Reader.getSpecial() == Special;
  }

  TScriptReader m_Reader;
  std::optional<std::uint32_t> m_Signature;
  std::array<std::vector<TSourceRecord>, 4> m_Tables;
};

void TSourceParser::Parse(const std::string& FileName) {
  m_Reader.open(FileName);
  for (m_Reader.nextToken(); m_Reader.getToken() != TOKEN::ENDOFFILE; m_Reader.nextToken()) {
    Statement();
  }
  m_Reader.close();
}

void TSourceParser::Statement() {
  const std::string& Word = m_Reader.getIdentifier();
  if (Word == "signature") {
    if (m_Signature.has_value()) m_Reader.error("signature given twice");
    m_Reader.readSymbol('=');
    m_Signature = Quad();
    return;
  }
  for (TTypeKind Kind : TYPE_KINDS) {
    if (Word == KindName(Kind)) return Record(Kind);
  }
  m_Reader.error("signature, object, outfit, effect or missile expected");
}

void TSourceParser::Record(TTypeKind Kind) {
  auto& Table = m_Tables[static_cast<size_t>(Kind)];
  const long long Expected = FirstTypeNumber(Kind) + static_cast<long long>(Table.size());
  if (m_Reader.readNumber() != Expected) {
    m_Reader.error(std::string(KindName(Kind)) + " " + std::to_string(Expected) + " expected");
  }
  m_Reader.readSymbol('{');
  TSourceRecord Source;
  TPictureSettings Picture;
  for (m_Reader.nextToken(); !IsSpecial('}'); m_Reader.nextToken()) {
    const std::string Name = m_Reader.getIdentifier();
    Property(Name, Source, Picture);
  }
  CheckPicture(Source, Picture);
  Table.push_back(std::move(Source));
}

void TSourceParser::Property(const std::string& Name, TSourceRecord& Source,
                             TPictureSettings& Picture) {
  if (const std::optional<int> Flag = FlagByName(Name)) return FlagProperty(*Flag, Source.Record);
  m_Reader.readSymbol('=');
  if (Name == "flag") {
    const auto Flag = static_cast<std::uint8_t>(Number(FIRST_RAW_FLAG, FLAGS - 1));
    return AddFlag(Source.Record, {Flag, {}, {}});
  }
  if (PictureProperty(Name, Source, Picture)) return;
  if (AnimationProperty(Name, Source.Record, Picture)) return;
  m_Reader.error("unknown property '" + Name + "'");
}

bool TSourceParser::PictureProperty(const std::string& Name, TSourceRecord& Source,
                                    TPictureSettings& Picture) {
  TObjectRecord& Record = Source.Record;
  if (Name == "size") {
    const std::vector<std::uint8_t> Size = Dimensions(2);
    Record.Width = Size[0];
    Record.Height = Size[1];
  } else if (Name == "displaysize") {
    Record.DisplaySize = Byte();
    Picture.HasDisplaySize = true;
  } else if (Name == "layers") {
    Record.Layers = Byte(1);
  } else if (Name == "patterns") {
    const std::vector<std::uint8_t> Patterns = Dimensions(3);
    Record.PatternWidth = Patterns[0];
    Record.PatternHeight = Patterns[1];
    Record.PatternDepth = Patterns[2];
  } else if (Name == "art") {
    if (!Source.Art.empty()) m_Reader.error("art given twice");
    Source.Art = m_Reader.readString();
    if (Source.Art.empty()) m_Reader.error("art name expected");
  } else if (Name == "sprites") {
    m_Reader.readSymbol('(');
    do {
      Record.Sprites.push_back(Quad());
    } while (ListGoesOn());
    Source.HasSprites = true;
  } else {
    return false;
  }
  return true;
}

bool TSourceParser::AnimationProperty(const std::string& Name, TObjectRecord& Record,
                                      TPictureSettings& Picture) {
  if (Name == "phases") {
    PhasesProperty(Record);
    return true;
  }
  if (Name == "animation") {
    const std::string& Kind = m_Reader.readIdentifier();
    if (Kind != "synchron" && Kind != "asynchron") m_Reader.error("synchron or asynchron expected");
    Record.Animation.AnimationType = Kind == "synchron" ? ANIMATION_SYNCHRON : ANIMATION_ASYNCHRON;
  } else if (Name == "loops") {
    Record.Animation.LoopCount = static_cast<std::int32_t>(NumberOr("pingpong", -1));
  } else if (Name == "start") {
    Picture.StartPhase = static_cast<int>(NumberOr("random", 0));
    if (Picture.StartPhase < 0) m_Reader.error("start phase out of range");
  } else {
    return false;
  }
  Picture.HasAnimation = true;
  return true;
}

void TSourceParser::FlagProperty(int Flag, TObjectRecord& Record) {
  TFlagRecord Entry{static_cast<std::uint8_t>(Flag), {}, {}};
  const int Count = FlagOperandCount(Flag);
  if (Count > 0) m_Reader.readSymbol('=');
  if (Count > 1) m_Reader.readSymbol('(');
  for (int I = 0; I < Count; ++I) {
    if (I > 0) m_Reader.readSymbol(',');
    Entry.Operands.push_back(Word());
    if (Flag == MARKET && I == 2) {  // the name follows the show-as type
      m_Reader.readSymbol(',');
      Entry.Name = m_Reader.readString();
      if (Entry.Name.size() >= MARKET_NAME_LENGTH) m_Reader.error("market name too long");
    }
  }
  if (Count > 1) m_Reader.readSymbol(')');
  AddFlag(Record, std::move(Entry));
}

// ((shortest, longest), ...) in milliseconds, one pair per phase.
void TSourceParser::PhasesProperty(TObjectRecord& Record) {
  std::vector<TFrameDuration>& Durations = Record.Animation.Durations;
  m_Reader.readSymbol('(');
  do {
    m_Reader.readSymbol('(');
    const std::uint32_t Shortest = Quad();
    m_Reader.readSymbol(',');
    const std::uint32_t Longest = Quad();
    if (Longest < Shortest) m_Reader.error("longest duration below shortest");
    m_Reader.readSymbol(')');
    Durations.emplace_back(Shortest, Longest);
  } while (ListGoesOn());
  if (Durations.size() < 2 || Durations.size() > UINT8_MAX) {
    m_Reader.error("2 to 255 phases expected");
  }
  Record.Phases = static_cast<std::uint8_t>(Durations.size());
}

void TSourceParser::AddFlag(TObjectRecord& Record, TFlagRecord Flag) {
  for (const TFlagRecord& Other : Record.Flags) {
    if (Other.Flag == Flag.Flag) m_Reader.error("flag given twice");
  }
  Record.Flags.push_back(std::move(Flag));
}

// At the closing brace of a record.
void TSourceParser::CheckPicture(TSourceRecord& Source, const TPictureSettings& Picture) {
  TObjectRecord& Record = Source.Record;
  if (Picture.HasDisplaySize && !HasDisplaySize(Record)) {
    m_Reader.error("displaysize needs a picture of more than one field");
  }
  if (HasDisplaySize(Record) && !Picture.HasDisplaySize) {
    if (DefaultDisplaySize(Record) > UINT8_MAX) m_Reader.error("displaysize needed");
    Record.DisplaySize = static_cast<std::uint8_t>(DefaultDisplaySize(Record));
  }
  if (Picture.HasAnimation && Record.Phases < 2) m_Reader.error("animation without phases");
  // The file keeps the start phase less 1 in a signed byte.
  if (Picture.StartPhase > std::min<int>(Record.Phases, INT8_MAX + 1)) {
    m_Reader.error("start phase out of range");
  }
  Record.Animation.StartPhase = static_cast<std::int8_t>(Picture.StartPhase - 1);
  if (Source.HasSprites && !Source.Art.empty()) {
    m_Reader.error("art draws the sprites that it is given: no sprites with art");
  }
  const long long Count = SpriteCount(Record);
  if (Count > MAX_SPRITES_PER_TYPE) m_Reader.error("more than 16384 sprites");
  if (Source.HasSprites && static_cast<long long>(Record.Sprites.size()) != Count) {
    m_Reader.error(std::to_string(Record.Sprites.size()) + " sprites given, the picture has " +
                   std::to_string(Count));
  }
}

long long TSourceParser::Number(long long Low, long long High) {
  const long long Value = m_Reader.readNumber();
  if (Value < Low || Value > High) {
    m_Reader.error("number out of range, " + std::to_string(Low) + " to " + std::to_string(High));
  }
  return Value;
}

// The next token: the word, which stands for Value, or a number that may be negative.
long long TSourceParser::NumberOr(const char* Word, long long Value) {
  m_Reader.nextToken();
  if (m_Reader.getToken() == TOKEN::IDENTIFIER) {
    if (m_Reader.getIdentifier() != Word) {
      m_Reader.error(std::string(Word) + " or a number expected");
    }
    return Value;
  }
  if (IsSpecial('-')) return -static_cast<long long>(m_Reader.readNumber());
  return m_Reader.getNumber();
}

// "(a, b, ...)": Count numbers from 1 to 255.
std::vector<std::uint8_t> TSourceParser::Dimensions(int Count) {
  std::vector<std::uint8_t> Values;
  m_Reader.readSymbol('(');
  for (int I = 0; I < Count; ++I) {
    if (I > 0) m_Reader.readSymbol(',');
    Values.push_back(Byte(1));
  }
  m_Reader.readSymbol(')');
  return Values;
}

bool TSourceParser::ListGoesOn() {
  const char Separator = m_Reader.readSpecial();
  if (Separator != ',' && Separator != ')') m_Reader.error("',' or ')' expected");
  return Separator == ',';
}

// Sprite numbers are handed out in file order, whatever the order of the sources.
TTypeSources TSourceParser::Finish() {
  if (!m_Signature.has_value()) ThrowException("no signature in the sources");
  TTypeSources Result;
  Result.File.Signature = *m_Signature;
  TSpriteCounter Counter;
  for (TTypeKind Kind : TYPE_KINDS) {
    for (TSourceRecord& Source : m_Tables[static_cast<size_t>(Kind)]) {
      if (!Source.HasSprites) Source.Record.Sprites = Counter.Take(SpriteCount(Source.Record));
      Result.File.Table(Kind).push_back(std::move(Source.Record));
      Result.Art[static_cast<size_t>(Kind)].push_back(std::move(Source.Art));
    }
  }
  return Result;
}

// ---- the dump

std::string Quoted(const std::string& Text) {
  std::string Result = "\"";
  for (char C : Text) {
    if (C == '"' || C == '\\') Result += '\\';
    Result += C;
  }
  return Result + "\"";
}

void WriteFlag(const TFlagRecord& Flag, std::ostream& Out) {
  if (Flag.Flag >= FIRST_RAW_FLAG) {
    Out << "  flag = " << int{Flag.Flag} << "\n";
    return;
  }
  Out << "  " << FLAG_NAMES[Flag.Flag];
  const std::vector<std::uint16_t>& Op = Flag.Operands;
  if (Flag.Flag == MARKET) {
    Out << " = (" << Op[0] << ", " << Op[1] << ", " << Op[2] << ", " << Quoted(Flag.Name) << ", "
        << Op[3] << ", " << Op[4] << ")";
  } else if (Op.size() == 1) {
    Out << " = " << Op[0];
  } else if (Op.size() == 2) {
    Out << " = (" << Op[0] << ", " << Op[1] << ")";
  }
  Out << "\n";
}

void WriteAnimation(const TObjectRecord& Record, std::ostream& Out) {
  const TAnimationRecord& Animation = Record.Animation;
  Out << "  phases = (";
  for (size_t I = 0; I < Animation.Durations.size(); ++I) {
    Out << (I > 0 ? ", " : "") << "(" << Animation.Durations[I].first << ", "
        << Animation.Durations[I].second << ")";
  }
  Out << ")\n";
  if (Animation.AnimationType == ANIMATION_SYNCHRON) Out << "  animation = synchron\n";
  if (Animation.LoopCount == -1) {
    Out << "  loops = pingpong\n";
  } else if (Animation.LoopCount != 0) {
    Out << "  loops = " << Animation.LoopCount << "\n";
  }
  if (Animation.StartPhase != -1) Out << "  start = " << Animation.StartPhase + 1 << "\n";
}

void WritePicture(const TObjectRecord& R, TSpriteCounter& Counter, std::ostream& Out) {
  if (std::min({R.Width, R.Height, R.Layers, R.PatternWidth, R.PatternHeight, R.PatternDepth,
                R.Phases}) == 0) {
    ThrowException("a picture with a dimension of 0 has no source form");
  }
  if (R.Width != 1 || R.Height != 1) Out << "  size = (" << +R.Width << ", " << +R.Height << ")\n";
  if (HasDisplaySize(R) && R.DisplaySize != DefaultDisplaySize(R)) {
    Out << "  displaysize = " << +R.DisplaySize << "\n";
  }
  if (R.Layers != 1) Out << "  layers = " << +R.Layers << "\n";
  if (R.PatternWidth != 1 || R.PatternHeight != 1 || R.PatternDepth != 1) {
    Out << "  patterns = (" << +R.PatternWidth << ", " << +R.PatternHeight << ", "
        << +R.PatternDepth << ")\n";
  }
  if (R.Phases > 1) WriteAnimation(R, Out);
  if (Counter.IsNext(R.Sprites)) {
    Counter.Take(static_cast<long long>(R.Sprites.size()));
    return;
  }
  Out << "  sprites = (";
  for (size_t I = 0; I < R.Sprites.size(); ++I) {
    Out << (I == 0 ? "" : I % 10 == 0 ? ",\n    " : ", ") << R.Sprites[I];
  }
  Out << ")\n";
}

}  // namespace

TTypeSources ReadTypeSourcesWithArt(const std::vector<std::string>& FileNames) {
  TSourceParser Parser;
  for (const std::string& FileName : FileNames) Parser.Parse(FileName);
  return Parser.Finish();
}

TTypeFile ReadTypeSources(const std::vector<std::string>& FileNames) {
  return ReadTypeSourcesWithArt(FileNames).File;
}

void WriteTypeSource(const TTypeFile& File, std::ostream& Out) {
  Out << "# Written by kelmo-databuild --dump.\n\nsignature = " << File.Signature << "\n";
  TSpriteCounter Counter;
  for (TTypeKind Kind : TYPE_KINDS) {
    int Number = FirstTypeNumber(Kind);
    for (const TObjectRecord& Record : File.Table(Kind)) {
      Out << "\n" << KindName(Kind) << " " << Number++ << " {\n";
      for (const TFlagRecord& Flag : Record.Flags) WriteFlag(Flag, Out);
      WritePicture(Record, Counter, Out);
      Out << "}\n";
    }
  }
}
