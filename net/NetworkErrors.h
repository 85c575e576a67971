#pragma once
// The user's message for a failed connection.
#include <string>

// ErrorType 1 frames the text for a login server, 2 for the game server; any
// other type fails with "unknown error type".
std::string FormatNetworkError(int ErrorCode, int ErrorType);
// The short text of an error code, as "Connection refused. (10061)".
std::string NetworkErrorText(int ErrorCode);
