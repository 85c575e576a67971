#pragma once
// Message boxes. The window layer installs the real box; without one, or with
// KELMO_NONINTERACTIVE=1, the box goes to standard error and counts as confirmed.
#include <functional>
#include <string>

namespace platform {

enum class TBoxIcon { INFORMATION, WARNING, FAILURE };

using TMessageBoxHandler =
    std::function<void(const std::string& Title, const std::string& Text, TBoxIcon Icon)>;

void SetMessageBoxHandler(TMessageBoxHandler Handler);
void MessageBox(const std::string& Title, const std::string& Text, TBoxIcon Icon);
bool IsNonInteractive();

}  // namespace platform
