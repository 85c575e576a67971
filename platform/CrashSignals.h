#pragma once
// Crash signals (SIGSEGV, SIGBUS) end in a report rather than a silent death.

namespace platform {

// Runs inside the signal handler, on an alternate stack, so that a stack
// overflow can still be reported. Address is null when the signal was sent
// rather than caused by a fault. Write is false where the platform can't tell
// a write from a read. The process ends with exit code 1 if the handler
// returns, and at once if a second crash signal arrives inside it.
using TCrashHandler = void (*)(int Signal, const void* Address, bool Write);

// Installs the handler for SIGSEGV and SIGBUS of the calling thread (the pump
// thread). False if the platform refused the alternate stack or a signal.
[[nodiscard]] bool InstallCrashSignals(TCrashHandler Handler);

// A crash signal sent by another process is not handled inside the signal
// handler: the loop takes it here (0 if none came) and reports it itself.
int TakeSentCrashSignal();

}  // namespace platform
