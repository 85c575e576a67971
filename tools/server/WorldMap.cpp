#include "tools/server/WorldMap.h"

#include <algorithm>

#include "core/Exception.h"

namespace server {

namespace {

// The classes that lie below the creatures, from the bottom.
constexpr int LOW_CLASSES[] = {BANK, EDGE, BOTTOM, TOP};

const TPile NO_PILE;

}  // namespace

std::string PositionText(const TPosition& Position) {
  return '[' + std::to_string(Position.X) + ',' + std::to_string(Position.Y) + ',' +
         std::to_string(Position.Z) + ']';
}

TWorldMap::TWorldMap(std::shared_ptr<const TObjectTypes> Types) : m_Types(std::move(Types)) {}

const TPile& TWorldMap::Pile(const TPosition& Position) const {
  const auto Field = m_Fields.find(Position);
  return Field == m_Fields.end() ? NO_PILE : Field->second;
}

bool TWorldMap::ItemHas(const TItem& Item, int Flag) const {
  return !Item.IsCreature() && m_Types->Object(Item.Type).Has(Flag);
}

bool TWorldMap::AnyHas(const TPosition& Position, int Flag) const {
  const TPile& Items = Pile(Position);
  return std::any_of(Items.begin(), Items.end(), [&](const TItem& Item) { return ItemHas(Item, Flag); });
}

// A new item goes in front of the others of its class; a creature after the
// other creatures; an ordinary object right after the creatures.
int TWorldMap::InsertPlace(const TPile& Items, const TItem& New) const {
  const int Count = static_cast<int>(Items.size());
  for (int I = 0; I < Count; ++I) {
    const TItem& Standing = Items[static_cast<std::size_t>(I)];
    bool Passed = false;
    for (const int Flag : LOW_CLASSES) {
      const bool NewHas = ItemHas(New, Flag);
      const bool StandingHas = ItemHas(Standing, Flag);
      if (NewHas && !StandingHas) return I;
      if (NewHas != StandingHas) {
        Passed = true;
        break;
      }
    }
    if (!Passed && !Standing.IsCreature()) return I;
  }
  return Count;
}

int TWorldMap::Insert(const TPosition& Position, TItem Item) {
  TPile& Items = m_Fields[Position];
  if (static_cast<int>(Items.size()) >= ITEMS_PER_FIELD)
    ThrowException("field is full", {{"Position", PositionText(Position)}});
  const int Stack = InsertPlace(Items, Item);
  Items.insert(Items.begin() + Stack, Item);
  return Stack;
}

TPile& TWorldMap::Existing(const TPosition& Position, int Stack) {
  const auto Field = m_Fields.find(Position);
  if (Field == m_Fields.end() || Stack < 0 || Stack >= static_cast<int>(Field->second.size()))
    ThrowException("no item at this stack position",
                   {{"Position", PositionText(Position)}, {"Stack", std::to_string(Stack)}});
  return Field->second;
}

void TWorldMap::Remove(const TPosition& Position, int Stack) {
  TPile& Items = Existing(Position, Stack);
  Items.erase(Items.begin() + Stack);
}

void TWorldMap::Change(const TPosition& Position, int Stack, TItem Item) {
  Existing(Position, Stack)[static_cast<std::size_t>(Stack)] = Item;
}

std::optional<int> TWorldMap::StackOf(const TPosition& Position, std::uint32_t CreatureId) const {
  const TPile& Items = Pile(Position);
  const auto Found = std::find(Items.begin(), Items.end(), CreatureItem(CreatureId));
  if (Found == Items.end()) return std::nullopt;
  return static_cast<int>(Found - Items.begin());
}

bool TWorldMap::IsWalkable(const TPosition& Position) const {
  const TPile& Items = Pile(Position);
  return IsLandable(Position) && std::none_of(Items.begin(), Items.end(), [](const TItem& Item) { return Item.IsCreature(); });
}

bool TWorldMap::IsLandable(const TPosition& Position) const {
  const TPile& Items = Pile(Position);
  if (Items.empty() || static_cast<int>(Items.size()) >= ITEMS_PER_FIELD) return false;
  if (!ItemHas(Items.front(), BANK)) return false;
  return std::none_of(Items.begin(), Items.end(), [&](const TItem& Item) { return ItemHas(Item, UNPASSABLE); });
}

}  // namespace server
