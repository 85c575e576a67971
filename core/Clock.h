#pragma once
// Program time and the stopwatch. Both read one clock source, which tests
// replace with a manual clock so that time-dependent logic runs in simulated time.
#include <cstdint>
#include <memory>

class TClockSource {
 public:
  virtual ~TClockSource() = default;
  virtual std::int64_t NowNanoseconds() const = 0;
};

// A clock that only moves when told to.
class TManualClock : public TClockSource {
 public:
  explicit TManualClock(std::int64_t StartNanoseconds = 0) : m_Now(StartNanoseconds) {}
  std::int64_t NowNanoseconds() const override { return m_Now; }
  void AdvanceMilliseconds(std::int64_t Milliseconds) { m_Now += Milliseconds * 1'000'000; }

 private:
  std::int64_t m_Now = 0;
};

// Installs a clock (null: the platform's monotonic clock) and restarts program time.
void SetClockSource(std::shared_ptr<const TClockSource> Source);
std::int64_t NowNanoseconds();

// Milliseconds since start; a run of more than 2^31 milliseconds fails with
// "Kelmo was running too long".
int GetProgramTime();
std::int64_t NowSeconds();
std::int64_t NowMilliseconds();
std::int64_t NowMicroseconds();

// The calendar: seconds since 1970, from its own source, which tests replace
// (null: the system's clock). Unrelated to program time.
void SetCalendarSource(std::shared_ptr<const TClockSource> Source);
std::int64_t CalendarSeconds();

enum class EStopwatchResolution : std::int64_t {
  SECONDS = 1,
  MILLISECONDS = 1000,
  MICROSECONDS = 1000000,
  NANOSECONDS = 1000000000,
};

class TStopwatchBase {
 public:
  virtual ~TStopwatchBase() = default;
  virtual void reset() = 0;
  virtual void start() = 0;
  virtual void stop() = 0;
  virtual std::int64_t elapsed() const = 0;
  virtual bool isRunning() const = 0;
  virtual std::int64_t getResolutionTick() const = 0;
};

// Measures in its resolution's ticks from the last start. A stopped watch
// keeps its reading.
class CStopwatch : public TStopwatchBase {
 public:
  explicit CStopwatch(EStopwatchResolution Resolution);
  void reset() override;
  void start() override;
  void stop() override;
  std::int64_t elapsed() const override;
  bool isRunning() const override { return m_Running; }
  std::int64_t getResolutionTick() const override;

 private:
  std::int64_t ElapsedNanoseconds() const;

  EStopwatchResolution m_Resolution;
  bool m_Running = false;
  std::int64_t m_StartedAt = 0;
  std::int64_t m_Reading = 0;
};
