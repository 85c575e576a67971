#include "net/Communication.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "core/ErrorReport.h"
#include "core/Exception.h"
#include "net/Checksum.h"
#include "net/Connection.h"
#include "net/Xtea.h"

namespace {

// Packet layout: u16 size, u32 checksum, then from CIPHER_START the u16 payload
// length, the payload and the padding, in whole cipher blocks.
constexpr int HEADER_SIZE = 8;
constexpr int CIPHER_START = 6;
constexpr int BLOCK_SIZE = 8;
constexpr int MIN_PACKET_SIZE = 12;
constexpr int LOGIN_BLOCK_SIZE = 128;
constexpr int DRAIN_CHUNK = 256;
constexpr std::int64_t DOUBLE_BIAS = 0x7FFFFFFF;

std::uint8_t RuntimePadding() { return static_cast<std::uint8_t>(std::rand()); }

struct TNetworkState {
  std::array<std::uint8_t, SEND_BUFFER_SIZE> SendBuffer{};
  std::array<std::uint8_t, RECEIVE_BUFFER_SIZE> ReceiveBuffer{};
  TWriteBuffer Writer{SendBuffer.data(), SEND_BUFFER_SIZE};
  TReadBuffer Reader{ReceiveBuffer.data(), 0};
  // PacketStart <= PacketEnd <= NextToWrite; PacketStart lies on a packet boundary.
  int PacketStart = 0;
  int PacketEnd = 0;
  int NextToWrite = 0;
  TXTEASymmetricKey SessionKey;
  std::unique_ptr<CPlayerSocket> PlayerSocket;
  std::array<std::uint8_t, LAST_PACKET_SIZE> LastPacket{};
  std::array<int, LAST_COMMAND_COUNT> LastCommands{};
  int NextLastCommand = 0;
  TNetworkHandler ConnectHandler = nullptr;
  TNetworkHandler ReceiveHandler = nullptr;
  TNetworkHandler CloseHandler = nullptr;
  TConnectionHooks Hooks;
  std::uint8_t (*PaddingSource)() = RuntimePadding;
};

std::unique_ptr<TNetworkState> Network;
int PlayerSocketPointerStatus = 0;

TNetworkState& Net() {
  Check(Network != nullptr, "Network!=NULL");
  return *Network;
}

std::uint64_t LoadLittleEndian(const std::uint8_t* Bytes, int Width) {
  std::uint64_t Value = 0;
  for (int I = Width - 1; I >= 0; --I) Value = Value << 8 | Bytes[I];
  return Value;
}

void StoreLittleEndian(std::uint8_t* Bytes, std::uint64_t Value, int Width) {
  for (int I = 0; I < Width; ++I) Bytes[I] = static_cast<std::uint8_t>(Value >> (8 * I));
}

void CallHandler(TNetworkHandler Handler, const char* Missing) {
  Check(Handler != nullptr, Missing);
  Handler();
}

void ArmTimeOut(int Ticks) {
  if (Net().Hooks.ArmTimeOut != nullptr) Net().Hooks.ArmTimeOut(Ticks);
}

void ConnectionFailed(int ErrorCode) {
  if (Net().Hooks.ConnectionFailed != nullptr)
    Net().Hooks.ConnectionFailed(ErrorCode);
  else
    CloseConnection(false);
}

// The socket may already be gone here; nothing of it is touched.
void SocketClosed(int ErrorCode) {
  if (ErrorCode == 0) ReceiveData(true);
  CloseConnection(false);
  CallHandler(Net().CloseHandler, "CloseHandler!=NULL");
}

std::span<const std::uint8_t> FrameEnciphered(TNetworkState& State) {
  TWriteBuffer& Writer = State.Writer;
  int Size = Writer.Position - 2;
  const int Payload = Writer.Position - HEADER_SIZE;
  for (; (Size - 4) % BLOCK_SIZE != 0; ++Size) Writer.WriteU8(State.PaddingSource());
  Writer.Position = 0;
  Writer.WriteU16(static_cast<std::uint16_t>(Size));
  Writer.WriteU32(0);
  Writer.WriteU16(static_cast<std::uint16_t>(Payload));
  for (int Offset = CIPHER_START; Offset < Size + 2; Offset += BLOCK_SIZE)
    EncipherBlock(Writer.Buffer + Offset, State.SessionKey);
  Writer.Position = 0;
  Writer.WriteU16(static_cast<std::uint16_t>(Size));
  Writer.WriteU32(Adler32(Writer.Buffer + CIPHER_START, Size - 4));
  return {Writer.Buffer, static_cast<std::size_t>(Size + 2)};
}

// The two bytes in front of a plain packet are never sent.
std::span<const std::uint8_t> FramePlain(TNetworkState& State) {
  TWriteBuffer& Writer = State.Writer;
  const int Size = Writer.Position - 4;
  Writer.Position = 0;
  Writer.WriteU16(0);
  Writer.WriteU16(static_cast<std::uint16_t>(Size));
  Writer.WriteU32(Adler32(Writer.Buffer + HEADER_SIZE, Size - 4));
  return {Writer.Buffer + 2, static_cast<std::size_t>(Size + 2)};
}

// Advances PacketEnd over every packet that has arrived whole.
bool ScanPackets(TNetworkState& State) {
  bool Complete = false;
  while (State.NextToWrite - State.PacketEnd >= 2) {
    const int Length = 2 + static_cast<int>(LoadLittleEndian(&State.ReceiveBuffer[State.PacketEnd], 2));
    if (State.NextToWrite - State.PacketEnd < Length) break;
    State.PacketEnd += Length;
    Complete = true;
  }
  return Complete;
}

void CompactReceiveBuffer(TNetworkState& State) {
  if (State.PacketStart == 0) return;
  std::uint8_t* Buffer = State.ReceiveBuffer.data();
  std::memmove(Buffer, Buffer + State.PacketStart, State.NextToWrite - State.PacketStart);
  State.NextToWrite -= State.PacketStart;
  State.PacketEnd -= State.PacketStart;
  State.PacketStart = 0;
}

void RememberPayload(TNetworkState& State, int PayloadLength) {
  const int Kept = std::min(PayloadLength, LAST_PACKET_SIZE);
  State.LastPacket.fill(0);
  std::memcpy(State.LastPacket.data(), State.ReceiveBuffer.data() + HEADER_SIZE, Kept);
}

void RememberCommand(TNetworkState& State, int Type) {
  State.LastCommands[State.NextLastCommand] = Type;
  State.NextLastCommand = (State.NextLastCommand + 1) % LAST_COMMAND_COUNT;
}

}  // namespace

