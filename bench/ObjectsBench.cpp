// Loading Kelmo.dat: a generated file of 30,000 object types, with a mix of
// grounds, animated types, large pictures and market entries, and 600 outfits.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>

#include "tools/databuild/TypeFile.h"
#include "world/Objects.h"

namespace {

constexpr int OBJECT_TYPES = 30000;
constexpr int OUTFIT_TYPES = 600;

TFlagRecord Flag(int Number, std::vector<std::uint16_t> Operands = {}) {
  return {static_cast<std::uint8_t>(Number), std::move(Operands), {}};
}

void Animate(TObjectRecord& Record, std::uint8_t Phases) {
  Record.Phases = Phases;
  Record.Animation.Durations.assign(Phases, TFrameDuration{100, 200});
}

// Every tenth a ground, every seventh animated, every thirteenth two by two
// fields, every twentieth on the market.
TObjectRecord ObjectRecord(int Index, TSpriteCounter& Sprites) {
  TObjectRecord Record;
  if (Index % 10 == 0) Record.Flags.push_back(Flag(BANK, {150}));
  if (Index % 3 == 0) Record.Flags.push_back(Flag(TAKEABLE));
  if (Index % 11 == 0) Record.Flags.push_back(Flag(LIGHT, {3, 215}));
  if (Index % 20 == 0) {
    TFlagRecord Market = Flag(MARKET, {1, static_cast<std::uint16_t>(100 + Index), 0, 0, 0});
    Market.Name = "goods " + std::to_string(Index);
    Record.Flags.push_back(std::move(Market));
  }
  if (Index % 13 == 0) Record.Width = Record.Height = 2, Record.DisplaySize = 64;
  if (Index % 7 == 0) Animate(Record, 4);
  Record.Sprites = Sprites.Take(SpriteCount(Record));
  return Record;
}

TObjectRecord OutfitRecord(TSpriteCounter& Sprites) {
  TObjectRecord Record;
  Record.Layers = 2;
  Record.PatternWidth = 4;
  Record.PatternHeight = 3;
  Animate(Record, 3);
  Record.Sprites = Sprites.Take(SpriteCount(Record));
  return Record;
}

std::string WriteGeneratedFile() {
  TTypeFile File;
  File.Signature = 0x4B454C4D;
  TSpriteCounter Sprites;
  for (int I = 0; I < OBJECT_TYPES; ++I) File.Table(TTypeKind::OBJECT).push_back(ObjectRecord(I, Sprites));
  for (int I = 0; I < OUTFIT_TYPES; ++I) File.Table(TTypeKind::OUTFIT).push_back(OutfitRecord(Sprites));
  const auto Path = std::filesystem::temp_directory_path() / "kelmo-bench-objects.dat";
  WriteDatFile(File, Path.string());
  return Path.string();
}

void BM_LoadObjects(benchmark::State& State) {
  const std::string FileName = WriteGeneratedFile();
  for (auto _ : State) LoadObjects(FileName);
  State.counters["bytes"] = static_cast<double>(std::filesystem::file_size(FileName));
  ExitObjects();
  std::filesystem::remove(FileName);
}
BENCHMARK(BM_LoadObjects)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
