// Grounds and what lies flat on them. Each ground is one texture that tiles
// over its patterns, so neighbouring fields join without seams; animated
// grounds move their texture by whole periods over the phases.
#include <algorithm>
#include <cmath>

#include "tools/databuild/ArtKit.h"

namespace {

TArtShape Ground(int PW, int PH, int Phases = 1) {
  TArtShape S;
  S.PatternWidth = PW;
  S.PatternHeight = PH;
  S.MinimumPhases = S.MaximumPhases = Phases;
  return S;
}

// Adds a tiling ground: Paint draws the whole texture of the patterns for one phase.
void AddTiled(TArtCatalogue& C, const std::string& Name, TArtShape Shape,
              std::function<TCanvas(int Width, int Height, int Phase)> Paint) {
  C.add(Name, Shape, [Paint](const TArtFrame& F) {
    const TCanvas Whole = Paint(32 * F.Record.PatternWidth, 32 * F.Record.PatternHeight, F.Phase);
    return One(PatternCell(Whole, F.PatternX, F.PatternY));
  });
}

TRGBA Tone(TRGBA Base, double Amount) { return Shade(Base, 0.78 + 0.44 * Amount); }

TCanvas Grass(int W, int H) {
  const TNoise N(11), Blades(12);
  TCanvas T = Texture(W, H, [&](int X, int Y) {
    const double V = N.fractal(X, Y, 16, 4, W, H);
    return Mix(Tone(Rgb(62, 124, 42), V), Rgb(96, 132, 48), N.smooth(X, Y, 32, W, H) * 0.35);
  });
  for (int I = 0; I < W * H / 9; ++I) {
    const int X = static_cast<int>(Hash(I, 1, 12) % W), Y = static_cast<int>(Hash(I, 2, 12) % H);
    const bool Bright = Blades.value(I, 0) > 0.5;
    const TRGBA C = Bright ? Rgb(118, 170, 64) : Rgb(38, 88, 30);
    WrapSet(T, X, Y, C);
    WrapSet(T, X + (Hash(I, 3) % 3 == 0 ? 1 : 0), Y - 1, C);
  }
  for (int I = 0; I < W * H / 300; ++I) {  // a few flowers
    const int X = static_cast<int>(Hash(I, 5, 12) % W), Y = static_cast<int>(Hash(I, 6, 12) % H);
    const TRGBA Petal = Hash(I, 7) % 2 ? Rgb(236, 226, 120) : Rgb(230, 236, 240);
    for (auto [DX, DY] : {std::pair{0, -1}, {1, 0}, {0, 1}, {-1, 0}}) WrapSet(T, X + DX, Y + DY, Petal);
    WrapSet(T, X, Y, Rgb(210, 140, 40));
  }
  return T;
}

TCanvas Dirt(int W, int H) {
  const TNoise N(21);
  TCanvas T = Texture(W, H, [&](int X, int Y) {
    return Tone(Rgb(120, 88, 56), N.fractal(X, Y, 16, 4, W, H));
  });
  for (int I = 0; I < W * H / 40; ++I) {
    const int X = static_cast<int>(Hash(I, 1, 21) % W), Y = static_cast<int>(Hash(I, 2, 21) % H);
    WrapSet(T, X, Y, Rgb(150, 124, 96));
    WrapSet(T, X + 1, Y + 1, Rgb(78, 56, 36));
  }
  return T;
}

// Stones round jittered points of a grid that wraps: the nearest point gives
// a stone, the gap between the two nearest gives the joint.
TCanvas Cobbles(int W, int H, int Step, TRGBA Stone, TRGBA Joint, std::uint32_t Seed) {
  const int CX = W / Step, CY = H / Step;
  const TNoise N(Seed);
  const auto Point = [&](int I, int J) {
    const int WI = ((I % CX) + CX) % CX, WJ = ((J % CY) + CY) % CY;
    return std::pair{I * Step + 2 + Hash(WI, WJ, Seed) % (Step - 4),
                     J * Step + 2 + Hash(WI, WJ, Seed + 1) % (Step - 4)};
  };
  return Texture(W, H, [&](int X, int Y) {
    double Best = 1e9, Second = 1e9;
    int BI = 0, BJ = 0;
    for (int J = Y / Step - 1; J <= Y / Step + 1; ++J) {
      for (int I = X / Step - 1; I <= X / Step + 1; ++I) {
        const auto [PX, PY] = Point(I, J);
        const double D = std::hypot(X + 0.5 - PX, Y + 0.5 - PY);
        if (D < Best) Second = Best, Best = D, BI = I, BJ = J;
        else if (D < Second) Second = D;
      }
    }
    if (Second - Best < 1.6) return Joint;
    const double Own = (Hash(((BI % CX) + CX) % CX, ((BJ % CY) + CY) % CY, Seed + 2) % 100) / 100.0;
    const double Edge = std::clamp((Second - Best) / 5.0, 0.0, 1.0);
    return Shade(Tone(Stone, 0.6 * Own + 0.4 * N.fractal(X, Y, 8, 2, W, H)), 0.8 + 0.25 * Edge);
  });
}

TCanvas Sand(int W, int H) {
  const TNoise N(31);
  TCanvas T = Texture(W, H, [&](int X, int Y) {
    const double Ripple = std::sin((Y + 6 * N.smooth(X, Y, 16, W, H)) * 2 * M_PI / 8.0);
    return Shade(Tone(Rgb(214, 190, 128), N.fractal(X, Y, 8, 3, W, H)), 1.0 + 0.05 * Ripple);
  });
  for (int I = 0; I < W * H / 30; ++I) {
    WrapSet(T, static_cast<int>(Hash(I, 1, 31) % W), static_cast<int>(Hash(I, 2, 31) % H),
            Hash(I, 3) % 2 ? Rgb(236, 218, 160) : Rgb(170, 146, 96));
  }
  return T;
}

TCanvas Swamp(int W, int H, int Phase) {
  const TNoise N(41);
  TCanvas T = Texture(W, H, [&](int X, int Y) {
    const double V = N.fractal(X, Y, 16, 3, W, H);
    return V > 0.55 ? Tone(Rgb(58, 84, 40), V) : Tone(Rgb(50, 62, 40), V * 1.2);
  });
  for (int I = 0; I < 5; ++I) {  // bubbles that rise and burst in turn
    const int X = static_cast<int>(Hash(I, 1, 41) % W), Y = static_cast<int>(Hash(I, 2, 41) % H);
    const bool Up = (I + Phase) % 2 == 0;
    T.ring(X + 0.5, Y + 0.5, Up ? 2.5 : 1.5, 1, Up ? Rgb(120, 140, 88) : Rgb(90, 110, 70));
  }
  return T;
}

TCanvas Snow(int W, int H) {
  const TNoise N(51);
  TCanvas T = Texture(W, H, [&](int X, int Y) {
    return Mix(Rgb(232, 238, 246), Rgb(184, 198, 222), N.fractal(X, Y, 16, 3, W, H) * 0.8);
  });
  for (int I = 0; I < W * H / 60; ++I) {
    WrapSet(T, static_cast<int>(Hash(I, 1, 51) % W), static_cast<int>(Hash(I, 2, 51) % H),
            Rgb(255, 255, 255));
  }
  return T;
}

// Planks of Board pixels, across (Horizontal) or down.
TCanvas Planks(int W, int H, int Board, bool Horizontal, TRGBA Wood, std::uint32_t Seed) {
  const TNoise N(Seed);
  return Texture(W, H, [&](int X, int Y) {
    const int Along = Horizontal ? X : Y, Across = Horizontal ? Y : X;
    const int Row = Across / Board, Length = Horizontal ? W : H;
    const int Joint = static_cast<int>(Hash(Row, Seed) % Length);
    if (Across % Board == Board - 1) return Shade(Wood, 0.5);
    if ((Along - Joint + Length) % Length == 0) return Shade(Wood, 0.6);
    const double Grain = Horizontal ? N.smooth(X / 4.0, Y * 2.0, 4, W / 4, H * 2)
                                    : N.smooth(X * 2.0, Y / 4.0, 4, W * 2, H / 4);
    const double Own = (Hash(Row, Seed + 1) % 100) / 100.0;
    return Shade(Tone(Wood, 0.5 * Grain + 0.5 * Own), Across % Board == 0 ? 1.12 : 1.0);
  });
}

TCanvas StoneFloor(int W, int H) {
  const TNoise N(61);
  return Texture(W, H, [&](int X, int Y) {
    const int TX = X % 16, TY = Y % 16;
    const TRGBA Base = Tone(Rgb(128, 126, 122), N.fractal(X, Y, 8, 3, W, H));
    if (TX == 15 || TY == 15) return Rgb(70, 68, 66);
    if (TX == 0 || TY == 0) return Shade(Base, 1.15);
    return Base;
  });
}

TCanvas CaveFloor(int W, int H) {
  const TNoise N(71), Crack(72);
  return Texture(W, H, [&](int X, int Y) {
    const double C = Crack.fractal(X, Y, 16, 3, W, H);
    if (std::abs(C - 0.5) < 0.018) return Rgb(40, 34, 30);
    return Tone(Rgb(92, 80, 70), N.fractal(X, Y, 16, 4, W, H));
  });
}

TCanvas Water(int W, int H, int Phase, int Phases) {
  const TNoise N(81), Wave(82);
  const double Shift = static_cast<double>(Phase) * W / Phases;
  return Texture(W, H, [&](int X, int Y) {
    const double Deep = N.fractal(X, Y, 32, 3, W, H);
    const double Crest = Wave.fractal(X + Shift, Y + Shift * H / W, 16, 2, W, H);
    TRGBA C = Mix(Rgb(34, 72, 150), Rgb(52, 110, 186), Deep);
    if (Crest > 0.62) C = Mix(C, Rgb(150, 196, 236), std::min(1.0, (Crest - 0.62) * 6));
    return C;
  });
}

TCanvas Lava(int W, int H, int Phase, int Phases) {
  const TNoise N(91), Glow(92);
  const double Shift = static_cast<double>(Phase) * W / Phases;
  return Texture(W, H, [&](int X, int Y) {
    const double Crust = N.fractal(X, Y, 16, 3, W, H);
    const double Heat = Glow.fractal(X + Shift, Y, 16, 2, W, H);
    if (Crust > 0.6) return Tone(Rgb(70, 40, 34), Crust);
    return Mix(Rgb(200, 60, 16), Rgb(255, 206, 70), std::clamp(Heat * 1.4 - 0.2, 0.0, 1.0));
  });
}

// Things on top of a ground: transparent but where they lie.
TCanvas Border(int Variant, TRGBA Base, TRGBA Light, std::uint32_t Seed) {
  TCanvas T(32, 32);
  const int Side = Variant;  // 0 north, 1 east, 2 south, 3 west
  for (int I = 0; I < 32; ++I) {
    const int Depth = 3 + static_cast<int>(Hash(I / 3, Variant, Seed) % 5);
    for (int D = 0; D < Depth; ++D) {
      const int X = Side == 1 ? 31 - D : Side == 3 ? D : I;
      const int Y = Side == 0 ? D : Side == 2 ? 31 - D : I;
      T.set(X, Y, Hash(X, Y, Seed) % 5 == 0 ? Light : Shade(Base, 0.9 + D * 0.04));
    }
  }
  for (int I = 0; I < 6; ++I) {  // loose tufts or grains off the edge
    const int A = static_cast<int>(Hash(I, Variant, Seed + 1) % 30) + 1;
    const int B = 8 + static_cast<int>(Hash(I, Variant, Seed + 2) % 6);
    const int X = Side == 1 ? 31 - B : Side == 3 ? B : A, Y = Side == 0 ? B : Side == 2 ? 31 - B : A;
    T.set(X, Y, Light);
    T.set(X + 1, Y, Base);
  }
  return T;
}

TCanvas Tuft(int Variant) {
  TCanvas T(32, 32);
  const int CX = 14 + Variant * 4, Base = 24 + Variant * 2;
  for (int I = -4; I <= 4; ++I) {
    const int Height = 5 + static_cast<int>(Hash(I, Variant, 7) % 5);
    T.line(CX + I / 2, Base, CX + I, Base - Height, I % 2 ? Rgb(84, 150, 52) : Rgb(52, 110, 38));
  }
  T.outline({30, 60, 24, 255});
  return T;
}

TCanvas DarkPatch() {
  TCanvas T(32, 32);
  const TNoise N(101);
  for (int Y = 0; Y < 32; ++Y) {
    for (int X = 0; X < 32; ++X) {
      const double D = std::hypot(X - 15.5, Y - 15.5) / 16 + (N.fractal(X, Y, 8, 2, 32) - 0.5) * 0.5;
      if (D < 0.55 || (D < 0.9 && (X + Y) % 2 == 0)) T.set(X, Y, {12, 10, 14, 255});
    }
  }
  return T;
}

}  // namespace

