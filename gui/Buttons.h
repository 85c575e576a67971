#pragma once
// Buttons: a skin pair that shows pressed while the left button is held on
// it, and fires its target when released over it. The variants add a texture,
// a text, a checked state, a cycle of states or a coloured background.
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "gui/GUI.h"

class CGUIButton;

// Buttons of which one is shown down: the last one clicked. The owner keeps
// the group alive longer than its buttons.
class CGUIRadioGroup {
 public:
  CGUIButton* Active = nullptr;

  void Add(CGUIButton* Button) { Members.push_back(Button); }
  const std::vector<CGUIButton*>& GetMembers() const { return Members; }
  int Count() const { return static_cast<int>(Members.size()); }

 private:
  std::vector<CGUIButton*> Members;
};

class CGUIButton : public CGUIElement {
 public:
  CGUIButton(int ButtonUp, int ButtonDown, const char* Tooltip, bool AutoRepeat, int X, int Y, TEventTarget Target);

  void Draw(int Surface, int x, int y) override;
  bool MouseMove(int x, int y) override;
  bool LeftDown(int x, int y, int Flags) override;
  bool LeftUp(int x, int y, int Flags) override;
  bool MouseEvent(int x, int y, int Code) override;
  void Hover(int x, int y) override;
  void ReleaseCapture(CGUIComponent* Component) override;

  virtual bool IsDown() const;

  // Both skins must exist; the size becomes ButtonUp's natural size.
  void SetSkins(int NewButtonUp, int NewButtonDown);
  // 0: the up skin stands for the disabled look too.
  void SetInactiveSkin(int Skin) { InactiveSkin = Skin; }
  void SetEnabled(bool Value) { Enabled = Value; }
  bool IsEnabled() const { return Enabled; }
  void SetRadioGroup(CGUIRadioGroup* Group);
  void SetTarget(TEventTarget NewTarget) { Target = NewTarget; }
  // Until the program time Until the frame flashes; 0 stops it.
  void Flash(int Until) { FlashUntil = Until; }
  int GetFlashUntil() const { return FlashUntil; }
  bool IsPressed() const { return Pressed; }

 protected:
  // The skin that the present state shows.
  int CurrentSkin() const;
  // Fired on a release over the button, after the group took it.
  virtual void Click();
  // Whether the release's own point decides if it lies over the button; if
  // not, the last motion does.
  virtual bool ReleaseChecksPoint() const { return true; }
  bool IsInside(int x, int y) const { return x >= 0 && x < Width && y >= 0 && y < Height; }

  int ButtonUp = 0;
  int ButtonDown = 0;
  int InactiveSkin = 0;
  bool Pressed = false;
  bool PointerInside = false;
  bool AutoRepeat = false;
  TEventTarget Target;
  CGUIRadioGroup* RadioButtonGroup = nullptr;
  std::string Tooltip;
  bool Enabled = true;
  int FlashUntil = 0;

 private:
  void DrawFlash(int Surface, int x, int y);
};

// A button with a second skin drawn over its look.
class CGUITextureButton : public CGUIButton {
 public:
  CGUITextureButton(int Texture, const char* Tooltip, bool AutoRepeat, int X, int Y, TEventTarget Target);

  void Draw(int Surface, int x, int y) override;
  void SetTexture(int Skin);

 private:
  int Texture = 0;
};

class CGUITextButton : public CGUIButton {
 public:
  static constexpr int DefaultUp = 13;
  static constexpr int DefaultDown = 14;

  CGUITextButton(const char* Text, const char* Tooltip, int X, int Y, TEventTarget Target,
                 int ButtonUp = DefaultUp, int ButtonDown = DefaultDown);

  void Draw(int Surface, int x, int y) override;
  // Under 50 characters.
  virtual void SetText(const char* NewText);
  const std::string& GetText() const { return Text; }

 private:
  std::string Text;
};

// The checked state over a button class: each click toggles it just before
// the target fires, and while checked the button shows down.
template <typename TButton>
class TCheckable : public TButton {
 public:
  template <typename... TArgs>
  TCheckable(const char* TooltipOn, const char* TooltipOff, TArgs&&... Args)
      : TButton(std::forward<TArgs>(Args)...),
        TooltipOn(TooltipOn != nullptr ? TooltipOn : ""),
        TooltipOff(TooltipOff != nullptr ? TooltipOff : "") {}

  bool IsDown() const override { return Checked || TButton::IsDown(); }
  void Hover(int, int) override { SetTooltip(Checked ? TooltipOn : TooltipOff); }

  // Never fires the target.
  void SetChecked(bool Value) { Checked = Value; }
  bool IsChecked() const { return Checked; }

 protected:
  void Click() override {
    Checked = !Checked;
    this->Target.Fire();
  }
  bool ReleaseChecksPoint() const override { return false; }

 private:
  bool Checked = false;
  std::string TooltipOn;
  std::string TooltipOff;
};

class CGUICheckButton : public TCheckable<CGUIButton> {
 public:
  CGUICheckButton(int ButtonUp, int ButtonDown, const char* TooltipOn, const char* TooltipOff, int X, int Y,
                  TEventTarget Target)
      : TCheckable(TooltipOn, TooltipOff, ButtonUp, ButtonDown, nullptr, false, X, Y, Target) {}
};

class CGUITextCheckButton : public TCheckable<CGUITextButton> {
 public:
  CGUITextCheckButton(const char* Text, const char* TooltipOn, const char* TooltipOff, int X, int Y,
                      TEventTarget Target, int ButtonUp = DefaultUp, int ButtonDown = DefaultDown)
      : TCheckable(TooltipOn, TooltipOff, Text, nullptr, X, Y, Target, ButtonUp, ButtonDown) {}
};

// Three states, each with its own skins and target: a click fires the shown
// state's target and moves to the next state.
class CGUIRotateButton : public CGUIButton {
 public:
  static constexpr int StateCount = 3;

  struct TState {
    int ButtonUp = 0;
    int ButtonDown = 0;
    TEventTarget Target;
  };

  CGUIRotateButton(const std::array<TState, StateCount>& States, int X, int Y);

  // Shows the state without firing anything.
  void SetState(int NewState);
  int GetState() const { return State; }

 protected:
  void Click() override;

 private:
  std::array<TState, StateCount> States;
  int State = 0;
};

// Fills its rectangle with a colour before its own look.
class CGUIColoredButton : public CGUIButton {
 public:
  CGUIColoredButton(int ButtonUp, int ButtonDown, const char* Tooltip, int X, int Y, TEventTarget Target,
                    int Red, int Green, int Blue);

  void Draw(int Surface, int x, int y) override;
  void SetColor(int NewRed, int NewGreen, int NewBlue);

 private:
  int Red = 0;
  int Green = 0;
  int Blue = 0;
};