// ---- TReadBuffer

std::uint8_t TReadBuffer::ReadU8() {
  Check(Position <= Size - 1, "Position<=Size-1", {"Position", Position}, {"Size", Size});
  return Buffer[Position++];
}

std::uint16_t TReadBuffer::ReadU16() {
  Check(Position <= Size - 2, "Position<=Size-2", {"Position", Position}, {"Size", Size});
  Position += 2;
  return static_cast<std::uint16_t>(LoadLittleEndian(Buffer + Position - 2, 2));
}

std::uint32_t TReadBuffer::ReadU32() {
  Check(Position <= Size - 4, "Position<=Size-4", {"Position", Position}, {"Size", Size});
  Position += 4;
  return static_cast<std::uint32_t>(LoadLittleEndian(Buffer + Position - 4, 4));
}

std::uint64_t TReadBuffer::ReadU64() {
  Check(Position <= Size - 8, "Position <= Size - 8", {"Position", Position}, {"Size", Size});
  Position += 8;
  return LoadLittleEndian(Buffer + Position - 8, 8);
}

int TReadBuffer::ReadStringLength() {
  const int Length = ReadU16();
  Check(Position <= Size - Length, "Position<=Size-Length", {"Position", Position}, {"Length", Length});
  return Length;
}

void TReadBuffer::ReadString(char* Target, int MaxLength) {
  Check(Target != nullptr, "Buffer!=NULL");
  Check(MaxLength >= 1, "MaxLength>=1", {"MaxLength", MaxLength});
  const int Length = ReadStringLength();
  const int Kept = std::min(Length, MaxLength - 1);
  std::memcpy(Target, Buffer + Position, Kept);
  Target[Kept] = 0;
  Position += Length;
}

std::string TReadBuffer::ReadNewString() {
  const int Length = ReadStringLength();
  std::string Text(reinterpret_cast<const char*>(Buffer + Position), Length);
  Position += Length;
  return Text;
}

