#pragma once
// The player's own numbers as the server last told them, and what the client
// works out from them: the experience to the next level, the experience rate
// per hour, the stamina state, and the running cooldowns of spells and spell
// groups. Written by the incoming player messages, read by the windows;
// cleared with the creature table.
#include <array>
#include <cstdint>
#include <string>
#include <vector>

constexpr int SKILLS = 7;
constexpr int EXPERIENCE_SLOTS = 15;
constexpr int SPELLGROUP_NONE = 0;
constexpr int SPELLGROUP_BEYONDLAST = 5;
constexpr int SPELL_NONE = 0;
constexpr int SPELL_BEYONDLAST = 170;

struct TPlayerStats {
  int HitPoints = 0, MaxHitPoints = 0;
  int FreeCapacity = 0;  // hundredths of the weight unit
  std::int64_t Experience = 0;
  int Level = 0;
  int LevelProgress = 0;  // percent, -1 for no bar
  int Mana = 0, MaxMana = 0;
  int MagicLevel = 0;
  int MagicProgress = 0;  // percent, -1 for no bar
  int SoulPoints = 0;
  int Stamina = 0;          // minutes
  int OfflineTraining = 0;  // minutes
  std::array<int, SKILLS> SkillLevel{};
  std::array<int, SKILLS> SkillProgress{};
  std::uint32_t PlayerStateFlags = 0;
  int Profession = 0;  // 0 none, 1 to 4
  bool PremiumAccount = false;
  std::int64_t PremiumUntil = 0;
  int MultiUseEnd = 0;  // program time until which multi-use actions wait
};

// Program times; a group's are 0 until its first delay.
struct TSpellGroupDelay {
  int m_SpellGroup = SPELLGROUP_NONE;
  int StartTime = 0;
  int EndTime = 0;
};
struct TSpellDelay {
  int Spell = SPELL_NONE;
  int StartTime = 0;
  int EndTime = 0;
};

void InitPlayer();
void ExitPlayer();
// Zeroes everything but the profession; the four spell groups stand without a delay.
void ClearPlayer();

std::uint32_t GetPlayerID();
const TPlayerStats& GetPlayerStats();

void SetHitPoints(int HitPoints, int MaxHitPoints);
void SetMana(int Mana, int MaxMana);
void SetFreeCapacity(int FreeCapacity);
void SetSoulPoints(int SoulPoints);
void SetStamina(int Minutes);
void SetOfflineTraining(int Minutes);
void SetExperience(int Level, int Progress, std::int64_t Experience);
void SetMagicLevel(int Level, int Progress);
void SetSkill(int Skill, int Level, int Progress);
void SetPlayerStateFlags(std::uint32_t Flags);
void SetProfession(int Profession);
void SetPremium(bool PremiumAccount, std::int64_t PremiumUntil);
// Delays in milliseconds from now.
void SetSpellGroupDelay(int SpellGroup, int Delay);
void SetSpellDelay(int Spell, int Delay);
void SetMultiUseDelay(int Delay);

// 0x7FFFFFFF below level 1.
std::int64_t ExperienceForLevel(int Level);
// The experience still missing to the next level, the gain per hour over the
// last quarter of an hour, and the minutes to the next level at that rate.
void GetExperienceInfo(std::int64_t& Left, int& Rate, std::int64_t& MinutesToNext);
// "Reset Experience Counter".
void ResetExperienceCounter();
// -2 none left, -1 low, 0 ordinary, 1 bonus time.
int GetStaminaState();

int GetSkillLevel(int SkillNumber);
int GetSkillProgress(int SkillNumber);
std::string GetSkillName(int SkillNumber);

// The player's creature: its party shield, and the tests that the menus make.
int GetPlayerPartyFlag();
bool IsPlayerSkulled();
bool IsPlayerInGuildWar();
bool IsPartyLeader();
bool IsPartyMember();
bool IsSharedExperienceActive();
bool IsPlayerMounted();

// The cooldowns, in the order in which they were set.
const std::vector<TSpellGroupDelay>& GetSpellGroupDelays();
const std::vector<TSpellDelay>& GetSpellDelays();
// Drops the spells whose cooldown has ended.
void RemoveExpiredSpells();
std::string GetSpellGroupName(int SpellGroup);
std::string GetSpellName(int Spell);
// The skin picture of a spell's cooldown bar, 0 for none.
int GetSpellPicture(int Spell);
