#include "graphics/Graphics.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "core/Exception.h"
#include "core/Paths.h"
#include "core/Script.h"
#include "graphics/Fonts.h"
#include "graphics/Recorder.h"

namespace {

constexpr int FILE_NAME_LIMIT = 260;
constexpr int CELL_PIXELS = CELL_SIZE * CELL_SIZE;

struct TSpriteRecord {
  std::uint32_t Offset = 0;
  TRGBColor Color{};
};

struct TPictureRecord {
  int TilesX = 0;
  int TilesY = 0;
  std::vector<std::uint32_t> TileOffsets;  // row by row
  TRGBColor Color{};
};

// A least-recently-used list over a fixed array with a hash of 100 buckets.
// Head is the most recently used item, the tail the next victim.
template <typename TItem>
class TLruCache {
 public:
  void Reset(int Size) {
    m_Items.resize(Size);
    for (int Index = 0; Index < Size; ++Index) {
      TCacheLinks& Links = m_Items[Index];
      Links = {};
      Links.Previous = Index - 1;
      Links.Next = Index + 1 < Size ? Index + 1 : -1;
    }
    m_Head = Size > 0 ? 0 : -1;
    m_Tail = Size - 1;
    m_Buckets.fill(-1);
  }

  int Size() const { return static_cast<int>(m_Items.size()); }
  TItem& operator[](int Position) { return m_Items[Position]; }
  int Head() const { return m_Head; }
  int Tail() const { return m_Tail; }

  // The first item of the bucket that Matches, -1 if none; the walk is
  // bounded by the cache's size.
  template <typename TMatch>
  int Find(int HashValue, TMatch Matches) {
    CheckHash(HashValue);
    int Steps = 0;
    for (int Position = m_Buckets[HashValue]; Position != -1 && Steps < Size(); ++Steps) {
      if (Matches(m_Items[Position])) return Position;
      Position = m_Items[Position].HashNext;
    }
    return -1;
  }

  // The tail, out of its bucket and empty, ready to take a new cell.
  int TakeVictim() {
    const int Position = m_Tail;
    CheckPosition(Position);
    Unhash(Position);
    m_Items[Position].Type = EMPTY_ITEM;
    return Position;
  }

  void Hash(int Position, int HashValue) {
    CheckPosition(Position);
    CheckHash(HashValue);
    TItem& Item = m_Items[Position];
    Check(Item.Type != EMPTY_ITEM, "Item.Type!=EMPTY_ITEM");
    Item.HashValue = HashValue;
    Item.HashPrevious = -1;
    Item.HashNext = m_Buckets[HashValue];
    if (Item.HashNext != -1) m_Items[Item.HashNext].HashPrevious = Position;
    m_Buckets[HashValue] = Position;
  }

  void MoveToHead(int Position) {
    CheckPosition(Position);
    if (Position == m_Head) return;
    TItem& Item = m_Items[Position];
    if (Item.Previous != -1) m_Items[Item.Previous].Next = Item.Next;
    if (Item.Next != -1) m_Items[Item.Next].Previous = Item.Previous;
    if (Position == m_Tail) m_Tail = Item.Previous;
    Item.Previous = -1;
    Item.Next = m_Head;
    m_Items[m_Head].Previous = Position;
    m_Head = Position;
  }

 private:
  void Unhash(int Position) {
    TItem& Item = m_Items[Position];
    if (Item.HashValue == -1) return;
    if (Item.HashPrevious != -1) {
      m_Items[Item.HashPrevious].HashNext = Item.HashNext;
    } else {
      m_Buckets[Item.HashValue] = Item.HashNext;
    }
    if (Item.HashNext != -1) m_Items[Item.HashNext].HashPrevious = Item.HashPrevious;
    Item.HashPrevious = Item.HashNext = Item.HashValue = -1;
  }

  void CheckPosition(int Position) const {
    if constexpr (std::is_same_v<TItem, TMemoryCacheItem>) {
      Check(Position >= 0 && Position <= Size() - 1, "In(Position,0,MemoryCacheSize-1)", {"Position", Position});
    } else {
      Check(Position >= 0 && Position <= Size() - 1, "In(Position,0,VideoCacheSize-1)", {"Position", Position});
    }
  }

