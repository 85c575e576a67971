#pragma once
// The client's version: 10.53 in reports and texts, 1053 on the wire.

constexpr int VERSION_MAJOR = 10;
constexpr int VERSION_MINOR = 53;
constexpr int PROTOCOL_VERSION = VERSION_MAJOR * 100 + VERSION_MINOR;
