#pragma once
// A fresh user and temporary directory per test, with message boxes going to
// standard error. Death tests fork, so the child writes where the parent reads.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "core/ErrorReport.h"
#include "core/Paths.h"

class TTestDirectory : public testing::Test {
 protected:
  void SetUp() override {
    const testing::TestInfo* Test = testing::UnitTest::GetInstance()->current_test_info();
    m_Root = std::filesystem::path(testing::TempDir()) / ("kelmo-core-" + std::to_string(getpid())) /
             (std::string(Test->test_suite_name()) + "." + Test->name());
    std::filesystem::create_directories(m_Root);
    setenv("XDG_DATA_HOME", (m_Root / "data").c_str(), 1);
    setenv("XDG_CACHE_HOME", (m_Root / "cache").c_str(), 1);
    setenv("KELMO_NONINTERACTIVE", "1", 1);
    InitPaths("");
  }

  void TearDown() override {
    ReportSources() = {};
    ClearErrorEntries();
    std::filesystem::remove_all(m_Root.parent_path());
  }

  const std::filesystem::path& Root() const { return m_Root; }
  static std::string ErrorFile() { return GetFileName(TFileKind::ERROR_FILE, false); }

  static std::vector<std::string> ReadLines(const std::string& Path) {
    std::vector<std::string> Lines;
    std::ifstream File(Path);
    for (std::string Line; std::getline(File, Line);) Lines.push_back(Line);
    return Lines;
  }

  static void WriteFile(const std::string& Path, const std::string& Text) {
    std::ofstream(Path, std::ios::binary) << Text;
  }

 private:
  std::filesystem::path m_Root;
};
