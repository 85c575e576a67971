#pragma once
// The messages that this server sends, each appended to the packet being built.
#include <cstdint>
#include <string_view>
#include <vector>

#include "tools/server/Fields.h"

namespace server {

// Login server.
void WriteLoginErrorAdmin(TMessageWriter& Writer, std::string_view Text);
void WriteLoginAdviceAdmin(TMessageWriter& Writer, std::string_view Text);
// The text is "number\ntext".
void WriteMessageOfTheDay(TMessageWriter& Writer, std::uint32_t Number, std::string_view Text);

struct TListedWorld {
  std::uint8_t Id;
  std::string_view Name;
  std::string_view Host;
  std::uint16_t Port;
  std::uint8_t PreviewState;
};
struct TListedCharacter {
  std::uint8_t WorldId;
  std::string_view Name;
};
void WriteCharacterList(TMessageWriter& Writer, const std::vector<TListedWorld>& Worlds,
                        const std::vector<TListedCharacter>& Characters, std::uint16_t PremiumDays);

// Game server.
void WriteLoginChallenge(TMessageWriter& Writer, std::uint32_t Time, std::uint8_t Value);
void WriteLoginError(TMessageWriter& Writer, std::string_view Text);
void WriteLoginAdvice(TMessageWriter& Writer, std::string_view Text);
void WriteLoginWait(TMessageWriter& Writer, std::string_view Text, std::uint8_t Seconds);

struct TLoginSuccess {
  std::uint32_t CreatureId;
  std::uint16_t Beat;
  double SpeedA;
  double SpeedB;
  double SpeedC;
  bool CanReportBugs;
  bool CanChangePvPFraming;
};
void WriteLoginSuccess(TMessageWriter& Writer, const TLoginSuccess& Success);
void WritePendingStateEntered(TMessageWriter& Writer);
void WriteWorldEntered(TMessageWriter& Writer);

// The character's numbers as the client shows them; the demo's characters
// are all alike.
struct TPlayerNumbers {
  std::uint16_t HitPoints;
  std::uint16_t MaxHitPoints;
  std::uint32_t FreeCapacity;
  std::uint64_t Experience;
  std::uint16_t Level;
  std::uint8_t LevelProgress;
  std::uint16_t Mana;
  std::uint16_t MaxMana;
  std::uint8_t MagicLevel;
  std::uint8_t MagicLevelProgress;
  std::uint8_t SoulPoints;
  std::uint16_t StaminaMinutes;
  std::uint16_t OfflineTrainingMinutes;
};
void WritePlayerDataCurrent(TMessageWriter& Writer, const TPlayerNumbers& Numbers);
// The world's light: brightness and a colour of the 6 x 6 x 6 cube.
void WriteAmbiente(TMessageWriter& Writer, std::uint8_t Brightness, std::uint8_t Color);
void WritePing(TMessageWriter& Writer);
void WritePingBack(TMessageWriter& Writer);

}  // namespace server
