#pragma once
// The Adler-32 checksum of every packet.
#include <cstdint>

std::uint32_t Adler32(const std::uint8_t* Data, int Length);
