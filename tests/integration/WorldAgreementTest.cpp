// The server's world encoder against the client's world readers, in one
// process: random worlds on all sixteen floors, a player walking through each
// of them up and down stairs and holes, and after every step the server's
// messages for that client go through the client's receive buffer and
// dispatch. The client's map block must then be what the server believes it
// holds, field by field.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "core/Clock.h"
#include "core/Exception.h"
#include "core/MessageQueue.h"
#include "core/Preferences.h"
#include "net/Communication.h"
#include "net/Connection.h"
#include "net/Login.h"
#include "net/Network.h"
#include "tests/server/TestWorld.h"
#include "tests/world/WorldModules.h"
#include "tools/server/Framing.h"
#include "tools/server/Messages.h"
#include "tools/server/World.h"
#include "tools/server/WorldClient.h"
#include "tools/server/WorldFile.h"
#include "world/Creatures.h"
#include "world/Map.h"
#include "world/Objects.h"
#include "world/WorldMessages.h"

namespace {

using server::TPosition;

constexpr std::uint32_t SEED = 0x4B454C4D;
constexpr int WORLDS = 200;
constexpr int STEPS = 25;
constexpr std::uint32_t PLAYER_ID = 1000;

// The worlds are squares of this many fields on every floor.
constexpr int WORLD_X = 32000;
constexpr int WORLD_Y = 32000;
constexpr int WORLD_SIZE = 20;
constexpr int LOWEST_FLOOR = 15;
constexpr int SURFACE = 7;
// Where the player stands in the block.
constexpr int PLAYER_RX = 8;
constexpr int PLAYER_RY = 6;

// Long enough for any step, a diagonal one on the slowest ground included.
constexpr std::int64_t STEP_INTERVAL_MS = 2000;

using TRandom = std::mt19937;

int Between(TRandom& Random, int Low, int High) { return std::uniform_int_distribution<int>(Low, High)(Random); }
bool Chance(TRandom& Random, double P) { return std::bernoulli_distribution(P)(Random); }
template <typename T>
const T& AnyOf(TRandom& Random, const std::vector<T>& Values) {
  return Values[static_cast<std::size_t>(Between(Random, 0, static_cast<int>(Values.size()) - 1))];
}

std::string Text(const TPosition& P) { return server::PositionText(P); }

// What the random worlds are made of: the demo object types, and the demo
// world's ways between floors.
struct TCatalogue {
  std::shared_ptr<const server::TObjectTypes> Types;
  std::vector<int> Grounds;
  std::vector<int> Things;  // anything else that lies on a field
  std::vector<int> Outfits;
  std::vector<int> WaysDown;  // grounds that lead a floor down
  std::vector<int> WaysUp;    // things that lead a floor up

  bool HasData(int Type) const { return Types->HasData(Type); }
  bool IsCumulative(int Type) const { return Types->Object(Type).Has(CUMULATIVE); }
};

TCatalogue MakeCatalogue() {
  TCatalogue C;
  C.Types = testing_server::DemoTypes();
  const server::TWorldSetup Demo = server::LoadWorld(testing_server::DemoWorldFile(), C.Types);
  C.WaysDown.assign(Demo.WaysDown.begin(), Demo.WaysDown.end());
  C.WaysUp.assign(Demo.WaysUp.begin(), Demo.WaysUp.end());
  const auto IsWay = [&](int Type) { return Demo.WaysDown.contains(Type) || Demo.WaysUp.contains(Type); };
  for (int Type = server::FIRST_OBJECT_TYPE; C.Types->IsObject(Type); ++Type) {
    if (IsWay(Type)) continue;
    (C.Types->Object(Type).Has(BANK) ? C.Grounds : C.Things).push_back(Type);
  }
  for (int Outfit = 1; C.Types->IsOutfit(Outfit); ++Outfit)
    if (C.Types->Outfit(Outfit).Directions == 4) C.Outfits.push_back(Outfit);
  return C;
}

// ---- Random worlds

class TWorldBuilder {
 public:
  TWorldBuilder(const TCatalogue& Catalogue, TRandom& Random)
      : m_Catalogue(Catalogue), m_Random(Random), m_Setup{server::TWorldMap(Catalogue.Types), {}, {}, {}, {}, {}} {
    m_Setup.WaysDown.insert(Catalogue.WaysDown.begin(), Catalogue.WaysDown.end());
    m_Setup.WaysUp.insert(Catalogue.WaysUp.begin(), Catalogue.WaysUp.end());
  }

