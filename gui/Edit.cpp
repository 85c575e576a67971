#include "gui/Edit.h"

#include <algorithm>
#include <optional>

#include "core/Exception.h"
#include "core/MessageQueue.h"
#include "core/ProgramState.h"
#include "core/Text.h"
#include "graphics/Graphics.h"
#include "gui/Sliders.h"
#include "platform/Events.h"

namespace {

using namespace platform;

constexpr int SHIFT = KEY_SHIFT;
constexpr int CTRL = KEY_CTRL;
constexpr int ALT = KEY_ALT;
constexpr int KEY_CODE_BITS = 0x1FF;
constexpr int KEY_CTRL_A = CTRL | 'a';
constexpr int KEY_CTRL_C = CTRL | 'c';
constexpr int KEY_CTRL_V = CTRL | 'v';
constexpr int KEY_CTRL_X = CTRL | 'x';


constexpr int FRAME_TOP = 10;
constexpr int FRAME_LEFT = 12;
constexpr int FRAME_RIGHT = 11;
constexpr int FRAME_BOTTOM = 9;

// The text area lies this far in from every side.
constexpr int MARGIN = 3;

constexpr TextStyle STYLE{4, 224, 224, 224, LEFT_ALIGN};
constexpr TextStyle READ_ONLY_STYLE{4, 176, 176, 176, LEFT_ALIGN};
constexpr TRGBColor BACKGROUND{54, 54, 54};
constexpr TRGBColor INACTIVE_BACKGROUND{71, 71, 71};
constexpr TRGBColor SELECTION{128, 128, 128};
constexpr TRGBColor CARET{255, 255, 255};
// The caret shows for this many ticks of a tenth, then hides as long.
constexpr int BLINK_TICKS = 5;

constexpr int SCROLLBAR_WIDTH = 12;
constexpr int SCROLLBAR_MINIMUM_HEIGHT = 38;

class CProgramClipboard : public IClipboard {
 public:
  bool HasText() const override { return !Stored.empty(); }
  std::string GetText() const override { return Stored; }
  void SetText(const std::string& Text) override { Stored = Text; }

 private:
  std::string Stored;
};

std::unique_ptr<IClipboard>& InstalledClipboard() {
  static std::unique_ptr<IClipboard> Clipboard = std::make_unique<CProgramClipboard>();
  return Clipboard;
}

int TextWidthOf(int Font, std::string_view Text, int Length) { return TextWidth(Font, Text, Length, false); }

int Fitting(int Font, std::string_view Text, int Width) { return CharsThatFit(Font, Text, Width, false); }

bool IsPrintable(int Key) {
  const int Code = Key & KEY_CODE_BITS;
  const bool CtrlAlone = (Key & CTRL) != 0 && (Key & ALT) == 0;
  return Code >= 0x20 && Code <= 0xFF && !CtrlAlone;
}

}  // namespace

// --- Clipboard ---

IClipboard& GetClipboard() { return *InstalledClipboard(); }

void SetClipboard(std::unique_ptr<IClipboard> Clipboard) {
  InstalledClipboard() = Clipboard ? std::move(Clipboard) : std::make_unique<CProgramClipboard>();
}

void CopyToClipboard(const std::string& Text) { GetClipboard().SetText(Text); }

std::string GetClipboardText(bool SingleLine) {
  std::string Text = GetClipboard().GetText();
  removeCarriageReturns(Text);
  if (SingleLine) lineFeedsToBlanks(Text);
  return Text;
}

