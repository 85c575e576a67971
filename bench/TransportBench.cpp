// The receive side of a stream of enciphered packets: framing scan, checksum,
// decipher and the reading of every command, next to a plain copy of the same
// bytes.
#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <vector>

#include "net/Communication.h"
#include "net/Connection.h"
#include "net/Xtea.h"
#include "tests/net/ServerPacket.h"

namespace {

const std::array<std::uint8_t, 16> SESSION_KEY = {3, 1, 4, 1, 5, 9, 2, 6, 5, 3, 5, 8, 9, 7, 9, 3};
constexpr int STREAM_PACKETS = 40;
constexpr int COMMANDS_PER_PACKET = 12;

// A command with a position, an object and a short text, as map updates look.
void AppendCommand(std::vector<std::uint8_t>& Payload, int Index) {
  const std::uint8_t Command[] = {0x6A, 0x10, 0x7D, 0x20, 0x7D, 0x07,
                                  static_cast<std::uint8_t>(Index), 0x0B, 0x00, 0x00,
                                  10,   0,    'K',  'e',  'l',  'm', 'o', ' ', 'b', 'e', 'n', 'c'};
  Payload.insert(Payload.end(), std::begin(Command), std::end(Command));
}

std::vector<std::uint8_t> MakeStream() {
  TXTEASymmetricKey Key;
  Key.Set(SESSION_KEY.data());
  std::vector<std::uint8_t> Stream;
  for (int Packet = 0; Packet < STREAM_PACKETS; ++Packet) {
    std::vector<std::uint8_t> Payload;
    for (int Command = 0; Command < COMMANDS_PER_PACKET; ++Command) AppendCommand(Payload, Command);
    const auto Framed = testing_net::ServerPacket(Payload, &Key);
    Stream.insert(Stream.end(), Framed.begin(), Framed.end());
  }
  return Stream;
}

int ReadAllCommands() {
  int Commands = 0;
  std::array<char, 32> Text;
  while (NextCommandType() != -1) {
    benchmark::DoNotOptimize(ReadU16());
    benchmark::DoNotOptimize(ReadU16());
    benchmark::DoNotOptimize(ReadU8());
    benchmark::DoNotOptimize(ReadU32());
    ReadString(Text.data(), static_cast<int>(Text.size()));
    ++Commands;
  }
  return Commands;
}

void BM_ReceiveEncipheredStream(benchmark::State& State) {
  const std::vector<std::uint8_t> Stream = MakeStream();
  InitNetwork();
  SetSessionKey(SESSION_KEY.data());
  SetConnectionState(GAME_RUNNING);
  for (auto _ : State) {
    // The socket's read is a copy into the receive buffer; deciphering needs it fresh each time.
    std::memcpy(ReceiveSpace().data(), Stream.data(), Stream.size());
    CommitReceived(static_cast<int>(Stream.size()));
    if (ReadAllCommands() != STREAM_PACKETS * COMMANDS_PER_PACKET) State.SkipWithError("commands lost");
  }
  State.SetBytesProcessed(State.iterations() * static_cast<std::int64_t>(Stream.size()));
  ExitNetwork();
  SetConnectionState(OFFLINE);
}
BENCHMARK(BM_ReceiveEncipheredStream);

void BM_CopySameBytes(benchmark::State& State) {
  const std::vector<std::uint8_t> Stream = MakeStream();
  std::vector<std::uint8_t> Target(RECEIVE_BUFFER_SIZE);
  for (auto _ : State) {
    std::memcpy(Target.data(), Stream.data(), Stream.size());
    benchmark::DoNotOptimize(Target.data());
    benchmark::ClobberMemory();
  }
  State.SetBytesProcessed(State.iterations() * static_cast<std::int64_t>(Stream.size()));
}
BENCHMARK(BM_CopySameBytes);

}  // namespace

BENCHMARK_MAIN();
