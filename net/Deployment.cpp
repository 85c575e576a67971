#include "net/Deployment.h"

#include <cstdlib>

#include "core/Exception.h"
#include "net/DeploymentKey.h"

namespace {

constexpr std::uint16_t LOGIN_PORT = 7171;

const char* Environment(const char* Name) {
  const char* Value = std::getenv(Name);
  return Value != nullptr && Value[0] != 0 ? Value : nullptr;
}

TLoginHostSetting ParseHost(const std::string& Entry) {
  const size_t Colon = Entry.rfind(':');
  if (Colon == std::string::npos || Colon == 0) ThrowException("invalid login host", {{"Entry", Entry}});
  const std::string PortText = Entry.substr(Colon + 1);
  char* End = nullptr;
  const long Port = std::strtol(PortText.c_str(), &End, 10);
  if (PortText.empty() || *End != 0 || Port < 1 || Port > 65535) {
    ThrowException("invalid login host", {{"Entry", Entry}});
  }
  return {Entry.substr(0, Colon), static_cast<std::uint16_t>(Port)};
}

}  // namespace

bool LoginHostsOverridden() { return Environment("KELMO_LOGIN_HOSTS") != nullptr; }

std::vector<TLoginHostSetting> GetLoginHostSettings() {
  std::vector<TLoginHostSetting> Hosts;
  if (const char* List = Environment("KELMO_LOGIN_HOSTS")) {
    const std::string Text = List;
    for (size_t Start = 0; Start <= Text.size();) {
      const size_t Comma = std::min(Text.find(',', Start), Text.size());
      Hosts.push_back(ParseHost(Text.substr(Start, Comma - Start)));
      Start = Comma + 1;
    }
    return Hosts;
  }
  // Five names, then five addresses, all of the local server.
  for (int I = 0; I < 5; ++I) Hosts.push_back({"localhost", LOGIN_PORT});
  for (int I = 0; I < 5; ++I) Hosts.push_back({"127.0.0.1", LOGIN_PORT});
  return Hosts;
}

std::string GetRsaModulusText() {
  if (const char* Modulus = Environment("KELMO_RSA_MODULUS")) return Modulus;
  return DEFAULT_RSA_MODULUS;
}
