#include "world/PlayerMessages.h"

#include <string>
#include <vector>

#include "core/Exception.h"
#include "core/MessageQueue.h"
#include "core/Text.h"
#include "net/Commands.h"
#include "net/Communication.h"
#include "net/Connection.h"
#include "net/Network.h"
#include "world/Player.h"
#include "world/PlayerMessageReaders.h"
#include "world/WorldMessages.h"

namespace {

TPlayerMessageSink* InstalledSink = nullptr;

// ---- Session ----

void ReadDead() {
  const int Reduction = ReadU8();
  MessageQueue().Post(MSG_YOU_ARE_DEAD, Reduction);
  SetConnectionState(GAME_DEAD);
}

// ---- Containers and body ----

void ReadContainer() {
  TContainerRecord Container;
  Container.ContainerID = ReadU8();
  Container.Icon = ReadObject();
  Container.Name = ReadLimitedString(30);
  capitalize(Container.Name);
  Container.NumberOfSlotsPerPage = ReadU8();
  Container.HasParent = ReadU8() != 0;
  Container.DragAndDropAllowed = ReadU8() != 0;
  Container.IsPaginationEnabled = ReadU8() != 0;
  Container.NumberOfTotalObjects = ReadU16();
  Container.IndexOfFirstObject = ReadU16();
  const int NumberOfContentObjects = ReadU8();
  Check(NumberOfContentObjects <= Container.NumberOfSlotsPerPage,
        "NumberOfContentObjects <= NumberOfSlotsPerPage",
        {"NumberOfContentObjects", NumberOfContentObjects},
        {"NumberOfSlotsPerPage", Container.NumberOfSlotsPerPage});
  Check(NumberOfContentObjects <= Container.NumberOfTotalObjects,
        "NumberOfContentObjects <= NumberOfTotalObjects",
        {"NumberOfContentObjects", NumberOfContentObjects},
        {"NumberOfTotalObjects", Container.NumberOfTotalObjects});
  for (int i = 0; i < NumberOfContentObjects; ++i) Container.Objects.push_back(ReadObject());
  Check(PlayerMessageSink().OnContainer(Container), "ContainerView != NULL");
}

void ReadCloseContainer() { PlayerMessageSink().OnCloseContainer(ReadU8()); }

void ReadSetInventory() {
  const int Position = ReadU8();
  PlayerMessageSink().OnBodyObject(Position, ReadObject());
}

void ReadDeleteInventory() { PlayerMessageSink().OnBodyObject(ReadU8(), TObject{}); }

// ---- Editors ----

void ReadEditText() {
  TEditTextRecord Record;
  Record.TextID = ReadU32();
  Record.Object = ReadObject();
  Record.MaximumLength = ReadU16();
  Record.Text = ReadNewString();
  Record.Author = ReadNewString();
  Record.Date = ReadNewString();
  MessageQueue().Post(MSG_EDIT_TEXT, std::move(Record));
}

void ReadEditList() {
  TEditListRecord Record;
  Record.ListType = ReadU8();
  Record.ListID = ReadU32();
  Record.Text = ReadNewString();
  MessageQueue().Post(MSG_EDIT_LIST, std::move(Record));
}

// ---- Player numbers ----

void ReadPremiumTrigger() {
  std::vector<int> Triggers(ReadU8());
  for (int& Trigger : Triggers) Trigger = ReadU8();
  const bool Highlight = ReadU8() == 1;
  PlayerMessageSink().OnPremiumTrigger(Triggers, Highlight);
}

void ReadPlayerDataBasic() {
  TPlayerDataBasic Data;
  Data.PremiumAccount = ReadU8() == 1;
  Data.PremiumUntil = ReadU32();
  const int Profession = ReadU8();
  Data.Profession = Profession >= 1 && Profession <= 4 ? Profession : 0;
  PlayerMessageSink().OnPlayerDataBasic(Data);
  // The spells that the vocation knows; this client has no use for them.
  for (int Count = ReadU16(); Count > 0; --Count) ReadU8();
}

void ReadPlayerDataCurrent() {
  TPlayerDataCurrent Data;
  Data.HitPoints = ReadU16();
  Data.MaxHitPoints = ReadU16();
  Data.FreeCapacity = static_cast<int>(ReadU32());
  ReadU32();
  Data.Experience = static_cast<std::int64_t>(ReadU64());
  Data.Level = ReadU16();
  Data.LevelProgress = ReadU8();
  Data.Mana = ReadU16();
  Data.MaxMana = ReadU16();
  Data.MagicLevel = ReadU8();
  ReadU8();
  Data.MagicProgress = ReadU8();
  Data.SoulPoints = ReadU8();
  Data.Stamina = ReadU16();
  ReadU16();
  ReadU16();
  Data.OfflineTraining = ReadU16();
  PlayerMessageSink().OnPlayerDataCurrent(Data);
}

void ReadPlayerSkills() {
  TPlayerSkills Skills;
  for (int Skill = 0; Skill < SKILLS; ++Skill) {
    Skills.Level[Skill] = ReadU16();
    ReadU16();
    Skills.Progress[Skill] = ReadU8();
  }
  PlayerMessageSink().OnPlayerSkills(Skills);
}

void ReadPlayerState() { PlayerMessageSink().OnPlayerState(ReadU16()); }

// A late answer to an older attack or follow leaves a newer one alone.
void ReadClearTarget() {
  const std::uint32_t Sequence = ReadU32();
  TCombatTargets& Targets = CombatTargets();
  if (Sequence == 0 || Sequence == Targets.AttackSequence) Targets.AttackTarget = Targets.FollowTarget = 0;
}

void ReadSpellDelay() {
  const int Spell = ReadU8();
  PlayerMessageSink().OnSpellDelay(Spell, ReadU32());
}

void ReadSpellGroupDelay() {
  const int SpellGroup = ReadU8();
  PlayerMessageSink().OnSpellGroupDelay(SpellGroup, ReadU32());
}

void ReadMultiUseDelay() { PlayerMessageSink().OnMultiUseDelay(ReadU32()); }

void ReadSetTactics() {
  TTactics Tactics;
  Tactics.AttackMode = ReadU8();
  Tactics.ChaseMode = ReadU8();
  Tactics.SecureMode = ReadU8() != 0;
  Tactics.PvPMode = ReadU8();
  PlayerMessageSink().OnTactics(Tactics);
}

void ReadUnjustifiedPoints() {
  TUnjustPoints UnjustPoints;
  UnjustPoints.ProgressDay = ReadU8();
  UnjustPoints.KillsRemainingDay = ReadU8();
  UnjustPoints.ProgressWeek = ReadU8();
  UnjustPoints.KillsRemainingWeek = ReadU8();
  UnjustPoints.ProgressMonth = ReadU8();
  UnjustPoints.KillsRemainingMonth = ReadU8();
  UnjustPoints.SkullTime = ReadU8();
  Check(UnjustPoints.ProgressDay <= 100, "In(UnjustPoints.ProgressDay, 0, 100)",
        {"UnjustPoints.ProgressDay", UnjustPoints.ProgressDay});
  Check(UnjustPoints.ProgressWeek <= 100, "In(UnjustPoints.ProgressWeek, 0, 100)",
        {"UnjustPoints.ProgressWeek", UnjustPoints.ProgressWeek});
  Check(UnjustPoints.ProgressMonth <= 100, "In(UnjustPoints.ProgressMonth, 0, 100)",
        {"UnjustPoints.ProgressMonth", UnjustPoints.ProgressMonth});
  PlayerMessageSink().OnUnjustifiedPoints(UnjustPoints);
}

void ReadPvPSituations() { PlayerMessageSink().OnPvPSituations(ReadU8()); }

void InstallOwnReaders() {
  SetCommandReader(SDEAD, ReadDead);
  SetCommandReader(SCONTAINER, ReadContainer);
  SetCommandReader(SCLOSECONTAINER, ReadCloseContainer);
  SetCommandReader(SCREATEINCONTAINER, [] { ReadContainerObjectMessage(SCREATEINCONTAINER); });
  SetCommandReader(SCHANGEINCONTAINER, [] { ReadContainerObjectMessage(SCHANGEINCONTAINER); });
  SetCommandReader(SDELETEINCONTAINER, [] { ReadContainerObjectMessage(SDELETEINCONTAINER); });
  SetCommandReader(SSETINVENTORY, ReadSetInventory);
  SetCommandReader(SDELETEINVENTORY, ReadDeleteInventory);
  SetCommandReader(SEDITTEXT, ReadEditText);
  SetCommandReader(SEDITLIST, ReadEditList);
  SetCommandReader(SPREMIUMTRIGGER, ReadPremiumTrigger);
  SetCommandReader(SPLAYERDATABASIC, ReadPlayerDataBasic);
  SetCommandReader(SPLAYERDATACURRENT, ReadPlayerDataCurrent);
  SetCommandReader(SPLAYERSKILLS, ReadPlayerSkills);
  SetCommandReader(SPLAYERSTATE, ReadPlayerState);
  SetCommandReader(SCLEARTARGET, ReadClearTarget);
  SetCommandReader(SSPELLDELAY, ReadSpellDelay);
  SetCommandReader(SSPELLGROUPDELAY, ReadSpellGroupDelay);
  SetCommandReader(SMULTIUSEDELAY, ReadMultiUseDelay);
  SetCommandReader(SSETTACTICS, ReadSetTactics);
  SetCommandReader(SUNJUSTIFIEDPOINTS, ReadUnjustifiedPoints);
  SetCommandReader(SPVPSITUATIONS, ReadPvPSituations);
}

}  // namespace

