// The side bar: the stacking manager with its strategies, the draggable panel
// and the framed content window with its buttons, body and resizers.
#include "gui/ContentWindow.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "core/Preferences.h"
#include "graphics/Graphics.h"
#include "gui/Buttons.h"
#include "gui/TextRectangle.h"
#include "gui/Widgets.h"
#include "tests/gui/Elements.h"
#include "tests/gui/WidgetFixture.h"

namespace {

using namespace guitest;

constexpr int BAR_WIDTH = 176;
constexpr int FRAME_HEIGHT = 19;
constexpr int BACKGROUND_SKIN = 7;

// A panel that, like the real windows, never goes below its minimum height.
class CPanel : public CSimpleContentWindow {
 public:
  CPanel(int Identifier, int Minimum, bool Discardable)
      : CSimpleContentWindow(Identifier, true), Minimum(Minimum), Discardable(Discardable) {}

  int GetMinimumHeight() const override { return Minimum; }
  bool MayBeDiscarded() const override { return Discardable; }
  void SetSize(int NewWidth, int NewHeight) override { StoreSize(NewWidth, std::max(NewHeight, Minimum)); }

 private:
  int Minimum;
  bool Discardable;
};

class CTestBody : public CGUIContentBody {
 public:
  explicit CTestBody(int Minimum) : Minimum(Minimum) {}
  int GetMinimumHeight() const override { return Minimum; }

 private:
  int Minimum;
};

// Notes its own end.
class CWatchedElement : public CGUIElement {
 public:
  explicit CWatchedElement(bool& Destroyed) : Destroyed(Destroyed) {}
  ~CWatchedElement() override { Destroyed = true; }

 private:
  bool& Destroyed;
};

class ContentWindowTest : public CWidgetTest {
 protected:
  ContentWindowTest() { Bar.SetSize(BAR_WIDTH, 300); }

  // A panel of the given height at the tail of the bar, without any arranging.
  CPanel* Put(int Identifier, int Height, int Minimum = 10, bool Discardable = true) {
    auto Panel = std::make_unique<CPanel>(Identifier, Minimum, Discardable);
    Panel->SetSize(BAR_WIDTH, Height);
    CPanel* Raw = Panel.get();
    Bar.AddChildLast(std::move(Panel));
    return Raw;
  }

  // Stacks the given panels, ids from 1, and tidies up.
  void Stack(const std::vector<int>& Heights, int Minimum = 10) {
    for (size_t Index = 0; Index < Heights.size(); ++Index) Put(static_cast<int>(Index) + 1, Heights[Index], Minimum);
    Bar.Arrange(ARRANGE_TIDY, nullptr);
  }

  CPanel* Incoming(int Identifier, int Height, int Minimum, bool Discardable = true) {
    auto Panel = std::make_unique<CPanel>(Identifier, Minimum, Discardable);
    Panel->SetSize(BAR_WIDTH, Height);
    CPanel* Raw = Panel.get();
    Bar.Arrange(ARRANGE_INCOMING, std::move(Panel));
    return Raw;
  }

  // "identifier@y+height" for each child in list order.
  std::string Column() const {
    std::string Text;
    for (CGUIComponent* Child = Bar.GetFirstChild(); Child != nullptr; Child = Bar.ChildAfter(Child)) {
      const auto& Window = dynamic_cast<const CGenericContentWindow&>(*Child);
      if (!Text.empty()) Text += " ";
      Text += std::to_string(Window.GetIdentifier()) + "@" + std::to_string(Child->getY()) + "+" +
              std::to_string(Child->getHeight());
    }
    return Text;
  }

  CGenericContentWindow& Window(int Identifier) const {
    CGenericContentWindow* Found = Bar.GetContentWindow(Identifier);
    EXPECT_NE(Found, nullptr) << Identifier;
    return *Found;
  }

  std::vector<std::string> DrawBar() {
    Recorder.Clear();
    Bar.Draw(TEMP_SURFACE, 0, 0);
    return Recorder.Lines();
  }

  static std::string SkinLine(int Skin, int x, int y, int Width, int Height, int StartY = 0) {
    return "skin s=2 number=" + std::to_string(Skin) + " area=" + std::to_string(x) + "," + std::to_string(y) + "," +
           std::to_string(Width) + "," + std::to_string(Height) + " start=0," + std::to_string(StartY);
  }

