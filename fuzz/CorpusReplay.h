#pragma once
// The loop that every corpus replay shares: each file of the directory goes
// through the fuzzer's entry, and then through the replay's own check of the
// outcome that the file's name promises.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size);

// Prints a PASS or FAIL line for the file and returns whether it passed.
using TCorpusCheck =
    std::function<bool(const std::string& Name, const std::vector<std::uint8_t>& Data)>;

inline int ReplayCorpus(int argc, char** argv, const TCorpusCheck& Check) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s CORPUS_DIRECTORY\n", argv[0]);
    return 2;
  }
  int Passed = 0;
  int Failed = 0;
  for (const auto& Entry : std::filesystem::directory_iterator(argv[1])) {
    std::ifstream File(Entry.path(), std::ios::binary);
    const std::vector<std::uint8_t> Data{std::istreambuf_iterator<char>(File),
                                         std::istreambuf_iterator<char>()};
    LLVMFuzzerTestOneInput(Data.data(), Data.size());
    ++(Check(Entry.path().filename().string(), Data) ? Passed : Failed);
  }
  if (Passed + Failed == 0) {
    std::fprintf(stderr, "no corpus files in %s\n", argv[1]);
    return 1;
  }
  std::printf("%d passed, %d failed\n", Passed, Failed);
  return Failed == 0 ? 0 : 1;
}
