#pragma once
// The byte layer between the game logic and the server: one stream socket at a
// time, the framing of packets, checksum and cipher, and the primitives with
// which every message is read and written. All of it runs on the one thread
// that polls the socket.
#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/AsyncSocket.h"

constexpr int SEND_BUFFER_SIZE = 0x800;
constexpr int RECEIVE_BUFFER_SIZE = 0x600E;
constexpr int LAST_PACKET_SIZE = 16;
constexpr int LAST_COMMAND_COUNT = 10;
// Ticks of the connect time-out that ConnectPlayerSocket may arm.
constexpr int CONNECT_TIMEOUT_TICKS = 150;

// Reads little-endian fields from memory it does not own; every read checks
// its bound first.
class TReadBuffer {
 public:
  TReadBuffer(const std::uint8_t* Memory, int Length) : Buffer(Memory), Size(Length) {}

  std::uint8_t ReadU8();
  std::uint16_t ReadU16();
  std::uint32_t ReadU32();
  std::uint64_t ReadU64();
  // Cuts the text to MaxLength - 1 bytes but consumes the whole field; the
  // result is always terminated.
  void ReadString(char* Target, int MaxLength);
  // The whole text; it may hold any byte, zero included.
  std::string ReadNewString();
  void ReadBytes(std::uint8_t* Target, int Count);
  double ReadDouble();

  const std::uint8_t* Buffer;
  int Size;
  int Position = 0;

 private:
  int ReadStringLength();
};

// Writes little-endian fields into memory it does not own; every write checks
// its bound first.
class TWriteBuffer {
 public:
  TWriteBuffer(std::uint8_t* Memory, int Length) : Buffer(Memory), Size(Length) {}

  void WriteU8(std::uint8_t Value);
  void WriteU16(std::uint16_t Value);
  void WriteU32(std::uint32_t Value);
  void WriteString(const char* s);
  void WriteBytes(const std::uint8_t* Source, int Count);

  std::uint8_t* Buffer;
  int Size;
  int Position = 0;
};

// Brings the module up and down; every function below needs it running.
void InitNetwork();
void ExitNetwork();

// Installed by the connection layer. Each is called when due and must be set.
using TNetworkHandler = void (*)();
void SetNetworkHandlers(TNetworkHandler ConnectHandler, TNetworkHandler ReceiveHandler,
                        TNetworkHandler CloseHandler);

// Services of the connection layer that this one calls. Unset: no time-out is
// armed, no look-up cancelled, and a failed socket is closed by
// CloseConnection(false).
struct TConnectionHooks {
  void (*ArmTimeOut)(int Ticks) = nullptr;  // 0 disarms
  void (*CancelLookUp)() = nullptr;
  void (*ConnectionFailed)(int ErrorCode) = nullptr;
};
void SetConnectionHooks(const TConnectionHooks& Hooks);

// Where the padding of enciphered packets comes from: the C runtime's
// generator until another source is set, and again after null.
void SetPaddingSource(std::uint8_t (*Source)());

// The 16 bytes of the session key for both directions; null keeps the key.
void SetSessionKey(const std::uint8_t* Key);

// Outgoing: one command in the send buffer, framed and sent as one packet.
void BeginCommand(int CommandType);
void WriteU8(std::uint8_t Value);
void WriteU16(std::uint16_t Value);
void WriteU32(std::uint32_t Value);
void WriteString(const char* Text);
void WriteBlock(const std::uint8_t* Buffer);  // the 128 bytes of a login block
// Frames the command in place and returns the bytes that go on the wire.
std::span<const std::uint8_t> FrameCommand(bool Encrypted);
// Frames and sends; without a socket the command vanishes.
void FinishCommand(bool Encrypted);

// Incoming: the receive buffer. ReceiveSpace is the free room at its end;
// CommitReceived adds Count bytes written there and tells whether a packet has
// become complete.
std::span<std::uint8_t> ReceiveSpace();
bool CommitReceived(int Count);
// Reads from the socket and calls the receive handler for complete packets;
// with Drain, repeats until the socket has nothing more.
void ReceiveData(bool Drain);
// Checks and opens the next complete packet; false if there is none.
bool NextPacket();
// The type of the next command of all complete packets, or -1 if none is left.
int NextCommandType();
std::uint8_t ReadU8();
std::uint16_t ReadU16();
std::uint32_t ReadU32();
std::uint64_t ReadU64();
void ReadString(char* Buffer, int MaxLength);
std::string ReadNewString();
void ReadBytes(std::uint8_t* Buffer, int Count);
double ReadDouble();

// For failure reports: the first bytes of the latest payload, and the types of
// the latest commands, oldest first.
std::array<std::uint8_t, LAST_PACKET_SIZE> GetLastPacket();
std::vector<int> GetLastCommands();

class CPlayerSocket : public CAsyncSocket {
 public:
  void OnReceive(int ErrorCode) override;
  void OnConnect(int ErrorCode) override;
  void OnClose(int ErrorCode) override;

  // Set once the connection's failure has been shown to the user.
  bool Disconnected = false;
};

// Why the socket pointer last changed; only failure reports read it.
enum TPlayerSocketPointerStatus : int {
  SOCKET_CREATED = 1,
  SOCKET_CREATION_FAILED = 2,
  SOCKET_CONNECT_FAILED = 3,
  SOCKET_CLOSED = 4,
  NETWORK_STARTED = 5,
  NETWORK_ENDED = 6,
};
int GetPlayerSocketPointerStatus();

// The socket of the current connection, or null.
CPlayerSocket* GetPlayerSocket();
// Replaces the socket with a new one; 0 or the system's error number.
int CreatePlayerSocket();
// Starts connecting; 0 or the system's error number, after which the socket is gone.
int ConnectPlayerSocket(const char* IPAddress, int Port, bool StartTimeOut);
void CloseConnection(bool Force);
