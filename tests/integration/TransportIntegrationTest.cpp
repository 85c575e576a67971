// The transport over real loopback sockets: a listening socket of the test
// plays the server, the client is the real CPlayerSocket, and both are driven
// by PollSocketEvents until a condition holds or a time limit passes.
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <unistd.h>

#include "core/ErrorReport.h"
#include "core/Exception.h"
#include "core/Paths.h"
#include "net/Communication.h"
#include "net/Connection.h"
#include "platform/AsyncSocket.h"
#include "tests/net/ServerPacket.h"
#include "tests/net/TestSupport.h"

namespace {

using namespace std::chrono_literals;
using testing_net::FailureText;
using testing_net::GetU16;
using testing_net::GetU32;
using testing_net::Joined;
using testing_net::PutU16;
using testing_net::Seal;
using Bytes = std::vector<std::uint8_t>;

const std::array<std::uint8_t, 16> SESSION_KEY = {7, 6, 5, 4, 3, 2, 1, 0, 15, 14, 13, 12, 11, 10, 9, 8};

// What the transport told the layer above. Every test command is a type byte
// and one value byte; each receive call notes the pairs it read.
struct TEvents {
  int Connects = 0;
  int Closes = 0;
  std::vector<std::vector<std::array<int, 2>>> Receives;
  std::vector<int> TimeOuts;
  std::vector<int> Failures;
  int PollRound = 0;
  int ReceiveRound = -1;
  int CloseRound = -1;
  bool CloseInsideReceive = false;
};
TEvents Events;

void Connected() {
  ++Events.Connects;
  SetConnectionState(GAME_RUNNING);
}

void PacketsReceived() {
  Events.ReceiveRound = Events.PollRound;
  auto& Commands = Events.Receives.emplace_back();
  for (int Type = NextCommandType(); Type != -1; Type = NextCommandType()) Commands.push_back({Type, ReadU8()});
  if (Events.CloseInsideReceive) {
    CloseConnection(false);
    SetConnectionState(OFFLINE);
  }
}

void Closed() {
  ++Events.Closes;
  Events.CloseRound = Events.PollRound;
}

void TimeOutArmed(int Ticks) { Events.TimeOuts.push_back(Ticks); }
void ConnectionFailedHere(int ErrorCode) { Events.Failures.push_back(ErrorCode); }

template <typename TCondition>
bool PollUntil(TCondition Done, std::chrono::milliseconds Limit = 5000ms) {
  const auto Deadline = std::chrono::steady_clock::now() + Limit;
  while (!Done()) {
    if (std::chrono::steady_clock::now() > Deadline) return false;
    ++Events.PollRound;
    PollSocketEvents();
  }
  return true;
}

// Listens on a free loopback port and takes one connection.
class TTestServer : public CAsyncSocket {
 public:
  TTestServer() {
    EXPECT_EQ(Create(), 0);
    EXPECT_EQ(Listen("127.0.0.1", 0), 0);
  }
  void OnAccept(int ErrorCode) override {
    EXPECT_EQ(ErrorCode, 0);
    EXPECT_EQ(Accept(m_Connection), 0);
    m_Accepted = true;
  }
  bool Accepted() const { return m_Accepted; }
  void Send(const Bytes& Data) { ASSERT_EQ(m_Connection.Send(Data.data(), static_cast<int>(Data.size())), static_cast<int>(Data.size())); }
  void FinishSending() { m_Connection.ShutDown(SENDS); }
  void Abort() { m_Connection.Close(); }
  // What the client sent, once Count bytes are there.
  Bytes Take(std::size_t Count) {
    Bytes Data;
    PollUntil([&] {
      std::array<std::uint8_t, 256> Chunk;
      const int Read = m_Connection.Receive(Chunk.data(), static_cast<int>(Chunk.size()));
      if (Read > 0) Data.insert(Data.end(), Chunk.begin(), Chunk.begin() + Read);
      return Data.size() >= Count;
    });
    return Data;
  }

