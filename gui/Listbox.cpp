#include "gui/Listbox.h"

#include <algorithm>
#include <memory>

#include "core/Exception.h"
#include "core/Text.h"
#include "graphics/Fonts.h"
#include "graphics/Graphics.h"
#include "gui/Edit.h"
#include "platform/Events.h"

namespace {

using namespace platform;


constexpr int EDIT_MAX_LENGTH = 30;
constexpr int EDIT_HEIGHT = 16;

constexpr int KEY_MODIFIERS = KEY_CTRL | KEY_ALT;  // Shift still types a letter
constexpr int KEY_CODE_BITS = 0x1FF;


constexpr int SCROLL_STEP = 1;
constexpr int MINIMUM_ROWS = 2;

constexpr int Margin = SkinProperties.Listbox.Margin;
constexpr int DefaultFont = SkinProperties.Listbox.Item.Font;

}  // namespace

CGUIListbox::CGUIListbox(TEventTarget SelectTarget, TEventTarget ActivateTarget)
    : CGUIComposite(EDIT_FRAME_ENTRIES), SelectTarget(SelectTarget), ActivateTarget(ActivateTarget) {
  auto Bar = std::make_unique<CGUIButtonScrollbar>(0, 0, SkinProperties.Listbox.ScrollbarWidth, 0, SCROLL_STEP);
  Scrollbar = Bar.get();
  AddChildLast(std::move(Bar));
  auto NewEdit = std::make_unique<CGUIEdit>(EDIT_MAX_LENGTH, false);
  Edit = NewEdit.get();
  IdleEdit = std::move(NewEdit);
}

CGUIListbox::CGUIListbox(int X, int Y, int Width, int Height, TEventTarget SelectTarget,
                         TEventTarget ActivateTarget)
    : CGUIListbox(SelectTarget, ActivateTarget) {
  SetPosition(X, Y);
  SetSize(Width, Height);
}

int CGUIListbox::RowHeight() const { return LineHeight(DefaultFont); }

void CGUIListbox::SetSize(int NewWidth, int NewHeight) {
  StoreSize(NewWidth, NewHeight);
  Update();
}

void CGUIListbox::SetVisibleRows(int Rows) {
  SetSize(Width, RowHeight() * std::max(Rows, MINIMUM_ROWS) + 2 * Margin);
}

// Nothing to lay out before the owner gives the box a size.
void CGUIListbox::Update() {
  if (Width <= 0 || Height <= 0) return;
  FillEditFrame(DrawingList, Width, Height);
  PlaceScrollbar();
  ItemWidth = Width - 2 * Margin - Scrollbar->getWidth();
  VisibleRows = std::max((Height - 2 * Margin) / RowHeight(), 0);
  const int Last = std::max(GetCount() - VisibleRows, 0);
  CGUIScrollbar& Bar = Scrollbar->GetScrollbar();
  Bar.SetRange(0, Last, std::clamp(Bar.GetValue(), 0, Last), VisibleRows);
}

// Along the right side, within the frame, as in the multi-line edit.
void CGUIListbox::PlaceScrollbar() {
  PlaceFramedScrollbar(*this, Scrollbar, SkinProperties.Listbox.ScrollbarWidth);
}

void CGUIListbox::Draw(int Surface, int x, int y) {
  if (Editing && Scrollbar->GetScrollbar().GetValue() != EditScrollValue) EndEdit();
  FillRectangle(Surface, x, y, Width, Height, SkinProperties.Listbox.Background, 255);
  CGUIComposite::Draw(Surface, x, y);
  const int First = FirstShownRow();
  const int End = std::min(First + VisibleRows, GetCount());
  for (int Row = First; Row < End; ++Row) {
    DrawRow(Surface, x + Margin, y + Margin + (Row - First) * RowHeight(), Row);
  }
}

void CGUIListbox::DrawRow(int Surface, int x, int y, int Row) const {
  const TItem& Item = Items[static_cast<size_t>(Row)];
  if (Row == Selected && Editing) return;
  if (Row == Selected) {
    FillRectangle(Surface, x - 1, y - 1, ItemWidth + 2, FontHeight(DefaultFont) + 2, SkinProperties.Listbox.Selection,
                  255);
  }
  const int Shown = CharsThatFit(Item.Style.Font, Item.Text, ItemWidth, false);
  PrintStyledN(Surface, x + GetStyleOffset(Item.Style, ItemWidth), y, Item.Style, Item.Text.c_str(), Shown);
}

// The font's own height lies centred in the row, so a point counts for the
// row whose text it is next to.
int CGUIListbox::RowAt(int y) const {
  const int H = RowHeight();
  const int D = (H - FontHeight(DefaultFont)) / 2;
  if (y < Margin - D) return -1;
  const int First = FirstShownRow();
  const int Row = (y - Margin + D) / H + First;
  if (Row >= GetCount() || Row - First >= VisibleRows) return -1;
  return Row;
}

void CGUIListbox::SelectAt(int y) {
  const int Row = RowAt(y);
  if (Row != -1) Selected = Row;
  SelectTarget.Fire();
}

void CGUIListbox::EndEditAt(int y) {
  const int Row = RowAt(y);
  if (Editing && Row != -1 && Row != Selected) EndEdit();
}

bool CGUIListbox::LeftDown(int x, int y, int Flags) {
  if (CGUIComposite::LeftDown(x, y, Flags)) return true;
  EndEditAt(y);
  SelectAt(y);
  return true;
}