void TReadBuffer::ReadBytes(std::uint8_t* Target, int Count) {
  Check(Target != nullptr, "Buffer!=NULL");
  Check(Count >= 0, "Count>=0", {"Count", Count});
  Check(Position <= Size - Count, "Position<=Size-Count", {"Position", Position}, {"Count", Count});
  std::memcpy(Target, Buffer + Position, Count);
  Position += Count;
}

double TReadBuffer::ReadDouble() {
  const int Precision = ReadU8();
  const std::int64_t Raw = ReadU32();
  return static_cast<double>(Raw - DOUBLE_BIAS) / std::pow(10.0, Precision);
}

// ---- TWriteBuffer

void TWriteBuffer::WriteU8(std::uint8_t Value) {
  Check(Position <= Size - 1, "Position<=Size-1", {"Position", Position}, {"Size", Size});
  Buffer[Position++] = Value;
}

void TWriteBuffer::WriteU16(std::uint16_t Value) {
  Check(Position <= Size - 2, "Position<=Size-2", {"Position", Position}, {"Size", Size});
  StoreLittleEndian(Buffer + Position, Value, 2);
  Position += 2;
}

void TWriteBuffer::WriteU32(std::uint32_t Value) {
  Check(Position <= Size - 4, "Position<=Size-4", {"Position", Position}, {"Size", Size});
  StoreLittleEndian(Buffer + Position, Value, 4);
  Position += 4;
}

void TWriteBuffer::WriteString(const char* s) {
  Check(s != nullptr, "s!=NULL");
  const std::size_t Length = std::strlen(s);
  Check(Length <= 0xFFFF, "Length<=0xFFFF", {"Length", static_cast<long long>(Length)});
  WriteU16(static_cast<std::uint16_t>(Length));
  Check(Position <= Size - static_cast<int>(Length), "Position<=Size-Length", {"Position", Position},
        {"Length", static_cast<long long>(Length)});
  std::memcpy(Buffer + Position, s, Length);
  Position += static_cast<int>(Length);
}

void TWriteBuffer::WriteBytes(const std::uint8_t* Source, int Count) {
  Check(Source != nullptr, "Buffer!=NULL");
  Check(Count >= 0, "Count>=0", {"Count", Count});
  Check(Position <= Size - Count, "Position<=Size-Count", {"Position", Position}, {"Count", Count});
  std::memcpy(Buffer + Position, Source, Count);
  Position += Count;
}

// ---- Module

void InitNetwork() {
  Network = std::make_unique<TNetworkState>();
  PlayerSocketPointerStatus = NETWORK_STARTED;
  TReportSources& Sources = ReportSources();
  Sources.LastCommands = GetLastCommands;
  Sources.LastPacket = GetLastPacket;
  Sources.CloseSocket = [] { CloseConnection(true); };
}

void ExitNetwork() {
  if (Network == nullptr) return;
  CloseConnection(true);
  TReportSources& Sources = ReportSources();
  Sources.LastCommands = nullptr;
  Sources.LastPacket = nullptr;
  Sources.CloseSocket = nullptr;
  Network.reset();
  PlayerSocketPointerStatus = NETWORK_ENDED;
}

void SetNetworkHandlers(TNetworkHandler ConnectHandler, TNetworkHandler ReceiveHandler,
                        TNetworkHandler CloseHandler) {
  TNetworkState& State = Net();
  State.ConnectHandler = ConnectHandler;
  State.ReceiveHandler = ReceiveHandler;
  State.CloseHandler = CloseHandler;
}

void SetConnectionHooks(const TConnectionHooks& Hooks) { Net().Hooks = Hooks; }

void SetPaddingSource(std::uint8_t (*Source)()) {
  Net().PaddingSource = Source != nullptr ? Source : RuntimePadding;
}

void SetSessionKey(const std::uint8_t* Key) { Net().SessionKey.Set(Key); }

// ---- Outgoing

void BeginCommand(int CommandType) {
  Check(CommandType >= 0 && CommandType <= 255, "In(CommandType,0,255)", {"CommandType", CommandType});
  TWriteBuffer& Writer = Net().Writer;
  Writer.Position = 0;
  Writer.WriteU16(0);
  Writer.WriteU32(0);
  Writer.WriteU16(0);
  Writer.WriteU8(static_cast<std::uint8_t>(CommandType));
}

