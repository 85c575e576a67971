#pragma once
// Value widgets: a knob on a track that stands for a value in a range. The
// slider runs along x and reports each change through its target; the scroll
// bar runs along y and reports nothing, as its owner reads the value when it
// draws. Both come bare and as a composite with two arrow buttons.
#include "gui/GUI.h"
#include "gui/SkinProperties.h"

class CGUIButton;

// What sets the two value widgets apart: the axis, the skins and the keys.
struct TKnobAxis {
  bool Horizontal = true;
  TSkinSize Size;
  int Track = 0;
  int KnobStart = 0;
  int KnobMiddle = 0;
  int KnobEnd = 0;
  int LessKey = 0;
  int MoreKey = 0;
};

// The knob arithmetic, the mouse and the keys, shared by slider and bar. Does
// nothing while inactive, i.e. while Min equals Max.
class CGUIKnobTrack : public CGUIElement {
 public:
  void SetSize(int NewWidth, int NewHeight) override;
  int GetMinimumWidth() const override;
  int GetMinimumHeight() const override;
  void Update() override;
  bool LeftDown(int x, int y, int Flags) override;
  bool MouseMove(int x, int y) override;
  bool LeftUp(int x, int y, int Flags) override;
  bool MouseEvent(int x, int y, int Code) override;
  void KeyDown(int Key) override;
  void ReleaseCapture(CGUIComponent* Component) override;

  // Limited to the range; kept while the knob is held, so that a refresh
  // from outside doesn't pull it from under the mouse.
  void SetValue(int NewValue);
  void SetStep(int NewStep) { Step = NewStep; }
  // A click beside the knob moves by a page rather than by 1.
  void SetPageMode(bool Value) { PageMode = Value; }

  int GetStep() const { return Step; }
  int GetMin() const { return Min; }
  int GetMax() const { return Max; }
  int GetValue() const { return Value; }
  int GetPageSize() const { return PageSize; }
  int GetKnobSize() const { return KnobSize; }
  int GetKnobPosition() const { return KnobPosition; }
  bool IsDraggingKnob() const { return DraggingKnob; }
  bool IsActive() const { return Active; }

 protected:
  CGUIKnobTrack(const TKnobAxis& Axis, int PageSize);

  // Range checks as written; the value is kept while the knob is held.
  void StoreRange(int NewMin, int NewMax, int NewValue, int NewPageSize);
  // Every change of the value ends here: limited, reported, laid out.
  void ChangeValue(int NewValue);
  virtual void ValueChanged() {}

 private:
  int Length() const { return m_Axis.Horizontal ? Width : Height; }
  int Along(int x, int y) const { return m_Axis.Horizontal ? x : y; }
  bool IsOnWidget(int x, int y) const { return x >= 0 && x <= Width && y >= 0 && y <= Height; }
  // Back before the knob, forward behind it, by 1 or a page.
  void StepBesideKnob(int p);
  void PlaceKnob();
  // A skin along the axis at Position, Size long (0: its natural size).
  DrawingListEntry KnobEntry(int Skin, int Position, int Size) const;
  int SkinLength(int Skin) const;

 protected:
  int Step = 1;
  int Min = 0;
  int Max = 0;
  int Value = 0;
  int PageSize = 0;
  bool DraggingKnob = false;
  bool Held = false;
  int GrabOffset = 0;
  int KnobSize = 0;
  int KnobPosition = 0;
  bool PageMode = false;
  bool Active = false;

 private:
  const TKnobAxis& m_Axis;
};

// A slider made by its range rather than its place; the two constructors
// would otherwise take the same six numbers.
struct TSliderRange {
  int Min = 0;
  int Max = 0;
  int Value = 0;
  int PageSize = 0;
};

// Horizontal; every change fires Target, whether the value moved or not.
class CGUISlider : public CGUIKnobTrack {
 public:
  // Inactive until SetRange.
  CGUISlider(int X, int Y, int Width, int Height, CGUIComponent* Element, int Event);
  CGUISlider(const TSliderRange& Range, CGUIComponent* Element, int Event);

  // Doesn't fire the target.
  void SetRange(int NewMin, int NewMax, int NewValue);
  void SetTarget(TEventTarget NewTarget) { Target = NewTarget; }

 protected:
  void ValueChanged() override { Target.Fire(); }

 private:
  TEventTarget Target;
};

// Vertical; reports nothing.
class CGUIScrollbar : public CGUIKnobTrack {
 public:
  CGUIScrollbar(int X, int Y, int Width, int Height);

  void SetRange(int NewMin, int NewMax, int NewValue, int NewPageSize);
};

// A slider between a left and a right arrow button.
class CGUIButtonSlider : public CGUIComposite {
 public:
  CGUIButtonSlider(int X, int Y, int Width, int Height);
  CGUIButtonSlider(int Min, int Max, int Value, int PageSize, int Width, CGUIComponent* Element, int Event);

  void SetSize(int NewWidth, int NewHeight) override { Resize(NewWidth, NewHeight); }
  int GetMinimumWidth() const override { return SkinProperties.Sliders.ButtonSlider.Minimum; }
  int GetMinimumHeight() const override { return SkinProperties.Sliders.ButtonSlider.Breadth; }
  bool MouseEvent(int x, int y, int Code) override;
  void KeyDown(int Key) override { Slider->KeyDown(Key); }
  void OnEvent(int Event) override;
  // The height is always the breadth; the width is at least the minimum.
  void Resize(int NewWidth, int NewHeight);

  CGUISlider& GetSlider() const { return *Slider; }

 private:
  CGUISlider* Slider = nullptr;
  CGUIButton* LessButton = nullptr;
  CGUIButton* MoreButton = nullptr;
};

// A scroll bar between an up and a down arrow button.
class CGUIButtonScrollbar : public CGUIComposite {
 public:
  // Step is what the arrows, the wheel and the keys move by; above 0.
  CGUIButtonScrollbar(int X, int Y, int Width, int Height, int Step);

  void SetSize(int NewWidth, int NewHeight) override { Resize(NewWidth, NewHeight); }
  int GetMinimumWidth() const override { return SkinProperties.Sliders.ButtonScrollbar.Breadth; }
  int GetMinimumHeight() const override { return SkinProperties.Sliders.ButtonScrollbar.Minimum; }
  bool MouseEvent(int x, int y, int Code) override;
  void KeyDown(int Key) override { Scrollbar->KeyDown(Key); }
  void OnEvent(int Event) override;
  // The width is always the breadth; the height is at least the minimum.
  void Resize(int NewWidth, int NewHeight);

  CGUIScrollbar& GetScrollbar() const { return *Scrollbar; }

 private:
  CGUIScrollbar* Scrollbar = nullptr;
  CGUIButton* LessButton = nullptr;
  CGUIButton* MoreButton = nullptr;
};
