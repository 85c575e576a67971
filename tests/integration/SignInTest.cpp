// The client's connection code against the real local server on loopback:
// sign-in, host rotation, refusals, and a server that falls silent. The loop
// is the client's own without a window; time-outs run on an injected clock.
#include <gtest/gtest.h>
#include <signal.h>

#include <filesystem>
#include <memory>
#include <sstream>

#include "app/AutoLogin.h"
#include "app/MainLoop.h"
#include "app/Messages.h"
#include "core/Clock.h"
#include "core/Paths.h"
#include "core/Preferences.h"
#include "core/ProgramState.h"
#include "net/AccountManager.h"
#include "net/Communication.h"
#include "net/Connection.h"
#include "net/Login.h"
#include "net/Random.h"
#include "platform/AsyncSocket.h"
#include "platform/MessageBox.h"
#include "tests/integration/HeadlessClient.h"
#include "tests/support/Harness.h"

namespace {

using namespace harness;
namespace fs = std::filesystem;

struct TBox {
  std::string Title;
  std::string Text;
};

class SignInTest : public CHeadlessClientTest {
 protected:
  SignInTest() {
    platform::SetMessageBoxHandler([this](const std::string& Title, const std::string& Text,
                                          platform::TBoxIcon) { Boxes.push_back({Title, Text}); });
    Handler.SetObserver([this](const TMessage& Message) { Taken.push_back(Message.Type); });
  }
  // The boxes go before the modules end.
  ~SignInTest() override {
    platform::SetMessageBoxHandler([](const std::string&, const std::string&, platform::TBoxIcon) {});
  }

  void StartServer(const std::vector<std::string>& Faults = {}) {
    Server = std::make_unique<CLocalServer>(Home.Root(), Faults);
  }
  int LoginPort() const { return Server->LoginPort(); }

  // Starts the client's modules as the program does, with the given login hosts.
  void StartClient(const std::string& LoginHosts, const std::string& AutoLogin) {
    setenv("KELMO_LOGIN_HOSTS", LoginHosts.c_str(), 1);
    setenv("KELMO_AUTOLOGIN", AutoLogin.c_str(), 1);
    StartModules(false);
    StartAutoLogin();
  }

  std::string ServerLog() const { return Server ? Server->Log() : std::string(); }

  // The boxes shown with this title.
  std::vector<TBox> BoxesTitled(const std::string& Title) const {
    std::vector<TBox> Found;
    for (const TBox& Box : Boxes) {
      if (Box.Title == Title) Found.push_back(Box);
    }
    return Found;
  }

  bool WasTaken(int Type) const { return std::find(Taken.begin(), Taken.end(), Type) != Taken.end(); }

  // A port on which nobody listens.
  static int ClosedPort() {
    CAsyncSocket Probe;
    Probe.Create();
    Probe.Listen("127.0.0.1", 0);
    return Probe.GetLocalPort();
  }

