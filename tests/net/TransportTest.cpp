#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

#include "core/ErrorReport.h"
#include "net/Checksum.h"
#include "net/Communication.h"
#include "net/Connection.h"
#include "net/Xtea.h"
#include "tests/net/ServerPacket.h"
#include "tests/net/TestSupport.h"

namespace {

using testing_net::FailureText;
using testing_net::GetU16;
using testing_net::GetU32;
using testing_net::Joined;
using testing_net::PutU16;
using testing_net::Seal;
using testing_net::ServerPacket;
using Bytes = std::vector<std::uint8_t>;

const std::array<std::uint8_t, 16> SESSION_KEY = {0x10, 0x32, 0x54, 0x76, 0x98, 0xBA, 0xDC, 0xFE,
                                                  0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF};

class Transport : public testing_net::TNetworkTest {
 protected:
  void SetUp() override {
    TNetworkTest::SetUp();
    SetSessionKey(SESSION_KEY.data());
    m_Key.Set(SESSION_KEY.data());
  }

  // Puts bytes into the receive buffer as a socket read would; true if a
  // packet has become complete.
  static bool Arrive(std::span<const std::uint8_t> Data) {
    const std::span<std::uint8_t> Space = ReceiveSpace();
    EXPECT_LE(Data.size(), Space.size());
    std::memcpy(Space.data(), Data.data(), Data.size());
    return CommitReceived(static_cast<int>(Data.size()));
  }

  Bytes Enciphered(const Bytes& Payload, std::uint8_t Padding = 0xEE) const {
    return ServerPacket(Payload, &m_Key, Padding);
  }

