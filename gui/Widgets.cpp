#include "gui/Widgets.h"

#include <algorithm>
#include <cstring>

#include "core/Exception.h"
#include "graphics/Graphics.h"
#include "gui/Buttons.h"
#include "gui/Routing.h"
#include "gui/SkinProperties.h"
#include "gui/TextRectangle.h"

namespace {

constexpr int RESIZE_CURSOR = 2;

enum : int {
  CHECKBOX_TOP = 188,
  CHECKBOX_LEFT = 186,
  CHECKBOX_RIGHT = 187,
  CHECKBOX_BOTTOM = 189,
  CHECKBOX_CHECKED = 190,
  CHECKBOX_UNCHECKED = 191,
  TRACK_LEFT = 322,
  TRACK_MIDDLE = 323,
  TRACK_RIGHT = 324,
  FILL_LEFT = 325,
  FILL_MIDDLE = 326,
  FILL_RIGHT = 327,
  RESIZER = 47,
  LINK_EVENT = 1,
};

int SkinWidth(int Skin) { return GetSkin(Skin).width; }
int SkinHeight(int Skin) { return GetSkin(Skin).height; }

}  // namespace

// --- CGUICheckbox ---

CGUICheckbox::CGUICheckbox(const char* Text, bool Checked, TEventTarget Target)
    : CGUIComposite(4), Checked(Checked), Target(Target) {
  Check(Text != nullptr, "_Text!=NULL");
  Check(std::strlen(Text) < 50, "strlen(_Text)<50", {"Length", static_cast<long long>(std::strlen(Text))});
  auto Child = std::make_unique<CGUITextRectangle>(SkinProperties.CheckBox.TextEnabled, Text);
  this->Text = Child.get();
  AddChild(std::move(Child));
}

void CGUICheckbox::SetSize(int NewWidth, int NewHeight) {
  StoreSize(NewWidth, NewHeight);
  Update();
}

void CGUICheckbox::Update() {
  const int TopHeight = SkinHeight(CHECKBOX_TOP);
  const int LeftWidth = SkinWidth(CHECKBOX_LEFT);
  const int RightWidth = SkinWidth(CHECKBOX_RIGHT);
  const int BottomHeight = SkinHeight(CHECKBOX_BOTTOM);
  DrawingList[0] = {CHECKBOX_TOP, 0, 0, Width, TopHeight};
  DrawingList[1] = {CHECKBOX_LEFT, 0, TopHeight, LeftWidth, Height - TopHeight};
  DrawingList[2] = {CHECKBOX_RIGHT, Width - RightWidth, TopHeight, RightWidth, Height - TopHeight};
  DrawingList[3] = {CHECKBOX_BOTTOM, LeftWidth, Height - BottomHeight, Width - LeftWidth - RightWidth, BottomHeight};
  if (Width > 0 && Height > 0) PlaceText();
  CGUIComposite::Update();
}

void CGUICheckbox::PlaceText() {
  const TSkinMargins& Place = SkinProperties.CheckBox.Text;
  PlaceChild(Text, Place.Left, Place.Top, Place.Right, Place.Bottom);
}

void CGUICheckbox::Draw(int Surface, int x, int y) {
  CGUIComposite::Draw(Surface, x, y);
  const TSkinPoint& Item = SkinProperties.CheckBox.Item;
  Check(x + Item.x >= 0, "x+SkinProperties.CheckBox.Item.x>=0", {"x", x});
  Check(y + Item.y >= 0, "y+SkinProperties.CheckBox.Item.y>=0", {"y", y});
  DrawSkinAt(Surface, x + Item.x, y + Item.y, Enabled && Checked ? CHECKBOX_CHECKED : CHECKBOX_UNCHECKED);
}

bool CGUICheckbox::LeftUp(int, int, int) {
  if (Enabled) {
    Checked = !Checked;
    Target.Fire();
  }
  return true;
}

