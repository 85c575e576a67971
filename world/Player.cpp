#include "world/Player.h"

#include <algorithm>
#include <initializer_list>
#include <map>
#include <memory>

#include "core/Clock.h"
#include "core/Exception.h"
#include "net/Login.h"
#include "world/Creatures.h"

namespace {

struct TExperienceSlot {
  int Minute = 0;
  int Gain = 0;
};

struct TPlayerState {
  TPlayerStats Stats;
  std::array<TExperienceSlot, EXPERIENCE_SLOTS> Slots{};
  int CurrentMinute = 0;
  int ExperiencePerHour = 0;
  std::vector<TSpellGroupDelay> SpellGroups;
  std::vector<TSpellDelay> Spells;
};

std::unique_ptr<TPlayerState> State;

TPlayerState& Player() {
  Check(State != nullptr, "Player!=NULL");
  return *State;
}

void CheckProgress(int Progress, std::source_location Where = std::source_location::current()) {
  Check(Progress >= -1 && Progress <= 100, "In(Progress,-1,100) [bug0000038]", {"Progress", Progress}, Where);
}

void CheckSkillNumber(int SkillNumber, std::source_location Where = std::source_location::current()) {
  Check(SkillNumber >= 0 && SkillNumber <= SKILLS - 1, "In(SkillNumber,0,SKILLS-1)", {"SkillNumber", SkillNumber},
        Where);
}

// ---- Experience rate

int PresentMinute() { return static_cast<int>(CalendarSeconds() / 60); }

void ClearRate(TPlayerState& P) {
  P.Slots.fill({});
  P.CurrentMinute = 0;
  P.ExperiencePerHour = 0;
}

// The gain of the last fifteen minutes, and of the sixteenth while its slot
// still holds it, scaled to an hour.
void ComputeRate(TPlayerState& P, int Minute) {
  P.CurrentMinute = Minute;
  std::int64_t Sum = 0;
  for (const TExperienceSlot& Slot : P.Slots) {
    if (Slot.Minute + EXPERIENCE_SLOTS >= Minute) Sum += Slot.Gain;
  }
  P.ExperiencePerHour = static_cast<int>(Sum * 60 / EXPERIENCE_SLOTS);
}

void AddGain(TPlayerState& P, int Gain) {
  const int Minute = PresentMinute();
  TExperienceSlot& Slot = P.Slots[static_cast<size_t>(Minute % EXPERIENCE_SLOTS)];
  if (Minute == P.CurrentMinute && Slot.Minute == Minute) {
    P.ExperiencePerHour += static_cast<int>(std::int64_t{Gain} * 60 / EXPERIENCE_SLOTS);
    Slot.Gain += Gain;
    return;
  }
  Slot = {Minute, Gain};
  ComputeRate(P, Minute);
}

// ---- Cooldowns

TSpellGroupDelay MakeGroupDelay(int SpellGroup, int Now, int Delay) {
  Check(Now > 0, "Now > 0", {"Now", Now});
  Check(Delay > 0, "Delay > 0", {"Delay", Delay});
  return {SpellGroup, Now, Now + Delay};
}

TSpellDelay MakeSpellDelay(int Spell, int Now, int Delay) {
  Check(Now > 0, "Now > 0", {"Now", Now});
  Check(Delay > 0, "Delay > 0", {"Delay", Delay});
  return {Spell, Now, Now + Delay};
}

void ResetSpellGroups(TPlayerState& P) {
  P.SpellGroups.clear();
  for (int Group = SPELLGROUP_NONE + 1; Group < SPELLGROUP_BEYONDLAST; ++Group) P.SpellGroups.push_back({Group, 0, 0});
}

const TCreature& PlayerCreature(std::source_location Where = std::source_location::current()) {
  const TCreature* Creature = FindPlayer();
  Check(Creature != nullptr, "Player != NULL", Where);
  return *Creature;
}

bool PartyFlagIn(std::initializer_list<int> Flags) {
  const int Flag = PlayerCreature().PARTYFlag;
  return std::find(Flags.begin(), Flags.end(), Flag) != Flags.end();
}

const std::map<int, const char*>& SpellNames() {
  static const std::map<int, const char*> Names{
      {1, "Light Healing"}, {2, "Intense Healing"}, {3, "Ultimate Healing"}, {4, "Intense Healing Rune"},
      {5, "Ultimate Healing Rune"}, {6, "Haste"}, {7, "Light Magic Missile"}, {8, "Heavy Magic Missile"},
      {9, "Summon Creature"}, {10, "Light"}, {11, "Great Light"}, {12, "Convince Creature"},
      {13, "Energy Wave"}, {14, "Chameleon"}, {15, "Fireball"}, {16, "Great Fireball"}, {17, "Firebomb"},
      {18, "Explosion"}, {19, "Fire Wave"}, {20, "Find Person"}, {21, "Sudden Death"}, {22, "Energy Beam"},
      {23, "Great Energy Beam"}, {24, "Hell's Core"}, {25, "Fire Field"}, {26, "Poison Field"},
      {27, "Energy Field"}, {28, "Fire Wall"}, {29, "Cure Poison"}, {30, "Destroy Field"},
      {31, "Antidote Rune"}, {32, "Poison Wall"}, {33, "Energy Wall"}, {36, "Salvation"}, {37, "Move"},
      {38, "Creature Illusion"}, {39, "Strong Haste"}, {42, "Food"}, {43, "Strong Ice Wave"},
      {44, "Magic Shield"}, {45, "Invisible"}, {48, "Poisoned Arrow"}, {49, "Explosive Arrow"},
      {50, "Soulfire"}, {51, "Conjure Arrow"}, {52, "Retrieve Friend"}, {54, "Paralyse"},
      {55, "Energybomb"}, {56, "Wrath of Nature"}, {57, "Strong Ethereal Spear"}, {59, "Front Sweep"},
      {61, "Brutal Strike"}, {62, "Annihilation"}, {71, "Invite Guests"}, {72, "Invite Subowners"},
      {73, "Kick Guest"}, {74, "Edit Door"}, {75, "Ultimate Light"}, {76, "Magic Rope"}, {77, "Stalagmite"},
      {78, "Disintegrate"}, {79, "Conjure Bolt"}, {80, "Berserk"}, {81, "Levitate"}, {82, "Mass Healing"},
      {83, "Animate Dead"}, {84, "Heal Friend"}, {85, "Undead Legion"}, {86, "Magic Wall"},
      {87, "Death Strike"}, {88, "Energy Strike"}, {89, "Flame Strike"}, {90, "Cancel Invisibility"},
      {91, "Poisonbomb"}, {92, "Enchant Staff"}, {93, "Challenge"}, {94, "Wild Growth"}, {95, "Power Bolt"},
      {105, "Fierce Berserk"}, {106, "Groundshaker"}, {107, "Whirlwind Throw"}, {108, "Sniper Arrow"},
      {109, "Piercing Bolt"}, {110, "Enchant Spear"}, {111, "Ethereal Spear"}, {112, "Ice Strike"},
      {113, "Terra Strike"}, {114, "Icicle"}, {115, "Avalanche"}, {116, "Stone Shower"},
      {117, "Thunderstorm"}, {118, "Eternal Winter"}, {119, "Rage of the Skies"}, {120, "Terra Wave"},
      {121, "Ice Wave"}, {122, "Divine Missile"}, {123, "Wound Cleansing"}, {124, "Divine Caldera"},
      {125, "Divine Healing"}, {126, "Train Party"}, {127, "Protect Party"}, {128, "Heal Party"},
      {129, "Enchant Party"}, {130, "Holy Missile"}, {131, "Charge"}, {132, "Protector"},
      {133, "Blood Rage"}, {134, "Swift Foot"}, {135, "Sharpshooter"}, {138, "Ignite"}, {139, "Curse"},
      {140, "Electrify"}, {141, "Inflict Wound"}, {142, "Envenom"}, {143, "Holy Flash"},
      {144, "Cure Bleeding"}, {145, "Cure Burning"}, {146, "Cure Electrification"}, {147, "Cure Curse"},
      {148, "Physical Strike"}, {149, "Lightning"}, {150, "Strong Flame Strike"},
      {151, "Strong Energy Strike"}, {152, "Strong Ice Strike"}, {153, "Strong Terra Strike"},
      {154, "Ultimate Flame Strike"}, {155, "Ultimate Energy Strike"}, {156, "Ultimate Ice Strike"},
      {157, "Ultimate Terra Strike"}, {158, "Intense Wound Cleansing"}, {159, "Recovery"},
      {160, "Intense Recovery"}, {166, "Practise Healing"}, {167, "Practise Fire Wave"},
      {168, "Practise Magic Missle Rune"}, {169, "Apprentice's Strike"}};
  return Names;
}

const std::map<int, int>& SpellPictures() {
  static const std::map<int, int> Pictures{
      {1, 341},   {2, 342},   {3, 336},   {13, 378},  {19, 379},  {22, 376},  {23, 377},  {24, 384},
      {29, 345},  {36, 395},  {43, 381},  {56, 383},  {57, 394},  {59, 355},  {61, 358},  {62, 359},
      {80, 356},  {82, 344},  {84, 343},  {87, 373},  {88, 364},  {89, 361},  {105, 357}, {106, 360},
      {107, 354}, {111, 353}, {112, 367}, {113, 370}, {118, 385}, {119, 387}, {120, 382}, {121, 380},
      {122, 374}, {123, 338}, {124, 375}, {125, 337}, {138, 390}, {139, 389}, {140, 391}, {141, 392},
      {142, 393}, {143, 388}, {144, 347}, {145, 348}, {146, 349}, {147, 346}, {148, 352}, {149, 386},
      {150, 362}, {151, 365}, {152, 368}, {153, 371}, {154, 363}, {155, 366}, {156, 369}, {157, 372},
      {158, 339}, {159, 350}, {160, 351}, {166, 398}, {167, 397}, {169, 396}};
  return Pictures;
}

}  // namespace

