#pragma once
// Accounts, worlds, characters and the message of the day, read from a text
// file. One entry per line; '#' starts a comment; fields are separated by
// blanks, and a field with blanks is written in double quotes:
//
//   motd <number> <text>
//   world <id> <name> <host> <port or game-port> [<preview state>]
//   account <name> <password> <premium days>
//   character <name> <world name>      (belongs to the account above it)
//
// "game-port" stands for the port on which this server's game side listens.
#include <cstdint>
#include <filesystem>
#include <istream>
#include <optional>
#include <string>
#include <vector>

namespace server {

struct TMotd {
  std::uint32_t Number;
  std::string Text;
};

struct TWorld {
  std::uint8_t Id;
  std::string Name;
  std::string Host;
  std::optional<std::uint16_t> Port;  // none: the game port of this server
  std::uint8_t PreviewState;
};

struct TCharacter {
  std::string Name;
  std::uint8_t WorldId;
  std::uint32_t CreatureId;
};

struct TAccount {
  std::string Name;
  std::string Password;
  std::uint16_t PremiumDays;
  std::vector<TCharacter> Characters;
};

struct TAccountBook {
  std::optional<TMotd> Motd;
  std::vector<TWorld> Worlds;
  std::vector<TAccount> Accounts;

  // The account if name and password match, else null.
  const TAccount* Find(const std::string& Name, const std::string& Password) const;
};

// Fails with "line <n>: <reason>".
TAccountBook ParseAccountBook(std::istream& Input);
TAccountBook LoadAccountBook(const std::filesystem::path& Path);

// Limits of the login protocol.
constexpr int ACCOUNT_NAME_MAX = 30;
constexpr int PASSWORD_MAX = 29;
constexpr int CHARACTER_NAME_MAX = 29;
constexpr int WORLD_NAME_MAX = 29;
constexpr int HOST_MAX = 59;

}  // namespace server
