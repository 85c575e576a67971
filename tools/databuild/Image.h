#pragma once
// The builder's canvas: an RGBA image with the few drawing operations that the
// procedural art needs. Alpha is used while drawing; the files know only a key
// colour, so a cell or picture keeps a pixel exactly when its alpha is above half.
#include <cstddef>
#include <cstdint>
#include <vector>

struct TColour {
  std::uint8_t r = 0, g = 0, b = 0;
  bool operator==(const TColour&) const = default;
};

struct TRGBA {
  std::uint8_t r = 0, g = 0, b = 0, a = 0;
  bool operator==(const TRGBA&) const = default;
};

constexpr TRGBA Opaque(TColour C) { return {C.r, C.g, C.b, 255}; }
constexpr TRGBA Rgb(int R, int G, int B) {
  return {static_cast<std::uint8_t>(R), static_cast<std::uint8_t>(G), static_cast<std::uint8_t>(B),
          255};
}
// C with every channel multiplied by Factor and clamped.
TRGBA Shade(TRGBA C, double Factor);
// The straight mix of two colours; Amount 0 gives A, 1 gives B.
TRGBA Mix(TRGBA A, TRGBA B, double Amount);

class TCanvas {
 public:
  TCanvas() = default;
  TCanvas(int Width, int Height, TRGBA Fill = {});

  int width() const { return m_Width; }
  int height() const { return m_Height; }
  bool contains(int X, int Y) const { return X >= 0 && Y >= 0 && X < m_Width && Y < m_Height; }

  TRGBA at(int X, int Y) const { return m_Pixels[index(X, Y)]; }
  // Writes outside the image are dropped, so shapes may cross its edges.
  void set(int X, int Y, TRGBA C);
  // Lays C over the pixel by C's alpha.
  void blend(int X, int Y, TRGBA C);

  void fill(TRGBA C);
  void fillRect(int X, int Y, int Width, int Height, TRGBA C);
  void blendRect(int X, int Y, int Width, int Height, TRGBA C);
  void frame(int X, int Y, int Width, int Height, TRGBA C);
  // A raised (or, with Sunken, a lowered) edge of one pixel.
  void bevel(int X, int Y, int Width, int Height, TRGBA Light, TRGBA Dark, bool Sunken = false);
  void line(int X0, int Y0, int X1, int Y1, TRGBA C);
  void thickLine(double X0, double Y0, double X1, double Y1, double Width, TRGBA C);
  void ellipse(double CX, double CY, double RX, double RY, TRGBA C);
  void ring(double CX, double CY, double R, double Thickness, TRGBA C);
  void polygon(const std::vector<std::pair<double, double>>& Points, TRGBA C);

  // Copies Source's opaque pixels (alpha above half) to (X, Y).
  void paste(const TCanvas& Source, int X, int Y);
  // Lays Source over this image by its alpha.
  void blendImage(const TCanvas& Source, int X, int Y);
  TCanvas crop(int X, int Y, int Width, int Height) const;
  // Draws Colour round every opaque pixel where a transparent one lies.
  void outline(TRGBA Colour);
  // Makes alpha binary, as the files keep it.
  void harden();

  const std::vector<TRGBA>& pixels() const { return m_Pixels; }

 private:
  size_t index(int X, int Y) const { return static_cast<size_t>(Y) * m_Width + X; }

  int m_Width = 0;
  int m_Height = 0;
  std::vector<TRGBA> m_Pixels;
};

// Deterministic value noise in 0 .. 1. The periods make it wrap, so that a
// texture of that size tiles without seams.
class TNoise {
 public:
  explicit TNoise(std::uint32_t Seed) : m_Seed(Seed) {}
  double value(int X, int Y) const;
  // Smooth noise of one octave with cells of Scale pixels, wrapping at the
  // periods (PeriodY 0: as PeriodX), which should be multiples of Scale.
  double smooth(double X, double Y, int Scale, int PeriodX, int PeriodY = 0) const;
  // Octaves from Scale down, halving each time, normalised to 0 .. 1.
  double fractal(double X, double Y, int Scale, int Octaves, int PeriodX, int PeriodY = 0) const;

 private:
  double lattice(int X, int Y, int CellsX, int CellsY) const;
  std::uint32_t m_Seed;
};

// A well-mixed hash for choosing details deterministically.
std::uint32_t Hash(std::uint32_t A, std::uint32_t B = 0, std::uint32_t C = 0);
