#pragma once
// What the tests of the player and session readers share: payloads written
// field by field as the server writes them, delivered through the real
// receive path of a running game, and a sink that records what the readers
// hand to the models.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <any>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "core/Clock.h"
#include "core/Exception.h"
#include "core/MessageQueue.h"
#include "core/Preferences.h"
#include "core/ProgramState.h"
#include "net/ClientHooks.h"
#include "net/Communication.h"
#include "net/Connection.h"
#include "net/Network.h"
#include "net/Xtea.h"
#include "tests/net/ServerPacket.h"
#include "tests/world/DatBytes.h"
#include "tests/world/WorldTest.h"
#include "world/Animation.h"
#include "world/ObjectFile.h"
#include "world/Objects.h"
#include "world/PlayerMessages.h"

namespace testing_player {

// Object types of the test's type file.
constexpr int PLAIN = 100;   // mark only
constexpr int COINS = 101;   // CUMULATIVE: mark and count
constexpr int BAG = 102;     // CONTAINER: mark only
constexpr int BOOK = 103;    // WRITE: mark only
constexpr int VIAL = 104;    // LIQUIDCONTAINER: mark and liquid
constexpr int TORCH = 105;   // three phases: mark and phase
constexpr int NO_MARK = 255;
// The command that follows the command under test in most packets: if it
// arrives intact, the command before it consumed exactly its fields.
constexpr int FOLLOWER_FLAGS = 0xBEEF;

class TPayload {
 public:
  TPayload& U8(int Value) {
    m_Bytes.push_back(static_cast<std::uint8_t>(Value));
    return *this;
  }
  TPayload& U16(int Value) { return U8(Value & 0xFF).U8(Value >> 8); }
  TPayload& U32(std::uint32_t Value) {
    return U16(static_cast<int>(Value & 0xFFFF)).U16(static_cast<int>(Value >> 16));
  }
  TPayload& U64(std::uint64_t Value) {
    return U32(static_cast<std::uint32_t>(Value)).U32(static_cast<std::uint32_t>(Value >> 32));
  }
  TPayload& Text(const std::string& Value) {
    U16(static_cast<int>(Value.size()));
    m_Bytes.insert(m_Bytes.end(), Value.begin(), Value.end());
    return *this;
  }
  // SPLAYERSTATE with FOLLOWER_FLAGS.
  TPayload& Follower() { return U8(SPLAYERSTATE).U16(FOLLOWER_FLAGS); }
  const std::vector<std::uint8_t>& Get() const { return m_Bytes; }

 private:
  std::vector<std::uint8_t> m_Bytes;
};

struct TRecordingSink : TPlayerMessageSink {
  bool ViewStands = true;
  bool MarketDialogOpen = false;
  std::vector<TContainerRecord> Containers;
  std::vector<int> ClosedContainers;
  std::vector<TContainerObjectRecord> ContainerObjects;
  std::vector<std::pair<int, TObject>> BodyObjects;
  std::vector<TTradeOfferRecord> OwnOffers, CounterOffers;
  int ClosedTrades = 0;
  std::vector<std::pair<std::vector<int>, bool>> PremiumTriggers;
  std::vector<TPlayerDataBasic> DataBasic;
  std::vector<TPlayerDataCurrent> DataCurrent;
  std::vector<TPlayerSkills> Skills;
  std::vector<int> States;
  std::vector<std::pair<int, std::uint32_t>> SpellDelays, SpellGroupDelays;
  std::vector<std::uint32_t> MultiUseDelays;
  std::vector<TTactics> Tactics;
  std::vector<TUnjustPoints> UnjustPoints;
  std::vector<int> PvPSituations;
  std::vector<std::pair<TChannelOpenData, bool>> OpenedChannels;
  std::vector<int> ClosedChannels;
  std::vector<std::tuple<int, std::string, int>> ChannelEvents;
  std::vector<TTextMessage> TextMessages;
  std::vector<TBuddyRecord> Buddies;
  std::vector<std::pair<std::uint32_t, int>> BuddyStates;
  std::vector<TAutomapFlag> AutomapFlags;
  std::vector<std::vector<TQuestLine>> QuestLogs;
  std::vector<std::pair<int, std::vector<TQuestFlag>>> QuestLines;
  std::vector<TMarketEnter> MarketEnters;
  int MarketLeaves = 0;
  std::vector<TMarketDetails> MarketDetails;
  std::vector<TMarketBrowse> MarketBrowses;

