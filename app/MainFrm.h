#pragma once
// The top-level window. Its constructor and destructor bracket the game: the
// modules live exactly as long as the frame.
#include <array>
#include <memory>

#include "platform/Window.h"

class CMainFrame : public platform::IWindowEvents {
 public:
  static constexpr int MIN_CLIENT_WIDTH = 800;
  static constexpr int MIN_CLIENT_HEIGHT = 600;

  explicit CMainFrame(bool Gamemaster);
  ~CMainFrame() override;
  CMainFrame(const CMainFrame&) = delete;
  CMainFrame& operator=(const CMainFrame&) = delete;

  // Creates the platform window; false if it could not be created.
  bool Create();
  void Show();
  bool IsOpen() const { return m_Window != nullptr; }
  platform::CWindow& Window() { return *m_Window; }

  // Ends the program from the queue: the close can no longer be refused.
  void Terminate();
  void ApplyCursorShape(int Shape);
  // True once after the screenshot key was pressed.
  bool TakeScreenshotRequest();

  void OnCloseRequest() override;
  void OnSize(int Width, int Height) override;
  void OnActivate(bool Active) override;
  void OnMouseMove(int X, int Y, int Modifiers) override;
  void OnMouseLeave() override;
  void OnMouseButton(int Button, bool Down, int X, int Y, int Modifiers, int Clicks) override;
  void OnMouseWheel(int Delta, int X, int Y, int Modifiers) override;
  void OnKeyDown(int Key, int Modifiers) override;
  void OnKeyUp(int Key, int Modifiers) override;
  void OnChar(int Character, int Modifiers) override;

 private:
  void CenterDefault();
  void SavePlacement();
  void OnDestroy();
  void CreateRootElement();

  std::unique_ptr<platform::CCursors> m_Cursors;
  std::unique_ptr<platform::CWindow> m_Window;
  platform::TWindowPlacement m_SavedPlacement{-1, -1, 0, 0};
  bool m_Maximised = false;
  bool m_EndConfirmed = false;
  int m_AppliedCursorShape = 0;
  bool m_ScreenshotRequested = false;
  // Shift, Ctrl and Alt as their presses and releases set them.
  int m_Modifiers = 0;
};
