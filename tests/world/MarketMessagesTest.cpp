// The readers of the market commands.
#include <string>
#include <vector>

#include "tests/world/PlayerMessageFixture.h"

namespace {

using namespace testing_player;

using MarketMessagesTest = TPlayerMessageTest;

TPayload MarketEnter() {
  return TPayload().U8(SMARKETENTER).U64(1234567890123ULL).U8(5).U16(2).U16(COINS).U16(300).U16(VIAL).U16(2);
}

TEST_F(MarketMessagesTest, EnteringStoresTheDepotAndOpensTheBrowseDialog) {
  Receive(MarketEnter().Follower());
  ASSERT_EQ(Sink.MarketEnters.size(), 1u);
  const TMarketEnter& Market = Sink.MarketEnters[0];
  EXPECT_EQ(Market.Balance, 1234567890123ULL);
  EXPECT_EQ(Market.ActiveOffers, 5);
  ASSERT_EQ(Market.Depot.size(), 2u);
  EXPECT_EQ(Market.Depot[0].ObjectType, COINS);
  EXPECT_EQ(Market.Depot[0].Amount, 300);
  EXPECT_EQ(Market.Depot[1].ObjectType, VIAL);
  EXPECT_EQ(Market.Depot[1].Amount, 2);
  const std::vector<TMessage> Messages = TakeMessages();
  ASSERT_EQ(Messages.size(), 1u);
  EXPECT_EQ(Messages[0].Type, MSG_MARKET_BROWSE);
  ExpectFollowerRead();
}

TEST_F(MarketMessagesTest, EnteringWithAMarketDialogOpenPostsNothing) {
  Sink.MarketDialogOpen = true;
  Receive(MarketEnter());
  EXPECT_EQ(Sink.MarketEnters.size(), 1u);
  EXPECT_TRUE(MessageQueue().IsEmpty());
}

TEST_F(MarketMessagesTest, LeavingClosesAnOpenMarketDialog) {
  SetActionState(ACTIONSTATE_MODAL);
  Receive(TPayload().U8(SMARKETLEAVE));
  EXPECT_EQ(Sink.MarketLeaves, 1);
  EXPECT_EQ(GetActionState(), ACTIONSTATE_MODAL);

  Sink.MarketDialogOpen = true;
  Receive(TPayload().U8(SMARKETLEAVE).Follower());
  EXPECT_EQ(Sink.MarketLeaves, 2);
  EXPECT_EQ(GetActionState(), ACTIONSTATE_NONE);
  ExpectFollowerRead();
}

TEST_F(MarketMessagesTest, DetailsCarryFifteenTextsAndFoldedStatistics) {
  TPayload P;
  P.U8(SMARKETDETAIL).U16(COINS);
  for (int Row = 0; Row < MARKET_DETAILS; ++Row) P.Text(Row == 4 ? "" : "detail " + std::to_string(Row));
  // Buy side: three rows, one of them without transactions.
  P.U8(3);
  P.U32(4).U32(400).U32(150).U32(80);
  P.U32(0).U32(0).U32(0).U32(0xFFFFFFFF);
  P.U32(6).U32(900).U32(200).U32(90);
  // Sell side: none.
  P.U8(0);
  Receive(P.Follower());

  ASSERT_EQ(Sink.MarketDetails.size(), 1u);
  const TMarketDetails& D = Sink.MarketDetails[0];
  EXPECT_EQ(D.ObjectType, COINS);
  EXPECT_EQ(D.Details[0], "detail 0");
  EXPECT_EQ(D.Details[4], "");
  EXPECT_EQ(D.Details[14], "detail 14");
  EXPECT_EQ(D.Buy, (TMarketStatistics{10, 1300, 200, 80, 2}));
  EXPECT_EQ(D.Sell, (TMarketStatistics{0, 0, 0, 0, 0}));
  ExpectFollowerRead();
}

TEST_F(MarketMessagesTest, ALowestThatNoRowLoweredIsZero) {
  TPayload P;
  P.U8(SMARKETDETAIL).U16(VIAL);
  for (int Row = 0; Row < MARKET_DETAILS; ++Row) P.Text("");
  P.U8(0);
  P.U8(1).U32(1).U32(5).U32(5).U32(0xFFFFFFFF);
  Receive(P.Follower());
  ASSERT_EQ(Sink.MarketDetails.size(), 1u);
  EXPECT_EQ(Sink.MarketDetails[0].Sell, (TMarketStatistics{1, 5, 5, 0, 1}));
  ExpectFollowerRead();
}

TEST_F(MarketMessagesTest, BrowsingAnObjectTypeGivesOffersWithNames) {
  TPayload P;
  P.U8(SMARKETBROWSE).U16(COINS);
  P.U32(1).U32(1700000000).U16(3).U16(100).U32(12).Text("Alice");
  P.U32(2).U32(1700000100).U16(0).U16(5).U32(15).Text("Bob");
  P.U32(1700000200).U16(1).U16(6).U32(16).Text(std::string(31, 'c'));
  Receive(P.Follower());

  ASSERT_EQ(Sink.MarketBrowses.size(), 1u);
  const TMarketBrowse& B = Sink.MarketBrowses[0];
  EXPECT_EQ(B.Selector, COINS);
  ASSERT_EQ(B.BuyOffers.size(), 1u);
  const TMarketOfferRecord& Buy = B.BuyOffers[0];
  EXPECT_EQ(Buy.Timestamp, 1700000000u);
  EXPECT_EQ(Buy.Counter, 3);
  EXPECT_EQ(Buy.ObjectType, COINS);
  EXPECT_EQ(Buy.Amount, 100);
  EXPECT_EQ(Buy.PricePerObject, 12u);
  EXPECT_EQ(Buy.State, MARKET_OFFER_STATE_ACTIVE);
  EXPECT_EQ(Buy.CharacterName, "Alice");
  ASSERT_EQ(B.SellOffers.size(), 2u);
  EXPECT_EQ(B.SellOffers[0].CharacterName, "Bob");
  EXPECT_EQ(B.SellOffers[1].CharacterName, std::string(29, 'c'));
  ExpectFollowerRead();
}

TEST_F(MarketMessagesTest, OwnOffersNameTheirObjectTypes) {
  TPayload P;
  P.U8(SMARKETBROWSE).U16(MARKET_SELECTOR_OWN_OFFERS);
  P.U32(1).U32(1700000000).U16(1).U16(VIAL).U16(2).U32(30);
  P.U32(0);
  Receive(P.Follower());

  ASSERT_EQ(Sink.MarketBrowses.size(), 1u);
  const TMarketBrowse& B = Sink.MarketBrowses[0];
  ASSERT_EQ(B.BuyOffers.size(), 1u);
  EXPECT_EQ(B.BuyOffers[0].ObjectType, VIAL);
  EXPECT_EQ(B.BuyOffers[0].Amount, 2);
  EXPECT_EQ(B.BuyOffers[0].PricePerObject, 30u);
  EXPECT_EQ(B.BuyOffers[0].State, MARKET_OFFER_STATE_ACTIVE);
  EXPECT_EQ(B.BuyOffers[0].CharacterName, "");
  EXPECT_TRUE(B.SellOffers.empty());
  ExpectFollowerRead();
}

TEST_F(MarketMessagesTest, HistoryCarriesTheStateOfEachOffer) {
  TPayload P;
  P.U8(SMARKETBROWSE).U16(MARKET_SELECTOR_HISTORY);
  P.U32(0);
  P.U32(2).U32(1700000000).U16(2).U16(PLAIN).U16(1).U32(99).U8(3);
  P.U32(1700000001).U16(3).U16(COINS).U16(50).U32(1).U8(1);
  Receive(P.Follower());

  ASSERT_EQ(Sink.MarketBrowses.size(), 1u);
  const TMarketBrowse& B = Sink.MarketBrowses[0];
  EXPECT_TRUE(B.BuyOffers.empty());
  ASSERT_EQ(B.SellOffers.size(), 2u);
  EXPECT_EQ(B.SellOffers[0].ObjectType, PLAIN);
  EXPECT_EQ(B.SellOffers[0].State, 3);
  EXPECT_EQ(B.SellOffers[1].ObjectType, COINS);
  EXPECT_EQ(B.SellOffers[1].Amount, 50);
  EXPECT_EQ(B.SellOffers[1].State, 1);
  ExpectFollowerRead();
}

}  // namespace
