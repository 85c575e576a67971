#include "tools/databuild/Pictures.h"

#include <cmath>

#include "core/Exception.h"
#include "tools/databuild/Art.h"
#include "tools/databuild/ArtKit.h"
#include "tools/databuild/Symbols.h"

const std::array<TTutorialImage, 29> TUTORIAL_IMAGES{{
    {237, 355, 43, 30}, {284, 356, 18, 27},  {237, 245, 110, 110}, {187, 127, 160, 117},
    {348, 127, 132, 222}, {0, 224, 169, 160}, {0, 127, 185, 96},   {0, 0, 203, 126},
    {204, 0, 256, 126}, {305, 355, 175, 182}, {0, 385, 300, 250},  {172, 245, 64, 64},
    {172, 310, 64, 64}, {461, 0, 163, 123},  {481, 124, 191, 136}, {481, 261, 245, 210},
    {625, 0, 108, 98},  {481, 852, 148, 98}, {0, 858, 163, 123},   {481, 472, 236, 209},
    {0, 636, 238, 221}, {481, 682, 183, 169}, {304, 538, 176, 202}, {665, 682, 163, 123},
    {481, 472, 236, 209}, {241, 741, 238, 236}, {630, 852, 92, 89}, {673, 99, 227, 124},
    {727, 224, 317, 224},
}};

