#pragma once
// The script reader and the configuration loader under arbitrary bytes.
#include <cstddef>
#include <cstdint>

struct TScriptOutcome {
  int Tokens;   // tokens up to the end of the file; -1 if the script failed
  bool Loaded;  // the bytes were taken as a configuration file
};

// The bytes become Kelmo.cfg in a user directory of the process's own (under
// $TMPDIR, removed at exit). They are read token by token, then loaded as the
// configuration. A file that loads must save, load again, and save the same
// bytes; anything else ends the process as a finding.
TScriptOutcome ReadScript(const std::uint8_t* Data, std::size_t Size);
