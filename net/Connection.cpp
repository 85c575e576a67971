#include "net/Connection.h"

#include <algorithm>
#include <optional>

#include "core/Clock.h"
#include "core/Exception.h"
#include "core/MessageQueue.h"
#include "core/ProgramState.h"
#include "net/AccountManager.h"
#include "net/ClientHooks.h"
#include "net/Commands.h"
#include "net/Communication.h"
#include "net/HostManager.h"
#include "net/Login.h"
#include "net/Network.h"
#include "net/NetworkErrors.h"
#include "platform/NameLookup.h"

namespace {

constexpr std::int64_t PING_INTERVAL = 15;   // seconds between pings of a quiet connection
constexpr std::int64_t BUSY_PING_DELAY = 5;  // seconds: traffic brings the next ping this close
constexpr std::int64_t ALIVE_MARGIN = 15;    // seconds a due ping may stay unanswered
constexpr std::int64_t PINGBACK_MARGIN = 30;
constexpr int PINGS_PER_BURST = 3;
constexpr std::int64_t GIVE_UP_SECONDS = 60;

// Seconds of the clock, milliseconds for the reconnect deadline.
struct TLiveness {
  std::int64_t NextPingTime = 0;
  std::int64_t LatestAlive = 0;
  std::int64_t PingBaseTime = 0;
  int PingsInFlight = 0;
  int PingsInBurst = 0;
  int IgnorePingBacks = 0;
  CStopwatch LatencyWatch{EStopwatchResolution::MILLISECONDS};
  std::int64_t Latency = 0;
  bool ServerSilent = false;
  std::int64_t LostDeadline = 0;
};

struct TConnectionModule {
  THostManager LoginHosts;
  int ConnectTicks = 0;
  int ConnectLimit = 0;  // 0: disarmed
  TLiveness Alive;
  bool Reconnect = false;
  int ReconnectDeadline = 0;
};

int ConnectionState = OFFLINE;
std::optional<TConnectionModule> Module;

TConnectionModule& Connection() {
  Check(Module.has_value(), "Connection!=NULL");
  return *Module;
}

void PostConnectionFailed(int ErrorCode, int ErrorType) {
  MessageQueue().Post(MSG_MESSAGEBOX, std::string("Connection failed"),
                      FormatNetworkError(ErrorCode, ErrorType));
}

void PostSelectCharacter() { MessageQueue().Post(MSG_SELECT_CHARACTER, 300); }

void ArmTimeOut(int Limit) {
  Connection().ConnectTicks = 0;
  Connection().ConnectLimit = Limit > 0 ? Limit : 0;
}

void OnNameLookedUp(int Error, const std::uint8_t Address[4]);

bool ResolveHost(const std::string& HostName) {
  ArmTimeOut(CONNECT_TIMEOUT_LIMIT);
  return platform::StartNameLookup(HostName, OnNameLookedUp);
}

void FailedLookUpStart() {
  ArmTimeOut(0);
  PostConnectionFailed(0, ERROR_TYPE_LOGIN);
  SetConnectionState(OFFLINE);
}

void OnNameLookedUp(int Error, const std::uint8_t Address[4]) {
  ArmTimeOut(0);
  const int State = GetConnectionState();
  TAccountCharacterData* Character = TAccountManager::getInstance().getActiveCharacter();
  if (Error != 0) {
    if (State == RESOLVING_ADMIN) {
      SetConnectionState(OFFLINE);
      Connection().LoginHosts.MarkHostFailed(Error);
      ConnectLoginServer();
    } else if (State == RESOLVING_GAME) {
      SetConnectionState(OFFLINE);
      if (Character != nullptr) {
        Character->Host.Available = false;
        Character->Host.ErrorCode = Error;
      }
      ConnectGameServer();
    }
    return;
  }
  if (State == RESOLVING_ADMIN) {
    std::copy(Address, Address + 4, Connection().LoginHosts.CurrentHost().IPAddress.begin());
    SetConnectionState(CONNECTING_ADMIN);
    ConnectLoginServer();
  } else if (State == RESOLVING_GAME) {
    if (Character == nullptr) return;
    std::copy(Address, Address + 4, Character->Host.IPAddress.begin());
    ConnectGameServer();
  } else {
    SetConnectionState(OFFLINE);
    CloseConnection(true);
    PostConnectionFailed(-1, ERROR_TYPE_LOGIN);
  }
}

void OnConnected() {
  switch (GetConnectionState()) {
    case CONNECTING_ADMIN:
      SetConnectionState(CONNECTED_ADMIN);
      SendLoginAdmin();
      return;
    case CONNECTING_GAME:
      SetConnectionState(CONNECTED_GAME);
      ResetConnectionAlive();
      Check(TAccountManager::getInstance().getActiveCharacter() != nullptr,
            "ActiveCharacter != charactersEnd()");
      return;
    default:  // the user gave up meanwhile
      SetConnectionState(OFFLINE);
      CloseConnection(true);
      SetActionState(ACTIONSTATE_NONE);
  }
}

void OnConnectionFailed(int ErrorCode) {
  if (GetConnectionState() == CONNECTING_ADMIN) {
    ArmTimeOut(0);
    SetConnectionState(OFFLINE);
    Connection().LoginHosts.MarkHostFailed(ErrorCode);
    ConnectLoginServer();
    return;
  }
  CPlayerSocket* Socket = GetPlayerSocket();
  if (Socket == nullptr || !Socket->Disconnected) {
    if (Socket != nullptr) Socket->Disconnected = true;
    PostConnectionFailed(ErrorCode, ERROR_TYPE_GAME);
    PostSelectCharacter();
    SetConnectionState(OFFLINE);
  }
  CloseConnection(false);
}

// After a close: one more try where a reconnect was asked for in time.
void FollowReconnect(bool WasInGame) {
  TConnectionModule& C = Connection();
  if (!C.Reconnect) return;
  C.Reconnect = false;
  if (WasInGame) {
    if (GetProgramTime() < C.ReconnectDeadline) {
      MessageQueue().Post(MSG_CONNECT_GAME);
      MessageQueue().Post(MSG_WAIT_GAMEWORLD);
    }
  } else {
    MessageQueue().Post(MSG_CONNECT_LOGIN);
    MessageQueue().Post(MSG_WAIT_CHARACTERLIST);
  }
}

void OnClosed() {
  const int State = GetConnectionState();
  const bool WasInGame = State == GAME_RUNNING || State == GAME_DEAD;
  if (ClientHooks().SetTitle) ClientHooks().SetTitle("");
  if (WasInGame) {
    LeaveGame();
  } else if (State == CONNECTED_GAME) {
    PostConnectionFailed(ERROR_DISCONNECTED, ERROR_TYPE_GAME);
    PostSelectCharacter();
  } else if (State == CONNECTED_ADMIN) {
    PostConnectionFailed(ERROR_DISCONNECTED, ERROR_TYPE_LOGIN);
  }
  SetConnectionState(OFFLINE);
  FollowReconnect(WasInGame);
}

// A connection that stays silent: the dialog at once, the end after a minute.
void HandleDeadConnection() {
  TLiveness& Alive = Connection().Alive;
  if (!Alive.ServerSilent) {
    MessageQueue().Clear();
    MessageQueue().Post(MSG_SERVER_NOT_RESPONDING);
    Alive.ServerSilent = true;
  }
  const std::int64_t Now = NowSeconds();
  if (Alive.LostDeadline == 0) Alive.LostDeadline = Now + GIVE_UP_SECONDS;
  if (Now < Alive.LostDeadline) return;
  LeaveGame();
  CloseConnection(true);
  SetConnectionState(OFFLINE);
  Alive.LostDeadline = 0;
  MessageQueue().PostFront(MSG_MESSAGEBOX, std::string("Connection lost"),
                           std::string("Connection to the game server was lost.\nPlease try again later."));
}

}  // namespace

