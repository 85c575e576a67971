#pragma once
// A non-blocking stream socket whose events are delivered on the thread that
// calls PollSocketEvents: the connect result once; data available on every poll
// while unread data remain (for a listening socket: a peer waiting); the close
// once. The peer's close is reported as soon as it is seen, even with data
// still unread: an owner that wants them reads them in OnClose.
#include <cstdint>

class CAsyncSocket {
 public:
  enum { RECEIVES = 0, SENDS = 1, BOTH = 2 };

  CAsyncSocket();
  virtual ~CAsyncSocket();
  CAsyncSocket(const CAsyncSocket&) = delete;
  CAsyncSocket& operator=(const CAsyncSocket&) = delete;

  // Each returns 0 or the socket error number (platform/SocketErrors.h). A connect that is still
  // running counts as success; OnConnect tells its result.
  int Create();
  int Connect(const char* DottedAddress, std::uint16_t Port);
  // Binds to the address and port (0: any free port) and waits for peers;
  // OnAccept tells, while one waits, that Accept will take it.
  int Listen(const char* DottedAddress, std::uint16_t Port);
  int Accept(CAsyncSocket& Connection);
  // The bound port, 0 if none.
  std::uint16_t GetLocalPort() const;

  // Bytes read, 0 at the end of the stream, -1 on failure or when nothing waits.
  int Receive(void* Buffer, int Length);
  // Bytes sent or -1; never raises a signal.
  int Send(const void* Buffer, int Length);
  bool ShutDown(int How);
  void Close();

  virtual void OnAccept(int ErrorCode);
  virtual void OnConnect(int ErrorCode);
  virtual void OnReceive(int ErrorCode);
  virtual void OnClose(int ErrorCode);

 private:
  enum class TPhase { IDLE, LISTENING, CONNECTING, OPEN, FINISHED };

  friend void PollSocketEvents();
  short WantedEvents() const;
  void Poll();
  void Dispatch(short Events);
  int PendingError() const;

  int m_Socket = -1;
  TPhase m_Phase = TPhase::IDLE;
  short m_PendingEvents = 0;
  // The list of live sockets; a plain list needs no destruction at exit.
  CAsyncSocket* m_Previous = nullptr;
  CAsyncSocket* m_Next = nullptr;
};

// Polls every socket without waiting and runs the due callbacks. A callback may
// delete any socket, its own included, or create new ones.
void PollSocketEvents();
