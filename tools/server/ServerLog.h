#pragma once
// The server's log: one JSON object per line. Every command that a client sent
// is there with all its fields, every message that went back, and every
// failure, so that tests can check a client byte by byte.
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/Exception.h"
#include "tools/server/World.h"

namespace server {

using TFieldValue = std::variant<std::int64_t, double, std::string>;

struct TField {
  std::string Name;
  TFieldValue Value;
};

// One command or message with its fields in wire order.
struct TCommandRecord {
  std::string Name;
  std::vector<TField> Fields;
};

enum class EServerKind { LOGIN, GAME };

// A JSON string literal; bytes above 127 are Latin-1 and become those code points.
std::string JsonString(std::string_view Bytes);

class TServerLog {
 public:
  // Takes each line without its line feed; IsError marks failures.
  using TSink = std::function<void(const std::string& Line, bool IsError)>;
  explicit TServerLog(TSink Sink);

  void Listening(EServerKind Kind, int Port);
  // "accepted", "closed by client", "closed":
  void Event(int Connection, EServerKind Kind, std::string_view Event);
  void Received(int Connection, EServerKind Kind, const TCommandRecord& Command);
  void Sent(int Connection, EServerKind Kind, const TCommandRecord& Message);
  // A step that the world performed, and when the walk ends.
  void Step(const TStepRecord& Step);
  // Command is the name of the command being read, empty if unknown.
  void Error(int Connection, EServerKind Kind, const TMyException& Failure, std::string_view Command);
  int ErrorCount() const { return m_Errors; }

 private:
  std::string Head(int Connection, EServerKind Kind) const;

  TSink m_Sink;
  int m_Errors = 0;
};

}  // namespace server
