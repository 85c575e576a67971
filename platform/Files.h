#pragma once
// What the C++ library doesn't say about files.
#include <string>

namespace platform {

// Forces the file's contents to the disk; false if that failed.
bool SyncFile(const std::string& Path);

}  // namespace platform
