// The text card: the four fonts of the built Kelmo.pic, the three alignments,
// clipping, highlighting and tiled skins, on both engines under a private X
// server. The picture must match its golden image, and the drawing recorder's
// log of the same card its committed log.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

#include "core/Preferences.h"
#include "core/ProgramState.h"
#include "graphics/Engines.h"
#include "graphics/Fonts.h"
#include "graphics/Graphics.h"
#include "graphics/Recorder.h"
#include "platform/Window.h"
#include "tests/graphics/TestCard.h"
#include "tests/graphics/DisplayWindow.h"
#include "tests/support/Harness.h"

#ifndef KELMO_DATA_DIR
#error "KELMO_DATA_DIR must name the folder of the built data files"
#endif
#ifndef KELMO_GOLDEN_DIR
#error "KELMO_GOLDEN_DIR must name the folder of the golden images"
#endif

namespace {

const auto* const Registered = testdisplay::RegisterDisplay("KelmoTextCardTest");

constexpr TRGBColor WHITE{255, 255, 255};
constexpr TRGBColor GUIDE{90, 90, 120};
const char* const PANGRAM = "The quick brown fox jumps over the lazy dog. 0123456789 !?()[]+-*/=";
const char* const LATIN1 = "\xC4\xD6\xDC \xE4\xF6\xFC \xDF \xE9\xE8\xEA \xE7 \xF1 \xA9 \xBF\xA1 \xB0 \xBD";

void Fonts() {
  const TRGBColor Colors[] = {{255, 255, 255}, {255, 200, 0}, {0, 220, 90}, {224, 224, 224}};
  for (int Font = 1; Font <= NumberOfFonts; ++Font) {
    const int y = 8 + (Font - 1) * 40;
    const std::string Name = "Font " + std::to_string(Font) + ": " + PANGRAM;
    PrintPlain(SCREEN_SURFACE, 8, y, Font, Colors[Font - 1], Name.c_str(), LEFT_ALIGN);
    PrintPlain(SCREEN_SURFACE, 8, y + LineHeight(Font), Font, Colors[Font - 1], LATIN1, LEFT_ALIGN);
  }
}

// A guide at x 400; each alignment's text is drawn against it.
void Alignments() {
  FillRectangle(SCREEN_SURFACE, 400, 170, 1, 70, GUIDE, 255);
  const TextStyle Left{4, 255, 255, 255, LEFT_ALIGN};
  const TextStyle Centre{2, 255, 128, 128, CENTER_ALIGN};
  const TextStyle Right{3, 128, 200, 255, RIGHT_ALIGN};
  PrintStyled(SCREEN_SURFACE, 400, 172, Left, "left of the guide? no: right of it");
  PrintStyled(SCREEN_SURFACE, 400, 192, Centre, "centred on the guide");
  PrintStyled(SCREEN_SURFACE, 400, 214, Right, "Right Aligned To The Guide");
  PrintCentred(SCREEN_SURFACE, 200, 230, {255, 255, 0}, "Map label, cut to 14", 14);
  PrintStyledN(SCREEN_SURFACE, 600, 230, Left, "only eleven characters", 11);
}

// Texts through clip rectangles, with the rectangle framed around them.
void Clipping() {
  const TRect Boxes[] = {{20, 260, 150, 30}, {200, 262, 80, 9}, {320, 258, 200, 40}};
  for (const TRect& Box : Boxes) DrawRectangleFrame(SCREEN_SURFACE, Box.x - 1, Box.y - 1, Box.width + 2, Box.height + 2, 1, GUIDE);
  PrintClipped(SCREEN_SURFACE, 10, 266, 4, WHITE, "This line runs out of its box on both sides", LEFT_ALIGN, Boxes[0]);
  PrintClipped(SCREEN_SURFACE, 200, 260, 1, WHITE, "cut through the middle", LEFT_ALIGN, Boxes[1]);
  PrintStyledClipped(SCREEN_SURFACE, 420, 270, TextStyle{2, 255, 80, 80, CENTER_ALIGN},
                     "A long centred label that is wider than its box", Boxes[2]);
}

void Highlighting() {
  PrintText(SCREEN_SURFACE, 20, 320, 4, {224, 224, 224}, true, "Ask me about {gold}, {the king} or {rats}.",
            WHOLE_TEXT, LEFT_ALIGN, NO_CLIP);
  PrintText(SCREEN_SURFACE, 20, 340, 4, {224, 224, 224}, false, "Without highlighting {gold} keeps its braces.",
            WHOLE_TEXT, LEFT_ALIGN, NO_CLIP);
  PrintText(SCREEN_SURFACE, 780, 360, 1, {255, 255, 255}, true, "An {open highlight ends with the call",
            WHOLE_TEXT, RIGHT_ALIGN, NO_CLIP);
  PrintText(SCREEN_SURFACE, 400, 380, 2, {0, 255, 0}, true, "{centred} and {highlighted}", WHOLE_TEXT,
            CENTER_ALIGN, NO_CLIP);
  PrintText(SCREEN_SURFACE, 20, 400, 4, {224, 224, 224}, false, "A line feed\nis a blank", WHOLE_TEXT, LEFT_ALIGN,
            NO_CLIP);
}

// Skins: once, tiled from an offset, and through a clip.
void Skins() {
  DrawSkin(SCREEN_SURFACE, 20, 440, 300, 100, SKIN_DIALOG_BACKGROUND, 13, 29);
  DrawSkinAt(SCREEN_SURFACE, 340, 440, SKIN_BUTTON);
  DrawSkinClipped(SCREEN_SURFACE, 340, 480, 200, 60, SKIN_PANEL_BACKGROUND, 0, 0, {360, 490, 100, 40});
  PrintStyled(SCREEN_SURFACE, 340 + GetSkin(SKIN_BUTTON).width / 2, 445, TextStyle{3, 255, 255, 255, CENTER_ALIGN},
              "Ok");
}

void DrawTextCard() {
  CSurface& S = *GetSurface();
  S.ClearSurface(SCREEN_SURFACE, {20, 24, 40}, 255);
  Fonts();
  Alignments();
  Clipping();
  Highlighting();
  Skins();
}

std::string ReadText(const std::filesystem::path& File) {
  std::ifstream Stream(File, std::ios::binary);
  std::ostringstream Text;
  Text << Stream.rdbuf();
  return Text.str();
}

class TextCardTest : public ::testing::Test {
 protected:
  TextCardTest() {
    InitPreferences();
    Preferences().ConfineFramerate = 201;
    Preferences().Antialiasing = false;
    SetViewMode(WINDOWED_MODE);
    LoadPictures(std::string(KELMO_DATA_DIR) + "/Kelmo.pic");
    InitFonts();
  }
  ~TextCardTest() override {
    SetActiveRecorder(nullptr);
    ExitGraphics();
    ShutdownSurface();
    ExitPreferences();
  }

