#include "app/MainFrm.h"

#include <algorithm>

#include "app/Modules.h"
#include "core/MessageQueue.h"
#include "core/Preferences.h"
#include "core/ProgramState.h"
#include "graphics/Engines.h"
#include "gui/GUI.h"
#include "gui/ModalDialog.h"
#include "gui/RootWindow.h"
#include "gui/Routing.h"
#include "gui/TestElements.h"
#include "platform/Events.h"
#include "net/Connection.h"

// The packet history starts empty with the network module's state.
CMainFrame::CMainFrame(bool Gamemaster) {
  m_Cursors = std::make_unique<platform::CCursors>();
  InitModules(Gamemaster);
  CreateRootElement();
  SetViewMode(WINDOWED_MODE);
  ApplyCursorShape(1);
}

// The root covers the client area; the game's main window takes its place later.
void CMainFrame::CreateRootElement() {
  InitGUI();
  auto Root = std::make_unique<CRootWindow>(MIN_CLIENT_WIDTH, MIN_CLIENT_HEIGHT);
  if (TestElementsWanted()) AddTestElements(*Root);
  SetMainWindow(std::move(Root));
}

CMainFrame::~CMainFrame() = default;

bool CMainFrame::Create() {
  m_Window = std::make_unique<platform::CWindow>("Kelmo", MIN_CLIENT_WIDTH, MIN_CLIENT_HEIGHT);
  if (!m_Window->IsValid()) {
    m_Window.reset();
    return false;
  }
  m_Window->SetMinimumClientSize(MIN_CLIENT_WIDTH, MIN_CLIENT_HEIGHT);
  const TWindowedMode& Saved = Preferences().WindowedMode;
  m_SavedPlacement = {Saved.X, Saved.Y, Saved.Width, Saved.Height};
  m_Maximised = Saved.Maximised;
  const auto [ScreenWidth, ScreenHeight] = platform::CWindow::DesktopSize();
  const bool Fits = m_SavedPlacement.X >= 0 && m_SavedPlacement.Y >= 0 &&
                    m_SavedPlacement.X + m_SavedPlacement.Width <= ScreenWidth &&
                    m_SavedPlacement.Y + m_SavedPlacement.Height <= ScreenHeight;
  if (Fits) {
    m_Window->SetPlacement(m_SavedPlacement);
  } else {
    CenterDefault();
  }
  return true;
}

void CMainFrame::Show() { m_Window->Show(m_Maximised); }

void CMainFrame::CenterDefault() {
  m_Window->SetClientSize(MIN_CLIENT_WIDTH, MIN_CLIENT_HEIGHT);
  m_Window->CenterOnScreen();
  m_SavedPlacement = m_Window->GetPlacement();
  SavePlacement();
}

void CMainFrame::SavePlacement() {
  Preferences().WindowedMode = {m_SavedPlacement.X, m_SavedPlacement.Y, m_SavedPlacement.Width,
                                m_SavedPlacement.Height, m_Maximised};
}

void CMainFrame::Terminate() {
  m_EndConfirmed = true;
  OnCloseRequest();
}

// A running game is not left by closing the window: the player is asked.
void CMainFrame::OnCloseRequest() {
  if (!m_EndConfirmed && GetConnectionState() == GAME_RUNNING) {
    const int Action = GetActionState();
    if (Action != ACTIONSTATE_MODAL && Action != ACTIONSTATE_MENU) MessageQueue().Post(MSG_EXIT_DIALOG);
    return;
  }
  OnDestroy();
  ExitGUI();
  ResetRouting();
  ShutdownSurface();
  m_Window.reset();
  ShutdownModules();
}

void CMainFrame::OnDestroy() {
  if (GetViewMode() == FULLSCREEN_MODE) SetViewMode(WINDOWED_MODE);
  m_Maximised = m_Window->IsMaximised();
  if (!m_Maximised) m_SavedPlacement = m_Window->GetPlacement();
  SavePlacement();
  ApplyCursorShape(1);
}

void CMainFrame::ApplyCursorShape(int Shape) {
  if (Shape == m_AppliedCursorShape) return;
  m_Cursors->Apply(Shape, true);
  m_AppliedCursorShape = Shape;
}

// In a window the client area never goes below 800 x 600.
// The root element follows the client area.
void CMainFrame::OnSize(int Width, int Height) {
  if (GetViewMode() != WINDOWED_MODE) return;
  if (Width < MIN_CLIENT_WIDTH || Height < MIN_CLIENT_HEIGHT) {
    m_Window->SetClientSize(std::max(Width, MIN_CLIENT_WIDTH), std::max(Height, MIN_CLIENT_HEIGHT));
    return;
  }
  if (CGUIComposite* Root = GetMainWindow()) Root->SetSize(Width, Height);
  ModalClientAreaResized();
}

void CMainFrame::OnActivate(bool) {
  if (GetViewMode() == FULLSCREEN_MODE) SetViewMode(WINDOWED_MODE);
}

void CMainFrame::OnMouseMove(int X, int Y, int) { MouseMoveEvent(X, Y); }

void CMainFrame::OnMouseLeave() { MouseLeftWindowEvent(); }

// Left and right buttons only; the middle button has no use.
void CMainFrame::OnMouseButton(int Button, bool Down, int X, int Y, int Modifiers, int Clicks) {
  if (Button == 1) {
    if (Down) {
      LeftDownEvent(X, Y, Modifiers, Clicks == 2);
    } else {
      LeftUpEvent(X, Y, Modifiers);
    }
  } else if (Button == 3) {
    if (Down) {
      RightDownEvent(X, Y, Modifiers);
    } else {
      RightUpEvent(X, Y, Modifiers);
    }
  }
}

void CMainFrame::OnMouseWheel(int Delta, int, int, int) { WheelEvent(Delta); }

// A key code carries the modifier word. Shift, Ctrl and Alt are key events
// of their own; Enter comes as a character unless Alt is down; Alt+F4 closes.
// Print Screen is no key of the game: it takes a screenshot.
void CMainFrame::OnKeyDown(int Key, int) {
  if (Key == platform::KEY_PRINT_SCREEN) {
    m_ScreenshotRequested = true;
    return;
  }
  if (Key == platform::KEY_SHIFT || Key == platform::KEY_CTRL || Key == platform::KEY_ALT) m_Modifiers |= Key;
  const bool Alt = (m_Modifiers & platform::KEY_ALT) != 0;
  if (Key == platform::KEY_F4 && Alt) {
    OnCloseRequest();
    return;
  }
  if (Key == 0 || (Key == platform::KEY_ENTER && !Alt)) return;
  KeyEvent(Key | m_Modifiers);
}

void CMainFrame::OnKeyUp(int Key, int) {
  if (Key == platform::KEY_SHIFT || Key == platform::KEY_CTRL || Key == platform::KEY_ALT) m_Modifiers &= ~Key;
}

// With Ctrl alone only Ctrl and a letter counts, as the letter's code.
void CMainFrame::OnChar(int Character, int) {
  const bool Ctrl = (m_Modifiers & platform::KEY_CTRL) != 0;
  const bool Alt = (m_Modifiers & platform::KEY_ALT) != 0;
  if (Ctrl && !Alt) {
    if (Character >= 1 && Character <= 26) KeyEvent((Character + 0x60) | m_Modifiers);
    return;
  }
  if (Character > 0 && Character < 0x100) KeyEvent(Character | m_Modifiers);
}

bool CMainFrame::TakeScreenshotRequest() {
  const bool Requested = m_ScreenshotRequested;
  m_ScreenshotRequested = false;
  return Requested;
}
