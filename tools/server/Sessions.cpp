#include "tools/server/Sessions.h"

#include <algorithm>

#include "core/Clock.h"
#include "core/Exception.h"
#include "tools/server/GameCommands.h"
#include "tools/server/Messages.h"

namespace server {

namespace {

constexpr std::int64_t CLOSE_GRACE_MILLISECONDS = 2000;

// Full daylight, white: the demo world has no day and night.
constexpr std::uint8_t DAYLIGHT_BRIGHTNESS = 250;
constexpr std::uint8_t DAYLIGHT_COLOR = 215;

// A character with hit points: the client walks ahead of the server only then.
constexpr TPlayerNumbers DEMO_NUMBERS{185, 185, 470, 4200, 8, 0, 35, 35, 0, 0, 100, 2520, 0};
constexpr int RECEIVE_CHUNK = 4096;

constexpr std::string_view WRONG_ACCOUNT_TEXT = "Account name or password is not correct.";
constexpr std::string_view NO_CHARACTER_TEXT = "This character does not belong to your account.";
constexpr std::string_view ADMIN_FAULT_TEXT = "The login server turns every login away.";
constexpr std::string_view ADMIN_ADVICE_TEXT = "A notice from the login server.";
constexpr std::string_view LOGIN_FAULT_TEXT = "The game server turns every login away.";
constexpr std::string_view LOGIN_ADVICE_TEXT = "A notice from the game server.";
constexpr std::string_view QUEUE_TEXT = "The game world is full. You are number 1 in the queue.";
constexpr std::string_view ALREADY_IN_TEXT = "This character is in the game world already.";
constexpr std::uint8_t QUEUE_SECONDS = 3;

std::string LoginCommandName(std::uint8_t Type) {
  if (Type == CLOGINADMIN) return "CLOGINADMIN";
  if (Type == CLOGINGAME) return "CLOGINGAME";
  return {};
}

}  // namespace

class CSessionSocket : public CAsyncSocket {
 public:
  explicit CSessionSocket(TSession& Owner) : m_Owner(Owner) {}
  void OnReceive(int ErrorCode) override {
    if (ErrorCode == 0)
      m_Owner.ReadAvailable();
    else
      m_Owner.PeerClosed();
  }
  void OnClose(int) override { m_Owner.PeerClosed(); }

