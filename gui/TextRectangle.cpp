#include "gui/TextRectangle.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>

#include "core/Exception.h"
#include "core/Text.h"
#include "graphics/Graphics.h"
#include "world/Colors.h"

namespace {

std::vector<std::string> SplitLines(std::string_view Text) {
  std::vector<std::string> Lines;
  size_t Start = 0;
  for (size_t End = Text.find('\n'); End != std::string_view::npos; End = Text.find('\n', Start)) {
    Lines.emplace_back(Text.substr(Start, End - Start));
    Start = End + 1;
  }
  Lines.emplace_back(Text.substr(Start));
  return Lines;
}

const char* Checked(const char* Text) {
  Check(Text != nullptr, "Text!=NULL");
  return Text;
}

int Width(int Font, std::string_view Text) { return TextWidth(Font, Text, WHOLE_TEXT, false); }

}  // namespace

// --- CGUITextRectangle ---

CGUITextRectangle::CGUITextRectangle(const TextStyle& Style, const char* Text) : Style(Style) {
  SetText(Text, false);
  Measure();
}

CGUITextRectangle::CGUITextRectangle(const TextStyle& Style, const char* Text, int X, int Y)
    : CGUITextRectangle(Style, Text) {
  SetPosition(X, Y);
}

CGUITextRectangle::CGUITextRectangle(const TextStyle& Style, const char* Text, bool Fit, int X, int Y, int Width,
                                     int Height)
    : Style(Style) {
  SetPosition(X, Y);
  StoreSize(Width, Height);
  SetText(Text, Fit);
}

void CGUITextRectangle::Measure() {
  int Widest = 0;
  for (const std::string& Line : LineList) Widest = std::max(Widest, ::Width(Style.Font, Line));
  StoreSize(Widest, LineHeight(Style.Font) * static_cast<int>(LineList.size()));
}

void CGUITextRectangle::SetText(const char* Text, bool Fit) {
  FullText = Checked(Text);
  LineList = SplitLines(FullText);
  Truncated = false;
  if (!Fit) return;
  for (std::string& Line : LineList) {
    if (::Width(Style.Font, Line) <= Width) continue;
    TruncateText(Line);
    Truncated = true;
  }
}

void CGUITextRectangle::TruncateText(std::string& Line) const {
  const int Fitting = CharsThatFit(Style.Font, Line, Width, false);
  Line.resize(static_cast<size_t>(std::max(Fitting - 3, 0)));
  Line += "...";
}

// One line lies in the middle of the height; several start at the top.
void CGUITextRectangle::Draw(int Surface, int x, int y) {
  const TRect Clip{x, y, Width, Height};
  const int Left = x + GetStyleOffset(Style, Width);
  int Top = LineList.size() == 1 ? y + (Height - FontHeight(Style.Font)) / 2 : y;
  for (const std::string& Line : LineList) {
    PrintStyledClipped(Surface, Left, Top, Style, Line.c_str(), Clip);
    Top += LineHeight(Style.Font);
  }
}

void CGUITextRectangle::Hover(int, int) {
  if (Truncated) SetTooltip(FullText);
}

// --- CGUIWrappingTextRectangle ---

namespace {

// Splits Entry where it no longer fits: at the last white space before that
// place, else right there. Answers the head; Entry keeps the rest.
std::string SplitEntry(std::string& Entry, int Font) {
  const size_t Fitting = static_cast<size_t>(
      std::max(CharsThatFit(Font, Entry, CGUIWrappingTextRectangle::MaximumWidth - 1, false), 1));
  size_t Cut = Fitting;
  while (Cut > 0 && !isSpace(Entry[Cut])) --Cut;
  if (Cut == 0) Cut = Fitting;
  std::string Head = Entry.substr(0, Cut);
  const size_t Rest = Entry.find_first_not_of(" \f\n\r\t\v\xA0", Cut);
  Entry.erase(0, Rest == std::string::npos ? Entry.size() : Rest);
  return Head;
}

}  // namespace

CGUIWrappingTextRectangle::CGUIWrappingTextRectangle(const char* Text, const TextStyle& Style) : Style(Style) {
  for (std::string Entry : SplitLines(Checked(Text))) {
    while (::Width(Style.Font, Entry) > MaximumWidth) Entries.push_back(SplitEntry(Entry, Style.Font));
    Entries.push_back(std::move(Entry));
  }
  int Widest = 0;
  for (const std::string& Entry : Entries) Widest = std::max(Widest, ::Width(Style.Font, Entry));
  SetSize(Widest, std::min(static_cast<int>(Entries.size()) * LineHeight(Style.Font), MaximumHeight));
}

void CGUIWrappingTextRectangle::Draw(int Surface, int x, int y) {
  const int Step = LineHeight(Style.Font);
  for (size_t Row = 0; Row < Entries.size() && static_cast<int>(Row + 1) * Step <= Height; ++Row) {
    PrintStyled(Surface, x, y + static_cast<int>(Row) * Step, Style, Entries[Row].c_str());
  }
}

