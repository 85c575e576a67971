#pragma once
// What the server needs to know of the object types in Kelmo.dat: the flags
// that decide walking and stacking, the ground's waypoints, which records
// carry a data byte or a phase byte on the wire, and which outfits exist.
#include <bitset>
#include <cstdint>
#include <filesystem>
#include <vector>

#include "world/ObjectFile.h"

namespace server {

constexpr int FIRST_OBJECT_TYPE = 100;
constexpr int CREATURE_TYPE = 99;

struct TObjectType {
  std::bitset<256> Flags;
  int Waypoints = 0;
  int Phases = 1;

  bool Has(int Flag) const { return Flags.test(static_cast<std::size_t>(Flag)); }
};

struct TOutfitType {
  int Directions = 1;  // the pattern width
};

class TObjectTypes {
 public:
  // Tables built by hand, for tests.
  void AddObject(TObjectType Type) { m_Objects.push_back(Type); }
  void AddOutfit(TOutfitType Outfit) { m_Outfits.push_back(Outfit); }

  bool IsObject(int Type) const;
  bool IsOutfit(int Outfit) const;
  // Fails for a number that is no object type.
  const TObjectType& Object(int Type) const;
  const TOutfitType& Outfit(int Outfit) const;
  // The wire's data byte follows the mark for these.
  bool HasData(int Type) const;

 private:
  std::vector<TObjectType> m_Objects;  // from FIRST_OBJECT_TYPE
  std::vector<TOutfitType> m_Outfits;  // from 1
};

// Reads the object and outfit records; a damaged file fails as the reader does.
TObjectTypes LoadObjectTypes(const std::filesystem::path& Path);

}  // namespace server
