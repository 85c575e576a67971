#include "platform/Window.h"

#include <SDL.h>

#include <csignal>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "platform/Events.h"
#include "platform/MessageBox.h"

namespace platform {

namespace {

// The simulated faults of OpenGL; see CGLContext.
bool OpenGLAbsent = false;
bool OpenGLLost = false;
long LoseOpenGLAfterSwaps = -1;
long SwapCount = 0;

volatile std::sig_atomic_t ScreenshotRequested = 0;

void OnScreenshotSignal(int) { ScreenshotRequested = 1; }

void ReadOpenGLFaults() {
  const char* Absent = std::getenv("KELMO_NO_OPENGL");
  OpenGLAbsent = Absent != nullptr && std::strcmp(Absent, "1") == 0;
  const char* After = std::getenv("KELMO_LOSE_OPENGL_AFTER");
  LoseOpenGLAfterSwaps = After != nullptr ? std::atol(After) : -1;
}

// The window's visual is chosen when it is made, so the context's wishes go first.
void SetContextAttributes() {
  SDL_GL_SetAttribute(SDL_GL_RED_SIZE, 8);
  SDL_GL_SetAttribute(SDL_GL_GREEN_SIZE, 8);
  SDL_GL_SetAttribute(SDL_GL_BLUE_SIZE, 8);
  SDL_GL_SetAttribute(SDL_GL_ALPHA_SIZE, 8);
  SDL_GL_SetAttribute(SDL_GL_DEPTH_SIZE, 0);
  SDL_GL_SetAttribute(SDL_GL_DOUBLEBUFFER, 1);
  SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, 2);
  SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, 1);
}

SDL_Window* MakeWindow(const std::string& Title, int Width, int Height, bool OpenGL) {
  const Uint32 Flags = SDL_WINDOW_HIDDEN | SDL_WINDOW_RESIZABLE | (OpenGL ? SDL_WINDOW_OPENGL : 0);
  return SDL_CreateWindow(Title.c_str(), SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED, Width, Height,
                          Flags);
}

int ModifierBits(Uint16 Mod) {
  int Bits = 0;
  if (Mod & KMOD_SHIFT) Bits |= MODIFIER_SHIFT;
  if (Mod & KMOD_CTRL) Bits |= MODIFIER_CTRL;
  if (Mod & KMOD_ALT) Bits |= MODIFIER_ALT;
  return Bits;
}

int CurrentModifiers() { return ModifierBits(static_cast<Uint16>(SDL_GetModState())); }

// SDL delivers UTF-8; the program's text is Latin-1, so anything beyond it is dropped.
std::string Utf8ToLatin1(const char* Text) {
  std::string Result;
  for (const auto* P = reinterpret_cast<const unsigned char*>(Text); *P != 0;) {
    if (*P < 0x80) {
      Result += static_cast<char>(*P++);
    } else if ((*P & 0xE0) == 0xC0 && (P[1] & 0xC0) == 0x80) {
      const int Code = ((P[0] & 0x1F) << 6) | (P[1] & 0x3F);
      if (Code <= 0xFF) Result += static_cast<char>(Code);
      P += 2;
    } else {
      ++P;
      while ((*P & 0xC0) == 0x80) ++P;
    }
  }
  return Result;
}

std::string Latin1ToUtf8(const std::string& Text) {
  std::string Result;
  for (const unsigned char C : Text) {
    if (C < 0x80) {
      Result += static_cast<char>(C);
    } else {
      Result += static_cast<char>(0xC0 | (C >> 6));
      Result += static_cast<char>(0x80 | (C & 0x3F));
    }
  }
  return Result;
}

void DispatchWindowEvent(const SDL_WindowEvent& Event, IWindowEvents& Events) {
  switch (Event.event) {
    case SDL_WINDOWEVENT_CLOSE:
      Events.OnCloseRequest();
      break;
    case SDL_WINDOWEVENT_SIZE_CHANGED:
      Events.OnSize(Event.data1, Event.data2);
      break;
    case SDL_WINDOWEVENT_FOCUS_GAINED:
      Events.OnActivate(true);
      break;
    case SDL_WINDOWEVENT_FOCUS_LOST:
      Events.OnActivate(false);
      break;
    case SDL_WINDOWEVENT_LEAVE:
      Events.OnMouseLeave();
      break;
    default:
      break;
  }
}

