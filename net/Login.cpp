#include "net/Login.h"

#include <array>
#include <cstdio>
#include <fstream>
#include <map>
#include <optional>

#include "core/Exception.h"
#include "core/MessageQueue.h"
#include "core/Paths.h"
#include "core/Preferences.h"
#include "core/ProgramState.h"
#include "core/SystemInformation.h"
#include "core/Version.h"
#include "net/AccountManager.h"
#include "net/ClientHooks.h"
#include "net/Commands.h"
#include "net/Communication.h"
#include "net/Connection.h"
#include "net/Deployment.h"
#include "net/Network.h"
#include "net/Random.h"
#include "net/Rsa.h"

namespace {

constexpr int SESSION_KEY_SIZE = 16;
constexpr std::uint8_t NO_SYSTEM_BLOCK = 255;

struct TLoginModule {
  bool Gamemaster = false;
  TSessionInfo Session;
  std::string MessageOfTheDay;
};

std::optional<TLoginModule> Module;

TLoginModule& Login() {
  Check(Module.has_value(), "Login!=NULL");
  return *Module;
}

using TLoginBlock = std::array<std::uint8_t, LOGIN_BLOCK_SIZE>;

// The first four bytes of a data file, 0 if it is shorter.
std::uint32_t FileSignature(TFileKind Kind) {
  std::ifstream File(GetFileName(Kind, false), std::ios::binary);
  std::array<unsigned char, 4> Head{};
  if (!File.read(reinterpret_cast<char*>(Head.data()), Head.size())) return 0;
  return Head[0] | Head[1] << 8 | Head[2] << 16 | static_cast<std::uint32_t>(Head[3]) << 24;
}

// A block of random bytes that starts with a zero byte and a fresh session key.
TWriteBuffer StartLoginBlock(TLoginBlock& Block) {
  for (std::uint8_t& Byte : Block) Byte = GetRandomByte();
  std::array<std::uint8_t, SESSION_KEY_SIZE> Key;
  for (std::uint8_t& Byte : Key) Byte = GetRandomByte();
  SetSessionKey(Key.data());
  TWriteBuffer Writer(Block.data(), LOGIN_BLOCK_SIZE);
  Writer.WriteU8(0);
  Writer.WriteBytes(Key.data(), SESSION_KEY_SIZE);
  return Writer;
}

std::string BlockLines(const TLoginBlock& Block) {
  std::string Lines;
  for (size_t I = 0; I < Block.size(); ++I) {
    char Number[8];
    std::snprintf(Number, sizeof Number, "%03d", Block[I]);
    Lines += (I % 16 == 0 ? "\n" : " ") + std::string(Number);
  }
  return Lines;
}

void EncipherLoginBlock(TLoginBlock& Block, const char* Failure,
                        std::source_location Where = std::source_location::current()) {
  const TLoginBlock Plain = Block;
  try {
    TRSAPublicKey(GetRsaModulusText()).EncipherBlock(Block.data());
  } catch (const std::exception& E) {
    throw TMyException(Where, Failure + BlockLines(Plain), {}, E.what());
  }
}

void WriteVersion() {
  WriteU16(CLIENT_PLATFORM);
  WriteU16(PROTOCOL_VERSION);
  WriteU32(PROTOCOL_VERSION);
}

std::string ReadText(int Limit) {
  std::string Text(Limit, '\0');
  ReadString(Text.data(), Limit);
  Text.resize(std::char_traits<char>::length(Text.c_str()));
  return Text;
}

void PostMessageBox(const char* Title, std::string Text) {
  MessageQueue().Post(MSG_MESSAGEBOX, std::string(Title), std::move(Text));
}

void ReadMessageOfTheDay() {
  const std::string Text = ReadNewString();
  const size_t Break = Text.find('\n');
  if (Break == std::string::npos) return;
  const int Number = std::atoi(Text.substr(0, Break).c_str());
  Login().MessageOfTheDay = Text.substr(Break + 1);
  // The configuration keeps the number, so each message is shown once.
  if (Number == Preferences().LastMotD) return;
  Preferences().LastMotD = Number;
  MessageQueue().Post(MSG_MOTD);
}

struct TWorld {
  std::string Name;
  std::string Host;
  std::uint16_t Port = 0;
  int PreviewState = 0;
};

void ReadCharacterList() {
  std::map<int, TWorld> Worlds;
  for (int Count = ReadU8(); Count > 0; --Count) {
    const int Id = ReadU8();
    TWorld World;
    World.Name = ReadText(WORLD_NAME_LENGTH);
    World.Host = ReadText(HOST_TEXT_LENGTH);
    World.Port = ReadU16();
    World.PreviewState = ReadU8();
    Worlds[Id] = World;
  }
  TAccountManager& Account = TAccountManager::getInstance();
  Account.clearCharacters();
  for (int Count = ReadU8(); Count > 0; --Count) {
    const TWorld& World = Worlds[ReadU8()];
    const std::string Name = ReadText(CHARACTER_NAME_LENGTH);
    Account.addCharacter(Name, World.Name, World.PreviewState, THostData::FromText(World.Host, World.Port));
  }
  Account.PremiumDays = ReadU16();
  MessageQueue().Post(MSG_SELECT_CHARACTER, 300);
}

void ReadLoginSuccess() {
  const TAccountCharacterData* Character = TAccountManager::getInstance().getActiveCharacter();
  if (ClientHooks().SetTitle && Character != nullptr) ClientHooks().SetTitle(Character->Name);
  TSessionInfo& Session = Login().Session;
  Session.PlayerId = ReadU32();
  Session.Beat = ReadU16();
  Session.SpeedA = ReadDouble();
  Session.SpeedB = ReadDouble();
  Session.SpeedC = ReadDouble();
  Session.CanReportBugs = ReadU8() != 0;
  Session.CanChangePvPFraming = ReadU8() != 0;
}

void EnterPendingState() {
  if (GetConnectionState() == GAME_DEAD) return;
  SetConnectionState(CONNECTED_PENDING);
  SendErrorReports();
  SendEnterWorld();
}

void EnterWorld() {
  if (ClientHooks().IsGameView && !ClientHooks().IsGameView() && ClientHooks().EnterGameView) {
    ClientHooks().EnterGameView(Login().Session.PlayerId);
  }
  SetConnectionState(GAME_RUNNING);
  SetActionState(ACTIONSTATE_NONE);
  if (ClientHooks().SendTactics) ClientHooks().SendTactics();
}

}  // namespace

