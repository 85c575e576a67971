#include "tools/server/Messages.h"

#include <string>

#include "core/Exception.h"

namespace server {

namespace {

// Command types of the login server's answers.
constexpr std::uint8_t SLOGINERROR_ADMIN = 10;
constexpr std::uint8_t SLOGINADVICE_ADMIN = 11;
constexpr std::uint8_t SMOTD = 20;
constexpr std::uint8_t SCHARACTERLIST = 100;

// Command types of the game server.
constexpr std::uint8_t SPENDINGSTATEENTERED = 10;
constexpr std::uint8_t SWORLDENTERED = 15;
constexpr std::uint8_t SLOGINERROR = 20;
constexpr std::uint8_t SLOGINADVICE = 21;
constexpr std::uint8_t SLOGINWAIT = 22;
constexpr std::uint8_t SLOGINSUCCESS = 23;
constexpr std::uint8_t SPING = 29;
constexpr std::uint8_t SPINGBACK = 30;
constexpr std::uint8_t SLOGINCHALLENGE = 31;
constexpr std::uint8_t SAMBIENTE = 130;
constexpr std::uint8_t SPLAYERDATACURRENT = 160;

// Two digits reproduce the speed parameters exactly.
constexpr int SPEED_PRECISION = 2;
constexpr std::size_t MAX_LISTED = 255;

std::string Indexed(const char* Group, std::size_t Index, const char* Field) {
  return Group + std::to_string(Index) + '.' + Field;
}

}  // namespace

void WriteLoginErrorAdmin(TMessageWriter& Writer, std::string_view Text) {
  Writer.Begin(SLOGINERROR_ADMIN, "SLOGINERROR_ADMIN");
  Writer.String("text", Text);
}

void WriteLoginAdviceAdmin(TMessageWriter& Writer, std::string_view Text) {
  Writer.Begin(SLOGINADVICE_ADMIN, "SLOGINADVICE_ADMIN");
  Writer.String("text", Text);
}

void WriteMessageOfTheDay(TMessageWriter& Writer, std::uint32_t Number, std::string_view Text) {
  Writer.Begin(SMOTD, "SMOTD");
  Writer.String("text", std::to_string(Number) + '\n' + std::string(Text));
}

void WriteCharacterList(TMessageWriter& Writer, const std::vector<TListedWorld>& Worlds,
                        const std::vector<TListedCharacter>& Characters, std::uint16_t PremiumDays) {
  Check(Worlds.size() <= MAX_LISTED, "too many worlds", {"Count", static_cast<long long>(Worlds.size())});
  Check(Characters.size() <= MAX_LISTED, "too many characters",
        {"Count", static_cast<long long>(Characters.size())});
  Writer.Begin(SCHARACTERLIST, "SCHARACTERLIST");
  Writer.U8("worldCount", static_cast<std::uint8_t>(Worlds.size()));
  for (std::size_t I = 0; I < Worlds.size(); ++I) {
    Writer.U8(Indexed("world", I, "id"), Worlds[I].Id);
    Writer.String(Indexed("world", I, "name"), Worlds[I].Name);
    Writer.String(Indexed("world", I, "host"), Worlds[I].Host);
    Writer.U16(Indexed("world", I, "port"), Worlds[I].Port);
    Writer.U8(Indexed("world", I, "previewState"), Worlds[I].PreviewState);
  }
  Writer.U8("characterCount", static_cast<std::uint8_t>(Characters.size()));
  for (std::size_t I = 0; I < Characters.size(); ++I) {
    Writer.U8(Indexed("character", I, "worldId"), Characters[I].WorldId);
    Writer.String(Indexed("character", I, "name"), Characters[I].Name);
  }
  Writer.U16("premiumDays", PremiumDays);
}

void WriteLoginChallenge(TMessageWriter& Writer, std::uint32_t Time, std::uint8_t Value) {
  Writer.Begin(SLOGINCHALLENGE, "SLOGINCHALLENGE");
  Writer.U32("time", Time);
  Writer.U8("value", Value);
}

void WriteLoginError(TMessageWriter& Writer, std::string_view Text) {
  Writer.Begin(SLOGINERROR, "SLOGINERROR");
  Writer.String("text", Text);
}

void WriteLoginAdvice(TMessageWriter& Writer, std::string_view Text) {
  Writer.Begin(SLOGINADVICE, "SLOGINADVICE");
  Writer.String("text", Text);
}

void WriteLoginWait(TMessageWriter& Writer, std::string_view Text, std::uint8_t Seconds) {
  Writer.Begin(SLOGINWAIT, "SLOGINWAIT");
  Writer.String("text", Text);
  Writer.U8("seconds", Seconds);
}

void WriteLoginSuccess(TMessageWriter& Writer, const TLoginSuccess& Success) {
  Writer.Begin(SLOGINSUCCESS, "SLOGINSUCCESS");
  Writer.U32("creatureId", Success.CreatureId);
  Writer.U16("beat", Success.Beat);
  Writer.Double("speedA", Success.SpeedA, SPEED_PRECISION);
  Writer.Double("speedB", Success.SpeedB, SPEED_PRECISION);
  Writer.Double("speedC", Success.SpeedC, SPEED_PRECISION);
  Writer.U8("canReportBugs", Success.CanReportBugs ? 1 : 0);
  Writer.U8("canChangePvPFraming", Success.CanChangePvPFraming ? 1 : 0);
}

void WritePendingStateEntered(TMessageWriter& Writer) {
  Writer.Begin(SPENDINGSTATEENTERED, "SPENDINGSTATEENTERED");
}
void WriteWorldEntered(TMessageWriter& Writer) { Writer.Begin(SWORLDENTERED, "SWORLDENTERED"); }
void WritePlayerDataCurrent(TMessageWriter& Writer, const TPlayerNumbers& Numbers) {
  Writer.Begin(SPLAYERDATACURRENT, "SPLAYERDATACURRENT");
  Writer.U16("hitPoints", Numbers.HitPoints);
  Writer.U16("maxHitPoints", Numbers.MaxHitPoints);
  Writer.U32("freeCapacity", Numbers.FreeCapacity);
  Writer.U32("unused1", 0);
  Writer.U32("experienceLow", static_cast<std::uint32_t>(Numbers.Experience));
  Writer.U32("experienceHigh", static_cast<std::uint32_t>(Numbers.Experience >> 32));
  Writer.U16("level", Numbers.Level);
  Writer.U8("levelProgress", Numbers.LevelProgress);
  Writer.U16("mana", Numbers.Mana);
  Writer.U16("maxMana", Numbers.MaxMana);
  Writer.U8("magicLevel", Numbers.MagicLevel);
  Writer.U8("unused2", 0);
  Writer.U8("magicLevelProgress", Numbers.MagicLevelProgress);
  Writer.U8("soulPoints", Numbers.SoulPoints);
  Writer.U16("stamina", Numbers.StaminaMinutes);
  Writer.U16("unused3", 0);
  Writer.U16("unused4", 0);
  Writer.U16("offlineTraining", Numbers.OfflineTrainingMinutes);
}

void WriteAmbiente(TMessageWriter& Writer, std::uint8_t Brightness, std::uint8_t Color) {
  Writer.Begin(SAMBIENTE, "SAMBIENTE");
  Writer.U8("brightness", Brightness);
  Writer.U8("color", Color);
}

void WritePing(TMessageWriter& Writer) { Writer.Begin(SPING, "SPING"); }
void WritePingBack(TMessageWriter& Writer) { Writer.Begin(SPINGBACK, "SPINGBACK"); }

}  // namespace server
