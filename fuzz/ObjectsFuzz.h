#pragma once
// The object type loader under arbitrary bytes.
#include <cstddef>
#include <cstdint>

// The bytes become a type file in a directory of the process's own (under
// $TMPDIR, removed at exit) and are loaded. A file that loads must answer the
// questions of every type in its tables: the picture's first and last sprite
// and the pattern of an instance. Returns whether the file loaded; anything
// other than a clean failure ends the process as a finding.
bool LoadObjectBytes(const std::uint8_t* Data, std::size_t Size);
