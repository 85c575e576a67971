#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/world/DatBytes.h"
#include "tests/world/WorldTest.h"
#include "tools/databuild/TypeSources.h"
#include "world/Objects.h"

namespace {

using testing_world::FailureReport;
using testing_world::TDatBytes;

std::vector<std::string> DemoSources() {
  std::vector<std::string> Files;
  std::stringstream List(KELMO_OBJECT_SOURCES);
  for (std::string File; std::getline(List, File, '|');) Files.push_back(File);
  return Files;
}

std::vector<std::uint8_t> ReadBytes(const std::filesystem::path& Path) {
  std::ifstream File(Path, std::ios::binary);
  return {std::istreambuf_iterator<char>(File), std::istreambuf_iterator<char>()};
}

class DataBuildTest : public testing_world::TFileTest {
 protected:
  void TearDown() override {
    ExitObjects();
    TFileTest::TearDown();
  }

  std::string Source(const std::string& Name, const std::string& Text) const {
    std::ofstream(File(Name), std::ios::binary) << Text;
    return File(Name).string();
  }
  // Builds the sources into a file of the given name; its bytes.
  std::vector<std::uint8_t> Build(const std::vector<std::string>& Sources,
                                  const std::string& Name) const {
    WriteDatFile(ReadTypeSources(Sources), File(Name).string());
    return ReadBytes(File(Name));
  }
  // Dumps a type file into a source of the given name.
  std::string Dump(const std::string& DatName, const std::string& SourceName) const {
    std::ofstream Out(File(SourceName), std::ios::binary);
    WriteTypeSource(ReadDatFile(File(DatName).string()), Out);
    return File(SourceName).string();
  }
};

TEST_F(DataBuildTest, TheDemoSourcesSurviveARoundTripByteForByte) {
  const std::vector<std::uint8_t> First = Build(DemoSources(), "first.dat");
  const std::vector<std::uint8_t> Second = Build({Dump("first.dat", "dump.txt")}, "second.dat");
  EXPECT_GT(First.size(), 1000u);
  EXPECT_EQ(First, Second);
}

TEST_F(DataBuildTest, TheSameSourcesGiveTheSameBytes) {
  EXPECT_EQ(Build(DemoSources(), "a.dat"), Build(DemoSources(), "b.dat"));
}

// The demo world needs each kind of type that the later parts test.
TEST_F(DataBuildTest, TheDemoTypesLoadAndCoverTheRules) {
  Build(DemoSources(), "Kelmo.dat");
  const TTypeFile Demo = ReadDatFile(File("Kelmo.dat").string());
  LoadObjects(File("Kelmo.dat").string());
  EXPECT_EQ(GetObjectFileSignature(), 1053001u);
  const int Objects = static_cast<int>(Demo.Table(TTypeKind::OBJECT).size());
  EXPECT_GE(Objects, 100);
  std::set<int> Flags{IDLEANIMATION};  // an outfit's flag, checked below
  std::set<int> Waypoints;
  std::set<int> Categories;
  for (int Type = FIRST_OBJECT_TYPE; Type < FIRST_OBJECT_TYPE + Objects; ++Type) {
    for (int Flag = BANK; Flag <= DEFAULTACTION; ++Flag) {
      if (GetObjectFlag(Type, Flag)) Flags.insert(Flag);
    }
    if (GetObjectFlag(Type, BANK)) Waypoints.insert(GetObjectWaypoints(Type));
    if (GetObjectFlag(Type, MARKET)) Categories.insert(GetObjectMarketCategory(Type));
  }
  EXPECT_EQ(Flags.size(), static_cast<size_t>(DEFAULTACTION + 1));
  EXPECT_GE(Waypoints.size(), 5u);
  EXPECT_GE(Categories.size(), 15u);
  EXPECT_GE(GetMarketList().size(), 40u);
  std::set<int> Addons;
  for (int Outfit = 1; Outfit <= static_cast<int>(Demo.Table(TTypeKind::OUTFIT).size()); ++Outfit) {
    EXPECT_EQ(GetOutfitPatternWidth(Outfit), 4) << Outfit;
    Addons.insert(GetOutfitAddons(Outfit));
  }
  EXPECT_EQ(Addons, (std::set<int>{0, 1, 3, 7}));
  EXPECT_TRUE(GetOutfitFlag(5, IDLEANIMATION));
  EXPECT_NE(GetEffectAnimation(1), nullptr);
  EXPECT_FALSE(Demo.Table(TTypeKind::MISSILE).empty());
}

// Each picture slot has its own sprite number, counted from 1 in file order.
TEST_F(DataBuildTest, SpriteNumbersRunOnThroughAllTables) {
  Build(DemoSources(), "Kelmo.dat");
  std::uint32_t Next = 1;
  for (const auto& Table : ReadDatFile(File("Kelmo.dat").string()).Tables) {
    for (const TObjectRecord& Record : Table) {
      for (std::uint32_t Sprite : Record.Sprites) ASSERT_EQ(Sprite, Next++);
    }
  }
}

// A source of each property gives exactly the bytes of the format.
TEST_F(DataBuildTest, EachPropertyBecomesItsBytes) {
  const std::string Text =
      "signature = 4000000000  # above the largest int: numbers wrap as u32\n"
      "object 100 {\n"
      "  bank = 150 top light = (7, 215) shift = (1, 2)\n"
      "  market = (3, 100, 0, \"a \\\"b\\\"\", 6, 20)\n"
      "  flag = 40\n"
      "  size = (2, 1) displaysize = 40 layers = 2 patterns = (1, 1, 1)\n"
      "  phases = ((100, 200), (50, 50)) animation = synchron loops = pingpong start = 2\n"
      "}\n"
      "outfit 1 { sprites = (9) }\n"
      "effect 1 { }\n";
  TDatBytes Expected;
  Expected.Header(4000000000u, 100, 1, 1, 0);
  Expected.U8(BANK).U16(150).U8(TOP).U8(LIGHT).U16(7).U16(215).U8(SHIFT).U16(1).U16(2);
  Expected.Market(3, 100, 0, "a \"b\"", 6, 20).U8(40).U8(255);
  Expected.U8(2).U8(1).U8(40).U8(2).U8(1).U8(1).U8(1).U8(2);
  Expected.U8(ANIMATION_SYNCHRON).U32(0xFFFFFFFF).U8(1).U32(100).U32(200).U32(50).U32(50);
  for (std::uint32_t Sprite = 1; Sprite <= 8; ++Sprite) Expected.U32(Sprite);
  Expected.Plain(9);
  Expected.Plain(9);
  EXPECT_EQ(Build({Source("one.txt", Text)}, "one.dat"), Expected.Bytes());
}

// A file that the builder would not write itself: foreign sprite numbers, a
// loop count below -1, a flag without meaning, a display size of its own.
TEST_F(DataBuildTest, AForeignFileSurvivesADumpAndABuild) {
  TDatBytes Bytes;
  Bytes.Header(7, 101, 1, 0, 1);
  Bytes.U8(CUMULATIVE).U8(200).Market(1, 100, 0, "back\\slash").Plain(5000);
  Bytes.U8(255).U8(3).U8(3).U8(77).U8(1).U8(1).U8(1).U8(1).U8(2);
  Bytes.U8(ANIMATION_ASYNCHRON).U32(static_cast<std::uint32_t>(-7)).U8(0xFF);
  Bytes.U32(10).U32(20).U32(30).U32(30);
  for (std::uint32_t Sprite = 1; Sprite <= 18; ++Sprite) Bytes.U32(Sprite);
  Bytes.Plain(0);
  Bytes.U8(LIGHT).U16(1).U16(2).Plain(19);
  Bytes.Write(File("foreign.dat"));
  EXPECT_EQ(Build({Dump("foreign.dat", "foreign.txt")}, "rebuilt.dat"), Bytes.Bytes());
}

TEST_F(DataBuildTest, TheDumpRefusesDataAfterTheLastRecord) {
  TDatBytes Bytes;
  Bytes.Header(7, 100, 0, 0, 0).Plain(1).U8(0);
  Bytes.Write(File("long.dat"));
  EXPECT_NE(FailureReport([&] { ReadDatFile(File("long.dat").string()); })
                .find("data after the last record"),
            std::string::npos);
}

TEST_F(DataBuildTest, AMistakeInASourceNamesTheFileAndTheLine) {
  const std::vector<std::pair<std::string, std::string>> Cases{
      {"signature = 1\nobject 100 {\n  bank = 70000\n}\n",
       "line 3 (Error: number out of range, 0 to 65535)"},
      {"signature = 1\nobject 100 {\n\n  colour = 3\n}\n",
       "line 4 (Error: unknown property 'colour')"},
      {"signature = 1\nobject 101 {}\n", "line 2 (Error: object 100 expected)"},
      {"signature = 1\nobject 100 { top top }\n", "line 2 (Error: flag given twice)"},
      {"signature = 1\nobject 100 { sprites = (1, 2) }\n",
       "line 2 (Error: 2 sprites given, the picture has 1)"},
      {"signature = 1\nobject 100 { loops = 1 }\n", "line 2 (Error: animation without phases)"},
      {"signature = 1\nobject 100 { phases = ((1, 1)) }\n",
       "line 2 (Error: 2 to 255 phases expected)"},
      {"signature = 1\nobject 100 { market = (1, 100, 0, \"" + std::string(30, 'x') +
           "\", 0, 0) }\n",
       "line 2 (Error: market name too long)"},
      {"signature = 1\nobject 100 { patterns = (128, 129, 1) }\n",
       "line 2 (Error: more than 16384 sprites)"},
      {"signature = 1\nsignature = 2\n", "line 2 (Error: signature given twice)"},
      {"signature = 1\nthing 100 {}\n",
       "line 2 (Error: signature, object, outfit, effect or missile expected)"},
      {"signature = 1\nobject 100 { bank 5 }\n", "line 2 (Error: special-char expected)"}};
  for (const auto& [Text, Failure] : Cases) {
    const std::string Name = Source("broken.txt", Text);
    const std::string Report = FailureReport([&] { ReadTypeSources({Name}); });
    EXPECT_NE(Report.find("error in script file '" + Name + "' in " + Failure), std::string::npos)
        << Report;
  }
}

TEST_F(DataBuildTest, SourcesWithoutASignatureFail) {
  const std::string Name = Source("none.txt", "object 100 {}\n");
  EXPECT_NE(FailureReport([&] { ReadTypeSources({Name}); }).find("no signature in the sources"),
            std::string::npos);
}

// Records of one kind run on from one file to the next.
TEST_F(DataBuildTest, RecordsSpreadOverSeveralFiles) {
  const std::string First = Source("first.txt", "signature = 1\nobject 100 {}\noutfit 1 {}\n");
  const std::string Second = Source("second.txt", "object 101 { top }\noutfit 2 {}\n");
  const TTypeFile File = ReadTypeSources({First, Second});
  EXPECT_EQ(File.Table(TTypeKind::OBJECT).size(), 2u);
  EXPECT_EQ(File.Table(TTypeKind::OUTFIT).size(), 2u);
  EXPECT_EQ(File.Table(TTypeKind::OBJECT)[1].Flags.size(), 1u);
}

// The program itself: build, dump, build again.
TEST_F(DataBuildTest, TheProgramBuildsAndDumps) {
  const std::string Tool = KELMO_DATABUILD;
  std::string Build = Tool + " -o " + File("tool.dat").string();
  for (const std::string& Source : DemoSources()) Build += " " + Source;
  ASSERT_EQ(std::system(Build.c_str()), 0);
  const std::string Dump =
      Tool + " --dump " + File("tool.dat").string() + " > " + File("tool.txt").string();
  ASSERT_EQ(std::system(Dump.c_str()), 0);
  const std::string Rebuild =
      Tool + " -o " + File("again.dat").string() + " " + File("tool.txt").string();
  ASSERT_EQ(std::system(Rebuild.c_str()), 0);
  EXPECT_EQ(ReadBytes(File("tool.dat")), ReadBytes(File("again.dat")));
  const std::string Broken = Source("broken.txt", "signature = x\n");
  const std::string Failing = Tool + " -o " + File("broken.dat").string() + " " + Broken +
                              " 2> " + File("stderr.txt").string();
  EXPECT_NE(std::system(Failing.c_str()), 0);
  EXPECT_FALSE(std::filesystem::exists(File("broken.dat")));
  std::ifstream Errors(File("stderr.txt"));
  const std::string Message{std::istreambuf_iterator<char>(Errors),
                            std::istreambuf_iterator<char>()};
  EXPECT_NE(Message.find("error in script file '" + Broken + "' in line 1"), std::string::npos)
      << Message;
}

}  // namespace
