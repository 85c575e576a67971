#include "tools/server/GameCommands.h"

#include <array>

#include "core/Exception.h"
#include "tools/server/Accounts.h"
#include "tools/server/Fields.h"

namespace server {

namespace {

// Text limits of the client's input fields.
constexpr int TALK_TEXT_MAX = 255;
constexpr int LIST_TEXT_MAX = 1999;
constexpr int BUDDY_DESCRIPTION_MAX = 128;
constexpr int BUG_REPORT_MAX = 1024;
constexpr int REPORT_COMMENT_MAX = 300;
constexpr int REPORT_TRANSLATION_MAX = 300;
constexpr int ERROR_TITLE_MAX = 63;
constexpr int ERROR_DATE_MAX = 25;
constexpr int ERROR_LINES_MAX = 2047;
constexpr int ERROR_COMMENT_MAX = 511;
constexpr int NO_LIMIT = 0;  // bounded by the packet alone
constexpr int NAME = CHARACTER_NAME_MAX;

// POSITION is u16 x, u16 y, u8 z; THING is a position, u16 object type and u8
// stack position. The name of either is the prefix of its parts.
enum class EField { END, U8, U16, U32, STRING, POSITION, THING };

struct TFieldLayout {
  EField Kind = EField::END;
  const char* Name = "";
  int Limit = NO_LIMIT;
};

using TSpecialReader = void (*)(TFieldReader&);

struct TCommandLayout {
  std::uint8_t Type;
  const char* Name;
  std::array<TFieldLayout, 7> Fields{};
  TSpecialReader Special = nullptr;
};

void ReadGoPath(TFieldReader& Reader);
void ReadTalk(TFieldReader& Reader);
void ReadRuleViolation(TFieldReader& Reader);

using enum EField;

constexpr TCommandLayout COMMANDS[] = {
    {15, "CENTERWORLD"},
    {20, "CQUITGAME"},
    {29, "CPING"},
    {30, "CPINGBACK"},
    {100, "CGOPATH", {}, ReadGoPath},
    {101, "CGONORTH"},
    {102, "CGOEAST"},
    {103, "CGOSOUTH"},
    {104, "CGOWEST"},
    {105, "CSTOP"},
    {106, "CGONORTHEAST"},
    {107, "CGOSOUTHEAST"},
    {108, "CGOSOUTHWEST"},
    {109, "CGONORTHWEST"},
    {111, "CTURNNORTH"},
    {112, "CTURNEAST"},
    {113, "CTURNSOUTH"},
    {114, "CTURNWEST"},
    {120, "CMOVEOBJECT", {{{THING, "source"}, {POSITION, "destination"}, {U8, "count"}}}},
    {121, "CLOOKATWARE", {{{U16, "objectType"}, {U8, "subtype"}}}},
    {122,
     "CBUYOBJECT",
     {{{U16, "objectType"}, {U8, "subtype"}, {U8, "amount"}, {U8, "ignoreCapacity"}, {U8, "withBackpacks"}}}},
    {123, "CSELLOBJECT", {{{U16, "objectType"}, {U8, "subtype"}, {U8, "amount"}, {U8, "leaveEquipped"}}}},
    {124, "CCLOSENPCTRADE"},
    {125, "CTRADEOBJECT", {{{THING, ""}, {U32, "partnerId"}}}},
    {126, "CLOOKATTRADE", {{{U8, "side"}, {U8, "index"}}}},
    {127, "CACCEPTTRADE"},
    {128, "CREJECTTRADE"},
    {130, "CUSEOBJECT", {{{THING, ""}, {U8, "containerId"}}}},
    {131, "CUSEWITHOBJECT", {{{THING, "source"}, {THING, "target"}}}},
    {132, "CUSEONCREATURE", {{{THING, ""}, {U32, "creatureId"}}}},
    {133, "CROTATEOBJECT", {{{THING, ""}}}},
    {135, "CCLOSECONTAINER", {{{U8, "containerId"}}}},
    {136, "CUPCONTAINER", {{{U8, "containerId"}}}},
    {137, "CEDITTEXT", {{{U32, "textId"}, {STRING, "text", NO_LIMIT}}}},
    {138, "CEDITLIST", {{{U8, "listType"}, {U32, "listId"}, {STRING, "text", LIST_TEXT_MAX}}}},
    {140, "CLOOKATOBJECT", {{{THING, ""}}}},
    {141, "CLOOKATCREATURE", {{{U32, "creatureId"}}}},
    {142, "CJOINAGGRESSION", {{{U32, "creatureId"}}}},
    {150, "CTALK", {}, ReadTalk},
    {151, "CGETCHANNELS"},
    {152, "CJOINCHANNEL", {{{U16, "channelId"}}}},
    {153, "CLEAVECHANNEL", {{{U16, "channelId"}}}},
    {154, "CPRIVATECHANNEL", {{{STRING, "name", NAME}}}},
    {158, "CCLOSENPCCHANNEL"},
    {160, "CSETTACTICS", {{{U8, "attackMode"}, {U8, "chaseMode"}, {U8, "secureMode"}, {U8, "pvpMode"}}}},
    {161, "CATTACK", {{{U32, "creatureId"}, {U32, "attackSequence"}}}},
    {162, "CFOLLOW", {{{U32, "creatureId"}, {U32, "attackSequence"}}}},
    {163, "CINVITEPARTY", {{{U32, "creatureId"}}}},
    {164, "CJOINPARTY", {{{U32, "creatureId"}}}},
    {165, "CREVOKEPARTY", {{{U32, "creatureId"}}}},
    {166, "CPASSLEADERSHIP", {{{U32, "creatureId"}}}},
    {167, "CLEAVEPARTY"},
    {168, "CSHAREDEXPERIENCE", {{{U32, "flag"}}}},
    {170, "COPENOWNCHANNEL"},
    {171, "CINVITETOCHANNEL", {{{STRING, "name", NAME}}}},
    {172, "CEXCLUDEFROMCHANNEL", {{{STRING, "name", NAME}}}},
    {190, "CCANCEL"},
    {203, "CBROWSEFIELD", {{{POSITION, ""}}}},
    {204, "CCONTAINERPAGE", {{{U8, "containerId"}, {U16, "firstIndex"}}}},
    {210, "CGETOUTFIT"},
    {211,
     "CSETOUTFIT",
     {{{U16, "outfit"},
       {U8, "head"},
       {U8, "body"},
       {U8, "legs"},
       {U8, "feet"},
       {U8, "addons"},
       {U16, "mount"}}}},
    {212, "CMOUNT", {{{U8, "flag"}}}},
    {220, "CADDBUDDY", {{{STRING, "name", NAME}}}},
    {221, "CREMOVEBUDDY", {{{U32, "characterId"}}}},
    {222,
     "CEDITBUDDY",
     {{{U32, "characterId"},
       {STRING, "description", BUDDY_DESCRIPTION_MAX},
       {U32, "icon"},
       {U8, "notifyLogin"}}}},
    {230, "CBUGREPORT", {{{STRING, "text", BUG_REPORT_MAX}}}},
    {231, "CTHANKYOU", {{{U32, "statementId"}}}},
    {232,
     "CERRORREPORT",
     {{{STRING, "title", ERROR_TITLE_MAX},
       {STRING, "date", ERROR_DATE_MAX},
       {STRING, "lines", ERROR_LINES_MAX},
       {STRING, "comment", ERROR_COMMENT_MAX}}}},
    {240, "CQUESTLOG"},
    {241, "CQUESTLINE", {{{U16, "questLine"}}}},
    {242, "CRULEVIOLATION", {}, ReadRuleViolation},
    {244, "CMARKETLEAVE"},
    {245, "CMARKETBROWSE", {{{U16, "objectType"}}}},
    {246,
     "CMARKETCREATE",
     {{{U8, "offerType"}, {U16, "objectType"}, {U16, "amount"}, {U32, "price"}, {U8, "anonymous"}}}},
    {247, "CMARKETCANCEL", {{{U32, "offerTime"}, {U16, "offerCounter"}}}},
    {248, "CMARKETACCEPT", {{{U32, "offerTime"}, {U16, "offerCounter"}, {U16, "amount"}}}},
    {249, "CANSWERDIALOG", {{{U32, "dialogId"}, {U8, "button"}, {U8, "choice"}}}},
};

const TCommandLayout* FindCommand(std::uint8_t Type) {
  for (const TCommandLayout& Layout : COMMANDS)
    if (Layout.Type == Type) return &Layout;
  return nullptr;
}

// "x" alone, or the prefix with the part's name capitalised: "sourceX".
std::string Part(const std::string& Prefix, const std::string& Name) {
  if (Prefix.empty()) return Name;
  return Prefix + static_cast<char>(Name[0] - 'a' + 'A') + Name.substr(1);
}

void ReadPosition(TFieldReader& Reader, const std::string& Prefix) {
  Reader.U16(Part(Prefix, "x"));
  Reader.U16(Part(Prefix, "y"));
  Reader.U8(Part(Prefix, "z"));
}

void ReadField(TFieldReader& Reader, const TFieldLayout& Field) {
  switch (Field.Kind) {
    case U8:
      Reader.U8(Field.Name);
      break;
    case U16:
      Reader.U16(Field.Name);
      break;
    case U32:
      Reader.U32(Field.Name);
      break;
    case STRING:
      Reader.String(Field.Name, Field.Limit);
      break;
    case POSITION:
      ReadPosition(Reader, Field.Name);
      break;
    case THING:
      ReadPosition(Reader, Field.Name);
      Reader.U16(Part(Field.Name, "objectType"));
      Reader.U8(Part(Field.Name, "stackPosition"));
      break;
    case END:
      break;
  }
}

[[noreturn]] void Invalid(const char* Field, int Value) {
  ThrowException("invalid value", {{"field", Field}, {"value", std::to_string(Value)}});
}

// Step codes 1 (east) to 8 (south-east), counter-clockwise; noted as one text of digits.
void ReadGoPath(TFieldReader& Reader) {
  const int Count = Reader.U8("count");
  std::string Steps;
  for (int I = 0; I < Count; ++I) {
    const int Step = Reader.Skip(1)[0];
    if (Step < 1 || Step > 8) Invalid("step", Step);
    Steps += static_cast<char>('0' + Step);
  }
  Reader.Note("steps", Steps);
}

// The wire mode decides the fields: plain text, a private message with its
// addressee, or a channel message with its channel.
void ReadTalk(TFieldReader& Reader) {
  const int Mode = Reader.U8("mode");
  switch (Mode) {
    case 1:   // say
    case 2:   // whisper
    case 3:   // yell
    case 12:  // to an NPC
    case 13:  // broadcast
      break;
    case 5:   // private message
    case 16:  // gamemaster's private message
      Reader.String("addressee", NAME);
      break;
    case 7:   // channel call
    case 14:  // gamemaster's channel call
    case 32:  // channel message on channel 0
    case 34:  // channel message on another channel
      Reader.U16("channelId");
      break;
    default:
      Invalid("mode", Mode);
  }
  Reader.String("text", TALK_TEXT_MAX);
}

// Kind 0 reports a name, 1 a statement, 2 a bot.
void ReadRuleViolation(TFieldReader& Reader) {
  const int Kind = Reader.U8("kind");
  if (Kind > 2) Invalid("kind", Kind);
  Reader.U8("reason");
  Reader.String("character", NAME);
  Reader.String("comment", REPORT_COMMENT_MAX);
  if (Kind < 2) Reader.String("translation", REPORT_TRANSLATION_MAX);
  if (Kind == 1) Reader.U32("statementId");
}

}  // namespace

TGameCommand DecodeGameCommand(std::span<const std::uint8_t> Payload) {
  Check(!Payload.empty(), "packet holds no command");
  const std::uint8_t Type = Payload[0];
  const TCommandLayout* Layout = FindCommand(Type);
  if (Layout == nullptr) ThrowException("unknown command", {{"type", std::to_string(Type)}});
  TGameCommand Command{Type, {Layout->Name, {}}};
  TFieldReader Reader(Payload.subspan(1), Command.Record);
  for (const TFieldLayout& Field : Layout->Fields) ReadField(Reader, Field);
  if (Layout->Special != nullptr) Layout->Special(Reader);
  Reader.CheckConsumed();
  return Command;
}

std::optional<std::string> GameCommandName(std::uint8_t Type) {
  const TCommandLayout* Layout = FindCommand(Type);
  if (Layout == nullptr) return std::nullopt;
  return Layout->Name;
}

namespace {

const TFieldValue& FieldValue(const TCommandRecord& Record, std::string_view Name) {
  for (const TField& Field : Record.Fields)
    if (Field.Name == Name) return Field.Value;
  ThrowException("command has no such field", {{"command", Record.Name}, {"field", std::string(Name)}});
}

}  // namespace

std::int64_t NumberField(const TCommandRecord& Record, std::string_view Name) {
  const auto* Number = std::get_if<std::int64_t>(&FieldValue(Record, Name));
  if (Number == nullptr) ThrowException("field is no number", {{"field", std::string(Name)}});
  return *Number;
}

const std::string& TextField(const TCommandRecord& Record, std::string_view Name) {
  const auto* Text = std::get_if<std::string>(&FieldValue(Record, Name));
  if (Text == nullptr) ThrowException("field is no text", {{"field", std::string(Name)}});
  return *Text;
}

}  // namespace server
