#include "net/Checksum.h"

#include <algorithm>

#include "core/Exception.h"

namespace {
constexpr std::uint32_t MODULUS = 65521;
// The longest run whose sums cannot overflow 32 bits before they are reduced.
constexpr int RUN = 5552;
}  // namespace

std::uint32_t Adler32(const std::uint8_t* Data, int Length) {
  Check(Data != nullptr, "data pointer of Adler-32 checksum is NULL");
  Check(Length > 0, "length of Adler-32 checksum is 0", {"Length", Length});
  std::uint32_t A = 1;
  std::uint32_t B = 0;
  while (Length > 0) {
    const int Run = std::min(Length, RUN);
    for (int I = 0; I < Run; ++I) {
      A += Data[I];
      B += A;
    }
    A %= MODULUS;
    B %= MODULUS;
    Data += Run;
    Length -= Run;
  }
  return (B << 16) | A;
}
