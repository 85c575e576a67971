// The world files: the demo world has what it promises, the test world reads
// as drawn, and a mistake names the file and the line.
#include <gtest/gtest.h>

#include <fstream>
#include <set>

#include "core/Exception.h"
#include "tests/server/TestWorld.h"
#include "tools/server/WorldFile.h"

namespace {

using namespace server;
using namespace testing_server;

class WorldFileTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { Types = DemoTypes(); }
  static void TearDownTestSuite() { Types.reset(); }

  // Writes the text as a world file and reads it; the failure's text, or "" if it loads.
  std::string Failure(const std::string& Text) {
    const std::filesystem::path File = Directory.Path() / "broken.txt";
    std::ofstream(File) << Text;
    try {
      LoadWorld(File, Types);
    } catch (const TMyException& Error) {
      std::string All = Error.Text();
      for (const TNamedValue& Value : Error.Values()) All += " | " + Value.Value;
      return All;
    }
    return "";
  }

  static inline std::shared_ptr<const TObjectTypes> Types;
  TTemporaryDirectory Directory;
};

TEST_F(WorldFileTest, DemoWorldHasThreeFloorsWaysBetweenThemAndObjectsOfEveryKind) {
  const TWorldSetup World = LoadWorld(DemoWorldFile(), Types);
  std::map<int, int> FieldsByFloor;
  std::set<int> Flags;
  bool Data = false;
  for (const auto& [Where, Pile] : World.Map.Fields()) {
    ++FieldsByFloor[Where.Z];
    EXPECT_LE(Pile.size(), 10u);
    EXPECT_TRUE(World.Map.ItemHas(Pile.front(), BANK)) << PositionText(Where) << " has no ground first";
    for (const TItem& Item : Pile) {
      for (int Flag = BANK; Flag <= DEFAULTACTION; ++Flag)
        if (World.Map.ItemHas(Item, Flag)) Flags.insert(Flag);
      Data = Data || Item.Data > 1;
    }
  }
  EXPECT_GE(FieldsByFloor[7], 300);
  EXPECT_GE(FieldsByFloor[6], 40);
  EXPECT_GE(FieldsByFloor[8], 80);
  for (const int Flag : {CONTAINER, CUMULATIVE, LIQUIDCONTAINER, LIQUIDPOOL, LIGHT, WRITE, WRITEONCE, HANG,
                         UNPASSABLE, BLOCKSIGHT, AVOID, TAKEABLE, FORCEUSE, HEIGHT, ROTATABLE, LOOKTHROUGH})
    EXPECT_TRUE(Flags.contains(Flag)) << "no object with flag " << Flag;
  EXPECT_TRUE(Data) << "counts and liquids";
  EXPECT_FALSE(World.WaysDown.empty());
  EXPECT_FALSE(World.WaysUp.empty());
  EXPECT_FALSE(World.Uses.empty());

  EXPECT_EQ(World.Player.Position, (TPosition{32000, 32000, 7}));
  EXPECT_TRUE(World.Map.IsWalkable(World.Player.Position));
  int Monsters = 0;
  int Talkers = 0;
  for (const TCreatureSetup& Creature : World.Creatures) {
    Monsters += Creature.Kind == ECreatureKind::MONSTER && Creature.Range > 0;
    Talkers += Creature.Kind == ECreatureKind::NPC && !Creature.Lines.empty() && Creature.Range == 0;
  }
  EXPECT_GE(Monsters, 2);
  EXPECT_GE(Talkers, 1);
}

// Every way down and up in the demo world ends on a field one can stand on,
// for the steps that lead onto it from a field one can stand on.
TEST_F(WorldFileTest, DemoWaysBetweenFloorsLeadSomewhere) {
  const TWorldSetup World = LoadWorld(DemoWorldFile(), Types);
  int Ways = 0;
  for (const auto& [Where, Pile] : World.Map.Fields())
    for (const TItem& Item : Pile) {
      if (World.WaysDown.contains(Item.Type)) {
        ++Ways;
        EXPECT_TRUE(World.Map.IsWalkable({Where.X, Where.Y, Where.Z + 1})) << PositionText(Where);
      }
      if (!World.WaysUp.contains(Item.Type)) continue;
      ++Ways;
      int Landings = 0;
      for (int DX = -1; DX <= 1; ++DX)
        for (int DY = -1; DY <= 1; ++DY)
          Landings += World.Map.IsWalkable({Where.X - DX, Where.Y - DY, Where.Z}) &&
                      World.Map.IsWalkable({Where.X + DX, Where.Y + DY, Where.Z - 1});
      EXPECT_GT(Landings, 0) << PositionText(Where);
    }
  EXPECT_GE(Ways, 4);
}