  static void CheckHash(int HashValue) {
    Check(HashValue >= 0 && HashValue <= HASH_TABLE_SIZE - 1, "In(HashValue,0,HASH_TABLE_SIZE-1)",
          {"HashValue", HashValue});
  }

  std::vector<TItem> m_Items;
  std::array<int, HASH_TABLE_SIZE> m_Buckets{};
  int m_Head = -1;
  int m_Tail = -1;
};

struct TGraphicsState {
  std::string SpriteFile;
  std::string PictureFile;
  std::uint32_t SpriteSignature = 0;
  std::uint32_t PictureSignature = 0;
  std::vector<TSpriteRecord> Sprites;
  std::vector<TPictureRecord> Pictures;
  std::vector<std::uint8_t> MemoryData;
  TLruCache<TMemoryCacheItem> Memory;
  TLruCache<TVideoCacheItem> Video;
  TGraphicsCounters Counters;
};

std::unique_ptr<TGraphicsState> State;

TGraphicsState& Store() {
  if (!State) State = std::make_unique<TGraphicsState>();
  return *State;
}

// The skin table as the data builder wrote it for the interface sheet.
constexpr std::array<TSkin, LASTSKIN> MakeSkins() {
  std::array<TSkin, LASTSKIN> Skins{};
  for (int Skin = 0; Skin < LASTSKIN; ++Skin) {
    const TSkinRect& Rect = SkinTable[Skin];
    Skins[Skin] = {Rect.x, Rect.y, Rect.width, Rect.height};
  }
  return Skins;
}
constexpr std::array<TSkin, LASTSKIN> Skins = MakeSkins();

// The font sheets: fonts 1 to 4 on pictures 4, 6, 7, 9.
int FontPicture(int FontNumber) {
  static constexpr int Pictures[] = {0, 4, 6, 7, 9};
  Check(FontNumber >= 1 && FontNumber <= 4, "In(FontNumber,1,NumberOfFonts)", {"FontNumber", FontNumber});
  return Pictures[FontNumber];
}

void CheckFileName(const std::string& FileName) {
  Check(!FileName.empty(), "FileName!=NULL");
  Check(FileName.size() < FILE_NAME_LIMIT, "strlen(FileName)<PATH_MAX");
}

TRGBColor ReadColor(TBinaryFileReader& File) {
  const int r = File.readByte();
  const int g = File.readByte();
  const int b = File.readByte();
  return {r, g, b};
}

// Runs of transparent and coloured pixels over a buffer already filled with
// the transparent colour. A run that would pass pixel 1023 is a broken file.
void DecodeRuns(std::span<const std::uint8_t> Runs, std::span<std::uint8_t, CELL_BYTES> Buffer) {
  size_t Read = 0;
  int Pixel = 0;
  const auto Word = [&] {
    Check(Read + 2 <= Runs.size(), "run data ends early");
    const int Value = Runs[Read] | (Runs[Read + 1] << 8);
    Read += 2;
    return Value;
  };
  while (Read < Runs.size()) {
    Pixel += Word();
    const int Colored = Word();
    Check(Pixel + Colored <= CELL_PIXELS, "Pixel+ColoredPixels<=1024", {"Pixel", Pixel}, {"ColoredPixels", Colored});
    Check(Read + 3 * static_cast<size_t>(Colored) <= Runs.size(), "run data ends early");
    std::memcpy(&Buffer[Pixel * 3], &Runs[Read], 3 * static_cast<size_t>(Colored));
    Read += 3 * static_cast<size_t>(Colored);
    Pixel += Colored;
  }
}

void FillCell(std::span<std::uint8_t, CELL_BYTES> Buffer, TRGBColor Color) {
  for (int Pixel = 0; Pixel < CELL_PIXELS; ++Pixel) {
    Buffer[Pixel * 3] = static_cast<std::uint8_t>(Color.r);
    Buffer[Pixel * 3 + 1] = static_cast<std::uint8_t>(Color.g);
    Buffer[Pixel * 3 + 2] = static_cast<std::uint8_t>(Color.b);
  }
}

void ReadRuns(TBinaryFileReader& File, std::span<std::uint8_t, CELL_BYTES> Buffer) {
  std::vector<std::uint8_t> Runs(File.readWord());
  File.readBytes(Runs);
  DecodeRuns(Runs, Buffer);
}

void CheckSpriteNumber(int SpriteNumber) {
  const int NumberOfSprites = static_cast<int>(Store().Sprites.size());
  Check(SpriteNumber >= 1 && SpriteNumber <= NumberOfSprites, "In(SpriteNumber,1,NumberOfSprites)",
        {"SpriteNumber", SpriteNumber}, {"NumberOfSprites", NumberOfSprites});
}

const TPictureRecord& CheckedPicture(int PictureNumber, int TileX, int TileY) {
  const int NumberOfPictures = static_cast<int>(Store().Pictures.size());
  Check(PictureNumber >= 1 && PictureNumber <= NumberOfPictures, "In(PictureNumber,1,NumberOfPictures)",
        {"PictureNumber", PictureNumber}, {"NumberOfPictures", NumberOfPictures});
  const TPictureRecord& Picture = Store().Pictures[PictureNumber - 1];
  Check(TileX >= 0 && TileX <= Picture.TilesX - 1, "In(TileX,0,Picture.TilesX-1)", {"TileX", TileX});
  Check(TileY >= 0 && TileY <= Picture.TilesY - 1, "In(TileY,0,Picture.TilesY-1)", {"TileY", TileY});
  return Picture;
}

void SetUpMemoryCache() {
  TGraphicsState& S = Store();
  S.MemoryData.assign(static_cast<size_t>(MEMORY_CACHE_SIZE) * CELL_BYTES, 0);
  S.Memory.Reset(MEMORY_CACHE_SIZE);
  for (int Position = 0; Position < MEMORY_CACHE_SIZE; ++Position) {
    S.Memory[Position].Data = &S.MemoryData[static_cast<size_t>(Position) * CELL_BYTES];
  }
}

std::span<const std::uint8_t> CellOf(const TMemoryCacheItem& Item) { return {Item.Data, CELL_BYTES}; }

// Engines that turn the key colour into transparency need it before the write.
void PrepareKey(int Page, TRGBColor Color) {
  if (GetCurrentEngine() != ENGINE_DIRECTX5) GetSurface()->SetTransparentColor(Page, Color.r, Color.g, Color.b);
}

// A lookup in either cache: a hit moves to the head; a miss takes the tail,
// whose cell and key the Write or Read step fills.
template <typename TMatch, typename TWrite>
const TVideoCacheItem& LookUpVideo(int HashValue, TMatch Matches, TWrite WriteCell) {
  TGraphicsState& S = Store();
  Check(S.Video.Size() > 0, "VideoCache!=NULL");
  int Position = S.Video.Find(HashValue, Matches);
  if (Position != -1) {
    ++S.Counters.VideoHits;
  } else {
    ++S.Counters.VideoMisses;
    Position = S.Video.TakeVictim();
    TVideoCacheItem& Item = S.Video[Position];
    WriteCell(Item);
    ++S.Counters.PageWrites;
    S.Video.Hash(Position, HashValue);
  }
  S.Video.MoveToHead(Position);
  return S.Video[Position];
}

template <typename TMatch, typename TRead>
const TMemoryCacheItem& LookUpMemory(int HashValue, TMatch Matches, TRead ReadCell) {
  TGraphicsState& S = Store();
  Check(S.Memory.Size() > 0, "MemoryCache!=NULL");
  int Position = S.Memory.Find(HashValue, Matches);
  if (Position != -1) {
    ++S.Counters.MemoryHits;
  } else {
    ++S.Counters.MemoryMisses;
    Position = S.Memory.TakeVictim();
    ReadCell(S.Memory[Position]);
    S.Memory.Hash(Position, HashValue);
  }
  S.Memory.MoveToHead(Position);
  return S.Memory[Position];
}

// The key is read after the cell: a sprite's colour is known once it is read.
void BlitCell(int Surface, int x, int y, const TVideoCacheItem& Item, int cx, int cy, int Width, int Height,
              TRGBColor Key, const TRect* ClipRect) {
  CSurface* Target = GetSurface();
  const int Page = SPRITE_SURFACE + Item.Page;
  if (ClipRect != nullptr) {
    Target->BlitKeyedClipped(Surface, x, y, Page, Item.X + cx, Item.Y + cy, Width, Height, Key, *ClipRect);
  } else {
    Target->BlitKeyed(Surface, x, y, Page, Item.X + cx, Item.Y + cy, Width, Height, Key);
  }
}

void DrawPictureArea(int Surface, int x, int y, int PictureNumber, int px, int py, int Width, int Height,
                     const TRect* ClipRect) {
  if (Width <= 0 || Height <= 0) return;
  const TRGBColor Key = GetPictureColor(PictureNumber);
  for (int TileY = py / CELL_SIZE; TileY <= (py + Height - 1) / CELL_SIZE; ++TileY) {
    for (int TileX = px / CELL_SIZE; TileX <= (px + Width - 1) / CELL_SIZE; ++TileX) {
      const int Left = std::max(px, TileX * CELL_SIZE);
      const int Right = std::min(px + Width, (TileX + 1) * CELL_SIZE);
      const int Top = std::max(py, TileY * CELL_SIZE);
      const int Bottom = std::min(py + Height, (TileY + 1) * CELL_SIZE);
      const TVideoCacheItem& Item = GetVideoPictureTile(PictureNumber, TileX, TileY);
      BlitCell(Surface, x + Left - px, y + Top - py, Item, Left - TileX * CELL_SIZE, Top - TileY * CELL_SIZE,
               Right - Left, Bottom - Top, Key, ClipRect);
    }
  }
}

}  // namespace

