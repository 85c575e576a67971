#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "net/Communication.h"
#include "tests/net/TestSupport.h"

namespace {

using testing_net::FailureText;

TReadBuffer Over(const std::vector<std::uint8_t>& Bytes) {
  return TReadBuffer(Bytes.data(), static_cast<int>(Bytes.size()));
}

TEST(ReadBuffer, ReadsLittleEndianIntegers) {
  const std::vector<std::uint8_t> Bytes = {0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08, 0x09,
                                           0x0A, 0x0B, 0x0C, 0x0D, 0x0E, 0x0F};
  TReadBuffer Reader = Over(Bytes);
  EXPECT_EQ(Reader.ReadU8(), 0x01);
  EXPECT_EQ(Reader.ReadU16(), 0x0302);
  EXPECT_EQ(Reader.ReadU32(), 0x07060504u);
  EXPECT_EQ(Reader.ReadU64(), 0x0F0E0D0C0B0A0908ull);
  EXPECT_EQ(Reader.Position, 15);
}

TEST(ReadBuffer, EachWidthFailsOnePastItsBoundWithItsText) {
  const std::vector<std::uint8_t> Bytes(9, 0);
  struct TCase {
    int Position;
    std::string Text;
    void (*Read)(TReadBuffer&);
  };
  const TCase Cases[] = {
      {9, "Position<=Size-1", [](TReadBuffer& R) { R.ReadU8(); }},
      {8, "Position<=Size-2", [](TReadBuffer& R) { R.ReadU16(); }},
      {6, "Position<=Size-4", [](TReadBuffer& R) { R.ReadU32(); }},
      {2, "Position <= Size - 8", [](TReadBuffer& R) { R.ReadU64(); }},
  };
  for (const TCase& Case : Cases) {
    TReadBuffer Reader = Over(Bytes);
    Reader.Position = Case.Position;
    EXPECT_EQ(FailureText([&] { Case.Read(Reader); }), Case.Text);
    EXPECT_EQ(Reader.Position, Case.Position) << "a failed read consumes nothing";
    Reader.Position = Case.Position - 1;
    EXPECT_EQ(FailureText([&] { Case.Read(Reader); }), "(no failure)");
  }
}

TEST(ReadBuffer, FailureCarriesPositionAndSize) {
  const std::vector<std::uint8_t> Bytes(3, 0);
  TReadBuffer Reader = Over(Bytes);
  Reader.Position = 2;
  try {
    Reader.ReadU16();
    FAIL() << "no failure";
  } catch (const TMyException& E) {
    ASSERT_EQ(E.Values().size(), 2u);
    EXPECT_EQ(E.Values()[0].Name, "Position");
    EXPECT_EQ(E.Values()[0].Value, "2");
    EXPECT_EQ(E.Values()[1].Name, "Size");
    EXPECT_EQ(E.Values()[1].Value, "3");
    EXPECT_EQ(E.File(), "Communication.cpp");
  }
}

TEST(ReadBuffer, LongTextIsCutAndTheNextFieldStaysInPlace) {
  const std::vector<std::uint8_t> Bytes = {6, 0, 'K', 'e', 'l', 'm', 'o', '!', 0x34, 0x12};
  TReadBuffer Reader = Over(Bytes);
  std::array<char, 4> Text;
  Text.fill('#');
  Reader.ReadString(Text.data(), 4);
  EXPECT_STREQ(Text.data(), "Kel");
  EXPECT_EQ(Reader.ReadU16(), 0x1234);
}

TEST(ReadBuffer, TextThatFitsAndEmptyText) {
  const std::vector<std::uint8_t> Bytes = {3, 0, 'a', 'b', 'c', 0, 0};
  TReadBuffer Reader = Over(Bytes);
  std::array<char, 4> Text;
  Text.fill('#');
  Reader.ReadString(Text.data(), 4);
  EXPECT_STREQ(Text.data(), "abc");
  Text.fill('#');
  Reader.ReadString(Text.data(), 4);
  EXPECT_STREQ(Text.data(), "");
  EXPECT_EQ(Reader.Position, 7);
}

TEST(ReadBuffer, TextFailures) {
  const std::vector<std::uint8_t> Bytes = {5, 0, 'a', 'b'};
  char Text[8];
  TReadBuffer Reader = Over(Bytes);
  EXPECT_EQ(FailureText([&] { Reader.ReadString(nullptr, 8); }), "Buffer!=NULL");
  EXPECT_EQ(FailureText([&] { Reader.ReadString(Text, 8); }), "Position<=Size-Length");
  Reader.Position = 0;
  EXPECT_EQ(FailureText([&] { Reader.ReadNewString(); }), "Position<=Size-Length");
  Reader.Position = 3;
  EXPECT_EQ(FailureText([&] { Reader.ReadString(Text, 8); }), "Position<=Size-2");
}

TEST(ReadBuffer, NewStringKeepsEveryByte) {
  const std::vector<std::uint8_t> Bytes = {4, 0, 'a', 0, 0xE9, 'z', 0, 0};
  TReadBuffer Reader = Over(Bytes);
  EXPECT_EQ(Reader.ReadNewString(), std::string("a\0\xE9z", 4));
  EXPECT_EQ(Reader.ReadNewString(), "");
  EXPECT_EQ(Reader.Position, 8);
}

TEST(ReadBuffer, Bytes) {
  const std::vector<std::uint8_t> Bytes = {1, 2, 3, 4, 5};
  TReadBuffer Reader = Over(Bytes);
  std::array<std::uint8_t, 3> Target{};
  Reader.ReadBytes(Target.data(), 3);
  EXPECT_EQ(Target, (std::array<std::uint8_t, 3>{1, 2, 3}));
  EXPECT_EQ(FailureText([&] { Reader.ReadBytes(Target.data(), 3); }), "Position<=Size-Count");
  EXPECT_EQ(FailureText([&] { Reader.ReadBytes(nullptr, 1); }), "Buffer!=NULL");
  Reader.ReadBytes(Target.data(), 2);
  EXPECT_EQ(Reader.Position, 5);
}

TEST(ReadBuffer, DoubleIsBiasedRawOverPowerOfTen) {
  const auto Raw = [](std::uint32_t Value, std::uint8_t Precision) {
    return std::vector<std::uint8_t>{Precision, static_cast<std::uint8_t>(Value),
                                     static_cast<std::uint8_t>(Value >> 8),
                                     static_cast<std::uint8_t>(Value >> 16),
                                     static_cast<std::uint8_t>(Value >> 24)};
  };
  const auto Bytes1 = Raw(2147483647u + 12345u, 2);
  TReadBuffer Reader = Over(Bytes1);
  EXPECT_DOUBLE_EQ(Reader.ReadDouble(), 123.45);
  const auto Bytes2 = Raw(2147483647u - 5u, 0);
  Reader = Over(Bytes2);
  EXPECT_DOUBLE_EQ(Reader.ReadDouble(), -5.0);
  const auto Bytes3 = Raw(0u, 3);
  Reader = Over(Bytes3);
  EXPECT_DOUBLE_EQ(Reader.ReadDouble(), -2147483.647);
}

TEST(WriteBuffer, WritesLittleEndianFieldsAndText) {
  std::array<std::uint8_t, 16> Memory{};
  TWriteBuffer Writer(Memory.data(), 16);
  Writer.WriteU8(0xAB);
  Writer.WriteU16(0x1234);
  Writer.WriteU32(0xDEADBEEF);
  Writer.WriteString("hi");
  const std::uint8_t Raw[] = {9, 8};
  Writer.WriteBytes(Raw, 2);
  EXPECT_EQ(Writer.Position, 13);
  const std::array<std::uint8_t, 16> Expected = {0xAB, 0x34, 0x12, 0xEF, 0xBE, 0xAD, 0xDE, 2,
                                                 0,    'h',  'i',  9,    8,    0,    0,    0};
  EXPECT_EQ(Memory, Expected);
}

TEST(WriteBuffer, BoundsAndArgumentsFailWithTheirTexts) {
  std::array<std::uint8_t, 4> Memory{};
  TWriteBuffer Writer(Memory.data(), 4);
  Writer.Position = 4;
  EXPECT_EQ(FailureText([&] { Writer.WriteU8(1); }), "Position<=Size-1");
  Writer.Position = 3;
  EXPECT_EQ(FailureText([&] { Writer.WriteU16(1); }), "Position<=Size-2");
  Writer.Position = 1;
  EXPECT_EQ(FailureText([&] { Writer.WriteU32(1); }), "Position<=Size-4");
  Writer.Position = 0;
  EXPECT_EQ(FailureText([&] { Writer.WriteString(nullptr); }), "s!=NULL");
  EXPECT_EQ(FailureText([&] { Writer.WriteString("abc"); }), "Position<=Size-Length");
  Writer.Position = 0;
  EXPECT_EQ(FailureText([&] { Writer.WriteString("ab"); }), "(no failure)");
  const std::uint8_t Raw[] = {1, 2};
  Writer.Position = 3;
  EXPECT_EQ(FailureText([&] { Writer.WriteBytes(Raw, 2); }), "Position<=Size-Count");
  EXPECT_EQ(FailureText([&] { Writer.WriteBytes(nullptr, 1); }), "Buffer!=NULL");
}

}  // namespace
