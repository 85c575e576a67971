// Creatures. Pattern x is the direction (north, east, south, west), phase 1
// stands and the others step. Outfits with two layers carry a colour mask in
// the second: yellow, red, green and blue mark where the head, body, legs and
// feet colours go, and the first layer holds grey there, whose brightness the
// colour takes. Addon rows (pattern y above 1) hold only the addon.
#include <cmath>
#include <optional>

#include "tools/databuild/ArtKit.h"

namespace {

const TRGBA HEAD = {255, 255, 0, 255};
const TRGBA BODY = {255, 0, 0, 255};
const TRGBA LEGS = {0, 255, 0, 255};
const TRGBA FEET = {0, 0, 255, 255};
const TRGBA SKIN = Rgb(226, 176, 136);
const TRGBA LEATHER = Rgb(110, 72, 40);

enum { NORTH = 0, EAST = 1, SOUTH = 2, WEST = 3 };

// A figure in the making: the picture and its colour mask.
struct TFigure {
  TCanvas Base{32, 32};
  TCanvas Mask{32, 32};

  // Lays Shape's pixels in: grey shaded by its own box under a channel, or
  // the fixed colour (shaded too) where the colour is the figure's own.
  void part(const TCanvas& Shape, std::optional<TRGBA> Channel, TRGBA Fixed = {}) {
    int L = 32, T = 32, R = 0, B = 0;
    for (int Y = 0; Y < 32; ++Y) {
      for (int X = 0; X < 32; ++X) {
        if (Shape.at(X, Y).a) L = std::min(L, X), T = std::min(T, Y), R = std::max(R, X), B = std::max(B, Y);
      }
    }
    const double CX = (L + R + 1) / 2.0, CY = (T + B + 1) / 2.0;
    for (int Y = 0; Y < 32; ++Y) {
      for (int X = 0; X < 32; ++X) {
        if (!Shape.at(X, Y).a) continue;
        const double F = Light(X + 0.5, Y + 0.5, CX, CY, (R - L + 1) / 2.0, (B - T + 1) / 2.0);
        Base.set(X, Y, Shade(Channel ? Rgb(206, 206, 206) : Fixed, F));
        Mask.set(X, Y, Channel ? *Channel : TRGBA{});
      }
    }
  }
  void finish() {
    Base.harden();
    Base.outline(RIM);
  }
  std::vector<TCanvas> layers(bool WithMask) const {
    if (WithMask) return {Base, Mask};
    return {Base};
  }
};

TCanvas Ellipse(double CX, double CY, double RX, double RY) {
  TCanvas I(32, 32);
  I.ellipse(CX, CY, RX, RY, {255, 255, 255, 255});
  return I;
}
TCanvas Rect(int X, int Y, int W, int H) {
  TCanvas I(32, 32);
  I.fillRect(X, Y, W, H, {255, 255, 255, 255});
  return I;
}
TCanvas Poly(const std::vector<std::pair<double, double>>& P) {
  TCanvas I(32, 32);
  I.polygon(P, {255, 255, 255, 255});
  return I;
}

struct TStyle {
  bool Robe = false;            // a long coat over the legs
  bool Helmet = false;          // a helmet in place of the hair
  std::optional<TRGBA> Fixed;   // all colours fixed: no mask
};

// The channel of a part, or none where the style fixes the colours.
std::optional<TRGBA> Ch(const TStyle& S, TRGBA Channel) {
  if (S.Fixed) return std::nullopt;
  return Channel;
}

void Legs(TFigure& F, const TStyle& S, int Dir, int Step) {
  const TRGBA Fix = S.Fixed ? Shade(*S.Fixed, 0.8) : TRGBA{};
  const TRGBA Boot = S.Fixed ? Rgb(90, 70, 40) : TRGBA{};
  if (Dir == NORTH || Dir == SOUTH) {
    const int LeftLift = Step == 1 ? 2 : 0, RightLift = Step == 2 ? 2 : 0;
    F.part(Rect(12, 21, 4, 7 - LeftLift), Ch(S, LEGS), Fix);
    F.part(Rect(17, 21, 4, 7 - RightLift), Ch(S, LEGS), Fix);
    F.part(Ellipse(13.5, 28.5 - LeftLift, 2.6, 1.8), Ch(S, FEET), Boot);
    F.part(Ellipse(18.5, 28.5 - RightLift, 2.6, 1.8), Ch(S, FEET), Boot);
    return;
  }
  const int Front = Dir == EAST ? 1 : -1;
  const int Spread = Step == 0 ? 0 : (Step == 1 ? 3 : -3);
  F.part(Poly({{14, 21}, {18, 21}, {16.0 - Spread * Front + 2, 28}, {16.0 - Spread * Front - 2, 28}}),
         Ch(S, LEGS), Shade(Fix, 0.85));
  F.part(Ellipse(16.0 - Spread * Front + Front, 28.5, 2.8, 1.8), Ch(S, FEET), Shade(Boot, 0.85));
  F.part(Poly({{14, 21}, {18, 21}, {16.0 + Spread * Front + 2, 28}, {16.0 + Spread * Front - 2, 28}}),
         Ch(S, LEGS), Fix);
  F.part(Ellipse(16.0 + Spread * Front + Front, 28.5, 2.8, 1.8), Ch(S, FEET), Boot);
}

void Torso(TFigure& F, const TStyle& S, int Dir, int Step) {
  const TRGBA Fix = S.Fixed.value_or(TRGBA{});
  const int Swing = Step == 1 ? 1 : Step == 2 ? -1 : 0;
  if (Dir == NORTH || Dir == SOUTH) {
    F.part(Rect(8, 13 + Swing, 3, 8), Ch(S, BODY), Fix);
    F.part(Rect(22, 13 - Swing, 3, 8), Ch(S, BODY), Fix);
    F.part(Ellipse(9.5, 21.5 + Swing, 1.7, 1.7), std::nullopt, SKIN);
    F.part(Ellipse(23.5, 21.5 - Swing, 1.7, 1.7), std::nullopt, SKIN);
    F.part(Poly({{10, 12}, {23, 12}, {22, 22}, {11, 22}}), Ch(S, BODY), Fix);
    if (S.Robe) F.part(Poly({{11, 21}, {22, 21}, {24, 27}, {9, 27}}), Ch(S, BODY), Shade(Fix, 0.9));
    F.part(Rect(11, 20, 11, 1), std::nullopt, S.Fixed ? Rgb(220, 180, 60) : LEATHER);
    return;
  }
  F.part(Poly({{12, 12}, {20, 12}, {20, 22}, {12, 22}}), Ch(S, BODY), Fix);
  if (S.Robe) F.part(Poly({{12, 21}, {20, 21}, {22, 27}, {10, 27}}), Ch(S, BODY), Shade(Fix, 0.9));
  F.part(Rect(12, 20, 8, 1), std::nullopt, S.Fixed ? Rgb(220, 180, 60) : LEATHER);
  const int Front = Dir == EAST ? 1 : -1;
  F.part(Poly({{14.5, 13}, {17.5, 13}, {16.5 + Swing * 3 * Front + 1, 21}, {16.5 + Swing * 3 * Front - 2, 21}}),
         Ch(S, BODY), Shade(Fix, 1.1));
  F.part(Ellipse(16 + Swing * 3 * Front, 22, 1.7, 1.7), std::nullopt, SKIN);
}

void Head(TFigure& F, const TStyle& S, int Dir) {
  const TRGBA Hair = S.Fixed ? Rgb(240, 240, 240) : TRGBA{};
  F.part(Ellipse(16.5, 8, 5.2, 5.2), std::nullopt, SKIN);
  if (S.Helmet) {
    F.part(Poly({{10.5, 8}, {11, 4}, {14, 2}, {19, 2}, {22, 4}, {22.5, 8}}), Ch(S, HEAD), Rgb(170, 176, 186));
    if (Dir != NORTH) F.part(Rect(Dir == WEST ? 13 : Dir == EAST ? 18 : 16, 4, 1, 6), std::nullopt, Rgb(90, 90, 100));
  } else if (Dir == NORTH) {
    F.part(Ellipse(16.5, 7.5, 5.4, 5.4), Ch(S, HEAD), Hair);
  } else if (Dir == SOUTH) {
    F.part(Poly({{11, 8}, {11.5, 4}, {14, 2.5}, {19, 2.5}, {21.5, 4}, {22, 8}, {20, 5.5}, {13, 5.5}}), Ch(S, HEAD),
           Hair);
  } else {
    const double Back = Dir == EAST ? 11 : 22;
    F.part(Poly({{Back, 9}, {Back, 5}, {14, 2.5}, {19, 2.5}, {Dir == EAST ? 21.0 : 12.0, 5}, {16.5, 5}, {16.5, 11}}),
           Ch(S, HEAD), Hair);
  }
  if (Dir == SOUTH) {
    F.Base.set(14, 8, Rgb(30, 24, 20));
    F.Base.set(19, 8, Rgb(30, 24, 20));
    F.Base.set(16, 10, Rgb(190, 130, 100));
  } else if (Dir != NORTH) {
    F.Base.set(Dir == EAST ? 19 : 13, 8, Rgb(30, 24, 20));
  }
}

TFigure Humanoid(const TStyle& S, int Dir, int Step) {
  TFigure F;
  Legs(F, S, Dir, Step);
  Torso(F, S, Dir, Step);
  Head(F, S, Dir);
  F.finish();
  return F;
}

// Addons: 1 a feathered hat, 2 a pack or a shield, 3 a cape.
TFigure Addon(int Addon, int Dir, int Kind) {
  TFigure F;
  const int Side = Dir == EAST ? -1 : 1;
  if (Addon == 1) {
    F.part(Ellipse(16.5, 4.5, 8, 2.2), HEAD);
    F.part(Ellipse(16.5, 2.5, 4.5, 3), HEAD);
    F.part(Rect(12, 3, 9, 1), std::nullopt, LEATHER);
    F.part(Poly({{19, 2}, {27, -2}, {22, 3}}), std::nullopt, Rgb(236, 236, 230));
  } else if (Addon == 2 && Kind == 0) {  // a pack on the back
    if (Dir == SOUTH) {
      F.part(Rect(11, 12, 2, 9), std::nullopt, LEATHER);
      F.part(Rect(20, 12, 2, 9), std::nullopt, LEATHER);
    } else {
      const double X = Dir == NORTH ? 16.5 : 16.5 + Side * 5;
      F.part(Poly({{X - 5, 12}, {X + 5, 12}, {X + 5, 22}, {X - 5, 22}}), std::nullopt, Rgb(130, 90, 50));
      F.part(Rect(static_cast<int>(X) - 4, 16, 9, 1), std::nullopt, Rgb(90, 60, 30));
    }
  } else if (Addon == 2) {  // a shield on the arm, or a bow on the back
    const double X = Dir == WEST ? 10 : Dir == EAST ? 22 : Dir == SOUTH ? 24 : 8;
    if (Kind == 1) {
      F.part(Poly({{X - 1, 4}, {X + 1, 4}, {X + 1, 26}, {X - 1, 26}}), std::nullopt, Rgb(140, 96, 50));
    } else {
      F.part(Poly({{X - 4, 13}, {X + 4, 13}, {X + 4, 20}, {X, 24}, {X - 4, 20}}), BODY);
      F.part(Rect(static_cast<int>(X) - 1, 14, 2, 8), std::nullopt, Rgb(220, 190, 80));
    }
  } else {  // a cape in the legs' colour
    if (Dir == NORTH) F.part(Poly({{10, 12}, {23, 12}, {25, 27}, {8, 27}}), LEGS);
    else if (Dir == SOUTH) {
      F.part(Poly({{7, 13}, {10, 12}, {9, 26}, {6, 26}}), LEGS);
      F.part(Poly({{23, 12}, {26, 13}, {27, 26}, {24, 26}}), LEGS);
    } else {
      const double Back = Dir == EAST ? 12 : 20;
      F.part(Poly({{Back, 12}, {Back - Side * -1, 12}, {Back - (Dir == EAST ? 5 : -5), 26}, {Back, 26}}), LEGS);
    }
  }
  F.finish();
  return F;
}

TArtShape OutfitShape(int AddonRows, int Layers, int MaxPhases, int W = 1) {
  TArtShape S;
  S.Width = S.Height = W;
  S.Layers = Layers;
  S.PatternWidth = 4;
  S.PatternHeight = AddonRows;
  S.MinimumPhases = 1;
  S.MaximumPhases = MaxPhases;
  S.IsOutfit = true;
  return S;
}

// The step of a phase: 0 stands, 1 and 2 alternate.
int StepOf(const TArtFrame& F) { return F.Phase == 0 ? 0 : 1 + (F.Phase - 1) % 2; }

void AddHumanoid(TArtCatalogue& C, const std::string& Name, TStyle Style, int AddonRows, int PackKind) {
  C.add(Name, OutfitShape(AddonRows, 2, 3), [Style, PackKind](const TArtFrame& F) {
    const bool WithMask = F.Record.Layers == 2;
    if (F.PatternY == 0) return Humanoid(Style, F.PatternX, StepOf(F)).layers(WithMask);
    return Addon(F.PatternY, F.PatternX, PackKind).layers(WithMask);
  });
}

TCanvas Rat(int Dir, int Step) {
  TCanvas I(32, 32);
  const TRGBA Fur = Rgb(120, 104, 92);
  const bool Side = Dir == EAST || Dir == WEST;
  const int Front = Dir == EAST ? 1 : Dir == WEST ? -1 : 0;
  const int Down = Dir == SOUTH ? 1 : Dir == NORTH ? -1 : 0;
  const double CX = 16, CY = 21;
  I.thickLine(CX - Front * 7, CY - Down * 6, CX - Front * 13, CY - Down * 11 + (Side ? 2 : 0), 1.3,
              Rgb(200, 150, 150));
  for (int L = 0; L < 4; ++L) {
    const double LX = CX + (L % 2 ? 4 : -4) * (Side ? 1 : 0.8), LY = CY + (L < 2 ? 3 : -2);
    const double Kick = (Step == 1) == (L % 2 == 0) ? 1.5 : -1.5;
    I.ellipse(LX + Front * Kick, LY + Down * Kick + (Side ? 2 : 0), 1.2, 1.2, Rgb(200, 150, 150));
  }
  ShadedEllipse(I, CX, CY, Side ? 8 : 5.5, Side ? 5 : 7.5, Fur);
  const double HX = CX + Front * 8, HY = CY + Down * 7 - (Side ? 1 : 0);
  ShadedEllipse(I, HX, HY, 3.5, 3.2, Shade(Fur, 1.05));
  I.ellipse(HX - (Side ? Front : 2.5), HY - 3, 1.6, 1.6, Rgb(210, 160, 160));
  if (Dir != NORTH) {
    I.set(static_cast<int>(HX + Front * 2), static_cast<int>(HY - 1), Rgb(10, 10, 10));
    if (!Side) I.set(static_cast<int>(HX - 2), static_cast<int>(HY - 1), Rgb(10, 10, 10));
  }
  FinishThing(I);
  return I;
}

TCanvas Wisp(int Phase) {
  TCanvas I(32, 32);
  const double Y = 15 - Phase;
  for (int R = 9; R >= 3; R -= 2) {
    I.ellipse(16, Y, R, R, Mix(Rgb(60, 120, 220), Rgb(220, 250, 255), (9 - R) / 6.0));
  }
  I.ellipse(14.5, Y - 1.5, 1.5, 1.5, Rgb(255, 255, 255));
  for (int K = 0; K < 4; ++K) {
    const double A = K * M_PI / 2 + Phase * 0.4;
    I.set(16 + static_cast<int>(std::lround(std::cos(A) * 12)), static_cast<int>(Y + std::sin(A) * 12),
          Rgb(200, 240, 255));
  }
  return I;
}

TCanvas Dragon(int Dir, int Phase) {
  TCanvas I(64, 64);
  const TRGBA Scale = Rgb(60, 130, 70), Belly = Rgb(210, 190, 110), Wing = Rgb(120, 60, 50);
  const int Front = Dir == EAST ? 1 : Dir == WEST ? -1 : 0;
  const int Down = Dir == SOUTH ? 1 : Dir == NORTH ? -1 : 0;
  const double CX = 42, CY = 44, Flap = Phase == 1 ? -5 : Phase == 2 ? 4 : 0;
  // the tail behind, then the wings, the body and the head in front
  I.thickLine(CX, CY, CX - Front * 20 - (Front == 0 ? 10 : 0), CY - Down * 18 + 6, 5, Shade(Scale, 0.8));
  for (int Side : {-1, 1}) {
    const double WX = CX + (Front == 0 ? Side * 8 : -Front * 2), WY = CY - 6;
    ShadedPolygon(I, {{WX, WY}, {WX + Side * 22 + (Front != 0 ? -Front * 6 : 0), WY - 16 + Flap},
                      {WX + Side * 18, WY + 4 + Flap / 2}},
                  Wing);
  }
  ShadedEllipse(I, CX, CY, Front ? 15 : 11, Front ? 10 : 14, Scale);
  I.ellipse(CX + Front * 2, CY + (Down > 0 ? 4 : 2), Front ? 9 : 6, 5, Belly);
  const double HX = CX + Front * 15, HY = CY + Down * 12 - (Front ? 8 : 6);
  ShadedEllipse(I, HX, HY, 7, 6, Scale);
  if (Dir != NORTH) {
    I.set(static_cast<int>(HX + (Front ? Front * 3 : -3)), static_cast<int>(HY - 2), Rgb(250, 220, 40));
    if (!Front) I.set(static_cast<int>(HX + 3), static_cast<int>(HY - 2), Rgb(250, 220, 40));
  }
  I.polygon({{HX - 4, HY - 4}, {HX - 2, HY - 11}, {HX, HY - 5}}, Rgb(230, 220, 200));
  I.polygon({{HX + 1, HY - 5}, {HX + 3, HY - 11}, {HX + 5, HY - 4}}, Rgb(230, 220, 200));
  FinishThing(I);
  return I;
}

}  // namespace

void AddCreatureArt(TArtCatalogue& C) {
  AddHumanoid(C, "citizen", {}, 3, 0);
  AddHumanoid(C, "hunter", {}, 4, 1);
  AddHumanoid(C, "guard", {.Robe = false, .Helmet = true, .Fixed = std::nullopt}, 2, 2);
  C.add("gamemaster", OutfitShape(1, 1, 3), [](const TArtFrame& F) {
    return Humanoid({.Robe = true, .Fixed = Rgb(236, 236, 244)}, F.PatternX, StepOf(F)).layers(false);
  });
  C.add("rat", OutfitShape(1, 1, 3), [](const TArtFrame& F) { return One(Rat(F.PatternX, StepOf(F))); });
  TArtShape WispShape = OutfitShape(1, 1, 8);
  C.add("wisp", WispShape, [](const TArtFrame& F) { return One(Wisp(F.Phase)); });
  C.add("dragon", OutfitShape(1, 1, 3, 2), [](const TArtFrame& F) {
    return One(Dragon(F.PatternX, StepOf(F) == 0 ? 0 : F.Phase));
  });
}
