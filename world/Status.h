#pragma once
// The player's status. For now it holds the gamemaster flag of the command line.

void InitStatus(bool Gamemaster);
void ExitStatus();
bool IsGamemaster();
