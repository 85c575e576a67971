// The player's numbers: levels and experience, the experience rate on a
// simulated calendar, stamina, skills, cooldowns on simulated program time,
// the party tests on the player's creature, and the player messages reaching
// the model through the readers' default sink.
#include "world/Player.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "core/Clock.h"
#include "net/Login.h"
#include "tests/world/PlayerMessageFixture.h"
#include "tests/world/WorldTest.h"
#include "world/Creatures.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing_world::FailureReport;

// Some Tuesday at 12:00:00, a whole minute.
constexpr std::int64_t CALENDAR_START = 1'700'000'040;

class PlayerTest : public testing_world::TTimedTest {
 protected:
  void SetUp() override {
    TTimedTest::SetUp();
    SetCalendarSource(m_Calendar);
    InitCreatures();
    Advance(1000);  // cooldowns start at a program time above 0
  }
  void TearDown() override {
    ExitCreatures();
    SetCalendarSource(nullptr);
    TTimedTest::TearDown();
  }

  void AdvanceMinutes(int Minutes) { m_Calendar->AdvanceMilliseconds(Minutes * 60'000LL); }

  static int Rate() {
    std::int64_t Left = 0, Minutes = 0;
    int Rate = 0;
    GetExperienceInfo(Left, Rate, Minutes);
    return Rate;
  }

 private:
  std::shared_ptr<TManualClock> m_Calendar = std::make_shared<TManualClock>(CALENDAR_START * 1'000'000'000);
};

std::vector<int> SpellOrder() {
  std::vector<int> Spells;
  for (const TSpellDelay& Entry : GetSpellDelays()) Spells.push_back(Entry.Spell);
  return Spells;
}

// ---- Levels and experience

TEST_F(PlayerTest, ExperienceForLevel) {
  EXPECT_EQ(ExperienceForLevel(1), 0);
  EXPECT_EQ(ExperienceForLevel(2), 100);
  EXPECT_EQ(ExperienceForLevel(8), 4200);
  EXPECT_EQ(ExperienceForLevel(0), 0x7FFFFFFF);
  EXPECT_EQ(ExperienceForLevel(-3), 0x7FFFFFFF);
  EXPECT_EQ(ExperienceForLevel(1000), 16'566'949'800LL) << "in 64 bits";
}

TEST_F(PlayerTest, FirstValueOfAGameShowsNoRate) {
  SetExperience(8, 0, 4200);
  EXPECT_EQ(Rate(), 0);
  EXPECT_EQ(GetPlayerStats().Level, 8);
  EXPECT_EQ(GetPlayerStats().Experience, 4200);
}

TEST_F(PlayerTest, GainsOfOneMinuteAddUp) {
  SetExperience(8, 0, 4200);
  AdvanceMinutes(1);
  SetExperience(8, 5, 4300);
  EXPECT_EQ(Rate(), 400);
  SetExperience(8, 10, 4400);
  EXPECT_EQ(Rate(), 800);
}

TEST_F(PlayerTest, RateCountsFifteenMinutesAndFallsToZeroAfterSixteen) {
  SetExperience(8, 0, 4200);
  SetExperience(8, 0, 4500);  // 300 in the first minute
  AdvanceMinutes(5);
  SetExperience(8, 0, 4800);  // 300 more
  EXPECT_EQ(Rate(), 2400);
  AdvanceMinutes(10);
  EXPECT_EQ(Rate(), 2400) << "the first minute's slot is still in place";
  AdvanceMinutes(1);
  EXPECT_EQ(Rate(), 1200);
  AdvanceMinutes(5);
  std::int64_t Left = 0, Minutes = -1;
  int Rate = -1;
  GetExperienceInfo(Left, Rate, Minutes);
  EXPECT_EQ(Rate, 0);
  EXPECT_EQ(Minutes, 0);
  EXPECT_EQ(Left, ExperienceForLevel(9) - 4800);
}

TEST_F(PlayerTest, MinutesToTheNextLevelAtTheRate) {
  SetExperience(8, 0, 4200);
  SetExperience(8, 0, 4700);  // 500 a minute is 2000 an hour
  std::int64_t Left = 0, Minutes = 0;
  int Rate = 0;
  GetExperienceInfo(Left, Rate, Minutes);
  EXPECT_EQ(Left, 6400 - 4700);
  EXPECT_EQ(Rate, 2000);
  EXPECT_EQ(Minutes, 1700 * 60 / 2000);
}

TEST_F(PlayerTest, DeathClearsTheRateAndStoresTheNewValue) {
  SetExperience(8, 0, 4200);
  SetExperience(8, 50, 5000);
  ASSERT_GT(Rate(), 0);
  SetExperience(7, 90, 4000);
  EXPECT_EQ(Rate(), 0);
  EXPECT_EQ(GetPlayerStats().Experience, 4000);
  EXPECT_EQ(GetPlayerStats().Level, 7);
  SetExperience(7, 91, 4100);
  EXPECT_EQ(Rate(), 400) << "gains count again after the death";
}

TEST_F(PlayerTest, ResetExperienceCounter) {
  SetExperience(8, 0, 4200);
  SetExperience(8, 0, 4300);
  ResetExperienceCounter();
  EXPECT_EQ(Rate(), 0);
}

TEST_F(PlayerTest, ProgressOutsideItsRangeFails) {
  EXPECT_THAT(FailureReport([] { SetExperience(1, 101, 0); }), HasSubstr("In(Progress,-1,100) [bug0000038]"));
  EXPECT_THAT(FailureReport([] { SetMagicLevel(1, -2); }), HasSubstr("In(Progress,-1,100) [bug0000038]"));
  EXPECT_EQ(FailureReport([] { SetExperience(1, -1, 0); }), "(no failure)") << "-1: no bar";
  EXPECT_THAT(FailureReport([] { SetSkill(0, 10, -1); }), HasSubstr("In(Progress,0,100)"));
}

// ---- Stamina and skills

TEST_F(PlayerTest, StaminaStates) {
  const std::pair<int, int> Cases[] = {{-5, -2}, {0, -2}, {1, -1}, {840, -1}, {841, 0}, {2400, 0}, {2401, 1}};
  for (const auto& [Minutes, State] : Cases) {
    SetStamina(Minutes);
    EXPECT_EQ(GetStaminaState(), State) << Minutes;
  }
}

TEST_F(PlayerTest, SkillsByNumber) {
  SetSkill(2, 55, 40);
  EXPECT_EQ(GetSkillLevel(2), 55);
  EXPECT_EQ(GetSkillProgress(2), 40);
  EXPECT_EQ(GetSkillName(0), "Fist Fighting");
  EXPECT_EQ(GetSkillName(4), "Distance Fighting");
  EXPECT_EQ(GetSkillName(6), "Fishing");
  EXPECT_THAT(FailureReport([] { SetSkill(7, 1, 0); }), HasSubstr("In(SkillNumber,0,SKILLS-1)"));
  EXPECT_THAT(FailureReport([] { GetSkillName(7); }), HasSubstr("In(SkillNumber,0,SKILLS-1)"));
  EXPECT_THAT(FailureReport([] { GetSkillLevel(-1); }), HasSubstr("In(SkillNumber,0,SKILLS-1)"));
}

// ---- Cooldowns

TEST_F(PlayerTest, GroupsStandFromTheStartAndTakeEveryDelay) {
  ASSERT_EQ(GetSpellGroupDelays().size(), 4u);
  for (int Group = 1; Group <= 4; ++Group) {
    const TSpellGroupDelay& Entry = GetSpellGroupDelays()[static_cast<size_t>(Group - 1)];
    EXPECT_EQ(Entry.m_SpellGroup, Group);
    EXPECT_EQ(Entry.EndTime, 0);
  }
  SetSpellGroupDelay(2, 4000);
  SetSpellGroupDelay(2, 1000);  // a shorter one replaces it all the same
  EXPECT_EQ(GetSpellGroupDelays()[1].StartTime, 1000);
  EXPECT_EQ(GetSpellGroupDelays()[1].EndTime, 2000);
  Advance(5000);
  RemoveExpiredSpells();
  EXPECT_EQ(GetSpellGroupDelays().size(), 4u) << "groups are never removed";
}

TEST_F(PlayerTest, GroupDelayChecks) {
  EXPECT_THAT(FailureReport([] { SetSpellGroupDelay(0, 10); }), HasSubstr("SpellGroup > SPELLGROUP_NONE"));
  EXPECT_THAT(FailureReport([] { SetSpellGroupDelay(5, 10); }), HasSubstr("SpellGroup < SPELLGROUP_BEYONDLAST"));
  EXPECT_THAT(FailureReport([] { SetSpellGroupDelay(1, 0); }), HasSubstr("Delay > 0"));
}

TEST_F(PlayerTest, AShorterSpellDelayLeavesALongerOneAndALongerOneMovesToTheEnd) {
  SetSpellDelay(23, 5000);
  SetSpellDelay(1, 2000);
  SetSpellDelay(23, 1000);
  EXPECT_THAT(SpellOrder(), ElementsAre(23, 1));
  EXPECT_EQ(GetSpellDelays()[0].EndTime, 6000);
  SetSpellDelay(23, 6000);
  EXPECT_THAT(SpellOrder(), ElementsAre(1, 23));
  EXPECT_EQ(GetSpellDelays()[1].StartTime, 1000);
  EXPECT_EQ(GetSpellDelays()[1].EndTime, 7000);
}

TEST_F(PlayerTest, ExpiredSpellsGo) {
  SetSpellDelay(1, 2000);
  SetSpellDelay(2, 500);
  Advance(500);
  RemoveExpiredSpells();
  EXPECT_THAT(SpellOrder(), ElementsAre(1, 2)) << "an end at this very moment is not past yet";
  Advance(1);
  SetSpellDelay(3, 100);
  EXPECT_THAT(SpellOrder(), ElementsAre(1, 3));
}

TEST_F(PlayerTest, SpellDelayChecks) {
  EXPECT_THAT(FailureReport([] { SetSpellDelay(0, 10); }), HasSubstr("Spell > SPELL_NONE"));
  EXPECT_THAT(FailureReport([] { SetSpellDelay(170, 10); }), HasSubstr("Spell < SPELL_BEYONDLAST"));
  EXPECT_THAT(FailureReport([] { SetSpellDelay(5, -1); }), HasSubstr("Delay > 0"));
}

TEST_F(PlayerTest, ACooldownAtProgramTimeZeroFails) {
  SetClockSource(std::make_shared<TManualClock>());
  EXPECT_THAT(FailureReport([] { SetSpellDelay(5, 10); }), HasSubstr("Now > 0"));
}

TEST_F(PlayerTest, MultiUseDelay) {
  SetMultiUseDelay(1500);
  EXPECT_EQ(GetPlayerStats().MultiUseEnd, 2500);
}

TEST_F(PlayerTest, SpellNamesAndPictures) {
  EXPECT_EQ(GetSpellGroupName(1), "Attack");
  EXPECT_EQ(GetSpellGroupName(4), "Special");
  EXPECT_EQ(GetSpellGroupName(0), "Unknown");
  EXPECT_EQ(GetSpellGroupName(5), "Unknown");
  EXPECT_EQ(GetSpellName(1), "Light Healing");
  EXPECT_EQ(GetSpellName(24), "Hell's Core");
  EXPECT_EQ(GetSpellName(168), "Practise Magic Missle Rune");
  EXPECT_EQ(GetSpellName(169), "Apprentice's Strike");
  EXPECT_EQ(GetSpellName(34), "Unknown") << "a gap in the numbers";
  EXPECT_EQ(GetSpellName(0), "Unknown");
  EXPECT_EQ(GetSpellName(170), "Unknown");
  EXPECT_EQ(GetSpellPicture(1), 341);
  EXPECT_EQ(GetSpellPicture(169), 396);
  EXPECT_EQ(GetSpellPicture(4), 0);
}

// ---- The player's state as a whole

TEST_F(PlayerTest, ClearCreaturesZeroesAllButTheProfession) {
  SetProfession(3);
  SetHitPoints(150, 185);
  SetPlayerStateFlags(0x41);
  SetSkill(1, 30, 2);
  SetExperience(8, 0, 4200);
  SetExperience(8, 0, 4300);
  SetSpellDelay(5, 1000);
  SetSpellGroupDelay(1, 1000);
  ClearCreatures();
  EXPECT_EQ(GetPlayerStats().Profession, 3);
  EXPECT_EQ(GetPlayerStats().HitPoints, 0);
  EXPECT_EQ(GetPlayerStats().PlayerStateFlags, 0u);
  EXPECT_EQ(GetSkillLevel(1), 0);
  EXPECT_EQ(GetPlayerStats().Experience, 0);
  EXPECT_EQ(Rate(), 0);
  EXPECT_TRUE(GetSpellDelays().empty());
  ASSERT_EQ(GetSpellGroupDelays().size(), 4u);
  EXPECT_EQ(GetSpellGroupDelays()[0].EndTime, 0);
}

// ---- The readers reach the model

constexpr std::uint32_t PLAYER = 0x10000005;

class PlayerWiringTest : public testing_player::TPlayerMessageTest {
 protected:
  void SetUp() override {
    TPlayerMessageTest::SetUp();
    SetPlayerMessageSink(nullptr);  // the readers' own sink: the player state
    InitLogin(false);
    InitCreatures();
    Advance(1000);
  }
  void TearDown() override {
    ExitCreatures();
    ExitLogin();
    TPlayerMessageTest::TearDown();
  }

  // SLOGINSUCCESS names the player's creature.
  static void LogIn() {
    testing_player::TPayload P;
    P.U8(SLOGINSUCCESS).U32(PLAYER).U16(50);
    for (int I = 0; I < 3; ++I) P.U8(0).U32(0x7FFFFFFF);
    Receive(P.U8(0).U8(0));
  }
};

TEST_F(PlayerWiringTest, PartyTestsReadThePlayersCreature) {
  EXPECT_THAT(FailureReport([] { IsPartyLeader(); }), HasSubstr("Player != NULL"));
  LogIn();
  EXPECT_EQ(GetPlayerID(), PLAYER);
  EXPECT_THAT(FailureReport([] { IsPlayerMounted(); }), HasSubstr("Player != NULL"));
  TCreature& Player = NewCreature(0, PLAYER);
  const auto Flags = [&](int Party) {
    Player.PARTYFlag = Party;
    return std::vector<bool>{IsPartyLeader(), IsPartyMember(), IsSharedExperienceActive()};
  };
  EXPECT_EQ(Flags(0), (std::vector<bool>{false, false, false}));
  EXPECT_EQ(Flags(1), (std::vector<bool>{true, true, false}));
  EXPECT_EQ(Flags(2), (std::vector<bool>{false, false, false}));
  EXPECT_EQ(Flags(3), (std::vector<bool>{false, true, false}));
  EXPECT_EQ(Flags(5), (std::vector<bool>{false, true, true}));
  EXPECT_EQ(Flags(6), (std::vector<bool>{true, true, true}));
  EXPECT_EQ(Flags(10), (std::vector<bool>{true, true, true}));
  EXPECT_EQ(Flags(11), (std::vector<bool>{false, false, false}));
  EXPECT_EQ(GetPlayerPartyFlag(), 11);
  Player.GUILDFlag = 4;
  EXPECT_FALSE(IsPlayerInGuildWar());
  Player.GUILDFlag = 2;
  EXPECT_TRUE(IsPlayerInGuildWar());
  EXPECT_FALSE(IsPlayerSkulled());
  Player.PKFlag = 3;
  EXPECT_TRUE(IsPlayerSkulled());
  EXPECT_FALSE(IsPlayerMounted());
  Player.MountOutfitType = 2;
  EXPECT_TRUE(IsPlayerMounted());
}

TEST_F(PlayerWiringTest, PlayerMessagesSetTheNumbers) {
  testing_player::TPayload P;
  P.U8(SPLAYERDATABASIC).U8(1).U32(1700000000).U8(2).U16(2).U8(7).U8(8);
  P.U8(SPLAYERDATACURRENT).U16(150).U16(185).U32(41000).U32(0);
  P.U64(4200).U16(8).U8(42);
  P.U16(90).U16(95).U8(3).U8(0).U8(17);
  P.U8(100).U16(2520).U16(0).U16(0).U16(720);
  P.U8(SPLAYERSKILLS);
  for (int Skill = 0; Skill < SKILLS; ++Skill) P.U16(10 + Skill).U16(0).U8(Skill * 10);
  P.U8(SPLAYERSTATE).U16(0x0102);
  P.U8(SSPELLDELAY).U8(23).U32(2000);
  P.U8(SSPELLGROUPDELAY).U8(1).U32(4000);
  P.U8(SMULTIUSEDELAY).U32(1000);
  Receive(P);

  const TPlayerStats& S = GetPlayerStats();
  EXPECT_TRUE(S.PremiumAccount);
  EXPECT_EQ(S.PremiumUntil, 1700000000);
  EXPECT_EQ(S.Profession, 2);
  EXPECT_EQ(S.HitPoints, 150);
  EXPECT_EQ(S.MaxHitPoints, 185);
  EXPECT_EQ(S.FreeCapacity, 41000);
  EXPECT_EQ(S.Experience, 4200);
  EXPECT_EQ(S.Level, 8);
  EXPECT_EQ(S.LevelProgress, 42);
  EXPECT_EQ(S.Mana, 90);
  EXPECT_EQ(S.MaxMana, 95);
  EXPECT_EQ(S.MagicLevel, 3);
  EXPECT_EQ(S.MagicProgress, 17);
  EXPECT_EQ(S.SoulPoints, 100);
  EXPECT_EQ(S.Stamina, 2520);
  EXPECT_EQ(S.OfflineTraining, 720);
  EXPECT_EQ(GetSkillLevel(6), 16);
  EXPECT_EQ(GetSkillProgress(6), 60);
  EXPECT_EQ(S.PlayerStateFlags, 0x0102u);
  ASSERT_EQ(GetSpellDelays().size(), 1u);
  EXPECT_EQ(GetSpellDelays()[0].Spell, 23);
  EXPECT_EQ(GetSpellDelays()[0].EndTime, 3000);
  EXPECT_EQ(GetSpellGroupDelays()[0].EndTime, 5000);
  EXPECT_EQ(S.MultiUseEnd, 2000);
}

TEST_F(PlayerWiringTest, AProgressAboveHundredFromTheServerFails) {
  testing_player::TPayload P;
  P.U8(SPLAYERDATACURRENT).U16(1).U16(1).U32(0).U32(0).U64(0).U16(1).U8(101);
  P.U16(0).U16(0).U8(0).U8(0).U8(0).U8(0).U16(0).U16(0).U16(0).U16(0);
  EXPECT_THAT(FailureOf(P), FailsWith("In(Progress,-1,100) [bug0000038]"));
}

}  // namespace
