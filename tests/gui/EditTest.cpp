// The edits: typing, the editing keys, selection by mouse and keys, the
// clipboard, insertion at full length, the caret, focus groups, the password
// form and the multi-line area's line table and keys.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "core/MessageQueue.h"
#include "core/ProgramState.h"
#include "graphics/Fonts.h"
#include "gui/Edit.h"
#include "gui/Sliders.h"
#include "tests/gui/Elements.h"
#include "tests/gui/WidgetFixture.h"
#include "platform/Events.h"

namespace {

using namespace platform;

using guitest::FailureOf;

constexpr int SHIFT = KEY_SHIFT;
constexpr int CTRL = KEY_CTRL;
constexpr int ALT = KEY_ALT;

class EditTest : public guitest::CWidgetTest {
 protected:
  EditTest() { GetClipboard().SetText(""); }
  ~EditTest() override {
    GetClipboard().SetText("");
    MessageQueue().Clear();
  }

  static void Type(CGUIEdit& Edit, const std::string& Text) {
    for (char Character : Text) Edit.KeyDown(static_cast<unsigned char>(Character));
  }
  // A point over the middle of byte Index of a one-line edit's text.
  static int XOfByte(const CGUIEdit& Edit, int Index) {
    const std::string& Text = Edit.GetText();
    return 3 + TextWidth(4, Text, Index, false) + TextWidth(4, Text.substr(static_cast<size_t>(Index)), 1, false) / 2;
  }

