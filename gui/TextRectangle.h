#pragma once
// Texts that only show: a fixed text in one style, a long message wrapped to
// the screen, and a text with embedded markup for colours, fonts and pictures.
// None of them takes the mouse, so a text never blocks what lies under it.
#include <string>
#include <string_view>
#include <vector>

#include "graphics/Fonts.h"
#include "gui/Displays.h"
#include "gui/GUI.h"

// Lines split at line feeds. With Fit, a line wider than the element is cut
// and ends in "...", and the whole text becomes the tooltip.
class CGUITextRectangle : public CGUIInertElement {
 public:
  // Measures itself: the widest line by the lines' height. Text must not be null.
  CGUITextRectangle(const TextStyle& Style, const char* Text);
  CGUITextRectangle(const TextStyle& Style, const char* Text, int X, int Y);
  // Keeps the size it is given.
  CGUITextRectangle(const TextStyle& Style, const char* Text, bool Fit, int X, int Y, int Width, int Height);

  void Draw(int Surface, int x, int y) override;
  void Hover(int x, int y) override;

  // Leaves the size as it is.
  virtual void SetText(const char* Text, bool Fit);

  // The text as it was set.
  const std::string& GetText() const { return FullText; }
  const TextStyle& GetStyle() const { return Style; }
  // The lines as they are drawn.
  const std::vector<std::string>& GetLines() const { return LineList; }
  bool IsTruncated() const { return Truncated; }

 private:
  void Measure();
  void TruncateText(std::string& Line) const;

  std::string FullText;
  TextStyle Style;
  std::vector<std::string> LineList;
  bool Truncated = false;
};

// A plain message of unknown length, wrapped at white space to fit the
// screen; what lies beyond the greatest height is not shown.
class CGUIWrappingTextRectangle : public CGUIInertElement {
 public:
  static constexpr int MaximumWidth = 760;
  static constexpr int MaximumHeight = 504;

  CGUIWrappingTextRectangle(const char* Text, const TextStyle& Style);

  void Draw(int Surface, int x, int y) override;

  const std::vector<std::string>& GetEntries() const { return Entries; }

 private:
  TextStyle Style;
  std::vector<std::string> Entries;
};

// What a markup tag of a format text asks for.
struct TFormatToken {
  enum : int {
    BOLD = 1,
    NORMAL = 2,
    HIGHLIGHT = 3,
    FONT = 10,
    HSPACE = 11,
    INDENT = 12,
    BR = 13,
    COLOR = 14,
    SKIN = 15,
    RED = 16,
    GREEN = 17,
    BLUE = 18,
    TUTORIAL_HINT_IMAGE = 19,
  };
  int Type = 0;
  int Data = 0;
  // Bytes of the tag; 0 where the text holds no tag, so "<" is a character.
  int Length = 0;
};

// The tag at the start of Text, if one parses there.
TFormatToken ParseFormatToken(std::string_view Text);

// A text with markup tags, laid out in runs of text rectangles and pictures,
// and cut at its edges. Without a size the width has no limit and the
// element takes the extent of what it holds.
class CGUIFormatTextRectangle : public CGUIComposite {
 public:
  // Text must not be null.
  explicit CGUIFormatTextRectangle(const char* Text);

  // A size below 1 leaves that edge to the content.
  void SetSize(int NewWidth, int NewHeight) override;
  // Builds the children anew from the text.
  void Update() override;
  bool LeftDown(int, int, int) override { return false; }
  bool LeftUp(int, int, int) override { return false; }
  bool LeftDouble(int, int, int) override { return false; }
  bool RightUp(int, int, int) override { return false; }
  bool MouseEvent(int, int, int) override { return false; }
  bool MouseMove(int, int) override { return false; }

  // With DoUpdate the children are built at once.
  virtual void SetText(const char* Text, bool DoUpdate);
  const std::string& GetText() const { return Text; }

 private:
  struct TLayout;
  // One run of text from P; answers the bytes used, the break included.
  size_t LayOutRun(std::string_view P, TLayout& Layout);
  void ApplyToken(const TFormatToken& Token, TLayout& Layout);
  void FitToContent();

  std::string Text;
  bool AutoWidth = true;
  bool AutoHeight = true;
};
