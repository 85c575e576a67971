#include "core/Script.h"

#include <algorithm>
#include <cstring>

#include "core/Exception.h"
#include "core/Text.h"

namespace {

bool isDigit(int Character) { return Character >= '0' && Character <= '9'; }

// Decimal digits without an overflow check: the value wraps, as the file says.
int AppendDigit(int Value, int Digit) {
  return static_cast<int>(static_cast<unsigned>(Value) * 10u + static_cast<unsigned>(Digit - '0'));
}

TFileHandle OpenFile(const std::string& FileName, const char* Mode) {
  TFileHandle File(std::fopen(FileName.c_str(), Mode));
  if (File == nullptr) ThrowException("failed to open file", {{"FileName", FileName}});
  return File;
}

void CheckClosed(const TFileHandle& File, const std::string& FileName) {
  if (File != nullptr) ThrowException("file still open", {{"FileName", FileName}});
}

// The second character of "<=", "<>", ">=" and "->", as its special letter; 0 if none.
char PairedSpecial(char First, int Second) {
  if (First == '<' && Second == '=') return 'L';
  if (First == '<' && Second == '>') return 'N';
  if (First == '>' && Second == '=') return 'G';
  if (First == '-' && Second == '>') return 'I';
  return 0;
}

}  // namespace

// ---- TScriptReader

void TScriptReader::open(const std::string& FileName) {
  CheckClosed(m_File, m_FileName);
  m_File = OpenFile(FileName, "rb");
  m_FileName = FileName;
  m_Line = 1;
}

void TScriptReader::close() { m_File.reset(); }

void TScriptReader::error(std::string_view Text) {
  close();
  ThrowException("error in script file '" + m_FileName + "' in line " + std::to_string(m_Line),
                 {{"Error", Text.empty() ? "(unknown)" : std::string(Text)}});
}

int TScriptReader::nextCharacter() { return std::getc(m_File.get()); }

void TScriptReader::putBack(int Character) {
  if (Character != EOF) std::ungetc(Character, m_File.get());
}

void TScriptReader::countCharacter() {
  if (++m_Length > MAX_TOKEN_LENGTH) error("string too long");
}

void TScriptReader::store(char Character) {
  countCharacter();
  m_String += Character;
}

void TScriptReader::nextToken() {
  if (m_File == nullptr) ThrowException("no file open");
  m_String.clear();
  m_Bytes.clear();
  m_Number = 0;
  m_Coordinate = {};
  m_Length = 0;
  for (;;) {
    const int Character = nextCharacter();
    if (Character == EOF) {
      m_Token = TOKEN::ENDOFFILE;
      return;
    }
    const char C = static_cast<char>(Character);
    if (C == '\n') {
      ++m_Line;
    } else if (C == '#') {
      skipComment();
    } else if (!isSpace(C)) {
      if (isLetter(C)) return scanIdentifier(C);
      if (isDigit(C)) return scanNumber(C);
      if (C == '"') return scanString();
      if (C == '[') return scanBracket();
      return scanSpecial(C);
    }
  }
}

// Up to the line feed, which is left for the line count.
void TScriptReader::skipComment() {
  int Character = nextCharacter();
  while (Character != EOF && Character != '\n') Character = nextCharacter();
  putBack(Character);
}

void TScriptReader::scanIdentifier(char First) {
  m_Token = TOKEN::IDENTIFIER;
  store(First);
  for (;;) {
    const int Character = nextCharacter();
    const char C = static_cast<char>(Character);
    if (Character == EOF || !(isLetter(C) || isDigit(C) || C == '_')) {
      putBack(Character);
      return;
    }
    if (m_String.size() >= MAX_IDENTIFIER_LENGTH) error("identifier too long");
    store(C);
  }
}

// Returns the first character after the digits, which begin with Character.
int TScriptReader::scanDigits(int Character, int& Value) {
  Value = 0;
  while (isDigit(Character)) {
    countCharacter();
    Value = AppendDigit(Value, Character);
    Character = nextCharacter();
  }
  return Character;
}

int TScriptReader::expectDigit() {
  const int Character = nextCharacter();
  if (Character == EOF) error("unexpected end of file");
  if (!isDigit(Character)) error("syntax error");
  return Character;
}

void TScriptReader::expect(int Character, char Wanted) {
  if (Character == EOF) error("unexpected end of file");
  if (Character != Wanted) error("syntax error");
}

// A number, or with '-' between numbers a byte sequence.
void TScriptReader::scanNumber(char First) {
  int Character = scanDigits(First, m_Number);
  while (Character == '-') {
    countCharacter();
    m_Bytes.push_back(static_cast<std::uint8_t>(m_Number));
    Character = scanDigits(expectDigit(), m_Number);
  }
  putBack(Character);
  if (m_Bytes.empty()) {
    m_Token = TOKEN::NUMBER;
  } else {
    m_Bytes.push_back(static_cast<std::uint8_t>(m_Number));
    m_Number = 0;
    m_Token = TOKEN::BYTES;
  }
}

