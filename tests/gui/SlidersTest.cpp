// Sliders and scroll bars: the knob's size and place from range, page and
// length, dragging, clicks beside the knob, wheel and keys, and the
// composites with their arrow buttons. Checked through the drawing lists.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/Exception.h"
#include "gui/Sliders.h"
#include "tests/gui/Elements.h"
#include "platform/Events.h"

namespace {

using namespace platform;

using guitest::FailureOf;

enum : int {
  SLIDER_EVENT = 7,
};

// Notes the slider's value each time its target fires.
class CValueLog : public CGUIElement {
 public:
  void OnEvent(int Event) override {
    EXPECT_EQ(Event, SLIDER_EVENT);
    Values.push_back(Watched ? Watched->GetValue() : -1);
  }
  const CGUIKnobTrack* Watched = nullptr;
  std::vector<int> Values;
};

bool SameEntry(const DrawingListEntry& A, const DrawingListEntry& B) {
  return A.Skin == B.Skin && A.x == B.x && A.y == B.y && A.width == B.width && A.height == B.height &&
         A.srcx == B.srcx && A.srcy == B.srcy;
}

void ExpectEntries(const CGUIComponent& Component, const std::vector<DrawingListEntry>& Expected) {
  const std::vector<DrawingListEntry>& List = Component.GetDrawingList();
  ASSERT_EQ(List.size(), Expected.size());
  for (size_t Index = 0; Index < List.size(); ++Index) {
    EXPECT_TRUE(SameEntry(List[Index], Expected[Index]))
        << "entry " << Index << ": skin " << List[Index].Skin << " at " << List[Index].x << "," << List[Index].y
        << " size " << List[Index].width << "x" << List[Index].height;
  }
}

// A slider 100 pixels long in a parent, so that it can take the mouse.
class SliderTest : public ::testing::Test {
 protected:
  SliderTest() {
    Parent.SetSize(300, 50);
    auto Own = std::make_unique<CGUISlider>(10, 5, 100, 12, &Log, SLIDER_EVENT);
    Slider = Own.get();
    Parent.AddChildLast(std::move(Own));
    Log.Watched = Slider;
  }

  // Press and release at one point along the slider.
  void Click(int p) {
    Slider->LeftDown(p, 6, 0);
    Slider->LeftUp(p, 6, 0);
  }

