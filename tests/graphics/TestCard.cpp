#include "tests/graphics/TestCard.h"

#include <cstdlib>
#include <filesystem>
#include <vector>

#include "graphics/Graphics.h"
#include "graphics/Png.h"

#ifndef KELMO_GOLDEN_DIR
#error "KELMO_GOLDEN_DIR must name the folder of the golden images"
#endif
#ifndef KELMO_TEST_OUTPUT_DIR
#error "KELMO_TEST_OUTPUT_DIR must name the folder for failed comparisons"
#endif

namespace testcard {

namespace {

using namespace testfiles;

const TRGBColor MAGENTA{255, 0, 255};

// Sprite 1: a ring; 2: diagonal stripes; 3: an outfit body in grey levels;
// 4: its mask in the four channel colours; 5: a small arrow; 6: empty.
std::vector<TSpriteSource> CardSprites() {
  return {
      {{1, 1, 1}, [](int x, int y) -> std::optional<TRGBColor> {
         const int d = (x - 15) * (x - 15) + (y - 15) * (y - 15);
         if (d > 15 * 15 || d < 8 * 8) return std::nullopt;
         return TRGBColor{255, x * 8, y * 8};
       }},
      {{0, 0, 0}, [](int x, int y) -> std::optional<TRGBColor> {
         if ((x + y) % 8 < 4) return std::nullopt;
         return TRGBColor{40, 200, (x * 7) % 256};
       }},
      {MAGENTA, [](int x, int y) -> std::optional<TRGBColor> {
         if (x < 4 || x > 27 || y < 2 || y > 29) return std::nullopt;
         const int Level = 80 + (x * 5 + y * 3) % 160;
         return TRGBColor{Level, Level, Level};
       }},
      {MAGENTA, [](int x, int y) -> std::optional<TRGBColor> {
         if (x < 4 || x > 27 || y < 2 || y > 29) return std::nullopt;
         if (y < 9) return TRGBColor{255, 255, 0};
         if (y < 16) return TRGBColor{255, 0, 0};
         if (y < 23) return TRGBColor{0, 255, 0};
         return x < 16 ? TRGBColor{0, 0, 255} : TRGBColor{30, 30, 30};
       }},
      {{7, 7, 7}, [](int x, int y) -> std::optional<TRGBColor> {
         if (x < y / 2 || x > 31 - y / 2) return std::nullopt;
         return TRGBColor{250, 250, (y * 8) % 256};
       }},
      {{}, {}},
  };
}

// Picture 1: 2 x 2 tiles of a gradient with holes; 2 to 9 single tiles, 8 black,
// the font sheets with bars for glyphs.
std::vector<TPictureSource> CardPictures() {
  std::vector<TPictureSource> Pictures;
  Pictures.push_back({2, 2, MAGENTA, [](int x, int y) -> std::optional<TRGBColor> {
                        if ((x / 8 + y / 8) % 5 == 0) return std::nullopt;
                        return TRGBColor{x * 4, y * 4, 128};
                      }});
  for (int Number = 2; Number <= 9; ++Number) {
    Pictures.push_back({1, 1, MAGENTA, [Number](int x, int y) -> std::optional<TRGBColor> {
                          if (Number == 8) return TRGBColor{0, 0, 0};
                          if (x % 6 >= 4 || y % 8 >= 6) return std::nullopt;
                          return TRGBColor{180 + x, 180 + y, 200};
                        }});
  }
  return Pictures;
}

void Fills(CSurface& S) {
  const TRGBColor Colors[] = {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {255, 255, 255}, {0, 0, 0}, {128, 64, 32}};
  for (int Index = 0; Index < 6; ++Index) S.FillRect(SCREEN_SURFACE, 10 + Index * 30, 10, 25, 40, Colors[Index], 255);
  S.FillRect(SCREEN_SURFACE, 190, 10, 25, 40, {90, 180, 90}, 128);
  S.FillRectClipped(SCREEN_SURFACE, 220, 10, 40, 40, {200, 200, 0}, {230, 15, 20, 30}, 255);
  S.DrawFrame(SCREEN_SURFACE, 270, 10, 40, 40, 3, {0, 200, 200});
  S.DrawFrame(SCREEN_SURFACE, 320, 10, 3, 3, 2, {200, 0, 200});
  S.DrawFrameClipped(SCREEN_SURFACE, 330, 10, 40, 40, 1, {255, 128, 0}, {330, 10, 25, 40});
  for (int Index = 0; Index < 5; ++Index) {
    S.DrawHorizontalLine(SCREEN_SURFACE, 380, 10 + Index * 3, 40 - Index * 5, {255, 255, Index * 50});
    S.DrawVerticalLine(SCREEN_SURFACE, 430 + Index * 3, 10, 40 - Index * 5, {Index * 50, 255, 255});
  }
  for (int Index = 0; Index < 20; ++Index) S.DrawPixel(SCREEN_SURFACE, 460 + Index * 2, 10 + Index, {255, Index * 12, 0});
  S.ClearSurface(AUTOMAP_SURFACE, {0, 0, 0}, 255);
  S.FillRect(AUTOMAP_SURFACE, 10, 10, 50, 30, {0, 120, 240}, 255);
  S.Blit(SCREEN_SURFACE, 520, 5, AUTOMAP_SURFACE, 0, 0, 106, 106);
}

void Sprites() {
  for (int Number = 1; Number <= 6; ++Number) {
    DrawSpriteClipped(SCREEN_SURFACE, 10 + (Number - 1) * 40, 130, Number, NO_CLIP);
  }
  DrawSpriteClipped(SCREEN_SURFACE, 250, 130, 1, {250, 130, 20, 12});
  DrawPicture(SCREEN_SURFACE, 290, 120, 1);
  DrawPicturePart(SCREEN_SURFACE, 370, 120, 1, 20, 10, 40, 50);
  DrawPicturePartClipped(SCREEN_SURFACE, 420, 120, 1, 0, 0, 64, 64, {430, 130, 30, 40});
}

void TintedCopies() {
  const TOutfitColors Sets[] = {{{{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {255, 255, 0}}},
                                {{{0, 128, 255}, {255, 128, 0}, {128, 0, 128}, {255, 255, 255}}}};
  for (int Index = 0; Index < 2; ++Index) {
    DrawColoredSpriteStretched(SCREEN_SURFACE, 10 + Index * 40, 200, 32, 32, 3, 4, Sets[Index], {0, 254, 0},
                               NO_CLIP);
  }
  const TRGBColor TextColors[] = {{255, 255, 255}, {255, 200, 0}, {0, 220, 90}};
  for (int Index = 0; Index < 3; ++Index) {
    const TVideoCacheItem& Item = GetVideoFontTile(1 + Index, 0, 0, TextColors[Index]);
    GetSurface()->BlitKeyedClipped(SCREEN_SURFACE, 100 + Index * 40, 200, SPRITE_SURFACE + Item.Page, Item.X, Item.Y,
                                   32, 32, MAGENTA, NO_CLIP);
  }
}

void Stretches() {
  const TRGBColor Stage{0, 254, 0};
  DrawSpriteStretched(SCREEN_SURFACE, 10, 260, 64, 64, 1, Stage, NO_CLIP);
  DrawSpriteStretched(SCREEN_SURFACE, 90, 260, 96, 64, 2, Stage, NO_CLIP);
  DrawSpriteStretched(SCREEN_SURFACE, 200, 260, 64, 96, 5, Stage, {200, 260, 64, 50});
  DrawColoredSpriteStretched(SCREEN_SURFACE, 280, 260, 64, 64, 3, 4,
                             {{{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {255, 255, 0}}}, Stage, NO_CLIP);
}

// The map's way: composed on TEMP_SURFACE, lit there, then copied up.
void LitMap(CSurface& S) {
  S.ClearSurface(TEMP_SURFACE, {0, 0, 0}, 255);
  for (int y = 0; y < 7; ++y) {
    for (int x = 0; x < 10; ++x) {
      S.FillRect(TEMP_SURFACE, x * 32, y * 32, 32, 32, {(x * 25) % 256, 120, (y * 35) % 256}, 255);
      DrawSprite(x * 32, y * 32, 1 + (x + y) % 5);
    }
  }
  const std::vector<TRect> Rects = {{0, 0, 160, 112}, {160, 0, 160, 112}, {0, 112, 160, 112}, {160, 112, 160, 112}};
  const std::vector<TLightCorners> Light = {
      {{{255, 255, 255}, {64, 64, 64}, {255, 255, 255}, {64, 64, 64}}},
      {{{255, 200, 100}, {255, 200, 100}, {100, 100, 255}, {100, 100, 255}}},
      {{{100, 150, 200}, {100, 150, 200}, {100, 150, 200}, {100, 150, 200}}},
      {{{0, 0, 0}, {128, 128, 128}, {128, 128, 128}, {255, 255, 255}}},
  };
  S.DrawLightMap(TEMP_SURFACE, Rects, Light);
}

bool InLight(int x, int y) {
  return x >= LIGHT_AREA.x && x < LIGHT_AREA.x + LIGHT_AREA.width && y >= LIGHT_AREA.y &&
         y < LIGHT_AREA.y + LIGHT_AREA.height;
}

}  // namespace

void LoadCardFiles(const CTempDirectory& Directory) {
  SpriteFile(1, CardSprites()).Save(Directory.File("Kelmo.spr"));
  PictureFile(2, CardPictures()).Save(Directory.File("Kelmo.pic"));
  LoadSprites(Directory.File("Kelmo.spr"));
  LoadPictures(Directory.File("Kelmo.pic"));
}

// The map goes first: the scaled keyed copies use TEMP_SURFACE as a stage.
void DrawTestCard() {
  CSurface& S = *GetSurface();
  LitMap(S);
  S.ClearSurface(SCREEN_SURFACE, {30, 30, 60}, 255);
  S.Blit(SCREEN_SURFACE, LIGHT_AREA.x, LIGHT_AREA.y, TEMP_SURFACE, 0, 0, LIGHT_AREA.width, LIGHT_AREA.height);
  Fills(S);
  Sprites();
  TintedCopies();
  Stretches();
}

std::string CompareImages(const TImage& Expected, const TImage& Actual, int LightTolerance) {
  if (Expected.Width != Actual.Width || Expected.Height != Actual.Height) {
    return "size " + std::to_string(Actual.Width) + "x" + std::to_string(Actual.Height) + " instead of " +
           std::to_string(Expected.Width) + "x" + std::to_string(Expected.Height);
  }
  int Wrong = 0;
  std::string First;
  for (int y = 0; y < Actual.Height; ++y) {
    for (int x = 0; x < Actual.Width; ++x) {
      const size_t Index = (static_cast<size_t>(y) * Actual.Width + x) * 3;
      const int Tolerance = InLight(x, y) ? LightTolerance : 0;
      for (int Channel = 0; Channel < 3; ++Channel) {
        if (std::abs(Expected.Pixels[Index + Channel] - Actual.Pixels[Index + Channel]) > Tolerance) {
          if (Wrong++ == 0) First = "first at (" + std::to_string(x) + ", " + std::to_string(y) + ")";
          break;
        }
      }
    }
  }
  return Wrong == 0 ? std::string() : std::to_string(Wrong) + " pixels differ, " + First;
}

std::string CompareWithGolden(const TImage& Actual, const std::string& Name, int LightTolerance) {
  const std::filesystem::path Golden = std::filesystem::path(KELMO_GOLDEN_DIR) / (Name + ".png");
  const char* Update = std::getenv("KELMO_UPDATE_GOLDEN");
  if (Update != nullptr && std::string(Update) == "1") {
    return WritePng(Golden.string(), Actual) ? std::string() : "cannot write " + Golden.string();
  }
  const std::optional<TImage> Expected = ReadPng(Golden.string());
  if (!Expected) return "no golden image " + Golden.string();
  const std::string Result = CompareImages(*Expected, Actual, LightTolerance);
  if (Result.empty()) return Result;
  const std::filesystem::path Output(KELMO_TEST_OUTPUT_DIR);
  std::filesystem::create_directories(Output);
  WritePng((Output / (Name + "-actual.png")).string(), Actual);
  if (Expected->Width == Actual.Width && Expected->Height == Actual.Height) {
    TImage Difference = Actual;
    for (size_t Index = 0; Index < Difference.Pixels.size(); ++Index) {
      Difference.Pixels[Index] = static_cast<std::uint8_t>(std::abs(Expected->Pixels[Index] - Actual.Pixels[Index]));
    }
    WritePng((Output / (Name + "-difference.png")).string(), Difference);
  }
  return Result + "; see " + (Output / (Name + "-actual.png")).string();
}

}  // namespace testcard
