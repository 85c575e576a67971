#include "core/AtomicFile.h"

#include <filesystem>
#include <system_error>

#include "core/Exception.h"
#include "platform/Files.h"

namespace fs = std::filesystem;

namespace {

void Install(const std::string& Temporary, const std::string& Path) {
  if (!platform::SyncFile(Temporary)) ThrowException("failed to write file", {{"FileName", Temporary}});
  std::error_code Error;
  fs::rename(Temporary, Path, Error);
  if (Error) ThrowException("failed to write file", {{"FileName", Path}});
  // The rename itself reaches the disk with the directory. Some file systems
  // refuse to sync a directory; the file is complete either way.
  platform::SyncFile(fs::path(Path).parent_path().string());
}

}  // namespace

void WriteFileAtomically(const std::string& Path,
                         const std::function<void(const std::string& TemporaryPath)>& Write) {
  const std::string Temporary = Path + ".new";
  try {
    Write(Temporary);
    Install(Temporary, Path);
  } catch (...) {
    // Only a file of our own making is removed, never whatever blocked the name.
    std::error_code Error;
    if (fs::is_regular_file(fs::symlink_status(Temporary, Error))) fs::remove(Temporary, Error);
    throw;
  }
}
