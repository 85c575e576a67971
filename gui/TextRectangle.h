#pragma once
// A fixed text in a style. This is the small form that the check box and the
// link need: it shows its lines and ignores the mouse. Fitting with three
// dots and the tooltip of a cut text join with the other text widgets.
#include <string>
#include <vector>

#include "graphics/Fonts.h"
#include "gui/GUI.h"

class CGUITextRectangle : public CGUIElement {
 public:
  // Measures itself: the widest line by the lines' height.
  CGUITextRectangle(const TextStyle& Style, const char* Text);
  CGUITextRectangle(const TextStyle& Style, const char* Text, int X, int Y);

  void Draw(int Surface, int x, int y) override;
  // A text never blocks what lies under it.
  bool MouseMove(int, int) override { return false; }
  bool LeftDown(int, int, int) override { return false; }
  bool LeftUp(int, int, int) override { return false; }
  bool LeftDouble(int, int, int) override { return false; }
  bool RightUp(int, int, int) override { return false; }
  bool MouseEvent(int, int, int) override { return false; }

  // The text as it was set.
  const std::string& GetText() const { return FullText; }
  const TextStyle& GetStyle() const { return Style; }

 private:
  std::string FullText;
  TextStyle Style;
  std::vector<std::string> Lines;
};
