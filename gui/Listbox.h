#pragma once
// A framed list of text rows, each in its own style, with a scroll bar on the
// right and at most one selected row. A click selects, a double click also
// activates; the arrow keys move the selection and a letter jumps to the
// first row from that letter on, so rows are expected in alphabetical order.
// Where editing is allowed, a double click edits the row in place.
#include <memory>
#include <string>
#include <vector>

#include "gui/GUI.h"
#include "gui/SkinProperties.h"
#include "gui/Sliders.h"

class CGUIEdit;

class CGUIListbox : public CGUIComposite {
 public:
  struct TItem {
    std::string Text;
    TextStyle Style;
  };

  // Without a size the owner places the box later.
  CGUIListbox(TEventTarget SelectTarget, TEventTarget ActivateTarget);
  CGUIListbox(int X, int Y, int Width, int Height, TEventTarget SelectTarget, TEventTarget ActivateTarget);

  void SetSize(int NewWidth, int NewHeight) override;
  void Update() override;
  void Draw(int Surface, int x, int y) override;
  bool LeftDown(int x, int y, int Flags) override;
  bool LeftDouble(int x, int y, int Flags) override;
  void Hover(int x, int y) override;
  bool MouseEvent(int x, int y, int Code) override;
  void KeyDown(int Key) override;

  // The height of Rows rows and the frame; never fewer than two rows.
  virtual void SetVisibleRows(int Rows);
  // The edit takes the selected row's place, with the focus and the whole
  // text selected; ending it writes the text back into the row.
  virtual void BeginEdit();
  virtual void EndEdit();

  void SetAllowEdit(bool Value) { AllowEdit = Value; }
  bool IsEditing() const { return Editing; }
  CGUIEdit& GetEdit() const { return *Edit; }

  // Text must not be null.
  void AddItem(const char* Text, const TextStyle& Style = SkinProperties.Listbox.Item);
  void SetItem(int Row, const char* Text, const TextStyle& Style);
  const TextStyle& GetItemStyle(int Row) const;
  const std::string& GetItemText(int Row) const;
  // -1 when nothing within the list is selected.
  int GetSelected() const;
  // -1, or any row of an empty list, clears the selection; a row within the
  // list is selected and scrolled into view.
  void SetSelected(int Row);
  // Leaves the selected number alone; GetSelected answers -1 for it now.
  void Clear();

  int GetCount() const { return static_cast<int>(Items.size()); }
  int GetVisibleRows() const { return VisibleRows; }
  int GetItemWidth() const { return ItemWidth; }
  // The list row under a point in the box, -1 for none.
  int RowAt(int y) const;
  CGUIButtonScrollbar& GetScrollbar() const { return *Scrollbar; }

 private:
  int RowHeight() const;
  int FirstShownRow() const { return Scrollbar->GetScrollbar().GetValue(); }
  void CheckRow(int Row) const;
  void PlaceScrollbar();
  void DrawRow(int Surface, int x, int y, int Row) const;
  // A click on a row selects it; the select target fires either way.
  void SelectAt(int y);
  // The first row from the letter on, in lower case; -1 if none.
  int RowFromLetter(char Letter) const;
  // Cuts the selection to the list and scrolls it into view.
  void ShowSelected();
  // A press that lands on another row than the edited one ends the edit.
  void EndEditAt(int y);

  int ItemWidth = 0;
  std::vector<TItem> Items;
  int Selected = -1;
  TEventTarget SelectTarget;
  TEventTarget ActivateTarget;
  CGUIButtonScrollbar* Scrollbar = nullptr;
  int VisibleRows = 0;
  bool AllowEdit = false;
  bool Editing = false;
  // The edit is a child only while editing; the box holds it otherwise.
  CGUIEdit* Edit = nullptr;
  std::unique_ptr<CGUIComponent> IdleEdit;
  int EditScrollValue = 0;
};
