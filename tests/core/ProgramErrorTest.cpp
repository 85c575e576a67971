#include <gtest/gtest.h>

#include <string>

#include "TestDirectory.h"
#include "core/ErrorReport.h"
#include "core/Paths.h"

namespace {

using ProgramErrorTest = TTestDirectory;

TEST_F(ProgramErrorTest, MessageJoinsTextCodeAndAdvice) {
  EXPECT_EQ(GetProgramErrorMessage(29),
            "A Kelmo client is already running. (Error Code 29)\r\n\r\n"
            "You can run only one Kelmo client at once.");
}

TEST_F(ProgramErrorTest, FileErrorsNameTheFinalPath) {
  const std::string Dat = GetProgramDirectory() + "/Kelmo.dat";
  EXPECT_EQ(GetProgramErrorText(1), "Cannot find file '" + Dat + "'.");
  EXPECT_EQ(GetProgramErrorText(3), "Cannot find file '" + GetProgramDirectory() + "/Kelmo.pic'.");
  EXPECT_EQ(GetProgramErrorText(5), "Cannot open file '" + GetProgramDirectory() + "/Kelmo.spr'.");
  EXPECT_EQ(GetProgramErrorAdvice(4), "Please re-install the program.");
  const std::string Patch = GetProgramDirectory() + "/Patch.exe";
  EXPECT_EQ(GetProgramErrorText(24), "Cannot find file '" + Patch + "'.");
  EXPECT_EQ(GetProgramErrorText(25), "Cannot execute file '" + Patch + "'.");
  EXPECT_EQ(GetProgramErrorText(26), "Cannot rename file '" + Patch + "'.");
  EXPECT_EQ(GetProgramErrorText(27),
            "Cannot rename file '" + GetFileName(TFileKind::ERROR_DISPLAY, true) + "'.");
  EXPECT_EQ(GetProgramErrorAdvice(27), "Please run Kelmo with full administration rights once.");
}

TEST_F(ProgramErrorTest, RangesShareTheirTexts) {
  for (int Code = 10; Code <= 12; ++Code)
    EXPECT_EQ(GetProgramErrorText(Code), "Cannot initialize video graphics mode.") << Code;
  for (int Code = 13; Code <= 19; ++Code) {
    EXPECT_EQ(GetProgramErrorText(Code), "Video surface allocation failed.") << Code;
    EXPECT_EQ(GetProgramErrorAdvice(Code), "Please choose another video graphics mode.") << Code;
  }
  EXPECT_EQ(GetProgramErrorText(36), "Video surface allocation failed.");
  EXPECT_EQ(GetProgramErrorAdvice(36),
            "Please avoid changing the screen resolution of Windows\nor other programs while Kelmo is running.");
  EXPECT_EQ(GetProgramErrorMessage(12).find("Cannot initialize video graphics mode. (Error Code 12)"), 0u);
}

TEST_F(ProgramErrorTest, UserFolderAdviceNamesTheUserDirectory) {
  EXPECT_EQ(GetProgramErrorAdvice(23),
            "Please ensure you have 'write access' to your\nuser specific application data directory at\n'" +
                GetUserDirectory() + "'");
}

TEST_F(ProgramErrorTest, CrashErrors) {
  EXPECT_EQ(GetProgramErrorText(34), "Segmentation Fault.");
  EXPECT_EQ(GetProgramErrorText(35), "Bus Error.");
  EXPECT_EQ(GetProgramErrorAdvice(35),
            "Please restart Kelmo. In case this problem occurs repeatedly\nplease re-install the program.");
}

TEST_F(ProgramErrorTest, UnknownCodesAskForABugReport) {
  for (const int Code : {0, 37, -1, 1000}) {
    EXPECT_EQ(GetProgramErrorText(Code), "Unknown error.") << Code;
    const std::string Advice = GetProgramErrorAdvice(Code);
    EXPECT_NE(Advice.find("bug report"), std::string::npos) << Advice;
    EXPECT_NE(Advice.find("error code number"), std::string::npos) << Advice;
    EXPECT_NE(Advice.find("support@kelmo.example"), std::string::npos) << Advice;
  }
  EXPECT_EQ(GetProgramErrorMessage(0).find("Unknown error. (Error Code 0)\r\n\r\n"), 0u);
}

TEST_F(ProgramErrorTest, ReportShowsTheBoxAndEndsWithCodeOne) {
  EXPECT_EXIT(ReportProgramError(PROGRAM_ERROR::ALREADY_RUNNING), testing::ExitedWithCode(1),
              "\\[Kelmo Error\\] A Kelmo client is already running\\. \\(Error Code 29\\)");
  EXPECT_FALSE(FileExists(GetFileName(TFileKind::ERROR_FILE, false))) << "a program error writes no entry";
}

}  // namespace
