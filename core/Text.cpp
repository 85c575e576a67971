#include "core/Text.h"

#include <algorithm>
#include <climits>

#include "core/Exception.h"

namespace {

unsigned char Byte(char Character) { return static_cast<unsigned char>(Character); }

// What a buffer of Length bytes keeps of Text besides its terminator.
std::string CutTo(std::string Text, int Length) {
  Text.resize(std::min(Text.size(), static_cast<std::size_t>(std::max(Length - 1, 0))));
  return Text;
}

}  // namespace

bool isSpace(char Character) {
  switch (Byte(Character)) {
    case ' ': case '\f': case '\n': case '\r': case '\t': case '\v': case 0xA0:
      return true;
    default:
      return false;
  }
}

bool isLetter(char Character) {
  const unsigned char C = Byte(Character);
  if ((C >= 'A' && C <= 'Z') || (C >= 'a' && C <= 'z')) return true;
  switch (C) {
    case 0xE4: case 0xF6: case 0xFC:  // ä ö ü
    case 0xC4: case 0xD6: case 0xDC:  // Ä Ö Ü
    case 0xDF:                        // ß
      return true;
    default:
      return false;
  }
}

char toLowerChar(char Character) {
  const unsigned char C = Byte(Character);
  if ((C >= 'A' && C <= 'Z') || (C >= 0xC0 && C <= 0xDE)) return static_cast<char>(C + 32);
  return Character;
}

char toUpperChar(char Character) {
  const unsigned char C = Byte(Character);
  if ((C >= 'a' && C <= 'z') || (C >= 0xE0 && C <= 0xFE)) return static_cast<char>(C - 32);
  return Character;
}

std::string& lowerText(std::string& Text) {
  for (char& C : Text) C = toLowerChar(C);
  return Text;
}

std::string& capitalize(std::string& Text) {
  if (!Text.empty()) Text.front() = toUpperChar(Text.front());
  return Text;
}

int compareNoCase(std::string_view Text1, std::string_view Text2, int Count) {
  // The end of a text compares as its terminator would.
  const auto Lowered = [](std::string_view Text, std::size_t I) {
    return I < Text.size() ? Byte(toLowerChar(Text[I])) : 0;
  };
  for (std::size_t I = 0; Count < 0 || I < static_cast<std::size_t>(Count); ++I) {
    const int C1 = Lowered(Text1, I);
    const int C2 = Lowered(Text2, I);
    if (C1 != C2 || C1 == 0) return C1 - C2;
  }
  return 0;
}

std::string copyText(std::string_view Source, int Count) {
  Check(Count > 0, "Count>0", {"Count", Count});
  return CutTo(std::string(Source), Count);
}

std::string trimText(std::string_view Source) {
  const auto First = std::find_if_not(Source.begin(), Source.end(), isSpace);
  const auto Last = std::find_if_not(Source.rbegin(), Source.rend(), isSpace).base();
  return First < Last ? std::string(First, Last) : std::string();
}

void shortenText(std::string& Text, int Length) {
  const std::size_t Limit = static_cast<std::size_t>(std::max(Length, 0));
  if (Text.size() <= Limit) return;
  const std::size_t Dots = std::min<std::size_t>(Limit, 3);
  Text.resize(Limit - Dots);
  Text.append(Dots, '.');
}

void lineFeedsToBlanks(std::string& Text) { std::replace(Text.begin(), Text.end(), '\n', ' '); }

void removeCarriageReturns(std::string& Text) { std::erase(Text, '\r'); }

std::string formatNumber(int Length, std::int64_t Number) {
  Check(Number >= 0, "Number>=0", {"Number", Number});
  std::string Text = std::to_string(Number);
  const std::size_t Digits = Text.size();
  if (Digits + (Digits - 1) / 3 < static_cast<std::size_t>(std::max(Length, 0))) {
    for (std::size_t Position = Digits; Position > 3; Position -= 3) {
      Text.insert(Position - 3, 1, ',');
    }
  }
  return CutTo(std::move(Text), Length);
}

std::string formatMinutes(int Length, std::int64_t Number) {
  Check(Number >= 0, "Number >= 0", {"Number", Number});
  return formatText(static_cast<std::size_t>(std::max(Length, 1)), "% 2lld:%02lld",
                    static_cast<long long>(Number / 60), static_cast<long long>(Number % 60));
}

void text_detail::CheckFormat(std::size_t Count, const char* Format) {
  Check(Count > 0, "Count>0", {"Count", static_cast<long long>(Count)});
  Check(Count <= INT_MAX, "Count<=INT_MAX", {"Count", static_cast<long long>(Count)});
  Check(Format != nullptr, "Format!=NULL");
}

std::size_t text_detail::CheckedLength(int Length, std::size_t Count) {
  Check(Length >= 0, "Length>=0", {"Length", Length});
  return std::min(static_cast<std::size_t>(Length), Count - 1);
}