void FillEditFrame(std::vector<DrawingListEntry>& DrawingList, int Width, int Height) {
  const TSkin& Top = GetSkin(FRAME_TOP);
  const TSkin& Left = GetSkin(FRAME_LEFT);
  const TSkin& Right = GetSkin(FRAME_RIGHT);
  const TSkin& Bottom = GetSkin(FRAME_BOTTOM);
  DrawingList.at(0) = DrawingListEntry(FRAME_TOP, 0, 0, Width, Top.height);
  DrawingList.at(1) = DrawingListEntry(FRAME_LEFT, 0, 0, Left.width, Height);
  DrawingList.at(2) = DrawingListEntry(FRAME_RIGHT, Width - Right.width, 0, Right.width, Height);
  DrawingList.at(3) = DrawingListEntry(FRAME_BOTTOM, 0, Height - Bottom.height, Width, Bottom.height);
}

// --- CGUIEdit ---

CGUIEdit::CGUIEdit(int MaxLength, bool ReadOnly)
    : CGUIComposite(EDIT_FRAME_ENTRIES), MaxLength(MaxLength), Style(ReadOnly ? READ_ONLY_STYLE : STYLE),
      ReadOnly(ReadOnly) {
  Check(MaxLength >= 0, "_MaxLength>=0", {"MaxLength", MaxLength});
}

CGUIEdit::CGUIEdit(int X, int Y, int Width, int Height, int MaxLength) : CGUIEdit(MaxLength, false) {
  SetPosition(X, Y);
  SetSize(Width, Height);
}

void CGUIEdit::SetSize(int NewWidth, int NewHeight) {
  StoreSize(NewWidth, NewHeight);
  Update();
}

void PlaceFramedScrollbar(CGUIComposite& Box, CGUIComponent* Bar, int Width) {
  const int RightWidth = GetSkin(FRAME_RIGHT).width;
  Box.PlaceChild(Bar, -(RightWidth + Width), GetSkin(FRAME_TOP).height, Width,
                 Box.getHeight() - GetSkin(FRAME_LEFT).width - RightWidth);
}

void CGUIEdit::Update() { FillEditFrame(DrawingList, Width, Height); }

void CGUIEdit::Draw(int Surface, int x, int y) {
  FillRectangle(Surface, x, y, Width, Height, Inactive ? INACTIVE_BACKGROUND : BACKGROUND, 255);
  CGUIComposite::Draw(Surface, x, y);
  if (Inactive) return;
  const std::string Shown = ShownText();
  const std::string_view All = Shown;
  const int FieldWidth = Width - 2 * MARGIN;
  FirstVisible = std::min(FirstVisible, Cursor);
  while (Cursor > FirstVisible + Fitting(Style.Font, All.substr(static_cast<size_t>(FirstVisible)), FieldWidth)) {
    ++FirstVisible;
  }
  const std::string_view Line = All.substr(static_cast<size_t>(FirstVisible));
  const std::string_view Visible = Line.substr(0, static_cast<size_t>(Fitting(Style.Font, Line, FieldWidth)));
  const int Left = x + MARGIN;
  const int Top = y + MARGIN;
  DrawSelection(Surface, Left, Top, Visible, FirstVisible, FontHeight(Style.Font));
  PrintStyledN(Surface, Left, Top, Style, Visible.data(), static_cast<int>(Visible.size()));
  DrawCaret(Surface, Left, Top, Line, Cursor - FirstVisible);
}

void CGUIEdit::DrawSelection(int Surface, int x, int y, std::string_view Line, int LineStart, int RectHeight) const {
  if (!HasSelection()) return;
  const int From = std::max(SelectionLow(), LineStart) - LineStart;
  const int To = std::min(SelectionHigh(), LineStart + static_cast<int>(Line.size())) - LineStart;
  if (From >= To) return;
  const int Start = TextWidthOf(Style.Font, Line, From);
  FillRectangle(Surface, x + Start, y, TextWidthOf(Style.Font, Line, To) - Start, RectHeight, SELECTION, 255);
}

void CGUIEdit::DrawCaret(int Surface, int x, int y, std::string_view Line, int Offset) const {
  if (!Focus || (GetTickCounter() / BLINK_TICKS) % 2 != 0) return;
  FillRectangle(Surface, x + TextWidthOf(Style.Font, Line, Offset), y, 1, FontHeight(Style.Font), CARET, 255);
}

