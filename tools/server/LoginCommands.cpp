#include "tools/server/LoginCommands.h"

#include "core/Exception.h"
#include "tools/server/Accounts.h"
#include "tools/server/Fields.h"

namespace server {

namespace {

constexpr std::uint16_t CLIENT_PLATFORM = 2;
constexpr std::uint16_t PROTOCOL_VERSION = 1053;
constexpr int SYSTEM_INFO_SIZE = 47;
constexpr std::uint8_t NO_SYSTEM_INFO = 255;

void ReadType(TFieldReader& Reader, std::uint8_t Expected) {
  std::vector<std::uint8_t> Type = Reader.Skip(1);
  if (Type[0] != Expected) ThrowException("unknown command", {{"type", std::to_string(Type[0])}});
}

void ReadVersions(TFieldReader& Reader, TLoginRequest& Request) {
  Request.Platform = Reader.U16("platform");
  Request.ProtocolVersion = Reader.U16("protocolVersion");
  Request.ClientVersion = Reader.U32("clientVersion");
}

// Reads the reserved byte and the block, which must end the payload, and
// deciphers the block up to its session key.
TLoginBlock ReadBlock(TFieldReader& Reader, TLoginRequest& Request, const TRsaPrivateKey& Key) {
  Request.Reserved = Reader.U8("reserved");
  const std::vector<std::uint8_t> Cipher = Reader.Skip(LOGIN_BLOCK_SIZE);
  Reader.CheckConsumed();
  return DecipherLoginBlock(std::span<const std::uint8_t, LOGIN_BLOCK_SIZE>(Cipher.data(), LOGIN_BLOCK_SIZE),
                            Key);
}

void ReadSessionKey(TFieldReader& Block, TLoginRequest& Request) {
  const std::uint8_t First = Block.Skip(1)[0];
  Check(First == 0, "first byte of login block is not 0", {"FirstByte", First});
  const std::vector<std::uint8_t> SessionKey = Block.Bytes("sessionKey", SESSION_KEY_SIZE);
  std::copy(SessionKey.begin(), SessionKey.end(), Request.SessionKey.begin());
}

void CheckLength(const std::string& Text, int Limit, const char* Field) {
  if (static_cast<int>(Text.size()) > Limit)
    ThrowException(
        "string is longer than its limit",
        {{"field", Field}, {"length", std::to_string(Text.size())}, {"limit", std::to_string(Limit)}});
}

void CheckConstant(std::int64_t Value, std::int64_t Expected, const char* Field) {
  if (Value != Expected)
    ThrowException(
        "field does not hold its constant",
        {{"field", Field}, {"value", std::to_string(Value)}, {"expected", std::to_string(Expected)}});
}

}  // namespace

TLoginRequest DecodeLoginAdmin(std::span<const std::uint8_t> Payload, const TRsaPrivateKey& Key) {
  TLoginRequest Request;
  Request.Record.Name = "CLOGINADMIN";
  TFieldReader Reader(Payload, Request.Record);
  ReadType(Reader, CLOGINADMIN);
  ReadVersions(Reader, Request);
  Reader.U32("datSignature");
  Reader.U32("sprSignature");
  Reader.U32("picSignature");
  const TLoginBlock Plain = ReadBlock(Reader, Request, Key);
  TFieldReader Block(Plain, Request.Record);
  ReadSessionKey(Block, Request);
  Request.Account = Block.String("account", 0);
  Request.Password = Block.String("password", 0);
  // The system information follows if it fits, else a marker byte.
  if (Block.Position() + SYSTEM_INFO_SIZE <= LOGIN_BLOCK_SIZE) {
    Block.Bytes("systemInfo", SYSTEM_INFO_SIZE);
  } else {
    const std::uint8_t Marker = Block.U8("systemInfo");
    Check(Marker == NO_SYSTEM_INFO, "marker of missing system information is not 255", {"Marker", Marker});
  }
  return Request;
}

TLoginRequest DecodeLoginGame(std::span<const std::uint8_t> Payload, const TRsaPrivateKey& Key) {
  TLoginRequest Request;
  Request.Record.Name = "CLOGINGAME";
  TFieldReader Reader(Payload, Request.Record);
  ReadType(Reader, CLOGINGAME);
  ReadVersions(Reader, Request);
  const TLoginBlock Plain = ReadBlock(Reader, Request, Key);
  TFieldReader Block(Plain, Request.Record);
  ReadSessionKey(Block, Request);
  Request.Gamemaster = Block.U8("gamemaster");
  Request.Account = Block.String("account", 0);
  Request.Character = Block.String("character", 0);
  Request.Password = Block.String("password", 0);
  Request.ChallengeTime = Block.U32("challengeTime");
  Request.ChallengeValue = Block.U8("challengeValue");
  return Request;
}

void ValidateLoginRequest(const TLoginRequest& Request) {
  CheckConstant(Request.Platform, CLIENT_PLATFORM, "platform");
  CheckConstant(Request.ProtocolVersion, PROTOCOL_VERSION, "protocolVersion");
  CheckConstant(Request.ClientVersion, PROTOCOL_VERSION, "clientVersion");
  CheckConstant(Request.Reserved, 0, "reserved");
  Check(Request.Gamemaster <= 1, "gamemaster flag is neither 0 nor 1", {"Gamemaster", Request.Gamemaster});
  CheckLength(Request.Account, ACCOUNT_NAME_MAX, "account");
  CheckLength(Request.Password, PASSWORD_MAX, "password");
  CheckLength(Request.Character, CHARACTER_NAME_MAX, "character");
}

}  // namespace server
