#pragma once
// The connection's state. The state machine that moves it lives beside it.

enum TConnectionState : int {
  OFFLINE = 0,
  RESOLVING_ADMIN = 1,
  CONNECTING_ADMIN = 2,
  CONNECTED_ADMIN = 3,
  ADMIN_RECEIVED = 4,
  RESOLVING_GAME = 5,
  CONNECTING_GAME = 6,
  CONNECTED_PENDING = 7,
  GAME_DEAD = 8,
  CONNECTED_GAME = 9,
  GAME_RECEIVED = 10,
  GAME_RUNNING = 11,
};

int GetConnectionState();
void SetConnectionState(int State);
// The state's name; "Invalid connection state." outside the table and for 8.
const char* GetConnectionStateName(int State);
