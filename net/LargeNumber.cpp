#include "net/LargeNumber.h"

#include <algorithm>
#include <bit>

#include "core/Exception.h"

namespace {

using TWords = TLargeNumberWords;

constexpr int WORD_BITS = 32;
constexpr std::uint64_t WORD_BASE = std::uint64_t{1} << WORD_BITS;
constexpr std::uint32_t DECIMAL_CHUNK = 1'000'000'000;  // nine digits per word
constexpr int DECIMAL_CHUNK_DIGITS = 9;

void Trim(TWords& Words) {
  while (!Words.empty() && Words.back() == 0) Words.pop_back();
}

std::strong_ordering CompareWords(const TWords& A, const TWords& B) {
  if (A.size() != B.size()) return A.size() <=> B.size();
  for (std::size_t I = A.size(); I-- > 0;) {
    if (A[I] != B[I]) return A[I] <=> B[I];
  }
  return std::strong_ordering::equal;
}

// Words = Words * Factor + Addend
void MultiplyAdd(TWords& Words, std::uint32_t Factor, std::uint32_t Addend) {
  std::uint64_t Carry = Addend;
  for (std::uint32_t& Word : Words) {
    const std::uint64_t Value = std::uint64_t{Word} * Factor + Carry;
    Word = static_cast<std::uint32_t>(Value);
    Carry = Value >> WORD_BITS;
  }
  if (Carry != 0) Words.push_back(static_cast<std::uint32_t>(Carry));
}

// Divides in place by a single word and returns the remainder.
std::uint32_t DivideBySmall(TWords& Words, std::uint32_t Divisor) {
  std::uint64_t Remainder = 0;
  for (std::size_t I = Words.size(); I-- > 0;) {
    const std::uint64_t Value = Remainder << WORD_BITS | Words[I];
    Words[I] = static_cast<std::uint32_t>(Value / Divisor);
    Remainder = Value % Divisor;
  }
  Trim(Words);
  return static_cast<std::uint32_t>(Remainder);
}

TWords ShiftLeftWords(const TWords& Words, int Bits) {
  if (Words.empty()) return {};
  const int WordShift = Bits / WORD_BITS;
  const int BitShift = Bits % WORD_BITS;
  TWords Result(Words.size() + WordShift + 1, 0);
  for (std::size_t I = 0; I < Words.size(); ++I) {
    const std::uint64_t Value = std::uint64_t{Words[I]} << BitShift;
    Result[I + WordShift] |= static_cast<std::uint32_t>(Value);
    Result[I + WordShift + 1] |= static_cast<std::uint32_t>(Value >> WORD_BITS);
  }
  Trim(Result);
  return Result;
}

TWords ShiftRightWords(const TWords& Words, int Bits) {
  const std::size_t WordShift = static_cast<std::size_t>(Bits / WORD_BITS);
  const int BitShift = Bits % WORD_BITS;
  if (WordShift >= Words.size()) return {};
  TWords Result(Words.size() - WordShift, 0);
  for (std::size_t I = 0; I < Result.size(); ++I) {
    std::uint64_t Value = Words[I + WordShift];
    if (I + WordShift + 1 < Words.size())
      Value |= std::uint64_t{Words[I + WordShift + 1]} << WORD_BITS;
    Result[I] = static_cast<std::uint32_t>(Value >> BitShift);
  }
  Trim(Result);
  return Result;
}

// Subtracts Qhat * Divisor from Remainder at word Offset and adds the divisor
// back once if that went below zero; returns the corrected quotient word.
std::uint32_t SubtractMultiple(TWords& Remainder, const TWords& Divisor, std::size_t Offset,
                               std::uint64_t Qhat) {
  const std::size_t N = Divisor.size();
  std::int64_t Borrow = 0;
  for (std::size_t I = 0; I < N; ++I) {
    const std::uint64_t Product = Qhat * Divisor[I];
    const std::int64_t Value = std::int64_t{Remainder[I + Offset]} - Borrow -
                               static_cast<std::int64_t>(Product & 0xFFFFFFFF);
    Remainder[I + Offset] = static_cast<std::uint32_t>(Value);
    Borrow = static_cast<std::int64_t>(Product >> WORD_BITS) - (Value >> WORD_BITS);
  }
  const std::int64_t Top = std::int64_t{Remainder[N + Offset]} - Borrow;
  Remainder[N + Offset] = static_cast<std::uint32_t>(Top);
  if (Top >= 0) return static_cast<std::uint32_t>(Qhat);
  std::uint64_t Carry = 0;
  for (std::size_t I = 0; I < N; ++I) {
    const std::uint64_t Value = std::uint64_t{Remainder[I + Offset]} + Divisor[I] + Carry;
    Remainder[I + Offset] = static_cast<std::uint32_t>(Value);
    Carry = Value >> WORD_BITS;
  }
  Remainder[N + Offset] += static_cast<std::uint32_t>(Carry);
  return static_cast<std::uint32_t>(Qhat - 1);
}

// Knuth's algorithm D (The Art of Computer Programming, 4.3.1) for a divisor
// of at least two words that is not larger than the dividend.
void DivideLong(const TWords& Dividend, const TWords& Divisor, TWords& Quotient,
                TWords& Remainder) {
  // Normalising puts the divisor's top bit in place, which keeps each
  // estimated quotient word at most two too large.
  const int Shift = std::countl_zero(Divisor.back());
  const TWords V = ShiftLeftWords(Divisor, Shift);
  TWords U = ShiftLeftWords(Dividend, Shift);
  U.resize(Dividend.size() + 1, 0);
  const std::size_t N = V.size();
  const std::size_t M = U.size() - N;
  Quotient.assign(M, 0);
  for (std::size_t J = M; J-- > 0;) {
    const std::uint64_t Numerator = std::uint64_t{U[J + N]} << WORD_BITS | U[J + N - 1];
    std::uint64_t Qhat = Numerator / V[N - 1];
    std::uint64_t Rhat = Numerator % V[N - 1];
    while (Qhat >= WORD_BASE || Qhat * V[N - 2] > (Rhat << WORD_BITS | U[J + N - 2])) {
      --Qhat;
      Rhat += V[N - 1];
      if (Rhat >= WORD_BASE) break;
    }
    Quotient[J] = SubtractMultiple(U, V, J, Qhat);
  }
  Trim(Quotient);
  U.resize(N);
  Remainder = ShiftRightWords(U, Shift);
}

}  // namespace

