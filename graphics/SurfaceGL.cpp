#include "graphics/SurfaceGL.h"

#include <GL/gl.h>
#include <GL/glext.h>

#include <algorithm>
#include <vector>

#include "core/Exception.h"
#include "core/Log.h"
#include "core/Preferences.h"
#include "graphics/SurfacePixels.h"
#include "platform/Window.h"

namespace {

constexpr int OFFSCREEN_WIDTH = 800;
constexpr int OFFSCREEN_HEIGHT = 600;

int NextPowerOfTwo(int Size) {
  int Power = 1;
  while (Power < Size) Power *= 2;
  return Power;
}

void Vertex(int x, int y) { glVertex2i(x, y); }

// Rows of RGB with the transparent colour turned into alpha 0.
std::vector<std::uint8_t> ToRGBA(std::span<const std::uint8_t> Pixels, size_t Count, TRGBColor Transparent) {
  std::vector<std::uint8_t> RGBA(Count * 4);
  for (size_t Index = 0; Index < Count; ++Index) {
    const TRGBColor Color = ColorAt(Pixels, Index * 3);
    if (Color == Transparent) continue;
    RGBA[Index * 4] = static_cast<std::uint8_t>(Color.r);
    RGBA[Index * 4 + 1] = static_cast<std::uint8_t>(Color.g);
    RGBA[Index * 4 + 2] = static_cast<std::uint8_t>(Color.b);
    RGBA[Index * 4 + 3] = 255;
  }
  return RGBA;
}

std::string GLString(GLenum Name) {
  const GLubyte* Text = glGetString(Name);
  return Text != nullptr ? reinterpret_cast<const char*>(Text) : "";
}

}  // namespace

// The framebuffer object calls, from the core profile or the older extension.
struct CSurfaceGL::TFramebufferCalls {
  PFNGLGENFRAMEBUFFERSPROC GenFramebuffers = nullptr;
  PFNGLDELETEFRAMEBUFFERSPROC DeleteFramebuffers = nullptr;
  PFNGLBINDFRAMEBUFFERPROC BindFramebuffer = nullptr;
  PFNGLGENRENDERBUFFERSPROC GenRenderbuffers = nullptr;
  PFNGLDELETERENDERBUFFERSPROC DeleteRenderbuffers = nullptr;
  PFNGLBINDRENDERBUFFERPROC BindRenderbuffer = nullptr;
  PFNGLRENDERBUFFERSTORAGEPROC RenderbufferStorage = nullptr;
  PFNGLFRAMEBUFFERRENDERBUFFERPROC FramebufferRenderbuffer = nullptr;
  PFNGLCHECKFRAMEBUFFERSTATUSPROC CheckFramebufferStatus = nullptr;

  template <typename T>
  static bool Load(T& Function, const char* Name) {
    Function = reinterpret_cast<T>(platform::CGLContext::GetProcAddress(Name));
    if (Function == nullptr) {
      Function = reinterpret_cast<T>(platform::CGLContext::GetProcAddress((std::string(Name) + "EXT").c_str()));
    }
    return Function != nullptr;
  }

  bool LoadAll() {
    return Load(GenFramebuffers, "glGenFramebuffers") && Load(DeleteFramebuffers, "glDeleteFramebuffers") &&
           Load(BindFramebuffer, "glBindFramebuffer") && Load(GenRenderbuffers, "glGenRenderbuffers") &&
           Load(DeleteRenderbuffers, "glDeleteRenderbuffers") && Load(BindRenderbuffer, "glBindRenderbuffer") &&
           Load(RenderbufferStorage, "glRenderbufferStorage") &&
           Load(FramebufferRenderbuffer, "glFramebufferRenderbuffer") &&
           Load(CheckFramebufferStatus, "glCheckFramebufferStatus");
  }
};

CSurfaceGL::CSurfaceGL() : m_Calls(std::make_unique<TFramebufferCalls>()) {}

CSurfaceGL::~CSurfaceGL() { Shutdown(); }

CSurfaceGL::TTexture& CSurfaceGL::TextureOf(int Surface) {
  CheckSurface(Surface);
  TTexture& Texture = m_Surfaces[Surface];
  Check(Texture.Texture != 0, "Surface[_Surface].Texture!=0", {"_Surface", Surface});
  return Texture;
}

