// Object, outfit, skin and picture displays with the built data files, drawn
// on the software engine: counts through the drawing recorder, placement
// through the pixels of the cache surface.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <memory>
#include <optional>

#include "core/Exception.h"
#include "core/Preferences.h"
#include "core/ProgramState.h"
#include "graphics/Engines.h"
#include "graphics/Fonts.h"
#include "graphics/Graphics.h"
#include "graphics/OutfitPalette.h"
#include "graphics/Recorder.h"
#include "graphics/SurfaceDX.h"
#include "gui/Displays.h"
#include "gui/SkinProperties.h"
#include "world/Objects.h"
#include "tests/gui/Elements.h"
#include "tests/gui/WidgetFixture.h"

#ifndef KELMO_DATA_DIR
#error "KELMO_DATA_DIR must name the folder of the built data files"
#endif

namespace {

using guitest::FailureOf;

constexpr TRGBColor GROUND{1, 2, 3};
constexpr TRGBColor WHITE{255, 255, 255};

// The first type from 100 on that answers the question; the tables end with
// an "index out of range" failure.
template <typename TQuestion>
std::optional<int> FirstType(int From, TQuestion Question) {
  for (int Type = From;; ++Type) {
    try {
      if (Question(Type)) return Type;
    } catch (const TMyException&) {
      return std::nullopt;
    }
  }
}

struct TBox {
  int Left = INT_MAX, Top = INT_MAX, Right = -1, Bottom = -1;
  bool Empty() const { return Right < 0; }
};

class DisplaysTest : public guitest::CWidgetTest {
 protected:
  DisplaysTest() : CWidgetTest(true) {}

  // What differs from the ground on the cache surface after Draw.
  TBox Painted(const std::function<void()>& Draw) {
    GetSurface()->ClearSurface(CACHE_SURFACE, GROUND, 255);
    Draw();
    const TImage Image = GetSurface()->ReadSurfaceImage(CACHE_SURFACE);
    TBox Box;
    for (int y = 0; y < Image.Height; ++y) {
      for (int x = 0; x < Image.Width; ++x) {
        const size_t Index = (static_cast<size_t>(y) * Image.Width + x) * 3;
        if (TRGBColor{Image.Pixels[Index], Image.Pixels[Index + 1], Image.Pixels[Index + 2]} == GROUND) continue;
        Box = {std::min(Box.Left, x), std::min(Box.Top, y), std::max(Box.Right, x), std::max(Box.Bottom, y)};
      }
    }
    return Box;
  }

  std::vector<std::string> TextLines() const {
    std::vector<std::string> Texts;
    for (const std::string& Line : Recorder.Lines()) {
      if (Line.starts_with("text")) Texts.push_back(Line);
    }
    return Texts;
  }

