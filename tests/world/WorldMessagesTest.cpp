// The world's commands as hand-written byte streams, fed through the real
// receive buffer and dispatch, checked against the map store and the
// creature table. Each stream ends in a command whose effect shows that the
// one before it consumed exactly its own bytes.
#include "world/WorldMessages.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "core/MessageQueue.h"
#include "core/Preferences.h"
#include "net/Commands.h"
#include "net/Communication.h"
#include "net/Connection.h"
#include "net/Login.h"
#include "net/Network.h"
#include "net/Xtea.h"
#include "tests/net/ServerPacket.h"
#include "tests/world/DatBytes.h"
#include "tests/world/WorldModules.h"
#include "tests/world/WorldTest.h"
#include "world/Creatures.h"
#include "world/Objects.h"
#include "world/PlayerMessages.h"

namespace {

using testing_world::FailureReport;
using testing_world::TDatBytes;

constexpr int GROUND = 100;  // BANK, 100 waypoints
constexpr int STONE = 101;
constexpr int COIN = 102;   // CUMULATIVE
constexpr int FLASK = 103;  // LIQUIDCONTAINER
constexpr int TORCH = 104;  // two phases
constexpr int WALKER = 1;   // an outfit with four directions
constexpr int BLOB = 2;     // an outfit with one

constexpr std::uint32_t PLAYER = 0x10000005;
constexpr std::uint32_t WOLF = 0x40000020;

TDatBytes TypeFile() {
  TDatBytes B;
  B.Header(0x574F524C, TORCH, BLOB, 1, 1);
  B.U8(BANK).U16(100).Plain(1);
  B.Plain(2);
  B.U8(CUMULATIVE).Plain(3);
  B.U8(LIQUIDCONTAINER).Plain(4);
  B.U8(255).U8(1).U8(1).U8(1).U8(1).U8(1).U8(1).U8(2);
  B.U8(ANIMATION_ASYNCHRON).U32(0).U8(0).U32(300).U32(300).U32(300).U32(300).U32(5).U32(6);
  B.U8(255).U8(1).U8(1).U8(1).U8(4).U8(1).U8(1).U8(1).U32(7).U32(8).U32(9).U32(10);
  B.Plain(11);
  B.Plain(12);
  B.Plain(13);
  return B;
}

// A payload written field by field.
class TStream {
 public:
  TStream& U8(int V) {
    m_Bytes.push_back(static_cast<std::uint8_t>(V));
    return *this;
  }
  TStream& U16(int V) { return U8(V & 0xFF).U8(V >> 8 & 0xFF); }
  TStream& U32(std::uint32_t V) { return U16(static_cast<int>(V & 0xFFFF)).U16(static_cast<int>(V >> 16)); }
  TStream& Text(const std::string& V) {
    U16(static_cast<int>(V.size()));
    for (char C : V) U8(static_cast<unsigned char>(C));
    return *this;
  }
  TStream& Position(int x, int y, int z) { return U16(x).U16(y).U8(z); }
  // A plain object: type and "no mark".
  TStream& Plain(int Type) { return U16(Type).U8(255); }
  // The full creature form, outfit WALKER.
  TStream& NewCreature(std::uint32_t OldId, std::uint32_t Id, const std::string& Name) {
    U16(UNKNOWNCREATURE).U32(OldId).U32(Id).U8(0).Text(Name);
    U8(80).U8(2);                                        // health, direction south
    U16(WALKER).U8(1).U8(2).U8(3).U8(4).U8(3).U16(0);    // outfit, addons, no mount
    U8(5).U8(215).U16(220);                              // light, speed
    U8(1).U8(2).U8(3).U8(4).U8(5);                       // skull, party, guild, kind, speech
    return U8(255).U16(7).U8(1);                         // no square, PvP helpers, unpassable
  }
  // A trapper list of one, so that a test can see that the stream was read
  // up to here.
  TStream& EndMarker(int Marker) { return U8(STRAPPERS).U8(1).U32(static_cast<std::uint32_t>(Marker)); }
  const std::vector<std::uint8_t>& Bytes() const { return m_Bytes; }