TObject ReadObject() { return ReadObjectExtras(ReadU16()); }

void ReadContainerObjectMessage(int MessageType) {
  Check(MessageType == SCREATEINCONTAINER || MessageType == SCHANGEINCONTAINER ||
            MessageType == SDELETEINCONTAINER,
        "MessageType == SCREATEINCONTAINER || MessageType == SCHANGEINCONTAINER || "
        "MessageType == SDELETEINCONTAINER",
        {"MessageType", MessageType});
  TContainerObjectRecord Record;
  Record.MessageType = MessageType;
  Record.ContainerID = ReadU8();
  Record.Index = ReadU16();
  // A delete without an object to move into view has no extras.
  const int Type = ReadU16();
  if (Type != 0) Record.Object = ReadObjectExtras(Type);
  PlayerMessageSink().OnContainerObject(Record);
}

void InstallPlayerMessageReaders() {
  InstallOwnReaders();
  InstallTradeMessageReaders();
  InstallChannelMessageReaders();
  InstallListMessageReaders();
  InstallMarketMessageReaders();
}

// ---- The player state's part of the sink

void TPlayerMessageSink::OnPlayerDataBasic(const TPlayerDataBasic& Data) {
  SetPremium(Data.PremiumAccount, Data.PremiumUntil);
  SetProfession(Data.Profession);
}

