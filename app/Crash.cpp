#include "app/Crash.h"

#include "core/ErrorReport.h"
#include "core/Log.h"
#include "platform/CrashSignals.h"

void InstallCrashReports() {
  if (!platform::InstallCrashSignals(ReportCrashSignal)) LogInfo("crash signals could not be installed");
}