namespace {

// The outfit colours of the pictures: head, body, legs, feet.
const std::array<TRGBA, 4> TRAVELLER{Rgb(140, 80, 40), Rgb(60, 110, 190), Rgb(110, 90, 60), Rgb(80, 56, 36)};

// Tints the masked pixels of Base as the client does: colour times luminance.
TCanvas ApplyMask(const TCanvas& Base, const TCanvas& Mask, const std::array<TRGBA, 4>& Colours) {
  static constexpr std::array<TRGBA, 4> CHANNELS{{{255, 255, 0, 255}, {255, 0, 0, 255}, {0, 255, 0, 255}, {0, 0, 255, 255}}};
  TCanvas Result = Base;
  for (int Y = 0; Y < Base.height(); ++Y) {
    for (int X = 0; X < Base.width(); ++X) {
      for (size_t K = 0; K < 4; ++K) {
        if (!(Mask.at(X, Y) == CHANNELS[K])) continue;
        const TRGBA P = Base.at(X, Y);
        const int L = (30 * P.r + 59 * P.g + 11 * P.b) / 100;
        const auto Tint = [L](int C) { return static_cast<std::uint8_t>(C * L / 256); };
        Result.set(X, Y, {Tint(Colours[K].r), Tint(Colours[K].g), Tint(Colours[K].b), 255});
      }
    }
  }
  return Result;
}

TCanvas Title() {
  TCanvas I(TITLE_WIDTH, TITLE_HEIGHT);
  for (int Y = 0; Y < TITLE_HEIGHT; ++Y) {  // an evening sky
    I.fillRect(0, Y, TITLE_WIDTH, 1, Mix(Rgb(18, 30, 70), Rgb(236, 150, 90), std::pow(Y / 300.0, 1.6)));
  }
  for (int K = 0; K < 90; ++K) I.set(Hash(K, 1) % TITLE_WIDTH, Hash(K, 2) % 120, Rgb(230, 230, 255));
  I.ellipse(400, 210, 34, 34, Rgb(255, 220, 150));
  const TNoise N(5);
  const std::array<TRGBA, 3> Ranges{Rgb(90, 80, 120), Rgb(60, 60, 90), Rgb(40, 52, 60)};
  for (size_t R = 0; R < Ranges.size(); ++R) {  // mountain ranges, nearer ones darker
    for (int X = 0; X < TITLE_WIDTH; ++X) {
      const double Ridge = 190 + R * 45 - 110 * N.fractal(X + R * 400.0, R * 50.0, 128, 4, 1024) + R * 10;
      I.fillRect(X, static_cast<int>(Ridge), 1, TITLE_HEIGHT, Ranges[R]);
    }
  }
  // a castle on the hill
  const TRGBA Wall = Rgb(30, 30, 44);
  I.fillRect(120, 230, 120, 80, Wall);
  for (int X : {110, 170, 230}) {
    I.fillRect(X, 190 - (X == 170 ? 30 : 0), 22, 120, Wall);
    I.polygon({{X - 4.0, 190.0 - (X == 170 ? 30 : 0)}, {X + 26.0, 190.0 - (X == 170 ? 30 : 0)},
               {X + 11.0, 160.0 - (X == 170 ? 30 : 0)}},
              Rgb(50, 30, 50));
  }
  for (int K = 0; K < 14; ++K) I.fillRect(124 + static_cast<int>(Hash(K, 3) % 110), 210 + Hash(K, 4) % 80, 3, 5, Rgb(255, 210, 110));
  // a meadow of the game's own grass, with its trees, and a traveller on it
  for (int Y = 330; Y < TITLE_HEIGHT; Y += 32) {
    for (int X = 0; X < TITLE_WIDTH; X += 32) I.paste(ArtImage("grass", (X / 32) % 2, (Y / 32) % 2), X, Y);
  }
  for (int X = 0; X < TITLE_WIDTH; ++X) {  // the meadow's edge against the hills
    const int Edge = 330 + static_cast<int>(6 * N.smooth(X, 0, 16, 1024));
    for (int Y = 320; Y < Edge; ++Y) I.set(X, Y, Ranges[2]);
  }
  for (int X : {20, 300, 470}) I.paste(ArtImage("oak tree"), X, 300 + (X % 3) * 8);
  I.paste(ArtImage("fir tree"), 90, 310);
  I.paste(ArtImage("camp fire", 0, 0, 1), 250, 390);
  I.paste(ArtImage("citizen", 1, 0, 0, TRAVELLER), 215, 380);
  I.paste(ArtImage("wisp", 0, 0, 2), 380, 360);
  return I;
}

TCanvas Logo(const TFontSources& Fonts) {
  const TCanvas Text = RenderLine(Fonts.Directory + "/DejaVuSerif-Bold.ttf", 60, "Kelmo");
  TCanvas I(192, 80);
  const int X0 = (192 - Text.width()) / 2, Y0 = 2;
  for (int Y = 0; Y < Text.height(); ++Y) {
    for (int X = 0; X < Text.width(); ++X) {
      const TRGBA C = Text.at(X, Y);
      if (C.a > 110) I.set(X0 + X, Y0 + Y, Mix(Rgb(255, 236, 160), Rgb(190, 120, 30), static_cast<double>(Y) / Text.height()));
    }
  }
  I.outline(Rgb(60, 30, 10));
  I.outline(Rgb(20, 10, 6));
  return I;
}

// A bronze-framed scene of the world for a tutorial hint.
TCanvas Scene(int W, int H, int Number) {
  TCanvas I(W, H);
  const std::array<const char*, 4> Grounds{"grass", "wooden floor", "cobblestone road", "sand"};
  const std::string Ground = Grounds[static_cast<size_t>(Number) % Grounds.size()];
  for (int Y = 0; Y < H; Y += 32) {
    for (int X = 0; X < W; X += 32) {
      I.paste(ArtImage(Ground, (X / 32) % 2, Ground == "wooden floor" ? 0 : (Y / 32) % 2), X, Y);
    }
  }
  const std::array<const char*, 10> Things{"stairs down", "treasure chest", "closed door", "ladder", "backpack",
                                           "well", "barrel", "rope spot", "depot box", "mailbox"};
  const int CX = W / 2 - 16, CY = H / 2 - 16;
  if (W >= 64) I.paste(ArtImage(Things[static_cast<size_t>(Number) % Things.size()]), CX + 28, CY);
  I.paste(ArtImage("citizen", 2 + Number % 2, 0, 0, TRAVELLER), W >= 64 ? CX - 12 : CX, CY);
  if (W >= 110) {
    TCanvas Arrow(W, H);
    DrawSymbol(Arrow, "right", CX + 14, CY + 16, 14, Rgb(250, 220, 90));
    Arrow.harden();
    Arrow.outline(Rgb(20, 16, 10));
    I.paste(Arrow, 0, 0);
  }
  I.frame(0, 0, W, H, Rgb(150, 118, 70));
  I.frame(1, 1, W - 2, H - 2, Rgb(16, 14, 12));
  return I;
}

// Image 0 shows the arrow keys, image 1 the mouse; the rest scenes.
TCanvas Tutorial() {
  TCanvas Sheet(TUTORIAL_WIDTH, TUTORIAL_HEIGHT);
  for (size_t N = 0; N < TUTORIAL_IMAGES.size(); ++N) {
    const TTutorialImage& R = TUTORIAL_IMAGES[N];
    TCanvas I;
    if (N == 0) {
      I = TCanvas(R.Width, R.Height);
      for (auto [X, Y, Symbol] : {std::tuple{15, 0, "up"}, {1, 15, "left"}, {15, 15, "down"}, {29, 15, "right"}}) {
        I.fillRect(X, Y, 13, 13, Rgb(200, 196, 186));
        I.bevel(X, Y, 13, 13, Rgb(250, 250, 246), Rgb(110, 106, 100));
        DrawSymbol(I, Symbol, X + 6.5, Y + 6.5, 9, Rgb(40, 38, 36));
      }
    } else if (N == 1) {
      I = TCanvas(R.Width, R.Height);
      I.ellipse(9, 14, 8.5, 12.5, Rgb(220, 216, 206));
      I.fillRect(9, 2, 1, 10, Rgb(90, 86, 80));
      I.ellipse(5, 7, 3, 4, Rgb(250, 200, 80));
      I.harden();
      I.outline(Rgb(40, 38, 36));
    } else {
      I = Scene(R.Width, R.Height, static_cast<int>(N));
    }
    Sheet.paste(I, R.X, R.Y);
  }
  return Sheet;
}

TPicture ToPicture(const TCanvas& Image) { return PictureFromImage(Image, KEY_COLOUR); }

}  // namespace

