#include "tools/databuild/Image.h"

#include <algorithm>
#include <cmath>

namespace {

std::uint8_t Clamp(double V) { return static_cast<std::uint8_t>(std::clamp(V, 0.0, 255.0) + 0.5); }

}  // namespace

TRGBA Shade(TRGBA C, double Factor) {
  return {Clamp(C.r * Factor), Clamp(C.g * Factor), Clamp(C.b * Factor), C.a};
}

TRGBA Mix(TRGBA A, TRGBA B, double Amount) {
  const auto M = [Amount](int X, int Y) { return Clamp(X + (Y - X) * Amount); };
  return {M(A.r, B.r), M(A.g, B.g), M(A.b, B.b), M(A.a, B.a)};
}

TCanvas::TCanvas(int Width, int Height, TRGBA Fill)
    : m_Width(Width), m_Height(Height), m_Pixels(static_cast<size_t>(Width) * Height, Fill) {}

void TCanvas::set(int X, int Y, TRGBA C) {
  if (contains(X, Y)) m_Pixels[index(X, Y)] = C;
}

void TCanvas::blend(int X, int Y, TRGBA C) {
  if (!contains(X, Y) || C.a == 0) return;
  TRGBA& P = m_Pixels[index(X, Y)];
  if (C.a == 255 || P.a == 0) {
    P = C;
    return;
  }
  const double A = C.a / 255.0;
  const std::uint8_t Alpha = std::max(P.a, C.a);
  P = Mix(P, C, A);
  P.a = Alpha;
}

void TCanvas::fill(TRGBA C) { std::fill(m_Pixels.begin(), m_Pixels.end(), C); }

void TCanvas::fillRect(int X, int Y, int Width, int Height, TRGBA C) {
  for (int J = Y; J < Y + Height; ++J) {
    for (int I = X; I < X + Width; ++I) set(I, J, C);
  }
}

void TCanvas::blendRect(int X, int Y, int Width, int Height, TRGBA C) {
  for (int J = Y; J < Y + Height; ++J) {
    for (int I = X; I < X + Width; ++I) blend(I, J, C);
  }
}

void TCanvas::frame(int X, int Y, int Width, int Height, TRGBA C) {
  fillRect(X, Y, Width, 1, C);
  fillRect(X, Y + Height - 1, Width, 1, C);
  fillRect(X, Y, 1, Height, C);
  fillRect(X + Width - 1, Y, 1, Height, C);
}

void TCanvas::bevel(int X, int Y, int Width, int Height, TRGBA Light, TRGBA Dark, bool Sunken) {
  if (Sunken) std::swap(Light, Dark);
  fillRect(X, Y, Width, 1, Light);
  fillRect(X, Y, 1, Height, Light);
  fillRect(X + 1, Y + Height - 1, Width - 1, 1, Dark);
  fillRect(X + Width - 1, Y + 1, 1, Height - 1, Dark);
}

void TCanvas::line(int X0, int Y0, int X1, int Y1, TRGBA C) {
  const int DX = std::abs(X1 - X0), DY = -std::abs(Y1 - Y0);
  const int SX = X0 < X1 ? 1 : -1, SY = Y0 < Y1 ? 1 : -1;
  for (int Error = DX + DY;;) {
    blend(X0, Y0, C);
    if (X0 == X1 && Y0 == Y1) return;
    const int E2 = 2 * Error;
    if (E2 >= DY) Error += DY, X0 += SX;
    if (E2 <= DX) Error += DX, Y0 += SY;
  }
}

void TCanvas::thickLine(double X0, double Y0, double X1, double Y1, double Width, TRGBA C) {
  const double LX = X1 - X0, LY = Y1 - Y0, Length2 = std::max(LX * LX + LY * LY, 1e-9);
  const int Left = static_cast<int>(std::floor(std::min(X0, X1) - Width));
  const int Right = static_cast<int>(std::ceil(std::max(X0, X1) + Width));
  const int Top = static_cast<int>(std::floor(std::min(Y0, Y1) - Width));
  const int Bottom = static_cast<int>(std::ceil(std::max(Y0, Y1) + Width));
  for (int Y = Top; Y <= Bottom; ++Y) {
    for (int X = Left; X <= Right; ++X) {
      const double PX = X + 0.5, PY = Y + 0.5;
      const double T = std::clamp(((PX - X0) * LX + (PY - Y0) * LY) / Length2, 0.0, 1.0);
      const double DX = PX - (X0 + T * LX), DY = PY - (Y0 + T * LY);
      if (DX * DX + DY * DY <= Width * Width / 4) blend(X, Y, C);
    }
  }
}

void TCanvas::ellipse(double CX, double CY, double RX, double RY, TRGBA C) {
  for (int Y = static_cast<int>(std::floor(CY - RY)); Y <= static_cast<int>(CY + RY); ++Y) {
    for (int X = static_cast<int>(std::floor(CX - RX)); X <= static_cast<int>(CX + RX); ++X) {
      const double DX = (X + 0.5 - CX) / RX, DY = (Y + 0.5 - CY) / RY;
      if (DX * DX + DY * DY <= 1.0) blend(X, Y, C);
    }
  }
}

void TCanvas::ring(double CX, double CY, double R, double Thickness, TRGBA C) {
  for (int Y = static_cast<int>(std::floor(CY - R)); Y <= static_cast<int>(CY + R); ++Y) {
    for (int X = static_cast<int>(std::floor(CX - R)); X <= static_cast<int>(CX + R); ++X) {
      const double D = std::hypot(X + 0.5 - CX, Y + 0.5 - CY);
      if (D <= R && D >= R - Thickness) blend(X, Y, C);
    }
  }
}

