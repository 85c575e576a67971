#include "tools/server/Framing.h"

#include <algorithm>

#include "core/Exception.h"
#include "net/Checksum.h"

namespace server {

namespace {

constexpr int SIZE_FIELD = 2;
constexpr int CHECKSUM_END = 6;   // the checksum covers everything from here
constexpr int PAYLOAD_START = 8;  // behind the payload length of a framed packet

int LoadU16(std::span<const std::uint8_t> Bytes, int At) { return Bytes[At] | Bytes[At + 1] << 8; }

std::uint32_t LoadU32(std::span<const std::uint8_t> Bytes, int At) {
  return static_cast<std::uint32_t>(LoadU16(Bytes, At)) | static_cast<std::uint32_t>(LoadU16(Bytes, At + 2))
                                                              << 16;
}

void StoreU16(std::vector<std::uint8_t>& Bytes, int At, int Value) {
  Bytes[At] = static_cast<std::uint8_t>(Value);
  Bytes[At + 1] = static_cast<std::uint8_t>(Value >> 8);
}

void StoreU32(std::vector<std::uint8_t>& Bytes, int At, std::uint32_t Value) {
  StoreU16(Bytes, At, static_cast<int>(Value & 0xFFFF));
  StoreU16(Bytes, At + 2, static_cast<int>(Value >> 16));
}

void CheckChecksum(std::span<const std::uint8_t> Packet, int From) {
  const std::uint32_t Sent = LoadU32(Packet, SIZE_FIELD);
  const std::uint32_t Computed = Adler32(Packet.data() + From, static_cast<int>(Packet.size()) - From);
  Check(Sent == Computed, "checksum is not correct", {"sent", Sent}, {"computed", Computed});
}

}  // namespace

std::vector<std::uint8_t> FramePacket(std::span<const std::uint8_t> Payload, const TXTEASymmetricKey* Key,
                                      TRandom& Random) {
  const int PayloadLength = static_cast<int>(Payload.size());
  int Length = PAYLOAD_START + PayloadLength;
  while ((Length - CHECKSUM_END) % CIPHER_BLOCK != 0) ++Length;
  Check(Length <= MAX_SERVER_PACKET, "packet does not fit the client's receive buffer", {"Length", Length});
  std::vector<std::uint8_t> Packet(Length);
  StoreU16(Packet, 0, Length - SIZE_FIELD);
  StoreU16(Packet, CHECKSUM_END, PayloadLength);
  std::copy(Payload.begin(), Payload.end(), Packet.begin() + PAYLOAD_START);
  for (int At = PAYLOAD_START + PayloadLength; At < Length; ++At)
    Packet[At] = static_cast<std::uint8_t>(Random());
  if (Key != nullptr)
    for (int At = CHECKSUM_END; At < Length; At += CIPHER_BLOCK) EncipherBlock(&Packet[At], *Key);
  StoreU32(Packet, SIZE_FIELD, Adler32(&Packet[CHECKSUM_END], Length - CHECKSUM_END));
  return Packet;
}

void TPacketAssembler::Append(std::span<const std::uint8_t> Bytes) {
  m_Pending.insert(m_Pending.end(), Bytes.begin(), Bytes.end());
}

std::optional<std::vector<std::uint8_t>> TPacketAssembler::Next() {
  if (m_Pending.size() < SIZE_FIELD) return std::nullopt;
  const int Length = SIZE_FIELD + LoadU16(m_Pending, 0);
  Check(Length <= MAX_CLIENT_PACKET, "packet is larger than the client's send buffer", {"Length", Length});
  if (static_cast<int>(m_Pending.size()) < Length) return std::nullopt;
  std::vector<std::uint8_t> Packet(m_Pending.begin(), m_Pending.begin() + Length);
  m_Pending.erase(m_Pending.begin(), m_Pending.begin() + Length);
  return Packet;
}

std::vector<std::uint8_t> OpenPlainPacket(std::span<const std::uint8_t> Packet) {
  const int Size = LoadU16(Packet, 0);
  Check(Size > CHECKSUM_END - SIZE_FIELD, "packet holds no command", {"PacketSize", Size});
  CheckChecksum(Packet, CHECKSUM_END);
  return {Packet.begin() + CHECKSUM_END, Packet.end()};
}

std::vector<std::uint8_t> OpenEncipheredPacket(std::span<const std::uint8_t> Packet,
                                               const TXTEASymmetricKey& Key) {
  const int Size = LoadU16(Packet, 0);
  Check(Size >= 12, "packet size is too small even for one encrypted block", {"PacketSize", Size});
  Check((Size - 4) % CIPHER_BLOCK == 0, "packet size does not fit to symmetric encryption",
        {"PacketSize", Size});
  CheckChecksum(Packet, CHECKSUM_END);
  std::vector<std::uint8_t> Plain(Packet.begin(), Packet.end());
  for (std::size_t At = CHECKSUM_END; At < Plain.size(); At += CIPHER_BLOCK) DecipherBlock(&Plain[At], Key);
  const int PayloadLength = LoadU16(Plain, CHECKSUM_END);
  const int Room = static_cast<int>(Plain.size()) - PAYLOAD_START;
  Check(PayloadLength <= Room, "payload length exceeds the packet", {"PayloadLength", PayloadLength},
        {"Room", Room});
  Check(Room - PayloadLength < CIPHER_BLOCK, "padding is longer than one block",
        {"PayloadLength", PayloadLength}, {"Room", Room});
  Check(PayloadLength > 0, "packet holds no command", {"PayloadLength", PayloadLength});
  return {Plain.begin() + PAYLOAD_START, Plain.begin() + PAYLOAD_START + PayloadLength};
}

}  // namespace server
