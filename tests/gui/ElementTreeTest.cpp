// The child list, capture chains and the failures of misuse.
#include <gtest/gtest.h>

#include "core/Exception.h"
#include "tests/gui/Elements.h"

namespace {

using namespace guitest;

class ElementTreeTest : public ::testing::Test {
 protected:
  ~ElementTreeTest() override { ExitGUI(); }
  std::vector<std::string> Log;
};

TEST_F(ElementTreeTest, AddChildPutsAtTheHeadAndAddChildLastAtTheTail) {
  CGUIComposite Parent;
  auto First = std::make_unique<CGUIElement>();
  auto Second = std::make_unique<CGUIElement>();
  auto Third = std::make_unique<CGUIElement>();
  CGUIComponent* A = First.get();
  CGUIComponent* B = Second.get();
  CGUIComponent* C = Third.get();
  Parent.AddChildLast(std::move(First));
  Parent.AddChild(std::move(Second));
  Parent.InsertChildAfter(B, std::move(Third));
  EXPECT_EQ(Parent.GetFirstChild(), B);
  EXPECT_EQ(B->GetNextSibling(), C);
  EXPECT_EQ(C->GetNextSibling(), A);
  EXPECT_EQ(A->GetNextSibling(), nullptr);
  EXPECT_EQ(Parent.GetLastChild(), A);
  EXPECT_EQ(B->GetPreviousSibling(), nullptr);
  EXPECT_EQ(A->GetPreviousSibling(), C);
  EXPECT_EQ(A->GetParent(), &Parent);
  Parent.SwapChildren(B, A);
  EXPECT_EQ(Parent.GetFirstChild(), A);
  EXPECT_EQ(Parent.GetLastChild(), B);
}

TEST_F(ElementTreeTest, ARemovedChildLivesOnWithoutParent) {
  CGUIComposite Parent;
  auto Own = std::make_unique<CGUIElement>();
  CGUIComponent* Child = Own.get();
  Parent.AddChild(std::move(Own));
  std::unique_ptr<CGUIComponent> Removed = Parent.RemoveChild(Child);
  EXPECT_EQ(Removed.get(), Child);
  EXPECT_EQ(Child->GetParent(), nullptr);
  EXPECT_FALSE(Parent.HasChild(Child));
  EXPECT_EQ(Parent.GetFirstChild(), nullptr);
}

TEST_F(ElementTreeTest, MisuseRaisesTheExpressions) {
  CGUIComposite Parent;
  CGUIComposite Other;
  CGUIElement Leaf;
  EXPECT_EQ(FailureOf([&] { Leaf.AddChild(std::make_unique<CGUIElement>()); }), "not possible");
  EXPECT_EQ(FailureOf([&] { Leaf.GetFirstChild(); }), "not possible");
  EXPECT_EQ(FailureOf([&] { Parent.AddChild(nullptr); }), "Child!=NULL");
  auto Own = std::make_unique<CGUIElement>();
  CGUIComponent* Child = Own.get();
  Parent.AddChild(std::move(Own));
  EXPECT_EQ(FailureOf([&] { Other.RemoveChild(Child); }), "Child->Parent==this");
  EXPECT_EQ(FailureOf([&] { Parent.MoveChild(Child, 1, 1); }), "Width>0");
  Parent.SetSize(10, 0);
  EXPECT_EQ(FailureOf([&] { Parent.MoveChild(Child, 1, 1); }), "Height>0");
}

// The widget takes the mouse through its parent; the chain runs up to the root.
TEST_F(ElementTreeTest, CaptureFormsAChainFromTheRootDown) {
  CGUIComposite Root;
  auto* Middle = AddLast<CGUIComposite>(Root, 0, 0, 100, 100);
  auto* Leaf = AddLast<CRecordingElement>(*Middle, 0, 0, 10, 10, Log, "leaf");
  Leaf->SetCapture(nullptr);
  EXPECT_EQ(Middle->GetCapture(), Leaf);
  EXPECT_EQ(Root.GetCapture(), Middle);
  EXPECT_EQ(FailureOf([&] { Middle->SetCapture(Leaf); }), "Capture==NULL");
  EXPECT_EQ(FailureOf([&] { Middle->ReleaseCapture(nullptr); }), "Capture==Component");
  Leaf->ReleaseCapture(nullptr);
  EXPECT_EQ(Middle->GetCapture(), nullptr);
  EXPECT_EQ(Root.GetCapture(), nullptr);
}

TEST_F(ElementTreeTest, RemovingTheCapturingChildLeavesNoCaptureAbove) {
  CGUIComposite Root;
  auto* Middle = AddLast<CGUIComposite>(Root, 0, 0, 100, 100);
  auto* Inner = AddLast<CGUIComposite>(*Middle, 0, 0, 50, 50);
  auto* Leaf = AddLast<CRecordingElement>(*Inner, 0, 0, 10, 10, Log, "leaf");
  Leaf->SetCapture(nullptr);
  ASSERT_EQ(Root.GetCapture(), Middle);
  Middle->DeleteChild(Inner);
  EXPECT_EQ(Middle->GetCapture(), nullptr);
  EXPECT_EQ(Root.GetCapture(), nullptr);
}

TEST_F(ElementTreeTest, CancelCaptureClearsDownwardOnly) {
  CGUIComposite Root;
  auto* Middle = AddLast<CGUIComposite>(Root, 0, 0, 100, 100);
  auto* Leaf = AddLast<CRecordingElement>(*Middle, 0, 0, 10, 10, Log, "leaf");
  Leaf->SetCapture(nullptr);
  Middle->CancelCapture();
  EXPECT_EQ(Middle->GetCapture(), nullptr);
  EXPECT_EQ(Root.GetCapture(), Middle);
  Root.CancelCapture();
  EXPECT_EQ(Root.GetCapture(), nullptr);
}

TEST_F(ElementTreeTest, SetPositionOfACompositeTellsItsChildren) {
  class CMovedChild : public CGUIElement {
   public:
    void ParentMoved() override { ++Moves; }
    int Moves = 0;
  };
  CGUIComposite Parent;
  auto* Child = AddLast<CMovedChild>(Parent, 0, 0, 5, 5);
  Parent.SetPosition(3, 4);
  EXPECT_EQ(Child->Moves, 1);
  EXPECT_EQ(Parent.getX(), 3);
  EXPECT_EQ(Parent.getY(), 4);
}

TEST_F(ElementTreeTest, AFiredTargetCallsOnEventAndNoTargetNothing) {
  CGUIComposite Parent;
  auto* Element = AddLast<CRecordingElement>(Parent, 0, 0, 5, 5, Log, "e");
  TEventTarget{Element, 11}.Fire();
  NoTarget.Fire();
  EXPECT_EQ(NoTarget, (TEventTarget{nullptr, 0}));
  EXPECT_EQ(Log, (std::vector<std::string>{"e event 11"}));
}

}  // namespace