void InitPlayer() {
  State = std::make_unique<TPlayerState>();
  ResetSpellGroups(*State);
}

void ExitPlayer() { State.reset(); }

void ClearPlayer() {
  TPlayerState& P = Player();
  const int Profession = P.Stats.Profession;
  P.Stats = TPlayerStats{};
  P.Stats.Profession = Profession;
  ClearRate(P);
  P.Spells.clear();
  ResetSpellGroups(P);
}

std::uint32_t GetPlayerID() { return GetSessionInfo().PlayerId; }
const TPlayerStats& GetPlayerStats() { return Player().Stats; }

void SetHitPoints(int HitPoints, int MaxHitPoints) {
  Player().Stats.HitPoints = HitPoints;
  Player().Stats.MaxHitPoints = MaxHitPoints;
}

void SetMana(int Mana, int MaxMana) {
  Player().Stats.Mana = Mana;
  Player().Stats.MaxMana = MaxMana;
}

void SetFreeCapacity(int FreeCapacity) { Player().Stats.FreeCapacity = FreeCapacity; }
void SetSoulPoints(int SoulPoints) { Player().Stats.SoulPoints = SoulPoints; }
void SetStamina(int Minutes) { Player().Stats.Stamina = Minutes; }
void SetOfflineTraining(int Minutes) { Player().Stats.OfflineTraining = Minutes; }
void SetPlayerStateFlags(std::uint32_t Flags) { Player().Stats.PlayerStateFlags = Flags; }
void SetProfession(int Profession) { Player().Stats.Profession = Profession; }