 private:
  std::vector<std::uint8_t> m_Bytes;
};

// Marks: the head of an empty field that also skips Count following fields,
// and the end of a field's items with the same meaning.
constexpr int Skip(int Count) { return 0xFF00 + Count; }

class WorldMessagesTest : public testing_world::TFileTest {
 protected:
  void SetUp() override {
    TFileTest::SetUp();
    TypeFile().Write(File("Kelmo.dat"));
    m_Modules = std::make_unique<testing_world::TWorldModules>(File("Kelmo.dat"), m_Clock);
    SetTalkHandler([this](const TTalkRecord& Talk) { m_Talk.push_back(Talk); });
    LogIn();
  }
  void TearDown() override {
    SetTalkHandler({});
    m_Modules.reset();
    TFileTest::TearDown();
  }

  // SLOGINSUCCESS: the player's id, a beat of 50 ms and the speed formula
  // 1 x ln(speed + 0) + 0, so that a speed of e^k walks at k + 0.5 rounded.
  void LogIn() {
    TStream S;
    S.U8(SLOGINSUCCESS).U32(PLAYER).U16(50);
    for (int Value : {1, 0, 0}) S.U8(0).U32(static_cast<std::uint32_t>(Value) + 0x7FFFFFFFu);
    S.U8(0).U8(0);
    Receive(S);
  }

  static void Receive(const TStream& Stream) { testing_world::ReceiveGamePacket(Stream.Bytes()); }
  std::string ReceiveFailure(const TStream& Stream) {
    return FailureReport([&] { Receive(Stream); });
  }

  static std::vector<int> Pile(int rx, int ry, int rz) {
    std::vector<int> Types;
    for (int p = 0; p < GetObjectCount(rx, ry, rz); ++p) Types.push_back(GetObject(rx, ry, rz, p).Type);
    return Types;
  }
  static int FilledFields() {
    int Filled = 0;
    for (int rz = 0; rz < MAPSIZE_Z; ++rz)
      for (int ry = 0; ry < MAPSIZE_Y; ++ry)
        for (int rx = 0; rx < MAPSIZE_X; ++rx) Filled += GetObjectCount(rx, ry, rz) > 0;
    return Filled;
  }
  // A full map that leaves every field empty: Fields empty fields in marks.
  static TStream EmptyFullMap(int x, int y, int z, int Fields) {
    TStream S;
    S.U8(SFULLMAP).Position(x, y, z);
    for (; Fields > 256; Fields -= 256) S.U16(Skip(255));
    return S.U16(Skip(Fields - 1));
  }

  void Advance(int Milliseconds) { m_Clock->AdvanceMilliseconds(Milliseconds); }
  // After a failure the rest of its packet is still in the receive buffer.
  static void RestartNetwork() {
    ExitNetwork();
    InitNetwork();
  }

  std::vector<TTalkRecord> m_Talk;