void CSurfaceGL::SetRenderTarget(int Surface) {
  CheckSurface(Surface);
  if (Surface == m_CurrentTarget) return;
  CountTargetChange();
  const int Old = m_CurrentTarget;
  const TTexture& OldTexture = m_Surfaces[Old];
  if (Old != SCREEN_SURFACE && OldTexture.Texture != 0 && !m_Dirty.IsEmpty()) {
    glBindTexture(GL_TEXTURE_2D, OldTexture.Texture);
    glCopyTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 0, 0, OldTexture.TextureWidth, OldTexture.TextureHeight);
  }
  if (Surface == SCREEN_SURFACE) {
    UseScreen();
  } else {
    UseOffscreen(Surface, Old);
  }
  m_CurrentTarget = Surface;
  const TEdges& Edges = m_Rect[Surface];
  m_Dirty = {Edges.right, Edges.bottom, Edges.left, Edges.top};
}

// The window's back buffer, y down.
void CSurfaceGL::UseScreen() {
  m_Calls->BindFramebuffer(GL_FRAMEBUFFER, 0);
  if (m_Rect[SCREEN_SURFACE].IsEmpty()) UpdateWindowRect();
  const TEdges& Screen = m_Rect[SCREEN_SURFACE];
  glMatrixMode(GL_PROJECTION);
  glLoadIdentity();
  glViewport(0, 0, Screen.right, Screen.bottom);
  glOrtho(0, Screen.right, Screen.bottom, 0, -1, 1);
  glMatrixMode(GL_MODELVIEW);
  glDrawBuffer(GL_BACK);
  glReadBuffer(GL_BACK);
}

// The off-screen buffer, y up, so that a texture's first row stays the
// surface's top row and the copies need no flip. The surface's content is
// restored into the buffer first; its transparent pixels keep what lay there.
void CSurfaceGL::UseOffscreen(int Surface, int OldSurface) {
  const TTexture& Texture = TextureOf(Surface);
  m_Calls->BindFramebuffer(GL_FRAMEBUFFER, m_Framebuffer);
  const TTexture& Old = m_Surfaces[OldSurface];
  const bool FromScreen = OldSurface == SCREEN_SURFACE || Old.Texture == 0;
  if (FromScreen || Texture.TextureWidth > Old.TextureWidth || Texture.TextureHeight > Old.TextureHeight) {
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glViewport(0, 0, Texture.TextureWidth, Texture.TextureHeight);
    glOrtho(0, Texture.TextureWidth, 0, Texture.TextureHeight, -1, 1);
    glMatrixMode(GL_MODELVIEW);
  }
  glEnable(GL_ALPHA_TEST);
  glEnable(GL_TEXTURE_2D);
  glBindTexture(GL_TEXTURE_2D, Texture.Texture);
  glColor3ub(255, 255, 255);
  glBegin(GL_QUADS);
  glTexCoord2d(0, 0);
  Vertex(0, 0);
  glTexCoord2d(0, 1);
  Vertex(0, Texture.TextureHeight);
  glTexCoord2d(1, 1);
  Vertex(Texture.TextureWidth, Texture.TextureHeight);
  glTexCoord2d(1, 0);
  Vertex(Texture.TextureWidth, 0);
  glEnd();
}

// Adds no dirty rectangle: a clear alone never reaches the texture.
void CSurfaceGL::ClearSurface(int Surface, TRGBColor Color, int Alpha) {
  SetRenderTarget(Surface);
  glDisable(GL_TEXTURE_2D);
  glClearColor(Color.r / 255.0f, Color.g / 255.0f, Color.b / 255.0f, Alpha / 255.0f);
  glClear(GL_COLOR_BUFFER_BIT);
  CountOperation(0);
}

void CSurfaceGL::DrawPixel(int ToSurface, int x, int y, TRGBColor Color) {
  SetRenderTarget(ToSurface);
  glDisable(GL_TEXTURE_2D);
  glColor3ub(Color.r, Color.g, Color.b);
  glBegin(GL_POINTS);
  glVertex2f(x + 0.5f, y + 0.5f);
  glEnd();
  AddDirtyRect(x, y, 1, 1);
  CountOperation(1);
}