  server::TWorldSetup Build() {
    for (int Z = 0; Z <= LOWEST_FLOOR; ++Z) Floor(Z);
    for (int Z = 0; Z <= LOWEST_FLOOR; ++Z) Ways(Z);
    PlacePlayer();
    const int Creatures = Between(m_Random, 0, 12);
    for (int I = 0; I < Creatures; ++I) PlaceCreature();
    return std::move(m_Setup);
  }

  // The holes and stairs.
  const std::vector<TPosition>& Ways() const { return m_Ways; }

 private:
  server::TWorldMap& Map() { return m_Setup.Map; }

  server::TItem Item(int Type) {
    std::uint32_t Data = 0;
    if (m_Catalogue.HasData(Type))
      Data = static_cast<std::uint32_t>(m_Catalogue.IsCumulative(Type) ? Between(m_Random, 1, 100)
                                                                         : Between(m_Random, 0, 10));
    return {Type, Data};
  }

  bool Full(const TPosition& Where) { return Map().Pile(Where).size() >= server::ITEMS_PER_FIELD; }

  // A ground with up to nine things on it, now and then things alone; the
  // map stacks them by its rule.
  void Pile(const TPosition& Where) {
    const bool Loose = Chance(m_Random, 0.03);
    if (!Loose) Map().Insert(Where, Item(AnyOf(m_Random, m_Catalogue.Grounds)));
    int Extra = Loose ? Between(m_Random, 1, 3) : 0;
    if (Chance(m_Random, 0.03))
      Extra = server::ITEMS_PER_FIELD - Between(m_Random, 1, 2);
    else if (Chance(m_Random, 0.35))
      Extra = std::min(server::ITEMS_PER_FIELD - 1, 1 + std::geometric_distribution<int>(0.5)(m_Random));
    for (int I = 0; I < Extra && !Full(Where); ++I) Map().Insert(Where, Item(AnyOf(m_Random, m_Catalogue.Things)));
  }

  // Dense enough to walk far on every floor, and sparse enough that a full
  // map of eight floors fits into one packet.
  void Floor(int Z) {
    const double Density = Between(m_Random, 55, 85) / 100.0;
    for (int X = WORLD_X; X < WORLD_X + WORLD_SIZE; ++X)
      for (int Y = WORLD_Y; Y < WORLD_Y + WORLD_SIZE; ++Y)
        if (Chance(m_Random, Density)) Pile({X, Y, Z});
  }

  TPosition Inside(int Z) {
    return {WORLD_X + Between(m_Random, 1, WORLD_SIZE - 2), WORLD_Y + Between(m_Random, 1, WORLD_SIZE - 2), Z};
  }

  // Makes the field a bare ground of the type.
  void Bare(const TPosition& Where, int Ground) {
    while (!Map().Pile(Where).empty()) Map().Remove(Where, 0);
    Map().Insert(Where, Item(Ground));
  }

  void Walkable(const TPosition& Where) {
    if (!Map().IsWalkable(Where)) Bare(Where, AnyOf(m_Random, m_Catalogue.Grounds));
  }

  // Holes and stairs on bare fields, and room where they lead to.
  void Ways(int Z) {
    const int Count = Between(m_Random, 4, 8);
    for (int I = 0; I < Count; ++I) {
      if (Z < LOWEST_FLOOR) {
        const TPosition Down = Inside(Z);
        Bare(Down, AnyOf(m_Random, m_Catalogue.WaysDown));
        Walkable({Down.X, Down.Y, Z + 1});
        m_Ways.push_back(Down);
      }
      if (Z > 0) {
        const TPosition Up = Inside(Z);
        Bare(Up, AnyOf(m_Random, m_Catalogue.Grounds));
        Map().Insert(Up, Item(AnyOf(m_Random, m_Catalogue.WaysUp)));
        for (int Code = 1; Code <= 8; ++Code) {
          const server::TStep Step = *server::StepOfCode(Code);
          Walkable({Up.X + Step.DX, Up.Y + Step.DY, Z - 1});
        }
        m_Ways.push_back(Up);
      }
    }
  }

  TPosition WalkableField() {
    for (;;) {
      const TPosition Where = Inside(Between(m_Random, 0, LOWEST_FLOOR));
      if (Map().IsWalkable(Where) && !m_Taken.contains(Where)) {
        m_Taken.insert(Where);
        return Where;
      }
    }
  }