void InitLogin(bool Gamemaster) {
  Module.emplace();
  Module->Gamemaster = Gamemaster;
}

void ExitLogin() { Module.reset(); }

void SendLoginAdmin() {
  TAccountManager& Account = TAccountManager::getInstance();
  TLoginBlock Block;
  TWriteBuffer Writer = StartLoginBlock(Block);
  Writer.WriteString(Account.getLogin().c_str());
  Writer.WriteString(Account.getPassword().c_str());
  if (Writer.Position + TSystemInformation::BLOCK_SIZE <= LOGIN_BLOCK_SIZE) {
    SystemInformation().WriteBlock(Block.data() + Writer.Position);
  } else {
    Writer.WriteU8(NO_SYSTEM_BLOCK);
  }
  EncipherLoginBlock(Block, "Asymmetric encryption for login server failed");

  BeginCommand(CLOGINADMIN);
  WriteVersion();
  WriteU32(FileSignature(TFileKind::OBJECT_TYPES));
  WriteU32(FileSignature(TFileKind::SPRITES));
  WriteU32(FileSignature(TFileKind::PICTURES));
  WriteU8(0);
  WriteBlock(Block.data());
  FinishCommand(false);
}

void SendLoginGame(std::uint32_t ChallengeTime, std::uint8_t ChallengeValue) {
  TAccountManager& Account = TAccountManager::getInstance();
  const TAccountCharacterData* Character = Account.getActiveCharacter();
  Check(Character != nullptr, "ActiveCharacter != charactersEnd()");
  Check(Account.getLogin().size() < TAccountManager::ACCOUNT_NAME_LENGTH,
        "strlen(AccountName) < TAccountManager::ACCOUNT_NAME_LENGTH");
  Check(Character->Name.size() < CHARACTER_NAME_LENGTH, "strlen(CharacterName) < CHARACTER_NAME_LENGTH");
  Check(Account.getPassword().size() < TAccountManager::ACCOUNT_PASSWORD_LENGTH,
        "strlen(Password) < TAccountManager::ACCOUNT_PASSWORD_LENGTH");

  TLoginBlock Block;
  TWriteBuffer Writer = StartLoginBlock(Block);
  Writer.WriteU8(Login().Gamemaster ? 1 : 0);
  Writer.WriteString(Account.getLogin().c_str());
  Writer.WriteString(Character->Name.c_str());
  Writer.WriteString(Account.getPassword().c_str());
  Writer.WriteU32(ChallengeTime);
  Writer.WriteU8(ChallengeValue);
  EncipherLoginBlock(Block, "Asymmetric encryption for game server failed");

  BeginCommand(CLOGINGAME);
  WriteVersion();
  WriteU8(0);
  WriteBlock(Block.data());
  FinishCommand(false);
}