// A key gives its code, and for the keys that no text event carries, the character.
void DispatchKeyDown(const SDL_Keysym& Key, IWindowEvents& Events) {
  const int Modifiers = ModifierBits(Key.mod);
  Events.OnKeyDown(KeyCodeOfSdlKey(Key.scancode, Key.sym, Key.mod), Modifiers);
  if (const int Character = CharacterOfSdlKey(Key.sym, Key.mod)) Events.OnChar(Character, Modifiers);
}

void Dispatch(const SDL_Event& Event, IWindowEvents& Events) {
  switch (Event.type) {
    case SDL_QUIT:
      Events.OnCloseRequest();
      break;
    case SDL_WINDOWEVENT:
      DispatchWindowEvent(Event.window, Events);
      break;
    case SDL_MOUSEMOTION:
      Events.OnMouseMove(Event.motion.x, Event.motion.y, CurrentModifiers());
      break;
    case SDL_MOUSEBUTTONDOWN:
    case SDL_MOUSEBUTTONUP:
      Events.OnMouseButton(Event.button.button, Event.type == SDL_MOUSEBUTTONDOWN, Event.button.x,
                           Event.button.y, CurrentModifiers(), Event.button.clicks);
      break;
    case SDL_MOUSEWHEEL: {
      int X = 0, Y = 0;
      SDL_GetMouseState(&X, &Y);
      const int Notches = Event.wheel.direction == SDL_MOUSEWHEEL_FLIPPED ? -Event.wheel.y : Event.wheel.y;
      Events.OnMouseWheel(Notches * WHEEL_DELTA, X, Y, CurrentModifiers());
      break;
    }
    case SDL_KEYDOWN:
      DispatchKeyDown(Event.key.keysym, Events);
      break;
    case SDL_KEYUP:
      Events.OnKeyUp(KeyCodeOfSdlKey(Event.key.keysym.scancode, Event.key.keysym.sym, Event.key.keysym.mod),
                     ModifierBits(Event.key.keysym.mod));
      break;
    case SDL_TEXTINPUT:
      for (const char Character : Utf8ToLatin1(Event.text.text)) {
        Events.OnChar(static_cast<unsigned char>(Character), CurrentModifiers());
      }
      break;
    default:
      break;
  }
}

// The program's own cursors, drawn here: 101 a crosshair, 102 a lens.
SDL_Cursor* MakeOwnCursor(bool Lens) {
  constexpr int Size = 24;
  SDL_Surface* Picture = SDL_CreateRGBSurfaceWithFormat(0, Size, Size, 32, SDL_PIXELFORMAT_ARGB8888);
  if (Picture == nullptr) return SDL_CreateSystemCursor(SDL_SYSTEM_CURSOR_CROSSHAIR);
  auto* Pixels = static_cast<Uint32*>(Picture->pixels);
  const int Pitch = Picture->pitch / 4;
  for (int Y = 0; Y < Size; ++Y) {
    for (int X = 0; X < Size; ++X) {
      bool Ink = false, Edge = false;
      if (Lens) {
        const double Distance = std::hypot(X - 9.0, Y - 9.0);
        Ink = (Distance > 5.5 && Distance < 7.5) || (X == Y && X > 13 && X < 22);
        Edge = !Ink && ((Distance > 4.5 && Distance < 8.5) || (std::abs(X - Y) <= 1 && X > 12 && X < 23));
      } else {
        const bool Cross = (X == 11 || Y == 11) && std::abs(X - 11) + std::abs(Y - 11) > 2;
        Ink = Cross;
        Edge = !Ink && (std::abs(X - 11) <= 1 || std::abs(Y - 11) <= 1) &&
               std::abs(X - 11) + std::abs(Y - 11) > 1;
      }
      Pixels[Y * Pitch + X] = Ink ? 0xFFFFFFFF : Edge ? 0xFF000000 : 0x00000000;
    }
  }
  SDL_Cursor* Cursor = SDL_CreateColorCursor(Picture, Lens ? 9 : 11, Lens ? 9 : 11);
  SDL_FreeSurface(Picture);
  return Cursor;
}

}  // namespace

bool CWindow::InitDisplay(const std::string& ClassName, std::string& Error) {
  // The X11 window class comes from this variable; tests find the window by it.
  setenv("SDL_VIDEO_X11_WMCLASS", ClassName.c_str(), 1);
  // The window's own pixels go to the screen directly; an accelerated
  // presentation would make SDL re-create the window behind our back.
  SDL_SetHint(SDL_HINT_FRAMEBUFFER_ACCELERATION, "0");
  if (SDL_Init(SDL_INIT_VIDEO) != 0) {
    Error = SDL_GetError();
    return false;
  }
  ReadOpenGLFaults();
  SetContextAttributes();
  return true;
}

