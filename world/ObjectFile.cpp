#include "world/ObjectFile.h"

#include "core/Exception.h"
#include "core/Script.h"

namespace {

TFlagRecord ReadFlag(TBinaryFileReader& Reader, std::uint8_t Flag) {
  TFlagRecord Record{Flag, {}, {}};
  const int Count = FlagOperandCount(Flag);
  for (int I = 0; I < Count; ++I) {
    Record.Operands.push_back(Reader.readWord());
    if (Flag == MARKET && I == 2) {  // the name follows the show-as type
      Record.Name = Reader.readString();
      const auto NameLength = static_cast<long long>(Record.Name.size());
      Check(NameLength < MARKET_NAME_LENGTH, "NameLength < MARKET_NAME_LENGTH",
            {"NameLength", NameLength});
    }
  }
  return Record;
}

TAnimationRecord ReadAnimation(TBinaryFileReader& Reader, int Phases) {
  TAnimationRecord Animation;
  Animation.AnimationType = Reader.readByte();
  Check(Animation.AnimationType == ANIMATION_ASYNCHRON ||
            Animation.AnimationType == ANIMATION_SYNCHRON,
        "AnimationType == ANIMATION_ASYNCHRON || AnimationType == ANIMATION_SYNCHRON",
        {"AnimationType", Animation.AnimationType});
  Animation.LoopCount = static_cast<std::int32_t>(Reader.readQuad());
  Animation.StartPhase = static_cast<std::int8_t>(Reader.readByte());
  for (int Phase = 0; Phase < Phases; ++Phase) {
    const std::uint32_t Shortest = Reader.readQuad();
    Animation.Durations.emplace_back(Shortest, Reader.readQuad());
  }
  return Animation;
}

}  // namespace

int FlagOperandCount(int Flag) {
  switch (Flag) {
    case BANK:
    case WRITE:
    case WRITEONCE:
    case HEIGHT:
    case AUTOMAP:
    case LENSHELP:
    case CLOTHES:
    case DEFAULTACTION:
      return 1;
    case LIGHT:
    case SHIFT:
      return 2;
    case MARKET:
      return 5;
    default:
      return 0;
  }
}

bool HasDisplaySize(const TObjectRecord& Record) { return Record.Width > 1 || Record.Height > 1; }

long long SpriteCount(const TObjectRecord& R) {
  return 1LL * R.Width * R.Height * R.Layers * R.PatternWidth * R.PatternHeight * R.PatternDepth *
         R.Phases;
}

TObjectFileHeader ReadObjectFileHeader(TBinaryFileReader& Reader) {
  TObjectFileHeader Header;
  Header.Signature = Reader.readQuad();
  Header.HighestObject = Reader.readWord();
  Header.HighestOutfit = Reader.readWord();
  Header.HighestEffect = Reader.readWord();
  Header.HighestMissile = Reader.readWord();
  return Header;
}

TObjectRecord ReadObjectRecord(TBinaryFileReader& Reader) {
  TObjectRecord Record;
  for (std::uint8_t Flag = Reader.readByte(); Flag != FLAGS; Flag = Reader.readByte()) {
    Record.Flags.push_back(ReadFlag(Reader, Flag));
  }
  Record.Width = Reader.readByte();
  Record.Height = Reader.readByte();
  if (HasDisplaySize(Record)) Record.DisplaySize = Reader.readByte();
  Record.Layers = Reader.readByte();
  Record.PatternWidth = Reader.readByte();
  Record.PatternHeight = Reader.readByte();
  Record.PatternDepth = Reader.readByte();
  Record.Phases = Reader.readByte();
  if (Record.Phases > 1) Record.Animation = ReadAnimation(Reader, Record.Phases);
  const long long Count = SpriteCount(Record);
  Check(Count <= MAX_SPRITES_PER_TYPE, "SpriteCount <= MAX_SPRITES_PER_TYPE",
        {"SpriteCount", Count});
  Record.Sprites.resize(static_cast<size_t>(Count));
  for (std::uint32_t& Sprite : Record.Sprites) Sprite = Reader.readQuad();
  return Record;
}