void InitSprites() {
  const std::string FileName = GetFileName(TFileKind::SPRITES, false);
  if (!FileExists(FileName)) throw PROGRAM_ERROR::SPR_NOT_FOUND;
  LoadSprites(FileName);
}

void InitPictures() {
  const std::string FileName = GetFileName(TFileKind::PICTURES, false);
  if (!FileExists(FileName)) throw PROGRAM_ERROR::PIC_NOT_FOUND;
  LoadPictures(FileName);
  InitFonts();
}

void ExitGraphics() {
  ExitFonts();
  State.reset();
}

void LoadSprites(const std::string& FileName) {
  CheckFileName(FileName);
  if (!FileExists(FileName)) throw PROGRAM_ERROR::SPR_NOT_FOUND;
  TGraphicsState& S = Store();
  TBinaryFileReader File;
  File.open(FileName);
  S.SpriteFile = FileName;
  S.SpriteSignature = File.readQuad();
  const std::uint32_t Count = File.readQuad();
  S.Sprites.clear();
  S.Sprites.reserve(std::min<std::uint32_t>(Count, static_cast<std::uint32_t>(File.getSize() / 4)));
  for (std::uint32_t Index = 0; Index < Count; ++Index) S.Sprites.push_back({File.readQuad(), {}});
  File.close();
}