void CGUICheckbox::SetEnabled(bool Value) {
  Enabled = Value;
  const TextStyle& Style = Value ? SkinProperties.CheckBox.TextEnabled : SkinProperties.CheckBox.TextDisabled;
  auto Child = std::make_unique<CGUITextRectangle>(Style, Text->GetText().c_str());
  Child->SetPosition(Text->getX(), Text->getY());
  Child->SetSize(Text->getWidth(), Text->getHeight());
  DeleteChild(Text);
  Text = Child.get();
  AddChild(std::move(Child));
}

// --- CGUILink ---

CGUILink::CGUILink(const char* Text, const char* ButtonText, const char* Destination, TCallback Callback,
                   const TextStyle& Style)
    : Callback(std::move(Callback)) {
  Check(Destination != nullptr, "_Destination!=NULL");
  this->Destination = Destination;
  auto Label = std::make_unique<CGUITextRectangle>(Style, Text);
  auto Go = std::make_unique<CGUITextButton>(ButtonText, Destination, 0, 0, TEventTarget{this, LINK_EVENT});
  this->Text = Label.get();
  Button = Go.get();
  AddChildLast(std::move(Label));
  AddChildLast(std::move(Go));
  SetSize(this->Text->getWidth() + Button->getWidth(), std::max(this->Text->getHeight(), Button->getHeight()));
}

int CGUILink::GetMinimumWidth() const { return Button->getWidth(); }
int CGUILink::GetMinimumHeight() const { return Button->getHeight(); }

void CGUILink::SetSize(int NewWidth, int NewHeight) {
  StoreSize(NewWidth, NewHeight);
  Update();
}

// The shorter of text and button is centred against the taller.
void CGUILink::Update() {
  const int ButtonWidth = Button->getWidth();
  const int TextWidthLeft = Width - ButtonWidth;
  Check(TextWidthLeft > 0, "Width-ButtonWidth>0", {"Width", Width}, {"ButtonWidth", ButtonWidth});
  const int Difference = Text->getHeight() - Button->getHeight();
  Text->SetPosition(0, Difference < 0 ? -Difference / 2 : 0);
  Text->SetSize(TextWidthLeft, Text->getHeight());
  Button->SetPosition(TextWidthLeft, Difference > 0 ? Difference / 2 : 0);
  CGUIComposite::Update();
}

void CGUILink::OnEvent(int Event) {
  if (Event == LINK_EVENT && Callback) Callback(Destination);
}

// --- CGUIProgressbar ---

CGUIProgressbar::CGUIProgressbar(int X, int Y, int Width, int Height) : CGUIElement(6) {
  SetPosition(X, Y);
  SetSize(Width, Height);
}

int CGUIProgressbar::GetMinimumWidth() const {
  return SkinWidth(TRACK_LEFT) + SkinWidth(TRACK_MIDDLE) + SkinWidth(TRACK_RIGHT);
}

int CGUIProgressbar::GetMinimumHeight() const { return SkinHeight(TRACK_LEFT); }

void CGUIProgressbar::SetSize(int NewWidth, int NewHeight) {
  StoreSize(NewWidth, NewHeight);
  Update();
}

void CGUIProgressbar::SetMaximum(int Value) {
  Check(Value > 0, "maximum>0", {"maximum", Value});
  Maximum = Value;
  SetCurrent(Current);
}

void CGUIProgressbar::SetCurrent(int Value) {
  Current = std::clamp(Value, 0, Maximum);
  Update();
}

