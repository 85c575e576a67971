#include "tools/server/Accounts.h"

#include <algorithm>
#include <fstream>

#include "core/Exception.h"

namespace server {

namespace {

constexpr std::uint32_t FIRST_CREATURE_ID = 1000;  // players stay below 0x40000000
constexpr std::size_t MAX_LISTED = 255;            // counts of the character list are u8

class TBookReader {
 public:
  void Read(int Line, const std::vector<std::string>& Fields);
  TAccountBook Take() { return std::move(m_Book); }

 private:
  [[noreturn]] void Fail(const std::string& Reason) const;
  void ExpectFields(const std::vector<std::string>& Fields, std::size_t Least, std::size_t Most) const;
  std::uint32_t Number(const std::string& Text, std::uint32_t Most, const char* What) const;
  const std::string& Text(const std::string& Value, std::size_t Least, std::size_t Most,
                          const char* What) const;
  void ReadMotd(const std::vector<std::string>& Fields);
  void ReadWorld(const std::vector<std::string>& Fields);
  void ReadAccount(const std::vector<std::string>& Fields);
  void ReadCharacter(const std::vector<std::string>& Fields);

  TAccountBook m_Book;
  int m_Line = 0;
  std::uint32_t m_NextCreatureId = FIRST_CREATURE_ID;
};

void TBookReader::Fail(const std::string& Reason) const {
  ThrowException("line " + std::to_string(m_Line) + ": " + Reason);
}

void TBookReader::ExpectFields(const std::vector<std::string>& Fields, std::size_t Least,
                               std::size_t Most) const {
  if (Fields.size() < Least || Fields.size() > Most)
    Fail("'" + Fields[0] + "' takes " + std::to_string(Least - 1) +
         (Least == Most ? "" : " or " + std::to_string(Most - 1)) + " fields");
}

std::uint32_t TBookReader::Number(const std::string& Text, std::uint32_t Most, const char* What) const {
  const bool Digits = !Text.empty() && Text.size() <= 10 &&
                      std::all_of(Text.begin(), Text.end(), [](char C) { return C >= '0' && C <= '9'; });
  if (!Digits || std::stoull(Text) > Most)
    Fail(std::string(What) + " must be a number from 0 to " + std::to_string(Most) + ": " + Text);
  return static_cast<std::uint32_t>(std::stoull(Text));
}

const std::string& TBookReader::Text(const std::string& Value, std::size_t Least, std::size_t Most,
                                     const char* What) const {
  if (Value.size() < Least || Value.size() > Most)
    Fail(std::string(What) + " must have " + std::to_string(Least) + " to " + std::to_string(Most) +
         " characters: " + Value);
  return Value;
}

void TBookReader::Read(int Line, const std::vector<std::string>& Fields) {
  m_Line = Line;
  const std::string& Keyword = Fields[0];
  if (Keyword == "motd")
    ReadMotd(Fields);
  else if (Keyword == "world")
    ReadWorld(Fields);
  else if (Keyword == "account")
    ReadAccount(Fields);
  else if (Keyword == "character")
    ReadCharacter(Fields);
  else
    Fail("unknown entry '" + Keyword + "'");
}

void TBookReader::ReadMotd(const std::vector<std::string>& Fields) {
  ExpectFields(Fields, 3, 3);
  if (m_Book.Motd) Fail("second message of the day");
  m_Book.Motd = TMotd{Number(Fields[1], UINT32_MAX, "message number"), Fields[2]};
}

void TBookReader::ReadWorld(const std::vector<std::string>& Fields) {
  ExpectFields(Fields, 5, 6);
  TWorld World{static_cast<std::uint8_t>(Number(Fields[1], 255, "world id")),
               Text(Fields[2], 1, WORLD_NAME_MAX, "world name"), Text(Fields[3], 1, HOST_MAX, "host"),
               std::nullopt, 0};
  if (Fields[4] != "game-port") World.Port = static_cast<std::uint16_t>(Number(Fields[4], 65535, "port"));
  if (Fields.size() == 6)
    World.PreviewState = static_cast<std::uint8_t>(Number(Fields[5], 255, "preview state"));
  for (const TWorld& Other : m_Book.Worlds) {
    if (Other.Id == World.Id) Fail("world id " + Fields[1] + " is taken");
    if (Other.Name == World.Name) Fail("world " + World.Name + " is declared twice");
  }
  m_Book.Worlds.push_back(std::move(World));
}

void TBookReader::ReadAccount(const std::vector<std::string>& Fields) {
  ExpectFields(Fields, 4, 4);
  TAccount Account{Text(Fields[1], 1, ACCOUNT_NAME_MAX, "account name"),
                   Text(Fields[2], 0, PASSWORD_MAX, "password"),
                   static_cast<std::uint16_t>(Number(Fields[3], 65535, "premium days")),
                   {}};
  for (const TAccount& Other : m_Book.Accounts)
    if (Other.Name == Account.Name) Fail("account " + Account.Name + " is declared twice");
  m_Book.Accounts.push_back(std::move(Account));
}

void TBookReader::ReadCharacter(const std::vector<std::string>& Fields) {
  ExpectFields(Fields, 3, 3);
  if (m_Book.Accounts.empty()) Fail("character before any account");
  const std::string& Name = Text(Fields[1], 1, CHARACTER_NAME_MAX, "character name");
  for (const TAccount& Account : m_Book.Accounts)
    for (const TCharacter& Other : Account.Characters)
      if (Other.Name == Name) Fail("character " + Name + " is declared twice");
  const auto World = std::find_if(m_Book.Worlds.begin(), m_Book.Worlds.end(),
                                  [&](const TWorld& W) { return W.Name == Fields[2]; });
  if (World == m_Book.Worlds.end()) Fail("unknown world " + Fields[2]);
  auto& Characters = m_Book.Accounts.back().Characters;
  if (Characters.size() == MAX_LISTED) Fail("more than 255 characters on one account");
  Characters.push_back({Name, World->Id, m_NextCreatureId++});
}

// Blank-separated fields; double quotes keep blanks; '#' outside quotes ends the line.
std::vector<std::string> SplitFields(const std::string& Line, int Number) {
  std::vector<std::string> Fields;
  std::size_t At = 0;
  for (;;) {
    At = Line.find_first_not_of(" \t\r", At);
    if (At == std::string::npos || Line[At] == '#') return Fields;
    if (Line[At] == '"') {
      const std::size_t End = Line.find('"', At + 1);
      if (End == std::string::npos) ThrowException("line " + std::to_string(Number) + ": quote not closed");
      Fields.push_back(Line.substr(At + 1, End - At - 1));
      At = End + 1;
    } else {
      const std::size_t End = std::min(Line.find_first_of(" \t\r#\"", At), Line.size());
      Fields.push_back(Line.substr(At, End - At));
      At = End;
    }
  }
}

}  // namespace

const TAccount* TAccountBook::Find(const std::string& Name, const std::string& Password) const {
  for (const TAccount& Account : Accounts)
    if (Account.Name == Name && Account.Password == Password) return &Account;
  return nullptr;
}

TAccountBook ParseAccountBook(std::istream& Input) {
  TBookReader Reader;
  std::string Line;
  for (int Number = 1; std::getline(Input, Line); ++Number) {
    const std::vector<std::string> Fields = SplitFields(Line, Number);
    if (!Fields.empty()) Reader.Read(Number, Fields);
  }
  return Reader.Take();
}

TAccountBook LoadAccountBook(const std::filesystem::path& Path) {
  std::ifstream Input(Path);
  if (!Input) ThrowException("cannot open the account file " + Path.string());
  try {
    return ParseAccountBook(Input);
  } catch (const TMyException& Failure) {
    ThrowException(Path.string() + ": " + Failure.Text());
  }
}

}  // namespace server
