#include "tools/server/Options.h"

#include <algorithm>
#include <map>

#include "core/Exception.h"

namespace server {

const char* const USAGE =
    "usage: kelmo-server [options]\n"
    "  --host <address>         address to listen on (127.0.0.1)\n"
    "  --login-port <n>         login server port, 0 for any free one (7171)\n"
    "  --game-port <n>          game server port, 0 for any free one (7172)\n"
    "  --accounts <file>        accounts, worlds and characters\n"
    "  --rsa-key <file>         the login servers' private RSA key\n"
    "  --log <file>             JSON line log of every command\n"
    "  --world <file>           send this world to clients that enter it (the demo\n"
    "                           world is data/world/demo.txt); without it the\n"
    "                           world is never sent\n"
    "  --objects <file>         the object types of the world (the built Kelmo.dat)\n"
    "  --ping-interval <s>      send SPING every s seconds in the world (0: never)\n"
    "  --seed <n>               seed of challenges and padding\n"
    "  --fault <name>           misbehave, repeatable: silence, bad-checksum,\n"
    "                           close-after-login, login-error, queue (first game\n"
    "                           login only), admin-error, admin-advice, login-advice\n";

namespace {

const std::map<std::string, EFault>& FaultNames() {
  static const std::map<std::string, EFault> NAMES = {
      {"silence", EFault::SILENCE},
      {"bad-checksum", EFault::BAD_CHECKSUM},
      {"close-after-login", EFault::CLOSE_AFTER_LOGIN},
      {"login-error", EFault::LOGIN_ERROR},
      {"queue", EFault::QUEUE},
      {"admin-error", EFault::ADMIN_ERROR},
      {"admin-advice", EFault::ADMIN_ADVICE},
      {"login-advice", EFault::LOGIN_ADVICE},
  };
  return NAMES;
}

std::uint32_t Number(const std::string& Option, const std::string& Text, std::uint32_t Most) {
  const bool Digits = !Text.empty() && Text.size() <= 10 &&
                      std::all_of(Text.begin(), Text.end(), [](char C) { return C >= '0' && C <= '9'; });
  if (!Digits || std::stoull(Text) > Most)
    ThrowException(Option + " takes a number from 0 to " + std::to_string(Most) + ", not '" + Text + "'");
  return static_cast<std::uint32_t>(std::stoull(Text));
}

using TSetter = void (*)(TServerOptions& Options, const std::string& Option, const std::string& Value);

std::uint16_t Port(const std::string& Option, const std::string& Value) {
  return static_cast<std::uint16_t>(Number(Option, Value, 65535));
}

void SetFault(TServerOptions& Options, const std::string&, const std::string& Value) {
  const auto Fault = FaultNames().find(Value);
  if (Fault == FaultNames().end()) ThrowException("unknown fault '" + Value + "'");
  Options.Settings.Faults.insert(Fault->second);
}

const std::map<std::string, TSetter>& Setters() {
  static const std::map<std::string, TSetter> SETTERS = {
      {"--host", [](TServerOptions& O, const std::string&, const std::string& V) { O.Settings.Host = V; }},
      {"--login-port", [](TServerOptions& O, const std::string& N,
                          const std::string& V) { O.Settings.LoginPort = Port(N, V); }},
      {"--game-port", [](TServerOptions& O, const std::string& N,
                         const std::string& V) { O.Settings.GamePort = Port(N, V); }},
      {"--accounts", [](TServerOptions& O, const std::string&, const std::string& V) { O.Accounts = V; }},
      {"--rsa-key", [](TServerOptions& O, const std::string&, const std::string& V) { O.RsaKey = V; }},
      {"--log", [](TServerOptions& O, const std::string&, const std::string& V) { O.Log = V; }},
      {"--world", [](TServerOptions& O, const std::string&, const std::string& V) { O.World = V; }},
      {"--objects", [](TServerOptions& O, const std::string&, const std::string& V) { O.Objects = V; }},
      {"--ping-interval",
       [](TServerOptions& O, const std::string& N, const std::string& V) {
         O.Settings.PingIntervalSeconds = static_cast<int>(Number(N, V, 3600));
       }},
      {"--seed", [](TServerOptions& O, const std::string& N,
                    const std::string& V) { O.Settings.Seed = Number(N, V, UINT32_MAX); }},
      {"--fault", SetFault},
  };
  return SETTERS;
}

}  // namespace

TServerOptions ParseOptions(const std::vector<std::string>& Arguments) {
  TServerOptions Options;
  for (std::size_t I = 0; I < Arguments.size(); ++I) {
    const std::string& Option = Arguments[I];
    if (Option == "--help" || Option == "-h") {
      Options.Help = true;
      continue;
    }
    const auto Setter = Setters().find(Option);
    if (Setter == Setters().end()) ThrowException("unknown option '" + Option + "'");
    if (I + 1 == Arguments.size()) ThrowException(Option + " needs a value");
    Setter->second(Options, Option, Arguments[++I]);
  }
  return Options;
}

}  // namespace server
