#include "tools/server/WorldMessages.h"

#include "core/Exception.h"

namespace server {

namespace {

constexpr std::uint16_t ENVIRONMENT = 0;
constexpr std::uint16_t SKIP_MARK = 0xFF00;
constexpr int MOST_SKIPPED = 0xFF;
constexpr std::uint8_t NO_MARK = 255;
constexpr std::uint8_t NO_SQUARE = 255;
constexpr std::uint8_t START_PHASE = 0;  // the type's own start phase
constexpr std::uint8_t NPC_SPEECH_ICON = 1;
constexpr int LOWEST_FLOOR = 15;
constexpr int DEEPEST_READ_FLOOR = 14;  // a floor down to here brings one more into view

// Collects the bytes of a map description; the field names are for the log,
// which takes the description as a whole.
class TByteSink {
 public:
  void U8(std::string_view, std::uint8_t Value) { m_Bytes.push_back(Value); }
  void U16(std::string_view Field, std::uint16_t Value) {
    U8(Field, static_cast<std::uint8_t>(Value));
    U8(Field, static_cast<std::uint8_t>(Value >> 8));
  }
  void U32(std::string_view Field, std::uint32_t Value) {
    U16(Field, static_cast<std::uint16_t>(Value));
    U16(Field, static_cast<std::uint16_t>(Value >> 16));
  }
  void String(std::string_view Field, std::string_view Text) {
    U16(Field, static_cast<std::uint16_t>(Text.size()));
    m_Bytes.insert(m_Bytes.end(), Text.begin(), Text.end());
  }
  std::vector<std::uint8_t> Take() { return std::move(m_Bytes); }

