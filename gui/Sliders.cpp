#include "gui/Sliders.h"

#include <algorithm>
#include <memory>
#include <string>

#include "core/Exception.h"
#include "graphics/Graphics.h"
#include "gui/Buttons.h"
#include "platform/Events.h"

namespace {

constexpr TKnobAxis SliderAxis{true, SkinProperties.Sliders.Slider, 201, 202, 203, 204,
                                  platform::KEY_LEFT, platform::KEY_RIGHT};
constexpr TKnobAxis ScrollbarAxis{false, SkinProperties.Sliders.Scrollbar, 193, 194, 195, 196,
                                     platform::KEY_UP, platform::KEY_DOWN};

// The arrow skins, released and pressed.
constexpr int SLIDER_LEFT = 205;
constexpr int SLIDER_LEFT_DOWN = 206;
constexpr int SLIDER_RIGHT = 207;
constexpr int SLIDER_RIGHT_DOWN = 208;
constexpr int SCROLL_UP = 197;
constexpr int SCROLL_UP_DOWN = 198;
constexpr int SCROLL_DOWN = 199;
constexpr int SCROLL_DOWN_DOWN = 200;

// The events that the arrow buttons send to their composite.
enum : int {
  SCROLLBAR_LESS = 3,
  SCROLLBAR_MORE = 4,
  SLIDER_LESS = 5,
  SLIDER_MORE = 6,
};

constexpr int SLIDER_PAGE_SIZE = 11;
// Track and the knob's start, middle and end.
constexpr int KNOB_ENTRIES = 4;

[[noreturn]] void UnknownEvent(int Event) { ThrowException("unknown event", {{"Event", std::to_string(Event)}}); }

template <typename T>
T* AddOwned(CGUIComposite& Parent, std::unique_ptr<T> Child) {
  T* Raw = Child.get();
  Parent.AddChildLast(std::move(Child));
  return Raw;
}

std::unique_ptr<CGUIButton> ArrowButton(int Up, int Down, CGUIComponent* Target, int Event) {
  return std::make_unique<CGUIButton>(Up, Down, "", true, 0, 0, TEventTarget{Target, Event});
}

}  // namespace

// --- CGUIKnobTrack ---

CGUIKnobTrack::CGUIKnobTrack(const TKnobAxis& Axis, int PageSize)
    : CGUIElement(KNOB_ENTRIES), PageSize(PageSize), m_Axis(Axis) {}

void CGUIKnobTrack::SetSize(int NewWidth, int NewHeight) {
  StoreSize(NewWidth, NewHeight);
  Update();
}

int CGUIKnobTrack::GetMinimumWidth() const { return m_Axis.Horizontal ? m_Axis.Size.Minimum : m_Axis.Size.Breadth; }
int CGUIKnobTrack::GetMinimumHeight() const { return m_Axis.Horizontal ? m_Axis.Size.Breadth : m_Axis.Size.Minimum; }

void CGUIKnobTrack::StoreRange(int NewMin, int NewMax, int NewValue, int NewPageSize) {
  Check(NewMin <= NewMax, "_Min<=_Max", {"_Min", NewMin}, {"_Max", NewMax});
  Check(NewValue >= NewMin && NewValue <= NewMax, "In(_Value,_Min,_Max)", {"_Value", NewValue}, {"_Min", NewMin});
  Min = NewMin;
  Max = NewMax;
  PageSize = NewPageSize;
  Active = Min != Max;
  Value = DraggingKnob ? std::clamp(Value, Min, Max) : NewValue;
  Update();
}

void CGUIKnobTrack::SetValue(int NewValue) {
  if (!DraggingKnob) ChangeValue(NewValue);
}

void CGUIKnobTrack::ChangeValue(int NewValue) {
  Value = std::clamp(NewValue, Min, Max);
  ValueChanged();
  Update();
}

int CGUIKnobTrack::SkinLength(int Skin) const {
  const TSkin& Rect = GetSkin(Skin);
  return m_Axis.Horizontal ? Rect.width : Rect.height;
}

DrawingListEntry CGUIKnobTrack::KnobEntry(int Skin, int Position, int Size) const {
  if (Size == 0) return m_Axis.Horizontal ? DrawingListEntry(Skin, Position, 0) : DrawingListEntry(Skin, 0, Position);
  return m_Axis.Horizontal ? DrawingListEntry(Skin, Position, 0, Size, Height)
                           : DrawingListEntry(Skin, 0, Position, Width, Size);
}

void CGUIKnobTrack::Update() {
  DrawingList.assign(KNOB_ENTRIES, DrawingListEntry());
  DrawingList[0] = DrawingListEntry(m_Axis.Track, 0, 0, Width, Height);
  if (Active) PlaceKnob();
}

