#pragma once
// Elements that remember what reached them, for tests of the tree.
#include <functional>
#include <string>
#include <vector>

#include "core/Exception.h"
#include "gui/GUI.h"

namespace guitest {

// The text of the failure that Action raises; empty if it raises none.
inline std::string FailureOf(const std::function<void()>& Action) {
  try {
    Action();
  } catch (const TMyException& Error) {
    return Error.Text();
  }
  return "";
}

class CRecordingElement : public CGUIElement {
 public:
  CRecordingElement(std::vector<std::string>& Log, std::string Name, bool Answer = true)
      : m_Log(Log), m_Name(std::move(Name)), m_Answer(Answer) {}

  bool MouseMove(int x, int y) override { return Note("move", x, y); }
  bool LeftDown(int x, int y, int) override {
    Note("down", x, y);
    if (m_Drags && m_Answer && !m_Captured) {
      SetCapture(nullptr);
      m_Captured = true;
    }
    return m_Answer;
  }
  bool LeftUp(int x, int y, int Flags) override {
    Note("up", x, y, Flags);
    if (m_Captured) {
      m_Captured = false;
      ReleaseCapture(nullptr);
    }
    return m_Answer;
  }
  bool RightUp(int x, int y, int) override { return Note("right", x, y); }
  bool MouseEvent(int x, int y, int Code) override { return Note("wheel" + std::to_string(Code), x, y); }
  void Hover(int x, int y) override {
    Note("hover", x, y);
    SetTooltip(m_Name + " tip");
  }
  void KeyDown(int Key) override { m_Log.push_back(m_Name + " key " + std::to_string(Key)); }
  void OnEvent(int Event) override { m_Log.push_back(m_Name + " event " + std::to_string(Event)); }

  // A press takes the mouse until the release.
  void SetDrags(bool Drags) { m_Drags = Drags; }

 private:
  bool Note(const std::string& What, int x, int y, int Flags = -1) {
    std::string Line = m_Name + " " + What + " " + std::to_string(x) + "," + std::to_string(y);
    if (Flags >= 0) Line += " " + std::to_string(Flags);
    m_Log.push_back(Line);
    return m_Answer;
  }

  std::vector<std::string>& m_Log;
  std::string m_Name;
  bool m_Answer;
  bool m_Drags = false;
  bool m_Captured = false;
};

// A widget that is switched off: it uses no click, but still takes it, so
// that nothing under it reacts.
class CDisabledButton : public CGUIElement {
 public:
  explicit CDisabledButton(std::vector<std::string>& Log) : m_Log(Log) {}
  bool LeftDown(int, int, int) override {
    if (m_Enabled) m_Log.push_back("button pressed");
    return true;
  }
  bool LeftUp(int, int, int) override {
    if (m_Enabled) m_Log.push_back("button released");
    return true;
  }

 private:
  std::vector<std::string>& m_Log;
  bool m_Enabled = false;
};

template <typename T, typename... TArgs>
T* AddLast(CGUIComposite& Parent, int x, int y, int Width, int Height, TArgs&&... Args) {
  auto Child = std::make_unique<T>(std::forward<TArgs>(Args)...);
  T* Raw = Child.get();
  Parent.AddChildLast(std::move(Child));
  Raw->SetPosition(x, y);
  Raw->SetSize(Width, Height);
  return Raw;
}

}  // namespace guitest