void ReadLoginCommand(int Type) {
  switch (Type) {
    case SLOGINERROR_ADMIN:
      PostMessageBox("Sorry", ReadNewString());
      MessageQueue().Post(MSG_ENTER_GAME);
      CloseConnection(false);
      SetConnectionState(OFFLINE);
      return;
    case SLOGINADVICE_ADMIN:
      PostMessageBox("For Your Information", ReadNewString());
      return;
    case SMOTD:
      ReadMessageOfTheDay();
      return;
    case SCHARACTERLIST:
      ReadCharacterList();
      return;
    case SPATCHFILE:
    case SPATCHDATAFILE:
    case SPATCHBLOCK:
      ThrowException("patch transfer is not supported by this client yet",
                     {{"Type", std::to_string(Type)}});
    default:
      ThrowException("unknown packet type during login", {{"Type", std::to_string(Type)}});
  }
}

bool ReadEntryCommand(int Type) {
  switch (Type) {
    case SLOGINCHALLENGE: {
      const std::uint32_t Time = ReadU32();
      const std::uint8_t Value = ReadU8();
      SendLoginGame(Time, Value);
      return true;
    }
    case SLOGINERROR:
      PostMessageBox("Sorry", ReadNewString());
      MessageQueue().Post(MSG_SELECT_CHARACTER, 300);
      CloseConnection(false);
      SetConnectionState(OFFLINE);
      return true;
    case SLOGINADVICE:
      PostMessageBox("For Your Information", ReadNewString());
      return true;
    case SLOGINWAIT: {
      std::string Text = ReadNewString();
      const int Seconds = ReadU8();
      MessageQueue().Post(MSG_LOGIN_QUEUE, std::move(Text), Seconds);
      return true;
    }
    case SLOGINSUCCESS:
      ReadLoginSuccess();
      return true;
    case SPENDINGSTATEENTERED:
      EnterPendingState();
      return true;
    case SWORLDENTERED:
      EnterWorld();
      return true;
    default:
      return false;
  }
}

const TSessionInfo& GetSessionInfo() { return Login().Session; }
const std::string& GetMessageOfTheDay() { return Login().MessageOfTheDay; }

void SelectCharacter(int Index) {
  TAccountManager& Account = TAccountManager::getInstance();
  Account.setActiveCharacter(Index);
  const TAccountCharacterData* Character = Account.getActiveCharacter();
  if (Character != nullptr && Character->PreviewState >= 2) {
    if (Character->PreviewState == 2) {
      PostMessageBox("Connection not possible",
                     "This Kelmo client can't connect to a character on a preview game world with "
                     "active preview phase.");
    }
    MessageQueue().Post(MSG_SELECT_CHARACTER, 300);
    return;
  }
  const int State = GetConnectionState();
  if (State == GAME_RUNNING || State == GAME_RECEIVED) {
    MessageQueue().Post(MSG_RECONNECT);
    SendQuitGame();
    return;
  }
  MessageQueue().Post(MSG_CONNECT_GAME);
  MessageQueue().Post(MSG_WAIT_GAMEWORLD);
}
