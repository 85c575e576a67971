// Every game command of the client, read field by field; a byte less or a
// byte more than its fields fails, and so do unknown types and long texts.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "core/Exception.h"
#include "tests/server/WireClient.h"
#include "tools/server/GameCommands.h"

namespace {

using namespace testing_server;

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

template <typename TAction>
std::string FailureText(TAction&& Action) {
  try {
    Action();
  } catch (const TMyException& Failure) {
    return Failure.Text();
  }
  return "(no failure)";
}

struct TCase {
  TBytes Payload;
  std::string Expected;
};

TByteWriter Type(std::uint8_t Value) {
  TByteWriter Writer;
  Writer.U8(Value);
  return Writer;
}

// A thing: x 0x1234, y 0x0567, z 7, object type 3031, stack position 2.
TByteWriter& Thing(TByteWriter& Writer, std::uint32_t X = 0x1234) {
  return Writer.U16(X).U16(0x0567).U8(7).U16(3031).U8(2);
}

std::vector<TCase> Cases() {
  std::vector<TCase> All;
  const auto Add = [&](const TByteWriter& Writer, std::string Expected) {
    All.push_back({Writer.Bytes(), std::move(Expected)});
  };
  const std::pair<int, const char*> Bare[] = {
      {15, "CENTERWORLD"},   {20, "CQUITGAME"},         {29, "CPING"},         {30, "CPINGBACK"},
      {101, "CGONORTH"},     {102, "CGOEAST"},          {103, "CGOSOUTH"},     {104, "CGOWEST"},
      {105, "CSTOP"},        {106, "CGONORTHEAST"},     {107, "CGOSOUTHEAST"}, {108, "CGOSOUTHWEST"},
      {109, "CGONORTHWEST"}, {111, "CTURNNORTH"},       {112, "CTURNEAST"},    {113, "CTURNSOUTH"},
      {114, "CTURNWEST"},    {124, "CCLOSENPCTRADE"},   {127, "CACCEPTTRADE"}, {128, "CREJECTTRADE"},
      {151, "CGETCHANNELS"}, {158, "CCLOSENPCCHANNEL"}, {167, "CLEAVEPARTY"},  {170, "COPENOWNCHANNEL"},
      {190, "CCANCEL"},      {210, "CGETOUTFIT"},       {240, "CQUESTLOG"},    {244, "CMARKETLEAVE"},
  };
  for (const auto& [Value, Name] : Bare) Add(Type(static_cast<std::uint8_t>(Value)), Name);

  const std::string ThingText = "x=4660 y=1383 z=7 objectType=3031 stackPosition=2";
  const std::string SourceText =
      "sourceX=65535 sourceY=1383 sourceZ=7 sourceObjectType=3031 sourceStackPosition=2";
  {
    TByteWriter W = Type(100);
    W.U8(3).U8(1).U8(8).U8(5);
    Add(W, "CGOPATH count=3 steps=\"185\"");
  }
  {
    TByteWriter W = Type(120);
    Thing(W, 0xFFFF).U16(100).U16(200).U8(8).U8(25);
    Add(W, "CMOVEOBJECT " + SourceText + " destinationX=100 destinationY=200 destinationZ=8 count=25");
  }
  Add(Type(121).U16(3031).U8(1), "CLOOKATWARE objectType=3031 subtype=1");
  Add(Type(122).U16(3031).U8(0).U8(100).U8(1).U8(0),
      "CBUYOBJECT objectType=3031 subtype=0 amount=100 ignoreCapacity=1 withBackpacks=0");
  Add(Type(123).U16(3031).U8(0).U8(5).U8(1),
      "CSELLOBJECT objectType=3031 subtype=0 amount=5 leaveEquipped=1");
  {
    TByteWriter W = Type(125);
    Thing(W).U32(0x10203040);
    Add(W, "CTRADEOBJECT " + ThingText + " partnerId=270544960");
  }
  Add(Type(126).U8(1).U8(9), "CLOOKATTRADE side=1 index=9");
  {
    TByteWriter W = Type(130);
    Thing(W).U8(3);
    Add(W, "CUSEOBJECT " + ThingText + " containerId=3");
  }
  {
    TByteWriter W = Type(131);
    Thing(Thing(W, 0xFFFF), 0x0100);
    Add(W, "CUSEWITHOBJECT " + SourceText +
               " targetX=256 targetY=1383 targetZ=7 targetObjectType=3031 targetStackPosition=2");
  }
  {
    TByteWriter W = Type(132);
    Thing(W).U32(0x40000001);
    Add(W, "CUSEONCREATURE " + ThingText + " creatureId=1073741825");
  }
  {
    TByteWriter W = Type(133);
    Thing(W);
    Add(W, "CROTATEOBJECT " + ThingText);
  }
  Add(Type(135).U8(4), "CCLOSECONTAINER containerId=4");
  Add(Type(136).U8(5), "CUPCONTAINER containerId=5");
  Add(Type(137).U32(77).String("a letter"), "CEDITTEXT textId=77 text=\"a letter\"");
  Add(Type(138).U8(1).U32(78).String("x\ny"), "CEDITLIST listType=1 listId=78 text=\"x\ny\"");
  {
    TByteWriter W = Type(140);
    Thing(W);
    Add(W, "CLOOKATOBJECT " + ThingText);
  }
  Add(Type(141).U32(1001), "CLOOKATCREATURE creatureId=1001");
  Add(Type(142).U32(1002), "CJOINAGGRESSION creatureId=1002");
  Add(Type(150).U8(1).String("hello"), "CTALK mode=1 text=\"hello\"");
  Add(Type(150).U8(2).String("psst"), "CTALK mode=2 text=\"psst\"");
  Add(Type(150).U8(3).String("HEY"), "CTALK mode=3 text=\"HEY\"");
  Add(Type(150).U8(12).String("hi"), "CTALK mode=12 text=\"hi\"");
  Add(Type(150).U8(13).String("all"), "CTALK mode=13 text=\"all\"");
  Add(Type(150).U8(5).String("Borin").String("hi"), "CTALK mode=5 addressee=\"Borin\" text=\"hi\"");
  Add(Type(150).U8(16).String("Borin").String("gm"), "CTALK mode=16 addressee=\"Borin\" text=\"gm\"");
  Add(Type(150).U8(7).U16(5).String("c"), "CTALK mode=7 channelId=5 text=\"c\"");
  Add(Type(150).U8(14).U16(6).String("d"), "CTALK mode=14 channelId=6 text=\"d\"");
  Add(Type(150).U8(32).U16(0).String("e"), "CTALK mode=32 channelId=0 text=\"e\"");
  Add(Type(150).U8(34).U16(9).String("f"), "CTALK mode=34 channelId=9 text=\"f\"");
  Add(Type(152).U16(7), "CJOINCHANNEL channelId=7");
  Add(Type(153).U16(8), "CLEAVECHANNEL channelId=8");
  Add(Type(154).String("Cato"), "CPRIVATECHANNEL name=\"Cato\"");
  Add(Type(160).U8(1).U8(2).U8(1).U8(3), "CSETTACTICS attackMode=1 chaseMode=2 secureMode=1 pvpMode=3");
  Add(Type(161).U32(1003).U32(4), "CATTACK creatureId=1003 attackSequence=4");
  Add(Type(162).U32(0).U32(5), "CFOLLOW creatureId=0 attackSequence=5");
  Add(Type(163).U32(11), "CINVITEPARTY creatureId=11");
  Add(Type(164).U32(12), "CJOINPARTY creatureId=12");
  Add(Type(165).U32(13), "CREVOKEPARTY creatureId=13");
  Add(Type(166).U32(14), "CPASSLEADERSHIP creatureId=14");
  Add(Type(168).U32(1), "CSHAREDEXPERIENCE flag=1");
  Add(Type(171).String("Dora"), "CINVITETOCHANNEL name=\"Dora\"");
  Add(Type(172).String("Egon"), "CEXCLUDEFROMCHANNEL name=\"Egon\"");
  Add(Type(203).U16(300).U16(400).U8(7), "CBROWSEFIELD x=300 y=400 z=7");
  Add(Type(204).U8(2).U16(36), "CCONTAINERPAGE containerId=2 firstIndex=36");
  Add(Type(211).U16(128).U8(1).U8(2).U8(3).U8(4).U8(3).U16(368),
      "CSETOUTFIT outfit=128 head=1 body=2 legs=3 feet=4 addons=3 mount=368");
  Add(Type(212).U8(1), "CMOUNT flag=1");
  Add(Type(220).String("Fritz"), "CADDBUDDY name=\"Fritz\"");
  Add(Type(221).U32(15), "CREMOVEBUDDY characterId=15");
  Add(Type(222).U32(16).String("friend").U32(3).U8(1),
      "CEDITBUDDY characterId=16 description=\"friend\" icon=3 notifyLogin=1");
  Add(Type(230).String("a bug"), "CBUGREPORT text=\"a bug\"");
  Add(Type(231).U32(17), "CTHANKYOU statementId=17");
  Add(Type(232).String("T").String("D").String("L").String("C"),
      "CERRORREPORT title=\"T\" date=\"D\" lines=\"L\" comment=\"C\"");
  Add(Type(241).U16(18), "CQUESTLINE questLine=18");
  Add(Type(242).U8(0).U8(2).String("Bad Name").String("why").String(""),
      "CRULEVIOLATION kind=0 reason=2 character=\"Bad Name\" comment=\"why\" translation=\"\"");
  Add(Type(242).U8(1).U8(3).String("Talker").String("rude").String("tr").U32(19),
      "CRULEVIOLATION kind=1 reason=3 character=\"Talker\" comment=\"rude\" translation=\"tr\" "
      "statementId=19");
  Add(Type(242).U8(2).U8(13).String("Bot").String("macro"),
      "CRULEVIOLATION kind=2 reason=13 character=\"Bot\" comment=\"macro\"");
  Add(Type(245).U16(0xFFFE), "CMARKETBROWSE objectType=65534");
  Add(Type(246).U8(1).U16(3031).U16(10).U32(500).U8(0),
      "CMARKETCREATE offerType=1 objectType=3031 amount=10 price=500 anonymous=0");
  Add(Type(247).U32(1700000000).U16(2), "CMARKETCANCEL offerTime=1700000000 offerCounter=2");
  Add(Type(248).U32(1700000001).U16(3).U16(4), "CMARKETACCEPT offerTime=1700000001 offerCounter=3 amount=4");
  Add(Type(249).U32(20).U8(1).U8(2), "CANSWERDIALOG dialogId=20 button=1 choice=2");
  return All;
}

TEST(GameCommands, EveryCommandIsReadWithItsFields) {
  for (const TCase& Case : Cases()) {
    const server::TGameCommand Command = server::DecodeGameCommand(Case.Payload);
    EXPECT_EQ(Command.Type, Case.Payload[0]);
    EXPECT_EQ(Describe(Command.Record), Case.Expected);
    EXPECT_EQ(server::GameCommandName(Command.Type), Command.Record.Name);
  }
}

TEST(GameCommands, EveryTypeOfTheTableIsCovered) {
  std::set<int> Covered;
  for (const TCase& Case : Cases()) Covered.insert(Case.Payload[0]);
  int Named = 0;
  for (int Type = 0; Type < 256; ++Type) {
    if (!server::GameCommandName(static_cast<std::uint8_t>(Type))) continue;
    ++Named;
    EXPECT_TRUE(Covered.contains(Type)) << Type;
  }
  EXPECT_EQ(Named, 77) << "the table of client commands has 77 types";
}

TEST(GameCommands, AByteMoreOrLessFails) {
  for (const TCase& Case : Cases()) {
    TBytes Longer = Case.Payload;
    Longer.push_back(0);
    EXPECT_EQ(FailureText([&] { server::DecodeGameCommand(Longer); }), "payload not consumed exactly")
        << Case.Expected;
    if (Case.Payload.size() == 1) continue;
    const TBytes Shorter(Case.Payload.begin(), Case.Payload.end() - 1);
    EXPECT_NE(FailureText([&] { server::DecodeGameCommand(Shorter); }), "(no failure)") << Case.Expected;
  }
}

TEST(GameCommands, UnknownTypesFail) {
  for (int Type : {0, 1, 10, 12, 110, 134, 250, 255})
    EXPECT_EQ(FailureText([&] { server::DecodeGameCommand(TBytes{static_cast<std::uint8_t>(Type)}); }),
              "unknown command")
        << Type;
  EXPECT_EQ(FailureText([] { server::DecodeGameCommand(TBytes{}); }), "packet holds no command");
}

std::string TextFailure(std::uint8_t Command, const std::string& Before, std::size_t Length) {
  TByteWriter Writer = Type(Command);
  for (const char Byte : Before) Writer.U8(static_cast<std::uint8_t>(Byte));
  Writer.String(std::string(Length, 'x'));
  return FailureText([&] { server::DecodeGameCommand(Writer.Bytes()); });
}

TEST(GameCommands, TextsHaveTheLimitsOfTheClientsInputs) {
  const std::string LongText = "string is longer than its limit";
  struct TLimit {
    std::uint8_t Command;
    std::string Before;  // the bytes of the fields in front of the text
    std::size_t Limit;
  };
  const TLimit Limits[] = {
      {150, std::string{1}, 255},        // CTALK text
      {150, std::string{7, 0, 0}, 255},  // CTALK text on a channel
      {154, "", 29},                     // CPRIVATECHANNEL name
      {171, "", 29},                     // CINVITETOCHANNEL name
      {172, "", 29},                     // CEXCLUDEFROMCHANNEL name
      {220, "", 29},                     // CADDBUDDY name
      {222, std::string(4, 0), 128},     // CEDITBUDDY description
      {230, "", 1024},                   // CBUGREPORT text
      {138, std::string(5, 0), 1999},    // CEDITLIST text
      {232, "", 63},                     // CERRORREPORT title
      {242, std::string{0, 1}, 29},      // CRULEVIOLATION character
  };
  for (const TLimit& Limit : Limits) {
    EXPECT_NE(TextFailure(Limit.Command, Limit.Before, Limit.Limit), LongText) << int{Limit.Command};
    EXPECT_EQ(TextFailure(Limit.Command, Limit.Before, Limit.Limit + 1), LongText) << int{Limit.Command};
  }
  TByteWriter Addressee = Type(150);
  Addressee.U8(5).String(std::string(30, 'n')).String("hi");
  EXPECT_EQ(FailureText([&] { server::DecodeGameCommand(Addressee.Bytes()); }), LongText);
  TByteWriter Comment = Type(242);
  Comment.U8(2).U8(1).String("n").String(std::string(301, 'c'));
  EXPECT_EQ(FailureText([&] { server::DecodeGameCommand(Comment.Bytes()); }), LongText);
  TByteWriter Letter = Type(137);
  Letter.U32(1).String(std::string(2000, 'x'));
  EXPECT_EQ(FailureText([&] { server::DecodeGameCommand(Letter.Bytes()); }), "(no failure)")
      << "a letter is bounded by the packet alone";
}

TEST(GameCommands, ChoiceFieldsOutsideTheirValuesFail) {
  const TBytes Wrong[] = {
      Type(150).U8(4).String("npc").Bytes(),  // no talk mode 4 on the way out
      Type(150).U8(0).String("none").Bytes(),
      Type(100).U8(2).U8(1).U8(9).Bytes(),  // step codes are 1 to 8
      Type(100).U8(1).U8(0).Bytes(),
      Type(242).U8(3).U8(1).String("n").String("c").Bytes(),  // report kinds are 0 to 2
  };
  for (const TBytes& Payload : Wrong)
    EXPECT_EQ(FailureText([&] { server::DecodeGameCommand(Payload); }), "invalid value") << int{Payload[0]};
}

}  // namespace
