#pragma once
// The modules that the map window draws from, started and ended as the client
// does, with the built data files; a login through the receive path that
// makes a creature the own character; map objects of the built types.
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "core/MessageQueue.h"
#include "core/Preferences.h"
#include "core/ProgramState.h"
#include "graphics/Engines.h"
#include "graphics/Fonts.h"
#include "graphics/Graphics.h"
#include "gui/GUI.h"
#include "net/Communication.h"
#include "net/Connection.h"
#include "net/Login.h"
#include "net/Network.h"
#include "net/Xtea.h"
#include "tests/net/ServerPacket.h"
#include "world/Creatures.h"
#include "world/Map.h"
#include "world/Objects.h"

#ifndef KELMO_DATA_DIR
#error "KELMO_DATA_DIR must name the folder of the built data files"
#endif

namespace mapmodules {

// Options first: the caller may change them before the first frame.
inline void Start() {
  ResetProgramState();
  InitPreferences();
  Preferences().ConfineFramerate = 201;  // no limit
  SetViewMode(WINDOWED_MODE);
  const std::string Data = KELMO_DATA_DIR;
  LoadObjects(Data + "/Kelmo.dat");
  LoadSprites(Data + "/Kelmo.spr");
  LoadPictures(Data + "/Kelmo.pic");
  InitFonts();
  InitGUI();
  InitNetwork();
  InitConnection();
  InitLogin(false);
  InitCreatures();
  InitMap(CreatureLeftMap);
}

inline void Stop() {
  ExitMap();
  ExitCreatures();
  ExitLogin();
  ExitConnection();
  ExitNetwork();
  ExitGUI();
  ExitGraphics();
  ShutdownSurface();
  ExitObjects();
  ExitPreferences();
  MessageQueue().Clear();
}

// SLOGINSUCCESS through the receive path makes Player the own character.
inline void LogIn(std::uint32_t Player) {
  std::vector<std::uint8_t> P{23};
  const auto U8 = [&](int V) { P.push_back(static_cast<std::uint8_t>(V)); };
  const auto U32 = [&](std::uint32_t V) {
    for (int Byte = 0; Byte < 4; ++Byte) U8(static_cast<int>(V >> (8 * Byte)));
  };
  U32(Player);
  U8(50), U8(0);  // the beat
  for (double Value : {0.0, 1.0, 200.0}) {
    U8(2);
    U32(static_cast<std::uint32_t>(std::lround(Value * 100) + 0x7FFFFFFF));
  }
  U8(0), U8(0);
  SetConnectionState(GAME_RUNNING);
  const TXTEASymmetricKey ZeroKey;
  const auto Packet = testing_net::ServerPacket(P, &ZeroKey);
  std::memcpy(ReceiveSpace().data(), Packet.data(), Packet.size());
  CommitReceived(static_cast<int>(Packet.size()));
  EventPacketReceived();
}

// An object of the type, with its own copy of the type's animation.
inline TObject Item(int Type, std::uint32_t Data = 0) {
  TObject Object;
  Object.Type = Type;
  Object.Data = Data;
  if (Type >= FIRST_OBJECT_TYPE && GetObjectAnimation(Type)) Object.Animation = new TAnimation(*GetObjectAnimation(Type));
  return Object;
}

}  // namespace mapmodules
