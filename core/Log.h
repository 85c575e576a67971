#pragma once
// Notes for the person running the program, on standard error.
#include <string>

void LogInfo(const std::string& Text);