void AddGroundArt(TArtCatalogue& C) {
  AddTiled(C, "grass", Ground(2, 2), [](int W, int H, int) { return Grass(W, H); });
  AddTiled(C, "dirt", Ground(2, 2), [](int W, int H, int) { return Dirt(W, H); });
  AddTiled(C, "cobblestone road", Ground(2, 2), [](int W, int H, int) {
    return Cobbles(W, H, 8, Rgb(136, 132, 124), Rgb(64, 60, 56), 111);
  });
  AddTiled(C, "sand", Ground(2, 2), [](int W, int H, int) { return Sand(W, H); });
  AddTiled(C, "swamp", Ground(1, 1, 2), [](int W, int H, int P) { return Swamp(W, H, P); });
  AddTiled(C, "snow", Ground(2, 2), [](int W, int H, int) { return Snow(W, H); });
  AddTiled(C, "wooden floor", Ground(2, 1), [](int W, int H, int) {
    return Planks(W, H, 8, true, Rgb(150, 104, 62), 121);
  });
  AddTiled(C, "stone floor", Ground(1, 1), [](int W, int H, int) { return StoneFloor(W, H); });
  AddTiled(C, "cave floor", Ground(2, 2), [](int W, int H, int) { return CaveFloor(W, H); });
  AddTiled(C, "water", Ground(4, 4, 4), [](int W, int H, int P) { return Water(W, H, P, 4); });
  AddTiled(C, "lava", Ground(2, 2, 3), [](int W, int H, int P) { return Lava(W, H, P, 3); });
  AddTiled(C, "wooden bridge", Ground(2, 1), [](int W, int H, int) {
    TCanvas T = Planks(W, H, 6, false, Rgb(126, 86, 50), 131);
    for (int X = 0; X < W; ++X) {  // the rails along both sides
      for (int Y : {0, 1, 30, 31}) T.set(X, Y, Y == 0 || Y == 30 ? Rgb(110, 74, 40) : Rgb(70, 46, 26));
    }
    return T;
  });
  C.add("grass border", Ground(4, 1), [](const TArtFrame& F) {
    return One(Border(F.PatternX, Rgb(62, 124, 42), Rgb(110, 164, 60), 141));
  });
  C.add("sand border", Ground(4, 1), [](const TArtFrame& F) {
    return One(Border(F.PatternX, Rgb(206, 182, 122), Rgb(234, 216, 160), 151));
  });
  C.add("grass tuft", Ground(2, 1), [](const TArtFrame& F) { return One(Tuft(F.PatternX)); });
  C.add("dark patch", Ground(1, 1), [](const TArtFrame&) { return One(DarkPatch()); });
}
