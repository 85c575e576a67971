#include "graphics/Surface.h"

#include <algorithm>

#include "core/Exception.h"
#include "core/Preferences.h"
#include "core/ProgramState.h"
#include "graphics/Engines.h"
#include "graphics/SurfaceDX.h"
#include "graphics/SurfaceGL.h"
#include "platform/Window.h"

namespace {

int CurrentEngine = ENGINE_DIRECTX5;
std::unique_ptr<CSurface> CurrentSurface;

}  // namespace

TRGBColor ColorOfIndex(int Index) {
  return {(Index / 36) * 51, ((Index / 6) % 6) * 51, (Index % 6) * 51};
}

TEdges DefaultSurfaceEdges(int Surface) {
  switch (Surface) {
    case TEMP_SURFACE:
      return {0, 0, 480, 352};
    case STRETCH_SURFACE:
      return {0, 0, 550, 440};
    case CACHE_SURFACE:
      return {0, 0, 512, 384};
    case AUTOMAP_SURFACE:
      return {0, 0, 106, 106};
    default:
      return Surface >= SPRITE_SURFACE ? TEdges{0, 0, 512, 512} : TEdges{};
  }
}

void CSurface::CheckSurface(int Surface) {
  Check(Surface >= 0 && Surface <= NUMBER_OF_SURFACES - 1, "In(Surface,0,NUMBER_OF_SURFACES-1)",
        {"Surface", Surface});
}

// Narrower than twice the thickness, a frame is all border.
void CSurface::DrawFrame(int ToSurface, int x, int y, int Width, int Height, int Thickness, TRGBColor Color) {
  if (Width < 2 * Thickness || Height < 2 * Thickness) {
    FillRect(ToSurface, x, y, Width, Height, Color, 255);
    return;
  }
  FillRect(ToSurface, x, y, Width - Thickness, Thickness, Color, 255);
  FillRect(ToSurface, x + Thickness, y + Height - Thickness, Width - Thickness, Thickness, Color, 255);
  FillRect(ToSurface, x, y + Thickness, Thickness, Height - Thickness, Color, 255);
  FillRect(ToSurface, x + Width - Thickness, y, Thickness, Height - Thickness, Color, 255);
}

void CSurface::DrawFrameClipped(int ToSurface, int x, int y, int Width, int Height, int Thickness,
                                TRGBColor Color, TRect ClipRect) {
  if (Width < 2 * Thickness || Height < 2 * Thickness) {
    FillRectClipped(ToSurface, x, y, Width, Height, Color, ClipRect, 255);
    return;
  }
  FillRectClipped(ToSurface, x, y, Width - Thickness, Thickness, Color, ClipRect, 255);
  FillRectClipped(ToSurface, x + Thickness, y + Height - Thickness, Width - Thickness, Thickness, Color,
                  ClipRect, 255);
  FillRectClipped(ToSurface, x, y + Thickness, Thickness, Height - Thickness, Color, ClipRect, 255);
  FillRectClipped(ToSurface, x + Width - Thickness, y, Thickness, Height - Thickness, Color, ClipRect, 255);
}

void CSurface::Blit(int ToSurface, int x, int y, int FromSurface, int fx, int fy, int Width, int Height) {
  BlitClipped(ToSurface, x, y, FromSurface, fx, fy, Width, Height, GetSurfaceRect(ToSurface));
}

void CSurface::BlitKeyed(int ToSurface, int x, int y, int FromSurface, int fx, int fy, int Width, int Height,
                         TRGBColor KeyColor) {
  BlitKeyedClipped(ToSurface, x, y, FromSurface, fx, fy, Width, Height, KeyColor, GetSurfaceRect(ToSurface));
}

void CSurface::SetTransparentColor(int Surface, int r, int g, int b) { SetSurfaceColorKey(Surface, r, g, b); }

bool CSurface::ClipRects(TRect Clip, TEdges& To, TEdges& From) const {
  const TEdges C{Clip.x, Clip.y, Clip.x + Clip.width, Clip.y + Clip.height};
  if (To.left >= C.right || To.right <= C.left || To.top >= C.bottom || To.bottom <= C.top) return false;
  if (To.left < C.left) {
    From.left += C.left - To.left;
    To.left = C.left;
  }
  if (To.top < C.top) {
    From.top += C.top - To.top;
    To.top = C.top;
  }
  if (To.right > C.right) {
    From.right -= To.right - C.right;
    To.right = C.right;
  }
  if (To.bottom > C.bottom) {
    From.bottom -= To.bottom - C.bottom;
    To.bottom = C.bottom;
  }
  return To.left < To.right && To.top < To.bottom;
}

void CSurface::RestoreViewMode(int VMode, TGraphicMode* GMode) { SetViewMode(VMode, GMode); }

void CSurface::ResumeSurfaces() {
  m_Suspended = false;
  CreateSurfaces();
}