void CWindow::ShutdownDisplay() { SDL_Quit(); }

std::array<int, 2> CWindow::DesktopSize() {
  SDL_DisplayMode Mode{};
  if (SDL_GetDesktopDisplayMode(0, &Mode) != 0) return {0, 0};
  return {Mode.w, Mode.h};
}

// A display without OpenGL still gets a window, for drawing without it.
std::vector<std::array<int, 4>> CWindow::DisplayModes() {
  std::vector<std::array<int, 4>> Modes;
  const int Count = SDL_GetNumDisplayModes(0);
  for (int Index = 0; Index < Count; ++Index) {
    SDL_DisplayMode Mode{};
    if (SDL_GetDisplayMode(0, Index, &Mode) != 0) continue;
    Modes.push_back({Mode.w, Mode.h, static_cast<int>(SDL_BITSPERPIXEL(Mode.format)), Mode.refresh_rate});
  }
  return Modes;
}

CWindow::CWindow(const std::string& Title, int Width, int Height) {
  const std::string Text = Latin1ToUtf8(Title);
  if (!OpenGLAbsent) m_Window = MakeWindow(Text, Width, Height, true);
  m_OpenGL = m_Window != nullptr;
  if (m_Window == nullptr) m_Window = MakeWindow(Text, Width, Height, false);
}

CWindow::~CWindow() {
  if (m_Window != nullptr) SDL_DestroyWindow(m_Window);
}

void CWindow::Show(bool Maximised) {
  SDL_ShowWindow(m_Window);
  if (Maximised) SDL_MaximizeWindow(m_Window);
}

void CWindow::Hide() { SDL_HideWindow(m_Window); }
void CWindow::SetTitle(const std::string& Title) {
  SDL_SetWindowTitle(m_Window, Latin1ToUtf8(Title).c_str());
}

void CWindow::SetMinimumClientSize(int Width, int Height) {
  SDL_SetWindowMinimumSize(m_Window, Width, Height);
}

void CWindow::SetClientSize(int Width, int Height) { SDL_SetWindowSize(m_Window, Width, Height); }

void CWindow::SetPlacement(const TWindowPlacement& Placement) {
  SDL_SetWindowSize(m_Window, Placement.Width, Placement.Height);
  SDL_SetWindowPosition(m_Window, Placement.X, Placement.Y);
}

void CWindow::CenterOnScreen() {
  SDL_SetWindowPosition(m_Window, SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED);
}

TWindowPlacement CWindow::GetPlacement() const {
  TWindowPlacement Placement;
  SDL_GetWindowPosition(m_Window, &Placement.X, &Placement.Y);
  SDL_GetWindowSize(m_Window, &Placement.Width, &Placement.Height);
  return Placement;
}

bool CWindow::IsMinimisedOrHidden() const {
  return (SDL_GetWindowFlags(m_Window) & (SDL_WINDOW_MINIMIZED | SDL_WINDOW_HIDDEN)) != 0;
}

bool CWindow::IsMaximised() const {
  return (SDL_GetWindowFlags(m_Window) & SDL_WINDOW_MAXIMIZED) != 0;
}

int CWindow::PumpEvents(IWindowEvents& Events) {
  int Count = 0;
  SDL_Event Event;
  while (SDL_PollEvent(&Event) != 0) {
    Dispatch(Event, Events);
    ++Count;
  }
  return Count;
}

std::array<int, 2> CWindow::GetMousePosition() const {
  int X = 0, Y = 0;
  SDL_GetMouseState(&X, &Y);
  return {X, Y};
}

std::array<int, 2> CWindow::GetClientSize() const {
  int Width = 0, Height = 0;
  SDL_GetWindowSize(m_Window, &Width, &Height);
  return {Width, Height};
}

bool CWindow::PresentPixels(const std::uint32_t* Pixels, int Width, int Height, int Pitch) {
  SDL_Surface* Target = SDL_GetWindowSurface(m_Window);
  if (Target == nullptr) return false;
  SDL_Surface* Source = SDL_CreateRGBSurfaceWithFormatFrom(const_cast<std::uint32_t*>(Pixels), Width,
                                                           Height, 32, Pitch * 4, SDL_PIXELFORMAT_XRGB8888);
  if (Source == nullptr) return false;
  SDL_SetSurfaceBlendMode(Source, SDL_BLENDMODE_NONE);
  const bool Copied = SDL_BlitSurface(Source, nullptr, Target, nullptr) == 0;
  SDL_FreeSurface(Source);
  return Copied && SDL_UpdateWindowSurface(m_Window) == 0;
}

