#pragma once
// What the server is told on its command line.
#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace server {

// Misbehaviour on request, so that tests can see how a client copes.
enum class EFault {
  SILENCE,            // after entering the world the game server reads but never answers
  BAD_CHECKSUM,       // the game server's first enciphered packet has a wrong checksum
  CLOSE_AFTER_LOGIN,  // the game server closes right after SLOGINSUCCESS
  LOGIN_ERROR,        // the game server refuses every login with SLOGINERROR
  QUEUE,              // the game server puts the first login in the queue and closes
  ADMIN_ERROR,        // the login server refuses every login with SLOGINERROR_ADMIN
  ADMIN_ADVICE,       // the login server sends SLOGINADVICE_ADMIN before the list
  LOGIN_ADVICE,       // the game server sends SLOGINADVICE before SLOGINSUCCESS
};

struct TServerSettings {
  std::string Host = "127.0.0.1";
  std::uint16_t LoginPort = 7171;  // 0: any free port
  std::uint16_t GamePort = 7172;
  std::set<EFault> Faults;
  int PingIntervalSeconds = 0;        // 0: the server sends no SPING
  std::optional<std::uint32_t> Seed;  // of the generator for challenges and padding
};

struct TServerOptions {
  TServerSettings Settings;
  std::filesystem::path Accounts = KELMO_SERVER_DATA_DIR "/accounts.txt";
  std::filesystem::path RsaKey = KELMO_SERVER_DATA_DIR "/rsa-key.txt";
  std::optional<std::filesystem::path> Log;
  std::optional<std::filesystem::path> World;  // none: the world is not sent
  std::filesystem::path Objects = KELMO_SERVER_OBJECTS;
  bool Help = false;
};

// The arguments without the program's name; fails on anything it doesn't know.
TServerOptions ParseOptions(const std::vector<std::string>& Arguments);
extern const char* const USAGE;

}  // namespace server
