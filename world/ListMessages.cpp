// Outfits, the VIP list, tutorial hints, automap marks, the quest log, the
// lists that the client ignores, and the server's own dialogs.
#include <algorithm>
#include <string>
#include <vector>

#include "core/Clock.h"
#include "core/Exception.h"
#include "core/MessageQueue.h"
#include "core/Preferences.h"
#include "core/ProgramState.h"
#include "net/ClientHooks.h"
#include "net/Communication.h"
#include "net/Network.h"
#include "world/PlayerMessageReaders.h"
#include "world/PlayerMessages.h"
#include "world/WorldMessages.h"

namespace {

constexpr int AUTOMAP_FLASH_MILLISECONDS = 10000;

TOutfitCurrent ReadCurrentOutfit() {
  TOutfitCurrent Current;
  Current.Outfit = ReadU16();
  Current.Head = ReadU8();
  Current.Body = ReadU8();
  Current.Legs = ReadU8();
  Current.Feet = ReadU8();
  Current.Addons = ReadU8();
  Current.Mount = ReadU16();
  return Current;
}

void ReadOutfit() {
  TOutfitCurrent Current = ReadCurrentOutfit();
  TOutfitChoices Choices;
  const int AvailableOutfits = ReadU8();
  Check(AvailableOutfits >= 1 && AvailableOutfits <= AVAILABLE_OUTFITS,
        "In(AvailableOutfits,1,AVAILABLE_OUTFITS)", {"AvailableOutfits", AvailableOutfits});
  for (int i = 0; i < AvailableOutfits; ++i) {
    TOutfitChoice& Outfit = Choices.AvailableOutfits.emplace_back();
    Outfit.Outfit = ReadU16();
    Outfit.Name = ReadLimitedString(30);
    Outfit.Addons = ReadU8();
  }
  const int AvailableMounts = ReadU8();
  Check(AvailableMounts <= AVAILABLE_MOUNTS, "In(AvailableMounts,0,AVAILABLE_MOUNTS)",
        {"AvailableMounts", AvailableMounts});
  for (int i = 0; i < AvailableMounts; ++i) {
    TMountChoice& Mount = Choices.AvailableMounts.emplace_back();
    Mount.Mount = ReadU16();
    Mount.Name = ReadLimitedString(30);
  }
  MessageQueue().Post(MSG_SELECT_OUTFIT, std::move(Current), std::move(Choices));
}

void ReadBuddyData() {
  TBuddyRecord Buddy;
  Buddy.CharacterID = ReadU32();
  Buddy.Name = ReadLimitedString(30);
  Buddy.Description = ReadLimitedString(129);
  Buddy.Icon = static_cast<int>(std::min<std::uint32_t>(ReadU32(), 255));
  Buddy.Notify = ReadU8() != 0;
  Buddy.State = ReadU8();
  PlayerMessageSink().OnBuddyData(Buddy);
  MessageQueue().Post(MSG_VIP_ALLOW_ADD, Buddy.Name);
}

void ReadBuddyStatusChange() {
  const std::uint32_t CharacterID = ReadU32();
  PlayerMessageSink().OnBuddyStatus(CharacterID, ReadU8());
}

void ReadTutorialHint() {
  const int Hint = ReadU8();
  if (Hint >= 1 && Hint <= TUTORIAL_HINTS) {
    Preferences().KnownTutorialHints[static_cast<std::size_t>(Hint)] = true;
  }
  MessageQueue().Post(MSG_TUTORIAL_HINT, Hint);
}

void ReadAutomapFlag() {
  TAutomapFlag Flag;
  Flag.Position = ReadWirePosition();
  Flag.Icon = ReadU8();
  Flag.Description = ReadLimitedString(4096);
  Flag.FlashUntil = GetProgramTime() + AUTOMAP_FLASH_MILLISECONDS;
  PlayerMessageSink().OnAutomapFlag(Flag);
}

void ReadQuestLog() {
  std::vector<TQuestLine> Lines(ReadU16());
  for (TQuestLine& Line : Lines) {
    Line.ID = ReadU16();
    Line.Name = ReadLimitedString(50);
    Line.Completed = ReadU8() != 0;
  }
  PlayerMessageSink().OnQuestLog(Lines);
}

void ReadQuestLine() {
  const int Line = ReadU16();
  std::vector<TQuestFlag> Flags(ReadU8());
  for (TQuestFlag& Flag : Flags) {
    Flag.Name = ReadLimitedString(50);
    Flag.Description = ReadLimitedString(200);
  }
  PlayerMessageSink().OnQuestLine(Line, Flags);
}

// Descriptions for lists that this client does not keep.
void ReadObjectInfo() {
  for (int Count = ReadU8(); Count > 0; --Count) {
    ReadU16();
    ReadU8();
    ReadLimitedString(35);
  }
}

// The count of every object that the player carries; not kept either.
void ReadPlayerInventory() {
  for (int Count = ReadU16(); Count > 0; --Count) {
    ReadU16();
    ReadU8();
    ReadU16();
  }
}

std::vector<TServerDialogButton> ReadDialogButtons() {
  std::vector<TServerDialogButton> Buttons(ReadU8());
  for (TServerDialogButton& Button : Buttons) {
    Button.Label = ReadNewString();
    Button.Value = ReadU8();
  }
  return Buttons;
}

// While a server dialog is on screen, the hold message that came with it
// stands at the queue's front; a new dialog replaces that one.
void CloseServerDialogOnScreen() {
  const bool HasModalWindow = ClientHooks().HasModalWindow && ClientHooks().HasModalWindow();
  const TMessage* Front = MessageQueue().Front();
  if (HasModalWindow && Front != nullptr && Front->Type == MSG_SERVER_DIALOG_HOLD) {
    SetActionState(ACTIONSTATE_NONE);
  }
}

void ReadShowModalDialog() {
  TServerDialogRecord Dialog;
  Dialog.ID = ReadU32();
  Dialog.Title = ReadNewString();
  Dialog.Text = ReadNewString();
  Dialog.Buttons = ReadDialogButtons();
  Dialog.Choices = ReadDialogButtons();
  Dialog.EnterValue = ReadU8();
  Dialog.EscapeValue = ReadU8();
  const int Hold = ReadU8();
  CloseServerDialogOnScreen();
  MessageQueue().Post(MSG_SERVER_DIALOG, std::move(Dialog));
  MessageQueue().Post(MSG_SERVER_DIALOG_HOLD, Hold);
}

}  // namespace

void InstallListMessageReaders() {
  SetCommandReader(SOUTFIT, ReadOutfit);
  SetCommandReader(SBUDDYDATA, ReadBuddyData);
  SetCommandReader(SBUDDYSTATUSCHANGE, ReadBuddyStatusChange);
  SetCommandReader(STUTORIALHINT, ReadTutorialHint);
  SetCommandReader(SAUTOMAPFLAG, ReadAutomapFlag);
  SetCommandReader(SQUESTLOG, ReadQuestLog);
  SetCommandReader(SQUESTLINE, ReadQuestLine);
  SetCommandReader(SOBJECTINFO, ReadObjectInfo);
  SetCommandReader(SPLAYERINVENTORY, ReadPlayerInventory);
  SetCommandReader(SSHOWMODALDIALOG, ReadShowModalDialog);
}