void CSurfaceGL::FillRectClipped(int ToSurface, int x, int y, int Width, int Height, TRGBColor Color,
                                 TRect ClipRect, int Alpha) {
  TEdges To{x, y, x + Width, y + Height};
  TEdges From = To;
  if (!ClipRects(ClipRect, To, From)) return;
  FillRect(ToSurface, To.left, To.top, To.right - To.left, To.bottom - To.top, Color, Alpha);
}

// No blending: the alpha test decides, so alpha 0 draws nothing and any other
// value writes the colour, with that alpha, into the target.
void CSurfaceGL::FillRect(int ToSurface, int x, int y, int Width, int Height, TRGBColor Color, int Alpha) {
  SetRenderTarget(ToSurface);
  glDisable(GL_TEXTURE_2D);
  glColor4ub(Color.r, Color.g, Color.b, Alpha);
  glRecti(x, y, x + Width, y + Height);
  AddDirtyRect(x, y, Width, Height);
  CountOperation(static_cast<long long>(Width) * Height);
}

// Lines are one pixel thick rectangles, which rasterise to the same pixels
// on every implementation.
void CSurfaceGL::DrawHorizontalLine(int ToSurface, int x, int y, int Length, TRGBColor Color) {
  FillRect(ToSurface, x, y, Length, 1, Color, 255);
}

void CSurfaceGL::DrawVerticalLine(int ToSurface, int x, int y, int Length, TRGBColor Color) {
  FillRect(ToSurface, x, y, 1, Length, Color, 255);
}

void CSurfaceGL::WriteRGBA(int ToSurface, int x, int y, int Width, int Height, const std::uint8_t* RGBA) {
  if (ToSurface != AUTOMAP_SURFACE) SetRenderTarget(ToSurface);
  const TTexture& Texture = TextureOf(ToSurface);
  glEnable(GL_TEXTURE_2D);
  glBindTexture(GL_TEXTURE_2D, Texture.Texture);
  glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
  glTexSubImage2D(GL_TEXTURE_2D, 0, x, y, Width, Height, GL_RGBA, GL_UNSIGNED_BYTE, RGBA);
  CountOperation(static_cast<long long>(Width) * Height);
}

void CSurfaceGL::WriteImage(int ToSurface, int x, int y, int Width, int Height,
                            std::span<const std::uint8_t> Pixels) {
  Check(ToSurface != SCREEN_SURFACE, "ToSurface!=SCREEN_SURFACE");
  const TTexture& Texture = TextureOf(ToSurface);
  CheckImageArea(x, y, Width, Height, Texture.Width, Texture.Height, Pixels.size());
  const std::vector<std::uint8_t> RGBA =
      ToRGBA(Pixels, static_cast<size_t>(Width) * Height, Texture.Transparent);
  WriteRGBA(ToSurface, x, y, Width, Height, RGBA.data());
}

void CSurfaceGL::WriteColoredImage(int ToSurface, int x, int y, int Width, int Height,
                                   std::span<const std::uint8_t> Pixels, std::span<const std::uint8_t> Mask,
                                   const TOutfitColors& Colors) {
  Check(ToSurface != SCREEN_SURFACE, "ToSurface!=SCREEN_SURFACE");
  const TTexture& Texture = TextureOf(ToSurface);
  CheckImageArea(x, y, Width, Height, Texture.Width, Texture.Height, Pixels.size(), Mask.size());
  const size_t Count = static_cast<size_t>(Width) * Height;
  std::vector<std::uint8_t> RGBA = ToRGBA(Pixels, Count, Texture.Transparent);
  for (size_t Index = 0; Index < Count; ++Index) {
    const TRGBColor Source = ColorAt(Pixels, Index * 3);
    const int Channel = SelectChannel(Source, Mask, Index * 3, Colors);
    if (Channel < 0) continue;
    const TRGBColor Tinted = Tint(Source, Colors[Channel]);
    RGBA[Index * 4] = static_cast<std::uint8_t>(Tinted.r);
    RGBA[Index * 4 + 1] = static_cast<std::uint8_t>(Tinted.g);
    RGBA[Index * 4 + 2] = static_cast<std::uint8_t>(Tinted.b);
    RGBA[Index * 4 + 3] = 255;
  }
  WriteRGBA(ToSurface, x, y, Width, Height, RGBA.data());
}

