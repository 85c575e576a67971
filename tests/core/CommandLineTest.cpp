#include "core/CommandLineHelper.h"

#include <gtest/gtest.h>

#include "core/Exception.h"

namespace {

TEST(CommandLineTest, EmptyLineGivesNoOptions) {
  CommandLineHelper Line;
  Line.Parse("");
  EXPECT_FALSE(Line.HasOption("gamemaster"));
  EXPECT_THROW(Line.GetValue("path"), TMyException);
}

TEST(CommandLineTest, FlagsAndValuesAreTakenFromWholeWords) {
  CommandLineHelper Line;
  Line.Parse("engine 1 gamemaster gamemasters host");
  EXPECT_TRUE(Line.HasOption("gamemaster"));
  EXPECT_EQ(Line.GetValue("engine"), "1");
  EXPECT_FALSE(Line.HasOption("host"));
  EXPECT_FALSE(Line.HasOption("gamemasters"));
}

TEST(CommandLineTest, PathTakesTheRestOfTheLineWithoutQuotes) {
  CommandLineHelper Line;
  Line.Parse("path \"/home/my games/x\"");
  EXPECT_EQ(Line.GetValue("path"), "/home/my games/x");

  Line.Parse("path x gamemaster");
  EXPECT_EQ(Line.GetValue("path"), "x gamemaster");
  EXPECT_FALSE(Line.HasOption("gamemaster"));
}

TEST(CommandLineTest, AnOptionGivenTwiceKeepsItsFirstValue) {
  CommandLineHelper Line;
  Line.Parse("port 7171 port 7172");
  EXPECT_EQ(Line.GetValue("port"), "7171");
}

TEST(CommandLineTest, TextBeyondTheLimitIsNotSeen) {
  CommandLineHelper Line;
  Line.Parse(std::string(1020, ' ') + "gamemaster");
  EXPECT_FALSE(Line.HasOption("gamemaster"));
  Line.Parse(std::string(1014, ' ') + "gamemaster");
  EXPECT_TRUE(Line.HasOption("gamemaster"));
}

TEST(CommandLineTest, InvalidKeyFailsWithItsText) {
  CommandLineHelper Line;
  Line.Parse("gamemaster");
  try {
    Line.GetValue("");
    FAIL() << "no failure";
  } catch (const TMyException& E) {
    EXPECT_EQ(E.Text(), "Parameter Key is invalid");
  }
}

}  // namespace
