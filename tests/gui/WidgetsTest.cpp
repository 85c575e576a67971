// Check box, link, progress bar, decorate line, resizer and frame window:
// their drawing lists, the layout of their children, and the marks that they
// draw on the software engine, heard through the drawing recorder.
#include <gtest/gtest.h>

#include <memory>

#include "core/Exception.h"
#include "core/Preferences.h"
#include "core/ProgramState.h"
#include "graphics/Engines.h"
#include "graphics/Fonts.h"
#include "graphics/Graphics.h"
#include "graphics/Recorder.h"
#include "graphics/SurfaceDX.h"
#include "gui/Buttons.h"
#include "gui/TextRectangle.h"
#include "gui/Routing.h"
#include "gui/Widgets.h"
#include "tests/gui/Elements.h"
#include "tests/gui/WidgetFixture.h"

#ifndef KELMO_DATA_DIR
#error "KELMO_DATA_DIR must name the folder of the built data files"
#endif

namespace {

using namespace guitest;

int W(int Skin) { return GetSkin(Skin).width; }
int H(int Skin) { return GetSkin(Skin).height; }

std::string EntryText(const DrawingListEntry& Entry) {
  return std::to_string(Entry.Skin) + " " + std::to_string(Entry.x) + "," + std::to_string(Entry.y) + " " +
         std::to_string(Entry.width) + "x" + std::to_string(Entry.height);
}

std::vector<std::string> Entries(const CGUIComponent& Element) {
  std::vector<std::string> Result;
  for (const DrawingListEntry& Entry : Element.GetDrawingList()) Result.push_back(EntryText(Entry));
  return Result;
}

std::string Entry(int Skin, int x, int y, int Width, int Height) {
  return EntryText(DrawingListEntry{Skin, x, y, Width, Height});
}

const std::string NONE = Entry(0, 0, 0, 0, 0);

class WidgetsTest : public CWidgetTest {
 protected:
  std::vector<std::string> Log;
  CRecordingElement Listener{Log, "listener"};
};

// --- progress bar ---

TEST_F(WidgetsTest, EmptyProgressBarHasTheTrackOnly) {
  CGUIProgressbar Bar(0, 0, 200, H(322));
  const int h = H(322);
  EXPECT_EQ(Entries(Bar), (std::vector<std::string>{Entry(322, 0, 0, W(322), h),
                                                   Entry(323, W(322), 0, 200 - W(322) - W(324), h),
                                                   Entry(324, 200 - W(324), 0, W(324), h), NONE, NONE, NONE}));
  EXPECT_EQ(Bar.GetMinimumWidth(), W(322) + W(323) + W(324));
  EXPECT_EQ(Bar.GetMinimumHeight(), h);
}

TEST_F(WidgetsTest, FullProgressBarHasAllThreeFillEntries) {
  CGUIProgressbar Bar(0, 0, 200, H(322));
  Bar.SetMaximum(40);
  Bar.SetCurrent(40);
  const int h = H(322);
  const int RightEdge = 200 - W(327);
  const std::vector<std::string> List = Entries(Bar);
  EXPECT_EQ(List[3], Entry(325, 0, 0, 200, h));
  EXPECT_EQ(List[4], Entry(326, W(325), 0, RightEdge - W(325), h));
  EXPECT_EQ(List[5], Entry(327, RightEdge, 0, W(327), h));
}

TEST_F(WidgetsTest, PartlyFilledBarStopsTheMiddleAtTheFill) {
  CGUIProgressbar Bar(0, 0, 200, H(322));
  Bar.SetCurrent(25);  // a quarter of 100: 50 pixels
  const std::vector<std::string> List = Entries(Bar);
  EXPECT_EQ(List[3], Entry(325, 0, 0, 50, H(322)));
  EXPECT_EQ(List[4], Entry(326, W(325), 0, 50 - W(325), H(322)));
  EXPECT_EQ(List[5], NONE);
}

TEST_F(WidgetsTest, ProgressValuesAreCutToTheRange) {
  CGUIProgressbar Bar(0, 0, 200, H(322));
  Bar.SetCurrent(150);
  EXPECT_EQ(Bar.GetCurrent(), 100);
  EXPECT_EQ(Entries(Bar)[5], Entry(327, 200 - W(327), 0, W(327), H(322)));
  Bar.SetCurrent(-5);
  EXPECT_EQ(Bar.GetCurrent(), 0);
  EXPECT_EQ(Entries(Bar)[3], NONE);
  EXPECT_EQ(FailureOf([&] { Bar.SetMaximum(0); }), "maximum>0");
  Bar.SetCurrent(80);
  Bar.SetMaximum(50);
  EXPECT_EQ(Bar.GetCurrent(), 50);
}

// --- check box ---

TEST_F(WidgetsTest, CheckboxFramesItselfAndPlacesItsText) {
  CGUICheckbox Box("Show names", false, NoTarget);
  Box.SetSize(150, 22);
  EXPECT_EQ(Entries(Box),
            (std::vector<std::string>{Entry(188, 0, 0, 150, H(188)), Entry(186, 0, H(188), W(186), 22 - H(188)),
                                      Entry(187, 150 - W(187), H(188), W(187), 22 - H(188)),
                                      Entry(189, W(186), 22 - H(189), 150 - W(186) - W(187), H(189))}));
  const CGUITextRectangle& Text = Box.GetTextChild();
  EXPECT_EQ(Text.GetText(), "Show names");
  EXPECT_EQ(Text.getX(), 24);
  EXPECT_EQ(Text.getY(), 4);
  EXPECT_EQ(Text.getWidth(), 150 - 24 - 10);
  EXPECT_EQ(Text.getHeight(), 22 - 4 - 6);
}

TEST_F(WidgetsTest, CheckboxTogglesOnReleaseOnlyWhileEnabled) {
  CGUIComposite Parent;
  Parent.SetSize(300, 100);
  auto Own = std::make_unique<CGUICheckbox>("Sound", false, TEventTarget{&Listener, 5});
  CGUICheckbox* Box = Own.get();
  Parent.AddChild(std::move(Own));
  Box->SetSize(150, 22);
  EXPECT_TRUE(Parent.LeftDown(30, 10, 0));
  EXPECT_EQ(Parent.GetCapture(), nullptr);
  EXPECT_TRUE(Parent.LeftUp(30, 10, 0));
  EXPECT_TRUE(Box->IsChecked());
  Box->SetEnabled(false);
  EXPECT_TRUE(Parent.LeftUp(30, 10, 0));
  EXPECT_TRUE(Box->IsChecked());
  Box->SetChecked(false);
  EXPECT_EQ(Log, (std::vector<std::string>{"listener event 5"}));
}

TEST_F(WidgetsTest, DisabledCheckedCheckboxShowsTheUncheckedMarkAndGreyText) {
  CGUICheckbox Box("Sound", true, NoTarget);
  Box.SetSize(150, 22);
  const auto Mark = [&] {
    Recorder.Clear();
    Box.Draw(CACHE_SURFACE, 10, 20);
    std::string Found;
    for (const std::string& Line : Recorder.Lines()) {
      if (Line.find("area=16,25,") != std::string::npos) Found = Line.substr(0, Line.find(" area"));
    }
    return Found;
  };
  EXPECT_EQ(Mark(), "skin s=4 number=190");
  Box.SetEnabled(false);
  EXPECT_EQ(Mark(), "skin s=4 number=191");
  EXPECT_EQ(Box.GetTextChild().GetStyle(), (TextStyle{4, 112, 112, 112, LEFT_ALIGN}));
  EXPECT_EQ(Box.GetTextChild().getX(), 24);
  EXPECT_EQ(Box.GetTextChild().getWidth(), 116);
  Box.SetEnabled(true);
  EXPECT_EQ(Box.GetTextChild().GetStyle(), (TextStyle{4, 176, 176, 176, LEFT_ALIGN}));
  Box.SetChecked(false);
  EXPECT_EQ(Mark(), "skin s=4 number=191");
}

// --- link ---

TEST_F(WidgetsTest, LinkPutsTheButtonRightAndCentresTheShorterElement) {
  std::vector<std::string> Opened;
  const TextStyle Style{1, 200, 200, 200, LEFT_ALIGN};
  CGUILink Link("See the manual", "Open", "https://example.org/manual",
                [&](const std::string& Destination) { Opened.push_back(Destination); }, Style);
  CGUITextButton& Button = Link.GetButton();
  CGUITextRectangle& Text = Link.GetTextChild();
  EXPECT_EQ(Link.GetMinimumWidth(), Button.getWidth());
  EXPECT_EQ(Link.GetMinimumHeight(), Button.getHeight());
  Link.SetSize(300, std::max(Text.getHeight(), Button.getHeight()));
  EXPECT_EQ(Button.getX(), 300 - Button.getWidth());
  EXPECT_EQ(Text.getX(), 0);
  EXPECT_EQ(Text.getWidth(), 300 - Button.getWidth());
  const int Difference = Text.getHeight() - Button.getHeight();
  ASSERT_NE(Difference, 0) << "the fonts make text and button of different heights";
  if (Difference < 0) {
    EXPECT_EQ(Text.getY(), -Difference / 2);
    EXPECT_EQ(Button.getY(), 0);
  } else {
    EXPECT_EQ(Button.getY(), Difference / 2);
    EXPECT_EQ(Text.getY(), 0);
  }
  Button.Hover(1, 1);
  EXPECT_EQ(GetTooltip(), "https://example.org/manual");
  Link.LeftDown(Button.getX() + 2, Button.getY() + 2, 0);
  Link.LeftUp(Button.getX() + 2, Button.getY() + 2, 0);
  EXPECT_EQ(Opened, (std::vector<std::string>{"https://example.org/manual"}));
  EXPECT_EQ(FailureOf([&] { Link.SetSize(Button.getWidth(), 20); }), "Width-ButtonWidth>0");
  EXPECT_EQ(FailureOf([&] { CGUILink("a", "b", nullptr, nullptr, Style); }), "_Destination!=NULL");
}

// --- decorate line ---

TEST_F(WidgetsTest, DecorateLinesStackTheirTwoSkins) {
  CGUIDecorateLine Across(true, 0, 0, 120);
  EXPECT_EQ(Entries(Across), (std::vector<std::string>{Entry(10, 0, 0, 120, H(10)), Entry(9, 0, H(10), 120, H(9))}));
  CGUIDecorateLine Along(false, 0, 0, 80);
  Along.SetSize(Along.getWidth(), 90);
  EXPECT_EQ(Entries(Along), (std::vector<std::string>{Entry(12, 0, 0, W(12), 90), Entry(11, W(12), 0, W(11), 90)}));
}

// --- resizer ---

// A window whose resizer lies along its bottom edge, as windows place theirs.
class CResizable : public CGUIComposite {
 public:
  CResizable() {
    auto Own = std::make_unique<CGUIResizer>(this);
    Resizer = Own.get();
    AddChild(std::move(Own));
  }
  void SetSize(int NewWidth, int NewHeight) override {
    StoreSize(NewWidth, NewHeight);
    PlaceChild(Resizer, 0, -4, 0, 4);
  }
  CGUIResizer* Resizer = nullptr;
};

TEST_F(WidgetsTest, ResizerDragsTheHeightAndMovesWithTheWindow) {
  CGUIComposite Root;
  Root.SetSize(500, 500);
  auto Own = std::make_unique<CResizable>();
  CResizable* Window = Own.get();
  Root.AddChild(std::move(Own));
  Window->SetPosition(10, 10);
  Window->SetSize(100, 100);
  EXPECT_EQ(Entries(*Window->Resizer), (std::vector<std::string>{Entry(47, 0, 0, 100, 4)}));
  // Root coordinates: the resizer lies at y 106 .. 109.
  Root.LeftDown(50, 107, 0);
  EXPECT_TRUE(Window->Resizer->IsDragging());
  Root.MouseMove(70, 127);
  EXPECT_EQ(Window->getWidth(), 100) << "only the height by default";
  EXPECT_EQ(Window->getHeight(), 120);
  Root.MouseMove(70, 117);
  EXPECT_EQ(Window->getHeight(), 110);
  Root.LeftUp(70, 147, 0);
  EXPECT_EQ(Window->getHeight(), 140);
  EXPECT_FALSE(Window->Resizer->IsDragging());
  EXPECT_EQ(Root.GetCapture(), nullptr);
  Root.MouseMove(70, 200);
  EXPECT_EQ(Window->getHeight(), 140);
  Window->Resizer->SetDirections(true, false);
  Root.LeftDown(50, 147, 0);
  Root.LeftUp(80, 190, 0);
  EXPECT_EQ(Window->getWidth(), 130);
  EXPECT_EQ(Window->getHeight(), 140);
}

// The mouse over the resizer asks for the resize cursor; moving on to the
// window gives the arrow back.
TEST_F(WidgetsTest, ResizerAsksForTheResizeCursor) {
  auto Root = std::make_unique<CGUIComposite>();
  Root->SetSize(500, 500);
  auto Own = std::make_unique<CResizable>();
  CResizable* Window = Own.get();
  Root->AddChild(std::move(Own));
  Window->SetSize(100, 100);
  SetMainWindow(std::move(Root));
  MouseMoveEvent(50, 98);
  EXPECT_EQ(GetMouseCursor(), 2);
  MouseMoveEvent(50, 50);
  EXPECT_EQ(GetMouseCursor(), 1);
  ResetRouting();
}

TEST_F(WidgetsTest, InvisibleResizerDrawsNothingAndNeedsATarget) {
  CGUIElement Target;
  CGUIResizer Resizer(&Target, true);
  Resizer.SetSize(50, 4);
  EXPECT_EQ(Entries(Resizer), (std::vector<std::string>{NONE}));
  EXPECT_EQ(FailureOf([] { CGUIResizer(nullptr); }), "_ToResize!=NULL");
}

// --- frame window ---

TEST_F(WidgetsTest, PanelFrameFitsRoundItsWindow) {
  auto Inner = std::make_unique<CGUIElement>();
  CGUIElement* Window = Inner.get();
  Window->SetSize(100, 60);
  CGUIFrameWindow Frame(std::move(Inner));
  EXPECT_EQ(Frame.GetMinimumWidth(), W(35) + W(36));
  EXPECT_EQ(Frame.GetMinimumHeight(), H(37) + H(38));
  Frame.FitToWindow();
  const int Width = 100 + W(35) + W(36);
  const int Height = 60 + H(37) + H(38);
  EXPECT_EQ(Frame.getWidth(), Width);
  EXPECT_EQ(Frame.getHeight(), Height);
  EXPECT_EQ(Window->getX(), W(35));
  EXPECT_EQ(Window->getY(), H(37));
  EXPECT_EQ(Window->getWidth(), 100);
  EXPECT_EQ(Window->getHeight(), 60);
  EXPECT_EQ(Entries(Frame),
            (std::vector<std::string>{
                Entry(31, 0, 0, 0, 0), Entry(32, Width - W(32), 0, 0, 0), Entry(33, 0, Height - H(33), 0, 0),
                Entry(34, Width - W(34), Height - H(34), 0, 0), Entry(37, W(31), 0, Width - W(31) - W(32), H(37)),
                Entry(38, W(33), Height - H(38), Width - W(33) - W(34), H(38)),
                Entry(35, 0, H(31), W(35), Height - H(31) - H(33)),
                Entry(36, Width - W(36), H(32), W(36), Height - H(32) - H(34)), NONE}));
}

TEST_F(WidgetsTest, FramedFrameKeepsItsBorderAndFillsTheBackground) {
  auto Inner = std::make_unique<CGUIElement>();
  CGUIElement* Window = Inner.get();
  CGUIFrameWindow Frame(CGUIFrameWindow::TKind::Framed, std::move(Inner), 3);
  EXPECT_EQ(Frame.GetMinimumWidth(), W(61) + W(62) + 6);
  EXPECT_EQ(Frame.GetMinimumHeight(), H(63) + H(64) + 6);
  Frame.SetSize(200, 150);
  EXPECT_EQ(Window->getX(), W(61) + 3);
  EXPECT_EQ(Window->getY(), H(63) + 3);
  EXPECT_EQ(Window->getWidth(), 200 - Frame.GetMinimumWidth());
  EXPECT_EQ(Window->getHeight(), 150 - Frame.GetMinimumHeight());
  EXPECT_EQ(Entries(Frame)[8], Entry(65, W(61), H(63), 200 - W(61) - W(62), 150 - H(63) - H(64)));
  EXPECT_EQ(FailureOf([&] { Frame.SetSize(Frame.GetMinimumWidth() - 1, 150); }), "Width>=getMinimumWidth()");
  EXPECT_EQ(FailureOf([&] { Frame.SetSize(200, Frame.GetMinimumHeight() - 1); }), "Height>=getMinimumHeight()");
  EXPECT_EQ(FailureOf([] { CGUIFrameWindow(nullptr); }), "_Window!=NULL");
}

TEST_F(WidgetsTest, ThinFrameHasEdgesButNoCorners) {
  auto Inner = std::make_unique<CGUIElement>();
  CGUIElement* Window = Inner.get();
  CGUIFrameWindow Frame(CGUIFrameWindow::TKind::Thin, std::move(Inner), 2);
  Frame.SetSize(100, 80);
  EXPECT_EQ(Window->getX(), W(12) + 2);
  EXPECT_EQ(Window->getY(), H(10) + 2);
  const std::vector<std::string> List = Entries(Frame);
  EXPECT_EQ(List[4], Entry(10, 0, 0, 100, H(10)));
  EXPECT_EQ(List[5], Entry(9, 0, 80 - H(9), 100, H(9)));
  EXPECT_EQ(List[6], Entry(12, 0, 0, W(12), 80));
  EXPECT_EQ(List[7], Entry(11, 100 - W(11), 0, W(11), 80));
  Recorder.Clear();
  Frame.Draw(CACHE_SURFACE, 0, 0);
  EXPECT_EQ(Recorder.Lines().size(), 4U) << Recorder.Log();
}

}  // namespace