void LoadPictures(const std::string& FileName) {
  CheckFileName(FileName);
  if (!FileExists(FileName)) throw PROGRAM_ERROR::PIC_NOT_FOUND;
  TGraphicsState& S = Store();
  TBinaryFileReader File;
  File.open(FileName);
  S.PictureFile = FileName;
  S.PictureSignature = File.readQuad();
  const int Count = File.readWord();
  S.Pictures.assign(Count, {});
  for (TPictureRecord& Picture : S.Pictures) {
    Picture.TilesX = File.readByte();
    Picture.TilesY = File.readByte();
    Picture.Color = ReadColor(File);
    Picture.TileOffsets.resize(static_cast<size_t>(Picture.TilesX) * Picture.TilesY);
    for (std::uint32_t& Offset : Picture.TileOffsets) Offset = File.readQuad();
  }
  File.close();
  SetUpMemoryCache();
}

void ReloadSprites() {
  ResetVideoCache();
  ResetMemoryCache();
  Store().Sprites.clear();
  InitSprites();
}

void ReloadPictures() {
  ResetVideoCache();
  ResetMemoryCache();
  Store().Pictures.clear();
  InitPictures();
}

std::uint32_t GetSpriteSignature() { return Store().SpriteSignature; }
std::uint32_t GetPictureSignature() { return Store().PictureSignature; }
int GetNumberOfSprites() { return static_cast<int>(Store().Sprites.size()); }
int GetNumberOfPictures() { return static_cast<int>(Store().Pictures.size()); }

TRGBColor GetSpriteColor(int SpriteNumber) {
  CheckSpriteNumber(SpriteNumber);
  return Store().Sprites[SpriteNumber - 1].Color;
}

TRGBColor GetPictureColor(int PictureNumber) { return CheckedPicture(PictureNumber, 0, 0).Color; }

