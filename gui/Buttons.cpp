#include "gui/Buttons.h"

#include <cstring>

#include "core/Clock.h"
#include "core/Exception.h"
#include "core/ProgramState.h"
#include "graphics/Fonts.h"
#include "graphics/Graphics.h"
#include "gui/SkinProperties.h"

namespace {

constexpr TRGBColor FLASH_COLOR{255, 160, 0};

std::string TextOf(const char* Text) { return Text != nullptr ? Text : ""; }

}  // namespace

// --- CGUIButton ---

CGUIButton::CGUIButton(int ButtonUp, int ButtonDown, const char* Tooltip, bool AutoRepeat, int X, int Y,
                       TEventTarget Target)
    : AutoRepeat(AutoRepeat), Target(Target), Tooltip(TextOf(Tooltip)) {
  SetSkins(ButtonUp, ButtonDown);
  SetPosition(X, Y);
}

void CGUIButton::SetSkins(int NewButtonUp, int NewButtonDown) {
  Check(NewButtonUp < NumberOfSkins, "_ButtonUp<NumberOfSkins", {"ButtonUp", NewButtonUp});
  Check(NewButtonDown < NumberOfSkins, "_ButtonDown<NumberOfSkins", {"ButtonDown", NewButtonDown});
  ButtonUp = NewButtonUp;
  ButtonDown = NewButtonDown;
  const TSkin& Natural = GetSkin(ButtonUp);
  StoreSize(Natural.width, Natural.height);
}

void CGUIButton::SetRadioGroup(CGUIRadioGroup* Group) {
  Check(RadioButtonGroup == nullptr, "RadioButtonGroup==NULL");
  Check(Group != nullptr, "Group!=NULL");
  RadioButtonGroup = Group;
  Group->Add(this);
}

bool CGUIButton::IsDown() const {
  if (RadioButtonGroup != nullptr && RadioButtonGroup->Active == this) return true;
  return Pressed && PointerInside;
}

int CGUIButton::CurrentSkin() const {
  if (IsDown()) return ButtonDown;
  if (Enabled || InactiveSkin == 0) return ButtonUp;
  return InactiveSkin;
}

void CGUIButton::Draw(int Surface, int x, int y) {
  DrawSkin(Surface, x, y, Width, Height, CurrentSkin(), 0, 0);
  DrawFlash(Surface, x, y);
}

// 300 milliseconds on, 300 off, until FlashUntil.
void CGUIButton::DrawFlash(int Surface, int x, int y) {
  if (FlashUntil == 0) return;
  if (GetProgramTime() >= FlashUntil) {
    FlashUntil = 0;
    return;
  }
  if ((GetTickCounter() / 3) % 2 == 1) DrawRectangleFrame(Surface, x, y, Width, Height, 1, FLASH_COLOR);
}

bool CGUIButton::MouseMove(int x, int y) {
  PointerInside = IsInside(x, y);
  return true;
}

// Answers true even when disabled, so that nothing behind takes the click.
bool CGUIButton::LeftDown(int x, int y, int) {
  if (Enabled) {
    Pressed = true;
    SetCapture(nullptr);
    PointerInside = IsInside(x, y);
  }
  return true;
}

bool CGUIButton::LeftUp(int x, int y, int) {
  if (!Pressed) return true;
  const bool Inside = PointerInside;
  ReleaseCapture(nullptr);
  PointerInside = ReleaseChecksPoint() ? IsInside(x, y) : Inside;
  if (PointerInside) {
    if (RadioButtonGroup != nullptr) RadioButtonGroup->Active = this;
    Click();
  }
  return true;
}

void CGUIButton::Click() { Target.Fire(); }

bool CGUIButton::MouseEvent(int, int, int Code) {
  if (Code == MOUSE_HELD_REPEAT && AutoRepeat && Pressed && PointerInside) Target.Fire();
  return true;
}

void CGUIButton::Hover(int, int) { SetTooltip(Tooltip); }

