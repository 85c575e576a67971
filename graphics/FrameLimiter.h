#pragma once
// The frame limiter and the frame-rate statistics of a surface. The clock is
// core's (tests give it a manual clock); the sleep can be replaced too, so a
// test's sleep advances that clock instead of waiting.
#include <array>
#include <chrono>
#include <cstdint>
#include <functional>

// The last 200 frame times, in microseconds.
class TFrameTimeRing {
 public:
  static constexpr int SLOTS = 200;

  void Clear();
  void Add(std::int64_t Microseconds);
  int Count() const { return m_Count; }
  // Mean distance between the samples held, in microseconds; 0 below two.
  double MeanPeriod() const;

 private:
  std::array<std::int64_t, SLOTS> m_Times{};
  int m_Position = 0;
  int m_Count = 0;
};

class TFrameLimiter {
 public:
  using TSleep = std::function<void(std::chrono::milliseconds)>;

  static constexpr int NO_LIMIT = 0xFFFF;

  TFrameLimiter();

  // Sleeps with the platform unless a test gives its own.
  void SetSleep(TSleep Sleep) { m_Sleep = std::move(Sleep); }

  void ResetFrameTimer();
  // Below 10 becomes 10, above 200 no limit; clears the frame time ring.
  void SetFramerateLimit(int Limit);
  // Once per presented frame, before the buffers change: counts the frame and
  // sleeps until the frame's time has come. A late frame builds no debt.
  void MeasureFrame();
  // One sample of the frame time ring, at the start of a frame.
  void SampleFrame();

  int FramerateLimit() const { return m_FramerateLimit; }
  double FramePeriod() const { return m_FramePeriod; }
  double FramesPerSecond() const { return m_FramesPerSecond; }
  const TFrameTimeRing& FrameTimes() const { return m_Ring; }

 private:
  TSleep m_Sleep;
  double m_FrameStart = 0;     // us, start of the frames-per-second window
  double m_NextFrameTime = 0;  // us
  double m_FramePeriod = 0;    // ms
  double m_FramesPerSecond = 0;
  int m_FramerateLimit = NO_LIMIT;
  int m_FrameCounter = 0;
  TFrameTimeRing m_Ring;
};
