#pragma once
// Every command that a client sends to the game server after its login, read
// field by field. A command must fill its payload exactly.
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "tools/server/ServerLog.h"

namespace server {

constexpr std::uint8_t CENTERWORLD = 15;
constexpr std::uint8_t CQUITGAME = 20;
constexpr std::uint8_t CPING = 29;

struct TGameCommand {
  std::uint8_t Type;
  TCommandRecord Record;
};

// Fails on an unknown type, a field beyond the payload, a text beyond its
// limit, an invalid choice field, and bytes left over.
TGameCommand DecodeGameCommand(std::span<const std::uint8_t> Payload);
// The name of a game command type, if it is one.
std::optional<std::string> GameCommandName(std::uint8_t Type);

}  // namespace server
