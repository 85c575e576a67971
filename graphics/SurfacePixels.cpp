#include "graphics/SurfacePixels.h"

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

TLightColumn LightColumn(const TLightCorners& Corners, double u) {
  const auto& [TL, TR, BL, BR] = Corners;
  const auto Edge = [u](int Left, int Right) { return Left + (Right - Left) * u; };
  return {{Edge(TL.r, TR.r), Edge(TL.g, TR.g), Edge(TL.b, TR.b)},
          {Edge(BL.r, BR.r), Edge(BL.g, BR.g), Edge(BL.b, BR.b)}};
}
