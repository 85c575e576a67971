// The real client draws through the chosen engine, takes screenshots on the
// key and on request, and falls back to the software engine without OpenGL.
// The X server's OpenGL runs on the processor, so the client takes it only
// when the command line forces it.
#include <gtest/gtest.h>
#include <signal.h>

#include <filesystem>

#include "graphics/Png.h"
#include "tests/e2e/ClientFixture.h"

namespace {

using namespace harness;
namespace fs = std::filesystem;

class ClientDrawingTest : public ClientTest {
 protected:
  fs::path Screenshot(int Number) const {
    char Name[32];
    std::snprintf(Name, sizeof(Name), "Screenshot%04d.png", Number);
    return Home.UserDirectory() / "Screenshots" / Name;
  }

  // Asks for a screenshot until one is there; the client may still be starting.
  bool RequestScreenshot(CProcess& Client, int Number) {
    return WaitFor(
        [&] {
          if (fs::exists(Screenshot(Number))) return true;
          Client.Signal(SIGUSR1);
          return WaitFor([&] { return fs::exists(Screenshot(Number)); }, 500ms);
        },
        20s);
  }

  // The engine that the client recorded in its configuration when it ended.
  std::string RecordedEngine() const {
    const std::string Configuration = ReadFile(Home.UserDirectory() / "Kelmo.cfg");
    const size_t At = Configuration.find("\nEngine = ");
    return At == std::string::npos ? "" : Configuration.substr(At + 10, Configuration.find('\n', At + 1) - At - 10);
  }

  void Stop(CProcess& Client) {
    Client.Signal(SIGTERM);
    EXPECT_EQ(Client.WaitExit(10s), 0) << Client.StandardError();
  }

  static void ExpectBlackFrame(const fs::path& File) {
    const std::optional<TImage> Image = ReadPng(File.string());
    ASSERT_TRUE(Image.has_value()) << File;
    EXPECT_EQ(Image->Width, 800);
    EXPECT_EQ(Image->Height, 600);
    EXPECT_TRUE(std::all_of(Image->Pixels.begin(), Image->Pixels.end(), [](std::uint8_t Byte) { return Byte == 0; }));
  }
};

TEST_F(ClientDrawingTest, DrawsWithForcedOpenGLAndWritesTheFrameOnRequest) {
  auto Client = StartClient({"engine", "1"});
  ASSERT_FALSE(WaitForWindows(1).empty()) << Client->StandardError();
  ASSERT_TRUE(RequestScreenshot(*Client, 1)) << Client->StandardError();
  ExpectBlackFrame(Screenshot(1));
  Stop(*Client);
  EXPECT_EQ(RecordedEngine(), "1");
}

TEST_F(ClientDrawingTest, PrintScreenTakesAScreenshot) {
  auto Client = StartClient();
  const auto Windows = WaitForWindows(1);
  ASSERT_FALSE(Windows.empty()) << Client->StandardError();
  ASSERT_TRUE(WaitFor(
      [&] {
        RunCommand({"xdotool", "key", "--window", Windows.front(), "Print"}, {"DISPLAY=" + X.Display()});
        return WaitFor([&] { return fs::exists(Screenshot(1)); }, 500ms);
      },
      20s))
      << Client->StandardError();
  ExpectBlackFrame(Screenshot(1));
  Stop(*Client);
}

TEST_F(ClientDrawingTest, WithoutOpenGLTheSoftwareEngineDraws) {
  auto Client = StartClient({}, {"KELMO_NO_OPENGL=1"});
  ASSERT_FALSE(WaitForWindows(1).empty()) << Client->StandardError();
  ASSERT_TRUE(RequestScreenshot(*Client, 1)) << Client->StandardError();
  ExpectBlackFrame(Screenshot(1));
  Stop(*Client);
  EXPECT_EQ(RecordedEngine(), "0");
}

TEST_F(ClientDrawingTest, LosingOpenGLWhileRunningFallsBackAndKeepsDrawing) {
  auto Client = StartClient({"engine", "1"}, {"KELMO_LOSE_OPENGL_AFTER=5"});
  ASSERT_FALSE(WaitForWindows(1).empty()) << Client->StandardError();
  ASSERT_TRUE(WaitFor([&] { return Client->StandardError().find("no OpenGL context") != std::string::npos; }, 20s))
      << Client->StandardError();
  ASSERT_TRUE(RequestScreenshot(*Client, 1)) << Client->StandardError();
  ExpectBlackFrame(Screenshot(1));
  ASSERT_TRUE(RequestScreenshot(*Client, 2)) << Client->StandardError();
  Stop(*Client);
  EXPECT_EQ(RecordedEngine(), "0");
}

}  // namespace
