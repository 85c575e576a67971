#include "platform/Timer.h"

#include <gtest/gtest.h>

namespace {

constexpr std::int64_t Ms = 1'000'000;

TEST(TimerTest, TicksEveryPeriod) {
  platform::CPeriodicTimer Timer(std::chrono::milliseconds(100));
  EXPECT_FALSE(Timer.TakeTick(0));
  EXPECT_FALSE(Timer.TakeTick(99 * Ms));
  EXPECT_TRUE(Timer.TakeTick(100 * Ms));
  EXPECT_FALSE(Timer.TakeTick(150 * Ms));
  EXPECT_TRUE(Timer.TakeTick(205 * Ms));
}

TEST(TimerTest, ALateLoopGetsOneTickNotABurst) {
  platform::CPeriodicTimer Timer(std::chrono::milliseconds(100));
  Timer.TakeTick(0);
  EXPECT_TRUE(Timer.TakeTick(450 * Ms));
  EXPECT_FALSE(Timer.TakeTick(451 * Ms));
  EXPECT_TRUE(Timer.TakeTick(550 * Ms));
}

}  // namespace
