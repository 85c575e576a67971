// Runs every file of the packet corpus through the fuzzer's entry, without the
// fuzzer. A file's name tells its outcome: "ok-N-..." reads N commands,
// "fail-..." fails the stream.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/PacketFuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size);

namespace {

int ExpectedOutcome(const std::string& Name) {
  if (Name.rfind("fail-", 0) == 0) return -1;
  return std::stoi(Name.substr(3));
}

std::vector<std::uint8_t> ReadFile(const std::filesystem::path& Path) {
  std::ifstream File(Path, std::ios::binary);
  return {std::istreambuf_iterator<char>(File), std::istreambuf_iterator<char>()};
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s CORPUS_DIRECTORY\n", argv[0]);
    return 2;
  }
  int Passed = 0;
  int Failed = 0;
  for (const auto& Entry : std::filesystem::directory_iterator(argv[1])) {
    const std::string Name = Entry.path().filename().string();
    const std::vector<std::uint8_t> Data = ReadFile(Entry.path());
    LLVMFuzzerTestOneInput(Data.data(), Data.size());
    const int Outcome = ReadPacketStream(Data.data(), Data.size());
    const int Expected = ExpectedOutcome(Name);
    const bool Ok = Outcome == Expected;
    std::printf("%s %s: %d commands (expected %d)\n", Ok ? "PASS" : "FAIL", Name.c_str(), Outcome, Expected);
    ++(Ok ? Passed : Failed);
  }
  if (Passed + Failed == 0) {
    std::fprintf(stderr, "no corpus files in %s\n", argv[1]);
    return 1;
  }
  std::printf("%d passed, %d failed\n", Passed, Failed);
  return Failed == 0 ? 0 : 1;
}
