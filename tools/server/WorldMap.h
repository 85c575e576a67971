#pragma once
// The map of the server's world: fields by world position, each a pile of
// items in the order in which the client stacks them, position 0 the lowest.
// Creatures stand on the map as items of type 99 with their id as data.
#include <compare>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/server/ObjectTypes.h"

namespace server {

// The client keeps no more than this on a field; the map never holds more.
constexpr int ITEMS_PER_FIELD = 10;

struct TPosition {
  int X = 0;
  int Y = 0;
  int Z = 0;
  auto operator<=>(const TPosition&) const = default;
};
std::string PositionText(const TPosition& Position);

struct TItem {
  int Type = 0;
  std::uint32_t Data = 0;  // count, liquid, or the creature's id
  bool IsCreature() const { return Type == CREATURE_TYPE; }
  bool operator==(const TItem&) const = default;
};
inline TItem CreatureItem(std::uint32_t Id) { return {CREATURE_TYPE, Id}; }

using TPile = std::vector<TItem>;

class TWorldMap {
 public:
  explicit TWorldMap(std::shared_ptr<const TObjectTypes> Types);

  const TObjectTypes& Types() const { return *m_Types; }
  // Empty for a position without a field.
  const TPile& Pile(const TPosition& Position) const;
  // Whether an item has the flag; creatures have none that matter here.
  bool ItemHas(const TItem& Item, int Flag) const;
  bool AnyHas(const TPosition& Position, int Flag) const;

  // Places the item where the client's stacking rule puts it and returns
  // its stack position; fails on a full field.
  int Insert(const TPosition& Position, TItem Item);
  void Remove(const TPosition& Position, int Stack);
  void Change(const TPosition& Position, int Stack, TItem Item);
  std::optional<int> StackOf(const TPosition& Position, std::uint32_t CreatureId) const;

  // A ground first, nothing unpassable, no creature, and room for one more.
  bool IsWalkable(const TPosition& Position) const;
  // The same, but a creature there does not stand in the way: who comes down
  // a hole or up a stair lands beside whoever stands at the end.
  bool IsLandable(const TPosition& Position) const;
  const std::map<TPosition, TPile>& Fields() const { return m_Fields; }

 private:
  int InsertPlace(const TPile& Pile, const TItem& Item) const;
  TPile& Existing(const TPosition& Position, int Stack);

  std::shared_ptr<const TObjectTypes> m_Types;
  std::map<TPosition, TPile> m_Fields;
};

}  // namespace server