// All the tests are made in turn: a key may do more than one thing.
void CGUIEdit::KeyDown(int Key) {
  if (FocusGroup != nullptr) {
    if (Key == KEY_TAB) FocusGroup->Next();
    if (Key == (SHIFT | KEY_TAB)) FocusGroup->Previous();
  }
  if (Inactive) return;
  MoveCursor(Key);
  if (Key == (CTRL | KEY_INSERT) || Key == KEY_CTRL_C) OnEvent(EVENT_COPY);
  if (Key == KEY_CTRL_A) OnEvent(EVENT_SELECT_ALL);
  if (ReadOnly) return;
  EditingKeys(Key);
}

// Modifiers don't matter: Shift with an arrow moves without selecting.
void CGUIEdit::MoveCursor(int Key) {
  switch (Key & KEY_CODE_BITS) {
    case KEY_LEFT: Cursor = std::max(Cursor - 1, 0); break;
    case KEY_RIGHT: Cursor = std::min(Cursor + 1, Length()); break;
    case KEY_HOME: Cursor = 0; break;
    case KEY_END: Cursor = Length(); break;
    default: return;
  }
  SelectionLength = 0;
}

void CGUIEdit::EditingKeys(int Key) {
  if (Key == (SHIFT | KEY_INSERT) || Key == KEY_CTRL_V) OnEvent(EVENT_PASTE);
  if (Key == (SHIFT | KEY_DELETE) || Key == KEY_CTRL_X) OnEvent(EVENT_CUT);
  if (Key == (CTRL | KEY_DELETE)) OnEvent(EVENT_DELETE_SELECTION);
  if ((Key & KEY_CODE_BITS) == KEY_BACKSPACE) {
    if (HasSelection()) {
      OnEvent(EVENT_DELETE_SELECTION);
    } else if (Cursor > 0) {
      --Cursor;
      DeleteChar(Cursor);
    }
  }
  if (Key == KEY_DELETE) {
    if (HasSelection()) {
      OnEvent(EVENT_DELETE_SELECTION);
    } else {
      DeleteChar(Cursor);
    }
  }
  // A full edit drops the byte silently.
  if (IsPrintable(Key) && Length() < MaxLength) {
    if (HasSelection()) OnEvent(EVENT_DELETE_SELECTION);
    InsertChar(Cursor, static_cast<char>(Key & 0xFF));
    ++Cursor;
  }
}

void CGUIEdit::OnEvent(int Event) {
  switch (Event) {
    case EVENT_COPY: CopySelection(); break;
    case EVENT_CUT:
      if (ReadOnly) break;
      CopySelection();
      DeleteSelection();
      break;
    case EVENT_PASTE: Paste(); break;
    case EVENT_DELETE_SELECTION: DeleteSelection(); break;
    case EVENT_SELECT_ALL: SelectAll(); break;
    default: Check(false, "unknown event", {"Event", Event});
  }
}

void CGUIEdit::CopySelection() const {
  if (!HasSelection()) return;
  CopyToClipboard(Text.substr(static_cast<size_t>(SelectionLow()), static_cast<size_t>(SelectionHigh() - SelectionLow())));
}

void CGUIEdit::DeleteSelection() {
  if (ReadOnly || !HasSelection()) return;
  const int Low = SelectionLow();
  const int High = SelectionHigh();
  Cursor = Low;
  DeleteText(Low, High - Low);
  SelectionLength = 0;
}

void CGUIEdit::Paste() {
  if (ReadOnly || !GetClipboard().HasText()) return;
  const std::string Pasted = GetClipboardText(SingleLine);
  DeleteSelection();
  Cursor += InsertText(Cursor, Pasted.c_str(), static_cast<int>(Pasted.size()));
}

void CGUIEdit::SelectAll() {
  SelectionStart = 0;
  SelectionLength = Length();
  Cursor = Length();
}