  // A framed window with a body of the given minimum height, sized as a factory does.
  static std::unique_ptr<CContentWindow> MakeWindow(int Identifier, int BodyHeight, int BodyMinimum = 20,
                                                    bool Resizable = true) {
    auto Window =
        std::make_unique<CContentWindow>(Identifier, std::make_unique<CTestBody>(BodyMinimum), Resizable, false);
    Window->SetSize(BAR_WIDTH, BodyHeight + CContentWindow::GetFrameHeight());
    return Window;
  }

  CContentWindow* Open(int Identifier, int BodyHeight, int BodyMinimum = 20) {
    auto Made = MakeWindow(Identifier, BodyHeight, BodyMinimum);
    CContentWindow* Raw = Made.get();
    Bar.Arrange(ARRANGE_INCOMING, std::move(Made));
    return Raw;
  }

  // A press and release through the bar on a child of a window in it.
  void ClickThroughBar(const CGUIComponent& Window, const CGUIComponent& Child) {
    const int x = Window.getX() + Child.getX() + 2;
    const int y = Window.getY() + Child.getY() + 2;
    Bar.LeftDown(x, y, 0);
    Bar.LeftUp(x, y, 0);
  }

  CDialogWindow Bar;
};

// --- Stacking ---

TEST_F(ContentWindowTest, ChildrenTouchInListOrderAtTheBarsWidth) {
  Stack({50, 70, 30});
  auto Head = std::make_unique<CPanel>(9, 10, true);
  Head->SetSize(40, 20);
  Bar.AddChild(std::move(Head));
  Bar.Arrange(ARRANGE_TIDY, nullptr);
  EXPECT_EQ(Column(), "9@0+20 1@20+50 2@70+70 3@140+30");
  EXPECT_EQ(Window(9).getWidth(), BAR_WIDTH);
  EXPECT_EQ(Bar.GetMinimumHeight(), 170);
  EXPECT_EQ(Bar.GetFreeSpace(), 130);
  EXPECT_EQ(Bar.GetMinimumWidth(), BAR_WIDTH);
}

TEST_F(ContentWindowTest, ANewBarWidthReachesEveryChildAndKeepsTheirHeights) {
  Stack({50, 70});
  Bar.SetSize(200, 300);
  EXPECT_EQ(Column(), "1@0+50 2@50+70");
  EXPECT_EQ(Window(1).getWidth(), 200);
  EXPECT_EQ(Window(2).getWidth(), 200);
  EXPECT_EQ(Bar.GetClientWidth(), 200);
}

TEST_F(ContentWindowTest, DeletingAChildClosesTheGap) {
  Stack({50, 70, 30});
  Bar.DeleteChild(&Window(2));
  EXPECT_EQ(Column(), "1@0+50 3@50+30");
}

TEST_F(ContentWindowTest, ContentWindowsAreFoundByTheirFirstIdentifier) {
  Put(4, 20);
  CPanel* First = Put(7, 20);
  Put(7, 20);
  EXPECT_EQ(Bar.GetContentWindow(7), First);
  EXPECT_EQ(Bar.GetContentWindow(3), nullptr);
}

TEST_F(ContentWindowTest, SavingStoresKindsAndHeightsButNoContainers) {
  Preferences().ContentWindows = {{4, 11}};
  Put(SMALL_INVENTORY_WINDOW, 30);
  Put(CONTAINER_WINDOW_FIRST + 2, 40);
  Put(VIP_WINDOW, 50);
  Bar.SaveContentWindows(true);
  Bar.SaveContentWindows(false);
  const std::vector<TContentWindowEntry> Expected{{4, 11}, {1, 30}, {9, 50}, {2, 30}, {9, 50}};
  EXPECT_EQ(Preferences().ContentWindows, Expected);
}

TEST_F(ContentWindowTest, BadStrategiesAndMissingWorkFailLoudly) {
  Stack({50});
  EXPECT_EQ(FailureOf([&] { Bar.Arrange(3, nullptr); }), "unknown strategy");
  EXPECT_EQ(FailureOf([&] { Bar.Arrange(ARRANGE_SHRUNK, nullptr); }), "Work!=NULL");
  EXPECT_EQ(FailureOf([&] { Bar.Arrange(ARRANGE_INCOMING, std::unique_ptr<CGUIComponent>{}); }), "Work!=NULL");
  // The failed calls leave the bar free to arrange again.
  Put(2, 20);
  Bar.Arrange(ARRANGE_TIDY, nullptr);
  EXPECT_EQ(Column(), "1@0+50 2@50+20");
}

// --- Dragging ---

TEST_F(ContentWindowTest, APanelDraggedPastItsNeighboursMiddleSwapsAndBackAgain) {
  Stack({50, 50, 50});
  Bar.LeftDown(10, 10, 0);
  EXPECT_TRUE(dynamic_cast<CSimpleContentWindow&>(Window(1)).IsDragging());
  EXPECT_EQ(Bar.GetCapture(), &Window(1));
  // Its bottom (79) passes the middle of the second panel (75).
  Bar.MouseMove(10, 39);
  EXPECT_EQ(Bar.GetDragged(), &Window(1));
  EXPECT_EQ(Column(), "2@0+50 1@29+50 3@100+50") << "the neighbour jumps up";
  Bar.MouseMove(10, 20);
  EXPECT_EQ(Column(), "1@10+50 2@50+50 3@100+50") << "back above the neighbour's middle";
  Bar.LeftUp(10, 20, 0);
  EXPECT_EQ(Bar.GetDragged(), nullptr);
  EXPECT_EQ(Bar.GetCapture(), nullptr);
  EXPECT_FALSE(dynamic_cast<CSimpleContentWindow&>(Window(1)).IsDragging());
  EXPECT_EQ(Column(), "1@0+50 2@50+50 3@100+50");
}

TEST_F(ContentWindowTest, ASmallMoveDoesNotSwapAndTheDragStaysWithinTheBar) {
  Stack({50, 50, 50});
  Bar.LeftDown(10, 60, 0);
  Bar.MouseMove(10, 70);
  EXPECT_EQ(Column(), "1@0+50 2@60+50 3@100+50");
  Bar.MouseMove(10, -500);
  EXPECT_EQ(Column(), "2@0+50 1@50+50 3@100+50");
  // One swap a move: it takes two moves to pass both neighbours.
  Bar.MouseMove(10, 2000);
  EXPECT_EQ(Column(), "1@0+50 2@250+50 3@100+50");
  Bar.MouseMove(10, 2001);
  EXPECT_EQ(Column(), "1@0+50 3@50+50 2@250+50");
  Bar.LeftUp(10, 2000, 0);
  EXPECT_EQ(Column(), "1@0+50 3@50+50 2@100+50");
}

TEST_F(ContentWindowTest, TheDraggedPanelsPlaceIsBlackAndThePanelIsDrawnOnTop) {
  Stack({50, 50, 50});
  Bar.LeftDown(10, 10, 0);
  Bar.MouseMove(10, 39);  // now second in the list, held at 29
  const std::vector<std::string> Lines = DrawBar();
  const std::string Black = "rect s=2 area=0,50,176,50 rgb=0,0,0 alpha=255";
  const auto Hole = std::ranges::find(Lines, Black);
  ASSERT_NE(Hole, Lines.end()) << Recorder.Log();
  EXPECT_EQ(Lines.back(), SkinLine(BACKGROUND_SKIN, 0, 29, BAR_WIDTH, 50)) << Recorder.Log();
  EXPECT_EQ(std::ranges::count(Lines, SkinLine(BACKGROUND_SKIN, 0, 29, BAR_WIDTH, 50)), 1);
}

// --- Changes of room ---

TEST_F(ContentWindowTest, GrowingTheLastWindowShrinksTheOthersFromTheBottomUp) {
  Stack({100, 100, 80}, 40);
  Window(3).SetSize(BAR_WIDTH, 180);
  Bar.Arrange(ARRANGE_GROWN, &Window(3));
  EXPECT_EQ(Column(), "1@0+80 2@80+40 3@120+180");
  EXPECT_EQ(Bar.GetFreeSpace(), 0);
}

TEST_F(ContentWindowTest, TheGrownWindowGivesBackOnlyWhenNoOtherCan) {
  Stack({100, 100, 80}, 40);
  Window(3).SetSize(BAR_WIDTH, 260);
  Bar.Arrange(ARRANGE_GROWN, &Window(3));
  EXPECT_EQ(Column(), "1@0+40 2@40+40 3@80+220");
}

TEST_F(ContentWindowTest, NothingShrinksWhenEveryWindowIsAtItsMinimum) {
  Put(1, 100, 100);
  Put(2, 200, 250);
  Bar.Arrange(ARRANGE_GROWN, &Window(2));
  EXPECT_EQ(Column(), "1@0+100 2@100+250");
}

TEST_F(ContentWindowTest, WhatAWindowGivesUpGoesToTheWindowsBelowItFromTheBottom) {
  Stack({100, 100, 100});
  Window(1).SetSize(BAR_WIDTH, 60);
  Bar.Arrange(ARRANGE_SHRUNK, &Window(1));
  EXPECT_EQ(Column(), "1@0+60 2@60+100 3@160+140");
}

TEST_F(ContentWindowTest, OnlyTheSpaceFreedSinceTheLastArrangeIsGivenBack) {
  Stack({100, 100, 50});  // 50 free before
  Window(1).SetSize(BAR_WIDTH, 70);
  Bar.Arrange(ARRANGE_SHRUNK, &Window(1));
  EXPECT_EQ(Column(), "1@0+70 2@70+100 3@170+80");
}

TEST_F(ContentWindowTest, TheLastWindowShrinkingLeavesTheSpaceFree) {
  Stack({100, 100, 100});
  Window(3).SetSize(BAR_WIDTH, 60);
  Bar.Arrange(ARRANGE_SHRUNK, &Window(3));
  EXPECT_EQ(Column(), "1@0+100 2@100+100 3@200+60");
  EXPECT_EQ(Bar.GetFreeSpace(), 40);
}

TEST_F(ContentWindowTest, AShrinkingBarCutsTheFirstWindowThatDoesNotFitAndClosesThoseThatCannot) {
  Put(1, 100, 40);
  Put(2, 100, 40);
  Put(3, 100, 60);
  Put(4, 50, 10);
  Bar.SetSize(BAR_WIDTH, 260);
  EXPECT_EQ(Column(), "1@0+100 2@100+100 3@200+60");
  Bar.SetSize(BAR_WIDTH, 210);
  EXPECT_EQ(Column(), "1@0+100 2@100+100") << "the third's minimum no longer fits";
}

TEST_F(ContentWindowTest, AWindowThatMayNotGoSurvivesAtItsMinimumBeyondTheBottom) {
  Put(1, 100, 40);
  Put(2, 100, 40);
  Put(3, 100, 60, false);
  Bar.SetSize(BAR_WIDTH, 210);
  EXPECT_EQ(Column(), "1@0+100 2@100+100 3@200+60");
  EXPECT_EQ(Bar.GetFreeSpace(), -50);
  const auto FreeSpaceCorner = [](const std::string& Line) { return Line.find("number=31") != std::string::npos; };
  EXPECT_TRUE(std::ranges::none_of(DrawBar(), FreeSpaceCorner));
}

TEST_F(ContentWindowTest, ANewWindowEntersAtTheBottomWithTheFreeHeight) {
  Stack({100, 150});
  Incoming(5, 120, 30);
  EXPECT_EQ(Column(), "1@0+100 2@100+150 5@250+50");
  EXPECT_EQ(Window(5).getWidth(), BAR_WIDTH);
}

TEST_F(ContentWindowTest, ANewWindowSqueezesTheOthersBottomFirstToGetItsMinimum) {
  Put(1, 100, 40);
  Put(2, 180, 100);
  Bar.Arrange(ARRANGE_TIDY, nullptr);
  Incoming(5, 120, 50);
  EXPECT_EQ(Column(), "1@0+100 2@100+150 5@250+50");
}

TEST_F(ContentWindowTest, ANewWindowClosesWindowsThatMayGoWhenSqueezingIsNotEnough) {
  Put(1, 100, 90);
  Put(2, 190, 180);
  Bar.Arrange(ARRANGE_TIDY, nullptr);
  Incoming(5, 60, 50);
  EXPECT_EQ(Column(), "1@0+100 5@100+60");
}

TEST_F(ContentWindowTest, InAFullBarWhereNoWindowMayGoANewWindowGetsWhatItCan) {
  Put(1, 150, 150, false);
  Put(2, 140, 100, false);
  Bar.Arrange(ARRANGE_TIDY, nullptr);
  Incoming(5, 80, 40, false);
  EXPECT_EQ(Column(), "1@0+150 2@150+110 5@260+40");
  Incoming(6, 80, 5);
  EXPECT_EQ(Column(), "1@0+150 2@150+110 5@260+40 6@300+5") << "nothing left: the new one keeps its minimum";
}

// --- The free space ---

TEST_F(ContentWindowTest, TheFreeSpaceLooksLikeAnEmptyPanel) {
  Stack({100, 100});
  const std::vector<std::string> Lines = DrawBar();
  const std::vector<std::string> Free(Lines.end() - 9, Lines.end());
  const int Top = 200;
  const std::vector<std::string> Expected{
      SkinLine(31, 0, Top, 4, 4),         SkinLine(37, 4, Top, 168, 4),
      SkinLine(32, 172, Top, 4, 4),       SkinLine(33, 0, 296, 4, 4),
      SkinLine(38, 4, 296, 168, 4),       SkinLine(34, 172, 296, 4, 4),
      SkinLine(35, 0, 204, 4, 92),        SkinLine(36, 172, 204, 4, 92),
      SkinLine(BACKGROUND_SKIN, 4, 204, 168, 92, Top % 96)};
  EXPECT_EQ(Free, Expected) << Recorder.Log();
}

TEST_F(ContentWindowTest, ASlimFreeSpaceCutsTheRowsAndWithoutFreeSpaceThereIsNone) {
  Stack({100, 194});
  const std::vector<std::string> Lines = DrawBar();
  const std::vector<std::string> Free(Lines.end() - 6, Lines.end());
  const std::vector<std::string> Expected{SkinLine(31, 0, 294, 4, 4), SkinLine(37, 4, 294, 168, 4),
                                          SkinLine(32, 172, 294, 4, 4), SkinLine(33, 0, 298, 4, 2),
                                          SkinLine(38, 4, 298, 168, 2), SkinLine(34, 172, 298, 4, 2)};
  EXPECT_EQ(Free, Expected) << Recorder.Log();
  Window(2).SetSize(BAR_WIDTH, 200);
  Bar.Update();
  EXPECT_TRUE(std::ranges::all_of(Bar.GetDrawingList(), [](const DrawingListEntry& Entry) { return Entry.Skin == 0; }));
}

// --- The panel ---

TEST_F(ContentWindowTest, APanelsBackgroundRunsOnFromItsPlaceInTheBar) {
  Stack({100, 50});
  CGUIComponent& Second = Window(2);
  Second.Update();
  EXPECT_EQ(dynamic_cast<CSimpleContentWindow&>(Second).GetBackgroundOffset(), 4);
  Recorder.Clear();
  Second.Draw(TEMP_SURFACE, 10, 20);
  EXPECT_EQ(Recorder.Lines(), (std::vector<std::string>{SkinLine(BACKGROUND_SKIN, 10, 20, BAR_WIDTH, 50, 4)}));
}

TEST_F(ContentWindowTest, APressThatAChildUsesStartsNoDrag) {
  std::vector<std::string> Log;
  CPanel* Panel = Put(1, 100);
  AddLast<CRecordingElement>(*Panel, 10, 10, 20, 20, Log, "child");
  Bar.Arrange(ARRANGE_TIDY, nullptr);
  Bar.LeftDown(15, 15, 0);
  EXPECT_FALSE(Panel->IsDragging());
  EXPECT_EQ(Log, (std::vector<std::string>{"child down 5,5"}));
  Bar.LeftDown(50, 50, 0);
  EXPECT_TRUE(Panel->IsDragging());
}

// --- The framed window ---

TEST_F(ContentWindowTest, TheFramePlacesBodyAndResizers) {
  auto Window = MakeWindow(SKILLS_WINDOW, 100);
  const int H = 119;
  EXPECT_EQ(Window->getHeight(), H);
  const CGUIContentBody& Body = *Window->GetBody();
  EXPECT_EQ((std::vector<int>{Body.getX(), Body.getY(), Body.getWidth(), Body.getHeight()}),
            (std::vector<int>{4, 15, 168, 100}));
  const CGUIResizer& Corner = *Window->GetResizer();
  EXPECT_EQ((std::vector<int>{Corner.getX(), Corner.getY(), Corner.getWidth(), Corner.getHeight()}),
            (std::vector<int>{3, H - 16, 13, 13}));
  const CGUIResizer& Edge = *Window->GetBottomResizer();
  EXPECT_EQ((std::vector<int>{Edge.getX(), Edge.getY(), Edge.getWidth(), Edge.getHeight()}),
            (std::vector<int>{0, H - 4, BAR_WIDTH, 4}));
  EXPECT_EQ(CContentWindow::GetFrameHeight(), FRAME_HEIGHT);
  EXPECT_EQ(Window->GetMinimumHeight(), FRAME_HEIGHT + 20);
}

TEST_F(ContentWindowTest, TheFrameIsDrawnFromEightSkins) {
  auto Window = MakeWindow(SKILLS_WINDOW, 100);
  const std::vector<DrawingListEntry>& List = Window->GetDrawingList();
  ASSERT_EQ(List.size(), 8u);
  const auto Text = [](const DrawingListEntry& E) {
    return std::to_string(E.Skin) + ":" + std::to_string(E.x) + "," + std::to_string(E.y) + "," +
           std::to_string(E.width) + "," + std::to_string(E.height);
  };
  std::vector<std::string> Entries;
  for (const DrawingListEntry& Entry : List) Entries.push_back(Text(Entry));
  EXPECT_EQ(Entries, (std::vector<std::string>{"163:0,0,0,0", "167:4,0,168,15", "164:172,0,0,0", "169:0,15,4,100",
                                               "170:172,15,4,100", "165:0,115,0,0", "168:4,115,168,4",
                                               "166:172,115,0,0"}));
}

TEST_F(ContentWindowTest, AWindowIsNeverLowerThanItsFrameAndBodyMinimum) {
  auto Window = MakeWindow(SKILLS_WINDOW, 100, 30);
  Window->SetSize(BAR_WIDTH, 10);
  EXPECT_EQ(Window->getHeight(), FRAME_HEIGHT + 30);
  EXPECT_EQ(Window->GetBody()->getHeight(), 30);
}

TEST_F(ContentWindowTest, AFixedSizeWindowHasNoResizersAndABodyIsRequired) {
  auto Window = MakeWindow(STATUS_WINDOW, 40, 20, false);
  EXPECT_EQ(Window->GetResizer(), nullptr);
  EXPECT_EQ(Window->GetBottomResizer(), nullptr);
  EXPECT_EQ(FailureOf([] { CContentWindow(1, nullptr, true, false); }), "_Body!=NULL");
}

TEST_F(ContentWindowTest, TitleBarElementsTakeTheirPlacesAndReplaceTheirPredecessors) {
  auto Window = MakeWindow(SKILLS_WINDOW, 100);
  Window->SetTitle("Skills");
  auto* Title = dynamic_cast<CGUITextRectangle*>(Window->GetFirstChild());
  ASSERT_NE(Title, nullptr);
  EXPECT_EQ(Title->GetText(), "Skills");
  EXPECT_EQ(Title->GetStyle(), (TextStyle{4, 144, 144, 144, LEFT_ALIGN}));
  EXPECT_EQ((std::vector<int>{Title->getX(), Title->getY(), Title->getWidth(), Title->getHeight()}),
            (std::vector<int>{20, 4, BAR_WIDTH - 61, 10}));
  bool OldIconGone = false;
  Window->SetIcon(std::make_unique<CWatchedElement>(OldIconGone));
  Window->SetIcon(std::make_unique<CGUIElement>());
  EXPECT_TRUE(OldIconGone);
  const CGUIComponent* Icon = Window->GetFirstChild();
  EXPECT_EQ((std::vector<int>{Icon->getX(), Icon->getY(), Icon->getWidth(), Icon->getHeight()}),
            (std::vector<int>{4, 2, 12, 12}));
  Window->SetTitle("Battle");
  int Titles = 0;
  for (CGUIComponent* Child = Window->GetFirstChild(); Child != nullptr; Child = Window->ChildAfter(Child)) {
    Titles += dynamic_cast<CGUITextRectangle*>(Child) != nullptr ? 1 : 0;
  }
  EXPECT_EQ(Titles, 1);
}

TEST_F(ContentWindowTest, AHiddenParentButtonIsOwnedOutsideTheListAndReplacedDirectly) {
  auto Window = MakeWindow(CONTAINER_WINDOW_FIRST, 100);
  bool FirstGone = false;
  auto First = std::make_unique<CWatchedElement>(FirstGone);
  First->SetSize(11, 11);
  CGUIComponent* Button = First.get();
  Window->SetParentButton(std::move(First));
  EXPECT_EQ(Button->getX(), BAR_WIDTH - 39);
  EXPECT_EQ(Button->getY(), 2);
  Window->HideParentButton();
  EXPECT_FALSE(Window->HasChild(Button));
  EXPECT_FALSE(FirstGone);
  Window->ShowParentButton();
  EXPECT_EQ(Window->GetFirstChild(), Button);
  Window->HideParentButton();
  Window->SetParentButton(std::make_unique<CGUIElement>());
  EXPECT_TRUE(FirstGone);
}

TEST_F(ContentWindowTest, TheCloseButtonClosesTheWindowAndExplainsItself) {
  CContentWindow* Window = Open(SKILLS_WINDOW, 100);
  Open(BATTLE_WINDOW, 50);
  Window->AddCloseButton();
  auto* Close = dynamic_cast<CGUIButton*>(Window->GetFirstChild());
  ASSERT_NE(Close, nullptr);
  EXPECT_EQ(Close->getX(), BAR_WIDTH - 15);
  EXPECT_EQ(Close->getY(), 2);
  Close->Hover(1, 1);
  EXPECT_EQ(GetTooltip(), "Close this window");
  ClickThroughBar(*Window, *Close);
  EXPECT_EQ(Bar.GetContentWindow(SKILLS_WINDOW), nullptr);
  EXPECT_EQ(Column(), "7@0+69");
}

TEST_F(ContentWindowTest, TheMinimiseButtonFoldsTheWindowToItsTitleAndBack) {
  CContentWindow* Window = Open(SKILLS_WINDOW, 100);
  Open(BATTLE_WINDOW, 50);
  Window->AddMinimiseButton();
  CGUIButton* Button = Window->GetMinimiseButton();
  EXPECT_EQ(Button->getX(), BAR_WIDTH - 28);
  Button->Hover(1, 1);
  EXPECT_EQ(GetTooltip(), "Maximise or minimise window");
  ClickThroughBar(*Window, *Button);
  EXPECT_TRUE(Window->IsMinimised());
  EXPECT_TRUE(Window->GetBody()->IsMinimised());
  EXPECT_EQ(Window->GetSavedHeight(), 119);
  EXPECT_FALSE(Window->HasChild(Window->GetBody()));
  EXPECT_FALSE(Window->HasChild(Window->GetResizer()));
  EXPECT_FALSE(Window->HasChild(Window->GetBottomResizer()));
  EXPECT_EQ(Window->GetMinimumHeight(), FRAME_HEIGHT);
  EXPECT_EQ(Column(), "6@0+19 7@19+69");
  Recorder.Clear();
  Button->Draw(TEMP_SURFACE, 0, 0);
  EXPECT_NE(Recorder.Log().find("number=176"), std::string::npos) << Recorder.Log();

  ClickThroughBar(*Window, *Button);
  EXPECT_FALSE(Window->IsMinimised());
  EXPECT_FALSE(Window->GetBody()->IsMinimised());
  EXPECT_EQ(Column(), "6@0+119 7@119+69");
  EXPECT_EQ(Window->GetLastChild(), Window->GetBottomResizer());
  Recorder.Clear();
  Button->Draw(TEMP_SURFACE, 0, 0);
  EXPECT_NE(Recorder.Log().find("number=174"), std::string::npos) << Recorder.Log();
}

TEST_F(ContentWindowTest, MinimisingTwiceOrMaximisingAnOpenWindowFails) {
  auto Window = MakeWindow(SKILLS_WINDOW, 100);
  EXPECT_EQ(FailureOf([&] { Window->Maximise(); }), "IsMinimized==true");
  Window->Minimise();
  EXPECT_EQ(FailureOf([&] { Window->Minimise(); }), "IsMinimized==false");
  EXPECT_EQ(FailureOf([&] { Window->OnEvent(11); }), "unknown event");
}

TEST_F(ContentWindowTest, ADoubleClickOnTheTitleTogglesButNotOnTheBody) {
  auto Window = MakeWindow(SKILLS_WINDOW, 100);
  EXPECT_FALSE(Window->LeftDouble(80, 50, 0));
  EXPECT_FALSE(Window->IsMinimised());
  EXPECT_TRUE(Window->LeftDouble(80, 5, 0));
  EXPECT_TRUE(Window->IsMinimised());
  EXPECT_EQ(Window->getHeight(), CContentWindow::MinimisedHeight);
  EXPECT_TRUE(Window->LeftDouble(80, 5, 0));
  EXPECT_EQ(Window->getHeight(), 119);
}

TEST_F(ContentWindowTest, AMinimisedBodyDrawsNothing) {
  CTestBody Body(10);
  Body.SetSize(20, 20);
  AddLast<CGUIButton>(Body, 0, 0, 11, 11, 171, 172, nullptr, false, 0, 0, NoTarget);
  EXPECT_EQ(Body.GetPreferredHeight(), 10);
  EXPECT_EQ(Body.GetNeededHeight(), 10);
  EXPECT_EQ(Body.GetMaximumHeight(), 2147483647);
  Body.Draw(TEMP_SURFACE, 0, 0);
  EXPECT_EQ(Recorder.Lines().size(), 1u);
  Body.OnMinimise();
  EXPECT_TRUE(Body.IsMinimised());
  Recorder.Clear();
  Body.Draw(TEMP_SURFACE, 0, 0);
  EXPECT_TRUE(Recorder.Lines().empty());
  Body.OnMaximise();
  Body.Draw(TEMP_SURFACE, 0, 0);
  EXPECT_EQ(Recorder.Lines().size(), 1u);
}

TEST_F(ContentWindowTest, DraggingTheBottomEdgeGrowsTheWindowAndTheOthersMakeRoom) {
  CContentWindow* Skills = Open(SKILLS_WINDOW, 100);  // 119
  Open(BATTLE_WINDOW, 100);                          // 119
  Open(VIP_WINDOW, 40);                              // 59, 3 free
  const int Edge = Skills->getHeight() - 2;
  Bar.LeftDown(80, Edge, 0);
  EXPECT_TRUE(Skills->GetBottomResizer()->IsDragging());
  Bar.MouseMove(80, Edge + 43);
  EXPECT_EQ(Column(), "6@0+162 7@162+99 9@261+39");
  Bar.LeftUp(80, Edge + 43, 0);
  EXPECT_EQ(Bar.GetCapture(), nullptr);
}

TEST_F(ContentWindowTest, DraggingTheCornerUpGivesTheSpaceToTheWindowsBelow) {
  CContentWindow* Skills = Open(SKILLS_WINDOW, 100);
  Open(BATTLE_WINDOW, 100);
  Open(VIP_WINDOW, 43);  // the bar is full
  const CGUIResizer& Corner = *Skills->GetResizer();
  const int y = Corner.getY() + 5;
  Bar.LeftDown(Corner.getX() + 5, y, 0);
  EXPECT_TRUE(Corner.IsDragging());
  Bar.MouseMove(Corner.getX() + 5, y - 30);
  Bar.LeftUp(Corner.getX() + 5, y - 30, 0);
  EXPECT_EQ(Column(), "6@0+89 7@89+119 9@208+92");
}

TEST_F(ContentWindowTest, AClosedSkillsWindowRemembersItsHeight) {
  Preferences().ContentWindows = {{BATTLE_WINDOW, 10}, {SKILLS_WINDOW, 50}};
  MakeWindow(SKILLS_WINDOW, 100).reset();
  MakeWindow(VIP_WINDOW, 40).reset();
  MakeWindow(AUTOMAP_WINDOW, 40).reset();
  const std::vector<TContentWindowEntry> Expected{{BATTLE_WINDOW, 10}, {SKILLS_WINDOW, 119}, {VIP_WINDOW, 59}};
  EXPECT_EQ(Preferences().ContentWindows, Expected);
}

}  // namespace
