#pragma once
// The internal message queue: how handlers, dialogs and menus ask the main step
// for anything that must not happen in the middle of what they are doing.
#include <any>
#include <deque>
#include <memory>

enum TMessageType : int {
  MSG_MESSAGEBOX = 1,
  MSG_FORMATBOX,
  MSG_WAIT_CHARACTERLIST,
  MSG_WAIT_GAMEWORLD,
  MSG_SERVER_NOT_RESPONDING,
  MSG_LOGIN_QUEUE,
  MSG_CONFIRM_LEAVE,
  MSG_EXIT_DIALOG,
  MSG_ENTER_GAME,
  MSG_WAIT_CHARACTERS,
  MSG_SELECT_CHARACTER,
  MSG_YOU_ARE_DEAD,
  MSG_LINK_WARNING,
  MSG_ACCOUNT_WARNING,
  MSG_MOVE_OBJECTS,
  MSG_EDIT_TEXT,
  MSG_EDIT_LIST,
  MSG_SELECT_OUTFIT,
  MSG_PREMIUM_TOGGLE,
  MSG_BUGREPORT,
  MSG_NEW_CHANNEL,
  MSG_CHANNEL_INVITE,
  MSG_CHANNEL_EXCLUDE,
  MSG_IGNORE_LIST,
  MSG_ADD_BUDDY,
  MSG_EDIT_BUDDY,
  MSG_VIP_ALLOW_ADD,
  MSG_VIP_ALLOW_REMOVE,
  MSG_QUEST_LOG,
  MSG_QUEST_LINE,
  MSG_INFO,
  MSG_EDIT_MARK_NEW,
  MSG_EDIT_MARK,
  MSG_HELP_MENU,
  MSG_TUTORIAL_MENU,
  MSG_OPTIONS,
  MSG_GRAPHICS_OPTIONS,
  MSG_ADVANCED_GRAPHICS_OPTIONS,
  MSG_CONSOLE_OPTIONS,
  MSG_HOTKEY_OPTIONS,
  MSG_GENERAL_OPTIONS,
  MSG_MOTD,
  MSG_EXPORT_ASK,
  MSG_EXPORT_RUN,
  MSG_EXPORT_DONE,
  MSG_DOWNLOAD,
  MSG_ERROR_REPORT,
  MSG_ACTION_7,
  MSG_ACTION_9,
  MSG_ACTION_10,
  MSG_TALK_FLUSH,
  MSG_OPEN_PRIVATE_TAB,
  MSG_OPEN_CHANNEL_TAB,
  MSG_OPEN_OWN_CHANNEL_TAB,
  MSG_NPC_TAB_OPEN,
  MSG_CONSOLE_TAB,
  MSG_CONSOLE_NEXT,
  MSG_CONSOLE_PREVIOUS,
  MSG_TRADE_NPC,
  MSG_TRADE_GOODS,
  MSG_TRADE_WARES_REFRESH,
  MSG_TRADE_CLOSE_SERVER,
  MSG_TRADE_REFRESH,
  MSG_TUTORIAL_HINT,
  MSG_REPORT,
  MSG_MARKET_BROWSE,
  MSG_MARKET_OWN,
  MSG_SERVER_DIALOG,
  MSG_SERVER_DIALOG_HOLD,
  MSG_MENU_OBJECT,
  MSG_MENU_ATTACK,
  MSG_MENU_BUDDY,
  MSG_MENU_CONSOLE,
  MSG_MENU_CONSOLETAB,
  MSG_MENU_EDIT,
  MSG_MENU_AUTOMAP,
  MSG_MENU_SKILLS,
  MSG_MENU_WARES,
  MSG_CONNECT_LOGIN,
  MSG_CONNECT_GAME,
  MSG_RECONNECT,
  MSG_WAIT_OFFLINE,
  MSG_REPLACE_DAT,
  MSG_REPLACE_SPR,
  MSG_REPLACE_PIC,
  MSG_RELOAD_DAT,
  MSG_RELOAD_SPR,
  MSG_RELOAD_PIC,
  MSG_PATCH_EXIT,
  MSG_TERMINATE_PATCH,
  MSG_TERMINATE,
  MSG_OPEN_URL,
};

constexpr int MSG_FIRST = MSG_MESSAGEBOX;
constexpr int MSG_LAST = MSG_OPEN_URL;
constexpr int MSG_FIRST_MENU = MSG_MENU_OBJECT;  // from here on, messages open context menus

// The name of a message type, "unknown message type" outside the table.
const char* GetMessageTypeName(int Type);

// One message. Data holds a number (int), a text (std::string) or a record;
// the message owns what it holds, and a handler that keeps it moves it out.
struct TMessage {
  int Type = 0;
  std::any Data1;
  std::any Data2;

  int Value1() const;
  int Value2() const;
};

class CMessageQueue {
 public:
  void Post(int Type, std::any Data1 = {}, std::any Data2 = {});
  void PostFront(int Type, std::any Data1 = {}, std::any Data2 = {});
  // Takes the front message; the queue must not be empty.
  TMessage Take();
  const TMessage* Front() const;
  bool IsEmpty() const { return m_Queue.empty(); }
  int Size() const { return static_cast<int>(m_Queue.size()); }
  void Clear() { m_Queue.clear(); }

 private:
  static TMessage Make(int Type, std::any Data1, std::any Data2);

  std::deque<TMessage> m_Queue;
};

// The program's one queue.
CMessageQueue& MessageQueue();
