#include "platform/InstanceLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cstdlib>

namespace platform {

namespace {

std::string RuntimeDirectory() {
  const char* Runtime = std::getenv("XDG_RUNTIME_DIR");
  if (Runtime != nullptr && Runtime[0] == '/') return Runtime;
  return "/tmp";
}

}  // namespace

bool AcquireInstanceLock(const std::string& Name) {
  const std::string Path = RuntimeDirectory() + "/" + Name + ".lock";
  const int Descriptor = open(Path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  if (Descriptor < 0) return false;
  if (flock(Descriptor, LOCK_EX | LOCK_NB) != 0) {
    close(Descriptor);
    return false;
  }
  return true;  // the descriptor stays open: the lock lives as long as the process
}

}  // namespace platform
