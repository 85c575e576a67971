#include "platform/Clock.h"

#include <thread>

namespace platform {

std::int64_t MonotonicNanoseconds() {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

void SleepFor(std::chrono::milliseconds Duration) { std::this_thread::sleep_for(Duration); }

}  // namespace platform
