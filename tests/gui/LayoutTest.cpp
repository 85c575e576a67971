// PlaceChild, MoveChild, FitToChildren, GrowForChild and ClipChildren.
#include <gtest/gtest.h>

#include "tests/gui/Elements.h"

namespace {

using namespace guitest;

// A composite with a minimum size and a count of its layout passes.
class CSizedComposite : public CGUIComposite {
 public:
  int GetMinimumWidth() const override { return MinimumWidth; }
  int GetMinimumHeight() const override { return MinimumHeight; }
  void SetSize(int NewWidth, int NewHeight) override {
    CGUIComposite::SetSize(NewWidth, NewHeight);
    ++SetSizeCalls;
  }
  int MinimumWidth = 0;
  int MinimumHeight = 0;
  int SetSizeCalls = 0;
};

class LayoutTest : public ::testing::Test {
 protected:
  ~LayoutTest() override { ExitGUI(); }
};

TEST_F(LayoutTest, PlaceChildAddsANegativeSizeToWhatRemains) {
  CGUIComposite Parent;
  Parent.SetSize(200, 100);
  auto* Child = AddLast<CGUIElement>(Parent, 0, 0, 1, 1);
  Parent.PlaceChild(Child, 5, 5, -5, 10);
  EXPECT_EQ(Child->getX(), 5);
  EXPECT_EQ(Child->getY(), 5);
  EXPECT_EQ(Child->getWidth(), 190);
  EXPECT_EQ(Child->getHeight(), 10);
}

TEST_F(LayoutTest, PlaceChildCountsANegativePositionFromTheEdge) {
  CGUIComposite Parent;
  Parent.SetSize(100, 50);
  auto* Child = AddLast<CGUIElement>(Parent, 0, 0, 1, 1);
  Parent.PlaceChild(Child, -20, 2, 0, 0);
  EXPECT_EQ(Child->getX(), 80);
  EXPECT_EQ(Child->getY(), 2);
  EXPECT_EQ(Child->getWidth(), 20);
  EXPECT_EQ(Child->getHeight(), 48);
}

TEST_F(LayoutTest, MoveChildFromTheBottomRight) {
  CGUIComposite Parent;
  Parent.SetSize(162, 68);
  auto* Child = AddLast<CGUIElement>(Parent, 0, 0, 10, 10);
  Parent.MoveChild(Child, -15, -30);
  EXPECT_EQ(Child->getX(), 147);
  EXPECT_EQ(Child->getY(), 38);
}

// The right edge counts from 0, so the room left of the first child counts too.
TEST_F(LayoutTest, FitToChildrenMovesTheChildrenAndTakesTheMargins) {
  CSizedComposite Parent;
  auto* First = AddLast<CGUIElement>(Parent, 10, 10, 10, 5);
  auto* Second = AddLast<CGUIElement>(Parent, 20, 15, 10, 5);
  Parent.FitToChildren(4, 4, 4, 4, false);
  EXPECT_EQ(First->getX(), 4);
  EXPECT_EQ(First->getY(), 4);
  EXPECT_EQ(Second->getX(), 14);
  EXPECT_EQ(Second->getY(), 9);
  EXPECT_EQ(Parent.getWidth(), 38);
  EXPECT_EQ(Parent.getHeight(), 28);
  EXPECT_EQ(Parent.SetSizeCalls, 0);
}

TEST_F(LayoutTest, FitToChildrenTakesMarginsByAbsoluteValueAndKeepsTheMinimum) {
  CSizedComposite Parent;
  Parent.MinimumWidth = 100;
  AddLast<CGUIElement>(Parent, 0, 0, 10, 10);
  Parent.FitToChildren(-2, -3, -4, -5, true);
  EXPECT_EQ(Parent.getWidth(), 100);
  EXPECT_EQ(Parent.getHeight(), 18);
  EXPECT_EQ(Parent.GetFirstChild()->getX(), 2);
  EXPECT_EQ(Parent.GetFirstChild()->getY(), 3);
  EXPECT_EQ(Parent.SetSizeCalls, 1);
}

TEST_F(LayoutTest, FitToChildrenLeavesAnEmptyCompositeAsItIs) {
  CGUIComposite Parent;
  Parent.SetSize(7, 9);
  Parent.FitToChildren(false);
  EXPECT_EQ(Parent.getWidth(), 7);
  EXPECT_EQ(Parent.getHeight(), 9);
}

TEST_F(LayoutTest, GrowForChildMakesRoomForTheMargins) {
  CSizedComposite Parent;
  auto* Child = AddLast<CGUIElement>(Parent, 0, 0, 100, 40);
  Parent.GrowForChild(Child, 18, 32, -18, -60, false);
  EXPECT_EQ(Parent.getWidth(), 136);
  EXPECT_EQ(Parent.getHeight(), 132);
  EXPECT_EQ(Parent.SetSizeCalls, 0);
  Parent.MinimumWidth = 162;
  Parent.GrowForChild(Child, 18, 32, 5, 0, true);
  EXPECT_EQ(Parent.getWidth(), 162);
  EXPECT_EQ(Parent.getHeight(), 72);
  EXPECT_EQ(Parent.SetSizeCalls, 1);
  Parent.PlaceChild(Child, 18, 32, -18, -60);
  EXPECT_EQ(Child->getWidth(), 126);
}

TEST_F(LayoutTest, ClipChildrenCutsAndRemovesWhatFallsOutside) {
  CGUIComposite Parent;
  Parent.SetSize(100, 50);
  auto* Inside = AddLast<CGUIElement>(Parent, 10, 10, 20, 20);
  auto* Left = AddLast<CGUIElement>(Parent, -5, 0, 20, 10);
  auto* Bottom = AddLast<CGUIElement>(Parent, 0, 40, 10, 30);
  AddLast<CGUIElement>(Parent, 120, 0, 10, 10);
  Parent.ClipChildren(false);
  EXPECT_EQ(Inside->getWidth(), 20);
  EXPECT_EQ(Left->getX(), 0);
  EXPECT_EQ(Left->getWidth(), 15);
  EXPECT_EQ(Bottom->getHeight(), 10);
  EXPECT_EQ(Parent.GetLastChild(), Bottom);
  Parent.ClipChildren(false);
  Left->SetPosition(-1, 0);
  Parent.ClipChildren(true);
  EXPECT_EQ(Parent.GetFirstChild(), Inside);
  EXPECT_EQ(Parent.GetLastChild(), Bottom);
}

TEST_F(LayoutTest, IsPointInChildIncludesBothEdges) {
  CGUIComposite Parent;
  auto* Child = AddLast<CGUIElement>(Parent, 10, 10, 5, 5);
  EXPECT_TRUE(Parent.IsPointInChild(10, 10, Child));
  EXPECT_TRUE(Parent.IsPointInChild(15, 15, Child));
  EXPECT_FALSE(Parent.IsPointInChild(16, 15, Child));
  EXPECT_FALSE(Parent.IsPointInChild(10, 10, nullptr));
}

}  // namespace