bool CGUIListbox::LeftDouble(int x, int y, int Flags) {
  if (CGUIComposite::LeftDouble(x, y, Flags)) return true;
  EndEditAt(y);
  SelectAt(y);
  if (AllowEdit && RowAt(y) != -1) BeginEdit();
  ActivateTarget.Fire();
  return true;
}

void CGUIListbox::Hover(int x, int y) {
  if (x >= Scrollbar->getX()) {
    CGUIComposite::Hover(x, y);
    return;
  }
  const int Row = RowAt(y);
  if (Row == -1) return;
  const TItem& Item = Items[static_cast<size_t>(Row)];
  if (CharsThatFit(Item.Style.Font, Item.Text, ItemWidth, false) < static_cast<int>(Item.Text.size())) {
    SetTooltip(Item.Text);
  }
}

// The wheel scrolls from anywhere in the box.
bool CGUIListbox::MouseEvent(int x, int y, int Code) {
  if (CGUIComposite::MouseEvent(x, y, Code)) return true;
  if (Code == MOUSE_WHEEL_UP || Code == MOUSE_WHEEL_DOWN) {
    Scrollbar->MouseEvent(x - Scrollbar->getX(), y - Scrollbar->getY(), Code);
  }
  return true;
}

void CGUIListbox::KeyDown(int Key) {
  const int Code = Key & KEY_CODE_BITS;
  if (Key == KEY_UP || Key == KEY_DOWN) {
    EndEdit();
    Selected += Key == KEY_UP ? -1 : 1;
  } else if (Editing) {
    if (Key == KEY_ENTER) {
      EndEdit();
    } else {
      Edit->KeyDown(Key);
    }
  } else if ((Key & KEY_MODIFIERS) == 0 && Code < 0x100 && isLetter(static_cast<char>(Code))) {
    const int Row = RowFromLetter(static_cast<char>(Code));
    if (Row != -1) Selected = Row;
  }
  ShowSelected();
  SelectTarget.Fire();
}

int CGUIListbox::RowFromLetter(char Letter) const {
  const auto Wanted = static_cast<unsigned char>(toLowerChar(Letter));
  const auto Found = std::find_if(Items.begin(), Items.end(), [Wanted](const TItem& Item) {
    return !Item.Text.empty() && static_cast<unsigned char>(toLowerChar(Item.Text.front())) >= Wanted;
  });
  return Found == Items.end() ? -1 : static_cast<int>(Found - Items.begin());
}

void CGUIListbox::ShowSelected() {
  if (GetCount() == 0) {
    Selected = -1;
    return;
  }
  Selected = std::clamp(Selected, 0, GetCount() - 1);
  CGUIScrollbar& Bar = Scrollbar->GetScrollbar();
  if (Selected < Bar.GetValue()) {
    Bar.SetValue(Selected);
  } else if (Selected > Bar.GetValue() + VisibleRows - 1) {
    Bar.SetValue(Selected - VisibleRows + 1);
  }
}

void CGUIListbox::CheckRow(int Row) const {
  Check(Row >= 0 && Row < GetCount(), "In(Row,0,Count-1)", {"Row", Row}, {"Count", GetCount()});
}

void CGUIListbox::AddItem(const char* Text, const TextStyle& Style) {
  Check(Text != nullptr, "Text!=NULL");
  Items.push_back({Text, Style});
  Update();
}

void CGUIListbox::SetItem(int Row, const char* Text, const TextStyle& Style) {
  CheckRow(Row);
  Check(Text != nullptr, "Text!=NULL");
  Items[static_cast<size_t>(Row)] = {Text, Style};
}

const TextStyle& CGUIListbox::GetItemStyle(int Row) const {
  CheckRow(Row);
  return Items[static_cast<size_t>(Row)].Style;
}

const std::string& CGUIListbox::GetItemText(int Row) const {
  CheckRow(Row);
  return Items[static_cast<size_t>(Row)].Text;
}

int CGUIListbox::GetSelected() const { return Selected >= 0 && Selected < GetCount() ? Selected : -1; }

void CGUIListbox::SetSelected(int Row) {
  EndEdit();
  if (Row == -1 || GetCount() == 0) {
    Selected = -1;
    return;
  }
  Check(Row >= 0 && Row < GetCount(), "In(Row,-1,Count-1)", {"Row", Row}, {"Count", GetCount()});
  Selected = Row;
  ShowSelected();
}

void CGUIListbox::Clear() {
  Items.clear();
  Update();
}

void CGUIListbox::BeginEdit() {
  if (Editing || GetSelected() == -1) return;
  const int Value = Scrollbar->GetScrollbar().GetValue();
  Edit->SetText(GetItemText(Selected).c_str());
  AddChildLast(std::move(IdleEdit));
  Edit->SetPosition(0, (Selected - Value) * RowHeight());
  Edit->SetSize(Width - Scrollbar->getWidth(), EDIT_HEIGHT);
  Edit->SetFocus(true);
  Edit->OnEvent(CGUIEdit::EVENT_SELECT_ALL);
  EditScrollValue = Value;
  Editing = true;
}

// The row may have gone meanwhile; then the text has no place to go.
void CGUIListbox::EndEdit() {
  if (!Editing) return;
  Editing = false;
  IdleEdit = RemoveChild(Edit);
  Edit->SetFocus(false);
  if (GetSelected() != -1) SetItem(Selected, Edit->GetText().c_str(), GetItemStyle(Selected));
}