void CGUIEdit::Changed() {
  SelectionLength = 0;
  Cursor = std::min(Cursor, Length());
  Update();
}

void CGUIEdit::SetText(const char* NewText) {
  Check(NewText != nullptr, "Text!=NULL");
  Text = std::string_view(NewText).substr(0, static_cast<size_t>(MaxLength));
  Cursor = Length();
  FirstVisible = 0;
  Changed();
}

void CGUIEdit::Clear() { SetText(""); }

void CGUIEdit::DeleteText(int Position, int Count) {
  Check(Position >= 0 && Position <= Length(), "Position <= (int)strlen(Text)", {"Position", Position});
  Check(Count >= 0, "Length>=0", {"Length", Count});
  Text.erase(static_cast<size_t>(Position), static_cast<size_t>(Count));
  Changed();
}

void CGUIEdit::DeleteChar(int Position) {
  if (Position == Length()) return;
  DeleteText(Position, 1);
}

// What doesn't fit is cut from the inserted text first, then from the old tail.
int CGUIEdit::InsertText(int Position, const char* NewText, int Count) {
  Check(Position >= 0 && Position <= Length(), "Position <= (int)strlen(Text)", {"Position", Position});
  Check(NewText != nullptr, "Text!=NULL");
  const int Room = MaxLength - Position;
  const int Inserted = std::min(Count, Room);
  const int Tail = std::min(Length() - Position, Room - Inserted);
  Text = Text.substr(0, static_cast<size_t>(Position)) + std::string(NewText, static_cast<size_t>(Inserted)) +
         Text.substr(static_cast<size_t>(Position), static_cast<size_t>(Tail));
  Changed();
  return Inserted;
}

void CGUIEdit::InsertChar(int Position, char Character) { InsertText(Position, &Character, 1); }

void CGUIEdit::SetCursor(int Position) { Cursor = std::clamp(Position, 0, Length()); }

void CGUIEdit::SetFocusGroup(CGUIFocusGroup* Group) {
  Check(Group != nullptr, "_FocusGroup!=NULL");
  FocusGroup = Group;
  Group->AddMember(this);
}

void CGUIEdit::SetFocus(bool Value) {
  Focus = Value;
  if (!Value) SelectionLength = 0;
}

void CGUIEdit::TakeFocus() {
  if (FocusGroup != nullptr) {
    FocusGroup->SetActive(this);
  } else {
    SetFocus(true);
  }
}

int CGUIEdit::PositionFromPoint(int x, int y) const {
  if (x < MARGIN || y < MARGIN) return FirstVisible;
  if (x > Width - MARGIN || y > Height - MARGIN) return Length();
  const std::string Shown = ShownText();
  const int Found = FirstVisible + Fitting(Style.Font, std::string_view(Shown).substr(static_cast<size_t>(FirstVisible)), x - MARGIN);
  return std::min(Found, Length());
}

bool CGUIEdit::LeftDown(int x, int y, int Flags) {
  if (CGUIComposite::LeftDown(x, y, Flags) || Inactive) return true;
  TakeFocus();
  Cursor = PositionFromPoint(x, y);
  SelectionStart = Cursor;
  SelectionLength = 0;
  if (!Dragging) SetCapture(nullptr);
  Dragging = true;
  return true;
}

bool CGUIEdit::MouseMove(int x, int y) {
  if (!Dragging) return CGUIComposite::MouseMove(x, y);
  Cursor = PositionFromPoint(x, y);
  SelectionLength = Cursor - SelectionStart;
  return true;
}

bool CGUIEdit::LeftUp(int x, int y, int Flags) {
  if (!Dragging) return CGUIComposite::LeftUp(x, y, Flags);
  Dragging = false;
  ReleaseCapture(nullptr);
  return true;
}

