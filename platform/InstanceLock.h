#pragma once
// The single-instance mutex: an exclusive lock on a file in the runtime
// directory, released by the system when the process ends.
#include <string>

namespace platform {

// False if another process holds the lock or the lock file can't be opened.
// The lock is kept for the rest of the process's life.
bool AcquireInstanceLock(const std::string& Name);

}  // namespace platform
