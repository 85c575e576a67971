// GUI timers on the tick, and the key-binding table.
#include <gtest/gtest.h>

#include <memory>

#include "core/Clock.h"
#include "tests/gui/Elements.h"

namespace {

using namespace guitest;
using Lines = std::vector<std::string>;

class TimerAndKeyTest : public ::testing::Test {
 protected:
  TimerAndKeyTest() : Clock(std::make_shared<TManualClock>()) {
    SetClockSource(Clock);
    InitGUI();
  }
  ~TimerAndKeyTest() override {
    ExitGUI();
    SetClockSource(nullptr);
  }

  // A receiver that notes whether each event was the last.
  class CCountdown : public CGUIElement {
   public:
    explicit CCountdown(Lines& Log) : m_Log(Log) {}
    void OnEvent(int Event) override {
      m_Log.push_back(std::to_string(Event) + (Timer && Timer->IsExpired() ? " last" : " running") + " " +
                      std::to_string(Timer ? Timer->Remaining : -1));
    }
    std::unique_ptr<CObjectTimer> Timer;

   private:
    Lines& m_Log;
  };

  void Tick(int Milliseconds) {
    Clock->AdvanceMilliseconds(Milliseconds);
    TickTimers();
  }

  std::shared_ptr<TManualClock> Clock;
  Lines Log;
};

TEST_F(TimerAndKeyTest, TheFirstTickCountsFromItself) {
  CCountdown Receiver(Log);
  Receiver.Timer = std::make_unique<CObjectTimer>(1, &Receiver, 5);
  Clock->AdvanceMilliseconds(5000);
  TickTimers();
  EXPECT_EQ(Log, (Lines{"5 running 100"}));
}

// A timer of one tenth fires on every tick, the last time when 100 ms have passed.
TEST_F(TimerAndKeyTest, ATimerFiresOnEachTickAndLastWhenItReachesZero) {
  CCountdown Receiver(Log);
  Receiver.Timer = std::make_unique<CObjectTimer>(1, &Receiver, 5);
  EXPECT_EQ(NumberOfLiveTimers(), 1);
  TickTimers();
  Tick(60);
  Tick(60);
  Tick(60);
  EXPECT_EQ(Log, (Lines{"5 running 100", "5 running 40", "5 last 0"}));
  EXPECT_FALSE(Receiver.Timer->Running);
  EXPECT_EQ(NumberOfLiveTimers(), 0);
}

TEST_F(TimerAndKeyTest, ATimerOfZeroTenthsNeverRunsAndIsInNoTable) {
  CCountdown Receiver(Log);
  Receiver.Timer = std::make_unique<CObjectTimer>(0, &Receiver, 5);
  EXPECT_FALSE(Receiver.Timer->Running);
  EXPECT_TRUE(Receiver.Timer->IsExpired());
  EXPECT_EQ(NumberOfLiveTimers(), 0);
  TickTimers();
  Tick(100);
  EXPECT_TRUE(Log.empty());
}

TEST_F(TimerAndKeyTest, ADestroyedTimerLeavesItsPlaceToTheNext) {
  CCountdown Receiver(Log);
  auto First = std::make_unique<CObjectTimer>(5, &Receiver, 1);
  auto Second = std::make_unique<CObjectTimer>(5, &Receiver, 2);
  First.reset();
  EXPECT_EQ(NumberOfLiveTimers(), 1);
  auto Third = std::make_unique<CObjectTimer>(5, &Receiver, 3);
  EXPECT_EQ(NumberOfLiveTimers(), 2);
  TickTimers();
  EXPECT_EQ(Log, (Lines{"3 running -1", "2 running -1"}));
}

// Ctrl+L is bound once as 0x44C and works with either case and either Shift state.
TEST_F(TimerAndKeyTest, ABindingTakesItsKeyWithAnyShiftAndEitherCase) {
  CRecordingElement Element(Log, "main");
  RegisterKey(0x44C, {&Element, 506});
  EXPECT_TRUE(DispatchKey(0x66C));  // Ctrl+Shift+l
  EXPECT_TRUE(DispatchKey(0x46C));  // Ctrl+l
  EXPECT_TRUE(DispatchKey(0x44C));  // Ctrl+L
  EXPECT_FALSE(DispatchKey(0x06C));  // l alone
  EXPECT_FALSE(DispatchKey(0xC6C));  // Ctrl+Alt+l
  EXPECT_EQ(Log, (Lines{"main event 506", "main event 506", "main event 506"}));
}

TEST_F(TimerAndKeyTest, AltWithANavigationKeyIsAKeyOfItsOwn) {
  CRecordingElement Element(Log, "automap");
  RegisterKey(0x912, {&Element, 108});
  RegisterKey(0x913, {&Element, 107});
  EXPECT_TRUE(DispatchKey(0xB12));  // Alt+Shift+Home
  EXPECT_FALSE(DispatchKey(0x112));
  EXPECT_TRUE(DispatchKey(0x913));
  EXPECT_EQ(Log, (Lines{"automap event 108", "automap event 107"}));
}

TEST_F(TimerAndKeyTest, RegisteringAgainReplacesTheTarget) {
  CRecordingElement First(Log, "first");
  CRecordingElement Second(Log, "second");
  RegisterKey(0x1B, {&First, 32});
  RegisterKey(0x1B, {&Second, 33});
  EXPECT_EQ(NumberOfKeyBindings(), 1);
  DispatchKey(0x1B);
  EXPECT_EQ(Log, (Lines{"second event 33"}));
}

TEST_F(TimerAndKeyTest, UnregisteringMovesTheLastRowIntoTheGap) {
  CRecordingElement Element(Log, "e");
  RegisterKey(0x446, {&Element, 1});
  RegisterKey(0x80D, {&Element, 2});
  RegisterKey(0x451, {&Element, 3});
  UnregisterKey(0x999);
  EXPECT_EQ(NumberOfKeyBindings(), 3);
  UnregisterKey(0x446);
  EXPECT_EQ(NumberOfKeyBindings(), 2);
  EXPECT_FALSE(DispatchKey(0x446));
  EXPECT_TRUE(DispatchKey(0x451));
  EXPECT_TRUE(DispatchKey(0x80D));
  EXPECT_EQ(Log, (Lines{"e event 3", "e event 2"}));
}

}  // namespace
