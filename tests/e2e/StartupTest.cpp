// The real client under a private X server: its window, its single instance,
// and how it ends.
#include <gtest/gtest.h>
#include <signal.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/e2e/ClientFixture.h"

namespace {

using namespace harness;
namespace fs = std::filesystem;

TEST_F(ClientTest, OpensItsWindowAndEndsCleanlyOnTerminationSignal) {
  auto Client = StartClient();
  const auto Windows = WaitForWindows(1);
  ASSERT_FALSE(Windows.empty()) << Client->StandardError();
  const std::string Window = Windows.front();
  EXPECT_EQ(Xdotool("getwindowname", Window), "Kelmo\n") << Client->StandardError();
  EXPECT_NE(Xdotool("getwindowgeometry", Window).find("Geometry: 800x600"), std::string::npos);

  Client->Signal(SIGTERM);
  EXPECT_EQ(Client->WaitExit(10s), 0) << Client->StandardError();
}

TEST_F(ClientTest, InterruptSignalAlsoClosesTheWindow) {
  auto Client = StartClient();
  ASSERT_FALSE(WaitForWindows(1).empty()) << Client->StandardError();
  Client->Signal(SIGINT);
  EXPECT_EQ(Client->WaitExit(10s), 0) << Client->StandardError();
}

TEST_F(ClientTest, SecondCopyFailsUnlessGamemaster) {
  auto First = StartClient();
  ASSERT_FALSE(WaitForWindows(1).empty()) << First->StandardError();

  auto Second = StartClient();
  EXPECT_EQ(Second->WaitExit(20s), 1);
  EXPECT_NE(Second->StandardError().find("A Kelmo client is already running. (Error Code 29)"),
            std::string::npos)
      << Second->StandardError();

  auto Gamemaster = StartClient({"gamemaster"});
  EXPECT_EQ(WaitForWindows(2).size(), 2u) << Gamemaster->StandardError();
  Gamemaster->Signal(SIGTERM);
  EXPECT_EQ(Gamemaster->WaitExit(10s), 0);
  First->Signal(SIGTERM);
  EXPECT_EQ(First->WaitExit(10s), 0);
}

TEST_F(ClientTest, MissingObjectTypesEndWithProgramErrorOne) {
  fs::remove(Home.WorkDirectory() / "Kelmo.dat");
  auto Client = StartClient();
  EXPECT_EQ(Client->WaitExit(20s), 1);
  const std::string Expected = "Cannot find file '" + (Home.WorkDirectory() / "Kelmo.dat").string() +
                               "'. (Error Code 1)";
  EXPECT_NE(Client->StandardError().find(Expected), std::string::npos) << Client->StandardError();
}

TEST_F(ClientTest, CrashSignalEndsInReportAndErrorFileEntry) {
  auto Client = StartClient();
  ASSERT_FALSE(WaitForWindows(1).empty()) << Client->StandardError();
  Client->Signal(SIGSEGV);
  EXPECT_EQ(Client->WaitExit(20s), 1);
  EXPECT_NE(Client->StandardError().find("Segmentation Fault."), std::string::npos)
      << Client->StandardError();
  const std::string Report = ReadFile(Home.UserDirectory() / "Error.txt");
  EXPECT_NE(Report.find("Debug Assertion 10.53"), std::string::npos) << Report;
  EXPECT_NE(Report.find("Segmentation Fault."), std::string::npos) << Report;
}

TEST_F(ClientTest, ErrorFileOfAnEarlierRunIsOfferedAtStart) {
  fs::create_directories(Home.UserDirectory());
  std::ofstream(Home.UserDirectory() / "Error.txt")
      << "+" << std::string(63, '-') << "\nDebug Assertion 10.53 earlier failure\n"
      << "Mon Nov 23 00:00:00 2026\nGraphic Engine: OpenGL\n" << std::string(64, '-') << "\n";
  auto Client = StartClient();
  ASSERT_FALSE(WaitForWindows(1).empty()) << Client->StandardError();
  EXPECT_TRUE(WaitFor(
      [&] { return Client->StandardError().find("MSG_ERROR_REPORT (47)") != std::string::npos; }, 10s))
      << Client->StandardError();
  Client->Signal(SIGTERM);
  EXPECT_EQ(Client->WaitExit(10s), 0);
}

}  // namespace
