// The login server's answers and the game server's entry commands, read from
// packets as the server writes them.
#include <gtest/gtest.h>

#include <cstring>

#include "core/MessageQueue.h"
#include "core/Paths.h"
#include "core/Preferences.h"
#include "net/AccountManager.h"
#include "net/Communication.h"
#include "net/Connection.h"
#include "net/Login.h"
#include "net/Network.h"
#include "tests/net/ServerPacket.h"
#include "tests/net/TestSupport.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using testing_net::FailureText;

class TPayload {
 public:
  TPayload& U8(int Value) {
    m_Bytes.push_back(static_cast<std::uint8_t>(Value));
    return *this;
  }
  TPayload& U16(int Value) { return U8(Value & 0xFF).U8(Value >> 8); }
  TPayload& Text(const std::string& Value) {
    U16(static_cast<int>(Value.size()));
    m_Bytes.insert(m_Bytes.end(), Value.begin(), Value.end());
    return *this;
  }
  const Bytes& Get() const { return m_Bytes; }

 private:
  Bytes m_Bytes;
};

class LoginReaderTest : public ::testing::Test {
 protected:
  LoginReaderTest() {
    InitPreferences();
    InitNetwork();
    InitConnection();
    InitLogin(false);
    MessageQueue().Clear();
    TAccountManager::getInstance().clearCharacters();
  }
  ~LoginReaderTest() override {
    ExitLogin();
    ExitConnection();
    ExitNetwork();
    ExitPreferences();
    MessageQueue().Clear();
  }

  // Delivers one packet: plain as a game server's first one, else enciphered
  // (the session key is still all zeros).
  void Receive(const TPayload& Payload, int State) {
    SetConnectionState(State);
    const TXTEASymmetricKey ZeroKey;
    const Bytes Packet =
        testing_net::ServerPacket(Payload.Get(), State == CONNECTED_GAME ? nullptr : &ZeroKey);
    std::memcpy(ReceiveSpace().data(), Packet.data(), Packet.size());
    CommitReceived(static_cast<int>(Packet.size()));
    EventPacketReceived();
  }

  std::vector<int> QueuedTypes() {
    std::vector<int> Types;
    while (!MessageQueue().IsEmpty()) Types.push_back(MessageQueue().Take().Type);
    return Types;
  }
};

TEST_F(LoginReaderTest, CharacterListFillsTheAccountAndAsksForAChoice) {
  TPayload Payload;
  Payload.U8(SCHARACTERLIST)
      .U8(3)
      .U8(1).Text("Kelmo").Text("127.0.0.1").U16(7172).U8(0)
      .U8(2).Text("Preview").Text("preview.example").U16(7173).U8(2)
      .U8(1).Text("Terra").Text("10.0.0.9").U16(7174).U8(1)  // the same id again replaces the first
      .U8(3)
      .U8(1).Text("Ayla")
      .U8(2).Text("Borin")
      .U8(1).Text("Ayla")  // a name twice updates the first entry
      .U16(42);
  Receive(Payload, CONNECTED_ADMIN);

  EXPECT_EQ(GetConnectionState(), ADMIN_RECEIVED);
  const auto& Characters = TAccountManager::getInstance().characters();
  ASSERT_EQ(Characters.size(), 2u);
  EXPECT_EQ(Characters[0].Name, "Ayla");
  EXPECT_EQ(Characters[0].WorldName, "Terra");
  EXPECT_EQ(Characters[0].Host.AddressText(), "10.0.0.9");
  EXPECT_EQ(Characters[0].Host.Port, 7174);
  EXPECT_EQ(Characters[1].Host.HostName, "preview.example");
  EXPECT_EQ(Characters[1].PreviewState, 2);
  EXPECT_EQ(TAccountManager::getInstance().PremiumDays, 42);
  EXPECT_EQ(TAccountManager::getInstance().getActiveCharacter(), nullptr);
  EXPECT_EQ(QueuedTypes(), std::vector<int>{MSG_SELECT_CHARACTER});
}

TEST_F(LoginReaderTest, LongNamesAreCutAndTheNextFieldStillFits) {
  TPayload Payload;
  Payload.U8(SCHARACTERLIST).U8(1).U8(0).Text(std::string(40, 'W')).Text("127.0.0.1").U16(1).U8(0)
      .U8(1).U8(0).Text(std::string(35, 'N')).U16(0);
  Receive(Payload, CONNECTED_ADMIN);
  const auto& Characters = TAccountManager::getInstance().characters();
  ASSERT_EQ(Characters.size(), 1u);
  EXPECT_EQ(Characters[0].Name, std::string(29, 'N'));
  EXPECT_EQ(Characters[0].WorldName, std::string(29, 'W'));
}

