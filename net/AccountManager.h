#pragma once
// The account that signs in, and the character list the login server sent.
#include <cstdint>
#include <string>
#include <vector>

#include "net/HostManager.h"

constexpr int CHARACTER_NAME_LENGTH = 30;
constexpr int WORLD_NAME_LENGTH = 30;
constexpr int HOST_TEXT_LENGTH = 60;

class TAccountCharacterData {
 public:
  virtual ~TAccountCharacterData() = default;

  std::string Name;
  std::string WorldName;
  int PreviewState = 0;  // 0 or 1 may be connected to, 2 may not
  THostData Host;
};

class TAccountManager {
 public:
  static constexpr int ACCOUNT_NAME_LENGTH = 31;
  static constexpr int ACCOUNT_PASSWORD_LENGTH = 30;

  static TAccountManager& getInstance();

  void setLogin(const std::string& Login);
  void setPassword(const std::string& Password);
  const std::string& getLogin() const { return m_Login; }
  const std::string& getPassword() const { return m_Password; }

  // The active character, or null if none is chosen.
  TAccountCharacterData* getActiveCharacter();
  void setActiveCharacter(int Index);
  // False if no character has that name.
  bool setActiveCharacter(const std::string& Name);
  // Updates the entry of the same name, or appends one.
  void addCharacter(const std::string& Name, const std::string& WorldName, int PreviewState,
                    const THostData& Host);
  void clearCharacters();
  const std::vector<TAccountCharacterData>& characters() const { return m_Characters; }

  std::uint16_t PremiumDays = 0;

 private:
  std::vector<TAccountCharacterData> m_Characters;
  std::string m_Login;
  std::string m_Password;
  int m_ActiveCharacter = -1;
};