  server::TOutfit Outfit() {
    return {AnyOf(m_Random, m_Catalogue.Outfits), Between(m_Random, 0, 132), Between(m_Random, 0, 132),
            Between(m_Random, 0, 132), Between(m_Random, 0, 132), Between(m_Random, 0, 3)};
  }

  void PlacePlayer() {
    server::TCreatureSetup& Player = m_Setup.Player;
    Player.Kind = server::ECreatureKind::PLAYER;
    Player.Position = WalkableField();
    Player.Outfit = Outfit();
    Player.Speed = 220;
    // AddPlayer may put the player next to the start.
    for (const auto& [DX, DY] : {std::pair{0, -1}, {1, 0}, {0, 1}, {-1, 0}})
      m_Taken.insert({Player.Position.X + DX, Player.Position.Y + DY, Player.Position.Z});
  }

  void PlaceCreature() {
    server::TCreatureSetup Creature;
    const bool Npc = Chance(m_Random, 0.25);
    Creature.Name = Npc ? "npc" : "monster";
    Creature.Kind = Npc ? server::ECreatureKind::NPC : server::ECreatureKind::MONSTER;
    Creature.Position = WalkableField();
    Creature.Direction = Between(m_Random, 0, 3);
    Creature.Outfit = Outfit();
    Creature.Speed = Between(m_Random, 80, 300);
    Creature.Range = Between(m_Random, 0, 4);
    Creature.RestMs = Between(m_Random, 0, 3000);
    if (Npc) {
      Creature.Lines = {"Hello.", "Fine weather."};
      Creature.TalkIntervalMs = 5000;
    }
    m_Setup.Creatures.push_back(std::move(Creature));
  }

  const TCatalogue& m_Catalogue;
  TRandom& m_Random;
  server::TWorldSetup m_Setup;
  std::set<TPosition> m_Taken;
  std::vector<TPosition> m_Ways;
};

// ---- The client's side

// The client's world modules, started as the program starts them, and the
// server's packets given to its receive buffer.
class TClientWorld {
 public:
  explicit TClientWorld(const std::filesystem::path& TypeFile) : m_Modules(TypeFile, m_Clock) {}

  // A new game: the per-game reset, then the server's login answer.
  void Enter() {
    PrepareWorldForGame();
    server::TMessageWriter Writer;
    const server::TSpeedFormula& Speed = server::SPEED_FORMULA;
    server::WriteLoginSuccess(Writer, {PLAYER_ID, Speed.Beat, Speed.A, Speed.B, Speed.C, false, false});
    Receive(Writer.Payload());
  }

  // One packet as the server frames it, enciphered with the session's key.
  void Receive(std::span<const std::uint8_t> Payload) {
    SetConnectionState(GAME_RUNNING);
    const std::vector<std::uint8_t> Packet = server::FramePacket(Payload, &m_Key, m_Padding);
    const std::span<std::uint8_t> Space = ReceiveSpace();
    ::Check(Packet.size() <= Space.size(), "the packet fits the receive space");
    std::memcpy(Space.data(), Packet.data(), Packet.size());
    ::Check(CommitReceived(static_cast<int>(Packet.size())), "the packet is complete");
    EventPacketReceived();
  }

  void Advance(std::int64_t Milliseconds) { m_Clock->AdvanceMilliseconds(Milliseconds); }

