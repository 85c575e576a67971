#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "Caught.h"
#include "TestDirectory.h"
#include "core/Script.h"

namespace {

namespace fs = std::filesystem;

class ScriptReaderTest : public TTestDirectory {
 protected:
  // Opens a script with this text.
  void Open(const std::string& Text) {
    m_Path = (Root() / "script.txt").string();
    WriteFile(m_Path, Text);
    Reader.open(m_Path);
  }

  TOKEN Next() {
    Reader.nextToken();
    return Reader.getToken();
  }

  // The script failure of the next token: its line and its text.
  void ExpectScriptError(int Line, const std::string& Text) {
    const TMyException E = Caught([&] { Reader.nextToken(); });
    ExpectScriptError(E, Line, Text);
  }

  void ExpectScriptError(const TMyException& E, int Line, const std::string& Text) {
    EXPECT_EQ(E.Text(), "error in script file '" + m_Path + "' in line " + std::to_string(Line));
    ASSERT_EQ(E.Values().size(), 1u);
    EXPECT_EQ(E.Values()[0].Name, "Error");
    EXPECT_EQ(E.Values()[0].Value, Text);
  }

  const std::string& Path() const { return m_Path; }

  TScriptReader Reader;

 private:
  std::string m_Path;
};

TEST_F(ScriptReaderTest, EveryKindOfToken) {
  Open("Name 12 \"text\" 1-2-3 [4,5,6] =");
  EXPECT_EQ(Next(), TOKEN::IDENTIFIER);
  EXPECT_EQ(Reader.getIdentifier(), "name");
  EXPECT_EQ(Next(), TOKEN::NUMBER);
  EXPECT_EQ(Reader.getNumber(), 12);
  EXPECT_EQ(Next(), TOKEN::STRING);
  EXPECT_EQ(Reader.getString(), "text");
  EXPECT_EQ(Next(), TOKEN::BYTES);
  EXPECT_EQ(std::vector<std::uint8_t>(Reader.getBytes().begin(), Reader.getBytes().end()),
            (std::vector<std::uint8_t>{1, 2, 3}));
  EXPECT_EQ(Next(), TOKEN::COORDINATE);
  EXPECT_EQ(Reader.getCoordinate(), (TScriptCoordinate{4, 5, 6}));
  EXPECT_EQ(Next(), TOKEN::SPECIAL);
  EXPECT_EQ(Reader.getSpecial(), '=');
  EXPECT_EQ(Next(), TOKEN::ENDOFFILE);
  EXPECT_EQ(Next(), TOKEN::ENDOFFILE) << "the end stays the end";
}

TEST_F(ScriptReaderTest, IdentifiersTakeLettersDigitsAndUnderscores) {
  Open("Abc_9x\xC4\xD6\xDC\xDF\xE4\xF6\xFC+rest");
  EXPECT_EQ(Reader.readIdentifier(), "abc_9x\xE4\xF6\xFC\xDF\xE4\xF6\xFC")
      << "lowered, with the Latin-1 letters";
  EXPECT_EQ(Reader.readSpecial(), '+');
  EXPECT_EQ(Reader.readIdentifier(), "rest");
}

TEST_F(ScriptReaderTest, OtherLatin1CharactersAreSpecials) {
  Open("\xC0x");
  EXPECT_EQ(Reader.readSpecial(), '\xC0');
  EXPECT_EQ(Reader.readIdentifier(), "x");
}

TEST_F(ScriptReaderTest, IdentifierOf19CharactersIsAccepted) {
  Open("abcdefghijklmnopqrs next");
  EXPECT_EQ(Reader.readIdentifier(), "abcdefghijklmnopqrs");
  EXPECT_EQ(Reader.readIdentifier(), "next");
}

TEST_F(ScriptReaderTest, IdentifierOf20CharactersFails) {
  Open("\n\nabcdefghijklmnopqrst");
  ExpectScriptError(3, "identifier too long");
}

TEST_F(ScriptReaderTest, StringOf999CharactersIsAccepted) {
  Open("\"" + std::string(999, 'x') + "\"");
  EXPECT_EQ(Reader.readString(), std::string(999, 'x'));
}

TEST_F(ScriptReaderTest, StringOf1000CharactersFails) {
  Open("\"" + std::string(1000, 'x') + "\"");
  ExpectScriptError(1, "string too long");
}

TEST_F(ScriptReaderTest, EscapesCountAsOneCharacterOfTheLimit) {
  std::string Text;
  for (int I = 0; I < 999; ++I) Text += "\\\"";
  Open("\"" + Text + "\"");
  EXPECT_EQ(Reader.readString(), std::string(999, '"'));
}

TEST_F(ScriptReaderTest, NumberOf1000DigitsFails) {
  Open(std::string(999, '0') + " " + std::string(1000, '0'));
  EXPECT_EQ(Reader.readNumber(), 0);
  ExpectScriptError(1, "string too long");
}

TEST_F(ScriptReaderTest, NumberForms) {
  Open("0 007 2147483647 4294967297 12abc");
  EXPECT_EQ(Reader.readNumber(), 0);
  EXPECT_EQ(Reader.readNumber(), 7);
  EXPECT_EQ(Reader.readNumber(), 2147483647);
  EXPECT_EQ(Reader.readNumber(), 1) << "decimal without an overflow check: the value wraps";
  EXPECT_EQ(Reader.readNumber(), 12);
  EXPECT_EQ(Reader.readIdentifier(), "abc");
}

TEST_F(ScriptReaderTest, ReadNumberTakesAMinusAsItsOwnToken) {
  Open("-5 - 7");
  EXPECT_EQ(Reader.readNumber(), -5);
  EXPECT_EQ(Reader.readNumber(), -7);
}

TEST_F(ScriptReaderTest, GetNumberHasNoMinusStep) {
  Open("-5");
  EXPECT_EQ(Next(), TOKEN::SPECIAL);
  const TMyException E = Caught([&] { Reader.getNumber(); });
  ExpectScriptError(E, 1, "number expected");
}

TEST_F(ScriptReaderTest, ReadNumberAfterAMinusNeedsANumber) {
  Open("- x");
  const TMyException E = Caught([&] { Reader.readNumber(); });
  ExpectScriptError(E, 1, "number expected");
}

TEST_F(ScriptReaderTest, JoinedNumbersAreBytesAndSpacedOnesAreNot) {
  Open("1-2 1 - 2 7-300");
  EXPECT_EQ(Next(), TOKEN::BYTES);
  EXPECT_EQ(Reader.getBytes().size(), 2u);
  EXPECT_EQ(Reader.getBytes()[0], 1);
  EXPECT_EQ(Reader.getBytes()[1], 2);
  EXPECT_EQ(Reader.readNumber(), 1);
  EXPECT_EQ(Reader.readSpecial(), '-');
  EXPECT_EQ(Reader.readNumber(), 2);
  const auto Bytes = Reader.readBytes();
  ASSERT_EQ(Bytes.size(), 2u);
  EXPECT_EQ(Bytes[1], 300 % 256) << "each number is stored as a byte";
}

TEST_F(ScriptReaderTest, BytesWithoutADigitAfterTheMinusAreASyntaxError) {
  Open("1-x");
  ExpectScriptError(1, "syntax error");
}

TEST_F(ScriptReaderTest, BytesEndingAtTheEndOfTheFile) {
  Open("1-2-");
  ExpectScriptError(1, "unexpected end of file");
}

TEST_F(ScriptReaderTest, Coordinates) {
  Open("[1,2,3] [10,0,15]");
  EXPECT_EQ(Reader.readCoordinate(), (TScriptCoordinate{1, 2, 3}));
  EXPECT_EQ(Reader.readCoordinate(), (TScriptCoordinate{10, 0, 15}));
}

TEST_F(ScriptReaderTest, BracketWithoutADigitIsASpecial) {
  Open("[a [");
  EXPECT_EQ(Reader.readSpecial(), '[');
  EXPECT_EQ(Reader.readIdentifier(), "a") << "the character after the bracket is put back";
  EXPECT_EQ(Reader.readSpecial(), '[');
  EXPECT_EQ(Next(), TOKEN::ENDOFFILE);
}

TEST_F(ScriptReaderTest, CoordinateAtTheEndOfTheFile) {
  Open("[1,2,3");
  ExpectScriptError(1, "unexpected end of file");
}

TEST_F(ScriptReaderTest, CoordinateEndingAfterAComma) {
  Open("[1,");
  ExpectScriptError(1, "unexpected end of file");
}

TEST_F(ScriptReaderTest, CoordinateWithAnotherCharacterIsASyntaxError) {
  for (const char* Text : {"[1;2,3]", "[1, 2,3]", "[1,2,3,4]", "[1,,3]", "[1,2,-3]"}) {
    SCOPED_TRACE(Text);
    Reader.close();
    Open(Text);
    ExpectScriptError(1, "syntax error");
  }
}

TEST_F(ScriptReaderTest, TwoCharacterSpecialsBecomeLetters) {
  Open("<= <> >= -> < > - =(),{}");
  std::string Specials;
  while (Next() != TOKEN::ENDOFFILE) Specials += Reader.getSpecial();
  EXPECT_EQ(Specials, "LNGI<>-=(),{}");
}

TEST_F(ScriptReaderTest, SpecialBeforeTheEndOfTheFile) {
  Open("<");
  EXPECT_EQ(Reader.readSpecial(), '<');
  EXPECT_EQ(Next(), TOKEN::ENDOFFILE);
}

TEST_F(ScriptReaderTest, SpecialPutsTheNextCharacterBack) {
  Open("-5 <x >\"s\"");
  EXPECT_EQ(Reader.readSpecial(), '-');
  EXPECT_EQ(Reader.readNumber(), 5);
  EXPECT_EQ(Reader.readSpecial(), '<');
  EXPECT_EQ(Reader.readIdentifier(), "x");
  EXPECT_EQ(Reader.readSpecial(), '>');
  EXPECT_EQ(Reader.readString(), "s");
}

TEST_F(ScriptReaderTest, BlanksOfEveryKindAreSkipped) {
  Open(" \t\r\f\v\xA0" "a\xA0" "b");
  EXPECT_EQ(Reader.readIdentifier(), "a");
  EXPECT_EQ(Reader.readIdentifier(), "b");
  EXPECT_EQ(Reader.getLine(), 1);
}

TEST_F(ScriptReaderTest, CommentsRunToTheEndOfTheLine) {
  Open("# a comment \"with a string\n  first # trailing 1 2 3\n\"# no comment\" # last");
  EXPECT_EQ(Reader.readIdentifier(), "first");
  EXPECT_EQ(Reader.getLine(), 2);
  EXPECT_EQ(Reader.readString(), "# no comment");
  EXPECT_EQ(Reader.getLine(), 3);
  EXPECT_EQ(Next(), TOKEN::ENDOFFILE);
}

TEST_F(ScriptReaderTest, StringEscapes) {
  Open(R"("a\"b\\c\nd\qe")");
  EXPECT_EQ(Reader.readString(), "a\"b\\c\ndqe");
}

TEST_F(ScriptReaderTest, LineFeedsInStringsCount) {
  Open("\"one\ntwo\" x\n\"\\\n\" 5 ?");
  EXPECT_EQ(Reader.readString(), "one\ntwo");
  EXPECT_EQ(Reader.readIdentifier(), "x");
  EXPECT_EQ(Reader.getLine(), 2);
  EXPECT_EQ(Reader.readString(), "\n");
  EXPECT_EQ(Reader.getLine(), 4);
  const TMyException E = Caught([&] { Reader.readIdentifier(); });
  ExpectScriptError(E, 4, "identifier expected");
}

TEST_F(ScriptReaderTest, StringEndingInTheMiddle) {
  Open("\"abc");
  ExpectScriptError(1, "unexpected end of file");
}

TEST_F(ScriptReaderTest, StringEndingAfterABackslash) {
  Open("\n\"abc\\");
  ExpectScriptError(2, "unexpected end of file");
}

TEST_F(ScriptReaderTest, TokensEndingAtTheEndOfTheFile) {
  Open("last");
  EXPECT_EQ(Reader.readIdentifier(), "last");
  EXPECT_EQ(Next(), TOKEN::ENDOFFILE);
  Reader.close();
  Open("42");
  EXPECT_EQ(Reader.readNumber(), 42);
  EXPECT_EQ(Next(), TOKEN::ENDOFFILE);
  Reader.close();
  Open("4-2");
  EXPECT_EQ(Reader.readBytes().size(), 2u);
  EXPECT_EQ(Next(), TOKEN::ENDOFFILE);
}

TEST_F(ScriptReaderTest, KindFailures) {
  Open("5 x 5 x ( x");
  ExpectScriptError(Caught([&] { Reader.readIdentifier(); }), 1, "identifier expected");
  Reader.close();
  Reader.open(Path());
  Reader.readNumber();
  ExpectScriptError(Caught([&] { Reader.readNumber(); }), 1, "number expected");
  Reader.close();
  Reader.open(Path());
  ExpectScriptError(Caught([&] { Reader.readString(); }), 1, "string expected");
  Reader.close();
  Reader.open(Path());
  ExpectScriptError(Caught([&] { Reader.readSpecial(); }), 1, "special-char expected");
  Reader.close();
  Reader.open(Path());
  ExpectScriptError(Caught([&] { Reader.readBytes(); }), 1, "bytes expected");
  Reader.close();
  Reader.open(Path());
  ExpectScriptError(Caught([&] { Reader.readCoordinate(); }), 1, "coordinate expected");
}

TEST_F(ScriptReaderTest, ReadSymbolWantsThatCharacter) {
  Open("= (");
  Reader.readSymbol('=');
  ExpectScriptError(Caught([&] { Reader.readSymbol(')'); }), 1, "special-char expected");
}

TEST_F(ScriptReaderTest, ErrorClosesTheFile) {
  Open("x");
  ExpectScriptError(Caught([&] { Reader.error("own text"); }), 1, "own text");
  EXPECT_EQ(Caught([&] { Reader.nextToken(); }).Text(), "no file open");
  Reader.open(Path());
  ExpectScriptError(Caught([&] { Reader.error(); }), 1, "(unknown)");
}

TEST_F(ScriptReaderTest, OpenAndClose) {
  EXPECT_EQ(Caught([&] { Reader.nextToken(); }).Text(), "no file open");
  const std::string Missing = (Root() / "missing.txt").string();
  const TMyException E = Caught([&] { Reader.open(Missing); });
  EXPECT_EQ(E.Text(), "failed to open file");
  ASSERT_EQ(E.Values().size(), 1u);
  EXPECT_EQ(E.Values()[0].Value, Missing);
  Open("x");
  EXPECT_EQ(Caught([&] { Reader.open(Path()); }).Text(), "file still open");
  Reader.close();
  Reader.close();
  Reader.open(Path());
  EXPECT_EQ(Reader.getLine(), 1);
  EXPECT_EQ(Reader.getFileName(), Path());
}

// ---- TScriptWriter

using ScriptWriterTest = TTestDirectory;

std::string ReadAll(const fs::path& Path) {
  std::ifstream File(Path, std::ios::binary);
  return {std::istreambuf_iterator<char>(File), std::istreambuf_iterator<char>()};
}

TEST_F(ScriptWriterTest, WritesTextNumbersAndEscapedStrings) {
  const std::string Path = (Root() / "out.txt").string();
  TScriptWriter Writer;
  Writer.open(Path);
  Writer.writeText("Key = ");
  Writer.writeNumber(-5);
  Writer.writeLn();
  Writer.writeString("a\"b\\c\nd");
  Writer.close();
  EXPECT_EQ(ReadAll(Path), "Key = -5\n\"a\\\"b\\\\c\nd\"");

  TScriptReader Reader;
  Reader.open(Path);
  EXPECT_EQ(Reader.readIdentifier(), "key");
  Reader.readSymbol('=');
  EXPECT_EQ(Reader.readNumber(), -5);
  EXPECT_EQ(Reader.readString(), "a\"b\\c\nd") << "what the writer writes, the reader reads";
}

TEST_F(ScriptWriterTest, Failures) {
  TScriptWriter Writer;
  EXPECT_EQ(Caught([&] { Writer.writeText("x"); }).Text(), "no file open");
  EXPECT_EQ(Caught([&] { Writer.writeLn(); }).Text(), "no file open");
  EXPECT_EQ(Caught([&] { Writer.writeNumber(1); }).Text(), "no file open");
  EXPECT_EQ(Caught([&] { Writer.writeString("x"); }).Text(), "no file open");
  EXPECT_EQ(Caught([&] { Writer.open((Root() / "no" / "dir.txt").string()); }).Text(), "failed to open file");
  Writer.open((Root() / "out.txt").string());
  EXPECT_EQ(Caught([&] { Writer.open((Root() / "other.txt").string()); }).Text(), "file still open");
}

TEST_F(ScriptWriterTest, AFullDiskFailsTheWrite) {
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
  TScriptWriter Writer;
  Writer.open("/dev/full");
  Writer.writeText("waits in the C runtime's buffer");
  const TMyException E = Caught([&] { Writer.close(); });
  EXPECT_EQ(E.Text(), "failed to write file");
  ASSERT_EQ(E.Values().size(), 1u);
  EXPECT_EQ(E.Values()[0].Value, "/dev/full");
}

// ---- Binary files

using BinaryFileTest = TTestDirectory;

std::vector<std::uint8_t> ReadBytes(const fs::path& Path) {
  const std::string Text = ReadAll(Path);
  return {Text.begin(), Text.end()};
}

TEST_F(BinaryFileTest, WriterIsLittleEndian) {
  const std::string Path = (Root() / "out.bin").string();
  TBinaryFileWriter Writer;
  Writer.open(Path);
  Writer.writeByte(0xAB);
  Writer.writeWord(0x1234);
  Writer.writeQuad(0x89ABCDEF);
  Writer.writeBytes(std::vector<std::uint8_t>{1, 2, 3});
  Writer.close();
  EXPECT_EQ(ReadBytes(Path),
            (std::vector<std::uint8_t>{0xAB, 0x34, 0x12, 0xEF, 0xCD, 0xAB, 0x89, 1, 2, 3}));
}

TEST_F(BinaryFileTest, CloseWritesAHalfFullBuffer) {
  const fs::path Path = Root() / "out.bin";
  TBinaryFileWriter Writer;
  Writer.open(Path.string());
  for (int I = 0; I < 100; ++I) Writer.writeByte(static_cast<std::uint8_t>(I));
  EXPECT_EQ(fs::file_size(Path), 0u) << "the bytes wait in the writer's own buffer";
  Writer.close();
  const std::vector<std::uint8_t> Bytes = ReadBytes(Path);
  ASSERT_EQ(Bytes.size(), 100u);
  EXPECT_EQ(Bytes[99], 99);
}

TEST_F(BinaryFileTest, LargeAmountsGoThroughTheBuffer) {
  const fs::path Path = Root() / "out.bin";
  std::vector<std::uint8_t> Data(3 * BINARY_WRITE_BUFFER_SIZE + 17);
  for (std::size_t I = 0; I < Data.size(); ++I) Data[I] = static_cast<std::uint8_t>(I * 7);
  TBinaryFileWriter Writer;
  Writer.open(Path.string());
  Writer.writeByte(Data[0]);
  Writer.writeBytes(std::span(Data).subspan(1));
  Writer.close();
  EXPECT_EQ(ReadBytes(Path), Data);
}

TEST_F(BinaryFileTest, DestroyingTheWriterClosesIt) {
  const fs::path Path = Root() / "out.bin";
  {
    TBinaryFileWriter Writer;
    Writer.open(Path.string());
    Writer.writeQuad(7);
  }
  EXPECT_EQ(ReadBytes(Path), (std::vector<std::uint8_t>{7, 0, 0, 0}));
}

TEST_F(BinaryFileTest, WriterFailures) {
  TBinaryFileWriter Writer;
  EXPECT_EQ(Caught([&] { Writer.writeByte(1); }).Text(), "no file open");
  EXPECT_EQ(Caught([&] { Writer.writeBytes(std::vector<std::uint8_t>{1}); }).Text(), "no file open");
  EXPECT_EQ(Caught([&] { Writer.open((Root() / "no" / "x.bin").string()); }).Text(), "failed to open file");
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
  Writer.open("/dev/full");
  Writer.writeByte(1);
  EXPECT_EQ(Caught([&] { Writer.close(); }).Text(), "failed to write file");
  Writer.open("/dev/full");
  const TMyException E = Caught([&] {
    for (int I = 0; I < 4 * BINARY_WRITE_BUFFER_SIZE; ++I) Writer.writeByte(0);
  });
  EXPECT_EQ(E.Text(), "failed to write file") << "a flush on the way";
}

TEST_F(BinaryFileTest, ReaderIsLittleEndian) {
  const fs::path Path = Root() / "in.bin";
  WriteFile(Path.string(), std::string("\xAB\x34\x12\xEF\xCD\xAB\x89\x03\x00xyz\x01\x02", 14));
  TBinaryFileReader Reader;
  Reader.open(Path.string());
  EXPECT_EQ(Reader.getSize(), 14);
  EXPECT_EQ(Reader.readByte(), 0xAB);
  EXPECT_EQ(Reader.readWord(), 0x1234);
  EXPECT_EQ(Reader.readQuad(), 0x89ABCDEFu);
  EXPECT_EQ(Reader.tell(), 7);
  EXPECT_EQ(Reader.readString(), "xyz");
  std::vector<std::uint8_t> Rest(2);
  Reader.readBytes(Rest);
  EXPECT_EQ(Rest, (std::vector<std::uint8_t>{1, 2}));
  EXPECT_EQ(Caught([&] { Reader.readByte(); }).Text(), "out of data");
  Reader.seek(1);
  EXPECT_EQ(Reader.readWord(), 0x1234);
  EXPECT_EQ(Reader.getSize(), 14);
  EXPECT_EQ(Reader.tell(), 3) << "getSize keeps the position";
}

TEST_F(BinaryFileTest, ReaderFailures) {
  const fs::path Path = Root() / "in.bin";
  WriteFile(Path.string(), std::string("\x05\x00" "ab", 4));
  TBinaryFileReader Reader;
  EXPECT_EQ(Caught([&] { Reader.readByte(); }).Text(), "no file open");
  EXPECT_EQ(Caught([&] { Reader.open((Root() / "missing.bin").string()); }).Text(), "failed to open file");
  Reader.open(Path.string());
  EXPECT_EQ(Caught([&] { Reader.open(Path.string()); }).Text(), "file still open");
  const TMyException Negative = Caught([&] { Reader.seek(-1); });
  EXPECT_EQ(Negative.Text(), "negative offset");
  ASSERT_EQ(Negative.Values().size(), 1u);
  EXPECT_EQ(Negative.Values()[0].Value, Path.string());
  EXPECT_EQ(Caught([&] { Reader.readString(); }).Text(), "out of data") << "5 bytes announced, 2 there";
  Reader.seek(3);
  EXPECT_EQ(Caught([&] { Reader.readWord(); }).Text(), "out of data");
  Reader.seek(100);
  EXPECT_EQ(Caught([&] { Reader.readByte(); }).Text(), "out of data");
  Reader.close();
  EXPECT_EQ(Caught([&] { Reader.tell(); }).Text(), "no file open");
}

}  // namespace
