#pragma once
// The client's side of the wire, written for the tests from the wire layout
// alone, so that nothing of the server's framing is trusted by its own tests:
// packet builders, a packet opener, the login blocks, and a raw socket client.
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "net/Checksum.h"
#include "net/LargeNumber.h"
#include "net/Xtea.h"
#include "platform/AsyncSocket.h"

namespace testing_server {

using TBytes = std::vector<std::uint8_t>;
using TSessionKey = std::array<std::uint8_t, 16>;

// Appends little-endian fields.
class TByteWriter {
 public:
  TByteWriter& U8(std::uint32_t Value) {
    m_Bytes.push_back(static_cast<std::uint8_t>(Value));
    return *this;
  }
  TByteWriter& U16(std::uint32_t Value) { return U8(Value).U8(Value >> 8); }
  TByteWriter& U32(std::uint32_t Value) { return U16(Value & 0xFFFF).U16(Value >> 16); }
  TByteWriter& String(const std::string& Text) {
    U16(static_cast<std::uint32_t>(Text.size()));
    m_Bytes.insert(m_Bytes.end(), Text.begin(), Text.end());
    return *this;
  }
  TByteWriter& Raw(std::span<const std::uint8_t> Bytes) {
    m_Bytes.insert(m_Bytes.end(), Bytes.begin(), Bytes.end());
    return *this;
  }
  const TBytes& Bytes() const { return m_Bytes; }

