#include <gtest/gtest.h>
#include <gmock/gmock.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cinttypes>
#include <csignal>
#include <cstdio>
#include <string>
#include <vector>

#include "TestDirectory.h"
#include "core/ErrorReport.h"
#include "platform/CrashSignals.h"

namespace {

using testing::ExitedWithCode;

// A page that faults on every access.
class TProtectedPage {
 public:
  TProtectedPage()
      : m_Size(static_cast<std::size_t>(sysconf(_SC_PAGESIZE))),
        m_Page(mmap(nullptr, m_Size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)) {}
  ~TProtectedPage() { munmap(m_Page, m_Size); }
  TProtectedPage(const TProtectedPage&) = delete;
  TProtectedPage& operator=(const TProtectedPage&) = delete;

  bool Valid() const { return m_Page != MAP_FAILED; }
  volatile int* Address() const { return static_cast<volatile int*>(m_Page); }
  std::string Hex() const {
    char Text[32];
    std::snprintf(Text, sizeof Text, "0x%" PRIxPTR, reinterpret_cast<std::uintptr_t>(m_Page));
    return Text;
  }

 private:
  std::size_t m_Size;
  void* m_Page;
};

void InstallReport() {
  if (!platform::InstallCrashSignals(ReportCrashSignal)) std::_Exit(3);
}

int Recurse(int Depth) {
  volatile char Frame[1024];
  Frame[0] = static_cast<char>(Depth);
  if (Depth < 0) return 0;
  return Recurse(Depth + 1) + Frame[0];
}

using CrashSignalsDeathTest = TTestDirectory;

TEST_F(CrashSignalsDeathTest, RaisedSegmentationFaultIsProgramError34) {
  EXPECT_EXIT(
      {
        InstallReport();
        std::raise(SIGSEGV);
      },
      ExitedWithCode(1), "\\[Kelmo Error\\] Segmentation Fault\\. \\(Error Code 34\\)");

  const std::vector<std::string> Lines = ReadLines(ErrorFile());
  ASSERT_EQ(Lines.size(), 10u);
  EXPECT_EQ(Lines[1], "Debug Assertion 10.53 Segmentation Fault. (read attempt at 0x0)");
  EXPECT_EQ(Lines[9], std::string(64, '-'));
}

TEST_F(CrashSignalsDeathTest, RaisedBusErrorIsProgramError35) {
  EXPECT_EXIT(
      {
        InstallReport();
        std::raise(SIGBUS);
      },
      ExitedWithCode(1), "\\[Kelmo Error\\] Bus Error\\. \\(Error Code 35\\)");

  const std::vector<std::string> Lines = ReadLines(ErrorFile());
  ASSERT_GE(Lines.size(), 2u);
  EXPECT_EQ(Lines[1], "Debug Assertion 10.53 Bus Error. (read attempt at 0x0)");
}

TEST_F(CrashSignalsDeathTest, FaultingWriteTellsAccessAndAddress) {
  const TProtectedPage Page;
  ASSERT_TRUE(Page.Valid());
  EXPECT_EXIT(
      {
        InstallReport();
        *Page.Address() = 1;
      },
      ExitedWithCode(1), "Segmentation Fault\\. \\(Error Code 34\\)");

  const std::vector<std::string> Lines = ReadLines(ErrorFile());
  ASSERT_GE(Lines.size(), 2u);
#if defined(__x86_64__)
  EXPECT_EQ(Lines[1], "Debug Assertion 10.53 Segmentation Fault. (write attempt at " + Page.Hex() + ")");
#else
  EXPECT_EQ(Lines[1], "Debug Assertion 10.53 Segmentation Fault. (read attempt at " + Page.Hex() + ")");
#endif
}

TEST_F(CrashSignalsDeathTest, FaultingReadTellsAccessAndAddress) {
  const TProtectedPage Page;
  ASSERT_TRUE(Page.Valid());
  EXPECT_EXIT(
      {
        InstallReport();
        static_cast<void>(*Page.Address());
      },
      ExitedWithCode(1), "Segmentation Fault\\. \\(Error Code 34\\)");

  const std::vector<std::string> Lines = ReadLines(ErrorFile());
  ASSERT_GE(Lines.size(), 2u);
  EXPECT_EQ(Lines[1], "Debug Assertion 10.53 Segmentation Fault. (read attempt at " + Page.Hex() + ")");
}

TEST_F(CrashSignalsDeathTest, StackOverflowIsReportedFromTheAlternateStack) {
  EXPECT_EXIT(
      {
        InstallReport();
        std::fprintf(stderr, "%d\n", Recurse(0));
      },
      ExitedWithCode(1), "\\[Kelmo Error\\] Segmentation Fault\\. \\(Error Code 34\\)");

  const std::vector<std::string> Lines = ReadLines(ErrorFile());
  ASSERT_GE(Lines.size(), 2u);
  EXPECT_EQ(Lines[1].rfind("Debug Assertion 10.53 Segmentation Fault. (", 0), 0u) << Lines[1];
}

TEST_F(CrashSignalsDeathTest, CrashInsideTheReportEndsAtOnce) {
  ReportSources().GraphicEngine = []() -> std::string {
    std::raise(SIGSEGV);
    return "unreached";
  };
  EXPECT_EXIT(
      {
        InstallReport();
        std::raise(SIGBUS);
      },
      ExitedWithCode(1), testing::Not(testing::HasSubstr("[Kelmo Error")));

  const std::vector<std::string> Lines = ReadLines(ErrorFile());
  ASSERT_EQ(Lines.size(), 3u) << "the entry stops where the second crash came";
  EXPECT_EQ(Lines[1], "Debug Assertion 10.53 Bus Error. (read attempt at 0x0)");
}

TEST_F(CrashSignalsDeathTest, CrashOnTheWayOutOfAReportShowsNothingMore) {
  ReportSources().ReleaseDisplay = [] { std::raise(SIGSEGV); };
  EXPECT_EXIT(
      {
        InstallReport();
        ReportException(std::runtime_error("first"));
      },
      ExitedWithCode(1), testing::Not(testing::HasSubstr("[Kelmo Error")));

  const std::vector<std::string> Lines = ReadLines(ErrorFile());
  ASSERT_EQ(Lines.size(), 10u) << "one entry, the first report's";
  EXPECT_EQ(Lines[1], "Debug Assertion 10.53 first");
}

}  // namespace
