#pragma once
// The drawing device. Everything that reaches the screen goes through the one
// CSurface of the chosen engine, in terms of numbered surfaces; callers never
// see textures or device objects.
//
// Pixel rules that every engine keeps, so that pictures match across engines:
// - FillRect covers x to x + Width - 1 and y to y + Height - 1.
// - DrawPixel covers (x, y); DrawHorizontalLine x to x + Length - 1 on row y;
//   DrawVerticalLine y to y + Length - 1 in column x.
// - Unscaled copies move pixel for pixel; a keyed copy leaves the target's
//   pixel wherever the source is transparent.
// - Unsmoothed scaling takes, for each target pixel, the source pixel under
//   its centre.
// - The light map multiplies each colour component by the corner colours,
//   interpolated across the rectangle, over 255.
#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "graphics/FrameLimiter.h"

namespace platform {
class CWindow;
}

struct TRGBColor {
  int r = 0;
  int g = 0;
  int b = 0;

  bool operator==(const TRGBColor&) const = default;
};

// A colour number of the 6 x 6 x 6 cube.
TRGBColor ColorOfIndex(int Index);

// x, y, width, height.
struct TRect {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;

  bool operator==(const TRect&) const = default;
};

constexpr TRect NO_CLIP{0, 0, 0x1FFFFFFF, 0x1FFFFFFF};

// Left, top, right, bottom; right and bottom exclusive.
struct TEdges {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;

  bool IsEmpty() const { return right <= left || bottom <= top; }
  bool operator==(const TEdges&) const = default;
};

// Width, height, colour depth in bits, refresh rate (0 if unknown).
struct TGraphicMode {
  int Width = 0;
  int Height = 0;
  int Depth = 0;
  int Refresh = 0;
};

// Corner colours of one light rectangle: top left, top right, bottom left, bottom right.
using TLightCorners = std::array<TRGBColor, 4>;
using TOutfitColors = std::array<TRGBColor, 4>;

enum : int {
  PRIMARY_SURFACE = 0,
  SCREEN_SURFACE = 1,
  TEMP_SURFACE = 2,
  STRETCH_SURFACE = 3,
  CACHE_SURFACE = 4,
  AUTOMAP_SURFACE = 5,
  SPRITE_SURFACE = 6,
  NUMBER_OF_SPRITE_SURFACES = 16,
  NUMBER_OF_SURFACES = SPRITE_SURFACE + NUMBER_OF_SPRITE_SURFACES,
  NUMBER_OF_SURFACES_GL = NUMBER_OF_SURFACES,
};

enum : int {
  ENGINE_DIRECTX5 = 0,
  ENGINE_OPENGL = 1,
  ENGINE_DIRECTX9 = 2,
};

// The fixed sizes of the numbered surfaces; the first two follow the window.
TEdges DefaultSurfaceEdges(int Surface);

// Drawing counters of one frame.
struct TSurfaceCounters {
  long long Operations = 0;
  long long Pixels = 0;
  long long TargetChanges = 0;
};

// 24-bit RGB rows, top row first.
struct TImage {
  int Width = 0;
  int Height = 0;
  std::vector<std::uint8_t> Pixels;
};

class CSurface {
 public:
  CSurface() = default;
  virtual ~CSurface() = default;
  CSurface(const CSurface&) = delete;
  CSurface& operator=(const CSurface&) = delete;

  // The engine's name as the frame-rate display shows it.
  virtual const char* Name() const = 0;
  // What the error report adds to the name: the implementation's version.
  virtual std::string VersionData() const { return {}; }

