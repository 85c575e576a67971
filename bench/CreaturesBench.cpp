// ProcessCreatures with the whole table walking: 1300 creatures, each step
// 320 ms long, one call per frame of 16 ms, so that every call moves every
// picture by one or two pixels as it does in the game.
#include <benchmark/benchmark.h>

#include <memory>

#include "core/Clock.h"
#include "net/Login.h"
#include "world/Creatures.h"

namespace {

constexpr int STEP_TIME = 320;
constexpr int FRAME = 16;

// The table full of creatures; with Walking, each has just started a step in
// one of the eight directions.
struct TTableSetUp {
  explicit TTableSetUp(bool Walking) {
    SetClockSource(Clock);
    InitLogin(false);
    InitCreatures();
    for (int Number = 0; Number < MAX_CREATURES; ++Number) {
      TCreature& Creature = NewCreature(0, FIRST_MONSTER_ID + static_cast<std::uint32_t>(Number));
      Creature.Speed = 220;
    }
    if (Walking) StartSteps();
  }
  ~TTableSetUp() {
    ExitCreatures();
    ExitLogin();
    SetClockSource(nullptr);
  }
  TTableSetUp(const TTableSetUp&) = delete;
  TTableSetUp& operator=(const TTableSetUp&) = delete;

  static void StartSteps() {
    static constexpr int DX[] = {1, 1, 0, -1, -1, -1, 0, 1};
    static constexpr int DY[] = {0, -1, -1, -1, 0, 1, 1, 1};
    const int Now = GetProgramTime();
    for (int Number = 0; Number < MAX_CREATURES; ++Number) {
      TCreature& Creature = *FindCreature(FIRST_MONSTER_ID + static_cast<std::uint32_t>(Number));
      MoveCreature(Creature, DX[Number % 8], DY[Number % 8], 150);
      // The session's formula is not there: the step's time is set as the game's would be.
      Creature.WalkDuration = STEP_TIME;
      Creature.WalkEndTime = Creature.NextStepTime = Now + STEP_TIME;
    }
  }

  std::shared_ptr<TManualClock> Clock = std::make_shared<TManualClock>();
};

void BM_ProcessCreaturesWalking(benchmark::State& State) {
  TTableSetUp SetUp(true);
  int Frames = 0;
  for (auto _ : State) {
    SetUp.Clock->AdvanceMilliseconds(FRAME);
    benchmark::DoNotOptimize(ProcessCreatures());
    if (++Frames * FRAME > STEP_TIME) {
      State.PauseTiming();
      TTableSetUp::StartSteps();
      Frames = 0;
      State.ResumeTiming();
    }
  }
}
BENCHMARK(BM_ProcessCreaturesWalking);

void BM_ProcessCreaturesStanding(benchmark::State& State) {
  TTableSetUp SetUp(false);
  for (auto _ : State) {
    SetUp.Clock->AdvanceMilliseconds(FRAME);
    benchmark::DoNotOptimize(ProcessCreatures());
  }
}
BENCHMARK(BM_ProcessCreaturesStanding);

}  // namespace

BENCHMARK_MAIN();