std::array<int, 2> GetPictureTiles(int PictureNumber) {
  const TPictureRecord& Picture = CheckedPicture(PictureNumber, 0, 0);
  return {Picture.TilesX, Picture.TilesY};
}

// An empty sprite is all black with black as its transparent colour.
void ReadSprite(int SpriteNumber, std::span<std::uint8_t, CELL_BYTES> Buffer) {
  CheckSpriteNumber(SpriteNumber);
  TGraphicsState& S = Store();
  TSpriteRecord& Sprite = S.Sprites[SpriteNumber - 1];
  if (Sprite.Offset == 0) {
    Sprite.Color = {};
    FillCell(Buffer, Sprite.Color);
    return;
  }
  TBinaryFileReader File;
  File.open(S.SpriteFile);
  ++S.Counters.FileReads;
  File.seek(static_cast<long>(Sprite.Offset));
  Sprite.Color = ReadColor(File);
  FillCell(Buffer, Sprite.Color);
  ReadRuns(File, Buffer);
}

void ReadPictureTile(int PictureNumber, int TileX, int TileY, std::span<std::uint8_t, CELL_BYTES> Buffer) {
  const TPictureRecord& Picture = CheckedPicture(PictureNumber, TileX, TileY);
  FillCell(Buffer, Picture.Color);
  const std::uint32_t Offset = Picture.TileOffsets[static_cast<size_t>(Picture.TilesX) * TileY + TileX];
  if (Offset == 0) return;
  TGraphicsState& S = Store();
  TBinaryFileReader File;
  File.open(S.PictureFile);
  ++S.Counters.FileReads;
  File.seek(static_cast<long>(Offset));
  ReadRuns(File, Buffer);
}

const TMemoryCacheItem& GetMemorySprite(int SpriteNumber) {
  CheckSpriteNumber(SpriteNumber);
  return LookUpMemory(
      SpriteNumber % HASH_TABLE_SIZE,
      [&](const TMemoryCacheItem& Item) { return Item.Type == SPRITE_ITEM && Item.Number == SpriteNumber; },
      [&](TMemoryCacheItem& Item) {
        ReadSprite(SpriteNumber, std::span<std::uint8_t, CELL_BYTES>(Item.Data, CELL_BYTES));
        Item.Type = SPRITE_ITEM;
        Item.Number = SpriteNumber;
      });
}

const TMemoryCacheItem& GetMemoryPictureTile(int PictureNumber, int TileX, int TileY) {
  CheckedPicture(PictureNumber, TileX, TileY);
  return LookUpMemory(
      (PictureNumber + TileX + TileY) % HASH_TABLE_SIZE,
      [&](const TMemoryCacheItem& Item) {
        return Item.Type == PICTURE_ITEM && Item.Number == PictureNumber && Item.TileX == TileX &&
               Item.TileY == TileY;
      },
      [&](TMemoryCacheItem& Item) {
        ReadPictureTile(PictureNumber, TileX, TileY, std::span<std::uint8_t, CELL_BYTES>(Item.Data, CELL_BYTES));
        Item.Type = PICTURE_ITEM;
        Item.Number = PictureNumber;
        Item.TileX = TileX;
        Item.TileY = TileY;
      });
}

const TVideoCacheItem& GetVideoSprite(int SpriteNumber) {
  CheckSpriteNumber(SpriteNumber);
  return LookUpVideo(
      SpriteNumber % HASH_TABLE_SIZE,
      [&](const TVideoCacheItem& Item) {
        return Item.Type == SPRITE_ITEM && Item.SpriteNumber == SpriteNumber && Item.MaskNumber == 0;
      },
      [&](TVideoCacheItem& Item) {
        const TMemoryCacheItem& Cell = GetMemorySprite(SpriteNumber);
        PrepareKey(SPRITE_SURFACE + Item.Page, GetSpriteColor(SpriteNumber));
        GetSurface()->WriteImage(SPRITE_SURFACE + Item.Page, Item.X, Item.Y, CELL_SIZE, CELL_SIZE, CellOf(Cell));
        Item.Type = SPRITE_ITEM;
        Item.SpriteNumber = SpriteNumber;
        Item.MaskNumber = 0;
      });
}

