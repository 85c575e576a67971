#include "world/Animation.h"

#include <cstdlib>

#include "core/Clock.h"
#include "core/Exception.h"

namespace {

std::function<std::uint32_t()>& RandomSource() {
  static std::function<std::uint32_t()> Source;
  return Source;
}

std::uint32_t Random() {
  const auto& Source = RandomSource();
  return Source ? Source() : static_cast<std::uint32_t>(std::rand());
}

std::uint32_t CurrentTick() { return static_cast<std::uint32_t>(GetProgramTime()); }

}  // namespace

void SetAnimationRandomSource(std::function<std::uint32_t()> Source) {
  RandomSource() = std::move(Source);
}

std::uint32_t TLoopFrameStrategy::NextPhase(std::uint32_t PhaseCount, std::uint32_t CurrentPhase) {
  if (CurrentPhase + 1 <= PhaseCount) return CurrentPhase + 1;
  if (m_LoopsDone < m_LoopCount - 1 || m_LoopCount == 0) {
    ++m_LoopsDone;
    return 1;
  }
  return CurrentPhase;
}

std::unique_ptr<TNextFrameStrategy> TLoopFrameStrategy::Clone() const {
  return std::make_unique<TLoopFrameStrategy>(*this);
}

std::uint32_t TPingPongFrameStrategy::NextPhase(std::uint32_t PhaseCount,
                                                std::uint32_t CurrentPhase) {
  long long Step = m_Direction == 0 ? 1 : -1;
  const long long Next = static_cast<long long>(CurrentPhase) + Step;
  if (Next < 1 || Next > PhaseCount) {
    m_Direction = 1 - m_Direction;
    Step = -Step;
  }
  return static_cast<std::uint32_t>(static_cast<long long>(CurrentPhase) + Step);
}

std::unique_ptr<TNextFrameStrategy> TPingPongFrameStrategy::Clone() const {
  return std::make_unique<TPingPongFrameStrategy>(*this);
}

TAnimation::TAnimation(std::uint32_t PhaseCount, int StartPhase, int LoopCount,
                       TAnimationType AnimationType, std::vector<TFrameDuration> FrameDurations)
    : m_PhaseCount(PhaseCount),
      m_StartPhase(StartPhase),
      m_FrameDurations(std::move(FrameDurations)),
      m_AnimationType(AnimationType) {
  Check(PhaseCount > 0, "PhaseCount > 0", {"PhaseCount", PhaseCount});
  Check(m_FrameDurations.size() == PhaseCount, "FrameDurations.size() == PhaseCount",
        {"FrameDurations.size()", static_cast<long long>(m_FrameDurations.size())},
        {"PhaseCount", PhaseCount});
  Check(StartPhase >= 0 && StartPhase <= static_cast<long long>(PhaseCount),
        "In(StartPhase, 0, PhaseCount)", {"StartPhase", StartPhase}, {"PhaseCount", PhaseCount});
  if (LoopCount < 0) {
    m_NextFrameStrategy = std::make_unique<TPingPongFrameStrategy>();
  } else {
    m_NextFrameStrategy = std::make_unique<TLoopFrameStrategy>(LoopCount);
  }
  Reset(0);
}

TAnimation::TAnimation(const TAnimation& Other)
    : m_PhaseCount(Other.m_PhaseCount),
      m_StartPhase(Other.m_StartPhase),
      m_Finished(Other.m_Finished),
      m_LastUpdate(Other.m_LastUpdate),
      m_FrameDurations(Other.m_FrameDurations),
      m_AnimationType(Other.m_AnimationType) {
  Check(Other.m_NextFrameStrategy != nullptr, "Other.m_NextFrameStrategy.get() != 0");
  m_NextFrameStrategy = Other.m_NextFrameStrategy->Clone();
  Reset(0);
}

// A fresh draw on every call, so that phases of one type don't tick in step.
std::uint32_t TAnimation::PhaseDuration(std::uint32_t Phase) const {
  Check(Phase > 0 && Phase <= m_PhaseCount, "Phase > 0 && Phase <= m_PhaseCount",
        {"Phase", Phase}, {"m_PhaseCount", m_PhaseCount});
  Check(Phase <= m_FrameDurations.size(), "Phase <= m_FrameDurations.size()", {"Phase", Phase},
        {"m_FrameDurations.size()", static_cast<long long>(m_FrameDurations.size())});
  const TFrameDuration& Duration = m_FrameDurations[Phase - 1];
  Check(Duration.first <= Duration.second, "PhaseDuration.first <= PhaseDuration.second",
        {"PhaseDuration.first", Duration.first}, {"PhaseDuration.second", Duration.second});
  if (Duration.first == Duration.second) return Duration.first;
  return Duration.first + 1 + Random() % (Duration.second - Duration.first);
}

