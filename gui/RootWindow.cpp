#include "gui/RootWindow.h"

CRootWindow::CRootWindow(int Width, int Height) { CRootWindow::SetSize(Width, Height); }

void CRootWindow::SetSize(int NewWidth, int NewHeight) {
  StoreSize(NewWidth, NewHeight);
  SetMainSize(Width, Height);
  if (m_GameView != nullptr) PlaceChild(m_GameView, 0, 0, Width, Height);
  Update();
}

void CRootWindow::ShowGameView(std::unique_ptr<CGUIComponent> View) {
  HideGameView();
  m_GameView = View.get();
  AddChild(std::move(View));
  PlaceChild(m_GameView, 0, 0, Width, Height);
}

void CRootWindow::HideGameView() {
  if (m_GameView == nullptr) return;
  if (m_KeyReceiver == m_GameView) m_KeyReceiver = nullptr;
  DeleteChild(m_GameView);
  m_GameView = nullptr;
}

void CRootWindow::KeyDown(int Key) {
  if (m_KeyReceiver != nullptr && HasChild(m_KeyReceiver)) m_KeyReceiver->KeyDown(Key);
}