 private:
  TBytes m_Bytes;
};

inline std::uint32_t LoadU16(std::span<const std::uint8_t> Bytes, std::size_t At) {
  return Bytes[At] | Bytes[At + 1] << 8;
}
inline std::uint32_t LoadU32(std::span<const std::uint8_t> Bytes, std::size_t At) {
  return LoadU16(Bytes, At) | LoadU16(Bytes, At + 2) << 16;
}
inline void StoreU32(TBytes& Bytes, std::size_t At, std::uint32_t Value) {
  for (int I = 0; I < 4; ++I) Bytes[At + I] = static_cast<std::uint8_t>(Value >> (8 * I));
}

// A login packet: u16 size, Adler-32 of the payload, payload.
inline TBytes PlainPacket(std::span<const std::uint8_t> Payload) {
  TByteWriter Packet;
  Packet.U16(static_cast<std::uint32_t>(Payload.size() + 4));
  Packet.U32(Adler32(Payload.data(), static_cast<int>(Payload.size())));
  return Packet.Raw(Payload).Bytes();
}

// Any later packet: u16 size, Adler-32, then the enciphered payload length,
// payload and padding, in 8-byte blocks.
inline TBytes EncipheredPacket(std::span<const std::uint8_t> Payload, const TXTEASymmetricKey& Key,
                               std::uint8_t Padding = 0x5A) {
  TByteWriter Inner;
  Inner.U16(static_cast<std::uint32_t>(Payload.size())).Raw(Payload);
  TBytes Blocks = Inner.Bytes();
  while (Blocks.size() % 8 != 0) Blocks.push_back(Padding);
  for (std::size_t At = 0; At < Blocks.size(); At += 8) EncipherBlock(&Blocks[At], Key);
  TByteWriter Packet;
  Packet.U16(static_cast<std::uint32_t>(Blocks.size() + 4));
  Packet.U32(Adler32(Blocks.data(), static_cast<int>(Blocks.size())));
  return Packet.Raw(Blocks).Bytes();
}

// Checks a packet of the server and returns its payload; Key null for the
// plain first packet of a game connection.
inline TBytes OpenServerPacket(std::span<const std::uint8_t> Packet, const TXTEASymmetricKey* Key) {
  EXPECT_GE(Packet.size(), 14u);
  EXPECT_EQ(LoadU16(Packet, 0), Packet.size() - 2);
  EXPECT_EQ((Packet.size() - 6) % 8, 0u);
  EXPECT_EQ(LoadU32(Packet, 2), Adler32(Packet.data() + 6, static_cast<int>(Packet.size() - 6)));
  TBytes Plain(Packet.begin() + 6, Packet.end());
  if (Key != nullptr)
    for (std::size_t At = 0; At < Plain.size(); At += 8) DecipherBlock(&Plain[At], *Key);
  const std::size_t Length = LoadU16(Plain, 0);
  EXPECT_LE(Length + 2, Plain.size());
  EXPECT_LT(Plain.size() - Length - 2, 8u) << "padding of more than one block";
  return {Plain.begin() + 2, Plain.begin() + 2 + std::min(Length, Plain.size() - 2)};
}

// The test key's modulus, from the key file that the server reads too.
inline TLargeNumber TestModulus() {
  std::ifstream Input(std::filesystem::path(KELMO_SERVER_TEST_DIR) / "test-rsa-key.txt");
  std::string Name;
  std::string Value;
  Input >> Name >> Value;
  return TLargeNumber::FromDecimal(Value);
}

inline std::filesystem::path TestKeyFile() {
  return std::filesystem::path(KELMO_SERVER_TEST_DIR) / "test-rsa-key.txt";
}

// Textbook RSA with the public exponent, as the client does it.
inline TBytes EncipherLoginBlock(const TBytes& Plain) {
  const TLargeNumber Modulus = TestModulus();
  TBytes Cipher(128);
  PowMod(TLargeNumber::FromBigEndian(Plain), TLargeNumber(65537), Modulus).ToBigEndian(Cipher);
  return Cipher;
}

// The 128 bytes of a block: 0, session key, the fields, then filler.
inline TBytes LoginBlock(const TSessionKey& SessionKey, const TBytes& Fields, std::uint8_t First = 0) {
  TByteWriter Block;
  Block.U8(First).Raw(SessionKey).Raw(Fields);
  TBytes Plain = Block.Bytes();
  for (std::uint8_t Filler = 0xA0; Plain.size() < 128; ++Filler) Plain.push_back(Filler);
  return Plain;
}

struct TAdminLogin {
  TSessionKey SessionKey{};
  std::string Account;
  std::string Password;
  TBytes SystemInfo;  // 47 bytes, or the single marker byte 255
  std::uint8_t First = 0;
};

inline TBytes SystemInfo() {
  TBytes Info(47);
  for (std::size_t I = 0; I < Info.size(); ++I) Info[I] = static_cast<std::uint8_t>(3 * I);
  return Info;
}

inline TSessionKey MakeSessionKey(std::uint8_t First) {
  TSessionKey Key;
  for (std::size_t I = 0; I < Key.size(); ++I) Key[I] = static_cast<std::uint8_t>(First + I);
  return Key;
}

inline TXTEASymmetricKey XteaKey(const TSessionKey& SessionKey) {
  TXTEASymmetricKey Key;
  Key.Set(SessionKey.data());
  return Key;
}

inline TBytes LoginAdminPayload(const TAdminLogin& Login) {
  TByteWriter Fields;
  Fields.String(Login.Account).String(Login.Password).Raw(Login.SystemInfo);
  TByteWriter Payload;
  Payload.U8(1).U16(2).U16(1053).U32(1053).U32(0x11111111).U32(0x22222222).U32(0x33333333).U8(0);
  return Payload.Raw(EncipherLoginBlock(LoginBlock(Login.SessionKey, Fields.Bytes(), Login.First))).Bytes();
}

struct TGameLogin {
  TSessionKey SessionKey{};
  std::uint8_t Gamemaster = 0;
  std::string Account;
  std::string Character;
  std::string Password;
  std::uint32_t ChallengeTime = 0;
  std::uint8_t ChallengeValue = 0;
};

inline TBytes LoginGamePayload(const TGameLogin& Login) {
  TByteWriter Fields;
  Fields.U8(Login.Gamemaster).String(Login.Account).String(Login.Character).String(Login.Password);
  Fields.U32(Login.ChallengeTime).U8(Login.ChallengeValue);
  TByteWriter Payload;
  Payload.U8(10).U16(2).U16(1053).U32(1053).U8(0);
  return Payload.Raw(EncipherLoginBlock(LoginBlock(Login.SessionKey, Fields.Bytes()))).Bytes();
}

// A raw client: what the server sends piles up in Inbox.
class CTestClient : public CAsyncSocket {
 public:
  bool ConnectTo(std::uint16_t Port) { return Create() == 0 && Connect("127.0.0.1", Port) == 0; }
  void OnConnect(int ErrorCode) override { Connected = ErrorCode == 0; }
  void OnReceive(int) override { ReadAll(); }
  void OnClose(int) override {
    ReadAll();
    Closed = true;
  }
  void SendBytes(const TBytes& Bytes) {
    ASSERT_EQ(Send(Bytes.data(), static_cast<int>(Bytes.size())), static_cast<int>(Bytes.size()));
  }
  // One whole packet off the front of the inbox, if there is one.
  std::optional<TBytes> TakePacket() {
    if (Inbox.size() < 2 || Inbox.size() < 2 + LoadU16(Inbox, 0)) return std::nullopt;
    const std::size_t Length = 2 + LoadU16(Inbox, 0);
    TBytes Packet(Inbox.begin(), Inbox.begin() + static_cast<std::ptrdiff_t>(Length));
    Inbox.erase(Inbox.begin(), Inbox.begin() + static_cast<std::ptrdiff_t>(Length));
    return Packet;
  }

  TBytes Inbox;
  bool Connected = false;
  bool Closed = false;

 private:
  void ReadAll() {
    std::uint8_t Chunk[4096];
    for (int Count; (Count = Receive(Chunk, sizeof Chunk)) > 0;)
      Inbox.insert(Inbox.end(), Chunk, Chunk + Count);
  }
};

}  // namespace testing_server
