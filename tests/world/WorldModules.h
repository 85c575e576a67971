#pragma once
// The modules that the world's messages reach, started for one test and
// stopped with it: the object types of a test file, the preferences, the
// network with its receive buffer, the connection and login, the creatures,
// the map and the readers of the world messages, all on a manual clock.
#include <cstring>
#include <filesystem>
#include <memory>
#include <span>

#include "core/Clock.h"
#include "core/MessageQueue.h"
#include "core/Preferences.h"
#include "net/Communication.h"
#include "net/Connection.h"
#include "net/Login.h"
#include "net/Network.h"
#include "net/Xtea.h"
#include "tests/net/ServerPacket.h"
#include "world/Creatures.h"
#include "world/Map.h"
#include "world/Objects.h"
#include "world/WorldMessages.h"

namespace testing_world {

class TWorldModules {
 public:
  TWorldModules(const std::filesystem::path& TypeFile, std::shared_ptr<const TClockSource> Clock) {
    LoadObjects(TypeFile.string());
    SetClockSource(std::move(Clock));
    InitPreferences();
    InitNetwork();
    InitConnection();
    InitLogin(false);
    InitCreatures();
    InitMap(CreatureLeftMap);
    InstallWorldMessageReaders();
    ResetWorldMessageState();
  }
  ~TWorldModules() {
    ExitMap();
    ExitCreatures();
    ExitLogin();
    ExitConnection();
    ExitNetwork();
    ExitPreferences();
    MessageQueue().Clear();
    SetClockSource(nullptr);
    ExitObjects();
  }
  TWorldModules(const TWorldModules&) = delete;
  TWorldModules& operator=(const TWorldModules&) = delete;
};

// One packet of a running game, enciphered with the all-zero session key,
// through the receive buffer and the dispatch.
inline void ReceiveGamePacket(std::span<const std::uint8_t> Payload) {
  SetConnectionState(GAME_RUNNING);
  const TXTEASymmetricKey ZeroKey;
  const auto Packet = testing_net::ServerPacket(Payload, &ZeroKey);
  std::memcpy(ReceiveSpace().data(), Packet.data(), Packet.size());
  CommitReceived(static_cast<int>(Packet.size()));
  EventPacketReceived();
}

}  // namespace testing_world
