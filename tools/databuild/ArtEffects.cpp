// Effects grow and fade over their phases; missiles point along the eight
// directions of flight, north-west in the top left of their 3 x 3 patterns.
#include <cmath>

#include "tools/databuild/ArtKit.h"

namespace {

TArtShape Shape(int Phases, int W = 1, int PW = 1, int PH = 1) {
  TArtShape S;
  S.Width = S.Height = W;
  S.PatternWidth = PW;
  S.PatternHeight = PH;
  S.MinimumPhases = S.MaximumPhases = Phases;
  return S;
}

// T runs from 0 at the first phase to 1 at the last.
double Progress(const TArtFrame& F) { return F.phases() > 1 ? F.Phase / (F.phases() - 1.0) : 0; }

TCanvas Burst(double T, int Count, TRGBA Inner, TRGBA Outer, std::uint32_t Seed, double Reach) {
  TCanvas I(32, 32);
  for (int K = 0; K < Count; ++K) {
    const double A = (Hash(K, Seed) % 360) * M_PI / 180, R = (2 + Reach * T) * (0.6 + (Hash(K, Seed + 1) % 40) / 100.0);
    const double Size = std::max(0.8, 2.6 * (1 - T) + 0.6);
    I.ellipse(16 + std::cos(A) * R, 16 + std::sin(A) * R, Size, Size, Mix(Inner, Outer, T));
  }
  return I;
}

TCanvas Smoke(double T, TRGBA C, std::uint32_t Seed) {
  TCanvas I(32, 32);
  for (int K = 0; K < 6; ++K) {
    const double A = K * M_PI / 3 + (Hash(K, Seed) % 10) * 0.05, R = 3 + 7 * T;
    const double Size = 4 + 3 * T - (K % 2);
    ShadedEllipse(I, 16 + std::cos(A) * R, 17 + std::sin(A) * R - 4 * T, Size, Size, Shade(C, 1.0 - 0.25 * T));
  }
  // thinning out: a growing share of pixels goes
  for (int Y = 0; Y < 32; ++Y) {
    for (int X = 0; X < 32; ++X) {
      if ((Hash(X, Y, Seed) % 100) < T * 60) I.set(X, Y, {});
    }
  }
  return I;
}

TCanvas Sparks(double T, TRGBA C, TRGBA Core, std::uint32_t Seed) {
  TCanvas I(32, 32);
  for (int K = 0; K < 7; ++K) {
    const double X = 4 + Hash(K, Seed, static_cast<std::uint32_t>(T * 10)) % 24;
    const double Y = 4 + Hash(K, Seed + 1, static_cast<std::uint32_t>(T * 10)) % 24;
    const double L = 2 + (K % 3);
    I.line(static_cast<int>(X - L), static_cast<int>(Y), static_cast<int>(X + L), static_cast<int>(Y), C);
    I.line(static_cast<int>(X), static_cast<int>(Y - L), static_cast<int>(X), static_cast<int>(Y + L), C);
    I.set(static_cast<int>(X), static_cast<int>(Y), Core);
  }
  return I;
}

TCanvas Fire(double T, int Phase) {
  TCanvas I(32, 32);
  const double H = 10 + 14 * std::sin(T * M_PI);
  for (int K = 0; K < 5; ++K) {
    const double X = 8 + K * 4, Top = 28 - H * (0.6 + (Hash(K, Phase) % 40) / 100.0);
    I.polygon({{X - 4, 29}, {X + 4, 29}, {X + (K % 2 ? 1 : -1), Top}}, Rgb(220, 70, 20));
    I.polygon({{X - 2, 29}, {X + 2, 29}, {X, (Top + 29) / 2}}, Rgb(255, 200, 60));
  }
  return I;
}

TCanvas Teleport(double T) {
  TCanvas I(32, 32);
  const double R = 4 + 11 * std::sin(T * M_PI);
  I.ring(16, 16, R, 2, Rgb(120, 200, 255));
  I.ring(16, 16, R * 0.6, 1.5, Rgb(220, 240, 255));
  for (int K = 0; K < 8; ++K) {
    const double A = K * M_PI / 4 + T * 3;
    I.set(16 + static_cast<int>(std::lround(std::cos(A) * (R + 3))),
          16 + static_cast<int>(std::lround(std::sin(A) * (R + 3))), Rgb(255, 255, 255));
  }
  return I;
}

TCanvas Splash(double T) {
  TCanvas I(32, 32);
  I.ring(16, 22, 3 + 9 * T, 1.5, Rgb(120, 170, 230));
  for (int K = 0; K < 6; ++K) {
    const double A = M_PI + K * M_PI / 5, R = 4 + 8 * T;
    I.ellipse(16 + std::cos(A) * R, 20 + std::sin(A) * R - 6 * std::sin(T * M_PI), 1.4, 1.8,
              Rgb(170, 210, 250));
  }
  return I;
}

TCanvas Explosion(double T) {
  TCanvas I(64, 64);
  const double R = 8 + 22 * T;
  I.ellipse(40, 40, R, R * 0.9, Rgb(170, 40, 20));
  I.ellipse(40, 40, R * 0.75, R * 0.7, Rgb(240, 120, 30));
  I.ellipse(40, 40, R * 0.45 * (1 - T * 0.6), R * 0.4 * (1 - T * 0.6), Rgb(255, 236, 150));
  for (int Y = 0; Y < 64; ++Y) {
    for (int X = 0; X < 64; ++X) {
      if (I.at(X, Y).a && Hash(X, Y, 44) % 100 < T * T * 70) I.set(X, Y, Rgb(70, 60, 56));
    }
  }
  return I;
}

// The magic circle spans 2 x 2 fields, each pattern one quarter of it.
TCanvas MagicCircle(double T, int PX, int PY) {
  TCanvas Whole(64, 64);
  const TRGBA C = Mix(Rgb(170, 90, 255), Rgb(90, 40, 160), T);
  Whole.ring(32, 32, 28, 2, C);
  Whole.ring(32, 32, 20, 1, C);
  for (int K = 0; K < 5; ++K) {
    const double A = K * 4 * M_PI / 5 + T * 1.5, B = (K + 1) * 4 * M_PI / 5 + T * 1.5;
    Whole.thickLine(32 + std::cos(A) * 20, 32 + std::sin(A) * 20, 32 + std::cos(B) * 20, 32 + std::sin(B) * 20, 1.2,
                    C);
  }
  return Whole.crop(PX * 32, PY * 32, 32, 32);
}

// Pattern (x, y) of a missile: the direction from the middle to that place.
double Angle(int PX, int PY) {
  if (PX == 1 && PY == 1) return 0;
  return std::atan2(PY - 1.0, PX - 1.0);
}

TCanvas Shaft(double A, double Length, double Width, TRGBA Body, TRGBA Head, TRGBA Tail) {
  TCanvas I(32, 32);
  const double DX = std::cos(A), DY = std::sin(A);
  I.thickLine(16 - DX * Length, 16 - DY * Length, 16 + DX * Length, 16 + DY * Length, Width, Body);
  I.thickLine(16 + DX * (Length - 3), 16 + DY * (Length - 3), 16 + DX * (Length + 1), 16 + DY * (Length + 1),
              Width + 1.5, Head);
  I.thickLine(16 - DX * Length, 16 - DY * Length, 16 - DX * (Length - 3), 16 - DY * (Length - 3), Width + 1.5,
              Tail);
  FinishThing(I);
  return I;
}

TCanvas Ball(double A, TRGBA Core, TRGBA Glow, bool Trail) {
  TCanvas I(32, 32);
  if (Trail) {
    for (int K = 1; K <= 3; ++K) {
      I.ellipse(16 - std::cos(A) * K * 3.5, 16 - std::sin(A) * K * 3.5, 4 - K, 4 - K, Glow);
    }
  }
  I.ellipse(16, 16, 5.5, 5.5, Glow);
  I.ellipse(16, 16, 3.5, 3.5, Core);
  I.ellipse(15, 15, 1.2, 1.2, Rgb(255, 255, 255));
  return I;
}

void AddEffect(TArtCatalogue& C, const std::string& Name, int Phases, std::function<TCanvas(double, int)> Draw) {
  C.add(Name, Shape(Phases), [Draw](const TArtFrame& F) { return One(Draw(Progress(F), F.Phase)); });
}

void AddMissile(TArtCatalogue& C, const std::string& Name, std::function<TCanvas(double)> Draw) {
  C.add(Name, Shape(1, 1, 3, 3), [Draw](const TArtFrame& F) { return One(Draw(Angle(F.PatternX, F.PatternY))); });
}

}  // namespace

