#include "gui/ModalDialog.h"

#include <algorithm>
#include <cstring>
#include <initializer_list>

#include "core/Exception.h"
#include "core/ProgramState.h"
#include "graphics/Graphics.h"
#include "gui/Buttons.h"
#include "gui/SkinProperties.h"
#include "gui/TextRectangle.h"
#include "gui/Widgets.h"
#include "platform/Events.h"

namespace {

using namespace platform;

// Messages from this type on make context menus, which place themselves.
constexpr int FIRST_MENU_MESSAGE = 70;

// The frame's skins; the title bar is as high as the top edge.
constexpr int SKIN_TOP_LEFT = 48;
constexpr int SKIN_TOP_RIGHT = 49;
constexpr int SKIN_BOTTOM_LEFT = 50;
constexpr int SKIN_BOTTOM_RIGHT = 51;
constexpr int SKIN_LEFT = 52;
constexpr int SKIN_RIGHT = 53;
constexpr int SKIN_TOP = 54;
constexpr int SKIN_BOTTOM = 55;
constexpr int SKIN_BACKGROUND = 56;

int SkinWidth(int Skin) { return GetSkin(Skin).width; }
int SkinHeight(int Skin) { return GetSkin(Skin).height; }

const auto& Look = SkinProperties.ModalDialog;

TEventTarget OrDefault(TEventTarget Given, TEventTarget Default) { return Given == NoTarget ? Default : Given; }

// Limits without clamp's precondition: a dialog wider than the client area
// keeps its left edge, and so its title bar, in view.
int Limit(int Value, int Highest) { return std::max(0, std::min(Value, Highest)); }

}  // namespace

CGUIModalDialog::CGUIModalDialog(const char* Caption, std::unique_ptr<CGUIComponent> Dialog)
    : CGUIComposite(9) {
  Check(Caption != nullptr, "_Caption!=NULL");
  Check(std::strlen(Caption) < CAPTION_LENGTH, "strlen(_Caption)<100",
        {"Length", static_cast<long long>(std::strlen(Caption))});
  Check(Dialog != nullptr, "_Dialog!=NULL");
  this->Caption = Caption;
  auto NewTitle = std::make_unique<CGUITextRectangle>(Look.Title, Caption);
  Title = NewTitle.get();
  AddChild(std::move(NewTitle));
  auto NewLine = std::make_unique<CGUIDecorateLine>(true, 0, 0, 1);
  Line = NewLine.get();
  AddChild(std::move(NewLine));
  this->Dialog = Dialog.get();
  AddChild(std::move(Dialog));
  GrowForChild(this->Dialog, Look.Body.Left, Look.Body.Top, Look.Body.Right, Look.Body.Bottom, true);
  SetOkButton("Ok", CGUITextButton::DefaultUp, CGUITextButton::DefaultDown, this, OK_EVENT);
  SetCancelButton("Cancel", this, CANCEL_EVENT);
}

void CGUIModalDialog::SetOkButton(const char* Text, int ButtonUp, int ButtonDown, CGUIComponent* Element,
                                  int Event) {
  const TEventTarget Target = OrDefault({Element, Event}, {this, OK_EVENT});
  PutButton(OkButton, Text, "OkButton!=NULL", Target, ButtonUp, ButtonDown);
  OkTarget = Text != nullptr ? Target : NoTarget;
}

void CGUIModalDialog::SetCancelButton(const char* Text, CGUIComponent* Element, int Event) {
  const TEventTarget Default{this, CANCEL_EVENT};
  const TEventTarget Target = OrDefault({Element, Event}, Default);
  PutButton(CancelButton, Text, "CancelButton!=NULL", Target, CGUITextButton::DefaultUp,
            CGUITextButton::DefaultDown);
  // Escape closes the dialog even without a cancel button.
  CancelTarget = Text != nullptr ? Target : Default;
}

void CGUIModalDialog::SetThirdButton(const char* Text, CGUIComponent* Element, int Event, int ButtonUp,
                                     int ButtonDown) {
  PutButton(ThirdButton, Text, "ThirdButton!=NULL", {Element, Event}, ButtonUp, ButtonDown);
}

void CGUIModalDialog::SetFourthButton(const char* Text, CGUIComponent* Element, int Event, int ButtonUp,
                                      int ButtonDown) {
  PutButton(FourthButton, Text, "FourthButton!=NULL", {Element, Event}, ButtonUp, ButtonDown);
}

void CGUIModalDialog::PutButton(CGUITextButton*& Slot, const char* Text, const char* Assertion,
                                TEventTarget Target, int ButtonUp, int ButtonDown) {
  if (Text == nullptr) Check(Slot != nullptr, Assertion);
  if (Slot != nullptr) {
    DeleteChild(Slot);
    Slot = nullptr;
  }
  if (Text != nullptr) {
    auto Button = std::make_unique<CGUITextButton>(Text, nullptr, 0, 0, Target, ButtonUp, ButtonDown);
    Slot = Button.get();
    AddChild(std::move(Button));
  }
  Update();
}

int CGUIModalDialog::GetMinimumWidth() const { return Look.MinimumWidth; }
int CGUIModalDialog::GetMinimumHeight() const { return Look.MinimumHeight; }

void CGUIModalDialog::SetSize(int NewWidth, int NewHeight) {
  StoreSize(NewWidth, NewHeight);
  Update();
}

