#pragma once
// Replacing a file without ever leaving it half-written.
#include <functional>
#include <string>

// Write creates and closes the file at the path it is given: a temporary
// beside Path (Path + ".new"). That file is forced to the disk and renamed
// over Path in one step. If Write throws or the file can't be made durable,
// the temporary goes, Path keeps its old contents, and the failure passes on
// ("failed to write file" with the file name for the steps of this function).
void WriteFileAtomically(const std::string& Path,
                         const std::function<void(const std::string& TemporaryPath)>& Write);