std::uint32_t TAnimation::RandomPhase() const { return Random() % m_PhaseCount + 1; }

void TAnimation::Reset(std::uint8_t Phase) {
  if (m_AnimationType == ANIMATION_SYNCHRON) {
    Synchronise(CurrentTick());
    return;
  }
  if (Phase == 255) {
    m_CurrentPhase = 1;
  } else if (Phase == 254) {
    m_CurrentPhase = RandomPhase();
  } else if (Phase == 0 || Phase > m_PhaseCount) {
    m_CurrentPhase = m_StartPhase > 0 ? static_cast<std::uint32_t>(m_StartPhase) : RandomPhase();
  } else {
    m_CurrentPhase = Phase;
  }
  m_Finished = false;
  m_LastUpdate = CurrentTick();
  m_PhaseTimeLeft = PhaseDuration(m_CurrentPhase);
}

// Puts the phase where a clock running since time 0 would have it, so that all
// instances of a synchronous type agree. Durations are drawn afresh for the
// walk; if they come out shorter than the sum, the phase stays.
void TAnimation::Synchronise(std::uint32_t Now) {
  std::uint64_t Cycle = 0;
  for (std::uint32_t Phase = 1; Phase <= m_PhaseCount; ++Phase) Cycle += PhaseDuration(Phase);
  m_LastUpdate = Now;
  if (Cycle == 0) return;
  const std::uint64_t Remainder = Now % Cycle;
  std::uint64_t SpanEnd = 0;
  for (std::uint32_t Phase = 1; Phase <= m_PhaseCount; ++Phase) {
    SpanEnd += PhaseDuration(Phase);
    if (Remainder < SpanEnd) {
      m_CurrentPhase = Phase;
      m_PhaseTimeLeft = static_cast<std::uint32_t>(SpanEnd - Remainder);
      return;
    }
  }
}

void TAnimation::Animate(std::uint32_t Now) {
  if (Now <= m_LastUpdate || m_Finished) return;
  const std::uint32_t Elapsed = Now - m_LastUpdate;
  if (Elapsed < m_PhaseTimeLeft) {
    m_PhaseTimeLeft -= Elapsed;
    m_LastUpdate = Now;
    return;
  }
  const std::uint32_t Next = m_NextFrameStrategy->NextPhase(m_PhaseCount, m_CurrentPhase);
  if (Next == m_CurrentPhase) {
    m_Finished = true;
    m_LastUpdate = Now;
    return;
  }
  // The overshoot into the next phase is taken from it.
  const long long Rest = static_cast<long long>(PhaseDuration(Next)) + m_PhaseTimeLeft - Elapsed;
  if (Rest < 0 && m_AnimationType == ANIMATION_SYNCHRON) {
    Synchronise(Now);
    return;
  }
  m_CurrentPhase = Next;
  m_LastUpdate = Now;
  m_PhaseTimeLeft = Rest > 0 ? static_cast<std::uint32_t>(Rest) : 0;
}

void intrusive_ptr_add_ref(TAnimation* Animation) { ++Animation->m_ReferenceCount; }

// When only the type table holds a synchronous prototype again, it starts
// afresh for the next instances.
void intrusive_ptr_release(TAnimation* Animation) {
  if (--Animation->m_ReferenceCount == 0) {
    delete Animation;
    return;
  }
  if (Animation->m_ReferenceCount == 1 && Animation->m_AnimationType == ANIMATION_SYNCHRON) {
    Animation->Reset(0);
    Animation->m_Finished = false;
    Animation->m_NextFrameStrategy->Reset();
  }
}

boost::intrusive_ptr<TAnimation> TakeAnimation(const boost::intrusive_ptr<TAnimation>& Prototype,
                                               bool Share) {
  if (Prototype == nullptr) return nullptr;
  if (Share || Prototype->GetAnimationType() == ANIMATION_SYNCHRON) return Prototype;
  return boost::intrusive_ptr<TAnimation>(new TAnimation(*Prototype));
}
