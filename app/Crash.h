#pragma once
// Crash signals end in a failure report and exit code 1.

void InstallCrashReports();
