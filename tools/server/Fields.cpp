#include "tools/server/Fields.h"

#include <cmath>

#include "core/Exception.h"
#include "tools/server/Framing.h"

namespace server {

namespace {
constexpr std::int64_t DOUBLE_BIAS = 0x7FFFFFFF;
constexpr int MAX_PRECISION = 9;
// A packet's header, length field and padding take the rest of the client's buffer.
constexpr int MAX_PAYLOAD = MAX_SERVER_PACKET - 8 - (CIPHER_BLOCK - 2);
}  // namespace

TWireDouble EncodeDouble(double Value, int Precision) {
  Check(Precision >= 0 && Precision <= MAX_PRECISION, "precision of double out of range",
        {"Precision", Precision});
  const std::int64_t Raw = std::llround(Value * std::pow(10.0, Precision)) + DOUBLE_BIAS;
  Check(Raw >= 0 && Raw <= 0xFFFFFFFF, "double out of range", {"Raw", Raw});
  return {static_cast<std::uint8_t>(Precision), static_cast<std::uint32_t>(Raw)};
}

TMessageWriter::TMessageWriter() : m_Memory(MAX_PAYLOAD), m_Writer(m_Memory.data(), MAX_PAYLOAD) {}

void TMessageWriter::Begin(std::uint8_t Type, std::string Name) {
  m_Writer.WriteU8(Type);
  m_Messages.push_back({std::move(Name), {}});
}

void TMessageWriter::Record(std::string Field, TFieldValue Value) {
  Check(!m_Messages.empty(), "field written before any message");
  m_Messages.back().Fields.push_back({std::move(Field), std::move(Value)});
}

void TMessageWriter::U8(std::string Field, std::uint8_t Value) {
  m_Writer.WriteU8(Value);
  Record(std::move(Field), std::int64_t{Value});
}

void TMessageWriter::U16(std::string Field, std::uint16_t Value) {
  m_Writer.WriteU16(Value);
  Record(std::move(Field), std::int64_t{Value});
}

void TMessageWriter::U32(std::string Field, std::uint32_t Value) {
  m_Writer.WriteU32(Value);
  Record(std::move(Field), std::int64_t{Value});
}

void TMessageWriter::String(std::string Field, std::string_view Text) {
  Check(Text.size() <= 0xFFFF, "text too long for a string field",
        {"Length", static_cast<long long>(Text.size())});
  m_Writer.WriteU16(static_cast<std::uint16_t>(Text.size()));
  m_Writer.WriteBytes(reinterpret_cast<const std::uint8_t*>(Text.data()), static_cast<int>(Text.size()));
  Record(std::move(Field), std::string(Text));
}

void TMessageWriter::Double(std::string Field, double Value, int Precision) {
  const TWireDouble Wire = EncodeDouble(Value, Precision);
  m_Writer.WriteU8(Wire.Precision);
  m_Writer.WriteU32(Wire.Raw);
  Record(std::move(Field), Value);
}

void TMessageWriter::Bytes(std::string Field, std::span<const std::uint8_t> Bytes) {
  if (!Bytes.empty()) m_Writer.WriteBytes(Bytes.data(), static_cast<int>(Bytes.size()));
  Record(std::move(Field), HexText(Bytes));
}

std::span<const std::uint8_t> TMessageWriter::Payload() const {
  return {m_Memory.data(), static_cast<std::size_t>(m_Writer.Position)};
}

TFieldReader::TFieldReader(std::span<const std::uint8_t> Bytes, TCommandRecord& Record)
    : m_Reader(Bytes.data(), static_cast<int>(Bytes.size())), m_Record(Record) {}

std::uint8_t TFieldReader::U8(std::string Field) {
  const std::uint8_t Value = m_Reader.ReadU8();
  Note(std::move(Field), std::int64_t{Value});
  return Value;
}

std::uint16_t TFieldReader::U16(std::string Field) {
  const std::uint16_t Value = m_Reader.ReadU16();
  Note(std::move(Field), std::int64_t{Value});
  return Value;
}

std::uint32_t TFieldReader::U32(std::string Field) {
  const std::uint32_t Value = m_Reader.ReadU32();
  Note(std::move(Field), std::int64_t{Value});
  return Value;
}

std::string TFieldReader::String(std::string Field, int Limit) {
  std::string Text = m_Reader.ReadNewString();
  const int Length = static_cast<int>(Text.size());
  if (Limit > 0 && Length > Limit)
    ThrowException("string is longer than its limit",
                   {{"field", Field}, {"length", std::to_string(Length)}, {"limit", std::to_string(Limit)}});
  Note(std::move(Field), Text);
  return Text;
}

std::vector<std::uint8_t> TFieldReader::Bytes(std::string Field, int Count) {
  std::vector<std::uint8_t> Bytes = Skip(Count);
  Note(std::move(Field), HexText(Bytes));
  return Bytes;
}

std::vector<std::uint8_t> TFieldReader::Skip(int Count) {
  std::vector<std::uint8_t> Bytes(Count);
  if (Count > 0) m_Reader.ReadBytes(Bytes.data(), Count);
  return Bytes;
}

void TFieldReader::Note(std::string Field, TFieldValue Value) {
  m_Record.Fields.push_back({std::move(Field), std::move(Value)});
}

void TFieldReader::CheckConsumed() const {
  Check(m_Reader.Position == m_Reader.Size, "payload not consumed exactly", {"Consumed", m_Reader.Position},
        {"Size", m_Reader.Size});
}

std::string HexText(std::span<const std::uint8_t> Bytes) {
  static constexpr char DIGITS[] = "0123456789abcdef";
  std::string Text;
  for (const std::uint8_t Byte : Bytes) {
    Text += DIGITS[Byte >> 4];
    Text += DIGITS[Byte & 15];
  }
  return Text;
}

}  // namespace server
