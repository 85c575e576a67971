// The real client signs in to the real local server by itself and stays in
// the world; a broken deployment key ends in a report.
#include <gtest/gtest.h>
#include <signal.h>

#include <regex>

#include "tests/e2e/ClientFixture.h"

namespace {

using namespace harness;

// The times in milliseconds of the server's log lines for a command.
std::vector<long> CommandTimes(const std::string& Log, const std::string& Command) {
  std::vector<long> Times;
  const std::regex Line("\\{\"time\":(\\d+),[^\\n]*\"command\":\"" + Command + "\"");
  for (auto It = std::sregex_iterator(Log.begin(), Log.end(), Line); It != std::sregex_iterator(); ++It) {
    Times.push_back(std::stol((*It)[1]));
  }
  return Times;
}

class SignInClientTest : public ClientTest {
 protected:
  std::vector<std::string> SignInEnvironment() const {
    return {"KELMO_LOGIN_HOSTS=127.0.0.1:" + std::to_string(Server.LoginPort()),
            "KELMO_AUTOLOGIN=demo:demo:Ayla"};
  }

  CLocalServer Server{Home.Root()};
};

TEST_F(SignInClientTest, AutomaticSignInEntersTheWorldAndKeepsTheConnectionAlive) {
  auto Client = StartClient({}, SignInEnvironment());
  ASSERT_TRUE(WaitFor([&] { return !CommandTimes(Server.Log(), "CENTERWORLD").empty(); }, 20s))
      << Client->StandardError() << Server.Log();
  const auto Windows = WaitForWindows(1);
  ASSERT_FALSE(Windows.empty());
  EXPECT_EQ(Xdotool("getwindowname", Windows.front()), "Kelmo - Ayla\n");

  // A ping on entering, then one every 15 seconds while nothing else happens.
  ASSERT_TRUE(WaitFor([&] { return CommandTimes(Server.Log(), "CPING").size() >= 2; }, 25s))
      << Server.Log();
  const auto Pings = CommandTimes(Server.Log(), "CPING");
  EXPECT_NEAR(Pings[1] - Pings[0], 15000, 1500) << Server.Log();
  EXPECT_EQ(Server.Log().find("\"error\""), std::string::npos) << Server.Log();
}

TEST_F(SignInClientTest, MalformedKeyEndsInTheFailureReport) {
  auto Environment = SignInEnvironment();
  Environment.push_back("KELMO_RSA_MODULUS=1234x5");
  auto Client = StartClient({}, Environment);
  EXPECT_EQ(Client->WaitExit(20s), 1) << Client->StandardError();
  const std::string Report = ReadFile(Home.UserDirectory() / "Error.txt");
  EXPECT_NE(Report.find("Asymmetric encryption for login server failed"), std::string::npos) << Report;
  EXPECT_NE(Report.find("digit out of range"), std::string::npos) << Report;
  EXPECT_TRUE(CommandTimes(Server.Log(), "CLOGINADMIN").empty());
}

}  // namespace
