#pragma once
// Shared by the builder's tests: a private folder per test, the demo sources
// and the files of the build.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace testing_databuild {

inline std::vector<std::string> ObjectSources() {
  std::vector<std::string> Files;
  std::stringstream List(KELMO_OBJECT_SOURCES);
  for (std::string File; std::getline(List, File, '|');) Files.push_back(File);
  return Files;
}

inline std::string BuiltFile(const std::string& Name) { return std::string(KELMO_DATA_DIR) + "/" + Name; }

inline std::vector<char> ReadBytes(const std::filesystem::path& Path) {
  std::ifstream File(Path, std::ios::binary);
  return {std::istreambuf_iterator<char>(File), std::istreambuf_iterator<char>()};
}

class TFolderTest : public testing::Test {
 protected:
  void SetUp() override {
    const testing::TestInfo* Test = testing::UnitTest::GetInstance()->current_test_info();
    m_Root = std::filesystem::path(testing::TempDir()) / ("kelmo-databuild-" + std::to_string(getpid())) /
             (std::string(Test->test_suite_name()) + "." + Test->name());
    std::filesystem::create_directories(m_Root);
  }
  void TearDown() override { std::filesystem::remove_all(m_Root.parent_path()); }

  std::string File(const std::string& Name) const { return (m_Root / Name).string(); }
  std::string Source(const std::string& Name, const std::string& Text) const {
    std::ofstream(File(Name), std::ios::binary) << Text;
    return File(Name);
  }

 private:
  std::filesystem::path m_Root;
};

}  // namespace testing_databuild
