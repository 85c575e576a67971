#pragma once
// Field by field writing and reading of commands, which records each field
// under its name for the log while it goes to or comes from the wire.
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "net/Communication.h"
#include "tools/server/ServerLog.h"

namespace server {

// The wire's "double": u8 precision p, u32 raw; the value is
// (raw - 2147483647) / 10^p.
struct TWireDouble {
  std::uint8_t Precision;
  std::uint32_t Raw;
};
TWireDouble EncodeDouble(double Value, int Precision);

// The commands of one packet from the server, one after the other.
class TMessageWriter {
 public:
  TMessageWriter();
  TMessageWriter(const TMessageWriter&) = delete;
  TMessageWriter& operator=(const TMessageWriter&) = delete;

  void Begin(std::uint8_t Type, std::string Name);
  void U8(std::string Field, std::uint8_t Value);
  void U16(std::string Field, std::uint16_t Value);
  void U32(std::string Field, std::uint32_t Value);
  void String(std::string Field, std::string_view Text);
  void Double(std::string Field, double Value, int Precision);
  // Bytes written as they are, noted as hex.
  void Bytes(std::string Field, std::span<const std::uint8_t> Bytes);

  std::span<const std::uint8_t> Payload() const;
  const std::vector<TCommandRecord>& Messages() const { return m_Messages; }

 private:
  void Record(std::string Field, TFieldValue Value);

  std::vector<std::uint8_t> m_Memory;
  TWriteBuffer m_Writer;
  std::vector<TCommandRecord> m_Messages;
};

// Reads the fields of a client command and notes them in Record.
class TFieldReader {
 public:
  TFieldReader(std::span<const std::uint8_t> Bytes, TCommandRecord& Record);

  std::uint8_t U8(std::string Field);
  std::uint16_t U16(std::string Field);
  std::uint32_t U32(std::string Field);
  // A Limit of 0: no limit but the packet's.
  std::string String(std::string Field, int Limit);
  // Count raw bytes, noted as hex.
  std::vector<std::uint8_t> Bytes(std::string Field, int Count);
  // Raw bytes that are not noted.
  std::vector<std::uint8_t> Skip(int Count);
  // Notes a value that the caller has made of raw bytes.
  void Note(std::string Field, TFieldValue Value);

  int Position() const { return m_Reader.Position; }
  // Fails unless every byte has been read.
  void CheckConsumed() const;

 private:
  TReadBuffer m_Reader;
  TCommandRecord& m_Record;
};

std::string HexText(std::span<const std::uint8_t> Bytes);

}  // namespace server
