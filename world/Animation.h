#pragma once
// The phase clock of every picture with more than one phase. The object type
// tables hold one prototype per animated type; instances share a synchronous
// prototype, since all of them show the same phase anyway, and work on their
// own copy of an asynchronous one.
#include <boost/intrusive_ptr.hpp>
#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

enum TAnimationType : int {
  ANIMATION_ASYNCHRON = 0,
  ANIMATION_SYNCHRON = 1,
};

// The rule that picks the phase after the current one. Answering the current
// phase ends the animation.
class TNextFrameStrategy {
 public:
  virtual ~TNextFrameStrategy() = default;
  virtual std::uint32_t NextPhase(std::uint32_t PhaseCount, std::uint32_t CurrentPhase) = 0;
  virtual std::unique_ptr<TNextFrameStrategy> Clone() const = 0;
  virtual void Reset() = 0;
};

// 1, 2, ..., PhaseCount, then again from 1, LoopCount times (0: for ever).
class TLoopFrameStrategy : public TNextFrameStrategy {
 public:
  explicit TLoopFrameStrategy(int LoopCount) : m_LoopCount(LoopCount) {}
  std::uint32_t NextPhase(std::uint32_t PhaseCount, std::uint32_t CurrentPhase) override;
  std::unique_ptr<TNextFrameStrategy> Clone() const override;
  void Reset() override { m_LoopsDone = 0; }

 private:
  int m_LoopCount;
  int m_LoopsDone = 0;
};

// 1, 2, ..., PhaseCount, PhaseCount - 1, ..., 1, 2, ... for ever.
class TPingPongFrameStrategy : public TNextFrameStrategy {
 public:
  std::uint32_t NextPhase(std::uint32_t PhaseCount, std::uint32_t CurrentPhase) override;
  std::unique_ptr<TNextFrameStrategy> Clone() const override;
  void Reset() override { m_Direction = 0; }

 private:
  int m_Direction = 0;  // 0 forward, 1 backward
};

// Shortest and longest duration of a phase, in milliseconds.
using TFrameDuration = std::pair<std::uint32_t, std::uint32_t>;

class TAnimation {
 public:
  // A negative LoopCount plays ping-pong. StartPhase 0 starts on a random phase.
  TAnimation(std::uint32_t PhaseCount, int StartPhase, int LoopCount, TAnimationType AnimationType,
             std::vector<TFrameDuration> FrameDurations);
  // A fresh clock on the same pictures: the strategy is cloned, the phase reset.
  TAnimation(const TAnimation& Other);
  TAnimation& operator=(const TAnimation&) = delete;

  // The phase byte of the wire: 255 phase 1, 254 a random phase, 0 or a
  // value above the phase count the start phase, others that phase. A
  // synchronous animation ignores it and follows the clock.
  void Reset(std::uint8_t Phase);
  // Advances to the program time Now, by at most one phase.
  void Animate(std::uint32_t Now);

  std::uint32_t GetPhaseCount() const { return m_PhaseCount; }
  std::uint32_t GetCurrentPhase() const { return m_CurrentPhase; }
  bool IsFinished() const { return m_Finished; }
  TAnimationType GetAnimationType() const { return m_AnimationType; }

 private:
  friend void intrusive_ptr_add_ref(TAnimation* Animation);
  friend void intrusive_ptr_release(TAnimation* Animation);

  std::uint32_t PhaseDuration(std::uint32_t Phase) const;
  std::uint32_t RandomPhase() const;
  void Synchronise(std::uint32_t Now);

  std::uint32_t m_PhaseCount;
  int m_StartPhase;
  std::uint32_t m_CurrentPhase = 1;
  std::uint32_t m_PhaseTimeLeft = 0;
  bool m_Finished = false;
  std::uint32_t m_LastUpdate = 0;
  std::vector<TFrameDuration> m_FrameDurations;
  std::unique_ptr<TNextFrameStrategy> m_NextFrameStrategy;
  TAnimationType m_AnimationType;
  int m_ReferenceCount = 0;
};

// The animation that a new instance of a type takes from the type's
// prototype: none, the shared prototype if it is synchronous or Share is
// set, else a copy.
boost::intrusive_ptr<TAnimation> TakeAnimation(const boost::intrusive_ptr<TAnimation>& Prototype,
                                               bool Share = false);

// The source of chance for durations and random phases; tests install a fixed
// one. An empty function restores the C runtime's generator.
void SetAnimationRandomSource(std::function<std::uint32_t()> Source);
