#pragma once
// Socket failures are reported in the numbering that the client's messages
// know (10061 for a refused connection, 10060 for a time-out, 11001 for an
// unknown host name), whatever the system's own numbers are.

namespace platform {

// The socket error number of a system error number; 0 stays 0.
int SocketErrorNumber(int SystemError);
// The socket error number of a failed name look-up (getaddrinfo's result).
int LookupErrorNumber(int LookupError);

}  // namespace platform
