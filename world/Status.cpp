#include "world/Status.h"

namespace {
bool Gamemaster = false;
}

void InitStatus(bool GamemasterFlag) { Gamemaster = GamemasterFlag; }
void ExitStatus() { Gamemaster = false; }
bool IsGamemaster() { return Gamemaster; }