void CGUIKnobTrack::PlaceKnob() {
  const int L = Length();
  const int StartLength = SkinLength(m_Axis.KnobStart);
  const int EndLength = SkinLength(m_Axis.KnobEnd);
  const float R = static_cast<float>(PageSize) / static_cast<float>(Max - Min + PageSize);
  KnobSize = R >= 1.0F ? L : static_cast<int>(static_cast<float>(L) * R);
  KnobSize = std::max(KnobSize, StartLength + EndLength);
  KnobPosition = (Value - Min) * (L - KnobSize) / (Max - Min);
  if (KnobPosition + KnobSize > L) KnobPosition = L - KnobSize;
  DrawingList[1] = KnobEntry(m_Axis.KnobStart, KnobPosition, 0);
  DrawingList[2] = KnobEntry(m_Axis.KnobMiddle, KnobPosition + StartLength, KnobSize - StartLength - EndLength);
  DrawingList[3] = KnobEntry(m_Axis.KnobEnd, KnobPosition + KnobSize - EndLength, 0);
}

bool CGUIKnobTrack::LeftDown(int x, int y, int) {
  if (!Active) return true;
  if (!Held) SetCapture(nullptr);
  Held = true;
  const int p = Along(x, y);
  if (p >= KnobPosition && p <= KnobPosition + KnobSize) {
    GrabOffset = p - KnobPosition;
    DraggingKnob = true;
  }
  return true;
}

bool CGUIKnobTrack::MouseMove(int x, int y) {
  if (Active && DraggingKnob) {
    const int p = Along(x, y);
    ChangeValue(((p - GrabOffset) * (Max - Min + 1)) / std::max(Length() - KnobSize + 1, 1) + Min);
  }
  return true;
}

bool CGUIKnobTrack::LeftUp(int x, int y, int) {
  if (!Active) return true;
  if (Held) {
    ReleaseCapture(nullptr);
    Held = false;
  }
  if (IsOnWidget(x, y)) StepBesideKnob(Along(x, y));
  return true;
}

void CGUIKnobTrack::StepBesideKnob(int p) {
  const int Distance = PageMode ? PageSize - 1 : 1;
  if (p < KnobPosition) {
    ChangeValue(Value - Distance);
  } else if (p > KnobPosition + KnobSize) {
    ChangeValue(Value + Distance);
  }
}

bool CGUIKnobTrack::MouseEvent(int x, int y, int Code) {
  if (!Active) return true;
  if (Code == MOUSE_WHEEL_UP) {
    ChangeValue(Value - Step);
  } else if (Code == MOUSE_WHEEL_DOWN) {
    ChangeValue(Value + Step);
  } else if (Code == MOUSE_HELD_REPEAT && Held && !DraggingKnob && IsOnWidget(x, y)) {
    StepBesideKnob(Along(x, y));
  }
  return true;
}

void CGUIKnobTrack::KeyDown(int Key) {
  if (!Active) return;
  if (Key == m_Axis.LessKey) {
    ChangeValue(Value - Step);
  } else if (Key == m_Axis.MoreKey) {
    ChangeValue(Value + Step);
  } else {
    ChangeValue(Value);
  }
}

// Losing the mouse, however it happens, ends the drag.
void CGUIKnobTrack::ReleaseCapture(CGUIComponent* Component) {
  DraggingKnob = false;
  Held = false;
  CGUIElement::ReleaseCapture(Component);
}

// --- CGUISlider, CGUIScrollbar ---

CGUISlider::CGUISlider(int X, int Y, int Width, int Height, CGUIComponent* Element, int Event)
    : CGUIKnobTrack(SliderAxis, SLIDER_PAGE_SIZE), Target{Element, Event} {
  SetPosition(X, Y);
  SetSize(Width, Height);
}

CGUISlider::CGUISlider(const TSliderRange& Range, CGUIComponent* Element, int Event)
    : CGUIKnobTrack(SliderAxis, Range.PageSize), Target{Element, Event} {
  StoreRange(Range.Min, Range.Max, Range.Value, Range.PageSize);
}

void CGUISlider::SetRange(int NewMin, int NewMax, int NewValue) { StoreRange(NewMin, NewMax, NewValue, PageSize); }

CGUIScrollbar::CGUIScrollbar(int X, int Y, int Width, int Height) : CGUIKnobTrack(ScrollbarAxis, 0) {
  SetPosition(X, Y);
  SetSize(Width, Height);
}

void CGUIScrollbar::SetRange(int NewMin, int NewMax, int NewValue, int NewPageSize) {
  StoreRange(NewMin, NewMax, NewValue, NewPageSize);
}

