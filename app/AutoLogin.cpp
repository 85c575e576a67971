#include "app/AutoLogin.h"

#include <cstdlib>
#include <string>
#include <utility>

#include "core/Exception.h"
#include "core/Log.h"
#include "core/MessageQueue.h"
#include "net/AccountManager.h"
#include "net/Login.h"

namespace {

std::string PendingCharacter;

}  // namespace

void StartAutoLogin() {
  const char* Value = std::getenv("KELMO_AUTOLOGIN");
  if (Value == nullptr || Value[0] == 0) return;
  const std::string Text = Value;
  const size_t First = Text.find(':');
  const size_t Second = First == std::string::npos ? First : Text.find(':', First + 1);
  if (Second == std::string::npos || First == 0 || Second + 1 == Text.size()) {
    ThrowException("KELMO_AUTOLOGIN must be account:password:character");
  }
  TAccountManager& Account = TAccountManager::getInstance();
  Account.setLogin(Text.substr(0, First));
  Account.setPassword(Text.substr(First + 1, Second - First - 1));
  PendingCharacter = Text.substr(Second + 1);
  MessageQueue().Post(MSG_CONNECT_LOGIN);
  MessageQueue().Post(MSG_WAIT_CHARACTERLIST);
}

bool ChooseAutoLoginCharacter() {
  if (PendingCharacter.empty()) return false;
  const std::string Name = std::exchange(PendingCharacter, {});
  const auto& Characters = TAccountManager::getInstance().characters();
  for (size_t Index = 0; Index < Characters.size(); ++Index) {
    if (Characters[Index].Name == Name) {
      SelectCharacter(static_cast<int>(Index));
      return true;
    }
  }
  LogInfo("automatic sign-in: the account has no character named " + Name);
  return false;
}
