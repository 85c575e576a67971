// The server on loopback, driven step by step with a manual clock, against a
// raw client of the test's own: the whole way in, the log, the faults, and the
// failures of a client that sends something wrong.
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "core/Clock.h"
#include "net/Communication.h"
#include "tests/server/WireClient.h"
#include "tools/server/Accounts.h"
#include "tools/server/Fields.h"
#include "tools/server/RsaKey.h"
#include "tools/server/Server.h"

namespace {

using namespace testing_server;
using server::EFault;

const TSessionKey LOGIN_KEY = MakeSessionKey(0x10);
const TSessionKey GAME_KEY = MakeSessionKey(0x80);

double WireDouble(TReadBuffer& Reader) {
  const int Precision = Reader.ReadU8();
  const double Raw = Reader.ReadU32();
  return (Raw - 2147483647.0) / std::pow(10.0, Precision);
}

class ServerLoopback : public testing::Test {
 protected:
  void SetUp() override { SetClockSource(Clock); }
  void TearDown() override {
    Clients.clear();
    Server.reset();
    SetClockSource(nullptr);
  }

  void Start(std::set<EFault> Faults = {}, int PingInterval = 0) {
    server::TServerSettings Settings;
    Settings.LoginPort = 0;
    Settings.GamePort = 0;
    Settings.Faults = std::move(Faults);
    Settings.PingIntervalSeconds = PingInterval;
    Settings.Seed = 99;
    Server = std::make_unique<server::TServer>(
        Settings, server::LoadAccountBook(std::filesystem::path(KELMO_SERVER_DATA_DIR) / "accounts.txt"),
        server::LoadRsaKey(TestKeyFile()), Log);
  }

  // Steps the server, and with it the test's sockets, until Done holds; the
  // limit is real time, since the server's clock stands still.
  template <typename TCondition>
  bool StepUntil(TCondition Done) {
    const auto Deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (!Done()) {
      if (std::chrono::steady_clock::now() > Deadline) return false;
      Server->Step();
    }
    return true;
  }

  // Steps for a while of real time, for things that must not happen; long
  // enough for a small packet that the stack holds back for an acknowledgement.
  void StepAWhile() {
    const auto End = std::chrono::steady_clock::now() + std::chrono::milliseconds(100);
    while (std::chrono::steady_clock::now() < End) Server->Step();
  }

  CTestClient& Connect(std::uint16_t Port) {
    auto& Client = *Clients.emplace_back(std::make_unique<CTestClient>());
    EXPECT_TRUE(Client.ConnectTo(Port));
    EXPECT_TRUE(StepUntil([&] { return Client.Connected; }));
    return Client;
  }

  TBytes NextPayload(CTestClient& Client, const TSessionKey* Key) {
    std::optional<TBytes> Packet;
    EXPECT_TRUE(StepUntil([&] { return (Packet = Client.TakePacket()).has_value(); })) << "no packet came";
    if (!Packet) return {};
    if (Key == nullptr) return OpenServerPacket(*Packet, nullptr);
    const TXTEASymmetricKey Cipher = XteaKey(*Key);
    return OpenServerPacket(*Packet, &Cipher);
  }

  bool WaitClosed(CTestClient& Client) {
    return StepUntil([&] { return Client.Closed; });
  }

  void SendCommand(CTestClient& Client, const TBytes& Payload) {
    Client.SendBytes(EncipheredPacket(Payload, XteaKey(GAME_KEY)));
  }

  // Connects to the game server and answers the challenge.
  CTestClient& LogIntoGame(const std::string& Character = "Ayla", const std::string& Password = "demo") {
    CTestClient& Client = Connect(Server->GamePort());
    const TBytes Challenge = NextPayload(Client, nullptr);
    EXPECT_EQ(Challenge.size(), 6u);
    EXPECT_EQ(Challenge[0], 31);
    Client.SendBytes(PlainPacket(
        LoginGamePayload({GAME_KEY, 0, "demo", Character, Password, LoadU32(Challenge, 1), Challenge[5]})));
    return Client;
  }

  // Logs in and enters the world.
  CTestClient& EnterWorld() {
    CTestClient& Client = LogIntoGame();
    EXPECT_EQ(NextPayload(Client, &GAME_KEY).back(), 10) << "SPENDINGSTATEENTERED";
    SendCommand(Client, {15});
    EXPECT_EQ(NextPayload(Client, &GAME_KEY), TBytes{15});
    return Client;
  }