void CSurfaceGL::TexturedQuad(int ToSurface, TEdges To, int FromSurface, TEdges From, bool Smooth) {
  const TTexture& Source = TextureOf(FromSurface);
  const double Left = static_cast<double>(From.left) / Source.TextureWidth;
  const double Right = static_cast<double>(From.right) / Source.TextureWidth;
  const double Top = static_cast<double>(From.top) / Source.TextureHeight;
  const double Bottom = static_cast<double>(From.bottom) / Source.TextureHeight;
  SetRenderTarget(ToSurface);
  glEnable(GL_TEXTURE_2D);
  glBindTexture(GL_TEXTURE_2D, Source.Texture);
  SetSmoothing(Smooth);
  glColor3ub(255, 255, 255);
  glBegin(GL_QUADS);
  glTexCoord2d(Left, Top);
  Vertex(To.left, To.top);
  glTexCoord2d(Left, Bottom);
  Vertex(To.left, To.bottom);
  glTexCoord2d(Right, Bottom);
  Vertex(To.right, To.bottom);
  glTexCoord2d(Right, Top);
  Vertex(To.right, To.top);
  glEnd();
  const long long Width = To.right - To.left;
  const long long Height = To.bottom - To.top;
  CountOperation(Width * Height);
  AddDirtyRect(To.left, To.top, static_cast<int>(Width), static_cast<int>(Height));
}

void CSurfaceGL::BlitClipped(int ToSurface, int x, int y, int FromSurface, int fx, int fy, int Width, int Height,
                             TRect ClipRect) {
  Check(FromSurface != SCREEN_SURFACE, "FromSurface != SCREEN_SURFACE");
  Check(Width > 0 && Height > 0, "FromRect.width>0 && FromRect.height>0", {"Width", Width}, {"Height", Height});
  TEdges To{x, y, x + Width, y + Height};
  TEdges From{fx, fy, fx + Width, fy + Height};
  if (!ClipRects(ClipRect, To, From)) return;
  TexturedQuad(ToSurface, To, FromSurface, From, false);
}

// The key is already in the texture's alpha.
void CSurfaceGL::BlitKeyedClipped(int ToSurface, int x, int y, int FromSurface, int fx, int fy, int Width,
                                  int Height, TRGBColor, TRect ClipRect) {
  BlitClipped(ToSurface, x, y, FromSurface, fx, fy, Width, Height, ClipRect);
}

void CSurfaceGL::StretchBlit(int ToSurface, int x, int y, int ToWidth, int ToHeight, int FromSurface, int fx,
                             int fy, int FromWidth, int FromHeight) {
  Check(FromSurface != SCREEN_SURFACE, "FromSurface != SCREEN_SURFACE");
  Check(FromWidth > 0 && FromHeight > 0 && ToWidth > 0 && ToHeight > 0, "FromRect.width>0 && FromRect.height>0");
  TexturedQuad(ToSurface, {x, y, x + ToWidth, y + ToHeight}, FromSurface,
               {fx, fy, fx + FromWidth, fy + FromHeight}, Preferences().Antialiasing);
}

void CSurfaceGL::StretchBlitKeyed(int ToSurface, int x, int y, int ToWidth, int ToHeight, int FromSurface, int fx,
                                  int fy, int FromWidth, int FromHeight, TRGBColor KeyColor) {
  if (ToWidth == FromWidth && ToHeight == FromHeight) {
    BlitKeyed(ToSurface, x, y, FromSurface, fx, fy, FromWidth, FromHeight, KeyColor);
    return;
  }
  StretchBlit(ToSurface, x, y, ToWidth, ToHeight, FromSurface, fx, fy, FromWidth, FromHeight);
}

