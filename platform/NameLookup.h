#pragma once
// Asynchronous name look-up: the look-up runs on a short-lived thread of its
// own, and its result is delivered on the loop's thread by PollNameLookups, so
// the loop never blocks on the resolver.
#include <cstdint>
#include <string>

namespace platform {

// Error is 0 or a socket error number (11001 unknown host and so on); Address
// holds the four bytes of an IPv4 address in network order on success.
using TLookupHandler = void (*)(int Error, const std::uint8_t Address[4]);

// Starts looking up HostName; a look-up still running is cancelled. False if
// the thread could not be started.
bool StartNameLookup(const std::string& HostName, TLookupHandler Handler);
// Forgets the running look-up: its result will not be delivered.
void CancelNameLookup();
// Delivers the result of a finished look-up, if any, without waiting.
void PollNameLookups();

}  // namespace platform
