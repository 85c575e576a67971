#include "net/Xtea.h"

#include "core/Exception.h"

namespace {

constexpr std::uint32_t DELTA = 0x9E3779B9;
constexpr int ROUNDS = 32;
constexpr std::uint32_t DECIPHER_START = DELTA * ROUNDS;  // 0xC6EF3720

std::uint32_t LoadWord(const std::uint8_t* Bytes) {
  return std::uint32_t{Bytes[0]} | std::uint32_t{Bytes[1]} << 8 | std::uint32_t{Bytes[2]} << 16 |
         std::uint32_t{Bytes[3]} << 24;
}

void StoreWord(std::uint8_t* Bytes, std::uint32_t Word) {
  for (int I = 0; I < 4; ++I) Bytes[I] = static_cast<std::uint8_t>(Word >> (8 * I));
}

std::uint32_t Mix(std::uint32_t Half, std::uint32_t Sum, std::uint32_t KeyWord) {
  return (((Half << 4) ^ (Half >> 5)) + Half) ^ (Sum + KeyWord);
}

}  // namespace

void TXTEASymmetricKey::Set(const std::uint8_t* Bytes) {
  if (Bytes == nullptr) return;
  for (int I = 0; I < 4; ++I) Key[I] = LoadWord(Bytes + 4 * I);
}

void EncipherBlock(std::uint8_t* Block, const TXTEASymmetricKey& Key) {
  Check(Block != nullptr, "Symmetric encryption failed");
  std::uint32_t Left = LoadWord(Block);
  std::uint32_t Right = LoadWord(Block + 4);
  std::uint32_t Sum = 0;
  for (int Round = 0; Round < ROUNDS; ++Round) {
    Left += Mix(Right, Sum, Key.Key[Sum & 3]);
    Sum += DELTA;
    Right += Mix(Left, Sum, Key.Key[(Sum >> 11) & 3]);
  }
  StoreWord(Block, Left);
  StoreWord(Block + 4, Right);
}

void DecipherBlock(std::uint8_t* Block, const TXTEASymmetricKey& Key) {
  Check(Block != nullptr, "Symmetric decryption failed");
  std::uint32_t Left = LoadWord(Block);
  std::uint32_t Right = LoadWord(Block + 4);
  std::uint32_t Sum = DECIPHER_START;
  for (int Round = 0; Round < ROUNDS; ++Round) {
    Right -= Mix(Left, Sum, Key.Key[(Sum >> 11) & 3]);
    Sum -= DELTA;
    Left -= Mix(Right, Sum, Key.Key[Sum & 3]);
  }
  StoreWord(Block, Left);
  StoreWord(Block + 4, Right);
}