  int LinesWith(const std::string& Text) const {
    return static_cast<int>(std::count_if(Lines.begin(), Lines.end(), [&](const std::string& Line) {
      return Line.find(Text) != std::string::npos;
    }));
  }

  // The client is cut off, and one error line names the failure.
  void ExpectFailure(CTestClient& Client, const std::string& Text) {
    EXPECT_TRUE(WaitClosed(Client));
    ASSERT_EQ(Errors.size(), 1u);
    EXPECT_NE(Errors[0].find(Text), std::string::npos) << Errors[0];
    EXPECT_EQ(Log.ErrorCount(), 1);
  }

  std::shared_ptr<TManualClock> Clock = std::make_shared<TManualClock>();
  std::vector<std::string> Lines;
  std::vector<std::string> Errors;
  server::TServerLog Log{[this](const std::string& Line, bool IsError) {
    Lines.push_back(Line);
    if (IsError) Errors.push_back(Line);
  }};
  std::unique_ptr<server::TServer> Server;
  std::vector<std::unique_ptr<CTestClient>> Clients;
};

TEST_F(ServerLoopback, LoginServerSendsMotdAndCharacterListAndCloses) {
  Start();
  CTestClient& Client = Connect(Server->LoginPort());
  Client.SendBytes(PlainPacket(LoginAdminPayload({LOGIN_KEY, "demo", "demo", SystemInfo()})));
  const TBytes Payload = NextPayload(Client, &LOGIN_KEY);
  TReadBuffer Reader(Payload.data(), static_cast<int>(Payload.size()));
  EXPECT_EQ(Reader.ReadU8(), 20);
  EXPECT_EQ(Reader.ReadNewString(), "1\nWelcome to Kelmo.");
  EXPECT_EQ(Reader.ReadU8(), 100);
  EXPECT_EQ(Reader.ReadU8(), 1);
  EXPECT_EQ(Reader.ReadU8(), 0);
  EXPECT_EQ(Reader.ReadNewString(), "Kelmo");
  EXPECT_EQ(Reader.ReadNewString(), "127.0.0.1");
  EXPECT_EQ(Reader.ReadU16(), Server->GamePort()) << "the placeholder becomes the real game port";
  EXPECT_EQ(Reader.ReadU8(), 0);
  EXPECT_EQ(Reader.ReadU8(), 2);
  EXPECT_EQ(Reader.ReadU8(), 0);
  EXPECT_EQ(Reader.ReadNewString(), "Ayla");
  EXPECT_EQ(Reader.ReadU8(), 0);
  EXPECT_EQ(Reader.ReadNewString(), "Borin");
  EXPECT_EQ(Reader.ReadU16(), 30);
  EXPECT_EQ(Reader.Position, Reader.Size);
  EXPECT_TRUE(WaitClosed(Client));
  EXPECT_TRUE(Errors.empty());
}

TEST_F(ServerLoopback, LogLineOfTheLoginCommandHoldsEveryDecipheredField) {
  Start();
  CTestClient& Client = Connect(Server->LoginPort());
  Client.SendBytes(PlainPacket(LoginAdminPayload({LOGIN_KEY, "demo", "demo", SystemInfo()})));
  NextPayload(Client, &LOGIN_KEY);
  const std::string Expected =
      "{\"time\":0,\"connection\":1,\"server\":\"login\",\"command\":\"CLOGINADMIN\",\"fields\":{"
      "\"platform\":2,\"protocolVersion\":1053,\"clientVersion\":1053,\"datSignature\":286331153,"
      "\"sprSignature\":572662306,\"picSignature\":858993459,\"reserved\":0,"
      "\"sessionKey\":\"101112131415161718191a1b1c1d1e1f\",\"account\":\"demo\",\"password\":\"demo\","
      "\"systemInfo\":\"" +
      server::HexText(SystemInfo()) + "\"}}";
  EXPECT_EQ(LinesWith(Expected), 1) << testing::PrintToString(Lines);
  EXPECT_EQ(LinesWith("\"sent\":\"SCHARACTERLIST\""), 1);
  EXPECT_EQ(LinesWith("\"event\":\"accepted\""), 1);
}

TEST_F(ServerLoopback, WholeWayIntoTheWorldAndOut) {
  Start();
  Clock->AdvanceMilliseconds(1234);
  CTestClient& Client = Connect(Server->GamePort());
  const TBytes Challenge = NextPayload(Client, nullptr);
  ASSERT_EQ(Challenge.size(), 6u);
  EXPECT_EQ(Challenge[0], 31) << "SLOGINCHALLENGE comes first, plain";
  const std::uint32_t Time = LoadU32(Challenge, 1);
  EXPECT_EQ(Time, 1234u);
  Client.SendBytes(PlainPacket(LoginGamePayload({GAME_KEY, 0, "demo", "Ayla", "demo", Time, Challenge[5]})));

  const TBytes Entry = NextPayload(Client, &GAME_KEY);
  TReadBuffer Reader(Entry.data(), static_cast<int>(Entry.size()));
  EXPECT_EQ(Reader.ReadU8(), 23);
  const std::uint32_t CreatureId = Reader.ReadU32();
  EXPECT_GT(CreatureId, 0u);
  EXPECT_LT(CreatureId, 0x40000000u);
  EXPECT_EQ(Reader.ReadU16(), 50);
  EXPECT_DOUBLE_EQ(WireDouble(Reader), 857.36);
  EXPECT_DOUBLE_EQ(WireDouble(Reader), 261.29);
  EXPECT_DOUBLE_EQ(WireDouble(Reader), -4795.01);
  EXPECT_EQ(Reader.ReadU8(), 1);
  EXPECT_EQ(Reader.ReadU8(), 1);
  EXPECT_EQ(Reader.ReadU8(), 10) << "SPENDINGSTATEENTERED";
  EXPECT_EQ(Reader.Position, Reader.Size);

  SendCommand(Client, {15});
  EXPECT_EQ(NextPayload(Client, &GAME_KEY), TBytes{15}) << "SWORLDENTERED";
  SendCommand(Client, {29});
  EXPECT_EQ(NextPayload(Client, &GAME_KEY), TBytes{30}) << "SPINGBACK";
  SendCommand(Client, TByteWriter().U8(150).U8(1).String("hello").Bytes());
  SendCommand(Client, {20});
  EXPECT_TRUE(WaitClosed(Client));
  Clients.clear();
  EXPECT_TRUE(StepUntil([&] { return Server->OpenConnections() == 0; }));

  const std::string LoginLine =
      "{\"time\":1234,\"connection\":1,\"server\":\"game\",\"command\":\"CLOGINGAME\",\"fields\":{"
      "\"platform\":2,\"protocolVersion\":1053,\"clientVersion\":1053,\"reserved\":0,"
      "\"sessionKey\":\"808182838485868788898a8b8c8d8e8f\",\"gamemaster\":0,\"account\":\"demo\","
      "\"character\":\"Ayla\",\"password\":\"demo\",\"challengeTime\":1234,\"challengeValue\":" +
      std::to_string(Challenge[5]) + "}}";
  EXPECT_EQ(LinesWith(LoginLine), 1) << testing::PrintToString(Lines);
  EXPECT_EQ(LinesWith("\"sent\":\"SLOGINSUCCESS\",\"fields\":{\"creatureId\":" + std::to_string(CreatureId) +
                      ",\"beat\":50,\"speedA\":857.36,\"speedB\":261.29,\"speedC\":-4795.01,"
                      "\"canReportBugs\":1,\"canChangePvPFraming\":1}"),
            1);
  EXPECT_EQ(LinesWith("\"command\":\"CENTERWORLD\",\"fields\":{}"), 1);
  EXPECT_EQ(LinesWith("\"command\":\"CPING\""), 1);
  EXPECT_EQ(LinesWith("\"command\":\"CTALK\",\"fields\":{\"mode\":1,\"text\":\"hello\"}"), 1);
  EXPECT_EQ(LinesWith("\"command\":\"CQUITGAME\""), 1);
  EXPECT_EQ(LinesWith("\"sent\":\"SPINGBACK\""), 1);
  EXPECT_EQ(LinesWith("\"event\":\"closed by client\""), 1);
  EXPECT_TRUE(Errors.empty()) << testing::PrintToString(Errors);
}

TEST_F(ServerLoopback, ServerClosesAfterTheGraceTimeIfTheClientStays) {
  Start();
  CTestClient& Client = EnterWorld();
  SendCommand(Client, {20});
  EXPECT_TRUE(WaitClosed(Client)) << "sending is shut down at once";
  StepAWhile();
  EXPECT_EQ(Server->OpenConnections(), 1);
  Clock->AdvanceMilliseconds(2000);
  EXPECT_TRUE(StepUntil([&] { return Server->OpenConnections() == 0; }));
  EXPECT_EQ(LinesWith("\"event\":\"closed\""), 1);
}

TEST_F(ServerLoopback, WrongPasswordIsRefusedByTheLoginServer) {
  Start();
  CTestClient& Client = Connect(Server->LoginPort());
  Client.SendBytes(PlainPacket(LoginAdminPayload({LOGIN_KEY, "demo", "nope", SystemInfo()})));
  TByteWriter Expected;
  Expected.U8(10).String("Account name or password is not correct.");
  EXPECT_EQ(NextPayload(Client, &LOGIN_KEY), Expected.Bytes());
  EXPECT_TRUE(WaitClosed(Client));
  EXPECT_TRUE(Errors.empty());
}

TEST_F(ServerLoopback, AdminErrorFault) {
  Start({EFault::ADMIN_ERROR});
  CTestClient& Client = Connect(Server->LoginPort());
  Client.SendBytes(PlainPacket(LoginAdminPayload({LOGIN_KEY, "demo", "demo", SystemInfo()})));
  TByteWriter Expected;
  Expected.U8(10).String("The login server turns every login away.");
  EXPECT_EQ(NextPayload(Client, &LOGIN_KEY), Expected.Bytes());
  EXPECT_TRUE(WaitClosed(Client));
}

TEST_F(ServerLoopback, AdminAdviceFault) {
  Start({EFault::ADMIN_ADVICE});
  CTestClient& Client = Connect(Server->LoginPort());
  Client.SendBytes(PlainPacket(LoginAdminPayload({LOGIN_KEY, "tester", "secret", SystemInfo()})));
  const TBytes Payload = NextPayload(Client, &LOGIN_KEY);
  TReadBuffer Reader(Payload.data(), static_cast<int>(Payload.size()));
  EXPECT_EQ(Reader.ReadU8(), 11);
  EXPECT_EQ(Reader.ReadNewString(), "A notice from the login server.");
  EXPECT_EQ(Reader.ReadU8(), 20);
  Reader.ReadNewString();
  EXPECT_EQ(Reader.ReadU8(), 100);
}

TEST_F(ServerLoopback, WrongCharacterIsRefusedByTheGameServer) {
  Start();
  CTestClient& Client = LogIntoGame("Cato");
  TByteWriter Expected;
  Expected.U8(20).String("This character does not belong to your account.");
  EXPECT_EQ(NextPayload(Client, &GAME_KEY), Expected.Bytes());
  EXPECT_TRUE(WaitClosed(Client));
  EXPECT_TRUE(Errors.empty());
}

TEST_F(ServerLoopback, LoginErrorFault) {
  Start({EFault::LOGIN_ERROR});
  CTestClient& Client = LogIntoGame();
  TByteWriter Expected;
  Expected.U8(20).String("The game server turns every login away.");
  EXPECT_EQ(NextPayload(Client, &GAME_KEY), Expected.Bytes());
  EXPECT_TRUE(WaitClosed(Client));
}

TEST_F(ServerLoopback, LoginAdviceFault) {
  Start({EFault::LOGIN_ADVICE});
  CTestClient& Client = LogIntoGame();
  const TBytes Payload = NextPayload(Client, &GAME_KEY);
  TReadBuffer Reader(Payload.data(), static_cast<int>(Payload.size()));
  EXPECT_EQ(Reader.ReadU8(), 21);
  EXPECT_EQ(Reader.ReadNewString(), "A notice from the game server.");
  EXPECT_EQ(Reader.ReadU8(), 23);
}

TEST_F(ServerLoopback, QueueFaultHoldsBackTheFirstLoginOnly) {
  Start({EFault::QUEUE});
  CTestClient& First = LogIntoGame();
  TByteWriter Expected;
  Expected.U8(22).String("The game world is full. You are number 1 in the queue.").U8(3);
  EXPECT_EQ(NextPayload(First, &GAME_KEY), Expected.Bytes());
  EXPECT_TRUE(WaitClosed(First));
  CTestClient& Second = LogIntoGame();
  const TBytes Entry = NextPayload(Second, &GAME_KEY);
  ASSERT_FALSE(Entry.empty());
  EXPECT_EQ(Entry[0], 23);
  EXPECT_EQ(Entry.back(), 10);
}

TEST_F(ServerLoopback, CloseAfterLoginFault) {
  Start({EFault::CLOSE_AFTER_LOGIN});
  CTestClient& Client = LogIntoGame();
  const TBytes Entry = NextPayload(Client, &GAME_KEY);
  ASSERT_EQ(Entry.size(), 1u + 4 + 2 + 15 + 2) << "SLOGINSUCCESS alone";
  EXPECT_EQ(Entry[0], 23);
  EXPECT_TRUE(WaitClosed(Client));
}

TEST_F(ServerLoopback, BadChecksumFaultSpoilsTheFirstEncipheredPacketOnly) {
  Start({EFault::BAD_CHECKSUM});
  CTestClient& Client = LogIntoGame();
  std::optional<TBytes> Packet;
  ASSERT_TRUE(StepUntil([&] { return (Packet = Client.TakePacket()).has_value(); }));
  EXPECT_NE(LoadU32(*Packet, 2), Adler32(Packet->data() + 6, static_cast<int>(Packet->size() - 6)));
  StoreU32(*Packet, 2, Adler32(Packet->data() + 6, static_cast<int>(Packet->size() - 6)));
  const TXTEASymmetricKey Key = XteaKey(GAME_KEY);
  EXPECT_EQ(OpenServerPacket(*Packet, &Key)[0], 23) << "the content is right, only the checksum is not";
  SendCommand(Client, {15});
  EXPECT_EQ(NextPayload(Client, &GAME_KEY), TBytes{15});
  EXPECT_EQ(LinesWith("\"event\":\"checksum spoiled\""), 1);
}

TEST_F(ServerLoopback, SilenceFaultReadsButNeverAnswersInTheWorld) {
  Start({EFault::SILENCE}, 1);
  CTestClient& Client = EnterWorld();
  SendCommand(Client, {29});
  SendCommand(Client, {20});
  EXPECT_TRUE(StepUntil([&] { return LinesWith("\"command\":\"CQUITGAME\"") == 1; }));
  EXPECT_EQ(LinesWith("\"command\":\"CPING\""), 1);
  Clock->AdvanceMilliseconds(10000);
  StepAWhile();
  EXPECT_TRUE(Client.Inbox.empty()) << "neither SPINGBACK nor SPING";
  EXPECT_FALSE(Client.Closed);
}

TEST_F(ServerLoopback, ServerPingsAtItsIntervalInTheWorld) {
  Start({}, 10);
  CTestClient& Client = EnterWorld();
  Clock->AdvanceMilliseconds(9999);
  StepAWhile();
  EXPECT_TRUE(Client.Inbox.empty());
  Clock->AdvanceMilliseconds(1);
  EXPECT_EQ(NextPayload(Client, &GAME_KEY), TBytes{29}) << "SPING";
  SendCommand(Client, {30});
  EXPECT_TRUE(StepUntil([&] { return LinesWith("\"command\":\"CPINGBACK\"") == 1; }));
  Clock->AdvanceMilliseconds(10000);
  EXPECT_EQ(NextPayload(Client, &GAME_KEY), TBytes{29});
}

// ---- A client that sends something wrong is cut off with an error line.

TEST_F(ServerLoopback, WrongChecksumOfTheLoginPacket) {
  Start();
  CTestClient& Client = Connect(Server->LoginPort());
  TBytes Packet = PlainPacket(LoginAdminPayload({LOGIN_KEY, "demo", "demo", SystemInfo()}));
  Packet[2] ^= 1;
  Client.SendBytes(Packet);
  ExpectFailure(Client, "\"error\":\"checksum is not correct\"");
  EXPECT_EQ(LinesWith("\"event\":\"closed after error\""), 1);
}

TEST_F(ServerLoopback, WrongFirstByteOfTheLoginBlock) {
  Start();
  CTestClient& Client = Connect(Server->LoginPort());
  TAdminLogin Login{LOGIN_KEY, "demo", "demo", SystemInfo()};
  Login.First = 1;
  Client.SendBytes(PlainPacket(LoginAdminPayload(Login)));
  ExpectFailure(Client, "\"error\":\"first byte of login block is not 0\"");
  EXPECT_NE(Errors[0].find("\"command\":\"CLOGINADMIN\""), std::string::npos);
}

TEST_F(ServerLoopback, PacketAfterTheLoginCommand) {
  Start();
  CTestClient& Client = Connect(Server->LoginPort());
  TBytes Packets = PlainPacket(LoginAdminPayload({LOGIN_KEY, "demo", "demo", SystemInfo()}));
  const TBytes Second = EncipheredPacket(TBytes{29}, XteaKey(LOGIN_KEY));
  Packets.insert(Packets.end(), Second.begin(), Second.end());
  Client.SendBytes(Packets);
  ExpectFailure(Client, "\"error\":\"packet after the login command\"");
}

TEST_F(ServerLoopback, ChallengeThatDoesNotMatch) {
  Start();
  CTestClient& Client = Connect(Server->GamePort());
  const TBytes Challenge = NextPayload(Client, nullptr);
  Client.SendBytes(PlainPacket(LoginGamePayload({GAME_KEY, 0, "demo", "Ayla", "demo", LoadU32(Challenge, 1),
                                                 static_cast<std::uint8_t>(Challenge[5] + 1)})));
  ExpectFailure(Client, "\"error\":\"login challenge does not match\"");
  EXPECT_EQ(LinesWith("\"command\":\"CLOGINGAME\""), 2) << "the command line, then the error line";
}

TEST_F(ServerLoopback, OtherCommandInsteadOfTheGameLogin) {
  Start();
  CTestClient& Client = Connect(Server->GamePort());
  NextPayload(Client, nullptr);
  Client.SendBytes(PlainPacket(LoginAdminPayload({LOGIN_KEY, "demo", "demo", SystemInfo()})));
  ExpectFailure(Client, "\"error\":\"unknown command\",\"values\":{\"type\":\"1\"}");
}

TEST_F(ServerLoopback, MisalignedPacket) {
  Start();
  CTestClient& Client = EnterWorld();
  Client.SendBytes({13, 0, 0, 0, 0, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11});
  ExpectFailure(Client, "\"error\":\"packet size does not fit to symmetric encryption\"");
}

TEST_F(ServerLoopback, PacketTooSmallForOneBlock) {
  Start();
  CTestClient& Client = EnterWorld();
  Client.SendBytes({4, 0, 0, 0, 0, 0});
  ExpectFailure(Client, "\"error\":\"packet size is too small even for one encrypted block\"");
}

TEST_F(ServerLoopback, PacketTooLarge) {
  Start();
  CTestClient& Client = EnterWorld();
  Client.SendBytes({0xFF, 0xFF});
  ExpectFailure(Client, "\"error\":\"packet is larger than the client's send buffer\"");
}

TEST_F(ServerLoopback, WrongChecksumInTheGame) {
  Start();
  CTestClient& Client = EnterWorld();
  TBytes Packet = EncipheredPacket(TBytes{29}, XteaKey(GAME_KEY));
  Packet[2] ^= 1;
  Client.SendBytes(Packet);
  ExpectFailure(Client, "\"error\":\"checksum is not correct\"");
}

TEST_F(ServerLoopback, UnknownCommand) {
  Start();
  CTestClient& Client = EnterWorld();
  SendCommand(Client, {12});
  ExpectFailure(Client, "\"error\":\"unknown command\",\"values\":{\"type\":\"12\"}");
}

TEST_F(ServerLoopback, CommandWithAByteTooMany) {
  Start();
  CTestClient& Client = EnterWorld();
  SendCommand(Client, {29, 0});
  ExpectFailure(Client, "\"error\":\"payload not consumed exactly\"");
  EXPECT_NE(Errors[0].find("\"command\":\"CPING\""), std::string::npos);
}

TEST_F(ServerLoopback, CommandCutShort) {
  Start();
  CTestClient& Client = EnterWorld();
  SendCommand(Client, {161, 1, 0, 0, 0});
  ExpectFailure(Client, "\"error\":\"Position<=Size-4\"");
  EXPECT_NE(Errors[0].find("\"command\":\"CATTACK\""), std::string::npos);
}

TEST_F(ServerLoopback, TextBeyondItsLimit) {
  Start();
  CTestClient& Client = EnterWorld();
  SendCommand(Client, TByteWriter().U8(150).U8(1).String(std::string(256, 't')).Bytes());
  ExpectFailure(
      Client,
      "\"error\":\"string is longer than its limit\",\"values\":{\"field\":\"text\",\"length\":\"256\","
      "\"limit\":\"255\"}");
}

TEST_F(ServerLoopback, OneBadClientDoesNotDisturbAnother) {
  Start();
  CTestClient& Good = EnterWorld();
  CTestClient& Bad = Connect(Server->LoginPort());
  Bad.SendBytes({0, 0});
  EXPECT_TRUE(WaitClosed(Bad));
  SendCommand(Good, {29});
  EXPECT_EQ(NextPayload(Good, &GAME_KEY), TBytes{30});
  EXPECT_EQ(Errors.size(), 1u);
}

}  // namespace