int GetConnectionState() { return ConnectionState; }
void SetConnectionState(int State) { ConnectionState = State; }

const char* GetConnectionStateName(int State) {
  static const char* const Names[] = {
      "OFFLINE",         "RESOLVING_ADMIN", "CONNECTING_ADMIN", "CONNECTED_ADMIN",
      "ADMIN_RECEIVED",  "RESOLVING_GAME",  "CONNECTING_GAME",  "CONNECTED_PENDING",
      nullptr,           "CONNECTED_GAME",  "GAME_RECEIVED",    "GAME_RUNNING"};
  if (State < 0 || State > GAME_RUNNING || Names[State] == nullptr) return "Invalid connection state.";
  return Names[State];
}

void InitConnection() {
  Module.emplace();
  ConnectionState = OFFLINE;
  Module->LoginHosts.LoadLoginHosts();
  SetNetworkHandlers(OnConnected, EventPacketReceived, OnClosed);
  SetConnectionHooks({ArmTimeOut, platform::CancelNameLookup, OnConnectionFailed});
}

void ExitConnection() {
  if (!Module) return;
  CloseConnection(true);
  SetConnectionHooks({});
  Module.reset();
  ConnectionState = OFFLINE;
}

void ResetLoginHosts() { Connection().LoginHosts.ResetHosts(); }