  void Start(int Engine) {
    SelectEngine(Engine, testdisplay::TestWindow());
    GetSurface()->Startup();
  }

  // One frame of the card as presented, with its drawing log.
  TImage Card() {
    EXPECT_TRUE(StartFrame(testdisplay::TestWindow()));
    Recorder.Clear();
    SetActiveRecorder(&Recorder);
    DrawTextCard();
    SetActiveRecorder(nullptr);
    GetSurface()->RequestCapture();
    FinishFrame();
    std::optional<TImage> Capture = GetSurface()->TakeCapture();
    EXPECT_TRUE(Capture.has_value());
    return Capture.value_or(TImage{});
  }

  // The log against the committed one; KELMO_UPDATE_GOLDEN=1 writes it.
  void ExpectCommittedLog() {
    const std::filesystem::path File = std::filesystem::path(KELMO_GOLDEN_DIR) / "text-card.log";
    const char* Update = std::getenv("KELMO_UPDATE_GOLDEN");
    if (Update != nullptr && std::string(Update) == "1") {
      std::ofstream(File, std::ios::binary) << Recorder.Log();
      return;
    }
    EXPECT_EQ(Recorder.Log(), ReadText(File));
  }

  CDrawingRecorder Recorder;
};

TEST_F(TextCardTest, OpenGLDrawsTheGoldenTextCard) {
  Start(ENGINE_OPENGL);
  ASSERT_EQ(GetCurrentEngine(), ENGINE_OPENGL);
  EXPECT_EQ(testcard::CompareWithGolden(Card(), "text-card", 0), "");
  ExpectCommittedLog();
}

TEST_F(TextCardTest, TheSoftwareEngineDrawsTheSameCard) {
  Start(ENGINE_DIRECTX5);
  ASSERT_EQ(GetCurrentEngine(), ENGINE_DIRECTX5);
  EXPECT_EQ(testcard::CompareWithGolden(Card(), "text-card", 0), "");
  ExpectCommittedLog();
}

// Each text colour has glyph cells of its own, written once: a second frame
// draws from the cache.
TEST_F(TextCardTest, ASecondFrameDrawsTextFromTheCache) {
  Start(ENGINE_OPENGL);
  const TImage First = Card();
  ResetGraphicsCounters();
  EXPECT_EQ(testcard::CompareImages(First, Card(), 0), "");
  EXPECT_EQ(GraphicsCounters().PageWrites, 0);
}

}  // namespace
