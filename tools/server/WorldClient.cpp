#include "tools/server/WorldClient.h"

#include <cstdlib>

#include "core/Exception.h"

namespace server {

namespace {

constexpr std::int64_t NOT_ON_MAP = 0xFFFF;

std::vector<TStep> PathOf(const std::string& Codes) {
  std::vector<TStep> Steps;
  for (const char Code : Codes) Steps.push_back(*StepOfCode(Code - '0'));
  return Steps;
}

std::optional<TStep> SingleStep(std::uint8_t Type) {
  switch (Type) {
    case CGONORTH:
      return TStep{0, -1};
    case CGOEAST:
      return TStep{1, 0};
    case CGOSOUTH:
      return TStep{0, 1};
    case CGOWEST:
      return TStep{-1, 0};
    case CGONORTHEAST:
      return TStep{1, -1};
    case CGOSOUTHEAST:
      return TStep{1, 1};
    case CGOSOUTHWEST:
      return TStep{-1, 1};
    case CGONORTHWEST:
      return TStep{-1, -1};
    default:
      return std::nullopt;
  }
}

// The parts of a position field of the record, by their names.
TPosition PositionField(const TCommandRecord& Record, const char* X, const char* Y, const char* Z) {
  return {static_cast<int>(NumberField(Record, X)), static_cast<int>(NumberField(Record, Y)),
          static_cast<int>(NumberField(Record, Z))};
}

}  // namespace

TWorldClient::TWorldClient(TGameWorld& World, std::uint32_t PlayerId, const std::string& Name, TSend Send)
    : m_World(World), m_Id(PlayerId), m_Send(std::move(Send)) {
  m_World.AddPlayer(PlayerId, Name);
  m_World.AddListener(*this);
}

TWorldClient::~TWorldClient() {
  m_World.RemoveListener(*this);
  m_World.RemoveCreature(m_Id);
}

void TWorldClient::WriteMap(TMessageWriter& Writer) { m_Messages.FullMap(Writer, m_World.Find(m_Id)->Position); }

bool TWorldClient::Execute(const TGameCommand& Command) {
  const TCommandRecord& Record = Command.Record;
  if (const std::optional<TStep> Step = SingleStep(Command.Type)) {
    m_World.Walk(m_Id, {*Step});
  } else if (Command.Type == CGOPATH) {
    m_World.Walk(m_Id, PathOf(TextField(Record, "steps")));
  } else if (Command.Type == CSTOP) {
    m_World.Stop(m_Id);
  } else if (Command.Type >= CTURNNORTH && Command.Type <= CTURNWEST) {
    m_World.Turn(m_Id, Command.Type - CTURNNORTH);
  } else if (Command.Type == CUSEOBJECT) {
    const TPosition Where = PositionField(Record, "x", "y", "z");
    if (Where.X != NOT_ON_MAP)
      m_World.Use(m_Id, Where, static_cast<int>(NumberField(Record, "objectType")),
                  static_cast<int>(NumberField(Record, "stackPosition")));
  } else if (Command.Type == CMOVEOBJECT) {
    const TPosition From = PositionField(Record, "sourceX", "sourceY", "sourceZ");
    const TPosition To = PositionField(Record, "destinationX", "destinationY", "destinationZ");
    if (From.X != NOT_ON_MAP && To.X != NOT_ON_MAP)
      m_World.MoveObject(m_Id, From, static_cast<int>(NumberField(Record, "sourceObjectType")),
                         static_cast<int>(NumberField(Record, "sourceStackPosition")), To,
                         static_cast<int>(NumberField(Record, "count")));
  } else {
    return false;
  }
  return true;
}

template <typename TWrite>
void TWorldClient::SendIf(bool Condition, TWrite&& Write) {
  if (!Condition) return;
  TMessageWriter Writer;
  Write(Writer);
  m_Send(Writer);
}

void TWorldClient::CreatureAppeared(const TCreature& Creature, int Stack) {
  SendIf(Creature.Id != m_Id && m_View.Holds(Creature.Position),
         [&](TMessageWriter& Writer) { m_Messages.CreateOnMap(Writer, Creature.Position, Stack); });
}

void TWorldClient::CreatureDisappeared(const TCreature& Creature, int Stack) {
  SendIf(Creature.Id != m_Id && m_View.Holds(Creature.Position),
         [&](TMessageWriter& Writer) { TWorldMessages::DeleteOnMap(Writer, Creature.Position, Stack); });
}

void TWorldClient::CreatureMoved(const TCreature& Creature, const TPosition& From, int Stack) {
  if (Creature.Id == m_Id)
    OwnMove(From, Stack);
  else
    OtherMove(Creature, From, Stack);
}

// The player's own step: the move, then the floors and rows that the new map
// position brings into view. The one place the client can't name before the
// floor changes is the floor below the surface; there the player leaves its
// field, and the floors that come into view show it where it landed. A way
// up lands one field beyond the stairs: two from where the step began.
void TWorldClient::OwnMove(const TPosition& From, int Stack) {
  const TPosition To = m_World.Find(m_Id)->Position;
  Check(std::abs(To.X - From.X) <= 2 && std::abs(To.Y - From.Y) <= 2 && std::abs(To.Z - From.Z) <= 1,
        "player moved further than a step and a floor");
  TMessageWriter Writer;
  if (m_View.Holds(To))
    TWorldMessages::MoveCreature(Writer, From, Stack, To);
  else
    TWorldMessages::DeleteOnMap(Writer, From, Stack);
  if (To.Z < From.Z) m_Messages.FloorUp(Writer);
  if (To.Z > From.Z) m_Messages.FloorDown(Writer);
  const TPosition& Map = m_View.MapPosition;
  while (Map.Y > To.Y) m_Messages.Row(Writer, NORTH);
  while (Map.Y < To.Y) m_Messages.Row(Writer, SOUTH);
  while (Map.X < To.X) m_Messages.Row(Writer, EAST);
  while (Map.X > To.X) m_Messages.Row(Writer, WEST);
  m_Send(Writer);
}

void TWorldClient::OtherMove(const TCreature& Creature, const TPosition& From, int Stack) {
  const bool SawFrom = m_View.Holds(From);
  const bool SeesTo = m_View.Holds(Creature.Position);
  TMessageWriter Writer;
  if (SawFrom && SeesTo)
    TWorldMessages::MoveCreature(Writer, From, Stack, Creature.Position);
  else if (SawFrom)
    TWorldMessages::DeleteOnMap(Writer, From, Stack);
  else if (SeesTo)
    m_Messages.CreateOnMap(Writer, Creature.Position, *m_World.Map().StackOf(Creature.Position, Creature.Id));
  else
    return;
  m_Send(Writer);
}

void TWorldClient::CreatureTurned(const TCreature& Creature, int Stack) {
  SendIf(m_View.Holds(Creature.Position),
         [&](TMessageWriter& Writer) { m_Messages.ChangeOnMap(Writer, Creature.Position, Stack); });
}

void TWorldClient::CreatureTalked(const TCreature& Creature, std::uint32_t Statement, std::string_view Text) {
  SendIf(m_View.Holds(Creature.Position),
         [&](TMessageWriter& Writer) { TWorldMessages::Talk(Writer, Statement, Creature, Text); });
}

void TWorldClient::StepRefused(const TCreature& Creature) {
  SendIf(Creature.Id == m_Id,
         [&](TMessageWriter& Writer) { TWorldMessages::Snapback(Writer, Creature.Direction); });
}

void TWorldClient::ObjectCreated(const TPosition& Position, int Stack) {
  SendIf(m_View.Holds(Position), [&](TMessageWriter& Writer) { m_Messages.CreateOnMap(Writer, Position, Stack); });
}

void TWorldClient::ObjectChanged(const TPosition& Position, int Stack) {
  SendIf(m_View.Holds(Position), [&](TMessageWriter& Writer) { m_Messages.ChangeOnMap(Writer, Position, Stack); });
}

void TWorldClient::ObjectDeleted(const TPosition& Position, int Stack) {
  SendIf(m_View.Holds(Position),
         [&](TMessageWriter& Writer) { TWorldMessages::DeleteOnMap(Writer, Position, Stack); });
}

}  // namespace server