// The track always; the fill's left end, middle and right end as far as it reaches.
void CGUIProgressbar::Update() {
  const int TrackLeft = SkinWidth(TRACK_LEFT);
  const int TrackRight = SkinWidth(TRACK_RIGHT);
  DrawingList[0] = {TRACK_LEFT, 0, 0, TrackLeft, Height};
  DrawingList[1] = {TRACK_MIDDLE, TrackLeft, 0, Width - TrackLeft - TrackRight, Height};
  DrawingList[2] = {TRACK_RIGHT, Width - TrackRight, 0, TrackRight, Height};
  int Fill = static_cast<int>(static_cast<long long>(Current) * Width / Maximum);
  DrawingList[3] = Fill >= 1 ? DrawingListEntry{FILL_LEFT, 0, 0, Fill, Height} : DrawingListEntry{};
  const int RightEdge = Width - SkinWidth(FILL_RIGHT);
  DrawingList[5] = {};
  if (Fill > RightEdge) {
    DrawingList[5] = {FILL_RIGHT, RightEdge, 0, Fill - RightEdge, Height};
    Fill = RightEdge;
  }
  const int FillLeft = SkinWidth(FILL_LEFT);
  DrawingList[4] = Fill > FillLeft ? DrawingListEntry{FILL_MIDDLE, FillLeft, 0, Fill - FillLeft, Height}
                                   : DrawingListEntry{};
}

// --- CGUIDecorateLine ---

CGUIDecorateLine::CGUIDecorateLine(bool Horizontal, int X, int Y, int Length)
    : CGUIElement(2), Horizontal(Horizontal) {
  SetPosition(X, Y);
  if (Horizontal) {
    SetSize(Length, SkinHeight(10) + SkinHeight(9));
  } else {
    SetSize(SkinWidth(12) + SkinWidth(11), Length);
  }
}

void CGUIDecorateLine::SetSize(int NewWidth, int NewHeight) {
  StoreSize(NewWidth, NewHeight);
  Update();
}

void CGUIDecorateLine::Update() {
  if (Horizontal) {
    DrawingList[0] = {10, 0, 0, Width, SkinHeight(10)};
    DrawingList[1] = {9, 0, SkinHeight(10), Width, SkinHeight(9)};
  } else {
    DrawingList[0] = {12, 0, 0, SkinWidth(12), Height};
    DrawingList[1] = {11, SkinWidth(12), 0, SkinWidth(11), Height};
  }
}

// --- CGUIResizer ---

CGUIResizer::CGUIResizer(CGUIComponent* ToResize, bool Invisible)
    : CGUIElement(1), ToResize(ToResize), Invisible(Invisible) {
  Check(ToResize != nullptr, "_ToResize!=NULL");
}

void CGUIResizer::SetDirections(bool X, bool Y) {
  ResizeX = X;
  ResizeY = Y;
}

void CGUIResizer::SetSize(int NewWidth, int NewHeight) {
  StoreSize(NewWidth, NewHeight);
  Update();
}

void CGUIResizer::Update() {
  DrawingList[0] = Invisible ? DrawingListEntry{} : DrawingListEntry{RESIZER, 0, 0, Width, Height};
}

bool CGUIResizer::LeftDown(int x, int y, int) {
  Dragging = true;
  SetCapture(nullptr);
  StartX = x;
  StartY = y;
  return true;
}

bool CGUIResizer::MouseMove(int x, int y) {
  SetMouseCursor(RESIZE_CURSOR);
  if (Dragging) Resize(x, y);
  return true;
}

bool CGUIResizer::LeftUp(int x, int y, int) {
  if (Dragging) {
    Resize(x, y);
    ReleaseCapture(nullptr);
  }
  return true;
}

void CGUIResizer::ReleaseCapture(CGUIComponent* Component) {
  Dragging = false;
  CGUIElement::ReleaseCapture(Component);
}

// The resizer moves with the element, so the start point stays valid in its own coordinates.
void CGUIResizer::Resize(int x, int y) {
  ToResize->SetSize(ToResize->getWidth() + (ResizeX ? x - StartX : 0),
                    ToResize->getHeight() + (ResizeY ? y - StartY : 0));
}

// --- CGUIFrameWindow ---

