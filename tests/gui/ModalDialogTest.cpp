// The dialog frame on its own and in the modal slot, driven by the routed
// mouse and key events as the platform would send them.
#include "gui/ModalDialog.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "core/ProgramState.h"
#include "graphics/Graphics.h"
#include "gui/Buttons.h"
#include "gui/Routing.h"
#include "gui/TextRectangle.h"
#include "platform/Events.h"
#include "gui/Widgets.h"
#include "tests/gui/Elements.h"
#include "tests/gui/WidgetFixture.h"

namespace {

using namespace guitest;
using platform::KEY_ENTER;
using platform::KEY_ESCAPE;

constexpr int DIALOG_MESSAGE = 20;
constexpr int MENU_MESSAGE = 70;
constexpr int BUTTON_UP = 13;
constexpr int TITLE_BAR_HEIGHT = 17;

class ModalDialogTest : public CWidgetTest {
 protected:
  ModalDialogTest() {
    SetMainSize(800, 600);
    ResetRouting();
  }
  ~ModalDialogTest() override { SetModalWindow(nullptr); }

  // A dialog round a body that logs what reaches it.
  std::unique_ptr<CGUIModalDialog> Make(int BodyWidth, int BodyHeight, const char* Caption = "Options") {
    auto Body = std::make_unique<CRecordingElement>(Log, "body");
    Body->SetSize(BodyWidth, BodyHeight);
    return std::make_unique<CGUIModalDialog>(Caption, std::move(Body));
  }

  // Opens a dialog as the main step does for a message that makes one.
  CGUIModalDialog* Open(std::unique_ptr<CGUIModalDialog> Dialog, int MessageType = DIALOG_MESSAGE) {
    CGUIModalDialog* Raw = Dialog.get();
    OpenModalWindow(std::move(Dialog), MessageType);
    return Raw;
  }

  // A routed click in the middle of a child of the open dialog.
  static void ClickOn(const CGUIComponent& Child) {
    const CGUIComponent* Modal = GetModalWindow();
    const int x = Modal->getX() + Child.getX() + Child.getWidth() / 2;
    const int y = Modal->getY() + Child.getY() + Child.getHeight() / 2;
    LeftDownEvent(x, y, 0, false);
    LeftUpEvent(x, y, 0);
  }

