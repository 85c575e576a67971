#include <gtest/gtest.h>
#include <gmock/gmock.h>

#include <cstdio>
#include <ctime>
#include <filesystem>
#include <iomanip>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "TestDirectory.h"
#include "core/ErrorReport.h"

namespace {

using testing::ExitedWithCode;

const std::string OPENING = "+" + std::string(63, '-');
const std::string CLOSING = std::string(64, '-');
const std::string CRITICAL_BOX =
    "[Kelmo Error - Debug Assertion] The Kelmo client encountered a critical error and had to be stopped.";

int Occurrences(const std::string& Text, const std::string& Part) {
  int Count = 0;
  for (auto At = Text.find(Part); At != std::string::npos; At = Text.find(Part, At + 1)) ++Count;
  return Count;
}

// Standard error of a child that showed exactly one failure box, the critical one.
testing::Matcher<const std::string&> OneCriticalBox() {
  return testing::AllOf(
      testing::ResultOf([](const std::string& Err) { return Occurrences(Err, "[Kelmo Error"); },
                        testing::Eq(1)),
      testing::HasSubstr(CRITICAL_BOX));
}

// The C runtime's date text, as "Sun Nov 23 00:43:12 2025".
bool IsDate(const std::string& Line) {
  std::tm Time{};
  std::istringstream Text(Line);
  Text >> std::get_time(&Time, "%a %b %d %H:%M:%S %Y");
  return !Text.fail() && Text.peek() == EOF && Line.size() == 24;
}

void InstallAllSources() {
  TReportSources& S = ReportSources();
  S.GraphicEngine = [] { return std::string("OpenGL 1.1 Mesa"); };
  S.OperatingSystem = [] { return std::string("Linux 6.1 in 64-bit mode"); };
  S.Processor = [] { return std::string("Test CPU"); };
  S.VideoCard = [] { return std::string("Test GPU"); };
  S.LastCommands = [] { return std::vector<int>{10, 100, 255}; };
  S.MainWindowExists = [] { return true; };
  S.LastPacket = [] {
    std::array<std::uint8_t, 16> Packet{};
    for (std::size_t I = 0; I < Packet.size(); ++I) Packet[I] = static_cast<std::uint8_t>(I + 1);
    return Packet;
  };
  S.PlayerPosition = [] { return std::optional<std::array<int, 3>>({32000, 31990, 7}); };
  S.PlayerName = [] { return std::optional<std::array<std::string, 2>>({"Bob", "Terra"}); };
  S.GameServerAddress = [] { return std::string("127.0.0.1:7172"); };
}

using ErrorReportDeathTest = TTestDirectory;

TEST_F(ErrorReportDeathTest, EntryWithAllSourcesHasEveryLineInOrder) {
  InstallAllSources();
  EXPECT_EXIT(ReportException(std::runtime_error("broken invariant")), ExitedWithCode(1), OneCriticalBox());

  const std::vector<std::string> Lines = ReadLines(ErrorFile());
  ASSERT_EQ(Lines.size(), 13u);
  EXPECT_EQ(Lines[0], OPENING);
  EXPECT_EQ(Lines[1], "Debug Assertion 10.53 broken invariant");
  EXPECT_TRUE(IsDate(Lines[2])) << Lines[2];
  EXPECT_EQ(Lines[3], "Graphic Engine: OpenGL 1.1 Mesa");
  EXPECT_EQ(Lines[4], "Operating System: Linux 6.1 in 64-bit mode");
  EXPECT_EQ(Lines[5], "Processor: Test CPU");
  EXPECT_EQ(Lines[6], "Video Card: Test GPU");
  EXPECT_EQ(Lines[7], "Last Packet Types: 010 100 255");
  EXPECT_EQ(Lines[8], "Last Packet: 001 002 003 004 005 006 007 008 009 010 011 012 013 014 015 016");
  EXPECT_EQ(Lines[9], "Player Position: [32000, 31990, 7]");
  EXPECT_EQ(Lines[10], "Player Name: Bob (Terra)");
  EXPECT_EQ(Lines[11], "Player Action:  049 050 055 046 048 046 048 046 049 058 055 049 055 050");
  EXPECT_EQ(Lines[12], CLOSING);
}

TEST_F(ErrorReportDeathTest, BoxTextIsTheCriticalErrorText) {
  EXPECT_EXIT(ReportException(std::runtime_error("x")), ExitedWithCode(1),
              testing::HasSubstr(
                  "[Kelmo Error - Debug Assertion] The Kelmo client encountered a critical error and had to be "
                  "stopped.\r\n\r\nA detailed error report has been written to the error file which\r\nyou are "
                  "asked to submit at your next login.\n"));
}

TEST_F(ErrorReportDeathTest, EntryWithoutSourcesWritesNeutralLines) {
  EXPECT_EXIT(ReportException(std::runtime_error("early")), ExitedWithCode(1), OneCriticalBox());

  const std::vector<std::string> Lines = ReadLines(ErrorFile());
  const std::vector<std::string> Expected = {
      OPENING, "Debug Assertion 10.53 early", Lines.size() > 2 ? Lines[2] : "", "Graphic Engine: none",
      "Operating System: (unknown)", "Processor: (unknown)", "Video Card: (unknown)", "Last Packet Types:",
      "Player Action: ", CLOSING};
  EXPECT_EQ(Lines, Expected);
}

TEST_F(ErrorReportDeathTest, NoMainWindowMeansNoPacketAndNoPosition) {
  InstallAllSources();
  ReportSources().MainWindowExists = [] { return false; };
  EXPECT_EXIT(ReportException(std::runtime_error("x")), ExitedWithCode(1), OneCriticalBox());

  const std::vector<std::string> Lines = ReadLines(ErrorFile());
  ASSERT_EQ(Lines.size(), 11u);
  EXPECT_EQ(Lines[7], "Last Packet Types: 010 100 255");
  EXPECT_EQ(Lines[8], "Player Name: Bob (Terra)");
}

TEST_F(ErrorReportDeathTest, ZeroPacketIsLeftOutAndThePositionFollows) {
  InstallAllSources();
  ReportSources().LastPacket = [] { return std::array<std::uint8_t, 16>{}; };
  EXPECT_EXIT(ReportException(std::runtime_error("x")), ExitedWithCode(1), OneCriticalBox());

  const std::vector<std::string> Lines = ReadLines(ErrorFile());
  ASSERT_EQ(Lines.size(), 12u);
  EXPECT_EQ(Lines[7], "Last Packet Types: 010 100 255");
  EXPECT_EQ(Lines[8], "Player Position: [32000, 31990, 7]");
}

TEST_F(ErrorReportDeathTest, WithoutCharacterThereIsNoNameAndNoPosition) {
  InstallAllSources();
  ReportSources().PlayerPosition = [] { return std::optional<std::array<int, 3>>(); };
  ReportSources().PlayerName = [] { return std::optional<std::array<std::string, 2>>(); };
  EXPECT_EXIT(ReportException(std::runtime_error("x")), ExitedWithCode(1), OneCriticalBox());

  const std::vector<std::string> Lines = ReadLines(ErrorFile());
  ASSERT_EQ(Lines.size(), 11u);
  EXPECT_EQ(Lines[8].rfind("Last Packet: 001", 0), 0u);
  EXPECT_EQ(Lines[9].rfind("Player Action:  049", 0), 0u);
}

TEST_F(ErrorReportDeathTest, PlayerActionTakesAtMost32Bytes) {
  ReportSources().GameServerAddress = [] { return std::string(40, 'a') + ":7172"; };
  EXPECT_EXIT(ReportException(std::runtime_error("x")), ExitedWithCode(1), OneCriticalBox());

  const std::vector<std::string> Lines = ReadLines(ErrorFile());
  ASSERT_EQ(Lines.size(), 10u);
  std::string Expected = "Player Action: ";
  for (int I = 0; I < 32; ++I) Expected += " 097";
  EXPECT_EQ(Lines[8], Expected);
}

TEST_F(ErrorReportDeathTest, FailingSourcesWriteTheirExceptionLines) {
  InstallAllSources();
  const auto Fail = []() -> std::string { throw std::runtime_error("source"); };
  ReportSources().GraphicEngine = Fail;
  ReportSources().VideoCard = Fail;
  ReportSources().LastPacket = []() -> std::array<std::uint8_t, 16> { throw std::runtime_error("source"); };
  ReportSources().GameServerAddress = Fail;
  EXPECT_EXIT(ReportException(std::runtime_error("x")), ExitedWithCode(1), OneCriticalBox());

  const std::vector<std::string> Lines = ReadLines(ErrorFile());
  ASSERT_EQ(Lines.size(), 8u);
  EXPECT_EQ(Lines[3], "Graphic Engine: (exception)");
  EXPECT_EQ(Lines[4], "OutputControlErrorInformations: (exception)");
  EXPECT_EQ(Lines[5], "OutputErrorInformations: (exception)");
  EXPECT_EQ(Lines[6], "Player Name: (exception)");
  EXPECT_EQ(Lines[7], CLOSING);
}

TEST_F(ErrorReportDeathTest, ReportsAreAppended) {
  WriteFile(ErrorFile(), "earlier line\n");
  EXPECT_EXIT(ReportException(std::runtime_error("first")), ExitedWithCode(1), OneCriticalBox());
  EXPECT_EXIT(ReportException(std::runtime_error("second")), ExitedWithCode(1), OneCriticalBox());

  const std::vector<std::string> Lines = ReadLines(ErrorFile());
  ASSERT_EQ(Lines.size(), 21u);
  EXPECT_EQ(Lines[0], "earlier line");
  EXPECT_EQ(Lines[2], "Debug Assertion 10.53 first");
  EXPECT_EQ(Lines[12], "Debug Assertion 10.53 second");
  EXPECT_EQ(Lines[20], CLOSING);
}

TEST_F(ErrorReportDeathTest, ReportsAreReadBackAtTheNextStart) {
  const std::string Long = "TMyException chain " + std::string(80, 'c');
  EXPECT_EXIT(ReportException(std::runtime_error(Long)), ExitedWithCode(1), OneCriticalBox());
  EXPECT_EXIT(ReportException(std::runtime_error("second")), ExitedWithCode(1), OneCriticalBox());

  ScanErrorFile();
  const std::vector<TErrorEntry>& Entries = GetErrorEntries();
  ASSERT_EQ(Entries.size(), 2u);
  EXPECT_EQ(Entries[0].Title, ("Debug Assertion 10.53 " + Long).substr(0, 63));
  EXPECT_TRUE(IsDate(Entries[0].Date)) << Entries[0].Date;
  EXPECT_EQ(Entries[0].Lines,
            "Graphic Engine: none\nOperating System: (unknown)\nProcessor: (unknown)\nVideo Card: (unknown)\n"
            "Last Packet Types:\nPlayer Action: \n");
  EXPECT_EQ(Entries[1].Title, "Debug Assertion 10.53 second");
}

TEST_F(ErrorReportDeathTest, UnwritableErrorFileStillShowsTheBox) {
  std::filesystem::create_directories(ErrorFile());
  EXPECT_EXIT(ReportException(std::runtime_error("x")), ExitedWithCode(1), OneCriticalBox());
  EXPECT_TRUE(std::filesystem::is_directory(ErrorFile()));
}

TEST_F(ErrorReportDeathTest, SocketAndDisplayAreReleasedBeforeTheBox) {
  ReportSources().CloseSocket = [] {
    std::fprintf(stderr, "socket closed, reported: %d\n", IsFatalErrorReported());
  };
  ReportSources().ReleaseDisplay = [] { std::fprintf(stderr, "display released\n"); };
  EXPECT_EXIT(ReportException(std::runtime_error("x")), ExitedWithCode(1),
              testing::ContainsRegex("socket closed, reported: 1\ndisplay released\n\\[Kelmo Error"));
  EXPECT_FALSE(IsFatalErrorReported()) << "only the child reported";
}

TEST_F(ErrorReportDeathTest, FailingReleaseStillShowsTheBox) {
  ReportSources().CloseSocket = [] { throw std::runtime_error("socket"); };
  ReportSources().ReleaseDisplay = [] { ThrowException("surface lost"); };
  EXPECT_EXIT(ReportException(std::runtime_error("x")), ExitedWithCode(1), OneCriticalBox());
  EXPECT_EXIT(ReportProgramError(PROGRAM_ERROR::NO_OPENGL_CONTEXT), ExitedWithCode(1),
              testing::HasSubstr("[Kelmo Error] Cannot create OpenGL context. (Error Code 33)"));
}

TEST_F(ErrorReportDeathTest, SecondReportShowsNothing) {
  ReportSources().ReleaseDisplay = [] {
    ReportException(std::runtime_error("second failure"));
    ReportProgramError(PROGRAM_ERROR::SURFACE_LOST);
    std::fprintf(stderr, "both returned\n");
  };
  EXPECT_EXIT(ReportException(std::runtime_error("first failure")), ExitedWithCode(1),
              testing::AllOf(OneCriticalBox(), testing::HasSubstr("both returned")));

  const std::vector<std::string> Lines = ReadLines(ErrorFile());
  ASSERT_EQ(Lines.size(), 10u) << "one entry";
  EXPECT_EQ(Lines[1], "Debug Assertion 10.53 first failure");
}

TEST_F(ErrorReportDeathTest, ProgramErrorAfterAReportShowsNothing) {
  ReportSources().CloseSocket = [] { ReportException(std::runtime_error("inner")); };
  EXPECT_EXIT(ReportProgramError(PROGRAM_ERROR::ALREADY_RUNNING), ExitedWithCode(1),
              testing::ResultOf([](const std::string& Err) { return Occurrences(Err, "[Kelmo Error"); },
                                testing::Eq(1)));
  EXPECT_FALSE(std::filesystem::exists(ErrorFile())) << "the suppressed report wrote nothing";
}

}  // namespace

