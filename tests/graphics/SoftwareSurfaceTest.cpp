// The pixel rules on the software engine, which needs no display.
#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "core/Exception.h"
#include "core/Preferences.h"
#include "graphics/SurfaceDX.h"

namespace {

void ExpectFailure(const std::function<void()>& Action, const std::string& Text) {
  try {
    Action();
    ADD_FAILURE() << "no failure, expected " << Text;
  } catch (const TMyException& Failure) {
    EXPECT_EQ(Failure.Text(), Text);
  }
}

class SoftwareSurfaceTest : public ::testing::Test {
 protected:
  SoftwareSurfaceTest() {
    InitPreferences();
    Surface.Startup();
    Surface.ResumeSurfaces();
    Surface.ClearSurface(CACHE_SURFACE, Ground, 255);
    Surface.ClearSurface(TEMP_SURFACE, Ground, 255);
  }
  ~SoftwareSurfaceTest() override { ExitPreferences(); }

  TRGBColor At(int SurfaceNumber, int x, int y) {
    const TImage Image = Surface.ReadSurfaceImage(SurfaceNumber);
    const size_t Index = (static_cast<size_t>(y) * Image.Width + x) * 3;
    return {Image.Pixels[Index], Image.Pixels[Index + 1], Image.Pixels[Index + 2]};
  }

  // The pixels of CACHE_SURFACE in a rectangle that equal Color.
  int Count(TRect Area, TRGBColor Color) {
    const TImage Image = Surface.ReadSurfaceImage(CACHE_SURFACE);
    int Found = 0;
    for (int y = Area.y; y < Area.y + Area.height; ++y) {
      for (int x = Area.x; x < Area.x + Area.width; ++x) {
        const size_t Index = (static_cast<size_t>(y) * Image.Width + x) * 3;
        Found += TRGBColor{Image.Pixels[Index], Image.Pixels[Index + 1], Image.Pixels[Index + 2]} == Color;
      }
    }
    return Found;
  }

  // A 4 x 4 image: a 2 x 2 block of Ink in the middle on Key.
  static std::vector<std::uint8_t> Block(TRGBColor Ink, TRGBColor Key) {
    std::vector<std::uint8_t> Pixels;
    for (int y = 0; y < 4; ++y) {
      for (int x = 0; x < 4; ++x) {
        const TRGBColor C = (x == 1 || x == 2) && (y == 1 || y == 2) ? Ink : Key;
        Pixels.insert(Pixels.end(), {static_cast<std::uint8_t>(C.r), static_cast<std::uint8_t>(C.g),
                                     static_cast<std::uint8_t>(C.b)});
      }
    }
    return Pixels;
  }

