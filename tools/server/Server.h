#pragma once
// The local server: a login server and a game server on two ports of one
// host. Step() does all due work without waiting: it takes what the sockets
// have, answers, moves the world, and runs the timers by the clock of
// core/Clock.h. Without a world the game server leads its clients into the
// world and tells them nothing of it.
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "tools/server/Accounts.h"
#include "tools/server/Framing.h"
#include "tools/server/Options.h"
#include "tools/server/RsaKey.h"
#include "tools/server/ServerLog.h"
#include "tools/server/World.h"

namespace server {

struct TServerContext;
class TSession;
class CListener;

class TServer {
 public:
  // Listens on both ports; fails if either can't be had.
  TServer(TServerSettings Settings, TAccountBook Accounts, TRsaPrivateKey Key, TServerLog& Log,
          std::optional<TWorldSetup> World = std::nullopt);
  ~TServer();
  TServer(const TServer&) = delete;
  TServer& operator=(const TServer&) = delete;

  std::uint16_t LoginPort() const;
  std::uint16_t GamePort() const;
  void Step();
  int OpenConnections() const { return static_cast<int>(m_Sessions.size()); }

 private:
  friend class CListener;
  void Accept(CListener& Listener);

  TServerSettings m_Settings;
  TAccountBook m_Accounts;
  TRsaPrivateKey m_Key;
  TServerLog& m_Log;
  TRandom m_Random;
  std::unique_ptr<TGameWorld> m_World;  // before the sessions, which leave it when they end
  std::unique_ptr<CListener> m_LoginListener;
  std::unique_ptr<CListener> m_GameListener;
  std::unique_ptr<TServerContext> m_Context;
  std::vector<std::unique_ptr<TSession>> m_Sessions;
  int m_NextConnection = 1;
};

}  // namespace server
