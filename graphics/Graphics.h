#pragma once
// The sprite and picture stores. Kelmo.spr holds the 32 x 32 sprites of the
// world, Kelmo.pic the large images cut into 32 x 32 tiles. At start only the
// offset tables are read; a cell is decoded when first needed, kept in a
// least-recently-used memory cache of decoded RGB cells, and placed in a
// second least-recently-used cache of cells on the surface's sprite pages,
// from where it is drawn.
#include <array>
#include <cstdint>
#include <span>
#include <string>

#include "data/SkinTable.h"
#include "graphics/Surface.h"

constexpr int CELL_SIZE = 32;
constexpr int CELL_BYTES = CELL_SIZE * CELL_SIZE * 3;
constexpr int MEMORY_CACHE_SIZE = 3413;
constexpr int HASH_TABLE_SIZE = 100;

// Pictures with fixed roles.
enum : int {
  TITLE_PICTURE = 1,
  TITLE_LOGO_PICTURE = 2,
  INTERFACE_PICTURE = 5,
  EMPTY_SPRITE_PICTURE = 8,
};

enum : int {
  EMPTY_ITEM = 0,
  SPRITE_ITEM = 1,
  PICTURE_ITEM = 2,
};

using TCell = std::array<std::uint8_t, CELL_BYTES>;

// The links that both caches keep: the least-recently-used list and the
// chain of the item's bucket, as indexes, -1 ending each.
struct TCacheLinks {
  int Type = EMPTY_ITEM;
  int Previous = -1;
  int Next = -1;
  int HashPrevious = -1;
  int HashNext = -1;
  int HashValue = -1;
};

struct TMemoryCacheItem : TCacheLinks {
  std::uint8_t* Data = nullptr;  // CELL_BYTES, fixed for the item
  int Number = 0;                // sprite or picture
  int TileX = 0;
  int TileY = 0;
};

struct TVideoCacheItem : TCacheLinks {
  int Page = 0;  // 0 is SPRITE_SURFACE
  int X = 0;
  int Y = 0;
  int SpriteNumber = 0;
  int MaskNumber = 0;
  TOutfitColors Colors{};
  int PictureNumber = 0;
  int TileX = 0;
  int TileY = 0;
  TRGBColor FontColor{};
};

struct TSkin {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
};

// What the stores did, for tests and diagnostics.
struct TGraphicsCounters {
  long long FileReads = 0;
  long long MemoryHits = 0;
  long long MemoryMisses = 0;
  long long VideoHits = 0;
  long long VideoMisses = 0;
  long long PageWrites = 0;
};

// Kelmo.spr and Kelmo.pic as Paths names them; program errors 2 and 3 if
// missing. InitPictures also sets the memory cache up.
void InitSprites();
void InitPictures();
// Frees the tables and both caches.
void ExitGraphics();

void LoadSprites(const std::string& FileName);
void LoadPictures(const std::string& FileName);
// After a patch: both caches are emptied and the file is read again.
void ReloadSprites();
void ReloadPictures();

std::uint32_t GetSpriteSignature();
std::uint32_t GetPictureSignature();
int GetNumberOfSprites();
int GetNumberOfPictures();
// The transparent colour of a sprite (known once it has been read) or picture.
TRGBColor GetSpriteColor(int SpriteNumber);
TRGBColor GetPictureColor(int PictureNumber);
std::array<int, 2> GetPictureTiles(int PictureNumber);

// Decodes one cell from the file.
void ReadSprite(int SpriteNumber, std::span<std::uint8_t, CELL_BYTES> Buffer);
void ReadPictureTile(int PictureNumber, int TileX, int TileY, std::span<std::uint8_t, CELL_BYTES> Buffer);

const TMemoryCacheItem& GetMemorySprite(int SpriteNumber);
const TMemoryCacheItem& GetMemoryPictureTile(int PictureNumber, int TileX, int TileY);
const TVideoCacheItem& GetVideoSprite(int SpriteNumber);
const TVideoCacheItem& GetVideoColoredSprite(int SpriteNumber, int MaskNumber, const TOutfitColors& Colors);
const TVideoCacheItem& GetVideoPictureTile(int PictureNumber, int TileX, int TileY);
const TVideoCacheItem& GetVideoFontTile(int FontNumber, int TileX, int TileY, TRGBColor Color);
// Empties the video cache and sets it up for the sprite pages that exist now;
// without pages it stays absent.
void ResetVideoCache();
void ResetMemoryCache();
int GetVideoCacheSize();

// Sprite number 0 draws nothing.
void DrawSprite(int x, int y, int SpriteNumber);
void DrawSpriteClipped(int Surface, int x, int y, int SpriteNumber, TRect ClipRect);
void DrawSpriteStretched(int Surface, int x, int y, int Width, int Height, int SpriteNumber, TRGBColor StageColor,
                         TRect ClipRect);
// A mask of 0 draws the sprite as it is.
void DrawColoredSprite(int x, int y, int SpriteNumber, int MaskNumber, const TOutfitColors& Colors);
void DrawColoredSpriteStretched(int Surface, int x, int y, int Width, int Height, int SpriteNumber, int MaskNumber,
                                const TOutfitColors& Colors, TRGBColor StageColor, TRect ClipRect);
void DrawPicture(int Surface, int x, int y, int PictureNumber);
void DrawPicturePart(int Surface, int x, int y, int PictureNumber, int px, int py, int Width, int Height);
void DrawPicturePartClipped(int Surface, int x, int y, int PictureNumber, int px, int py, int Width, int Height,
                            TRect ClipRect);
// A sprite into a cell of the map's field cache; sprite 0 is picture 8's black cell.
void DrawFieldCacheSprite(int x, int y, int SpriteNumber, TRect CellRect);

// Row 0 is no skin.
const TSkin& GetSkin(int Skin);
constexpr int NumberOfSkins = LASTSKIN;

// Tiles the area with the skin: the first row starts StartY into the skin,
// the first column StartX, every later tile at the skin's origin, each piece
// cut to what remains. Skin 0 or an empty area draws nothing; the area must
// lie at or right and below the surface's origin.
void DrawSkin(int Surface, int x, int y, int Width, int Height, int Skin, int StartX, int StartY);
void DrawSkinClipped(int Surface, int x, int y, int Width, int Height, int Skin, int StartX, int StartY,
                     TRect ClipRect);
// The skin once at its natural size; skin 0 draws nothing.
void DrawSkinAt(int Surface, int x, int y, int Skin);

// Rectangles as the interface draws them, through the surface.
void FillRectangle(int Surface, int x, int y, int Width, int Height, TRGBColor Color, int Alpha);
void DrawRectangleFrame(int Surface, int x, int y, int Width, int Height, int Thickness, TRGBColor Color);

const TGraphicsCounters& GraphicsCounters();
void ResetGraphicsCounters();