TLargeNumber::TLargeNumber(std::uint64_t Value)
    : TLargeNumber(TWords{static_cast<std::uint32_t>(Value),
                          static_cast<std::uint32_t>(Value >> WORD_BITS)}) {}

TLargeNumber::TLargeNumber(TLargeNumberWords Digits) : m_Digits(std::move(Digits)) {
  Trim(m_Digits);
}

TLargeNumber TLargeNumber::FromDecimal(std::string_view Text) {
  TWords Words;
  for (const char Character : Text) {
    if (Character < '0' || Character > '9') ThrowException("digit out of range");
    MultiplyAdd(Words, 10, static_cast<std::uint32_t>(Character - '0'));
  }
  return TLargeNumber(std::move(Words));
}

TLargeNumber TLargeNumber::FromBigEndian(std::span<const std::uint8_t> Bytes) {
  TWords Words((Bytes.size() + 3) / 4, 0);
  for (std::size_t I = 0; I < Bytes.size(); ++I) {
    const std::size_t FromEnd = Bytes.size() - 1 - I;
    Words[FromEnd / 4] |= std::uint32_t{Bytes[I]} << (8 * (FromEnd % 4));
  }
  return TLargeNumber(std::move(Words));
}

void TLargeNumber::ToBigEndian(std::span<std::uint8_t> Bytes) const {
  if (static_cast<std::size_t>(BitLength()) > 8 * Bytes.size()) {
    ThrowException(
        "number does not fit into byte array",
        {{"Bits", std::to_string(BitLength())}, {"Bytes", std::to_string(Bytes.size())}});
  }
  for (std::size_t I = 0; I < Bytes.size(); ++I) {
    const std::size_t FromEnd = Bytes.size() - 1 - I;
    const std::size_t Word = FromEnd / 4;
    Bytes[I] = Word < m_Digits.size()
                   ? static_cast<std::uint8_t>(m_Digits[Word] >> (8 * (FromEnd % 4)))
                   : 0;
  }
}

std::string TLargeNumber::ToDecimal() const {
  if (IsZero()) return "0";
  TWords Words = m_Digits;
  std::string Reversed;
  while (!Words.empty()) {
    std::uint32_t Chunk = DivideBySmall(Words, DECIMAL_CHUNK);
    for (int I = 0; I < DECIMAL_CHUNK_DIGITS && (Chunk != 0 || !Words.empty()); ++I) {
      Reversed.push_back(static_cast<char>('0' + Chunk % 10));
      Chunk /= 10;
    }
  }
  return {Reversed.rbegin(), Reversed.rend()};
}

int TLargeNumber::BitLength() const {
  if (IsZero()) return 0;
  return static_cast<int>(m_Digits.size() - 1) * WORD_BITS + std::bit_width(m_Digits.back());
}

