#include "net/AccountManager.h"

#include <algorithm>

#include "core/Exception.h"

TAccountManager& TAccountManager::getInstance() {
  static TAccountManager Instance;
  return Instance;
}

void TAccountManager::setLogin(const std::string& Login) {
  Check(Login.length() < ACCOUNT_NAME_LENGTH, "Login.length()<TAccountManager::ACCOUNT_NAME_LENGTH");
  m_Login = Login;
}

void TAccountManager::setPassword(const std::string& Password) {
  Check(Password.length() < ACCOUNT_PASSWORD_LENGTH,
        "Password.length()<TAccountManager::ACCOUNT_PASSWORD_LENGTH");
  m_Password = Password;
}

TAccountCharacterData* TAccountManager::getActiveCharacter() {
  if (m_ActiveCharacter < 0 || m_ActiveCharacter >= static_cast<int>(m_Characters.size())) {
    return nullptr;
  }
  return &m_Characters[m_ActiveCharacter];
}

void TAccountManager::setActiveCharacter(int Index) { m_ActiveCharacter = Index; }

bool TAccountManager::setActiveCharacter(const std::string& Name) {
  const auto Found = std::find_if(m_Characters.begin(), m_Characters.end(),
                                  [&](const TAccountCharacterData& C) { return C.Name == Name; });
  if (Found == m_Characters.end()) return false;
  m_ActiveCharacter = static_cast<int>(Found - m_Characters.begin());
  return true;
}

void TAccountManager::addCharacter(const std::string& Name, const std::string& WorldName,
                                   int PreviewState, const THostData& Host) {
  auto Found = std::find_if(m_Characters.begin(), m_Characters.end(),
                            [&](const TAccountCharacterData& C) { return C.Name == Name; });
  if (Found == m_Characters.end()) Found = m_Characters.emplace(m_Characters.end());
  Found->Name = Name;
  Found->WorldName = WorldName;
  Found->PreviewState = PreviewState;
  Found->Host = Host;
}

void TAccountManager::clearCharacters() {
  m_Characters.clear();
  m_ActiveCharacter = -1;
}
