// The server's command line.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/Exception.h"
#include "tools/server/Options.h"

namespace {

using server::EFault;
using server::ParseOptions;

std::string OptionFailure(const std::vector<std::string>& Arguments) {
  try {
    ParseOptions(Arguments);
  } catch (const TMyException& Failure) {
    return Failure.Text();
  }
  return "(no failure)";
}

TEST(ServerOptions, Defaults) {
  const server::TServerOptions Options = ParseOptions({});
  EXPECT_EQ(Options.Settings.Host, "127.0.0.1");
  EXPECT_EQ(Options.Settings.LoginPort, 7171);
  EXPECT_EQ(Options.Settings.GamePort, 7172);
  EXPECT_TRUE(Options.Settings.Faults.empty());
  EXPECT_EQ(Options.Settings.PingIntervalSeconds, 0);
  EXPECT_FALSE(Options.Settings.Seed);
  EXPECT_EQ(Options.Accounts, std::filesystem::path(KELMO_SERVER_DATA_DIR) / "accounts.txt");
  EXPECT_EQ(Options.RsaKey, std::filesystem::path(KELMO_SERVER_DATA_DIR) / "rsa-key.txt");
  EXPECT_FALSE(Options.Log);
  EXPECT_FALSE(Options.World) << "without a world the server sends none";
  EXPECT_EQ(Options.Objects.filename(), "Kelmo.dat");
  EXPECT_FALSE(Options.Help);
}

TEST(ServerOptions, EveryOption) {
  const server::TServerOptions Options = ParseOptions(
      {"--host", "0.0.0.0",    "--login-port", "0",       "--game-port", "65535",           "--accounts",
       "a.txt",  "--rsa-key",  "k.txt",        "--log",   "l.jsonl",     "--ping-interval", "10",
       "--seed", "4294967295", "--fault",      "silence", "--fault",     "queue",           "--help",
       "--world", "w.txt", "--objects", "o.dat"});
  EXPECT_EQ(Options.Settings.Host, "0.0.0.0");
  EXPECT_EQ(Options.Settings.LoginPort, 0);
  EXPECT_EQ(Options.Settings.GamePort, 65535);
  EXPECT_EQ(Options.Accounts, "a.txt");
  EXPECT_EQ(Options.RsaKey, "k.txt");
  EXPECT_EQ(Options.Log, "l.jsonl");
  EXPECT_EQ(Options.Settings.PingIntervalSeconds, 10);
  EXPECT_EQ(Options.Settings.Seed, 4294967295u);
  EXPECT_EQ(Options.Settings.Faults, (std::set<EFault>{EFault::SILENCE, EFault::QUEUE}));
  EXPECT_TRUE(Options.Help);
  EXPECT_EQ(Options.World, "w.txt");
  EXPECT_EQ(Options.Objects, "o.dat");
}

TEST(ServerOptions, EveryFaultByName) {
  const std::pair<const char*, EFault> Names[] = {
      {"silence", EFault::SILENCE},
      {"bad-checksum", EFault::BAD_CHECKSUM},
      {"close-after-login", EFault::CLOSE_AFTER_LOGIN},
      {"login-error", EFault::LOGIN_ERROR},
      {"queue", EFault::QUEUE},
      {"admin-error", EFault::ADMIN_ERROR},
      {"admin-advice", EFault::ADMIN_ADVICE},
      {"login-advice", EFault::LOGIN_ADVICE},
  };
  for (const auto& [Name, Fault] : Names)
    EXPECT_EQ(ParseOptions({"--fault", Name}).Settings.Faults, std::set<EFault>{Fault}) << Name;
}

TEST(ServerOptions, Mistakes) {
  EXPECT_EQ(OptionFailure({"--port", "1"}), "unknown option '--port'");
  EXPECT_EQ(OptionFailure({"--log"}), "--log needs a value");
  EXPECT_EQ(OptionFailure({"--game-port", "65536"}),
            "--game-port takes a number from 0 to 65535, not '65536'");
  EXPECT_EQ(OptionFailure({"--login-port", "-1"}), "--login-port takes a number from 0 to 65535, not '-1'");
  EXPECT_EQ(OptionFailure({"--fault", "slow"}), "unknown fault 'slow'");
}

}  // namespace
