#include "gui/RootWindow.h"

CRootWindow::CRootWindow(int Width, int Height) { CRootWindow::SetSize(Width, Height); }

void CRootWindow::SetSize(int NewWidth, int NewHeight) {
  StoreSize(NewWidth, NewHeight);
  SetMainSize(Width, Height);
  Update();
}

void CRootWindow::KeyDown(int Key) {
  if (m_KeyReceiver != nullptr && HasChild(m_KeyReceiver)) m_KeyReceiver->KeyDown(Key);
}
