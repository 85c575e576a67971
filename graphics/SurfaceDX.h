#pragma once
// Engine 0: every surface is plain memory, drawn by the processor, and the
// screen surface is shown through the window's own pixels without OpenGL. It
// is the last fallback, so it needs nothing of the display but a window.
// As on the engine it stands in for: no blending, copies keyed by colour, and
// a keyed copy that scales goes in four steps over TEMP_SURFACE and STRETCH_SURFACE.
#include <array>
#include <cstdint>
#include <vector>

#include "graphics/Surface.h"
#include "graphics/SurfacePixels.h"

class CSurfaceDX : public CSurface {
 public:
  const char* Name() const override { return "DirectX5"; }

  void SetRenderTarget(int Surface) override;
  void ClearSurface(int Surface, TRGBColor Color, int Alpha) override;
  void DrawPixel(int ToSurface, int x, int y, TRGBColor Color) override;
  void FillRectClipped(int ToSurface, int x, int y, int Width, int Height, TRGBColor Color, TRect ClipRect,
                       int Alpha) override;
  void FillRect(int ToSurface, int x, int y, int Width, int Height, TRGBColor Color, int Alpha) override;
  void DrawHorizontalLine(int ToSurface, int x, int y, int Length, TRGBColor Color) override;
  void DrawVerticalLine(int ToSurface, int x, int y, int Length, TRGBColor Color) override;
  void WriteImage(int ToSurface, int x, int y, int Width, int Height,
                  std::span<const std::uint8_t> Pixels) override;
  void WriteColoredImage(int ToSurface, int x, int y, int Width, int Height, std::span<const std::uint8_t> Pixels,
                         std::span<const std::uint8_t> Mask, const TOutfitColors& Colors) override;
  void BlitClipped(int ToSurface, int x, int y, int FromSurface, int fx, int fy, int Width, int Height,
                   TRect ClipRect) override;
  void BlitKeyedClipped(int ToSurface, int x, int y, int FromSurface, int fx, int fy, int Width, int Height,
                        TRGBColor KeyColor, TRect ClipRect) override;
  void StretchBlit(int ToSurface, int x, int y, int ToWidth, int ToHeight, int FromSurface, int fx, int fy,
                   int FromWidth, int FromHeight) override;
  void StretchBlitKeyed(int ToSurface, int x, int y, int ToWidth, int ToHeight, int FromSurface, int fx, int fy,
                        int FromWidth, int FromHeight, TRGBColor KeyColor) override;
  void StretchBlitKeyedClipped(int ToSurface, int x, int y, int ToWidth, int ToHeight, int FromSurface, int fx,
                               int fy, int FromWidth, int FromHeight, TRGBColor KeyColor, TRGBColor StageColor,
                               TRect ClipRect) override;
  void DrawLightMap(int ToSurface, std::span<const TRect> Rects, std::span<const TLightCorners> Colors) override;
  void SetSurfaceColorKey(int Surface, int r, int g, int b) override;
  void UpdateWindowRect() override;
  void SetViewMode(int VMode, TGraphicMode* GMode) override;
  void ReleaseSurfaces() override;
  void CreateSurfaces() override;
  void SetSmoothing(bool) override {}
  void AddDirtyRect(int, int, int, int) override {}
  void Present() override;
  bool Validate(platform::CWindow* Window, int ViewMode, TGraphicMode* GMode, bool Force) override;
  bool SupportsLightMap() const override { return true; }
  int GetSurfaceLocation(int Index) const override;
  void Startup() override;
  void Shutdown() override;
  bool Probe() override { return true; }
  TImage ReadSurfaceImage(int Surface) override;

 protected:
  TImage ReadScreen() override;

 private:
  struct TPixels {
    int Width = 0;
    int Height = 0;
    std::vector<std::uint32_t> Data;  // 0x00RRGGBB
    TRGBColor Key{1, 1, 1};

    std::uint32_t& At(int x, int y) { return Data[static_cast<size_t>(y) * Width + x]; }
  };

  TPixels& Target(int Surface);
  TPixels& Source(int Surface);
  void Fill(int ToSurface, TEdges Area, TRGBColor Color);
  // Colors null: a plain copy.
  void WritePixels(int ToSurface, int x, int y, int Width, int Height, std::span<const std::uint8_t> Pixels,
                   std::span<const std::uint8_t> Mask, const TOutfitColors* Colors);
  // Copies after clipping to ClipRect and to both surfaces; Key skips its colour.
  void Copy(int ToSurface, int x, int y, int FromSurface, int fx, int fy, int Width, int Height, TRect ClipRect,
            const TRGBColor* Key);
  void CheckStages(int ToSurface, int FromSurface, int ToWidth, int ToHeight, int FromWidth, int FromHeight) const;
  void ResizeScreen();
  void LightRect(TPixels& To, const TRect& Rect, TEdges Area, const TLightCorners& Corners);

  std::array<TPixels, NUMBER_OF_SURFACES> m_Surfaces;
  bool m_DeviceReady = false;
  // Per-call tables, kept to spare the allocation: source columns of a
  // scaled copy, light columns of a light rectangle.
  std::vector<int> m_SourceColumns;
  std::vector<TLightColumn> m_LightColumns;
};
