#pragma once
// The edits: a framed one-line field with a caret, mouse selection and the
// clipboard; its password form, which shows stars and lets nothing out; and
// the multi-line area with its scroll bar. Edits of one dialog share a focus
// group, through which Tab moves. Text is Latin-1, a byte a character.
#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "graphics/Fonts.h"
#include "gui/GUI.h"

class CGUIButtonScrollbar;
class CGUIFocusGroup;

// The clipboard that the edits copy to and paste from. The application
// installs the platform's; until then the text stays within the program.
class IClipboard {
 public:
  virtual ~IClipboard() = default;
  virtual bool HasText() const = 0;
  virtual std::string GetText() const = 0;
  virtual void SetText(const std::string& Text) = 0;
};
IClipboard& GetClipboard();
// Null puts the in-program clipboard back.
void SetClipboard(std::unique_ptr<IClipboard> Clipboard);
void CopyToClipboard(const std::string& Text);
// Without carriage returns; with SingleLine the line feeds become blanks.
std::string GetClipboardText(bool SingleLine);

// The frame of edits and list boxes: skins along the top, down the left,
// down the right and along the bottom. The list needs four entries.
constexpr int EDIT_FRAME_ENTRIES = 4;
void FillEditFrame(std::vector<DrawingListEntry>& DrawingList, int Width, int Height);
// A scroll bar of Width along the right side of such a frame, within it.
void PlaceFramedScrollbar(CGUIComposite& Box, CGUIComponent* Bar, int Width);

class CGUIEdit : public CGUIComposite {
 public:
  enum : int {
    EVENT_COPY = 0x10,
    EVENT_CUT = 0x11,
    EVENT_PASTE = 0x12,
    EVENT_DELETE_SELECTION = 0x13,
    EVENT_SELECT_ALL = 0x14,
  };

  // Placed and sized by the owner later.
  CGUIEdit(int MaxLength, bool ReadOnly);
  CGUIEdit(int X, int Y, int Width, int Height, int MaxLength);

  void SetSize(int NewWidth, int NewHeight) override;
  void Update() override;
  void Draw(int Surface, int x, int y) override;
  void KeyDown(int Key) override;
  void OnEvent(int Event) override;
  bool LeftDown(int x, int y, int Flags) override;
  bool MouseMove(int x, int y) override;
  bool LeftUp(int x, int y, int Flags) override;
  bool LeftDouble(int x, int y, int Flags) override;
  bool RightUp(int x, int y, int Flags) override;

  // Cut to MaxLength; the cursor goes to the end.
  virtual void SetText(const char* NewText);
  virtual void Clear();
  virtual void DeleteText(int Position, int Length);
  // Nothing at the end of the text.
  virtual void DeleteChar(int Position);
  // Answers the bytes inserted; at full length the end of the old text goes.
  virtual int InsertText(int Position, const char* NewText, int Length);
  virtual void InsertChar(int Position, char Character);
  virtual void SetInactive(bool Value) { Inactive = Value; }
  virtual bool IsInactive() const { return Inactive; }
  virtual void SetStyle(const TextStyle& NewStyle) { Style = NewStyle; }
  virtual int PositionFromPoint(int x, int y) const;
  virtual void SetFocus(bool Value);

  const std::string& GetText() const { return Text; }
  // Cut to 0 .. the length.
  void SetCursor(int Position);
  // Group must not be null; the edit joins it.
  void SetFocusGroup(CGUIFocusGroup* Group);
  bool HasSelection() const { return SelectionStart != -1 && SelectionLength != 0; }

  int GetCursor() const { return Cursor; }
  int GetMaxLength() const { return MaxLength; }
  int GetSelectionStart() const { return SelectionStart; }
  int GetSelectionLength() const { return SelectionLength; }
  int GetFirstVisible() const { return FirstVisible; }
  bool HasFocus() const { return Focus; }
  bool IsReadOnly() const { return ReadOnly; }
  bool IsDragging() const { return Dragging; }
  const TextStyle& GetStyle() const { return Style; }

