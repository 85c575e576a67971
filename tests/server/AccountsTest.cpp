// The account file: its entries, its defaults and every kind of mistake in it.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>

#include "core/Exception.h"
#include "tools/server/Accounts.h"

namespace {

using server::TAccountBook;

TAccountBook Parse(const std::string& Text) {
  std::istringstream Input(Text);
  return server::ParseAccountBook(Input);
}

std::string ParseFailure(const std::string& Text) {
  try {
    Parse(Text);
  } catch (const TMyException& Failure) {
    return Failure.Text();
  }
  return "(no failure)";
}

TEST(AccountBook, ReadsEveryKindOfEntry) {
  const TAccountBook Book = Parse(
      "# a comment\n"
      "\n"
      "motd 7 \"Hello, world.\"  # trailing comment\n"
      "world 3 \"Far Away\" example.org 7000 2\n"
      "world 4 Near 127.0.0.1 game-port\n"
      "account alice \"pass word\" 12\n"
      "character \"Alice Liddell\" \"Far Away\"\n"
      "character Dinah Near\n"
      "account bob \"\" 0\n");
  ASSERT_TRUE(Book.Motd);
  EXPECT_EQ(Book.Motd->Number, 7u);
  EXPECT_EQ(Book.Motd->Text, "Hello, world.");
  ASSERT_EQ(Book.Worlds.size(), 2u);
  EXPECT_EQ(Book.Worlds[0].Id, 3);
  EXPECT_EQ(Book.Worlds[0].Name, "Far Away");
  EXPECT_EQ(Book.Worlds[0].Host, "example.org");
  EXPECT_EQ(Book.Worlds[0].Port, 7000);
  EXPECT_EQ(Book.Worlds[0].PreviewState, 2);
  EXPECT_FALSE(Book.Worlds[1].Port) << "game-port is filled in by the server";
  EXPECT_EQ(Book.Worlds[1].PreviewState, 0);
  ASSERT_EQ(Book.Accounts.size(), 2u);
  EXPECT_EQ(Book.Accounts[0].Name, "alice");
  EXPECT_EQ(Book.Accounts[0].Password, "pass word");
  EXPECT_EQ(Book.Accounts[0].PremiumDays, 12);
  ASSERT_EQ(Book.Accounts[0].Characters.size(), 2u);
  EXPECT_EQ(Book.Accounts[0].Characters[0].Name, "Alice Liddell");
  EXPECT_EQ(Book.Accounts[0].Characters[0].WorldId, 3);
  EXPECT_EQ(Book.Accounts[0].Characters[1].WorldId, 4);
  EXPECT_NE(Book.Accounts[0].Characters[0].CreatureId, Book.Accounts[0].Characters[1].CreatureId);
  EXPECT_GT(Book.Accounts[0].Characters[0].CreatureId, 0u);
  EXPECT_LT(Book.Accounts[0].Characters[0].CreatureId, 0x40000000u) << "players are below 0x40000000";
  EXPECT_EQ(Book.Accounts[1].Password, "");
  EXPECT_TRUE(Book.Accounts[1].Characters.empty());
}

TEST(AccountBook, FindNeedsNameAndPassword) {
  const TAccountBook Book = Parse("account alice secret 0\naccount bob other 0\n");
  ASSERT_NE(Book.Find("bob", "other"), nullptr);
  EXPECT_EQ(Book.Find("bob", "other")->Name, "bob");
  EXPECT_EQ(Book.Find("bob", "secret"), nullptr);
  EXPECT_EQ(Book.Find("Bob", "other"), nullptr) << "names are compared exactly";
  EXPECT_EQ(Book.Find("carol", ""), nullptr);
}

TEST(AccountBook, MessageOfTheDayIsOptional) { EXPECT_FALSE(Parse("account a b 0\n").Motd); }

TEST(AccountBook, Mistakes) {
  const std::string World = "world 0 W h 1\n";
  const std::string Account = "account a b 0\n";
  EXPECT_EQ(ParseFailure("wrld 0 W h 1\n"), "line 1: unknown entry 'wrld'");
  EXPECT_EQ(ParseFailure("world 0 W h\n"), "line 1: 'world' takes 4 or 5 fields");
  EXPECT_EQ(ParseFailure("account a b\n"), "line 1: 'account' takes 3 fields");
  EXPECT_EQ(ParseFailure("world 256 W h 1\n"), "line 1: world id must be a number from 0 to 255: 256");
  EXPECT_EQ(ParseFailure("world x W h 1\n"), "line 1: world id must be a number from 0 to 255: x");
  EXPECT_EQ(ParseFailure("world 0 W h 65536\n"), "line 1: port must be a number from 0 to 65535: 65536");
  EXPECT_EQ(ParseFailure(World + "world 0 V h 1\n"), "line 2: world id 0 is taken");
  EXPECT_EQ(ParseFailure(World + "world 1 W h 1\n"), "line 2: world W is declared twice");
  EXPECT_EQ(ParseFailure("world 0 " + std::string(30, 'w') + " h 1\n"),
            "line 1: world name must have 1 to 29 characters: " + std::string(30, 'w'));
  EXPECT_EQ(ParseFailure("world 0 W " + std::string(60, 'h') + " 1\n"),
            "line 1: host must have 1 to 59 characters: " + std::string(60, 'h'));
  EXPECT_EQ(ParseFailure("account " + std::string(31, 'a') + " b 0\n"),
            "line 1: account name must have 1 to 30 characters: " + std::string(31, 'a'));
  EXPECT_EQ(ParseFailure("account a " + std::string(30, 'p') + " 0\n"),
            "line 1: password must have 0 to 29 characters: " + std::string(30, 'p'));
  EXPECT_EQ(ParseFailure("account a b 65536\n"),
            "line 1: premium days must be a number from 0 to 65535: 65536");
  EXPECT_EQ(ParseFailure(Account + Account), "line 2: account a is declared twice");
  EXPECT_EQ(ParseFailure(World + "character C W\n"), "line 2: character before any account");
  EXPECT_EQ(ParseFailure(World + Account + "character C V\n"), "line 3: unknown world V");
  EXPECT_EQ(ParseFailure(World + Account + "character " + std::string(30, 'c') + " W\n"),
            "line 3: character name must have 1 to 29 characters: " + std::string(30, 'c'));
  EXPECT_EQ(ParseFailure(World + Account + "character C W\naccount x y 0\ncharacter C W\n"),
            "line 5: character C is declared twice");
  EXPECT_EQ(ParseFailure("motd 1 \"open\n"), "line 1: quote not closed");
  EXPECT_EQ(ParseFailure("motd 1 a\nmotd 2 b\n"), "line 2: second message of the day");
}

TEST(AccountBook, AnAccountHoldsAtMost255Characters) {
  std::string Text = "world 0 W h 1\naccount a b 0\n";
  for (int I = 0; I < 255; ++I) Text += "character C" + std::to_string(I) + " W\n";
  EXPECT_EQ(Parse(Text).Accounts[0].Characters.size(), 255u);
  EXPECT_EQ(ParseFailure(Text + "character Last W\n"), "line 258: more than 255 characters on one account");
}

TEST(AccountBook, MissingFileFails) {
  try {
    server::LoadAccountBook("/nonexistent/accounts.txt");
    FAIL() << "no failure";
  } catch (const TMyException& Failure) {
    EXPECT_EQ(Failure.Text(), "cannot open the account file /nonexistent/accounts.txt");
  }
}

TEST(AccountBook, TheShippedFileHasTheDemoAccountAndATestAccount) {
  const TAccountBook Book =
      server::LoadAccountBook(std::filesystem::path(KELMO_SERVER_DATA_DIR) / "accounts.txt");
  const server::TAccount* Demo = Book.Find("demo", "demo");
  ASSERT_NE(Demo, nullptr);
  ASSERT_EQ(Demo->Characters.size(), 2u);
  EXPECT_EQ(Demo->Characters[0].Name, "Ayla");
  EXPECT_EQ(Demo->Characters[1].Name, "Borin");
  ASSERT_EQ(Book.Worlds.size(), 1u);
  EXPECT_EQ(Book.Worlds[0].Name, "Kelmo");
  EXPECT_EQ(Demo->Characters[0].WorldId, Book.Worlds[0].Id);
  EXPECT_FALSE(Book.Worlds[0].Port) << "the world is on this server's game port";
  EXPECT_NE(Book.Find("tester", "secret"), nullptr);
  ASSERT_TRUE(Book.Motd);
}

}  // namespace