  bool OnContainer(const TContainerRecord& R) override {
    Containers.push_back(R);
    return ViewStands;
  }
  void OnCloseContainer(int Id) override { ClosedContainers.push_back(Id); }
  void OnContainerObject(const TContainerObjectRecord& R) override { ContainerObjects.push_back(R); }
  void OnBodyObject(int Position, const TObject& O) override { BodyObjects.emplace_back(Position, O); }
  void OnOwnOffer(const TTradeOfferRecord& R) override { OwnOffers.push_back(R); }
  void OnCounterOffer(const TTradeOfferRecord& R) override { CounterOffers.push_back(R); }
  void OnCloseTrade() override { ++ClosedTrades; }
  void OnPremiumTrigger(const std::vector<int>& T, bool H) override { PremiumTriggers.emplace_back(T, H); }
  void OnPlayerDataBasic(const TPlayerDataBasic& D) override { DataBasic.push_back(D); }
  void OnPlayerDataCurrent(const TPlayerDataCurrent& D) override { DataCurrent.push_back(D); }
  void OnPlayerSkills(const TPlayerSkills& S) override { Skills.push_back(S); }
  void OnPlayerState(int Flags) override { States.push_back(Flags); }
  void OnSpellDelay(int S, std::uint32_t D) override { SpellDelays.emplace_back(S, D); }
  void OnSpellGroupDelay(int G, std::uint32_t D) override { SpellGroupDelays.emplace_back(G, D); }
  void OnMultiUseDelay(std::uint32_t D) override { MultiUseDelays.push_back(D); }
  void OnTactics(const TTactics& T) override { Tactics.push_back(T); }
  void OnUnjustifiedPoints(const TUnjustPoints& U) override { UnjustPoints.push_back(U); }
  void OnPvPSituations(int N) override { PvPSituations.push_back(N); }
  void OnOpenChannel(const TChannelOpenData& C, bool Own) override { OpenedChannels.emplace_back(C, Own); }
  void OnCloseChannel(int Id) override { ClosedChannels.push_back(Id); }
  void OnChannelEvent(int Id, const std::string& Name, int Kind) override {
    ChannelEvents.emplace_back(Id, Name, Kind);
  }
  void OnTextMessage(const TTextMessage& M) override { TextMessages.push_back(M); }
  void OnBuddyData(const TBuddyRecord& B) override { Buddies.push_back(B); }
  void OnBuddyStatus(std::uint32_t Id, int State) override { BuddyStates.emplace_back(Id, State); }
  void OnAutomapFlag(const TAutomapFlag& F) override { AutomapFlags.push_back(F); }
  void OnQuestLog(const std::vector<TQuestLine>& L) override { QuestLogs.push_back(L); }
  void OnQuestLine(int Line, const std::vector<TQuestFlag>& F) override { QuestLines.emplace_back(Line, F); }
  bool IsMarketDialogOpen() const override { return MarketDialogOpen; }
  void OnMarketEnter(const TMarketEnter& M) override { MarketEnters.push_back(M); }
  void OnMarketLeave() override { ++MarketLeaves; }
  void OnMarketDetails(const TMarketDetails& D) override { MarketDetails.push_back(D); }
  void OnMarketBrowse(const TMarketBrowse& B) override { MarketBrowses.push_back(B); }
};

// Three phases of 100 ms for the animated type.
inline testing_world::TDatBytes TypeFile() {
  testing_world::TDatBytes B;
  B.Header(0x504C4159, TORCH, 0, 0, 0);
  B.Plain(1);
  B.U8(CUMULATIVE).Plain(2);
  B.U8(CONTAINER).Plain(3);
  B.U8(WRITE).U16(500).Plain(4);
  B.U8(LIQUIDCONTAINER).Plain(5);
  B.U8(255).U8(1).U8(1).U8(1).U8(1).U8(1).U8(1).U8(3);
  B.U8(ANIMATION_ASYNCHRON).U32(0).U8(0);
  for (int Phase = 0; Phase < 3; ++Phase) B.U32(100).U32(100);
  B.U32(6).U32(7).U32(8);
  return B;
}

class TPlayerMessageTest : public testing_world::TFileTest {
 protected:
  void SetUp() override {
    TFileTest::SetUp();
    TypeFile().Write(File("Kelmo.dat"));
    LoadObjects(File("Kelmo.dat").string());
    SetClockSource(m_Clock);
    SetAnimationRandomSource([] { return 0u; });
    InitPreferences();
    StartNetwork();
    MessageQueue().Clear();
    ResetProgramState();
    InstallPlayerMessageReaders();
    SetPlayerMessageSink(&Sink);
  }
  void TearDown() override {
    SetPlayerMessageSink(nullptr);
    ClientHooks() = TClientHooks{};
    ResetProgramState();
    MessageQueue().Clear();
    StopNetwork();
    ExitPreferences();
    SetAnimationRandomSource({});
    SetClockSource(nullptr);
    ExitObjects();
    TFileTest::TearDown();
  }

  // Delivers the payload as one enciphered packet of a running game.
  static void Receive(const TPayload& Payload) {
    const TXTEASymmetricKey ZeroKey;
    const std::vector<std::uint8_t> Packet = testing_net::ServerPacket(Payload.Get(), &ZeroKey);
    std::memcpy(ReceiveSpace().data(), Packet.data(), Packet.size());
    CommitReceived(static_cast<int>(Packet.size()));
    EventPacketReceived();
  }

  // The report that the packet ends in, from the reader's place on; the
  // connection starts anew behind it, as the rest of the packet is lost.
  static std::string FailureOf(const TPayload& Payload) {
    std::string Report = "(no failure)";
    try {
      Receive(Payload);
    } catch (const TMyException& E) {
      Report = E.what();
    }
    StopNetwork();
    StartNetwork();
    return Report;
  }

  // The failure's own text as it stands in a report: after the place, before
  // the values.
  static testing::Matcher<std::string> FailsWith(const std::string& Text) {
    return testing::HasSubstr("): " + Text);
  }

  // The queue's messages, oldest first; the queue is empty afterwards.
  static std::vector<TMessage> TakeMessages() {
    std::vector<TMessage> Messages;
    while (!MessageQueue().IsEmpty()) Messages.push_back(MessageQueue().Take());
    return Messages;
  }

  void ExpectFollowerRead() const { EXPECT_EQ(Sink.States, std::vector<int>{FOLLOWER_FLAGS}); }

  void Advance(int Milliseconds) { m_Clock->AdvanceMilliseconds(Milliseconds); }

  TRecordingSink Sink;

 private:
  static void StartNetwork() {
    InitNetwork();
    InitConnection();
    SetConnectionState(GAME_RUNNING);
  }
  static void StopNetwork() {
    ExitConnection();
    ExitNetwork();
    SetConnectionState(OFFLINE);
  }

  std::shared_ptr<TManualClock> m_Clock = std::make_shared<TManualClock>();
};

}  // namespace testing_player
