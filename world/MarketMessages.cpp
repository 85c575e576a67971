// The market: entering and leaving it, the details of one object type, and
// the lists of offers.
#include <algorithm>
#include <cstdint>
#include <vector>

#include "core/MessageQueue.h"
#include "core/ProgramState.h"
#include "net/Communication.h"
#include "net/Network.h"
#include "world/PlayerMessageReaders.h"
#include "world/PlayerMessages.h"

namespace {

void ReadMarketEnter() {
  TMarketEnter Market;
  Market.Balance = ReadU64();
  Market.ActiveOffers = ReadU8();
  Market.Depot.resize(ReadU16());
  for (TDepotObject& Object : Market.Depot) {
    Object.ObjectType = ReadU16();
    Object.Amount = ReadU16();
  }
  TPlayerMessageSink& Sink = PlayerMessageSink();
  Sink.OnMarketEnter(Market);
  if (!Sink.IsMarketDialogOpen()) MessageQueue().Post(MSG_MARKET_BROWSE);
}

void ReadMarketLeave() {
  TPlayerMessageSink& Sink = PlayerMessageSink();
  Sink.OnMarketLeave();
  if (Sink.IsMarketDialogOpen()) SetActionState(ACTIONSTATE_NONE);
}

// One side's rows, folded to what the statistics show.
TMarketStatistics ReadStatistics() {
  constexpr std::uint32_t NO_LOWEST = 0xFFFFFFFF;
  TMarketStatistics Statistics;
  Statistics.Lowest = NO_LOWEST;
  for (int Count = ReadU8(); Count > 0; --Count) {
    const std::uint32_t Transactions = ReadU32();
    Statistics.Transactions += Transactions;
    Statistics.Total += ReadU32();
    Statistics.Highest = std::max(Statistics.Highest, ReadU32());
    Statistics.Lowest = std::min(Statistics.Lowest, ReadU32());
    if (Transactions != 0) ++Statistics.Rows;
  }
  if (Statistics.Lowest == NO_LOWEST) Statistics.Lowest = 0;
  return Statistics;
}

void ReadMarketDetail() {
  TMarketDetails Details;
  Details.ObjectType = ReadU16();
  for (std::string& Detail : Details.Details) Detail = ReadNewString();
  Details.Buy = ReadStatistics();
  Details.Sell = ReadStatistics();
  PlayerMessageSink().OnMarketDetails(Details);
}

std::vector<TMarketOfferRecord> ReadOffers(int Selector) {
  const bool History = Selector == MARKET_SELECTOR_HISTORY;
  const bool Browse = Selector != MARKET_SELECTOR_HISTORY && Selector != MARKET_SELECTOR_OWN_OFFERS;
  std::vector<TMarketOfferRecord> Offers;
  for (std::uint32_t Count = ReadU32(); Count > 0; --Count) {
    TMarketOfferRecord& Offer = Offers.emplace_back();
    Offer.Timestamp = ReadU32();
    Offer.Counter = ReadU16();
    Offer.ObjectType = Browse ? Selector : ReadU16();
    Offer.Amount = ReadU16();
    Offer.PricePerObject = ReadU32();
    if (History) Offer.State = ReadU8();
    if (Browse) Offer.CharacterName = ReadLimitedString(30);
  }
  return Offers;
}

void ReadMarketBrowse() {
  TMarketBrowse Browse;
  Browse.Selector = ReadU16();
  Browse.BuyOffers = ReadOffers(Browse.Selector);
  Browse.SellOffers = ReadOffers(Browse.Selector);
  PlayerMessageSink().OnMarketBrowse(Browse);
}

}  // namespace

void InstallMarketMessageReaders() {
  SetCommandReader(SMARKETENTER, ReadMarketEnter);
  SetCommandReader(SMARKETLEAVE, ReadMarketLeave);
  SetCommandReader(SMARKETDETAIL, ReadMarketDetail);
  SetCommandReader(SMARKETBROWSE, ReadMarketBrowse);
}