void WriteU8(std::uint8_t Value) { Net().Writer.WriteU8(Value); }
void WriteU16(std::uint16_t Value) { Net().Writer.WriteU16(Value); }
void WriteU32(std::uint32_t Value) { Net().Writer.WriteU32(Value); }
void WriteString(const char* Text) { Net().Writer.WriteString(Text); }
void WriteBlock(const std::uint8_t* Buffer) { Net().Writer.WriteBytes(Buffer, LOGIN_BLOCK_SIZE); }

std::span<const std::uint8_t> FrameCommand(bool Encrypted) {
  TNetworkState& State = Net();
  return Encrypted ? FrameEnciphered(State) : FramePlain(State);
}

// The result of the send is not looked at: a broken connection shows in its close.
void FinishCommand(bool Encrypted) {
  TNetworkState& State = Net();
  if (State.PlayerSocket == nullptr) return;
  const std::span<const std::uint8_t> Packet = FrameCommand(Encrypted);
  State.PlayerSocket->Send(Packet.data(), static_cast<int>(Packet.size()));
}

// ---- Incoming

std::span<std::uint8_t> ReceiveSpace() {
  TNetworkState& State = Net();
  const int BufferSize = RECEIVE_BUFFER_SIZE - State.NextToWrite;
  Check(BufferSize > 0, "BufferSize>0", {"BufferSize", BufferSize});
  return {State.ReceiveBuffer.data() + State.NextToWrite, static_cast<std::size_t>(BufferSize)};
}

bool CommitReceived(int Count) {
  TNetworkState& State = Net();
  const int BufferSize = RECEIVE_BUFFER_SIZE - State.NextToWrite;
  Check(Count >= 0 && Count <= BufferSize, "In(Count,0,BufferSize)", {"Count", Count},
        {"BufferSize", BufferSize});
  State.NextToWrite += Count;
  return ScanPackets(State);
}

void ReceiveData(bool Drain) {
  do {
    const std::span<std::uint8_t> Space = ReceiveSpace();
    CPlayerSocket* Socket = Net().PlayerSocket.get();
    if (Socket == nullptr) return;
    const int Count = Socket->Receive(Space.data(), static_cast<int>(Space.size()));
    if (Count <= 0) return;
    if (CommitReceived(Count)) CallHandler(Net().ReceiveHandler, "ReceiveHandler!=NULL");
    if (GetConnectionState() == OFFLINE) return;
  } while (Drain);
}

bool NextPacket() {
  TNetworkState& State = Net();
  CompactReceiveBuffer(State);
  if (State.PacketEnd == 0) return false;

  std::uint8_t* Packet = State.ReceiveBuffer.data();
  TReadBuffer& Reader = State.Reader;
  Reader = TReadBuffer(Packet, HEADER_SIZE);
  const int PacketSize = Reader.ReadU16();
  Check(PacketSize >= MIN_PACKET_SIZE, "packet size is too small even for one encrypted block",
        {"PacketSize", PacketSize});
  Check((PacketSize - 4) % BLOCK_SIZE == 0, "packet size does not fit to symmetric encryption",
        {"PacketSize", PacketSize});
  const std::uint32_t Checksum = Reader.ReadU32();
  const std::uint32_t Computed = Adler32(Packet + CIPHER_START, PacketSize - 4);
  Check(Checksum == Computed, "checksum is not correct", {"Checksum", Checksum}, {"Computed", Computed});

  // The server's first packet on a game connection comes before the key is in use.
  if (GetConnectionState() != CONNECTED_GAME) {
    for (int Offset = CIPHER_START; Offset < PacketSize + 2; Offset += BLOCK_SIZE)
      DecipherBlock(Packet + Offset, State.SessionKey);
  }
  const int PayloadLength = Reader.ReadU16();
  Check(PayloadLength <= PacketSize - 6, "PayloadLength<=PacketSize-6", {"PayloadLength", PayloadLength},
        {"PacketSize", PacketSize});
  // Reading stops at the payload's end; the padding is never seen.
  Reader.Size = HEADER_SIZE + PayloadLength;
  State.PacketStart = PacketSize + 2;
  RememberPayload(State, PayloadLength);
  return true;
}

// An empty packet is passed over, so a handler that loops until -1 takes every
// command of every complete packet.
int NextCommandType() {
  TNetworkState& State = Net();
  while (State.Reader.Position == State.Reader.Size) {
    if (!NextPacket()) return -1;
  }
  const int Type = State.Reader.ReadU8();
  RememberCommand(State, Type);
  return Type;
}

