#pragma once
// The messages that tell a client about the world: map descriptions (the
// whole block, a new edge row, the floors that come into view on a change
// of floor), objects and creatures on fields, moves, speech and a refused
// step. Each is written for one client's view, which moves with the map
// messages and learns the creatures that they describe.
//
// A map description is a stream of fields in the client's reading order:
// floor by floor, x outside and y inside. A field with items is a u16
// environment word (0), the item records, and a mark 0xFF00 + n that ends it
// and skips the n empty fields that follow. An empty field that no mark
// skips is itself such a mark.
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tools/server/ClientView.h"
#include "tools/server/Fields.h"
#include "tools/server/World.h"

namespace server {

// Message types of the world.
constexpr std::uint8_t SFULLMAP = 100;
constexpr std::uint8_t STOPROW = 101;
constexpr std::uint8_t SRIGHTROW = 102;
constexpr std::uint8_t SBOTTOMROW = 103;
constexpr std::uint8_t SLEFTROW = 104;
constexpr std::uint8_t SCREATEONMAP = 106;
constexpr std::uint8_t SCHANGEONMAP = 107;
constexpr std::uint8_t SDELETEONMAP = 108;
constexpr std::uint8_t SMOVECREATURE = 109;
constexpr std::uint8_t STALK = 170;
constexpr std::uint8_t SSNAPBACK = 181;
constexpr std::uint8_t STOPFLOOR = 190;
constexpr std::uint8_t SBOTTOMFLOOR = 191;

// Creature records on the wire.
constexpr std::uint16_t UNKNOWN_CREATURE_RECORD = 97;
constexpr std::uint16_t KNOWN_CREATURE_RECORD = 99;

// Talk modes of STALK that this server uses.
constexpr std::uint8_t TALK_SAY = 1;

class TWorldMessages {
 public:
  TWorldMessages(const TGameWorld& World, TClientView& View) : m_World(World), m_View(View) {}

  // The block round Position, which becomes the map position.
  void FullMap(TMessageWriter& Writer, const TPosition& Position);
  // Moves the map position one field that way and describes the new edge.
  void Row(TMessageWriter& Writer, int Direction);
  // Moves the map position a floor up (x and y one more) or down (one less)
  // and describes the floors that come into view.
  void FloorUp(TMessageWriter& Writer);
  void FloorDown(TMessageWriter& Writer);

  // The item at the stack position, as it is now on the map.
  void CreateOnMap(TMessageWriter& Writer, const TPosition& Position, int Stack);
  void ChangeOnMap(TMessageWriter& Writer, const TPosition& Position, int Stack);
  static void DeleteOnMap(TMessageWriter& Writer, const TPosition& Position, int Stack);
  static void MoveCreature(TMessageWriter& Writer, const TPosition& From, int Stack, const TPosition& To);
  static void Talk(TMessageWriter& Writer, std::uint32_t Statement, const TCreature& Speaker,
                   std::string_view Text);
  static void Snapback(TMessageWriter& Writer, int Direction);

 private:
  // Describes the block's fields (X0..X1, Y0..Y1) on each floor given.
  std::vector<std::uint8_t> Area(int X0, int Y0, int X1, int Y1, const std::vector<int>& Floors);
  void Description(TMessageWriter& Writer, std::uint8_t Type, const char* Name, int X0, int Y0, int X1, int Y1,
                   const std::vector<int>& Floors);
  template <typename TSink>
  void Item(TSink& Sink, const TItem& Item);
  template <typename TSink>
  void Creature(TSink& Sink, const TCreature& Creature);

  const TGameWorld& m_World;
  TClientView& m_View;
};

}  // namespace server