bool TLargeNumber::Bit(int Index) const {
  Check(Index >= 0, "Index>=0", {"Index", Index});
  const std::size_t Word = static_cast<std::size_t>(Index / WORD_BITS);
  return Word < m_Digits.size() && (m_Digits[Word] >> (Index % WORD_BITS) & 1) != 0;
}

TLargeNumber TLargeNumber::LowBits(int Bits) const {
  Check(Bits >= 0, "Bits>=0", {"Bits", Bits});
  if (Bits >= BitLength()) return *this;
  const std::size_t Words = static_cast<std::size_t>((Bits + WORD_BITS - 1) / WORD_BITS);
  TWords Low(m_Digits.begin(), m_Digits.begin() + static_cast<std::ptrdiff_t>(Words));
  if (Bits % WORD_BITS != 0) Low.back() &= (std::uint32_t{1} << (Bits % WORD_BITS)) - 1;
  return TLargeNumber(std::move(Low));
}

std::strong_ordering operator<=>(const TLargeNumber& A, const TLargeNumber& B) {
  return CompareWords(A.m_Digits, B.m_Digits);
}

bool operator==(const TLargeNumber& A, const TLargeNumber& B) { return A.m_Digits == B.m_Digits; }

TLargeNumber operator+(const TLargeNumber& A, const TLargeNumber& B) {
  const TWords& Long = A.m_Digits.size() >= B.m_Digits.size() ? A.m_Digits : B.m_Digits;
  const TWords& Short = A.m_Digits.size() >= B.m_Digits.size() ? B.m_Digits : A.m_Digits;
  TWords Sum(Long.size() + 1, 0);
  std::uint64_t Carry = 0;
  for (std::size_t I = 0; I < Long.size(); ++I) {
    const std::uint64_t Value = std::uint64_t{Long[I]} + (I < Short.size() ? Short[I] : 0) + Carry;
    Sum[I] = static_cast<std::uint32_t>(Value);
    Carry = Value >> WORD_BITS;
  }
  Sum.back() = static_cast<std::uint32_t>(Carry);
  return TLargeNumber(std::move(Sum));
}

TLargeNumber operator-(const TLargeNumber& A, const TLargeNumber& B) {
  if (A < B) ThrowException("subtrahend is larger than minuend");
  TWords Difference = A.m_Digits;
  std::int64_t Borrow = 0;
  for (std::size_t I = 0; I < Difference.size(); ++I) {
    const std::int64_t Value =
        std::int64_t{Difference[I]} - (I < B.m_Digits.size() ? B.m_Digits[I] : 0) - Borrow;
    Difference[I] = static_cast<std::uint32_t>(Value);
    Borrow = Value < 0 ? 1 : 0;
  }
  return TLargeNumber(std::move(Difference));
}

TLargeNumber operator*(const TLargeNumber& A, const TLargeNumber& B) {
  if (A.IsZero() || B.IsZero()) return {};
  TWords Product(A.m_Digits.size() + B.m_Digits.size(), 0);
  for (std::size_t I = 0; I < A.m_Digits.size(); ++I) {
    std::uint64_t Carry = 0;
    for (std::size_t J = 0; J < B.m_Digits.size(); ++J) {
      const std::uint64_t Value =
          std::uint64_t{A.m_Digits[I]} * B.m_Digits[J] + Product[I + J] + Carry;
      Product[I + J] = static_cast<std::uint32_t>(Value);
      Carry = Value >> WORD_BITS;
    }
    Product[I + B.m_Digits.size()] = static_cast<std::uint32_t>(Carry);
  }
  return TLargeNumber(std::move(Product));
}

TLargeNumber operator<<(const TLargeNumber& A, int Bits) {
  Check(Bits >= 0, "Bits>=0", {"Bits", Bits});
  return TLargeNumber(ShiftLeftWords(A.m_Digits, Bits));
}

TLargeNumber operator>>(const TLargeNumber& A, int Bits) {
  Check(Bits >= 0, "Bits>=0", {"Bits", Bits});
  return TLargeNumber(ShiftRightWords(A.m_Digits, Bits));
}

void TLargeNumber::Divide(const TLargeNumber& A, const TLargeNumber& B, TLargeNumber& Quotient,
                          TLargeNumber& Remainder) {
  if (B.IsZero()) ThrowException("division by zero");
  TWords Q;
  TWords R;
  if (A < B) {
    R = A.m_Digits;
  } else if (B.m_Digits.size() == 1) {
    Q = A.m_Digits;
    R = {DivideBySmall(Q, B.m_Digits[0])};
  } else {
    DivideLong(A.m_Digits, B.m_Digits, Q, R);
  }
  Quotient = TLargeNumber(std::move(Q));
  Remainder = TLargeNumber(std::move(R));
}

