#include "platform/Files.h"

#include <fcntl.h>
#include <unistd.h>

namespace platform {

bool SyncFile(const std::string& Path) {
  const int Descriptor = open(Path.c_str(), O_RDONLY | O_CLOEXEC);
  if (Descriptor < 0) return false;
  const bool Synced = fsync(Descriptor) == 0;
  close(Descriptor);
  return Synced;
}

}  // namespace platform