TCanvas ArtImage(const std::string& Name, int PatternX, int PatternY, int Phase, std::array<TRGBA, 4> Colours) {
  const TArt& Art = TArtCatalogue::Instance().find(Name);
  TObjectRecord Record;
  Record.Width = static_cast<std::uint8_t>(Art.Shape.Width);
  Record.Height = static_cast<std::uint8_t>(Art.Shape.Height);
  Record.Layers = static_cast<std::uint8_t>(Art.Shape.Layers);
  Record.PatternWidth = static_cast<std::uint8_t>(Art.Shape.PatternWidth);
  Record.PatternHeight = static_cast<std::uint8_t>(Art.Shape.PatternHeight);
  Record.PatternDepth = static_cast<std::uint8_t>(Art.Shape.PatternDepth);
  Record.Phases = static_cast<std::uint8_t>(std::max(Art.Shape.MinimumPhases, std::min(3, Art.Shape.MaximumPhases)));
  const std::vector<TCanvas> Layers = Art.Draw(TArtFrame{Record, PatternX, PatternY, 0, Phase});
  return Layers.size() > 1 ? ApplyMask(Layers[0], Layers[1], Colours) : Layers[0];
}

std::vector<TCanvas> DrawPictures(const TPictureSources& Sources) {
  std::vector<TCanvas> Pictures(NUMBER_OF_PICTURES);
  Pictures[TITLE_PICTURE - 1] = Title();
  Pictures[LOGO_PICTURE - 1] = Logo(Sources.Fonts);
  Pictures[TUTORIAL_PICTURE - 1] = Tutorial();
  Pictures[INTERFACE_PICTURE - 1] = DrawInterfaceSheet(Sources.Skins);
  Pictures[BLACK_PICTURE - 1] = TCanvas(CELL_SIZE, CELL_SIZE, Rgb(0, 0, 0));
  for (int Font = 1; Font <= NUMBER_OF_FONTS; ++Font) {
    Pictures[static_cast<size_t>(FONT_GRIDS[static_cast<size_t>(Font - 1)].PictureNumber - 1)] =
        RenderFont(Font, Sources.Fonts).Sheet;
  }
  return Pictures;
}

TPictureFile BuildPictureFile(const TPictureSources& Sources, std::uint32_t Signature) {
  TPictureFile File;
  File.Signature = Signature;
  for (const TCanvas& Image : DrawPictures(Sources)) File.Pictures.push_back(ToPicture(Image));
  return File;
}
