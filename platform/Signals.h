#pragma once
// SIGTERM and SIGINT become a close request that the loop picks up.

namespace platform {

void InstallCloseSignals();
// True once per received signal.
bool TakeCloseRequest();

}  // namespace platform
