#include "tools/server/RsaKey.h"

#include <fstream>
#include <optional>
#include <sstream>
#include <string>

#include "core/Exception.h"

namespace server {

namespace {

constexpr int MODULUS_BITS = 8 * LOGIN_BLOCK_SIZE;

TLargeNumber ReadNumber(const std::string& Text, const std::string& Name) {
  try {
    return TLargeNumber::FromDecimal(Text);
  } catch (const TMyException& Failure) {
    ThrowException(Name + " is not a decimal number: " + Failure.Text());
  }
}

}  // namespace

TRsaPrivateKey ParseRsaKey(std::istream& Input) {
  std::optional<TLargeNumber> Modulus;
  std::optional<TLargeNumber> Exponent;
  std::string Line;
  while (std::getline(Input, Line)) {
    std::istringstream Words(Line);
    std::string Name;
    std::string Value;
    if (!(Words >> Name)) continue;
    Words >> Value;
    if (Name == "modulus")
      Modulus = ReadNumber(Value, Name);
    else if (Name == "private-exponent")
      Exponent = ReadNumber(Value, Name);
    else
      ThrowException("unknown line in RSA key: " + Name);
  }
  if (!Modulus || !Exponent) ThrowException("RSA key needs a modulus and a private-exponent line");
  if (Modulus->BitLength() != MODULUS_BITS) ThrowException("RSA modulus is not a 1024-bit number");
  if (Exponent->IsZero()) ThrowException("RSA private exponent is 0");
  return {std::move(*Modulus), std::move(*Exponent)};
}

TRsaPrivateKey LoadRsaKey(const std::filesystem::path& Path) {
  std::ifstream Input(Path);
  if (!Input) ThrowException("cannot open the RSA key " + Path.string());
  try {
    return ParseRsaKey(Input);
  } catch (const TMyException& Failure) {
    ThrowException(Path.string() + ": " + Failure.Text());
  }
}

TLoginBlock DecipherLoginBlock(std::span<const std::uint8_t, LOGIN_BLOCK_SIZE> Block,
                               const TRsaPrivateKey& Key) {
  const TLargeNumber Cipher = TLargeNumber::FromBigEndian(Block);
  Check(Cipher < Key.Modulus, "login block is not smaller than the RSA modulus");
  TLoginBlock Plain;
  PowMod(Cipher, Key.PrivateExponent, Key.Modulus).ToBigEndian(Plain);
  return Plain;
}

}  // namespace server
