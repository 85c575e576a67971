#pragma once
// What one client holds of the world: the block of 18 x 14 fields round its
// map position on up to 8 floors, and the creatures it has been told about.
// On and above the surface it holds floors 7 to 0; below it, two floors
// above and two below its own. Each floor up is skewed one field to the
// south-east, so that the field over the player has the same block place
// one floor up, less one in each direction.
#include <cstdint>
#include <deque>
#include <functional>
#include <vector>

#include "tools/server/WorldMap.h"

namespace server {

constexpr int MAPSIZE_X = 18;
constexpr int MAPSIZE_Y = 14;
constexpr int PLAYER_RX = 8;
constexpr int PLAYER_RY = 6;
constexpr int SURFACE_FLOOR = 7;
// The client's creature table; beyond it a record must be given up.
constexpr std::size_t KNOWN_CREATURES = 1300;

class TClientView {
 public:
  TPosition MapPosition;

  // The floors held, in the order in which a map description sends them.
  std::vector<int> Floors() const;
  bool HoldsFloor(int Z) const;
  // The world position of the block's field (RX, RY) on floor Z.
  TPosition FieldAt(int RX, int RY, int Z) const;
  bool Holds(const TPosition& Position) const;

  bool Knows(std::uint32_t Id) const;
  // Notes that the client knows the creature from now on. With the table
  // full, it gives up the oldest one that is not on its map, and answers
  // that one's id; else 0.
  std::uint32_t Learn(std::uint32_t Id, const std::function<bool(std::uint32_t)>& OnMap);

 private:
  std::deque<std::uint32_t> m_Known;
};

}  // namespace server
