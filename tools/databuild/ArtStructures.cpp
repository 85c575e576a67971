// Walls, doors, nature, ways between floors and furniture. Walls are seen
// from the south: a lighter cap on top of a face of bricks or logs.
#include <cmath>

#include "tools/databuild/ArtKit.h"

namespace {

TArtShape Shape(int W = 1, int H = 1, int PW = 1, int Phases = 1) {
  TArtShape S;
  S.Width = W;
  S.Height = H;
  S.PatternWidth = PW;
  S.MinimumPhases = S.MaximumPhases = Phases;
  return S;
}

const TRGBA STONE = Rgb(134, 130, 124);
const TRGBA MORTAR = Rgb(62, 58, 56);
const TRGBA WOOD = Rgb(128, 86, 48);
const TRGBA DARK_WOOD = Rgb(84, 54, 30);
const TRGBA IRON = Rgb(104, 108, 116);

// Courses of bricks (or logs with Logs) over a rectangle, lit from above.
void Bricks(TCanvas& I, int X, int Y, int W, int H, TRGBA Colour, bool Logs, std::uint32_t Seed) {
  const TNoise N(Seed);
  const int Course = Logs ? 6 : 5;
  for (int J = 0; J < H; ++J) {
    const int Row = J / Course, InRow = J % Course;
    for (int K = 0; K < W; ++K) {
      const int Brick = (K + (Row % 2) * 6) / 12;
      const bool Joint = !Logs && (K + (Row % 2) * 6) % 12 == 0;
      TRGBA C = Shade(Colour, 0.85 + 0.3 * N.fractal(X + K, Y + J, 4, 2, 64) +
                                  0.08 * ((Hash(Brick, Row, Seed) % 5) / 4.0 - 0.5));
      if (Logs) C = Shade(C, 1.15 - 0.5 * std::abs(InRow - 2.0) / 3.0);
      if (InRow == Course - 1 || Joint) C = Logs ? Shade(Colour, 0.45) : MORTAR;
      else if (InRow == 0 && !Logs) C = Shade(C, 1.15);
      I.set(X + K, Y + J, C);
    }
  }
}

void Cap(TCanvas& I, int X, int Y, int W, int H, TRGBA Colour, std::uint32_t Seed) {
  const TNoise N(Seed);
  for (int J = 0; J < H; ++J) {
    for (int K = 0; K < W; ++K) {
      I.set(X + K, Y + J, Shade(Colour, 1.2 + 0.2 * N.fractal(X + K, Y + J, 4, 2, 64)));
    }
  }
  I.fillRect(X, Y + H - 1, W, 1, Shade(Colour, 0.7));
}

TCanvas HorizontalWall(TRGBA Colour, bool Logs) {
  TCanvas I(32, 32);
  Cap(I, 0, 0, 32, 9, Colour, 3);
  Bricks(I, 0, 9, 32, 23, Colour, Logs, 4);
  I.fillRect(0, 31, 32, 1, Shade(Colour, 0.4));
  return I;
}

TCanvas VerticalWall(TRGBA Colour, bool Logs) {
  TCanvas I(32, 32);
  Cap(I, 0, 0, 9, 32, Colour, 5);
  Bricks(I, 9, 9, 4, 23, Colour, Logs, 6);  // the end face towards the viewer
  I.fillRect(9, 0, 1, 32, Shade(Colour, 0.6));
  I.fillRect(12, 0, 1, 32, Shade(Colour, 0.4));
  return I;
}

TCanvas Corner() {
  TCanvas I = HorizontalWall(STONE, false);
  I.paste(VerticalWall(STONE, false).crop(0, 0, 13, 32), 0, 0);
  return I;
}

TCanvas Pillar() {
  TCanvas I(32, 32);
  ShadedRect(I, 8, 8, 16, 23, STONE);
  for (int Y = 12; Y < 31; Y += 6) I.fillRect(8, Y, 16, 1, MORTAR);
  ShadedEllipse(I, 16, 8, 9, 5, Shade(STONE, 1.2));
  FinishThing(I);
  return I;
}

TCanvas Window() {
  TCanvas I = HorizontalWall(STONE, false);
  I.fillRect(8, 12, 16, 14, DARK_WOOD);
  for (int Y = 14; Y < 24; ++Y) {
    for (int X = 10; X < 22; ++X) {
      const bool Shine = (X + Y) % 9 == 0 || (X + Y) % 9 == 1;
      I.set(X, Y, Shine ? Rgb(210, 232, 250) : Mix(Rgb(90, 140, 190), Rgb(60, 90, 140), (Y - 14) / 10.0));
    }
  }
  I.fillRect(15, 14, 2, 10, DARK_WOOD);
  I.fillRect(10, 18, 12, 1, DARK_WOOD);
  return I;
}

TCanvas Door(bool Open) {
  TCanvas I = HorizontalWall(STONE, false);
  I.fillRect(7, 10, 18, 22, Rgb(46, 40, 36));
  if (Open) {
    I.fillRect(9, 12, 14, 20, Rgb(16, 12, 10));
    ShadedRect(I, 7, 11, 4, 21, WOOD);  // the leaf, swung against the frame
  } else {
    ShadedRect(I, 9, 12, 14, 20, WOOD);
    for (int X = 12; X < 23; X += 4) I.fillRect(X, 12, 1, 20, DARK_WOOD);
    I.fillRect(9, 16, 14, 2, IRON);
    I.fillRect(9, 26, 14, 2, IRON);
    I.set(20, 22, Rgb(230, 200, 90));
  }
  return I;
}

TCanvas Archway() {
  TCanvas I(32, 32);
  Cap(I, 0, 0, 32, 6, STONE, 7);
  Bricks(I, 0, 6, 32, 8, STONE, false, 8);
  for (int Y = 6; Y < 14; ++Y) {  // the arch cut out of the lower course
    for (int X = 0; X < 32; ++X) {
      if (std::hypot(X - 15.5, (Y - 14.0) * 2.2) < 13) I.set(X, Y, {});
    }
  }
  Bricks(I, 0, 6, 3, 26, STONE, false, 9);
  Bricks(I, 29, 6, 3, 26, STONE, false, 10);
  return I;
}

TCanvas Vines(int Variant) {
  TCanvas I(32, 32);
  for (int S = 0; S < 4; ++S) {
    const int X = 4 + S * 7 + Variant * 3;
    const int Length = 14 + static_cast<int>(Hash(S, Variant, 1) % 14);
    for (int Y = 0; Y < Length; ++Y) {
      const int DX = static_cast<int>(std::lround(std::sin(Y * 0.5 + S) * 1.5));
      I.set(X + DX, Y, Rgb(48, 100, 36));
      if (Y % 4 == S % 4) {
        I.ellipse(X + DX + (Y % 8 ? 2 : -2), Y + 0.5, 2, 1.4, Rgb(72, 140, 50));
      }
    }
  }
  I.outline({24, 52, 20, 255});
  return I;
}

TCanvas Fence(int Variant) {
  TCanvas I(32, 32);
  for (int X : {3, 15, 27}) ShadedRect(I, X, 10 + Variant, 4, 18, WOOD);
  ShadedRect(I, 0, 14 + Variant, 32, 3, Shade(WOOD, 1.1));
  ShadedRect(I, 0, 22 + Variant, 32, 3, Shade(WOOD, 1.1));
  FinishThing(I);
  return I;
}

TCanvas Rock(double CX, double CY, double RX, double RY, std::uint32_t Seed, int Size) {
  TCanvas I(Size, Size);
  const TNoise N(Seed);
  std::vector<std::pair<double, double>> Points;
  for (int A = 0; A < 10; ++A) {
    const double T = A * 2 * M_PI / 10, R = 0.82 + 0.3 * N.value(A, 0);
    Points.emplace_back(CX + std::cos(T) * RX * R, CY + std::sin(T) * RY * R);
  }
  ShadedPolygon(I, Points, Rgb(122, 116, 108));
  for (int Y = 0; Y < Size; ++Y) {
    for (int X = 0; X < Size; ++X) {
      if (I.at(X, Y).a && N.fractal(X, Y, 4, 2, 64) > 0.68) I.set(X, Y, Shade(I.at(X, Y), 0.8));
    }
  }
  FinishThing(I);
  return I;
}

TCanvas Oak() {
  TCanvas I(64, 64);
  ShadedRect(I, 32, 34, 10, 26, Rgb(96, 64, 38));
  I.fillRect(30, 58, 14, 3, Rgb(80, 54, 32));
  const TNoise N(13);
  for (int K = 0; K < 9; ++K) {
    const double X = 20 + Hash(K, 1, 13) % 30, Y = 10 + Hash(K, 2, 13) % 26;
    ShadedEllipse(I, X, Y, 12, 10, Rgb(58, 118, 44));
  }
  for (int Y = 0; Y < 64; ++Y) {
    for (int X = 0; X < 64; ++X) {
      const TRGBA P = I.at(X, Y);
      if (P.a && P.g > P.r + 30 && N.value(X, Y) > 0.86) I.set(X, Y, Shade(P, 1.3));
    }
  }
  FinishThing(I);
  return I;
}

TCanvas Fir() {
  TCanvas I(32, 64);
  ShadedRect(I, 14, 50, 5, 12, Rgb(90, 60, 36));
  for (int L = 0; L < 4; ++L) {
    const double Top = 4 + L * 11, Half = 6 + L * 3;
    ShadedPolygon(I, {{16.5, Top}, {16.5 + Half, Top + 16}, {16.5 - Half, Top + 16}}, Rgb(36, 96, 56));
  }
  FinishThing(I);
  return I;
}

TCanvas Bush(int Variant) {
  TCanvas I(32, 32);
  for (int K = 0; K < 5; ++K) {
    ShadedEllipse(I, 10 + Hash(K, Variant, 3) % 12, 14 + Hash(K, Variant, 4) % 10, 7, 6,
                  Rgb(52, 112, 42));
  }
  if (Variant == 1) {
    for (int K = 0; K < 6; ++K) I.set(9 + Hash(K, 5) % 14, 12 + Hash(K, 6) % 12, Rgb(200, 40, 50));
  }
  FinishThing(I);
  return I;
}

TCanvas StreetLamp() {
  TCanvas I(32, 64);
  ShadedRect(I, 14, 14, 4, 46, Rgb(50, 52, 58));
  ShadedRect(I, 11, 58, 10, 4, Rgb(60, 62, 68));
  I.polygon({{9, 10}, {23, 10}, {20, 20}, {12, 20}}, Rgb(40, 42, 46));
  I.fillRect(12, 12, 8, 7, Rgb(255, 230, 140));
  I.fillRect(14, 13, 3, 4, Rgb(255, 250, 220));
  I.polygon({{8, 10}, {24, 10}, {16, 4}}, Rgb(56, 58, 64));
  FinishThing(I);
  return I;
}

TCanvas CampFire(int Phase) {
  TCanvas I(32, 32);
  for (int K = 0; K < 3; ++K) {
    I.thickLine(8 + K * 3, 28 - K, 24 - K * 2, 24 + K, 3, Rgb(92, 60, 34));
  }
  for (int K = 0; K < 5; ++K) {
    const double X = 11 + K * 2.5, H = 8 + (Hash(K, Phase, 9) % 7);
    I.polygon({{X - 3, 26}, {X + 3, 26}, {X + (Phase - 1), 26 - H}}, Rgb(236, 110, 30));
    I.polygon({{X - 1.5, 26}, {X + 1.5, 26}, {X + (Phase - 1) * 0.5, 26 - H * 0.6}}, Rgb(255, 214, 90));
  }
  FinishThing(I);
  return I;
}

TCanvas Well() {
  TCanvas I(32, 32);
  ShadedEllipse(I, 16, 20, 12, 8, STONE);
  I.ellipse(16, 19, 8, 5, Rgb(20, 30, 50));
  I.ellipse(15, 18, 3, 1.5, Rgb(70, 110, 160));
  I.fillRect(4, 4, 3, 18, WOOD);
  I.fillRect(25, 4, 3, 18, WOOD);
  I.polygon({{1, 6}, {31, 6}, {26, 0}, {6, 0}}, Rgb(150, 60, 40));
  FinishThing(I);
  return I;
}

TCanvas Signpost() {
  TCanvas I(32, 32);
  ShadedRect(I, 15, 8, 3, 22, DARK_WOOD);
  I.polygon({{5, 6}, {24, 6}, {28, 10}, {24, 14}, {5, 14}}, WOOD);
  for (int X = 8; X < 23; X += 3) I.fillRect(X, 9, 2, 1, Rgb(60, 40, 24));
  FinishThing(I);
  return I;
}

TCanvas Statue() {
  TCanvas I(32, 64);
  ShadedRect(I, 6, 48, 20, 13, Rgb(140, 136, 128));
  const TRGBA Marble = Rgb(188, 184, 176);
  ShadedEllipse(I, 16, 22, 4.5, 5, Marble);     // head
  ShadedRect(I, 10, 27, 12, 14, Marble);         // body
  ShadedRect(I, 11, 41, 4, 7, Marble);
  ShadedRect(I, 17, 41, 4, 7, Marble);
  I.thickLine(22, 29, 26, 18, 3, Marble);         // the raised arm
  I.thickLine(26, 18, 26, 8, 1.5, Rgb(160, 156, 148));
  FinishThing(I);
  return I;
}

TCanvas Stairs(bool Down) {
  TCanvas I(32, 32);
  for (int S = 0; S < 5; ++S) {
    const double Lit = Down ? 1.0 - S * 0.17 : 0.55 + S * 0.11;
    ShadedRect(I, 2, 2 + S * 6, 28, 6, Shade(STONE, Lit));
    I.fillRect(2, 7 + S * 6, 28, 1, MORTAR);
  }
  I.frame(1, 1, 30, 31, Rgb(70, 66, 62));
  if (!Down) FinishThing(I);
  return I;
}

TCanvas Ladder() {
  TCanvas I(32, 32);
  ShadedRect(I, 8, 0, 3, 32, WOOD);
  ShadedRect(I, 21, 0, 3, 32, WOOD);
  for (int Y = 3; Y < 32; Y += 6) ShadedRect(I, 11, Y, 10, 2, Shade(WOOD, 1.15));
  FinishThing(I);
  return I;
}

TCanvas Hole(bool Trapdoor, bool Rope) {
  TCanvas I(32, 32);
  if (Trapdoor) ShadedRect(I, 4, 6, 24, 22, WOOD);
  I.ellipse(16, 17, Trapdoor ? 9 : 11, Trapdoor ? 8 : 9, Rgb(60, 44, 30));
  I.ellipse(16, 18, Trapdoor ? 8 : 10, Trapdoor ? 7 : 8, Rgb(8, 6, 6));
  if (Trapdoor) ShadedRect(I, 4, 0, 24, 6, Shade(WOOD, 1.2));
  if (Rope) I.ellipse(16, 17, 3, 2, Rgb(220, 220, 180));
  FinishThing(I);
  return I;
}

TCanvas Grate() {
  TCanvas I(32, 32);
  ShadedRect(I, 5, 5, 22, 22, Rgb(30, 30, 32));
  for (int K = 7; K < 26; K += 4) {
    I.fillRect(K, 5, 2, 22, IRON);
    I.fillRect(5, K, 22, 1, Shade(IRON, 0.8));
  }
  I.frame(5, 5, 22, 22, Shade(IRON, 1.2));
  FinishThing(I);
  return I;
}

TCanvas Table() {
  TCanvas I(32, 32);
  ShadedRect(I, 5, 18, 3, 12, DARK_WOOD);
  ShadedRect(I, 25, 18, 3, 12, DARK_WOOD);
  ShadedRect(I, 2, 8, 29, 12, WOOD);
  I.fillRect(2, 19, 29, 2, DARK_WOOD);
  FinishThing(I);
  return I;
}

TCanvas Chair(int Direction) {
  TCanvas I(32, 32);
  ShadedRect(I, 10, 16, 13, 9, WOOD);  // the seat
  for (int X : {10, 21}) ShadedRect(I, X, 24, 2, 6, DARK_WOOD);
  switch (Direction) {
    case 0: ShadedRect(I, 10, 25, 13, 4, Shade(WOOD, 0.9)); break;  // back towards the viewer
    case 1: ShadedRect(I, 9, 4, 3, 21, DARK_WOOD); break;
    case 2: ShadedRect(I, 10, 4, 13, 13, DARK_WOOD); break;
    default: ShadedRect(I, 21, 4, 3, 21, DARK_WOOD); break;
  }
  FinishThing(I);
  return I;
}

TCanvas Barrel() {
  TCanvas I(32, 32);
  ShadedRect(I, 8, 7, 17, 22, WOOD);
  for (int Y : {10, 25}) I.fillRect(8, Y, 17, 2, IRON);
  ShadedEllipse(I, 16.5, 7, 8.5, 3.5, Shade(WOOD, 1.2));
  I.ellipse(16.5, 7, 6, 2, DARK_WOOD);
  FinishThing(I);
  return I;
}

TCanvas Crate() {
  TCanvas I(32, 32);
  ShadedRect(I, 5, 9, 22, 20, Rgb(170, 128, 76));
  I.frame(5, 9, 22, 20, Rgb(110, 76, 40));
  I.line(6, 10, 25, 27, Rgb(110, 76, 40));
  I.line(25, 10, 6, 27, Rgb(110, 76, 40));
  ShadedRect(I, 5, 4, 22, 5, Rgb(190, 148, 92));
  FinishThing(I);
  return I;
}

TCanvas Chest(TRGBA Body, TRGBA Trim) {
  TCanvas I(32, 32);
  ShadedRect(I, 4, 13, 24, 15, Body);
  ShadedEllipse(I, 16, 13, 12, 6, Shade(Body, 1.15));
  I.fillRect(4, 13, 24, 2, Trim);
  I.fillRect(9, 7, 2, 21, Trim);
  I.fillRect(21, 7, 2, 21, Trim);
  I.fillRect(14, 14, 4, 5, Rgb(230, 196, 80));
  FinishThing(I);
  return I;
}

TCanvas Mailbox() {
  TCanvas I(32, 32);
  ShadedRect(I, 14, 18, 4, 12, DARK_WOOD);
  ShadedRect(I, 8, 6, 16, 13, Rgb(200, 170, 40));
  ShadedEllipse(I, 16, 7, 8, 3, Rgb(220, 190, 60));
  I.fillRect(11, 11, 10, 2, Rgb(40, 30, 10));
  FinishThing(I);
  return I;
}

TCanvas Bookcase() {
  TCanvas I(32, 32);
  ShadedRect(I, 1, 0, 30, 32, DARK_WOOD);
  for (int Shelf = 0; Shelf < 3; ++Shelf) {
    const int Y = 3 + Shelf * 9;
    I.fillRect(3, Y, 26, 7, Rgb(40, 26, 14));
    for (int X = 3; X < 29;) {
      const int W = 2 + static_cast<int>(Hash(X, Shelf, 17) % 2);
      const TRGBA Spine = Hash(X, Shelf, 18) % 3 == 0   ? Rgb(150, 40, 40)
                          : Hash(X, Shelf, 18) % 3 == 1 ? Rgb(40, 80, 140)
                                                        : Rgb(60, 120, 60);
      I.fillRect(X, Y + 1 + static_cast<int>(Hash(X, Shelf) % 2), W, 6, Spine);
      X += W + 1;
    }
  }
  return I;
}

TCanvas Blackboard() {
  TCanvas I(32, 32);
  ShadedRect(I, 3, 4, 26, 18, WOOD);
  I.fillRect(5, 6, 22, 14, Rgb(30, 56, 44));
  I.line(7, 9, 18, 9, Rgb(210, 220, 210));
  I.line(7, 13, 22, 13, Rgb(190, 200, 190));
  I.line(7, 16, 14, 16, Rgb(190, 200, 190));
  I.thickLine(8, 22, 5, 30, 2, DARK_WOOD);
  I.thickLine(24, 22, 27, 30, 2, DARK_WOOD);
  FinishThing(I);
  return I;
}

TCanvas Rug() {
  TCanvas I(64, 64);
  I.fillRect(6, 10, 52, 44, Rgb(140, 36, 40));
  I.frame(8, 12, 48, 40, Rgb(220, 180, 90));
  I.frame(12, 16, 40, 32, Rgb(60, 30, 80));
  I.polygon({{32, 20}, {46, 32}, {32, 44}, {18, 32}}, Rgb(210, 170, 80));
  I.polygon({{32, 25}, {40, 32}, {32, 39}, {24, 32}}, Rgb(120, 30, 36));
  for (int X = 8; X < 56; X += 3) {
    I.fillRect(X, 8, 1, 2, Rgb(230, 220, 190));
    I.fillRect(X, 54, 1, 2, Rgb(230, 220, 190));
  }
  return I;
}

TCanvas DeadRat() {
  TCanvas I(32, 32);
  ShadedEllipse(I, 15, 22, 8, 4, Rgb(110, 96, 84));
  I.ellipse(22, 23, 3, 2.5, Rgb(120, 104, 92));
  I.line(7, 22, 2, 25, Rgb(170, 120, 120));
  I.ellipse(12, 26, 5, 1.5, Rgb(120, 20, 20));
  I.set(23, 22, Rgb(0, 0, 0));
  FinishThing(I);
  return I;
}

// Hanging things: pattern 1 lies on the floor, 2 hangs on a wall facing
// south, 3 on a wall facing east.
TCanvas Hanging(int Pattern, const std::function<void(TCanvas&, int, int)>& Draw) {
  TCanvas I(32, 32);
  if (Pattern == 0) Draw(I, 16, 22);
  else if (Pattern == 1) Draw(I, 16, 14);
  else Draw(I, 7, 16);
  FinishThing(I);
  return I;
}

void Torch(TCanvas& I, int X, int Y, int Phase) {
  I.thickLine(X, Y + 8, X + 2, Y - 2, 3, WOOD);
  const double Sway = Phase - 1;
  I.polygon({{X - 2.0, Y - 1.0}, {X + 5.0, Y - 1.0}, {X + 1.5 + Sway, Y - 11.0}}, Rgb(240, 120, 30));
  I.polygon({{X - 0.5, Y - 1.0}, {X + 3.5, Y - 1.0}, {X + 1.5 + Sway / 2, Y - 7.0}}, Rgb(255, 220, 100));
}

void Painting(TCanvas& I, int X, int Y) {
  I.fillRect(X - 9, Y - 7, 18, 14, Rgb(170, 130, 50));
  I.fillRect(X - 7, Y - 5, 14, 10, Rgb(120, 170, 220));
  I.polygon({{X - 7.0, Y + 5.0}, {X - 2.0, Y - 2.0}, {X + 2.0, Y + 2.0}, {X + 4.0, Y}, {X + 7.0, Y + 5.0}},
            Rgb(70, 120, 60));
  I.ellipse(X + 4, Y - 2, 1.5, 1.5, Rgb(255, 240, 150));
}

void WallShield(TCanvas& I, int X, int Y) {
  ShadedPolygon(I, {{X - 8.0, Y - 8.0}, {X + 8.0, Y - 8.0}, {X + 7.0, Y + 2.0}, {X, Y + 9.0},
                    {X - 7.0, Y + 2.0}},
                Rgb(60, 80, 160));
  I.fillRect(X - 1, Y - 8, 3, 16, Rgb(220, 190, 80));
  I.fillRect(X - 7, Y - 2, 15, 3, Rgb(220, 190, 80));
}

TCanvas Lever(bool Right) {
  TCanvas I(32, 32);
  ShadedRect(I, 9, 20, 14, 9, Rgb(110, 106, 100));
  I.thickLine(16, 22, Right ? 24 : 8, 9, 2.5, IRON);
  I.ellipse(Right ? 24 : 8, 9, 2.5, 2.5, Rgb(180, 40, 30));
  FinishThing(I);
  return I;
}

TCanvas PottedFlower() {
  TCanvas I(32, 32);
  I.polygon({{10, 20}, {22, 20}, {20, 29}, {12, 29}}, Rgb(176, 90, 56));
  I.fillRect(10, 20, 12, 2, Rgb(196, 110, 70));
  I.line(16, 20, 16, 11, Rgb(50, 110, 40));
  I.ellipse(13, 16, 3, 1.5, Rgb(60, 130, 50));
  for (int K = 0; K < 5; ++K) {
    I.ellipse(16 + std::cos(K * 1.256) * 3, 9 + std::sin(K * 1.256) * 3, 2, 2, Rgb(220, 70, 120));
  }
  I.ellipse(16, 9, 1.5, 1.5, Rgb(250, 220, 80));
  FinishThing(I);
  return I;
}

TCanvas Candlestick() {
  TCanvas I(32, 32);
  ShadedEllipse(I, 16, 27, 6, 2, Rgb(200, 170, 70));
  ShadedRect(I, 15, 16, 3, 11, Rgb(200, 170, 70));
  ShadedRect(I, 14, 9, 5, 8, Rgb(240, 236, 220));
  I.polygon({{14.5, 9}, {18.5, 9}, {16.5, 3}}, Rgb(255, 200, 80));
  FinishThing(I);
  return I;
}

void AddOne(TArtCatalogue& C, const std::string& Name, TArtShape S, std::function<TCanvas()> Draw) {
  C.add(Name, S, [Draw](const TArtFrame&) { return One(Draw()); });
}

void AddVariants(TArtCatalogue& C, const std::string& Name, TArtShape S,
                 std::function<TCanvas(int)> Draw) {
  C.add(Name, S, [Draw](const TArtFrame& F) { return One(Draw(F.PatternX)); });
}

}  // namespace

