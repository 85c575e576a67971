#include "platform/AsyncSocket.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

#include "platform/SocketErrors.h"

namespace {

// Head of the list of live sockets. Being a plain pointer, it outlives every
// socket that static destruction may still delete at exit.
constinit CAsyncSocket* FirstSocket = nullptr;

constexpr short CLOSE_EVENTS = POLLRDHUP | POLLHUP | POLLERR | POLLNVAL;

bool ParseAddress(const char* DottedAddress, std::uint16_t Port, sockaddr_in& Address) {
  Address.sin_family = AF_INET;
  Address.sin_port = htons(Port);
  return DottedAddress != nullptr && ::inet_pton(AF_INET, DottedAddress, &Address.sin_addr) == 1;
}

}  // namespace

CAsyncSocket::CAsyncSocket() : m_Next(FirstSocket) {
  if (m_Next != nullptr) m_Next->m_Previous = this;
  FirstSocket = this;
}

CAsyncSocket::~CAsyncSocket() {
  Close();
  if (m_Next != nullptr) m_Next->m_Previous = m_Previous;
  (m_Previous != nullptr ? m_Previous->m_Next : FirstSocket) = m_Next;
}

int CAsyncSocket::Create() {
  Close();
  m_Socket = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  return m_Socket < 0 ? platform::SocketErrorNumber(errno) : 0;
}

int CAsyncSocket::Connect(const char* DottedAddress, std::uint16_t Port) {
  if (m_Socket < 0) return platform::SocketErrorNumber(EBADF);
  sockaddr_in Address{};
  if (!ParseAddress(DottedAddress, Port, Address)) return platform::SocketErrorNumber(EINVAL);
  if (::connect(m_Socket, reinterpret_cast<const sockaddr*>(&Address), sizeof Address) != 0 &&
      errno != EINPROGRESS)
    return platform::SocketErrorNumber(errno);
  m_Phase = TPhase::CONNECTING;
  return 0;
}

int CAsyncSocket::Listen(const char* DottedAddress, std::uint16_t Port) {
  if (m_Socket < 0) return platform::SocketErrorNumber(EBADF);
  sockaddr_in Address{};
  if (!ParseAddress(DottedAddress, Port, Address)) return platform::SocketErrorNumber(EINVAL);
  const int Reuse = 1;
  ::setsockopt(m_Socket, SOL_SOCKET, SO_REUSEADDR, &Reuse, sizeof Reuse);
  if (::bind(m_Socket, reinterpret_cast<const sockaddr*>(&Address), sizeof Address) != 0 ||
      ::listen(m_Socket, SOMAXCONN) != 0)
    return platform::SocketErrorNumber(errno);
  m_Phase = TPhase::LISTENING;
  return 0;
}

int CAsyncSocket::Accept(CAsyncSocket& Connection) {
  if (m_Phase != TPhase::LISTENING) return platform::SocketErrorNumber(EINVAL);
  const int Accepted = ::accept4(m_Socket, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
  if (Accepted < 0) return platform::SocketErrorNumber(errno);
  Connection.Close();
  Connection.m_Socket = Accepted;
  Connection.m_Phase = TPhase::OPEN;
  return 0;
}

std::uint16_t CAsyncSocket::GetLocalPort() const {
  sockaddr_in Address{};
  socklen_t Length = sizeof Address;
  if (m_Socket < 0 || ::getsockname(m_Socket, reinterpret_cast<sockaddr*>(&Address), &Length) != 0)
    return 0;
  return ntohs(Address.sin_port);
}

int CAsyncSocket::Receive(void* Buffer, int Length) {
  if (m_Socket < 0 || Length < 0) return -1;
  const ssize_t Count = ::recv(m_Socket, Buffer, static_cast<size_t>(Length), 0);
  return Count < 0 ? -1 : static_cast<int>(Count);
}

int CAsyncSocket::Send(const void* Buffer, int Length) {
  if (m_Socket < 0 || Length < 0) return -1;
  const ssize_t Count = ::send(m_Socket, Buffer, static_cast<size_t>(Length), MSG_NOSIGNAL);
  return Count < 0 ? -1 : static_cast<int>(Count);
}

bool CAsyncSocket::ShutDown(int How) {
  const int SystemHow = How == RECEIVES ? SHUT_RD : How == SENDS ? SHUT_WR : SHUT_RDWR;
  return m_Socket >= 0 && ::shutdown(m_Socket, SystemHow) == 0;
}

void CAsyncSocket::Close() {
  if (m_Socket >= 0) ::close(m_Socket);
  m_Socket = -1;
  m_Phase = TPhase::IDLE;
  m_PendingEvents = 0;
}

void CAsyncSocket::OnAccept(int) {}
void CAsyncSocket::OnConnect(int) {}
void CAsyncSocket::OnReceive(int) {}
void CAsyncSocket::OnClose(int) {}

short CAsyncSocket::WantedEvents() const {
  switch (m_Phase) {
    case TPhase::LISTENING:
      return POLLIN;
    case TPhase::CONNECTING:
      return POLLOUT;
    case TPhase::OPEN:
      return POLLIN | POLLRDHUP;
    default:
      return 0;
  }
}

int CAsyncSocket::PendingError() const {
  int Error = 0;
  socklen_t Length = sizeof Error;
  if (::getsockopt(m_Socket, SOL_SOCKET, SO_ERROR, &Error, &Length) != 0)
    return platform::SocketErrorNumber(errno);
  return platform::SocketErrorNumber(Error);
}

// The phase changes before the callback, which may delete this socket.
void CAsyncSocket::Dispatch(short Events) {
  if (m_Phase == TPhase::CONNECTING) {
    const int Error = PendingError();
    m_Phase = Error == 0 ? TPhase::OPEN : TPhase::FINISHED;
    OnConnect(Error);
    return;
  }
  if (m_Phase == TPhase::LISTENING) {
    OnAccept((Events & POLLERR) != 0 ? PendingError() : 0);
    return;
  }
  if (m_Phase != TPhase::OPEN) return;
  if ((Events & CLOSE_EVENTS) != 0) {
    const int Error = (Events & POLLERR) != 0 ? PendingError() : 0;
    m_Phase = TPhase::FINISHED;
    OnClose(Error);
  } else if ((Events & POLLIN) != 0) {
    OnReceive(0);
  }
}

void CAsyncSocket::Poll() {
  pollfd Entry{m_Socket, WantedEvents(), 0};
  const bool Due = Entry.events != 0 && ::poll(&Entry, 1, 0) > 0;
  m_PendingEvents = Due ? Entry.revents : 0;
}

void PollSocketEvents() {
  for (CAsyncSocket* Socket = FirstSocket; Socket != nullptr; Socket = Socket->m_Next) Socket->Poll();
  // Callbacks may delete or create sockets, so each round starts again at the head.
  for (;;) {
    CAsyncSocket* Due = FirstSocket;
    while (Due != nullptr && Due->m_PendingEvents == 0) Due = Due->m_Next;
    if (Due == nullptr) return;
    const short Events = Due->m_PendingEvents;
    Due->m_PendingEvents = 0;
    Due->Dispatch(Events);
  }
}
