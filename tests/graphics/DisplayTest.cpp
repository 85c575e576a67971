// Both engines under a private X server: the test card against its golden
// images, the engine decision on this machine, and the fall back to the
// software engine when OpenGL goes away while the client runs.
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

#include "core/Preferences.h"
#include "core/ProgramState.h"
#include "graphics/Engines.h"
#include "graphics/Graphics.h"
#include "platform/Window.h"
#include "tests/graphics/TestCard.h"
#include "tests/graphics/DisplayWindow.h"
#include "tests/support/Harness.h"

namespace {

const auto* const Registered = testdisplay::RegisterDisplay("KelmoGraphicsTest");

class DisplayTest : public ::testing::Test {
 protected:
  DisplayTest() {
    InitPreferences();
    Preferences().ConfineFramerate = 201;
    Preferences().Antialiasing = false;
    SetViewMode(WINDOWED_MODE);
    testcard::LoadCardFiles(Directory);
  }
  ~DisplayTest() override {
    ExitGraphics();
    ShutdownSurface();
    platform::CGLContext::SimulateOpenGLAbsent(false);
    ExitPreferences();
  }

  platform::CWindow& Window() { return testdisplay::TestWindow(); }

  void Start(int Forced) {
    SelectEngine(Forced, Window());
    GetSurface()->Startup();
  }

  // One frame of the card, as it was presented.
  TImage Card() {
    EXPECT_TRUE(StartFrame(Window()));
    testcard::DrawTestCard();
    GetSurface()->RequestCapture();
    FinishFrame();
    std::optional<TImage> Capture = GetSurface()->TakeCapture();
    EXPECT_TRUE(Capture.has_value());
    return Capture.value_or(TImage{});
  }

  testfiles::CTempDirectory Directory;
};

// The X server's OpenGL is a rasteriser on the processor, which counts as no
// OpenGL: the decision takes the software engine.
TEST_F(DisplayTest, SoftwareOpenGLCountsAsNoneAndTheSoftwareEngineIsChosen) {
  Preferences().Engine = ENGINE_OPENGL;
  Start(-1);
  EXPECT_EQ(GetCurrentEngine(), ENGINE_DIRECTX5);
  EXPECT_EQ(GetUsableEngines(), 0);
  EXPECT_EQ(Preferences().Engine, ENGINE_DIRECTX5);
  EXPECT_EQ(testcard::CompareWithGolden(Card(), "card-software", 0), "");
}

TEST_F(DisplayTest, ForcedOpenGLDrawsTheGoldenCard) {
  Start(ENGINE_OPENGL);
  EXPECT_EQ(GetCurrentEngine(), ENGINE_OPENGL);
  EXPECT_EQ(Preferences().Engine, ENGINE_OPENGL);
  EXPECT_STREQ(GetSurface()->Name(), "OpenGL");
  const TImage Image = Card();
  EXPECT_EQ(testcard::CompareWithGolden(Image, "card-opengl", 4), "");
  // The second frame of the same card is the same picture, from the caches.
  ResetGraphicsCounters();
  EXPECT_EQ(testcard::CompareImages(Image, Card(), 0), "");
  EXPECT_EQ(GraphicsCounters().FileReads, 0);
  EXPECT_EQ(GraphicsCounters().PageWrites, 0);
  // The error report names the implementation: its version and renderer.
  EXPECT_NE(GetSurface()->VersionData().find(", "), std::string::npos) << GetSurface()->VersionData();
}

TEST_F(DisplayTest, SoftwareEngineDrawsItsGoldenCard) {
  Start(ENGINE_DIRECTX5);
  EXPECT_EQ(GetCurrentEngine(), ENGINE_DIRECTX5);
  EXPECT_STREQ(GetSurface()->Name(), "DirectX5");
  EXPECT_EQ(testcard::CompareWithGolden(Card(), "card-software", 0), "");
}

// The pixel rules hold across engines: only the light may differ, a little.
TEST_F(DisplayTest, EnginesAgreeOnEveryFixedPixel) {
  Start(ENGINE_OPENGL);
  const TImage OpenGL = Card();
  ExitGraphics();
  ShutdownSurface();
  testcard::LoadCardFiles(Directory);
  Start(ENGINE_DIRECTX5);
  EXPECT_EQ(testcard::CompareImages(OpenGL, Card(), 6), "");
}

TEST_F(DisplayTest, LosingOpenGLWhileRunningFallsBackAndKeepsDrawing) {
  Start(ENGINE_OPENGL);
  ASSERT_EQ(GetCurrentEngine(), ENGINE_OPENGL);
  Card();
  Card();
  platform::CGLContext::SimulateOpenGLLoss();
  const TImage Image = Card();
  EXPECT_EQ(GetCurrentEngine(), ENGINE_DIRECTX5);
  EXPECT_EQ(Preferences().Engine, ENGINE_DIRECTX5);
  EXPECT_EQ(testcard::CompareWithGolden(Image, "card-software", 0), "");
  EXPECT_EQ(testcard::CompareImages(Image, Card(), 0), "");
}

TEST_F(DisplayTest, WithoutOpenGLTheDecisionTakesTheSoftwareEngine) {
  Preferences().Engine = ENGINE_OPENGL;
  platform::CGLContext::SimulateOpenGLAbsent(true);
  Start(-1);
  EXPECT_EQ(GetCurrentEngine(), ENGINE_DIRECTX5);
  EXPECT_EQ(GetUsableEngines(), 0);
  EXPECT_EQ(Preferences().Engine, ENGINE_DIRECTX5);
  EXPECT_EQ(testcard::CompareWithGolden(Card(), "card-software", 0), "");
}

TEST_F(DisplayTest, ChangingTheEngineAtRunTimeKeepsTheCard) {
  Start(ENGINE_DIRECTX5);
  Card();
  ChangeEngine(ENGINE_OPENGL);
  EXPECT_EQ(GetCurrentEngine(), ENGINE_OPENGL);
  EXPECT_EQ(Preferences().Engine, ENGINE_OPENGL);
  EXPECT_EQ(testcard::CompareWithGolden(Card(), "card-opengl", 4), "");
  // The other platform's second engine isn't here: its probe fails, OpenGL stays.
  ChangeEngine(ENGINE_DIRECTX9);
  EXPECT_EQ(GetCurrentEngine(), ENGINE_OPENGL);
}

TEST_F(DisplayTest, ResizingLosesTheFieldCacheButNotTheSpritePages) {
  Start(ENGINE_OPENGL);
  Card();
  Window().SetClientSize(900, 700);
  ASSERT_TRUE(harness::WaitFor([&] { return Window().GetClientSize() == std::array<int, 2>{900, 700}; }, 
                               std::chrono::seconds(5)));
  EXPECT_TRUE(StartFrame(Window()));
  EXPECT_TRUE(GetSurface()->TestLost(2));
  EXPECT_FALSE(GetSurface()->TestLost(1));
  EXPECT_EQ(GetSurface()->GetSurfaceRect(SCREEN_SURFACE), (TRect{0, 0, 900, 700}));
  FinishFrame();
  Window().SetClientSize(800, 600);
}

}  // namespace
