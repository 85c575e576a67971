#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "TestDirectory.h"
#include "core/Exception.h"
#include "core/Paths.h"

namespace {

namespace fs = std::filesystem;

using PathsTest = TTestDirectory;

TEST_F(PathsTest, UserDirectoryLiesInTheDataHome) {
  const std::string User = (Root() / "data" / "Kelmo").string();
  EXPECT_EQ(GetUserDirectory(), User);
  EXPECT_TRUE(fs::is_directory(User)) << "created on demand";
  EXPECT_EQ(GetTemporaryDirectory(), (Root() / "cache" / "Kelmo").string());
  EXPECT_TRUE(fs::is_directory(GetTemporaryDirectory()));
  EXPECT_EQ(GetProgramDirectory(), fs::current_path().string());
}

TEST_F(PathsTest, FileNamesJoinDirectoryAndName) {
  EXPECT_EQ(GetFileName(TFileKind::ERROR_FILE, false), GetUserDirectory() + "/Error.txt");
  EXPECT_EQ(GetFileName(TFileKind::CONFIGURATION, false), GetUserDirectory() + "/Kelmo.cfg");
  EXPECT_EQ(GetFileName(TFileKind::CONFIGURATION, true), GetUserDirectory() + "/Kelmo.cfg.bak");
  EXPECT_EQ(GetFileName(TFileKind::OBJECT_TYPES, false), GetProgramDirectory() + "/Kelmo.dat");
  EXPECT_EQ(GetFileName(TFileKind::OBJECT_TYPES, true), GetTemporaryDirectory() + "/Kelmo_dat.bak");
  EXPECT_EQ(GetFileName(TFileKind::PATCHER, false), GetProgramDirectory() + "/Patch.exe");
  EXPECT_EQ(GetFileName(TFileKind::PATCHER, true), GetTemporaryDirectory() + "/Patch.bak");
  EXPECT_EQ(GetFileName(TFileKind::EXPORT, false), GetUserDirectory() + "/Kelmo.exp");
}

TEST_F(PathsTest, PathOptionIsRelativeToTheCurrentDirectory) {
  const fs::path Before = fs::current_path();
  fs::current_path(Root());
  InitPaths("profiles/second");
  const std::string User = GetUserDirectory();
  const std::string Program = GetProgramDirectory();
  fs::current_path(Before);
  EXPECT_EQ(Program, Root().string());
  EXPECT_EQ(User, (Root() / "profiles" / "second").string());
  EXPECT_TRUE(fs::is_directory(User));
}

TEST_F(PathsTest, UserFolderThatCannotBeCreatedIsProgramError23) {
  WriteFile((Root() / "blocked").string(), "a file where the folder belongs");
  setenv("XDG_DATA_HOME", (Root() / "blocked").c_str(), 1);
  try {
    InitPaths("");
    FAIL() << "no program error";
  } catch (PROGRAM_ERROR Code) {
    EXPECT_EQ(Code, PROGRAM_ERROR::USER_FOLDER_NOT_CREATED);
  }
}

TEST_F(PathsTest, FileExistsOnlyForRegularFiles) {
  const std::string File = (Root() / "present.txt").string();
  WriteFile(File, "x");
  EXPECT_TRUE(FileExists(File));
  EXPECT_FALSE(FileExists((Root() / "absent.txt").string()));
  EXPECT_FALSE(FileExists(Root().string()));
}

}  // namespace

namespace {

// The program directory is the current one; each test moves into its own.
class StagedFileTest : public TTestDirectory {
 protected:
  void SetUp() override {
    TTestDirectory::SetUp();
    m_Previous = std::filesystem::current_path();
    std::filesystem::current_path(Root());
    InitPaths("");
  }
  void TearDown() override {
    std::filesystem::current_path(m_Previous);
    TTestDirectory::TearDown();
  }

 private:
  std::filesystem::path m_Previous;
};

TEST_F(StagedFileTest, AutomapAndChatLogNames) {
  EXPECT_EQ(GetAutomapFileName(125, 126, 7), GetUserDirectory() + "/Automap/12512607.map");
  EXPECT_EQ(GetChatLogFileName("Default"), GetUserDirectory() + "/Default.txt");
  EXPECT_TRUE(std::filesystem::is_directory(GetUserDirectory() + "/Automap"));
}

TEST_F(StagedFileTest, OnlyWellFormedAutomapSectorsAreListed) {
  for (const char* Name : {"12512607.map", "00000015.map", "999000007.map", "abc.map", "25525516.map",
                           "12512607.txt", "-0100207.map"}) {
    WriteFile(GetUserDirectory() + "/Automap/" + Name, "x");
  }
  const std::vector<TAutomapSector> Expected = {{0, 0, 15}, {125, 126, 7}};
  EXPECT_EQ(ListAutomapFiles(), Expected);
}

TEST_F(StagedFileTest, TemporaryFileReplacesTheFinalOneWhole) {
  WriteFile(GetFileName(TFileKind::OBJECT_TYPES, false), "old");
  WriteFile(GetFileName(TFileKind::OBJECT_TYPES, true), "new contents");
  EXPECT_TRUE(ReplaceWithTemporary(TFileKind::OBJECT_TYPES));
  EXPECT_EQ(ReadLines(GetFileName(TFileKind::OBJECT_TYPES, false)), std::vector<std::string>{"new contents"});
  EXPECT_FALSE(FileExists(GetFileName(TFileKind::OBJECT_TYPES, true)));
}

TEST_F(StagedFileTest, ReplacingNeedsBothFiles) {
  try {
    ReplaceWithTemporary(TFileKind::SPRITES);
    FAIL() << "no failure";
  } catch (const TMyException& E) {
    EXPECT_EQ(E.Text(), "temporary file does not exist");
  }
  WriteFile(GetFileName(TFileKind::SPRITES, true), "new");
  try {
    ReplaceWithTemporary(TFileKind::SPRITES);
    FAIL() << "no failure";
  } catch (const TMyException& E) {
    EXPECT_EQ(E.Text(), "outdated file does not exist");
  }
  EXPECT_TRUE(FileExists(GetFileName(TFileKind::SPRITES, true)));
}

TEST_F(StagedFileTest, ConfigurationBackupLiesBesideTheConfiguration) {
  EXPECT_EQ(GetFileName(TFileKind::CONFIGURATION, true), GetUserDirectory() + "/Kelmo.cfg.bak");
  EXPECT_EQ(GetFileName(TFileKind::PICTURES, true), GetTemporaryDirectory() + "/Kelmo_pic.bak");
}

}  // namespace
