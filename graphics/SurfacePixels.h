#pragma once
// Pixel arithmetic that the engines share, so that they agree to the bit.
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

// The corners' colours at (u, v) of the rectangle, each 0 to 1.
TRGBColor InterpolateCorners(const TLightCorners& Corners, double u, double v);
TRGBColor MultiplyLight(TRGBColor Pixel, TRGBColor Light);
