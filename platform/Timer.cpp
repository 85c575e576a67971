#include "platform/Timer.h"

namespace platform {

CPeriodicTimer::CPeriodicTimer(std::chrono::milliseconds Period)
    : m_Period(std::chrono::duration_cast<std::chrono::nanoseconds>(Period).count()) {}

bool CPeriodicTimer::TakeTick(std::int64_t Now) {
  if (m_Next < 0) m_Next = Now + m_Period;
  if (Now < m_Next) return false;
  m_Next += m_Period;
  if (m_Next <= Now) m_Next = Now + m_Period;
  return true;
}

}  // namespace platform
