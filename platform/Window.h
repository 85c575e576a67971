#pragma once
// The window system stand-in: one top-level window, its events, cursors,
// message boxes and the clipboard, all on the loop's thread.
#include <array>
#include <memory>
#include <string>

struct SDL_Window;
struct SDL_Cursor;

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
  // Button 1 left, 2 middle, 3 right; Clicks 2 for a double click.
  virtual void OnMouseButton(int Button, bool Down, int X, int Y, int Modifiers, int Clicks) = 0;
  virtual void OnMouseWheel(int Delta, int X, int Y, int Modifiers) = 0;
  virtual void OnKey(int KeyCode, bool Down, int Modifiers) = 0;
  virtual void OnText(const std::string& Latin1Text) = 0;
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

  // Stand-in presentation until the drawing engines exist: fill and show.
  void ClearAndPresent(int Red, int Green, int Blue);

 private:
  SDL_Window* m_Window = nullptr;
};

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