// Each set of outfit colours has a cell of its own.
const TVideoCacheItem& GetVideoColoredSprite(int SpriteNumber, int MaskNumber, const TOutfitColors& Colors) {
  CheckSpriteNumber(SpriteNumber);
  CheckSpriteNumber(MaskNumber);
  return LookUpVideo(
      (SpriteNumber + MaskNumber) % HASH_TABLE_SIZE,
      [&](const TVideoCacheItem& Item) {
        return Item.Type == SPRITE_ITEM && Item.SpriteNumber == SpriteNumber && Item.MaskNumber == MaskNumber &&
               Item.Colors == Colors;
      },
      [&](TVideoCacheItem& Item) {
        TCell Sprite;
        std::copy_n(GetMemorySprite(SpriteNumber).Data, CELL_BYTES, Sprite.begin());
        const TMemoryCacheItem& Mask = GetMemorySprite(MaskNumber);
        PrepareKey(SPRITE_SURFACE + Item.Page, GetSpriteColor(SpriteNumber));
        GetSurface()->WriteColoredImage(SPRITE_SURFACE + Item.Page, Item.X, Item.Y, CELL_SIZE, CELL_SIZE, Sprite,
                                        CellOf(Mask), Colors);
        Item.Type = SPRITE_ITEM;
        Item.SpriteNumber = SpriteNumber;
        Item.MaskNumber = MaskNumber;
        Item.Colors = Colors;
      });
}

const TVideoCacheItem& GetVideoPictureTile(int PictureNumber, int TileX, int TileY) {
  CheckedPicture(PictureNumber, TileX, TileY);
  return LookUpVideo(
      (PictureNumber + TileX + TileY) % HASH_TABLE_SIZE,
      [&](const TVideoCacheItem& Item) {
        return Item.Type == PICTURE_ITEM && Item.PictureNumber == PictureNumber && Item.TileX == TileX &&
               Item.TileY == TileY;
      },
      [&](TVideoCacheItem& Item) {
        const TMemoryCacheItem& Cell = GetMemoryPictureTile(PictureNumber, TileX, TileY);
        PrepareKey(SPRITE_SURFACE + Item.Page, GetPictureColor(PictureNumber));
        GetSurface()->WriteImage(SPRITE_SURFACE + Item.Page, Item.X, Item.Y, CELL_SIZE, CELL_SIZE, CellOf(Cell));
        Item.Type = PICTURE_ITEM;
        Item.PictureNumber = PictureNumber;
        Item.TileX = TileX;
        Item.TileY = TileY;
        Item.FontColor = {};
      });
}

// Each text colour has cells of its own: the glyphs are tinted on the way in.
const TVideoCacheItem& GetVideoFontTile(int FontNumber, int TileX, int TileY, TRGBColor Color) {
  const int PictureNumber = FontPicture(FontNumber);
  CheckedPicture(PictureNumber, TileX, TileY);
  return LookUpVideo(
      (PictureNumber + TileX + TileY) % HASH_TABLE_SIZE,
      [&](const TVideoCacheItem& Item) {
        return Item.Type == PICTURE_ITEM && Item.PictureNumber == PictureNumber && Item.TileX == TileX &&
               Item.TileY == TileY && Item.FontColor == Color;
      },
      [&](TVideoCacheItem& Item) {
        const TMemoryCacheItem& Cell = GetMemoryPictureTile(PictureNumber, TileX, TileY);
        const TRGBColor Background = GetPictureColor(PictureNumber);
        PrepareKey(SPRITE_SURFACE + Item.Page, Background);
        GetSurface()->WriteColoredImage(SPRITE_SURFACE + Item.Page, Item.X, Item.Y, CELL_SIZE, CELL_SIZE,
                                        CellOf(Cell), {}, {Color, Background, TRGBColor{}, TRGBColor{}});
        Item.Type = PICTURE_ITEM;
        Item.PictureNumber = PictureNumber;
        Item.TileX = TileX;
        Item.TileY = TileY;
        Item.FontColor = Color;
      });
}

