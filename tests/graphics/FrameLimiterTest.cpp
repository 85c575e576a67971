// The frame limiter under a simulated clock: the sleep advances the clock
// instead of waiting, so the figures are exact.
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "core/Clock.h"
#include "graphics/FrameLimiter.h"

namespace {

class FrameLimiterTest : public ::testing::Test {
 protected:
  FrameLimiterTest() {
    SetClockSource(Clock);
    Limiter.SetSleep([this](std::chrono::milliseconds Duration) {
      Sleeps.push_back(Duration.count());
      Clock->AdvanceMilliseconds(Duration.count());
    });
    Limiter.ResetFrameTimer();
  }
  ~FrameLimiterTest() override { SetClockSource(nullptr); }

  // One frame that takes WorkMilliseconds to draw; returns the microsecond
  // time at which the next frame starts.
  std::int64_t Frame(int WorkMilliseconds) {
    Limiter.SampleFrame();
    Clock->AdvanceMilliseconds(WorkMilliseconds);
    Limiter.MeasureFrame();
    return NowMicroseconds();
  }

  std::shared_ptr<TManualClock> Clock = std::make_shared<TManualClock>();
  TFrameLimiter Limiter;
  std::vector<std::int64_t> Sleeps;
};

TEST_F(FrameLimiterTest, LimitsMapToPeriods) {
  const std::vector<std::pair<int, int>> Cases = {{0, 10}, {5, 10}, {10, 10}, {50, 50}, {200, 200}, {201, 0xFFFF}};
  for (const auto& [Setting, Limit] : Cases) {
    Limiter.SetFramerateLimit(Setting);
    EXPECT_EQ(Limiter.FramerateLimit(), Limit) << Setting;
    EXPECT_DOUBLE_EQ(Limiter.FramePeriod(), 1000.0 / Limit) << Setting;
  }
}

TEST_F(FrameLimiterTest, DefaultSettingHoldsTwentyMillisecondFrames) {
  Limiter.SetFramerateLimit(50);
  std::int64_t Start = Frame(3);
  for (int Index = 0; Index < 100; ++Index) {
    const std::int64_t Next = Frame(3);
    EXPECT_EQ(Next - Start, 20'000) << "frame " << Index;
    Start = Next;
  }
  EXPECT_EQ(Sleeps.back(), 17);
  EXPECT_NEAR(Limiter.FrameTimes().MeanPeriod(), 20'000.0, 1e-9);
  EXPECT_NEAR(Limiter.FramesPerSecond(), 50.0, 1.0);
}

TEST_F(FrameLimiterTest, SettingFiveRunsAtTenFramesASecond) {
  Limiter.SetFramerateLimit(5);
  Frame(1);
  const std::int64_t Start = NowMicroseconds();
  for (int Index = 0; Index < 10; ++Index) Frame(1);
  EXPECT_EQ(NowMicroseconds() - Start, 1'000'000);
}

TEST_F(FrameLimiterTest, NoLimitNeverSleepsForLongerThanTheWork) {
  Limiter.SetFramerateLimit(201);
  for (int Index = 0; Index < 50; ++Index) Frame(1);
  EXPECT_TRUE(Sleeps.empty());
}

// Sleeps round down to milliseconds; the deadline stays absolute, so the
// remainder is made up in later frames instead of piling up.
TEST_F(FrameLimiterTest, FractionalPeriodsAverageOut) {
  Limiter.SetFramerateLimit(30);
  Frame(2);
  const std::int64_t Start = NowMicroseconds();
  for (int Index = 0; Index < 300; ++Index) Frame(2);
  EXPECT_NEAR(static_cast<double>(NowMicroseconds() - Start) / 300, 1000.0 / 30 * 1000, 5.0);
}

TEST_F(FrameLimiterTest, AStallBuildsNoCatchUpBurst) {
  Limiter.SetFramerateLimit(50);
  std::int64_t Start = Frame(3);
  Frame(3);
  Start = Frame(250);  // the stall: no sleep at its end
  EXPECT_EQ(Sleeps.size(), 2u);
  const std::int64_t AfterStall = Start;
  // The first frame after it may lose the rounding of its sleep, no more.
  for (int Index = 0; Index < 20; ++Index) {
    const std::int64_t Next = Frame(3);
    EXPECT_GE(Next - Start, 19'000) << "frame " << Index << " after the stall";
    EXPECT_LE(Next - Start, 20'000) << "frame " << Index << " after the stall";
    Start = Next;
  }
  EXPECT_NEAR((Start - AfterStall) / 20.0, 20'000.0, 50.0);
}

TEST_F(FrameLimiterTest, RingHoldsTheLast200Frames) {
  Limiter.SetFramerateLimit(50);
  for (int Index = 0; Index < 250; ++Index) Frame(5);
  EXPECT_EQ(Limiter.FrameTimes().Count(), TFrameTimeRing::SLOTS);
  Limiter.SetFramerateLimit(100);
  EXPECT_EQ(Limiter.FrameTimes().Count(), 0);
}

}  // namespace
