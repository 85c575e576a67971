#include "graphics/SurfacePixels.h"

#include <cmath>

#include "core/Exception.h"

void CheckImageArea(int x, int y, int Width, int Height, int SurfaceWidth, int SurfaceHeight, size_t PixelBytes,
                    size_t MaskBytes) {
  Check(x >= 0 && y >= 0 && Width > 0 && Height > 0, "x>=0 && y>=0 && Width>0 && Height>0", {"x", x}, {"y", y});
  Check(x + Width <= SurfaceWidth && y + Height <= SurfaceHeight,
        "x+Width<=SurfaceWidth && y+Height<=SurfaceHeight", {"Width", Width}, {"Height", Height});
  const size_t Needed = static_cast<size_t>(Width) * Height * 3;
  Check(PixelBytes >= Needed, "Pixels!=NULL");
  Check(MaskBytes == 0 || MaskBytes >= Needed, "Mask!=NULL");
}

int SelectChannel(TRGBColor Source, std::span<const std::uint8_t> Mask, size_t Index, const TOutfitColors& Colors) {
  if (Mask.empty()) return Source != Colors[1] ? 0 : -1;
  static constexpr TRGBColor Keys[4] = {{255, 255, 0}, {255, 0, 0}, {0, 255, 0}, {0, 0, 255}};
  const TRGBColor Marker = ColorAt(Mask, Index);
  for (int Channel = 0; Channel < 4; ++Channel) {
    if (Marker == Keys[Channel]) return Channel;
  }
  return -1;
}

TRGBColor Tint(TRGBColor Source, TRGBColor Channel) {
  const int Luminance = (30 * Source.r + 59 * Source.g + 11 * Source.b) / 100;
  return {Channel.r * Luminance / 256, Channel.g * Luminance / 256, Channel.b * Luminance / 256};
}

TRGBColor InterpolateCorners(const TLightCorners& Corners, double u, double v) {
  const auto Mix = [&](int TopLeft, int TopRight, int BottomLeft, int BottomRight) {
    const double Top = TopLeft + (TopRight - TopLeft) * u;
    const double Bottom = BottomLeft + (BottomRight - BottomLeft) * u;
    return static_cast<int>(std::lround(Top + (Bottom - Top) * v));
  };
  const auto& [TL, TR, BL, BR] = Corners;
  return {Mix(TL.r, TR.r, BL.r, BR.r), Mix(TL.g, TR.g, BL.g, BR.g), Mix(TL.b, TR.b, BL.b, BR.b)};
}

TRGBColor MultiplyLight(TRGBColor Pixel, TRGBColor Light) {
  return {(Pixel.r * Light.r + 127) / 255, (Pixel.g * Light.g + 127) / 255, (Pixel.b * Light.b + 127) / 255};
}
