#pragma once
// A periodic timer checked by the loop on its own thread. A late loop gets one
// tick, not a burst: at most one tick is ever pending.
#include <chrono>
#include <cstdint>

namespace platform {

class CPeriodicTimer {
 public:
  explicit CPeriodicTimer(std::chrono::milliseconds Period);
  // True if a tick is due at NowNanoseconds; consumes it.
  bool TakeTick(std::int64_t NowNanoseconds);

 private:
  std::int64_t m_Period;
  std::int64_t m_Next = -1;
};

}  // namespace platform
