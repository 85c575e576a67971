// Buttons driven through the tree as the mouse would drive them, and drawn on
// the software engine with the drawing recorder listening.
#include <gtest/gtest.h>

#include <memory>

#include "core/Clock.h"
#include "core/Exception.h"
#include "core/Preferences.h"
#include "core/ProgramState.h"
#include "graphics/Engines.h"
#include "graphics/Fonts.h"
#include "graphics/Graphics.h"
#include "graphics/Recorder.h"
#include "graphics/SurfaceDX.h"
#include "gui/Buttons.h"
#include "tests/gui/Elements.h"
#include "tests/gui/WidgetFixture.h"

#ifndef KELMO_DATA_DIR
#error "KELMO_DATA_DIR must name the folder of the built data files"
#endif

namespace {

using namespace guitest;

constexpr int UP = 13;
constexpr int DOWN = 14;
constexpr int INACTIVE = 29;

class ButtonsTest : public CWidgetTest {
 protected:
  ButtonsTest() {
    SetClockSource(Clock);
    Parent.SetSize(400, 300);
  }
  ~ButtonsTest() override { SetClockSource(nullptr); }

  template <typename TButton>
  TButton* Add(std::unique_ptr<TButton> Button) {
    TButton* Raw = Button.get();
    Parent.AddChildLast(std::move(Button));
    return Raw;
  }

  // The skin lines that drawing the button alone records.
  std::vector<std::string> Drawn(CGUIComponent& Button) {
    Recorder.Clear();
    Button.Draw(CACHE_SURFACE, 10, 20);
    return Recorder.Lines();
  }

  static std::string SkinLine(int Skin, int Width, int Height) {
    return "skin s=4 number=" + std::to_string(Skin) + " area=10,20," + std::to_string(Width) + "," +
           std::to_string(Height) + " start=0,0";
  }