 protected:
  int Length() const { return static_cast<int>(Text.size()); }
  // The selection as a range from its lower end.
  int SelectionLow() const { return std::min(SelectionStart, SelectionStart + SelectionLength); }
  int SelectionHigh() const { return std::max(SelectionStart, SelectionStart + SelectionLength); }
  // The bytes that drawing shows; the password edit shows stars.
  virtual std::string ShownText() const { return Text; }
  // The focus goes here, through the group if there is one.
  void TakeFocus();
  // The selection as a range of the shown line that starts at LineStart,
  // drawn from (x, y).
  void DrawSelection(int Surface, int x, int y, std::string_view Line, int LineStart, int RectHeight) const;
  // Where the caret stands Offset bytes into the shown Line; only while it is due.
  void DrawCaret(int Surface, int x, int y, std::string_view Line, int Offset) const;
  // Every change of the text ends here.
  void Changed();

 private:
  void MoveCursor(int Key);
  void EditingKeys(int Key);
  void CopySelection() const;
  void DeleteSelection();
  void Paste();
  void SelectAll();

 protected:

  std::string Text;
  int MaxLength = 0;
  int Cursor = 0;
  bool SingleLine = true;
  CGUIFocusGroup* FocusGroup = nullptr;
  TextStyle Style;
  int FirstVisible = 0;
  bool Focus = false;
  int SelectionStart = -1;
  int SelectionLength = 0;
  bool Dragging = false;
  bool Inactive = false;
  bool ReadOnly = false;
};

// Shows a star for each byte; the text can be pasted in but never copied
// or cut out, and there is neither a drag selection nor a context menu.
class CGUIPasswordEdit : public CGUIEdit {
 public:
  using CGUIEdit::CGUIEdit;

  bool MouseMove(int x, int y) override { return CGUIComposite::MouseMove(x, y); }
  bool RightUp(int x, int y, int Flags) override { return CGUIComposite::RightUp(x, y, Flags); }
  void OnEvent(int Event) override;

 protected:
  std::string ShownText() const override { return std::string(Text.size(), '*'); }
};

// A multi-line edit: lines break at line feeds and, where a line is full,
// behind the last byte that is no letter. A scroll bar runs down the right.
class CGUIEditArea : public CGUIEdit {
 public:
  CGUIEditArea(int MaxLength, bool ReadOnly);
  CGUIEditArea(int X, int Y, int Width, int Height, int MaxLength);

  void Update() override;
  void Draw(int Surface, int x, int y) override;
  bool MouseEvent(int x, int y, int Code) override;
  void KeyDown(int Key) override;
  int PositionFromPoint(int x, int y) const override;
  // A read-only area never takes the focus.
  void SetFocus(bool Value) override;
  // The cursor goes to the end; without KeepPosition the view does too.
  virtual void SetText(const char* NewText, bool KeepPosition);
  void SetText(const char* NewText) override { SetText(NewText, false); }

  int GetLines() const { return Lines; }
  int GetVisibleLines() const { return VisibleLines; }
  int GetFieldWidth() const { return FieldWidth; }
  // Where line Line starts; Line may be the count, which gives the length.
  int GetLineStart(int Line) const { return LineStarts.at(static_cast<size_t>(Line)); }
  int LineOfCursor() const;
  CGUIButtonScrollbar& GetScrollbar() const { return *Scrollbar; }

 private:
  void BuildLineTable();
  // The position behind the line's last byte; the length on the last line.
  int LineEnd(int Line) const;
  int LineOf(int Position) const;
  // The position in Line nearest to the cursor's pixel column.
  int SameColumn(int Line) const;
  int FirstShownLine() const;
  void SetFirstShownLine(int Line);
  void ReadOnlyKeys(int Key);
  bool CursorKeys(int Key);
  void ShowCursorLine();
  void DrawLine(int Surface, int x, int y, int Line) const;
  // The drawn bytes of a line, without its line feed.
  std::string_view LineText(int Line) const;

  std::vector<int> LineStarts;
  CGUIButtonScrollbar* Scrollbar = nullptr;
  int Lines = 0;
  int FieldWidth = 0;
  int FieldHeight = 0;
  int VisibleLines = 0;
};

// The edits of one dialog in Tab order; one of them has the focus. It doesn't
// own them.
class CGUIFocusGroup {
 public:
  // Once only for each edit.
  void AddMember(CGUIEdit* Member);
  void SetActive(CGUIEdit* Edit);
  // The next member, or the previous, round the ends.
  void Next();
  void Previous();

  CGUIEdit* GetActive() const { return Active; }
  int GetCount() const { return static_cast<int>(Members.size()); }

 private:
  void Step(int Offset);

  CGUIEdit* Active = nullptr;
  std::vector<CGUIEdit*> Members;
};
