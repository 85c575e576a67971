#pragma once
// Pixel arithmetic that the engines share, so that they agree to the bit.
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "graphics/Surface.h"

inline std::uint32_t PackColor(TRGBColor Color) {
  return (static_cast<std::uint32_t>(Color.r) << 16) | (static_cast<std::uint32_t>(Color.g) << 8) |
         static_cast<std::uint32_t>(Color.b);
}

inline TRGBColor UnpackColor(std::uint32_t Value) {
  return {static_cast<int>((Value >> 16) & 0xFF), static_cast<int>((Value >> 8) & 0xFF),
          static_cast<int>(Value & 0xFF)};
}

inline TRGBColor ColorAt(std::span<const std::uint8_t> Pixels, size_t Index) {
  return {Pixels[Index], Pixels[Index + 1], Pixels[Index + 2]};
}

inline TEdges Intersect(TEdges A, TEdges B) {
  return {A.left > B.left ? A.left : B.left, A.top > B.top ? A.top : B.top,
          A.right < B.right ? A.right : B.right, A.bottom < B.bottom ? A.bottom : B.bottom};
}

// "x>=0 && y>=0 && Width>0 && Height>0", the area inside the surface, and
// enough pixels (and mask pixels, if there is a mask).
void CheckImageArea(int x, int y, int Width, int Height, int SurfaceWidth, int SurfaceHeight, size_t PixelBytes,
                    size_t MaskBytes = 0);

// The outfit channel (0 to 3) that recolours a pixel, or -1 if it stays.
// A mask selects by yellow, red, green, blue; without one, every pixel that
// isn't Colors[1] (a font's background) takes channel 0.
int SelectChannel(TRGBColor Source, std::span<const std::uint8_t> Mask, size_t Index, const TOutfitColors& Colors);

// The source's luminance in the channel's colour.
TRGBColor Tint(TRGBColor Source, TRGBColor Channel);

// The source offset whose pixel lies under the centre of target pixel Offset.
inline int SampleOffset(int Offset, int FromSize, int ToSize) {
  return static_cast<int>((2LL * Offset + 1) * FromSize / (2LL * ToSize));
}

// The light across one column of a rectangle: per component, its value at
// the top and at the bottom edge.
struct TLightColumn {
  std::array<double, 3> Top;
  std::array<double, 3> Bottom;
};

// The column at u (0 to 1) of the rectangle with these corner colours.
TLightColumn LightColumn(const TLightCorners& Corners, double u);

// Half away from zero, as lround, for the non-negative values of light; the
// subtraction of the whole part is exact, so no tie is misjudged.
inline int RoundLight(double Value) {
  const int Whole = static_cast<int>(Value);
  return Value - Whole >= 0.5 ? Whole + 1 : Whole;
}

// The column's colour at v (0 to 1).
inline TRGBColor LightAt(const TLightColumn& Column, double v) {
  const auto Mix = [&](int c) { return RoundLight(Column.Top[c] + (Column.Bottom[c] - Column.Top[c]) * v); };
  return {Mix(0), Mix(1), Mix(2)};
}

inline TRGBColor MultiplyLight(TRGBColor Pixel, TRGBColor Light) {
  return {(Pixel.r * Light.r + 127) / 255, (Pixel.g * Light.g + 127) / 255, (Pixel.b * Light.b + 127) / 255};
}
