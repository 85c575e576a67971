#include "tools/server/WorldFile.h"

#include <map>
#include <optional>

#include "core/Exception.h"
#include "core/Script.h"

namespace server {

namespace {

constexpr int MAX_NAME = 29;
constexpr int MAX_DATA = 255;
constexpr int MAX_SPEED = 0xFFFF;
constexpr int MAX_RANGE = 10;
constexpr int MAX_REST_MS = 60000;
constexpr int MAX_INTERVAL_MS = 3600000;
constexpr int MAX_COORDINATE = 0xFFFE;
constexpr int DEEPEST = 15;
constexpr int OUTFIT_DIRECTIONS = 4;
constexpr char NOTHING = ' ';  // a character of a map row without a field

class TWorldReader {
 public:
  TWorldReader(const std::filesystem::path& Path, std::shared_ptr<const TObjectTypes> Types)
      : m_Types(*Types), m_Setup{TWorldMap(std::move(Types)), {}, {}, {}, {}, {}} {
    m_Reader.open(Path.string());
  }

  TWorldSetup Read();

 private:
  void Statement(const std::string& Word);
  void Key();
  void Floor();
  void Put();
  void Ways(std::set<int>& Types);
  void Use();
  void Player();
  void Creature(ECreatureKind Kind);
  void Properties(TCreatureSetup& Setup);
  void Property(const std::string& Name, TCreatureSetup& Setup);
  void CheckCreature(const TCreatureSetup& Setup);

  std::vector<TItem> Items();
  TItem Item();
  int ObjectType() { return CheckedType(m_Reader.readNumber()); }
  int CheckedType(int Type);
  TPosition Position();
  void AddItems(const TPosition& Position, const std::vector<TItem>& Items);
  int Number(int Low, int High, const char* What);
  void Expect(char Special);
  bool IsSpecial(char Special) { return m_Reader.getToken() == TOKEN::SPECIAL && m_Reader.getSpecial() == Special; }