 private:
  CAsyncSocket m_Connection;
  bool m_Accepted = false;
};

Bytes Packet(const Bytes& Payload) {
  TXTEASymmetricKey Key;
  Key.Set(SESSION_KEY.data());
  return testing_net::ServerPacket(Payload, &Key);
}

void StartClient() {
  Events = {};
  InitNetwork();
  SetNetworkHandlers(Connected, PacketsReceived, Closed);
  SetConnectionHooks({TimeOutArmed, nullptr, nullptr});
  SetSessionKey(SESSION_KEY.data());
  SetConnectionState(CONNECTING_GAME);
}

class TransportIntegration : public testing::Test {
 protected:
  void SetUp() override { StartClient(); }
  void TearDown() override {
    ExitNetwork();
    SetConnectionState(OFFLINE);
  }

  void Connect() {
    ASSERT_EQ(CreatePlayerSocket(), 0);
    ASSERT_EQ(ConnectPlayerSocket("127.0.0.1", m_Server.GetLocalPort(), true), 0);
    ASSERT_TRUE(PollUntil([&] { return Events.Connects == 1 && m_Server.Accepted(); }));
  }

  TTestServer m_Server;
};

TEST_F(TransportIntegration, ConnectArmsTheTimeOutAndTheConnectDisarmsIt) {
  Connect();
  EXPECT_EQ(Events.TimeOuts, (std::vector<int>{CONNECT_TIMEOUT_TICKS, 0}));
  EXPECT_EQ(GetPlayerSocketPointerStatus(), SOCKET_CREATED);
  EXPECT_NE(GetPlayerSocket(), nullptr);
}

TEST_F(TransportIntegration, PacketInOneBytePiecesIsHandledOnceComplete) {
  Connect();
  const Bytes Stream = Packet({0x64, 1, 0x65, 2});
  for (std::size_t Sent = 1; Sent <= Stream.size(); ++Sent) {
    m_Server.Send({Stream[Sent - 1]});
    const std::size_t Expected = RECEIVE_BUFFER_SIZE - Sent;
    if (Sent < Stream.size()) {
      ASSERT_TRUE(PollUntil([&] { return ReceiveSpace().size() == Expected; })) << Sent;
      ASSERT_TRUE(Events.Receives.empty()) << "handled after " << Sent << " bytes";
    }
  }
  ASSERT_TRUE(PollUntil([] { return !Events.Receives.empty(); }));
  EXPECT_EQ(Events.Receives, (decltype(Events.Receives){{{0x64, 1}, {0x65, 2}}}));
}

TEST_F(TransportIntegration, TwoPacketsInOneWriteAreOneHandlerCall) {
  Connect();
  m_Server.Send(Joined({Packet({0x6D, 1}), Packet({0x6E, 2, 0x6F, 3})}));
  ASSERT_TRUE(PollUntil([] { return !Events.Receives.empty(); }));
  EXPECT_EQ(Events.Receives, (decltype(Events.Receives){{{0x6D, 1}, {0x6E, 2}, {0x6F, 3}}}));
}

TEST_F(TransportIntegration, CloseDrainsWhatTheServerSentLast) {
  Connect();
  m_Server.Send(Joined({Packet({0xB4, 1}), Packet({0xB4, 2})}));
  m_Server.FinishSending();
  ASSERT_TRUE(PollUntil([] { return Events.Closes == 1; }));
  EXPECT_EQ(Events.Receives, (decltype(Events.Receives){{{0xB4, 1}, {0xB4, 2}}}));
  // The data were read in the close notification itself, not before it.
  EXPECT_EQ(Events.ReceiveRound, Events.CloseRound);
  EXPECT_EQ(GetPlayerSocket(), nullptr);
  EXPECT_EQ(GetPlayerSocketPointerStatus(), SOCKET_CLOSED);
  EXPECT_EQ(Events.TimeOuts.back(), 0);
}

TEST_F(TransportIntegration, HandlerMayCloseTheConnectionItIsCalledFrom) {
  Connect();
  Events.CloseInsideReceive = true;
  m_Server.Send(Joined({Packet({0x14, 1}), Packet({0x15, 2})}));
  ASSERT_TRUE(PollUntil([] { return !Events.Receives.empty(); }));
  EXPECT_EQ(GetPlayerSocket(), nullptr);
  for (int Round = 0; Round < 100; ++Round) PollSocketEvents();
  EXPECT_EQ(Events.Receives.size(), 1u);
  EXPECT_EQ(Events.Closes, 0);
}

TEST_F(TransportIntegration, SentCommandsArriveFramed) {
  Connect();
  BeginCommand(0x96);
  WriteString("Kelmo");
  FinishCommand(false);
  const Bytes Plain = m_Server.Take(6 + 8);
  ASSERT_EQ(Plain.size(), 14u);
  EXPECT_EQ(GetU16(Plain, 0), 12u);
  EXPECT_EQ(GetU32(Plain, 2), Adler32(&Plain[6], 8));
  EXPECT_EQ(Bytes(Plain.begin() + 6, Plain.end()), (Bytes{0x96, 5, 0, 'K', 'e', 'l', 'm', 'o'}));

  BeginCommand(0x1E);
  FinishCommand(true);
  Bytes Enciphered = m_Server.Take(14);
  ASSERT_EQ(Enciphered.size(), 14u);
  EXPECT_EQ(GetU16(Enciphered, 0), 12u);
  EXPECT_EQ(GetU32(Enciphered, 2), Adler32(&Enciphered[6], 8));
  TXTEASymmetricKey Key;
  Key.Set(SESSION_KEY.data());
  DecipherBlock(&Enciphered[6], Key);
  EXPECT_EQ(GetU16(Enciphered, 6), 1u);
  EXPECT_EQ(Enciphered[8], 0x1E);
}

TEST_F(TransportIntegration, RefusedConnectGoesToTheFailurePath) {
  std::uint16_t ClosedPort;
  {
    TTestServer Gone;
    ClosedPort = Gone.GetLocalPort();
  }
  SetConnectionHooks({TimeOutArmed, nullptr, ConnectionFailedHere});
  ASSERT_EQ(CreatePlayerSocket(), 0);
  ASSERT_EQ(ConnectPlayerSocket("127.0.0.1", ClosedPort, false), 0);
  ASSERT_TRUE(PollUntil([] { return !Events.Failures.empty(); }));
  EXPECT_EQ(Events.Failures, std::vector<int>{10061});  // connection refused
  EXPECT_EQ(Events.Connects, 0);
  EXPECT_EQ(Events.TimeOuts, std::vector<int>{0});
}

TEST_F(TransportIntegration, RefusedConnectClosesTheSocketByDefault) {
  std::uint16_t ClosedPort;
  {
    TTestServer Gone;
    ClosedPort = Gone.GetLocalPort();
  }
  SetConnectionHooks({});
  ASSERT_EQ(CreatePlayerSocket(), 0);
  ASSERT_EQ(ConnectPlayerSocket("127.0.0.1", ClosedPort, false), 0);
  ASSERT_TRUE(PollUntil([] { return GetPlayerSocket() == nullptr; }));
  EXPECT_EQ(GetPlayerSocketPointerStatus(), SOCKET_CLOSED);
  EXPECT_EQ(Events.Closes, 0);
}

TEST_F(TransportIntegration, ConnectToANonAddressFailsAtOnce) {
  ASSERT_EQ(CreatePlayerSocket(), 0);
  EXPECT_EQ(ConnectPlayerSocket("login.invalid", 7171, true), 10022);  // invalid argument
  EXPECT_EQ(GetPlayerSocket(), nullptr);
  EXPECT_EQ(GetPlayerSocketPointerStatus(), SOCKET_CONNECT_FAILED);
  EXPECT_TRUE(Events.TimeOuts.empty());
}

TEST_F(TransportIntegration, ResetConnectionEndsInTheCloseHandler) {
  Connect();
  BeginCommand(0x1E);
  FinishCommand(true);
  m_Server.Abort();  // with the command unread, the server's close is a reset
  ASSERT_TRUE(PollUntil([] { return Events.Closes == 1; }));
  EXPECT_TRUE(Events.Receives.empty());
  EXPECT_EQ(GetPlayerSocket(), nullptr);
}

TEST_F(TransportIntegration, MissingHandlersFail) {
  SetNetworkHandlers(nullptr, nullptr, nullptr);
  ASSERT_EQ(CreatePlayerSocket(), 0);
  ASSERT_EQ(ConnectPlayerSocket("127.0.0.1", m_Server.GetLocalPort(), false), 0);
  std::string Failure;
  PollUntil([&] {
    Failure = FailureText([] { PollSocketEvents(); });
    return Failure != "(no failure)";
  });
  EXPECT_EQ(Failure, "ConnectHandler!=NULL");

  ASSERT_TRUE(PollUntil([&] { return m_Server.Accepted(); }));
  m_Server.Send(Packet({0x1E, 0}));
  PollUntil([&] {
    Failure = FailureText([] { PollSocketEvents(); });
    return Failure != "(no failure)";
  });
  EXPECT_EQ(Failure, "ReceiveHandler!=NULL");

  SetNetworkHandlers(nullptr, PacketsReceived, nullptr);
  m_Server.FinishSending();
  PollUntil([&] {
    Failure = FailureText([] { PollSocketEvents(); });
    return Failure != "(no failure)";
  });
  EXPECT_EQ(Failure, "CloseHandler!=NULL");
}

// ---- Fatal stream faults end the program with a report

class TransportFault : public testing::Test {
 protected:
  void SetUp() override {
    m_Root = std::filesystem::temp_directory_path() /
             ("kelmo-transport-" + std::to_string(::getpid()) + "-" +
              testing::UnitTest::GetInstance()->current_test_info()->name());
    std::filesystem::remove_all(m_Root);
    std::filesystem::create_directories(m_Root);
    setenv("XDG_DATA_HOME", m_Root.c_str(), 1);
    setenv("XDG_CACHE_HOME", m_Root.c_str(), 1);
    setenv("KELMO_NONINTERACTIVE", "1", 1);
    InitPaths("");
  }
  void TearDown() override { std::filesystem::remove_all(m_Root); }

