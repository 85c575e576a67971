#include "gui/TextRectangle.h"

#include <algorithm>

#include "core/Exception.h"

namespace {

std::vector<std::string> SplitLines(const std::string& Text) {
  std::vector<std::string> Lines;
  size_t Start = 0;
  for (size_t End = Text.find('\n'); End != std::string::npos; End = Text.find('\n', Start)) {
    Lines.push_back(Text.substr(Start, End - Start));
    Start = End + 1;
  }
  Lines.push_back(Text.substr(Start));
  return Lines;
}

const char* Checked(const char* Text) {
  Check(Text != nullptr, "Text!=NULL");
  return Text;
}

}  // namespace

CGUITextRectangle::CGUITextRectangle(const TextStyle& Style, const char* Text)
    : FullText(Checked(Text)), Style(Style), Lines(SplitLines(FullText)) {
  int Widest = 0;
  for (const std::string& Line : Lines) Widest = std::max(Widest, TextWidth(Style.Font, Line, WHOLE_TEXT, false));
  StoreSize(Widest, LineHeight(Style.Font) * static_cast<int>(Lines.size()));
}

CGUITextRectangle::CGUITextRectangle(const TextStyle& Style, const char* Text, int X, int Y)
    : CGUITextRectangle(Style, Text) {
  SetPosition(X, Y);
}

// One line lies in the middle of the height; several start at the top.
void CGUITextRectangle::Draw(int Surface, int x, int y) {
  const TRect Clip{x, y, Width, Height};
  const int Left = x + GetStyleOffset(Style, Width);
  int Top = Lines.size() == 1 ? y + (Height - FontHeight(Style.Font)) / 2 : y;
  for (const std::string& Line : Lines) {
    PrintStyledClipped(Surface, Left, Top, Style, Line.c_str(), Clip);
    Top += LineHeight(Style.Font);
  }
}
