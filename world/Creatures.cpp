#include "world/Creatures.h"

#include <algorithm>
#include <memory>

#include "core/Exception.h"
#include "world/Colors.h"

namespace {

struct TCreatureTable {
  // The last record is the spare one.
  std::array<TCreature, MAX_CREATURES + 1> Records;
  std::vector<std::uint32_t> Trappers;
};

std::unique_ptr<TCreatureTable> Table;

TCreatureTable& Creatures() {
  Check(Table != nullptr, "Creatures!=NULL");
  return *Table;
}

void ResetRecord(TCreature& Creature, std::uint32_t CreatureID) {
  if (Creature.CreatureID == 0) Creature.BattleNext = 0x7FFFFFFF;
  Creature.PKFlag = Creature.PARTYFlag = Creature.GUILDFlag = Creature.PvPHelpers = 0;
  Creature.Squared = false;
  const TRGB Unmarked = Color216(255);
  Creature.SquareRed = Unmarked.Red;
  Creature.SquareGreen = Unmarked.Green;
  Creature.SquareBlue = Unmarked.Blue;
  Creature.Unpassable = true;
  Creature.CreatureID = CreatureID;
}

}  // namespace

void InitCreatures() { Table = std::make_unique<TCreatureTable>(); }
void ExitCreatures() { Table.reset(); }

void ClearCreatures() {
  TCreatureTable& T = Creatures();
  std::fill(T.Records.begin(), T.Records.end(), TCreature{});
  T.Trappers.clear();
}

TCreature& NewCreature(std::uint32_t OldCreatureID, std::uint32_t NewCreatureID) {
  Check(NewCreatureID != 0, "NewCreatureID!=0");
  auto& Records = Creatures().Records;
  const auto Searched = Records.begin() + MAX_CREATURES;
  auto Found = std::find_if(Records.begin(), Searched, [&](const TCreature& C) {
    return C.CreatureID == OldCreatureID || C.CreatureID == NewCreatureID;
  });
  TCreature& Creature = Found != Searched ? *Found : Records.back();
  ResetRecord(Creature, NewCreatureID);
  return Creature;
}

TCreature* FindCreature(std::uint32_t CreatureID) {
  Check(CreatureID != 0, "CreatureID!=0");
  auto& Records = Creatures().Records;
  const auto Searched = Records.begin() + MAX_CREATURES;
  const auto Found = std::find_if(Records.begin(), Searched,
                                  [&](const TCreature& C) { return C.CreatureID == CreatureID; });
  return Found != Searched ? &*Found : nullptr;
}

TCreature* FindCreatureByName(const std::string& Name) {
  auto& Records = Creatures().Records;
  const auto Searched = Records.begin() + MAX_CREATURES;
  const auto Found = std::find_if(Records.begin(), Searched, [&](const TCreature& C) {
    return C.CreatureID != 0 && C.Name == Name;
  });
  return Found != Searched ? &*Found : nullptr;
}

void SetTrappers(const std::vector<std::uint32_t>& CreatureIDs) {
  if (CreatureIDs.size() > MAX_TRAPPERS) ThrowException("illegal number of trappers");
  Creatures().Trappers = CreatureIDs;
}

bool IsTrapper(std::uint32_t CreatureID) {
  const auto& Trappers = Creatures().Trappers;
  return std::find(Trappers.begin(), Trappers.end(), CreatureID) != Trappers.end();
}

void CreatureLeftMap(std::uint32_t CreatureID) {
  if (CreatureID == 0) return;
  if (TCreature* Creature = FindCreature(CreatureID)) Creature->OnMap = false;
}
