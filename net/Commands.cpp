#include "net/Commands.h"

#include "core/ErrorReport.h"
#include "net/Communication.h"

namespace {

void SendEmpty(int Type) {
  BeginCommand(Type);
  FinishCommand(true);
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