void TPlayerMessageSink::OnPlayerDataCurrent(const TPlayerDataCurrent& Data) {
  SetHitPoints(Data.HitPoints, Data.MaxHitPoints);
  SetFreeCapacity(Data.FreeCapacity);
  SetExperience(Data.Level, Data.LevelProgress, Data.Experience);
  SetMana(Data.Mana, Data.MaxMana);
  SetMagicLevel(Data.MagicLevel, Data.MagicProgress);
  SetSoulPoints(Data.SoulPoints);
  SetStamina(Data.Stamina);
  SetOfflineTraining(Data.OfflineTraining);
}

void TPlayerMessageSink::OnPlayerSkills(const TPlayerSkills& Skills) {
  for (int Skill = 0; Skill < SKILLS; ++Skill)
    SetSkill(Skill, Skills.Level[static_cast<size_t>(Skill)], Skills.Progress[static_cast<size_t>(Skill)]);
}

void TPlayerMessageSink::OnPlayerState(int PlayerStateFlags) {
  SetPlayerStateFlags(static_cast<std::uint32_t>(PlayerStateFlags));
}

// The wire's delays are unsigned; one beyond the signed range fails the model's check.
void TPlayerMessageSink::OnSpellDelay(int Spell, std::uint32_t Delay) {
  SetSpellDelay(Spell, static_cast<int>(Delay));
}

void TPlayerMessageSink::OnSpellGroupDelay(int SpellGroup, std::uint32_t Delay) {
  SetSpellGroupDelay(SpellGroup, static_cast<int>(Delay));
}

void TPlayerMessageSink::OnMultiUseDelay(std::uint32_t Delay) { SetMultiUseDelay(static_cast<int>(Delay)); }

void SetPlayerMessageSink(TPlayerMessageSink* Sink) { InstalledSink = Sink; }

TPlayerMessageSink& PlayerMessageSink() {
  static TPlayerMessageSink Quiet;
  return InstalledSink != nullptr ? *InstalledSink : Quiet;
}
