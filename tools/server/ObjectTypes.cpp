#include "tools/server/ObjectTypes.h"

#include <string>

#include "core/Exception.h"
#include "core/Script.h"

namespace server {

namespace {

TObjectType MakeObjectType(const TObjectRecord& Record) {
  TObjectType Type;
  for (const TFlagRecord& Flag : Record.Flags) {
    Type.Flags.set(Flag.Flag);
    if (Flag.Flag == BANK) Type.Waypoints = Flag.Operands.at(0);
  }
  Type.Phases = Record.Phases;
  return Type;
}

}  // namespace

bool TObjectTypes::IsObject(int Type) const {
  return Type >= FIRST_OBJECT_TYPE && Type < FIRST_OBJECT_TYPE + static_cast<int>(m_Objects.size());
}

bool TObjectTypes::IsOutfit(int Outfit) const {
  return Outfit >= 1 && Outfit <= static_cast<int>(m_Outfits.size());
}

const TObjectType& TObjectTypes::Object(int Type) const {
  if (!IsObject(Type)) ThrowException("no such object type", {{"Type", std::to_string(Type)}});
  return m_Objects[static_cast<std::size_t>(Type - FIRST_OBJECT_TYPE)];
}

const TOutfitType& TObjectTypes::Outfit(int Outfit) const {
  if (!IsOutfit(Outfit)) ThrowException("no such outfit", {{"Outfit", std::to_string(Outfit)}});
  return m_Outfits[static_cast<std::size_t>(Outfit - 1)];
}

bool TObjectTypes::HasData(int Type) const {
  const TObjectType& Entry = Object(Type);
  return Entry.Has(LIQUIDCONTAINER) || Entry.Has(LIQUIDPOOL) || Entry.Has(CUMULATIVE);
}

TObjectTypes LoadObjectTypes(const std::filesystem::path& Path) {
  TBinaryFileReader Reader;
  Reader.open(Path.string());
  const TObjectFileHeader Header = ReadObjectFileHeader(Reader);
  TObjectTypes Types;
  for (int Type = FIRST_OBJECT_TYPE; Type <= Header.HighestObject; ++Type)
    Types.AddObject(MakeObjectType(ReadObjectRecord(Reader)));
  for (int Outfit = 1; Outfit <= Header.HighestOutfit; ++Outfit)
    Types.AddOutfit({ReadObjectRecord(Reader).PatternWidth});
  return Types;
}

}  // namespace server
