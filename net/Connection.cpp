#include "net/Connection.h"

namespace {
int ConnectionState = OFFLINE;
}

int GetConnectionState() { return ConnectionState; }
void SetConnectionState(int State) { ConnectionState = State; }

const char* GetConnectionStateName(int State) {
  static const char* const Names[] = {
      "OFFLINE",         "RESOLVING_ADMIN", "CONNECTING_ADMIN", "CONNECTED_ADMIN",
      "ADMIN_RECEIVED",  "RESOLVING_GAME",  "CONNECTING_GAME",  "CONNECTED_PENDING",
      nullptr,           "CONNECTED_GAME",  "GAME_RECEIVED",    "GAME_RUNNING"};
  if (State < 0 || State > GAME_RUNNING || Names[State] == nullptr)
    return "Invalid connection state.";
  return Names[State];
}
