#include "app/MainFrm.h"

#include <algorithm>

#include "app/Modules.h"
#include "core/MessageQueue.h"
#include "core/Preferences.h"
#include "core/ProgramState.h"
#include "graphics/Engines.h"
#include "net/Connection.h"

// The packet history starts empty with the network module's state.
CMainFrame::CMainFrame(bool Gamemaster) {
  m_Cursors = std::make_unique<platform::CCursors>();
  InitModules(Gamemaster);
  SetViewMode(WINDOWED_MODE);
  ApplyCursorShape(1);
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
void CMainFrame::OnSize(int Width, int Height) {
  if (GetViewMode() != WINDOWED_MODE) return;
  if (Width < MIN_CLIENT_WIDTH || Height < MIN_CLIENT_HEIGHT) {
    m_Window->SetClientSize(std::max(Width, MIN_CLIENT_WIDTH), std::max(Height, MIN_CLIENT_HEIGHT));
  }
}

void CMainFrame::OnActivate(bool) {
  if (GetViewMode() == FULLSCREEN_MODE) SetViewMode(WINDOWED_MODE);
}

// The element tree and the action state machine that take these arrive with
// their own issues.
void CMainFrame::OnMouseMove(int, int, int) {}
void CMainFrame::OnMouseButton(int, bool, int, int, int, int) {}
void CMainFrame::OnMouseWheel(int, int, int, int) {}
// Print Screen is no key of the game: it takes a screenshot.
void CMainFrame::OnKey(int KeyCode, bool Down, int) {
  if (Down && KeyCode == platform::KEY_PRINT_SCREEN) m_ScreenshotRequested = true;
}

bool CMainFrame::TakeScreenshotRequest() {
  const bool Requested = m_ScreenshotRequested;
  m_ScreenshotRequested = false;
  return Requested;
}

void CMainFrame::OnText(const std::string&) {}