void ResetVideoCache() {
  TGraphicsState& S = Store();
  CSurface* Surface = GetSurface();
  const int Pages = Surface->GetNumberOfSpriteSurfaces();
  if (Pages <= 0) {
    S.Video.Reset(0);
    return;
  }
  const TRect Page = Surface->GetSurfaceRect(SPRITE_SURFACE);
  const int Columns = Page.width / CELL_SIZE;
  const int CellsPerPage = Columns * (Page.height / CELL_SIZE);
  S.Video.Reset(Pages * CellsPerPage);
  for (int Position = 0; Position < S.Video.Size(); ++Position) {
    TVideoCacheItem& Item = S.Video[Position];
    Item.Page = Position / CellsPerPage;
    Item.X = ((Position % CellsPerPage) % Columns) * CELL_SIZE;
    Item.Y = ((Position % CellsPerPage) / Columns) * CELL_SIZE;
  }
}

void ResetMemoryCache() {
  TGraphicsState& S = Store();
  if (S.Memory.Size() == 0) return;
  SetUpMemoryCache();
}

int GetVideoCacheSize() { return Store().Video.Size(); }

void DrawSprite(int x, int y, int SpriteNumber) {
  if (SpriteNumber == 0) return;
  const TVideoCacheItem& Item = GetVideoSprite(SpriteNumber);
  BlitCell(TEMP_SURFACE, x, y, Item, 0, 0, CELL_SIZE, CELL_SIZE, GetSpriteColor(SpriteNumber), nullptr);
}

void DrawSpriteClipped(int Surface, int x, int y, int SpriteNumber, TRect ClipRect) {
  if (SpriteNumber == 0) return;
  const TVideoCacheItem& Item = GetVideoSprite(SpriteNumber);
  BlitCell(Surface, x, y, Item, 0, 0, CELL_SIZE, CELL_SIZE, GetSpriteColor(SpriteNumber), &ClipRect);
}

void DrawSpriteStretched(int Surface, int x, int y, int Width, int Height, int SpriteNumber, TRGBColor StageColor,
                         TRect ClipRect) {
  if (SpriteNumber == 0) return;
  const TVideoCacheItem& Item = GetVideoSprite(SpriteNumber);
  GetSurface()->StretchBlitKeyedClipped(Surface, x, y, Width, Height, SPRITE_SURFACE + Item.Page, Item.X, Item.Y,
                                        CELL_SIZE, CELL_SIZE, GetSpriteColor(SpriteNumber), StageColor, ClipRect);
}

void DrawColoredSprite(int x, int y, int SpriteNumber, int MaskNumber, const TOutfitColors& Colors) {
  if (MaskNumber == 0) {
    DrawSprite(x, y, SpriteNumber);
    return;
  }
  if (SpriteNumber == 0) return;
  const TVideoCacheItem& Item = GetVideoColoredSprite(SpriteNumber, MaskNumber, Colors);
  BlitCell(TEMP_SURFACE, x, y, Item, 0, 0, CELL_SIZE, CELL_SIZE, GetSpriteColor(SpriteNumber), nullptr);
}

void DrawColoredSpriteStretched(int Surface, int x, int y, int Width, int Height, int SpriteNumber, int MaskNumber,
                                const TOutfitColors& Colors, TRGBColor StageColor, TRect ClipRect) {
  if (MaskNumber == 0) {
    DrawSpriteStretched(Surface, x, y, Width, Height, SpriteNumber, StageColor, ClipRect);
    return;
  }
  if (SpriteNumber == 0) return;
  const TVideoCacheItem& Item = GetVideoColoredSprite(SpriteNumber, MaskNumber, Colors);
  GetSurface()->StretchBlitKeyedClipped(Surface, x, y, Width, Height, SPRITE_SURFACE + Item.Page, Item.X, Item.Y,
                                        CELL_SIZE, CELL_SIZE, GetSpriteColor(SpriteNumber), StageColor, ClipRect);
}

void DrawPicture(int Surface, int x, int y, int PictureNumber) {
  const auto [TilesX, TilesY] = GetPictureTiles(PictureNumber);
  DrawPictureArea(Surface, x, y, PictureNumber, 0, 0, TilesX * CELL_SIZE, TilesY * CELL_SIZE, nullptr);
}

void DrawPicturePart(int Surface, int x, int y, int PictureNumber, int px, int py, int Width, int Height) {
  DrawPictureArea(Surface, x, y, PictureNumber, px, py, Width, Height, nullptr);
}

void DrawPicturePartClipped(int Surface, int x, int y, int PictureNumber, int px, int py, int Width, int Height,
                            TRect ClipRect) {
  DrawPictureArea(Surface, x, y, PictureNumber, px, py, Width, Height, &ClipRect);
}

