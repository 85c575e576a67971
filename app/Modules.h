#pragma once
// Bringing the game's modules up and down, always in the same order.

void InitModules(bool Gamemaster);
void ShutdownModules();
