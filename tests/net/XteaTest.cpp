#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <random>

#include "net/Xtea.h"
#include "tests/net/TestSupport.h"

namespace {

using testing_net::FailureText;

std::array<std::uint8_t, 8> BlockOfWords(std::uint32_t Left, std::uint32_t Right) {
  std::array<std::uint8_t, 8> Block{};
  for (int I = 0; I < 4; ++I) {
    Block[I] = static_cast<std::uint8_t>(Left >> (8 * I));
    Block[4 + I] = static_cast<std::uint8_t>(Right >> (8 * I));
  }
  return Block;
}

TEST(Xtea, ZeroKeyOnZeroBlockGivesThePublishedValue) {
  TXTEASymmetricKey Key;
  std::array<std::uint8_t, 8> Block{};
  EncipherBlock(Block.data(), Key);
  EXPECT_EQ(Block, BlockOfWords(0xDEE9D4D8, 0xF7131ED9));
  DecipherBlock(Block.data(), Key);
  EXPECT_EQ(Block, (std::array<std::uint8_t, 8>{}));
}

TEST(Xtea, CountingKeyGivesThePublishedValue) {
  TXTEASymmetricKey Key;
  Key.Key[0] = 0x00010203;
  Key.Key[1] = 0x04050607;
  Key.Key[2] = 0x08090A0B;
  Key.Key[3] = 0x0C0D0E0F;
  auto Block = BlockOfWords(0x41424344, 0x45464748);
  EncipherBlock(Block.data(), Key);
  EXPECT_EQ(Block, BlockOfWords(0x497DF3D0, 0x72612CB5));
}

TEST(Xtea, DecipherInvertsEncipherForRandomBlocksAndKeys) {
  std::mt19937 Random(1053);
  for (int Trial = 0; Trial < 1000; ++Trial) {
    TXTEASymmetricKey Key;
    for (std::uint32_t& Word : Key.Key) Word = Random();
    const auto Plain = BlockOfWords(Random(), Random());
    auto Block = Plain;
    EncipherBlock(Block.data(), Key);
    EXPECT_NE(Block, Plain);
    DecipherBlock(Block.data(), Key);
    ASSERT_EQ(Block, Plain) << "trial " << Trial;
  }
}

TEST(Xtea, KeyBytesAreLittleEndianWords) {
  std::array<std::uint8_t, 16> Bytes{};
  for (int I = 0; I < 16; ++I) Bytes[I] = static_cast<std::uint8_t>(I + 1);
  TXTEASymmetricKey Key;
  Key.Set(Bytes.data());
  EXPECT_EQ(Key.Key[0], 0x04030201u);
  EXPECT_EQ(Key.Key[1], 0x08070605u);
  EXPECT_EQ(Key.Key[2], 0x0C0B0A09u);
  EXPECT_EQ(Key.Key[3], 0x100F0E0Du);
}

TEST(Xtea, NullKeyBytesLeaveTheKeyUnchanged) {
  TXTEASymmetricKey Key;
  Key.Key[2] = 77;
  Key.Set(nullptr);
  EXPECT_EQ(Key.Key[0], 0u);
  EXPECT_EQ(Key.Key[2], 77u);
}

TEST(Xtea, NullBlockFails) {
  const TXTEASymmetricKey Key;
  EXPECT_EQ(FailureText([&] { EncipherBlock(nullptr, Key); }), "Symmetric encryption failed");
  EXPECT_EQ(FailureText([&] { DecipherBlock(nullptr, Key); }), "Symmetric decryption failed");
}

}  // namespace
