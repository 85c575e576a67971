#pragma once
// The readers of the commands that are not about the map: containers and
// inventory, both kinds of trade, the player's numbers, chat frames, lists,
// the market and server-defined dialogs. Each reader consumes exactly its
// fields. What needs the GUI goes through the message queue, with the records
// below as data; what belongs to a model goes to the player message sink.
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "world/Map.h"
#include "world/Player.h"
#include "world/WorldMessages.h"

constexpr int AVAILABLE_OUTFITS = 50;
constexpr int AVAILABLE_MOUNTS = 50;
constexpr int MARKET_DETAILS = 15;
// Selectors of a market browse that are no object type.
constexpr int MARKET_SELECTOR_OWN_OFFERS = 0xFFFE;
constexpr int MARKET_SELECTOR_HISTORY = 0xFFFF;
// An offer that is no history entry counts as being in this state.
constexpr int MARKET_OFFER_STATE_ACTIVE = 4;

// Installs a reader for every command that this module reads.
void InstallPlayerMessageReaders();

// The one handler of SCREATEINCONTAINER, SCHANGEINCONTAINER and
// SDELETEINCONTAINER; any other type fails.
void ReadContainerObjectMessage(int MessageType);

// ---- Records posted to the queue ----

// One row of MSG_TRADE_NPC.
struct TNPCWare {
  int TypeID = 0;
  int SubType = 0;
  std::string Name;
  std::uint32_t Weight = 0;  // hundredths of an ounce
  std::uint32_t BuyPrice = 0;
  std::uint32_t SellPrice = 0;
  int Amount = 0;  // filled in from the player's goods
  int ListIndex = -1;
};

// MSG_TRADE_GOODS: the header, and the rows as an array.
struct TPlayerGoodsHeader {
  int Count = 0;
  std::uint64_t Money = 0;
};
struct TPlayerGood {
  int TypeID = 0;
  int SubType = 0;
  int Amount = 0;
};

struct TEditTextRecord {
  std::uint32_t TextID = 0;
  TObject Object;
  int MaximumLength = 0;
  std::string Text;
  std::string Author;
  std::string Date;
};

struct TEditListRecord {
  int ListType = 0;
  std::uint32_t ListID = 0;
  std::string Text;
};

// MSG_NEW_CHANNEL: the list, then the count.
struct TChannelListEntry {
  int ChannelID = 0;
  std::string Name;
};

// MSG_OPEN_CHANNEL_TAB and MSG_OPEN_OWN_CHANNEL_TAB.
struct TChannelOpenData {
  int ChannelID = 0;
  std::string ChannelName;
  std::vector<std::string> Participants;
  std::vector<std::string> Invitees;
};

// MSG_SELECT_OUTFIT: what the player wears, and what may be chosen.
struct TOutfitCurrent {
  int Outfit = 0;
  int Head = 0, Body = 0, Legs = 0, Feet = 0;
  int Addons = 0;
  int Mount = 0;
};
struct TOutfitChoice {
  int Outfit = 0;
  std::string Name;
  int Addons = 0;
};
struct TMountChoice {
  int Mount = 0;
  std::string Name;
};
struct TOutfitChoices {
  std::vector<TOutfitChoice> AvailableOutfits;
  std::vector<TMountChoice> AvailableMounts;
};

// MSG_SERVER_DIALOG.
struct TServerDialogButton {
  std::string Label;
  int Value = 0;
};
struct TServerDialogRecord {
  std::uint32_t ID = 0;
  std::string Title;
  std::string Text;
  std::vector<TServerDialogButton> Buttons;
  std::vector<TServerDialogButton> Choices;
  int EnterValue = 0;
  int EscapeValue = 0;
};

// ---- Records handed to the sink ----

struct TContainerRecord {
  int ContainerID = 0;
  TObject Icon;
  std::string Name;  // first letter raised
  int NumberOfSlotsPerPage = 0;
  bool HasParent = false;
  bool DragAndDropAllowed = false;
  bool IsPaginationEnabled = false;
  // As on the wire: the content objects below are part of it. The view is
  // made with the total less their count, and each is added at
  // IndexOfFirstObject plus its position here.
  int NumberOfTotalObjects = 0;
  int IndexOfFirstObject = 0;
  std::vector<TObject> Objects;
};

// An add, change or delete by MessageType; a delete's Object is the one that
// moves into view, Type 0 if none.
struct TContainerObjectRecord {
  int MessageType = 0;
  int ContainerID = 0;
  int Index = 0;
  TObject Object;
};

struct TTradeOfferRecord {
  std::string Name;  // the partner
  std::vector<TObject> Objects;
};

struct TPlayerDataBasic {
  bool PremiumAccount = false;
  std::int64_t PremiumUntil = 0;
  int Profession = 0;  // 0 or 1 to 4
};

struct TPlayerDataCurrent {
  int HitPoints = 0, MaxHitPoints = 0;
  int FreeCapacity = 0;
  std::int64_t Experience = 0;
  int Level = 0, LevelProgress = 0;
  int Mana = 0, MaxMana = 0;
  int MagicLevel = 0, MagicProgress = 0;
  int SoulPoints = 0;
  int Stamina = 0;          // minutes
  int OfflineTraining = 0;  // minutes
};

// By skill number, in the order of the skills table.
struct TPlayerSkills {
  std::array<int, SKILLS> Level{};
  std::array<int, SKILLS> Progress{};
};

struct TTactics {
  int AttackMode = 0;
  int ChaseMode = 0;
  bool SecureMode = false;
  int PvPMode = 0;
};

