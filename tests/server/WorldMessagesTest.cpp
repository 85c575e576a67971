// The world's messages, byte for byte, against layouts written out by hand:
// the field stream with its skip marks, the records of objects and
// creatures, the floors that a change of floor reads, and the small messages.
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "tools/server/WorldMessages.h"

namespace {

using namespace server;
using TBytes = std::vector<std::uint8_t>;

constexpr int GROUND = 100;
constexpr int COINS = 101;     // cumulative: a data byte
constexpr int TORCH = 102;     // three phases: a phase byte
constexpr int PUDDLE = 103;    // liquid pool with two phases: both
constexpr std::uint32_t RAT = 0x40000000;  // the world's first monster

std::shared_ptr<const TObjectTypes> Types() {
  auto Types = std::make_shared<TObjectTypes>();
  TObjectType Ground;
  Ground.Flags.set(BANK);
  Ground.Waypoints = 150;
  Types->AddObject(Ground);
  TObjectType Coins;
  Coins.Flags.set(CUMULATIVE);
  Types->AddObject(Coins);
  TObjectType Torch;
  Torch.Phases = 3;
  Types->AddObject(Torch);
  TObjectType Puddle;
  Puddle.Flags.set(LIQUIDPOOL);
  Puddle.Phases = 2;
  Types->AddObject(Puddle);
  Types->AddOutfit({4});
  return Types;
}

TCreatureSetup Rat(const TPosition& Where) {
  TCreatureSetup Rat;
  Rat.Name = "rat";
  Rat.Position = Where;
  Rat.Outfit = {1, 2, 3, 4, 5, 0};
  Rat.Speed = 110;
  return Rat;
}

// The unknown-creature record of the rat, type word included.
TBytes RatRecord() {
  return {0x61, 0x00,                                    // UNKNOWNCREATURE
          0x00, 0x00, 0x00, 0x00,                        // no id to forget
          0x00, 0x00, 0x00, 0x40,                        // id
          0x00,                                          // reserved
          0x03, 0x00, 'r',  'a',  't',                   // name
          100,  0x02,                                    // health, facing south
          0x01, 0x00, 2,    3,    4,    5,    0,         // outfit, colours, addons
          0x00, 0x00,                                    // mount
          0x00, 0x00,                                    // light
          110,  0x00,                                    // speed
          0x00, 0x00, 0x00,                              // skull, party, guild
          0x01, 0x00,                                    // monster, no speech icon
          0xFF,                                          // no square
          0x00, 0x00,                                    // PvP helpers
          0x01};                                         // unpassable
}

TBytes Join(std::initializer_list<TBytes> Parts) {
  TBytes All;
  for (const TBytes& Part : Parts) All.insert(All.end(), Part.begin(), Part.end());
  return All;
}

TBytes Payload(const TMessageWriter& Writer) { return {Writer.Payload().begin(), Writer.Payload().end()}; }

class WorldMessagesTest : public testing::Test {
 protected:
  // A world of the fields given, and the creatures.
  void Make(const std::vector<std::pair<TPosition, std::vector<TItem>>>& Fields,
            std::vector<TCreatureSetup> Creatures = {}) {
    TWorldSetup Setup{TWorldMap(Types()), {}, std::move(Creatures), {}, {}, {}};
    for (const auto& [Where, Items] : Fields)
      for (const TItem& Item : Items) Setup.Map.Insert(Where, Item);
    World = std::make_unique<TGameWorld>(std::move(Setup), 1, [](const TStepRecord&) {});
    Messages = std::make_unique<TWorldMessages>(*World, View);
  }