  virtual void SetRenderTarget(int Surface) = 0;
  virtual void ClearSurface(int Surface, TRGBColor Color, int Alpha) = 0;
  virtual void DrawPixel(int ToSurface, int x, int y, TRGBColor Color) = 0;
  virtual void FillRectClipped(int ToSurface, int x, int y, int Width, int Height, TRGBColor Color,
                               TRect ClipRect, int Alpha) = 0;
  virtual void FillRect(int ToSurface, int x, int y, int Width, int Height, TRGBColor Color, int Alpha) = 0;
  virtual void DrawHorizontalLine(int ToSurface, int x, int y, int Length, TRGBColor Color) = 0;
  virtual void DrawVerticalLine(int ToSurface, int x, int y, int Length, TRGBColor Color) = 0;
  virtual void DrawFrameClipped(int ToSurface, int x, int y, int Width, int Height, int Thickness,
                                TRGBColor Color, TRect ClipRect);
  virtual void DrawFrame(int ToSurface, int x, int y, int Width, int Height, int Thickness, TRGBColor Color);
  // Pixels: Width * Height RGB triples.
  virtual void WriteImage(int ToSurface, int x, int y, int Width, int Height,
                          std::span<const std::uint8_t> Pixels) = 0;
  // Mask: as Pixels, or empty for a font's glyphs.
  virtual void WriteColoredImage(int ToSurface, int x, int y, int Width, int Height,
                                 std::span<const std::uint8_t> Pixels, std::span<const std::uint8_t> Mask,
                                 const TOutfitColors& Colors) = 0;
  virtual void Blit(int ToSurface, int x, int y, int FromSurface, int fx, int fy, int Width, int Height);
  virtual void BlitKeyed(int ToSurface, int x, int y, int FromSurface, int fx, int fy, int Width, int Height,
                         TRGBColor KeyColor);
  virtual void BlitClipped(int ToSurface, int x, int y, int FromSurface, int fx, int fy, int Width, int Height,
                           TRect ClipRect) = 0;
  virtual void BlitKeyedClipped(int ToSurface, int x, int y, int FromSurface, int fx, int fy, int Width,
                                int Height, TRGBColor KeyColor, TRect ClipRect) = 0;
  virtual void StretchBlit(int ToSurface, int x, int y, int ToWidth, int ToHeight, int FromSurface, int fx,
                           int fy, int FromWidth, int FromHeight) = 0;
  virtual void StretchBlitKeyed(int ToSurface, int x, int y, int ToWidth, int ToHeight, int FromSurface, int fx,
                                int fy, int FromWidth, int FromHeight, TRGBColor KeyColor) = 0;
  virtual void StretchBlitKeyedClipped(int ToSurface, int x, int y, int ToWidth, int ToHeight, int FromSurface,
                                       int fx, int fy, int FromWidth, int FromHeight, TRGBColor KeyColor,
                                       TRGBColor StageColor, TRect ClipRect) = 0;
  virtual void DrawLightMap(int ToSurface, std::span<const TRect> Rects,
                            std::span<const TLightCorners> Colors) = 0;
  virtual void SetTransparentColor(int Surface, int r, int g, int b);
  virtual void SetSurfaceColorKey(int Surface, int r, int g, int b) = 0;
  // Shrinks To to Clip and moves the same edges of From by as much; false
  // if nothing is left.
  virtual bool ClipRects(TRect Clip, TEdges& To, TEdges& From) const;
  virtual void AttachClipper() {}
  virtual void UpdateWindowRect() = 0;
  virtual void SetViewMode(int VMode, TGraphicMode* GMode) = 0;
  virtual void ReleaseSurfaces() = 0;
  virtual void CreateSurfaces() = 0;
  virtual void RestoreViewMode(int VMode, TGraphicMode* GMode);
  virtual void ResumeSurfaces();
  virtual void SetSmoothing(bool Smooth) = 0;
  virtual void AddDirtyRect(int x, int y, int Width, int Height) = 0;
  virtual void Present() = 0;
  // Once per frame; false when the engine cannot go on.
  virtual bool Validate(platform::CWindow* Window, int ViewMode, TGraphicMode* GMode, bool Force) = 0;
  virtual std::vector<TGraphicMode> EnumerateGraphicModes();
  virtual int GetNumberOfSpriteSurfaces() const { return m_NumberOfSpriteSurfaces; }
  virtual TRect GetSurfaceRect(int Surface) const;
  virtual bool TestLost(int Type);
  virtual bool IsSuspended() const { return m_Suspended; }
  virtual bool SupportsLightMap() const = 0;
  virtual int GetSurfaceLocation(int Index) const = 0;
  virtual void Startup() = 0;
  virtual void Shutdown() = 0;
  virtual bool Probe() = 0;

  void SetWindow(platform::CWindow* Window) { m_Window = Window; }
  platform::CWindow* Window() const { return m_Window; }
  int GetViewMode() const { return m_ViewMode; }

  void ResetFrameTimer() { m_Limiter.ResetFrameTimer(); }
  void SetFramerateLimit(int Limit) { m_Limiter.SetFramerateLimit(Limit); }
  TFrameLimiter& Limiter() { return m_Limiter; }
  const TFrameLimiter& Limiter() const { return m_Limiter; }

  // The next Present keeps a copy of the frame it shows.
  void RequestCapture() { m_CaptureRequested = true; }
  std::optional<TImage> TakeCapture();

  // A copy of a numbered surface other than the screen, for diagnostics.
  virtual TImage ReadSurfaceImage(int Surface) = 0;

  // The counters of the last presented frame.
  const TSurfaceCounters& LastFrameCounters() const { return m_LastCounters; }

 protected:
  // Fails unless Surface names one of the numbered surfaces.
  static void CheckSurface(int Surface);
  // The steps of Validate shared by the engines; true if the device must be
  // made anew.
  bool ValidateCommon(platform::CWindow* Window, int ViewMode, bool Force, bool DeviceExists);
  void SetAllLost();
  // Window, view mode and handles cleared, sizes set, the limiter started
  // with the configured limit.
  void StartupCommon();
  // Windowed, or full screen in a mode of the list (its first mode if GMode's
  // size isn't there, written back into GMode); an empty list stays windowed.
  void ChooseViewMode(int VMode, TGraphicMode* GMode);
  void SetDefaultEdges();
  // Counters are stored for diagnostics and cleared; a requested capture is taken.
  void EndFrame();
  virtual TImage ReadScreen() = 0;
  void CountOperation(long long Pixels) {
    ++m_Counters.Operations;
    m_Counters.Pixels += Pixels;
  }
  void CountTargetChange() { ++m_Counters.TargetChanges; }

  platform::CWindow* m_Window = nullptr;
  int m_ViewMode = 0;
  TGraphicMode m_GMode;
  bool m_Suspended = false;
  int m_NumberOfSpriteSurfaces = 0;
  std::array<TEdges, NUMBER_OF_SURFACES> m_Rect{};
  std::array<bool, 3> m_Lost{};

 private:
  TFrameLimiter m_Limiter;
  TSurfaceCounters m_Counters;
  TSurfaceCounters m_LastCounters;
  std::array<int, 2> m_LastClientSize{0, 0};
  bool m_CaptureRequested = false;
  std::optional<TImage> m_Capture;
};

// The engine now in use and its one surface.
int GetCurrentEngine();
// Made on first use by the current engine; "curSurface != NULL" if none can be made.
CSurface* GetSurface();
// The surface if one exists; none is made.
CSurface* CurrentSurfaceOrNull();
void ReleaseSurface();
// A surface of the engine, not yet started; the current one is not touched.
std::unique_ptr<CSurface> MakeSurface(int Engine);

// The engines that the start-up decision found usable, as bits 1 << engine.
int GetUsableEngines();
