#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include "net/Checksum.h"
#include "tests/net/TestSupport.h"

namespace {

using testing_net::FailureText;

std::uint32_t OfText(const char* Text) {
  return Adler32(reinterpret_cast<const std::uint8_t*>(Text), static_cast<int>(std::strlen(Text)));
}

// The definition, reducing after every byte.
std::uint32_t Reference(const std::vector<std::uint8_t>& Data) {
  std::uint32_t A = 1, B = 0;
  for (const std::uint8_t Byte : Data) {
    A = (A + Byte) % 65521;
    B = (B + A) % 65521;
  }
  return B << 16 | A;
}

TEST(Adler32, KnownAnswers) {
  EXPECT_EQ(OfText("Wikipedia"), 0x11E60398u);
  EXPECT_EQ(OfText("a"), 0x00620062u);
  EXPECT_EQ(OfText("abc"), 0x024D0127u);
  EXPECT_EQ(OfText("The quick brown fox jumps over the lazy dog"), 0x5BDC0FDAu);
}

TEST(Adler32, LongRunsOfHighBytesAreReducedInTime) {
  for (const std::size_t Length : {5551u, 5552u, 5553u, 100000u}) {
    const std::vector<std::uint8_t> Data(Length, 0xFF);
    EXPECT_EQ(Adler32(Data.data(), static_cast<int>(Length)), Reference(Data)) << Length;
  }
}

TEST(Adler32, NullPointerAndZeroLengthFail) {
  const std::uint8_t Byte = 1;
  EXPECT_EQ(FailureText([] { Adler32(nullptr, 4); }), "data pointer of Adler-32 checksum is NULL");
  EXPECT_EQ(FailureText([&] { Adler32(&Byte, 0); }), "length of Adler-32 checksum is 0");
}

}  // namespace
