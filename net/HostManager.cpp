#include "net/HostManager.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <random>

#include "core/Clock.h"
#include "core/Exception.h"
#include "net/Deployment.h"

namespace {

// Four decimal numbers of 0 to 255 with dots between them, and nothing else.
bool ParseDottedAddress(const std::string& Text, std::array<std::uint8_t, 4>& Address) {
  unsigned Parts[4];
  char Rest = 0;
  if (std::sscanf(Text.c_str(), "%3u.%3u.%3u.%3u%c", &Parts[0], &Parts[1], &Parts[2], &Parts[3],
                  &Rest) != 4) {
    return false;
  }
  for (int I = 0; I < 4; ++I) {
    if (Parts[I] > 255) return false;
    Address[I] = static_cast<std::uint8_t>(Parts[I]);
  }
  return true;
}

}  // namespace

THostData THostData::FromText(const std::string& Text, std::uint16_t Port) {
  THostData Host;
  Host.Port = Port;
  if (!ParseDottedAddress(Text, Host.IPAddress)) Host.HostName = Text;
  return Host;
}

bool THostData::IsResolved() const {
  return std::any_of(IPAddress.begin(), IPAddress.end(), [](std::uint8_t B) { return B != 0; });
}

std::string THostData::AddressText() const {
  char Text[16];
  std::snprintf(Text, sizeof Text, "%u.%u.%u.%u", IPAddress[0], IPAddress[1], IPAddress[2], IPAddress[3]);
  return Text;
}

void THostData::Forget() {
  IPAddress = {};
  Available = true;
  ErrorCode = 0;
}

void THostManager::LoadLoginHosts() {
  m_Hosts.clear();
  for (const TLoginHostSetting& Setting : GetLoginHostSettings()) {
    m_Hosts.push_back(THostData::FromText(Setting.Host, Setting.Port));
  }
  if (!LoginHostsOverridden()) {
    std::minstd_rand Generator(static_cast<unsigned>(NowMilliseconds()));
    std::shuffle(m_Hosts.begin(), m_Hosts.end(), Generator);
  }
  m_CurrentHost = 0;
}

void THostManager::ResetHosts() {
  for (THostData& Host : m_Hosts) {
    Host.Available = true;
    Host.ErrorCode = 0;
  }
  m_CurrentHost = 0;
}

bool THostManager::SelectAvailableHost() {
  while (m_CurrentHost < m_Hosts.size() && !m_Hosts[m_CurrentHost].Available) ++m_CurrentHost;
  return m_CurrentHost < m_Hosts.size();
}

THostData& THostManager::CurrentHost() {
  Check(m_CurrentHost < m_Hosts.size(), "m_CurrentHost != hostsEnd()");
  return m_Hosts[m_CurrentHost];
}

void THostManager::MarkHostFailed(int ErrorCode) {
  THostData& Host = CurrentHost();
  Host.Available = false;
  Host.ErrorCode = ErrorCode;
}

int THostManager::LastHostErrorCode() const { return m_Hosts.empty() ? 0 : m_Hosts.back().ErrorCode; }