struct TUnjustPoints {
  int ProgressDay = 0, KillsRemainingDay = 0;
  int ProgressWeek = 0, KillsRemainingWeek = 0;
  int ProgressMonth = 0, KillsRemainingMonth = 0;
  int SkullTime = 0;
};

// SMESSAGE. Which of the fields the wire carries depends on the mode.
struct TTextMessage {
  int ChatMessageMode = 0;
  int ChannelID = 0;
  TWirePosition Position;
  std::uint32_t Value = 0;
  int Color = 0;
  std::uint32_t SecondValue = 0;
  int SecondColor = 0;
  std::string Text;
};

struct TBuddyRecord {
  std::uint32_t CharacterID = 0;
  std::string Name;
  std::string Description;
  int Icon = 0;  // cut to at most 255
  bool Notify = false;
  int State = 0;
};

struct TAutomapFlag {
  TWirePosition Position;
  int Icon = 0;
  std::string Description;
  int FlashUntil = 0;  // program time up to which the automap button blinks
};

struct TQuestLine {
  int ID = 0;
  std::string Name;
  bool Completed = false;
};
struct TQuestFlag {
  std::string Name;
  std::string Description;
};

struct TDepotObject {
  int ObjectType = 0;
  int Amount = 0;
};
struct TMarketEnter {
  std::uint64_t Balance = 0;
  int ActiveOffers = 0;
  std::vector<TDepotObject> Depot;
};

// One side of the statistics, folded from its rows as AddStatistics takes it.
struct TMarketStatistics {
  std::uint64_t Transactions = 0;
  std::uint64_t Total = 0;
  std::uint32_t Highest = 0;
  std::uint32_t Lowest = 0;  // 0 if no row lowered it
  int Rows = 0;              // rows with a transaction count other than 0
  bool operator==(const TMarketStatistics&) const = default;
};
struct TMarketDetails {
  int ObjectType = 0;
  std::array<std::string, MARKET_DETAILS> Details;
  TMarketStatistics Buy;
  TMarketStatistics Sell;
};

struct TMarketOfferRecord {
  std::uint32_t Timestamp = 0;
  int Counter = 0;
  int ObjectType = 0;  // the selector when an object type is browsed
  int Amount = 0;
  std::uint32_t PricePerObject = 0;
  int State = MARKET_OFFER_STATE_ACTIVE;
  std::string CharacterName;  // only when an object type is browsed
};
struct TMarketBrowse {
  int Selector = 0;
  std::vector<TMarketOfferRecord> BuyOffers;
  std::vector<TMarketOfferRecord> SellOffers;
};

// ---- The models' side ----

// Where the readers hand what the models keep. The player's numbers go to the
// player state; every other operation of the base does nothing, so the
// readers work before the models are there. The models override what is theirs.
struct TPlayerMessageSink {
  virtual ~TPlayerMessageSink() = default;

  // Containers and body. OnContainer answers whether the view stands.
  virtual bool OnContainer(const TContainerRecord&) { return true; }
  virtual void OnCloseContainer(int /*ContainerID*/) {}
  // Applied only if the view exists.
  virtual void OnContainerObject(const TContainerObjectRecord&) {}
  // Type 0 empties the slot.
  virtual void OnBodyObject(int /*Position*/, const TObject&) {}

  // Player trade. A counter offer is stored only if a trade is open.
  virtual void OnOwnOffer(const TTradeOfferRecord&) {}
  virtual void OnCounterOffer(const TTradeOfferRecord&) {}
  virtual void OnCloseTrade() {}

  // Player numbers.
  virtual void OnPremiumTrigger(const std::vector<int>& /*Triggers*/, bool /*Highlight*/) {}
  virtual void OnPlayerDataBasic(const TPlayerDataBasic&);
  virtual void OnPlayerDataCurrent(const TPlayerDataCurrent&);
  virtual void OnPlayerSkills(const TPlayerSkills&);
  virtual void OnPlayerState(int PlayerStateFlags);
  virtual void OnSpellDelay(int Spell, std::uint32_t Delay);
  virtual void OnSpellGroupDelay(int SpellGroup, std::uint32_t Delay);
  virtual void OnMultiUseDelay(std::uint32_t Delay);
  virtual void OnTactics(const TTactics&) {}
  virtual void OnUnjustifiedPoints(const TUnjustPoints&) {}
  virtual void OnPvPSituations(int /*OpenPvPSituations*/) {}

  // Channels and text. A channel's buffer is opened before its tab is posted.
  virtual void OnOpenChannel(const TChannelOpenData&, bool /*Own*/) {}
  virtual void OnCloseChannel(int /*ChannelID*/) {}
  virtual void OnChannelEvent(int /*ChannelID*/, const std::string& /*Name*/, int /*Kind*/) {}
  virtual void OnTextMessage(const TTextMessage&) {}

  // Lists.
  virtual void OnBuddyData(const TBuddyRecord&) {}
  virtual void OnBuddyStatus(std::uint32_t /*CharacterID*/, int /*State*/) {}
  virtual void OnAutomapFlag(const TAutomapFlag&) {}
  virtual void OnQuestLog(const std::vector<TQuestLine>&) {}
  virtual void OnQuestLine(int /*Line*/, const std::vector<TQuestFlag>&) {}

  // Market.
  virtual bool IsMarketDialogOpen() const { return false; }
  virtual void OnMarketEnter(const TMarketEnter&) {}
  virtual void OnMarketLeave() {}
  virtual void OnMarketDetails(const TMarketDetails&) {}
  virtual void OnMarketBrowse(const TMarketBrowse&) {}
};

// Installs the sink, which must outlive its use; null brings back the one
// that does nothing.
void SetPlayerMessageSink(TPlayerMessageSink* Sink);
TPlayerMessageSink& PlayerMessageSink();
