#include "core/Log.h"

#include <cstdio>

void LogInfo(const std::string& Text) {
  std::fprintf(stderr, "kelmo: %s\n", Text.c_str());
  std::fflush(stderr);
}
