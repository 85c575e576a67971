// The connection's state machine without a server: liveness and time-outs on
// a manual clock, host rotation, and the user's error texts.
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

#include "core/Clock.h"
#include "core/MessageQueue.h"
#include "net/Communication.h"
#include "net/Connection.h"
#include "net/Deployment.h"
#include "net/HostManager.h"
#include "net/Network.h"
#include "tests/net/TestSupport.h"

namespace {

using testing_net::FailureText;

class LivenessTest : public ::testing::Test {
 protected:
  LivenessTest() {
    SetClockSource(Clock);
    InitNetwork();
    InitConnection();
    SetConnectionState(GAME_RUNNING);
    ResetConnectionAlive();
  }
  ~LivenessTest() override {
    ExitConnection();
    ExitNetwork();
    SetClockSource(nullptr);
    MessageQueue().Clear();
  }

  // Runs the liveness check once per second up to the given second.
  bool AliveUntil(int Second) {
    bool Alive = true;
    while (Now < Second) {
      Clock->AdvanceMilliseconds(1000);
      ++Now;
      Alive = CheckConnectionAlive();
    }
    return Alive;
  }

  std::shared_ptr<TManualClock> Clock = std::make_shared<TManualClock>();
  int Now = 0;
};

TEST_F(LivenessTest, SilentConnectionIsDeadFifteenSecondsAfterTheFirstDuePing) {
  EXPECT_TRUE(CheckConnectionAlive());
  EXPECT_TRUE(AliveUntil(14));
  EXPECT_FALSE(AliveUntil(15));
}

TEST_F(LivenessTest, ServerThatAnswersEveryPingStaysAlive) {
  for (int Second = 0; Second < 200; ++Second) {
    ASSERT_TRUE(AliveUntil(Now + 1)) << "second " << Now;
    MarkConnectionAlive(SPINGBACK);
  }
}

TEST_F(LivenessTest, LatencyIsTheTimeFromPingToAnswer) {
  CheckConnectionAlive();
  Clock->AdvanceMilliseconds(250);
  MarkConnectionAlive(SPINGBACK);
  EXPECT_EQ(GetLatency(), 250);
}

TEST_F(LivenessTest, AnswersToAnOlderBurstDoNotMoveTheDeadline) {
  CheckConnectionAlive();  // ping 1 at 0
  AliveUntil(1);
  MarkConnectionAlive(SPINGBACK);  // next ping due at 16, alive until 31
  AliveUntil(26);                  // pings 2, 3, 4 at 16, 21, 26
  AliveUntil(27);
  MarkConnectionAlive(SPINGBACK);  // answers ping 2: next ping due at 42, alive until 57
  AliveUntil(42);                  // ping 5 opens a burst; pings 3 and 4 are still in flight
  MarkConnectionAlive(SPINGBACK);
  MarkConnectionAlive(SPINGBACK);  // both belong to the older burst
  EXPECT_TRUE(AliveUntil(56));
  EXPECT_FALSE(AliveUntil(57));
}

TEST_F(LivenessTest, BusyTrafficDoesNotPostponeTheRegularPing) {
  CheckConnectionAlive();
  AliveUntil(1);
  MarkConnectionAlive(SPINGBACK);  // next ping due at 16
  for (int Second = 2; Second < 16; ++Second) {
    AliveUntil(Second);
    MarkConnectionAlive(SWORLDENTERED);
  }
  // Traffic kept the ping away until its regular time, 16; had one gone out
  // earlier, this answer would not complete the measurement.
  AliveUntil(16);
  Clock->AdvanceMilliseconds(40);
  MarkConnectionAlive(SPINGBACK);
  EXPECT_EQ(GetLatency(), 40);
}

TEST_F(LivenessTest, ServerPingIsNoSignOfLife) {
  AliveUntil(14);
  MarkConnectionAlive(SPING);
  EXPECT_FALSE(AliveUntil(15));
}

TEST_F(LivenessTest, SilentGameLeadsToTheDialogAndAfterAMinuteToConnectionLost) {
  for (int Tick = 0; Tick < 160; ++Tick) {
    Clock->AdvanceMilliseconds(100);
    ConnectionAliveTick();
  }
  EXPECT_TRUE(IsServerSilent());
  ASSERT_NE(MessageQueue().Front(), nullptr);
  EXPECT_EQ(MessageQueue().Front()->Type, MSG_SERVER_NOT_RESPONDING);

  MarkConnectionAlive(SWORLDENTERED);  // a sign of life closes the dialog's reason
  EXPECT_FALSE(IsServerSilent());
  EXPECT_TRUE(MessageQueue().IsEmpty());

  for (int Tick = 0; Tick < 700 && GetConnectionState() != OFFLINE; ++Tick) {
    Clock->AdvanceMilliseconds(100);
    ConnectionAliveTick();
  }
  EXPECT_EQ(GetConnectionState(), OFFLINE);
  ASSERT_NE(MessageQueue().Front(), nullptr);
  EXPECT_EQ(MessageQueue().Front()->Type, MSG_MESSAGEBOX);
  EXPECT_EQ(std::any_cast<std::string>(MessageQueue().Front()->Data1), "Connection lost");
}

TEST(NetworkErrorTest, ShortTextsAndFrames) {
  EXPECT_EQ(NetworkErrorText(10061), "Connection refused. (10061)");
  EXPECT_EQ(NetworkErrorText(10054), "Connection reset by peer. (10054)");
  EXPECT_EQ(NetworkErrorText(10060), "Connection timed out. (10060)");
  EXPECT_EQ(NetworkErrorText(11001), "Server name does not exist. (11001)");
  EXPECT_EQ(NetworkErrorText(200002), "Disconnected from server. (200002)");
  EXPECT_EQ(NetworkErrorText(6), "Specified event object handle is invalid. (6)");
  EXPECT_EQ(NetworkErrorText(11031), "Reserved policy QOS element type. (11031)");
  EXPECT_EQ(NetworkErrorText(12345), "Network Error. (12345)");
  EXPECT_EQ(FormatNetworkError(10061, 1).rfind(
                "Cannot connect to a login server.\n\nError: Connection refused. (10061)\n\n"
                "All login servers are offline.",
                0),
            0u);
  EXPECT_EQ(FormatNetworkError(200002, 2).rfind(
                "Cannot connect to the game server.\n\nError: Disconnected from server. (200002)\n\n"
                "The game server is offline.",
                0),
            0u);
  EXPECT_EQ(FailureText([] { FormatNetworkError(1, 3); }), "unknown error type");
}

TEST(ConnectionStateTest, NamesOfTheStates) {
  EXPECT_STREQ(GetConnectionStateName(OFFLINE), "OFFLINE");
  EXPECT_STREQ(GetConnectionStateName(GAME_RUNNING), "GAME_RUNNING");
  EXPECT_STREQ(GetConnectionStateName(GAME_DEAD), "Invalid connection state.");
  EXPECT_STREQ(GetConnectionStateName(12), "Invalid connection state.");
}

TEST(HostManagerTest, AddressesAreTakenAsResolvedAndNamesAreLookedUp) {
  const THostData Address = THostData::FromText("127.0.0.1", 7171);
  EXPECT_TRUE(Address.IsResolved());
  EXPECT_TRUE(Address.HostName.empty());
  EXPECT_EQ(Address.AddressText(), "127.0.0.1");
  const THostData Name = THostData::FromText("login.example", 7171);
  EXPECT_FALSE(Name.IsResolved());
  EXPECT_EQ(Name.HostName, "login.example");
  EXPECT_FALSE(THostData::FromText("256.1.1.1", 1).IsResolved());
}

TEST(HostManagerTest, FailedHostsAreSkippedUntilReset) {
  setenv("KELMO_LOGIN_HOSTS", "a:1,b:2", 1);
  THostManager Hosts;
  Hosts.LoadLoginHosts();
  ASSERT_TRUE(Hosts.SelectAvailableHost());
  EXPECT_EQ(Hosts.CurrentHost().HostName, "a");
  Hosts.MarkHostFailed(10061);
  ASSERT_TRUE(Hosts.SelectAvailableHost());
  EXPECT_EQ(Hosts.CurrentHost().HostName, "b");
  Hosts.MarkHostFailed(10060);
  EXPECT_FALSE(Hosts.SelectAvailableHost());
  EXPECT_EQ(Hosts.LastHostErrorCode(), 10060);
  EXPECT_EQ(FailureText([&] { Hosts.MarkHostFailed(1); }), "m_CurrentHost != hostsEnd()");
  Hosts.ResetHosts();
  ASSERT_TRUE(Hosts.SelectAvailableHost());
  EXPECT_EQ(Hosts.CurrentHost().HostName, "a");
  unsetenv("KELMO_LOGIN_HOSTS");
}

TEST(DeploymentTest, LoginHostsComeFromTheEnvironmentInTheirOrder) {
  setenv("KELMO_LOGIN_HOSTS", "10.0.0.1:7000,login.example:7171", 1);
  const auto Hosts = GetLoginHostSettings();
  ASSERT_EQ(Hosts.size(), 2u);
  EXPECT_EQ(Hosts[0].Host, "10.0.0.1");
  EXPECT_EQ(Hosts[0].Port, 7000);
  EXPECT_EQ(Hosts[1].Host, "login.example");
  for (const char* Bad : {"nohost", "host:", "host:99999", ":7171", "a:1,,b:2", "host:12x"}) {
    setenv("KELMO_LOGIN_HOSTS", Bad, 1);
    EXPECT_EQ(FailureText([] { GetLoginHostSettings(); }), "invalid login host") << Bad;
  }
  unsetenv("KELMO_LOGIN_HOSTS");
  const auto BuiltIn = GetLoginHostSettings();
  EXPECT_EQ(BuiltIn.size(), 10u);
  for (const auto& Host : BuiltIn) EXPECT_EQ(Host.Port, 7171);
}

class ConnectTimeOutTest : public ::testing::Test {
 protected:
  ConnectTimeOutTest() {
    setenv("KELMO_LOGIN_HOSTS", "127.0.0.1:7,127.0.0.1:9", 1);
    InitNetwork();
    InitConnection();
  }
  ~ConnectTimeOutTest() override {
    ExitConnection();
    ExitNetwork();
    unsetenv("KELMO_LOGIN_HOSTS");
    MessageQueue().Clear();
  }
};

// The sockets are never polled here, so no connect ever completes: each host
// runs into the time-out of 150 ticks.
TEST_F(ConnectTimeOutTest, EachHostGetsFifteenSecondsThenOneMessage) {
  ConnectLoginServer();
  EXPECT_EQ(GetConnectionState(), CONNECTING_ADMIN);
  for (int Tick = 0; Tick < 150; ++Tick) ConnectTimeOutTick();
  EXPECT_EQ(GetConnectionState(), CONNECTING_ADMIN);
  EXPECT_TRUE(MessageQueue().IsEmpty());
  ConnectTimeOutTick();  // the first host is given up, the second tried
  EXPECT_EQ(GetConnectionState(), CONNECTING_ADMIN);
  for (int Tick = 0; Tick < 151; ++Tick) ConnectTimeOutTick();
  ASSERT_EQ(MessageQueue().Size(), 1);
  const TMessage Box = MessageQueue().Take();
  EXPECT_EQ(std::any_cast<std::string>(Box.Data1), "Connection failed");
  EXPECT_NE(std::any_cast<std::string>(Box.Data2).find("Connection timed out. (10060)"), std::string::npos);
  EXPECT_EQ(GetConnectionState(), OFFLINE);
}

}  // namespace
