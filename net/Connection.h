#pragma once
// The connection's state machine: from offline through a login server to the
// game server, with host rotation, time-outs, liveness checks and the way a
// running game ends.
#include <cstdint>
#include <string>

#include "net/NetworkErrors.h"

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

constexpr int CONNECT_TIMEOUT_LIMIT = 150;     // ticks: 15 seconds for a look-up or a connect
constexpr int RECONNECT_MILLISECONDS = 5000;
constexpr int ERROR_TYPE_LOGIN = 1;
constexpr int ERROR_TYPE_GAME = 2;
constexpr int ERROR_DISCONNECTED = 200002;
constexpr int ERROR_TIMED_OUT = 10060;

int GetConnectionState();
void SetConnectionState(int State);
// The state's name; "Invalid connection state." outside the table and for 8.
const char* GetConnectionStateName(int State);

// Brings the state machine up with the deployment's login hosts, and down.
void InitConnection();
void ExitConnection();

void ConnectLoginServer();
void ConnectGameServer();
// Marks every login host untried again.
void ResetLoginHosts();

// The queue's connection requests.
void HandleConnectLogin();
void HandleConnectGame();
void HandleReconnect();

void ConnectTimeOutTick();
// The tick's liveness check in a running game; gives up after 60 silent seconds.
void ConnectionAliveTick();
void ResetConnectionAlive();
void MarkConnectionAlive(int CommandType);
bool CheckConnectionAlive();
int GetLatency();
bool IsServerSilent();

void LeaveGame();
