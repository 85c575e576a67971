// The list box: layout of frame, bar and rows, the row under a point, the
// selection by mouse, keys and letters, scrolling it into view, and what is
// drawn, on the software engine with the built fonts and the recorder.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/Exception.h"
#include "core/Preferences.h"
#include "graphics/Engines.h"
#include "graphics/Fonts.h"
#include "graphics/Graphics.h"
#include "graphics/Recorder.h"
#include "graphics/SurfaceDX.h"
#include "gui/Edit.h"
#include "gui/Listbox.h"
#include "tests/gui/Elements.h"
#include "tests/gui/WidgetFixture.h"
#include "platform/Events.h"

namespace {

using namespace platform;

using guitest::FailureOf;

enum : int {
  SELECT_EVENT = 11,
  ACTIVATE_EVENT = 12,
};

constexpr int BOX_WIDTH = 150;
constexpr int SHOWN_ROWS = 4;

class CEventLog : public CGUIElement {
 public:
  void OnEvent(int Event) override { Events.push_back(Event); }
  std::vector<int> Events;
};

class ListboxTest : public guitest::CWidgetTest {
 protected:
  ListboxTest() {
    H = LineHeight(4);
    FontH = FontHeight(4);
    Box = std::make_unique<CGUIListbox>(0, 0, BOX_WIDTH, SHOWN_ROWS * H + 6, TEventTarget{&Log, SELECT_EVENT},
                                        TEventTarget{&Log, ACTIVATE_EVENT});
  }
  ~ListboxTest() override { Box.reset(); }

  void AddRows(int Count) {
    for (int Row = 0; Row < Count; ++Row) Box->AddItem(("row " + std::to_string(Row)).c_str());
  }
  // A point in the middle of a shown row's text.
  int RowY(int ShownRow) const { return 3 + ShownRow * H + FontH / 2; }
  int BarValue() const { return Box->GetScrollbar().GetScrollbar().GetValue(); }
  std::vector<std::string> Draw(int x, int y) {
    Recorder.Clear();
    Box->Draw(TEMP_SURFACE, x, y);
    return Recorder.Lines();
  }

