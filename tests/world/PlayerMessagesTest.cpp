// The readers of the session, container, inventory, trade, editor and player
// number commands, fed with packets as the server writes them.
#include <string>
#include <vector>

#include "net/Commands.h"
#include "tests/world/PlayerMessageFixture.h"

namespace {

using namespace testing_player;
using testing::ElementsAre;
using testing::HasSubstr;

using PlayerMessagesTest = TPlayerMessageTest;

TEST_F(PlayerMessagesTest, EveryPlayerAndSessionCommandHasAReader) {
  for (const int Type :
       {SDEAD, SCONTAINER, SCLOSECONTAINER, SCREATEINCONTAINER, SCHANGEINCONTAINER,
        SDELETEINCONTAINER, SSETINVENTORY, SDELETEINVENTORY, SNPCOFFER, SPLAYERGOODS,
        SCLOSENPCTRADE, SOWNOFFER, SCOUNTEROFFER, SCLOSETRADE, SEDITTEXT, SEDITLIST,
        SPREMIUMTRIGGER, SPLAYERDATABASIC, SPLAYERDATACURRENT, SPLAYERSKILLS, SPLAYERSTATE,
        SCLEARTARGET, SSPELLDELAY, SSPELLGROUPDELAY, SMULTIUSEDELAY, SSETTACTICS, SCHANNELS,
        SOPENCHANNEL, SPRIVATECHANNEL, SOPENOWNCHANNEL, SCLOSECHANNEL, SMESSAGE,
        SUNJUSTIFIEDPOINTS, SPVPSITUATIONS, SOUTFIT, SBUDDYDATA, SBUDDYSTATUSCHANGE,
        STUTORIALHINT, SAUTOMAPFLAG, SQUESTLOG, SQUESTLINE, SCHANNELEVENT, SOBJECTINFO,
        SPLAYERINVENTORY, SMARKETENTER, SMARKETLEAVE, SMARKETDETAIL, SMARKETBROWSE,
        SSHOWMODALDIALOG}) {
    EXPECT_TRUE(HasCommandReader(Type)) << GetCommandName(Type);
  }
}

TEST_F(PlayerMessagesTest, DeathPostsThePenaltyAndTheGameIsDead) {
  Receive(TPayload().U8(SDEAD).U8(30).Follower());
  EXPECT_EQ(GetConnectionState(), GAME_DEAD);
  const std::vector<TMessage> Messages = TakeMessages();
  ASSERT_EQ(Messages.size(), 1u);
  EXPECT_EQ(Messages[0].Type, MSG_YOU_ARE_DEAD);
  EXPECT_EQ(Messages[0].Value1(), 30);
  ExpectFollowerRead();
}

// ---- Containers and body ----

TEST_F(PlayerMessagesTest, ContainerHandsOverItsViewAndContent) {
  TPayload P;
  P.U8(SCONTAINER).U8(3).U16(BAG).U8(NO_MARK).Text("backpack of holding with a long name");
  P.U8(8).U8(1).U8(0).U8(1).U16(20).U16(8).U8(2);
  P.U16(COINS).U8(NO_MARK).U8(50);
  P.U16(TORCH).U8(215).U8(2);
  Receive(P.Follower());

  ASSERT_EQ(Sink.Containers.size(), 1u);
  const TContainerRecord& C = Sink.Containers[0];
  EXPECT_EQ(C.ContainerID, 3);
  EXPECT_EQ(C.Icon.Type, BAG);
  EXPECT_FALSE(C.Icon.Marked);
  // Cut to 29 bytes, first letter raised.
  EXPECT_EQ(C.Name, "Backpack of holding with a lo");
  EXPECT_EQ(C.NumberOfSlotsPerPage, 8);
  EXPECT_TRUE(C.HasParent);
  EXPECT_FALSE(C.DragAndDropAllowed);
  EXPECT_TRUE(C.IsPaginationEnabled);
  EXPECT_EQ(C.NumberOfTotalObjects, 20);
  EXPECT_EQ(C.IndexOfFirstObject, 8);
  ASSERT_EQ(C.Objects.size(), 2u);
  EXPECT_EQ(C.Objects[0].Type, COINS);
  EXPECT_EQ(C.Objects[0].Data, 50u);
  EXPECT_EQ(C.Objects[1].Type, TORCH);
  EXPECT_TRUE(C.Objects[1].Marked);
  EXPECT_EQ(C.Objects[1].MarkRed, 255);
  ExpectFollowerRead();
}

TEST_F(PlayerMessagesTest, ContainerRefusesMoreContentThanItsPageOrItsTotal) {
  auto Header = [](int Slots, int Total, int Count) {
    TPayload P;
    P.U8(SCONTAINER).U8(0).U16(BAG).U8(NO_MARK).Text("bag");
    P.U8(Slots).U8(0).U8(1).U8(0).U16(Total).U16(0).U8(Count);
    for (int i = 0; i < Count; ++i) P.U16(PLAIN).U8(NO_MARK);
    return P;
  };
  const std::string PastSlots = FailureOf(Header(8, 20, 9));
  EXPECT_THAT(PastSlots, FailsWith("NumberOfContentObjects <= NumberOfSlotsPerPage"));
  EXPECT_THAT(PastSlots, HasSubstr("exception occurred (Type: 110)"));
  EXPECT_THAT(FailureOf(Header(8, 2, 3)), FailsWith("NumberOfContentObjects <= NumberOfTotalObjects"));
  // Exactly full is valid.
  EXPECT_EQ(FailureOf(Header(3, 3, 3)), "(no failure)");
}

TEST_F(PlayerMessagesTest, ContainerWithoutAViewFails) {
  Sink.ViewStands = false;
  TPayload P;
  P.U8(SCONTAINER).U8(0).U16(BAG).U8(NO_MARK).Text("bag").U8(8).U8(0).U8(1).U8(0).U16(0).U16(0).U8(0);
  EXPECT_THAT(FailureOf(P), FailsWith("ContainerView != NULL"));
}

TEST_F(PlayerMessagesTest, CloseContainerNamesTheView) {
  Receive(TPayload().U8(SCLOSECONTAINER).U8(15).Follower());
  EXPECT_THAT(Sink.ClosedContainers, ElementsAre(15));
  ExpectFollowerRead();
}

TEST_F(PlayerMessagesTest, OneReaderAddsChangesAndDeletesContainerObjects) {
  TPayload P;
  // Container 9 was never opened: the fields are read all the same.
  P.U8(SCREATEINCONTAINER).U8(9).U16(0).U16(COINS).U8(NO_MARK).U8(7);
  P.U8(SCHANGEINCONTAINER).U8(2).U16(300).U16(VIAL).U8(NO_MARK).U8(3);
  // Nothing moves into view: type 0 and no extras behind it.
  P.U8(SDELETEINCONTAINER).U8(2).U16(5).U16(0);
  P.U8(SDELETEINCONTAINER).U8(2).U16(0).U16(PLAIN).U8(NO_MARK);
  Receive(P.Follower());

  ASSERT_EQ(Sink.ContainerObjects.size(), 4u);
  const auto& R = Sink.ContainerObjects;
  EXPECT_EQ(R[0].MessageType, SCREATEINCONTAINER);
  EXPECT_EQ(R[0].ContainerID, 9);
  EXPECT_EQ(R[0].Index, 0);
  EXPECT_EQ(R[0].Object.Type, COINS);
  EXPECT_EQ(R[0].Object.Data, 7u);
  EXPECT_EQ(R[1].MessageType, SCHANGEINCONTAINER);
  EXPECT_EQ(R[1].Index, 300);
  EXPECT_EQ(R[1].Object.Type, VIAL);
  EXPECT_EQ(R[1].Object.Data, 3u);
  EXPECT_EQ(R[2].MessageType, SDELETEINCONTAINER);
  EXPECT_EQ(R[2].Index, 5);
  EXPECT_EQ(R[2].Object.Type, 0);
  EXPECT_EQ(R[3].MessageType, SDELETEINCONTAINER);
  EXPECT_EQ(R[3].Object.Type, PLAIN);
  ExpectFollowerRead();
}

TEST_F(PlayerMessagesTest, ContainerObjectReaderRefusesOtherTypes) {
  EXPECT_THAT(testing_world::FailureReport([] { ReadContainerObjectMessage(SCONTAINER); }),
              FailsWith("MessageType == SCREATEINCONTAINER || MessageType == SCHANGEINCONTAINER || "
                        "MessageType == SDELETEINCONTAINER (MessageType: 110)"));
}

TEST_F(PlayerMessagesTest, InventorySlotsAreFilledAndEmptied) {
  TPayload P;
  P.U8(SSETINVENTORY).U8(5).U16(COINS).U8(NO_MARK).U8(100);
  P.U8(SDELETEINVENTORY).U8(5);
  Receive(P.Follower());
  ASSERT_EQ(Sink.BodyObjects.size(), 2u);
  EXPECT_EQ(Sink.BodyObjects[0].first, 5);
  EXPECT_EQ(Sink.BodyObjects[0].second.Type, COINS);
  EXPECT_EQ(Sink.BodyObjects[0].second.Data, 100u);
  EXPECT_EQ(Sink.BodyObjects[1].first, 5);
  EXPECT_EQ(Sink.BodyObjects[1].second.Type, 0);
  ExpectFollowerRead();
}

// ---- Trade ----

TEST_F(PlayerMessagesTest, NPCOfferPostsTheWares) {
  TPayload P;
  P.U8(SNPCOFFER).Text("Ahmed").U16(2);
  P.U16(PLAIN).U8(0).Text(std::string(40, 'r')).U32(1050).U32(20).U32(0);
  P.U16(VIAL).U8(7).Text("vial").U32(180).U32(5).U32(2);
  Receive(P.Follower());

  std::vector<TMessage> Messages = TakeMessages();
  ASSERT_EQ(Messages.size(), 1u);
  EXPECT_EQ(Messages[0].Type, MSG_TRADE_NPC);
  EXPECT_EQ(Messages[0].Value1(), 2);
  const auto& Wares = std::any_cast<const std::vector<TNPCWare>&>(Messages[0].Data2);
  ASSERT_EQ(Wares.size(), 2u);
  EXPECT_EQ(Wares[0].TypeID, PLAIN);
  EXPECT_EQ(Wares[0].Name, std::string(34, 'r'));
  EXPECT_EQ(Wares[0].Weight, 1050u);
  EXPECT_EQ(Wares[0].BuyPrice, 20u);
  EXPECT_EQ(Wares[0].SellPrice, 0u);
  EXPECT_EQ(Wares[1].TypeID, VIAL);
  EXPECT_EQ(Wares[1].SubType, 7);
  EXPECT_EQ(Wares[1].Name, "vial");
  EXPECT_EQ(Wares[1].SellPrice, 2u);
  EXPECT_EQ(Wares[1].Amount, 0);
  ExpectFollowerRead();
}

TEST_F(PlayerMessagesTest, PlayerGoodsPostMoneyAndAmounts) {
  TPayload P;
  P.U8(SPLAYERGOODS).U64(0x100000010ULL).U8(2).U16(COINS).U8(100).U16(VIAL).U8(3);
  P.U8(SCLOSENPCTRADE);
  Receive(P.Follower());

  std::vector<TMessage> Messages = TakeMessages();
  ASSERT_EQ(Messages.size(), 2u);
  EXPECT_EQ(Messages[0].Type, MSG_TRADE_GOODS);
  const auto& Header = std::any_cast<const TPlayerGoodsHeader&>(Messages[0].Data1);
  EXPECT_EQ(Header.Count, 2);
  EXPECT_EQ(Header.Money, 0x100000010ULL);
  const auto& Goods = std::any_cast<const std::vector<TPlayerGood>&>(Messages[0].Data2);
  ASSERT_EQ(Goods.size(), 2u);
  EXPECT_EQ(Goods[0].TypeID, COINS);
  EXPECT_EQ(Goods[0].SubType, 0);
  EXPECT_EQ(Goods[0].Amount, 100);
  EXPECT_EQ(Goods[1].TypeID, VIAL);
  EXPECT_EQ(Goods[1].Amount, 3);
  EXPECT_EQ(Messages[1].Type, MSG_TRADE_CLOSE_SERVER);
  ExpectFollowerRead();
}

TEST_F(PlayerMessagesTest, PlayerTradeOffersAreReadWhole) {
  TPayload P;
  P.U8(SOWNOFFER).Text("Bob").U8(2).U16(PLAIN).U8(NO_MARK).U16(COINS).U8(NO_MARK).U8(9);
  P.U8(SCOUNTEROFFER).Text("Bob").U8(1).U16(TORCH).U8(NO_MARK).U8(1);
  P.U8(SCLOSETRADE);
  Receive(P.Follower());

  ASSERT_EQ(Sink.OwnOffers.size(), 1u);
  EXPECT_EQ(Sink.OwnOffers[0].Name, "Bob");
  ASSERT_EQ(Sink.OwnOffers[0].Objects.size(), 2u);
  EXPECT_EQ(Sink.OwnOffers[0].Objects[1].Data, 9u);
  ASSERT_EQ(Sink.CounterOffers.size(), 1u);
  ASSERT_EQ(Sink.CounterOffers[0].Objects.size(), 1u);
  EXPECT_EQ(Sink.CounterOffers[0].Objects[0].Type, TORCH);
  EXPECT_EQ(Sink.ClosedTrades, 1);
  ExpectFollowerRead();
}

TEST_F(PlayerMessagesTest, CounterOfferWithNoTradeOpenIsStillReadWhole) {
  // The sink that does nothing stands for a trade that isn't open.
  SetPlayerMessageSink(nullptr);
  TPayload P;
  P.U8(SCOUNTEROFFER).Text("Eve").U8(3);
  P.U16(COINS).U8(NO_MARK).U8(1).U16(VIAL).U8(NO_MARK).U8(2).U16(TORCH).U8(NO_MARK).U8(0);
  P.U8(SDEAD).U8(7);
  Receive(P);
  const std::vector<TMessage> Messages = TakeMessages();
  ASSERT_EQ(Messages.size(), 1u);
  EXPECT_EQ(Messages[0].Type, MSG_YOU_ARE_DEAD);
  EXPECT_EQ(Messages[0].Value1(), 7);
}

// ---- Editors ----

TEST_F(PlayerMessagesTest, EditorsPostTheirRecords) {
  TPayload P;
  P.U8(SEDITTEXT).U32(0x01020304).U16(BOOK).U8(NO_MARK).U16(500);
  P.Text("Once upon\na time").Text("Alice").Text("2024-05-01");
  P.U8(SEDITLIST).U8(1).U32(77).Text("Alice\nBob");
  Receive(P.Follower());

  std::vector<TMessage> Messages = TakeMessages();
  ASSERT_EQ(Messages.size(), 2u);
  EXPECT_EQ(Messages[0].Type, MSG_EDIT_TEXT);
  const auto& Text = std::any_cast<const TEditTextRecord&>(Messages[0].Data1);
  EXPECT_EQ(Text.TextID, 0x01020304u);
  EXPECT_EQ(Text.Object.Type, BOOK);
  EXPECT_EQ(Text.MaximumLength, 500);
  EXPECT_EQ(Text.Text, "Once upon\na time");
  EXPECT_EQ(Text.Author, "Alice");
  EXPECT_EQ(Text.Date, "2024-05-01");
  EXPECT_EQ(Messages[1].Type, MSG_EDIT_LIST);
  const auto& List = std::any_cast<const TEditListRecord&>(Messages[1].Data1);
  EXPECT_EQ(List.ListType, 1);
  EXPECT_EQ(List.ListID, 77u);
  EXPECT_EQ(List.Text, "Alice\nBob");
  ExpectFollowerRead();
}

// ---- Player numbers ----

TEST_F(PlayerMessagesTest, PremiumTriggersHighlightOnlyForOne) {
  TPayload P;
  P.U8(SPREMIUMTRIGGER).U8(3).U8(1).U8(4).U8(14).U8(1);
  P.U8(SPREMIUMTRIGGER).U8(0).U8(2);
  Receive(P.Follower());
  ASSERT_EQ(Sink.PremiumTriggers.size(), 2u);
  EXPECT_THAT(Sink.PremiumTriggers[0].first, ElementsAre(1, 4, 14));
  EXPECT_TRUE(Sink.PremiumTriggers[0].second);
  EXPECT_TRUE(Sink.PremiumTriggers[1].first.empty());
  EXPECT_FALSE(Sink.PremiumTriggers[1].second);
  ExpectFollowerRead();
}

TEST_F(PlayerMessagesTest, BasicDataKeepsKnownProfessionsAndDropsTheSpellList) {
  TPayload P;
  P.U8(SPLAYERDATABASIC).U8(1).U32(1700000000).U8(4).U16(3).U8(1).U8(2).U8(3);
  P.U8(SPLAYERDATABASIC).U8(2).U32(0).U8(5).U16(0);
  Receive(P.Follower());
  ASSERT_EQ(Sink.DataBasic.size(), 2u);
  EXPECT_TRUE(Sink.DataBasic[0].PremiumAccount);
  EXPECT_EQ(Sink.DataBasic[0].PremiumUntil, 1700000000);
  EXPECT_EQ(Sink.DataBasic[0].Profession, 4);
  // Only 1 is premium; a profession of 5 is none.
  EXPECT_FALSE(Sink.DataBasic[1].PremiumAccount);
  EXPECT_EQ(Sink.DataBasic[1].Profession, 0);
  ExpectFollowerRead();
}

TEST_F(PlayerMessagesTest, CurrentDataSkipsItsUnusedFields) {
  TPayload P;
  P.U8(SPLAYERDATACURRENT).U16(150).U16(185).U32(41000).U32(0xDEADBEEF);
  P.U64(0x123456789ULL).U16(8).U8(42);
  P.U16(90).U16(95).U8(3).U8(0xAA).U8(17);
  P.U8(100).U16(2520).U16(0xBBBB).U16(0xCCCC).U16(720);
  Receive(P.Follower());
  ASSERT_EQ(Sink.DataCurrent.size(), 1u);
  const TPlayerDataCurrent& D = Sink.DataCurrent[0];
  EXPECT_EQ(D.HitPoints, 150);
  EXPECT_EQ(D.MaxHitPoints, 185);
  EXPECT_EQ(D.FreeCapacity, 41000);
  EXPECT_EQ(D.Experience, 0x123456789LL);
  EXPECT_EQ(D.Level, 8);
  EXPECT_EQ(D.LevelProgress, 42);
  EXPECT_EQ(D.Mana, 90);
  EXPECT_EQ(D.MaxMana, 95);
  EXPECT_EQ(D.MagicLevel, 3);
  EXPECT_EQ(D.MagicProgress, 17);
  EXPECT_EQ(D.SoulPoints, 100);
  EXPECT_EQ(D.Stamina, 2520);
  EXPECT_EQ(D.OfflineTraining, 720);
  ExpectFollowerRead();
}

TEST_F(PlayerMessagesTest, ShortCurrentDataFailsInTheReadOperation) {
  const std::string Report = FailureOf(TPayload().U8(SPLAYERDATACURRENT).U16(150).U8(1));
  EXPECT_THAT(Report, FailsWith("Position<=Size-2"));
  EXPECT_TRUE(Sink.DataCurrent.empty());
}

TEST_F(PlayerMessagesTest, SkillsComeInTheirOrderWithoutTheMiddleField) {
  TPayload P;
  P.U8(SPLAYERSKILLS);
  P.U16(10).U16(0xEEEE).U8(0);
  P.U16(11).U16(0xEEEE).U8(10);
  P.U16(12).U16(0xEEEE).U8(20);
  P.U16(13).U16(0xEEEE).U8(30);
  P.U16(14).U16(0xEEEE).U8(40);
  P.U16(15).U16(0xEEEE).U8(50);
  P.U16(16).U16(0xEEEE).U8(60);
  Receive(P.Follower());
  ASSERT_EQ(Sink.Skills.size(), 1u);
  EXPECT_THAT(Sink.Skills[0].Level, ElementsAre(10, 11, 12, 13, 14, 15, 16));
  EXPECT_THAT(Sink.Skills[0].Progress, ElementsAre(0, 10, 20, 30, 40, 50, 60));
  ExpectFollowerRead();
}

TEST_F(PlayerMessagesTest, StateTargetDelaysAndSituationsArePassedOn) {
  TPayload P;
  P.U8(SPLAYERSTATE).U16(0x0101);
  P.U8(SSPELLDELAY).U8(23).U32(2000);
  P.U8(SSPELLGROUPDELAY).U8(1).U32(4000);
  P.U8(SMULTIUSEDELAY).U32(1000);
  P.U8(SPVPSITUATIONS).U8(2);
  Receive(P.Follower());
  EXPECT_THAT(Sink.States, ElementsAre(0x0101, FOLLOWER_FLAGS));
  EXPECT_THAT(Sink.SpellDelays, ElementsAre(std::pair<int, std::uint32_t>(23, 2000)));
  EXPECT_THAT(Sink.SpellGroupDelays, ElementsAre(std::pair<int, std::uint32_t>(1, 4000)));
  EXPECT_THAT(Sink.MultiUseDelays, ElementsAre(1000u));
  EXPECT_THAT(Sink.PvPSituations, ElementsAre(2));
}

TEST_F(PlayerMessagesTest, ClearTargetIgnoresAnswersToOlderAttacks) {
  TCombatTargets& Targets = CombatTargets();
  Targets = {0x40000001, 0x40000002, 7};
  TPayload Older;
  Older.U8(SCLEARTARGET).U32(6);
  Receive(Older.Follower());
  EXPECT_EQ(Targets.AttackTarget, 0x40000001u) << "a late answer to attack 6 leaves attack 7";
  TPayload Current;
  Current.U8(SCLEARTARGET).U32(7);
  Receive(Current.Follower());
  EXPECT_EQ(Targets.AttackTarget, 0u);
  EXPECT_EQ(Targets.FollowTarget, 0u);
  Targets = {0x40000001, 0, 9};
  TPayload Any;
  Any.U8(SCLEARTARGET).U32(0);
  Receive(Any.Follower());
  EXPECT_EQ(Targets.AttackTarget, 0u) << "sequence 0 clears whatever runs";
  Targets = {};
}

TEST_F(PlayerMessagesTest, TacticsTakeSecureModeAsAFlag) {
  TPayload P;
  P.U8(SSETTACTICS).U8(2).U8(1).U8(1).U8(3);
  P.U8(SSETTACTICS).U8(1).U8(0).U8(0).U8(0);
  Receive(P.Follower());
  ASSERT_EQ(Sink.Tactics.size(), 2u);
  EXPECT_EQ(Sink.Tactics[0].AttackMode, 2);
  EXPECT_EQ(Sink.Tactics[0].ChaseMode, 1);
  EXPECT_TRUE(Sink.Tactics[0].SecureMode);
  EXPECT_EQ(Sink.Tactics[0].PvPMode, 3);
  EXPECT_FALSE(Sink.Tactics[1].SecureMode);
  ExpectFollowerRead();
}

TEST_F(PlayerMessagesTest, UnjustifiedPointsComeInWireOrder) {
  Receive(TPayload().U8(SUNJUSTIFIEDPOINTS).U8(50).U8(3).U8(100).U8(2).U8(0).U8(1).U8(4).Follower());
  ASSERT_EQ(Sink.UnjustPoints.size(), 1u);
  const TUnjustPoints& U = Sink.UnjustPoints[0];
  EXPECT_EQ(U.ProgressDay, 50);
  EXPECT_EQ(U.KillsRemainingDay, 3);
  EXPECT_EQ(U.ProgressWeek, 100);
  EXPECT_EQ(U.KillsRemainingWeek, 2);
  EXPECT_EQ(U.ProgressMonth, 0);
  EXPECT_EQ(U.KillsRemainingMonth, 1);
  EXPECT_EQ(U.SkullTime, 4);
  ExpectFollowerRead();
}

TEST_F(PlayerMessagesTest, UnjustifiedProgressAbove100Fails) {
  auto Points = [](int Day, int Week, int Month) {
    return TPayload().U8(SUNJUSTIFIEDPOINTS).U8(Day).U8(3).U8(Week).U8(3).U8(Month).U8(3).U8(0);
  };
  EXPECT_THAT(FailureOf(Points(101, 0, 0)), FailsWith("In(UnjustPoints.ProgressDay, 0, 100)"));
  EXPECT_THAT(FailureOf(Points(0, 101, 0)), FailsWith("In(UnjustPoints.ProgressWeek, 0, 100)"));
  EXPECT_THAT(FailureOf(Points(0, 0, 255)), FailsWith("In(UnjustPoints.ProgressMonth, 0, 100)"));
  EXPECT_TRUE(Sink.UnjustPoints.empty());
}

// ---- Many commands in one packet ----

TEST_F(PlayerMessagesTest, CommandsOfOnePacketFollowEachOther) {
  TPayload P;
  P.U8(SCONTAINER).U8(1).U16(BAG).U8(NO_MARK).Text("bag").U8(4).U8(0).U8(1).U8(0).U16(1).U16(0).U8(1);
  P.U16(VIAL).U8(NO_MARK).U8(5);
  P.U8(STUTORIALHINT).U8(3);
  P.U8(SMESSAGE).U8(22).U16(32000).U16(32001).U8(7).U32(25).U8(180).U32(3).U8(5).Text("You lose 25.");
  P.U8(SCLOSETRADE);
  P.U8(SDEAD).U8(0);
  P.U8(SMARKETLEAVE);
  Receive(P.Follower());

  ASSERT_EQ(Sink.Containers.size(), 1u);
  EXPECT_EQ(Sink.Containers[0].Objects[0].Data, 5u);
  ASSERT_EQ(Sink.TextMessages.size(), 1u);
  EXPECT_EQ(Sink.TextMessages[0].Text, "You lose 25.");
  EXPECT_EQ(Sink.ClosedTrades, 1);
  EXPECT_EQ(Sink.MarketLeaves, 1);
  std::vector<int> Types;
  for (const TMessage& M : TakeMessages()) Types.push_back(M.Type);
  EXPECT_THAT(Types, ElementsAre(MSG_TUTORIAL_HINT, MSG_YOU_ARE_DEAD));
  EXPECT_EQ(GetConnectionState(), GAME_DEAD);
  ExpectFollowerRead();
}

}  // namespace
