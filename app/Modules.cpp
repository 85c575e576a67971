#include "app/Modules.h"

#include "core/Exception.h"
#include "graphics/Graphics.h"
#include "net/Communication.h"
#include "world/Objects.h"
#include "world/Status.h"

// The order is fixed: random numbers, object types, sprites, map, inventory,
// creatures, status, help texts, configuration, talk, pictures, network.
// Modules join at their place as they are built.
void InitModules(bool Gamemaster) try {
  InitObjects();
  InitSprites();
  InitStatus(Gamemaster);
  InitPictures();
  InitNetwork();
} catch (...) {
  RethrowGuarded();
}

// The reverse of InitModules, with the network's socket released first.
void ShutdownModules() try {
  ExitNetwork();
  ExitStatus();
  ExitObjects();
} catch (...) {
  RethrowGuarded();
}