// The word under the point; on white space nothing.
bool CGUIEdit::LeftDouble(int x, int y, int Flags) {
  if (CGUIComposite::LeftDouble(x, y, Flags) || Inactive) return true;
  const int Position = PositionFromPoint(x, y);
  int Start = Position;
  int End = Position;
  if (Position == Length() || !isSpace(Text[static_cast<size_t>(Position)])) {
    while (Start > 0 && !isSpace(Text[static_cast<size_t>(Start - 1)])) --Start;
    while (End < Length() && !isSpace(Text[static_cast<size_t>(End)])) ++End;
  }
  SelectionStart = Start;
  SelectionLength = End - Start;
  Cursor = End;
  return true;
}

// Not within a modal dialog or a menu, where the context menu can't open.
bool CGUIEdit::RightUp(int x, int y, int Flags) {
  if (CGUIComposite::RightUp(x, y, Flags) || Inactive) return true;
  const int State = GetActionState();
  if (State != ACTIONSTATE_MODAL && State != ACTIONSTATE_MENU) MessageQueue().Post(MSG_MENU_EDIT, this);
  return true;
}

// --- CGUIPasswordEdit ---

void CGUIPasswordEdit::OnEvent(int Event) {
  if (Event == EVENT_PASTE) CGUIEdit::OnEvent(Event);
}

// --- CGUIEditArea ---

CGUIEditArea::CGUIEditArea(int MaxLength, bool ReadOnly) : CGUIEdit(MaxLength, ReadOnly) {
  SingleLine = false;
  auto Bar = std::make_unique<CGUIButtonScrollbar>(0, 0, SCROLLBAR_WIDTH, SCROLLBAR_MINIMUM_HEIGHT, 1);
  Scrollbar = Bar.get();
  AddChildLast(std::move(Bar));
}

CGUIEditArea::CGUIEditArea(int X, int Y, int Width, int Height, int MaxLength) : CGUIEditArea(MaxLength, false) {
  SetPosition(X, Y);
  SetSize(Width, Height);
}

// Nothing to lay out before the owner gives the area a size.
void CGUIEditArea::Update() {
  if (Width <= 0 || Height <= 0) return;
  PlaceFramedScrollbar(*this, Scrollbar, Scrollbar->getWidth());
  FieldWidth = Width - 2 * MARGIN - Scrollbar->getWidth();
  FieldHeight = Height - 2 * MARGIN;
  VisibleLines = FieldHeight / LineHeight(Style.Font);
  BuildLineTable();
  CGUIScrollbar& Bar = Scrollbar->GetScrollbar();
  const int Last = std::max(Lines - VisibleLines, 0);
  Bar.SetRange(0, Last, std::clamp(Bar.GetValue(), 0, Last), VisibleLines);
  CGUIEdit::Update();
}

// A full line breaks behind its last byte that is no letter, or else where
// it is full; a line feed always ends one, even at the very end.
void CGUIEditArea::BuildLineTable() {
  Check(FieldWidth > 0, "FieldWidth>0", {"FieldWidth", FieldWidth});
  LineStarts.clear();
  const std::string_view All = Text;
  size_t Position = 0;
  while (Position <= All.size()) {
    LineStarts.push_back(static_cast<int>(Position));
    const std::string_view Rest = All.substr(Position);
    const size_t Full = static_cast<size_t>(std::max(Fitting(Style.Font, Rest, FieldWidth), 1));
    std::optional<size_t> LastBreak;
    for (size_t I = 0;; ++I) {
      if (I == Rest.size() || Rest[I] == '\n') {
        Position += I + 1;
        break;
      }
      if (I == Full) {
        Position += LastBreak ? *LastBreak + 1 : Full;
        break;
      }
      if (!isLetter(Rest[I])) LastBreak = I;
    }
  }
  Lines = static_cast<int>(LineStarts.size());
  LineStarts.push_back(Length());
}

int CGUIEditArea::LineEnd(int Line) const {
  return Line >= Lines - 1 ? Length() : GetLineStart(Line + 1) - 1;
}

