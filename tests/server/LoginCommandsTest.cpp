// The two login commands: the RSA block deciphered with the test key, every
// field of it, and the ways in which a block can be wrong.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "core/Exception.h"
#include "tests/server/WireClient.h"
#include "tools/server/Fields.h"
#include "tools/server/LoginCommands.h"
#include "tools/server/RsaKey.h"

namespace {

using namespace testing_server;

template <typename TAction>
std::string FailureText(TAction&& Action) {
  try {
    Action();
  } catch (const TMyException& Failure) {
    return Failure.Text();
  }
  return "(no failure)";
}

// "name=value ..." of a record, strings quoted.
std::string Describe(const server::TCommandRecord& Record) {
  std::string Text = Record.Name;
  for (const server::TField& Field : Record.Fields) {
    Text += ' ' + Field.Name + '=';
    if (const auto* Number = std::get_if<std::int64_t>(&Field.Value))
      Text += std::to_string(*Number);
    else
      Text += '"' + std::get<std::string>(Field.Value) + '"';
  }
  return Text;
}

class LoginCommands : public testing::Test {
 protected:
  const server::TRsaPrivateKey Key = server::LoadRsaKey(TestKeyFile());
};

TEST_F(LoginCommands, LoginAdminGivesEveryField) {
  const TBytes Payload = LoginAdminPayload({MakeSessionKey(0x10), "demo", "pw", SystemInfo()});
  ASSERT_EQ(Payload.size(), 150u);
  const server::TLoginRequest Request = server::DecodeLoginAdmin(Payload, Key);
  EXPECT_EQ(Describe(Request.Record),
            "CLOGINADMIN platform=2 protocolVersion=1053 clientVersion=1053 datSignature=286331153 "
            "sprSignature=572662306 picSignature=858993459 reserved=0 "
            "sessionKey=\"101112131415161718191a1b1c1d1e1f\" account=\"demo\" password=\"pw\" systemInfo=\"" +
                server::HexText(SystemInfo()) + "\"");
  EXPECT_EQ(Request.SessionKey, MakeSessionKey(0x10));
  EXPECT_EQ(Request.Account, "demo");
  EXPECT_EQ(Request.Password, "pw");
  EXPECT_EQ(FailureText([&] { server::ValidateLoginRequest(Request); }), "(no failure)");
}

TEST_F(LoginCommands, LongestNamesStillLeaveRoomForTheSystemInformation) {
  const TBytes Payload =
      LoginAdminPayload({MakeSessionKey(0), std::string(30, 'a'), std::string(29, 'p'), SystemInfo()});
  const server::TLoginRequest Request = server::DecodeLoginAdmin(Payload, Key);
  EXPECT_EQ(std::get<std::string>(Request.Record.Fields.back().Value), server::HexText(SystemInfo()));
  EXPECT_EQ(FailureText([&] { server::ValidateLoginRequest(Request); }), "(no failure)");
}

TEST_F(LoginCommands, MarkerStandsForSystemInformationThatDoesNotFit) {
  const TBytes Payload =
      LoginAdminPayload({MakeSessionKey(0), std::string(40, 'a'), std::string(40, 'p'), TBytes{255}});
  const server::TLoginRequest Request = server::DecodeLoginAdmin(Payload, Key);
  EXPECT_EQ(Request.Record.Fields.back().Name, "systemInfo");
  EXPECT_EQ(std::get<std::int64_t>(Request.Record.Fields.back().Value), 255);
  EXPECT_EQ(FailureText([&] { server::ValidateLoginRequest(Request); }), "string is longer than its limit");
  const TBytes Wrong =
      LoginAdminPayload({MakeSessionKey(0), std::string(40, 'a'), std::string(40, 'p'), TBytes{254}});
  EXPECT_EQ(FailureText([&] { server::DecodeLoginAdmin(Wrong, Key); }),
            "marker of missing system information is not 255");
}

TEST_F(LoginCommands, LoginGameGivesEveryField) {
  const TBytes Payload =
      LoginGamePayload({MakeSessionKey(0xE8), 1, "demo", "Ayla", "demo", 0xA1B2C3D4, 0x5F});
  ASSERT_EQ(Payload.size(), 138u);
  const server::TLoginRequest Request = server::DecodeLoginGame(Payload, Key);
  EXPECT_EQ(
      Describe(Request.Record),
      "CLOGINGAME platform=2 protocolVersion=1053 clientVersion=1053 reserved=0 "
      "sessionKey=\"e8e9eaebecedeeeff0f1f2f3f4f5f6f7\" gamemaster=1 account=\"demo\" character=\"Ayla\" "
      "password=\"demo\" challengeTime=2712847316 challengeValue=95");
  EXPECT_EQ(Request.Character, "Ayla");
  EXPECT_EQ(Request.ChallengeTime, 0xA1B2C3D4u);
  EXPECT_EQ(Request.ChallengeValue, 0x5F);
  EXPECT_EQ(FailureText([&] { server::ValidateLoginRequest(Request); }), "(no failure)");
}

TEST_F(LoginCommands, TextBeyondItsLimitFailsValidation) {
  const auto Failure = [&](const std::string& Account, const std::string& Character,
                           const std::string& Password) {
    const server::TLoginRequest Request =
        server::DecodeLoginGame(LoginGamePayload({{}, 0, Account, Character, Password, 0, 0}), Key);
    try {
      server::ValidateLoginRequest(Request);
    } catch (const TMyException& E) {
      return E.Values().at(0).Value;
    }
    return std::string("(no failure)");
  };
  EXPECT_EQ(Failure(std::string(30, 'a'), std::string(29, 'c'), std::string(29, 'p')), "(no failure)");
  EXPECT_EQ(Failure(std::string(31, 'a'), "c", "p"), "account");
  EXPECT_EQ(Failure("a", std::string(30, 'c'), "p"), "character");
  EXPECT_EQ(Failure("a", "c", std::string(30, 'p')), "password");
}

TEST_F(LoginCommands, GamemasterFlagIsZeroOrOne) {
  const server::TLoginRequest Request =
      server::DecodeLoginGame(LoginGamePayload({{}, 2, "a", "c", "p", 0, 0}), Key);
  EXPECT_EQ(FailureText([&] { server::ValidateLoginRequest(Request); }),
            "gamemaster flag is neither 0 nor 1");
}

TEST_F(LoginCommands, ConstantsOfTheProtocolAreChecked) {
  for (std::size_t At : {1u, 3u, 5u, 21u}) {  // platform, both versions, reserved
    TBytes Payload = LoginAdminPayload({{}, "a", "p", SystemInfo()});
    Payload[At] ^= 1;
    const server::TLoginRequest Request = server::DecodeLoginAdmin(Payload, Key);
    EXPECT_EQ(FailureText([&] { server::ValidateLoginRequest(Request); }), "field does not hold its constant")
        << At;
  }
}

TEST_F(LoginCommands, FirstByteOfTheBlockMustBeZero) {
  TAdminLogin Login{{}, "a", "p", SystemInfo()};
  Login.First = 1;
  EXPECT_EQ(FailureText([&] { server::DecodeLoginAdmin(LoginAdminPayload(Login), Key); }),
            "first byte of login block is not 0");
}

TEST_F(LoginCommands, PayloadMustHaveTheExactSizeAndType) {
  TBytes Payload = LoginAdminPayload({{}, "a", "p", SystemInfo()});
  TBytes Longer = Payload;
  Longer.push_back(0);
  EXPECT_EQ(FailureText([&] { server::DecodeLoginAdmin(Longer, Key); }), "payload not consumed exactly");
  TBytes Shorter(Payload.begin(), Payload.end() - 1);
  EXPECT_EQ(FailureText([&] { server::DecodeLoginAdmin(Shorter, Key); }), "Position<=Size-Count");
  EXPECT_EQ(FailureText([&] { server::DecodeLoginGame(Payload, Key); }), "unknown command");
}

TEST_F(LoginCommands, BlockNotBelowTheModulusFails) {
  TBytes Payload = LoginGamePayload({{}, 0, "a", "c", "p", 0, 0});
  std::fill(Payload.end() - 128, Payload.end(), 0xFF);
  EXPECT_EQ(FailureText([&] { server::DecodeLoginGame(Payload, Key); }),
            "login block is not smaller than the RSA modulus");
}

std::string KeyFailure(const std::string& Text) {
  std::istringstream Input(Text);
  return FailureText([&] { server::ParseRsaKey(Input); });
}

TEST(RsaKeyFile, Mistakes) {
  EXPECT_EQ(KeyFailure("modulus 12\n"), "RSA key needs a modulus and a private-exponent line");
  EXPECT_EQ(KeyFailure("modulus 12\nprivate-exponent 5\n"), "RSA modulus is not a 1024-bit number");
  EXPECT_EQ(KeyFailure("exponent 5\n"), "unknown line in RSA key: exponent");
  EXPECT_EQ(KeyFailure("modulus 1x\n"), "modulus is not a decimal number: digit out of range");
  std::ifstream Input(TestKeyFile());
  std::string Name;
  std::string Modulus;
  Input >> Name >> Modulus;
  EXPECT_EQ(KeyFailure("modulus " + Modulus + "\nprivate-exponent 0\n"), "RSA private exponent is 0");
}

}  // namespace