TEST_F(WorldFileTest, TestWorldReadsAsDrawn) {
  const TWorldSetup World = LoadWorld(TestWorldFile(), Types);
  EXPECT_EQ(World.Map.Pile({100, 100, 7}), (TPile{{107, 0}, {116, 0}}));
  EXPECT_EQ(World.Map.Pile({103, 102, 7}), (TPile{{102, 0}}));
  EXPECT_EQ(World.Map.Pile({101, 103, 7}), (TPile{{100, 0}, {170, 12}}));
  EXPECT_EQ(World.Map.Pile({104, 103, 8}), (TPile{{108, 0}, {139, 0}}));
  EXPECT_TRUE(World.Map.Pile({107, 100, 7}).empty());
  EXPECT_EQ(World.Map.Fields().size(), 70u);
  ASSERT_EQ(World.Creatures.size(), 1u);
  EXPECT_EQ(World.Creatures[0].Name, "Tess");
  EXPECT_EQ(World.Creatures[0].Lines.size(), 2u);
  EXPECT_EQ(World.Creatures[0].TalkIntervalMs, 5000);
  EXPECT_EQ(World.Player.Speed, 220);
  EXPECT_EQ(World.WaysDown, (std::set<int>{138}));
  EXPECT_EQ(World.Uses, (std::map<int, int>{{124, 123}}));
}

TEST_F(WorldFileTest, MistakesNameTheFileAndTheLine) {
  const std::string Head = "error in script file '" + (Directory.Path() / "broken.txt").string() + "' in line ";
  const std::string Ground = "key \".\" = (100)\nfloor [10,10,7] { \"...\" }\n";
  const std::string Player = "player [10,10,7] { outfit = (1, 0, 0, 0, 0, 0) }\n";
  EXPECT_EQ(Failure(Ground + "floor [10,11,7] {\n  \".x\"\n}\n" + Player), Head + "4 | no key for 'x'");
  EXPECT_EQ(Failure(Ground + "\nput [10,10,7] (99)\n" + Player), Head + "4 | unknown object type 99");
  EXPECT_EQ(Failure(Ground + "put [10,10,7] (174:3)\n" + Player),
            Head + "3 | object type 174 carries no count or liquid");
  EXPECT_EQ(Failure(Ground + "put [11,10,7] (170:300)\n" + Player),
            Head + "3 | a count or liquid must be from 0 to 255, not 300");
  EXPECT_EQ(Failure(Ground + "player [13,10,7] { }\n"), Head + "3 | player stands where no one can: [13,10,7]");
  EXPECT_EQ(Failure(Ground + "player [10,10,7] { outfit = (99, 0, 0, 0, 0, 0) }\n"), Head + "3 | unknown outfit 99");
  const std::string Rat = "monster \"rat\" [11,10,7] { outfit = (4, 0, 0, 0, 0, 0) }\n";
  EXPECT_EQ(Failure(Ground + Player + Rat + Rat), Head + "5 | rat stands where no one can: [11,10,7]");
  EXPECT_EQ(Failure(Ground + Player + "npc \"Tess\" [11,10,7] {\n outfit = (1, 0, 0, 0, 0, 0)\n say = \"hi\"\n}\n"),
            Head + "7 | lines need an interval");
  EXPECT_EQ(Failure(Ground + "put [10,10,7] (100, 100, 100, 100, 100, 100, 100, 100, 100, 100)\n" + Player),
            Head + "3 | more than 10 objects on [10,10,7]");
  EXPECT_EQ(Failure(Ground), Head + "3 | no player start") << "the end of the file";
  EXPECT_EQ(Failure(Ground + Player + "river [1,1,7]\n"), Head + "4 | unknown statement 'river'");
}

}  // namespace
