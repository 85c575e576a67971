// Runs every file of the object type corpus through the fuzzer's entry,
// without the fuzzer. A file's name tells its outcome: "ok-..." loads,
// "fail-..." is refused.
#include <cstdio>
#include <string>
#include <vector>

#include "fuzz/CorpusReplay.h"
#include "fuzz/ObjectsFuzz.h"

int main(int argc, char** argv) {
  return ReplayCorpus(argc, argv, [](const std::string& Name, const std::vector<std::uint8_t>& Data) {
    const bool Loaded = LoadObjectBytes(Data.data(), Data.size());
    const bool Expected = Name.starts_with("ok-");
    const bool Ok = Loaded == Expected;
    std::printf("%s %s: %s\n", Ok ? "PASS" : "FAIL", Name.c_str(), Loaded ? "loaded" : "refused");
    return Ok;
  });
}