void TScriptReader::scanString() {
  for (;;) {
    int Character = nextCharacter();
    if (Character == EOF) error("unexpected end of file");
    if (Character == '"') {
      m_Token = TOKEN::STRING;
      return;
    }
    if (Character == '\\') {
      Character = nextCharacter();
      if (Character == EOF) error("unexpected end of file");
      if (Character == 'n') Character = '\n';
      else if (Character == '\n') ++m_Line;
    } else if (Character == '\n') {
      ++m_Line;
    }
    store(static_cast<char>(Character));
  }
}

// "[x,y,z]" with a digit after the bracket; any other '[' is a special.
void TScriptReader::scanBracket() {
  const int Character = nextCharacter();
  if (!isDigit(Character)) {
    putBack(Character);
    m_Token = TOKEN::SPECIAL;
    m_Special = '[';
    return;
  }
  expect(scanDigits(Character, m_Coordinate.X), ',');
  expect(scanDigits(expectDigit(), m_Coordinate.Y), ',');
  expect(scanDigits(expectDigit(), m_Coordinate.Z), ']');
  m_Token = TOKEN::COORDINATE;
}

void TScriptReader::scanSpecial(char First) {
  m_Token = TOKEN::SPECIAL;
  m_Special = First;
  if (First != '<' && First != '>' && First != '-') return;
  const int Character = nextCharacter();
  const char Paired = PairedSpecial(First, Character);
  if (Paired != 0) m_Special = Paired;
  else putBack(Character);
}

void TScriptReader::expectToken(TOKEN Kind, const char* Failure) {
  if (m_Token != Kind) error(Failure);
}

const std::string& TScriptReader::getIdentifier() {
  expectToken(TOKEN::IDENTIFIER, "identifier expected");
  for (char& C : m_String) C = toLowerChar(C);
  return m_String;
}

int TScriptReader::getNumber() {
  expectToken(TOKEN::NUMBER, "number expected");
  return m_Number;
}

const std::string& TScriptReader::getString() {
  expectToken(TOKEN::STRING, "string expected");
  return m_String;
}

std::span<const std::uint8_t> TScriptReader::getBytes() {
  expectToken(TOKEN::BYTES, "bytes expected");
  return m_Bytes;
}

TScriptCoordinate TScriptReader::getCoordinate() {
  expectToken(TOKEN::COORDINATE, "coordinate expected");
  return m_Coordinate;
}

char TScriptReader::getSpecial() {
  expectToken(TOKEN::SPECIAL, "special-char expected");
  return m_Special;
}

const std::string& TScriptReader::readIdentifier() {
  nextToken();
  return getIdentifier();
}

int TScriptReader::readNumber() {
  nextToken();
  if (m_Token == TOKEN::SPECIAL && m_Special == '-') {
    nextToken();
    return static_cast<int>(0u - static_cast<unsigned>(getNumber()));
  }
  return getNumber();
}

const std::string& TScriptReader::readString() {
  nextToken();
  return getString();
}

std::span<const std::uint8_t> TScriptReader::readBytes() {
  nextToken();
  return getBytes();
}

TScriptCoordinate TScriptReader::readCoordinate() {
  nextToken();
  return getCoordinate();
}

char TScriptReader::readSpecial() {
  nextToken();
  return getSpecial();
}

void TScriptReader::readSymbol(char Symbol) {
  if (readSpecial() != Symbol) error("special-char expected");
}

// ---- TScriptWriter

void TScriptWriter::open(const std::string& FileName) {
  CheckClosed(m_File, m_FileName);
  m_File = OpenFile(FileName, "wb");
  m_FileName = FileName;
}

void TScriptWriter::close() {
  if (m_File == nullptr) return;
  if (std::fclose(m_File.release()) != 0) ThrowException("failed to write file", {{"FileName", m_FileName}});
}

void TScriptWriter::put(std::string_view Text) {
  if (m_File == nullptr) ThrowException("no file open");
  if (std::fwrite(Text.data(), 1, Text.size(), m_File.get()) != Text.size())
    ThrowException("failed to write file", {{"FileName", m_FileName}});
}

void TScriptWriter::writeLn() { put("\n"); }

void TScriptWriter::writeText(std::string_view Text) { put(Text); }

void TScriptWriter::writeNumber(int Value) { put(std::to_string(Value)); }

void TScriptWriter::writeString(std::string_view Text) {
  std::string Quoted = "\"";
  for (const char C : Text) {
    if (C == '"' || C == '\\') Quoted += '\\';
    Quoted += C;
  }
  Quoted += '"';
  put(Quoted);
}

// ---- TBinaryFileReader

