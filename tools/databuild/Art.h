#pragma once
// The sprites of Kelmo.spr, drawn by code. Each object type names its art in
// the type sources (art = "grass"); the art draws every picture slot that the
// type's geometry has, so the sprite numbers that the type file hands out and
// the cells of the sprite file come from one walk over the same records.
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tools/databuild/CellFiles.h"
#include "tools/databuild/TypeSources.h"

// One pattern and phase of a type, all numbers from 0. The art answers one
// image per layer, each 32 x Width by 32 x Height pixels; tile (1, 1) of the
// type is the lower right cell of the image.
struct TArtFrame {
  const TObjectRecord& Record;
  int PatternX = 0;
  int PatternY = 0;
  int PatternZ = 0;
  int Phase = 0;

  int pixelWidth() const { return 32 * Record.Width; }
  int pixelHeight() const { return 32 * Record.Height; }
  int phases() const { return Record.Phases; }
};

using TArtDrawer = std::function<std::vector<TCanvas>(const TArtFrame&)>;

// What the art needs of a type's geometry; a type that differs is a mistake
// in the sources, found when the sprites are built.
struct TArtShape {
  int Width = 1, Height = 1, Layers = 1;
  int PatternWidth = 1, PatternHeight = 1, PatternDepth = 1;
  int MinimumPhases = 1, MaximumPhases = 1;
  // Outfits: the addon rows may be fewer than PatternHeight, and one layer
  // (no colour mask) is allowed where Layers is 2.
  bool IsOutfit = false;
};

struct TArt {
  TArtShape Shape;
  TArtDrawer Draw;
};

class TArtCatalogue {
 public:
  // All art of the game.
  static const TArtCatalogue& Instance();

  void add(const std::string& Name, TArtShape Shape, TArtDrawer Draw);
  // Fails with "unknown art" for a name that has none.
  const TArt& find(const std::string& Name) const;
  const std::map<std::string, TArt>& all() const { return m_Art; }

 private:
  std::map<std::string, TArt> m_Art;
};

// The sprites of every record in the sources, at the numbers the records
// hold. Fails for a record without art, a geometry that the art can't draw,
// and a sprite number that no art fills.
TSpriteFile DrawSprites(const TTypeSources& Sources, std::uint32_t Signature);

// The cells of one record in the order of its Sprites.
std::vector<TCell> DrawRecord(const TObjectRecord& Record, const TArt& Art);

// Registered by the art files.
void AddGroundArt(TArtCatalogue& Catalogue);
void AddStructureArt(TArtCatalogue& Catalogue);
void AddItemArt(TArtCatalogue& Catalogue);
void AddCreatureArt(TArtCatalogue& Catalogue);
void AddEffectArt(TArtCatalogue& Catalogue);

// The fixed signatures of the two files, from data/art/signatures.txt.
struct TArtSignatures {
  std::uint32_t Sprites = 0;
  std::uint32_t Pictures = 0;
};
TArtSignatures ReadArtSignatures(const std::string& FileName);
