#pragma once
// The window system stand-in: one top-level window, its events, cursors,
// message boxes and the clipboard, all on the loop's thread.
#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

struct SDL_Window;
struct SDL_Cursor;
typedef void* SDL_GLContext;

namespace platform {

// Modifier bits of mouse and key events.
enum : int {
  MODIFIER_SHIFT = 0x200,
  MODIFIER_CTRL = 0x400,
  MODIFIER_ALT = 0x800,
};

class IWindowEvents {
 public:
  virtual ~IWindowEvents() = default;
  virtual void OnCloseRequest() = 0;
  virtual void OnSize(int Width, int Height) = 0;
  virtual void OnActivate(bool Active) = 0;
  virtual void OnMouseMove(int X, int Y, int Modifiers) = 0;
  // The pointer went out of the client area.
  virtual void OnMouseLeave() = 0;
  // Button 1 left, 2 middle, 3 right; Clicks 2 for a double click.
  virtual void OnMouseButton(int Button, bool Down, int X, int Y, int Modifiers, int Clicks) = 0;
  // Delta in units of WHEEL_DELTA a notch, positive away from the user.
  virtual void OnMouseWheel(int Delta, int X, int Y, int Modifiers) = 0;
  // Key codes of platform/Events.h.
  virtual void OnKeyDown(int Key, int Modifiers) = 0;
  virtual void OnKeyUp(int Key, int Modifiers) = 0;
  // One Latin-1 character.
  virtual void OnChar(int Character, int Modifiers) = 0;
};

struct TWindowPlacement {
  int X = 0, Y = 0, Width = 0, Height = 0;
};

class CWindow {
 public:
  // Opens the display, with ClassName as the window class of every window;
  // false (with the reason in Error) if there is none.
  static bool InitDisplay(const std::string& ClassName, std::string& Error);
  static void ShutdownDisplay();
  // Width and height of the desktop of the first screen.
  static std::array<int, 2> DesktopSize();
  // The display modes of the first screen: width, height, bits, refresh rate.
  static std::vector<std::array<int, 4>> DisplayModes();

  // Creates the window hidden, centred, with the given client size.
  // The class name is set for the display by InitDisplay.
  CWindow(const std::string& Title, int Width, int Height);
  ~CWindow();
  CWindow(const CWindow&) = delete;
  CWindow& operator=(const CWindow&) = delete;

  bool IsValid() const { return m_Window != nullptr; }
  void Show(bool Maximised);
  void Hide();
  void SetTitle(const std::string& Title);
  void SetMinimumClientSize(int Width, int Height);
  void SetClientSize(int Width, int Height);
  void SetPlacement(const TWindowPlacement& Placement);
  void CenterOnScreen();
  TWindowPlacement GetPlacement() const;
  bool IsMinimisedOrHidden() const;
  bool IsMaximised() const;

  // Dispatches every waiting event; returns how many there were.
  int PumpEvents(IWindowEvents& Events);
  // Mouse position in client coordinates.
  std::array<int, 2> GetMousePosition() const;

  // Size of the client area in pixels.
  std::array<int, 2> GetClientSize() const;
  // Whether the window can carry an OpenGL context (it was made for one).
  bool SupportsOpenGL() const { return m_OpenGL; }
  // Copies 0x00RRGGBB pixels, rows of Pitch pixels, into the window's own
  // pixels and shows them, without OpenGL; false if the window has none.
  bool PresentPixels(const std::uint32_t* Pixels, int Width, int Height, int Pitch);

  SDL_Window* Handle() const { return m_Window; }

 private:
  SDL_Window* m_Window = nullptr;
  bool m_OpenGL = false;
};

// An OpenGL context on a window: double buffer, 8 bits for each of red,
// green, blue and alpha, the legacy fixed-function profile.
//
// Tests simulate a machine without OpenGL and a context lost while running,
// in the process (SimulateOpenGLAbsent, SimulateOpenGLLoss) or by environment:
// KELMO_NO_OPENGL=1, and KELMO_LOSE_OPENGL_AFTER=<n> to lose it after n frames.
class CGLContext {
 public:
  explicit CGLContext(CWindow& Window);
  ~CGLContext();
  CGLContext(const CGLContext&) = delete;
  CGLContext& operator=(const CGLContext&) = delete;

  bool IsValid() const { return m_Context != nullptr; }
  // True once the context can no longer draw; only a new one may help.
  bool IsLost() const;
  const std::string& Error() const { return m_Error; }
  void MakeCurrent();
  void SwapBuffers();
  // The implementation's name for itself; the context must be current.
  std::string Renderer() const;

  static void* GetProcAddress(const char* Name);
  static void SimulateOpenGLAbsent(bool Absent);
  static void SimulateOpenGLLoss();

 private:
  SDL_Window* m_Window = nullptr;
  SDL_GLContext m_Context = nullptr;
  std::string m_Error;
};

// SIGUSR1 asks for a screenshot of the next presented frame, as the key does.
void InstallScreenshotSignal();
// True once per received signal.
bool TakeScreenshotRequest();

// Cursor shapes: 1 arrow, 2 vertical resize, 3 wait, 4 and 5 the program's
// first own cursor, 6 its second.
class CCursors {
 public:
  CCursors();
  ~CCursors();
  CCursors(const CCursors&) = delete;
  CCursors& operator=(const CCursors&) = delete;

  void Apply(int Shape, bool SystemPointerVisible);

 private:
  std::array<SDL_Cursor*, 5> m_Cursors{};
};

void SetClipboardText(const std::string& Text);
std::string GetClipboardText();
// Routes platform::MessageBox to a real dialog over the window.
void InstallWindowMessageBox();

}  // namespace platform