// Even-odd fill by pixel centres.
void TCanvas::polygon(const std::vector<std::pair<double, double>>& Points, TRGBA C) {
  double Top = 1e9, Bottom = -1e9;
  for (const auto& [X, Y] : Points) Top = std::min(Top, Y), Bottom = std::max(Bottom, Y);
  for (int Y = static_cast<int>(std::floor(Top)); Y <= static_cast<int>(std::ceil(Bottom)); ++Y) {
    const double PY = Y + 0.5;
    std::vector<double> Crossings;
    for (size_t I = 0; I < Points.size(); ++I) {
      const auto& [AX, AY] = Points[I];
      const auto& [BX, BY] = Points[(I + 1) % Points.size()];
      if ((AY <= PY) != (BY <= PY)) Crossings.push_back(AX + (PY - AY) / (BY - AY) * (BX - AX));
    }
    std::sort(Crossings.begin(), Crossings.end());
    for (size_t I = 0; I + 1 < Crossings.size(); I += 2) {
      for (int X = static_cast<int>(std::ceil(Crossings[I] - 0.5));
           X + 0.5 <= Crossings[I + 1]; ++X) {
        blend(X, Y, C);
      }
    }
  }
}

void TCanvas::paste(const TCanvas& Source, int X, int Y) {
  for (int J = 0; J < Source.height(); ++J) {
    for (int I = 0; I < Source.width(); ++I) {
      const TRGBA P = Source.at(I, J);
      if (P.a > 127) set(X + I, Y + J, {P.r, P.g, P.b, 255});
    }
  }
}

void TCanvas::blendImage(const TCanvas& Source, int X, int Y) {
  for (int J = 0; J < Source.height(); ++J) {
    for (int I = 0; I < Source.width(); ++I) blend(X + I, Y + J, Source.at(I, J));
  }
}

TCanvas TCanvas::crop(int X, int Y, int Width, int Height) const {
  TCanvas Result(Width, Height);
  for (int J = 0; J < Height; ++J) {
    for (int I = 0; I < Width; ++I) {
      if (contains(X + I, Y + J)) Result.set(I, J, at(X + I, Y + J));
    }
  }
  return Result;
}

void TCanvas::outline(TRGBA Colour) {
  const TCanvas Before = *this;
  const auto Solid = [&Before](int X, int Y) {
    return Before.contains(X, Y) && Before.at(X, Y).a > 127;
  };
  for (int Y = 0; Y < m_Height; ++Y) {
    for (int X = 0; X < m_Width; ++X) {
      if (Solid(X, Y)) continue;
      if (Solid(X - 1, Y) || Solid(X + 1, Y) || Solid(X, Y - 1) || Solid(X, Y + 1)) {
        set(X, Y, Colour);
      }
    }
  }
}

void TCanvas::harden() {
  for (TRGBA& P : m_Pixels) P.a = P.a > 127 ? 255 : 0;
}

std::uint32_t Hash(std::uint32_t A, std::uint32_t B, std::uint32_t C) {
  std::uint32_t H = A * 0x9E3779B1u ^ (B + 0x7F4A7C15u) * 0x85EBCA77u ^ (C + 0x165667B1u) * 0xC2B2AE3Du;
  H ^= H >> 15;
  H *= 0x2C1B3C6Du;
  H ^= H >> 12;
  H *= 0x297A2D39u;
  H ^= H >> 15;
  return H;
}

double TNoise::value(int X, int Y) const {
  return (Hash(static_cast<std::uint32_t>(X), static_cast<std::uint32_t>(Y), m_Seed) & 0xFFFF) /
         65535.0;
}

double TNoise::lattice(int X, int Y, int CellsX, int CellsY) const {
  return value(((X % CellsX) + CellsX) % CellsX, ((Y % CellsY) + CellsY) % CellsY);
}

double TNoise::smooth(double X, double Y, int Scale, int PeriodX, int PeriodY) const {
  const int CellsX = std::max(1, PeriodX / Scale);
  const int CellsY = std::max(1, (PeriodY > 0 ? PeriodY : PeriodX) / Scale);
  const double FX = X / Scale, FY = Y / Scale;
  const int IX = static_cast<int>(std::floor(FX)), IY = static_cast<int>(std::floor(FY));
  const auto Fade = [](double T) { return T * T * (3 - 2 * T); };
  const double TX = Fade(FX - IX), TY = Fade(FY - IY);
  const double A = lattice(IX, IY, CellsX, CellsY), B = lattice(IX + 1, IY, CellsX, CellsY);
  const double C = lattice(IX, IY + 1, CellsX, CellsY);
  const double D = lattice(IX + 1, IY + 1, CellsX, CellsY);
  return (A + (B - A) * TX) + ((C + (D - C) * TX) - (A + (B - A) * TX)) * TY;
}

double TNoise::fractal(double X, double Y, int Scale, int Octaves, int PeriodX,
                      int PeriodY) const {
  double Sum = 0, Weight = 1, Total = 0;
  for (int O = 0; O < Octaves && Scale >= 1; ++O, Scale /= 2, Weight /= 2) {
    // Each octave is moved by a whole period, so it looks unlike the others.
    Sum += smooth(X + O * PeriodX, Y, Scale, PeriodX, PeriodY) * Weight;
    Total += Weight;
  }
  return Sum / Total;
}
