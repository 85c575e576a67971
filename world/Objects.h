#pragma once
// Object types. Until the type file reader exists, loading only makes sure
// that Kelmo.dat is there.

// Program error 1 if Kelmo.dat is missing.
void InitObjects();
void ExitObjects();
