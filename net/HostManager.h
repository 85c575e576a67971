#pragma once
// The hosts the client may connect to, and the list of login hosts with the
// one that is tried now.
#include <array>
#include <cstdint>
#include <string>
#include <vector>

struct THostData {
  std::string HostName;  // empty if only the address is known
  std::array<std::uint8_t, 4> IPAddress{};
  std::uint16_t Port = 0;
  bool Available = true;
  int ErrorCode = 0;

  // A name that is a dotted address is taken as the address itself.
  static THostData FromText(const std::string& Text, std::uint16_t Port);
  bool IsResolved() const;
  std::string AddressText() const;
  void Forget();
};

class THostManager {
 public:
  // The login hosts of the deployment, shuffled unless they were named in order.
  void LoadLoginHosts();
  void ResetHosts();
  // Moves to the next available host if the current one is not; false if none is left.
  bool SelectAvailableHost();
  THostData& CurrentHost();
  // Fails with "m_CurrentHost != hostsEnd()" when the list is exhausted.
  void MarkHostFailed(int ErrorCode);
  int LastHostErrorCode() const;
  const std::vector<THostData>& Hosts() const { return m_Hosts; }

 private:
  std::vector<THostData> m_Hosts;
  size_t m_CurrentHost = 0;
};
