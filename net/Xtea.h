#pragma once
// XTEA, 32 rounds, one 8-byte block at a time (no chaining). The two halves of
// a block and the four key words are little-endian in memory.
#include <cstdint>

class TXTEASymmetricKey {
 public:
  virtual ~TXTEASymmetricKey() = default;

  // Takes 16 bytes, byte 0 the lowest of Key[0]; null leaves the key as it is.
  void Set(const std::uint8_t* Bytes);

  std::uint32_t Key[4] = {};
};

void EncipherBlock(std::uint8_t* Block, const TXTEASymmetricKey& Key);
void DecipherBlock(std::uint8_t* Block, const TXTEASymmetricKey& Key);
