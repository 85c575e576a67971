#include "app/Modules.h"

#include "core/Exception.h"
#include "core/MessageQueue.h"
#include "core/Preferences.h"
#include "graphics/Graphics.h"
#include "net/Communication.h"
#include "net/Connection.h"
#include "net/Login.h"
#include "net/Random.h"
#include "world/Creatures.h"
#include "world/Map.h"
#include "world/Objects.h"
#include "world/PlayerMessages.h"
#include "world/Status.h"
#include "world/WorldMessages.h"

namespace {

// A damaged file is no reason to stop: the defaults stand, and the player is told.
void LoadConfiguration() {
  InitPreferences();
  int Version = 0;
  if (LoadPreferences(Version)) return;
  MessageQueue().Post(MSG_MESSAGEBOX, std::string("Loading configuration failed"),
                      std::string("Kelmo could not load the configuration file.\n\nAll settings in the "
                                  "options menu such as your\nhotkeys have been reset."));
}

}  // namespace

// The order is fixed: random numbers, object types, sprites, map, inventory,
// creatures, status, help texts, configuration, talk, pictures, network.
// Modules join at their place as they are built.
void InitModules(bool Gamemaster) try {
  InitRandom();
  InitObjects();
  InitSprites();
  InitMap(CreatureLeftMap);
  InitCreatures();
  InitStatus(Gamemaster);
  LoadConfiguration();
  InitPictures();
  InitNetwork();
  SetPaddingSource(GetRandomByte);
  InitConnection();
  InitLogin(Gamemaster);
  InstallWorldMessageReaders();
  InstallPlayerMessageReaders();
} catch (...) {
  RethrowGuarded();
}

// The reverse of InitModules, with the network's socket released first.
void ShutdownModules() try {
  SavePreferences();
  ExitLogin();
  ExitConnection();
  ExitNetwork();
  ExitStatus();
  ExitCreatures();
  ExitMap();
  ExitObjects();
  ExitGraphics();
  ExitPreferences();
  ExitRandom();
} catch (...) {
  RethrowGuarded();
}