 private:
  std::vector<std::uint8_t> m_Bytes;
};

template <typename TSink>
void Position(TSink& Sink, const TPosition& Position) {
  Sink.U16("x", static_cast<std::uint16_t>(Position.X));
  Sink.U16("y", static_cast<std::uint16_t>(Position.Y));
  Sink.U8("z", static_cast<std::uint8_t>(Position.Z));
}

// The floors that a change of floor brings into view, for the new floor.
std::vector<int> FloorsAfterUp(int Z) {
  if (Z > SURFACE_FLOOR) return {Z - 2};
  if (Z == SURFACE_FLOOR) return {5, 4, 3, 2, 1, 0};
  return {};
}

std::vector<int> FloorsAfterDown(int Z) {
  if (Z > SURFACE_FLOOR + 1) return Z < DEEPEST_READ_FLOOR ? std::vector<int>{Z + 2} : std::vector<int>{};
  if (Z == SURFACE_FLOOR + 1) return {8, 9, 10};
  return {};
}

}  // namespace

template <typename TSink>
void TWorldMessages::Item(TSink& Sink, const TItem& Item) {
  if (Item.IsCreature()) {
    const TCreature* Found = m_World.Find(Item.Data);
    Check(Found != nullptr, "creature on the map is not in the world", {"Id", Item.Data});
    Creature(Sink, *Found);
    return;
  }
  const TObjectType& Type = m_World.Types().Object(Item.Type);
  Sink.U16("type", static_cast<std::uint16_t>(Item.Type));
  Sink.U8("mark", NO_MARK);
  if (m_World.Types().HasData(Item.Type)) Sink.U8("data", static_cast<std::uint8_t>(Item.Data));
  if (Type.Phases > 1) Sink.U8("phase", START_PHASE);
}

template <typename TSink>
void TWorldMessages::Creature(TSink& Sink, const TCreature& Creature) {
  if (m_View.Knows(Creature.Id)) {
    Sink.U16("type", KNOWN_CREATURE_RECORD);
    Sink.U32("id", Creature.Id);
    Sink.U8("direction", static_cast<std::uint8_t>(Creature.Direction));
    Sink.U8("unpassable", 1);
    return;
  }
  const std::uint32_t Forgotten = m_View.Learn(Creature.Id, [this](std::uint32_t Id) {
    const TCreature* Known = m_World.Find(Id);
    return Known != nullptr && m_View.Holds(Known->Position);
  });
  const TCreatureSetup& Setup = Creature.Setup;
  Sink.U16("type", UNKNOWN_CREATURE_RECORD);
  Sink.U32("oldId", Forgotten);
  Sink.U32("id", Creature.Id);
  Sink.U8("reserved", 0);
  Sink.String("name", Setup.Name);
  Sink.U8("health", static_cast<std::uint8_t>(Creature.Health));
  Sink.U8("direction", static_cast<std::uint8_t>(Creature.Direction));
  Sink.U16("outfit", static_cast<std::uint16_t>(Setup.Outfit.Type));
  Sink.U8("head", static_cast<std::uint8_t>(Setup.Outfit.Head));
  Sink.U8("body", static_cast<std::uint8_t>(Setup.Outfit.Body));
  Sink.U8("legs", static_cast<std::uint8_t>(Setup.Outfit.Legs));
  Sink.U8("feet", static_cast<std::uint8_t>(Setup.Outfit.Feet));
  Sink.U8("addons", static_cast<std::uint8_t>(Setup.Outfit.Addons));
  Sink.U16("mount", 0);
  Sink.U8("brightness", 0);
  Sink.U8("lightColor", 0);
  Sink.U16("speed", static_cast<std::uint16_t>(Setup.Speed));
  Sink.U8("skull", 0);
  Sink.U8("party", 0);
  Sink.U8("guild", 0);
  Sink.U8("kind", static_cast<std::uint8_t>(Setup.Kind));
  Sink.U8("speech", Setup.Kind == ECreatureKind::NPC ? NPC_SPEECH_ICON : 0);
  Sink.U8("square", NO_SQUARE);
  Sink.U16("pvpHelpers", 0);
  Sink.U8("unpassable", 1);
}

std::vector<std::uint8_t> TWorldMessages::Area(int X0, int Y0, int X1, int Y1, const std::vector<int>& Floors) {
  TByteSink Sink;
  int Skip = -1;  // the empty fields that the owed mark skips; -1: no mark owed
  for (const int Z : Floors)
    for (int X = X0; X <= X1; ++X)
      for (int Y = Y0; Y <= Y1; ++Y) {
        const TPile& Items = m_World.Map().Pile(m_View.FieldAt(X, Y, Z));
        if (Items.empty()) {
          if (Skip == MOST_SKIPPED) {
            Sink.U16("skip", SKIP_MARK + MOST_SKIPPED);
            Skip = 0;
          } else {
            ++Skip;
          }
          continue;
        }
        if (Skip >= 0) Sink.U16("skip", static_cast<std::uint16_t>(SKIP_MARK + Skip));
        Sink.U16("environment", ENVIRONMENT);
        for (const TItem& Entry : Items) Item(Sink, Entry);
        Skip = 0;
      }
  if (Skip >= 0) Sink.U16("skip", static_cast<std::uint16_t>(SKIP_MARK + Skip));
  return Sink.Take();
}

void TWorldMessages::Description(TMessageWriter& Writer, std::uint8_t Type, const char* Name, int X0, int Y0,
                                 int X1, int Y1, const std::vector<int>& Floors) {
  Writer.Begin(Type, Name);
  Writer.Bytes("description", Area(X0, Y0, X1, Y1, Floors));
}

void TWorldMessages::FullMap(TMessageWriter& Writer, const TPosition& Where) {
  m_View.MapPosition = Where;
  Writer.Begin(SFULLMAP, "SFULLMAP");
  Position(Writer, Where);
  Writer.Bytes("description", Area(0, 0, MAPSIZE_X - 1, MAPSIZE_Y - 1, m_View.Floors()));
}

void TWorldMessages::Row(TMessageWriter& Writer, int Direction) {
  TPosition& Map = m_View.MapPosition;
  const std::vector<int> Floors = m_View.Floors();
  switch (Direction) {
    case NORTH:
      --Map.Y;
      return Description(Writer, STOPROW, "STOPROW", 0, 0, MAPSIZE_X - 1, 0, Floors);
    case EAST:
      ++Map.X;
      return Description(Writer, SRIGHTROW, "SRIGHTROW", MAPSIZE_X - 1, 0, MAPSIZE_X - 1, MAPSIZE_Y - 1, Floors);
    case SOUTH:
      ++Map.Y;
      return Description(Writer, SBOTTOMROW, "SBOTTOMROW", 0, MAPSIZE_Y - 1, MAPSIZE_X - 1, MAPSIZE_Y - 1, Floors);
    case WEST:
      --Map.X;
      return Description(Writer, SLEFTROW, "SLEFTROW", 0, 0, 0, MAPSIZE_Y - 1, Floors);
    default:
      ThrowException("no such direction", {{"Direction", std::to_string(Direction)}});
  }
}

void TWorldMessages::FloorUp(TMessageWriter& Writer) {
  TPosition& Map = m_View.MapPosition;
  Check(Map.Z > 0, "floor up from the highest floor", {"Z", Map.Z});
  Map = {Map.X + 1, Map.Y + 1, Map.Z - 1};
  Description(Writer, STOPFLOOR, "STOPFLOOR", 0, 0, MAPSIZE_X - 1, MAPSIZE_Y - 1, FloorsAfterUp(Map.Z));
}

void TWorldMessages::FloorDown(TMessageWriter& Writer) {
  TPosition& Map = m_View.MapPosition;
  Check(Map.Z < LOWEST_FLOOR, "floor down from the lowest floor", {"Z", Map.Z});
  Map = {Map.X - 1, Map.Y - 1, Map.Z + 1};
  Description(Writer, SBOTTOMFLOOR, "SBOTTOMFLOOR", 0, 0, MAPSIZE_X - 1, MAPSIZE_Y - 1, FloorsAfterDown(Map.Z));
}

void TWorldMessages::CreateOnMap(TMessageWriter& Writer, const TPosition& Where, int Stack) {
  Writer.Begin(SCREATEONMAP, "SCREATEONMAP");
  Position(Writer, Where);
  Writer.U8("stack", static_cast<std::uint8_t>(Stack));
  Item(Writer, m_World.Map().Pile(Where).at(static_cast<std::size_t>(Stack)));
}

void TWorldMessages::ChangeOnMap(TMessageWriter& Writer, const TPosition& Where, int Stack) {
  Writer.Begin(SCHANGEONMAP, "SCHANGEONMAP");
  Position(Writer, Where);
  Writer.U8("stack", static_cast<std::uint8_t>(Stack));
  Item(Writer, m_World.Map().Pile(Where).at(static_cast<std::size_t>(Stack)));
}

void TWorldMessages::DeleteOnMap(TMessageWriter& Writer, const TPosition& Where, int Stack) {
  Writer.Begin(SDELETEONMAP, "SDELETEONMAP");
  Position(Writer, Where);
  Writer.U8("stack", static_cast<std::uint8_t>(Stack));
}

void TWorldMessages::MoveCreature(TMessageWriter& Writer, const TPosition& From, int Stack, const TPosition& To) {
  Writer.Begin(SMOVECREATURE, "SMOVECREATURE");
  Position(Writer, From);
  Writer.U8("stack", static_cast<std::uint8_t>(Stack));
  Writer.U16("toX", static_cast<std::uint16_t>(To.X));
  Writer.U16("toY", static_cast<std::uint16_t>(To.Y));
  Writer.U8("toZ", static_cast<std::uint8_t>(To.Z));
}

void TWorldMessages::Talk(TMessageWriter& Writer, std::uint32_t Statement, const TCreature& Speaker,
                          std::string_view Text) {
  Writer.Begin(STALK, "STALK");
  Writer.U32("statement", Statement);
  Writer.String("speaker", Speaker.Setup.Name);
  Writer.U16("level", 0);
  Writer.U8("mode", TALK_SAY);
  Position(Writer, Speaker.Position);
  Writer.String("text", Text);
}

void TWorldMessages::Snapback(TMessageWriter& Writer, int Direction) {
  Writer.Begin(SSNAPBACK, "SSNAPBACK");
  Writer.U8("direction", static_cast<std::uint8_t>(Direction));
}

}  // namespace server
