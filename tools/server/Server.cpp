#include "tools/server/Server.h"

#include <random>

#include "core/Clock.h"
#include "core/Exception.h"
#include "platform/AsyncSocket.h"
#include "tools/server/Sessions.h"

namespace server {

class CListener : public CAsyncSocket {
 public:
  CListener(TServer& Server, EServerKind Kind) : m_Server(Server), m_Kind(Kind) {}

  void Open(const std::string& Host, std::uint16_t Port) {
    int Error = Create();
    if (Error == 0) Error = Listen(Host.c_str(), Port);
    if (Error != 0)
      ThrowException("cannot listen",
                     {{"address", Host + ':' + std::to_string(Port)}, {"error", std::to_string(Error)}});
  }
  void OnAccept(int ErrorCode) override {
    if (ErrorCode == 0) m_Server.Accept(*this);
  }
  EServerKind Kind() const { return m_Kind; }

 private:
  TServer& m_Server;
  EServerKind m_Kind;
};

namespace {

std::uint32_t Seed(const TServerSettings& Settings) {
  return Settings.Seed ? *Settings.Seed : std::random_device{}();
}

}  // namespace

TServer::TServer(TServerSettings Settings, TAccountBook Accounts, TRsaPrivateKey Key, TServerLog& Log,
                 std::optional<TWorldSetup> World)
    : m_Settings(std::move(Settings)),
      m_Accounts(std::move(Accounts)),
      m_Key(std::move(Key)),
      m_Log(Log),
      m_Random(Seed(m_Settings)),
      m_LoginListener(std::make_unique<CListener>(*this, EServerKind::LOGIN)),
      m_GameListener(std::make_unique<CListener>(*this, EServerKind::GAME)) {
  if (World)
    m_World = std::make_unique<TGameWorld>(std::move(*World), m_Random(),
                                           [this](const TStepRecord& Step) { m_Log.Step(Step); });
  m_LoginListener->Open(m_Settings.Host, m_Settings.LoginPort);
  m_GameListener->Open(m_Settings.Host, m_Settings.GamePort);
  m_Context = std::make_unique<TServerContext>(
      TServerContext{m_Settings, m_Accounts, m_Key, m_Log, m_Random, GamePort(), m_World.get()});
  m_Log.Listening(EServerKind::LOGIN, LoginPort());
  m_Log.Listening(EServerKind::GAME, GamePort());
}

TServer::~TServer() = default;

std::uint16_t TServer::LoginPort() const { return m_LoginListener->GetLocalPort(); }
std::uint16_t TServer::GamePort() const { return m_GameListener->GetLocalPort(); }

void TServer::Accept(CListener& Listener) {
  std::unique_ptr<TSession> Session;
  if (Listener.Kind() == EServerKind::LOGIN)
    Session = std::make_unique<TLoginSession>(*m_Context, m_NextConnection);
  else
    Session = std::make_unique<TGameSession>(*m_Context, m_NextConnection);
  if (Listener.Accept(Session->Socket()) != 0) return;  // the peer gave up before we took it
  ++m_NextConnection;
  Session->Start();
  m_Sessions.push_back(std::move(Session));
}

void TServer::Step() {
  PollSocketEvents();
  if (m_World) m_World->Tick(GetProgramTime());
  for (const auto& Session : m_Sessions) Session->Tick();
  std::erase_if(m_Sessions, [](const auto& Session) { return Session->Finished(); });
}

}  // namespace server
