// Runs every file of the packet corpus through the fuzzer's entry, without the
// fuzzer. A file's name tells its outcome: "ok-N-..." reads N commands,
// "fail-..." fails the stream.
#include <cstdio>
#include <string>
#include <vector>

#include "fuzz/CorpusReplay.h"
#include "fuzz/PacketFuzz.h"

namespace {

int ExpectedOutcome(const std::string& Name) {
  if (Name.rfind("fail-", 0) == 0) return -1;
  return std::stoi(Name.substr(3));
}

}  // namespace

int main(int argc, char** argv) {
  return ReplayCorpus(argc, argv, [](const std::string& Name, const std::vector<std::uint8_t>& Data) {
    const int Outcome = ReadPacketStream(Data.data(), Data.size());
    const int Expected = ExpectedOutcome(Name);
    const bool Ok = Outcome == Expected;
    std::printf("%s %s: %d commands (expected %d)\n", Ok ? "PASS" : "FAIL", Name.c_str(), Outcome, Expected);
    return Ok;
  });
}