CGUIFrameWindow::CGUIFrameWindow(std::unique_ptr<CGUIComponent> Window)
    : CGUIFrameWindow(PanelSkins, std::move(Window), 0) {}

CGUIFrameWindow::CGUIFrameWindow(TKind Kind, std::unique_ptr<CGUIComponent> Window, int Border)
    : CGUIFrameWindow(Kind == TKind::Thin ? ThinSkins : FramedSkins, std::move(Window), Border) {}

CGUIFrameWindow::CGUIFrameWindow(const TSkins& Skins, std::unique_ptr<CGUIComponent> Window, int Border)
    : CGUIComposite(9), Skins(Skins), Border(Border) {
  Check(Window != nullptr, "_Window!=NULL");
  this->Window = Window.get();
  AddChild(std::move(Window));
}

int CGUIFrameWindow::GetMinimumWidth() const {
  return SkinWidth(Skins.Left) + SkinWidth(Skins.Right) + 2 * Border;
}

int CGUIFrameWindow::GetMinimumHeight() const {
  return SkinHeight(Skins.Top) + SkinHeight(Skins.Bottom) + 2 * Border;
}

void CGUIFrameWindow::SetSize(int NewWidth, int NewHeight) {
  Check(NewWidth >= GetMinimumWidth(), "Width>=getMinimumWidth()", {"Width", NewWidth},
        {"Minimum", GetMinimumWidth()});
  Check(NewHeight >= GetMinimumHeight(), "Height>=getMinimumHeight()", {"Height", NewHeight},
        {"Minimum", GetMinimumHeight()});
  StoreSize(NewWidth, NewHeight);
  Update();
  Window->SetPosition(Inner.x, Inner.y);
  Window->SetSize(Inner.width, Inner.height);
}

void CGUIFrameWindow::FitToWindow() {
  SetSize(Window->getWidth() + GetMinimumWidth(), Window->getHeight() + GetMinimumHeight());
}

void CGUIFrameWindow::Update() {
  const int LeftWidth = SkinWidth(Skins.Left);
  const int RightWidth = SkinWidth(Skins.Right);
  const int TopHeight = SkinHeight(Skins.Top);
  const int BottomHeight = SkinHeight(Skins.Bottom);
  Inner = {LeftWidth + Border, TopHeight + Border, Width - GetMinimumWidth(), Height - GetMinimumHeight()};
  const TSkin& TopLeft = GetSkin(Skins.TopLeft);
  const TSkin& TopRight = GetSkin(Skins.TopRight);
  const TSkin& BottomLeft = GetSkin(Skins.BottomLeft);
  const TSkin& BottomRight = GetSkin(Skins.BottomRight);
  DrawingList[0] = {Skins.TopLeft, 0, 0};
  DrawingList[1] = {Skins.TopRight, Width - TopRight.width, 0};
  DrawingList[2] = {Skins.BottomLeft, 0, Height - BottomLeft.height};
  DrawingList[3] = {Skins.BottomRight, Width - BottomRight.width, Height - BottomRight.height};
  DrawingList[4] = {Skins.Top, TopLeft.width, 0, Width - TopLeft.width - TopRight.width, TopHeight};
  DrawingList[5] = {Skins.Bottom, BottomLeft.width, Height - BottomHeight,
                    Width - BottomLeft.width - BottomRight.width, BottomHeight};
  DrawingList[6] = {Skins.Left, 0, TopLeft.height, LeftWidth, Height - TopLeft.height - BottomLeft.height};
  DrawingList[7] = {Skins.Right, Width - RightWidth, TopRight.height, RightWidth,
                    Height - TopRight.height - BottomRight.height};
  DrawingList[8] = Skins.Background == 0 ? DrawingListEntry{}
                                         : DrawingListEntry{Skins.Background, LeftWidth, TopHeight,
                                                            Width - LeftWidth - RightWidth,
                                                            Height - TopHeight - BottomHeight};
  CGUIComposite::Update();
}
