#pragma once
// The public half of the servers' RSA key, for the 128-byte block of the login
// commands. Textbook RSA without padding: the caller composes the whole block.
#include <cstdint>
#include <string_view>

#include "net/LargeNumber.h"

class TRSAPublicKey {
 public:
  static constexpr int BLOCK_SIZE = 128;
  static constexpr std::uint64_t PUBLIC_EXPONENT = 65537;

  // The modulus as decimal text.
  explicit TRSAPublicKey(std::string_view Text);

  // Replaces the BLOCK_SIZE bytes at Data with their encipherment. The first
  // byte must be below 128 so that the block, read big-endian, stays below the
  // modulus.
  void EncipherBlock(std::uint8_t* Data) const;

 private:
  TLargeNumber m_ModulusM;
};