void TBinaryFileReader::open(const std::string& FileName) {
  CheckClosed(m_File, m_FileName);
  m_File = OpenFile(FileName, "rb");
  m_FileName = FileName;
}

void TBinaryFileReader::close() { m_File.reset(); }

std::FILE* TBinaryFileReader::file() {
  if (m_File == nullptr) ThrowException("no file open");
  return m_File.get();
}

void TBinaryFileReader::fail(const char* Text) const {
  ThrowException(Text, {{"FileName", m_FileName}});
}

void TBinaryFileReader::seek(long Offset) {
  std::FILE* File = file();
  if (Offset < 0) fail("negative offset");
  if (std::fseek(File, Offset, SEEK_SET) != 0) fail("failed to seek");
}

long TBinaryFileReader::tell() { return std::ftell(file()); }

long TBinaryFileReader::getSize() {
  std::FILE* File = file();
  const long Position = std::ftell(File);
  if (Position < 0 || std::fseek(File, 0, SEEK_END) != 0) fail("failed to seek");
  const long Size = std::ftell(File);
  if (std::fseek(File, Position, SEEK_SET) != 0) fail("failed to seek");
  return Size;
}

std::uint8_t TBinaryFileReader::readByte() {
  const int Byte = std::getc(file());
  if (Byte == EOF) fail("out of data");
  return static_cast<std::uint8_t>(Byte);
}

std::uint16_t TBinaryFileReader::readWord() {
  const std::uint16_t Low = readByte();
  return static_cast<std::uint16_t>(Low | readByte() << 8);
}

std::uint32_t TBinaryFileReader::readQuad() {
  const std::uint32_t Low = readWord();
  return Low | static_cast<std::uint32_t>(readWord()) << 16;
}

std::string TBinaryFileReader::readString() {
  std::string Text(readWord(), '\0');
  readBytes({reinterpret_cast<std::uint8_t*>(Text.data()), Text.size()});
  return Text;
}

void TBinaryFileReader::readBytes(std::span<std::uint8_t> Buffer) {
  if (std::fread(Buffer.data(), 1, Buffer.size(), file()) != Buffer.size()) fail("out of data");
}

// ---- TBinaryFileWriter

TBinaryFileWriter::~TBinaryFileWriter() {
  try {
    close();
  } catch (const TMyException&) {
    // Nobody is left to tell; close() is where a failure is reported.
  }
}

void TBinaryFileWriter::open(const std::string& FileName) {
  CheckClosed(m_File, m_FileName);
  m_File = OpenFile(FileName, "wb");
  m_FileName = FileName;
  m_BufferFillState = 0;
}

void TBinaryFileWriter::fail(const char* Text) const {
  ThrowException(Text, {{"FileName", m_FileName}});
}

// Hands the buffer to the C runtime; false if it refused.
bool TBinaryFileWriter::emptyBuffer() {
  const auto Waiting = static_cast<std::size_t>(m_BufferFillState);
  m_BufferFillState = 0;
  return std::fwrite(m_Buffer.data(), 1, Waiting, m_File.get()) == Waiting;
}

void TBinaryFileWriter::flush() {
  if (!emptyBuffer()) fail("failed to write file");
}

void TBinaryFileWriter::close() {
  if (m_File == nullptr) return;
  const bool Written = emptyBuffer();
  const bool Closed = std::fclose(m_File.release()) == 0;
  if (!Written || !Closed) fail("failed to write file");
}

void TBinaryFileWriter::writeByte(std::uint8_t Value) {
  if (m_File == nullptr) ThrowException("no file open");
  m_Buffer[static_cast<std::size_t>(m_BufferFillState++)] = Value;
  if (m_BufferFillState == BINARY_WRITE_BUFFER_SIZE) flush();
}

void TBinaryFileWriter::writeWord(std::uint16_t Value) {
  writeByte(static_cast<std::uint8_t>(Value));
  writeByte(static_cast<std::uint8_t>(Value >> 8));
}

void TBinaryFileWriter::writeQuad(std::uint32_t Value) {
  writeWord(static_cast<std::uint16_t>(Value));
  writeWord(static_cast<std::uint16_t>(Value >> 16));
}

void TBinaryFileWriter::writeBytes(std::span<const std::uint8_t> Bytes) {
  if (m_File == nullptr) ThrowException("no file open");
  while (!Bytes.empty()) {
    const auto Room = static_cast<std::size_t>(BINARY_WRITE_BUFFER_SIZE - m_BufferFillState);
    const std::size_t Count = std::min(Room, Bytes.size());
    std::memcpy(m_Buffer.data() + m_BufferFillState, Bytes.data(), Count);
    m_BufferFillState += static_cast<int>(Count);
    Bytes = Bytes.subspan(Count);
    if (m_BufferFillState == BINARY_WRITE_BUFFER_SIZE) flush();
  }
}