  static TObject Item(int Type, std::uint32_t Count) {
    TObject Object;
    Object.Type = Type;
    Object.Data = Count;
    return Object;
  }
};

TEST_F(DisplaysTest, StackCountsShowAboveOneOrWhenForced) {
  const std::optional<int> Stackable = FirstType(FIRST_OBJECT_TYPE, [](int Type) {
    return GetObjectFlag(Type, CUMULATIVE);
  });
  ASSERT_TRUE(Stackable) << "the data files hold a stackable type";
  const TextStyle& Style = SkinProperties.Buttons.ObjectNumber;
  const auto Draw = [&](std::uint32_t Count, bool Force) {
    Recorder.Clear();
    DrawObjectDisplay(CACHE_SURFACE, 40, 50, 32, Item(*Stackable, Count), WHITE, NO_CLIP, Style, Force);
    return TextLines();
  };
  const std::string At = "text s=4 at=72," + std::to_string(50 + 32 - 1 - FontHeight(Style.Font)) +
                         " font=2 rgb=192,192,192 align=2 highlight=0 ";
  EXPECT_TRUE(Draw(1, false).empty());
  EXPECT_EQ(Draw(1, true), (std::vector<std::string>{At + "\"1\""}));
  EXPECT_EQ(Draw(100, false), (std::vector<std::string>{At + "\"100\""}));
  // The buffer holds three digits.
  EXPECT_EQ(Draw(1234, false), (std::vector<std::string>{At + "\"123\""}));
}

TEST_F(DisplaysTest, ObjectsSitInTheBottomRightOfTheirSquare) {
  EXPECT_TRUE(Painted([] { DrawObjectDisplay(CACHE_SURFACE, 40, 50, 32, TObject{}, WHITE, NO_CLIP, {}, true); })
                  .Empty());
  const std::optional<int> Small = FirstType(FIRST_OBJECT_TYPE, [](int Type) {
    return GetObjectWidth(Type) == 1 && GetObjectHeight(Type) == 1 && GetObjectDisplaySize(Type) == 32 &&
           !GetObjectFlag(Type, CUMULATIVE) && GetObjectSprite(Type, 1, 1, 1, 1, 1, 1, 1) != 0;
  });
  ASSERT_TRUE(Small);
  const TBox Normal = Painted([&] {
    DrawObjectDisplay(CACHE_SURFACE, 40, 50, 32, Item(*Small, 0), WHITE, NO_CLIP, {}, false);
  });
  ASSERT_FALSE(Normal.Empty());
  EXPECT_GE(Normal.Left, 40);
  EXPECT_GE(Normal.Top, 50);
  EXPECT_LE(Normal.Right, 71);
  EXPECT_LE(Normal.Bottom, 81);
  const TBox Doubled = Painted([&] {
    DrawObjectDisplay(CACHE_SURFACE, 40, 50, 64, Item(*Small, 0), WHITE, NO_CLIP, {}, false);
  });
  EXPECT_EQ(Doubled.Right - 40, 2 * (Normal.Right - 40) + 1);
  EXPECT_EQ(Doubled.Bottom - 50, 2 * (Normal.Bottom - 50) + 1);
}

TEST_F(DisplaysTest, ObjectDisplaysMustBeSquare) {
  CGUIObjectDisplay Display(0, 0, 32);
  Display.SetObject(Item(FIRST_OBJECT_TYPE, 0));
  Display.SetSize(32, 30);
  EXPECT_EQ(FailureOf([&] { Display.Draw(CACHE_SURFACE, 0, 0); }), "getWidth()==getHeight()");
  CGUISpriteResizer Resizer(0, 0, 64, true);
  Resizer.SetSize(64, 63);
  EXPECT_EQ(FailureOf([&] { Resizer.Draw(CACHE_SURFACE, 0, 0); }), "getWidth()==getHeight()");
}

TEST_F(DisplaysTest, FramedSpriteResizerCutsTheObjectInsideItsFrame) {
  const std::optional<int> Stackable = FirstType(FIRST_OBJECT_TYPE, [](int Type) {
    return GetObjectFlag(Type, CUMULATIVE);
  });
  ASSERT_TRUE(Stackable);
  CGUISpriteResizer Resizer(0, 0, 64, true);
  Resizer.SetObject(Item(*Stackable, 7));
  Recorder.Clear();
  Resizer.Draw(CACHE_SURFACE, 10, 20);
  ASSERT_FALSE(Recorder.Lines().empty());
  EXPECT_EQ(Recorder.Lines().front(), "skin s=4 number=114 area=10,20,64,64 start=0,0");
  const std::vector<std::string> Texts = TextLines();
  ASSERT_EQ(Texts.size(), 1U);
  EXPECT_NE(Texts[0].find("at=74,"), std::string::npos) << "drawn at full size: " << Texts[0];
  EXPECT_NE(Texts[0].find("clip=11,21,62,62"), std::string::npos) << Texts[0];
}

TEST_F(DisplaysTest, CreatureDisplayCentresADoubleSizedOutfitOnItsField) {
  const std::optional<int> Outfit = FirstType(1, [](int Type) { return GetOutfitPatternWidth(Type) == 4; });
  ASSERT_TRUE(Outfit) << "the data files hold an outfit with four directions";
  const int Size = 2 * GetOutfitDisplaySize(*Outfit);
  CGUICreatureDisplay Display(0, 0, 128, 128);
  Display.SetOutfit(*Outfit);
  const std::array<int, 4> Colors{0, 20, 40, 60};
  Display.SetColors(Colors.data());
  const TBox Field = Painted([&] { Display.Draw(CACHE_SURFACE, 10, 10); });
  ASSERT_FALSE(Field.Empty());
  EXPECT_GE(Field.Left, 10 + 128 - Size);
  EXPECT_GE(Field.Top, 10 + 128 - Size);
  EXPECT_LE(Field.Right, 10 + 127);
  EXPECT_LE(Field.Bottom, 10 + 127);
  // A wider element keeps the picture in the middle: half the growth each side.
  Display.SetSize(200, 168);
  const TBox Wider = Painted([&] { Display.Draw(CACHE_SURFACE, 10, 10); });
  EXPECT_EQ(Wider.Left - Field.Left, 36);
  EXPECT_EQ(Wider.Top - Field.Top, 20);
  EXPECT_EQ(Wider.Right - Field.Right, 36);
  EXPECT_FALSE(Display.LeftDown(5, 5, 0));
  EXPECT_FALSE(Display.LeftUp(5, 5, 0));
}

TEST_F(DisplaysTest, CreatureDisplayChecksItsArguments) {
  CGUICreatureDisplay Display(0, 0, 128, 128);
  Display.SetColor(2, 77);
  EXPECT_EQ(Display.GetColors(), (std::array<int, 4>{0, 77, 0, 0}));
  EXPECT_EQ(FailureOf([&] { Display.SetColor(5, 1); }), "In(Mask,1,4)");
  EXPECT_EQ(FailureOf([&] { Display.SetColors(nullptr); }), "ColorData!=NULL");
  EXPECT_EQ(FailureOf([&] { Display.SetAddOns(8); }), "In(_AddOns,0,7)");
  Display.SetAddOns(7);
  EXPECT_EQ(Display.GetAddOns(), 7);
  EXPECT_TRUE(Painted([&] { Display.Draw(CACHE_SURFACE, 0, 0); }).Empty()) << "no outfit and no object";
}

TEST_F(DisplaysTest, SkinDisplayTakesItsSkinsSizeAndIgnoresTheMouse) {
  CGUISkinDisplay Display(114, 3, 4);
  EXPECT_EQ(Display.getWidth(), GetSkin(114).width);
  EXPECT_EQ(Display.getHeight(), GetSkin(114).height);
  Recorder.Clear();
  Display.Draw(CACHE_SURFACE, 5, 6);
  EXPECT_EQ(Recorder.Lines(), (std::vector<std::string>{"skin s=4 number=114 area=5,6," +
                                                        std::to_string(GetSkin(114).width) + "," +
                                                        std::to_string(GetSkin(114).height) + " start=0,0"}));
  EXPECT_FALSE(Display.MouseMove(1, 1));
  EXPECT_FALSE(Display.RightUp(1, 1, 0));
}

TEST_F(DisplaysTest, TutorialImagesComeFromTheirTable) {
  CGUITutorialHintImageDisplay First(0, 0, 0);
  EXPECT_EQ(First.getWidth(), 43);
  EXPECT_EQ(First.getHeight(), 30);
  CGUITutorialHintImageDisplay Last(28, 0, 0);
  EXPECT_EQ(Last.getWidth(), 317);
  EXPECT_EQ(Last.getHeight(), 224);
  EXPECT_EQ(CGUITutorialHintImageDisplay::ImageRect(19), CGUITutorialHintImageDisplay::ImageRect(24));
  EXPECT_EQ(FailureOf([] { CGUITutorialHintImageDisplay(29, 0, 0); }), "In(_TutorialHintImage,0,28)");
  const TBox Drawn = Painted([&] { First.Draw(CACHE_SURFACE, 20, 30); });
  ASSERT_FALSE(Drawn.Empty());
  EXPECT_GE(Drawn.Left, 20);
  EXPECT_LE(Drawn.Right, 20 + 42);
  EXPECT_LE(Drawn.Bottom, 30 + 29);
}

TEST(OutfitPaletteTest, GreysHuesAndNumbersOutOfRange) {
  EXPECT_EQ(OutfitColor(0), (TRGBColor{255, 255, 255}));
  EXPECT_EQ(OutfitColor(133), OutfitColor(0));
  EXPECT_EQ(OutfitColor(-1), OutfitColor(0));
  EXPECT_EQ(OutfitColor(19), (TRGBColor{218, 218, 218}));
  EXPECT_EQ(OutfitColor(4 * 19 + 6), (TRGBColor{0, 255, 0}));
  EXPECT_EQ(OutfitColor(4 * 19 + 18), (TRGBColor{255, 0, 0}));
}

}  // namespace