void AddEffectArt(TArtCatalogue& C) {
  AddEffect(C, "blood hit", 3, [](double T, int) { return Burst(T, 9, Rgb(220, 20, 20), Rgb(120, 0, 0), 1, 9); });
  AddEffect(C, "puff of smoke", 3, [](double T, int) { return Smoke(T, Rgb(190, 190, 196), 2); });
  AddEffect(C, "energy sparks", 3, [](double T, int) {
    return Sparks(T, Rgb(110, 180, 255), Rgb(255, 255, 255), 3);
  });
  AddEffect(C, "fire burst", 5, Fire);
  AddEffect(C, "teleport", 6, [](double T, int) { return Teleport(T); });
  AddEffect(C, "poison cloud", 4, [](double T, int) { return Smoke(T, Rgb(90, 190, 60), 4); });
  AddEffect(C, "golden sparkles", 4, [](double T, int) {
    return Sparks(T, Rgb(240, 200, 60), Rgb(255, 255, 220), 5);
  });
  C.add("explosion", Shape(5, 2), [](const TArtFrame& F) { return One(Explosion(Progress(F))); });
  AddEffect(C, "water splash", 4, [](double T, int) { return Splash(T); });
  C.add("magic circle", Shape(4, 1, 2, 2), [](const TArtFrame& F) {
    return One(MagicCircle(Progress(F), F.PatternX, F.PatternY));
  });
  AddMissile(C, "arrow flight", [](double A) {
    return Shaft(A, 9, 1.5, Rgb(140, 96, 50), Rgb(190, 196, 206), Rgb(236, 236, 236));
  });
  AddMissile(C, "bolt flight", [](double A) {
    return Shaft(A, 7, 2, Rgb(90, 80, 70), Rgb(190, 196, 206), Rgb(60, 60, 60));
  });
  AddMissile(C, "spear flight", [](double A) {
    return Shaft(A, 13, 2, Rgb(130, 90, 50), Rgb(200, 206, 216), Rgb(130, 90, 50));
  });
  AddMissile(C, "stone flight", [](double) {
    TCanvas I(32, 32);
    ShadedEllipse(I, 16, 16, 3.5, 3, Rgb(140, 134, 126));
    FinishThing(I);
    return I;
  });
  AddMissile(C, "fire ball", [](double A) { return Ball(A, Rgb(255, 230, 120), Rgb(240, 100, 20), true); });
  AddMissile(C, "energy ball", [](double A) { return Ball(A, Rgb(220, 240, 255), Rgb(80, 150, 255), true); });
  AddMissile(C, "snowball", [](double) { return Ball(0, Rgb(250, 250, 255), Rgb(200, 214, 236), false); });
}