void CGUIModalDialog::Update() {
  PlaceChild(Dialog, Look.Body.Left, Look.Body.Top, Look.Body.Right, Look.Body.Bottom);
  PlaceChild(Title, Look.TitlePlace.x, Look.TitlePlace.y, Look.TitlePlace.Width, Look.TitlePlace.Height);
  PlaceChild(Line, Look.LinePlace.x, Look.LinePlace.y, Look.LinePlace.Width, Look.LinePlace.Height);
  // From the right: a negative x counts from the right edge.
  int x = Look.FirstButton.x;
  for (CGUITextButton* Button : {CancelButton, OkButton, ThirdButton, FourthButton}) {
    if (Button == nullptr) continue;
    x -= Look.ButtonGap + Button->getWidth();
    MoveChild(Button, x, Look.FirstButton.y);
  }
  UpdateDrawingList();
}

void CGUIModalDialog::UpdateDrawingList() {
  const int W = Width;
  const int H = Height;
  DrawingList[0] = {SKIN_TOP_LEFT, 0, 0};
  DrawingList[1] = {SKIN_TOP, SkinWidth(SKIN_TOP_LEFT), 0,
                    W - SkinWidth(SKIN_TOP_LEFT) - SkinWidth(SKIN_TOP_RIGHT), SkinHeight(SKIN_TOP)};
  DrawingList[2] = {SKIN_TOP_RIGHT, W - SkinWidth(SKIN_TOP_RIGHT), 0};
  DrawingList[3] = {SKIN_LEFT, 0, SkinHeight(SKIN_TOP_LEFT), SkinWidth(SKIN_LEFT),
                    H - SkinHeight(SKIN_TOP_LEFT) - SkinHeight(SKIN_BOTTOM_LEFT)};
  DrawingList[4] = {SKIN_RIGHT, W - SkinWidth(SKIN_RIGHT), SkinHeight(SKIN_TOP), SkinWidth(SKIN_RIGHT),
                    H - SkinHeight(SKIN_TOP_RIGHT) - SkinHeight(SKIN_BOTTOM_RIGHT)};
  DrawingList[5] = {SKIN_BOTTOM_LEFT, 0, H - SkinHeight(SKIN_BOTTOM_LEFT)};
  DrawingList[6] = {SKIN_BOTTOM, SkinWidth(SKIN_BOTTOM_LEFT), H - SkinHeight(SKIN_BOTTOM),
                    W - SkinWidth(SKIN_BOTTOM_LEFT) - SkinWidth(SKIN_BOTTOM_RIGHT), SkinHeight(SKIN_BOTTOM)};
  DrawingList[7] = {SKIN_BOTTOM_RIGHT, W - SkinWidth(SKIN_BOTTOM_RIGHT), H - SkinHeight(SKIN_BOTTOM_RIGHT)};
  DrawingList[8] = {SKIN_BACKGROUND, SkinWidth(SKIN_LEFT), SkinHeight(SKIN_TOP),
                    W - SkinWidth(SKIN_LEFT) - SkinWidth(SKIN_RIGHT), H - SkinHeight(SKIN_TOP) - SkinHeight(SKIN_BOTTOM)};
}

bool CGUIModalDialog::LeftDown(int x, int y, int Flags) {
  if (CGUIComposite::LeftDown(x, y, Flags)) return true;
  if (x < 0 || x >= Width || y < 0 || y >= SkinHeight(SKIN_TOP)) return false;
  Dragging = true;
  DragX = x;
  DragY = y;
  return true;
}

bool CGUIModalDialog::MouseMove(int x, int y) {
  if (!Dragging) return CGUIComposite::MouseMove(x, y);
  SetPosition(Limit(X - DragX + x, MainWidth() - Width), Limit(Y - DragY + y, MainHeight() - Height));
  return true;
}

bool CGUIModalDialog::LeftUp(int x, int y, int Flags) {
  if (!Dragging) return CGUIComposite::LeftUp(x, y, Flags);
  Dragging = false;
  return true;
}

void CGUIModalDialog::KeyDown(int Key) {
  if (Key == KEY_ENTER && OkButton != nullptr && OkTarget != NoTarget) {
    OkTarget.Fire();
  } else if (Key == KEY_ESCAPE) {
    CancelTarget.Fire();
  } else {
    Dialog->KeyDown(Key);
  }
}

void CGUIModalDialog::OnEvent(int) { SetActionState(ACTIONSTATE_NONE); }

void CentreModal(int x, int y) {
  CGUIComponent* Modal = GetModalWindow();
  Check(Modal != nullptr, "ModalWindow!=NULL");
  Modal->SetPosition(x - Modal->getWidth() / 2, y - Modal->getHeight() / 2);
}

void OpenModalWindow(std::unique_ptr<CGUIComponent> Window, int MessageType) {
  Check(Window != nullptr, "ModalWindow!=NULL");
  SetModalWindow(std::move(Window));
  if (MessageType < FIRST_MENU_MESSAGE) {
    CentreModal(MainWidth() / 2, MainHeight() / 2);
    SetActionState(ACTIONSTATE_MODAL);
  } else {
    SetActionState(ACTIONSTATE_MENU);
  }
}

void ModalClientAreaResized() {
  if (GetModalWindow() == nullptr) return;
  if (GetActionState() == ACTIONSTATE_MODAL) CentreModal(MainWidth() / 2, MainHeight() / 2);
  // The next delivery or main step deletes the menu.
  if (GetActionState() == ACTIONSTATE_MENU) SetActionState(ACTIONSTATE_NONE);
}
