#pragma once
// Packets as the server writes them, built from the wire layout with nothing
// of the client's framing code: u16 size, u32 Adler-32 over the rest, then the
// u16 payload length, the payload and the padding, enciphered block by block.
#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <vector>

#include "net/Checksum.h"
#include "net/Xtea.h"

namespace testing_net {

inline void PutU16(std::vector<std::uint8_t>& Bytes, std::size_t At, std::uint32_t Value) {
  Bytes[At] = static_cast<std::uint8_t>(Value);
  Bytes[At + 1] = static_cast<std::uint8_t>(Value >> 8);
}

inline void PutU32(std::vector<std::uint8_t>& Bytes, std::size_t At, std::uint32_t Value) {
  PutU16(Bytes, At, Value & 0xFFFF);
  PutU16(Bytes, At + 2, Value >> 16);
}

inline std::uint32_t GetU16(std::span<const std::uint8_t> Bytes, std::size_t At) {
  return Bytes[At] | Bytes[At + 1] << 8;
}

inline std::uint32_t GetU32(std::span<const std::uint8_t> Bytes, std::size_t At) {
  return GetU16(Bytes, At) | GetU16(Bytes, At + 2) << 16;
}

// Writes the size and the checksum over what follows them.
inline void Seal(std::vector<std::uint8_t>& Packet) {
  PutU16(Packet, 0, static_cast<std::uint32_t>(Packet.size() - 2));
  PutU32(Packet, 2, Adler32(Packet.data() + 6, static_cast<int>(Packet.size() - 6)));
}

// One packet with the payload; Key null gives a plain packet. Padding bytes
// repeat PaddingByte, so a test can make them look like commands.
inline std::vector<std::uint8_t> ServerPacket(std::span<const std::uint8_t> Payload,
                                              const TXTEASymmetricKey* Key,
                                              std::uint8_t PaddingByte = 0xEE) {
  std::size_t Length = 8 + Payload.size();
  while ((Length - 6) % 8 != 0) ++Length;
  std::vector<std::uint8_t> Packet(Length, PaddingByte);
  PutU16(Packet, 6, static_cast<std::uint32_t>(Payload.size()));
  std::copy(Payload.begin(), Payload.end(), Packet.begin() + 8);
  if (Key != nullptr)
    for (std::size_t Offset = 6; Offset < Length; Offset += 8) EncipherBlock(&Packet[Offset], *Key);
  Seal(Packet);
  return Packet;
}

inline std::vector<std::uint8_t> Joined(std::initializer_list<std::vector<std::uint8_t>> Pieces) {
  std::vector<std::uint8_t> All;
  for (const auto& Piece : Pieces) All.insert(All.end(), Piece.begin(), Piece.end());
  return All;
}

}  // namespace testing_net
