#pragma once
// The generator for session keys and the padding of login blocks and packets:
// ISAAC as published, seeded with bits of the clock and of user input until the
// first number is asked for. Everything else that needs chance uses the C
// runtime's generator.
#include <array>
#include <cstdint>

class TRandomNumberGenerator {
 public:
  static constexpr int SIZE = 256;

  // Adds Byte to the next seed word; ignored once the generator runs.
  void AddRandomSeed(std::uint8_t Byte);
  // The low eight bits of the next word. The first call starts the generator.
  std::uint8_t GetRandomByte();

  bool Initialized = false;
  std::uint16_t SeedIndex = 0;                // next word of Results to take seed material
  std::uint32_t Count = 0;                    // randcnt
  std::array<std::uint32_t, SIZE> Results{};  // randrsl, also the seed area
  std::array<std::uint32_t, SIZE> Memory{};   // randmem
  std::uint32_t A = 0;
  std::uint32_t B = 0;
  std::uint32_t C = 0;

 private:
  void Initialize();  // randinit with the seed in Results
  void Isaac();       // one batch of 256 results
};

// The program-wide generator. InitRandom makes a fresh one and seeds it from
// the clock; ExitRandom drops it.
void InitRandom();
void ExitRandom();
void AddRandomSeed(std::uint8_t Byte);
std::uint8_t GetRandomByte();
// Adds the low byte and the next byte of the millisecond clock.
void SeedRandomFromClock();