  TXTEASymmetricKey m_Key;
};

std::uint8_t NextPadding = 0;
std::uint8_t CountingPadding() { return NextPadding++; }

// ---- Outgoing

TEST_F(Transport, BeginCommandLeavesRoomForTheHeader) {
  BeginCommand(0x64);
  WriteU8(7);
  const auto Packet = FrameCommand(false);
  ASSERT_EQ(Packet.size(), 8u);
  EXPECT_EQ(Packet[6], 0x64);
  EXPECT_EQ(Packet[7], 7);
}

TEST_F(Transport, CommandTypeMustBeAByte) {
  EXPECT_EQ(FailureText([] { BeginCommand(256); }), "In(CommandType,0,255)");
  EXPECT_EQ(FailureText([] { BeginCommand(-1); }), "In(CommandType,0,255)");
  EXPECT_EQ(FailureText([] { BeginCommand(255); }), "(no failure)");
}

TEST_F(Transport, PlainCommandLayout) {
  BeginCommand(0x01);
  WriteU16(0x0302);
  WriteString("ab");
  const auto Packet = FrameCommand(false);
  // size, checksum, then the command with no inner length and no padding
  const Bytes Command = {0x01, 0x02, 0x03, 2, 0, 'a', 'b'};
  ASSERT_EQ(Packet.size(), 6 + Command.size());
  EXPECT_EQ(GetU16(Packet, 0), Packet.size() - 2);
  EXPECT_EQ(GetU32(Packet, 2), Adler32(Command.data(), static_cast<int>(Command.size())));
  EXPECT_EQ(Bytes(Packet.begin() + 6, Packet.end()), Command);
}

TEST_F(Transport, EncipheredCommandLayout) {
  SetPaddingSource(CountingPadding);
  NextPadding = 0x40;
  BeginCommand(0xA0);
  WriteU32(0x11223344);
  WriteU16(0x5566);
  const auto Sent = FrameCommand(true);
  Bytes Packet(Sent.begin(), Sent.end());

  // length field and 7 payload bytes take 9 bytes: two blocks, 7 of padding
  ASSERT_EQ(Packet.size(), 2u + 4u + 16u);
  EXPECT_EQ(GetU16(Packet, 0), Packet.size() - 2);
  EXPECT_EQ(GetU32(Packet, 2), Adler32(&Packet[6], static_cast<int>(Packet.size() - 6)));
  for (std::size_t Offset = 6; Offset < Packet.size(); Offset += 8) DecipherBlock(&Packet[Offset], m_Key);
  EXPECT_EQ(GetU16(Packet, 6), 7u);
  EXPECT_EQ(Bytes(Packet.begin() + 8, Packet.begin() + 15),
            (Bytes{0xA0, 0x44, 0x33, 0x22, 0x11, 0x66, 0x55}));
  EXPECT_EQ(Bytes(Packet.begin() + 15, Packet.end()), (Bytes{0x40, 0x41, 0x42, 0x43, 0x44, 0x45, 0x46}));
}

TEST_F(Transport, EncipheredCommandThatFillsItsBlocksHasNoPadding) {
  SetPaddingSource(CountingPadding);
  NextPadding = 0;
  BeginCommand(0x14);
  WriteU32(1);
  WriteU8(2);  // type and five bytes: with the length field, one whole block
  const auto Packet = FrameCommand(true);
  EXPECT_EQ(Packet.size(), 14u);
  EXPECT_EQ(GetU16(Packet, 0), 12u);
  EXPECT_EQ(NextPadding, 0);
}

TEST_F(Transport, LoginBlockIsWrittenWhole) {
  std::array<std::uint8_t, 128> Block;
  for (int I = 0; I < 128; ++I) Block[I] = static_cast<std::uint8_t>(I);
  BeginCommand(0x01);
  WriteBlock(Block.data());
  const auto Packet = FrameCommand(false);
  ASSERT_EQ(Packet.size(), 6u + 1 + 128);
  EXPECT_TRUE(std::equal(Block.begin(), Block.end(), Packet.begin() + 7));
}

TEST_F(Transport, CommandLargerThanTheSendBufferFails) {
  BeginCommand(0x96);
  const std::array<std::uint8_t, SEND_BUFFER_SIZE - 9> Fill{};
  WriteBlock(Fill.data());
  for (int I = 0; I < (SEND_BUFFER_SIZE - 9) / 128 - 1; ++I) WriteBlock(Fill.data());
  EXPECT_EQ(FailureText([&] { WriteBlock(Fill.data()); }), "Position<=Size-Count");
}

TEST_F(Transport, FinishCommandWithoutSocketSendsNothingAndDoesNotFail) {
  ASSERT_EQ(GetPlayerSocket(), nullptr);
  BeginCommand(0x1E);
  EXPECT_EQ(FailureText([] { FinishCommand(true); }), "(no failure)");
  EXPECT_EQ(FailureText([] { FinishCommand(false); }), "(no failure)");
}

// ---- Incoming

TEST_F(Transport, CommandsOfAnEncipheredPacketAreRead) {
  EXPECT_TRUE(Arrive(Enciphered({0x64, 0x34, 0x12, 3, 0, 'a', 'b', 'c', 0x1E})));
  EXPECT_EQ(NextCommandType(), 0x64);
  EXPECT_EQ(ReadU16(), 0x1234);
  char Text[8];
  ReadString(Text, sizeof Text);
  EXPECT_STREQ(Text, "abc");
  EXPECT_EQ(NextCommandType(), 0x1E);
  EXPECT_EQ(NextCommandType(), -1);
  EXPECT_EQ(NextCommandType(), -1);
}

TEST_F(Transport, FirstPacketOfAGameConnectionIsPlain) {
  SetConnectionState(CONNECTED_GAME);
  EXPECT_TRUE(Arrive(ServerPacket(Bytes{0x1F, 0x78, 0x56, 0x34, 0x12}, nullptr)));
  EXPECT_EQ(NextCommandType(), 0x1F);
  EXPECT_EQ(ReadU32(), 0x12345678u);
  EXPECT_EQ(NextCommandType(), -1);
}

TEST_F(Transport, PacketInPiecesIsCompleteOnlyWithItsLastByte) {
  const Bytes Packet = Enciphered({0x1D});
  for (std::size_t I = 0; I + 1 < Packet.size(); ++I) {
    EXPECT_FALSE(Arrive(std::span(&Packet[I], 1))) << I;
    EXPECT_EQ(NextCommandType(), -1);
  }
  EXPECT_TRUE(Arrive(std::span(&Packet.back(), 1)));
  EXPECT_EQ(NextCommandType(), 0x1D);
  EXPECT_EQ(NextCommandType(), -1);
}

TEST_F(Transport, TwoPacketsInOneReadAreBothRead) {
  EXPECT_TRUE(Arrive(Joined({Enciphered({0x6D, 1}), Enciphered({0x6E, 2, 0x6F})})));
  EXPECT_EQ(NextCommandType(), 0x6D);
  EXPECT_EQ(ReadU8(), 1);
  EXPECT_EQ(NextCommandType(), 0x6E);
  EXPECT_EQ(ReadU8(), 2);
  EXPECT_EQ(NextCommandType(), 0x6F);
  EXPECT_EQ(NextCommandType(), -1);
}

TEST_F(Transport, PartOfTheNextPacketWaitsInTheBuffer) {
  const Bytes Second = Enciphered({0x82, 9});
  const Bytes Stream = Joined({Enciphered({0x81}), Second});
  const std::size_t Cut = Stream.size() - 3;
  EXPECT_TRUE(Arrive(std::span(Stream.data(), Cut)));
  EXPECT_EQ(NextCommandType(), 0x81);
  EXPECT_EQ(NextCommandType(), -1);
  EXPECT_FALSE(Arrive(std::span(Stream.data() + Cut, 2)));
  EXPECT_EQ(NextCommandType(), -1);
  EXPECT_TRUE(Arrive(std::span(Stream.data() + Cut + 2, 1)));
  EXPECT_EQ(NextCommandType(), 0x82);
  EXPECT_EQ(ReadU8(), 9);
}

TEST_F(Transport, EmptyPayloadGoesOnToTheNextPacket) {
  const Bytes Empty = Enciphered({});
  ASSERT_EQ(GetU16(Empty, 0), 12u);
  EXPECT_TRUE(Arrive(Joined({Empty, Empty, Enciphered({0xA3}), Empty})));
  EXPECT_EQ(NextCommandType(), 0xA3);
  EXPECT_EQ(NextCommandType(), -1);
}

TEST_F(Transport, EmptyPacketAloneGivesNoCommand) {
  EXPECT_TRUE(Arrive(Enciphered({})));
  EXPECT_EQ(NextCommandType(), -1);
}

TEST_F(Transport, PaddingAfterThePayloadIsNeverRead) {
  // padding bytes that would read as commands if the payload length were ignored
  EXPECT_TRUE(Arrive(Enciphered({0x1E, 0x1E, 0x1E}, 0x1D)));
  for (int I = 0; I < 3; ++I) EXPECT_EQ(NextCommandType(), 0x1E);
  EXPECT_EQ(NextCommandType(), -1);
}

TEST_F(Transport, ReadPastThePayloadFails) {
  EXPECT_TRUE(Arrive(Enciphered({0x8C, 1, 2})));
  EXPECT_EQ(NextCommandType(), 0x8C);
  EXPECT_EQ(FailureText([] { ReadU32(); }), "Position<=Size-4");
}

TEST_F(Transport, SizeBelowOneBlockFails) {
  for (const int Size : {0, 4, 11}) {
    Bytes Packet(2 + Size, 0);
    PutU16(Packet, 0, Size);
    ExitNetwork();
    InitNetwork();
    EXPECT_TRUE(Arrive(Packet));
    EXPECT_EQ(FailureText([] { NextCommandType(); }), "packet size is too small even for one encrypted block")
        << Size;
  }
}

TEST_F(Transport, SizeOffTheBlockGridFails) {
  Bytes Packet = Enciphered({0x1E});
  Packet.push_back(0);
  Seal(Packet);
  EXPECT_TRUE(Arrive(Packet));
  EXPECT_EQ(FailureText([] { NextCommandType(); }), "packet size does not fit to symmetric encryption");
}

TEST_F(Transport, WrongChecksumFails) {
  Bytes Packet = Enciphered({0x1E});
  Packet[3] ^= 1;
  EXPECT_TRUE(Arrive(Packet));
  EXPECT_EQ(FailureText([] { NextCommandType(); }), "checksum is not correct");
}

TEST_F(Transport, ChecksumCoversTheEncipheredBytes) {
  Bytes Packet = Enciphered({0x1E});
  Packet.back() ^= 0x80;
  EXPECT_TRUE(Arrive(Packet));
  EXPECT_EQ(FailureText([] { NextCommandType(); }), "checksum is not correct");
}

TEST_F(Transport, PayloadLengthBeyondThePacketFails) {
  SetConnectionState(CONNECTED_GAME);
  Bytes Packet = ServerPacket(Bytes{0x1E}, nullptr);
  PutU16(Packet, 6, 7);
  Seal(Packet);
  EXPECT_TRUE(Arrive(Packet));
  EXPECT_EQ(FailureText([] { NextCommandType(); }), "PayloadLength<=PacketSize-6");
}

TEST_F(Transport, FullBufferWithoutACompletePacketFails) {
  Bytes Start(RECEIVE_BUFFER_SIZE, 0);
  PutU16(Start, 0, 0xFFFF);
  EXPECT_FALSE(Arrive(Start));
  EXPECT_EQ(FailureText([] { ReceiveSpace(); }), "BufferSize>0");
}

TEST_F(Transport, BufferIsReusedOncePacketsAreTaken) {
  const Bytes Packet = Enciphered(Bytes(1000, 0x1E));
  for (int Round = 0; Round < 3 * RECEIVE_BUFFER_SIZE / static_cast<int>(Packet.size()); ++Round) {
    ASSERT_TRUE(Arrive(Packet));
    int Commands = 0;
    while (NextCommandType() == 0x1E) ++Commands;
    ASSERT_EQ(Commands, 1000);
  }
  EXPECT_EQ(ReceiveSpace().size(), static_cast<std::size_t>(RECEIVE_BUFFER_SIZE));
}

TEST_F(Transport, LastPacketHoldsTheFirstSixteenPayloadBytes) {
  Bytes Long(20, 0x1E);
  Long[15] = 0x1D;
  Arrive(Enciphered(Long));
  NextCommandType();
  std::array<std::uint8_t, 16> Expected;
  std::copy(Long.begin(), Long.begin() + 16, Expected.begin());
  EXPECT_EQ(GetLastPacket(), Expected);
  EXPECT_EQ(ReportSources().LastPacket(), Expected);

  while (NextCommandType() != -1) {
  }
  Arrive(Enciphered({0xB4, 0xB5}));
  NextCommandType();
  EXPECT_EQ(GetLastPacket(), (std::array<std::uint8_t, 16>{0xB4, 0xB5}));
}

TEST_F(Transport, LastCommandsAreTheTenLatestOldestFirst) {
  EXPECT_EQ(GetLastCommands(), std::vector<int>(10, 0));
  Bytes Payload;
  for (int Type = 1; Type <= 12; ++Type) Payload.push_back(static_cast<std::uint8_t>(Type));
  Arrive(Enciphered(Payload));
  while (NextCommandType() != -1) {
  }
  const std::vector<int> Expected = {3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
  EXPECT_EQ(GetLastCommands(), Expected);
  EXPECT_EQ(ReportSources().LastCommands(), Expected);
}

TEST_F(Transport, NullSessionKeyKeepsTheKey) {
  SetSessionKey(nullptr);
  EXPECT_TRUE(Arrive(Enciphered({0x1E})));
  EXPECT_EQ(NextCommandType(), 0x1E);
}

// ---- Socket notifications and the connection layer's hooks

struct TCalls {
  int LookUpsCancelled = 0;
  int Closes = 0;
  std::vector<int> Failures;
};
TCalls Calls;

void NoConnect() { ADD_FAILURE() << "no connect expected"; }
void NoReceive() { ADD_FAILURE() << "no packet expected"; }
void CountClose() { ++Calls.Closes; }
void CountLookUpCancel() { ++Calls.LookUpsCancelled; }
void NoteFailure(int ErrorCode) { Calls.Failures.push_back(ErrorCode); }

TEST_F(Transport, CloseCancelsALookUpWhenForcedOrResolving) {
  Calls = {};
  SetConnectionHooks({nullptr, CountLookUpCancel, nullptr});
  CloseConnection(false);
  EXPECT_EQ(Calls.LookUpsCancelled, 0);
  CloseConnection(true);
  EXPECT_EQ(Calls.LookUpsCancelled, 1);
  for (const int State : {RESOLVING_ADMIN, RESOLVING_GAME}) {
    SetConnectionState(State);
    CloseConnection(false);
  }
  EXPECT_EQ(Calls.LookUpsCancelled, 3);
}

TEST_F(Transport, ReceiveErrorGoesToTheFailurePathThenCloses) {
  Calls = {};
  SetNetworkHandlers(NoConnect, NoReceive, CountClose);
  SetConnectionHooks({nullptr, nullptr, NoteFailure});
  ASSERT_EQ(CreatePlayerSocket(), 0);
  GetPlayerSocket()->OnReceive(104);
  EXPECT_EQ(Calls.Failures, std::vector<int>{104});
  EXPECT_EQ(Calls.Closes, 1);
  EXPECT_EQ(GetPlayerSocket(), nullptr);
}

TEST_F(Transport, DefaultFailurePathClosesTheSocketItWasCalledFrom) {
  Calls = {};
  SetNetworkHandlers(NoConnect, NoReceive, CountClose);
  ASSERT_EQ(CreatePlayerSocket(), 0);
  GetPlayerSocket()->OnReceive(104);
  EXPECT_EQ(GetPlayerSocket(), nullptr);
  EXPECT_EQ(GetPlayerSocketPointerStatus(), SOCKET_CLOSED);
  EXPECT_EQ(Calls.Closes, 1);
}

TEST_F(Transport, NewSocketReplacesTheOldOne) {
  ASSERT_EQ(CreatePlayerSocket(), 0);
  const CPlayerSocket* First = GetPlayerSocket();
  ASSERT_NE(First, nullptr);
  ASSERT_EQ(CreatePlayerSocket(), 0);
  EXPECT_NE(GetPlayerSocket(), nullptr);
  EXPECT_EQ(GetPlayerSocketPointerStatus(), SOCKET_CREATED);
  CloseConnection(false);
  EXPECT_EQ(GetPlayerSocket(), nullptr);
  EXPECT_EQ(GetPlayerSocketPointerStatus(), SOCKET_CLOSED);
}

TEST_F(Transport, ModuleIsReportedAndGone) {
  EXPECT_EQ(GetPlayerSocketPointerStatus(), NETWORK_STARTED);
  EXPECT_TRUE(static_cast<bool>(ReportSources().CloseSocket));
  ExitNetwork();
  EXPECT_EQ(GetPlayerSocketPointerStatus(), NETWORK_ENDED);
  EXPECT_FALSE(static_cast<bool>(ReportSources().LastPacket));
  EXPECT_EQ(FailureText([] { NextCommandType(); }), "Network!=NULL");
  InitNetwork();
}

}  // namespace
