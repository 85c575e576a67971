// Things a character carries. They lie towards the middle of the field and
// are drawn a little larger than life, with a dark rim, so they read on the
// map and in a 32-pixel inventory slot alike.
#include <cmath>

#include "tools/databuild/ArtKit.h"

namespace {

TArtShape Shape(int PW = 1, int PH = 1, int Phases = 1) {
  TArtShape S;
  S.PatternWidth = PW;
  S.PatternHeight = PH;
  S.MinimumPhases = S.MaximumPhases = Phases;
  return S;
}

const TRGBA LEATHER = Rgb(140, 92, 52);
const TRGBA STEEL = Rgb(176, 182, 192);
const TRGBA GOLD = Rgb(230, 186, 60);
const TRGBA WOOD = Rgb(130, 88, 48);

// The colour of each liquid colour number; 0 is an empty vessel.
const std::array<TRGBA, 8> LIQUIDS{Rgb(0, 0, 0),      Rgb(60, 110, 210), Rgb(150, 60, 200),
                                   Rgb(140, 96, 40),  Rgb(240, 190, 50), Rgb(190, 30, 30),
                                   Rgb(70, 170, 60),  Rgb(236, 236, 226)};

TCanvas Done(TCanvas I) {
  FinishThing(I);
  return I;
}

void Blade(TCanvas& I, double X0, double Y0, double X1, double Y1, double W, TRGBA C) {
  I.thickLine(X0, Y0, X1, Y1, W, C);
  I.thickLine(X0 - 0.5, Y0 - 0.5, X1 - 0.5, Y1 - 0.5, 1, Shade(C, 1.25));
}

TCanvas Bag(TRGBA C) {
  TCanvas I(32, 32);
  ShadedEllipse(I, 16, 21, 9, 8, C);
  I.polygon({{12, 14}, {20, 14}, {22, 9}, {10, 9}}, Shade(C, 0.9));
  I.fillRect(12, 13, 8, 2, Shade(C, 0.6));
  return Done(I);
}

TCanvas Backpack(TRGBA C) {
  TCanvas I(32, 32);
  ShadedRect(I, 8, 10, 16, 19, C);
  ShadedRect(I, 10, 19, 12, 8, Shade(C, 0.85));
  ShadedEllipse(I, 16, 10, 8, 4, Shade(C, 1.1));
  I.fillRect(15, 10, 2, 12, Shade(C, 0.6));
  I.fillRect(15, 20, 2, 2, GOLD);
  return Done(I);
}

TCanvas Present() {
  TCanvas I(32, 32);
  ShadedRect(I, 8, 13, 17, 15, Rgb(60, 120, 200));
  I.fillRect(15, 13, 3, 15, Rgb(220, 50, 60));
  I.fillRect(8, 18, 17, 3, Rgb(220, 50, 60));
  I.ellipse(13, 11, 3, 2.5, Rgb(230, 60, 70));
  I.ellipse(20, 11, 3, 2.5, Rgb(230, 60, 70));
  return Done(I);
}

// Coins in the eight count stages: 1, 2, 3, 4, then ever bigger piles.
TCanvas Coins(int Stage, TRGBA C) {
  TCanvas I(32, 32);
  static constexpr std::array<int, 8> COUNT{1, 2, 3, 4, 6, 9, 13, 18};
  for (int K = 0; K < COUNT[static_cast<size_t>(Stage)]; ++K) {
    const double X = Stage < 4 ? 10 + K * 4 + (K % 2) * 2 : 9 + (Hash(K, Stage, 5) % 15);
    const double Y = Stage < 4 ? 22 - (K % 2) * 3 : 25 - (K * 12.0 / COUNT[7]) - (Hash(K, 6) % 3);
    ShadedEllipse(I, X, Y, 4.5, 3, C);
    I.ellipse(X - 0.5, Y - 0.5, 2.5, 1.5, Shade(C, 1.2));
  }
  return Done(I);
}

TCanvas Apple() {
  TCanvas I(32, 32);
  ShadedEllipse(I, 16, 20, 7, 6.5, Rgb(200, 40, 36));
  I.line(16, 14, 17, 10, Rgb(90, 60, 30));
  I.ellipse(19.5, 11.5, 2.5, 1.3, Rgb(70, 150, 50));
  return Done(I);
}

TCanvas Bread() {
  TCanvas I(32, 32);
  ShadedEllipse(I, 16, 20, 11, 6, Rgb(200, 146, 70));
  for (int X = 10; X < 24; X += 4) I.line(X, 17, X + 2, 22, Rgb(150, 96, 40));
  return Done(I);
}

TCanvas Ham() {
  TCanvas I(32, 32);
  ShadedEllipse(I, 14, 20, 8, 6.5, Rgb(196, 90, 80));
  I.ellipse(12, 19, 4, 3, Rgb(230, 150, 140));
  I.thickLine(20, 17, 27, 12, 3, Rgb(236, 230, 210));
  return Done(I);
}

TCanvas Fish() {
  TCanvas I(32, 32);
  ShadedEllipse(I, 15, 20, 9, 4.5, Rgb(130, 160, 190));
  I.polygon({{23, 20}, {29, 15}, {29, 25}}, Rgb(110, 140, 170));
  I.set(10, 19, Rgb(0, 0, 0));
  return Done(I);
}

TCanvas Potion(TRGBA Liquid) {
  TCanvas I(32, 32);
  ShadedEllipse(I, 16, 21, 7, 7, Rgb(200, 220, 230));
  I.ellipse(16, 22, 6, 5.5, Liquid);
  I.ellipse(13.5, 19, 1.5, 1.5, Rgb(255, 255, 255));
  ShadedRect(I, 14, 10, 5, 6, Rgb(200, 220, 230));
  I.fillRect(14, 8, 5, 3, Rgb(140, 100, 60));
  return Done(I);
}

// Liquid containers and pools take their look from the liquid colour number.
TCanvas Vessel(int Kind, int Colour) {
  TCanvas I(32, 32);
  const TRGBA Liquid = LIQUIDS[static_cast<size_t>(Colour)];
  const bool Full = Colour != 0;
  switch (Kind) {
    case 0:  // vial
      ShadedRect(I, 13, 12, 7, 16, Rgb(196, 214, 224));
      if (Full) I.fillRect(14, 18, 5, 9, Liquid);
      I.fillRect(13, 9, 7, 3, Rgb(140, 100, 60));
      break;
    case 1:  // bucket
      I.polygon({{8, 12}, {25, 12}, {23, 28}, {10, 28}}, Rgb(130, 96, 60));
      I.fillRect(8, 16, 17, 2, Rgb(100, 100, 110));
      I.fillRect(9, 24, 15, 2, Rgb(100, 100, 110));
      ShadedEllipse(I, 16.5, 12, 8.5, 3, Full ? Liquid : Rgb(60, 40, 24));
      I.ring(16.5, 11, 9, 1, Rgb(90, 90, 96));
      break;
    case 2:  // mug
      ShadedRect(I, 10, 13, 12, 15, Rgb(170, 150, 120));
      I.ring(23, 20, 4, 2, Rgb(150, 130, 100));
      ShadedEllipse(I, 16, 13, 6, 2, Full ? Liquid : Rgb(70, 50, 30));
      break;
    default:  // bottle
      ShadedRect(I, 11, 15, 10, 14, Rgb(60, 110, 70));
      ShadedRect(I, 14, 8, 4, 8, Rgb(60, 110, 70));
      if (Full) I.fillRect(12, 19, 8, 9, Shade(Liquid, 0.8));
      I.fillRect(12, 16, 1, 10, Rgb(150, 200, 160));
      break;
  }
  return Done(I);
}

TCanvas Pool(bool Splash, int Colour) {
  TCanvas I(32, 32);
  const TRGBA Liquid = Colour == 0 ? Rgb(90, 120, 160) : LIQUIDS[static_cast<size_t>(Colour)];
  const TNoise N(Splash ? 3 : 4);
  for (int Y = 0; Y < 32; ++Y) {
    for (int X = 0; X < 32; ++X) {
      const double D = std::hypot(X - 16, (Y - 17) * 1.3) / (Splash ? 8 : 12);
      if (D + (N.fractal(X, Y, 8, 2, 32) - 0.5) * 0.9 < 1) {
        I.set(X, Y, Shade(Liquid, 0.85 + 0.3 * N.value(X / 3, Y / 3)));
      }
    }
  }
  if (Splash) {
    for (int K = 0; K < 6; ++K) {
      I.ellipse(6 + Hash(K, 1) % 20, 6 + Hash(K, 2) % 20, 1.5, 1.5, Liquid);
    }
  }
  I.ellipse(13, 14, 2, 1, Shade(Liquid, 1.4));
  return I;
}

TCanvas Book() {
  TCanvas I(32, 32);
  I.polygon({{7, 14}, {21, 10}, {26, 22}, {12, 27}}, Rgb(236, 230, 210));
  I.polygon({{7, 12}, {21, 8}, {26, 20}, {12, 25}}, Rgb(120, 40, 36));
  I.line(12, 25, 7, 12, Rgb(90, 24, 20));
  I.polygon({{13, 15}, {19, 13}, {20, 15}, {14, 17}}, GOLD);
  return Done(I);
}

TCanvas Parchment(bool Letter) {
  TCanvas I(32, 32);
  if (Letter) {
    ShadedRect(I, 6, 11, 21, 14, Rgb(236, 228, 200));
    I.line(6, 11, 16, 19, Rgb(170, 160, 130));
    I.line(26, 11, 16, 19, Rgb(170, 160, 130));
    I.ellipse(16, 19, 2, 2, Rgb(180, 30, 30));
  } else {
    ShadedRect(I, 9, 7, 15, 20, Rgb(230, 214, 170));
    ShadedEllipse(I, 16.5, 7, 8, 2, Rgb(210, 190, 140));
    ShadedEllipse(I, 16.5, 27, 8, 2, Rgb(210, 190, 140));
    for (int Y = 11; Y < 24; Y += 3) I.line(11, Y, 21 - (Y % 2) * 3, Y, Rgb(120, 100, 70));
  }
  return Done(I);
}

TCanvas Label() {
  TCanvas I(32, 32);
  I.polygon({{8, 13}, {22, 13}, {26, 18}, {22, 23}, {8, 23}}, Rgb(230, 220, 180));
  I.ring(22, 18, 1.8, 1, Rgb(90, 80, 60));
  I.line(10, 17, 18, 17, Rgb(90, 80, 60));
  I.line(10, 20, 16, 20, Rgb(90, 80, 60));
  return Done(I);
}

TCanvas Rope() {
  TCanvas I(32, 32);
  for (int R = 0; R < 3; ++R) I.ring(16, 19, 9 - R * 2.5, 2, Shade(Rgb(190, 156, 100), 1.0 - R * 0.1));
  return Done(I);
}

TCanvas Tool(int Kind) {
  TCanvas I(32, 32);
  I.thickLine(8, 27, 22, 9, 2.5, WOOD);
  switch (Kind) {
    case 0:  // shovel
      ShadedPolygon(I, {{19, 6}, {27, 5}, {27, 13}, {22, 14}}, STEEL);
      break;
    case 1:  // pick
      I.thickLine(14, 4, 29, 14, 3, STEEL);
      break;
    case 2:  // fishing rod
      I.thickLine(22, 9, 28, 3, 1.5, WOOD);
      I.line(28, 3, 28, 20, Rgb(230, 230, 230));
      I.ellipse(10, 24, 3, 3, Rgb(90, 90, 96));
      break;
    default:  // hatchet
      ShadedPolygon(I, {{18, 7}, {26, 4}, {28, 13}, {21, 13}}, STEEL);
      break;
  }
  return Done(I);
}

TCanvas Key() {
  TCanvas I(32, 32);
  I.ring(11, 15, 5, 2, GOLD);
  I.thickLine(15, 17, 27, 23, 2.5, GOLD);
  I.fillRect(22, 22, 2, 4, GOLD);
  I.fillRect(25, 23, 2, 4, GOLD);
  return Done(I);
}

TCanvas BurningTorch(int Phase) {
  TCanvas I(32, 32);
  I.thickLine(9, 27, 20, 14, 3, WOOD);
  const double Sway = Phase - 1;
  I.polygon({{17, 15}, {24, 12}, {25 + Sway, 3}}, Rgb(240, 120, 30));
  I.polygon({{19, 14}, {23, 12}, {23 + Sway / 2, 7}}, Rgb(255, 220, 100));
  return Done(I);
}

TCanvas Lamp() {
  TCanvas I(32, 32);
  ShadedRect(I, 11, 14, 11, 13, Rgb(60, 60, 66));
  I.fillRect(13, 16, 7, 9, Rgb(255, 220, 120));
  I.fillRect(15, 18, 3, 4, Rgb(255, 250, 220));
  I.ring(16.5, 10, 4, 1.5, Rgb(60, 60, 66));
  return Done(I);
}

TCanvas Rune(bool Fire) {
  TCanvas I(32, 32);
  ShadedRect(I, 9, 8, 15, 19, Rgb(200, 196, 184));
  I.frame(9, 8, 15, 19, Rgb(150, 146, 136));
  if (Fire) {
    I.polygon({{12, 23}, {21, 23}, {16.5, 11}}, Rgb(230, 90, 20));
    I.polygon({{14, 23}, {19, 23}, {16.5, 16}}, Rgb(255, 210, 80));
  }
  return Done(I);
}

// Arrows and bolts in the count stages of coins: a few shafts, then bundles.
TCanvas Shafts(int Stage, bool Bolt) {
  TCanvas I(32, 32);
  static constexpr std::array<int, 8> COUNT{1, 2, 3, 4, 5, 6, 8, 10};
  for (int K = 0; K < COUNT[static_cast<size_t>(Stage)]; ++K) {
    const double O = K * 1.6 - COUNT[static_cast<size_t>(Stage)] * 0.8;
    I.thickLine(7 + O, 25 + O * 0.2, 24 + O, 9 + O * 0.2, 1.5, Bolt ? Rgb(90, 80, 70) : WOOD);
    I.polygon({{24 + O, 9 + O * 0.2}, {22 + O, 8 + O * 0.2}, {27 + O, 5 + O * 0.2}, {25 + O, 11 + O * 0.2}},
              STEEL);
    I.line(6 + static_cast<int>(O), 24, 8 + static_cast<int>(O), 27, Bolt ? Rgb(60, 60, 60) : Rgb(230, 230, 230));
  }
  return Done(I);
}

TCanvas SmallStone() {
  TCanvas I(32, 32);
  ShadedEllipse(I, 15, 21, 5, 4, Rgb(140, 134, 126));
  ShadedEllipse(I, 20, 23, 3, 2.5, Rgb(120, 116, 110));
  return Done(I);
}

TCanvas Weapon(int Kind) {
  TCanvas I(32, 32);
  switch (Kind) {
    case 0:  // spear
      I.thickLine(5, 28, 24, 9, 2, WOOD);
      ShadedPolygon(I, {{22, 9}, {24, 11}, {30, 3}}, STEEL);
      break;
    case 1:  // bow
      for (int K = 0; K < 20; ++K) {
        const double A = -1.2 + K * 0.12;
        I.ellipse(12 + std::cos(A) * 14, 16 + std::sin(A) * 13, 1.3, 1.3, WOOD);
      }
      I.line(17, 3, 17, 29, Rgb(230, 230, 220));
      break;
    case 2:  // crossbow
      I.thickLine(16, 6, 16, 28, 3, WOOD);
      I.thickLine(6, 12, 26, 12, 2, Rgb(90, 90, 96));
      I.line(6, 12, 16, 18, Rgb(220, 220, 210));
      I.line(26, 12, 16, 18, Rgb(220, 220, 210));
      break;
    case 3:  // short sword
      Blade(I, 11, 21, 24, 8, 3, STEEL);
      I.thickLine(8, 17, 15, 24, 2, GOLD);
      I.thickLine(6, 26, 11, 21, 2.5, LEATHER);
      break;
    case 4:  // broadsword
      Blade(I, 10, 22, 27, 5, 4.5, STEEL);
      I.thickLine(6, 17, 15, 26, 2.5, GOLD);
      I.thickLine(4, 28, 10, 22, 3, LEATHER);
      break;
    case 5:  // war hammer
      I.thickLine(7, 28, 20, 12, 2.5, WOOD);
      ShadedPolygon(I, {{14, 6}, {22, 2}, {29, 13}, {21, 17}}, STEEL);
      break;
    case 6:  // mace
      I.thickLine(7, 28, 19, 14, 2.5, WOOD);
      ShadedEllipse(I, 21, 11, 6, 6, STEEL);
      for (int K = 0; K < 6; ++K) I.set(21 + std::lround(std::cos(K) * 7), 11 + std::lround(std::sin(K) * 7), STEEL);
      break;
    case 7:  // wand of sparks
      I.thickLine(8, 26, 22, 10, 2, Rgb(70, 60, 110));
      I.ellipse(23, 9, 3, 3, Rgb(120, 200, 255));
      I.set(27, 5, Rgb(255, 255, 200));
      I.set(19, 5, Rgb(255, 255, 200));
      break;
    default:  // snakebite rod
      I.thickLine(8, 27, 22, 8, 2.5, Rgb(60, 110, 50));
      I.ellipse(23, 7, 3, 2.5, Rgb(80, 150, 60));
      I.set(24, 6, Rgb(250, 220, 40));
      break;
  }
  return Done(I);
}

TCanvas Shield(bool Steel) {
  TCanvas I(32, 32);
  if (Steel) {
    ShadedPolygon(I, {{7, 6}, {26, 6}, {25, 18}, {16.5, 28}, {8, 18}}, STEEL);
    I.fillRect(15, 8, 3, 17, Rgb(70, 90, 170));
  } else {
    ShadedEllipse(I, 16.5, 17, 10, 11, WOOD);
    for (int X = 10; X < 24; X += 4) I.line(X, 8, X, 26, Shade(WOOD, 0.7));
    I.ellipse(16.5, 17, 2.5, 2.5, STEEL);
  }
  return Done(I);
}

TCanvas Armour(int Kind) {
  TCanvas I(32, 32);
  const bool Chain = Kind % 2 == 1;
  const TRGBA C = Chain ? STEEL : LEATHER;
  switch (Kind / 2) {
    case 0:  // helmet
      ShadedEllipse(I, 16, 17, 9, 9, C);
      I.fillRect(7, 17, 19, 9, {});
      ShadedRect(I, 7, 17, 19, 4, Shade(C, 0.9));
      if (Chain) I.fillRect(15, 17, 3, 8, Shade(C, 0.8));
      break;
    case 1:  // armour
      ShadedPolygon(I, {{8, 8}, {13, 6}, {20, 6}, {25, 8}, {27, 16}, {23, 16}, {23, 27}, {10, 27}, {10, 16}, {6, 16}},
                    C);
      I.line(16, 8, 16, 26, Shade(C, 0.7));
      break;
    case 2:  // legs
      ShadedPolygon(I, {{10, 6}, {23, 6}, {24, 28}, {18, 28}, {16.5, 14}, {15, 28}, {9, 28}}, C);
      break;
    default:  // boots
      ShadedPolygon(I, {{8, 10}, {13, 10}, {13, 22}, {17, 22}, {17, 27}, {8, 27}}, C);
      ShadedPolygon(I, {{18, 8}, {23, 8}, {23, 20}, {27, 20}, {27, 25}, {18, 25}}, Shade(C, 0.9));
      break;
  }
  if (Chain) {
    for (int Y = 0; Y < 32; Y += 2) {
      for (int X = Y % 4 / 2; X < 32; X += 2) {
        if (I.at(X, Y).a) I.set(X, Y, Shade(I.at(X, Y), 0.8));
      }
    }
  }
  return Done(I);
}

TCanvas Jewel(int Kind) {
  TCanvas I(32, 32);
  switch (Kind) {
    case 0:  // ring of might
      I.ring(16, 19, 6, 2.2, GOLD);
      I.ellipse(16, 12.5, 2.5, 2.5, Rgb(220, 40, 40));
      break;
    case 1:  // silver amulet
      I.ring(16, 12, 8, 1, Rgb(200, 200, 210));
      ShadedEllipse(I, 16, 22, 5, 5, Rgb(200, 204, 214));
      I.ellipse(16, 22, 2, 2, Rgb(80, 140, 220));
      break;
    case 2:  // gold nugget
      ShadedPolygon(I, {{10, 20}, {15, 13}, {22, 15}, {24, 22}, {17, 26}}, GOLD);
      break;
    case 3:  // small ruby
      ShadedPolygon(I, {{16, 12}, {22, 18}, {16, 26}, {10, 18}}, Rgb(210, 30, 50));
      I.line(13, 18, 19, 18, Rgb(255, 150, 160));
      break;
    default:  // premium scroll
      ShadedRect(I, 9, 9, 15, 16, Rgb(236, 210, 130));
      ShadedEllipse(I, 16.5, 9, 8, 2, GOLD);
      ShadedEllipse(I, 16.5, 25, 8, 2, GOLD);
      I.polygon({{16.5, 12}, {18, 16}, {22, 16}, {19, 19}, {20, 23}, {16.5, 20.5}, {13, 23}, {14, 19}, {11, 16},
                 {15, 16}},
                Rgb(200, 60, 40));
      break;
  }
  return Done(I);
}

void AddOne(TArtCatalogue& C, const std::string& Name, std::function<TCanvas()> Draw) {
  C.add(Name, Shape(), [Draw](const TArtFrame&) { return One(Draw()); });
}

// A cumulative or liquid type: the pattern (x, y) is stage or colour x + 4 y.
void AddStaged(TArtCatalogue& C, const std::string& Name, std::function<TCanvas(int)> Draw) {
  C.add(Name, Shape(4, 2), [Draw](const TArtFrame& F) { return One(Draw(F.PatternX + 4 * F.PatternY)); });
}

}  // namespace