void DrawFieldCacheSprite(int x, int y, int SpriteNumber, TRect CellRect) {
  if (SpriteNumber == 0) {
    DrawPicturePartClipped(CACHE_SURFACE, x, y, EMPTY_SPRITE_PICTURE, 0, 0, CELL_SIZE, CELL_SIZE, CellRect);
  } else {
    DrawSpriteClipped(CACHE_SURFACE, x, y, SpriteNumber, CellRect);
  }
}

const TSkin& GetSkin(int Skin) {
  Check(Skin >= 0 && Skin <= LASTSKIN - 1, "In(Skin,0,LASTSKIN-1)", {"Skin", Skin});
  return Skins[Skin];
}

namespace {

const TSkin& CheckedSkinSize(int Skin) {
  const TSkin& Rect = GetSkin(Skin);
  Check(Rect.width > 0, "Skins[skin].width>0", {"skin", Skin});
  Check(Rect.height > 0, "Skins[skin].height>0", {"skin", Skin});
  return Rect;
}

void TileSkin(int Surface, int x, int y, int Width, int Height, int Skin, int StartX, int StartY,
              const TRect* ClipRect) {
  if (Skin == 0 || Width == 0 || Height == 0) return;
  if (CDrawingRecorder* Recorder = ActiveRecorder()) {
    Recorder->Skin(Surface, x, y, Width, Height, Skin, StartX, StartY);
  }
  Check(Width > 0, "Width>0", {"Width", Width});
  Check(Height > 0, "Height>0", {"Height", Height});
  const TSkin& Rect = CheckedSkinSize(Skin);
  const int FirstX = ((StartX % Rect.width) + Rect.width) % Rect.width;
  const int FirstY = ((StartY % Rect.height) + Rect.height) % Rect.height;
  for (int Top = 0, SourceY = FirstY; Top < Height; SourceY = 0) {
    const int PieceHeight = std::min(Rect.height - SourceY, Height - Top);
    for (int Left = 0, SourceX = FirstX; Left < Width; SourceX = 0) {
      const int PieceWidth = std::min(Rect.width - SourceX, Width - Left);
      DrawPictureArea(Surface, x + Left, y + Top, INTERFACE_PICTURE, Rect.x + SourceX, Rect.y + SourceY, PieceWidth,
                      PieceHeight, ClipRect);
      Left += PieceWidth;
    }
    Top += PieceHeight;
  }
}

}  // namespace

void DrawSkin(int Surface, int x, int y, int Width, int Height, int Skin, int StartX, int StartY) {
  if (Skin != 0 && Width != 0 && Height != 0) {
    Check(x >= 0, "x>=0", {"x", x});
    Check(y >= 0, "y>=0", {"y", y});
  }
  TileSkin(Surface, x, y, Width, Height, Skin, StartX, StartY, nullptr);
}

void DrawSkinClipped(int Surface, int x, int y, int Width, int Height, int Skin, int StartX, int StartY,
                     TRect ClipRect) {
  TileSkin(Surface, x, y, Width, Height, Skin, StartX, StartY, &ClipRect);
}

void DrawSkinAt(int Surface, int x, int y, int Skin) {
  if (Skin == 0) return;
  const TSkin& Rect = CheckedSkinSize(Skin);
  TileSkin(Surface, x, y, Rect.width, Rect.height, Skin, 0, 0, nullptr);
}

void FillRectangle(int Surface, int x, int y, int Width, int Height, TRGBColor Color, int Alpha) {
  if (CDrawingRecorder* Recorder = ActiveRecorder()) Recorder->Rectangle(Surface, x, y, Width, Height, Color, Alpha);
  GetSurface()->FillRect(Surface, x, y, Width, Height, Color, Alpha);
}

void DrawRectangleFrame(int Surface, int x, int y, int Width, int Height, int Thickness, TRGBColor Color) {
  if (CDrawingRecorder* Recorder = ActiveRecorder()) {
    Recorder->Frame(Surface, x, y, Width, Height, Thickness, Color);
  }
  GetSurface()->DrawFrame(Surface, x, y, Width, Height, Thickness, Color);
}

const TGraphicsCounters& GraphicsCounters() { return Store().Counters; }
void ResetGraphicsCounters() { Store().Counters = {}; }