std::vector<TGraphicMode> CSurface::EnumerateGraphicModes() {
  std::vector<TGraphicMode> Modes;
  for (const auto& Mode : platform::CWindow::DisplayModes()) {
    if (Mode[0] >= 800 && Mode[1] >= 600) Modes.push_back({Mode[0], Mode[1], Mode[2], Mode[3]});
  }
  return Modes;
}

TRect CSurface::GetSurfaceRect(int Surface) const {
  Check(Surface >= 0 && Surface <= NUMBER_OF_SURFACES_GL - 1, "In(Surface,0,NUMBER_OF_SURFACES_GL-1)",
        {"Surface", Surface});
  const TEdges& E = m_Rect[Surface];
  return {E.left, E.top, E.right - E.left, E.bottom - E.top};
}

bool CSurface::TestLost(int Type) {
  Check(Type >= 0 && Type < 3, "Type>=0 && Type<3", {"Type", Type});
  const bool Lost = m_Lost[Type];
  m_Lost[Type] = false;
  return Lost;
}

std::optional<TImage> CSurface::TakeCapture() {
  std::optional<TImage> Capture = std::move(m_Capture);
  m_Capture.reset();
  return Capture;
}

bool CSurface::ValidateCommon(platform::CWindow* Window, int ViewMode, bool Force, bool DeviceExists) {
  m_Lost = {};
  m_Window = Window;
  UpdateWindowRect();
  const std::array<int, 2> Size{m_Rect[SCREEN_SURFACE].right, m_Rect[SCREEN_SURFACE].bottom};
  if (m_ViewMode == WINDOWED_MODE && Size != m_LastClientSize && m_LastClientSize != std::array<int, 2>{0, 0}) {
    m_Lost[2] = true;
  }
  m_LastClientSize = Size;
  return !DeviceExists || Force || ViewMode != m_ViewMode;
}

void CSurface::StartupCommon() {
  m_Window = nullptr;
  m_ViewMode = 0;
  m_NumberOfSpriteSurfaces = 0;
  m_Lost = {};
  SetDefaultEdges();
  ResetFrameTimer();
  SetFramerateLimit(Preferences().ConfineFramerate);
}

void CSurface::ChooseViewMode(int VMode, TGraphicMode* GMode) {
  Check(VMode == WINDOWED_MODE || VMode == FULLSCREEN_MODE, "VMode==WINDOWED_MODE || VMode==FULLSCREEN_MODE");
  Check(VMode == WINDOWED_MODE || GMode != nullptr, "VMode==WINDOWED_MODE || GMode!=NULL");
  if (VMode == FULLSCREEN_MODE) {
    const std::vector<TGraphicMode> Modes = EnumerateGraphicModes();
    const auto Found = std::find_if(Modes.begin(), Modes.end(), [&](const TGraphicMode& Mode) {
      return Mode.Width == GMode->Width && Mode.Height == GMode->Height;
    });
    if (!Modes.empty()) {
      *GMode = Found != Modes.end() ? *Found : Modes.front();
      m_GMode = *GMode;
      m_ViewMode = FULLSCREEN_MODE;
      return;
    }
  }
  const auto [Width, Height] = platform::CWindow::DesktopSize();
  m_GMode = {Width, Height, 32, 0};
  m_ViewMode = WINDOWED_MODE;
}

void CSurface::SetAllLost() { m_Lost = {true, true, true}; }

void CSurface::SetDefaultEdges() {
  for (int Surface = 0; Surface < NUMBER_OF_SURFACES; ++Surface) m_Rect[Surface] = DefaultSurfaceEdges(Surface);
}

void CSurface::EndFrame() {
  m_LastCounters = m_Counters;
  m_Counters = {};
  if (m_CaptureRequested) {
    m_Capture = ReadScreen();
    m_CaptureRequested = false;
  }
}

int GetCurrentEngine() { return CurrentEngine; }

void SetCurrentEngine(int Engine) { CurrentEngine = Engine; }

std::unique_ptr<CSurface> MakeSurface(int Engine) {
  // Only the OpenGL engine and the software engine exist here; the second
  // engine number of the other platform is served by OpenGL.
  if (Engine == ENGINE_OPENGL || Engine == ENGINE_DIRECTX9) return std::make_unique<CSurfaceGL>();
  return std::make_unique<CSurfaceDX>();
}

CSurface* GetSurface() {
  if (!CurrentSurface) CurrentSurface = MakeSurface(CurrentEngine);
  Check(CurrentSurface != nullptr, "curSurface != NULL");
  return CurrentSurface.get();
}

CSurface* CurrentSurfaceOrNull() { return CurrentSurface.get(); }

void ReleaseSurface() { CurrentSurface.reset(); }

void ReplaceSurface(std::unique_ptr<CSurface> Surface) { CurrentSurface = std::move(Surface); }
