#include "core/MessageQueue.h"

#include <array>

#include "core/Exception.h"

namespace {

constexpr std::array<const char*, MSG_LAST> MessageTypeNames = {
    "MSG_MESSAGEBOX", "MSG_FORMATBOX", "MSG_WAIT_CHARACTERLIST", "MSG_WAIT_GAMEWORLD",
    "MSG_SERVER_NOT_RESPONDING", "MSG_LOGIN_QUEUE", "MSG_CONFIRM_LEAVE", "MSG_EXIT_DIALOG",
    "MSG_ENTER_GAME", "MSG_WAIT_CHARACTERS", "MSG_SELECT_CHARACTER", "MSG_YOU_ARE_DEAD",
    "MSG_LINK_WARNING", "MSG_ACCOUNT_WARNING", "MSG_MOVE_OBJECTS", "MSG_EDIT_TEXT",
    "MSG_EDIT_LIST", "MSG_SELECT_OUTFIT", "MSG_PREMIUM_TOGGLE", "MSG_BUGREPORT",
    "MSG_NEW_CHANNEL", "MSG_CHANNEL_INVITE", "MSG_CHANNEL_EXCLUDE", "MSG_IGNORE_LIST",
    "MSG_ADD_BUDDY", "MSG_EDIT_BUDDY", "MSG_VIP_ALLOW_ADD", "MSG_VIP_ALLOW_REMOVE",
    "MSG_QUEST_LOG", "MSG_QUEST_LINE", "MSG_INFO", "MSG_EDIT_MARK_NEW", "MSG_EDIT_MARK",
    "MSG_HELP_MENU", "MSG_TUTORIAL_MENU", "MSG_OPTIONS", "MSG_GRAPHICS_OPTIONS",
    "MSG_ADVANCED_GRAPHICS_OPTIONS", "MSG_CONSOLE_OPTIONS", "MSG_HOTKEY_OPTIONS",
    "MSG_GENERAL_OPTIONS", "MSG_MOTD", "MSG_EXPORT_ASK", "MSG_EXPORT_RUN", "MSG_EXPORT_DONE",
    "MSG_DOWNLOAD", "MSG_ERROR_REPORT", "MSG_ACTION_7", "MSG_ACTION_9", "MSG_ACTION_10",
    "MSG_TALK_FLUSH", "MSG_OPEN_PRIVATE_TAB", "MSG_OPEN_CHANNEL_TAB",
    "MSG_OPEN_OWN_CHANNEL_TAB", "MSG_NPC_TAB_OPEN", "MSG_CONSOLE_TAB", "MSG_CONSOLE_NEXT",
    "MSG_CONSOLE_PREVIOUS", "MSG_TRADE_NPC", "MSG_TRADE_GOODS", "MSG_TRADE_WARES_REFRESH",
    "MSG_TRADE_CLOSE_SERVER", "MSG_TRADE_REFRESH", "MSG_TUTORIAL_HINT", "MSG_REPORT",
    "MSG_MARKET_BROWSE", "MSG_MARKET_OWN", "MSG_SERVER_DIALOG", "MSG_SERVER_DIALOG_HOLD",
    "MSG_MENU_OBJECT", "MSG_MENU_ATTACK", "MSG_MENU_BUDDY", "MSG_MENU_CONSOLE",
    "MSG_MENU_CONSOLETAB", "MSG_MENU_EDIT", "MSG_MENU_AUTOMAP", "MSG_MENU_SKILLS",
    "MSG_MENU_WARES", "MSG_CONNECT_LOGIN", "MSG_CONNECT_GAME", "MSG_RECONNECT",
    "MSG_WAIT_OFFLINE", "MSG_REPLACE_DAT", "MSG_REPLACE_SPR", "MSG_REPLACE_PIC",
    "MSG_RELOAD_DAT", "MSG_RELOAD_SPR", "MSG_RELOAD_PIC", "MSG_PATCH_EXIT",
    "MSG_TERMINATE_PATCH", "MSG_TERMINATE", "MSG_OPEN_URL"};

int NumberOf(const std::any& Data) {
  if (!Data.has_value()) return 0;
  if (const int* Number = std::any_cast<int>(&Data)) return *Number;
  ThrowException("message data is not a number");
}

}  // namespace

const char* GetMessageTypeName(int Type) {
  if (Type < MSG_FIRST || Type > MSG_LAST) return "unknown message type";
  return MessageTypeNames[Type - MSG_FIRST];
}

int TMessage::Value1() const { return NumberOf(Data1); }
int TMessage::Value2() const { return NumberOf(Data2); }

TMessage CMessageQueue::Make(int Type, std::any Data1, std::any Data2) {
  return TMessage{Type, std::move(Data1), std::move(Data2)};
}

void CMessageQueue::Post(int Type, std::any Data1, std::any Data2) {
  m_Queue.push_back(Make(Type, std::move(Data1), std::move(Data2)));
}

void CMessageQueue::PostFront(int Type, std::any Data1, std::any Data2) {
  m_Queue.push_front(Make(Type, std::move(Data1), std::move(Data2)));
}

TMessage CMessageQueue::Take() {
  Check(!m_Queue.empty(), "m_Queue.empty() == false");
  TMessage Message = std::move(m_Queue.front());
  m_Queue.pop_front();
  return Message;
}

const TMessage* CMessageQueue::Front() const {
  return m_Queue.empty() ? nullptr : &m_Queue.front();
}

CMessageQueue& MessageQueue() {
  static CMessageQueue Queue;
  return Queue;
}