void AddStructureArt(TArtCatalogue& C) {
  AddOne(C, "stone wall h", Shape(), [] { return HorizontalWall(STONE, false); });
  AddOne(C, "stone wall v", Shape(), [] { return VerticalWall(STONE, false); });
  AddOne(C, "stone wall corner", Shape(), Corner);
  AddOne(C, "stone pillar", Shape(), Pillar);
  AddOne(C, "wooden wall h", Shape(), [] { return HorizontalWall(WOOD, true); });
  AddOne(C, "wooden wall v", Shape(), [] { return VerticalWall(WOOD, true); });
  AddOne(C, "window", Shape(), Window);
  AddOne(C, "closed door", Shape(), [] { return Door(false); });
  AddOne(C, "open door", Shape(), [] { return Door(true); });
  AddOne(C, "archway", Shape(), Archway);
  AddVariants(C, "hanging vines", Shape(1, 1, 2), Vines);
  AddVariants(C, "fence", Shape(1, 1, 2), Fence);
  AddVariants(C, "rock", Shape(1, 1, 2), [](int V) {
    return Rock(16 + V * 2, 20, 9 - V, 7, 21 + V, 32);
  });
  AddOne(C, "boulder", Shape(2, 2), [] { return Rock(34, 36, 26, 22, 23, 64); });
  AddOne(C, "oak tree", Shape(2, 2), Oak);
  AddOne(C, "fir tree", Shape(1, 2), Fir);
  AddVariants(C, "bush", Shape(1, 1, 2), Bush);
  AddOne(C, "street lamp", Shape(1, 2), StreetLamp);
  C.add("camp fire", Shape(1, 1, 1, 3), [](const TArtFrame& F) { return One(CampFire(F.Phase)); });
  AddOne(C, "well", Shape(), Well);
  AddOne(C, "signpost", Shape(), Signpost);
  AddOne(C, "statue", Shape(1, 2), Statue);
  AddOne(C, "stairs down", Shape(), [] { return Stairs(true); });
  AddOne(C, "stairs up", Shape(), [] { return Stairs(false); });
  AddOne(C, "ladder", Shape(), Ladder);
  AddOne(C, "hole", Shape(), [] { return Hole(false, false); });
  AddOne(C, "open trapdoor", Shape(), [] { return Hole(true, false); });
  AddOne(C, "rope spot", Shape(), [] { return Hole(false, true); });
  AddOne(C, "sewer grate", Shape(), Grate);
  AddOne(C, "wooden table", Shape(), Table);
  AddOne(C, "chair north", Shape(), [] { return Chair(0); });
  AddOne(C, "chair east", Shape(), [] { return Chair(1); });
  AddOne(C, "chair south", Shape(), [] { return Chair(2); });
  AddOne(C, "chair west", Shape(), [] { return Chair(3); });
  AddOne(C, "barrel", Shape(), Barrel);
  AddOne(C, "crate", Shape(), Crate);
  AddOne(C, "treasure chest", Shape(), [] { return Chest(Rgb(140, 90, 44), Rgb(210, 180, 70)); });
  AddOne(C, "depot box", Shape(), [] { return Chest(Rgb(70, 90, 120), Rgb(170, 176, 186)); });
  AddOne(C, "mailbox", Shape(), Mailbox);
  AddOne(C, "bookcase", Shape(), Bookcase);
  AddOne(C, "blackboard", Shape(), Blackboard);
  AddOne(C, "rug", Shape(2, 2), Rug);
  AddOne(C, "dead rat", Shape(), DeadRat);
  C.add("wall torch", Shape(1, 1, 3, 3), [](const TArtFrame& F) {
    return One(Hanging(F.PatternX, [&F](TCanvas& I, int X, int Y) { Torch(I, X, Y, F.Phase); }));
  });
  AddVariants(C, "painting", Shape(1, 1, 3), [](int P) { return Hanging(P, Painting); });
  AddVariants(C, "wall shield", Shape(1, 1, 3), [](int P) { return Hanging(P, WallShield); });
  AddOne(C, "lever left", Shape(), [] { return Lever(false); });
  AddOne(C, "lever right", Shape(), [] { return Lever(true); });
  AddOne(C, "potted flower", Shape(), PottedFlower);
  AddOne(C, "candlestick", Shape(), Candlestick);
}
