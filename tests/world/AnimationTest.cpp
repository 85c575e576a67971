#include "world/Animation.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/world/WorldTest.h"

namespace {

using testing_world::FailureReport;

std::vector<TFrameDuration> Durations(std::uint32_t Phases, std::uint32_t Milliseconds) {
  return std::vector<TFrameDuration>(Phases, {Milliseconds, Milliseconds});
}

class AnimationTest : public testing_world::TTimedTest {
 protected:
  // The phase after animating to each of the times in turn.
  static std::vector<std::uint32_t> PhasesAt(TAnimation& Animation,
                                             const std::vector<std::uint32_t>& Times) {
    std::vector<std::uint32_t> Phases;
    for (std::uint32_t Time : Times) {
      Animation.Animate(Time);
      Phases.push_back(Animation.GetCurrentPhase());
    }
    return Phases;
  }
};

TEST_F(AnimationTest, OneLoopPlaysEachPhaseOnceAndStopsOnTheLast) {
  TAnimation Animation(3, 1, 1, ANIMATION_ASYNCHRON, Durations(3, 100));
  EXPECT_EQ(Animation.GetPhaseCount(), 3u);
  EXPECT_EQ(Animation.GetCurrentPhase(), 1u);
  EXPECT_EQ(PhasesAt(Animation, {50, 99, 100, 200, 300, 400, 1000}),
            (std::vector<std::uint32_t>{1, 1, 2, 3, 3, 3, 3}));
  EXPECT_TRUE(Animation.IsFinished());
}

TEST_F(AnimationTest, LoopCountTwoRunsTwiceRound) {
  TAnimation Animation(2, 1, 2, ANIMATION_ASYNCHRON, Durations(2, 100));
  EXPECT_EQ(PhasesAt(Animation, {100, 200, 300, 400, 500}),
            (std::vector<std::uint32_t>{2, 1, 2, 2, 2}));
  EXPECT_TRUE(Animation.IsFinished());
}

TEST_F(AnimationTest, LoopCountZeroRunsForEver) {
  TAnimation Animation(3, 1, 0, ANIMATION_ASYNCHRON, Durations(3, 100));
  EXPECT_EQ(PhasesAt(Animation, {100, 200, 300, 400, 500, 600, 700}),
            (std::vector<std::uint32_t>{2, 3, 1, 2, 3, 1, 2}));
  EXPECT_FALSE(Animation.IsFinished());
}

TEST_F(AnimationTest, PingPongOverTwoPhasesNeverEnds) {
  TAnimation Animation(2, 1, -1, ANIMATION_ASYNCHRON, Durations(2, 100));
  EXPECT_EQ(PhasesAt(Animation, {100, 200, 300, 400, 500}),
            (std::vector<std::uint32_t>{2, 1, 2, 1, 2}));
  EXPECT_FALSE(Animation.IsFinished());
}

TEST_F(AnimationTest, PingPongTurnsAtBothEnds) {
  TAnimation Animation(3, 1, -5, ANIMATION_ASYNCHRON, Durations(3, 100));
  EXPECT_EQ(PhasesAt(Animation, {100, 200, 300, 400, 500, 600}),
            (std::vector<std::uint32_t>{2, 3, 2, 1, 2, 3}));
}

TEST_F(AnimationTest, NothingHappensAtOrBeforeTheLastUpdate) {
  Advance(1000);
  TAnimation Animation(2, 1, 0, ANIMATION_ASYNCHRON, Durations(2, 100));
  EXPECT_EQ(PhasesAt(Animation, {500, 1000, 1099, 1100}),
            (std::vector<std::uint32_t>{1, 1, 1, 2}));
}

// After a long gap the next phase has nothing left, so the following call
// moves on again: an asynchronous animation catches up one phase per call.
TEST_F(AnimationTest, AnAsynchronousAnimationAdvancesOnePhasePerCall) {
  TAnimation Animation(4, 1, 0, ANIMATION_ASYNCHRON, Durations(4, 100));
  EXPECT_EQ(PhasesAt(Animation, {10000, 10001, 10002}), (std::vector<std::uint32_t>{2, 3, 3}));
}

TEST_F(AnimationTest, TheOvershootIsTakenFromTheNextPhase) {
  TAnimation Animation(3, 1, 0, ANIMATION_ASYNCHRON, Durations(3, 100));
  EXPECT_EQ(PhasesAt(Animation, {130, 199, 200}), (std::vector<std::uint32_t>{2, 2, 3}));
}

TEST_F(AnimationTest, PhaseDurationIsADrawAboveTheShortest) {
  SetRandom(7);  // 100 + 1 + 7 % 100
  TAnimation Animation(2, 1, 0, ANIMATION_ASYNCHRON, {{100, 200}, {100, 200}});
  EXPECT_EQ(PhasesAt(Animation, {107, 108}), (std::vector<std::uint32_t>{1, 2}));
}

TEST_F(AnimationTest, ThePhaseByteOfTheWireSetsThePhase) {
  TAnimation Animation(4, 3, 0, ANIMATION_ASYNCHRON, Durations(4, 100));
  EXPECT_EQ(Animation.GetCurrentPhase(), 3u);
  Animation.Reset(255);
  EXPECT_EQ(Animation.GetCurrentPhase(), 1u);
  SetRandom(9);  // 9 % 4 + 1
  Animation.Reset(254);
  EXPECT_EQ(Animation.GetCurrentPhase(), 2u);
  Animation.Reset(4);
  EXPECT_EQ(Animation.GetCurrentPhase(), 4u);
  Animation.Reset(0);
  EXPECT_EQ(Animation.GetCurrentPhase(), 3u);
  Animation.Reset(2);
  Animation.Reset(200);  // above the phase count: as 0
  EXPECT_EQ(Animation.GetCurrentPhase(), 3u);
}

TEST_F(AnimationTest, StartPhaseZeroStartsOnARandomPhase) {
  SetRandom(6);  // 6 % 4 + 1
  TAnimation Animation(4, 0, 0, ANIMATION_ASYNCHRON, Durations(4, 100));
  EXPECT_EQ(Animation.GetCurrentPhase(), 3u);
  SetRandom(3);
  Animation.Reset(0);
  EXPECT_EQ(Animation.GetCurrentPhase(), 4u);
}

TEST_F(AnimationTest, ResetStartsTheClockAfreshAndClearsTheEnd) {
  TAnimation Animation(2, 1, 1, ANIMATION_ASYNCHRON, Durations(2, 100));
  PhasesAt(Animation, {100, 200});
  ASSERT_TRUE(Animation.IsFinished());
  Advance(500);
  Animation.Reset(1);
  EXPECT_FALSE(Animation.IsFinished());
  EXPECT_EQ(PhasesAt(Animation, {599, 600}), (std::vector<std::uint32_t>{1, 2}));
}

TEST_F(AnimationTest, ASynchronousAnimationFollowsTheClock) {
  Advance(250);  // a cycle is 300: 250 lies in phase 3, 50 before its end
  TAnimation Animation(3, 1, 0, ANIMATION_SYNCHRON, Durations(3, 100));
  EXPECT_EQ(Animation.GetCurrentPhase(), 3u);
  EXPECT_EQ(PhasesAt(Animation, {299, 300}), (std::vector<std::uint32_t>{3, 1}));
  Animation.Reset(2);  // ignored: the clock decides
  EXPECT_EQ(Animation.GetCurrentPhase(), 3u);
}

TEST_F(AnimationTest, TwoSynchronousAnimationsShowTheSamePhaseAtEveryTick) {
  TAnimation Early(4, 1, 0, ANIMATION_SYNCHRON, {{100, 100}, {50, 50}, {200, 200}, {70, 70}});
  Advance(1234);
  TAnimation Late(4, 1, 0, ANIMATION_SYNCHRON, {{100, 100}, {50, 50}, {200, 200}, {70, 70}});
  for (std::uint32_t Time = 1234; Time < 3000; Time += 10) {
    Early.Animate(Time);
    Late.Animate(Time);
    ASSERT_EQ(Early.GetCurrentPhase(), Late.GetCurrentPhase()) << "at " << Time;
  }
}

// After a gap longer than the next phase a synchronous animation jumps to
// where the clock has it instead of catching up.
TEST_F(AnimationTest, ASynchronousAnimationBehindTheClockJumps) {
  TAnimation Animation(4, 1, 0, ANIMATION_SYNCHRON, Durations(4, 100));
  Animation.Animate(1450);  // 1450 modulo 400 lies in phase 3
  EXPECT_EQ(Animation.GetCurrentPhase(), 3u);
  EXPECT_EQ(PhasesAt(Animation, {1499, 1500}), (std::vector<std::uint32_t>{3, 4}));
}

TEST_F(AnimationTest, TheConstructorChecksItsArguments) {
  EXPECT_NE(FailureReport([] { TAnimation(3, 1, 0, ANIMATION_ASYNCHRON, Durations(2, 100)); })
                .find("FrameDurations.size() == PhaseCount"),
            std::string::npos);
  EXPECT_NE(FailureReport([] { TAnimation(3, 4, 0, ANIMATION_ASYNCHRON, Durations(3, 100)); })
                .find("In(StartPhase, 0, PhaseCount) (StartPhase: 4, PhaseCount: 3)"),
            std::string::npos);
  EXPECT_NE(FailureReport([] { TAnimation(2, 1, 0, ANIMATION_ASYNCHRON, {{200, 100}, {1, 1}}); })
                .find("PhaseDuration.first <= PhaseDuration.second"),
            std::string::npos);
}

// Ping-pong over one phase would turn to phase 0.
TEST_F(AnimationTest, APhaseOutsideTheCountFails) {
  TAnimation Animation(1, 1, -1, ANIMATION_ASYNCHRON, Durations(1, 100));
  EXPECT_NE(FailureReport([&] { Animation.Animate(100); })
                .find("Phase > 0 && Phase <= m_PhaseCount (Phase: 0, m_PhaseCount: 1)"),
            std::string::npos);
}

TEST_F(AnimationTest, ACopyRunsOnItsOwnFromItsStartPhase) {
  TAnimation Original(3, 2, 1, ANIMATION_ASYNCHRON, Durations(3, 100));
  PhasesAt(Original, {100, 200});
  ASSERT_TRUE(Original.IsFinished());
  Advance(1000);
  TAnimation Copy(Original);
  EXPECT_EQ(Copy.GetCurrentPhase(), 2u);
  EXPECT_FALSE(Copy.IsFinished());
  EXPECT_EQ(PhasesAt(Copy, {1100, 1200}), (std::vector<std::uint32_t>{3, 3}));
  EXPECT_TRUE(Copy.IsFinished());
  EXPECT_EQ(Original.GetCurrentPhase(), 3u);
}

TEST_F(AnimationTest, InstancesShareSynchronousAndCopyAsynchronousPrototypes) {
  const boost::intrusive_ptr<TAnimation> Synchronous(
      new TAnimation(2, 1, 0, ANIMATION_SYNCHRON, Durations(2, 100)));
  const boost::intrusive_ptr<TAnimation> Asynchronous(
      new TAnimation(2, 1, 0, ANIMATION_ASYNCHRON, Durations(2, 100)));
  EXPECT_EQ(TakeAnimation(Synchronous), Synchronous);
  const boost::intrusive_ptr<TAnimation> Copy = TakeAnimation(Asynchronous);
  ASSERT_NE(Copy, nullptr);
  EXPECT_NE(Copy, Asynchronous);
  EXPECT_EQ(TakeAnimation(Asynchronous, true), Asynchronous);
  EXPECT_EQ(TakeAnimation(nullptr), nullptr);
}

// When the last instance lets go, the prototype that only the table holds
// starts afresh: its end is cleared and its loops are counted anew.
TEST_F(AnimationTest, ASynchronousPrototypeRestartsWhenOnlyTheTableHoldsIt) {
  const boost::intrusive_ptr<TAnimation> Prototype(
      new TAnimation(2, 1, 1, ANIMATION_SYNCHRON, Durations(2, 100)));
  boost::intrusive_ptr<TAnimation> Instance = TakeAnimation(Prototype);
  PhasesAt(*Instance, {100, 200});
  ASSERT_TRUE(Prototype->IsFinished());
  Advance(200);
  Instance.reset();
  EXPECT_FALSE(Prototype->IsFinished());
  EXPECT_EQ(Prototype->GetCurrentPhase(), 1u);
  EXPECT_EQ(PhasesAt(*Prototype, {300, 400}), (std::vector<std::uint32_t>{2, 2}));
  EXPECT_TRUE(Prototype->IsFinished());
}

}  // namespace