namespace {

TLargeNumber Modulo(const TLargeNumber& A, const TLargeNumber& Modulus) {
  TLargeNumber Quotient;
  TLargeNumber Remainder;
  TLargeNumber::Divide(A, Modulus, Quotient, Remainder);
  return Remainder;
}

// The inverse of A modulo M by the extended Euclidean algorithm. The
// coefficients are kept in [0, M), so that no negative number arises; each
// step keeps S0 * A = R0 and S1 * A = R1 modulo M.
TLargeNumber InverseModulo(const TLargeNumber& A, const TLargeNumber& M) {
  TLargeNumber R0 = M;
  TLargeNumber R1 = Modulo(A, M);
  TLargeNumber S0;
  TLargeNumber S1(1);
  while (!R1.IsZero()) {
    TLargeNumber Quotient;
    TLargeNumber Remainder;
    TLargeNumber::Divide(R0, R1, Quotient, Remainder);
    TLargeNumber S = Modulo(S0 + M - Modulo(Quotient * S1, M), M);
    R0 = std::move(R1);
    R1 = std::move(Remainder);
    S0 = std::move(S1);
    S1 = std::move(S);
  }
  Check(R0 == TLargeNumber(1), "number has no inverse");
  return S0;
}

// Multiplication modulo an odd N in Montgomery form, x R mod N, with R = 2^Bits
// the smallest power of two not below N: a product is reduced by a shift
// instead of a division.
class TMontgomeryContext {
 public:
  explicit TMontgomeryContext(const TLargeNumber& Modulus)
      : m_Modulus(Modulus),
        m_Bits(Modulus.BitLength()),
        m_R(TLargeNumber(1) << m_Bits),
        m_NegativeInverse(m_R - InverseModulo(Modulus, m_R)) {}

  TLargeNumber Enter(const TLargeNumber& X) const { return Modulo(X << m_Bits, m_Modulus); }
  TLargeNumber Leave(const TLargeNumber& X) const { return Reduce(X); }
  TLargeNumber Multiply(const TLargeNumber& A, const TLargeNumber& B) const {
    return Reduce(A * B);
  }

 private:
  // T R^-1 mod N for T < N R.
  TLargeNumber Reduce(const TLargeNumber& T) const {
    const TLargeNumber Factor = (T.LowBits(m_Bits) * m_NegativeInverse).LowBits(m_Bits);
    TLargeNumber Result = (T + Factor * m_Modulus) >> m_Bits;
    return Result < m_Modulus ? Result : Result - m_Modulus;
  }

  TLargeNumber m_Modulus;
  int m_Bits;
  TLargeNumber m_R;
  TLargeNumber m_NegativeInverse;  // -N^-1 mod R
};

// Plain multiplication with a division, for an even modulus.
class TPlainContext {
 public:
  explicit TPlainContext(const TLargeNumber& Modulus) : m_Modulus(Modulus) {}

  TLargeNumber Enter(const TLargeNumber& X) const { return X; }
  TLargeNumber Leave(const TLargeNumber& X) const { return X; }
  TLargeNumber Multiply(const TLargeNumber& A, const TLargeNumber& B) const {
    return Modulo(A * B, m_Modulus);
  }

 private:
  TLargeNumber m_Modulus;
};

// The binary method, from the exponent's lowest bit up; Base is below the modulus.
template <typename TContext>
TLargeNumber BinaryPower(const TContext& Context, const TLargeNumber& Base,
                         const TLargeNumber& Exponent) {
  TLargeNumber Result = Context.Enter(TLargeNumber(1));
  TLargeNumber Square = Context.Enter(Base);
  const int Bits = Exponent.BitLength();
  for (int I = 0; I < Bits; ++I) {
    if (Exponent.Bit(I)) Result = Context.Multiply(Result, Square);
    if (I + 1 < Bits) Square = Context.Multiply(Square, Square);
  }
  return Context.Leave(Result);
}

}  // namespace

TLargeNumber PowMod(const TLargeNumber& Base, const TLargeNumber& Exponent,
                    const TLargeNumber& Modulus) {
  if (Modulus.IsZero()) ThrowException("modulus is 0");
  if (Modulus == TLargeNumber(1)) return {};
  const TLargeNumber Reduced = Modulo(Base, Modulus);
  if (Modulus.Bit(0)) return BinaryPower(TMontgomeryContext(Modulus), Reduced, Exponent);
  return BinaryPower(TPlainContext(Modulus), Reduced, Exponent);
}
