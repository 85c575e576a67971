#pragma once
// The receive path under arbitrary server bytes.
#include <cstddef>
#include <cstdint>

// Input: byte 0 bit 0 set reads the stream without the cipher, as on the first
// packet of a game connection; byte 1 is the size of the pieces in which the
// stream arrives (0: all at once); the rest is the stream. Every command's
// fields are read by its type (type % 9: none, u8, u16, u32, u64, string,
// new string, double, three bytes). Returns the number of commands read, or
// -1 if the stream failed. The session key is the bytes 0 to 15.
int ReadPacketStream(const std::uint8_t* Data, std::size_t Size);
