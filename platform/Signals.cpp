#include "platform/Signals.h"

#include <csignal>

namespace platform {

namespace {
volatile std::sig_atomic_t CloseRequested = 0;

void OnCloseSignal(int) { CloseRequested = 1; }
}  // namespace

void InstallCloseSignals() {
  struct sigaction Action {};
  Action.sa_handler = OnCloseSignal;
  sigemptyset(&Action.sa_mask);
  sigaction(SIGTERM, &Action, nullptr);
  sigaction(SIGINT, &Action, nullptr);
}

bool TakeCloseRequest() {
  if (CloseRequested == 0) return false;
  CloseRequested = 0;
  return true;
}

}  // namespace platform
