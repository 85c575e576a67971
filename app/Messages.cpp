#include "app/Messages.h"

#include <string>

#include "app/AutoLogin.h"
#include "core/ErrorReport.h"
#include "core/Exception.h"
#include "core/Log.h"
#include "core/Paths.h"
#include "core/ProgramState.h"
#include "net/Connection.h"
#include "net/Login.h"
#include "platform/MessageBox.h"
#include "platform/Shell.h"

namespace {

std::string TextOf(const std::any& Data) {
  if (const auto* Text = std::any_cast<std::string>(&Data)) return *Text;
  return {};
}

constexpr const char* PATCH_EXIT_TEXT =
    "Kelmo will shut down now and run an external patching program.\n\n"
    "When this program has finished, please restart Kelmo and log in again.";

}  // namespace

void CMessageHandler::Drain(CMessageQueue& Queue) {
  while (m_Host.CanTakeMessages() && !Queue.IsEmpty()) {
    TMessage Message = Queue.Take();
    m_CurrentType = Message.Type;
    if (m_Observer) m_Observer(Message);
    const bool GoOn = Handle(Queue, Message);
    m_LastHandledType = m_CurrentType;
    m_CurrentType = 0;
    if (!GoOn) return;
  }
}

bool CMessageHandler::Handle(CMessageQueue& Queue, TMessage& Message) {
  switch (Message.Type) {
    case MSG_MESSAGEBOX:
    case MSG_FORMATBOX:
      platform::MessageBox(TextOf(Message.Data1), TextOf(Message.Data2),
                           platform::TBoxIcon::INFORMATION);
      return true;
    case MSG_WAIT_CHARACTERLIST:
      LogInfo("Connecting: Your character list is being loaded. Please wait.");
      return true;
    case MSG_WAIT_GAMEWORLD:
      LogInfo("Connecting: Connecting to the game world. Please wait.");
      return true;
    case MSG_SERVER_NOT_RESPONDING:
      if (IsServerSilent()) LogInfo("Game Server not responding. Please wait.");
      return true;
    case MSG_SELECT_CHARACTER:
      if (!ChooseAutoLoginCharacter()) Postpone(Message);
      return true;
    case MSG_MOTD:
      platform::MessageBox("Message of the Day",
                           GetMessageOfTheDay().empty() ? "No current information." : GetMessageOfTheDay(),
                           platform::TBoxIcon::INFORMATION);
      return true;
    case MSG_CONNECT_LOGIN:
      HandleConnectLogin();
      return true;
    case MSG_CONNECT_GAME:
      HandleConnectGame();
      return true;
    case MSG_RECONNECT:
      HandleReconnect();
      return true;
    case MSG_REPLACE_DAT:
    case MSG_REPLACE_SPR:
    case MSG_REPLACE_PIC:
      ReplaceDataFile(Queue, Message.Type);
      return true;
    case MSG_ERROR_REPORT:
      if (!GetErrorEntries().empty()) Postpone(Message);
      return true;
    case MSG_ACTION_7:
      SetActionState(7);
      return true;
    case MSG_ACTION_9:
      SetActionState(9);
      return true;
    case MSG_ACTION_10:
      SetActionState(10);
      return true;
    case MSG_TALK_FLUSH:
      Postpone(Message);
      return false;
    case MSG_REPORT:
      // A report that names its kind only follows a report handled just before.
      if (Message.Value1() <= 0 || m_LastHandledType == MSG_REPORT) Postpone(Message);
      return true;
    case MSG_SERVER_DIALOG_HOLD:
      return true;
    case MSG_WAIT_OFFLINE:
      if (GetConnectionState() == OFFLINE) return true;
      Queue.PostFront(MSG_WAIT_OFFLINE);
      return false;
    case MSG_PATCH_EXIT:
      platform::MessageBox("Updating", PATCH_EXIT_TEXT, platform::TBoxIcon::INFORMATION);
      Queue.Post(MSG_TERMINATE_PATCH);
      return true;
    case MSG_TERMINATE_PATCH:
      if (!FileExists(GetFileName(TFileKind::PROGRAM, true))) throw PROGRAM_ERROR::PATCH_NOT_FOUND;
      m_Host.Terminate(true);
      return false;
    case MSG_TERMINATE:
      m_Host.Terminate(false);
      return false;
    case MSG_OPEN_URL:
      if (GetViewMode() == FULLSCREEN_MODE) SetViewMode(WINDOWED_MODE);
      if (!platform::OpenUrlInBackground(TextOf(Message.Data1))) ThrowException("failed to create thread");
      return true;
    default:
      if (Message.Type < MSG_FIRST || Message.Type > MSG_LAST) {
        ThrowException("unknown message type", {{"Type", std::to_string(Message.Type)}});
      }
      Postpone(Message);
      return true;
  }
}

// A download that can't be installed ends in the external patch.
void CMessageHandler::ReplaceDataFile(CMessageQueue& Queue, int Type) {
  const TFileKind Kind = Type == MSG_REPLACE_DAT   ? TFileKind::OBJECT_TYPES
                         : Type == MSG_REPLACE_SPR ? TFileKind::SPRITES
                                                   : TFileKind::PICTURES;
  bool Replaced = false;
  try {
    Replaced = ReplaceWithTemporary(Kind);
  } catch (const TMyException& E) {
    LogInfo(std::string("replacing a data file failed: ") + E.what());
  }
  if (Replaced) return;
  Queue.Clear();
  Queue.Post(MSG_PATCH_EXIT);
}

// Messages whose dialogs, menus or modules are not built yet are taken and
// noted, so that nothing vanishes without a trace.
void CMessageHandler::Postpone(const TMessage& Message) {
  LogInfo(std::string("message ") + GetMessageTypeName(Message.Type) + " (" +
          std::to_string(Message.Type) + ") taken; its handler is not built yet");
}
