// Runs every file of the script corpus through the fuzzer's entry, without the
// fuzzer. A file's name tells its outcome: "<tokens>-<load|damaged>-..." reads
// that many tokens and loads or fails as a configuration file; "x" for the
// tokens means that the script itself fails.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/ScriptFuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size);

namespace {

struct TExpected {
  int Tokens;
  bool Loaded;
};

TExpected ExpectedOutcome(const std::string& Name) {
  const std::size_t Dash = Name.find('-');
  const std::string Tokens = Name.substr(0, Dash);
  return {Tokens == "x" ? -1 : std::stoi(Tokens), Name.compare(Dash + 1, 5, "load-") == 0};
}

const char* LoadText(bool Loaded) { return Loaded ? "loaded" : "damaged"; }

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
    const TScriptOutcome Outcome = ReadScript(Data.data(), Data.size());
    const TExpected Expected = ExpectedOutcome(Name);
    const bool Ok = Outcome.Tokens == Expected.Tokens && Outcome.Loaded == Expected.Loaded;
    std::printf("%s %s: %d tokens, %s (expected %d, %s)\n", Ok ? "PASS" : "FAIL", Name.c_str(),
                Outcome.Tokens, LoadText(Outcome.Loaded), Expected.Tokens, LoadText(Expected.Loaded));
    ++(Ok ? Passed : Failed);
  }
  if (Passed + Failed == 0) {
    std::fprintf(stderr, "no corpus files in %s\n", argv[1]);
    return 1;
  }
  std::printf("%d passed, %d failed\n", Passed, Failed);
  return Failed == 0 ? 0 : 1;
}
