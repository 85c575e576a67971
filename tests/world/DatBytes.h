#pragma once
// Type files written byte by byte in the tests, so that the reader is checked
// against the format, not against the builder's writer.
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace testing_world {

class TDatBytes {
 public:
  TDatBytes& U8(int Value) {
    m_Bytes.push_back(static_cast<std::uint8_t>(Value));
    return *this;
  }
  TDatBytes& U16(int Value) { return U8(Value).U8(Value >> 8); }
  TDatBytes& U32(std::uint32_t Value) {
    return U16(static_cast<int>(Value & 0xFFFF)).U16(static_cast<int>(Value >> 16));
  }
  TDatBytes& Text(const std::string& Value) {
    U16(static_cast<int>(Value.size()));
    for (char C : Value) U8(static_cast<unsigned char>(C));
    return *this;
  }
  TDatBytes& Header(std::uint32_t Signature, int Objects, int Outfits, int Effects, int Missiles) {
    return U32(Signature).U16(Objects).U16(Outfits).U16(Effects).U16(Missiles);
  }
  // The end of the flags and a picture of one tile, one phase, one sprite.
  TDatBytes& Plain(std::uint32_t Sprite) {
    return U8(255).U8(1).U8(1).U8(1).U8(1).U8(1).U8(1).U8(1).U32(Sprite);
  }
  // The flag MARKET with its operands.
  TDatBytes& Market(int Category, int TradeAs, int ShowAs, const std::string& Name,
                    int Professions = 0, int Level = 0) {
    return U8(34).U16(Category).U16(TradeAs).U16(ShowAs).Text(Name).U16(Professions).U16(Level);
  }

  const std::vector<std::uint8_t>& Bytes() const { return m_Bytes; }

  void Write(const std::filesystem::path& Path) const {
    std::ofstream(Path, std::ios::binary)
        .write(reinterpret_cast<const char*>(m_Bytes.data()),
               static_cast<std::streamsize>(m_Bytes.size()));
  }

 private:
  std::vector<std::uint8_t> m_Bytes;
};

}  // namespace testing_world