  std::string SecondLineOfErrorFile() const {
    std::ifstream File(m_Root / "Kelmo" / "Error.txt");
    std::string Line;
    for (int I = 0; I < 2 && std::getline(File, Line); ++I) {
    }
    if (!Line.empty() && Line.back() == '\r') Line.pop_back();
    return Line;
  }

  std::filesystem::path m_Root;
};

// The client's life in the child: connect, receive what the server sends, and
// fail as the program's main loop does. Exit code 3 if nothing failed in time.
[[noreturn]] void RunClientAgainst(const Bytes& ServerBytes) {
  StartClient();
  TTestServer Server;
  CreatePlayerSocket();
  ConnectPlayerSocket("127.0.0.1", Server.GetLocalPort(), true);
  bool Sent = false;
  const auto Deadline = std::chrono::steady_clock::now() + 5s;
  while (std::chrono::steady_clock::now() < Deadline) {
    try {
      PollSocketEvents();
      if (!Sent && Events.Connects == 1 && Server.Accepted()) {
        Server.Send(ServerBytes);
        Sent = true;
      }
    } catch (...) {
      ReportCurrentException();
    }
  }
  std::_Exit(3);
}

TEST_F(TransportFault, WrongChecksumEndsTheProgram) {
  Bytes Broken = Packet({0x1E, 0});
  Broken[2] ^= 0xFF;
  EXPECT_EXIT(RunClientAgainst(Broken), testing::ExitedWithCode(1), "Debug Assertion");
  const std::string Line = SecondLineOfErrorFile();
  EXPECT_EQ(Line.rfind("Debug Assertion 10.53 ", 0), 0u) << Line;
  EXPECT_NE(Line.find("checksum is not correct"), std::string::npos) << Line;
}

TEST_F(TransportFault, SizeBelowOneBlockEndsTheProgram) {
  Bytes Short(2 + 8, 0);
  PutU16(Short, 0, 8);
  EXPECT_EXIT(RunClientAgainst(Short), testing::ExitedWithCode(1), "Debug Assertion");
  const std::string Line = SecondLineOfErrorFile();
  EXPECT_EQ(Line.rfind("Debug Assertion 10.53 ", 0), 0u) << Line;
  EXPECT_NE(Line.find("packet size is too small even for one encrypted block"), std::string::npos) << Line;
}

TEST_F(TransportFault, MisalignedSizeEndsTheProgram) {
  Bytes Misaligned = Packet({0x1E, 0});
  Misaligned.resize(Misaligned.size() + 4);
  Seal(Misaligned);
  EXPECT_EXIT(RunClientAgainst(Misaligned), testing::ExitedWithCode(1), "Debug Assertion");
  const std::string Line = SecondLineOfErrorFile();
  EXPECT_EQ(Line.rfind("Debug Assertion 10.53 ", 0), 0u) << Line;
  EXPECT_NE(Line.find("packet size does not fit to symmetric encryption"), std::string::npos) << Line;
}

}  // namespace