std::string_view CGUIEditArea::LineText(int Line) const {
  const int Start = GetLineStart(Line);
  std::string_view Bytes = std::string_view(Text).substr(static_cast<size_t>(Start),
                                                          static_cast<size_t>(GetLineStart(Line + 1) - Start));
  if (!Bytes.empty() && Bytes.back() == '\n') Bytes.remove_suffix(1);
  return Bytes;
}

int CGUIEditArea::LineOf(int Position) const {
  const auto Starts = LineStarts.begin();
  return static_cast<int>(std::upper_bound(Starts, Starts + Lines, Position) - Starts) - 1;
}

int CGUIEditArea::LineOfCursor() const { return LineOf(Cursor); }

int CGUIEditArea::SameColumn(int Line) const {
  const int Current = GetLineStart(LineOfCursor());
  const int Column = TextWidthOf(Style.Font, std::string_view(Text).substr(static_cast<size_t>(Current)), Cursor - Current);
  const int Start = GetLineStart(Line);
  return std::min(Start + Fitting(Style.Font, LineText(Line), Column), LineEnd(Line));
}

int CGUIEditArea::FirstShownLine() const { return Scrollbar->GetScrollbar().GetValue(); }

void CGUIEditArea::SetFirstShownLine(int Line) { Scrollbar->GetScrollbar().SetValue(Line); }

void CGUIEditArea::Draw(int Surface, int x, int y) {
  FillRectangle(Surface, x, y, Width, Height, BACKGROUND, 255);
  CGUIComposite::Draw(Surface, x, y);
  if (Inactive) return;
  const int First = FirstShownLine();
  const int End = std::min(First + VisibleLines, Lines);
  for (int Line = First; Line < End; ++Line) {
    DrawLine(Surface, x + MARGIN, y + MARGIN + (Line - First) * LineHeight(Style.Font), Line);
  }
}

// A selection that goes on past the line's end fills the whole line height,
// so that the rows join.
void CGUIEditArea::DrawLine(int Surface, int x, int y, int Line) const {
  const std::string_view Bytes = LineText(Line);
  const int Start = GetLineStart(Line);
  const bool Continues = SelectionHigh() > Start + static_cast<int>(Bytes.size());
  DrawSelection(Surface, x, y, Bytes, Start, Continues ? LineHeight(Style.Font) : FontHeight(Style.Font));
  PrintStyledN(Surface, x, y, Style, Bytes.data(), static_cast<int>(Bytes.size()));
  if (!ReadOnly && Line == LineOfCursor()) DrawCaret(Surface, x, y, Bytes, Cursor - Start);
}

// The wheel scrolls from anywhere in the field.
bool CGUIEditArea::MouseEvent(int x, int y, int Code) {
  if (CGUIComposite::MouseEvent(x, y, Code)) return true;
  if (Code == MOUSE_WHEEL_UP || Code == MOUSE_WHEEL_DOWN) {
    Scrollbar->MouseEvent(x - Scrollbar->getX(), y - Scrollbar->getY(), Code);
  }
  return true;
}

void CGUIEditArea::KeyDown(int Key) {
  if (ReadOnly) {
    ReadOnlyKeys(Key);
    return;
  }
  if (Inactive) {
    CGUIEdit::KeyDown(Key);
    return;
  }
  if (Key == KEY_ENTER) {
    if (Length() < MaxLength) {
      if (HasSelection()) OnEvent(EVENT_DELETE_SELECTION);
      InsertChar(Cursor, '\n');
      ++Cursor;
    }
  } else if (!CursorKeys(Key)) {
    CGUIEdit::KeyDown(Key);
  }
  Update();
  ShowCursorLine();
}