void CGUIButton::ReleaseCapture(CGUIComponent* Component) {
  Pressed = false;
  CGUIElement::ReleaseCapture(Component);
}

// --- CGUITextureButton ---

CGUITextureButton::CGUITextureButton(int Texture, const char* Tooltip, bool AutoRepeat, int X, int Y,
                                     TEventTarget Target)
    : CGUIButton(29, 30, Tooltip, AutoRepeat, X, Y, Target), Texture(Texture) {}

void CGUITextureButton::SetTexture(int Skin) {
  Check(Skin < NumberOfSkins, "_Texture<NumberOfSkins", {"Texture", Skin});
  Texture = Skin;
}

void CGUITextureButton::Draw(int Surface, int x, int y) {
  CGUIButton::Draw(Surface, x, y);
  const TSkinPoint& Offset = SkinProperties.Buttons.Texture;
  Check(x + Offset.x >= 0, "x+SkinProperties.Buttons.Texture.x>=0", {"x", x});
  Check(y + Offset.y >= 0, "y+SkinProperties.Buttons.Texture.y>=0", {"y", y});
  DrawSkinAt(Surface, x + Offset.x, y + Offset.y, Texture);
}

// --- CGUITextButton ---

CGUITextButton::CGUITextButton(const char* Text, const char* Tooltip, int X, int Y, TEventTarget Target,
                               int ButtonUp, int ButtonDown)
    : CGUIButton(ButtonUp, ButtonDown, Tooltip, false, X, Y, Target) {
  CGUITextButton::SetText(Text);
}

void CGUITextButton::SetText(const char* NewText) {
  Check(NewText != nullptr, "_Text!=NULL");
  Check(std::strlen(NewText) < 50, "strlen(_Text)<50", {"Length", static_cast<long long>(std::strlen(NewText))});
  Text = NewText;
}

void CGUITextButton::Draw(int Surface, int x, int y) {
  CGUIButton::Draw(Surface, x, y);
  const TextStyle& Style = Enabled ? SkinProperties.Buttons.TextEnabled : SkinProperties.Buttons.TextDisabled;
  const int Shift = IsDown() ? SkinProperties.Buttons.PressedTextOffset : 0;
  const int TextTop = y + (Height - TextHeight(Style.Font, Text, false)) / 2;
  PrintStyled(Surface, x + Width / 2 + Shift, TextTop + Shift, Style, Text.c_str());
}

// --- CGUIRotateButton ---

CGUIRotateButton::CGUIRotateButton(const std::array<TState, StateCount>& States, int X, int Y)
    : CGUIButton(States[0].ButtonUp, States[0].ButtonDown, "Adjust volume", false, X, Y, States[0].Target),
      States(States) {}

void CGUIRotateButton::SetState(int NewState) {
  Check(NewState >= 0 && NewState < StateCount, "In(State,0,StateCount-1)", {"State", NewState});
  State = NewState;
  SetSkins(States[State].ButtonUp, States[State].ButtonDown);
  Target = States[State].Target;
}

// The target of the state that was shown when clicked.
void CGUIRotateButton::Click() {
  const TEventTarget Fired = States[State].Target;
  Fired.Fire();
  SetState((State + 1) % StateCount);
}

// --- CGUIColoredButton ---

CGUIColoredButton::CGUIColoredButton(int ButtonUp, int ButtonDown, const char* Tooltip, int X, int Y,
                                     TEventTarget Target, int Red, int Green, int Blue)
    : CGUIButton(ButtonUp, ButtonDown, Tooltip, false, X, Y, Target), Red(Red), Green(Green), Blue(Blue) {}

void CGUIColoredButton::SetColor(int NewRed, int NewGreen, int NewBlue) {
  Red = NewRed;
  Green = NewGreen;
  Blue = NewBlue;
}

void CGUIColoredButton::Draw(int Surface, int x, int y) {
  FillRectangle(Surface, x, y, Width, Height, {Red, Green, Blue}, 255);
  CGUIButton::Draw(Surface, x, y);
}
