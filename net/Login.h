#pragma once
// The sign-in: the two login commands with their enciphered blocks, the login
// server's answers, and the game server's commands during world entry.
#include <cstdint>
#include <string>

constexpr int CLIENT_PLATFORM = 2;
constexpr int LOGIN_BLOCK_SIZE = 128;

// What SLOGINSUCCESS tells about the session.
struct TSessionInfo {
  std::uint32_t PlayerId = 0;
  int Beat = 0;  // milliseconds of a game beat
  double SpeedA = 0, SpeedB = 0, SpeedC = 0;
  bool CanReportBugs = false;
  bool CanChangePvPFraming = false;
};

void InitLogin(bool Gamemaster);
void ExitLogin();

void SendLoginAdmin();
void SendLoginGame(std::uint32_t ChallengeTime, std::uint8_t ChallengeValue);

// Reads one command of the login server's table.
void ReadLoginCommand(int Type);
// Reads one of the game server's entry commands; false if Type is none of them.
bool ReadEntryCommand(int Type);

const TSessionInfo& GetSessionInfo();
// The stored message of the day; the number of the last one shown is kept in
// the configuration.
const std::string& GetMessageOfTheDay();

// The player's choice in the character list: connects to that character's
// world, or explains why not and shows the list again.
void SelectCharacter(int Index);
