#include "tools/databuild/ArtKit.h"

#include <algorithm>
#include <cmath>

TCanvas Texture(int Width, int Height, const std::function<TRGBA(int, int)>& Paint) {
  TCanvas Image(Width, Height);
  for (int Y = 0; Y < Height; ++Y) {
    for (int X = 0; X < Width; ++X) Image.set(X, Y, Paint(X, Y));
  }
  return Image;
}

TCanvas PatternCell(const TCanvas& Texture, int PX, int PY) {
  return Texture.crop(PX * 32 % Texture.width(), PY * 32 % Texture.height(), 32, 32);
}

void WrapSet(TCanvas& Texture, int X, int Y, TRGBA C) {
  const int W = Texture.width(), H = Texture.height();
  Texture.blend(((X % W) + W) % W, ((Y % H) + H) % H, C);
}

double Light(double X, double Y, double CX, double CY, double RX, double RY) {
  const double DX = (X - CX) / std::max(RX, 1.0), DY = (Y - CY) / std::max(RY, 1.0);
  return std::clamp(1.0 - 0.28 * (DX + DY) - 0.12 * (DX * DX + DY * DY), 0.6, 1.3);
}

void ShadedEllipse(TCanvas& Image, double CX, double CY, double RX, double RY, TRGBA C) {
  for (int Y = static_cast<int>(std::floor(CY - RY)); Y <= static_cast<int>(CY + RY); ++Y) {
    for (int X = static_cast<int>(std::floor(CX - RX)); X <= static_cast<int>(CX + RX); ++X) {
      const double DX = (X + 0.5 - CX) / RX, DY = (Y + 0.5 - CY) / RY;
      if (DX * DX + DY * DY <= 1.0) {
        Image.blend(X, Y, Shade(C, Light(X + 0.5, Y + 0.5, CX, CY, RX, RY)));
      }
    }
  }
}

void ShadedRect(TCanvas& Image, int X, int Y, int Width, int Height, TRGBA C) {
  const double CX = X + Width / 2.0, CY = Y + Height / 2.0;
  for (int J = Y; J < Y + Height; ++J) {
    for (int I = X; I < X + Width; ++I) {
      Image.blend(I, J, Shade(C, Light(I + 0.5, J + 0.5, CX, CY, Width / 2.0, Height / 2.0)));
    }
  }
}

void ShadedPolygon(TCanvas& Image, const std::vector<std::pair<double, double>>& Points, TRGBA C) {
  TCanvas Mask(Image.width(), Image.height());
  Mask.polygon(Points, C);
  double Left = 1e9, Right = -1e9, Top = 1e9, Bottom = -1e9;
  for (const auto& [X, Y] : Points) {
    Left = std::min(Left, X), Right = std::max(Right, X);
    Top = std::min(Top, Y), Bottom = std::max(Bottom, Y);
  }
  const double CX = (Left + Right) / 2, CY = (Top + Bottom) / 2;
  for (int Y = 0; Y < Mask.height(); ++Y) {
    for (int X = 0; X < Mask.width(); ++X) {
      if (Mask.at(X, Y).a == 0) continue;
      Image.blend(X, Y, Shade(C, Light(X + 0.5, Y + 0.5, CX, CY, (Right - Left) / 2,
                                       (Bottom - Top) / 2)));
    }
  }
}

void FinishThing(TCanvas& Image) {
  Image.harden();
  Image.outline(RIM);
}
