#include "net/Rsa.h"

#include <span>

#include "core/Exception.h"

namespace {

TLargeNumber ModulusFromDecimal(std::string_view Text) try {
  return TLargeNumber::FromDecimal(Text);
} catch (...) {
  RethrowGuarded("failed to convert decimal text to large number");
}

TLargeNumber ReadBlock(std::span<const std::uint8_t, TRSAPublicKey::BLOCK_SIZE> Block) try {
  return TLargeNumber::FromBigEndian(Block);
} catch (...) {
  RethrowGuarded("failed to convert byte array to large number");
}

void WriteBlock(const TLargeNumber& Number,
                std::span<std::uint8_t, TRSAPublicKey::BLOCK_SIZE> Block) try {
  Number.ToBigEndian(Block);
} catch (...) {
  RethrowGuarded("failed to convert large number to byte array");
}

}  // namespace

TRSAPublicKey::TRSAPublicKey(std::string_view Text) : m_ModulusM(ModulusFromDecimal(Text)) {}

void TRSAPublicKey::EncipherBlock(std::uint8_t* Data) const {
  Check(Data != nullptr, "Data pointer is NULL");
  Check(!m_ModulusM.IsZero(), "m_ModulusM is 0");
  Check(Data[0] <= 127,
        "first byte of data is larger than 127 which violates the condition 'plain < m'");
  const std::span<std::uint8_t, BLOCK_SIZE> Block(Data, BLOCK_SIZE);
  const TLargeNumber Plain = ReadBlock(Block);
  Check(Plain < m_ModulusM,
        "Plain is not smaller than m_ModulusM which violates the condition 'plain < m'");
  WriteBlock(PowMod(Plain, TLargeNumber(PUBLIC_EXPONENT), m_ModulusM), Block);
}
