#pragma once
// Packets as this server writes and reads them.
//
// Server to client: u16 size, u32 Adler-32 over everything behind it, then in
// whole 8-byte blocks the u16 payload length, the payload and random padding.
// The blocks are enciphered with XTEA, except in the first packet on a game
// connection, which is sent plain in the same layout.
//
// Client to server: the login command comes plain as u16 size, u32 Adler-32
// over the payload, payload. Every later packet is enciphered as above and
// holds exactly one command.
#include <cstdint>
#include <optional>
#include <random>
#include <span>
#include <vector>

#include "net/Xtea.h"

namespace server {

using TRandom = std::mt19937;

// The client's send buffer holds a whole packet of its own, its receive
// buffer a whole packet of ours.
constexpr int MAX_CLIENT_PACKET = 0x800;
constexpr int MAX_SERVER_PACKET = 0x600E;
constexpr int CIPHER_BLOCK = 8;

// Null Key gives the plain first packet of a game connection.
std::vector<std::uint8_t> FramePacket(std::span<const std::uint8_t> Payload, const TXTEASymmetricKey* Key,
                                      TRandom& Random);

// Collects the bytes of one connection and cuts them into packets.
class TPacketAssembler {
 public:
  void Append(std::span<const std::uint8_t> Bytes);
  // The next whole packet with its size field, if one has arrived. A size
  // beyond the client's send buffer fails as soon as it is seen.
  std::optional<std::vector<std::uint8_t>> Next();

 private:
  std::vector<std::uint8_t> m_Pending;
};

// Check a client packet and return its payload.
std::vector<std::uint8_t> OpenPlainPacket(std::span<const std::uint8_t> Packet);
std::vector<std::uint8_t> OpenEncipheredPacket(std::span<const std::uint8_t> Packet,
                                               const TXTEASymmetricKey& Key);

}  // namespace server
