#pragma once
// The monotonic clock and the one sleep of the loop.
#include <chrono>
#include <cstdint>

namespace platform {

// Nanoseconds of the monotonic clock; unrelated to the calendar.
std::int64_t MonotonicNanoseconds();
void SleepFor(std::chrono::milliseconds Duration);

}  // namespace platform