void SetPremium(bool PremiumAccount, std::int64_t PremiumUntil) {
  Player().Stats.PremiumAccount = PremiumAccount;
  Player().Stats.PremiumUntil = PremiumUntil;
}

// A fall (a death) starts the rate afresh; the first value of a game adds nothing.
void SetExperience(int Level, int Progress, std::int64_t Experience) {
  CheckProgress(Progress);
  TPlayerState& P = Player();
  if (Experience < P.Stats.Experience) {
    ClearRate(P);
  } else if (P.Stats.Experience != 0) {
    AddGain(P, static_cast<int>(Experience - P.Stats.Experience));
  }
  P.Stats.Experience = Experience;
  P.Stats.Level = Level;
  P.Stats.LevelProgress = Progress;
}

void SetMagicLevel(int Level, int Progress) {
  CheckProgress(Progress);
  Player().Stats.MagicLevel = Level;
  Player().Stats.MagicProgress = Progress;
}

void SetSkill(int Skill, int Level, int Progress) {
  CheckSkillNumber(Skill);
  Check(Progress >= 0 && Progress <= 100, "In(Progress,0,100)", {"Progress", Progress});
  Player().Stats.SkillLevel[static_cast<size_t>(Skill)] = Level;
  Player().Stats.SkillProgress[static_cast<size_t>(Skill)] = Progress;
}

void SetSpellGroupDelay(int SpellGroup, int Delay) {
  Check(SpellGroup > SPELLGROUP_NONE, "SpellGroup > SPELLGROUP_NONE", {"SpellGroup", SpellGroup});
  Check(SpellGroup < SPELLGROUP_BEYONDLAST, "SpellGroup < SPELLGROUP_BEYONDLAST", {"SpellGroup", SpellGroup});
  Check(Delay > 0, "Delay > 0", {"Delay", Delay});
  for (TSpellGroupDelay& Entry : Player().SpellGroups) {
    if (Entry.m_SpellGroup == SpellGroup) Entry = MakeGroupDelay(SpellGroup, GetProgramTime(), Delay);
  }
}

