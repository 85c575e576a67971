#include "platform/MessageBox.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace platform {

namespace {
TMessageBoxHandler& Handler() {
  static TMessageBoxHandler Installed;
  return Installed;
}
}  // namespace

void SetMessageBoxHandler(TMessageBoxHandler NewHandler) { Handler() = std::move(NewHandler); }

bool IsNonInteractive() {
  const char* Value = std::getenv("KELMO_NONINTERACTIVE");
  return Value != nullptr && std::strcmp(Value, "1") == 0;
}

void MessageBox(const std::string& Title, const std::string& Text, TBoxIcon Icon) {
  if (Handler() && !IsNonInteractive()) {
    Handler()(Title, Text, Icon);
    return;
  }
  std::fprintf(stderr, "[%s] %s\n", Title.c_str(), Text.c_str());
  std::fflush(stderr);
}

}  // namespace platform
