#include "platform/CrashSignals.h"

#include <signal.h>
#include <ucontext.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace platform {

namespace {

// Room for the report's formatting and file output, not just the handler.
constexpr std::size_t ALTERNATE_STACK_SIZE = 256 * 1024;

struct TCrashSignals {
  TCrashHandler Handler = nullptr;
  std::vector<std::byte> Stack;
  volatile sig_atomic_t Entered = 0;
  volatile sig_atomic_t SentSignal = 0;
};

TCrashSignals& Crash() {
  static TCrashSignals State;
  return State;
}

bool IsWriteFault(int Signal, const siginfo_t* Info, const void* Context) {
#if defined(__x86_64__) && defined(REG_ERR)
  // Bit 1 of the page-fault error code marks a write.
  const auto* User = static_cast<const ucontext_t*>(Context);
  return Signal == SIGSEGV && Info->si_code > 0 &&
         (User->uc_mcontext.gregs[REG_ERR] & 2) != 0;
#else
  static_cast<void>(Signal);
  static_cast<void>(Info);
  static_cast<void>(Context);
  return false;
#endif
}

// Sent by another process: no instruction of ours faulted, and the loop may
// be anywhere (inside the allocator, say), so the report waits for the loop.
bool SentByAnotherProcess(const siginfo_t* Info) {
  return Info->si_code == SI_USER && Info->si_pid != getpid();
}

void OnCrashSignal(int Signal, siginfo_t* Info, void* Context) {
  TCrashSignals& State = Crash();
  if (SentByAnotherProcess(Info)) {
    State.SentSignal = Signal;
    return;
  }
  // A fault inside the report itself: nothing more can be done safely.
  if (State.Entered != 0) _exit(1);
  State.Entered = 1;
  // Only a fault raised by the kernel carries an address.
  const void* Address = Info->si_code > 0 ? Info->si_addr : nullptr;
  State.Handler(Signal, Address, IsWriteFault(Signal, Info, Context));
  // Returning would run the faulting instruction again.
  _exit(1);
}

}  // namespace

int TakeSentCrashSignal() {
  const int Signal = Crash().SentSignal;
  Crash().SentSignal = 0;
  return Signal;
}

bool InstallCrashSignals(TCrashHandler Handler) {
  TCrashSignals& State = Crash();
  State.Handler = Handler;
  if (State.Stack.empty())
    State.Stack.resize(std::max<std::size_t>(ALTERNATE_STACK_SIZE, SIGSTKSZ));

  stack_t Alternate{};
  Alternate.ss_sp = State.Stack.data();
  Alternate.ss_size = State.Stack.size();
  if (sigaltstack(&Alternate, nullptr) != 0) return false;

  struct sigaction Action {};
  Action.sa_sigaction = OnCrashSignal;
  // SA_NODEFER lets a fault inside the report reach the handler's exit
  // instead of killing the process with the signal.
  Action.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_NODEFER;
  sigemptyset(&Action.sa_mask);
  return sigaction(SIGSEGV, &Action, nullptr) == 0 && sigaction(SIGBUS, &Action, nullptr) == 0;
}

}  // namespace platform
