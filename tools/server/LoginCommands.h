#pragma once
// The two login commands that a client sends plain: CLOGINADMIN to the login
// server, CLOGINGAME to the game server. Each carries an RSA block with the
// session key and the account data.
#include <array>
#include <cstdint>
#include <span>
#include <string>

#include "tools/server/RsaKey.h"
#include "tools/server/ServerLog.h"

namespace server {

constexpr std::uint8_t CLOGINADMIN = 1;
constexpr std::uint8_t CLOGINGAME = 10;
constexpr int SESSION_KEY_SIZE = 16;

struct TLoginRequest {
  TCommandRecord Record;
  std::uint16_t Platform = 0;
  std::uint16_t ProtocolVersion = 0;
  std::uint32_t ClientVersion = 0;
  std::uint8_t Reserved = 0;
  std::array<std::uint8_t, SESSION_KEY_SIZE> SessionKey{};
  std::uint8_t Gamemaster = 0;
  std::string Account;
  std::string Password;
  std::string Character;
  std::uint32_t ChallengeTime = 0;
  std::uint8_t ChallengeValue = 0;
};

// Decoding fails on a payload of the wrong size or type, and on a block whose
// first byte is not 0. Everything else read is in the request and its record.
TLoginRequest DecodeLoginAdmin(std::span<const std::uint8_t> Payload, const TRsaPrivateKey& Key);
TLoginRequest DecodeLoginGame(std::span<const std::uint8_t> Payload, const TRsaPrivateKey& Key);

// Fails on a constant of the protocol that differs, or on a text beyond its limit.
void ValidateLoginRequest(const TLoginRequest& Request);

}  // namespace server
