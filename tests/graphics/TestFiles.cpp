#include "tests/graphics/TestFiles.h"

#include <unistd.h>

#include <fstream>
#include <stdexcept>

namespace testfiles {

void CBytes::Save(const std::filesystem::path& Path) const {
  std::ofstream File(Path, std::ios::binary);
  File.write(reinterpret_cast<const char*>(m_Bytes.data()), static_cast<std::streamsize>(m_Bytes.size()));
  if (!File) throw std::runtime_error("cannot write " + Path.string());
}

std::vector<std::uint8_t> EncodeRuns(const TCellPainter& Paint) {
  CBytes Runs;
  int Pixel = 0;
  while (Pixel < 1024) {
    int Skipped = 0;
    while (Pixel + Skipped < 1024 && !Paint((Pixel + Skipped) % 32, (Pixel + Skipped) / 32)) ++Skipped;
    if (Pixel + Skipped == 1024) break;
    Pixel += Skipped;
    std::vector<TRGBColor> Colored;
    while (Pixel < 1024) {
      const auto Color = Paint(Pixel % 32, Pixel / 32);
      if (!Color) break;
      Colored.push_back(*Color);
      ++Pixel;
    }
    Runs.U16(Skipped);
    Runs.U16(static_cast<int>(Colored.size()));
    for (const TRGBColor& Color : Colored) Runs.Color(Color);
  }
  return Runs.Bytes();
}

CBytes SpriteFile(std::uint32_t Signature, const std::vector<TSpriteSource>& Sprites) {
  CBytes File;
  File.U32(Signature);
  File.U32(static_cast<std::uint32_t>(Sprites.size()));
  const size_t Table = File.Size();
  for (size_t Index = 0; Index < Sprites.size(); ++Index) File.U32(0);
  for (size_t Index = 0; Index < Sprites.size(); ++Index) {
    const TSpriteSource& Sprite = Sprites[Index];
    if (!Sprite.Paint) continue;
    File.PutU32At(Table + 4 * Index, static_cast<std::uint32_t>(File.Size()));
    const std::vector<std::uint8_t> Runs = EncodeRuns(Sprite.Paint);
    File.Color(Sprite.Transparent);
    File.U16(static_cast<int>(Runs.size()));
    File.Append(Runs);
  }
  return File;
}

CBytes PictureFile(std::uint32_t Signature, const std::vector<TPictureSource>& Pictures) {
  CBytes File;
  File.U32(Signature);
  File.U16(static_cast<int>(Pictures.size()));
  std::vector<size_t> Tables;
  for (const TPictureSource& Picture : Pictures) {
    File.U8(Picture.TilesX);
    File.U8(Picture.TilesY);
    File.Color(Picture.Transparent);
    Tables.push_back(File.Size());
    for (int Tile = 0; Tile < Picture.TilesX * Picture.TilesY; ++Tile) File.U32(0);
  }
  for (size_t Index = 0; Index < Pictures.size(); ++Index) {
    const TPictureSource& Picture = Pictures[Index];
    for (int TileY = 0; TileY < Picture.TilesY; ++TileY) {
      for (int TileX = 0; TileX < Picture.TilesX; ++TileX) {
        File.PutU32At(Tables[Index] + 4 * (TileY * Picture.TilesX + TileX), static_cast<std::uint32_t>(File.Size()));
        const std::vector<std::uint8_t> Runs =
            EncodeRuns([&](int x, int y) { return Picture.Paint(TileX * 32 + x, TileY * 32 + y); });
        File.U16(static_cast<int>(Runs.size()));
        File.Append(Runs);
      }
    }
  }
  return File;
}

CTempDirectory::CTempDirectory() {
  std::string Pattern = (std::filesystem::temp_directory_path() / "kelmo-graphics-XXXXXX").string();
  if (mkdtemp(Pattern.data()) == nullptr) throw std::runtime_error("no temporary directory");
  m_Path = Pattern;
}

CTempDirectory::~CTempDirectory() {
  std::error_code Ignored;
  std::filesystem::remove_all(m_Path, Ignored);
}

}  // namespace testfiles