  std::vector<std::string> Log;
  CRecordingElement Listener{Log, "listener"};
};

// --- Construction and layout ---

// The margins alone are higher than the minimum height, so only the width binds.
TEST_F(ModalDialogTest, ANarrowBodyIsWidenedToTheMinimumWidth) {
  auto Dialog = Make(20, 10);
  EXPECT_EQ(Dialog->getWidth(), 162);
  EXPECT_EQ(Dialog->getHeight(), 102);
  const CGUIComponent& Body = Dialog->GetDialog();
  EXPECT_EQ(Body.getX(), 18);
  EXPECT_EQ(Body.getY(), 32);
  EXPECT_EQ(Body.getWidth(), 162 - 36);
  EXPECT_EQ(Body.getHeight(), 10);
}

TEST_F(ModalDialogTest, TheFrameGrowsRoundTheBodyByItsMargins) {
  auto Dialog = Make(300, 200);
  ASSERT_EQ(Dialog->getWidth(), 336);
  ASSERT_EQ(Dialog->getHeight(), 292);
  const CGUIComponent& Body = Dialog->GetDialog();
  EXPECT_EQ(Body.getX(), 18);
  EXPECT_EQ(Body.getY(), 32);
  EXPECT_EQ(Body.getWidth(), 300);
  EXPECT_EQ(Body.getHeight(), 200);
  const CGUITextRectangle& Title = Dialog->GetTitle();
  EXPECT_EQ(Title.GetText(), "Options");
  EXPECT_EQ(Title.getX(), 5);
  EXPECT_EQ(Title.getY(), 5);
  EXPECT_EQ(Title.getWidth(), 326);
  EXPECT_EQ(Title.getHeight(), 10);
  const CGUIDecorateLine& Line = Dialog->GetLine();
  EXPECT_EQ(Line.getX(), 13);
  EXPECT_EQ(Line.getY(), 252);
  EXPECT_EQ(Line.getWidth(), 310);
  EXPECT_EQ(Line.getHeight(), 2);
}

TEST_F(ModalDialogTest, ANewSizePlacesTheBodyTitleLineAndButtonsAnew) {
  auto Dialog = Make(300, 200);
  Dialog->SetSize(400, 250);
  EXPECT_EQ(Dialog->GetDialog().getWidth(), 364);
  EXPECT_EQ(Dialog->GetDialog().getHeight(), 158);
  EXPECT_EQ(Dialog->GetLine().getY(), 210);
  EXPECT_EQ(Dialog->GetCancelButton()->getX() + Dialog->GetCancelButton()->getWidth(), 384);
  EXPECT_EQ(Dialog->GetCancelButton()->getY(), 220);
}

TEST_F(ModalDialogTest, ButtonsStandInARowFromTheRightCancelFirst) {
  auto Dialog = Make(300, 200);
  Dialog->SetThirdButton("Help", &Listener, 3, BUTTON_UP, 14);
  Dialog->SetFourthButton("More", &Listener, 4, BUTTON_UP, 14);
  const int W = Dialog->getWidth();
  const int H = Dialog->getHeight();
  int RightEnd = W - 16;
  for (CGUITextButton* Button :
       {Dialog->GetCancelButton(), Dialog->GetOkButton(), Dialog->GetThirdButton(), Dialog->GetFourthButton()}) {
    ASSERT_NE(Button, nullptr);
    EXPECT_EQ(Button->getX() + Button->getWidth(), RightEnd) << Button->GetText();
    EXPECT_EQ(Button->getY(), H - 30) << Button->GetText();
    RightEnd = Button->getX() - 10;
  }
  EXPECT_EQ(Dialog->GetOkButton()->GetText(), "Ok");
  EXPECT_EQ(Dialog->GetCancelButton()->GetText(), "Cancel");
}

TEST_F(ModalDialogTest, AMissingButtonLeavesNoGapInTheRow) {
  auto Dialog = Make(300, 200);
  Dialog->SetCancelButton(nullptr, nullptr, 0);
  Dialog->SetThirdButton("Help", &Listener, 3, BUTTON_UP, 14);
  EXPECT_EQ(Dialog->GetOkButton()->getX() + Dialog->GetOkButton()->getWidth(), Dialog->getWidth() - 16);
  EXPECT_EQ(Dialog->GetThirdButton()->getX() + Dialog->GetThirdButton()->getWidth(),
            Dialog->GetOkButton()->getX() - 10);
}

TEST_F(ModalDialogTest, TheFrameIsDrawnFromNineSkinsRoundTheBody) {
  auto Dialog = Make(300, 200);
  const int W = Dialog->getWidth();
  const int H = Dialog->getHeight();
  Recorder.Clear();
  Dialog->Draw(TEMP_SURFACE, 0, 0);
  const auto Area = [](int Skin, int x, int y, int Width, int Height) {
    return "skin s=2 number=" + std::to_string(Skin) + " area=" + std::to_string(x) + "," + std::to_string(y) + "," +
           std::to_string(Width) + "," + std::to_string(Height) + " start=0,0";
  };
  const int Left = GetSkin(52).width;
  const int Right = GetSkin(53).width;
  const int Top = GetSkin(54).height;
  const int Bottom = GetSkin(55).height;
  const std::vector<std::string> Frame{
      Area(48, 0, 0, GetSkin(48).width, GetSkin(48).height),
      Area(54, GetSkin(48).width, 0, W - GetSkin(48).width - GetSkin(49).width, Top),
      Area(49, W - GetSkin(49).width, 0, GetSkin(49).width, GetSkin(49).height),
      Area(52, 0, GetSkin(48).height, Left, H - GetSkin(48).height - GetSkin(50).height),
      Area(53, W - Right, Top, Right, H - GetSkin(49).height - GetSkin(51).height),
      Area(50, 0, H - GetSkin(50).height, GetSkin(50).width, GetSkin(50).height),
      Area(55, GetSkin(50).width, H - Bottom, W - GetSkin(50).width - GetSkin(51).width, Bottom),
      Area(51, W - GetSkin(51).width, H - GetSkin(51).height, GetSkin(51).width, GetSkin(51).height),
      Area(56, Left, Top, W - Left - Right, H - Top - Bottom),
  };
  ASSERT_GE(Recorder.Lines().size(), Frame.size());
  EXPECT_EQ(std::vector<std::string>(Recorder.Lines().begin(), Recorder.Lines().begin() + 9), Frame);
  EXPECT_EQ(Top, TITLE_BAR_HEIGHT);
  // The caption and the button texts follow on top of the frame.
  const std::string Drawn = Recorder.Log();
  EXPECT_NE(Drawn.find("Options"), std::string::npos);
  EXPECT_NE(Drawn.find("Cancel"), std::string::npos);
}

TEST_F(ModalDialogTest, CaptionAndBodyAreChecked) {
  const std::string Longest(99, 'x');
  EXPECT_EQ(FailureOf([&] { EXPECT_EQ(Make(20, 10, Longest.c_str())->GetCaption(), Longest); }), "");
  const std::string TooLong(100, 'x');
  EXPECT_EQ(FailureOf([&] { Make(20, 10, TooLong.c_str()); }), "strlen(_Caption)<100");
  EXPECT_EQ(FailureOf([&] { Make(20, 10, nullptr); }), "_Caption!=NULL");
  EXPECT_EQ(FailureOf([] { CGUIModalDialog("Caption", nullptr); }), "_Dialog!=NULL");
}

// --- Buttons and their targets ---

TEST_F(ModalDialogTest, TheDefaultButtonsFireTheFramesOwnEvents) {
  auto Dialog = Make(100, 50);
  EXPECT_EQ(Dialog->GetOkTarget(), (TEventTarget{Dialog.get(), 1}));
  EXPECT_EQ(Dialog->GetCancelTarget(), (TEventTarget{Dialog.get(), 2}));
}

TEST_F(ModalDialogTest, RemovingTheOkButtonRemovesTheEnterTarget) {
  auto Dialog = Make(100, 50);
  Dialog->SetOkButton(nullptr, 0, 0, nullptr, 0);
  EXPECT_EQ(Dialog->GetOkButton(), nullptr);
  EXPECT_EQ(Dialog->GetOkTarget(), NoTarget);
  EXPECT_EQ(FailureOf([&] { Dialog->SetOkButton(nullptr, 0, 0, nullptr, 0); }), "OkButton!=NULL");
}

TEST_F(ModalDialogTest, RemovingTheCancelButtonKeepsEscapeOnTheFrame) {
  auto Dialog = Make(100, 50);
  Dialog->SetCancelTarget({&Listener, 9});
  Dialog->SetCancelButton(nullptr, nullptr, 0);
  EXPECT_EQ(Dialog->GetCancelButton(), nullptr);
  EXPECT_EQ(Dialog->GetCancelTarget(), (TEventTarget{Dialog.get(), 2}));
  EXPECT_EQ(FailureOf([&] { Dialog->SetCancelButton(nullptr, nullptr, 0); }), "CancelButton!=NULL");
}

TEST_F(ModalDialogTest, OnlyAnExistingThirdOrFourthButtonCanBeRemoved) {
  auto Dialog = Make(100, 50);
  EXPECT_EQ(FailureOf([&] { Dialog->SetThirdButton(nullptr, nullptr, 0, 0, 0); }), "ThirdButton!=NULL");
  EXPECT_EQ(FailureOf([&] { Dialog->SetFourthButton(nullptr, nullptr, 0, 0, 0); }), "FourthButton!=NULL");
  Dialog->SetFourthButton("More", &Listener, 4, BUTTON_UP, 14);
  Dialog->SetFourthButton(nullptr, nullptr, 0, 0, 0);
  EXPECT_EQ(Dialog->GetFourthButton(), nullptr);
}

TEST_F(ModalDialogTest, ReplacingAButtonLeavesOneButtonWithTheNewTarget) {
  auto* Dialog = Open(Make(100, 50));
  Dialog->SetOkButton("Yes", BUTTON_UP, 14, &Listener, 5);
  Dialog->SetCancelButton("No", &Listener, 6);
  EXPECT_EQ(Dialog->GetOkTarget(), (TEventTarget{&Listener, 5}));
  EXPECT_EQ(Dialog->GetCancelTarget(), (TEventTarget{&Listener, 6}));
  int Buttons = 0;
  for (CGUIComponent* Child = Dialog->GetFirstChild(); Child != nullptr; Child = Dialog->ChildAfter(Child)) {
    Buttons += dynamic_cast<CGUITextButton*>(Child) != nullptr ? 1 : 0;
  }
  EXPECT_EQ(Buttons, 2);
  ClickOn(*Dialog->GetOkButton());
  ClickOn(*Dialog->GetCancelButton());
  EXPECT_EQ(Log, (std::vector<std::string>{"listener event 5", "listener event 6"}));
  EXPECT_EQ(GetActionState(), ACTIONSTATE_MODAL);
  EXPECT_EQ(GetModalWindow(), Dialog);
}

TEST_F(ModalDialogTest, NoTargetGivesTheButtonTheFramesOwnEvent) {
  auto Dialog = Make(100, 50);
  Dialog->SetOkButton("Accept", BUTTON_UP, 14, nullptr, 0);
  Dialog->SetCancelButton("Leave", nullptr, 0);
  EXPECT_EQ(Dialog->GetOkTarget(), (TEventTarget{Dialog.get(), 1}));
  EXPECT_EQ(Dialog->GetCancelTarget(), (TEventTarget{Dialog.get(), 2}));
  EXPECT_EQ(Dialog->GetCancelButton()->getWidth(), GetSkin(BUTTON_UP).width);
}

TEST_F(ModalDialogTest, ClickingOkClosesAndDeletesTheDialog) {
  auto* Dialog = Open(Make(100, 50));
  ClickOn(*Dialog->GetOkButton());
  EXPECT_EQ(GetActionState(), ACTIONSTATE_NONE);
  EXPECT_EQ(GetModalWindow(), nullptr);
}

TEST_F(ModalDialogTest, AThirdButtonFiresItsTargetAndTheDialogStays) {
  auto* Dialog = Open(Make(100, 50));
  Dialog->SetThirdButton("Help", &Listener, 3, BUTTON_UP, 14);
  ClickOn(*Dialog->GetThirdButton());
  EXPECT_EQ(Log, std::vector<std::string>{"listener event 3"});
  EXPECT_EQ(GetModalWindow(), Dialog);
}

TEST_F(ModalDialogTest, AnyEventOfTheFrameAsksForClosingButDoesNotDelete) {
  auto* Dialog = Open(Make(100, 50));
  Dialog->OnEvent(42);
  EXPECT_EQ(GetActionState(), ACTIONSTATE_NONE);
  EXPECT_EQ(GetModalWindow(), Dialog);
  CloseFinishedModalWindow();
  EXPECT_EQ(GetModalWindow(), nullptr);
}

// --- Keys ---

TEST_F(ModalDialogTest, EnterAndEscapeCloseAndOtherKeysReachTheBody) {
  Open(Make(100, 50));
  KeyEvent('a');
  KeyEvent(KEY_ENTER | platform::KEY_SHIFT);
  EXPECT_EQ(Log, (std::vector<std::string>{"body key 97", "body key 525"}));
  EXPECT_NE(GetModalWindow(), nullptr);
  KeyEvent(KEY_ENTER);
  EXPECT_EQ(GetModalWindow(), nullptr);
  Open(Make(100, 50));
  KeyEvent(KEY_ESCAPE);
  EXPECT_EQ(GetModalWindow(), nullptr);
  EXPECT_EQ(GetActionState(), ACTIONSTATE_NONE);
}

TEST_F(ModalDialogTest, EnterWithoutAnOkButtonReachesTheBody) {
  auto* Dialog = Open(Make(100, 50));
  Dialog->SetOkButton(nullptr, 0, 0, nullptr, 0);
  KeyEvent(KEY_ENTER);
  EXPECT_EQ(Log, std::vector<std::string>{"body key 13"});
  EXPECT_EQ(GetModalWindow(), Dialog);
}

TEST_F(ModalDialogTest, NoTargetBehindARealOkButtonSendsEnterToTheBody) {
  auto* Dialog = Open(Make(100, 50));
  Dialog->SetOkTarget(NoTarget);
  KeyEvent(KEY_ENTER);
  EXPECT_EQ(Log, std::vector<std::string>{"body key 13"});
  EXPECT_EQ(GetModalWindow(), Dialog);
  ClickOn(*Dialog->GetOkButton());
  EXPECT_EQ(GetModalWindow(), nullptr);
}

TEST_F(ModalDialogTest, EscapeWithoutACancelButtonStillCloses) {
  auto* Dialog = Open(Make(100, 50));
  Dialog->SetCancelButton(nullptr, nullptr, 0);
  KeyEvent(KEY_ESCAPE);
  EXPECT_EQ(GetModalWindow(), nullptr);
}

TEST_F(ModalDialogTest, ABodyThatTakesOkMayKeepTheDialogOpen) {
  auto* Dialog = Open(Make(100, 50));
  CGUIComponent* Body = &Dialog->GetDialog();
  Dialog->SetOkButton("Ok", BUTTON_UP, 14, Body, CGUIModalDialog::OK_EVENT);
  KeyEvent(KEY_ENTER);
  EXPECT_EQ(Log, std::vector<std::string>{"body event 1"});
  EXPECT_EQ(GetActionState(), ACTIONSTATE_MODAL);
  EXPECT_EQ(GetModalWindow(), Dialog);
}

// --- Dragging ---

TEST_F(ModalDialogTest, DraggingTheTitleBarMovesTheDialog) {
  auto* Dialog = Open(Make(300, 200));
  const int X = Dialog->getX();
  const int Y = Dialog->getY();
  LeftDownEvent(X + 40, Y + 3, 0, false);
  EXPECT_TRUE(Dialog->IsDragging());
  MouseMoveEvent(X + 70, Y + 23);
  EXPECT_EQ(Dialog->getX(), X + 30);
  EXPECT_EQ(Dialog->getY(), Y + 20);
  LeftUpEvent(X + 70, Y + 23, 0);
  EXPECT_FALSE(Dialog->IsDragging());
  EXPECT_EQ(GetModalWindow(), Dialog);
  // Released, the mouse reaches the body again.
  MouseMoveEvent(X + 200, Y + 100);
  EXPECT_EQ(Dialog->getX(), X + 30);
  EXPECT_EQ(Log, std::vector<std::string>{"body move 152,48"});
}

TEST_F(ModalDialogTest, DraggingStopsAtEachEdgeOfTheClientArea) {
  auto* Dialog = Open(Make(300, 200));
  const int X = Dialog->getX();
  const int Y = Dialog->getY();
  LeftDownEvent(X + 40, Y + TITLE_BAR_HEIGHT - 1, 0, false);
  MouseMoveEvent(X + 40 + 1000, Y + 1000);
  EXPECT_EQ(Dialog->getX(), 800 - Dialog->getWidth());
  EXPECT_EQ(Dialog->getY(), 600 - Dialog->getHeight());
  MouseMoveEvent(-1000, -1000);
  EXPECT_EQ(Dialog->getX(), 0);
  EXPECT_EQ(Dialog->getY(), 0);
}

TEST_F(ModalDialogTest, APressBelowTheTitleBarOrOnAChildStartsNoDrag) {
  auto* Dialog = Open(Make(300, 200));
  auto* Child = AddLast<CRecordingElement>(*Dialog, 100, 2, 30, 10, Log, "close");
  const int X = Dialog->getX();
  const int Y = Dialog->getY();
  LeftDownEvent(X + 40, Y + TITLE_BAR_HEIGHT, 0, false);
  EXPECT_FALSE(Dialog->IsDragging());
  LeftDownEvent(X + Child->getX() + 5, Y + 5, 0, false);
  EXPECT_FALSE(Dialog->IsDragging());
  EXPECT_EQ(Log, std::vector<std::string>{"close down 5,3"});
  LeftDownEvent(X + 50, Y + 40, 0, false);
  MouseMoveEvent(X + 60, Y + 45);
  EXPECT_FALSE(Dialog->IsDragging());
  EXPECT_EQ(Dialog->getX(), X);
  EXPECT_EQ(Log.back(), "body move 42,13");
}

// --- Opening and the client area ---

TEST_F(ModalDialogTest, ADialogOpensCentredInTheModalState) {
  auto* Dialog = Open(Make(300, 200));
  EXPECT_EQ(GetModalWindow(), Dialog);
  EXPECT_EQ(GetActionState(), ACTIONSTATE_MODAL);
  EXPECT_EQ(Dialog->getX(), 400 - 336 / 2);
  EXPECT_EQ(Dialog->getY(), 300 - 292 / 2);
}

TEST_F(ModalDialogTest, AMenuKeepsItsPlaceAndTakesTheMenuState) {
  auto Menu = Make(300, 200);
  Menu->SetPosition(17, 23);
  auto* Raw = Open(std::move(Menu), MENU_MESSAGE);
  EXPECT_EQ(GetActionState(), ACTIONSTATE_MENU);
  EXPECT_EQ(Raw->getX(), 17);
  EXPECT_EQ(Raw->getY(), 23);
}

TEST_F(ModalDialogTest, ResizingTheClientAreaCentresADraggedDialogAgain) {
  auto* Dialog = Open(Make(300, 200));
  LeftDownEvent(Dialog->getX() + 40, Dialog->getY() + 3, 0, false);
  MouseMoveEvent(0, 0);
  LeftUpEvent(0, 0, 0);
  ASSERT_NE(Dialog->getX(), 400 - 168);
  SetMainSize(1024, 768);
  ModalClientAreaResized();
  EXPECT_EQ(Dialog->getX(), 512 - 168);
  EXPECT_EQ(Dialog->getY(), 384 - 146);
  EXPECT_EQ(GetActionState(), ACTIONSTATE_MODAL);
}

TEST_F(ModalDialogTest, ResizingTheClientAreaClosesAnOpenMenu) {
  Open(Make(300, 200), MENU_MESSAGE);
  ModalClientAreaResized();
  EXPECT_EQ(GetActionState(), ACTIONSTATE_NONE);
  CloseFinishedModalWindow();
  EXPECT_EQ(GetModalWindow(), nullptr);
}

TEST_F(ModalDialogTest, CentringNeedsAModalWindow) {
  EXPECT_EQ(FailureOf([] { CentreModal(400, 300); }), "ModalWindow!=NULL");
}

}  // namespace
