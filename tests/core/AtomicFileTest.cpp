#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

#include "Caught.h"
#include "TestDirectory.h"
#include "core/AtomicFile.h"
#include "core/Script.h"

namespace {

namespace fs = std::filesystem;

class AtomicFileTest : public TTestDirectory {
 protected:
  void SetUp() override {
    TTestDirectory::SetUp();
    m_Path = (Root() / "file.txt").string();
    WriteFile(m_Path, "old contents\n");
  }

  static std::string ReadAll(const std::string& Path) {
    std::ifstream File(Path, std::ios::binary);
    return {std::istreambuf_iterator<char>(File), std::istreambuf_iterator<char>()};
  }

  static void WriteScript(const std::string& Path, const std::string& Text) {
    TScriptWriter Writer;
    Writer.open(Path);
    Writer.writeText(Text);
    Writer.close();
  }

  const std::string& Path() const { return m_Path; }
  std::string Temporary() const { return m_Path + ".new"; }

 private:
  std::string m_Path;
};

TEST_F(AtomicFileTest, ReplacesTheFileThroughATemporaryBesideIt) {
  std::string Given;
  WriteFileAtomically(Path(), [&](const std::string& Temporary) {
    Given = Temporary;
    WriteScript(Temporary, "new contents\n");
    EXPECT_EQ(ReadAll(Path()), "old contents\n") << "the old file stands while the new one is written";
  });
  EXPECT_EQ(Given, Temporary());
  EXPECT_EQ(ReadAll(Path()), "new contents\n");
  EXPECT_FALSE(fs::exists(Temporary()));
}

TEST_F(AtomicFileTest, CreatesAFileThatDidNotExist) {
  const std::string Fresh = (Root() / "fresh.txt").string();
  WriteFileAtomically(Fresh, [](const std::string& Temporary) { WriteScript(Temporary, "x"); });
  EXPECT_EQ(ReadAll(Fresh), "x");
}

TEST_F(AtomicFileTest, AFailureHalfWayLeavesTheOldFile) {
  EXPECT_THROW(WriteFileAtomically(Path(),
                                   [](const std::string& Temporary) {
                                     WriteScript(Temporary, "half");
                                     throw std::runtime_error("interrupted");
                                   }),
               std::runtime_error);
  EXPECT_EQ(ReadAll(Path()), "old contents\n");
  EXPECT_FALSE(fs::exists(Temporary())) << "the half-written temporary goes";
}

TEST_F(AtomicFileTest, ATemporaryThatCannotBeOpenedLeavesTheOldFile) {
  fs::create_directory(Temporary());
  const TMyException E = Caught([&] {
    WriteFileAtomically(Path(), [](const std::string& Temporary) { WriteScript(Temporary, "new"); });
  });
  EXPECT_EQ(E.Text(), "failed to open file");
  EXPECT_EQ(ReadAll(Path()), "old contents\n");
  EXPECT_TRUE(fs::is_directory(Temporary())) << "what blocked the name is not ours to remove";
}

TEST_F(AtomicFileTest, AFullDiskLeavesTheOldFile) {
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
  fs::create_symlink("/dev/full", Temporary());
  const TMyException E = Caught([&] {
    WriteFileAtomically(Path(), [](const std::string& Temporary) { WriteScript(Temporary, "new"); });
  });
  EXPECT_EQ(E.Text(), "failed to write file");
  EXPECT_EQ(ReadAll(Path()), "old contents\n");
}

}  // namespace
