#include <string>

#include "app/Player.h"
#include "app/Crash.h"
#include "platform/Signals.h"

int main(int argc, char** argv) {
  InstallCrashReports();
  platform::InstallCloseSignals();
  std::string CommandLine;
  for (int I = 1; I < argc; ++I) {
    if (I > 1) CommandLine += ' ';
    CommandLine += argv[I];
  }
  CPlayerApp App;
  if (!App.InitInstance(CommandLine)) return 1;
  return App.Run();
}
