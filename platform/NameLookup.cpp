#include "platform/NameLookup.h"

#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <memory>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/SocketErrors.h"

namespace platform {

namespace {

// One look-up, shared by the thread that runs it and the loop that waits for
// it. The thread writes the result before it writes the byte into the pipe,
// and the loop reads the result only after reading that byte.
struct TLookupJob {
  ~TLookupJob() {
    close(Pipe[0]);
    close(Pipe[1]);
  }

  std::string HostName;
  int Error = 0;
  std::array<std::uint8_t, 4> Address{};
  int Pipe[2] = {-1, -1};
};

struct TPendingLookup {
  std::shared_ptr<TLookupJob> Job;
  TLookupHandler Handler = nullptr;
};

TPendingLookup Pending;

void Resolve(TLookupJob& Job) {
  addrinfo Hints{};
  Hints.ai_family = AF_INET;
  Hints.ai_socktype = SOCK_STREAM;
  addrinfo* Result = nullptr;
  const int Status = getaddrinfo(Job.HostName.c_str(), nullptr, &Hints, &Result);
  if (Status != 0 || Result == nullptr) {
    Job.Error = LookupErrorNumber(Status != 0 ? Status : EAI_NONAME);
  } else {
    const auto* Address = reinterpret_cast<const sockaddr_in*>(Result->ai_addr);
    std::memcpy(Job.Address.data(), &Address->sin_addr, 4);
  }
  if (Result != nullptr) freeaddrinfo(Result);
  const char Done = 1;
  [[maybe_unused]] const ssize_t Written = write(Job.Pipe[1], &Done, 1);
}

}  // namespace

bool StartNameLookup(const std::string& HostName, TLookupHandler Handler) {
  CancelNameLookup();
  auto Job = std::make_shared<TLookupJob>();
  Job->HostName = HostName;
  if (pipe2(Job->Pipe, O_CLOEXEC | O_NONBLOCK) != 0) return false;
  try {
    std::thread([Job] { Resolve(*Job); }).detach();
  } catch (const std::system_error&) {
    return false;
  }
  Pending = {std::move(Job), Handler};
  return true;
}

void CancelNameLookup() { Pending = {}; }

void PollNameLookups() {
  if (!Pending.Job) return;
  char Done = 0;
  if (read(Pending.Job->Pipe[0], &Done, 1) != 1) return;
  const TPendingLookup Finished = std::exchange(Pending, {});
  Finished.Handler(Finished.Job->Error, Finished.Job->Address.data());
}

}  // namespace platform
