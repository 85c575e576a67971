// The real client's window driven with xdotool: clicks, a drag, modifiers and
// typed keys reach the right element of the tree with the right codes. The
// test elements (KELMO_TEST_ELEMENTS=1) report each event on the standard
// error; the drawing recorder (KELMO_RECORD_DRAWING) shows what is on screen.
#include <gtest/gtest.h>
#include <signal.h>

#include "tests/e2e/ClientFixture.h"

namespace {

using namespace harness;

// Probe A covers (40, 40) to (280, 160) of the client area, probe B (320, 40) to (560, 160).
class InputTest : public ClientTest {
 protected:
  void SetUp() override {
    Client = StartClient({}, {"KELMO_TEST_ELEMENTS=1", "KELMO_RECORD_DRAWING=" + DrawingLog().string()});
    const std::vector<std::string> Windows = WaitForWindows(1);
    ASSERT_FALSE(Windows.empty()) << Client->StandardError();
    Window = Windows.front();
    // The recorder writes once the first frame with the probes is drawn.
    ASSERT_TRUE(WaitFor([&] { return ReadFile(DrawingLog()).find("\"Probe B\"") != std::string::npos; }, 20s))
        << Client->StandardError();
    Do({"windowfocus", "--sync", Window});
    // Keys count once the client has taken the focus: a first key must arrive.
    ASSERT_TRUE(WaitFor(
        [&] {
          Do({"key", "F12"});
          return WaitFor([&] { return Client->StandardError().find("KeyDown key=0x10B\n") != std::string::npos; },
                         500ms);
        },
        10s))
        << Client->StandardError();
  }

  void TearDown() override {
    if (!Client) return;
    Client->Signal(SIGTERM);
    EXPECT_EQ(Client->WaitExit(10s), 0) << Client->StandardError();
  }

  std::filesystem::path DrawingLog() const { return Home.Root() / "drawing.log"; }

  void Do(std::vector<std::string> Arguments) {
    Arguments.insert(Arguments.begin(), "xdotool");
    RunCommand(Arguments, {"DISPLAY=" + X.Display()});
  }

  void MoveTo(int x, int y) { Do({"mousemove", "--sync", "--window", Window, std::to_string(x), std::to_string(y)}); }

  // Waits until the client has reported Line.
  bool Reported(const std::string& Line) {
    return WaitFor([&] { return Client->StandardError().find(Line + "\n") != std::string::npos; }, 10s);
  }

  std::unique_ptr<CProcess> Client;
  std::string Window;
};

TEST_F(InputTest, AClickReachesTheElementUnderTheMouseInItsCoordinates) {
  MoveTo(100, 110);
  Do({"click", "1"});
  EXPECT_TRUE(Reported("probe A LeftDown x=60 y=70 flags=0x000")) << Client->StandardError();
  EXPECT_TRUE(Reported("probe A LeftUp x=60 y=70 flags=0x000")) << Client->StandardError();
  MoveTo(330, 45);
  Do({"click", "3"});
  EXPECT_TRUE(Reported("probe B RightUp x=10 y=5 flags=0x000")) << Client->StandardError();
}

// The press takes the mouse: the release over B still goes to A.
TEST_F(InputTest, ADragStaysWithTheElementThatWasPressed) {
  MoveTo(100, 100);
  Do({"mousedown", "1"});
  ASSERT_TRUE(Reported("probe A LeftDown x=60 y=60 flags=0x000")) << Client->StandardError();
  MoveTo(400, 120);
  Do({"mouseup", "1"});
  EXPECT_TRUE(Reported("probe A MouseMove x=360 y=80")) << Client->StandardError();
  EXPECT_TRUE(Reported("probe A LeftUp x=360 y=80 flags=0x000")) << Client->StandardError();
  EXPECT_EQ(Client->StandardError().find("probe B"), std::string::npos) << Client->StandardError();
}

TEST_F(InputTest, ModifiersTravelWithTheMouse) {
  MoveTo(400, 100);
  Do({"keydown", "ctrl"});
  Do({"click", "1"});
  Do({"keyup", "ctrl"});
  EXPECT_TRUE(Reported("probe B LeftDown x=80 y=60 flags=0x400")) << Client->StandardError();
  Do({"keydown", "shift"});
  Do({"keydown", "alt"});
  Do({"click", "1"});
  Do({"keyup", "alt"});
  Do({"keyup", "shift"});
  EXPECT_TRUE(Reported("probe B LeftUp x=80 y=60 flags=0xA00")) << Client->StandardError();
}

// Ctrl+Shift+L is bound as 0x44C; Ctrl+l fires the same binding.
TEST_F(InputTest, KeyBindingsTakeTheirKeyWithEitherShiftState) {
  Do({"key", "ctrl+shift+l"});
  EXPECT_TRUE(Reported("probe A OnEvent event=7")) << Client->StandardError();
  EXPECT_TRUE(Reported("probe A KeyDown key=0x400")) << Client->StandardError();
  EXPECT_TRUE(Reported("probe A KeyDown key=0x600")) << Client->StandardError();
  const size_t Before = Client->StandardError().size();
  Do({"key", "ctrl+l"});
  EXPECT_TRUE(WaitFor([&] { return Client->StandardError().find("OnEvent event=7", Before) != std::string::npos; },
                      10s))
      << Client->StandardError();
}

TEST_F(InputTest, TypedKeysArriveAsKeyCodesWithTheirModifiers) {
  Do({"type", "Hi!"});
  EXPECT_TRUE(Reported("probe A KeyDown key=0x248")) << Client->StandardError();
  EXPECT_TRUE(Reported("probe A KeyDown key=0x069")) << Client->StandardError();
  EXPECT_TRUE(Reported("probe A KeyDown key=0x221")) << Client->StandardError();
  Do({"key", "Return", "Escape", "BackSpace", "Tab", "F5", "Up", "ctrl+a", "alt+Home", "alt+Return"});
  for (const char* Code : {"0x00D", "0x01B", "0x008", "0x009", "0x104", "0x10C", "0x461", "0x912", "0x80D"}) {
    EXPECT_TRUE(Reported(std::string("probe A KeyDown key=") + Code)) << Code << "\n" << Client->StandardError();
  }
}

// After a second of rest the element under the mouse shows its tooltip.
TEST_F(InputTest, RestingOverAnElementShowsItsTooltip) {
  MoveTo(450, 100);
  MoveTo(451, 101);
  EXPECT_TRUE(Reported("probe B Hover x=131 y=61")) << Client->StandardError();
  EXPECT_TRUE(WaitFor([&] { return ReadFile(DrawingLog()).find("\"Tooltip of probe B\"") != std::string::npos; },
                      10s))
      << ReadFile(DrawingLog());
  const std::string Log = ReadFile(DrawingLog());
  EXPECT_NE(Log.find("skin s=1 number=56 area=40,40,240,120 start=0,0"), std::string::npos) << Log;
  EXPECT_NE(Log.find("text s=1 at=46,46 font=4 rgb=255,255,255 align=0 highlight=0 \"Probe A\""), std::string::npos)
      << Log;
}

}  // namespace
