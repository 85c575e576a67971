#pragma once
// The private half of the login servers' RSA key, read from a text file of two
// lines: "modulus <decimal>" and "private-exponent <decimal>".
#include <array>
#include <cstdint>
#include <filesystem>
#include <istream>
#include <span>

#include "net/LargeNumber.h"

namespace server {

constexpr int LOGIN_BLOCK_SIZE = 128;
using TLoginBlock = std::array<std::uint8_t, LOGIN_BLOCK_SIZE>;

struct TRsaPrivateKey {
  TLargeNumber Modulus;
  TLargeNumber PrivateExponent;
};

TRsaPrivateKey ParseRsaKey(std::istream& Input);
TRsaPrivateKey LoadRsaKey(const std::filesystem::path& Path);

// The plain block: the enciphered one, read big-endian, to the power of the
// private exponent.
TLoginBlock DecipherLoginBlock(std::span<const std::uint8_t, LOGIN_BLOCK_SIZE> Block,
                               const TRsaPrivateKey& Key);

}  // namespace server