void ConnectLoginServer() {
  THostManager& Hosts = Connection().LoginHosts;
  for (;;) {
    if (!Hosts.SelectAvailableHost()) {
      PostConnectionFailed(Hosts.LastHostErrorCode(), ERROR_TYPE_LOGIN);
      return;
    }
    THostData& Host = Hosts.CurrentHost();
    if (!Host.IsResolved()) {
      SetConnectionState(RESOLVING_ADMIN);
      if (!ResolveHost(Host.HostName)) FailedLookUpStart();
      return;
    }
    SetConnectionState(CONNECTING_ADMIN);
    int Code = CreatePlayerSocket();
    if (Code == 0) Code = ConnectPlayerSocket(Host.AddressText().c_str(), Host.Port, true);
    if (Code == 0) return;
    Hosts.MarkHostFailed(Code);
  }
}

void ConnectGameServer() {
  TAccountCharacterData* Character = TAccountManager::getInstance().getActiveCharacter();
  if (Character == nullptr) {
    MessageQueue().Post(MSG_MESSAGEBOX, std::string("Connection failed"),
                        std::string("Invalid character. Can't connect to gameserver."));
    PostSelectCharacter();
    return;
  }
  THostData& Host = Character->Host;
  if (!Host.Available) {
    PostConnectionFailed(Host.ErrorCode, ERROR_TYPE_GAME);
    return;
  }
  if (!Host.IsResolved()) {
    SetConnectionState(RESOLVING_GAME);
    if (!ResolveHost(Host.HostName)) FailedLookUpStart();
    return;
  }
  SetConnectionState(CONNECTING_GAME);
  const std::string Address = Host.AddressText();
  const std::uint16_t Port = Host.Port;
  // A named host is looked up again on every attempt.
  if (!Host.HostName.empty()) Host.Forget();
  if (const int Code = CreatePlayerSocket(); Code != 0) {
    PostConnectionFailed(Code, ERROR_TYPE_GAME);
    PostSelectCharacter();
    SetConnectionState(OFFLINE);
    return;
  }
  if (const int Code = ConnectPlayerSocket(Address.c_str(), Port, false); Code != 0) {
    OnConnectionFailed(Code);
  }
}

void HandleConnectLogin() {
  ResetLoginHosts();
  if (ClientHooks().RedrawNow) ClientHooks().RedrawNow();
  ConnectLoginServer();
}

void HandleConnectGame() {
  if (ClientHooks().RedrawNow) ClientHooks().RedrawNow();
  ConnectGameServer();
}

void HandleReconnect() {
  if (GetConnectionState() == OFFLINE) {
    MessageQueue().Post(MSG_CONNECT_LOGIN);
    MessageQueue().Post(MSG_WAIT_CHARACTERLIST);
    return;
  }
  Connection().Reconnect = true;
  Connection().ReconnectDeadline = GetProgramTime() + RECONNECT_MILLISECONDS;
}

void ConnectTimeOutTick() {
  TConnectionModule& C = Connection();
  if (C.ConnectLimit == 0) return;
  if (++C.ConnectTicks <= C.ConnectLimit) return;
  ArmTimeOut(0);
  C.LoginHosts.MarkHostFailed(ERROR_TIMED_OUT);
  CloseConnection(false);
  SetConnectionState(OFFLINE);
  ConnectLoginServer();
}