  CGUIEdit Edit{0, 0, 200, 20, 10};
};

TEST_F(EditTest, TypedBytesGoInAtTheCursorUntilTheEditIsFull) {
  Type(Edit, "hello world!");
  EXPECT_EQ(Edit.GetText(), "hello worl");
  EXPECT_EQ(Edit.GetCursor(), 10);
  Edit.KeyDown(KEY_HOME);
  Edit.KeyDown(KEY_DELETE);
  Edit.KeyDown(SHIFT | 'J');
  EXPECT_EQ(Edit.GetText(), "Jello worl");
  EXPECT_EQ(Edit.GetCursor(), 1);
}

TEST_F(EditTest, CtrlAloneTypesNothingButCtrlWithAltDoes) {
  Edit.KeyDown(CTRL | 'q');
  EXPECT_EQ(Edit.GetText(), "");
  Edit.KeyDown(CTRL | ALT | 0xE4);
  EXPECT_EQ(Edit.GetText(), "\xE4");
}

TEST_F(EditTest, BackspaceAndDeleteAtTheEndsChangeNothing) {
  Edit.SetText("abc");
  Edit.SetCursor(0);
  Edit.KeyDown(KEY_BACKSPACE);
  EXPECT_EQ(Edit.GetText(), "abc");
  Edit.SetCursor(3);
  Edit.KeyDown(KEY_DELETE);
  EXPECT_EQ(Edit.GetText(), "abc");
  Edit.KeyDown(KEY_BACKSPACE);
  EXPECT_EQ(Edit.GetText(), "ab");
  EXPECT_EQ(Edit.GetCursor(), 2);
}

TEST_F(EditTest, ArrowsWithShiftMoveWithoutSelecting) {
  Edit.SetText("abcdef");
  Edit.KeyDown(CTRL | 'a');
  ASSERT_TRUE(Edit.HasSelection());
  Edit.KeyDown(SHIFT | KEY_LEFT);
  EXPECT_EQ(Edit.GetCursor(), 5);
  EXPECT_FALSE(Edit.HasSelection());
  Edit.KeyDown(SHIFT | KEY_RIGHT);
  Edit.KeyDown(KEY_RIGHT);
  EXPECT_EQ(Edit.GetCursor(), 6);
}

TEST_F(EditTest, TypingOverASelectionReplacesIt) {
  Edit.SetText("abcdef");
  Edit.KeyDown(CTRL | 'a');
  Type(Edit, "x");
  EXPECT_EQ(Edit.GetText(), "x");
  EXPECT_EQ(Edit.GetCursor(), 1);
}

TEST_F(EditTest, CopyCutAndPasteGoThroughTheClipboard) {
  Edit.SetText("one two");
  Edit.LeftDouble(XOfByte(Edit, 1), 10, 0);
  ASSERT_EQ(Edit.GetSelectionLength(), 3);
  Edit.KeyDown(CTRL | 'x');
  EXPECT_EQ(GetClipboard().GetText(), "one");
  EXPECT_EQ(Edit.GetText(), " two");
  EXPECT_EQ(Edit.GetCursor(), 0);
  Edit.KeyDown(KEY_END);
  Edit.KeyDown(SHIFT | KEY_INSERT);
  EXPECT_EQ(Edit.GetText(), " twoone");
  EXPECT_EQ(Edit.GetCursor(), 7);
  Edit.KeyDown(CTRL | 'a');
  Edit.KeyDown(CTRL | KEY_INSERT);
  EXPECT_EQ(GetClipboard().GetText(), " twoone");
}

TEST_F(EditTest, PastedLineEndsBecomeBlanksAndCarriageReturnsGo) {
  GetClipboard().SetText("a\r\nb");
  Edit.KeyDown(CTRL | 'v');
  EXPECT_EQ(Edit.GetText(), "a b");
}

TEST_F(EditTest, PasteOnAnEmptyClipboardChangesNothing) {
  Edit.SetText("abc");
  Edit.KeyDown(CTRL | 'a');
  Edit.KeyDown(CTRL | 'v');
  EXPECT_EQ(Edit.GetText(), "abc");
  EXPECT_TRUE(Edit.HasSelection());
}

TEST_F(EditTest, PastingIntoAFullerEditEatsTheEndOfTheOldText) {
  Edit.SetText("12345678");
  Edit.SetCursor(0);
  GetClipboard().SetText("abcde");
  Edit.KeyDown(CTRL | 'v');
  EXPECT_EQ(Edit.GetText(), "abcde12345");
  EXPECT_EQ(Edit.GetCursor(), 5);
}

TEST_F(EditTest, InsertAndDeleteCheckTheirPositions) {
  Edit.SetText("abc");
  EXPECT_EQ(FailureOf([this] { Edit.InsertText(4, "x", 1); }), "Position <= (int)strlen(Text)");
  EXPECT_EQ(FailureOf([this] { Edit.DeleteText(-1, 1); }), "Position <= (int)strlen(Text)");
  EXPECT_EQ(Edit.InsertText(1, "xyz", 3), 3);
  EXPECT_EQ(Edit.GetText(), "axyzbc");
  EXPECT_EQ(FailureOf([] { CGUIEdit(-1, false); }), "_MaxLength>=0");
  EXPECT_EQ(FailureOf([this] { Edit.OnEvent(0x15); }), "unknown event");
}

TEST_F(EditTest, ReadOnlyEditsCopyButNeverChange) {
  CGUIEdit ReadOnly(10, true);
  ReadOnly.SetSize(200, 20);
  ReadOnly.SetText("fixed");
  EXPECT_EQ(ReadOnly.GetStyle(), (TextStyle{4, 176, 176, 176, LEFT_ALIGN}));
  ReadOnly.KeyDown(CTRL | 'a');
  ReadOnly.KeyDown(CTRL | 'c');
  EXPECT_EQ(GetClipboard().GetText(), "fixed");
  ReadOnly.KeyDown(CTRL | 'x');
  ReadOnly.KeyDown(KEY_BACKSPACE);
  Type(ReadOnly, "z");
  EXPECT_EQ(ReadOnly.GetText(), "fixed");
}

TEST_F(EditTest, InactiveEditsIgnoreKeysAndClicks) {
  Edit.SetText("abc");
  Edit.SetInactive(true);
  Type(Edit, "x");
  Edit.LeftDown(XOfByte(Edit, 1), 10, 0);
  EXPECT_EQ(Edit.GetText(), "abc");
  EXPECT_FALSE(Edit.HasFocus());
}

TEST_F(EditTest, DraggingSelectsBackwardAndForward) {
  Edit.SetText("abcdef");
  Edit.LeftDown(XOfByte(Edit, 4), 10, 0);
  EXPECT_TRUE(Edit.HasFocus());
  EXPECT_EQ(Edit.GetCursor(), 4);
  Edit.MouseMove(XOfByte(Edit, 1), 10);
  EXPECT_EQ(Edit.GetSelectionLength(), -3);
  Edit.LeftUp(XOfByte(Edit, 1), 10, 0);
  EXPECT_FALSE(Edit.IsDragging());
  Edit.KeyDown(CTRL | 'c');
  EXPECT_EQ(GetClipboard().GetText(), "bcd");
  Edit.KeyDown(KEY_BACKSPACE);
  EXPECT_EQ(Edit.GetText(), "aef");
  EXPECT_EQ(Edit.GetCursor(), 1);
}

TEST_F(EditTest, PointsOutsideTheTextAreaGiveTheEnds) {
  Edit.SetText("abcdef");
  EXPECT_EQ(Edit.PositionFromPoint(1, 10), 0);
  EXPECT_EQ(Edit.PositionFromPoint(199, 10), 6);
  EXPECT_EQ(Edit.PositionFromPoint(150, 10), 6);
}

TEST_F(EditTest, ADoubleClickOnWhiteSpaceSelectsNothing) {
  Edit.SetText("ab  cd");
  Edit.LeftDouble(XOfByte(Edit, 2), 10, 0);
  EXPECT_FALSE(Edit.HasSelection());
  EXPECT_EQ(Edit.GetCursor(), 2);
  Edit.LeftDouble(XOfByte(Edit, 5), 10, 0);
  EXPECT_EQ(Edit.GetSelectionStart(), 4);
  EXPECT_EQ(Edit.GetSelectionLength(), 2);
  EXPECT_EQ(Edit.GetCursor(), 6);
}

TEST_F(EditTest, ARightClickAsksForTheContextMenuOutsideModalDialogs) {
  Edit.RightUp(10, 10, 0);
  ASSERT_EQ(MessageQueue().Size(), 1);
  EXPECT_EQ(MessageQueue().Front()->Type, MSG_MENU_EDIT);
  EXPECT_EQ(std::any_cast<CGUIEdit*>(MessageQueue().Front()->Data1), &Edit);
  MessageQueue().Clear();
  SetActionState(ACTIONSTATE_MODAL);
  Edit.RightUp(10, 10, 0);
  EXPECT_TRUE(MessageQueue().IsEmpty());
}

TEST_F(EditTest, DrawsBackgroundSelectionTextAndABlinkingCaret) {
  Edit.SetText("abcdef");
  Edit.LeftDouble(XOfByte(Edit, 0), 10, 0);
  Edit.SetFocus(true);
  Edit.SetCursor(2);
  Recorder.Clear();
  Edit.Draw(TEMP_SURFACE, 10, 20);
  const auto& Lines = Recorder.Lines();
  const std::string Surface = "s=" + std::to_string(TEMP_SURFACE);
  EXPECT_EQ(Lines.front(), "rect " + Surface + " area=10,20,200,20 rgb=54,54,54 alpha=255");
  const int Full = TextWidth(4, "abcdef", WHOLE_TEXT, false);
  EXPECT_NE(std::find(Lines.begin(), Lines.end(),
                      "rect " + Surface + " area=13,23," + std::to_string(Full) + "," + std::to_string(FontHeight(4)) +
                          " rgb=128,128,128 alpha=255"),
            Lines.end());
  const std::string Caret = "rect " + Surface + " area=" + std::to_string(13 + TextWidth(4, "abcdef", 2, false)) +
                            ",23,1," + std::to_string(FontHeight(4)) + " rgb=255,255,255 alpha=255";
  EXPECT_EQ(Lines.back(), Caret);
  for (int Tick = 0; Tick < 5; ++Tick) AdvanceTickCounter();
  Recorder.Clear();
  Edit.Draw(TEMP_SURFACE, 10, 20);
  EXPECT_NE(Recorder.Lines().back(), Caret);
}

TEST_F(EditTest, TheShownPartFollowsTheCursor) {
  CGUIEdit Narrow(0, 0, 40, 20, 50);
  Narrow.SetText("a rather long text that cannot fit");
  Recorder.Clear();
  Narrow.Draw(TEMP_SURFACE, 0, 0);
  EXPECT_GT(Narrow.GetFirstVisible(), 0);
  const int First = Narrow.GetFirstVisible();
  EXPECT_LE(Narrow.GetCursor(), First + CharsThatFit(4, Narrow.GetText().substr(static_cast<size_t>(First)), 34, false));
  Narrow.KeyDown(KEY_HOME);
  Narrow.Draw(TEMP_SURFACE, 0, 0);
  EXPECT_EQ(Narrow.GetFirstVisible(), 0);
}

TEST_F(EditTest, InactiveEditsShowNoTextOnAGreyerGround) {
  Edit.SetText("secret");
  Edit.SetInactive(true);
  Recorder.Clear();
  Edit.Draw(TEMP_SURFACE, 0, 0);
  for (const std::string& Line : Recorder.Lines()) EXPECT_EQ(Line.find("text "), std::string::npos) << Line;
  EXPECT_NE(Recorder.Lines().front().find("rgb=71,71,71"), std::string::npos);
}

TEST_F(EditTest, TabWalksTheFocusGroupRoundTheEnds) {
  CGUIEdit Second(0, 0, 100, 20, 5);
  CGUIEdit Third(0, 0, 100, 20, 5);
  CGUIFocusGroup Group;
  EXPECT_EQ(FailureOf([&Group] { Group.Next(); }), "Active!=NULL");
  for (CGUIEdit* Member : {&Edit, &Second, &Third}) Member->SetFocusGroup(&Group);
  EXPECT_EQ(FailureOf([&] { Group.AddMember(&Second); }), "MemberList(i) != Member");
  EXPECT_EQ(FailureOf([this] { Edit.SetFocusGroup(nullptr); }), "_FocusGroup!=NULL");
  Group.SetActive(&Edit);
  Edit.KeyDown(KEY_TAB);
  EXPECT_FALSE(Edit.HasFocus());
  EXPECT_TRUE(Second.HasFocus());
  Second.KeyDown(SHIFT | KEY_TAB);
  Edit.KeyDown(SHIFT | KEY_TAB);
  EXPECT_EQ(Group.GetActive(), &Third);
  Third.LeftDown(10, 10, 0);
  EXPECT_EQ(Group.GetActive(), &Third);
  Second.LeftDown(10, 10, 0);
  EXPECT_EQ(Group.GetActive(), &Second);
  EXPECT_FALSE(Third.HasFocus());
}

TEST_F(EditTest, PasswordEditsShowStarsAndLetOnlyPastesThrough) {
  CGUIPasswordEdit Password(0, 0, 200, 20, 10);
  GetClipboard().SetText("pw");
  Password.KeyDown(CTRL | 'v');
  Type(Password, "!");
  EXPECT_EQ(Password.GetText(), "pw!");
  Password.KeyDown(CTRL | 'a');
  Password.KeyDown(CTRL | 'c');
  Password.KeyDown(CTRL | 'x');
  EXPECT_EQ(GetClipboard().GetText(), "pw");
  EXPECT_EQ(Password.GetText(), "pw!");
  Recorder.Clear();
  Password.Draw(TEMP_SURFACE, 0, 0);
  bool Starred = false;
  for (const std::string& Line : Recorder.Lines()) Starred = Starred || Line.ends_with("\"***\"");
  EXPECT_TRUE(Starred);
  Password.RightUp(10, 10, 0);
  EXPECT_TRUE(MessageQueue().IsEmpty());
}

class EditAreaTest : public EditTest {
 protected:
  // Room for three lines of about ten narrow characters.
  EditAreaTest() : Area(0, 0, 6 + 12 + TextWidth(4, "mmmmmmmmmm", WHOLE_TEXT, false), 6 + 3 * LineHeight(4), 200) {}

