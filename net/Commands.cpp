#include "net/Commands.h"

#include <array>
#include <string>

#include "core/ErrorReport.h"
#include "core/Exception.h"
#include "net/Communication.h"

namespace {

void SendEmpty(int Type) {
  BeginCommand(Type);
  FinishCommand(true);
}

// The command of a single step, by its step code.
int SingleStepCommand(int Code) {
  static constexpr std::array<int, 8> Commands{CGOEAST,  CGONORTHEAST, CGONORTH, CGONORTHWEST,
                                               CGOWEST, CGOSOUTHWEST, CGOSOUTH, CGOSOUTHEAST};
  Check(Code >= 1 && Code <= 8, "In(Step,1,8)", {"Step", Code});
  return Commands[static_cast<size_t>(Code - 1)];
}

// A walk ends a follow. (Turning chasing off on a walk, as the player's
// option asks, comes with the combat settings.)
void BeforeWalk() {
  TCombatTargets& Targets = CombatTargets();
  if (Targets.FollowTarget == 0) return;
  Targets.FollowTarget = Targets.AttackTarget = 0;
  SendFollow(0);
}

}  // namespace

void SendPing() { SendEmpty(CPING); }
void SendPingBack() { SendEmpty(CPINGBACK); }
void SendEnterWorld() { SendEmpty(CENTERWORLD); }
void SendQuitGame() { SendEmpty(CQUITGAME); }

void SendSetTactics(int AttackMode, int ChaseMode, int SecureMode, int PvPMode) {
  BeginCommand(CSETTACTICS);
  WriteU8(static_cast<std::uint8_t>(AttackMode));
  WriteU8(static_cast<std::uint8_t>(ChaseMode));
  WriteU8(static_cast<std::uint8_t>(SecureMode));
  WriteU8(static_cast<std::uint8_t>(PvPMode));
  FinishCommand(true);
}

void SendErrorReports() {
  const auto& Entries = GetErrorEntries();
  if (Entries.empty()) return;
  for (const TErrorEntry& Entry : Entries) {
    BeginCommand(CERRORREPORT);
    WriteString(Entry.Title.c_str());
    WriteString(Entry.Date.c_str());
    WriteString(Entry.Lines.c_str());
    WriteString(Entry.Comment.c_str());
    FinishCommand(true);
  }
  ClearErrorEntries();
}

TCombatTargets& CombatTargets() {
  static TCombatTargets Targets;
  return Targets;
}

void SendGoPath(const std::vector<int>& Steps) {
  BeforeWalk();
  const int Count = static_cast<int>(Steps.size());
  Check(Count > 0, "Steps>0", {"Steps", Count});
  if (Count == 1) {
    SendEmpty(SingleStepCommand(Steps.front()));
    return;
  }
  BeginCommand(CGOPATH);
  WriteU8(static_cast<std::uint8_t>(Count));
  for (int Code : Steps) WriteU8(static_cast<std::uint8_t>(Code));
  FinishCommand(true);
}

void SendStop() {
  BeforeWalk();
  SendEmpty(CSTOP);
}

void SendCancel() { SendEmpty(CCANCEL); }

void SendFollow(std::uint32_t CreatureId) {
  const std::uint32_t Sequence = ++CombatTargets().AttackSequence;
  BeginCommand(CFOLLOW);
  WriteU32(CreatureId);
  WriteU32(Sequence);
  FinishCommand(true);
}
