#include "net/Random.h"

#include <memory>

#include "core/Clock.h"
#include "core/Exception.h"

namespace {

constexpr std::uint32_t GOLDEN_RATIO = 0x9E3779B9;

// ISAAC's mix of eight words, used to spread the seed.
// clang-format off
void Mix(std::array<std::uint32_t, 8>& S) {
  auto& [a, b, c, d, e, f, g, h] = S;
  a ^= b << 11; d += a; b += c;
  b ^= c >> 2;  e += b; c += d;
  c ^= d << 8;  f += c; d += e;
  d ^= e >> 16; g += d; e += f;
  e ^= f << 10; h += e; f += g;
  f ^= g >> 4;  a += f; g += h;
  g ^= h << 8;  b += g; h += a;
  h ^= a >> 9;  c += h; a += b;
}
// clang-format on

// One pass of randinit: adds Source in groups of eight to the mixed words and
// stores each result in Memory.
void SeedPass(std::array<std::uint32_t, 8>& S, const std::array<std::uint32_t, 256>& Source,
              std::array<std::uint32_t, 256>& Memory) {
  for (std::size_t I = 0; I < Source.size(); I += 8) {
    for (std::size_t K = 0; K < 8; ++K) S[K] += Source[I + K];
    Mix(S);
    for (std::size_t K = 0; K < 8; ++K) Memory[I + K] = S[K];
  }
}

// The four shifts of the accumulator that take turns within a batch.
std::uint32_t StepShift(std::uint32_t a, std::size_t Index) {
  switch (Index % 4) {
    case 0:
      return a ^ (a << 13);
    case 1:
      return a ^ (a >> 6);
    case 2:
      return a ^ (a << 2);
    default:
      return a ^ (a >> 16);
  }
}

std::unique_ptr<TRandomNumberGenerator> Generator;

TRandomNumberGenerator& Random() {
  Check(Generator != nullptr, "RandomNumberGenerator!=NULL");
  return *Generator;
}

}  // namespace

void TRandomNumberGenerator::AddRandomSeed(std::uint8_t Byte) {
  if (Initialized) return;
  Results[SeedIndex] += Byte;
  SeedIndex = static_cast<std::uint16_t>((SeedIndex + 1) % SIZE);
}

std::uint8_t TRandomNumberGenerator::GetRandomByte() {
  if (!Initialized) Initialize();
  if (Count == 0) {
    Isaac();
    Count = SIZE - 1;
    return static_cast<std::uint8_t>(Results[SIZE - 1]);
  }
  --Count;
  return static_cast<std::uint8_t>(Results[Count]);
}

void TRandomNumberGenerator::Initialize() {
  A = B = C = 0;
  std::array<std::uint32_t, 8> S;
  S.fill(GOLDEN_RATIO);
  for (int I = 0; I < 4; ++I) Mix(S);
  SeedPass(S, Results, Memory);
  SeedPass(S, Memory, Memory);
  Isaac();
  Count = SIZE;
  Initialized = true;
}

// One batch, with the local names of the published code.
void TRandomNumberGenerator::Isaac() {
  std::uint32_t a = A;
  std::uint32_t b = B + ++C;
  for (std::size_t I = 0; I < SIZE; ++I) {
    const std::uint32_t x = Memory[I];
    a = StepShift(a, I) + Memory[(I + SIZE / 2) % SIZE];
    const std::uint32_t y = Memory[(x >> 2) % SIZE] + a + b;
    Memory[I] = y;
    b = Memory[(y >> 10) % SIZE] + x;
    Results[I] = b;
  }
  A = a;
  B = b;
}

void InitRandom() {
  Generator = std::make_unique<TRandomNumberGenerator>();
  SeedRandomFromClock();
}

void ExitRandom() { Generator.reset(); }

void AddRandomSeed(std::uint8_t Byte) { Random().AddRandomSeed(Byte); }

std::uint8_t GetRandomByte() { return Random().GetRandomByte(); }

void SeedRandomFromClock() {
  const std::int64_t Milliseconds = NowMilliseconds();
  AddRandomSeed(static_cast<std::uint8_t>(Milliseconds));
  AddRandomSeed(static_cast<std::uint8_t>(Milliseconds >> 8));
}