  int H = 0;
  int FontH = 0;
  CEventLog Log;
  std::unique_ptr<CGUIListbox> Box;
};

std::string TextLine(int x, int y, const TextStyle& Style, const std::string& Text) {
  return "text s=" + std::to_string(TEMP_SURFACE) + " at=" + std::to_string(x) + "," + std::to_string(y) +
         " font=" + std::to_string(Style.Font) + " rgb=" + std::to_string(Style.Red) + "," +
         std::to_string(Style.Green) + "," + std::to_string(Style.Blue) + " align=" + std::to_string(Style.Alignment) +
         " highlight=0 \"" + Text + "\"";
}

std::string RectLine(int x, int y, int Width, int Height, int Grey) {
  const std::string G = std::to_string(Grey);
  return "rect s=" + std::to_string(TEMP_SURFACE) + " area=" + std::to_string(x) + "," + std::to_string(y) + "," +
         std::to_string(Width) + "," + std::to_string(Height) + " rgb=" + G + "," + G + "," + G + " alpha=255";
}

TEST_F(ListboxTest, LayoutOfFrameBarAndRows) {
  const int Height = SHOWN_ROWS * H + 6;
  EXPECT_EQ(Box->GetItemWidth(), BOX_WIDTH - 6 - 12);
  EXPECT_EQ(Box->GetVisibleRows(), SHOWN_ROWS);
  const CGUIButtonScrollbar& Bar = Box->GetScrollbar();
  EXPECT_EQ(Bar.getX(), BOX_WIDTH - 1 - 12);
  EXPECT_EQ(Bar.getY(), 1);
  EXPECT_EQ(Bar.getWidth(), 12);
  EXPECT_EQ(Bar.getHeight(), std::max(Height - 2, 38));
  const std::vector<DrawingListEntry>& Frame = Box->GetDrawingList();
  ASSERT_EQ(Frame.size(), 4u);
  EXPECT_EQ(Frame[0].Skin, 10);
  EXPECT_EQ(Frame[0].width, BOX_WIDTH);
  EXPECT_EQ(Frame[1].Skin, 12);
  EXPECT_EQ(Frame[1].height, Height);
  EXPECT_EQ(Frame[2].Skin, 11);
  EXPECT_EQ(Frame[2].x, BOX_WIDTH - 1);
  EXPECT_EQ(Frame[3].Skin, 9);
  EXPECT_EQ(Frame[3].y, Height - 1);
}

TEST_F(ListboxTest, BarRangeFollowsTheRowsAndKeepsItsValue) {
  AddRows(10);
  const CGUIScrollbar& Bar = Box->GetScrollbar().GetScrollbar();
  EXPECT_EQ(Bar.GetMax(), 10 - SHOWN_ROWS);
  EXPECT_EQ(Bar.GetPageSize(), SHOWN_ROWS);
  Box->MouseEvent(20, 20, MOUSE_WHEEL_DOWN);
  Box->MouseEvent(20, 20, MOUSE_WHEEL_DOWN);
  Box->AddItem("another");
  EXPECT_EQ(Bar.GetValue(), 2);
  EXPECT_EQ(Bar.GetMax(), 11 - SHOWN_ROWS);
  Box->Clear();
  EXPECT_EQ(Bar.GetMax(), 0);
  EXPECT_EQ(Bar.GetValue(), 0);
  EXPECT_FALSE(Bar.IsActive());
}

TEST_F(ListboxTest, SetVisibleRowsSizesTheBoxForAtLeastTwoRows) {
  Box->SetVisibleRows(6);
  EXPECT_EQ(Box->getHeight(), 6 * H + 6);
  EXPECT_EQ(Box->GetVisibleRows(), 6);
  Box->SetVisibleRows(1);
  EXPECT_EQ(Box->getHeight(), 2 * H + 6);
  EXPECT_EQ(Box->getWidth(), BOX_WIDTH);
}

TEST_F(ListboxTest, RowAtAPoint) {
  AddRows(6);
  const int D = (H - FontH) / 2;
  EXPECT_EQ(Box->RowAt(3 - D - 1), -1);
  EXPECT_EQ(Box->RowAt(3 - D), 0);
  EXPECT_EQ(Box->RowAt(3 - D + H - 1), 0);
  EXPECT_EQ(Box->RowAt(3 - D + H), 1);
  EXPECT_EQ(Box->RowAt(RowY(3)), 3);
  // Beyond the shown rows there is no row, although the list goes on.
  EXPECT_EQ(Box->RowAt(RowY(4)), -1);
  Box->MouseEvent(20, 20, MOUSE_WHEEL_DOWN);
  EXPECT_EQ(Box->RowAt(RowY(0)), 1);
  Box->MouseEvent(20, 20, MOUSE_WHEEL_DOWN);
  Box->MouseEvent(20, 20, MOUSE_WHEEL_DOWN);
  EXPECT_EQ(BarValue(), 2);
  EXPECT_EQ(Box->RowAt(RowY(3)), 5);
}

TEST_F(ListboxTest, RowAtIsNoneUnderTheLastRow) {
  AddRows(2);
  EXPECT_EQ(Box->RowAt(RowY(1)), 1);
  EXPECT_EQ(Box->RowAt(RowY(2)), -1);
}

TEST_F(ListboxTest, ClickSelectsTheRowAndFiresTheSelectTarget) {
  AddRows(3);
  EXPECT_TRUE(Box->LeftDown(10, RowY(1), 0));
  EXPECT_EQ(Box->GetSelected(), 1);
  EXPECT_EQ(Log.Events, (std::vector<int>{SELECT_EVENT}));
}

TEST_F(ListboxTest, ClickUnderTheLastRowSelectsNothingButStillFires) {
  AddRows(2);
  Box->LeftDown(10, RowY(0), 0);
  Box->LeftDown(10, RowY(3), 0);
  EXPECT_EQ(Box->GetSelected(), 0);
  EXPECT_EQ(Log.Events, (std::vector<int>{SELECT_EVENT, SELECT_EVENT}));
}

TEST_F(ListboxTest, DoubleClickSelectsThenActivates) {
  AddRows(3);
  Box->LeftDouble(10, RowY(2), 0);
  EXPECT_EQ(Box->GetSelected(), 2);
  EXPECT_EQ(Log.Events, (std::vector<int>{SELECT_EVENT, ACTIVATE_EVENT}));
}

TEST_F(ListboxTest, ClickOnTheBarIsTheBarsOwn) {
  AddRows(10);
  const CGUIButtonScrollbar& Bar = Box->GetScrollbar();
  const int x = Bar.getX() + 6;
  const int y = Bar.getY() + Bar.getHeight() - 6;
  Box->LeftDown(x, y, 0);
  Box->LeftUp(x, y, 0);
  EXPECT_EQ(Box->GetSelected(), -1);
  EXPECT_TRUE(Log.Events.empty());
  EXPECT_EQ(BarValue(), 1);
  EXPECT_EQ(Box->GetCapture(), nullptr);
}

TEST_F(ListboxTest, WheelMovesStepRowsAndLeavesTheSelection) {
  AddRows(10);
  Box->SetSelected(1);
  Box->MouseEvent(20, RowY(1), MOUSE_WHEEL_DOWN);
  Box->MouseEvent(20, RowY(1), MOUSE_WHEEL_DOWN);
  EXPECT_EQ(BarValue(), 2);
  Box->MouseEvent(20, RowY(1), MOUSE_WHEEL_UP);
  EXPECT_EQ(BarValue(), 1);
  EXPECT_EQ(Box->GetSelected(), 1);
  EXPECT_TRUE(Log.Events.empty());
  Box->MouseEvent(20, RowY(1), MOUSE_WHEEL_UP);
  Box->MouseEvent(20, RowY(1), MOUSE_WHEEL_UP);
  EXPECT_EQ(BarValue(), 0);
}

TEST_F(ListboxTest, ArrowKeysMoveWithinTheListAndScrollIntoView) {
  AddRows(10);
  Box->KeyDown(KEY_DOWN);
  EXPECT_EQ(Box->GetSelected(), 0);
  Box->KeyDown(KEY_UP);
  EXPECT_EQ(Box->GetSelected(), 0);
  for (int Press = 0; Press < 4; ++Press) Box->KeyDown(KEY_DOWN);
  EXPECT_EQ(Box->GetSelected(), 4);
  EXPECT_EQ(BarValue(), 4 - SHOWN_ROWS + 1);
  for (int Press = 0; Press < 10; ++Press) Box->KeyDown(KEY_DOWN);
  EXPECT_EQ(Box->GetSelected(), 9);
  EXPECT_EQ(BarValue(), 6);
  for (int Press = 0; Press < 7; ++Press) Box->KeyDown(KEY_UP);
  EXPECT_EQ(Box->GetSelected(), 2);
  EXPECT_EQ(BarValue(), 2);
  EXPECT_EQ(Log.Events.size(), 2u + 4u + 10u + 7u);
}

TEST_F(ListboxTest, EmptyListKeepsNoSelectionUnderTheArrowKeys) {
  Box->KeyDown(KEY_DOWN);
  Box->KeyDown(KEY_UP);
  Box->KeyDown('a');
  EXPECT_EQ(Box->GetSelected(), -1);
  EXPECT_EQ(Log.Events, (std::vector<int>{SELECT_EVENT, SELECT_EVENT, SELECT_EVENT}));
}

TEST_F(ListboxTest, LetterSelectsTheFirstRowFromItOn) {
  for (const char* Name : {"apple", "Banana", "cherry", "date", "fig", ""}) Box->AddItem(Name);
  Box->KeyDown('c');
  EXPECT_EQ(Box->GetSelected(), 2);
  Box->KeyDown('B');
  EXPECT_EQ(Box->GetSelected(), 1);
  Box->KeyDown(KEY_SHIFT | 'D');
  EXPECT_EQ(Box->GetSelected(), 3);
  Box->KeyDown('e');
  EXPECT_EQ(Box->GetSelected(), 4);
  EXPECT_EQ(BarValue(), 4 - SHOWN_ROWS + 1);
  // Beyond all rows, with Ctrl, or no letter: the selection stays.
  Box->KeyDown('z');
  Box->KeyDown(KEY_CTRL | 'a');
  Box->KeyDown('3');
  EXPECT_EQ(Box->GetSelected(), 4);
  EXPECT_EQ(Log.Events.size(), 7u);
}

TEST_F(ListboxTest, SetSelectedScrollsIntoViewAndChecksTheRow) {
  AddRows(10);
  Box->SetSelected(8);
  EXPECT_EQ(Box->GetSelected(), 8);
  EXPECT_EQ(BarValue(), 8 - SHOWN_ROWS + 1);
  Box->SetSelected(1);
  EXPECT_EQ(BarValue(), 1);
  Box->SetSelected(-1);
  EXPECT_EQ(Box->GetSelected(), -1);
  EXPECT_EQ(FailureOf([&] { Box->SetSelected(10); }), "In(Row,-1,Count-1)");
  EXPECT_EQ(FailureOf([&] { Box->SetSelected(-2); }), "In(Row,-1,Count-1)");
  EXPECT_TRUE(Log.Events.empty());
}

TEST_F(ListboxTest, ClearKeepsTheNumberButAnswersNoSelection) {
  AddRows(5);
  Box->SetSelected(3);
  Box->Clear();
  EXPECT_EQ(Box->GetSelected(), -1);
  EXPECT_EQ(Box->GetCount(), 0);
  Box->SetSelected(7);
  EXPECT_EQ(Box->GetSelected(), -1);
}

TEST_F(ListboxTest, ItemsKeepTextAndStyle) {
  const TextStyle Grey = SkinProperties.Listbox.GreyItem;
  Box->AddItem("first");
  Box->AddItem("second", Grey);
  EXPECT_EQ(Box->GetItemText(1), "second");
  EXPECT_EQ(Box->GetItemStyle(1), Grey);
  EXPECT_EQ(Box->GetItemStyle(0), SkinProperties.Listbox.Item);
  Box->SetItem(0, "changed", SkinProperties.Listbox.WarningItem);
  EXPECT_EQ(Box->GetItemText(0), "changed");
  EXPECT_EQ(Box->GetItemStyle(0), SkinProperties.Listbox.WarningItem);
  EXPECT_EQ(FailureOf([&] { Box->AddItem(nullptr); }), "Text!=NULL");
  EXPECT_EQ(FailureOf([&] { Box->GetItemText(2); }), "In(Row,0,Count-1)");
  EXPECT_EQ(FailureOf([&] { Box->SetItem(-1, "x", Grey); }), "In(Row,0,Count-1)");
}

TEST_F(ListboxTest, DrawsBackgroundFrameBarThenTheShownRows) {
  const TextStyle Item = SkinProperties.Listbox.Item;
  for (const char* Name : {"alpha", "beta", "gamma", "delta", "epsilon", "zeta"}) Box->AddItem(Name);
  Box->SetItem(2, "gamma", SkinProperties.Listbox.WarningItem);
  Box->MouseEvent(20, 20, MOUSE_WHEEL_DOWN);
  const std::vector<std::string> Lines = Draw(40, 30);
  ASSERT_FALSE(Lines.empty());
  EXPECT_EQ(Lines.front(), RectLine(40, 30, BOX_WIDTH, SHOWN_ROWS * H + 6, 64));
  const std::vector<std::string> Rows(Lines.end() - SHOWN_ROWS, Lines.end());
  EXPECT_EQ(Rows, (std::vector<std::string>{TextLine(43, 33, Item, "beta"),
                                            TextLine(43, 33 + H, SkinProperties.Listbox.WarningItem, "gamma"),
                                            TextLine(43, 33 + 2 * H, Item, "delta"),
                                            TextLine(43, 33 + 3 * H, Item, "epsilon")}));
  // Frame and bar lie between the background and the rows.
  const auto IsSkin = [](const std::string& Line) { return Line.rfind("skin ", 0) == 0; };
  EXPECT_TRUE(std::all_of(Lines.begin() + 1, Lines.end() - SHOWN_ROWS, IsSkin));
  EXPECT_GE(Lines.size(), 1u + 4u + SHOWN_ROWS);
}

TEST_F(ListboxTest, SelectionBarLiesUnderTheSelectedRowsText) {
  AddRows(3);
  Box->SetSelected(1);
  const std::vector<std::string> Lines = Draw(0, 0);
  const std::string Bar = RectLine(2, 3 + H - 1, Box->GetItemWidth() + 2, FontH + 2, 88);
  const auto At = std::find(Lines.begin(), Lines.end(), Bar);
  ASSERT_NE(At, Lines.end());
  ASSERT_NE(At + 1, Lines.end());
  EXPECT_EQ(*(At + 1), TextLine(3, 3 + H, SkinProperties.Listbox.Item, "row 1"));
  EXPECT_EQ(std::count_if(Lines.begin(), Lines.end(),
                          [](const std::string& Line) { return Line.find("rgb=88,88,88") != std::string::npos; }),
            1);
}

TEST_F(ListboxTest, LongRowShowsWhatFitsAndTheWholeTextAsTooltip) {
  const std::string Long(200, 'w');
  Box->AddItem("short");
  Box->AddItem(Long.c_str());
  const int Fits = CharsThatFit(4, Long, Box->GetItemWidth(), false);
  ASSERT_LT(Fits, 200);
  const std::vector<std::string> Lines = Draw(0, 0);
  EXPECT_EQ(Lines.back(), TextLine(3, 3 + H, SkinProperties.Listbox.Item, Long.substr(0, Fits)));
  ClearTooltip();
  Box->Hover(10, RowY(0));
  EXPECT_EQ(GetTooltip(), "");
  Box->Hover(10, RowY(1));
  EXPECT_EQ(GetTooltip(), Long);
  ClearTooltip();
  Box->Hover(10, RowY(3));
  EXPECT_EQ(GetTooltip(), "");
}

class ListboxEditTest : public ListboxTest {
 protected:
  ListboxEditTest() {
    AddRows(8);
    Box->SetAllowEdit(true);
  }
  void Type(const std::string& Text) {
    for (char Character : Text) Box->KeyDown(static_cast<unsigned char>(Character));
  }
};

TEST_F(ListboxEditTest, ADoubleClickBeginsEditingAndEnterWritesTheTextBack) {
  Box->LeftDouble(10, RowY(1), 0);
  ASSERT_TRUE(Box->IsEditing());
  EXPECT_TRUE(Box->HasChild(&Box->GetEdit()));
  EXPECT_EQ(Box->GetEdit().getY(), H);
  EXPECT_EQ(Box->GetEdit().getWidth(), BOX_WIDTH - Box->GetScrollbar().getWidth());
  EXPECT_TRUE(Box->GetEdit().HasFocus());
  EXPECT_EQ(Log.Events.back(), ACTIVATE_EVENT);
  Type("new");
  EXPECT_EQ(Box->GetItemText(1), "row 1") << "the row changes only when the edit ends";
  Box->KeyDown(0xD);
  EXPECT_FALSE(Box->IsEditing());
  EXPECT_FALSE(Box->HasChild(&Box->GetEdit()));
  EXPECT_EQ(Box->GetItemText(1), "new");
}

TEST_F(ListboxEditTest, WithoutAllowEditADoubleClickOnlyActivates) {
  Box->SetAllowEdit(false);
  Box->LeftDouble(10, RowY(1), 0);
  EXPECT_FALSE(Box->IsEditing());
  EXPECT_EQ(Log.Events.back(), ACTIVATE_EVENT);
}

TEST_F(ListboxEditTest, TheEditedRowShowsOnlyTheEdit) {
  Box->LeftDouble(10, RowY(0), 0);
  const std::vector<std::string> Lines = Draw(0, 0);
  const auto Has = [&Lines](const std::string& Line) { return std::find(Lines.begin(), Lines.end(), Line) != Lines.end(); };
  EXPECT_FALSE(Has(TextLine(3, 3, SkinProperties.Listbox.Item, "row 0"))) << "the row's own text";
  EXPECT_TRUE(Has(TextLine(3, 3, Box->GetEdit().GetStyle(), "row 0"))) << "the edit's text in its place";
  for (const std::string& Line : Lines) EXPECT_EQ(Line.find("rgb=88,88,88"), std::string::npos) << Line;
}

TEST_F(ListboxEditTest, ScrollingWhileARowIsEditedEndsTheEditAtTheNextFrameAndKeepsTheTypedText) {
  Box->LeftDouble(10, RowY(0), 0);
  Type("kept");
  Box->MouseEvent(10, RowY(2), MOUSE_WHEEL_DOWN);
  EXPECT_TRUE(Box->IsEditing());
  Draw(0, 0);
  EXPECT_FALSE(Box->IsEditing());
  EXPECT_EQ(Box->GetItemText(0), "kept");
}

TEST_F(ListboxEditTest, AClickOnAnotherRowOrAnArrowKeyEndsTheEdit) {
  Box->LeftDouble(10, RowY(0), 0);
  Type("x");
  Box->LeftDown(10, RowY(2), 0);
  EXPECT_FALSE(Box->IsEditing());
  EXPECT_EQ(Box->GetItemText(0), "x");
  EXPECT_EQ(Box->GetSelected(), 2);
  Box->LeftDouble(10, RowY(2), 0);
  Box->KeyDown(KEY_DOWN);
  EXPECT_FALSE(Box->IsEditing());
  EXPECT_EQ(Box->GetItemText(2), "row 2");
  EXPECT_EQ(Box->GetSelected(), 3);
}

}  // namespace