 private:
  std::shared_ptr<TManualClock> m_Clock = std::make_shared<TManualClock>();
  std::unique_ptr<testing_world::TWorldModules> m_Modules;
};

// ---- The table

TEST_F(WorldMessagesTest, WithBothReaderSetsEveryNamedCommandHasAReaderAndNoOtherDoes) {
  InstallPlayerMessageReaders();
  const std::vector<int> Named = GetGameCommandTypes();
  for (int Type = 0; Type <= 255; ++Type) {
    const bool IsNamed = std::find(Named.begin(), Named.end(), Type) != Named.end();
    EXPECT_EQ(HasCommandReader(Type), IsNamed) << Type << " " << GetCommandName(Type);
  }
  TStream S;
  S.U8(12);
  EXPECT_NE(ReceiveFailure(S).find("unknown packet type during game (Type: 12)"), std::string::npos);
}

// ---- Full map descriptions

// Three fields on the surface, in reading order (floor, then x, then y):
// (0, 0) and (8, 6) on rz 0, (3, 4) on rz 1; 2016 fields in all.
TStream SurfaceMap() {
  TStream S;
  S.U8(SFULLMAP).Position(32000, 32100, 7);
  S.U16(0).Plain(GROUND).Plain(STONE).U16(Skip(117));           // field 0, then 1..117
  S.U16(0).Plain(GROUND).NewCreature(0, PLAYER, "hero");        // field 118
  S.U16(Skip(179));                                             // 119..297: into floor 1
  S.U16(0).Plain(GROUND).U16(Skip(255));                        // 298, then 299..553
  for (int I = 0; I < 5; ++I) S.U16(Skip(255));                 // 554..1833
  return S.U16(Skip(181));                                      // 1834..2015
}

TEST_F(WorldMessagesTest, FullMapOnTheSurfaceFillsEveryFloorWithSkipsAcrossFloors) {
  Receive(SurfaceMap().EndMarker(77));
  EXPECT_TRUE(IsTrapper(77)) << "the map was read to its last byte";
  int x = 0, y = 0, z = 0;
  GetMapPosition(x, y, z);
  EXPECT_EQ((std::vector<int>{x, y, z}), (std::vector<int>{32000, 32100, 7}));
  EXPECT_EQ(Pile(0, 0, 0), (std::vector<int>{GROUND, STONE}));
  EXPECT_EQ(Pile(8, 6, 0), (std::vector<int>{GROUND, CREATURE}));
  EXPECT_EQ(Pile(3, 4, 1), (std::vector<int>{GROUND}));
  EXPECT_EQ(FilledFields(), 3);
  EXPECT_TRUE(TakeMapChanged());

  const TCreature* Hero = FindCreature(PLAYER);
  ASSERT_NE(Hero, nullptr);
  EXPECT_EQ(GetObject(8, 6, 0, 1).Data, PLAYER);
  EXPECT_EQ(Hero->Name, "hero") << "a player's name is left as it is";
  EXPECT_EQ((std::vector<int>{Hero->X, Hero->Y, Hero->Z}), (std::vector<int>{32000, 32100, 7}));
  EXPECT_TRUE(Hero->OnMap);
  EXPECT_EQ(Hero->Health, 80);
  EXPECT_EQ(Hero->Direction, 2);
  EXPECT_EQ(Hero->OutfitType, WALKER);
  EXPECT_EQ(Hero->OutfitData, (std::array<int, 5>{1, 2, 3, 4, 3}));
  EXPECT_EQ(Hero->LightColor, 215);
  EXPECT_EQ(Hero->Speed, 220);
  EXPECT_EQ((std::vector<int>{Hero->PKFlag, Hero->PARTYFlag, Hero->GUILDFlag, Hero->CreatureKind,
                              Hero->SpeechFlag}),
            (std::vector<int>{1, 2, 3, 4, 5}));
  EXPECT_FALSE(Hero->Squared);
  EXPECT_EQ(Hero->PvPHelpers, 7);
  EXPECT_TRUE(Hero->Unpassable);
}

TEST_F(WorldMessagesTest, UndergroundMapsReadTheFloorsRoundThePlayer) {
  // z 8: rz 4 down to 0; z 14: 4 to 1; z 15: 4 to 2. A wrong count of
  // floors would read the end marker as fields, or fields as a command.
  const std::pair<int, int> Cases[] = {{7, 2016}, {8, 1260}, {14, 1008}, {15, 756}};
  for (const auto& [z, Fields] : Cases) {
    Receive(EmptyFullMap(100, 100, z, Fields).EndMarker(z));
    EXPECT_TRUE(IsTrapper(z)) << "z " << z;
    EXPECT_EQ(FilledFields(), 0);
  }
}

TEST_F(WorldMessagesTest, UndergroundMapPutsTheFirstFloorReadAtRz4) {
  // z 8, player floor 2: rz 4 (z 6) first; the player's field on rz 2 is
  // field 2 x 252 + 8 x 14 + 6 = 622 of the stream.
  TStream S;
  S.U8(SFULLMAP).Position(500, 600, 8);
  S.U16(0).Plain(STONE).U16(Skip(255));  // rz 4 (0, 0); then 1..255
  S.U16(Skip(255));                      // 256..511
  S.U16(Skip(109));                      // 512..621
  S.U16(0).Plain(GROUND).NewCreature(0, PLAYER, "hero").U16(Skip(255));  // 622; 623..877
  S.U16(Skip(255));                      // 878..1133
  S.U16(Skip(125));                      // 1134..1259
  Receive(S.EndMarker(9));
  EXPECT_TRUE(IsTrapper(9));
  EXPECT_EQ(Pile(0, 0, 4), (std::vector<int>{STONE}));
  EXPECT_EQ(Pile(8, 6, 2), (std::vector<int>{GROUND, CREATURE}));
  int x = 0, y = 0, z = 4;
  MapToWorld(x, y, z);
  EXPECT_EQ((std::vector<int>{x, y, z}), (std::vector<int>{494, 596, 6}));
}

TEST_F(WorldMessagesTest, EleventhCreatureIsReadButNotPlacedAndEleventhObjectFails) {
  Receive(SurfaceMap());
  TStream S;
  S.U8(SFIELDDATA).Position(32000, 32100, 7).U16(0);
  for (int I = 0; I < 10; ++I) S.Plain(STONE);
  S.U16(CREATURE).U32(PLAYER).U8(3).U8(0);  // known: direction west, passable
  S.U16(Skip(0)).EndMarker(11);
  Receive(S);
  EXPECT_TRUE(IsTrapper(11));
  EXPECT_EQ(Pile(8, 6, 0), std::vector<int>(10, STONE));
  EXPECT_EQ(FindCreature(PLAYER)->Direction, 3) << "the record was read all the same";
  EXPECT_FALSE(FindCreature(PLAYER)->Unpassable);

  TStream T;
  T.U8(SFIELDDATA).Position(32000, 32100, 7).U16(0);
  for (int I = 0; I < 11; ++I) T.Plain(STONE);
  const std::string Report = ReceiveFailure(T.U16(Skip(0)));
  EXPECT_NE(Report.find("too many objects on map point"), std::string::npos) << Report;
  EXPECT_NE(Report.find("rx: 8, ry: 6, rz: 0, Type: 101, OldType: 101"), std::string::npos) << Report;
}

TEST_F(WorldMessagesTest, ObjectRecordsReadDataAndPhaseByTheTypesFlags) {
  Receive(SurfaceMap());
  TStream S;
  S.U8(SFIELDDATA).Position(32001, 32100, 7).U16(0);
  S.Plain(GROUND);
  S.U16(COIN).U8(255).U8(37);   // count
  S.U16(FLASK).U8(0).U8(5);     // a black mark, liquid 5
  S.U16(TORCH).U8(255).U8(2);   // phase 2
  Receive(S.U16(Skip(0)).EndMarker(12));
  EXPECT_TRUE(IsTrapper(12));
  ASSERT_EQ(Pile(9, 6, 0), (std::vector<int>{GROUND, COIN, FLASK, TORCH}));
  EXPECT_EQ(GetObject(9, 6, 0, 1).Data, 37u);
  EXPECT_TRUE(GetObject(9, 6, 0, 2).Marked);
  EXPECT_EQ(GetObject(9, 6, 0, 2).Data, 5u);
  ASSERT_NE(GetObject(9, 6, 0, 3).Animation, nullptr);
  EXPECT_EQ(GetObject(9, 6, 0, 3).Animation->GetCurrentPhase(), 2u);
}

TEST_F(WorldMessagesTest, TypeZeroAndUnknownTypesFail) {
  Receive(SurfaceMap());
  TStream S;
  S.U8(SFIELDDATA).Position(32000, 32100, 7).U16(0).U16(0);
  EXPECT_NE(ReceiveFailure(S).find("creature expected but got"), std::string::npos);
  TStream T;
  T.U8(SFIELDDATA).Position(32000, 32100, 7).U16(0).Plain(999).U16(Skip(0));
  EXPECT_NE(ReceiveFailure(T).find("In(Type,ObjectProperties->low(),ObjectProperties->high())"),
            std::string::npos);
}

// ---- Creature records

TEST_F(WorldMessagesTest, ThreeCreatureFormsAndUnknownIdsStayInStep) {
  Receive(SurfaceMap());
  TStream S;
  // A monster's name gets a capital; the record replaces nothing.
  S.U8(SCREATEONMAP).Position(32001, 32101, 7).U8(255).NewCreature(0, WOLF, "grey wolf");
  // The short form, known and unknown.
  S.U8(SCHANGEONMAP).U16(0xFFFF).U32(WOLF).U16(CREATURE).U32(WOLF).U8(1).U8(0);
  S.U8(SCHANGEONMAP).U16(0xFFFF).U32(77).U16(CREATURE).U32(77).U8(1).U8(0);
  // The outdated form for an unknown id: read and dropped.
  S.U8(SCHANGEONMAP).U16(0xFFFF).U32(78).U16(OUTDATEDCREATURE).U32(78);
  S.U8(10).U8(1).U16(0).U16(STONE).U16(0).U8(0).U8(0).U16(300).U8(0).U8(0).U8(0).U8(0).U8(36).U16(0).U8(1);
  // The outdated form for the wolf, with an object outfit.
  S.U8(SCHANGEONMAP).U16(0xFFFF).U32(WOLF).U16(OUTDATEDCREATURE).U32(WOLF);
  S.U8(40).U8(3).U16(0).U16(STONE).U16(0).U8(1).U8(2).U16(100).U8(3).U8(4).U8(6).U8(0).U8(36).U16(9).U8(0);
  Receive(S.EndMarker(13));
  EXPECT_TRUE(IsTrapper(13));
  const TCreature* Wolf = FindCreature(WOLF);
  ASSERT_NE(Wolf, nullptr);
  EXPECT_EQ(Wolf->Name, "Grey wolf");
  EXPECT_EQ(Pile(9, 7, 0), (std::vector<int>{CREATURE}));
  EXPECT_EQ(Wolf->Health, 40);
  EXPECT_EQ(Wolf->Direction, 3);
  EXPECT_EQ(Wolf->OutfitType, 0);
  EXPECT_EQ(Wolf->OutfitData[0], STONE);
  EXPECT_EQ(Wolf->Speed, 100);
  EXPECT_EQ(Wolf->GUILDFlag, 3) << "the outdated form has no guild field";
  EXPECT_EQ(Wolf->CreatureKind, 6);
  EXPECT_TRUE(Wolf->Squared);
  EXPECT_EQ((std::vector<int>{Wolf->SquareRed, Wolf->SquareGreen, Wolf->SquareBlue}),
            (std::vector<int>{51, 0, 0}));
  EXPECT_FALSE(Wolf->OnMap) << "a change of a creature not on a field takes it off the map";
  EXPECT_EQ(FindCreature(77), nullptr);
  EXPECT_EQ(FindCreature(78), nullptr);
}

TEST_F(WorldMessagesTest, OutfitWithoutFourDirectionsAndSpeechFlagsFail) {
  Receive(SurfaceMap());
  TStream S;
  S.U8(SCREATUREOUTFIT).U32(PLAYER).U16(BLOB).U8(0).U8(0).U8(0).U8(0).U8(0).U16(0);
  EXPECT_NE(ReceiveFailure(S).find("outfit has not all four directions"), std::string::npos);
}

TEST_F(WorldMessagesTest, ChangeOnMapWithAnObjectWhereACreatureBelongsFails) {
  Receive(SurfaceMap());
  TStream S;
  S.U8(SCHANGEONMAP).U16(0xFFFF).U32(PLAYER).Plain(STONE);
  EXPECT_NE(ReceiveFailure(S).find("Received an object when a creature was expected."), std::string::npos);
}

// ---- Objects on fields

TEST_F(WorldMessagesTest, CreateChangeAndDeleteOnMap) {
  Receive(SurfaceMap());
  TStream S;
  S.U8(SCREATEONMAP).Position(32000, 32100, 7).U8(255).Plain(STONE);
  S.U8(SCREATEONMAP).Position(32000, 32100, 7).U8(1).U16(COIN).U8(255).U8(3);
  S.U8(SCHANGEONMAP).Position(32000, 32100, 7).U8(3).U16(COIN).U8(255).U8(9);
  S.U8(SDELETEONMAP).Position(32000, 32100, 7).U8(0);
  Receive(S.EndMarker(14));
  EXPECT_TRUE(IsTrapper(14));
  EXPECT_EQ(Pile(8, 6, 0), (std::vector<int>{COIN, CREATURE, COIN}));
  EXPECT_EQ(GetObject(8, 6, 0, 2).Data, 9u);

  TStream T;
  T.U8(SDELETEONMAP).Position(32000, 32100, 7).U8(5);
  const std::string Report = ReceiveFailure(T);
  EXPECT_NE(Report.find("Object is not where it should be"), std::string::npos);
  EXPECT_NE(Report.find("Cylinder (2)"), std::string::npos);

  TStream U;
  U.U8(SDELETEONMAP).Position(32000, 32100, 7).U8(1);
  Receive(U);
  EXPECT_FALSE(FindCreature(PLAYER)->OnMap);
}

TEST_F(WorldMessagesTest, FieldDataKeepsTheFieldsEffects) {
  Receive(SurfaceMap());
  AddTextualEffect(8, 6, 0, 5, "hit");
  TStream S;
  S.U8(SFIELDDATA).Position(32000, 32100, 7).U16(0).Plain(STONE).U16(Skip(0));
  Receive(S);
  EXPECT_EQ(Pile(8, 6, 0), (std::vector<int>{STONE}));
  EXPECT_NE(GetFirstEffect(8, 6, 0), -1);
}

// ---- Rows and floors

TEST_F(WorldMessagesTest, RowsShiftTheBlockAndReadTheNewEdge) {
  Receive(SurfaceMap());
  TStream S;
  // North: 18 fields per floor x 8 floors = 144; the first holds a stone.
  S.U8(STOPROW).U16(0).Plain(STONE).U16(Skip(143));
  Receive(S.EndMarker(15));
  EXPECT_TRUE(IsTrapper(15));
  int x = 0, y = 0, z = 0;
  GetMapPosition(x, y, z);
  EXPECT_EQ(y, 32099);
  EXPECT_EQ(Pile(0, 0, 0), (std::vector<int>{STONE}));
  EXPECT_EQ(Pile(8, 7, 0), (std::vector<int>{GROUND, CREATURE})) << "the player's field moved south";

  TStream T;  // west and east: 14 fields x 8 floors
  T.U8(SLEFTROW).U16(Skip(111));
  T.U8(SRIGHTROW).U16(0).Plain(COIN).U8(1).U16(Skip(111));
  Receive(T.EndMarker(16));
  EXPECT_TRUE(IsTrapper(16));
  EXPECT_EQ(Pile(17, 0, 0), (std::vector<int>{COIN})) << "read on the east edge";

  TStream U;  // south: the northern row, with the coin, is dropped
  U.U8(SBOTTOMROW).U16(Skip(143));
  Receive(U.EndMarker(17));
  EXPECT_TRUE(IsTrapper(17));
  GetMapPosition(x, y, z);
  EXPECT_EQ((std::vector<int>{x, y}), (std::vector<int>{32000, 32100}));
  EXPECT_TRUE(Pile(17, 13, 0).empty());
  EXPECT_EQ(Pile(8, 6, 0), (std::vector<int>{GROUND, CREATURE}));
}

TEST_F(WorldMessagesTest, FloorChanges) {
  Receive(SurfaceMap());
  TStream Up;
  Up.U8(STOPFLOOR);
  Receive(Up.EndMarker(17));
  EXPECT_TRUE(IsTrapper(17)) << "up to z 6 reads nothing";
  int x = 0, y = 0, z = 0;
  GetMapPosition(x, y, z);
  EXPECT_EQ((std::vector<int>{x, y, z}), (std::vector<int>{32001, 32101, 6}));

  // Down to 7, then to 8: three new floors (rz 2, 1, 0) of 252 fields.
  TStream Down;
  Down.U8(SBOTTOMFLOOR).U8(SBOTTOMFLOOR).U16(0).Plain(STONE).U16(Skip(255));
  Down.U16(Skip(255)).U16(Skip(243));
  Receive(Down.EndMarker(18));
  EXPECT_TRUE(IsTrapper(18));
  GetMapPosition(x, y, z);
  EXPECT_EQ((std::vector<int>{x, y, z}), (std::vector<int>{31999, 32099, 8}));
  EXPECT_EQ(Pile(0, 0, 2), (std::vector<int>{STONE}));
  EXPECT_EQ(Pile(8, 6, 3), (std::vector<int>{GROUND, CREATURE}))
      << "the surface is now one floor above the player";

  // Down to 14 reads nothing new; down to 13 one floor.
  SetMapPosition(31999, 32099, 13);
  TStream Deep;
  Deep.U8(SBOTTOMFLOOR).U8(SBOTTOMFLOOR);
  Receive(Deep.EndMarker(19));
  EXPECT_TRUE(IsTrapper(19));
}

// ---- Moves

TEST_F(WorldMessagesTest, CreatureStepsAndJumps) {
  Receive(SurfaceMap());
  TStream S;
  S.U8(SCREATEONMAP).Position(32002, 32100, 7).U8(255).Plain(GROUND);
  S.U8(SCREATEONMAP).Position(32003, 32100, 7).U8(255).Plain(GROUND);
  S.U8(SCREATEONMAP).Position(32002, 32100, 7).U8(255).NewCreature(0, WOLF, "wolf");
  S.U8(SMOVECREATURE).Position(32002, 32100, 7).U8(1).Position(32003, 32100, 7);
  Receive(S);
  const TCreature* Wolf = FindCreature(WOLF);
  EXPECT_EQ(Pile(10, 6, 0), (std::vector<int>{GROUND}));
  EXPECT_EQ(Pile(11, 6, 0), (std::vector<int>{GROUND, CREATURE}));
  EXPECT_EQ(Wolf->X, 32003);
  EXPECT_TRUE(Wolf->Walking);
  EXPECT_EQ(Wolf->Direction, 1);
  EXPECT_EQ(Wolf->OffsetX, -32);
  // Speed 220 at 1 x ln(220) + 0.5 = 5 waypoints a second: 100 waypoints
  // take 20000 ms, a multiple of the beat.
  EXPECT_EQ(Wolf->WalkDuration, 20000);

  TStream Jump;  // with no place to name, three fields west
  Jump.U8(SMOVECREATURE).U16(0xFFFF).U32(WOLF).Position(32000, 32100, 7);
  Receive(Jump);
  EXPECT_EQ(Pile(8, 6, 0), (std::vector<int>{GROUND, CREATURE, CREATURE}));
  EXPECT_EQ(Wolf->Direction, 3);
  EXPECT_EQ(Wolf->OffsetX, 0) << "a jump shows no step";

  TStream Stone;
  Stone.U8(SMOVECREATURE).Position(32000, 32100, 7).U8(0).Position(32001, 32100, 7);
  const std::string Report = ReceiveFailure(Stone);
  EXPECT_NE(Report.find("no creature anymore [bug0000017]"), std::string::npos) << Report;
  EXPECT_NE(Report.find("Found: 100"), std::string::npos) << Report;
}

TEST_F(WorldMessagesTest, StepOntoAFieldWithoutGroundFails) {
  Receive(SurfaceMap());
  TStream S;
  S.U8(SMOVECREATURE).Position(32000, 32100, 7).U8(1).Position(32000, 32101, 7);
  EXPECT_NE(ReceiveFailure(S).find("no bank as first object [bug0000484]"), std::string::npos);
}

TEST_F(WorldMessagesTest, MoveWithoutThePlayerOnItsFieldFails) {
  Receive(EmptyFullMap(100, 100, 7, 2016));
  TStream S;
  S.U8(SMOVECREATURE).U16(0xFFFF).U32(WOLF).Position(100, 100, 7);
  EXPECT_NE(ReceiveFailure(S).find("Player object is not where it should be"), std::string::npos);
}

// ---- Effects, creature updates, own steps, speech

TEST_F(WorldMessagesTest, EffectsAndCreatureUpdates) {
  Receive(SurfaceMap());
  TStream S;
  S.U8(SGRAPHICALEFFECT).Position(32000, 32100, 7).U8(1);
  S.U8(SMISSILEEFFECT).Position(32000, 32100, 7).Position(32002, 32100, 7).U8(1);
  S.U8(SCREATUREHEALTH).U32(PLAYER).U8(33);
  S.U8(SCREATURELIGHT).U32(PLAYER).U8(6).U8(7);
  S.U8(SCREATURESPEED).U32(PLAYER).U16(400);
  S.U8(SCREATURESKULL).U32(PLAYER).U8(4);
  S.U8(SCREATUREPARTY).U32(PLAYER).U8(5);
  S.U8(SCREATUREUNPASS).U32(PLAYER).U8(0);
  S.U8(SCREATUREMARKS).U32(PLAYER).U8(0).U8(215);
  S.U8(SCREATUREMARKS).U32(PLAYER).U8(1).U8(180);
  S.U8(SCREATUREPVPHELPERS).U32(PLAYER).U16(513);
  S.U8(SCREATURETYPE).U32(PLAYER).U8(2);
  S.U8(SCREATUREOUTFIT).U32(PLAYER).U16(0).U16(STONE).U16(0);
  S.U8(SMARKCREATURE).U32(PLAYER).U8(100);
  // The same for a creature nobody knows: all read and dropped.
  S.U8(SCREATUREHEALTH).U32(9).U8(1).U8(SCREATURELIGHT).U32(9).U8(1).U8(1);
  S.U8(SCREATUREOUTFIT).U32(9).U16(WALKER).U8(1).U8(1).U8(1).U8(1).U8(0).U16(0);
  S.U8(SCREATUREMARKS).U32(9).U8(1).U8(1).U8(SMARKCREATURE).U32(9).U8(3);
  Receive(S.EndMarker(20));
  EXPECT_TRUE(IsTrapper(20));
  const TCreature* Hero = FindCreature(PLAYER);
  const int Missile = GetFirstEffect(8, 6, 0);
  const int Effect = GetNextEffect();
  EXPECT_EQ(GetEffectMissileType(Missile), 1) << "the newer effect heads the list";
  EXPECT_EQ(GetEffectType(Effect), 1);
  EXPECT_EQ(Hero->Health, 33);
  EXPECT_EQ((std::vector<int>{Hero->Brightness, Hero->LightColor}), (std::vector<int>{6, 7}));
  EXPECT_EQ(Hero->Speed, 400);
  EXPECT_EQ((std::vector<int>{Hero->PKFlag, Hero->PARTYFlag}), (std::vector<int>{4, 5}));
  EXPECT_FALSE(Hero->Unpassable);
  EXPECT_TRUE(Hero->Squared);
  EXPECT_EQ(Hero->SquareRed, 255);
  EXPECT_EQ(Hero->MarkColor, 100) << "the last of the two marks";
  EXPECT_EQ(Hero->PvPHelpers, 513);
  EXPECT_EQ(Hero->CreatureKind, 2);
  EXPECT_EQ(Hero->OutfitData[0], STONE);

  TStream Two;
  Two.U8(STRAPPERS).U8(2).U32(WOLF).U32(PLAYER);
  Receive(Two);
  EXPECT_TRUE(IsTrapper(WOLF));
  EXPECT_TRUE(IsTrapper(PLAYER));
  TStream Many;
  Many.U8(STRAPPERS).U8(9);
  for (int I = 0; I < 9; ++I) Many.U32(static_cast<std::uint32_t>(I + 1));
  EXPECT_NE(ReceiveFailure(Many).find("illegal number of trappers"), std::string::npos);
}

TEST_F(WorldMessagesTest, WaitDelaysTheNextOwnStep) {
  Receive(SurfaceMap());
  const int Before = FindCreature(PLAYER)->NextStepTime;
  TStream S;
  S.U8(SWAIT).U16(750);
  Receive(S);
  EXPECT_EQ(FindCreature(PLAYER)->NextStepTime, Before + 750);
}

TEST_F(WorldMessagesTest, SixteenthSnapbackAtOnePlaceCancelsTheAttack) {
  Receive(SurfaceMap());
  CombatTargets().AttackTarget = WOLF;
  TStream S;
  S.U8(SSNAPBACK).U8(1);
  // The first sets the place; the sixteenth repeat there gives up.
  for (int I = 0; I < 17; ++I) {
    EXPECT_EQ(CombatTargets().AttackTarget, WOLF) << "after " << I << " snapbacks";
    Receive(S);
  }
  EXPECT_EQ(CombatTargets().AttackTarget, 0u);
  EXPECT_EQ(FindCreature(PLAYER)->Direction, 1);
}

TEST_F(WorldMessagesTest, TalkIsReadWithPositionOrChannelByMode) {
  Receive(SurfaceMap());
  TStream S;
  S.U8(STALK).U32(11).Text("Trader Tom").U16(0).U8(1).Position(32001, 32100, 7).Text("Hello!");
  S.U8(STALK).U32(12).Text("hero").U16(8).U8(7).U16(4).Text("on a channel");
  S.U8(STALK).U32(13).Text("").U16(0).U8(20).Text("plain");
  Receive(S.EndMarker(21));
  EXPECT_TRUE(IsTrapper(21));
  ASSERT_EQ(m_Talk.size(), 3u);
  EXPECT_EQ(m_Talk[0].Speaker, "Trader Tom");
  EXPECT_EQ(m_Talk[0].Position, (TWirePosition{32001, 32100, 7}));
  EXPECT_EQ(m_Talk[0].Text, "Hello!");
  EXPECT_EQ(m_Talk[1].Channel, 4);
  EXPECT_EQ(m_Talk[1].SpeakerLevel, 8);
  EXPECT_EQ(m_Talk[2].Text, "plain");

  for (int Mode : {5, 12, 16, 39, 42}) {
    RestartNetwork();
    TStream Bad;
    Bad.U8(STALK).U32(1).Text("x").U16(0).U8(Mode).Text("y");
    const std::string Report = ReceiveFailure(Bad);
    EXPECT_NE(Report.find("(ChatMessageMode != CHATMESSAGE_NPC_TO)"), std::string::npos) << Report;
  }
}

}  // namespace
