#pragma once
// The readers of the commands that describe the world: the map block, objects
// and creatures on fields, effects, movement and speech. They read the
// receive buffer and change the map store and the creature table.
#include <cstdint>
#include <functional>
#include <string>

#include "world/Map.h"

struct TWirePosition {
  int x = 0;
  int y = 0;
  int z = 0;
  bool operator==(const TWirePosition&) const = default;
};

// u16 x, u16 y, u8 z.
TWirePosition ReadWirePosition();
// What follows an object's type on the wire (mark, data, phase, as the type's
// flags say), made into the object. An unknown type fails.
TObject ReadObjectExtras(int Type);

// The wire's chat modes: 0 to 41, of which 5, 12, 16 and 39 only go out.
void CheckChatMessageMode(int ChatMessageMode);
// A string field of which at most Limit - 1 bytes are kept; the whole field is consumed.
std::string ReadLimitedString(int Limit);

// The speech of a creature, as read.
struct TTalkRecord {
  std::uint32_t StatementId = 0;
  std::string Speaker;
  int SpeakerLevel = 0;
  int Mode = 0;
  TWirePosition Position;  // modes 1, 2, 3, 9, 10, 35, 36
  int Channel = 0;         // modes 7, 8, 14
  std::string Text;
};
// Where speech goes once read; until the chat takes it, it goes nowhere.
void SetTalkHandler(std::function<void(const TTalkRecord&)> Handler);

// Whether a map message has changed the block since the renderer last asked.
bool TakeMapChanged();

// Installs the readers of all map, creature, effect and speech commands.
void InstallWorldMessageReaders();
// Resets what the readers keep between commands (the snapback count).
void ResetWorldMessageState();
// The per-game reset of the world on entering a game: an empty map and
// creature table, the ambient light waiting for the server's first value.
void PrepareWorldForGame();
