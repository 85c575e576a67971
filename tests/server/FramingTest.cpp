// The server's packets, checked against the wire layout with a decipher loop
// of the test's own, and the server's checks of client packets.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "core/Exception.h"
#include "net/Checksum.h"
#include "tests/server/WireClient.h"
#include "tools/server/Fields.h"
#include "tools/server/Framing.h"

namespace {

using namespace testing_server;
using server::FramePacket;
using server::TRandom;

const TSessionKey SESSION_KEY = MakeSessionKey(0x40);

template <typename TAction>
std::string FailureText(TAction&& Action) {
  try {
    Action();
  } catch (const TMyException& Failure) {
    return Failure.Text();
  }
  return "(no failure)";
}

// XTEA deciphering as published: 32 rounds backwards from sum 0xC6EF3720,
// halves and key words little-endian.
void TestDecipher(std::uint8_t* Block, const TSessionKey& KeyBytes) {
  std::uint32_t Key[4];
  for (int I = 0; I < 4; ++I) Key[I] = LoadU32(KeyBytes, 4 * I);
  std::uint32_t V0 = LoadU32({Block, 8}, 0);
  std::uint32_t V1 = LoadU32({Block, 8}, 4);
  std::uint32_t Sum = 0xC6EF3720;
  for (int Round = 0; Round < 32; ++Round) {
    V1 -= (((V0 << 4) ^ (V0 >> 5)) + V0) ^ (Sum + Key[(Sum >> 11) & 3]);
    Sum -= 0x9E3779B9;
    V0 -= (((V1 << 4) ^ (V1 >> 5)) + V1) ^ (Sum + Key[Sum & 3]);
  }
  for (int I = 0; I < 4; ++I) {
    Block[I] = static_cast<std::uint8_t>(V0 >> (8 * I));
    Block[4 + I] = static_cast<std::uint8_t>(V1 >> (8 * I));
  }
}

TBytes Payload(std::size_t Length) {
  TBytes Bytes(Length);
  for (std::size_t I = 0; I < Length; ++I) Bytes[I] = static_cast<std::uint8_t>(0x80 + I);
  return Bytes;
}

TEST(ServerFraming, EncipheredPacketHasSizeChecksumAndWholeBlocks) {
  TRandom Random(1);
  const TXTEASymmetricKey Key = XteaKey(SESSION_KEY);
  for (std::size_t Length : {0u, 1u, 5u, 6u, 7u, 14u, 100u}) {
    const TBytes Packet = FramePacket(Payload(Length), &Key, Random);
    const std::size_t Blocks = (2 + Length + 7) / 8;
    ASSERT_EQ(Packet.size(), 6 + 8 * Blocks) << Length;
    EXPECT_EQ(LoadU16(Packet, 0), Packet.size() - 2);
    EXPECT_EQ(LoadU32(Packet, 2), Adler32(Packet.data() + 6, static_cast<int>(Packet.size() - 6)))
        << "the checksum covers the enciphered bytes behind it";
    TBytes Plain(Packet.begin() + 6, Packet.end());
    for (std::size_t At = 0; At < Plain.size(); At += 8) TestDecipher(&Plain[At], SESSION_KEY);
    EXPECT_EQ(LoadU16(Plain, 0), Length);
    EXPECT_EQ(TBytes(Plain.begin() + 2, Plain.begin() + 2 + Length), Payload(Length));
  }
}

TEST(ServerFraming, SmallestPacketIsOneBlock) {
  TRandom Random(1);
  const TXTEASymmetricKey Key = XteaKey(SESSION_KEY);
  EXPECT_EQ(FramePacket({}, &Key, Random).size(), 14u);
  EXPECT_EQ(LoadU16(FramePacket({}, &Key, Random), 0), 12u);
}

TEST(ServerFraming, PaddingComesFromTheGenerator) {
  const TXTEASymmetricKey Key = XteaKey(SESSION_KEY);
  TRandom First(1);
  TRandom Second(2);
  TRandom Again(1);
  const TBytes Payload1 = Payload(1);
  EXPECT_NE(FramePacket(Payload1, &Key, First), FramePacket(Payload1, &Key, Second));
  TRandom Reference(1);
  TBytes Plain = FramePacket(Payload1, nullptr, Again);
  for (std::size_t At = 9; At < Plain.size(); ++At)
    EXPECT_EQ(Plain[At], static_cast<std::uint8_t>(Reference())) << "padding byte " << At;
}

TEST(ServerFraming, PlainFirstPacketHasTheSameLayoutWithoutCipher) {
  TRandom Random(7);
  const TBytes Body = {31, 0x78, 0x56, 0x34, 0x12, 0x9C};  // a challenge
  const TBytes Packet = FramePacket(Body, nullptr, Random);
  ASSERT_EQ(Packet.size(), 14u);
  EXPECT_EQ(LoadU16(Packet, 0), 12u);
  EXPECT_EQ(LoadU32(Packet, 2), Adler32(Packet.data() + 6, 8));
  EXPECT_EQ(LoadU16(Packet, 6), 6u);
  EXPECT_EQ(TBytes(Packet.begin() + 8, Packet.end()), Body);
}

TEST(ServerFraming, KnownAnswerOfOneEncipheredPacket) {
  TRandom Random(5);
  const TXTEASymmetricKey Key = XteaKey(SESSION_KEY);
  const TBytes Packet = FramePacket(TBytes{30}, &Key, Random);  // SPINGBACK
  ASSERT_EQ(Packet.size(), 14u);
  TBytes Block(Packet.begin() + 6, Packet.end());
  TestDecipher(Block.data(), SESSION_KEY);
  EXPECT_EQ(Block[0], 1);
  EXPECT_EQ(Block[1], 0);
  EXPECT_EQ(Block[2], 30);
}

TEST(ServerFraming, PacketBeyondTheClientsReceiveBufferFails) {
  TRandom Random(1);
  const TXTEASymmetricKey Key = XteaKey(SESSION_KEY);
  EXPECT_EQ(FailureText([&] { FramePacket(TBytes(0x600E - 8), &Key, Random); }), "(no failure)");
  EXPECT_EQ(FailureText([&] { FramePacket(TBytes(0x600E - 7), &Key, Random); }),
            "packet does not fit the client's receive buffer");
}

TEST(ServerFraming, DoubleEncodingAddsTheBiasToTheScaledValue) {
  const auto Check = [](double Value, int Precision, std::uint32_t Raw) {
    const server::TWireDouble Wire = server::EncodeDouble(Value, Precision);
    EXPECT_EQ(Wire.Precision, Precision);
    EXPECT_EQ(Wire.Raw, Raw) << Value;
  };
  Check(857.36, 2, 2147483647u + 85736u);
  Check(261.29, 2, 2147483647u + 26129u);
  Check(-4795.01, 2, 2147483647u - 479501u);
  Check(0, 0, 2147483647u);
  Check(-1.5, 1, 2147483647u - 15u);
  EXPECT_EQ(FailureText([] { server::EncodeDouble(2147483649.0, 0); }), "double out of range");
  EXPECT_EQ(FailureText([] { server::EncodeDouble(-2147483648.0, 0); }), "double out of range");
  EXPECT_EQ(FailureText([] { server::EncodeDouble(1, 10); }), "precision of double out of range");
}

TEST(ServerFraming, DoubleGoesOnTheWireAsPrecisionAndRaw) {
  server::TMessageWriter Writer;
  Writer.Begin(99, "TEST");
  Writer.Double("speed", -4795.01, 2);
  const TBytes Expected = {99, 2, 0xF2, 0xAE, 0xF8, 0x7F};  // 2147004146 = 0x7FF8AEF2
  EXPECT_EQ(TBytes(Writer.Payload().begin(), Writer.Payload().end()), Expected);
}

TEST(ServerAssembler, CutsTheStreamIntoPackets) {
  server::TPacketAssembler Assembler;
  const TBytes First = {3, 0, 1, 2, 3};
  const TBytes Second = {1, 0, 9};
  Assembler.Append({First.data(), 1});
  EXPECT_FALSE(Assembler.Next());
  Assembler.Append({First.data() + 1, 3});
  EXPECT_FALSE(Assembler.Next()) << "one byte is still missing";
  TBytes Rest = {First[4]};
  Rest.insert(Rest.end(), Second.begin(), Second.end());
  Assembler.Append(Rest);
  EXPECT_EQ(Assembler.Next(), First);
  EXPECT_EQ(Assembler.Next(), Second);
  EXPECT_FALSE(Assembler.Next());
}

TEST(ServerAssembler, SizeBeyondTheClientsSendBufferFailsAtOnce) {
  server::TPacketAssembler Assembler;
  const TBytes Head = {0xFF, 0x07};  // 2047 bytes follow: 2049 in all
  Assembler.Append(Head);
  EXPECT_EQ(FailureText([&] { Assembler.Next(); }), "packet is larger than the client's send buffer");
  server::TPacketAssembler Largest;
  const TBytes Fits = {0xFE, 0x07};
  Largest.Append(Fits);
  EXPECT_EQ(FailureText([&] { Largest.Next(); }), "(no failure)");
}

TEST(ServerOpening, PlainLoginPacketGivesItsPayload) {
  const TBytes Body = {1, 2, 3, 4, 5};
  EXPECT_EQ(server::OpenPlainPacket(PlainPacket(Body)), Body);
}

TEST(ServerOpening, PlainPacketWithWrongChecksumOrNoPayloadFails) {
  TBytes Packet = PlainPacket(TBytes{1, 2, 3});
  Packet[2] ^= 1;
  EXPECT_EQ(FailureText([&] { server::OpenPlainPacket(Packet); }), "checksum is not correct");
  const TBytes Empty = {4, 0, 0, 0, 0, 0};
  EXPECT_EQ(FailureText([&] { server::OpenPlainPacket(Empty); }), "packet holds no command");
}

TEST(ServerOpening, EncipheredPacketGivesItsPayload) {
  const TXTEASymmetricKey Key = XteaKey(SESSION_KEY);
  for (std::size_t Length : {1u, 6u, 7u, 30u}) {
    EXPECT_EQ(server::OpenEncipheredPacket(EncipheredPacket(Payload(Length), Key), Key), Payload(Length));
  }
}

// A packet of the given blocks, enciphered and sealed, however wrong their content.
TBytes SealedBlocks(TBytes Blocks, const TXTEASymmetricKey& Key) {
  for (std::size_t At = 0; At + 8 <= Blocks.size(); At += 8) EncipherBlock(&Blocks[At], Key);
  TByteWriter Packet;
  Packet.U16(static_cast<std::uint32_t>(Blocks.size() + 4));
  Packet.U32(Adler32(Blocks.data(), static_cast<int>(Blocks.size())));
  return Packet.Raw(Blocks).Bytes();
}

TEST(ServerOpening, EncipheredPacketFailures) {
  const TXTEASymmetricKey Key = XteaKey(SESSION_KEY);
  TBytes BadChecksum = EncipheredPacket(TBytes{29}, Key);
  BadChecksum[5] ^= 0x10;
  EXPECT_EQ(FailureText([&] { server::OpenEncipheredPacket(BadChecksum, Key); }), "checksum is not correct");
  EXPECT_EQ(FailureText([&] { server::OpenEncipheredPacket(SealedBlocks(TBytes(4, 0), Key), Key); }),
            "packet size is too small even for one encrypted block");
  EXPECT_EQ(FailureText([&] { server::OpenEncipheredPacket(SealedBlocks(TBytes(9, 0), Key), Key); }),
            "packet size does not fit to symmetric encryption");
  EXPECT_EQ(FailureText([&] {
              server::OpenEncipheredPacket(SealedBlocks({7, 0, 29, 0, 0, 0, 0, 0}, Key), Key);
            }),
            "payload length exceeds the packet");
  TBytes TwoBlocks(16, 0);
  TwoBlocks[0] = 1;
  TwoBlocks[2] = 29;
  EXPECT_EQ(FailureText([&] { server::OpenEncipheredPacket(SealedBlocks(TwoBlocks, Key), Key); }),
            "padding is longer than one block");
  EXPECT_EQ(FailureText([&] { server::OpenEncipheredPacket(SealedBlocks(TBytes(8, 0), Key), Key); }),
            "packet holds no command");
}

}  // namespace
