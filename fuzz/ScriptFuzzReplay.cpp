// Runs every file of the script corpus through the fuzzer's entry, without the
// fuzzer. A file's name tells its outcome: "<tokens>-<load|damaged>-..." reads
// that many tokens and loads or fails as a configuration file; "x" for the
// tokens means that the script itself fails.
#include <cstdio>
#include <string>
#include <vector>

#include "fuzz/CorpusReplay.h"
#include "fuzz/ScriptFuzz.h"

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

}  // namespace

int main(int argc, char** argv) {
  return ReplayCorpus(argc, argv, [](const std::string& Name, const std::vector<std::uint8_t>& Data) {
    const TScriptOutcome Outcome = ReadScript(Data.data(), Data.size());
    const TExpected Expected = ExpectedOutcome(Name);
    const bool Ok = Outcome.Tokens == Expected.Tokens && Outcome.Loaded == Expected.Loaded;
    std::printf("%s %s: %d tokens, %s (expected %d, %s)\n", Ok ? "PASS" : "FAIL", Name.c_str(),
                Outcome.Tokens, LoadText(Outcome.Loaded), Expected.Tokens, LoadText(Expected.Loaded));
    return Ok;
  });
}
