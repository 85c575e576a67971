#pragma once
// Non-negative integers of any size, for the RSA block of the login commands.
// Digits are wiped before their memory is given back, so that no key material
// lingers in freed memory.
#include <compare>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// Zeros Count objects at Memory. The stores are volatile so that they are not
// dropped as dead even though the memory is freed right after.
template <typename T>
void WipeMemory(T* Memory, std::size_t Count) noexcept {
  volatile T* Wipe = Memory;
  for (std::size_t I = 0; I < Count; ++I) Wipe[I] = T{};
}

// Overwrites memory with zeros before it is freed. Every buffer a number ever
// owned goes through it: on destruction, on reassignment and when it grows.
template <typename T>
struct TWipingAllocator {
  using value_type = T;

  TWipingAllocator() = default;
  template <typename U>
  TWipingAllocator(const TWipingAllocator<U>&) noexcept {}

  T* allocate(std::size_t Count) { return std::allocator<T>{}.allocate(Count); }
  void deallocate(T* Memory, std::size_t Count) noexcept {
    WipeMemory(Memory, Count);
    std::allocator<T>{}.deallocate(Memory, Count);
  }

  friend bool operator==(const TWipingAllocator&, const TWipingAllocator&) { return true; }
};

using TLargeNumberWords = std::vector<std::uint32_t, TWipingAllocator<std::uint32_t>>;

class TLargeNumber {
 public:
  TLargeNumber() = default;
  explicit TLargeNumber(std::uint64_t Value);

  // Decimal digits only: anything else fails with "digit out of range".
  static TLargeNumber FromDecimal(std::string_view Text);
  static TLargeNumber FromBigEndian(std::span<const std::uint8_t> Bytes);
  // Writes the number into all of Bytes, zero-padded at the high end; fails if
  // it does not fit.
  void ToBigEndian(std::span<std::uint8_t> Bytes) const;
  std::string ToDecimal() const;

  bool IsZero() const { return m_Digits.empty(); }
  int BitLength() const;
  bool Bit(int Index) const;
  // The number modulo 2 to the power Bits.
  TLargeNumber LowBits(int Bits) const;

  friend std::strong_ordering operator<=>(const TLargeNumber& A, const TLargeNumber& B);
  friend bool operator==(const TLargeNumber& A, const TLargeNumber& B);
  friend TLargeNumber operator+(const TLargeNumber& A, const TLargeNumber& B);
  // Fails if B is larger than A.
  friend TLargeNumber operator-(const TLargeNumber& A, const TLargeNumber& B);
  friend TLargeNumber operator*(const TLargeNumber& A, const TLargeNumber& B);
  friend TLargeNumber operator<<(const TLargeNumber& A, int Bits);
  friend TLargeNumber operator>>(const TLargeNumber& A, int Bits);
  // Quotient and remainder; a zero divisor fails.
  static void Divide(const TLargeNumber& A, const TLargeNumber& B, TLargeNumber& Quotient,
                     TLargeNumber& Remainder);

 private:
  explicit TLargeNumber(TLargeNumberWords Digits);

  TLargeNumberWords m_Digits;  // little-endian words, no high zero words
};

// Base to the power Exponent modulo Modulus (binary method, Montgomery
// multiplication for an odd modulus).
TLargeNumber PowMod(const TLargeNumber& Base, const TLargeNumber& Exponent,
                    const TLargeNumber& Modulus);
