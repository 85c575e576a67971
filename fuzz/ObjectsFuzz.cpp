#include "fuzz/ObjectsFuzz.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "core/Exception.h"
#include "world/Objects.h"

namespace fs = std::filesystem;

namespace {

// Plain characters, so that the exit handler still finds the name.
std::array<char, 4096> Directory{};

void RemoveDirectory() {
  std::error_code Error;
  fs::remove_all(Directory.data(), Error);
}

std::string FilePath() {
  if (Directory[0] == 0) {
    const std::string Template = (fs::temp_directory_path() / "kelmo-objects-fuzz-XXXXXX").string();
    if (Template.size() >= Directory.size()) std::abort();
    Template.copy(Directory.data(), Template.size());
    if (mkdtemp(Directory.data()) == nullptr) {
      std::perror("mkdtemp");
      std::abort();
    }
    std::atexit(RemoveDirectory);
  }
  return std::string(Directory.data()) + "/Kelmo.dat";
}

// The tables' upper bounds stand in the header, which a loaded file has.
int HeaderNumber(const std::uint8_t* Data, int Offset) { return Data[Offset] | Data[Offset + 1] << 8; }

// A picture with a dimension of 0 has no sprites to ask for.
bool HasSprites(std::initializer_list<int> Dimensions) {
  return std::all_of(Dimensions.begin(), Dimensions.end(), [](int D) { return D > 0; });
}

void AskObjects(int Highest) {
  for (int Type = FIRST_OBJECT_TYPE; Type <= Highest; ++Type) {
    GetObjectName(Type);
    if (!HasSprites({GetObjectWidth(Type), GetObjectHeight(Type), GetObjectLayers(Type),
                     GetObjectPatternWidth(Type), GetObjectPatternHeight(Type),
                     GetObjectPatternDepth(Type), GetObjectPhases(Type)})) {
      continue;
    }
    GetObjectSprite(Type, 1, 1, 1, 1, 1, 1, 1);
    GetObjectSprite(Type, GetObjectWidth(Type), GetObjectHeight(Type), GetObjectLayers(Type),
                    GetObjectPatternWidth(Type), GetObjectPatternHeight(Type),
                    GetObjectPatternDepth(Type), GetObjectPhases(Type));
    // Every pattern that an instance can choose must lie inside the picture.
    const TPattern Pattern = GetObjectPattern(Type, 7, HOOKSOUTH, 32000, 32001, 7);
    GetObjectSprite(Type, 1, 1, 1, Pattern.X, Pattern.Y, Pattern.Z, 1);
  }
}

void AskOutfits(int Highest) {
  for (int Type = 1; Type <= Highest; ++Type) {
    GetOutfitAddons(Type);
    if (!HasSprites({GetOutfitWidth(Type), GetOutfitHeight(Type), GetOutfitLayers(Type),
                     GetOutfitPatternWidth(Type), GetOutfitPatternHeight(Type),
                     GetOutfitPatternDepth(Type), GetOutfitPhases(Type)})) {
      continue;
    }
    GetOutfitSprite(Type, GetOutfitWidth(Type), GetOutfitHeight(Type), GetOutfitLayers(Type), 0,
                    GetOutfitPatternHeight(Type), GetOutfitPatternDepth(Type),
                    GetOutfitPhases(Type));
  }
}

void AskEffects(int Highest) {
  for (int Type = 1; Type <= Highest; ++Type) {
    if (!HasSprites({GetEffectWidth(Type), GetEffectHeight(Type), GetEffectLayers(Type),
                     GetEffectPatternWidth(Type), GetEffectPatternHeight(Type),
                     GetEffectPhases(Type)})) {
      continue;
    }
    GetEffectSprite(Type, GetEffectWidth(Type), GetEffectHeight(Type), GetEffectLayers(Type),
                    GetEffectPatternWidth(Type), GetEffectPatternHeight(Type),
                    GetEffectPhases(Type));
  }
}

// A missile's directions need a picture of three by three patterns, which the
// loader doesn't demand; only the picture's own corner is asked for.
void AskMissiles(int Highest) {
  for (int Type = 1; Type <= Highest; ++Type) {
    GetMissileWidth(Type);
    GetMissileHeight(Type);
    GetMissileLayers(Type);
  }
}

}  // namespace

bool LoadObjectBytes(const std::uint8_t* Data, std::size_t Size) {
  const std::string Path = FilePath();
  std::ofstream(Path, std::ios::binary | std::ios::trunc)
      .write(reinterpret_cast<const char*>(Data), static_cast<std::streamsize>(Size));
  try {
    LoadObjects(Path);
  } catch (const TMyException&) {
    return false;
  }
  try {
    AskObjects(HeaderNumber(Data, 4));
    AskOutfits(HeaderNumber(Data, 6));
    AskEffects(HeaderNumber(Data, 8));
    AskMissiles(HeaderNumber(Data, 10));
    GetMarketList();
  } catch (const TMyException& Exception) {
    std::fprintf(stderr, "finding: a loaded file fails a question: %s\n", Exception.what());
    std::abort();
  }
  ExitObjects();
  return true;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size) {
  LoadObjectBytes(Data, Size);
  return 0;
}
