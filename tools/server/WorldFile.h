#pragma once
// The world file: a map drawn as rows of characters, single objects put on
// it, the ways between floors, the player's start, monsters and NPCs. It is
// a script in the project's format; data/world/README.md describes it.
#include <filesystem>
#include <memory>

#include "tools/server/World.h"

namespace server {

// A mistake fails with the script reader's "error in script file '<name>' in
// line <n>" and what is wrong as the value "Error".
TWorldSetup LoadWorld(const std::filesystem::path& Path, std::shared_ptr<const TObjectTypes> Types);

}  // namespace server