void ResetConnectionAlive() {
  TLiveness& Alive = Connection().Alive;
  const std::int64_t Now = NowSeconds();
  Alive.PingsInFlight = Alive.PingsInBurst = Alive.IgnorePingBacks = 0;
  Alive.NextPingTime = Alive.PingBaseTime = Now;
  Alive.LatestAlive = Now + ALIVE_MARGIN;
  Alive.LatencyWatch.reset();
  Alive.Latency = 0;
  Alive.ServerSilent = false;
}

void MarkConnectionAlive(int CommandType) {
  TLiveness& Alive = Connection().Alive;
  if (Alive.ServerSilent) {
    MessageQueue().Clear();
    SetActionState(ACTIONSTATE_NONE);
    Alive.ServerSilent = false;
  }
  if (CommandType == SPING) return;
  const std::int64_t Now = NowSeconds();
  if (CommandType == SPINGBACK) {
    if (Alive.IgnorePingBacks > 0) {
      --Alive.IgnorePingBacks;
    } else {
      Alive.PingsInBurst = 0;
      Alive.NextPingTime = Alive.PingBaseTime = Now + PING_INTERVAL;
      Alive.LatestAlive = Now + PINGBACK_MARGIN;
    }
    if (Alive.PingsInFlight > 0 && --Alive.PingsInFlight == 0) {
      Alive.LatencyWatch.stop();
      Alive.Latency = Alive.LatencyWatch.elapsed();
    }
    return;
  }
  if (Now < Alive.NextPingTime) {
    Alive.PingsInBurst = 0;
    Alive.NextPingTime = std::min(Now + BUSY_PING_DELAY, Alive.PingBaseTime);
    Alive.LatestAlive = Alive.NextPingTime + ALIVE_MARGIN;
  }
}

bool CheckConnectionAlive() {
  TLiveness& Alive = Connection().Alive;
  const std::int64_t Now = NowSeconds();
  if (Alive.PingsInBurst < PINGS_PER_BURST &&
      Now >= Alive.NextPingTime + BUSY_PING_DELAY * Alive.PingsInBurst) {
    if (Alive.PingsInBurst == 0) Alive.IgnorePingBacks = Alive.PingsInFlight;
    ++Alive.PingsInBurst;
    Alive.LatencyWatch.start();
    ++Alive.PingsInFlight;
    SendPing();
  }
  return Now < Alive.LatestAlive;
}

void ConnectionAliveTick() {
  const int State = GetConnectionState();
  if (State != GAME_RUNNING && State != CONNECTED_PENDING && State != GAME_DEAD) return;
  if (CheckConnectionAlive()) {
    Connection().Alive.LostDeadline = 0;
    return;
  }
  HandleDeadConnection();
}

int GetLatency() {
  const std::int64_t Latency = Connection().Alive.Latency;
  Check(Latency <= INT32_MAX, "Latency too big", {"Latency", Latency});
  return static_cast<int>(Latency);
}

bool IsServerSilent() { return Module.has_value() && Module->Alive.ServerSilent; }

void LeaveGame() {
  const TMessage* Front = MessageQueue().Front();
  const bool HasModal = ClientHooks().HasModalWindow && ClientHooks().HasModalWindow();
  const bool HoldServerDialog =
      HasModal && Front != nullptr && Front->Type == MSG_SERVER_DIALOG_HOLD && Front->Value1() == 0;
  MessageQueue().Clear();
  if (ClientHooks().LeaveGameView) ClientHooks().LeaveGameView();
  if (HoldServerDialog) {
    MessageQueue().Post(MSG_SERVER_DIALOG_HOLD, 1);
  } else {
    if (HasModal && ClientHooks().CloseModalWindow) ClientHooks().CloseModalWindow();
    SetActionState(ACTIONSTATE_NONE);
  }
  if (ClientHooks().SaveConfiguration) ClientHooks().SaveConfiguration();
  if (!Connection().Reconnect) PostSelectCharacter();
}

TClientHooks& ClientHooks() {
  static TClientHooks Hooks;
  return Hooks;
}
