#pragma once
// The demo object types for the world tests, built from their sources into a
// Kelmo.dat of the test's own and read back as the server reads the built one.
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "tools/databuild/TypeFile.h"
#include "tools/databuild/TypeSources.h"
#include "tools/server/ObjectTypes.h"

namespace testing_server {

// A directory that is gone when the test ends.
class TTemporaryDirectory {
 public:
  TTemporaryDirectory() {
    const std::string Name = "kelmo-server-test-" + std::to_string(::getpid()) + '-' + std::to_string(Counter()++);
    m_Path = std::filesystem::temp_directory_path() / Name;
    std::filesystem::create_directories(m_Path);
  }
  ~TTemporaryDirectory() { std::filesystem::remove_all(m_Path); }
  TTemporaryDirectory(const TTemporaryDirectory&) = delete;
  TTemporaryDirectory& operator=(const TTemporaryDirectory&) = delete;
  const std::filesystem::path& Path() const { return m_Path; }

 private:
  static int& Counter() {
    static int Value = 0;
    return Value;
  }
  std::filesystem::path m_Path;
};

inline std::vector<std::string> DemoObjectSources() {
  std::vector<std::string> Files;
  std::stringstream List(KELMO_OBJECT_SOURCES);
  for (std::string File; std::getline(List, File, '|');) Files.push_back(File);
  return Files;
}

// Writes Kelmo.dat into the directory and returns its path.
inline std::filesystem::path BuildDemoObjectFile(const TTemporaryDirectory& Directory) {
  const std::filesystem::path File = Directory.Path() / "Kelmo.dat";
  WriteDatFile(ReadTypeSources(DemoObjectSources()), File.string());
  return File;
}

inline std::shared_ptr<const server::TObjectTypes> DemoTypes() {
  const TTemporaryDirectory Directory;
  return std::make_shared<const server::TObjectTypes>(server::LoadObjectTypes(BuildDemoObjectFile(Directory)));
}

inline std::filesystem::path TestWorldFile() { return std::filesystem::path(KELMO_SERVER_TEST_DIR) / "test-world.txt"; }
inline std::filesystem::path DemoWorldFile() { return std::filesystem::path(KELMO_SERVER_WORLD_DIR) / "demo.txt"; }

}  // namespace testing_server