// Scaled keyed copies stage over TEMP_SURFACE and STRETCH_SURFACE, so they must
// not run while TEMP_SURFACE holds a map in progress.
void CSurfaceGL::StretchBlitKeyedClipped(int ToSurface, int x, int y, int ToWidth, int ToHeight, int FromSurface,
                                         int fx, int fy, int FromWidth, int FromHeight, TRGBColor KeyColor,
                                         TRGBColor StageColor, TRect ClipRect) {
  if (ToWidth == FromWidth && ToHeight == FromHeight) {
    BlitKeyedClipped(ToSurface, x, y, FromSurface, fx, fy, FromWidth, FromHeight, KeyColor, ClipRect);
    return;
  }
  ClearSurface(TEMP_SURFACE, StageColor, 0);
  BlitKeyed(TEMP_SURFACE, 0, 0, FromSurface, fx, fy, FromWidth, FromHeight, KeyColor);
  ClearSurface(STRETCH_SURFACE, StageColor, 0);
  StretchBlit(STRETCH_SURFACE, 0, 0, ToWidth, ToHeight, TEMP_SURFACE, 0, 0, FromWidth, FromHeight);
  BlitKeyedClipped(ToSurface, x, y, STRETCH_SURFACE, 0, 0, ToWidth, ToHeight, StageColor, ClipRect);
}

// The target is multiplied by the corner colours, which smooth shading
// interpolates across each quad.
void CSurfaceGL::DrawLightMap(int ToSurface, std::span<const TRect> Rects, std::span<const TLightCorners> Colors) {
  SetRenderTarget(ToSurface);
  glBlendFunc(GL_DST_COLOR, GL_ZERO);
  glEnable(GL_BLEND);
  glDisable(GL_TEXTURE_2D);
  glBegin(GL_QUADS);
  const size_t Count = std::min(Rects.size(), Colors.size());
  for (size_t Index = 0; Index < Count; ++Index) {
    const TRect& R = Rects[Index];
    const auto& [TopLeft, TopRight, BottomLeft, BottomRight] = Colors[Index];
    glColor3ub(TopLeft.r, TopLeft.g, TopLeft.b);
    Vertex(R.x, R.y);
    glColor3ub(BottomLeft.r, BottomLeft.g, BottomLeft.b);
    Vertex(R.x, R.y + R.height);
    glColor3ub(BottomRight.r, BottomRight.g, BottomRight.b);
    Vertex(R.x + R.width, R.y + R.height);
    glColor3ub(TopRight.r, TopRight.g, TopRight.b);
    Vertex(R.x + R.width, R.y);
  }
  glEnd();
  glDisable(GL_BLEND);
  for (size_t Index = 0; Index < Count; ++Index) {
    const TRect& R = Rects[Index];
    AddDirtyRect(R.x, R.y, R.width, R.height);
    CountOperation(static_cast<long long>(R.width) * R.height);
  }
}

void CSurfaceGL::SetSurfaceColorKey(int Surface, int r, int g, int b) {
  CheckSurface(Surface);
  m_Surfaces[Surface].Transparent = {r, g, b};
}

void CSurfaceGL::UpdateWindowRect() {
  if (m_Window == nullptr) return;
  const auto [Width, Height] = m_Window->GetClientSize();
  m_Rect[PRIMARY_SURFACE] = m_Rect[SCREEN_SURFACE] = {0, 0, Width, Height};
  m_Surfaces[SCREEN_SURFACE].Width = Width;
  m_Surfaces[SCREEN_SURFACE].Height = Height;
  if (m_CurrentTarget == SCREEN_SURFACE && m_Context) {
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glViewport(0, 0, Width, Height);
    glOrtho(0, Width, Height, 0, -1, 1);
    glMatrixMode(GL_MODELVIEW);
  }
}

void CSurfaceGL::SetViewMode(int VMode, TGraphicMode* GMode) { ChooseViewMode(VMode, GMode); }

void CSurfaceGL::SetSmoothing(bool Smooth) {
  const GLint Filter = Smooth ? GL_LINEAR : GL_NEAREST;
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, Filter);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, Filter);
}

void CSurfaceGL::AddDirtyRect(int x, int y, int Width, int Height) {
  m_Dirty.left = std::min(m_Dirty.left, x);
  m_Dirty.top = std::min(m_Dirty.top, y);
  m_Dirty.right = std::max(m_Dirty.right, x + Width);
  m_Dirty.bottom = std::max(m_Dirty.bottom, y + Height);
}

