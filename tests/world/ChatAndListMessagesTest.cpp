// The readers of the channel and text commands, the lists (outfits, VIPs,
// hints, automap marks, quests) and the server's dialogs.
#include <string>
#include <vector>

#include "tests/world/PlayerMessageFixture.h"

namespace {

using namespace testing_player;
using testing::ElementsAre;

using ChatAndListMessagesTest = TPlayerMessageTest;

std::vector<int> Types(const std::vector<TMessage>& Messages) {
  std::vector<int> Result;
  for (const TMessage& M : Messages) Result.push_back(M.Type);
  return Result;
}

// ---- Channels ----

TEST_F(ChatAndListMessagesTest, ChannelListIsPostedWithItsCount) {
  Receive(TPayload().U8(SCHANNELS).U8(2).U16(0).Text("Guild").U16(5).Text("Trade").Follower());
  std::vector<TMessage> Messages = TakeMessages();
  ASSERT_EQ(Messages.size(), 1u);
  EXPECT_EQ(Messages[0].Type, MSG_NEW_CHANNEL);
  const auto& Channels = std::any_cast<const std::vector<TChannelListEntry>&>(Messages[0].Data1);
  ASSERT_EQ(Channels.size(), 2u);
  EXPECT_EQ(Channels[0].ChannelID, 0);
  EXPECT_EQ(Channels[0].Name, "Guild");
  EXPECT_EQ(Channels[1].ChannelID, 5);
  EXPECT_EQ(Channels[1].Name, "Trade");
  EXPECT_EQ(Messages[0].Value2(), 2);
  ExpectFollowerRead();
}

TEST_F(ChatAndListMessagesTest, OpenedChannelsGoToTheModelAndToATab) {
  TPayload P;
  P.U8(SOPENCHANNEL).U16(10).Text(std::string(45, 'n'));
  P.U16(2).Text("Alice").Text("Bob").U16(1).Text("Carol");
  P.U8(SOPENOWNCHANNEL).U16(0x1000).Text("Alice's Channel").U16(0).U16(0);
  Receive(P.Follower());

  ASSERT_EQ(Sink.OpenedChannels.size(), 2u);
  const TChannelOpenData& Public = Sink.OpenedChannels[0].first;
  EXPECT_FALSE(Sink.OpenedChannels[0].second);
  EXPECT_EQ(Public.ChannelID, 10);
  EXPECT_EQ(Public.ChannelName, std::string(39, 'n'));
  EXPECT_THAT(Public.Participants, ElementsAre("Alice", "Bob"));
  EXPECT_THAT(Public.Invitees, ElementsAre("Carol"));
  EXPECT_TRUE(Sink.OpenedChannels[1].second);

  std::vector<TMessage> Messages = TakeMessages();
  ASSERT_EQ(Messages.size(), 2u);
  EXPECT_EQ(Messages[0].Type, MSG_OPEN_CHANNEL_TAB);
  EXPECT_EQ(Messages[0].Value1(), 0);
  EXPECT_EQ(std::any_cast<const TChannelOpenData&>(Messages[0].Data2).Participants.size(), 2u);
  EXPECT_EQ(Messages[1].Type, MSG_OPEN_OWN_CHANNEL_TAB);
  const auto& Own = std::any_cast<const TChannelOpenData&>(Messages[1].Data2);
  EXPECT_EQ(Own.ChannelID, 0x1000);
  EXPECT_EQ(Own.ChannelName, "Alice's Channel");
  EXPECT_TRUE(Own.Participants.empty());
  ExpectFollowerRead();
}

TEST_F(ChatAndListMessagesTest, PrivateCloseAndEventMessagesAreReadWhole) {
  TPayload P;
  P.U8(SPRIVATECHANNEL).Text("Bob");
  P.U8(SCLOSECHANNEL).U16(10);
  P.U8(SCHANNELEVENT).U16(10).Text("Alice").U8(1);
  Receive(P.Follower());

  std::vector<TMessage> Messages = TakeMessages();
  ASSERT_EQ(Messages.size(), 1u);
  EXPECT_EQ(Messages[0].Type, MSG_OPEN_PRIVATE_TAB);
  EXPECT_EQ(Messages[0].Value1(), 0);
  EXPECT_EQ(std::any_cast<const std::string&>(Messages[0].Data2), "Bob");
  EXPECT_THAT(Sink.ClosedChannels, ElementsAre(10));
  ASSERT_EQ(Sink.ChannelEvents.size(), 1u);
  EXPECT_EQ(Sink.ChannelEvents[0], std::make_tuple(10, std::string("Alice"), 1));
  ExpectFollowerRead();
}

// ---- Text messages ----

TEST_F(ChatAndListMessagesTest, TextMessageFieldsDependOnTheMode) {
  struct TCase {
    int Mode;
    TPayload Extra;
  };
  const TWirePosition Where{32000, 32001, 7};
  auto Place = [&](TPayload P) { return P.U16(Where.x).U16(Where.y).U8(Where.z); };
  const std::vector<TCase> Cases = {
      {0, TPayload()},
      {1, TPayload()},
      {4, TPayload()},
      {6, TPayload().U16(77)},
      {7, TPayload()},
      {22, Place(TPayload()).U32(100).U8(180).U32(40).U8(215)},
      {23, Place(TPayload()).U32(100).U8(180).U32(40).U8(215)},
      {24, Place(TPayload()).U32(100).U8(180)},
      {25, Place(TPayload()).U32(100).U8(180)},
      {26, Place(TPayload()).U32(100).U8(180).U32(40).U8(215)},
      {27, Place(TPayload()).U32(100).U8(180)},
      {28, Place(TPayload()).U32(100).U8(180)},
      {29, TPayload()},
      {41, TPayload()},
  };
  for (const TCase& Case : Cases) {
    SCOPED_TRACE(Case.Mode);
    Sink.TextMessages.clear();
    Sink.States.clear();
    TPayload P;
    P.U8(SMESSAGE).U8(Case.Mode);
    for (const std::uint8_t Byte : Case.Extra.Get()) P.U8(Byte);
    Receive(P.Text("line").Follower());
    ExpectFollowerRead();
    ASSERT_EQ(Sink.TextMessages.size(), 1u);
    const TTextMessage& M = Sink.TextMessages[0];
    EXPECT_EQ(M.ChatMessageMode, Case.Mode);
    EXPECT_EQ(M.Text, "line");
    EXPECT_EQ(M.ChannelID, Case.Mode == 6 ? 77 : 0);
    const bool HasValue = Case.Mode >= 22 && Case.Mode <= 28;
    const bool HasSecond = Case.Mode == 22 || Case.Mode == 23 || Case.Mode == 26;
    EXPECT_EQ(M.Position, HasValue ? Where : TWirePosition{});
    EXPECT_EQ(M.Value, HasValue ? 100u : 0u);
    EXPECT_EQ(M.Color, HasValue ? 180 : 0);
    EXPECT_EQ(M.SecondValue, HasSecond ? 40u : 0u);
    EXPECT_EQ(M.SecondColor, HasSecond ? 215 : 0);
  }
}

TEST_F(ChatAndListMessagesTest, TextMessageIsCutAt4095Bytes) {
  Receive(TPayload().U8(SMESSAGE).U8(20).Text(std::string(5000, 'a')).Follower());
  ASSERT_EQ(Sink.TextMessages.size(), 1u);
  EXPECT_EQ(Sink.TextMessages[0].Text, std::string(4095, 'a'));
  ExpectFollowerRead();
}

TEST_F(ChatAndListMessagesTest, ModesThatOnlyGoOutAreRefused) {
  for (const int Mode : {5, 12, 16, 39, 42, 255}) {
    SCOPED_TRACE(Mode);
    EXPECT_THAT(FailureOf(TPayload().U8(SMESSAGE).U8(Mode).Text("x")),
                FailsWith("(ChatMessageMode >= CHATMESSAGE_NONE) && (ChatMessageMode < "
                          "CHATMESSAGE_BEYONDLAST) && (ChatMessageMode != CHATMESSAGE_PRIVATE_TO) && "
                          "(ChatMessageMode != CHATMESSAGE_NPC_TO) && (ChatMessageMode != "
                          "CHATMESSAGE_GAMEMASTER_PRIVATE_TO) && (ChatMessageMode != "
                          "CHATMESSAGE_TUTORIAL_HINT) (ChatMessageMode: " +
                          std::to_string(Mode) + ")"));
  }
  EXPECT_TRUE(Sink.TextMessages.empty());
}

// ---- Outfits ----

TPayload CurrentOutfit() {
  return TPayload().U8(SOUTFIT).U16(128).U8(78).U8(69).U8(58).U8(76).U8(3).U16(368);
}

TEST_F(ChatAndListMessagesTest, OutfitChoicePostsTheCurrentOutfitAndTheLists) {
  TPayload P = CurrentOutfit();
  P.U8(2).U16(128).Text("Citizen").U8(3).U16(129).Text(std::string(35, 'h')).U8(0);
  P.U8(1).U16(368).Text("Widow Queen");
  Receive(P.Follower());

  std::vector<TMessage> Messages = TakeMessages();
  ASSERT_EQ(Messages.size(), 1u);
  EXPECT_EQ(Messages[0].Type, MSG_SELECT_OUTFIT);
  const auto& Current = std::any_cast<const TOutfitCurrent&>(Messages[0].Data1);
  EXPECT_EQ(Current.Outfit, 128);
  EXPECT_EQ(Current.Head, 78);
  EXPECT_EQ(Current.Body, 69);
  EXPECT_EQ(Current.Legs, 58);
  EXPECT_EQ(Current.Feet, 76);
  EXPECT_EQ(Current.Addons, 3);
  EXPECT_EQ(Current.Mount, 368);
  const auto& Choices = std::any_cast<const TOutfitChoices&>(Messages[0].Data2);
  ASSERT_EQ(Choices.AvailableOutfits.size(), 2u);
  EXPECT_EQ(Choices.AvailableOutfits[0].Name, "Citizen");
  EXPECT_EQ(Choices.AvailableOutfits[0].Addons, 3);
  EXPECT_EQ(Choices.AvailableOutfits[1].Outfit, 129);
  EXPECT_EQ(Choices.AvailableOutfits[1].Name, std::string(29, 'h'));
  ASSERT_EQ(Choices.AvailableMounts.size(), 1u);
  EXPECT_EQ(Choices.AvailableMounts[0].Mount, 368);
  EXPECT_EQ(Choices.AvailableMounts[0].Name, "Widow Queen");
  ExpectFollowerRead();
}

TEST_F(ChatAndListMessagesTest, OutfitCountsAreBounded) {
  auto Offer = [](int Outfits, int Mounts) {
    TPayload P = CurrentOutfit();
    P.U8(Outfits);
    for (int i = 0; i < Outfits; ++i) P.U16(128 + i).Text("o").U8(0);
    P.U8(Mounts);
    for (int i = 0; i < Mounts; ++i) P.U16(300 + i).Text("m");
    return P;
  };
  EXPECT_THAT(FailureOf(Offer(0, 0)), FailsWith("In(AvailableOutfits,1,AVAILABLE_OUTFITS)"));
  EXPECT_THAT(FailureOf(Offer(51, 0)), FailsWith("In(AvailableOutfits,1,AVAILABLE_OUTFITS)"));
  EXPECT_THAT(FailureOf(Offer(1, 51)), FailsWith("In(AvailableMounts,0,AVAILABLE_MOUNTS)"));
  EXPECT_EQ(FailureOf(Offer(1, 0)), "(no failure)");
  EXPECT_EQ(FailureOf(Offer(50, 50)), "(no failure)");
  EXPECT_THAT(Types(TakeMessages()), ElementsAre(MSG_SELECT_OUTFIT, MSG_SELECT_OUTFIT));
}

// ---- VIP list, hints, automap, quests ----

TEST_F(ChatAndListMessagesTest, BuddyDataCutsTheIconAndAllowsTheName) {
  TPayload P;
  P.U8(SBUDDYDATA).U32(0x1001).Text("Alice").Text(std::string(140, 'd')).U32(300).U8(1).U8(1);
  P.U8(SBUDDYDATA).U32(0x1002).Text("Bob").Text("").U32(7).U8(0).U8(2);
  P.U8(SBUDDYSTATUSCHANGE).U32(0x1001).U8(0);
  Receive(P.Follower());

  ASSERT_EQ(Sink.Buddies.size(), 2u);
  EXPECT_EQ(Sink.Buddies[0].CharacterID, 0x1001u);
  EXPECT_EQ(Sink.Buddies[0].Name, "Alice");
  EXPECT_EQ(Sink.Buddies[0].Description, std::string(128, 'd'));
  EXPECT_EQ(Sink.Buddies[0].Icon, 255);
  EXPECT_TRUE(Sink.Buddies[0].Notify);
  EXPECT_EQ(Sink.Buddies[0].State, 1);
  EXPECT_EQ(Sink.Buddies[1].Icon, 7);
  EXPECT_FALSE(Sink.Buddies[1].Notify);
  EXPECT_EQ(Sink.Buddies[1].State, 2);
  ASSERT_EQ(Sink.BuddyStates.size(), 1u);
  EXPECT_EQ(Sink.BuddyStates[0], std::make_pair(0x1001u, 0));

  std::vector<TMessage> Messages = TakeMessages();
  ASSERT_EQ(Messages.size(), 2u);
  EXPECT_EQ(Messages[0].Type, MSG_VIP_ALLOW_ADD);
  EXPECT_EQ(std::any_cast<const std::string&>(Messages[0].Data1), "Alice");
  EXPECT_EQ(std::any_cast<const std::string&>(Messages[1].Data1), "Bob");
  ExpectFollowerRead();
}

TEST_F(ChatAndListMessagesTest, TutorialHintsOneTo39AreMarkedKnownAndAllArePosted) {
  Receive(TPayload().U8(STUTORIALHINT).U8(1).U8(STUTORIALHINT).U8(39)
              .U8(STUTORIALHINT).U8(0).U8(STUTORIALHINT).U8(40).Follower());
  const auto& Known = Preferences().KnownTutorialHints;
  for (int Hint = 0; Hint <= TUTORIAL_HINTS; ++Hint) {
    EXPECT_EQ(Known[static_cast<std::size_t>(Hint)], Hint == 1 || Hint == 39) << Hint;
  }
  std::vector<int> Hints;
  for (const TMessage& M : TakeMessages()) {
    EXPECT_EQ(M.Type, MSG_TUTORIAL_HINT);
    Hints.push_back(M.Value1());
  }
  EXPECT_THAT(Hints, ElementsAre(1, 39, 0, 40));
  ExpectFollowerRead();
}

TEST_F(ChatAndListMessagesTest, AutomapFlagBlinksForTenSeconds) {
  Advance(5000);
  Receive(TPayload().U8(SAUTOMAPFLAG).U16(32100).U16(32200).U8(7).U8(3).Text("Depot").Follower());
  ASSERT_EQ(Sink.AutomapFlags.size(), 1u);
  const TAutomapFlag& Flag = Sink.AutomapFlags[0];
  EXPECT_EQ(Flag.Position, (TWirePosition{32100, 32200, 7}));
  EXPECT_EQ(Flag.Icon, 3);
  EXPECT_EQ(Flag.Description, "Depot");
  EXPECT_EQ(Flag.FlashUntil, 15000);
  ExpectFollowerRead();
}

TEST_F(ChatAndListMessagesTest, QuestLogAndQuestLine) {
  TPayload P;
  P.U8(SQUESTLOG).U16(2).U16(1).Text("The Paradox Tower").U8(0).U16(7).Text("Desert Quest").U8(1);
  P.U8(SQUESTLINE).U16(7).U8(2).Text("Entrance").Text("Find the way in.");
  P.Text(std::string(60, 'r')).Text(std::string(250, 'x'));
  Receive(P.Follower());

  ASSERT_EQ(Sink.QuestLogs.size(), 1u);
  const std::vector<TQuestLine>& Lines = Sink.QuestLogs[0];
  ASSERT_EQ(Lines.size(), 2u);
  EXPECT_EQ(Lines[0].ID, 1);
  EXPECT_EQ(Lines[0].Name, "The Paradox Tower");
  EXPECT_FALSE(Lines[0].Completed);
  EXPECT_EQ(Lines[1].ID, 7);
  EXPECT_TRUE(Lines[1].Completed);
  ASSERT_EQ(Sink.QuestLines.size(), 1u);
  EXPECT_EQ(Sink.QuestLines[0].first, 7);
  const std::vector<TQuestFlag>& Flags = Sink.QuestLines[0].second;
  ASSERT_EQ(Flags.size(), 2u);
  EXPECT_EQ(Flags[0].Name, "Entrance");
  EXPECT_EQ(Flags[0].Description, "Find the way in.");
  EXPECT_EQ(Flags[1].Name, std::string(49, 'r'));
  EXPECT_EQ(Flags[1].Description, std::string(199, 'x'));
  ExpectFollowerRead();
}

TEST_F(ChatAndListMessagesTest, ObjectInfoAndCarriedObjectsAreReadAndDropped) {
  TPayload P;
  P.U8(SOBJECTINFO).U8(2).U16(PLAIN).U8(0).Text("plain").U16(COINS).U8(1).Text(std::string(40, 'c'));
  P.U8(SPLAYERINVENTORY).U16(2).U16(COINS).U8(0).U16(100).U16(VIAL).U8(7).U16(1);
  Receive(P.Follower());
  EXPECT_TRUE(MessageQueue().IsEmpty());
  ExpectFollowerRead();
}

// ---- Server dialogs ----

TPayload ServerDialog(std::uint32_t Id, int Hold) {
  TPayload P;
  P.U8(SSHOWMODALDIALOG).U32(Id).Text("Choose").Text("Which way?");
  P.U8(2).Text("Ok").U8(1).Text("Cancel").U8(2);
  P.U8(2).Text("North").U8(10).Text("South").U8(20);
  P.U8(1).U8(2).U8(Hold);
  return P;
}

TEST_F(ChatAndListMessagesTest, ServerDialogPostsItsRecordAndTheHold) {
  SetActionState(ACTIONSTATE_MENU);
  Receive(ServerDialog(42, 1).Follower());

  std::vector<TMessage> Messages = TakeMessages();
  ASSERT_EQ(Messages.size(), 2u);
  EXPECT_EQ(Messages[0].Type, MSG_SERVER_DIALOG);
  const auto& Dialog = std::any_cast<const TServerDialogRecord&>(Messages[0].Data1);
  EXPECT_EQ(Dialog.ID, 42u);
  EXPECT_EQ(Dialog.Title, "Choose");
  EXPECT_EQ(Dialog.Text, "Which way?");
  ASSERT_EQ(Dialog.Buttons.size(), 2u);
  EXPECT_EQ(Dialog.Buttons[1].Label, "Cancel");
  EXPECT_EQ(Dialog.Buttons[1].Value, 2);
  ASSERT_EQ(Dialog.Choices.size(), 2u);
  EXPECT_EQ(Dialog.Choices[0].Label, "North");
  EXPECT_EQ(Dialog.Choices[1].Value, 20);
  EXPECT_EQ(Dialog.EnterValue, 1);
  EXPECT_EQ(Dialog.EscapeValue, 2);
  EXPECT_EQ(Messages[1].Type, MSG_SERVER_DIALOG_HOLD);
  EXPECT_EQ(Messages[1].Value1(), 1);
  // No dialog on screen: nothing was closed.
  EXPECT_EQ(GetActionState(), ACTIONSTATE_MENU);
  ExpectFollowerRead();
}

TEST_F(ChatAndListMessagesTest, SecondServerDialogReplacesTheOneOnScreen) {
  bool ModalWindow = false;
  ClientHooks().HasModalWindow = [&] { return ModalWindow; };
  Receive(ServerDialog(1, 0));
  // The main step opens the first dialog; its hold stays at the queue's front.
  ASSERT_EQ(MessageQueue().Take().Type, MSG_SERVER_DIALOG);
  ModalWindow = true;
  SetActionState(ACTIONSTATE_MODAL);

  Receive(ServerDialog(2, 1));
  EXPECT_EQ(GetActionState(), ACTIONSTATE_NONE);
  std::vector<TMessage> Messages = TakeMessages();
  EXPECT_THAT(Types(Messages), ElementsAre(MSG_SERVER_DIALOG_HOLD, MSG_SERVER_DIALOG, MSG_SERVER_DIALOG_HOLD));
  EXPECT_EQ(std::any_cast<const TServerDialogRecord&>(Messages[1].Data1).ID, 2u);
}

TEST_F(ChatAndListMessagesTest, OtherDialogsOnScreenStayOpen) {
  ClientHooks().HasModalWindow = [] { return true; };
  SetActionState(ACTIONSTATE_MODAL);
  MessageQueue().Post(MSG_EDIT_LIST);
  Receive(ServerDialog(3, 0));
  EXPECT_EQ(GetActionState(), ACTIONSTATE_MODAL);

  // A hold at the front without a dialog on screen closes nothing either.
  MessageQueue().Clear();
  ClientHooks().HasModalWindow = [] { return false; };
  MessageQueue().Post(MSG_SERVER_DIALOG_HOLD, 0);
  Receive(ServerDialog(4, 0));
  EXPECT_EQ(GetActionState(), ACTIONSTATE_MODAL);
}

}  // namespace
