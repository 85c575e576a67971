#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>

#include "core/Clock.h"
#include "core/Exception.h"

namespace {

class ClockTest : public testing::Test {
 protected:
  void SetUp() override { SetClockSource(m_Clock); }
  void TearDown() override { SetClockSource(nullptr); }
  void Advance(std::int64_t Milliseconds) { m_Clock->AdvanceMilliseconds(Milliseconds); }

 private:
  std::shared_ptr<TManualClock> m_Clock = std::make_shared<TManualClock>();
};

TEST_F(ClockTest, ProgramTimeCountsFromTheClocksInstallation) {
  EXPECT_EQ(GetProgramTime(), 0);
  Advance(1500);
  EXPECT_EQ(GetProgramTime(), 1500);
}

TEST_F(ClockTest, ProgramTimeEndsAfterTwoToTheThirtyFirstMilliseconds) {
  Advance(INT32_MAX);
  EXPECT_EQ(GetProgramTime(), INT32_MAX);
  Advance(1);
  try {
    GetProgramTime();
    FAIL() << "no failure past 2^31 milliseconds";
  } catch (const TMyException& E) {
    EXPECT_EQ(E.Text(), "Kelmo was running too long");
  }
}

TEST_F(ClockTest, TheHelpersReadTheSameClockInTheirUnits) {
  Advance(2750);
  EXPECT_EQ(NowSeconds(), 2);
  EXPECT_EQ(NowMilliseconds(), 2750);
  EXPECT_EQ(NowMicroseconds(), 2'750'000);
}

TEST_F(ClockTest, StopwatchMeasuresFromItsLastStart) {
  CStopwatch Watch(EStopwatchResolution::MILLISECONDS);
  EXPECT_FALSE(Watch.isRunning());
  Watch.start();
  Advance(250);
  EXPECT_EQ(Watch.elapsed(), 250);
  Watch.stop();
  Advance(100);
  EXPECT_EQ(Watch.elapsed(), 250) << "a stopped watch keeps its reading";
  Watch.stop();
  EXPECT_EQ(Watch.elapsed(), 250) << "stopping again changes nothing";
  Watch.start();
  Advance(50);
  EXPECT_EQ(Watch.elapsed(), 50) << "each start begins a new measurement";
  EXPECT_TRUE(Watch.isRunning());
  Watch.reset();
  EXPECT_FALSE(Watch.isRunning());
  EXPECT_EQ(Watch.elapsed(), 0);
}

TEST_F(ClockTest, StopwatchCountsInItsResolution) {
  CStopwatch Seconds(EStopwatchResolution::SECONDS);
  CStopwatch Micro(EStopwatchResolution::MICROSECONDS);
  CStopwatch Nano(EStopwatchResolution::NANOSECONDS);
  Seconds.start();
  Micro.start();
  Nano.start();
  Advance(2750);
  EXPECT_EQ(Seconds.elapsed(), 2);
  EXPECT_EQ(Micro.elapsed(), 2'750'000);
  EXPECT_EQ(Nano.elapsed(), 2'750'000'000);
  EXPECT_EQ(Micro.getResolutionTick(), 1'000'000);
}

TEST_F(ClockTest, InvalidResolutionFails) {
  try {
    CStopwatch Watch(static_cast<EStopwatchResolution>(7));
    FAIL() << "an invalid resolution was accepted";
  } catch (const TMyException& E) {
    EXPECT_EQ(E.Text(), "getResolutionTick failed due to invalid EStopwatchResolution value");
  }
}

}  // namespace
