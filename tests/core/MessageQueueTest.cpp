#include "core/MessageQueue.h"

#include <gtest/gtest.h>

#include <string>

#include "core/Exception.h"

namespace {

TEST(MessageQueueTest, PostAppendsAndPostFrontPrepends) {
  CMessageQueue Queue;
  Queue.Post(MSG_ENTER_GAME);
  Queue.Post(MSG_SELECT_CHARACTER, 300);
  Queue.PostFront(MSG_WAIT_OFFLINE);
  ASSERT_EQ(Queue.Size(), 3);
  EXPECT_EQ(Queue.Take().Type, MSG_WAIT_OFFLINE);
  EXPECT_EQ(Queue.Take().Type, MSG_ENTER_GAME);
  const TMessage Last = Queue.Take();
  EXPECT_EQ(Last.Type, MSG_SELECT_CHARACTER);
  EXPECT_EQ(Last.Value1(), 300);
  EXPECT_EQ(Last.Value2(), 0);
}

TEST(MessageQueueTest, MessagesOwnTheirTextsUntilAHandlerTakesThem) {
  CMessageQueue Queue;
  Queue.Post(MSG_MESSAGEBOX, std::string("Connection failed"), std::string("text"));
  TMessage Message = Queue.Take();
  const std::string Taken = std::any_cast<std::string>(std::move(Message.Data2));
  EXPECT_EQ(Taken, "text");
  EXPECT_EQ(std::any_cast<std::string>(Message.Data1), "Connection failed");
  EXPECT_THROW(Message.Value1(), TMyException);
}

TEST(MessageQueueTest, TakingFromAnEmptyQueueFails) {
  CMessageQueue Queue;
  Queue.Post(MSG_INFO);
  Queue.Clear();
  EXPECT_TRUE(Queue.IsEmpty());
  EXPECT_EQ(Queue.Front(), nullptr);
  try {
    Queue.Take();
    FAIL() << "no failure";
  } catch (const TMyException& E) {
    EXPECT_EQ(E.Text(), "m_Queue.empty() == false");
  }
}

TEST(MessageQueueTest, EveryTypeHasItsName) {
  EXPECT_STREQ(GetMessageTypeName(1), "MSG_MESSAGEBOX");
  EXPECT_STREQ(GetMessageTypeName(47), "MSG_ERROR_REPORT");
  EXPECT_STREQ(GetMessageTypeName(69), "MSG_SERVER_DIALOG_HOLD");
  EXPECT_STREQ(GetMessageTypeName(70), "MSG_MENU_OBJECT");
  EXPECT_STREQ(GetMessageTypeName(78), "MSG_MENU_WARES");
  EXPECT_STREQ(GetMessageTypeName(82), "MSG_WAIT_OFFLINE");
  EXPECT_STREQ(GetMessageTypeName(92), "MSG_OPEN_URL");
  EXPECT_STREQ(GetMessageTypeName(0), "unknown message type");
  EXPECT_STREQ(GetMessageTypeName(93), "unknown message type");
  EXPECT_EQ(MSG_LAST, 92);
  EXPECT_EQ(MSG_FIRST_MENU, 70);
}

}  // namespace
