#include "net/Network.h"

#include <string>

#include "core/Exception.h"
#include "net/Commands.h"
#include "net/Communication.h"
#include "net/Connection.h"
#include "net/Login.h"

namespace {

struct TCommandName {
  int Type;
  const char* Name;
};

constexpr TCommandName GAME_COMMANDS[] = {
    {SPENDINGSTATEENTERED, "SPENDINGSTATEENTERED"},
    {SWORLDENTERED, "SWORLDENTERED"},
    {SLOGINERROR, "SLOGINERROR"},
    {SLOGINADVICE, "SLOGINADVICE"},
    {SLOGINWAIT, "SLOGINWAIT"},
    {SLOGINSUCCESS, "SLOGINSUCCESS"},
    {SPING, "SPING"},
    {SPINGBACK, "SPINGBACK"},
    {SLOGINCHALLENGE, "SLOGINCHALLENGE"},
};

void ReadGameCommand(int Type) {
  if (ReadEntryCommand(Type)) return;
  switch (Type) {
    case SPING:
      SendPingBack();
      return;
    case SPINGBACK:  // only the liveness check acts on it
      return;
    default:
      ThrowException("unknown packet type during game", {{"Type", std::to_string(Type)}});
  }
}

void HandleCommand(int Type) {
  if (GetConnectionState() == CONNECTED_ADMIN) SetConnectionState(ADMIN_RECEIVED);
  if (GetConnectionState() == ADMIN_RECEIVED) {
    ReadLoginCommand(Type);
    return;
  }
  if (GetConnectionState() == CONNECTED_GAME) SetConnectionState(GAME_RECEIVED);
  const int State = GetConnectionState();
  if (State == GAME_RUNNING || State == CONNECTED_PENDING || State == GAME_DEAD) {
    MarkConnectionAlive(Type);
  }
  ReadGameCommand(Type);
}

}  // namespace

// The transport records each command type for failure reports as it hands it out.
void EventPacketReceived() {
  for (int Type = NextCommandType(); Type != -1; Type = NextCommandType()) {
    try {
      HandleCommand(Type);
    } catch (...) {
      RethrowGuarded("exception occurred (Type: " + std::to_string(Type) + ")");
    }
  }
}

const char* GetCommandName(int Type) {
  for (const TCommandName& Command : GAME_COMMANDS) {
    if (Command.Type == Type) return Command.Name;
  }
  return "unknown packet type during game";
}