  TClientView View;
  std::unique_ptr<TGameWorld> World;
  std::unique_ptr<TWorldMessages> Messages;
  TMessageWriter Writer;
};

// On the surface the block holds 8 floors of 252 fields. The player's field
// is the 119th of the first floor; 1897 empty fields follow it.
TEST_F(WorldMessagesTest, FullMapWithOneFieldSkipsRunsLongerThan255) {
  Make({{{1000, 2000, 7}, {{GROUND, 0}}}});
  Messages->FullMap(Writer, {1000, 2000, 7});
  const TBytes Expected = {
      100,  0xE8, 0x03, 0xD0, 0x07, 7,     // SFULLMAP at [1000,2000,7]
      0x75, 0xFF,                          // the first empty field and 117 more
      0x00, 0x00, 0x64, 0x00, 0xFF,        // environment, ground with no mark
      0xFF, 0xFF,                          // ends the field, skips 255
      0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,  // six empty fields, each skipping 255
      0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,
      0x69, 0xFF};                         // the last one and 105 more
  EXPECT_EQ(Payload(Writer), Expected);
  EXPECT_EQ(View.MapPosition, (TPosition{1000, 2000, 7}));
}

// Underground the block holds floors z-2 to z+2; a new eastern column is 14
// fields on each, read floor by floor from the top, north to south. Data and
// phase bytes follow the mark; the rat comes as an unknown creature, and
// after that as a known one.
TEST_F(WorldMessagesTest, EasternRowUndergroundWithSkipsRecordsAndAnUnknownCreature) {
  Make({{{210, 194, 8}, {{GROUND, 0}}},
        {{210, 195, 8}, {{GROUND, 0}, {TORCH, 0}, {COINS, 5}}},
        {{209, 206, 9}, {{GROUND, 0}, {PUDDLE, 7}}},
        {{208, 205, 10}, {{GROUND, 0}}}},
       {Rat({208, 205, 10})});
  View.MapPosition = {200, 200, 8};
  Messages->Row(Writer, EAST);
  const TBytes Expected = Join({{102,                                      // SRIGHTROW
                                 0x1B, 0xFF,                               // floors 6 and 7 empty: 28 fields
                                 0x00, 0x00, 0x64, 0x00, 0xFF,             // [210,194,8]
                                 0x00, 0xFF,                               // no skip
                                 0x00, 0x00, 0x64, 0x00, 0xFF,             // [210,195,8]
                                 0x65, 0x00, 0xFF, 0x05,                   // five coins
                                 0x66, 0x00, 0xFF, 0x00,                   // torch, its own start phase
                                 0x19, 0xFF,                               // 12 + 13 empty fields
                                 0x00, 0x00, 0x64, 0x00, 0xFF,             // [209,206,9]
                                 0x67, 0x00, 0xFF, 0x07, 0x00,             // puddle: liquid 7, phase
                                 0x0D, 0xFF,                               // 13 empty fields
                                 0x00, 0x00, 0x64, 0x00, 0xFF},            // [208,205,10]
                                RatRecord(),
                                {0x00, 0xFF}});                            // end of the last field
  EXPECT_EQ(Payload(Writer), Expected);
  EXPECT_EQ(View.MapPosition, (TPosition{201, 200, 8}));
  EXPECT_TRUE(View.Knows(RAT));

  TMessageWriter Again;
  Messages->CreateOnMap(Again, {208, 205, 10}, 1);
  const TBytes Known = {106, 0xD0, 0x00, 0xCD, 0x00, 10, 1,  // SCREATEONMAP at [208,205,10], stack 1
                        0x63, 0x00, 0x00, 0x00, 0x00, 0x40,  // CREATURE, id
                        0x02, 0x01};                         // facing south, unpassable
  EXPECT_EQ(Payload(Again), Known);
}

// Down to 8 the floors 8, 9 and 10 come into view, round the map position
// one field to the north-west; the one ground lies at the first field of 9.
TEST_F(WorldMessagesTest, FloorDownFromTheSurfaceReadsThreeFloors) {
  Make({{{90, 92, 9}, {{GROUND, 0}}}});
  View.MapPosition = {100, 100, 7};
  Messages->FloorDown(Writer);
  const TBytes Expected = {191,                             // SBOTTOMFLOOR
                           0xFB, 0xFF,                      // 252 empty fields of floor 8
                           0x00, 0x00, 0x64, 0x00, 0xFF,    // [90,92,9]
                           0xFF, 0xFF,                      // skips 255
                           0xF7, 0xFF};                     // the last 248
  EXPECT_EQ(Payload(Writer), Expected);
  EXPECT_EQ(View.MapPosition, (TPosition{99, 99, 8}));
}

// Up to 7, floors 5 to 0 come into view: 1512 empty fields.
TEST_F(WorldMessagesTest, FloorUpToTheSurfaceReadsSixFloors) {
  Make({});
  View.MapPosition = {100, 100, 8};
  Messages->FloorUp(Writer);
  const TBytes Expected = {190, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xE7, 0xFF};
  EXPECT_EQ(Payload(Writer), Expected);
  EXPECT_EQ(View.MapPosition, (TPosition{101, 101, 7}));
}

// A change of floor that brings nothing new into view still moves the view.
TEST_F(WorldMessagesTest, FloorChangesThatReadNothing) {
  Make({});
  View.MapPosition = {100, 100, 7};
  Messages->FloorUp(Writer);
  View.MapPosition = {100, 100, 13};
  Messages->FloorDown(Writer);
  View.MapPosition = {100, 100, 6};
  Messages->FloorDown(Writer);
  EXPECT_EQ(Payload(Writer), (TBytes{190, 191, 191}));
  EXPECT_EQ(View.MapPosition, (TPosition{99, 99, 7}));
}

// The layers read for each map position, and which fields the view holds.
TEST_F(WorldMessagesTest, FloorsHeldByTheView) {
  View.MapPosition = {100, 100, 7};
  EXPECT_EQ(View.Floors(), (std::vector<int>{7, 6, 5, 4, 3, 2, 1, 0}));
  View.MapPosition = {100, 100, 8};
  EXPECT_EQ(View.Floors(), (std::vector<int>{6, 7, 8, 9, 10}));
  View.MapPosition = {100, 100, 14};
  EXPECT_EQ(View.Floors(), (std::vector<int>{12, 13, 14, 15}));
  View.MapPosition = {100, 100, 15};
  EXPECT_EQ(View.Floors(), (std::vector<int>{13, 14, 15}));

  View.MapPosition = {100, 100, 7};
  EXPECT_TRUE(View.Holds({92, 94, 7}));
  EXPECT_TRUE(View.Holds({109, 107, 7}));
  EXPECT_FALSE(View.Holds({110, 107, 7}));
  EXPECT_FALSE(View.Holds({92, 108, 7}));
  EXPECT_TRUE(View.Holds({93, 95, 6})) << "a floor up is skewed one field";
  EXPECT_FALSE(View.Holds({92, 94, 6}));
  EXPECT_FALSE(View.Holds({100, 100, 8}));
}

TEST_F(WorldMessagesTest, SmallMessages) {
  TWorldMessages::MoveCreature(Writer, {300, 400, 7}, 2, {301, 399, 7});
  TWorldMessages::DeleteOnMap(Writer, {300, 400, 7}, 3);
  TWorldMessages::Snapback(Writer, WEST);
  const TBytes Expected = {109, 0x2C, 0x01, 0x90, 0x01, 7, 2, 0x2D, 0x01, 0x8F, 0x01, 7,  // SMOVECREATURE
                           108, 0x2C, 0x01, 0x90, 0x01, 7, 3,                           // SDELETEONMAP
                           181, 3};                                                     // SSNAPBACK
  EXPECT_EQ(Payload(Writer), Expected);
}

TEST_F(WorldMessagesTest, TalkOfACreatureCarriesItsPosition) {
  Make({{{300, 400, 7}, {{GROUND, 0}}}}, {Rat({300, 400, 7})});
  TWorldMessages::Talk(Writer, 9, *World->Find(RAT), "Hi");
  const TBytes Expected = {170, 9,    0,    0,    0,          // STALK, statement 9
                           3,   0,    'r',  'a',  't',        // speaker
                           0,   0,    1,                      // level, say
                           0x2C, 0x01, 0x90, 0x01, 7,         // position
                           2,   0,    'H',  'i'};
  EXPECT_EQ(Payload(Writer), Expected);
}

// A changed object is described at its stack position as it is now.
TEST_F(WorldMessagesTest, ChangeOnMapDescribesTheNewObject) {
  Make({{{300, 400, 7}, {{GROUND, 0}, {COINS, 9}}}});
  Messages->ChangeOnMap(Writer, {300, 400, 7}, 1);
  EXPECT_EQ(Payload(Writer), (TBytes{107, 0x2C, 0x01, 0x90, 0x01, 7, 1, 0x65, 0x00, 0xFF, 9}));
}

}  // namespace