// Only copying and scrolling.
void CGUIEditArea::ReadOnlyKeys(int Key) {
  switch (Key) {
    case KEY_CTRL_C:
    case CTRL | KEY_INSERT: OnEvent(EVENT_COPY); break;
    case KEY_CTRL_A: OnEvent(EVENT_SELECT_ALL); break;
    case KEY_UP: SetFirstShownLine(FirstShownLine() - 1); break;
    case KEY_DOWN: SetFirstShownLine(FirstShownLine() + 1); break;
    case KEY_PAGE_UP: SetFirstShownLine(FirstShownLine() - VisibleLines); break;
    case KEY_PAGE_DOWN: SetFirstShownLine(FirstShownLine() + VisibleLines); break;
    default: break;
  }
}

// The keys that move between lines, without modifiers.
bool CGUIEditArea::CursorKeys(int Key) {
  const int Line = LineOfCursor();
  switch (Key) {
    case KEY_UP: if (Line > 0) Cursor = SameColumn(Line - 1); break;
    case KEY_DOWN: if (Line < Lines - 1) Cursor = SameColumn(Line + 1); break;
    case KEY_HOME: Cursor = GetLineStart(Line); break;
    case KEY_END: Cursor = LineEnd(Line); break;
    case KEY_PAGE_UP: Cursor = Line - VisibleLines < 0 ? 0 : SameColumn(Line - VisibleLines); break;
    case KEY_PAGE_DOWN:
      Cursor = Line + VisibleLines > Lines - 1 ? GetLineStart(Lines - 1) : SameColumn(Line + VisibleLines);
      break;
    default: return false;
  }
  SelectionLength = 0;
  return true;
}

void CGUIEditArea::ShowCursorLine() {
  const int Line = LineOfCursor();
  const int First = FirstShownLine();
  if (Line < First) {
    SetFirstShownLine(Line);
  } else if (Line >= First + VisibleLines) {
    SetFirstShownLine(Line - VisibleLines + 1);
  }
}

int CGUIEditArea::PositionFromPoint(int x, int y) const {
  const int First = FirstShownLine();
  if (x < MARGIN || y < MARGIN) return GetLineStart(First);
  if (x >= MARGIN + FieldWidth || y >= MARGIN + FieldHeight) {
    return LineEnd(std::max(std::min(First + VisibleLines, Lines) - 1, 0));
  }
  const int Line = std::min((y - MARGIN) / LineHeight(Style.Font) + First, Lines - 1);
  return std::min(GetLineStart(Line) + Fitting(Style.Font, LineText(Line), x - MARGIN), LineEnd(Line));
}

void CGUIEditArea::SetFocus(bool Value) {
  if (ReadOnly && Value) return;
  CGUIEdit::SetFocus(Value);
}

void CGUIEditArea::SetText(const char* NewText, bool KeepPosition) {
  CGUIEdit::SetText(NewText);
  CGUIScrollbar& Bar = Scrollbar->GetScrollbar();
  if (!KeepPosition) Bar.SetValue(Bar.GetMax());
}

// --- CGUIFocusGroup ---

void CGUIFocusGroup::AddMember(CGUIEdit* Member) {
  Check(Member != nullptr, "Member!=NULL");
  Check(std::find(Members.begin(), Members.end(), Member) == Members.end(), "MemberList(i) != Member");
  Members.push_back(Member);
}

void CGUIFocusGroup::SetActive(CGUIEdit* Edit) {
  if (Active != nullptr) Active->SetFocus(false);
  Active = Edit;
  if (Active != nullptr) Active->SetFocus(true);
}

void CGUIFocusGroup::Next() { Step(1); }

void CGUIFocusGroup::Previous() { Step(-1); }

void CGUIFocusGroup::Step(int Offset) {
  Check(Active != nullptr, "Active!=NULL");
  const auto Found = std::find(Members.begin(), Members.end(), Active);
  Check(Found != Members.end(), "Next != -1");
  const int Count = GetCount();
  const int Index = static_cast<int>(Found - Members.begin());
  SetActive(Members[static_cast<size_t>((Index + Offset + Count) % Count)]);
}
