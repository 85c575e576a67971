#pragma once
// The world on the screen. CMapWindow composes the visible fields of the map
// block on TEMP_SURFACE, floor by floor, multiplies the light in, copies the
// picture to its place, scaled or not, and draws what must stay sharp on top:
// health bars, names, marks, talkboxes, the status line and animated texts.
// A field's settled sprites are kept on CACHE_SURFACE between frames, so that
// a field that didn't change costs one copy.
#include <array>
#include <cstdint>
#include <vector>

#include "graphics/Surface.h"
#include "gui/GUI.h"
#include "world/Creatures.h"
#include "world/Map.h"

constexpr int MAP_WIDTH = 15;
constexpr int MAP_HEIGHT = 11;
constexpr int FIELD_SIZE = 32;
constexpr int MAP_PICTURE_WIDTH = MAP_WIDTH * FIELD_SIZE;
constexpr int MAP_PICTURE_HEIGHT = MAP_HEIGHT * FIELD_SIZE;
constexpr int FIELD_CACHE_WIDTH = 16;
constexpr int FIELD_CACHE_HEIGHT = 12;
constexpr int FIELD_CACHE_SPRITES = 10;

struct TCreatureLabel {
  std::uint32_t CreatureID = 0;
  int x = 0;
  int y = 0;
};

struct TTextLabel {
  int Effect = 0;
  int x = 0;
  int y = 0;
  int rx = 0, ry = 0, rz = 0;
};

struct TFieldCacheEntry {
  int CacheX = 0;
  int CacheY = 0;
  int Count = 0;
  std::array<int, FIELD_CACHE_SPRITES> Sprite{};
  std::array<int, FIELD_CACHE_SPRITES> OffsetX{};
  std::array<int, FIELD_CACHE_SPRITES> OffsetY{};
  int Used = 0;
  bool Flushed = false;
};

// What the field cache did, for tests and the benchmark.
struct TFieldCacheCounters {
  long long SpritesWritten = 0;  // sprites drawn into CACHE_SURFACE
  long long SpritesFound = 0;    // sprites that were already there
  long long Flushes = 0;
};

class CMapWindow : public CGUIComposite {
 public:
  CMapWindow();
  ~CMapWindow() override;

  void Draw(int Surface, int x, int y) override;
  void SetSize(int Width, int Height) override;
  int GetMinimumWidth() const override { return 240; }
  int GetMinimumHeight() const override { return 176; }
  void OnEvent(int Event) override;

  // From a point on the element to the field under it.
  void PointToField(int x, int y, int& rx, int& ry, int& rz) const;
  // The creature whose label lies under the point in the last frame; 0 if none.
  std::uint32_t CreatureAtPoint(int x, int y) const;

  const std::vector<TCreatureLabel>& GetCreatureLabels() const { return m_CreatureLabels; }
  int GetTopFloor() const { return m_TopFloor; }
  const TFieldCacheCounters& CacheCounters() const { return m_CacheCounters; }
  void ResetCacheCounters() { m_CacheCounters = {}; }

 private:
  struct TCrop {
    int x = 0;
    int y = 0;
  };

  void ComputeTopFloor();
  void ComputeCoverFloor();
  bool IsFloorVisible(int rx, int ry, int rz) const;
  void DimLightMap();
  void BaseLightPass(int z);
  void SetBaseLight(int rx, int ry, int Brightness);
  void AddLight(int px, int py, int rz, int Radius, TRGBColor Color);
  void DrawLight();

  void DrawField(int px, int py, int rx, int ry, int rz, int Mode);
  void CollectCreatures(int rz);
  void DrawCreatures(int px, int py, int rx, int ry, int rz, int Mode, int Elevation);
  std::uint32_t CreatureUnderMouse(int x, int y) const;
  void DrawEffects(int px, int py, int rx, int ry, int rz, int Mode, int Elevation);
  void DrawObject(int px, int py, int rz, const TObject& Object, int x, int y, int z);
  void DrawOutfit(int px, int py, int rz, const TCreature& Creature);
  void DrawMapSprite(int px, int py, int rz, bool Direct, int Sprite, int Mask = 0,
                     const TOutfitColors& Colors = {});
  void FlushArea(int px, int py, int Width, int Height);

  TFieldCacheEntry& CacheEntry(int rx, int ry);
  bool IsOnPicture(int rx, int ry) const;
  void CacheSprite(int rx, int ry, int Sprite, int ox, int oy);
  void DrawIntoCell(const TFieldCacheEntry& Entry, int Index);
  void FlushField(int rx, int ry);

  TCrop Crop() const;
  void ToElement(int& lx, int& ly) const;
  bool IsUnderRoof(int rx, int ry, int rz) const;
  void DrawCreatureLabels(int Surface, int x, int y);
  void DrawCreatureLabel(int Surface, int x, int y, const TCreature& Creature, int lx, int ly);
  void DrawCreatureMarks(int Surface, int x, int y, const TCreature& Creature, int lx, int ly);
  void LayoutTalkboxes();
  void DrawTalkboxes(int Surface, int x, int y);
  void DrawStatusLine(int Surface, int x, int y);
  void DrawAnimatedTexts(int Surface, int x, int y);

  std::vector<TCreatureLabel> m_CreatureLabels;
  std::vector<TTextLabel> m_TextLabels;
  int m_PlayerX = 0, m_PlayerY = 0, m_PlayerZ = 0;
  int m_PlayerFloor = 0;
  int m_TopFloor = 7;
  std::array<std::array<int, 14>, 18> m_CoverFloor{};
  std::array<std::array<TRGBColor, 14>, 18> m_LightMap{};
  int m_ScrollX = 32, m_ScrollY = 32;
  int m_DisplacementX = 0, m_DisplacementY = 0;
  int m_Now = 0;
  // The creatures on each field of the floor being drawn, in stacking
  // order: every field's list looks at nine fields, so each is read once.
  struct TFieldCreatures {
    std::array<TCreature*, OBJECTS_PER_POINT> Creatures{};
    int Count = 0;
  };
  std::array<std::array<TFieldCreatures, MAPSIZE_Y>, MAPSIZE_X> m_FieldCreatures{};
  std::uint32_t m_PointerCreature = 0;  // under the mouse, by the last frame's labels
  std::array<std::array<TFieldCacheEntry, FIELD_CACHE_HEIGHT>, FIELD_CACHE_WIDTH> m_FieldCache{};
  TFieldCacheCounters m_CacheCounters;
};

// The frame round the map: a border of 5 pixels and the 15 : 11 rule.
class CMapFrame : public CGUIComposite {
 public:
  static constexpr int BORDER = 5;

  CMapFrame();
  void SetSize(int Width, int Height) override;
  int GetMinimumWidth() const override;
  int GetMinimumHeight() const override;

  CMapWindow& Map() const { return *m_Map; }

 private:
  CMapWindow* m_Map = nullptr;
};