  CSurfaceDX Surface;
  const TRGBColor Ground{10, 10, 10};
  const TRGBColor Ink{200, 100, 50};
};

TEST_F(SoftwareSurfaceTest, ClipRectsMovesTheSourceEdgesWithTheTarget) {
  TEdges To{-5, 10, 20, 40};
  TEdges From{100, 200, 125, 230};
  EXPECT_TRUE(Surface.ClipRects({0, 0, 15, 35}, To, From));
  EXPECT_EQ(To, (TEdges{0, 10, 15, 35}));
  EXPECT_EQ(From, (TEdges{105, 200, 120, 225}));
  TEdges Outside{50, 50, 60, 60};
  EXPECT_FALSE(Surface.ClipRects({0, 0, 50, 50}, Outside, From));
}

TEST_F(SoftwareSurfaceTest, FillsLinesAndPixelsCoverExactlyTheirPixels) {
  Surface.FillRect(CACHE_SURFACE, 10, 20, 5, 3, Ink, 255);
  EXPECT_EQ(Count({0, 0, 100, 100}, Ink), 15);
  EXPECT_EQ(Count({10, 20, 5, 3}, Ink), 15);
  Surface.DrawHorizontalLine(CACHE_SURFACE, 30, 40, 7, {1, 2, 3});
  EXPECT_EQ(Count({30, 40, 7, 1}, {1, 2, 3}), 7);
  Surface.DrawVerticalLine(CACHE_SURFACE, 50, 40, 6, {4, 5, 6});
  EXPECT_EQ(Count({50, 40, 1, 6}, {4, 5, 6}), 6);
  Surface.DrawPixel(CACHE_SURFACE, 60, 61, {7, 8, 9});
  EXPECT_EQ(At(CACHE_SURFACE, 60, 61), (TRGBColor{7, 8, 9}));
  Surface.FillRectClipped(CACHE_SURFACE, 70, 70, 10, 10, {1, 1, 1}, {75, 0, 100, 72}, 255);
  EXPECT_EQ(Count({0, 0, 200, 200}, {1, 1, 1}), 10);
  // Without blending, any alpha writes the colour.
  Surface.FillRect(CACHE_SURFACE, 0, 0, 2, 2, {2, 2, 2}, 100);
  EXPECT_EQ(Count({0, 0, 2, 2}, {2, 2, 2}), 4);
}

TEST_F(SoftwareSurfaceTest, FramesAreFourBarsUnlessTooSmall) {
  Surface.DrawFrame(CACHE_SURFACE, 100, 100, 3, 3, 2, Ink);
  EXPECT_EQ(Count({100, 100, 3, 3}, Ink), 9);
  Surface.DrawFrame(CACHE_SURFACE, 200, 200, 10, 8, 2, Ink);
  EXPECT_EQ(Count({200, 200, 10, 8}, Ink), 80 - 6 * 4);
  EXPECT_EQ(Count({202, 202, 6, 4}, Ground), 24);
  Surface.DrawFrameClipped(CACHE_SURFACE, 300, 300, 10, 10, 1, Ink, {300, 300, 5, 10});
  EXPECT_EQ(Count({300, 300, 10, 10}, Ink), 5 + 4 + 9);  // top, bottom, left; the right bar is outside
}

TEST_F(SoftwareSurfaceTest, KeyedCopiesSkipTheKeyAndStayInsideTheClip) {
  const TRGBColor Key{255, 0, 255};
  Surface.WriteImage(SPRITE_SURFACE, 0, 0, 4, 4, Block(Ink, Key));
  Surface.BlitKeyed(CACHE_SURFACE, 10, 10, SPRITE_SURFACE, 0, 0, 4, 4, Key);
  EXPECT_EQ(Count({10, 10, 4, 4}, Ink), 4);
  EXPECT_EQ(Count({10, 10, 4, 4}, Ground), 12);
  Surface.Blit(CACHE_SURFACE, 20, 10, SPRITE_SURFACE, 0, 0, 4, 4);
  EXPECT_EQ(Count({20, 10, 4, 4}, Key), 12);
  Surface.BlitKeyedClipped(CACHE_SURFACE, 30, 10, SPRITE_SURFACE, 0, 0, 4, 4, Key, {30, 10, 2, 4});
  EXPECT_EQ(Count({30, 10, 4, 4}, Ink), 2);
  // Off the target's edge nothing breaks.
  Surface.BlitKeyed(CACHE_SURFACE, 510, 382, SPRITE_SURFACE, 0, 0, 4, 4, Key);
  EXPECT_EQ(At(CACHE_SURFACE, 511, 383), Ink);
}

TEST_F(SoftwareSurfaceTest, ScaledKeyedCopiesGoThroughTheStages) {
  const TRGBColor Key{255, 0, 255};
  const TRGBColor Stage{0, 254, 0};
  Surface.WriteImage(SPRITE_SURFACE, 0, 0, 4, 4, Block(Ink, Key));
  Surface.StretchBlitKeyedClipped(CACHE_SURFACE, 40, 40, 8, 8, SPRITE_SURFACE, 0, 0, 4, 4, Key, Stage, NO_CLIP);
  EXPECT_EQ(Count({40, 40, 8, 8}, Ink), 16);
  EXPECT_EQ(Count({42, 42, 4, 4}, Ink), 16);
  EXPECT_EQ(Count({40, 40, 8, 8}, Ground), 48);
  Surface.StretchBlitKeyed(CACHE_SURFACE, 60, 60, 12, 12, SPRITE_SURFACE, 0, 0, 4, 4, Key);
  EXPECT_EQ(Count({63, 63, 6, 6}, Ink), 36);
  EXPECT_EQ(Count({60, 60, 12, 12}, Ink), 36);
  ExpectFailure([&] { Surface.StretchBlitKeyedClipped(TEMP_SURFACE, 0, 0, 8, 8, SPRITE_SURFACE, 0, 0, 4, 4, Key,
                                                      Stage, NO_CLIP); },
                "ToSurface!=TEMP_SURFACE");
  ExpectFailure([&] { Surface.StretchBlitKeyedClipped(CACHE_SURFACE, 0, 0, 600, 8, SPRITE_SURFACE, 0, 0, 4, 4, Key,
                                                      Stage, NO_CLIP); },
                "ToRect.width<=Rect[STRETCH_SURFACE].right && ToRect.height<=Rect[STRETCH_SURFACE].bottom");
}

TEST_F(SoftwareSurfaceTest, ColouredImagesTakeTheLuminanceOfTheirChannel) {
  const std::vector<std::uint8_t> Pixels = {100, 100, 100, 200, 0, 0, 0, 0, 0, 255, 0, 255};
  const std::vector<std::uint8_t> Mask = {255, 255, 0, 0, 255, 0, 9, 9, 9, 255, 0, 0};
  const TOutfitColors Colors{{{255, 0, 0}, {0, 0, 255}, {0, 255, 128}, {1, 1, 1}}};
  Surface.WriteColoredImage(SPRITE_SURFACE, 0, 0, 4, 1, Pixels, Mask, Colors);
  Surface.Blit(CACHE_SURFACE, 0, 0, SPRITE_SURFACE, 0, 0, 4, 1);
  EXPECT_EQ(At(CACHE_SURFACE, 0, 0), (TRGBColor{255 * 100 / 256, 0, 0}));  // yellow: channel 0
  const int L = 30 * 200 / 100;
  EXPECT_EQ(At(CACHE_SURFACE, 1, 0), (TRGBColor{0, 255 * L / 256, 128 * L / 256}));  // green: channel 2
  EXPECT_EQ(At(CACHE_SURFACE, 2, 0), (TRGBColor{0, 0, 0}));  // unmarked: copied
  const int L3 = (30 * 255 + 11 * 255) / 100;
  EXPECT_EQ(At(CACHE_SURFACE, 3, 0), (TRGBColor{0, 0, 255 * L3 / 256}));  // red: channel 1
  // A font's glyphs: everything but the background takes channel 0.
  Surface.WriteColoredImage(SPRITE_SURFACE, 0, 1, 4, 1, Pixels, {}, {{{0, 255, 0}, {255, 0, 255}, {}, {}}});
  Surface.Blit(CACHE_SURFACE, 0, 1, SPRITE_SURFACE, 0, 1, 4, 1);
  EXPECT_EQ(At(CACHE_SURFACE, 0, 1), (TRGBColor{0, 255 * 100 / 256, 0}));
  EXPECT_EQ(At(CACHE_SURFACE, 3, 1), (TRGBColor{255, 0, 255}));
  ExpectFailure([&] { Surface.WriteColoredImage(SCREEN_SURFACE, 0, 0, 4, 1, Pixels, Mask, Colors); },
                "ToSurface!=SCREEN_SURFACE");
}

TEST_F(SoftwareSurfaceTest, LightMultipliesTheMapSurfaceOnly) {
  Surface.ClearSurface(TEMP_SURFACE, {200, 100, 40}, 255);
  const std::vector<TRect> Rects = {{0, 0, 10, 10}, {10, 0, 10, 10}};
  const std::vector<TLightCorners> Colors = {{{{255, 255, 255}, {255, 255, 255}, {255, 255, 255}, {255, 255, 255}}},
                                             {{{0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}}}};
  Surface.DrawLightMap(TEMP_SURFACE, Rects, Colors);
  EXPECT_EQ(At(TEMP_SURFACE, 5, 5), (TRGBColor{200, 100, 40}));
  EXPECT_EQ(At(TEMP_SURFACE, 15, 5), (TRGBColor{0, 0, 0}));
  const std::vector<TRect> Half = {{0, 20, 10, 10}};
  const std::vector<TLightCorners> HalfColors = {{{{0, 0, 0}, {255, 255, 255}, {0, 0, 0}, {255, 255, 255}}}};
  Surface.DrawLightMap(TEMP_SURFACE, Half, HalfColors);
  EXPECT_EQ(At(TEMP_SURFACE, 0, 25), (TRGBColor{10, 5, 2}));      // u = 0.05
  EXPECT_EQ(At(TEMP_SURFACE, 9, 25), (TRGBColor{190, 95, 38}));   // u = 0.95
  Surface.DrawLightMap(CACHE_SURFACE, Rects, Colors);
  EXPECT_EQ(At(CACHE_SURFACE, 15, 5), Ground);
}

TEST_F(SoftwareSurfaceTest, WrongArgumentsFailWithTheirTexts) {
  ExpectFailure([&] { Surface.FillRect(NUMBER_OF_SURFACES, 0, 0, 1, 1, Ink, 255); },
                "In(Surface,0,NUMBER_OF_SURFACES-1)");
  ExpectFailure([&] { Surface.GetSurfaceRect(-1); }, "In(Surface,0,NUMBER_OF_SURFACES_GL-1)");
  ExpectFailure([&] { Surface.TestLost(3); }, "Type>=0 && Type<3");
  ExpectFailure([&] { Surface.WriteImage(SPRITE_SURFACE, -1, 0, 4, 4, Block(Ink, Ink)); },
                "x>=0 && y>=0 && Width>0 && Height>0");
  ExpectFailure([&] { Surface.Blit(CACHE_SURFACE, 0, 0, SPRITE_SURFACE, 0, 0, 0, 4); },
                "FromRect.width>0 && FromRect.height>0");
  ExpectFailure([&] { Surface.Blit(CACHE_SURFACE, 0, 0, SCREEN_SURFACE, 0, 0, 4, 4); },
                "FromSurface != SCREEN_SURFACE");
}

TEST_F(SoftwareSurfaceTest, NewSurfacesReportEveryLossOnce) {
  EXPECT_TRUE(Surface.TestLost(0));
  EXPECT_TRUE(Surface.TestLost(1));
  EXPECT_TRUE(Surface.TestLost(2));
  EXPECT_FALSE(Surface.TestLost(1));
  EXPECT_EQ(Surface.GetNumberOfSpriteSurfaces(), 16);
  EXPECT_EQ(Surface.GetSurfaceRect(STRETCH_SURFACE), (TRect{0, 0, 550, 440}));
}

}  // namespace
