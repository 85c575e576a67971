#include <gtest/gtest.h>

#include <sstream>
#include <streambuf>
#include <string>

#include "TestDirectory.h"
#include "core/ErrorReport.h"
#include "core/Exception.h"

namespace {

const std::string OPENING = "+" + std::string(63, '-') + "\n";
const std::string CLOSING = std::string(64, '-') + "\n";

std::string Entry(const std::string& Title, const std::string& Date, const std::string& Lines) {
  return OPENING + Title + "\n" + Date + "\n" + Lines + CLOSING;
}

using ErrorScanTest = TTestDirectory;

TEST_F(ErrorScanTest, MissingFileGivesNoEntries) {
  ScanErrorFile();
  EXPECT_TRUE(GetErrorEntries().empty());
}

TEST_F(ErrorScanTest, EmptyFileGivesNoEntries) {
  WriteFile(ErrorFile(), "");
  ScanErrorFile();
  EXPECT_TRUE(GetErrorEntries().empty());
}

TEST_F(ErrorScanTest, TwoEntriesWithTitleDateAndLines) {
  WriteFile(ErrorFile(),
            Entry("Debug Assertion 10.53 first", "Mon Jan  1 10:00:00 2024",
                  "Graphic Engine: none\nPlayer Action: \n") +
                Entry("Debug Assertion 10.53 second", "Tue Jan  2 11:00:00 2024", "Graphic Engine: OpenGL\n"));
  ScanErrorFile();
  const std::vector<TErrorEntry>& Entries = GetErrorEntries();
  ASSERT_EQ(Entries.size(), 2u);
  EXPECT_EQ(Entries[0].Title, "Debug Assertion 10.53 first");
  EXPECT_EQ(Entries[0].Date, "Mon Jan  1 10:00:00 2024");
  EXPECT_EQ(Entries[0].Lines, "Graphic Engine: none\nPlayer Action: \n");
  EXPECT_TRUE(Entries[0].Comment.empty());
  EXPECT_EQ(Entries[1].Title, "Debug Assertion 10.53 second");
  EXPECT_EQ(Entries[1].Lines, "Graphic Engine: OpenGL\n");
}

TEST_F(ErrorScanTest, TextBeforeTheFirstEntryAndFramesAreDropped) {
  std::istringstream File("stray text\n-- a frame\n+\r\nTitle\r\nDate\r\nline one\r\n- dropped\r\nline two");
  const std::vector<TErrorEntry> Entries = ReadErrorEntries(File);
  ASSERT_EQ(Entries.size(), 1u);
  EXPECT_EQ(Entries[0].Title, "Title");
  EXPECT_EQ(Entries[0].Date, "Date");
  EXPECT_EQ(Entries[0].Lines, "line one\nline two\n") << "the last entry closes at the end of the file";
}

TEST_F(ErrorScanTest, FieldsAreCutToTheirLimits) {
  std::string Lines;
  for (int I = 0; I < 300; ++I) Lines += "Last Packet Types: 001 002\n";
  std::istringstream File(OPENING + std::string(100, 't') + "\n" + std::string(40, 'd') + "\n" + Lines);
  const std::vector<TErrorEntry> Entries = ReadErrorEntries(File);
  ASSERT_EQ(Entries.size(), 1u);
  EXPECT_EQ(Entries[0].Title, std::string(63, 't'));
  EXPECT_EQ(Entries[0].Date, std::string(25, 'd'));
  EXPECT_EQ(Entries[0].Lines.size(), 2047u);
  EXPECT_EQ(Entries[0].Lines, Lines.substr(0, 2047));
}

TEST_F(ErrorScanTest, OverlongLineIsMarkedAsTruncated) {
  WriteFile(ErrorFile(), Entry("Title", "Date", std::string(3000, 'x') + "\nnext line\n"));
  ScanErrorFile();
  ASSERT_EQ(GetErrorEntries().size(), 1u);
  EXPECT_EQ(GetErrorEntries()[0].Lines, std::string(1023, 'x') + " (truncated input line)\nnext line\n");
}

// Hands out its text, then fails as a broken device does.
class TFailingBuffer : public std::streambuf {
 public:
  explicit TFailingBuffer(std::string Text) : m_Text(std::move(Text)) {
    setg(m_Text.data(), m_Text.data(), m_Text.data() + m_Text.size());
  }

 protected:
  int_type underflow() override { throw std::ios_base::failure("device error"); }

 private:
  std::string m_Text;
};

TEST_F(ErrorScanTest, StreamFailureIsMarkedAsBadInput) {
  TFailingBuffer Buffer(OPENING + "Title\nDate\nfirst line\nhalf a li");
  std::istream File(&Buffer);
  const std::vector<TErrorEntry> Entries = ReadErrorEntries(File);
  ASSERT_EQ(Entries.size(), 1u);
  EXPECT_EQ(Entries[0].Lines, "first line\nhalf a li (bad input file)\n");
}

TEST_F(ErrorScanTest, CommentIsSetByIndexAndCut) {
  WriteFile(ErrorFile(), Entry("A", "B", "") + Entry("C", "D", ""));
  ScanErrorFile();
  SetErrorComment(1, "It crashed when I opened the bag.");
  SetErrorComment(0, std::string(600, 'c'));
  EXPECT_EQ(GetErrorEntries()[1].Comment, "It crashed when I opened the bag.");
  EXPECT_EQ(GetErrorEntries()[0].Comment, std::string(511, 'c'));
}

TEST_F(ErrorScanTest, CommentOutsideTheListFails) {
  WriteFile(ErrorFile(), Entry("A", "B", ""));
  ScanErrorFile();
  for (const int Index : {-1, 1}) {
    try {
      SetErrorComment(Index, "x");
      ADD_FAILURE() << "index " << Index << " was accepted";
    } catch (const TMyException& E) {
      EXPECT_EQ(E.Text(), "Index>=0&&Index<Count");
    }
  }
}

TEST_F(ErrorScanTest, ClearingEmptiesTheListAndDeletesTheFile) {
  WriteFile(ErrorFile(), Entry("A", "B", "line\n"));
  ScanErrorFile();
  ASSERT_EQ(GetErrorEntries().size(), 1u);
  ClearErrorEntries();
  EXPECT_TRUE(GetErrorEntries().empty());
  EXPECT_FALSE(FileExists(ErrorFile()));
  ScanErrorFile();
  EXPECT_TRUE(GetErrorEntries().empty());
}

TEST_F(ErrorScanTest, RescanReplacesTheList) {
  WriteFile(ErrorFile(), Entry("A", "B", "") + Entry("C", "D", ""));
  ScanErrorFile();
  WriteFile(ErrorFile(), Entry("E", "F", ""));
  ScanErrorFile();
  ASSERT_EQ(GetErrorEntries().size(), 1u);
  EXPECT_EQ(GetErrorEntries()[0].Title, "E");
}

}  // namespace
