#pragma once
// Every command that a client sends to the game server after its login, read
// field by field. A command must fill its payload exactly.
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "tools/server/ServerLog.h"

namespace server {

constexpr std::uint8_t CENTERWORLD = 15;
constexpr std::uint8_t CQUITGAME = 20;
constexpr std::uint8_t CPING = 29;
constexpr std::uint8_t CGOPATH = 100;
constexpr std::uint8_t CGONORTH = 101;
constexpr std::uint8_t CGOEAST = 102;
constexpr std::uint8_t CGOSOUTH = 103;
constexpr std::uint8_t CGOWEST = 104;
constexpr std::uint8_t CSTOP = 105;
constexpr std::uint8_t CGONORTHEAST = 106;
constexpr std::uint8_t CGOSOUTHEAST = 107;
constexpr std::uint8_t CGOSOUTHWEST = 108;
constexpr std::uint8_t CGONORTHWEST = 109;
constexpr std::uint8_t CTURNNORTH = 111;
constexpr std::uint8_t CTURNWEST = 114;
constexpr std::uint8_t CMOVEOBJECT = 120;
constexpr std::uint8_t CUSEOBJECT = 130;

struct TGameCommand {
  std::uint8_t Type;
  TCommandRecord Record;
};

// Fails on an unknown type, a field beyond the payload, a text beyond its
// limit, an invalid choice field, and bytes left over.
TGameCommand DecodeGameCommand(std::span<const std::uint8_t> Payload);
// The name of a game command type, if it is one.
std::optional<std::string> GameCommandName(std::uint8_t Type);

// A decoded field by its name; fails if the command has none of that name
// and kind. CGOPATH notes its steps as one text of step codes.
std::int64_t NumberField(const TCommandRecord& Record, std::string_view Name);
const std::string& TextField(const TCommandRecord& Record, std::string_view Name);

}  // namespace server