  TScriptReader m_Reader;
  const TObjectTypes& m_Types;
  TWorldSetup m_Setup;
  std::map<char, std::vector<TItem>> m_Keys;
  std::set<TPosition> m_Occupied;
  bool m_HasPlayer = false;
};

TWorldSetup TWorldReader::Read() {
  for (m_Reader.nextToken(); m_Reader.getToken() != TOKEN::ENDOFFILE; m_Reader.nextToken())
    Statement(m_Reader.getIdentifier());
  if (!m_HasPlayer) m_Reader.error("no player start");
  m_Reader.close();
  return std::move(m_Setup);
}

void TWorldReader::Statement(const std::string& Word) {
  if (Word == "key")
    Key();
  else if (Word == "floor")
    Floor();
  else if (Word == "put")
    Put();
  else if (Word == "down")
    Ways(m_Setup.WaysDown);
  else if (Word == "up")
    Ways(m_Setup.WaysUp);
  else if (Word == "use")
    Use();
  else if (Word == "player")
    Player();
  else if (Word == "monster")
    Creature(ECreatureKind::MONSTER);
  else if (Word == "npc")
    Creature(ECreatureKind::NPC);
  else
    m_Reader.error("unknown statement '" + Word + "'");
}

int TWorldReader::Number(int Low, int High, const char* What) {
  const int Value = m_Reader.readNumber();
  if (Value < Low || Value > High)
    m_Reader.error(std::string(What) + " must be from " + std::to_string(Low) + " to " + std::to_string(High) +
                   ", not " + std::to_string(Value));
  return Value;
}

void TWorldReader::Expect(char Special) { m_Reader.readSymbol(Special); }

int TWorldReader::CheckedType(int Type) {
  if (!m_Types.IsObject(Type)) m_Reader.error("unknown object type " + std::to_string(Type));
  return Type;
}

// A type, the current token, and after a colon its count or liquid.
TItem TWorldReader::Item() {
  TItem Result{CheckedType(m_Reader.getNumber()), 0};
  m_Reader.nextToken();
  if (IsSpecial(':')) {
    if (!m_Types.HasData(Result.Type))
      m_Reader.error("object type " + std::to_string(Result.Type) + " carries no count or liquid");
    Result.Data = static_cast<std::uint32_t>(Number(0, MAX_DATA, "a count or liquid"));
    m_Reader.nextToken();
  } else if (m_Types.Object(Result.Type).Has(CUMULATIVE)) {
    Result.Data = 1;
  }
  return Result;
}

// "(" items ")", possibly none; the token after ")" is not read.
std::vector<TItem> TWorldReader::Items() {
  Expect('(');
  std::vector<TItem> Result;
  m_Reader.nextToken();
  if (IsSpecial(')')) return Result;
  for (;;) {
    Result.push_back(Item());
    if (IsSpecial(')')) return Result;
    if (!IsSpecial(',')) m_Reader.error("',' or ')' expected");
    m_Reader.nextToken();
  }
}

TPosition TWorldReader::Position() {
  const TScriptCoordinate Where = m_Reader.readCoordinate();
  if (Where.X > MAX_COORDINATE || Where.Y > MAX_COORDINATE || Where.Z > DEEPEST)
    m_Reader.error("position out of the world");
  return {Where.X, Where.Y, Where.Z};
}

void TWorldReader::AddItems(const TPosition& Where, const std::vector<TItem>& Items) {
  for (const TItem& Entry : Items) {
    if (static_cast<int>(m_Setup.Map.Pile(Where).size()) >= ITEMS_PER_FIELD)
      m_Reader.error("more than " + std::to_string(ITEMS_PER_FIELD) + " objects on " + PositionText(Where));
    m_Setup.Map.Insert(Where, Entry);
  }
}

void TWorldReader::Key() {
  const std::string& Text = m_Reader.readString();
  if (Text.size() != 1 || Text[0] == NOTHING) m_Reader.error("a key is one character other than a blank");
  const char Character = Text[0];
  if (m_Keys.contains(Character)) m_Reader.error(std::string("second key '") + Character + "'");
  Expect('=');
  const std::vector<TItem> Objects = Items();
  if (Objects.empty()) m_Reader.error("a key stands for one object at least");
  m_Keys[Character] = Objects;
}

void TWorldReader::Floor() {
  const TPosition Corner = Position();
  Expect('{');
  int Row = 0;
  for (m_Reader.nextToken(); !IsSpecial('}'); m_Reader.nextToken(), ++Row) {
    const std::string Text = m_Reader.getString();
    for (std::size_t Column = 0; Column < Text.size(); ++Column) {
      if (Text[Column] == NOTHING) continue;
      const auto Key = m_Keys.find(Text[Column]);
      if (Key == m_Keys.end()) m_Reader.error(std::string("no key for '") + Text[Column] + "'");
      AddItems({Corner.X + static_cast<int>(Column), Corner.Y + Row, Corner.Z}, Key->second);
    }
  }
}

void TWorldReader::Put() {
  const TPosition Where = Position();
  const std::vector<TItem> Objects = Items();
  if (Objects.empty()) m_Reader.error("nothing to put");
  AddItems(Where, Objects);
}

void TWorldReader::Ways(std::set<int>& Types) {
  Expect('=');
  Expect('(');
  do Types.insert(ObjectType());
  while (m_Reader.readSpecial() == ',');
  if (m_Reader.getSpecial() != ')') m_Reader.error("',' or ')' expected");
}

void TWorldReader::Use() {
  const int From = ObjectType();
  if (m_Reader.readSpecial() != 'I') m_Reader.error("'->' expected");
  m_Setup.Uses[From] = ObjectType();
}

void TWorldReader::Player() {
  if (m_HasPlayer) m_Reader.error("second player start");
  m_HasPlayer = true;
  TCreatureSetup& Setup = m_Setup.Player;
  Setup.Kind = ECreatureKind::PLAYER;
  Setup.Name = "player";
  Setup.Position = Position();
  Properties(Setup);
  CheckCreature(Setup);
}

void TWorldReader::Creature(ECreatureKind Kind) {
  TCreatureSetup Setup;
  Setup.Kind = Kind;
  Setup.Name = m_Reader.readString();
  if (Setup.Name.empty() || static_cast<int>(Setup.Name.size()) > MAX_NAME)
    m_Reader.error("a name has 1 to " + std::to_string(MAX_NAME) + " characters");
  Setup.Position = Position();
  Properties(Setup);
  CheckCreature(Setup);
  if (!Setup.Lines.empty() && Setup.TalkIntervalMs <= 0) m_Reader.error("lines need an interval");
  m_Occupied.insert(Setup.Position);
  m_Setup.Creatures.push_back(std::move(Setup));
}

void TWorldReader::CheckCreature(const TCreatureSetup& Setup) {
  if (!m_Setup.Map.IsWalkable(Setup.Position) || m_Occupied.contains(Setup.Position))
    m_Reader.error(Setup.Name + " stands where no one can: " + PositionText(Setup.Position));
  const int Outfit = Setup.Outfit.Type;
  if (!m_Types.IsOutfit(Outfit)) m_Reader.error("unknown outfit " + std::to_string(Outfit));
  if (m_Types.Outfit(Outfit).Directions != OUTFIT_DIRECTIONS)
    m_Reader.error("outfit " + std::to_string(Outfit) + " has not all four directions");
}

void TWorldReader::Properties(TCreatureSetup& Setup) {
  Expect('{');
  for (m_Reader.nextToken(); !IsSpecial('}'); m_Reader.nextToken()) {
    const std::string Name = m_Reader.getIdentifier();
    Expect('=');
    Property(Name, Setup);
  }
}

void TWorldReader::Property(const std::string& Name, TCreatureSetup& Setup) {
  static const std::map<std::string, int> DIRECTIONS = {
      {"north", NORTH}, {"east", EAST}, {"south", SOUTH}, {"west", WEST}};
  if (Name == "outfit") {
    Expect('(');
    int* const Parts[] = {&Setup.Outfit.Type, &Setup.Outfit.Head, &Setup.Outfit.Body,
                          &Setup.Outfit.Legs, &Setup.Outfit.Feet, &Setup.Outfit.Addons};
    for (std::size_t I = 0; I < std::size(Parts); ++I) {
      if (I > 0) Expect(',');
      *Parts[I] = Number(0, I == 0 ? MAX_SPEED : MAX_DATA, "an outfit value");
    }
    Expect(')');
  } else if (Name == "speed") {
    Setup.Speed = Number(1, MAX_SPEED, "speed");
  } else if (Name == "direction") {
    const auto Direction = DIRECTIONS.find(m_Reader.readIdentifier());
    if (Direction == DIRECTIONS.end()) m_Reader.error("north, east, south or west expected");
    Setup.Direction = Direction->second;
  } else if (Name == "range") {
    Setup.Range = Number(0, MAX_RANGE, "range");
  } else if (Name == "rest") {
    Setup.RestMs = Number(0, MAX_REST_MS, "rest");
  } else if (Name == "say") {
    Setup.Lines.push_back(m_Reader.readString());
  } else if (Name == "interval") {
    Setup.TalkIntervalMs = Number(1, MAX_INTERVAL_MS, "interval");
  } else {
    m_Reader.error("unknown property '" + Name + "'");
  }
}

}  // namespace

TWorldSetup LoadWorld(const std::filesystem::path& Path, std::shared_ptr<const TObjectTypes> Types) {
  return TWorldReader(Path, std::move(Types)).Read();
}

}  // namespace server
