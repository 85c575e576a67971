#include "fuzz/PacketFuzz.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>

#include "core/Exception.h"
#include "net/Communication.h"
#include "net/Connection.h"

namespace {

constexpr int FUZZ_KEY_SIZE = 16;

// The module lives for one input, whatever becomes of it.
struct TNetworkSession {
  explicit TNetworkSession(bool Plain) {
    InitNetwork();
    std::array<std::uint8_t, FUZZ_KEY_SIZE> Key;
    for (int I = 0; I < FUZZ_KEY_SIZE; ++I) Key[I] = static_cast<std::uint8_t>(I);
    SetSessionKey(Key.data());
    SetConnectionState(Plain ? CONNECTED_GAME : GAME_RUNNING);
  }
  ~TNetworkSession() {
    ExitNetwork();
    SetConnectionState(OFFLINE);
  }
  TNetworkSession(const TNetworkSession&) = delete;
  TNetworkSession& operator=(const TNetworkSession&) = delete;
};

void ReadFields(int Type) {
  std::array<char, 8> Text;
  std::array<std::uint8_t, 3> Raw;
  switch (Type % 9) {
    case 1: ReadU8(); break;
    case 2: ReadU16(); break;
    case 3: ReadU32(); break;
    case 4: ReadU64(); break;
    case 5: ReadString(Text.data(), static_cast<int>(Text.size())); break;
    case 6: ReadNewString(); break;
    case 7: ReadDouble(); break;
    case 8: ReadBytes(Raw.data(), static_cast<int>(Raw.size())); break;
    default: break;
  }
}

int ReadCommands() {
  int Count = 0;
  for (int Type = NextCommandType(); Type != -1; Type = NextCommandType()) {
    ReadFields(Type);
    ++Count;
  }
  return Count;
}

}  // namespace

int ReadPacketStream(const std::uint8_t* Data, std::size_t Size) {
  if (Size < 2) return 0;
  const TNetworkSession Session((Data[0] & 1) != 0);
  const std::size_t Piece = Data[1] == 0 ? Size : Data[1];
  std::span<const std::uint8_t> Stream(Data + 2, Size - 2);
  int Commands = 0;
  try {
    while (!Stream.empty()) {
      const std::span<std::uint8_t> Space = ReceiveSpace();
      const std::size_t Count = std::min({Piece, Space.size(), Stream.size()});
      std::memcpy(Space.data(), Stream.data(), Count);
      Stream = Stream.subspan(Count);
      if (CommitReceived(static_cast<int>(Count))) Commands += ReadCommands();
    }
  } catch (const TMyException&) {
    return -1;
  }
  return Commands;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size) {
  ReadPacketStream(Data, Size);
  return 0;
}
