#pragma once
// Character tests, case mappings, text helpers and number formats for Latin-1
// text, the game's character set: one byte is one character. The case
// mappings are the game's own, not those of the C locale.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <type_traits>

// Blank, form feed, line feed, carriage return, tab, vertical tab and 0xA0.
bool isSpace(char Character);
// A to Z, a to z and the Latin-1 letters ä, ö, ü, Ä, Ö, Ü, ß.
bool isLetter(char Character);
// A to Z and 0xC0 to 0xDE lowered by 32, others as they are.
char toLowerChar(char Character);
// a to z and 0xE0 to 0xFE raised by 32, others as they are.
char toUpperChar(char Character);

// Lower every character, or raise the first one, in place; return Text.
std::string& lowerText(std::string& Text);
std::string& capitalize(std::string& Text);

// Compares at most Count characters through toLowerChar; the sign is that of
// strcmp, with bytes taken as unsigned. A negative Count compares to the end.
int compareNoCase(std::string_view Text1, std::string_view Text2, int Count = -1);

// What fits in a buffer of Count bytes with its terminator: at most Count - 1
// characters. Count must be positive.
std::string copyText(std::string_view Source, int Count);

// Source without its leading and trailing isSpace characters.
std::string trimText(std::string_view Source);

// A text longer than Length ends in "..." at Length characters; a Length
// below 3 leaves only dots.
void shortenText(std::string& Text, int Length);

void lineFeedsToBlanks(std::string& Text);
void removeCarriageReturns(std::string& Text);

// Number with a comma after every third digit from the right, if the digits
// and commas fit in a buffer of Length bytes with its terminator; otherwise
// the plain digits, cut to the buffer. Number must not be negative.
std::string formatNumber(int Length, std::int64_t Number);
// Number minutes as hours and minutes, "% 2lld:%02lld", cut to a buffer of
// Length bytes. Number must not be negative.
std::string formatMinutes(int Length, std::int64_t Number);

namespace text_detail {

void CheckFormat(std::size_t Count, const char* Format);
// The printed text of Length bytes, or a failure if printing failed.
std::size_t CheckedLength(int Length, std::size_t Count);

// Only numbers, pointers and std::string reach the printf family, so that no
// object is ever passed through the ellipsis.
template <class T>
auto PrintArgument(const T& Value) {
  if constexpr (std::is_same_v<T, std::string>) {
    return Value.c_str();
  } else {
    static_assert(std::is_arithmetic_v<T> || std::is_pointer_v<std::decay_t<T>>,
                  "formatText takes numbers, pointers and std::string");
    return Value;
  }
}

}  // namespace text_detail

// Formatted print into a buffer of Count bytes: the result is cut to Count - 1
// characters. Its length is the string's size.
template <class... TArgs>
std::string formatText(std::size_t Count, const char* Format, const TArgs&... Args) {
  text_detail::CheckFormat(Count, Format);
  const int Length = std::snprintf(nullptr, 0, Format, text_detail::PrintArgument(Args)...);
  std::string Text(text_detail::CheckedLength(Length, Count), '\0');
  std::snprintf(Text.data(), Text.size() + 1, Format, text_detail::PrintArgument(Args)...);
  return Text;
}
