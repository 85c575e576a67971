#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "core/Clock.h"
#include "net/Random.h"
#include "tests/net/TestSupport.h"

// The expected values come from a separate implementation of the published
// ISAAC written in Python; the batch after an all-zero seed is the published
// test vector.
namespace {

using testing_net::FailureText;

std::vector<std::uint8_t> Bytes(TRandomNumberGenerator& Generator, int Count) {
  std::vector<std::uint8_t> Result;
  for (int I = 0; I < Count; ++I) Result.push_back(Generator.GetRandomByte());
  return Result;
}

std::vector<std::uint8_t> Slice(const std::vector<std::uint8_t>& Bytes, int From, int Count) {
  return {Bytes.begin() + From, Bytes.begin() + From + Count};
}

TEST(Random, ZeroSeedKnownAnswers) {
  TRandomNumberGenerator Generator;
  const auto Stream = Bytes(Generator, 272);
  EXPECT_EQ(Slice(Stream, 0, 16),
            (std::vector<std::uint8_t>{0xF3, 0x8D, 0x22, 0x21, 0x79, 0xE9, 0xB5, 0x24, 0xAF, 0xEF,
                                       0xC2, 0xFB, 0x74, 0x1D, 0xBD, 0x7A}));
  EXPECT_EQ(Slice(Stream, 256, 16),
            (std::vector<std::uint8_t>{0x0F, 0xDA, 0x57, 0x5F, 0xB8, 0xD3, 0x10, 0x4A, 0x36, 0x55,
                                       0xD5, 0x21, 0x50, 0x81, 0xBB, 0x66}));
}

TEST(Random, FirstBatchAfterZeroSeedHoldsTheKnownWords) {
  TRandomNumberGenerator Generator;
  Generator.GetRandomByte();
  EXPECT_TRUE(Generator.Initialized);
  EXPECT_EQ(Generator.Count, 255u);
  EXPECT_EQ(Generator.Results[0], 0xE76DD339u);
  EXPECT_EQ(Generator.Results[1], 0xD91AA738u);
  EXPECT_EQ(Generator.Results[2], 0xD32956E5u);
  EXPECT_EQ(Generator.Results[3], 0xA264E933u);
  EXPECT_EQ(Generator.Results[255], 0x182600F3u);
}

TEST(Random, SecondBatchAfterZeroSeedIsThePublishedVector) {
  TRandomNumberGenerator Generator;
  Bytes(Generator, 257);
  const std::array<std::uint32_t, 8> Published = {0xF650E4C8, 0xE448E96D, 0x98DB2FB4, 0xF5FAD54F,
                                                  0x433F1AFB, 0xEDEC154A, 0xD8370487, 0x46CA4F9A};
  for (std::size_t I = 0; I < Published.size(); ++I)
    EXPECT_EQ(Generator.Results[I], Published[I]) << I;
}

// 300 seed bytes: the index wraps, so the first 44 words get two bytes each.
TEST(Random, SeededKnownAnswers) {
  TRandomNumberGenerator Generator;
  for (int I = 0; I < 300; ++I) Generator.AddRandomSeed(static_cast<std::uint8_t>(I * 7 + 3));
  EXPECT_EQ(Generator.SeedIndex, 300 - 256);
  EXPECT_EQ(Generator.Results[0], 3u + static_cast<std::uint8_t>(256 * 7 + 3));
  const auto Stream = Bytes(Generator, 272);
  EXPECT_EQ(Slice(Stream, 0, 16),
            (std::vector<std::uint8_t>{0xFC, 0x65, 0xAF, 0x81, 0x84, 0xB6, 0x5B, 0x52, 0x41, 0x7A,
                                       0x44, 0x72, 0x22, 0x47, 0xB1, 0x8F}));
  EXPECT_EQ(Slice(Stream, 256, 16),
            (std::vector<std::uint8_t>{0x77, 0xBD, 0xB7, 0x0A, 0x66, 0x49, 0xBB, 0x61, 0xAA, 0xBA,
                                       0x80, 0x66, 0xD5, 0xE9, 0x60, 0x6C}));
}

TEST(Random, SeedAfterTheFirstByteIsIgnored) {
  TRandomNumberGenerator Seeded;
  TRandomNumberGenerator Reference;
  Seeded.AddRandomSeed(1);
  Reference.AddRandomSeed(1);
  Seeded.GetRandomByte();
  Reference.GetRandomByte();
  const auto Results = Seeded.Results;
  for (int I = 0; I < 50; ++I) Seeded.AddRandomSeed(0xAB);
  EXPECT_EQ(Seeded.Results, Results);
  EXPECT_EQ(Seeded.SeedIndex, 1);
  EXPECT_EQ(Bytes(Seeded, 600), Bytes(Reference, 600));
}

TEST(Random, EachBatchIsGivenOutFromTheLastWordDown) {
  TRandomNumberGenerator Generator;
  Generator.AddRandomSeed(42);
  for (int Batch = 0; Batch < 3; ++Batch) {
    const std::uint8_t First = Generator.GetRandomByte();  // starts or refills the batch
    const auto Results = Generator.Results;
    EXPECT_EQ(First, static_cast<std::uint8_t>(Results[255])) << "batch " << Batch;
    for (int Index = 254; Index >= 0; --Index) {
      ASSERT_EQ(Generator.GetRandomByte(), static_cast<std::uint8_t>(Results[Index]))
          << "batch " << Batch << ", word " << Index;
    }
    EXPECT_EQ(Generator.Count, 0u);
  }
}

class TProgramRandomTest : public testing::Test {
 protected:
  void TearDown() override {
    ExitRandom();
    SetClockSource(nullptr);
  }
};

TEST_F(TProgramRandomTest, StartIsSeededWithTheTwoLowBytesOfTheClock) {
  auto Clock = std::make_shared<TManualClock>();
  Clock->AdvanceMilliseconds(0x561234);
  SetClockSource(Clock);
  InitRandom();
  TRandomNumberGenerator Reference;
  Reference.AddRandomSeed(0x34);
  Reference.AddRandomSeed(0x12);
  const std::vector<std::uint8_t> Expected = {0xFF, 0xB8, 0xB1, 0x4D, 0x05, 0x77, 0x67, 0x4F};
  std::vector<std::uint8_t> Stream;
  for (int I = 0; I < 8; ++I) Stream.push_back(GetRandomByte());
  EXPECT_EQ(Stream, Expected);
  EXPECT_EQ(Bytes(Reference, 8), Expected);
}

TEST_F(TProgramRandomTest, RestartGivesAFreshGeneratorAndSeedsReachIt) {
  SetClockSource(std::make_shared<TManualClock>());
  InitRandom();
  AddRandomSeed(9);
  SeedRandomFromClock();
  std::vector<std::uint8_t> First;
  for (int I = 0; I < 8; ++I) First.push_back(GetRandomByte());
  ExitRandom();
  InitRandom();
  AddRandomSeed(9);
  SeedRandomFromClock();
  std::vector<std::uint8_t> Second;
  for (int I = 0; I < 8; ++I) Second.push_back(GetRandomByte());
  EXPECT_EQ(First, Second);
  TRandomNumberGenerator Reference;
  for (const std::uint8_t Byte : {0, 0, 9, 0, 0}) Reference.AddRandomSeed(Byte);
  EXPECT_EQ(Bytes(Reference, 8), First);
}

TEST_F(TProgramRandomTest, UseWithoutStartFails) {
  EXPECT_EQ(FailureText([] { GetRandomByte(); }), "RandomNumberGenerator!=NULL");
  EXPECT_EQ(FailureText([] { AddRandomSeed(1); }), "RandomNumberGenerator!=NULL");
}

}  // namespace