  std::shared_ptr<TManualClock> Clock = std::make_shared<TManualClock>();
  CGUIComposite Parent;
  std::vector<std::string> Log;
  CRecordingElement Listener{Log, "listener"};
};

TEST_F(ButtonsTest, TakesTheNaturalSizeOfItsUpSkinAndChecksBothSkins) {
  CGUIButton Button(UP, DOWN, "tip", false, 5, 6, NoTarget);
  EXPECT_EQ(Button.getX(), 5);
  EXPECT_EQ(Button.getY(), 6);
  EXPECT_EQ(Button.getWidth(), GetSkin(UP).width);
  EXPECT_EQ(Button.getHeight(), GetSkin(UP).height);
  EXPECT_EQ(FailureOf([] { CGUIButton(NumberOfSkins, DOWN, nullptr, false, 0, 0, NoTarget); }),
            "_ButtonUp<NumberOfSkins");
  EXPECT_EQ(FailureOf([] { CGUIButton(UP, NumberOfSkins, nullptr, false, 0, 0, NoTarget); }),
            "_ButtonDown<NumberOfSkins");
}

TEST_F(ButtonsTest, AClickReleasedInsideFiresOnceAndLeavesTheCapture) {
  auto* Button = Add(std::make_unique<CGUIButton>(UP, DOWN, nullptr, false, 10, 10, TEventTarget{&Listener, 7}));
  EXPECT_TRUE(Parent.LeftDown(12, 12, 0));
  EXPECT_EQ(Parent.GetCapture(), Button);
  EXPECT_TRUE(Button->IsDown());
  EXPECT_TRUE(Parent.LeftUp(13, 13, 0));
  EXPECT_EQ(Parent.GetCapture(), nullptr);
  EXPECT_FALSE(Button->IsPressed());
  EXPECT_EQ(Log, (std::vector<std::string>{"listener event 7"}));
}

TEST_F(ButtonsTest, ReleasedOutsideFiresNothingAndShowsUpAsSoonAsThePointerLeaves) {
  auto* Button = Add(std::make_unique<CGUIButton>(UP, DOWN, nullptr, false, 10, 10, TEventTarget{&Listener, 7}));
  const int Width = Button->getWidth();
  const int Height = Button->getHeight();
  Parent.LeftDown(12, 12, 0);
  EXPECT_EQ(Drawn(*Button), (std::vector<std::string>{SkinLine(DOWN, Width, Height)}));
  // The capture routes the move even though the point lies outside.
  Parent.MouseMove(10 + Width + 5, 12);
  EXPECT_FALSE(Button->IsDown());
  EXPECT_EQ(Drawn(*Button), (std::vector<std::string>{SkinLine(UP, Width, Height)}));
  Parent.MouseMove(12, 12);
  EXPECT_TRUE(Button->IsDown());
  Parent.MouseMove(10 + Width + 5, 12);
  Parent.LeftUp(10 + Width + 5, 12, 0);
  EXPECT_TRUE(Log.empty());
  EXPECT_EQ(Parent.GetCapture(), nullptr);
}

TEST_F(ButtonsTest, ADisabledButtonDoesNotPressButStillTakesTheClick) {
  auto* Button = Add(std::make_unique<CGUIButton>(UP, DOWN, nullptr, false, 10, 10, TEventTarget{&Listener, 7}));
  Button->SetEnabled(false);
  EXPECT_TRUE(Button->LeftDown(2, 2, 0));
  EXPECT_FALSE(Button->IsPressed());
  EXPECT_EQ(Parent.GetCapture(), nullptr);
  EXPECT_TRUE(Button->LeftUp(2, 2, 0));
  EXPECT_TRUE(Log.empty());
}

TEST_F(ButtonsTest, DisabledLookIsTheInactiveSkinOrElseTheUpSkin) {
  CGUIButton Button(UP, DOWN, nullptr, false, 0, 0, NoTarget);
  const int Width = Button.getWidth();
  const int Height = Button.getHeight();
  Button.SetEnabled(false);
  EXPECT_EQ(Drawn(Button), (std::vector<std::string>{SkinLine(UP, Width, Height)}));
  Button.SetInactiveSkin(INACTIVE);
  EXPECT_EQ(Drawn(Button), (std::vector<std::string>{SkinLine(INACTIVE, Width, Height)}));
  Button.SetEnabled(true);
  EXPECT_EQ(Drawn(Button), (std::vector<std::string>{SkinLine(UP, Width, Height)}));
}

TEST_F(ButtonsTest, DisablingDuringAPressDoesNotCancelIt) {
  auto* Button = Add(std::make_unique<CGUIButton>(UP, DOWN, nullptr, false, 10, 10, TEventTarget{&Listener, 7}));
  Parent.LeftDown(12, 12, 0);
  Button->SetEnabled(false);
  Parent.LeftUp(12, 12, 0);
  EXPECT_EQ(Log, (std::vector<std::string>{"listener event 7"}));
}

TEST_F(ButtonsTest, RepeatEventsFireOnlyWhileAnAutoRepeatButtonIsHeldInside) {
  auto* Repeating = Add(std::make_unique<CGUIButton>(UP, DOWN, nullptr, true, 10, 10, TEventTarget{&Listener, 1}));
  auto* Plain = Add(std::make_unique<CGUIButton>(UP, DOWN, nullptr, false, 10, 100, TEventTarget{&Listener, 2}));
  EXPECT_TRUE(Repeating->MouseEvent(2, 2, MOUSE_HELD_REPEAT));
  EXPECT_TRUE(Log.empty()) << "not pressed";
  Parent.LeftDown(12, 12, 0);
  Parent.MouseEvent(12, 12, MOUSE_HELD_REPEAT);
  Parent.MouseEvent(12, 12, MOUSE_WHEEL_UP);
  Parent.MouseMove(300, 12);
  Parent.MouseEvent(300, 12, MOUSE_HELD_REPEAT);
  Parent.LeftUp(300, 12, 0);
  Parent.LeftDown(12, 102, 0);
  Parent.MouseEvent(12, 102, MOUSE_HELD_REPEAT);
  Parent.LeftUp(12, 102, 0);
  EXPECT_EQ(Log, (std::vector<std::string>{"listener event 1", "listener event 2"}));
  EXPECT_FALSE(Plain->IsPressed());
}

TEST_F(ButtonsTest, ReleasingTheCaptureFromOutsideEndsThePress) {
  auto* Button = Add(std::make_unique<CGUIButton>(UP, DOWN, nullptr, false, 10, 10, TEventTarget{&Listener, 7}));
  Parent.LeftDown(12, 12, 0);
  Parent.DeleteChild(Button);
  EXPECT_EQ(Parent.GetCapture(), nullptr);
}

TEST_F(ButtonsTest, HoverSetsTheTooltipAndCheckButtonsPickByState) {
  CGUIButton Button(UP, DOWN, "Plain tip", false, 0, 0, NoTarget);
  Button.Hover(1, 1);
  EXPECT_EQ(GetTooltip(), "Plain tip");
  CGUICheckButton Check(UP, DOWN, "Turn off", "Turn on", 0, 0, NoTarget);
  Check.Hover(1, 1);
  EXPECT_EQ(GetTooltip(), "Turn on");
  Check.SetChecked(true);
  Check.Hover(1, 1);
  EXPECT_EQ(GetTooltip(), "Turn off");
}

TEST_F(ButtonsTest, RadioGroupShowsTheLastClickedMemberDown) {
  CGUIRadioGroup Group;
  auto* First = Add(std::make_unique<CGUIButton>(UP, DOWN, nullptr, false, 0, 0, TEventTarget{&Listener, 1}));
  auto* Second = Add(std::make_unique<CGUIButton>(UP, DOWN, nullptr, false, 0, 100, TEventTarget{&Listener, 2}));
  First->SetRadioGroup(&Group);
  Second->SetRadioGroup(&Group);
  EXPECT_EQ(Group.Count(), 2);
  EXPECT_EQ(FailureOf([&] { First->SetRadioGroup(&Group); }), "RadioButtonGroup==NULL");
  Parent.LeftDown(2, 2, 0);
  Parent.LeftUp(2, 2, 0);
  EXPECT_EQ(Group.Active, First);
  EXPECT_TRUE(First->IsDown());
  EXPECT_FALSE(Second->IsDown());
  Parent.LeftDown(2, 102, 0);
  Parent.LeftUp(2, 102, 0);
  EXPECT_EQ(Group.Active, Second);
  EXPECT_FALSE(First->IsDown());
  EXPECT_TRUE(Second->IsDown());
  // A release outside doesn't move the selection.
  Parent.LeftDown(2, 2, 0);
  Parent.LeftUp(399, 299, 0);
  EXPECT_EQ(Group.Active, Second);
  EXPECT_EQ(Log, (std::vector<std::string>{"listener event 1", "listener event 2"}));
}

TEST_F(ButtonsTest, FlashFramesEveryOtherThreeTicksUntilItsTime) {
  CGUIButton Button(UP, DOWN, nullptr, false, 0, 0, NoTarget);
  const int Width = Button.getWidth();
  const int Height = Button.getHeight();
  const std::string Frame =
      "frame s=4 area=10,20," + std::to_string(Width) + "," + std::to_string(Height) + " thickness=1 rgb=255,160,0";
  Button.Flash(GetProgramTime() + 1000);
  std::vector<bool> Framed;
  for (int Tick = 0; Tick < 12; ++Tick) {
    const std::vector<std::string> Lines = Drawn(Button);
    Framed.push_back(Lines.size() == 2 && Lines[1] == Frame);
    AdvanceTickCounter();
  }
  EXPECT_EQ(Framed, (std::vector<bool>{false, false, false, true, true, true, false, false, false, true, true, true}));
  Clock->AdvanceMilliseconds(1000);
  while ((GetTickCounter() / 3) % 2 == 0) AdvanceTickCounter();
  EXPECT_EQ(Drawn(Button).size(), 1U) << "the time has passed";
  EXPECT_EQ(Button.GetFlashUntil(), 0);
}

TEST_F(ButtonsTest, TextButtonCentresItsTextAndShiftsItWhilePressed) {
  CGUITextButton Button("Ok", nullptr, 0, 0, NoTarget);
  const int Width = Button.getWidth();
  const int Height = Button.getHeight();
  const int Top = 20 + (Height - TextHeight(3, "Ok", false)) / 2;
  const auto TextLine = [](int x, int y, const char* Colour) {
    return "text s=4 at=" + std::to_string(x) + "," + std::to_string(y) + " font=3 rgb=" + Colour +
           " align=1 highlight=0 \"Ok\"";
  };
  EXPECT_EQ(Drawn(Button), (std::vector<std::string>{SkinLine(UP, Width, Height),
                                                      TextLine(10 + Width / 2, Top, "255,255,255")}));
  Button.LeftDown(1, 1, 0);
  EXPECT_EQ(Drawn(Button), (std::vector<std::string>{SkinLine(DOWN, Width, Height),
                                                      TextLine(11 + Width / 2, Top + 1, "255,255,255")}));
  Button.LeftUp(1, 1, 0);
  Button.SetEnabled(false);
  EXPECT_EQ(Drawn(Button).back(), TextLine(10 + Width / 2, Top, "192,192,192"));
  EXPECT_EQ(FailureOf([&] { Button.SetText("0123456789012345678901234567890123456789012345678901"); }),
            "strlen(_Text)<50");
  Button.SetText("Cancel");
  EXPECT_EQ(Button.GetText(), "Cancel");
}

TEST_F(ButtonsTest, TextureButtonDrawsItsTextureAtTheOffset) {
  CGUITextureButton Button(UP, nullptr, false, 0, 0, NoTarget);
  const std::vector<std::string> Lines = Drawn(Button);
  ASSERT_EQ(Lines.size(), 2U);
  EXPECT_EQ(Lines[0], SkinLine(29, GetSkin(29).width, GetSkin(29).height));
  EXPECT_EQ(Lines[1], "skin s=4 number=13 area=12,22," + std::to_string(GetSkin(UP).width) + "," +
                          std::to_string(GetSkin(UP).height) + " start=0,0");
}

TEST_F(ButtonsTest, CheckButtonTogglesBeforeFiringAndStaysDownWhileChecked) {
  struct CProbe : CGUIElement {
    CGUICheckButton* Button = nullptr;
    std::vector<bool> Seen;
    void OnEvent(int) override { Seen.push_back(Button->IsChecked()); }
  } Probe;
  auto* Button = Add(std::make_unique<CGUICheckButton>(UP, DOWN, "on", "off", 0, 0, TEventTarget{&Probe, 3}));
  Probe.Button = Button;
  Parent.LeftDown(2, 2, 0);
  Parent.LeftUp(2, 2, 0);
  EXPECT_TRUE(Button->IsDown());
  Parent.LeftDown(2, 2, 0);
  Parent.LeftUp(2, 2, 0);
  EXPECT_FALSE(Button->IsDown());
  EXPECT_EQ(Probe.Seen, (std::vector<bool>{true, false}));
  Button->SetChecked(true);
  EXPECT_EQ(Probe.Seen.size(), 2U) << "SetChecked fires nothing";
  EXPECT_TRUE(Button->IsDown());
}

// A check button takes the last motion's word on where the pointer is; a
// plain button looks at the release's point.
TEST_F(ButtonsTest, CheckButtonsJudgeTheReleaseByTheLastMotion) {
  auto* Plain = Add(std::make_unique<CGUIButton>(UP, DOWN, nullptr, false, 0, 0, TEventTarget{&Listener, 1}));
  auto* Check = Add(std::make_unique<CGUICheckButton>(UP, DOWN, "on", "off", 0, 100, TEventTarget{&Listener, 2}));
  for (CGUIButton* Button : {static_cast<CGUIButton*>(Plain), static_cast<CGUIButton*>(Check)}) {
    const int y = Button->getY();
    Parent.LeftDown(2, y + 2, 0);
    Parent.MouseMove(300, y + 2);
    Parent.LeftUp(2, y + 2, 0);
  }
  EXPECT_EQ(Log, (std::vector<std::string>{"listener event 1"}));
  EXPECT_FALSE(Check->IsChecked());
}

TEST_F(ButtonsTest, TextCheckButtonToggles) {
  auto* Button = Add(std::make_unique<CGUITextCheckButton>("Mode", "on", "off", 0, 0, TEventTarget{&Listener, 4}));
  Parent.LeftDown(2, 2, 0);
  Parent.LeftUp(2, 2, 0);
  EXPECT_TRUE(Button->IsChecked());
  EXPECT_TRUE(Button->IsDown());
  EXPECT_EQ(Log, (std::vector<std::string>{"listener event 4"}));
}

TEST_F(ButtonsTest, RotateButtonFiresTheShownStateAndWrapsAfterThree) {
  const std::array<CGUIRotateButton::TState, 3> States{{{13, 14, {&Listener, 10}},
                                                        {29, 30, {&Listener, 11}},
                                                        {13, 14, {&Listener, 12}}}};
  auto* Button = Add(std::make_unique<CGUIRotateButton>(States, 0, 0));
  Button->Hover(1, 1);
  EXPECT_EQ(GetTooltip(), "Adjust volume");
  const auto Click = [&] {
    Parent.LeftDown(1, 1, 0);
    Parent.LeftUp(1, 1, 0);
  };
  Click();
  EXPECT_EQ(Button->GetState(), 1);
  EXPECT_EQ(Button->getWidth(), GetSkin(29).width);
  EXPECT_EQ(Drawn(*Button)[0], SkinLine(29, GetSkin(29).width, GetSkin(29).height));
  Click();
  Click();
  EXPECT_EQ(Button->GetState(), 0);
  EXPECT_EQ(Log, (std::vector<std::string>{"listener event 10", "listener event 11", "listener event 12"}));
}

TEST_F(ButtonsTest, ColoredButtonFillsBeforeItsLook) {
  CGUIColoredButton Button(UP, DOWN, nullptr, 0, 0, NoTarget, 12, 34, 56);
  const int Width = Button.getWidth();
  const int Height = Button.getHeight();
  EXPECT_EQ(Drawn(Button), (std::vector<std::string>{"rect s=4 area=10,20," + std::to_string(Width) + "," +
                                                          std::to_string(Height) + " rgb=12,34,56 alpha=255",
                                                      SkinLine(UP, Width, Height)}));
}

}  // namespace
