#include "tools/databuild/TypeFile.h"

#include <filesystem>

#include "core/Exception.h"
#include "core/Script.h"

namespace {

void WriteFlag(TBinaryFileWriter& Writer, const TFlagRecord& Flag) {
  Writer.writeByte(Flag.Flag);
  for (size_t I = 0; I < Flag.Operands.size(); ++I) {
    Writer.writeWord(Flag.Operands[I]);
    if (Flag.Flag == MARKET && I == 2) {  // the name follows the show-as type
      Writer.writeWord(static_cast<std::uint16_t>(Flag.Name.size()));
      const auto* Bytes = reinterpret_cast<const std::uint8_t*>(Flag.Name.data());
      Writer.writeBytes({Bytes, Flag.Name.size()});
    }
  }
}

void WriteAnimation(TBinaryFileWriter& Writer, const TAnimationRecord& Animation) {
  Writer.writeByte(Animation.AnimationType);
  Writer.writeQuad(static_cast<std::uint32_t>(Animation.LoopCount));
  Writer.writeByte(static_cast<std::uint8_t>(Animation.StartPhase));
  for (const auto& [Shortest, Longest] : Animation.Durations) {
    Writer.writeQuad(Shortest);
    Writer.writeQuad(Longest);
  }
}

void WriteRecord(TBinaryFileWriter& Writer, const TObjectRecord& Record) {
  for (const TFlagRecord& Flag : Record.Flags) WriteFlag(Writer, Flag);
  Writer.writeByte(FLAGS);
  Writer.writeByte(Record.Width);
  Writer.writeByte(Record.Height);
  if (HasDisplaySize(Record)) Writer.writeByte(Record.DisplaySize);
  for (std::uint8_t Value : {Record.Layers, Record.PatternWidth, Record.PatternHeight,
                             Record.PatternDepth, Record.Phases}) {
    Writer.writeByte(Value);
  }
  if (Record.Phases > 1) WriteAnimation(Writer, Record.Animation);
  for (std::uint32_t Sprite : Record.Sprites) Writer.writeQuad(Sprite);
}

// The highest number of a table, as the header has it.
std::uint16_t HighestNumber(const TTypeFile& File, TTypeKind Kind) {
  const long long Highest =
      FirstTypeNumber(Kind) - 1 + static_cast<long long>(File.Table(Kind).size());
  if (Highest > UINT16_MAX) {
    ThrowException("too many types",
                   {{"Kind", KindName(Kind)}, {"Highest", std::to_string(Highest)}});
  }
  return static_cast<std::uint16_t>(Highest);
}

int TableSize(TTypeKind Kind, std::uint16_t Highest) {
  const int First = FirstTypeNumber(Kind);
  Check(Highest >= First - 1, "High>=Low-1", {"Low", First}, {"High", Highest});
  return Highest - First + 1;
}

}  // namespace

const char* KindName(TTypeKind Kind) {
  static constexpr std::array<const char*, 4> Names{"object", "outfit", "effect", "missile"};
  return Names[static_cast<size_t>(Kind)];
}

int FirstTypeNumber(TTypeKind Kind) { return Kind == TTypeKind::OBJECT ? 100 : 1; }

std::vector<std::uint32_t> TSpriteCounter::Take(long long Count) {
  std::vector<std::uint32_t> Sprites;
  for (long long I = 0; I < Count; ++I) Sprites.push_back(m_Next++);
  return Sprites;
}

bool TSpriteCounter::IsNext(const std::vector<std::uint32_t>& Sprites) const {
  for (size_t I = 0; I < Sprites.size(); ++I) {
    if (Sprites[I] != m_Next + I) return false;
  }
  return true;
}

void WriteDatFile(const TTypeFile& File, const std::string& FileName) {
  const std::string Temporary = FileName + ".tmp";
  {
    TBinaryFileWriter Writer;
    Writer.open(Temporary);
    Writer.writeQuad(File.Signature);
    for (TTypeKind Kind : TYPE_KINDS) Writer.writeWord(HighestNumber(File, Kind));
    for (TTypeKind Kind : TYPE_KINDS) {
      for (const TObjectRecord& Record : File.Table(Kind)) WriteRecord(Writer, Record);
    }
    Writer.close();
  }
  std::filesystem::rename(Temporary, FileName);
}

TTypeFile ReadDatFile(const std::string& FileName) {
  TBinaryFileReader Reader;
  Reader.open(FileName);
  const TObjectFileHeader Header = ReadObjectFileHeader(Reader);
  TTypeFile File;
  File.Signature = Header.Signature;
  const std::array<std::uint16_t, 4> Highest{Header.HighestObject, Header.HighestOutfit,
                                             Header.HighestEffect, Header.HighestMissile};
  for (TTypeKind Kind : TYPE_KINDS) {
    const int Count = TableSize(Kind, Highest[static_cast<size_t>(Kind)]);
    for (int I = 0; I < Count; ++I) File.Table(Kind).push_back(ReadObjectRecord(Reader));
  }
  if (Reader.tell() != Reader.getSize()) {
    ThrowException("data after the last record", {{"FileName", FileName}});
  }
  return File;
}