 private:
  TSession& m_Owner;
};

// ---- TSession

TSession::TSession(TServerContext& Context, EServerKind Kind, int Number)
    : m_Context(Context), m_Kind(Kind), m_Number(Number), m_Socket(std::make_unique<CSessionSocket>(*this)) {}

TSession::~TSession() = default;

template <typename TAction>
void TSession::Guarded(TAction&& Action) {
  try {
    Action();
  } catch (const TMyException& Failure) {
    m_Context.Log.Error(m_Number, m_Kind, Failure, m_Command);
    Close("closed after error");
  }
}

CAsyncSocket& TSession::Socket() { return *m_Socket; }

void TSession::Start() {
  m_Context.Log.Event(m_Number, m_Kind, "accepted");
  Guarded([this] { OnStart(); });
}

void TSession::Tick() {
  const std::int64_t Now = NowMilliseconds();
  if (m_Phase == EPhase::CLOSING && Now >= m_CloseDeadline) Close("closed");
  if (m_Phase == EPhase::OPEN) Guarded([&] { OnTimer(Now); });
}

void TSession::ReadAvailable() {
  std::array<std::uint8_t, RECEIVE_CHUNK> Chunk;
  while (!Finished()) {
    const int Count = m_Socket->Receive(Chunk.data(), RECEIVE_CHUNK);
    if (Count <= 0) return;
    m_Assembler.Append({Chunk.data(), static_cast<std::size_t>(Count)});
    bool More = true;
    while (More && !Finished()) {
      m_Command.clear();
      Guarded([&] {
        const auto Packet = m_Assembler.Next();
        More = Packet.has_value();
        if (More) HandlePacket(*Packet);
      });
    }
  }
}

void TSession::PeerClosed() {
  ReadAvailable();
  if (!Finished()) Close("closed by client");
}

void TSession::HandlePacket(std::span<const std::uint8_t> Packet) {
  if (!m_LoginSeen) {
    m_LoginSeen = true;
    const std::vector<std::uint8_t> Payload = OpenPlainPacket(Packet);
    m_Command = LoginCommandName(Payload[0]);
    OnLogin(Payload);
  } else {
    const std::vector<std::uint8_t> Payload = OpenEncipheredPacket(Packet, m_Key);
    m_Command = GameCommandName(Payload[0]).value_or("");
    OnCommand(Payload);
  }
}

void TSession::Close(std::string_view Why) {
  m_Socket->Close();
  m_Phase = EPhase::FINISHED;
  m_Context.Log.Event(m_Number, m_Kind, Why);
}

void TSession::Send(const TMessageWriter& Writer, bool SpoilChecksum) {
  Check(m_Phase == EPhase::OPEN, "message sent on a closing connection");
  std::vector<std::uint8_t> Packet =
      FramePacket(Writer.Payload(), m_Enciphered ? &m_Key : nullptr, m_Context.Random);
  if (SpoilChecksum) Packet[2] ^= 0xFF;
  const int Length = static_cast<int>(Packet.size());
  const int Sent = m_Socket->Send(Packet.data(), Length);
  Check(Sent == Length, "packet not sent whole", {"Sent", Sent}, {"Length", Length});
  for (const TCommandRecord& Message : Writer.Messages()) m_Context.Log.Sent(m_Number, m_Kind, Message);
  if (SpoilChecksum) m_Context.Log.Event(m_Number, m_Kind, "checksum spoiled");
}

void TSession::SetSessionKey(const std::array<std::uint8_t, SESSION_KEY_SIZE>& Key) {
  m_Key.Set(Key.data());
  m_Enciphered = true;
}

void TSession::CloseSoon() {
  m_Socket->ShutDown(CAsyncSocket::SENDS);
  m_Phase = EPhase::CLOSING;
  m_CloseDeadline = NowMilliseconds() + CLOSE_GRACE_MILLISECONDS;
  m_Context.Log.Event(m_Number, m_Kind, "closing");
}

void TSession::Received(const TCommandRecord& Command) { m_Context.Log.Received(m_Number, m_Kind, Command); }

// ---- TLoginSession

void TLoginSession::OnLogin(std::span<const std::uint8_t> Payload) {
  const TLoginRequest Request = DecodeLoginAdmin(Payload, m_Context.Key);
  Received(Request.Record);
  ValidateLoginRequest(Request);
  SetSessionKey(Request.SessionKey);
  TMessageWriter Writer;
  const TAccount* Account = m_Context.Accounts.Find(Request.Account, Request.Password);
  if (m_Context.Has(EFault::ADMIN_ERROR))
    WriteLoginErrorAdmin(Writer, ADMIN_FAULT_TEXT);
  else if (Account == nullptr)
    WriteLoginErrorAdmin(Writer, WRONG_ACCOUNT_TEXT);
  else
    WriteAccount(Writer, *Account);
  Send(Writer);
  CloseSoon();
}

void TLoginSession::OnCommand(std::span<const std::uint8_t>) {
  ThrowException("packet after the login command");
}

void TLoginSession::WriteAccount(TMessageWriter& Writer, const TAccount& Account) const {
  if (m_Context.Has(EFault::ADMIN_ADVICE)) WriteLoginAdviceAdmin(Writer, ADMIN_ADVICE_TEXT);
  if (const auto& Motd = m_Context.Accounts.Motd) WriteMessageOfTheDay(Writer, Motd->Number, Motd->Text);
  std::vector<TListedWorld> Worlds;
  for (const TWorld& World : m_Context.Accounts.Worlds)
    Worlds.push_back(
        {World.Id, World.Name, World.Host, World.Port.value_or(m_Context.GamePort), World.PreviewState});
  std::vector<TListedCharacter> Characters;
  for (const TCharacter& Character : Account.Characters)
    Characters.push_back({Character.WorldId, Character.Name});
  WriteCharacterList(Writer, Worlds, Characters, Account.PremiumDays);
}

// ---- TGameSession

void TGameSession::OnStart() {
  m_ChallengeTime = static_cast<std::uint32_t>(NowMilliseconds());
  m_ChallengeValue = static_cast<std::uint8_t>(m_Context.Random());
  TMessageWriter Writer;
  WriteLoginChallenge(Writer, m_ChallengeTime, m_ChallengeValue);
  Send(Writer);
}

void TGameSession::OnLogin(std::span<const std::uint8_t> Payload) {
  const TLoginRequest Request = DecodeLoginGame(Payload, m_Context.Key);
  Received(Request.Record);
  ValidateLoginRequest(Request);
  if (Request.ChallengeTime != m_ChallengeTime || Request.ChallengeValue != m_ChallengeValue)
    ThrowException("login challenge does not match",
                   {{"time", std::to_string(m_ChallengeTime)}, {"value", std::to_string(m_ChallengeValue)}});
  SetSessionKey(Request.SessionKey);
  TMessageWriter Writer;
  const bool Admitted = WriteLoginAnswer(Writer, Request);
  SendEnciphered(Writer);
  if (!Admitted || m_Context.Has(EFault::CLOSE_AFTER_LOGIN)) CloseSoon();
}

bool TGameSession::WriteLoginAnswer(TMessageWriter& Writer, const TLoginRequest& Request) {
  if (m_Context.Has(EFault::LOGIN_ERROR)) {
    WriteLoginError(Writer, LOGIN_FAULT_TEXT);
    return false;
  }
  if (m_Context.Has(EFault::QUEUE) && !m_Context.QueueSpent) {
    m_Context.QueueSpent = true;
    WriteLoginWait(Writer, QUEUE_TEXT, QUEUE_SECONDS);
    return false;
  }
  const TAccount* Account = m_Context.Accounts.Find(Request.Account, Request.Password);
  if (Account == nullptr) {
    WriteLoginError(Writer, WRONG_ACCOUNT_TEXT);
    return false;
  }
  const auto Character = std::find_if(Account->Characters.begin(), Account->Characters.end(),
                                      [&](const TCharacter& C) { return C.Name == Request.Character; });
  if (Character == Account->Characters.end()) {
    WriteLoginError(Writer, NO_CHARACTER_TEXT);
    return false;
  }
  if (m_Context.World != nullptr && m_Context.World->Find(Character->CreatureId) != nullptr) {
    WriteLoginError(Writer, ALREADY_IN_TEXT);
    return false;
  }
  if (m_Context.Has(EFault::LOGIN_ADVICE)) WriteLoginAdvice(Writer, LOGIN_ADVICE_TEXT);
  m_CreatureId = Character->CreatureId;
  m_CharacterName = Character->Name;
  const TSpeedFormula& Speed = SPEED_FORMULA;
  WriteLoginSuccess(Writer, {Character->CreatureId, Speed.Beat, Speed.A, Speed.B, Speed.C, true, true});
  if (!m_Context.Has(EFault::CLOSE_AFTER_LOGIN)) WritePendingStateEntered(Writer);
  return true;
}

void TGameSession::SendEnciphered(const TMessageWriter& Writer) {
  Send(Writer, !m_EncipheredSent && m_Context.Has(EFault::BAD_CHECKSUM));
  m_EncipheredSent = true;
}

void TGameSession::OnCommand(std::span<const std::uint8_t> Payload) {
  const TGameCommand Command = DecodeGameCommand(Payload);
  Received(Command.Record);
  if (Closing() || m_Silent) return;
  TMessageWriter Writer;
  switch (Command.Type) {
    case CENTERWORLD:
      EnterWorld();
      break;
    case CPING:
      WritePingBack(Writer);
      SendEnciphered(Writer);
      break;
    case CQUITGAME:
      m_WorldClient.reset();
      CloseSoon();
      break;
    default:  // read and logged; the world acts on its own commands
      if (m_WorldClient) m_WorldClient->Execute(Command);
      break;
  }
}

void TGameSession::EnterWorld() {
  TMessageWriter Writer;
  WriteWorldEntered(Writer);
  if (m_Context.World != nullptr) {
    WritePlayerDataCurrent(Writer, DEMO_NUMBERS);
    if (!m_WorldClient)
      m_WorldClient = std::make_unique<TWorldClient>(*m_Context.World, m_CreatureId, m_CharacterName,
                                                     [this](const TMessageWriter& W) { SendFromWorld(W); });
    WriteAmbiente(Writer, DAYLIGHT_BRIGHTNESS, DAYLIGHT_COLOR);
    m_WorldClient->WriteMap(Writer);
  }
  SendEnciphered(Writer);
  if (!m_InWorld)
    m_NextPing = NowMilliseconds() + m_Context.Settings.PingIntervalSeconds * std::int64_t{1000};
  m_InWorld = true;
  m_Silent = m_Context.Has(EFault::SILENCE);
}

void TGameSession::SendFromWorld(const TMessageWriter& Writer) {
  if (Open() && !m_Silent) Guarded([&] { SendEnciphered(Writer); });
}

void TGameSession::OnTimer(std::int64_t Now) {
  const int Interval = m_Context.Settings.PingIntervalSeconds;
  if (!m_InWorld || m_Silent || Interval == 0 || Now < m_NextPing) return;
  m_NextPing = Now + Interval * std::int64_t{1000};
  TMessageWriter Writer;
  WritePing(Writer);
  SendEnciphered(Writer);
}

}  // namespace server