// A shorter delay doesn't cut a longer one that runs; a longer one moves the
// spell to the end of the list.
void SetSpellDelay(int Spell, int Delay) {
  Check(Spell > SPELL_NONE, "Spell > SPELL_NONE", {"Spell", Spell});
  Check(Spell < SPELL_BEYONDLAST, "Spell < SPELL_BEYONDLAST", {"Spell", Spell});
  Check(Delay > 0, "Delay > 0", {"Delay", Delay});
  RemoveExpiredSpells();
  const int Now = GetProgramTime();
  auto& Spells = Player().Spells;
  const auto Found = std::find_if(Spells.begin(), Spells.end(), [&](const TSpellDelay& E) { return E.Spell == Spell; });
  if (Found != Spells.end()) {
    if (Found->EndTime >= Now + Delay) return;
    Spells.erase(Found);
  }
  Spells.push_back(MakeSpellDelay(Spell, Now, Delay));
}

void SetMultiUseDelay(int Delay) { Player().Stats.MultiUseEnd = GetProgramTime() + Delay; }

std::int64_t ExperienceForLevel(int Level) {
  if (Level < 1) return 0x7FFFFFFF;
  const std::int64_t L = Level;
  return (((L - 6) * L + 17) * L - 12) / 6 * 100;
}

void GetExperienceInfo(std::int64_t& Left, int& Rate, std::int64_t& MinutesToNext) {
  TPlayerState& P = Player();
  Left = ExperienceForLevel(P.Stats.Level + 1) - P.Stats.Experience;
  const int Minute = PresentMinute();
  if (Minute != P.CurrentMinute) ComputeRate(P, Minute);
  Rate = P.ExperiencePerHour;
  MinutesToNext = Rate <= 0 ? 0 : Left * 60 / Rate;
}

void ResetExperienceCounter() { ClearRate(Player()); }

int GetStaminaState() {
  const int Stamina = Player().Stats.Stamina;
  if (Stamina <= 0) return -2;
  if (Stamina <= 840) return -1;
  if (Stamina <= 2400) return 0;
  return 1;
}

int GetSkillLevel(int SkillNumber) {
  CheckSkillNumber(SkillNumber);
  return Player().Stats.SkillLevel[static_cast<size_t>(SkillNumber)];
}

int GetSkillProgress(int SkillNumber) {
  CheckSkillNumber(SkillNumber);
  return Player().Stats.SkillProgress[static_cast<size_t>(SkillNumber)];
}

std::string GetSkillName(int SkillNumber) {
  static const std::array<const char*, SKILLS> Names{"Fist Fighting", "Club Fighting", "Sword Fighting",
                                                     "Axe Fighting", "Distance Fighting", "Shielding",
                                                     "Fishing"};
  CheckSkillNumber(SkillNumber);
  return Names[static_cast<size_t>(SkillNumber)];
}

int GetPlayerPartyFlag() { return PlayerCreature().PARTYFlag; }
bool IsPlayerSkulled() { return PlayerCreature().PKFlag != 0; }

bool IsPlayerInGuildWar() {
  const int Flag = PlayerCreature().GUILDFlag;
  return Flag != 0 && Flag != 4;
}

bool IsPartyLeader() { return PartyFlagIn({1, 4, 6, 8, 10}); }
bool IsPartyMember() { return PartyFlagIn({1, 3, 4, 5, 6, 7, 8, 9, 10}); }

bool IsSharedExperienceActive() {
  const int Flag = PlayerCreature().PARTYFlag;
  return Flag >= 5 && Flag <= 10;
}

bool IsPlayerMounted() { return PlayerCreature().MountOutfitType != 0; }

const std::vector<TSpellGroupDelay>& GetSpellGroupDelays() { return Player().SpellGroups; }
const std::vector<TSpellDelay>& GetSpellDelays() { return Player().Spells; }

void RemoveExpiredSpells() {
  const int Now = GetProgramTime();
  std::erase_if(Player().Spells, [Now](const TSpellDelay& E) { return E.EndTime < Now; });
}

std::string GetSpellGroupName(int SpellGroup) {
  switch (SpellGroup) {
    case 1: return "Attack";
    case 2: return "Healing";
    case 3: return "Support";
    case 4: return "Special";
    default: return "Unknown";
  }
}

std::string GetSpellName(int Spell) {
  const auto Found = SpellNames().find(Spell);
  return Found != SpellNames().end() ? Found->second : "Unknown";
}

int GetSpellPicture(int Spell) {
  const auto Found = SpellPictures().find(Spell);
  return Found != SpellPictures().end() ? Found->second : 0;
}
