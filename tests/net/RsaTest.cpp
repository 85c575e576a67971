#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <fstream>
#include <map>
#include <string>

#include "net/DeploymentKey.h"
#include "net/LargeNumber.h"
#include "net/Rsa.h"
#include "tests/net/TestSupport.h"

// The enciphered blocks were computed with Python's pow() and checked with
// "openssl pkeyutl -encrypt -pkeyopt rsa_padding_mode:none" under the key in
// the tree; a new key (tools/make-rsa-key.sh --force) needs them again.
namespace {

using testing_net::FailureText;
using TBlock = std::array<std::uint8_t, TRSAPublicKey::BLOCK_SIZE>;

TBlock PlainBlock() {
  TBlock Block{};
  for (std::size_t I = 1; I < Block.size(); ++I) Block[I] = static_cast<std::uint8_t>(I * 37 + 11);
  return Block;
}

// The plain block with 16808 in its last four bytes enciphers to a number
// with two zero bytes in front.
TBlock LeadingZeroPlainBlock() {
  TBlock Block = PlainBlock();
  Block[124] = 0;
  Block[125] = 0;
  Block[126] = 16808 >> 8;
  Block[127] = 16808 & 0xFF;
  return Block;
}

constexpr TBlock CIPHER = {
    0x04, 0xAB, 0x61, 0x86, 0x25, 0x16, 0x00, 0x7D, 0x48, 0x0B, 0xEE, 0x08, 0x5F, 0x13, 0x1C, 0x13,
    0x0E, 0x33, 0xDE, 0xFC, 0x0A, 0xBE, 0x63, 0x10, 0x00, 0x16, 0x9E, 0x69, 0x32, 0xED, 0xC7, 0x13,
    0x5C, 0x24, 0xC0, 0x3E, 0xA7, 0x9E, 0xB9, 0xF3, 0x2C, 0xBB, 0x1E, 0x61, 0xE2, 0x23, 0x99, 0x9D,
    0x74, 0x08, 0x99, 0x76, 0xF3, 0x90, 0x9B, 0xE0, 0xBB, 0xF0, 0x16, 0xB8, 0x27, 0x42, 0xD1, 0x3A,
    0xD9, 0x0E, 0x53, 0x9A, 0xD1, 0x00, 0x4D, 0xED, 0x04, 0x60, 0x87, 0xA0, 0x65, 0x88, 0xBD, 0x4A,
    0xEE, 0x0D, 0x6A, 0x9F, 0xFD, 0x8C, 0x82, 0x8F, 0x08, 0x0B, 0x18, 0x9C, 0x3B, 0x95, 0x0C, 0x40,
    0x20, 0xED, 0x87, 0x8F, 0xCA, 0xCB, 0xFA, 0xD9, 0x77, 0xD8, 0xB4, 0xE8, 0x58, 0x9E, 0x2E, 0x63,
    0x4F, 0x5A, 0xA7, 0xE8, 0x14, 0x7A, 0x40, 0xE1, 0x5C, 0xF4, 0x4C, 0x6F, 0x55, 0xA2, 0xB7, 0x97};

constexpr TBlock LEADING_ZERO_CIPHER = {
    0x00, 0x00, 0x37, 0x84, 0xE3, 0xE6, 0xC5, 0x36, 0x9E, 0xB2, 0xFE, 0x28, 0xDF, 0x51, 0xB4, 0x16,
    0x05, 0x0A, 0xF8, 0x93, 0x8E, 0xB6, 0x6F, 0x03, 0x9B, 0xA2, 0xA5, 0xEA, 0x47, 0x9E, 0x5B, 0xCA,
    0x9F, 0x75, 0xE9, 0xC7, 0x75, 0x6E, 0x4F, 0x87, 0x9A, 0xCE, 0xC4, 0x74, 0x93, 0xDE, 0xBD, 0xB2,
    0x3F, 0x4D, 0xF2, 0x6D, 0xA2, 0xDA, 0x48, 0x63, 0x60, 0xF3, 0xB3, 0xC3, 0xB0, 0xA9, 0xBE, 0xB5,
    0xD9, 0x0D, 0xAC, 0x69, 0xEB, 0xF8, 0x73, 0xDE, 0xB6, 0x8A, 0x0D, 0xC9, 0x4F, 0xEC, 0xAE, 0xC6,
    0x76, 0x6F, 0x7D, 0xD5, 0xFB, 0x72, 0xAE, 0x42, 0x19, 0xE1, 0xDE, 0x22, 0xF0, 0xB8, 0xF4, 0x5F,
    0x79, 0x52, 0x4E, 0x28, 0xA2, 0x4F, 0x17, 0x1A, 0x82, 0x7E, 0x7E, 0xD4, 0x74, 0x08, 0x19, 0x2A,
    0x61, 0xB5, 0x62, 0xB0, 0x33, 0x69, 0x64, 0x94, 0x60, 0x82, 0x73, 0x30, 0x32, 0xAA, 0xF9, 0x6F};

// The server's half of the key, "name value" lines.
std::map<std::string, std::string> ReadServerKey() {
  std::ifstream File(KELMO_SOURCE_DIR "/data/server/rsa-key.txt");
  std::map<std::string, std::string> Values;
  for (std::string Name, Value; File >> Name >> Value;) Values[Name] = Value;
  return Values;
}

TBlock Decipher(const TBlock& Cipher) {
  const auto Key = ReadServerKey();
  const TLargeNumber Plain = PowMod(TLargeNumber::FromBigEndian(Cipher),
                                    TLargeNumber::FromDecimal(Key.at("private-exponent")),
                                    TLargeNumber::FromDecimal(Key.at("modulus")));
  TBlock Block{};
  Plain.ToBigEndian(Block);
  return Block;
}

TEST(Rsa, BuiltInModulusHas309DigitsAndMatchesTheServerKey) {
  EXPECT_EQ(std::string(DEFAULT_RSA_MODULUS).size(), 309u);
  EXPECT_EQ(TLargeNumber::FromDecimal(DEFAULT_RSA_MODULUS).BitLength(), 1024);
  EXPECT_EQ(ReadServerKey().at("modulus"), DEFAULT_RSA_MODULUS);
}

TEST(Rsa, EnciphersTheKnownBlock) {
  TBlock Block = PlainBlock();
  TRSAPublicKey(DEFAULT_RSA_MODULUS).EncipherBlock(Block.data());
  EXPECT_EQ(Block, CIPHER);
}

TEST(Rsa, PrivateExponentDeciphersBackToThePlainBlock) {
  EXPECT_EQ(Decipher(CIPHER), PlainBlock());
  TBlock Block = PlainBlock();
  Block[5] ^= 0x40;
  TRSAPublicKey(DEFAULT_RSA_MODULUS).EncipherBlock(Block.data());
  Block = Decipher(Block);
  EXPECT_EQ(Block[5], PlainBlock()[5] ^ 0x40);
}

TEST(Rsa, ResultWithLeadingZeroBytesStillFillsTheBlock) {
  TBlock Block = LeadingZeroPlainBlock();
  TRSAPublicKey(DEFAULT_RSA_MODULUS).EncipherBlock(Block.data());
  EXPECT_EQ(Block[0], 0);
  EXPECT_EQ(Block[1], 0);
  EXPECT_EQ(Block, LEADING_ZERO_CIPHER);
  EXPECT_EQ(Decipher(Block), LeadingZeroPlainBlock());
}

TEST(Rsa, SmallModulusKnownAnswer) {
  TBlock Block{};
  Block[127] = 65;
  TRSAPublicKey("3233").EncipherBlock(Block.data());
  TBlock Expected{};
  Expected[126] = 2790 >> 8;
  Expected[127] = 2790 & 0xFF;
  EXPECT_EQ(Block, Expected);
}

// With an odd exponent, modulus minus one enciphers to itself.
TEST(Rsa, ModulusMinusOneIsAccepted) {
  TBlock Block{};
  Block[126] = 3232 >> 8;
  Block[127] = 3232 & 0xFF;
  const TBlock Plain = Block;
  TRSAPublicKey("3233").EncipherBlock(Block.data());
  EXPECT_EQ(Block, Plain);
}

// The largest block that the first-byte rule lets through is below every
// modulus of 1024 bits.
TEST(Rsa, LargestAllowedBlockRoundTrips) {
  TBlock Block;
  Block.fill(0xFF);
  Block[0] = 0x7F;
  const TBlock Plain = Block;
  TRSAPublicKey(DEFAULT_RSA_MODULUS).EncipherBlock(Block.data());
  EXPECT_NE(Block, Plain);
  EXPECT_EQ(Decipher(Block), Plain);
}

// A modulus of 1024 bits has its top bit set, so a plain value equal to it is
// already refused by the first-byte rule; a smaller modulus reaches the
// comparison.
TEST(Rsa, PlainEqualToTheModulusIsRefused) {
  TBlock Block{};
  TLargeNumber::FromDecimal(DEFAULT_RSA_MODULUS).ToBigEndian(Block);
  EXPECT_EQ(FailureText([&] { TRSAPublicKey(DEFAULT_RSA_MODULUS).EncipherBlock(Block.data()); }),
            "first byte of data is larger than 127 which violates the condition 'plain < m'");
  const std::string Smaller = "1" + std::string(300, '0');
  TLargeNumber::FromDecimal(Smaller).ToBigEndian(Block);
  const TBlock Plain = Block;
  EXPECT_EQ(FailureText([&] { TRSAPublicKey(Smaller).EncipherBlock(Block.data()); }),
            "Plain is not smaller than m_ModulusM which violates the condition 'plain < m'");
  EXPECT_EQ(Block, Plain);
  (TLargeNumber::FromDecimal(Smaller) - TLargeNumber(1)).ToBigEndian(Block);
  EXPECT_NO_THROW(TRSAPublicKey(Smaller).EncipherBlock(Block.data()));  // one below
}

// The check comes before any arithmetic: even a modulus far above any block
// does not let the byte through.
TEST(Rsa, FirstByteAbove127IsRefusedBeforeAnyArithmetic) {
  TBlock Block = PlainBlock();
  Block[0] = 128;
  const TBlock Plain = Block;
  const TRSAPublicKey Key(std::string(400, '9'));
  EXPECT_EQ(FailureText([&] { Key.EncipherBlock(Block.data()); }),
            "first byte of data is larger than 127 which violates the condition 'plain < m'");
  EXPECT_EQ(Block, Plain);
}

TEST(Rsa, NullDataAndZeroModulusAreRefused) {
  EXPECT_EQ(FailureText([] { TRSAPublicKey(DEFAULT_RSA_MODULUS).EncipherBlock(nullptr); }),
            "Data pointer is NULL");
  TBlock Block{};
  EXPECT_EQ(FailureText([&] { TRSAPublicKey("0").EncipherBlock(Block.data()); }),
            "m_ModulusM is 0");
}

TEST(Rsa, NonDigitInTheModulusTextIsRethrownWithThePrefix) {
  try {
    TRSAPublicKey Key("12345x7");
    FAIL() << "no failure";
  } catch (const TMyException& E) {
    EXPECT_EQ(E.Text(), "failed to convert decimal text to large number");
    EXPECT_NE(
        std::string(E.what()).find("failed to convert decimal text to large number, reason: "),
        std::string::npos);
    EXPECT_NE(E.Reason().find("digit out of range"), std::string::npos) << E.Reason();
  }
}

// A result that cannot fit its 128 bytes is reported with the writer's prefix.
TEST(Rsa, ResultTooLargeForTheBlockIsRethrownWithThePrefix) {
  TBlock Block{};
  Block[127] = 2;
  const TRSAPublicKey Key("1" + std::string(320, '0'));  // above 2^1024, so 2^65537 mod it is too
  try {
    Key.EncipherBlock(Block.data());
    FAIL() << "no failure";
  } catch (const TMyException& E) {
    EXPECT_EQ(E.Text(), "failed to convert large number to byte array");
    EXPECT_NE(E.Reason().find("number does not fit into byte array"), std::string::npos);
  }
}

}  // namespace