 private:
  std::shared_ptr<TManualClock> m_Clock = std::make_shared<TManualClock>();
  testing_world::TWorldModules m_Modules;
  const TXTEASymmetricKey m_Key;  // the client's session key before the login sets one
  server::TRandom m_Padding{1};
};

// ---- Comparison

using TBlock = std::array<const server::TPile*, MAPSIZE_X * MAPSIZE_Y * MAPSIZE_Z>;

int BlockIndex(int RX, int RY, int RZ) { return RX + MAPSIZE_X * (RY + MAPSIZE_Y * RZ); }

std::string FieldText(int RX, int RY, int RZ) {
  return "(" + std::to_string(RX) + "," + std::to_string(RY) + "," + std::to_string(RZ) + ")";
}

std::string PileText(const server::TPile& Items) {
  std::ostringstream Out;
  for (const server::TItem& Item : Items) Out << Item.Type << ':' << Item.Data << ' ';
  return Out.str();
}

// What the block holds for the server's map position: its piles where they
// lie in the block, and the creatures on them. On and above the surface the
// block holds floors 7 to 0 at rz 0 to 7; below it, two floors above and two
// below the player's at rz 4 down to 0. Each floor up is skewed one field to
// the north-west.
struct TExpected {
  TBlock Block{};
  std::vector<std::pair<std::uint32_t, TPosition>> Creatures;
};

bool FloorHeld(int Z, const TPosition& Map) {
  if (Map.Z <= SURFACE) return Z >= 0 && Z <= SURFACE;
  return Z >= Map.Z - 2 && Z <= std::min(Map.Z + 2, LOWEST_FLOOR);
}

TExpected Expected(const server::TGameWorld& World, const TPosition& Map) {
  const int PlayerFloor = Map.Z <= SURFACE ? SURFACE - Map.Z : 2;
  TExpected Held;
  for (const auto& [Where, Items] : World.Map().Fields()) {
    const int Up = Map.Z - Where.Z;
    const int RX = Where.X + PLAYER_RX - Map.X - Up, RY = Where.Y + PLAYER_RY - Map.Y - Up;
    if (Items.empty() || !FloorHeld(Where.Z, Map) || RX < 0 || RX >= MAPSIZE_X || RY < 0 || RY >= MAPSIZE_Y)
      continue;
    Held.Block[static_cast<std::size_t>(BlockIndex(RX, RY, PlayerFloor + Up))] = &Items;
    for (const server::TItem& Item : Items)
      if (Item.IsCreature()) Held.Creatures.emplace_back(Item.Data, Where);
  }
  return Held;
}

std::string ClientPileText(int RX, int RY, int RZ) {
  server::TPile Items;
  for (int P = 0; P < GetObjectCount(RX, RY, RZ); ++P) {
    const TObject Object = GetObject(RX, RY, RZ, P);
    Items.push_back({Object.Type, Object.Data});
  }
  return PileText(Items);
}

bool SamePile(int RX, int RY, int RZ, const server::TPile* Expected) {
  const int Count = GetObjectCount(RX, RY, RZ);
  if (Count != (Expected == nullptr ? 0 : static_cast<int>(Expected->size()))) return false;
  for (int P = 0; P < Count; ++P) {
    const TObject Object = GetObject(RX, RY, RZ, P);
    if (Object.Type != (*Expected)[static_cast<std::size_t>(P)].Type ||
        Object.Data != (*Expected)[static_cast<std::size_t>(P)].Data)
      return false;
  }
  return true;
}

// The first difference between the client's block and the server's view, or
// an empty text.
std::string Disagreement(const TPosition& Map, const TExpected& Held) {
  int X = 0, Y = 0, Z = 0;
  GetMapPosition(X, Y, Z);
  if (TPosition{X, Y, Z} != Map) return "map position " + Text({X, Y, Z}) + ", server's view " + Text(Map);
  for (int RZ = 0; RZ < MAPSIZE_Z; ++RZ)
    for (int RX = 0; RX < MAPSIZE_X; ++RX)
      for (int RY = 0; RY < MAPSIZE_Y; ++RY) {
        const server::TPile* Pile = Held.Block[static_cast<std::size_t>(BlockIndex(RX, RY, RZ))];
        if (!SamePile(RX, RY, RZ, Pile))
          return "field " + FieldText(RX, RY, RZ) + ": client [" + ClientPileText(RX, RY, RZ) + "], server [" +
                 (Pile == nullptr ? "" : PileText(*Pile)) + "]";
      }
  return {};
}

// Every creature in the server's view is known to the client, on its map, at
// the server's place.
std::string CreatureDisagreement(const TExpected& Held) {
  for (const auto& [Id, Where] : Held.Creatures) {
    const TCreature* Client = FindCreature(Id);
    if (Client == nullptr) return "creature " + std::to_string(Id) + " unknown to the client";
    const TPosition Seen{Client->X, Client->Y, Client->Z};
    if (Seen != Where || !Client->OnMap)
      return "creature " + std::to_string(Id) + " at " + Text(Seen) + (Client->OnMap ? "" : " off the map") +
             ", server " + Text(Where);
  }
  return {};
}

// ---- The walk

struct TCoverage {
  std::set<int> Floors;
  int Up = 0, Down = 0;
  int UpFromUnderground = 0, DownFromSurface = 0;  // across 8 -> 7 and 7 -> 8
  int Refused = 0;
  int Crowded = 0;  // steps after which more than the own move came
  int Moved = 0;    // things moved by the player
};

// Heads for a hole or stairs on its floor by free fields, now and
// then strays, and now and then tries a field that the server has to refuse.
class TWalker {
 public:
  TWalker(const std::vector<TPosition>& Ways, TRandom& Random)
      : m_Ways(Ways.begin(), Ways.end()), m_Random(Random) {}

