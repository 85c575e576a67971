#pragma once
// The root of the tree until the game's main window takes its place: an
// empty desktop that keeps MainWidth and MainHeight and hands keys to the
// child that asks for them.
#include "gui/GUI.h"

class CRootWindow : public CGUIComposite {
 public:
  CRootWindow(int Width, int Height);

  void SetSize(int Width, int Height) override;
  void KeyDown(int Key) override;

  // Keys that no binding takes go to Receiver, a child of the root or null.
  void SetKeyReceiver(CGUIComponent* Receiver) { m_KeyReceiver = Receiver; }
  // The game view: a child that covers the whole root and follows its size.
  void ShowGameView(std::unique_ptr<CGUIComponent> View);
  void HideGameView();
  CGUIComponent* GetGameView() const { return m_GameView; }

 private:
  CGUIComponent* m_KeyReceiver = nullptr;
  CGUIComponent* m_GameView = nullptr;
};
