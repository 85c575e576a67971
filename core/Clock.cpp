#include "core/Clock.h"

#include <chrono>

#include "core/Exception.h"
#include "platform/Clock.h"

namespace {

struct TClockState {
  std::shared_ptr<const TClockSource> Source;
  std::int64_t StartNanoseconds = 0;
  std::shared_ptr<const TClockSource> Calendar;
};

TClockState& Clock() {
  static TClockState State{nullptr, platform::MonotonicNanoseconds(), nullptr};
  return State;
}

}  // namespace

void SetClockSource(std::shared_ptr<const TClockSource> Source) {
  Clock().Source = std::move(Source);
  Clock().StartNanoseconds = NowNanoseconds();
}

std::int64_t NowNanoseconds() {
  const auto& Source = Clock().Source;
  return Source ? Source->NowNanoseconds() : platform::MonotonicNanoseconds();
}

std::int64_t NowSeconds() { return NowNanoseconds() / 1'000'000'000; }
std::int64_t NowMilliseconds() { return NowNanoseconds() / 1'000'000; }
std::int64_t NowMicroseconds() { return NowNanoseconds() / 1'000; }

void SetCalendarSource(std::shared_ptr<const TClockSource> Source) { Clock().Calendar = std::move(Source); }

std::int64_t CalendarSeconds() {
  const auto& Source = Clock().Calendar;
  if (Source) return Source->NowNanoseconds() / 1'000'000'000;
  return std::chrono::duration_cast<std::chrono::seconds>(std::chrono::system_clock::now().time_since_epoch()).count();
}

int GetProgramTime() {
  const std::int64_t Milliseconds = (NowNanoseconds() - Clock().StartNanoseconds) / 1'000'000;
  if (Milliseconds > INT32_MAX) ThrowException("Kelmo was running too long");
  return static_cast<int>(Milliseconds);
}

CStopwatch::CStopwatch(EStopwatchResolution Resolution) : m_Resolution(Resolution) {
  getResolutionTick();
}

void CStopwatch::reset() {
  m_Running = false;
  m_Reading = 0;
}

// Each start begins a new measurement.
void CStopwatch::start() {
  m_StartedAt = NowNanoseconds();
  m_Running = true;
}

void CStopwatch::stop() {
  if (!m_Running) return;
  m_Reading = NowNanoseconds() - m_StartedAt;
  m_Running = false;
}

std::int64_t CStopwatch::ElapsedNanoseconds() const {
  return m_Running ? NowNanoseconds() - m_StartedAt : m_Reading;
}

std::int64_t CStopwatch::elapsed() const {
  return ElapsedNanoseconds() / (1'000'000'000 / getResolutionTick());
}

std::int64_t CStopwatch::getResolutionTick() const {
  switch (m_Resolution) {
    case EStopwatchResolution::SECONDS:
    case EStopwatchResolution::MILLISECONDS:
    case EStopwatchResolution::MICROSECONDS:
    case EStopwatchResolution::NANOSECONDS:
      return static_cast<std::int64_t>(m_Resolution);
  }
  ThrowException("getResolutionTick failed due to invalid EStopwatchResolution value");
}
