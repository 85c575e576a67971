// Mouse routing in the tree and from the platform's events to the root.
#include <gtest/gtest.h>

#include "core/ProgramState.h"
#include "gui/RootWindow.h"
#include "gui/Routing.h"
#include "tests/gui/Elements.h"

namespace {

using namespace guitest;
using Lines = std::vector<std::string>;

class RoutingTest : public ::testing::Test {
 protected:
  RoutingTest() {
    ResetProgramState();
    InitGUI();
    auto Own = std::make_unique<CRootWindow>(800, 600);
    Root = Own.get();
    SetMainWindow(std::move(Own));
  }
  ~RoutingTest() override {
    ExitGUI();
    ResetRouting();
    ResetProgramState();
  }

  Lines Log;
  CRootWindow* Root = nullptr;
};

// The first in the list gets the mouse, although the later one lies on top.
TEST_F(RoutingTest, TheFirstOfTwoOverlappingChildrenGetsTheClick) {
  AddLast<CRecordingElement>(*Root, 10, 10, 100, 100, Log, "under");
  AddLast<CRecordingElement>(*Root, 50, 50, 100, 100, Log, "over");
  EXPECT_TRUE(Root->LeftDown(60, 70, 0));
  EXPECT_EQ(Log, (Lines{"under down 50,60"}));
}

TEST_F(RoutingTest, AChildThatAnswersFalsePassesTheClickOn) {
  AddLast<CRecordingElement>(*Root, 10, 10, 100, 100, Log, "first", false);
  AddLast<CRecordingElement>(*Root, 50, 50, 100, 100, Log, "second", false);
  AddLast<CRecordingElement>(*Root, 0, 0, 20, 20, Log, "elsewhere");
  EXPECT_FALSE(Root->LeftDown(60, 70, 0));
  EXPECT_EQ(Log, (Lines{"first down 50,60", "second down 10,20"}));
}

TEST_F(RoutingTest, HitTestingKeepsToTheChildsRectangle) {
  AddLast<CRecordingElement>(*Root, 10, 10, 10, 10, Log, "e");
  EXPECT_FALSE(Root->RightUp(20, 15, 0));
  EXPECT_FALSE(Root->RightUp(9, 15, 0));
  EXPECT_TRUE(Root->RightUp(19, 19, 0));
  EXPECT_EQ(Log, (Lines{"e right 9,9"}));
}

// Drawn from first to last: the later child is on top.
TEST_F(RoutingTest, DrawingRunsFromFirstToLastAtTheChildrensPlaces) {
  class CDrawnElement : public CGUIElement {
   public:
    CDrawnElement(Lines& Log, std::string Name) : m_Log(Log), m_Name(std::move(Name)) {}
    void Draw(int, int x, int y) override { m_Log.push_back(m_Name + " " + std::to_string(x) + "," + std::to_string(y)); }

   private:
    Lines& m_Log;
    std::string m_Name;
  };
  auto* Box = AddLast<CGUIComposite>(*Root, 100, 200, 50, 50);
  AddLast<CDrawnElement>(*Box, 1, 2, 5, 5, Log, "under");
  AddLast<CDrawnElement>(*Box, 3, 4, 5, 5, Log, "over");
  Root->Draw(1, 0, 0);
  EXPECT_EQ(Log, (Lines{"under 101,202", "over 103,204"}));
}

TEST_F(RoutingTest, DuringADragTheCapturingElementGetsEverythingInItsCoordinates) {
  auto* Panel = AddLast<CGUIComposite>(*Root, 100, 100, 200, 200);
  auto* Dragged = AddLast<CRecordingElement>(*Panel, 10, 10, 20, 20, Log, "dragged");
  AddLast<CRecordingElement>(*Root, 400, 400, 100, 100, Log, "other");
  Dragged->SetDrags(true);
  LeftDownEvent(115, 115, 0, false);
  EXPECT_EQ(GetActionState(), 1);
  MouseMoveEvent(450, 450);
  MouseMoveEvent(0, 0);
  LeftUpEvent(460, 470, 0x400);
  EXPECT_EQ(GetActionState(), ACTIONSTATE_NONE);
  EXPECT_EQ(Log, (Lines{"dragged down 5,5", "dragged move 340,340", "dragged move -110,-110",
                        "dragged up 350,360 1024"}));
  EXPECT_EQ(Root->GetCapture(), nullptr);
  Log.clear();
  MouseMoveEvent(450, 450);
  EXPECT_EQ(Log, (Lines{"other move 50,50"}));
}

// A switched-off button still takes the click: the element under it hears nothing.
TEST_F(RoutingTest, ADisabledElementStillSwallowsTheClick) {
  AddLast<CDisabledButton>(*Root, 10, 10, 50, 20, Log);
  AddLast<CRecordingElement>(*Root, 0, 0, 200, 200, Log, "below");
  LeftDownEvent(20, 20, 0, false);
  LeftUpEvent(20, 20, 0);
  EXPECT_TRUE(Log.empty());
  LeftDownEvent(100, 100, 0, false);
  EXPECT_EQ(Log, (Lines{"below down 100,100"}));
}

TEST_F(RoutingTest, ALeftUpWithoutPressEndsAStaleCapture) {
  auto* Element = AddLast<CRecordingElement>(*Root, 0, 0, 50, 50, Log, "e");
  Element->SetCapture(nullptr);
  LeftUpEvent(70, 80, 0);
  EXPECT_EQ(Log, (Lines{"e up 70,80 0"}));
  EXPECT_EQ(Root->GetCapture(), nullptr);
}

TEST_F(RoutingTest, ADoubleClickCountsAsAPressByDefault) {
  AddLast<CRecordingElement>(*Root, 0, 0, 50, 50, Log, "e");
  LeftDownEvent(5, 6, 0x200, true);
  EXPECT_EQ(Log, (Lines{"e down 5,6"}));
}

TEST_F(RoutingTest, RightUpGoesToTheTreeAfterARightPress) {
  AddLast<CRecordingElement>(*Root, 0, 0, 50, 50, Log, "e");
  RightUpEvent(5, 5, 0);
  EXPECT_TRUE(Log.empty());
  RightDownEvent(5, 5, 0);
  EXPECT_EQ(GetActionState(), 2);
  RightUpEvent(7, 8, 0);
  EXPECT_EQ(Log, (Lines{"e right 7,8"}));
  EXPECT_EQ(GetActionState(), ACTIONSTATE_NONE);
}

TEST_F(RoutingTest, TheWheelSendsOneEventPerNotchAtTheMouse) {
  AddLast<CRecordingElement>(*Root, 0, 0, 50, 50, Log, "e");
  MouseMoveEvent(10, 20);
  Log.clear();
  WheelEvent(60);
  EXPECT_TRUE(Log.empty());
  WheelEvent(60);
  WheelEvent(-240);
  EXPECT_EQ(Log, (Lines{"e wheel1 10,20", "e wheel2 10,20", "e wheel2 10,20"}));
}

// A modal window takes all input in its own coordinates and closes when it is done.
TEST_F(RoutingTest, TheModalWindowTakesTheInputAndClosesWhenDone) {
  class CModal : public CGUIComposite {
   public:
    explicit CModal(Lines& Log) : m_Log(Log) {}
    bool LeftUp(int x, int y, int) override {
      m_Log.push_back("modal up " + std::to_string(x) + "," + std::to_string(y));
      SetActionState(ACTIONSTATE_NONE);
      return true;
    }
    void KeyDown(int Key) override { m_Log.push_back("modal key " + std::to_string(Key)); }

   private:
    Lines& m_Log;
  };
  AddLast<CRecordingElement>(*Root, 0, 0, 800, 600, Log, "root child");
  auto Modal = std::make_unique<CModal>(Log);
  Modal->SetPosition(300, 200);
  Modal->SetSize(100, 100);
  SetModalWindow(std::move(Modal));
  SetActionState(ACTIONSTATE_MODAL);
  KeyEvent(0x1B);
  LeftUpEvent(310, 220, 0);
  EXPECT_EQ(Log, (Lines{"modal key 27", "modal up 10,20"}));
  EXPECT_EQ(GetModalWindow(), nullptr);
}

TEST_F(RoutingTest, KeysGoToBindingsFirstAndThenToTheRoot) {
  auto* Receiver = AddLast<CRecordingElement>(*Root, 0, 0, 10, 10, Log, "console");
  Root->SetKeyReceiver(Receiver);
  RegisterKey(0x44C, {Receiver, 506});
  KeyEvent(0x461);
  KeyEvent(0x46C);
  EXPECT_EQ(Log, (Lines{"console key 1121", "console event 506"}));
}

TEST_F(RoutingTest, TheFramerateKeyGoesNoFurther) {
  auto* Receiver = AddLast<CRecordingElement>(*Root, 0, 0, 10, 10, Log, "console");
  Root->SetKeyReceiver(Receiver);
  EXPECT_FALSE(IsFramerateShown());
  KeyEvent(KEY_TOGGLE_FRAMERATE);
  EXPECT_TRUE(IsFramerateShown());
  EXPECT_TRUE(Log.empty());
}

// After ten ticks of rest the element under the mouse is asked for its tooltip.
TEST_F(RoutingTest, TheTooltipComesAfterTenTicksOfRest) {
  AddLast<CRecordingElement>(*Root, 0, 0, 10, 10, Log, "a");
  AddLast<CRecordingElement>(*Root, 100, 100, 50, 50, Log, "b");
  AdvanceTickCounter();
  MouseMoveEvent(120, 130);
  Log.clear();
  for (int Tick = 1; Tick <= 9; ++Tick) {
    AdvanceTickCounter();
    TooltipTick();
  }
  EXPECT_TRUE(Log.empty());
  EXPECT_EQ(GetTooltip(), "");
  AdvanceTickCounter();
  TooltipTick();
  EXPECT_EQ(Log, (Lines{"b hover 20,30"}));
  EXPECT_EQ(GetTooltip(), "b tip");
  AdvanceTickCounter();
  TooltipTick();
  EXPECT_EQ(Log.size(), 1u);
  KeyEvent('x');
  EXPECT_EQ(GetTooltip(), "");
}

// Leaving the window takes the tooltip away, and no hover follows the rest.
TEST_F(RoutingTest, LeavingTheWindowLeavesTheMouseOverNothing) {
  AddLast<CRecordingElement>(*Root, 100, 100, 50, 50, Log, "b");
  AdvanceTickCounter();
  MouseMoveEvent(120, 130);
  for (int Tick = 1; Tick <= 10; ++Tick) {
    AdvanceTickCounter();
    TooltipTick();
  }
  ASSERT_EQ(GetTooltip(), "b tip");
  MouseLeftWindowEvent();
  EXPECT_EQ(GetTooltip(), "");
  EXPECT_EQ(GetMouseX(), -1);
  EXPECT_EQ(GetMouseY(), -1);
  Log.clear();
  for (int Tick = 1; Tick <= 20; ++Tick) {
    AdvanceTickCounter();
    TooltipTick();
  }
  EXPECT_TRUE(Log.empty());
}

// Each motion gives the arrow back; the crosshair, dragging and help states
// show their own cursors whatever the element asked for.
TEST_F(RoutingTest, TheCursorIsTheElementsUnlessTheActionStateHasItsOwn) {
  SetMouseCursor(2);
  EXPECT_EQ(GetMouseCursor(), 2);
  MouseMoveEvent(10, 10);
  EXPECT_EQ(GetMouseCursor(), 1);
  for (const auto& [State, Cursor] : {std::pair{6, 5}, {7, 4}, {8, 4}, {9, 4}, {10, 6}, {0, 1}}) {
    SetActionState(State);
    EXPECT_EQ(GetMouseCursor(), Cursor) << "state " << State;
  }
}

TEST_F(RoutingTest, LensHelpBringsTheRectangleUpToRootCoordinates) {
  class CHelpful : public CGUIElement {
   public:
    bool LensHelp(int, int) override {
      LensHelpState().WantedText = "help";
      LensHelpState().X = 1;
      LensHelpState().Y = 2;
      return true;
    }
  };
  auto* Panel = AddLast<CGUIComposite>(*Root, 100, 50, 200, 200);
  AddLast<CHelpful>(*Panel, 10, 20, 30, 30);
  EXPECT_TRUE(Root->LensHelp(115, 75));
  EXPECT_EQ(LensHelpState().X, 111);
  EXPECT_EQ(LensHelpState().Y, 72);
  EXPECT_FALSE(Root->LensHelp(500, 500));
  EXPECT_EQ(LensHelpState().WantedText, "");
  EXPECT_TRUE(LensHelpState().Changed);
}

}  // namespace