// --- The format text's tags ---

namespace {

struct TTokenName {
  std::string_view Name;
  int Type;
};

constexpr std::array<TTokenName, 3> PlainTokens{{
    {"b", TFormatToken::BOLD},
    {"n", TFormatToken::NORMAL},
    {"h", TFormatToken::HIGHLIGHT},
}};

constexpr std::array<TTokenName, 10> NumberedTokens{{
    {"font", TFormatToken::FONT},
    {"hspace", TFormatToken::HSPACE},
    {"indent", TFormatToken::INDENT},
    {"br", TFormatToken::BR},
    {"color", TFormatToken::COLOR},
    {"skin", TFormatToken::SKIN},
    {"red", TFormatToken::RED},
    {"green", TFormatToken::GREEN},
    {"blue", TFormatToken::BLUE},
    {"tutorialhintimage", TFormatToken::TUTORIAL_HINT_IMAGE},
}};

// More digits than this are out of every range anyway.
constexpr size_t MAXIMUM_DIGITS = 6;
constexpr int OUT_OF_RANGE = 999999;

// A short word matches the first name that starts with it.
template <size_t N>
int TypeOfWord(std::string_view Word, const std::array<TTokenName, N>& Names) {
  for (const TTokenName& Name : Names) {
    if (compareNoCase(Word, Name.Name, static_cast<int>(Word.size())) == 0) return Name.Type;
  }
  return 0;
}

bool IsDigit(char Character) { return Character >= '0' && Character <= '9'; }

}  // namespace

TFormatToken ParseFormatToken(std::string_view Text) {
  if (Text.empty() || Text.front() != '<') return {};
  size_t I = 1;
  while (I < Text.size() && isLetter(Text[I])) ++I;
  if (I == 1 || I == Text.size()) return {};
  const std::string_view Word = Text.substr(1, I - 1);
  if (Text[I] == '>') {
    const int Type = TypeOfWord(Word, PlainTokens);
    return Type == 0 ? TFormatToken{} : TFormatToken{Type, 0, static_cast<int>(I + 1)};
  }
  if (Text[I] != '=') return {};
  const int Type = TypeOfWord(Word, NumberedTokens);
  if (Type == 0) return {};
  const size_t First = ++I;
  int Number = 0;
  for (; I < Text.size() && IsDigit(Text[I]); ++I) {
    Number = I - First < MAXIMUM_DIGITS ? Number * 10 + (Text[I] - '0') : OUT_OF_RANGE;
  }
  if (I == First || I == Text.size() || Text[I] != '>') return {};
  return {Type, Number, static_cast<int>(I + 1)};
}

// --- CGUIFormatTextRectangle ---

namespace {

constexpr int FORMAT_FONT = 2;
constexpr TextStyle FORMAT_NORMAL{FORMAT_FONT, 224, 224, 224, LEFT_ALIGN};
constexpr int MAXIMUM_HSPACE = 200;
constexpr int MAXIMUM_INDENT = 200;
constexpr int MAXIMUM_BR = 50;
constexpr int MAXIMUM_COLOR = 215;
constexpr int MAXIMUM_COMPONENT = 255;
constexpr int MAXIMUM_SKIN = NumberOfSkins - 1;
constexpr int MAXIMUM_HINT_IMAGE = CGUITutorialHintImageDisplay::NumberOfImages - 1;

bool In(int Value, int Low, int High) { return Value >= Low && Value <= High; }

}  // namespace

struct CGUIFormatTextRectangle::TLayout {
  TextStyle Style = FORMAT_NORMAL;
  int Indent = 0;
  int X = 0;
  int Y = 0;
  bool Limited = false;
  int Limit = 0;
  // What the last run or token did.
  bool Break = false;
  const CGUIComponent* Made = nullptr;

  void Advance() {
    if (Break) {
      Y += LineHeight(Style.Font);
      X = Indent;
    } else {
      if (Made != nullptr) X += Made->getWidth();
      X = std::max(X, Indent);
    }
    Break = false;
    Made = nullptr;
  }
};

CGUIFormatTextRectangle::CGUIFormatTextRectangle(const char* Text) : Text(Checked(Text)) {}

void CGUIFormatTextRectangle::SetText(const char* NewText, bool DoUpdate) {
  Text = Checked(NewText);
  if (DoUpdate) Update();
}

void CGUIFormatTextRectangle::SetSize(int NewWidth, int NewHeight) {
  AutoWidth = NewWidth < 1;
  AutoHeight = NewHeight < 1;
  StoreSize(std::max(NewWidth, 0), std::max(NewHeight, 0));
  Update();
}