  server::TStep Next(const server::TGameWorld& World, const TPosition& From) {
    if (Chance(m_Random, 0.08)) return *server::StepOfCode(Between(m_Random, 1, 8));
    if (m_Path.empty() || m_Path.front() != From) m_Path = PathToAWay(World, From);
    if (m_Path.size() >= 2 && Chance(m_Random, 0.9)) {
      m_Path.pop_front();
      return {m_Path.front().X - From.X, m_Path.front().Y - From.Y};
    }
    m_Path.clear();
    std::vector<server::TStep> Free;
    for (const TPosition& Field : Neighbours(From))
      if (World.Map().IsWalkable(Field)) Free.push_back({Field.X - From.X, Field.Y - From.Y});
    return Free.empty() ? *server::StepOfCode(Between(m_Random, 1, 8)) : AnyOf(m_Random, Free);
  }

 private:
  static std::vector<TPosition> Neighbours(const TPosition& Field) {
    std::vector<TPosition> Fields;
    for (int Code = 1; Code <= 8; ++Code) {
      const server::TStep Step = *server::StepOfCode(Code);
      Fields.push_back({Field.X + Step.DX, Field.Y + Step.DY, Field.Z});
    }
    return Fields;
  }

  // The fields from here to a way that can be reached over free fields, any
  // of them; empty if there is none.
  std::deque<TPosition> PathToAWay(const server::TGameWorld& World, const TPosition& From) {
    std::map<TPosition, TPosition> CameFrom{{From, From}};
    std::deque<TPosition> Open{From};
    std::vector<TPosition> Reached;
    while (!Open.empty()) {
      const TPosition Field = Open.front();
      Open.pop_front();
      if (Field != From && m_Ways.contains(Field)) {
        Reached.push_back(Field);
        continue;  // it leads away
      }
      for (const TPosition& Next : Neighbours(Field))
        if (!CameFrom.contains(Next) && World.Map().IsWalkable(Next)) {
          CameFrom.emplace(Next, Field);
          Open.push_back(Next);
        }
    }
    if (Reached.empty()) return {};
    std::deque<TPosition> Path{AnyOf(m_Random, Reached)};
    while (Path.front() != From) Path.push_front(CameFrom.at(Path.front()));
    return Path;
  }

  std::set<TPosition> m_Ways;
  TRandom& m_Random;
  std::deque<TPosition> m_Path;  // from the field the player stands on
};

// Between steps the player now and then turns, or moves a thing lying next
// to it onto a field in its reach, as the client's mouse would pick it: no
// ground and no creature. The server tells these as changes on fields. True
// if something was moved.
bool Act(server::TGameWorld& World, TRandom& Random) {
  const TPosition At = World.Find(PLAYER_ID)->Position;
  if (Chance(Random, 0.1)) World.Turn(PLAYER_ID, Between(Random, 0, 3));
  if (!Chance(Random, 0.25)) return false;
  const TPosition From{At.X + Between(Random, -1, 1), At.Y + Between(Random, -1, 1), At.Z};
  const server::TPile& Pile = World.Map().Pile(From);
  std::vector<int> Movable;
  for (int Stack = 0; Stack < static_cast<int>(Pile.size()); ++Stack)
    if (const server::TItem& Item = Pile[static_cast<std::size_t>(Stack)];
        !Item.IsCreature() && !World.Map().ItemHas(Item, BANK))
      Movable.push_back(Stack);
  if (Movable.empty()) return false;
  const int Stack = AnyOf(Random, Movable);
  const server::TItem Item = Pile[static_cast<std::size_t>(Stack)];
  const TPosition To{At.X + Between(Random, -7, 7), At.Y + Between(Random, -7, 7), At.Z};
  return World.MoveObject(PLAYER_ID, From, Item.Type, Stack, To, Between(Random, 0, static_cast<int>(Item.Data)));
}

class WorldAgreementTest : public testing::Test {
 protected:
  WorldAgreementTest() : m_Client(testing_server::BuildDemoObjectFile(m_Directory)) {}

  std::string m_When;  // what the world is doing, for the report of a failure

