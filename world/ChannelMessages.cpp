// Channels, private conversations and the server's text messages.
#include <string>
#include <vector>

#include "core/MessageQueue.h"
#include "net/Communication.h"
#include "net/Network.h"
#include "world/PlayerMessageReaders.h"
#include "world/PlayerMessages.h"
#include "world/WorldMessages.h"

namespace {

enum : int {
  CHATMESSAGE_CHANNEL_MANAGEMENT = 6,
  CHATMESSAGE_STATUS_VALUE_1 = 22,
  CHATMESSAGE_STATUS_VALUE_7 = 28,
};

void ReadChannels() {
  const int Count = ReadU8();
  std::vector<TChannelListEntry> Channels(static_cast<std::size_t>(Count));
  for (TChannelListEntry& Channel : Channels) {
    Channel.ChannelID = ReadU16();
    Channel.Name = ReadLimitedString(30);
  }
  MessageQueue().Post(MSG_NEW_CHANNEL, std::move(Channels), Count);
}

std::vector<std::string> ReadNames() {
  std::vector<std::string> Names(ReadU16());
  for (std::string& Name : Names) Name = ReadLimitedString(30);
  return Names;
}

void ReadChannel(bool Own) {
  TChannelOpenData Channel;
  Channel.ChannelID = ReadU16();
  Channel.ChannelName = ReadLimitedString(40);
  Channel.Participants = ReadNames();
  Channel.Invitees = ReadNames();
  PlayerMessageSink().OnOpenChannel(Channel, Own);
  MessageQueue().Post(Own ? MSG_OPEN_OWN_CHANNEL_TAB : MSG_OPEN_CHANNEL_TAB, 0, std::move(Channel));
}

void ReadOpenChannel() { ReadChannel(false); }

void ReadOpenOwnChannel() { ReadChannel(true); }

void ReadPrivateChannel() { MessageQueue().Post(MSG_OPEN_PRIVATE_TAB, 0, ReadLimitedString(30)); }

void ReadCloseChannel() { PlayerMessageSink().OnCloseChannel(ReadU16()); }

void ReadChannelEvent() {
  const int ChannelID = ReadU16();
  const std::string Name = ReadLimitedString(30);
  PlayerMessageSink().OnChannelEvent(ChannelID, Name, ReadU8());
}

// Three of the status value modes carry a second value and colour.
bool HasSecondValue(int Mode) { return Mode == 22 || Mode == 23 || Mode == 26; }

void ReadTextMessage() {
  TTextMessage Message;
  Message.ChatMessageMode = ReadU8();
  CheckChatMessageMode(Message.ChatMessageMode);
  const int Mode = Message.ChatMessageMode;
  if (Mode == CHATMESSAGE_CHANNEL_MANAGEMENT) {
    Message.ChannelID = ReadU16();
  } else if (Mode >= CHATMESSAGE_STATUS_VALUE_1 && Mode <= CHATMESSAGE_STATUS_VALUE_7) {
    Message.Position = ReadWirePosition();
    Message.Value = ReadU32();
    Message.Color = ReadU8();
    if (HasSecondValue(Mode)) {
      Message.SecondValue = ReadU32();
      Message.SecondColor = ReadU8();
    }
  }
  Message.Text = ReadLimitedString(4096);
  PlayerMessageSink().OnTextMessage(Message);
}

}  // namespace

void InstallChannelMessageReaders() {
  SetCommandReader(SCHANNELS, ReadChannels);
  SetCommandReader(SOPENCHANNEL, ReadOpenChannel);
  SetCommandReader(SOPENOWNCHANNEL, ReadOpenOwnChannel);
  SetCommandReader(SPRIVATECHANNEL, ReadPrivateChannel);
  SetCommandReader(SCLOSECHANNEL, ReadCloseChannel);
  SetCommandReader(SCHANNELEVENT, ReadChannelEvent);
  SetCommandReader(SMESSAGE, ReadTextMessage);
}
