// The real client shows the demo world: signed in automatically against the
// local server, its map fills the window; after a walk into the hole by the
// road it shows the cave. The drawing log tells when each scene is on the
// screen; a screenshot of each is kept in the build directory for people to
// look at, and the pictures must be map pictures: no part of the composed
// picture is left unpainted.
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <thread>

#include "graphics/Png.h"
#include "tests/e2e/ClientFixture.h"

#ifndef KELMO_DEMO_WORLD
#error "KELMO_DEMO_WORLD must name the demo world"
#endif
#ifndef KELMO_SCREENSHOT_DIR
#error "KELMO_SCREENSHOT_DIR must name where the screenshots are kept"
#endif

namespace {

using namespace harness;

class MapScreenTest : public ClientTest {
 protected:
  std::vector<std::string> SignIn(const std::string& Walk) const {
    std::vector<std::string> Environment{"KELMO_LOGIN_HOSTS=127.0.0.1:" + std::to_string(Server.LoginPort()),
                                         "KELMO_AUTOLOGIN=demo:demo:Ayla",
                                         "KELMO_RECORD_DRAWING=" + DrawingLog().string()};
    if (!Walk.empty()) Environment.push_back("KELMO_TEST_WALK=" + Walk);
    return Environment;
  }
  std::filesystem::path DrawingLog() const { return Home.Root() / "drawing.log"; }
  std::filesystem::path Screenshots() const { return Home.UserDirectory() / "Screenshots"; }

  // Waits until the frame's log shows the name, then takes a screenshot and
  // keeps it as Name in the build directory.
  TImage ScreenshotOnceShown(CProcess& Client, const std::string& Label, const std::string& Name) {
    EXPECT_TRUE(WaitFor([&] { return ReadFile(DrawingLog()).find(Label) != std::string::npos; }, 30s))
        << Client.StandardError() << Server.Log();
    // The pointer out of the window, so that no creature wears the frame of
    // the one under the mouse; the client sees it leave within a few frames.
    RunCommand({"xdotool", "mousemove", "0", "0"}, {"DISPLAY=" + X.Display()});
    std::this_thread::sleep_for(300ms);
    const std::filesystem::path Shot = Screenshots() / "Screenshot0001.png";
    EXPECT_TRUE(WaitFor(
        [&] {
          Client.Signal(SIGUSR1);
          return WaitFor([&] { return ReadPng(Shot.string()).has_value(); }, 500ms);
        },
        20s))
        << Client.StandardOutput() << Client.StandardError();
    std::filesystem::create_directories(KELMO_SCREENSHOT_DIR);
    std::filesystem::copy_file(Shot, std::filesystem::path(KELMO_SCREENSHOT_DIR) / Name,
                               std::filesystem::copy_options::overwrite_existing);
    return ReadPng(Shot.string()).value_or(TImage{});
  }

  CLocalServer Server{Home.Root(), {}, {"--world", KELMO_DEMO_WORLD}};
};

// The composed picture starts yellow; a map that covers its window leaves
// none of that, and no more than the given share of it is black.
void ExpectMapPicture(const TImage& Image, int BlackPercent) {
  ASSERT_GT(Image.Width, 0);
  int Yellow = 0, Black = 0;
  const int Pixels = Image.Width * Image.Height;
  for (int i = 0; i < Pixels; ++i) {
    const std::uint8_t* P = &Image.Pixels[3 * i];
    Yellow += P[0] == 255 && P[1] == 255 && P[2] == 0 ? 1 : 0;
    Black += P[0] < 8 && P[1] < 8 && P[2] < 8 ? 1 : 0;
  }
  EXPECT_EQ(Yellow, 0);
  EXPECT_LT(Black, Pixels / 100 * BlackPercent);
}

TEST_F(MapScreenTest, TheClientShowsTheDemoWorld) {
  auto Client = StartClient({}, SignIn(""));
  const TImage Surface = ScreenshotOnceShown(*Client, "\"Tobias\"", "screenshot-surface.png");
  ExpectMapPicture(Surface, 10);
}

// The walk ends on the hole; the player falls into the cave, where the
// labels of the cave's creatures appear.
TEST_F(MapScreenTest, AfterTheHoleTheClientShowsTheCave) {
  auto Client = StartClient({}, SignIn("7,7,6"));
  const TImage Cave = ScreenshotOnceShown(*Client, "\"Wisp\"", "screenshot-cave.png");
  ExpectMapPicture(Cave, 70);  // the rock round the cave is black
  EXPECT_NE(Server.Log().find("CGOPATH"), std::string::npos);
}

}  // namespace