  std::unique_ptr<CLocalServer> Server;
  std::vector<TBox> Boxes;
  std::vector<int> Taken;
};

std::string Hosts(std::initializer_list<int> Ports) {
  std::string Text;
  for (const int Port : Ports) Text += (Text.empty() ? "" : ",") + std::string("127.0.0.1:") + std::to_string(Port);
  return Text;
}

TEST_F(SignInTest, SignsInAndEntersTheWorld) {
  StartServer();
  StartClient(Hosts({LoginPort()}), "demo:demo:Ayla");
  ASSERT_TRUE(RunUntil([] { return GetConnectionState() == GAME_RUNNING; })) << ServerLog();

  EXPECT_EQ(TAccountManager::getInstance().getActiveCharacter()->Name, "Ayla");
  EXPECT_NE(GetSessionInfo().PlayerId, 0u);
  EXPECT_GT(GetSessionInfo().Beat, 0);
  EXPECT_TRUE(WasTaken(MSG_SELECT_CHARACTER));
  ASSERT_EQ(BoxesTitled("Message of the Day").size(), 1u);
  const std::string Log = ServerLog();
  EXPECT_NE(Log.find("CLOGINADMIN"), std::string::npos) << Log;
  EXPECT_NE(Log.find("CLOGINGAME"), std::string::npos) << Log;
  EXPECT_NE(Log.find("CENTERWORLD"), std::string::npos) << Log;
  EXPECT_EQ(Log.find("\"error\""), std::string::npos) << Log;
}

TEST_F(SignInTest, RefusedFirstHostIsFollowedByTheNext) {
  StartServer();
  StartClient(Hosts({ClosedPort(), LoginPort()}), "demo:demo:Borin");
  ASSERT_TRUE(RunUntil([] { return GetConnectionState() == GAME_RUNNING; })) << ServerLog();
  EXPECT_TRUE(BoxesTitled("Connection failed").empty());
}

TEST_F(SignInTest, HostNamesAreLookedUpAndAFailedLookUpMovesOn) {
  StartServer();
  StartClient("no-such-host.invalid:7171,localhost:" + std::to_string(LoginPort()), "demo:demo:Ayla");
  ASSERT_TRUE(RunUntil([] { return GetConnectionState() == GAME_RUNNING; }, 20s)) << ServerLog();
  EXPECT_TRUE(BoxesTitled("Connection failed").empty());
}

TEST_F(SignInTest, AllHostsRefusedEndInOneMessage) {
  StartClient(Hosts({ClosedPort(), ClosedPort(), ClosedPort()}), "demo:demo:Ayla");
  ASSERT_TRUE(RunUntil([&] { return !Boxes.empty(); }));
  for (int I = 0; I < 20; ++I) Step();
  ASSERT_EQ(Boxes.size(), 1u);
  EXPECT_EQ(Boxes[0].Title, "Connection failed");
  EXPECT_EQ(Boxes[0].Text.rfind("Cannot connect to a login server.\n\nError: Connection refused. (10061)"
                                "\n\nAll login servers are offline.",
                                0),
            0u)
      << Boxes[0].Text;
  EXPECT_EQ(GetConnectionState(), OFFLINE);
}

TEST_F(SignInTest, SilentGameServerIsGivenUpAfterAMinute) {
  StartServer({"silence"});
  StartClient(Hosts({LoginPort()}), "demo:demo:Ayla");
  ASSERT_TRUE(RunUntil([] { return GetConnectionState() == GAME_RUNNING; })) << ServerLog();

  ::testing::internal::CaptureStderr();
  for (int Tick = 0; Tick < 200 && !WasTaken(MSG_SERVER_NOT_RESPONDING); ++Tick) Step();
  EXPECT_TRUE(IsServerSilent());
  for (int Tick = 0; Tick < 700 && GetConnectionState() != OFFLINE; ++Tick) Step();
  Step();
  const std::string Log = ::testing::internal::GetCapturedStderr();
  EXPECT_NE(Log.find("Game Server not responding. Please wait."), std::string::npos) << Log;
  EXPECT_EQ(GetConnectionState(), OFFLINE);
  ASSERT_FALSE(Boxes.empty());
  EXPECT_EQ(Boxes.back().Title, "Connection lost");
  EXPECT_EQ(Boxes.back().Text, "Connection to the game server was lost.\nPlease try again later.");
  EXPECT_NE(ServerLog().find("CPING"), std::string::npos);
}

TEST_F(SignInTest, GameServerRefusalIsShownAndTheListFollows) {
  StartServer({"login-error"});
  StartClient(Hosts({LoginPort()}), "demo:demo:Ayla");
  ASSERT_TRUE(RunUntil([&] { return !BoxesTitled("Sorry").empty(); })) << ServerLog();
  RunUntil([&] { return std::count(Taken.begin(), Taken.end(), MSG_SELECT_CHARACTER) >= 2; }, 2s);
  EXPECT_EQ(std::count(Taken.begin(), Taken.end(), MSG_SELECT_CHARACTER), 2);
  EXPECT_EQ(GetConnectionState(), OFFLINE);
}

TEST_F(SignInTest, LoginQueueIsPassedToItsDialog) {
  StartServer({"queue"});
  StartClient(Hosts({LoginPort()}), "demo:demo:Ayla");
  ASSERT_TRUE(RunUntil([&] { return WasTaken(MSG_LOGIN_QUEUE); })) << ServerLog();
}

TEST_F(SignInTest, WrongPasswordIsRefusedByTheLoginServer) {
  StartServer();
  StartClient(Hosts({LoginPort()}), "demo:wrong:Ayla");
  ASSERT_TRUE(RunUntil([&] { return !BoxesTitled("Sorry").empty(); })) << ServerLog();
  RunUntil([&] { return WasTaken(MSG_ENTER_GAME); }, 2s);
  EXPECT_TRUE(WasTaken(MSG_ENTER_GAME));
  EXPECT_EQ(GetConnectionState(), OFFLINE);
}

}  // namespace
