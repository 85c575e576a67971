#pragma once
// One client connection each: the login server's short exchange and the game
// server's session. A session reads whole packets, answers them, and fails
// loudly on anything that a correct client doesn't send.
#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "net/Xtea.h"
#include "platform/AsyncSocket.h"
#include "tools/server/Accounts.h"
#include "tools/server/Fields.h"
#include "tools/server/Framing.h"
#include "tools/server/LoginCommands.h"
#include "tools/server/Options.h"
#include "tools/server/RsaKey.h"
#include "tools/server/ServerLog.h"
#include "tools/server/World.h"
#include "tools/server/WorldClient.h"

namespace server {

// What all sessions of one server share.
struct TServerContext {
  const TServerSettings& Settings;
  const TAccountBook& Accounts;
  const TRsaPrivateKey& Key;
  TServerLog& Log;
  TRandom& Random;
  std::uint16_t GamePort;
  TGameWorld* World = nullptr;  // none: the world is not sent
  bool QueueSpent = false;  // the queue fault holds back the first game login only

  bool Has(EFault Fault) const { return Settings.Faults.contains(Fault); }
};

class CSessionSocket;

class TSession {
 public:
  TSession(TServerContext& Context, EServerKind Kind, int Number);
  virtual ~TSession();
  TSession(const TSession&) = delete;
  TSession& operator=(const TSession&) = delete;

  CAsyncSocket& Socket();
  // Once accepted.
  void Start();
  // Runs what is due at the present time.
  void Tick();
  bool Finished() const { return m_Phase == EPhase::FINISHED; }

  // From the socket.
  void ReadAvailable();
  void PeerClosed();

 protected:
  virtual void OnStart() {}
  // The payload of the plain login packet, then that of every enciphered one.
  virtual void OnLogin(std::span<const std::uint8_t> Payload) = 0;
  virtual void OnCommand(std::span<const std::uint8_t> Payload) = 0;
  virtual void OnTimer(std::int64_t) {}

  // Runs the action; a failure is logged and closes the connection.
  template <typename TAction>
  void Guarded(TAction&& Action);

  // Plain until the session key is set, enciphered after.
  void Send(const TMessageWriter& Writer, bool SpoilChecksum = false);
  void SetSessionKey(const std::array<std::uint8_t, SESSION_KEY_SIZE>& Key);
  // Shuts down sending, and closes when the client has gone or after a grace time.
  void CloseSoon();
  bool Closing() const { return m_Phase == EPhase::CLOSING; }
  bool Open() const { return m_Phase == EPhase::OPEN; }
  void Received(const TCommandRecord& Command);

  TServerContext& m_Context;

 private:
  enum class EPhase { OPEN, CLOSING, FINISHED };

  void HandlePacket(std::span<const std::uint8_t> Packet);
  void Close(std::string_view Why);

  EServerKind m_Kind;
  int m_Number;
  std::unique_ptr<CSessionSocket> m_Socket;
  TPacketAssembler m_Assembler;
  TXTEASymmetricKey m_Key;
  bool m_Enciphered = false;
  bool m_LoginSeen = false;
  EPhase m_Phase = EPhase::OPEN;
  std::int64_t m_CloseDeadline = 0;
  std::string m_Command;  // the command being read, for failure lines
};

class TLoginSession : public TSession {
 public:
  TLoginSession(TServerContext& Context, int Number) : TSession(Context, EServerKind::LOGIN, Number) {}

 protected:
  void OnLogin(std::span<const std::uint8_t> Payload) override;
  void OnCommand(std::span<const std::uint8_t> Payload) override;

 private:
  void WriteAccount(TMessageWriter& Writer, const TAccount& Account) const;
};

class TGameSession : public TSession {
 public:
  TGameSession(TServerContext& Context, int Number) : TSession(Context, EServerKind::GAME, Number) {}

 protected:
  void OnStart() override;
  void OnLogin(std::span<const std::uint8_t> Payload) override;
  void OnCommand(std::span<const std::uint8_t> Payload) override;
  void OnTimer(std::int64_t Now) override;

 private:
  // False if the login was refused; the answer is written either way.
  bool WriteLoginAnswer(TMessageWriter& Writer, const TLoginRequest& Request);
  void SendEnciphered(const TMessageWriter& Writer);
  void EnterWorld();
  // What the world tells this client, unless it has nothing to hear.
  void SendFromWorld(const TMessageWriter& Writer);

  std::uint32_t m_ChallengeTime = 0;
  std::uint8_t m_ChallengeValue = 0;
  bool m_EncipheredSent = false;
  bool m_InWorld = false;
  bool m_Silent = false;
  std::int64_t m_NextPing = 0;
  std::uint32_t m_CreatureId = 0;
  std::string m_CharacterName;
  std::unique_ptr<TWorldClient> m_WorldClient;
};

}  // namespace server
