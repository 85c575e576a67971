#pragma once
// Elements for tests of the real client (KELMO_TEST_ELEMENTS=1): two probes
// side by side that write every event they receive to the standard error as
// one line, "probe <name> <event> ...". A left press on a probe takes the
// mouse until the release, so a drag keeps reporting to it; keys that no
// binding takes go to probe A, and Ctrl+L is bound to its event 7.
#include <string>

#include "gui/GUI.h"
#include "gui/RootWindow.h"

class CEventProbe : public CGUIElement {
 public:
  explicit CEventProbe(std::string Name);
  ~CEventProbe() override;

  void SetSize(int Width, int Height) override;
  void Update() override;
  void Draw(int Surface, int x, int y) override;
  bool MouseMove(int x, int y) override;
  bool LeftDown(int x, int y, int Flags) override;
  bool LeftUp(int x, int y, int Flags) override;
  bool LeftDouble(int x, int y, int Flags) override;
  bool RightUp(int x, int y, int Flags) override;
  bool MouseEvent(int x, int y, int Code) override;
  void Hover(int x, int y) override;
  void KeyDown(int Key) override;
  void OnEvent(int Event) override;
  void ReleaseCapture(CGUIComponent* Component) override;

  // Binds BOUND_KEY to this probe's BOUND_EVENT until the probe goes.
  void BindKey();

  // The key that is bound to this probe's event 7.
  static constexpr int BOUND_KEY = 0x44C;
  static constexpr int BOUND_EVENT = 7;

 private:
  void Report(const std::string& Line);

  std::string m_Name;
  std::string m_LastLine;
  bool m_Dragging = false;
  bool m_BoundKey = false;
};

// True if the environment asks for the probes.
bool TestElementsWanted();
// Adds the two probes to Root.
void AddTestElements(CRootWindow& Root);