// --- CGUIButtonSlider ---

CGUIButtonSlider::CGUIButtonSlider(int X, int Y, int Width, int)
    : CGUIButtonSlider(0, 0, 0, SLIDER_PAGE_SIZE, Width, nullptr, 0) {
  SetPosition(X, Y);
}

CGUIButtonSlider::CGUIButtonSlider(int Min, int Max, int Value, int PageSize, int Width, CGUIComponent* Element,
                                   int Event) {
  LessButton = AddOwned(*this, ArrowButton(SLIDER_LEFT, SLIDER_LEFT_DOWN, this, SLIDER_LESS));
  Slider = AddOwned(*this, std::make_unique<CGUISlider>(TSliderRange{Min, Max, Value, PageSize}, Element, Event));
  MoreButton = AddOwned(*this, ArrowButton(SLIDER_RIGHT, SLIDER_RIGHT_DOWN, this, SLIDER_MORE));
  Slider->SetPageMode(true);
  Resize(Width, SkinProperties.Sliders.ButtonSlider.Breadth);
}

void CGUIButtonSlider::Resize(int NewWidth, int) {
  const int Breadth = SkinProperties.Sliders.ButtonSlider.Breadth;
  const int Inner = std::max(NewWidth - LessButton->getWidth() - MoreButton->getWidth(), Slider->GetMinimumWidth());
  Slider->SetSize(Inner, Breadth);
  StoreSize(LessButton->getWidth() + Inner + MoreButton->getWidth(), Breadth);
  LessButton->SetPosition(0, 0);
  Slider->SetPosition(LessButton->getWidth(), 0);
  MoreButton->SetPosition(LessButton->getWidth() + Inner, 0);
}

// The wheel works where no button took it, the gaps included.
bool CGUIButtonSlider::MouseEvent(int x, int y, int Code) {
  if (CGUIComposite::MouseEvent(x, y, Code)) return true;
  return Slider->MouseEvent(x - Slider->getX(), y - Slider->getY(), Code);
}

void CGUIButtonSlider::OnEvent(int Event) {
  switch (Event) {
    case SLIDER_LESS:
      Slider->SetValue(Slider->GetValue() - Slider->GetStep());
      break;
    case SLIDER_MORE:
      Slider->SetValue(Slider->GetValue() + Slider->GetStep());
      break;
    default:
      UnknownEvent(Event);
  }
}

// --- CGUIButtonScrollbar ---

CGUIButtonScrollbar::CGUIButtonScrollbar(int X, int Y, int Width, int Height, int Step) {
  Check(Step > 0, "_ButtonRange>0", {"_ButtonRange", Step});
  LessButton = AddOwned(*this, ArrowButton(SCROLL_UP, SCROLL_UP_DOWN, this, SCROLLBAR_LESS));
  Scrollbar = AddOwned(*this, std::make_unique<CGUIScrollbar>(0, 0, 0, 0));
  MoreButton = AddOwned(*this, ArrowButton(SCROLL_DOWN, SCROLL_DOWN_DOWN, this, SCROLLBAR_MORE));
  Scrollbar->SetStep(Step);
  Scrollbar->SetPageMode(true);
  SetPosition(X, Y);
  Resize(Width, Height);
}

void CGUIButtonScrollbar::Resize(int, int NewHeight) {
  const int Breadth = SkinProperties.Sliders.ButtonScrollbar.Breadth;
  const int Inner =
      std::max(NewHeight - LessButton->getHeight() - MoreButton->getHeight(), Scrollbar->GetMinimumHeight());
  Scrollbar->SetSize(Breadth, Inner);
  StoreSize(Breadth, LessButton->getHeight() + Inner + MoreButton->getHeight());
  LessButton->SetPosition(0, 0);
  Scrollbar->SetPosition(0, LessButton->getHeight());
  MoreButton->SetPosition(0, LessButton->getHeight() + Inner);
}

bool CGUIButtonScrollbar::MouseEvent(int x, int y, int Code) {
  if (CGUIComposite::MouseEvent(x, y, Code)) return true;
  return Scrollbar->MouseEvent(x - Scrollbar->getX(), y - Scrollbar->getY(), Code);
}

void CGUIButtonScrollbar::OnEvent(int Event) {
  switch (Event) {
    case SCROLLBAR_LESS:
      Scrollbar->SetValue(Scrollbar->GetValue() - Scrollbar->GetStep());
      break;
    case SCROLLBAR_MORE:
      Scrollbar->SetValue(Scrollbar->GetValue() + Scrollbar->GetStep());
      break;
    default:
      UnknownEvent(Event);
  }
}
