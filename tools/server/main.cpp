// kelmo-server: the local login and game server for development and tests.
// Prints "login port <n>" and "game port <n>" once it listens, runs until
// SIGTERM or SIGINT, and ends with 1 if any client sent something wrong, with
// 2 if it could not start.
#include <chrono>
#include <fstream>
#include <iostream>
#include <thread>

#include "core/Exception.h"
#include "platform/Signals.h"
#include "tools/server/Options.h"
#include "tools/server/Server.h"
#include "tools/server/WorldFile.h"

namespace {

// Short enough that a client never waits noticeably.
constexpr auto IDLE_PAUSE = std::chrono::milliseconds(2);

int Run(const server::TServerOptions& Options) {
  platform::InstallCloseSignals();
  std::ofstream LogFile;
  if (Options.Log) {
    LogFile.open(*Options.Log, std::ios::app);
    if (!LogFile) ThrowException("cannot open the log " + Options.Log->string());
  }
  server::TServerLog Log([&](const std::string& Line, bool IsError) {
    if (LogFile.is_open()) LogFile << Line << std::endl;
    if (IsError) std::cerr << Line << std::endl;
  });
  std::optional<server::TWorldSetup> World;
  if (Options.World)
    World = server::LoadWorld(*Options.World, std::make_shared<const server::TObjectTypes>(
                                                  server::LoadObjectTypes(Options.Objects)));
  server::TServer Server(Options.Settings, server::LoadAccountBook(Options.Accounts),
                         server::LoadRsaKey(Options.RsaKey), Log, std::move(World));
  std::cout << "login port " << Server.LoginPort() << "\ngame port " << Server.GamePort() << std::endl;
  while (!platform::TakeCloseRequest()) {
    Server.Step();
    std::this_thread::sleep_for(IDLE_PAUSE);
  }
  return Log.ErrorCount() == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  server::TServerOptions Options;
  try {
    Options = server::ParseOptions({argv + 1, argv + argc});
  } catch (const TMyException& Failure) {
    std::cerr << "kelmo-server: " << Failure.Text() << '\n' << server::USAGE;
    return 2;
  }
  if (Options.Help) {
    std::cout << server::USAGE;
    return 0;
  }
  try {
    return Run(Options);
  } catch (const TMyException& Failure) {
    std::cerr << "kelmo-server: " << Failure.what() << '\n';
    return 2;
  }
}
