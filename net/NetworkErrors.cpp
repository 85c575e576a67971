#include "net/NetworkErrors.h"

#include <algorithm>
#include <cstdio>

#include "core/Exception.h"
#include "net/Deployment.h"

namespace {

struct TErrorRow {
  int Code;
  const char* Text;
};

// The socket and system error numbers with their texts.
constexpr TErrorRow ERROR_TABLE[] = {
    {6, "Specified event object handle is invalid."},
    {8, "Insufficient memory available."},
    {87, "One or more parameters are invalid."},
    {995, "Overlapped operation aborted."},
    {996, "Overlapped I/O event object not in signaled state."},
    {997, "Overlapped operations will complete later."},
    {10004, "Interrupted function call."},
    {10009, "File handle is not valid."},
    {10013, "Permission denied."},
    {10014, "Bad address."},
    {10022, "Invalid argument."},
    {10024, "Too many open files."},
    {10035, "Resource temporarily unavailable."},
    {10036, "Operation now in progress."},
    {10037, "Operation already in progress."},
    {10038, "Socket operation on nonsocket."},
    {10039, "Destination address required."},
    {10040, "Message too long."},
    {10041, "Protocol wrong type for socket."},
    {10042, "Bad protocol option."},
    {10043, "Protocol not supported."},
    {10044, "Socket type not supported."},
    {10045, "Operation not supported."},
    {10046, "Protocol family not supported."},
    {10047, "Address family not supported by protocol family."},
    {10048, "Address already in use."},
    {10049, "Cannot assign requested address."},
    {10050, "Network is down."},
    {10051, "Network is unreachable."},
    {10052, "Network dropped connection on reset."},
    {10053, "Software caused connection abort."},
    {10054, "Connection reset by peer."},
    {10055, "No buffer space available."},
    {10056, "Socket is already connected."},
    {10057, "Socket is not connected."},
    {10058, "Cannot send after socket shutdown."},
    {10059, "Too many references."},
    {10060, "Connection timed out."},
    {10061, "Connection refused."},
    {10062, "Cannot translate name."},
    {10063, "Name too long."},
    {10064, "Host is down."},
    {10065, "No route to host."},
    {10066, "Directory not empty."},
    {10067, "Too many processes."},
    {10068, "User quota exceeded."},
    {10069, "Disk quota exceeded."},
    {10070, "Stale file handle reference."},
    {10071, "Item is remote."},
    {10091, "Network subsystem is unavailable."},
    {10092, "Winsock.dll version out of range."},
    {10093, "Successful WSAStartup not yet performed."},
    {10101, "Graceful shutdown in progress."},
    {10102, "No more results."},
    {10103, "Call has been canceled."},
    {10104, "Procedure call table is invalid."},
    {10105, "Service provider is invalid."},
    {10106, "Service provider failed to initialize."},
    {10107, "System call failure."},
    {10108, "Service not found."},
    {10109, "Class type not found."},
    {10110, "No more results."},
    {10111, "Call was canceled."},
    {10112, "Database query was refused."},
    {11001, "Host not found."},
    {11002, "Nonauthoritative host not found."},
    {11003, "This is a nonrecoverable error."},
    {11004, "Valid name, no data record of requested type."},
    {11005, "QOS receivers."},
    {11006, "QOS senders."},
    {11007, "No QOS senders."},
    {11008, "QOS no receivers."},
    {11009, "QOS request confirmed."},
    {11010, "QOS admission error."},
    {11011, "QOS policy failure."},
    {11012, "QOS bad style."},
    {11013, "QOS bad object."},
    {11014, "QOS traffic control error."},
    {11015, "QOS generic error."},
    {11016, "QOS service type error."},
    {11017, "QOS flowspec error."},
    {11018, "Invalid QOS provider buffer."},
    {11019, "Invalid QOS filter style."},
    {11020, "Invalid QOS filter type."},
    {11021, "Incorrect QOS filter count."},
    {11022, "Invalid QOS object length."},
    {11023, "Incorrect QOS flow count."},
    {11024, "Unrecognized QOS object."},
    {11025, "Invalid QOS policy object."},
    {11026, "Invalid QOS flow descriptor."},
    {11027, "Invalid QOS provider-specific flowspec."},
    {11028, "Invalid QOS provider-specific filterspec."},
    {11029, "Invalid QOS shape discard mode object."},
    {11030, "Invalid QOS shaping rate object."},
    {11031, "Reserved policy QOS element type."},
};

// Codes with a short text of their own, worded for the player.
constexpr TErrorRow SHORT_TEXTS[] = {
    {10022, "Invalid server address. (%d)"},
    {10049, "Invalid server address. (%d)"},
    {10061, "Connection refused. (%d)"},
    {10040, "Connection error, message too long. (%d)"},
    {10065, "Server is unreachable. (%d)"},
    {11001, "Server name does not exist. (%d)"},
    {11002, "Could not resolve server name, please try again later. (%d)"},
    {11004, "Could not resolve server name. (%d)"},
    {200002, "Disconnected from server. (%d)"},
};

const TErrorRow* Find(const auto& Table, int Code) {
  const auto Row = std::find_if(std::begin(Table), std::end(Table),
                                [Code](const TErrorRow& R) { return R.Code == Code; });
  return Row == std::end(Table) ? nullptr : Row;
}

}  // namespace

std::string NetworkErrorText(int ErrorCode) {
  char Text[128];
  if (const TErrorRow* Row = Find(SHORT_TEXTS, ErrorCode)) {
    std::snprintf(Text, sizeof Text, Row->Text, ErrorCode);
  } else if (const TErrorRow* Row = Find(ERROR_TABLE, ErrorCode)) {
    std::snprintf(Text, sizeof Text, "%s (%d)", Row->Text, ErrorCode);
  } else {
    std::snprintf(Text, sizeof Text, "Network Error. (%d)", ErrorCode);
  }
  return Text;
}

std::string FormatNetworkError(int ErrorCode, int ErrorType) {
  const char* Frame = nullptr;
  if (ErrorType == 1) {
    Frame = "Cannot connect to a login server.\n\nError: %s\n\nAll login servers are offline.";
  } else if (ErrorType == 2) {
    Frame = "Cannot connect to the game server.\n\nError: %s\n\nThe game server is offline.";
  } else {
    ThrowException("unknown error type", {{"ErrorType", std::to_string(ErrorType)}});
  }
  char Text[1024];
  std::snprintf(Text, sizeof Text, Frame, NetworkErrorText(ErrorCode).c_str());
  return std::string(Text) + " Check http://" + WEB_HOST +
         " for news about the servers.\nIf the problem remains, look at the FAQs in the support "
         "section of the web site.";
}
