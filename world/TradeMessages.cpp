// The NPC trade and the trade between two players.
#include <vector>

#include "core/MessageQueue.h"
#include "net/Communication.h"
#include "net/Network.h"
#include "world/PlayerMessageReaders.h"
#include "world/PlayerMessages.h"

namespace {

void ReadNPCOffer() {
  ReadLimitedString(30);  // the NPC's name; the trade window has its own title
  const int Count = ReadU16();
  std::vector<TNPCWare> Wares(static_cast<std::size_t>(Count));
  for (TNPCWare& Ware : Wares) {
    Ware.TypeID = ReadU16();
    Ware.SubType = ReadU8();
    Ware.Name = ReadLimitedString(35);
    Ware.Weight = ReadU32();
    Ware.BuyPrice = ReadU32();
    Ware.SellPrice = ReadU32();
  }
  MessageQueue().Post(MSG_TRADE_NPC, Count, std::move(Wares));
}

void ReadPlayerGoods() {
  TPlayerGoodsHeader Header;
  Header.Money = ReadU64();
  Header.Count = ReadU8();
  std::vector<TPlayerGood> Goods(static_cast<std::size_t>(Header.Count));
  for (TPlayerGood& Good : Goods) {
    Good.TypeID = ReadU16();
    Good.Amount = ReadU8();
  }
  MessageQueue().Post(MSG_TRADE_GOODS, Header, std::move(Goods));
}

void ReadCloseNPCTrade() { MessageQueue().Post(MSG_TRADE_CLOSE_SERVER); }

TTradeOfferRecord ReadTradeOffer() {
  TTradeOfferRecord Offer;
  Offer.Name = ReadLimitedString(30);
  for (int Count = ReadU8(); Count > 0; --Count) Offer.Objects.push_back(ReadObject());
  return Offer;
}

void ReadOwnOffer() { PlayerMessageSink().OnOwnOffer(ReadTradeOffer()); }

void ReadCounterOffer() { PlayerMessageSink().OnCounterOffer(ReadTradeOffer()); }

void ReadCloseTrade() { PlayerMessageSink().OnCloseTrade(); }

}  // namespace

void InstallTradeMessageReaders() {
  SetCommandReader(SNPCOFFER, ReadNPCOffer);
  SetCommandReader(SPLAYERGOODS, ReadPlayerGoods);
  SetCommandReader(SCLOSENPCTRADE, ReadCloseNPCTrade);
  SetCommandReader(SOWNOFFER, ReadOwnOffer);
  SetCommandReader(SCOUNTEROFFER, ReadCounterOffer);
  SetCommandReader(SCLOSETRADE, ReadCloseTrade);
}