void AddItemArt(TArtCatalogue& C) {
  AddOne(C, "bag", [] { return Bag(Rgb(150, 120, 80)); });
  AddOne(C, "backpack", [] { return Backpack(Rgb(150, 100, 56)); });
  AddOne(C, "old backpack", [] { return Backpack(Rgb(110, 96, 80)); });
  AddOne(C, "present", Present);
  AddStaged(C, "gold coin", [](int S) { return Coins(S, GOLD); });
  AddStaged(C, "platinum coin", [](int S) { return Coins(S, Rgb(200, 206, 216)); });
  AddStaged(C, "crystal coin", [](int S) { return Coins(S, Rgb(120, 210, 230)); });
  AddOne(C, "apple", Apple);
  AddOne(C, "bread", Bread);
  AddOne(C, "ham", Ham);
  AddOne(C, "fish", Fish);
  AddOne(C, "health potion", [] { return Potion(Rgb(210, 30, 40)); });
  AddOne(C, "mana potion", [] { return Potion(Rgb(70, 80, 220)); });
  AddStaged(C, "vial", [](int L) { return Vessel(0, L); });
  AddStaged(C, "bucket", [](int L) { return Vessel(1, L); });
  AddStaged(C, "mug", [](int L) { return Vessel(2, L); });
  AddStaged(C, "bottle", [](int L) { return Vessel(3, L); });
  AddStaged(C, "puddle", [](int L) { return Pool(false, L); });
  AddStaged(C, "splash", [](int L) { return Pool(true, L); });
  AddOne(C, "blank book", Book);
  AddOne(C, "parchment", [] { return Parchment(false); });
  AddOne(C, "letter", [] { return Parchment(true); });
  AddOne(C, "label", Label);
  AddOne(C, "rope", Rope);
  AddOne(C, "shovel", [] { return Tool(0); });
  AddOne(C, "pick", [] { return Tool(1); });
  AddOne(C, "fishing rod", [] { return Tool(2); });
  AddOne(C, "hatchet", [] { return Tool(3); });
  AddOne(C, "key", Key);
  C.add("burning torch", Shape(1, 1, 3), [](const TArtFrame& F) { return One(BurningTorch(F.Phase)); });
  AddOne(C, "lamp", Lamp);
  AddOne(C, "blank rune", [] { return Rune(false); });
  AddOne(C, "fire bomb rune", [] { return Rune(true); });
  AddStaged(C, "arrow", [](int S) { return Shafts(S, false); });
  AddStaged(C, "bolt", [](int S) { return Shafts(S, true); });
  AddOne(C, "small stone", SmallStone);
  const std::array<const char*, 9> Weapons{"spear", "bow", "crossbow", "short sword", "broadsword",
                                           "war hammer", "mace", "wand of sparks", "snakebite rod"};
  for (size_t K = 0; K < Weapons.size(); ++K) {
    AddOne(C, Weapons[K], [K] { return Weapon(static_cast<int>(K)); });
  }
  AddOne(C, "wooden shield", [] { return Shield(false); });
  AddOne(C, "steel shield", [] { return Shield(true); });
  const std::array<const char*, 8> Armours{"leather helmet", "chain helmet", "leather armor",
                                           "chain armor",    "leather legs", "",
                                           "leather boots",  ""};
  for (size_t K = 0; K < Armours.size(); ++K) {
    if (*Armours[K]) AddOne(C, Armours[K], [K] { return Armour(static_cast<int>(K)); });
  }
  const std::array<const char*, 5> Jewels{"ring of might", "silver amulet", "gold nugget",
                                          "small ruby", "premium scroll"};
  for (size_t K = 0; K < Jewels.size(); ++K) {
    AddOne(C, Jewels[K], [K] { return Jewel(static_cast<int>(K)); });
  }
}
