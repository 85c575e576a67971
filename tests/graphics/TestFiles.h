#pragma once
// Small Kelmo.spr and Kelmo.pic files, written byte by byte in the layout of
// the files, in a temporary directory of the test.
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "graphics/Surface.h"

namespace testfiles {

class CBytes {
 public:
  void U8(int Value) { m_Bytes.push_back(static_cast<std::uint8_t>(Value)); }
  void U16(int Value) {
    U8(Value & 0xFF);
    U8((Value >> 8) & 0xFF);
  }
  void U32(std::uint32_t Value) {
    U16(static_cast<int>(Value & 0xFFFF));
    U16(static_cast<int>(Value >> 16));
  }
  void Color(TRGBColor C) {
    U8(C.r);
    U8(C.g);
    U8(C.b);
  }
  void Append(const std::vector<std::uint8_t>& Bytes) { m_Bytes.insert(m_Bytes.end(), Bytes.begin(), Bytes.end()); }
  void PutU32At(size_t Offset, std::uint32_t Value) {
    for (int Byte = 0; Byte < 4; ++Byte) m_Bytes[Offset + Byte] = static_cast<std::uint8_t>(Value >> (8 * Byte));
  }
  size_t Size() const { return m_Bytes.size(); }
  const std::vector<std::uint8_t>& Bytes() const { return m_Bytes; }
  void Save(const std::filesystem::path& Path) const;

 private:
  std::vector<std::uint8_t> m_Bytes;
};

// A 32 x 32 cell as a function of the pixel; nullopt is transparent.
using TCellPainter = std::function<std::optional<TRGBColor>(int x, int y)>;

// The run data of a painted cell: skipped and coloured stretches in turn.
std::vector<std::uint8_t> EncodeRuns(const TCellPainter& Paint);

struct TSpriteSource {
  TRGBColor Transparent{};
  TCellPainter Paint;  // empty: an empty sprite, offset 0
};

struct TPictureSource {
  int TilesX = 1;
  int TilesY = 1;
  TRGBColor Transparent{};
  // Paints the whole picture, TilesX * 32 by TilesY * 32.
  std::function<std::optional<TRGBColor>(int x, int y)> Paint;
};

CBytes SpriteFile(std::uint32_t Signature, const std::vector<TSpriteSource>& Sprites);
CBytes PictureFile(std::uint32_t Signature, const std::vector<TPictureSource>& Pictures);

// A fresh directory, removed with the object.
class CTempDirectory {
 public:
  CTempDirectory();
  ~CTempDirectory();
  CTempDirectory(const CTempDirectory&) = delete;
  CTempDirectory& operator=(const CTempDirectory&) = delete;
  const std::filesystem::path& Path() const { return m_Path; }
  std::string File(const std::string& Name) const { return (m_Path / Name).string(); }

 private:
  std::filesystem::path m_Path;
};

}  // namespace testfiles