void CSurfaceGL::MakeTexture(int Surface) {
  TTexture& Texture = m_Surfaces[Surface];
  Texture.Width = m_Rect[Surface].right;
  Texture.Height = m_Rect[Surface].bottom;
  Texture.TextureWidth = NextPowerOfTwo(Texture.Width);
  Texture.TextureHeight = NextPowerOfTwo(Texture.Height);
  glGenTextures(1, &Texture.Texture);
  glBindTexture(GL_TEXTURE_2D, Texture.Texture);
  glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, Texture.TextureWidth, Texture.TextureHeight, 0, GL_RGBA,
               GL_UNSIGNED_BYTE, nullptr);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
  SetSmoothing(Preferences().Antialiasing);
  ++m_TexturesMade;
}

bool CSurfaceGL::MakeOffscreenBuffer() {
  TFramebufferCalls& Calls = *m_Calls;
  Calls.GenFramebuffers(1, &m_Framebuffer);
  Calls.GenRenderbuffers(1, &m_Renderbuffer);
  Calls.BindRenderbuffer(GL_RENDERBUFFER, m_Renderbuffer);
  Calls.RenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, OFFSCREEN_WIDTH, OFFSCREEN_HEIGHT);
  Calls.BindFramebuffer(GL_FRAMEBUFFER, m_Framebuffer);
  Calls.FramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, m_Renderbuffer);
  const bool Complete = Calls.CheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
  Calls.BindFramebuffer(GL_FRAMEBUFFER, 0);
  if (!Complete) ReleaseOffscreenBuffer();
  return Complete;
}

void CSurfaceGL::ReleaseOffscreenBuffer() {
  if (m_Framebuffer != 0) m_Calls->DeleteFramebuffers(1, &m_Framebuffer);
  if (m_Renderbuffer != 0) m_Calls->DeleteRenderbuffers(1, &m_Renderbuffer);
  m_Framebuffer = 0;
  m_Renderbuffer = 0;
}

void CSurfaceGL::CreateSurfaces() {
  for (int Surface = TEMP_SURFACE; Surface < NUMBER_OF_SURFACES_GL; ++Surface) {
    MakeTexture(Surface);
    if (Surface >= SPRITE_SURFACE) ++m_NumberOfSpriteSurfaces;
  }
  if (!MakeOffscreenBuffer()) ThrowException("off-screen buffer could not be made");
  m_CurrentTarget = PRIMARY_SURFACE;
  SetAllLost();
}

void CSurfaceGL::ReleaseSurfaces() {
  if (m_Context) {
    for (TTexture& Texture : m_Surfaces) {
      if (Texture.Texture != 0) glDeleteTextures(1, &Texture.Texture);
    }
    ReleaseOffscreenBuffer();
  }
  for (TTexture& Texture : m_Surfaces) Texture.Texture = 0;
  m_Framebuffer = m_Renderbuffer = 0;
  m_NumberOfSpriteSurfaces = 0;
  m_TexturesMade = 0;
  m_ViewMode = 0;
  m_CurrentTarget = PRIMARY_SURFACE;
}

void CSurfaceGL::Present() {
  if (m_ViewMode == 0) return;
  Limiter().MeasureFrame();
  EndFrame();
  m_Context->SwapBuffers();
}

// The back buffer, before it is shown.
TImage CSurfaceGL::ReadScreen() {
  const TEdges& Screen = m_Rect[SCREEN_SURFACE];
  TImage Image{Screen.right, Screen.bottom, {}};
  Image.Pixels.resize(static_cast<size_t>(Image.Width) * Image.Height * 3);
  m_Calls->BindFramebuffer(GL_FRAMEBUFFER, 0);
  glReadBuffer(GL_BACK);
  glPixelStorei(GL_PACK_ALIGNMENT, 1);
  std::vector<std::uint8_t> Rows(Image.Pixels.size());
  glReadPixels(0, 0, Image.Width, Image.Height, GL_RGB, GL_UNSIGNED_BYTE, Rows.data());
  const size_t Stride = static_cast<size_t>(Image.Width) * 3;
  for (int Row = 0; Row < Image.Height; ++Row) {
    std::copy_n(&Rows[(Image.Height - 1 - Row) * Stride], Stride, &Image.Pixels[Row * Stride]);
  }
  if (m_CurrentTarget != SCREEN_SURFACE && m_CurrentTarget != PRIMARY_SURFACE) {
    m_Calls->BindFramebuffer(GL_FRAMEBUFFER, m_Framebuffer);
  }
  return Image;
}

