// The kelmo-server program as other tests start it: its port lines, its log
// file, its exit codes, and its end on SIGTERM.
#include <gtest/gtest.h>

#include <csignal>
#include <optional>
#include <regex>
#include <string>

#include "tests/server/WireClient.h"
#include "tests/support/Harness.h"

namespace {

using namespace testing_server;
using namespace std::chrono_literals;

struct TPorts {
  std::uint16_t Login = 0;
  std::uint16_t Game = 0;
};

class ServerProgram : public testing::Test {
 protected:
  std::unique_ptr<harness::CProcess> Run(std::vector<std::string> Arguments) {
    Arguments.insert(Arguments.begin(), KELMO_SERVER_PROGRAM);
    return std::make_unique<harness::CProcess>(Arguments, std::vector<std::string>{}, Home.WorkDirectory());
  }

  std::unique_ptr<harness::CProcess> StartServer(std::vector<std::string> Extra = {}) {
    std::vector<std::string> Arguments = {
        "--login-port",         "0",     "--game-port",     "0", "--rsa-key",
        TestKeyFile().string(), "--log", LogFile().string()};
    Arguments.insert(Arguments.end(), Extra.begin(), Extra.end());
    return Run(Arguments);
  }

  // The two port lines, once the program has printed them.
  static std::optional<TPorts> WaitForPorts(const harness::CProcess& Process) {
    static const std::regex LINES("login port (\\d+)\ngame port (\\d+)\n");
    std::smatch Match;
    std::string Output;
    const bool Printed = harness::WaitFor(
        [&] {
          Output = Process.StandardOutput();
          return std::regex_search(Output, Match, LINES);
        },
        10s);
    if (!Printed) return std::nullopt;
    return TPorts{static_cast<std::uint16_t>(std::stoi(Match[1])),
                  static_cast<std::uint16_t>(std::stoi(Match[2]))};
  }

  std::filesystem::path LogFile() const { return Home.Root() / "server.jsonl"; }

  template <typename TCondition>
  static bool PollUntil(TCondition Done) {
    return harness::WaitFor(
        [&] {
          PollSocketEvents();
          return Done();
        },
        10s);
  }

  harness::CTestHome Home;
};

TEST_F(ServerProgram, PrintsItsPortsServesALoginAndEndsCleanlyOnSigterm) {
  const auto Server = StartServer();
  const std::optional<TPorts> Ports = WaitForPorts(*Server);
  ASSERT_TRUE(Ports) << Server->StandardError();
  EXPECT_NE(Ports->Login, 0);
  EXPECT_NE(Ports->Game, 0);

  CTestClient Client;
  ASSERT_TRUE(Client.ConnectTo(Ports->Login));
  ASSERT_TRUE(PollUntil([&] { return Client.Connected; }));
  const TSessionKey Key = MakeSessionKey(0x33);
  Client.SendBytes(PlainPacket(LoginAdminPayload({Key, "demo", "demo", SystemInfo()})));
  ASSERT_TRUE(PollUntil([&] { return Client.Closed; }));
  const std::optional<TBytes> Packet = Client.TakePacket();
  ASSERT_TRUE(Packet);
  const TXTEASymmetricKey Cipher = XteaKey(Key);
  const TBytes Payload = OpenServerPacket(*Packet, &Cipher);
  TByteWriter Port;
  Port.U16(Ports->Game);
  EXPECT_NE(std::search(Payload.begin(), Payload.end(), Port.Bytes().begin(), Port.Bytes().end()),
            Payload.end())
      << "the character list names the game port";

  Server->Signal(SIGTERM);
  EXPECT_EQ(Server->WaitExit(10s), 0);
  const std::string Log = harness::ReadFile(LogFile());
  EXPECT_NE(Log.find("\"command\":\"CLOGINADMIN\""), std::string::npos) << Log;
  EXPECT_NE(Log.find("\"account\":\"demo\""), std::string::npos);
  EXPECT_EQ(Log.find("\"error\""), std::string::npos);
}

TEST_F(ServerProgram, ClientFailureMakesTheExitCodeOneAndGoesToStandardError) {
  const auto Server = StartServer({"--fault", "admin-error"});
  const std::optional<TPorts> Ports = WaitForPorts(*Server);
  ASSERT_TRUE(Ports);
  CTestClient Client;
  ASSERT_TRUE(Client.ConnectTo(Ports->Game));
  ASSERT_TRUE(PollUntil([&] { return Client.TakePacket().has_value(); }));
  Client.SendBytes({5, 0, 0, 0, 0, 0, 99});
  ASSERT_TRUE(PollUntil([&] { return Client.Closed; }));
  Server->Signal(SIGINT);
  EXPECT_EQ(Server->WaitExit(10s), 1);
  EXPECT_NE(Server->StandardError().find("\"error\":\"checksum is not correct\""), std::string::npos)
      << Server->StandardError();
  EXPECT_NE(harness::ReadFile(LogFile()).find("\"error\":\"checksum is not correct\""), std::string::npos);
}

TEST_F(ServerProgram, StartFailuresEndWithTwo) {
  const auto BadOption = Run({"--fault", "sleepy"});
  EXPECT_EQ(BadOption->WaitExit(10s), 2);
  EXPECT_NE(BadOption->StandardError().find("unknown fault 'sleepy'"), std::string::npos);
  EXPECT_NE(BadOption->StandardError().find("usage: kelmo-server"), std::string::npos);

  const auto NoKey = Run({"--login-port", "0", "--game-port", "0", "--rsa-key", "/nonexistent/key.txt"});
  EXPECT_EQ(NoKey->WaitExit(10s), 2);
  EXPECT_NE(NoKey->StandardError().find("cannot open the RSA key /nonexistent/key.txt"), std::string::npos);

  const auto First = StartServer();
  const std::optional<TPorts> Ports = WaitForPorts(*First);
  ASSERT_TRUE(Ports);
  const auto Second = Run({"--login-port", std::to_string(Ports->Login), "--game-port", "0", "--rsa-key",
                           TestKeyFile().string()});
  EXPECT_EQ(Second->WaitExit(10s), 2);
  EXPECT_NE(Second->StandardError().find("cannot listen"), std::string::npos) << Second->StandardError();
}

TEST_F(ServerProgram, HelpPrintsTheOptions) {
  const auto Help = Run({"--help"});
  EXPECT_EQ(Help->WaitExit(10s), 0);
  EXPECT_NE(Help->StandardOutput().find("--fault <name>"), std::string::npos);
}

}  // namespace
