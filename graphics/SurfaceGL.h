#pragma once
// Engine 1: OpenGL 1.x fixed function. Every numbered surface but the screen
// is a texture; drawing into one goes through a single shared off-screen
// buffer (a framebuffer object of 800 x 600), whose content is copied back
// into the texture when the target changes.
#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "graphics/Surface.h"

namespace platform {
class CGLContext;
}

class CSurfaceGL : public CSurface {
 public:
  CSurfaceGL();
  ~CSurfaceGL() override;

  const char* Name() const override { return "OpenGL"; }
  std::string VersionData() const override { return m_VersionData; }

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
  void SetSmoothing(bool Smooth) override;
  void AddDirtyRect(int x, int y, int Width, int Height) override;
  void Present() override;
  bool Validate(platform::CWindow* Window, int ViewMode, TGraphicMode* GMode, bool Force) override;
  bool SupportsLightMap() const override { return true; }
  int GetSurfaceLocation(int Index) const override;
  void Startup() override;
  void Shutdown() override;
  bool Probe() override;
  TImage ReadSurfaceImage(int Surface) override;

 protected:
  TImage ReadScreen() override;

 private:
  struct TTexture {
    unsigned Texture = 0;
    int Width = 0;
    int Height = 0;
    int TextureWidth = 0;
    int TextureHeight = 0;
    TRGBColor Transparent{1, 1, 1};
  };
  struct TFramebufferCalls;

  TTexture& TextureOf(int Surface);
  void WriteRGBA(int ToSurface, int x, int y, int Width, int Height, const std::uint8_t* RGBA);
  void UseScreen();
  void UseOffscreen(int Surface, int OldSurface);
  bool LoadExtensions();
  bool MakeOffscreenBuffer();
  void ReleaseOffscreenBuffer();
  void MakeTexture(int Surface);
  void TexturedQuad(int ToSurface, TEdges To, int FromSurface, TEdges From, bool Smooth);

  std::unique_ptr<platform::CGLContext> m_Context;
  std::unique_ptr<TFramebufferCalls> m_Calls;
  std::array<TTexture, NUMBER_OF_SURFACES_GL> m_Surfaces{};
  unsigned m_Framebuffer = 0;
  unsigned m_Renderbuffer = 0;
  int m_CurrentTarget = PRIMARY_SURFACE;
  TEdges m_Dirty{};
  int m_TexturesMade = 0;
  std::string m_VersionData;  // read when the context is made, not while reporting a failure
};
