// The frame limiter on the real clock and the real sleep: the period it
// holds at a setting, and what follows a stall. Each iteration is one frame.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <thread>
#include <vector>

#include "graphics/FrameLimiter.h"

namespace {

using Clock = std::chrono::steady_clock;

double Milliseconds(Clock::duration Duration) { return std::chrono::duration<double, std::milli>(Duration).count(); }

// A frame's own work before the limiter: a little busy time, as drawing is.
void Work(std::chrono::microseconds Duration) {
  const Clock::time_point End = Clock::now() + Duration;
  while (Clock::now() < End) {
  }
}

void Report(benchmark::State& State, const std::vector<double>& Periods) {
  double Sum = 0;
  for (const double Period : Periods) Sum += Period;
  State.counters["mean_ms"] = Periods.empty() ? 0 : Sum / Periods.size();
  State.counters["min_ms"] = Periods.empty() ? 0 : *std::min_element(Periods.begin(), Periods.end());
  State.counters["max_ms"] = Periods.empty() ? 0 : *std::max_element(Periods.begin(), Periods.end());
}

// Arg: the ConfineFramerate setting.
void BM_FramePeriod(benchmark::State& State) {
  TFrameLimiter Limiter;
  Limiter.ResetFrameTimer();
  Limiter.SetFramerateLimit(static_cast<int>(State.range(0)));
  Limiter.MeasureFrame();
  std::vector<double> Periods;
  Clock::time_point Last = Clock::now();
  for (auto _ : State) {
    Work(std::chrono::microseconds(2000));
    Limiter.MeasureFrame();
    const Clock::time_point Now = Clock::now();
    Periods.push_back(Milliseconds(Now - Last));
    Last = Now;
  }
  Report(State, Periods);
}
BENCHMARK(BM_FramePeriod)->Arg(50)->Iterations(250)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FramePeriod)->Arg(5)->Iterations(30)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FramePeriod)->Arg(200)->Iterations(500)->Unit(benchmark::kMillisecond);

// One frame stalls for 250 ms; the ten frames after it are timed. Without a
// catch-up burst none of them is short.
void BM_AfterStall(benchmark::State& State) {
  TFrameLimiter Limiter;
  Limiter.ResetFrameTimer();
  Limiter.SetFramerateLimit(50);
  std::vector<double> Periods;
  for (auto _ : State) {
    for (int Frame = 0; Frame < 5; ++Frame) Limiter.MeasureFrame();
    std::this_thread::sleep_for(std::chrono::milliseconds(250));
    Limiter.MeasureFrame();
    Clock::time_point Last = Clock::now();
    for (int Frame = 0; Frame < 10; ++Frame) {
      Work(std::chrono::microseconds(2000));
      Limiter.MeasureFrame();
      const Clock::time_point Now = Clock::now();
      Periods.push_back(Milliseconds(Now - Last));
      Last = Now;
    }
  }
  Report(State, Periods);
}
BENCHMARK(BM_AfterStall)->Iterations(5)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