  int Bar() const { return Area.GetScrollbar().GetScrollbar().GetValue(); }

  CGUIEditArea Area;
};

TEST_F(EditAreaTest, LineFeedsEndLinesAndOneAtTheEndGivesAnEmptyLine) {
  Area.SetText("ab\ncd");
  EXPECT_EQ(Area.GetLines(), 2);
  EXPECT_EQ(Area.GetLineStart(1), 3);
  Area.SetText("ab\n");
  EXPECT_EQ(Area.GetLines(), 2);
  EXPECT_EQ(Area.GetLineStart(1), 3);
  EXPECT_EQ(Area.LineOfCursor(), 1);
  Area.SetText("");
  EXPECT_EQ(Area.GetLines(), 1);
}

TEST_F(EditAreaTest, AFullLineBreaksBehindItsLastNonLetter) {
  Area.SetText("mmmm mmmmmmmm");
  ASSERT_EQ(Area.GetLines(), 2);
  EXPECT_EQ(Area.GetLineStart(1), 5);
  const std::string Word(25, 'm');
  Area.SetText(Word.c_str());
  const int Full = CharsThatFit(4, Word, Area.GetFieldWidth(), false);
  EXPECT_EQ(Area.GetLineStart(1), Full);
}

TEST_F(EditAreaTest, EnterInsertsALineFeedAndTheViewFollowsTheCursor) {
  Type(Area, "a");
  for (int Line = 0; Line < 4; ++Line) Area.KeyDown(KEY_ENTER);
  EXPECT_EQ(Area.GetText(), "a\n\n\n\n");
  EXPECT_EQ(Area.GetLines(), 5);
  EXPECT_EQ(Bar(), 2);
  Area.KeyDown(CTRL | 'a');
  Area.KeyDown(KEY_UP);
  EXPECT_EQ(Area.LineOfCursor(), 3);
  EXPECT_FALSE(Area.HasSelection());
}

TEST_F(EditAreaTest, UpDownHomeEndAndPageKeysMoveByLines) {
  Area.SetText("abcdef\nab\nabcdef");
  Area.SetCursor(5);
  Area.KeyDown(KEY_DOWN);
  EXPECT_EQ(Area.GetCursor(), 9) << "cut to the shorter line's last byte";
  Area.KeyDown(KEY_HOME);
  EXPECT_EQ(Area.GetCursor(), 7);
  Area.KeyDown(KEY_END);
  EXPECT_EQ(Area.GetCursor(), 9);
  Area.KeyDown(KEY_DOWN);
  Area.KeyDown(KEY_END);
  EXPECT_EQ(Area.GetCursor(), 16);
  Area.KeyDown(KEY_PAGE_DOWN);
  EXPECT_EQ(Area.GetCursor(), 10) << "past the last line: that line's start";
  Area.KeyDown(0x114);
  EXPECT_EQ(Area.GetCursor(), 0);
  Area.KeyDown(SHIFT | KEY_END);
  EXPECT_EQ(Area.GetCursor(), 16) << "with a modifier End is the one-line edit's";
}

TEST_F(EditAreaTest, PastedLineFeedsStay) {
  GetClipboard().SetText("a\r\nb");
  Area.KeyDown(CTRL | 'v');
  EXPECT_EQ(Area.GetText(), "a\nb");
}

TEST_F(EditAreaTest, ReadOnlyAreasScrollButNeitherEditNorTakeTheFocus) {
  CGUIEditArea ReadOnly(200, true);
  ReadOnly.SetSize(Area.getWidth(), Area.getHeight());
  ReadOnly.SetText("1\n2\n3\n4\n5\n6", true);
  ReadOnly.SetFocus(true);
  EXPECT_FALSE(ReadOnly.HasFocus());
  ReadOnly.KeyDown(KEY_DOWN);
  ReadOnly.KeyDown(KEY_DOWN);
  EXPECT_EQ(ReadOnly.GetScrollbar().GetScrollbar().GetValue(), 2);
  ReadOnly.KeyDown(KEY_PAGE_DOWN);
  EXPECT_EQ(ReadOnly.GetScrollbar().GetScrollbar().GetValue(), 3);
  ReadOnly.KeyDown(KEY_ENTER);
  ReadOnly.KeyDown(KEY_BACKSPACE);
  EXPECT_EQ(ReadOnly.GetText(), "1\n2\n3\n4\n5\n6");
}

TEST_F(EditAreaTest, SetTextShowsTheEndUnlessThePositionIsKept) {
  Area.SetText("1\n2\n3\n4\n5\n6");
  EXPECT_EQ(Bar(), 3);
  Area.GetScrollbar().GetScrollbar().SetValue(1);
  Area.SetText("1\n2\n3\n4\n5\n6\n7", true);
  EXPECT_EQ(Bar(), 1);
  EXPECT_EQ(Area.GetCursor(), 13);
}

TEST_F(EditAreaTest, PointsGiveLinePositionsAndTheWheelScrollsFromTheField) {
  Area.SetText("1\n2\n3\n4\n5\n6", true);
  Area.GetScrollbar().GetScrollbar().SetValue(0);
  const int FieldRight = 3 + Area.GetFieldWidth() - 1;
  EXPECT_EQ(Area.PositionFromPoint(FieldRight, 3 + LineHeight(4) + 1), 3) << "right of line 2's text: its end";
  EXPECT_EQ(Area.PositionFromPoint(FieldRight + 2, 4), 5) << "right of the field: the last shown line's end";
  EXPECT_EQ(Area.PositionFromPoint(1, 1), 0);
  EXPECT_EQ(Area.PositionFromPoint(4, Area.getHeight() - 1), 5);
  Area.MouseEvent(5, 5, MOUSE_WHEEL_DOWN);
  EXPECT_EQ(Bar(), 1);
  EXPECT_EQ(Area.PositionFromPoint(1, 1), 2);
}

TEST_F(EditAreaTest, ASelectionOverALineEndFillsTheWholeLineHeight) {
  Area.SetText("ab\ncd", true);
  Area.KeyDown(CTRL | 'a');
  Recorder.Clear();
  Area.Draw(TEMP_SURFACE, 0, 0);
  const std::string Surface = "s=" + std::to_string(TEMP_SURFACE);
  const auto& Lines = Recorder.Lines();
  const auto Has = [&Lines](const std::string& Line) { return std::find(Lines.begin(), Lines.end(), Line) != Lines.end(); };
  EXPECT_TRUE(Has("rect " + Surface + " area=3,3," + std::to_string(TextWidth(4, "ab", WHOLE_TEXT, false)) + "," +
                  std::to_string(LineHeight(4)) + " rgb=128,128,128 alpha=255"));
  EXPECT_TRUE(Has("rect " + Surface + " area=3," + std::to_string(3 + LineHeight(4)) + "," +
                  std::to_string(TextWidth(4, "cd", WHOLE_TEXT, false)) + "," + std::to_string(FontHeight(4)) +
                  " rgb=128,128,128 alpha=255"));
}

}  // namespace