namespace {

using CaughtExceptionDeathTest = TTestDirectory;

[[noreturn]] void ThrowAndReport(const std::function<void()>& Throw) {
  try {
    Throw();
  } catch (...) {
    ReportCurrentException();
  }
  std::_Exit(3);
}

TEST_F(CaughtExceptionDeathTest, StandardExceptionIsReportedAsSuch) {
  EXPECT_EXIT(ThrowAndReport([] { throw std::out_of_range("index 7"); }), ExitedWithCode(1),
              OneCriticalBox());
  const std::vector<std::string> Lines = ReadLines(ErrorFile());
  ASSERT_GE(Lines.size(), 2u);
  EXPECT_THAT(Lines[1], testing::StartsWith("Debug Assertion 10.53 "));
  EXPECT_THAT(Lines[1], testing::HasSubstr("standard exception occurred, reason: index 7"));
}

TEST_F(CaughtExceptionDeathTest, ProgramErrorShowsItsBoxWithoutAnEntry) {
  EXPECT_EXIT(ThrowAndReport([] { throw PROGRAM_ERROR::ALREADY_RUNNING; }), ExitedWithCode(1),
              testing::HasSubstr("[Kelmo Error] A Kelmo client is already running. (Error Code 29)"));
  EXPECT_FALSE(std::filesystem::exists(ErrorFile()));
}

}  // namespace