std::uint8_t ReadU8() { return Net().Reader.ReadU8(); }
std::uint16_t ReadU16() { return Net().Reader.ReadU16(); }
std::uint32_t ReadU32() { return Net().Reader.ReadU32(); }
std::uint64_t ReadU64() { return Net().Reader.ReadU64(); }
void ReadString(char* Buffer, int MaxLength) { Net().Reader.ReadString(Buffer, MaxLength); }
std::string ReadNewString() { return Net().Reader.ReadNewString(); }
void ReadBytes(std::uint8_t* Buffer, int Count) { Net().Reader.ReadBytes(Buffer, Count); }
double ReadDouble() { return Net().Reader.ReadDouble(); }

std::array<std::uint8_t, LAST_PACKET_SIZE> GetLastPacket() { return Net().LastPacket; }

std::vector<int> GetLastCommands() {
  const TNetworkState& State = Net();
  std::vector<int> Oldest(LAST_COMMAND_COUNT);
  for (int I = 0; I < LAST_COMMAND_COUNT; ++I)
    Oldest[I] = State.LastCommands[(State.NextLastCommand + I) % LAST_COMMAND_COUNT];
  return Oldest;
}

// ---- Socket

void CPlayerSocket::OnReceive(int ErrorCode) {
  if (ErrorCode == 0) {
    ReceiveData(false);
    return;
  }
  ConnectionFailed(ErrorCode);
  SocketClosed(0);
}

void CPlayerSocket::OnConnect(int ErrorCode) {
  ArmTimeOut(0);
  if (ErrorCode == 0)
    CallHandler(Net().ConnectHandler, "ConnectHandler!=NULL");
  else
    ConnectionFailed(ErrorCode);
}

void CPlayerSocket::OnClose(int ErrorCode) { SocketClosed(ErrorCode); }

int GetPlayerSocketPointerStatus() { return PlayerSocketPointerStatus; }

CPlayerSocket* GetPlayerSocket() { return Net().PlayerSocket.get(); }

int CreatePlayerSocket() {
  CloseConnection(false);
  auto Socket = std::make_unique<CPlayerSocket>();
  const int Error = Socket->Create();
  if (Error != 0) {
    PlayerSocketPointerStatus = SOCKET_CREATION_FAILED;
    return Error;
  }
  Net().PlayerSocket = std::move(Socket);
  PlayerSocketPointerStatus = SOCKET_CREATED;
  return 0;
}

int ConnectPlayerSocket(const char* IPAddress, int Port, bool StartTimeOut) {
  TNetworkState& State = Net();
  Check(State.PlayerSocket != nullptr, "PlayerSocket!=NULL");
  Check(Port >= 0 && Port <= 0xFFFF, "In(Port,0,65535)", {"Port", Port});
  const int Error = State.PlayerSocket->Connect(IPAddress, static_cast<std::uint16_t>(Port));
  if (Error != 0) {
    State.PlayerSocket.reset();
    PlayerSocketPointerStatus = SOCKET_CONNECT_FAILED;
    return Error;
  }
  State.PacketStart = 0;
  State.PacketEnd = 0;
  State.NextToWrite = 0;
  State.Reader = TReadBuffer(State.ReceiveBuffer.data(), 0);
  if (StartTimeOut) ArmTimeOut(CONNECT_TIMEOUT_TICKS);
  return 0;
}

void CloseConnection(bool Force) {
  TNetworkState& State = Net();
  const int ConnectionState = GetConnectionState();
  const bool Resolving = ConnectionState == RESOLVING_ADMIN || ConnectionState == RESOLVING_GAME;
  if ((Force || Resolving) && State.Hooks.CancelLookUp != nullptr) State.Hooks.CancelLookUp();
  if (State.PlayerSocket == nullptr) return;

  CPlayerSocket& Socket = *State.PlayerSocket;
  Socket.ShutDown(CAsyncSocket::SENDS);
  std::array<std::uint8_t, DRAIN_CHUNK> Dropped;
  while (Socket.Receive(Dropped.data(), DRAIN_CHUNK) > 0) {
  }
  Socket.ShutDown(CAsyncSocket::BOTH);
  Socket.Close();
  State.PlayerSocket.reset();
  PlayerSocketPointerStatus = SOCKET_CLOSED;
  ArmTimeOut(0);
}
