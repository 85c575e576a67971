#pragma once
// The program's file work: a tokeniser and a writer for its text scripts, and
// a reader and a writer for its binary files. Every failure is a TMyException
// that names the file (scripts also the line); every class closes its file
// when it is destroyed.
#include <array>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

constexpr int MAX_IDENTIFIER_LENGTH = 19;
// Strings and all other tokens.
constexpr int MAX_TOKEN_LENGTH = 999;
constexpr int BINARY_WRITE_BUFFER_SIZE = 8096;

struct TFileCloser {
  void operator()(std::FILE* File) const { std::fclose(File); }
};
using TFileHandle = std::unique_ptr<std::FILE, TFileCloser>;

enum class TOKEN : int {
  ENDOFFILE = 0,
  IDENTIFIER = 1,
  NUMBER = 2,
  STRING = 3,
  BYTES = 4,
  COORDINATE = 5,
  SPECIAL = 6,
};

struct TScriptCoordinate {
  int X = 0;
  int Y = 0;
  int Z = 0;
  bool operator==(const TScriptCoordinate&) const = default;
};

// Tokens: identifiers (a letter, then letters, digits, '_'), unsigned decimal
// numbers, "strings" with \n and \-escapes, BYTES (1-2-3), coordinates
// ([x,y,z]) and single-character specials; "<=", "<>", ">=" and "->" come as
// the specials 'L', 'N', 'G' and 'I'. '#' comments to the end of the line.
// A broken script fails through error(), which closes the file.
class TScriptReader {
 public:
  TScriptReader() = default;
  TScriptReader(const TScriptReader&) = delete;
  TScriptReader& operator=(const TScriptReader&) = delete;

  // "file still open", "failed to open file".
  void open(const std::string& FileName);
  void close();

  void nextToken();
  // Closes the file and fails with "error in script file '%s' in line %d",
  // the text as value "Error" ("(unknown)" when empty).
  [[noreturn]] void error(std::string_view Text = {});

  // Each reads the next token and fails unless it is of that kind.
  // Identifiers come in lower case.
  const std::string& readIdentifier();
  // A '-' special before the number negates it.
  int readNumber();
  const std::string& readString();
  std::span<const std::uint8_t> readBytes();
  TScriptCoordinate readCoordinate();
  char readSpecial();
  void readSymbol(char Symbol);

  // The same checks on the current token, without reading.
  const std::string& getIdentifier();
  int getNumber();
  const std::string& getString();
  std::span<const std::uint8_t> getBytes();
  TScriptCoordinate getCoordinate();
  char getSpecial();

  TOKEN getToken() const { return m_Token; }
  int getLine() const { return m_Line; }
  const std::string& getFileName() const { return m_FileName; }

 private:
  int nextCharacter();
  void putBack(int Character);
  void countCharacter();
  void store(char Character);
  void skipComment();
  void scanIdentifier(char First);
  void scanNumber(char First);
  int scanDigits(int Character, int& Value);
  int expectDigit();
  void expect(int Character, char Wanted);
  void scanString();
  void scanBracket();
  void scanSpecial(char First);
  void expectToken(TOKEN Kind, const char* Failure);

  TFileHandle m_File;
  std::string m_FileName;
  int m_Line = 0;
  TOKEN m_Token = TOKEN::ENDOFFILE;
  std::string m_String;
  std::vector<std::uint8_t> m_Bytes;
  int m_Number = 0;
  TScriptCoordinate m_Coordinate;
  char m_Special = '#';
  int m_Length = 0;
};

// Writes scripts in the form TScriptReader reads. "no file open" without a
// file, "failed to write file" when the file system refuses the data.
class TScriptWriter {
 public:
  TScriptWriter() = default;
  TScriptWriter(const TScriptWriter&) = delete;
  TScriptWriter& operator=(const TScriptWriter&) = delete;

  // "file still open", "failed to open file".
  void open(const std::string& FileName);
  // Failures of buffered data show here: call it before trusting the file.
  void close();

  void writeLn();
  void writeText(std::string_view Text);
  void writeNumber(int Value);
  // Quoted; '"' and '\' get a '\' before them, line feeds stay as they are.
  void writeString(std::string_view Text);

 private:
  void put(std::string_view Text);

  TFileHandle m_File;
  std::string m_FileName;
};

// Little-endian binary files. "out of data" at the end, "no file open".
class TBinaryFileReader {
 public:
  TBinaryFileReader() = default;
  TBinaryFileReader(const TBinaryFileReader&) = delete;
  TBinaryFileReader& operator=(const TBinaryFileReader&) = delete;

  void open(const std::string& FileName);
  void close();

  // "negative offset".
  void seek(long Offset);
  long tell();
  long getSize();

  std::uint8_t readByte();
  std::uint16_t readWord();
  std::uint32_t readQuad();
  // A 16-bit length, then that many bytes.
  std::string readString();
  void readBytes(std::span<std::uint8_t> Buffer);

 private:
  std::FILE* file();
  [[noreturn]] void fail(const char* Text) const;

  TFileHandle m_File;
  std::string m_FileName;
};

// Little-endian binary files through a buffer of its own, since callers write
// byte by byte. "failed to write file" when a flush fails.
class TBinaryFileWriter {
 public:
  TBinaryFileWriter() = default;
  // Closes as close() does; only close() reports a failure.
  ~TBinaryFileWriter();
  TBinaryFileWriter(const TBinaryFileWriter&) = delete;
  TBinaryFileWriter& operator=(const TBinaryFileWriter&) = delete;

  void open(const std::string& FileName);
  // Writes what waits in the buffer first.
  void close();

  void writeByte(std::uint8_t Value);
  void writeWord(std::uint16_t Value);
  void writeQuad(std::uint32_t Value);
  void writeBytes(std::span<const std::uint8_t> Bytes);

 private:
  bool emptyBuffer();
  void flush();
  [[noreturn]] void fail(const char* Text) const;

  TFileHandle m_File;
  std::string m_FileName;
  std::array<std::uint8_t, BINARY_WRITE_BUFFER_SIZE> m_Buffer{};
  int m_BufferFillState = 0;
};
