#include "app/Modules.h"

#include "core/Exception.h"
#include "graphics/Graphics.h"
#include "net/Communication.h"
#include "net/Connection.h"
#include "net/Login.h"
#include "net/Random.h"
#include "world/Objects.h"
#include "world/Status.h"

// The order is fixed: random numbers, object types, sprites, map, inventory,
// creatures, status, help texts, configuration, talk, pictures, network.
// Modules join at their place as they are built.
void InitModules(bool Gamemaster) try {
  InitRandom();
  InitObjects();
  InitSprites();
  InitStatus(Gamemaster);
  InitPictures();
  InitNetwork();
  SetPaddingSource(GetRandomByte);
  InitConnection();
  InitLogin(Gamemaster);
} catch (...) {
  RethrowGuarded();
}

// The reverse of InitModules, with the network's socket released first.
void ShutdownModules() try {
  ExitLogin();
  ExitConnection();
  ExitNetwork();
  ExitStatus();
  ExitObjects();
  ExitRandom();
} catch (...) {
  RethrowGuarded();
}