CGLContext::CGLContext(CWindow& Window) : m_Window(Window.Handle()) {
  if (OpenGLAbsent || OpenGLLost || !Window.SupportsOpenGL()) {
    m_Error = "no OpenGL on this display";
    return;
  }
  m_Context = SDL_GL_CreateContext(m_Window);
  if (m_Context == nullptr) m_Error = SDL_GetError();
}

CGLContext::~CGLContext() {
  if (m_Context == nullptr) return;
  SDL_GL_MakeCurrent(m_Window, nullptr);
  SDL_GL_DeleteContext(m_Context);
}

bool CGLContext::IsLost() const { return OpenGLLost; }

void CGLContext::MakeCurrent() { SDL_GL_MakeCurrent(m_Window, m_Context); }

void CGLContext::SwapBuffers() {
  SDL_GL_SwapWindow(m_Window);
  if (LoseOpenGLAfterSwaps >= 0 && ++SwapCount >= LoseOpenGLAfterSwaps) OpenGLLost = true;
}

// Looked up at run time, as every other call beyond the context is.
std::string CGLContext::Renderer() const {
  using TGetString = const unsigned char* (*)(unsigned);
  constexpr unsigned GL_RENDERER_NAME = 0x1F01;
  const auto GetString = reinterpret_cast<TGetString>(GetProcAddress("glGetString"));
  const unsigned char* Name = GetString != nullptr ? GetString(GL_RENDERER_NAME) : nullptr;
  return Name != nullptr ? reinterpret_cast<const char*>(Name) : "";
}

void* CGLContext::GetProcAddress(const char* Name) { return SDL_GL_GetProcAddress(Name); }

void CGLContext::SimulateOpenGLAbsent(bool Absent) {
  OpenGLAbsent = Absent;
  OpenGLLost = false;
}

void CGLContext::SimulateOpenGLLoss() { OpenGLLost = true; }

void InstallScreenshotSignal() {
  struct sigaction Action {};
  Action.sa_handler = OnScreenshotSignal;
  sigemptyset(&Action.sa_mask);
  sigaction(SIGUSR1, &Action, nullptr);
}

bool TakeScreenshotRequest() {
  if (ScreenshotRequested == 0) return false;
  ScreenshotRequested = 0;
  return true;
}

CCursors::CCursors() {
  m_Cursors = {SDL_CreateSystemCursor(SDL_SYSTEM_CURSOR_ARROW),
               SDL_CreateSystemCursor(SDL_SYSTEM_CURSOR_SIZENS),
               SDL_CreateSystemCursor(SDL_SYSTEM_CURSOR_WAIT), MakeOwnCursor(false),
               MakeOwnCursor(true)};
}

CCursors::~CCursors() {
  for (SDL_Cursor* Cursor : m_Cursors) {
    if (Cursor != nullptr) SDL_FreeCursor(Cursor);
  }
}

void CCursors::Apply(int Shape, bool SystemPointerVisible) {
  SDL_ShowCursor(SystemPointerVisible ? SDL_ENABLE : SDL_DISABLE);
  static constexpr int CursorOfShape[] = {0, 0, 1, 2, 3, 3, 4};
  const int Index = Shape >= 1 && Shape <= 6 ? CursorOfShape[Shape] : 0;
  if (m_Cursors[Index] != nullptr) SDL_SetCursor(m_Cursors[Index]);
}

void SetClipboardText(const std::string& Text) { SDL_SetClipboardText(Latin1ToUtf8(Text).c_str()); }

std::string GetClipboardText() {
  char* Text = SDL_GetClipboardText();
  std::string Result = Text != nullptr ? Utf8ToLatin1(Text) : std::string();
  SDL_free(Text);
  return Result;
}

void InstallWindowMessageBox() {
  SetMessageBoxHandler([](const std::string& Title, const std::string& Text, TBoxIcon Icon) {
    const Uint32 Flags = Icon == TBoxIcon::FAILURE   ? SDL_MESSAGEBOX_ERROR
                         : Icon == TBoxIcon::WARNING ? SDL_MESSAGEBOX_WARNING
                                                     : SDL_MESSAGEBOX_INFORMATION;
    SDL_ShowSimpleMessageBox(Flags, Latin1ToUtf8(Title).c_str(), Latin1ToUtf8(Text).c_str(),
                             nullptr);
  });
}

}  // namespace platform