// The current target's work is copied into its texture first.
TImage CSurfaceGL::ReadSurfaceImage(int Surface) {
  Check(Surface != SCREEN_SURFACE, "FromSurface != SCREEN_SURFACE");
  const TTexture& Texture = TextureOf(Surface);
  SetRenderTarget(SCREEN_SURFACE);
  std::vector<std::uint8_t> RGBA(static_cast<size_t>(Texture.TextureWidth) * Texture.TextureHeight * 4);
  glBindTexture(GL_TEXTURE_2D, Texture.Texture);
  glPixelStorei(GL_PACK_ALIGNMENT, 1);
  glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, RGBA.data());
  TImage Image{Texture.Width, Texture.Height, {}};
  Image.Pixels.reserve(static_cast<size_t>(Texture.Width) * Texture.Height * 3);
  for (int Row = 0; Row < Texture.Height; ++Row) {
    for (int Column = 0; Column < Texture.Width; ++Column) {
      const size_t Index = (static_cast<size_t>(Row) * Texture.TextureWidth + Column) * 4;
      Image.Pixels.insert(Image.Pixels.end(), {RGBA[Index], RGBA[Index + 1], RGBA[Index + 2]});
    }
  }
  return Image;
}

bool CSurfaceGL::LoadExtensions() { return m_Calls->LoadAll(); }

// A lost context is made anew; failing to make one is the only way to false.
bool CSurfaceGL::Validate(platform::CWindow* Window, int ViewMode, TGraphicMode* GMode, bool Force) {
  if (Window == nullptr) return false;
  const bool DeviceExists = m_Context && !m_Context->IsLost();
  if (!ValidateCommon(Window, ViewMode, Force, DeviceExists)) return true;
  ReleaseSurfaces();
  m_Context.reset();
  RestoreViewMode(ViewMode, GMode);
  auto Context = std::make_unique<platform::CGLContext>(*Window);
  if (!Context->IsValid()) {
    LogInfo("no OpenGL context: " + Context->Error());
    return false;
  }
  m_Context = std::move(Context);
  m_Context->MakeCurrent();
  m_VersionData = GLString(GL_VERSION) + ", " + GLString(GL_RENDERER);
  glMatrixMode(GL_MODELVIEW);
  glLoadIdentity();
  glAlphaFunc(GL_GREATER, 0);
  glEnable(GL_ALPHA_TEST);
  glDisable(GL_LIGHTING);
  glDisable(GL_DEPTH_TEST);
  if (!LoadExtensions()) LogInfo("Necessary extensions were not supported");
  ResumeSurfaces();
  return true;
}

int CSurfaceGL::GetSurfaceLocation(int Index) const {
  CheckSurface(Index);
  return Index < m_TexturesMade ? 1 : 0;
}

void CSurfaceGL::Startup() {
  StartupCommon();
  m_Surfaces = {};
  for (int Surface = 0; Surface < NUMBER_OF_SURFACES_GL; ++Surface) {
    m_Surfaces[Surface].Width = m_Rect[Surface].right;
    m_Surfaces[Surface].Height = m_Rect[Surface].bottom;
  }
  m_CurrentTarget = PRIMARY_SURFACE;
}

void CSurfaceGL::Shutdown() {
  ReleaseSurfaces();
  m_Context.reset();
}

// A context, the extensions and the off-screen buffer, all taken down again.
bool CSurfaceGL::Probe() {
  if (m_Window == nullptr) return false;
  platform::CGLContext Context(*m_Window);
  if (!Context.IsValid()) return false;
  Context.MakeCurrent();
  if (!LoadExtensions()) {
    LogInfo("Necessary OpenGL extensions were not supported");
    return false;
  }
  const bool Made = MakeOffscreenBuffer();
  ReleaseOffscreenBuffer();
  return Made;
}
