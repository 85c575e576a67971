#pragma once
// Handing files and web addresses to the desktop.
#include <string>

namespace platform {

// Starts a program with no arguments, detached; false if it could not be started.
bool StartProgram(const std::string& Path);
// Opens a web address in the desktop's browser from a short-lived thread of its
// own, so that the loop is not held up; false if the thread could not start.
bool OpenUrlInBackground(std::string Address);

}  // namespace platform