  CValueLog Log;
  CGUIComposite Parent;
  CGUISlider* Slider = nullptr;
};

TEST(KnobTest, ScrollbarKnobStandsForThePageWithinTheRange) {
  CGUIScrollbar Bar(0, 0, 12, 100);
  Bar.SetRange(0, 10, 0, 5);
  // A third of the length: 5 of 15.
  ExpectEntries(Bar, {{193, 0, 0, 12, 100}, {194, 0, 0}, {195, 0, 4, 12, 25}, {196, 0, 29}});
  Bar.SetValue(5);
  EXPECT_EQ(Bar.GetKnobPosition(), 5 * (100 - 33) / 10);
  ExpectEntries(Bar, {{193, 0, 0, 12, 100}, {194, 0, 33}, {195, 0, 37, 12, 25}, {196, 0, 62}});
}

TEST(KnobTest, SliderKnobRunsAlongX) {
  CGUISlider Slider(TSliderRange{0, 20, 10, 11}, nullptr, 0);
  Slider.SetSize(100, 12);
  // 11 of 31: 35 pixels; (10 * 65) / 20 = 32.
  ExpectEntries(Slider, {{201, 0, 0, 100, 12}, {202, 32, 0}, {203, 36, 0, 27, 12}, {204, 63, 0}});
}

TEST(KnobTest, ValueAtMaxPutsTheKnobAtTheEndExactly) {
  for (const int Length : {14, 37, 100, 251}) {
    for (const int Page : {0, 1, 3, 7, 50}) {
      for (const int Max : {1, 3, 9, 1000}) {
        CGUIScrollbar Bar(0, 0, 12, Length);
        Bar.SetRange(0, Max, Max, Page);
        ASSERT_EQ(Bar.GetKnobPosition() + Bar.GetKnobSize(), Length) << Length << " " << Page << " " << Max;
        const DrawingListEntry& End = Bar.GetDrawingList()[3];
        EXPECT_EQ(End.y + 4, Length);
      }
    }
  }
}

TEST(KnobTest, PageOfZeroGivesTheMinimumKnob) {
  CGUIScrollbar Bar(0, 0, 12, 100);
  Bar.SetRange(0, 50, 0, 0);
  EXPECT_EQ(Bar.GetKnobSize(), 4 + 4);
  // No room for the middle: its entry covers nothing.
  EXPECT_EQ(Bar.GetDrawingList()[2].height, 0);
}

TEST(KnobTest, HugePageGivesAKnobOfNearlyTheWholeTrack) {
  CGUIScrollbar Bar(0, 0, 12, 60);
  Bar.SetRange(0, 1, 1, 1000);
  // 1000 of 1001, cut to whole pixels; the pixel left over is the travel.
  EXPECT_EQ(Bar.GetKnobSize(), 59);
  EXPECT_EQ(Bar.GetKnobPosition(), 1);
}

TEST(KnobTest, RangeChecks) {
  CGUIScrollbar Bar(0, 0, 12, 60);
  EXPECT_EQ(FailureOf([&] { Bar.SetRange(5, 4, 4, 1); }), "_Min<=_Max");
  EXPECT_EQ(FailureOf([&] { Bar.SetRange(0, 10, 11, 1); }), "In(_Value,_Min,_Max)");
  EXPECT_EQ(FailureOf([&] { Bar.SetRange(0, 10, -1, 1); }), "In(_Value,_Min,_Max)");
  EXPECT_EQ(FailureOf([] { CGUISlider Slider(TSliderRange{3, 1, 2, 11}, nullptr, 0); }), "_Min<=_Max");
  EXPECT_EQ(FailureOf([] { CGUIButtonScrollbar Bar(0, 0, 12, 60, 0); }), "_ButtonRange>0");
}

TEST(KnobTest, MinimumSizesFollowTheAxis) {
  CGUISlider Slider(0, 0, 50, 12, nullptr, 0);
  CGUIScrollbar Bar(0, 0, 12, 50);
  EXPECT_EQ(Slider.GetMinimumWidth(), 14);
  EXPECT_EQ(Slider.GetMinimumHeight(), 12);
  EXPECT_EQ(Bar.GetMinimumWidth(), 12);
  EXPECT_EQ(Bar.GetMinimumHeight(), 14);
}

TEST_F(SliderTest, EqualEndsMakeItInactive) {
  Slider->SetRange(5, 5, 5);
  EXPECT_FALSE(Slider->IsActive());
  for (size_t Index = 1; Index < 4; ++Index) EXPECT_EQ(Slider->GetDrawingList()[Index].Skin, 0);
  Slider->LeftDown(90, 6, 0);
  EXPECT_EQ(Parent.GetCapture(), nullptr);
  Slider->LeftUp(90, 6, 0);
  Slider->MouseEvent(5, 5, MOUSE_WHEEL_DOWN);
  Slider->KeyDown(KEY_RIGHT);
  Slider->KeyDown('x');
  EXPECT_EQ(Slider->GetValue(), 5);
  EXPECT_TRUE(Log.Values.empty());
}

TEST_F(SliderTest, SetValueLimitsAndFiresSetRangeDoesNot) {
  Slider->SetRange(0, 20, 3);
  EXPECT_TRUE(Log.Values.empty());
  Slider->SetValue(25);
  Slider->SetValue(-4);
  Slider->SetValue(8);
  EXPECT_EQ(Log.Values, (std::vector<int>{20, 0, 8}));
}

TEST_F(SliderTest, DraggingPastTheEndHoldsMaxAndReportsOnlyValuesInRange) {
  Slider->SetRange(0, 20, 0);
  ASSERT_EQ(Slider->GetKnobSize(), 35);
  Slider->LeftDown(5, 6, 0);
  EXPECT_TRUE(Slider->IsDraggingKnob());
  EXPECT_EQ(Parent.GetCapture(), Slider);
  // Moves are in the slider's own coordinates; the grab was 5 into the knob.
  Slider->MouseMove(5 + 33, 6);
  EXPECT_EQ(Slider->GetValue(), 33 * 21 / 66);
  Slider->MouseMove(180, 40);
  Slider->MouseMove(400, 6);
  EXPECT_EQ(Slider->GetValue(), 20);
  EXPECT_EQ(Slider->GetKnobPosition() + Slider->GetKnobSize(), 100);
  Slider->MouseMove(-300, 6);
  EXPECT_EQ(Slider->GetValue(), 0);
  for (const int Value : Log.Values) {
    EXPECT_GE(Value, 0);
    EXPECT_LE(Value, 20);
  }
  EXPECT_EQ(Log.Values.size(), 4u);
  Slider->LeftUp(-300, 6, 0);
  EXPECT_FALSE(Slider->IsDraggingKnob());
  EXPECT_EQ(Parent.GetCapture(), nullptr);
  EXPECT_EQ(Slider->GetValue(), 0);
}

TEST_F(SliderTest, HeldKnobIgnoresValuesFromOutside) {
  Slider->SetRange(0, 20, 10);
  const int Grab = Slider->GetKnobPosition() + 2;
  Slider->LeftDown(Grab, 6, 0);
  Slider->SetValue(0);
  Slider->SetRange(0, 30, 0);
  EXPECT_EQ(Slider->GetValue(), 10);
  EXPECT_EQ(Slider->GetMax(), 30);
  Slider->LeftUp(Grab, 6, 0);
  Slider->SetValue(0);
  EXPECT_EQ(Slider->GetValue(), 0);
}

TEST_F(SliderTest, ClickBesideTheKnobStepsByOneOrAPage) {
  Slider->SetRange(0, 20, 10);
  const int Before = Slider->GetKnobPosition() - 1;
  Click(95);
  EXPECT_EQ(Slider->GetValue(), 11);
  Click(Before);
  EXPECT_EQ(Slider->GetValue(), 10);
  Slider->SetPageMode(true);
  Click(95);
  EXPECT_EQ(Slider->GetValue(), 20);
  Click(0);
  EXPECT_EQ(Slider->GetValue(), 10);
  Log.Values.clear();
  Click(Slider->GetKnobPosition() + 3);
  EXPECT_EQ(Slider->GetValue(), 10);
  EXPECT_TRUE(Log.Values.empty());
}

TEST_F(SliderTest, ReleaseOffTheWidgetDoesNotStep) {
  Slider->SetRange(0, 20, 10);
  Slider->LeftDown(95, 6, 0);
  Slider->LeftUp(101, 6, 0);
  Slider->LeftDown(95, 6, 0);
  Slider->LeftUp(95, 13, 0);
  EXPECT_EQ(Slider->GetValue(), 10);
  EXPECT_EQ(Parent.GetCapture(), nullptr);
}

TEST_F(SliderTest, RepeatOfAHeldButtonStepsBesideTheKnobOnly) {
  Slider->SetRange(0, 20, 0);
  Slider->MouseEvent(95, 6, MOUSE_HELD_REPEAT);
  EXPECT_EQ(Slider->GetValue(), 0);
  Slider->LeftDown(95, 6, 0);
  Slider->MouseEvent(95, 6, MOUSE_HELD_REPEAT);
  Slider->MouseEvent(95, 6, MOUSE_HELD_REPEAT);
  EXPECT_EQ(Slider->GetValue(), 2);
  Slider->LeftUp(Slider->GetKnobPosition(), 6, 0);
  Slider->LeftDown(Slider->GetKnobPosition() + 1, 6, 0);
  Slider->MouseEvent(95, 6, MOUSE_HELD_REPEAT);
  EXPECT_EQ(Slider->GetValue(), 2);
}

TEST_F(SliderTest, WheelAndKeysMoveByStepWithinTheRange) {
  Slider->SetRange(0, 20, 10);
  Slider->SetStep(3);
  Slider->MouseEvent(0, 0, MOUSE_WHEEL_DOWN);
  EXPECT_EQ(Slider->GetValue(), 13);
  Slider->MouseEvent(0, 0, MOUSE_WHEEL_UP);
  Slider->MouseEvent(0, 0, MOUSE_WHEEL_UP);
  EXPECT_EQ(Slider->GetValue(), 7);
  Slider->KeyDown(KEY_RIGHT);
  EXPECT_EQ(Slider->GetValue(), 10);
  Slider->KeyDown(KEY_LEFT);
  Slider->KeyDown(KEY_LEFT);
  Slider->KeyDown(KEY_LEFT);
  Slider->KeyDown(KEY_LEFT);
  EXPECT_EQ(Slider->GetValue(), 0);
  // Keys of the other axis change nothing, but the slider still reports.
  Log.Values.clear();
  Slider->KeyDown(KEY_DOWN);
  EXPECT_EQ(Log.Values, (std::vector<int>{0}));
}

TEST(ScrollbarTest, ArrowKeysOfItsOwnAxisAndNoReport) {
  CGUIScrollbar Bar(0, 0, 12, 80);
  Bar.SetRange(0, 9, 4, 3);
  Bar.KeyDown(KEY_DOWN);
  EXPECT_EQ(Bar.GetValue(), 5);
  Bar.KeyDown(KEY_UP);
  Bar.KeyDown(KEY_UP);
  EXPECT_EQ(Bar.GetValue(), 3);
  Bar.KeyDown(KEY_RIGHT);
  EXPECT_EQ(Bar.GetValue(), 3);
}

TEST(ScrollbarTest, PageModeClickMovesByPageLessOne) {
  CGUIScrollbar Bar(0, 0, 12, 100);
  Bar.SetRange(0, 30, 0, 10);
  Bar.SetPageMode(true);
  Bar.LeftDown(6, 99, 0);
  Bar.LeftUp(6, 99, 0);
  EXPECT_EQ(Bar.GetValue(), 9);
}

TEST(ButtonSliderTest, ArrowsAroundTheSlider) {
  CValueLog Log;
  CGUIButtonSlider Composite(0, 100, 50, 11, 120, &Log, SLIDER_EVENT);
  Log.Watched = &Composite.GetSlider();
  EXPECT_EQ(Composite.getWidth(), 120);
  EXPECT_EQ(Composite.getHeight(), 12);
  const CGUIComponent* Less = Composite.GetFirstChild();
  const CGUIComponent* Inner = Less->GetNextSibling();
  const CGUIComponent* More = Inner->GetNextSibling();
  EXPECT_EQ(Inner, &Composite.GetSlider());
  EXPECT_EQ(Less->getX(), 0);
  EXPECT_EQ(Inner->getX(), 12);
  EXPECT_EQ(Inner->getWidth(), 96);
  EXPECT_EQ(More->getX(), 108);
  EXPECT_TRUE(Composite.GetSlider().IsActive());
}

TEST(ButtonSliderTest, ResizeKeepsTheMinimumAndTheBreadth) {
  CGUIButtonSlider Composite(4, 5, 10, 40);
  EXPECT_EQ(Composite.getX(), 4);
  EXPECT_EQ(Composite.getWidth(), 38);
  EXPECT_EQ(Composite.getHeight(), 12);
  EXPECT_EQ(Composite.GetSlider().getWidth(), 14);
  Composite.Resize(80, 30);
  EXPECT_EQ(Composite.getWidth(), 80);
  EXPECT_EQ(Composite.GetSlider().getWidth(), 56);
  EXPECT_EQ(Composite.GetSlider().GetDrawingList()[0].width, 56);
}

TEST(ButtonSliderTest, EventsKeysAndWheelReachTheSlider) {
  CValueLog Log;
  CGUIButtonSlider Composite(0, 10, 5, 11, 100, &Log, SLIDER_EVENT);
  Log.Watched = &Composite.GetSlider();
  Composite.OnEvent(6);
  EXPECT_EQ(Composite.GetSlider().GetValue(), 6);
  Composite.OnEvent(5);
  Composite.OnEvent(5);
  EXPECT_EQ(Composite.GetSlider().GetValue(), 4);
  Composite.KeyDown(KEY_RIGHT);
  EXPECT_EQ(Composite.GetSlider().GetValue(), 5);
  // Over the slider, and where no child is.
  Composite.MouseEvent(50, 6, MOUSE_WHEEL_DOWN);
  Composite.MouseEvent(-20, -20, MOUSE_WHEEL_DOWN);
  EXPECT_EQ(Composite.GetSlider().GetValue(), 7);
  EXPECT_EQ(Log.Values, (std::vector<int>{6, 5, 4, 5, 6, 7}));
  EXPECT_EQ(FailureOf([&] { Composite.OnEvent(3); }), "unknown event");
}

TEST(ButtonSliderTest, ClickBesideTheKnobMovesByAPage) {
  CGUIButtonSlider Composite(0, 100, 0, 11, 200, nullptr, 0);
  Composite.LeftDown(150, 6, 0);
  Composite.LeftUp(150, 6, 0);
  EXPECT_EQ(Composite.GetSlider().GetValue(), 10);
  EXPECT_EQ(Composite.GetCapture(), nullptr);
}

TEST(ButtonScrollbarTest, LayoutDownwardWithTheMinimum) {
  CGUIButtonScrollbar Composite(3, 4, 40, 100, 2);
  EXPECT_EQ(Composite.getWidth(), 12);
  EXPECT_EQ(Composite.getHeight(), 100);
  const CGUIComponent* Less = Composite.GetFirstChild();
  const CGUIComponent* Inner = Less->GetNextSibling();
  const CGUIComponent* More = Inner->GetNextSibling();
  EXPECT_EQ(Inner->getY(), 12);
  EXPECT_EQ(Inner->getHeight(), 76);
  EXPECT_EQ(More->getY(), 88);
  Composite.SetSize(12, 20);
  EXPECT_EQ(Composite.getHeight(), 38);
  EXPECT_EQ(Composite.GetScrollbar().getHeight(), 14);
  EXPECT_EQ(Composite.GetScrollbar().GetStep(), 2);
}

TEST(ButtonScrollbarTest, ArrowEventsKeysAndWheelUseTheStep) {
  CGUIButtonScrollbar Composite(0, 0, 12, 100, 2);
  CGUIScrollbar& Bar = Composite.GetScrollbar();
  Bar.SetRange(0, 9, 0, 3);
  Composite.OnEvent(4);
  Composite.OnEvent(4);
  EXPECT_EQ(Bar.GetValue(), 4);
  Composite.OnEvent(3);
  EXPECT_EQ(Bar.GetValue(), 2);
  Composite.KeyDown(KEY_DOWN);
  EXPECT_EQ(Bar.GetValue(), 4);
  Composite.MouseEvent(-50, 500, MOUSE_WHEEL_DOWN);
  Composite.MouseEvent(-50, 500, MOUSE_WHEEL_DOWN);
  Composite.MouseEvent(-50, 500, MOUSE_WHEEL_DOWN);
  EXPECT_EQ(Bar.GetValue(), 9);
  EXPECT_EQ(FailureOf([&] { Composite.OnEvent(5); }), "unknown event");
}

TEST(ButtonScrollbarTest, ArrowButtonClickMovesTheBar) {
  CGUIButtonScrollbar Composite(0, 0, 12, 100, 1);
  CGUIScrollbar& Bar = Composite.GetScrollbar();
  Bar.SetRange(0, 9, 5, 3);
  Composite.LeftDown(6, 94, 0);
  Composite.LeftUp(6, 94, 0);
  EXPECT_EQ(Bar.GetValue(), 6);
  Composite.LeftDown(6, 5, 0);
  Composite.LeftUp(6, 5, 0);
  Composite.LeftDown(6, 5, 0);
  Composite.LeftUp(6, 5, 0);
  EXPECT_EQ(Bar.GetValue(), 4);
  EXPECT_EQ(Composite.GetCapture(), nullptr);
}

}  // namespace
