#pragma once
// The layout of Kelmo.dat: a 12-byte header, then one record per type, read
// here exactly as it stands in the file. The type tables are built from these
// records; the data builder dumps them.
#include <cstdint>
#include <string>
#include <vector>

#include "world/Animation.h"

class TBinaryFileReader;

// The flag bytes of a record, in file order. A flag byte above DEFAULTACTION
// sets its bit and means nothing; FLAGS ends the list.
enum OBJECTFLAG : int {
  BANK = 0,
  EDGE = 1,
  BOTTOM = 2,
  TOP = 3,
  CONTAINER = 4,
  CUMULATIVE = 5,
  FORCEUSE = 6,
  MULTIUSE = 7,
  WRITE = 8,
  WRITEONCE = 9,
  LIQUIDCONTAINER = 10,
  LIQUIDPOOL = 11,
  UNPASSABLE = 12,
  UNMOVABLE = 13,
  BLOCKSIGHT = 14,
  BLOCKPATH = 15,
  AVOID = 16,
  TAKEABLE = 17,
  HANG = 18,
  HOOKSOUTH = 19,
  HOOKEAST = 20,
  ROTATABLE = 21,
  LIGHT = 22,
  ROOFLESS = 23,
  DIMLIGHT = 24,
  SHIFT = 25,
  HEIGHT = 26,
  LYING = 27,
  IDLEANIMATION = 28,
  AUTOMAP = 29,
  LENSHELP = 30,
  FULLBANK = 31,
  LOOKTHROUGH = 32,
  CLOTHES = 33,
  MARKET = 34,
  DEFAULTACTION = 35,
  FLAGS = 255,
};

// A market name has at most this many bytes, its terminator included.
constexpr int MARKET_NAME_LENGTH = 30;
// Width x Height x Layers x patterns x Phases of one record.
constexpr int MAX_SPRITES_PER_TYPE = 16384;

struct TObjectFileHeader {
  std::uint32_t Signature = 0;
  // The highest number of each table.
  std::uint16_t HighestObject = 0;
  std::uint16_t HighestOutfit = 0;
  std::uint16_t HighestEffect = 0;
  std::uint16_t HighestMissile = 0;
};

// MARKET's operands, in file order, are category, trade-as type, show-as
// type, Name, profession mask and minimum level.
struct TFlagRecord {
  std::uint8_t Flag = 0;
  std::vector<std::uint16_t> Operands;
  std::string Name;
  bool operator==(const TFlagRecord&) const = default;
};

// Present when Phases is above 1. StartPhase is as stored: one less than the
// phase, -1 for a random start.
struct TAnimationRecord {
  std::uint8_t AnimationType = ANIMATION_ASYNCHRON;
  std::int32_t LoopCount = 0;
  std::int8_t StartPhase = -1;
  std::vector<TFrameDuration> Durations;
  bool operator==(const TAnimationRecord&) const = default;
};

struct TObjectRecord {
  std::vector<TFlagRecord> Flags;
  std::uint8_t Width = 1;
  std::uint8_t Height = 1;
  // Stored only if Width or Height is above 1.
  std::uint8_t DisplaySize = 32;
  std::uint8_t Layers = 1;
  std::uint8_t PatternWidth = 1;
  std::uint8_t PatternHeight = 1;
  std::uint8_t PatternDepth = 1;
  std::uint8_t Phases = 1;
  TAnimationRecord Animation;
  std::vector<std::uint32_t> Sprites;
  bool operator==(const TObjectRecord&) const = default;
};

// The number of 16-bit operands after a flag byte, MARKET's name not counted.
int FlagOperandCount(int Flag);
bool HasDisplaySize(const TObjectRecord& Record);
// The product of the picture's dimensions, as a wide number: seven bytes
// multiplied may exceed 32 bits.
long long SpriteCount(const TObjectRecord& Record);

TObjectFileHeader ReadObjectFileHeader(TBinaryFileReader& Reader);
// Fails on a bad animation type, a market name of MARKET_NAME_LENGTH bytes or
// more and more than MAX_SPRITES_PER_TYPE sprites, besides the reader's "out of data".
TObjectRecord ReadObjectRecord(TBinaryFileReader& Reader);