  // Runs one world; an empty text if the client and the server agreed all along.
  std::string RunWorld(const TCatalogue& Catalogue, std::uint32_t WorldSeed, TCoverage& Coverage) {
    TRandom Random(WorldSeed);
    TWorldBuilder Builder(Catalogue, Random);
    server::TGameWorld World(Builder.Build(), WorldSeed, [](const server::TStepRecord&) {});
    m_When = "entering";
    m_Client.Enter();
    std::vector<std::vector<std::uint8_t>> Outbox;
    server::TWorldClient Player(World, PLAYER_ID, "Ayla", [&](const server::TMessageWriter& Writer) {
      Outbox.emplace_back(Writer.Payload().begin(), Writer.Payload().end());
    });
    server::TMessageWriter Map;
    Player.WriteMap(Map);
    m_When = "the full map";
    m_Client.Receive(Map.Payload());
    if (std::string Found = Compare(World, Player.View(), m_When); !Found.empty()) return Found;

    TWalker Walker(Builder.Ways(), Random);
    std::int64_t Now = 0;
    for (int Step = 1; Step <= STEPS; ++Step) {
      const TPosition From = World.Find(PLAYER_ID)->Position;
      m_When = "step " + std::to_string(Step) + " from " + Text(From);
      Coverage.Moved += Act(World, Random) ? 1 : 0;
      World.Walk(PLAYER_ID, {Walker.Next(World, From)});
      Now += STEP_INTERVAL_MS;
      m_Client.Advance(STEP_INTERVAL_MS);
      World.Tick(Now);
      for (const std::vector<std::uint8_t>& Payload : Outbox) m_Client.Receive(Payload);
      const std::size_t Sent = Outbox.size();
      Outbox.clear();
      Note(Coverage, From, World.Find(PLAYER_ID)->Position, Sent);
      if (std::string Found = Compare(World, Player.View(), m_When); !Found.empty()) return Found;
    }
    return {};
  }

 private:
  static std::string Compare(const server::TGameWorld& World, const server::TClientView& View,
                           const std::string& When) {
    const TPosition& Player = World.Find(PLAYER_ID)->Position;
    if (View.MapPosition != Player)
      return "after " + When + ": the server's view is at " + Text(View.MapPosition) + ", the player at " +
             Text(Player);
    const TExpected Held = Expected(World, View.MapPosition);
    std::string Found = Disagreement(View.MapPosition, Held);
    if (Found.empty()) Found = CreatureDisagreement(Held);
    return Found.empty() ? Found : "after " + When + ": " + Found;
  }

  static void Note(TCoverage& Coverage, const TPosition& From, const TPosition& To, std::size_t Sent) {
    Coverage.Floors.insert(To.Z);
    if (To == From) ++Coverage.Refused;
    if (To.Z < From.Z) ++Coverage.Up;
    if (To.Z > From.Z) ++Coverage.Down;
    if (From.Z == SURFACE + 1 && To.Z == SURFACE) ++Coverage.UpFromUnderground;
    if (From.Z == SURFACE && To.Z == SURFACE + 1) ++Coverage.DownFromSurface;
    if (Sent > 1) ++Coverage.Crowded;
  }

  testing_server::TTemporaryDirectory m_Directory;
  TClientWorld m_Client;
};

TEST_F(WorldAgreementTest, ClientBlockFollowsTheServersViewThroughRandomWalks) {
  const TCatalogue Catalogue = MakeCatalogue();
  ASSERT_FALSE(Catalogue.WaysDown.empty());
  ASSERT_FALSE(Catalogue.WaysUp.empty());
  ASSERT_FALSE(Catalogue.Outfits.empty());
  TRandom Seeds(SEED);
  TCoverage Coverage;
  for (int Index = 0; Index < WORLDS; ++Index) {
    const std::uint32_t WorldSeed = Seeds();
    std::string Found;
    try {
      Found = RunWorld(Catalogue, WorldSeed, Coverage);
    } catch (const TMyException& Failure) {
      Found = "failure during " + m_When + ": " + Failure.what();
    }
    ASSERT_TRUE(Found.empty()) << "seed " << SEED << ", world " << Index << " (world seed " << WorldSeed
                               << "): " << Found;
  }
  // The walks went where they were meant to go.
  for (int Z = 0; Z <= LOWEST_FLOOR; ++Z) EXPECT_TRUE(Coverage.Floors.contains(Z)) << "never on floor " << Z;
  EXPECT_GT(Coverage.Up, 50);
  EXPECT_GT(Coverage.Down, 50);
  EXPECT_GT(Coverage.UpFromUnderground, 0);
  EXPECT_GT(Coverage.DownFromSurface, 0);
  EXPECT_GT(Coverage.Refused, 50);
  EXPECT_GT(Coverage.Crowded, 50);
  EXPECT_GT(Coverage.Moved, 50);
}

}  // namespace
