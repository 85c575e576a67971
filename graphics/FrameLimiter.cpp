#include "graphics/FrameLimiter.h"

#include "core/Clock.h"
#include "platform/Clock.h"

namespace {

constexpr double MICROSECONDS_PER_SECOND = 1'000'000.0;

double Now() { return static_cast<double>(NowMicroseconds()); }

}  // namespace

void TFrameTimeRing::Clear() {
  m_Position = 0;
  m_Count = 0;
}

void TFrameTimeRing::Add(std::int64_t Microseconds) {
  m_Times[m_Position] = Microseconds;
  m_Position = (m_Position + 1) % SLOTS;
  if (m_Count < SLOTS) ++m_Count;
}

double TFrameTimeRing::MeanPeriod() const {
  if (m_Count < 2) return 0;
  const int Newest = (m_Position + SLOTS - 1) % SLOTS;
  const int Oldest = (m_Position + SLOTS - m_Count) % SLOTS;
  return static_cast<double>(m_Times[Newest] - m_Times[Oldest]) / (m_Count - 1);
}

TFrameLimiter::TFrameLimiter() : m_Sleep(platform::SleepFor) { ResetFrameTimer(); }

void TFrameLimiter::ResetFrameTimer() {
  m_FrameStart = Now();
  m_NextFrameTime = m_FrameStart;
  m_FramesPerSecond = 0;
  m_FrameCounter = 0;
  m_FramerateLimit = NO_LIMIT;
  m_FramePeriod = 1000.0 / NO_LIMIT;
}

void TFrameLimiter::SetFramerateLimit(int Limit) {
  if (Limit < 10) Limit = 10;
  if (Limit > 200) Limit = NO_LIMIT;
  m_FramerateLimit = Limit;
  m_FramePeriod = 1000.0 / Limit;
  m_Ring.Clear();
}

void TFrameLimiter::MeasureFrame() {
  const double Current = Now();
  ++m_FrameCounter;
  if (Current - m_FrameStart > MICROSECONDS_PER_SECOND) {
    m_FramesPerSecond = m_FrameCounter * MICROSECONDS_PER_SECOND / (Current - m_FrameStart);
    m_FrameCounter = 0;
    m_FrameStart = Current;
  }
  m_NextFrameTime += m_FramePeriod * 1000.0;
  if (m_NextFrameTime > Current) {
    const auto Milliseconds = static_cast<std::int64_t>((m_NextFrameTime - Current) / 1000.0);
    if (Milliseconds > 0) m_Sleep(std::chrono::milliseconds(Milliseconds));
  } else if (Current > m_NextFrameTime + 1.0) {
    m_NextFrameTime = Current - 1.0;
  }
}

void TFrameLimiter::SampleFrame() { m_Ring.Add(NowMicroseconds()); }
