#pragma once
// What the readers of the player and session commands share among their files.
#include "world/Map.h"

// A u16 object type and what follows it on the wire.
TObject ReadObject();

// Each file's readers, installed by InstallPlayerMessageReaders.
void InstallTradeMessageReaders();
void InstallChannelMessageReaders();
void InstallListMessageReaders();
void InstallMarketMessageReaders();
