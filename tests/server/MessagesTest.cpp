// The server's messages, byte by byte as the wire description lays them out.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/Exception.h"
#include "tests/server/WireClient.h"
#include "tools/server/Messages.h"

namespace {

using namespace testing_server;
using server::TMessageWriter;

TBytes Written(const TMessageWriter& Writer) { return {Writer.Payload().begin(), Writer.Payload().end()}; }

TEST(ServerMessages, CharacterListLaysOutWorldsCharactersAndPremiumDays) {
  TMessageWriter Writer;
  server::WriteCharacterList(Writer, {{7, "Kelmo", "127.0.0.1", 7172, 2}}, {{7, "Ayla"}, {7, "Borin"}}, 30);
  TByteWriter Expected;
  Expected.U8(100).U8(1).U8(7).String("Kelmo").String("127.0.0.1").U16(7172).U8(2);
  Expected.U8(2).U8(7).String("Ayla").U8(7).String("Borin").U16(30);
  EXPECT_EQ(Written(Writer), Expected.Bytes());
}

TEST(ServerMessages, EmptyCharacterList) {
  TMessageWriter Writer;
  server::WriteCharacterList(Writer, {}, {}, 0);
  EXPECT_EQ(Written(Writer), (TBytes{100, 0, 0, 0, 0}));
}

TEST(ServerMessages, MessageOfTheDayIsNumberLineFeedText) {
  TMessageWriter Writer;
  server::WriteMessageOfTheDay(Writer, 12, "Hello");
  TByteWriter Expected;
  Expected.U8(20).String("12\nHello");
  EXPECT_EQ(Written(Writer), Expected.Bytes());
}

TEST(ServerMessages, LoginServerTexts) {
  TMessageWriter Writer;
  server::WriteLoginErrorAdmin(Writer, "no");
  server::WriteLoginAdviceAdmin(Writer, "hm");
  EXPECT_EQ(Written(Writer), (TBytes{10, 2, 0, 'n', 'o', 11, 2, 0, 'h', 'm'}));
}

TEST(ServerMessages, GameServerEntryMessages) {
  TMessageWriter Writer;
  server::WriteLoginChallenge(Writer, 0x12345678, 0x9C);
  server::WriteLoginError(Writer, "a");
  server::WriteLoginAdvice(Writer, "b");
  server::WriteLoginWait(Writer, "c", 3);
  server::WritePendingStateEntered(Writer);
  server::WriteWorldEntered(Writer);
  server::WritePing(Writer);
  server::WritePingBack(Writer);
  const TBytes Expected = {31, 0x78, 0x56, 0x34, 0x12, 0x9C, 20, 1,  0,  'a', 21, 1,
                           0,  'b',  22,   1,    0,    'c',  3,  10, 15, 29,  30};
  EXPECT_EQ(Written(Writer), Expected);
}

TEST(ServerMessages, LoginSuccessCarriesIdBeatThreeDoublesAndTwoFlags) {
  TMessageWriter Writer;
  server::WriteLoginSuccess(Writer, {0x01020304, 50, 857.36, 261.29, -4795.01, true, false});
  TByteWriter Expected;
  Expected.U8(23).U32(0x01020304).U16(50);
  Expected.U8(2).U32(2147483647u + 85736u);
  Expected.U8(2).U32(2147483647u + 26129u);
  Expected.U8(2).U32(2147483647u - 479501u);
  Expected.U8(1).U8(0);
  EXPECT_EQ(Written(Writer), Expected.Bytes());
}

TEST(ServerMessages, WriterRecordsEachMessageWithItsFields) {
  TMessageWriter Writer;
  server::WriteLoginWait(Writer, "wait", 5);
  server::WriteWorldEntered(Writer);
  ASSERT_EQ(Writer.Messages().size(), 2u);
  const server::TCommandRecord& Wait = Writer.Messages()[0];
  EXPECT_EQ(Wait.Name, "SLOGINWAIT");
  ASSERT_EQ(Wait.Fields.size(), 2u);
  EXPECT_EQ(Wait.Fields[0].Name, "text");
  EXPECT_EQ(std::get<std::string>(Wait.Fields[0].Value), "wait");
  EXPECT_EQ(Wait.Fields[1].Name, "seconds");
  EXPECT_EQ(std::get<std::int64_t>(Wait.Fields[1].Value), 5);
  EXPECT_EQ(Writer.Messages()[1].Name, "SWORLDENTERED");
  EXPECT_TRUE(Writer.Messages()[1].Fields.empty());
}

TEST(ServerMessages, TooManyWorldsFail) {
  TMessageWriter Writer;
  const std::vector<server::TListedWorld> Worlds(256, {0, "W", "h", 1, 0});
  try {
    server::WriteCharacterList(Writer, Worlds, {}, 0);
    FAIL() << "no failure";
  } catch (const TMyException& Failure) {
    EXPECT_EQ(Failure.Text(), "too many worlds");
  }
}

}  // namespace
