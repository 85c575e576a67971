#include "tools/server/ServerLog.h"

#include <charconv>
#include <cstdio>

#include "core/Clock.h"

namespace server {

namespace {

const char* KindName(EServerKind Kind) { return Kind == EServerKind::LOGIN ? "login" : "game"; }

std::string JsonValue(const TFieldValue& Value) {
  if (const auto* Number = std::get_if<std::int64_t>(&Value)) return std::to_string(*Number);
  if (const auto* Real = std::get_if<double>(&Value)) {
    char Text[32];
    const auto Result = std::to_chars(Text, Text + sizeof Text, *Real);
    return std::string(Text, Result.ptr);
  }
  return JsonString(std::get<std::string>(Value));
}

std::string JsonFields(const std::vector<TField>& Fields) {
  std::string Text = "{";
  for (const TField& Field : Fields) {
    if (Text.size() > 1) Text += ',';
    Text += JsonString(Field.Name) + ':' + JsonValue(Field.Value);
  }
  return Text + '}';
}

std::string JsonValues(const std::vector<TNamedValue>& Values) {
  std::vector<TField> Fields;
  for (const TNamedValue& Value : Values) Fields.push_back({Value.Name, Value.Value});
  return JsonFields(Fields);
}

}  // namespace

std::string JsonString(std::string_view Bytes) {
  std::string Text = "\"";
  for (const char Byte : Bytes) {
    const auto Code = static_cast<unsigned char>(Byte);
    if (Code == '"' || Code == '\\') {
      Text += '\\';
      Text += Byte;
    } else if (Code >= 0x20 && Code < 0x7F) {
      Text += Byte;
    } else {
      char Escape[8];
      std::snprintf(Escape, sizeof Escape, "\\u%04x", Code);
      Text += Escape;
    }
  }
  return Text + '"';
}

TServerLog::TServerLog(TSink Sink) : m_Sink(std::move(Sink)) {}

std::string TServerLog::Head(int Connection, EServerKind Kind) const {
  return "{\"time\":" + std::to_string(GetProgramTime()) + ",\"connection\":" + std::to_string(Connection) +
         ",\"server\":\"" + KindName(Kind) + '"';
}

void TServerLog::Listening(EServerKind Kind, int Port) {
  m_Sink(Head(0, Kind) + ",\"event\":\"listening\",\"port\":" + std::to_string(Port) + '}', false);
}

void TServerLog::Event(int Connection, EServerKind Kind, std::string_view Event) {
  m_Sink(Head(Connection, Kind) + ",\"event\":" + JsonString(Event) + '}', false);
}

void TServerLog::Received(int Connection, EServerKind Kind, const TCommandRecord& Command) {
  m_Sink(Head(Connection, Kind) + ",\"command\":" + JsonString(Command.Name) +
             ",\"fields\":" + JsonFields(Command.Fields) + '}',
         false);
}

void TServerLog::Sent(int Connection, EServerKind Kind, const TCommandRecord& Message) {
  m_Sink(Head(Connection, Kind) + ",\"sent\":" + JsonString(Message.Name) +
             ",\"fields\":" + JsonFields(Message.Fields) + '}',
         false);
}

void TServerLog::Step(const TStepRecord& Step) {
  m_Sink(Head(0, EServerKind::GAME) + ",\"step\":{\"creature\":" + std::to_string(Step.CreatureId) +
             ",\"from\":" + PositionText(Step.From) + ",\"to\":" + PositionText(Step.To) +
             ",\"ends\":" + std::to_string(Step.EndTime) + "}}",
         false);
}

void TServerLog::Error(int Connection, EServerKind Kind, const TMyException& Failure,
                       std::string_view Command) {
  ++m_Errors;
  std::string Line = Head(Connection, Kind) + ",\"error\":" + JsonString(Failure.Text()) +
                     ",\"values\":" + JsonValues(Failure.Values());
  if (!Failure.Reason().empty()) Line += ",\"reason\":" + JsonString(Failure.Reason());
  if (!Command.empty()) Line += ",\"command\":" + JsonString(Command);
  m_Sink(Line + '}', true);
}

}  // namespace server
