#include "platform/Shell.h"

#include <spawn.h>
#include <sys/wait.h>

#include <system_error>
#include <thread>

extern char** environ;

namespace platform {

namespace {

bool Spawn(const char* Program, char* const Arguments[], bool SearchPath, pid_t& Child) {
  const int Result = SearchPath ? posix_spawnp(&Child, Program, nullptr, nullptr, Arguments, environ)
                                : posix_spawn(&Child, Program, nullptr, nullptr, Arguments, environ);
  return Result == 0;
}

}  // namespace

bool StartProgram(const std::string& Path) {
  std::string Program = Path;
  char* const Arguments[] = {Program.data(), nullptr};
  pid_t Child = 0;
  return Spawn(Program.c_str(), Arguments, false, Child);
}

bool OpenUrlInBackground(std::string Address) {
  try {
    std::thread([Address = std::move(Address)]() mutable {
      std::string Opener = "xdg-open";
      char* const Arguments[] = {Opener.data(), Address.data(), nullptr};
      pid_t Child = 0;
      if (Spawn(Opener.c_str(), Arguments, true, Child)) waitpid(Child, nullptr, 0);
    }).detach();
    return true;
  } catch (const std::system_error&) {
    return false;
  }
}

}  // namespace platform