void CGUIFormatTextRectangle::Update() {
  while (GetFirstChild() != nullptr) DeleteChild(GetFirstChild());
  TLayout Layout;
  Layout.Limited = !AutoWidth;
  Layout.Limit = Width;
  std::string_view Rest = Text;
  while (!Rest.empty()) {
    const TFormatToken Token = ParseFormatToken(Rest);
    if (Token.Length > 0) {
      ApplyToken(Token, Layout);
      Rest.remove_prefix(static_cast<size_t>(Token.Length));
    } else {
      Rest.remove_prefix(LayOutRun(Rest, Layout));
    }
    Layout.Advance();
  }
  FitToContent();
  ClipChildren(false);
}

size_t CGUIFormatTextRectangle::LayOutRun(std::string_view P, TLayout& Layout) {
  size_t I = 0;
  size_t Run = 0;
  size_t Skip = 0;
  std::optional<size_t> Separator;
  for (;; ++I) {
    if (I == P.size() || (P[I] == '<' && ParseFormatToken(P.substr(I)).Length > 0)) {
      Run = I;
      break;
    }
    if (isSpace(P[I])) {
      Separator = I;
      if (P[I] != '\n') continue;
      Layout.Break = true;
      Run = I;
      Skip = 1;
      break;
    }
    const bool TooWide = Layout.Limited && Layout.X + TextWidth(Layout.Style.Font, P, static_cast<int>(I + 1), false) > Layout.Limit;
    // A character wider than a whole line still goes somewhere.
    if (TooWide && !(I == 0 && Layout.X <= Layout.Indent)) {
      Layout.Break = true;
      Run = Separator.value_or(I);
      Skip = Separator ? 1 : 0;
      break;
    }
  }
  if (Run > 0) {
    auto Child = std::make_unique<CGUITextRectangle>(Layout.Style, std::string(P.substr(0, Run)).c_str(), Layout.X,
                                                     Layout.Y);
    Layout.Made = Child.get();
    AddChildLast(std::move(Child));
  }
  return Run + Skip;
}

void CGUIFormatTextRectangle::ApplyToken(const TFormatToken& Token, TLayout& Layout) {
  const int N = Token.Data;
  TextStyle& Style = Layout.Style;
  switch (Token.Type) {
    case TFormatToken::BOLD: Style = {Style.Font, 255, 128, 128, LEFT_ALIGN}; break;
    case TFormatToken::NORMAL: Style = {Style.Font, 224, 224, 224, LEFT_ALIGN}; break;
    case TFormatToken::HIGHLIGHT: Style = {Style.Font, 224, 224, 0, LEFT_ALIGN}; break;
    case TFormatToken::FONT: if (In(N, 1, NumberOfFonts)) Style.Font = N; break;
    case TFormatToken::HSPACE: if (In(N, 1, MAXIMUM_HSPACE)) Layout.X += N; break;
    case TFormatToken::INDENT: if (In(N, 0, MAXIMUM_INDENT)) Layout.Indent = N; break;
    case TFormatToken::BR: if (In(N, 1, MAXIMUM_BR)) Layout.Y += N; break;
    case TFormatToken::COLOR:
      if (In(N, 0, MAXIMUM_COLOR)) {
        const TRGB Color = Color216(N);
        Style = {Style.Font, Color.Red, Color.Green, Color.Blue, LEFT_ALIGN};
      }
      break;
    case TFormatToken::SKIN:
      if (In(N, 0, MAXIMUM_SKIN)) {
        auto Child = std::make_unique<CGUISkinDisplay>(N, Layout.X, Layout.Y);
        Layout.Made = Child.get();
        AddChildLast(std::move(Child));
      }
      break;
    case TFormatToken::RED: if (In(N, 0, MAXIMUM_COMPONENT)) Style.Red = N; break;
    case TFormatToken::GREEN: if (In(N, 0, MAXIMUM_COMPONENT)) Style.Green = N; break;
    case TFormatToken::BLUE: if (In(N, 0, MAXIMUM_COMPONENT)) Style.Blue = N; break;
    case TFormatToken::TUTORIAL_HINT_IMAGE:
      if (In(N, 0, MAXIMUM_HINT_IMAGE)) {
        auto Child = std::make_unique<CGUITutorialHintImageDisplay>(N, Layout.X, Layout.Y);
        Layout.Made = Child.get();
        AddChildLast(std::move(Child));
      }
      break;
    default: Check(false, "unknown token type", {"TokenType", Token.Type}, {"TokenData", N});
  }
}

// An edge without a given size reaches as far as the content.
void CGUIFormatTextRectangle::FitToContent() {
  if (!AutoWidth && !AutoHeight) return;
  int Right = 0;
  int Bottom = 0;
  for (CGUIComponent* Child = GetFirstChild(); Child != nullptr; Child = ChildAfter(Child)) {
    Right = std::max(Right, Child->getX() + Child->getWidth());
    Bottom = std::max(Bottom, Child->getY() + Child->getHeight());
  }
  StoreSize(AutoWidth ? Right : Width, AutoHeight ? Bottom : Height);
}
