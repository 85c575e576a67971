#pragma once
// Where this build of the client connects to. The compiled-in settings point
// at the project's local server; two environment variables override them.
#include <cstdint>
#include <string>
#include <vector>

struct TLoginHostSetting {
  std::string Host;  // a name or a dotted address
  std::uint16_t Port;
};

// KELMO_LOGIN_HOSTS ("host:port,..."), else the built-in list. A malformed
// entry fails with "invalid login host".
std::vector<TLoginHostSetting> GetLoginHostSettings();
// True if the hosts come from the environment: their order is then kept.
bool LoginHostsOverridden();
// KELMO_RSA_MODULUS (decimal), else the built-in modulus.
std::string GetRsaModulusText();

constexpr const char* WEB_HOST = "www.kelmo.example";
constexpr const char* SECURE_WEB_HOST = "secure.kelmo.example";