TEST_F(LoginReaderTest, TruncatedCharacterListFailsInsteadOfReadingOn) {
  TPayload Payload;
  Payload.U8(SCHARACTERLIST).U8(1).U8(0).Text("Kelmo").Text("127.0.0.1").U16(7172).U8(0).U8(2).U8(0).Text("Ayla");
  try {
    Receive(Payload, CONNECTED_ADMIN);
    FAIL() << "no failure";
  } catch (const TMyException& E) {
    EXPECT_EQ(E.Text(), "exception occurred (Type: 100)");
    EXPECT_NE(std::string(E.what()).find("Position<=Size-1"), std::string::npos) << E.what();
  }
}

TEST_F(LoginReaderTest, EmptyCharacterListStillAsksForAChoice) {
  Receive(TPayload().U8(SCHARACTERLIST).U8(0).U8(0).U16(0), CONNECTED_ADMIN);
  EXPECT_TRUE(TAccountManager::getInstance().characters().empty());
  EXPECT_EQ(QueuedTypes(), std::vector<int>{MSG_SELECT_CHARACTER});
}

TEST_F(LoginReaderTest, MessageOfTheDayIsShownOncePerNumber) {
  Preferences().LastMotD = 7;
  Receive(TPayload().U8(SMOTD).Text("7\nOld news"), CONNECTED_ADMIN);
  EXPECT_EQ(GetMessageOfTheDay(), "Old news");
  EXPECT_TRUE(QueuedTypes().empty());

  Receive(TPayload().U8(SMOTD).Text("8\nNew news"), ADMIN_RECEIVED);
  EXPECT_EQ(Preferences().LastMotD, 8);
  EXPECT_EQ(QueuedTypes(), std::vector<int>{MSG_MOTD});

  Receive(TPayload().U8(SMOTD).Text("9 without a line break"), ADMIN_RECEIVED);
  EXPECT_EQ(GetMessageOfTheDay(), "New news");
  EXPECT_EQ(Preferences().LastMotD, 8);
}

TEST_F(LoginReaderTest, LoginErrorEndsTheAttemptAndReturnsToTheEntryDialog) {
  Receive(TPayload().U8(SLOGINERROR_ADMIN).Text("Account name or password is not correct."),
          CONNECTED_ADMIN);
  EXPECT_EQ(GetConnectionState(), OFFLINE);
  const TMessage Box = MessageQueue().Take();
  EXPECT_EQ(Box.Type, MSG_MESSAGEBOX);
  EXPECT_EQ(std::any_cast<std::string>(Box.Data1), "Sorry");
  EXPECT_EQ(std::any_cast<std::string>(Box.Data2), "Account name or password is not correct.");
  EXPECT_EQ(QueuedTypes(), std::vector<int>{MSG_ENTER_GAME});
}

TEST_F(LoginReaderTest, UnknownCommandsFailWithTheirTable) {
  EXPECT_EQ(FailureText([&] { Receive(TPayload().U8(99), CONNECTED_ADMIN); }), "exception occurred (Type: 99)");
  try {
    Receive(TPayload().U8(12), GAME_RUNNING);
    FAIL() << "no failure";
  } catch (const TMyException& E) {
    EXPECT_NE(std::string(E.what()).find("unknown packet type during game"), std::string::npos) << E.what();
  }
}

TEST_F(LoginReaderTest, WaitingListIsPassedOnWithItsSeconds) {
  Receive(TPayload().U8(SLOGINWAIT).Text("Too many players online.").U8(20), GAME_RECEIVED);
  const TMessage Queue = MessageQueue().Take();
  EXPECT_EQ(Queue.Type, MSG_LOGIN_QUEUE);
  EXPECT_EQ(std::any_cast<std::string>(Queue.Data1), "Too many players online.");
  EXPECT_EQ(Queue.Value2(), 20);
}

TEST_F(LoginReaderTest, FirstGamePacketMovesToGameReceived) {
  Receive(TPayload().U8(SLOGINADVICE).Text("Welcome."), CONNECTED_GAME);
  EXPECT_EQ(GetConnectionState(), GAME_RECEIVED);
}

}  // namespace
