#include "core/CommandLineHelper.h"

#include <algorithm>

#include "core/Exception.h"

namespace {

constexpr size_t MaxLineLength = 1024;

bool IsSeparator(char C) { return C == ' ' || C == '\t' || C == '\n' || C == '"'; }

// Everything behind the option's first occurrence in the line, without leading
// white space and without any double quote.
std::string RestOfLine(const std::string& Line, const std::string& Name) {
  std::string Rest = Line.substr(Line.find(Name) + Name.size());
  Rest.erase(0, Rest.find_first_not_of(" \t\n"));
  std::erase(Rest, '"');
  return Rest;
}

}  // namespace

void CommandLineHelper::Parse(const std::string& CommandLine) {
  m_Options.clear();
  const std::string Line = CommandLine.substr(0, MaxLineLength);
  std::string Expected;
  size_t Position = 0;
  while (Position < Line.size()) {
    if (IsSeparator(Line[Position])) {
      ++Position;
      continue;
    }
    const size_t End = std::find_if(Line.begin() + Position, Line.end(), IsSeparator) - Line.begin();
    const std::string Word = Line.substr(Position, End - Position);
    Position = End;
    if (Word == "gamemaster" || Word == "nodeadconnectiondetection") {
      m_Options.emplace(Word, "");
    } else if (Word == "host" || Word == "port" || Word == "engine") {
      Expected = Word;
    } else if (Word == "path" || Word == "configfile") {
      m_Options.emplace(Word, RestOfLine(Line, Word));
      return;
    } else if (!Expected.empty()) {
      m_Options.emplace(Expected, Word);
      Expected.clear();
    }
  }
}

bool CommandLineHelper::HasOption(const std::string& Name) const {
  return m_Options.contains(Name);
}

const std::string& CommandLineHelper::GetValue(const std::string& Name) const {
  const auto Found = m_Options.find(Name);
  if (Name.empty() || Found == m_Options.end()) ThrowException("Parameter Key is invalid");
  return Found->second;
}
