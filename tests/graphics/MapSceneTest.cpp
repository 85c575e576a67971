// The map window on scenes built in the map store and the creature table with
// the built data files: a stack of objects with elevation, a roof over the
// player, a creature in the middle of a step, light on and off, the labels of
// several creatures, and two talkboxes over one field. Each frame, drawn by
// each engine under a private X server, must match that engine's golden
// image, and the drawing log (labels, bars, texts) its committed log, which
// both engines share. A still scene draws nothing into the field cache in its
// second frame.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

#include "core/Clock.h"
#include "core/MessageQueue.h"
#include "core/Preferences.h"
#include "core/ProgramState.h"
#include "graphics/Engines.h"
#include "graphics/Fonts.h"
#include "graphics/Graphics.h"
#include "graphics/MapWindow.h"
#include "graphics/Recorder.h"
#include "graphics/Talkboxes.h"
#include "gui/GUI.h"
#include "gui/Routing.h"
#include "net/Commands.h"
#include "net/Communication.h"
#include "net/Connection.h"
#include "net/Login.h"
#include "net/Network.h"
#include "net/Xtea.h"
#include "platform/Window.h"
#include "tests/graphics/MapModules.h"
#include "tests/graphics/TestCard.h"
#include "tests/net/ServerPacket.h"
#include "tests/graphics/DisplayWindow.h"
#include "tests/support/Harness.h"
#include "world/Animation.h"
#include "world/Creatures.h"
#include "world/Map.h"
#include "world/Objects.h"
#include "world/Player.h"
#include "world/WorldMessages.h"

#ifndef KELMO_DATA_DIR
#error "KELMO_DATA_DIR must name the folder of the built data files"
#endif
#ifndef KELMO_GOLDEN_DIR
#error "KELMO_GOLDEN_DIR must name the folder of the golden images"
#endif

namespace {

const auto* const Registered = testdisplay::RegisterDisplay("KelmoMapSceneTest");

// Object types of the built Kelmo.dat (data/objects).
constexpr int GRASS = 100;
constexpr int DIRT = 101;
constexpr int WOODEN_FLOOR = 106;
constexpr int STONE_WALL = 116;
constexpr int OAK = 130;
constexpr int STREET_LAMP = 133;
constexpr int CAMP_FIRE = 134;
constexpr int TABLE = 145;
constexpr int BARREL = 150;
constexpr int CANDLESTICK = 165;
constexpr int APPLE = 173;
constexpr int BACKPACK = 167;
// Outfits.
constexpr int HUMAN = 1;
constexpr int TRADER = 3;
constexpr int RAT = 4;

constexpr std::uint32_t PLAYER = 0x10000001;
constexpr int MAP_X = 32000, MAP_Y = 32000, MAP_Z = 7;
constexpr int PF = 0;  // the player's floor in the block on the surface

using mapmodules::Item;

std::string ReadText(const std::filesystem::path& File) {
  std::ifstream Stream(File, std::ios::binary);
  std::ostringstream Text;
  Text << Stream.rdbuf();
  return Text.str();
}

class MapSceneTest : public ::testing::TestWithParam<int> {
 protected:
  MapSceneTest() {
    SetClockSource(m_Clock);
    // Animations start in phase 1 whatever ran before, so that the pictures
    // don't depend on the order of the tests.
    SetAnimationRandomSource([] { return 0u; });
    mapmodules::Start();
    Preferences().Antialiasing = false;
    ClearTalkboxes();
    SetStatusMessage("");
    mapmodules::LogIn(PLAYER);
    SelectEngine(GetParam(), testdisplay::TestWindow());
    GetSurface()->Startup();
    m_Map = std::make_unique<CMapWindow>();
    m_Map->SetSize(MAP_PICTURE_WIDTH, MAP_PICTURE_HEIGHT);
    Meadow();
  }
  ~MapSceneTest() override {
    SetActiveRecorder(nullptr);
    m_Map.reset();
    mapmodules::Stop();
    SetClockSource(nullptr);
    SetAnimationRandomSource(nullptr);
    CombatTargets() = {};
    MouseMoveEvent(0, 0);
  }

  // Grass everywhere, some dirt and trees, the player in the middle facing south.
  void Meadow() {
    PrepareWorldForGame();
    SetMapPosition(MAP_X, MAP_Y, MAP_Z);
    SetAmbiente(255, 215);
    for (int rx = 0; rx < MAPSIZE_X; ++rx) {
      for (int ry = 0; ry < MAPSIZE_Y; ++ry) AppendObject(rx, ry, PF, Item(ry == 9 ? DIRT : GRASS));
    }
    AppendObject(2, 2, PF, Item(OAK));
    AppendObject(13, 9, PF, Item(OAK));
    TCreature& Player = Place(PLAYER, "Ayla", 8, 6, HUMAN);
    Player.OutfitData = {78, 69, 58, 76, 0};
    Player.Direction = 2;
  }

  static TCreature& Place(std::uint32_t Id, const std::string& Name, int rx, int ry, int Outfit) {
    TCreature& Creature = NewCreature(0, Id);
    Creature.Name = Name;
    Creature.X = MAP_X - 8 + rx, Creature.Y = MAP_Y - 6 + ry, Creature.Z = MAP_Z;
    Creature.Speed = 220;
    Creature.Health = 100;
    Creature.OutfitType = Outfit;
    Creature.OnMap = true;
    Creature.Direction = 2;
    AppendObject(rx, ry, PF, Item(CREATURE, Id));
    return Creature;
  }

  // One presented frame of the map at the screen's top left, with its log.
  TImage Frame() {
    EXPECT_TRUE(StartFrame(testdisplay::TestWindow()));
    m_Recorder.Clear();
    SetActiveRecorder(&m_Recorder);
    GetSurface()->ClearSurface(SCREEN_SURFACE, {0, 0, 0}, 255);
    m_Map->Draw(SCREEN_SURFACE, 0, 0);
    SetActiveRecorder(nullptr);
    GetSurface()->RequestCapture();
    FinishFrame();
    std::optional<TImage> Capture = GetSurface()->TakeCapture();
    EXPECT_TRUE(Capture.has_value());
    return Capture.value_or(TImage{});
  }

  // The picture against its golden image, the log against the committed
  // one; KELMO_UPDATE_GOLDEN=1 writes both.
  void ExpectGolden(const std::string& Name) {
    const TImage Image = Frame();
    const std::string Engine = GetParam() == ENGINE_OPENGL ? "" : "-software";
    EXPECT_EQ(testcard::CompareWithGolden(Image, "map-" + Name + Engine, 0), "");
    const std::filesystem::path File = std::filesystem::path(KELMO_GOLDEN_DIR) / ("map-" + Name + ".log");
    const char* Update = std::getenv("KELMO_UPDATE_GOLDEN");
    if (Update != nullptr && std::string(Update) == "1") {
      std::ofstream(File, std::ios::binary) << m_Recorder.Log();
      return;
    }
    EXPECT_EQ(m_Recorder.Log(), ReadText(File));
  }

  int LabelsOf(std::uint32_t Id) const {
    int Count = 0;
    for (const TCreatureLabel& Label : m_Map->GetCreatureLabels()) Count += Label.CreatureID == Id ? 1 : 0;
    return Count;
  }

  std::shared_ptr<TManualClock> m_Clock = std::make_shared<TManualClock>(1'000'000'000);
  std::unique_ptr<CMapWindow> m_Map;
  CDrawingRecorder m_Recorder;
};

// A table, a barrel and things on them: each HEIGHT object lifts what lies
// above it by its elevation, up to 24 pixels.
TEST_P(MapSceneTest, FieldStackWithElevation) {
  AppendObject(6, 4, PF, Item(TABLE));
  AppendObject(6, 4, PF, Item(APPLE, 3));
  AppendObject(7, 4, PF, Item(BARREL));
  AppendObject(7, 4, PF, Item(TABLE));
  AppendObject(7, 4, PF, Item(BARREL));
  AppendObject(7, 4, PF, Item(BARREL));
  AppendObject(7, 4, PF, Item(CANDLESTICK));
  AppendObject(9, 4, PF, Item(BACKPACK));
  EXPECT_EQ(GetElevationCount(7, 4, PF), 4);  // 32 pixels, drawn as 24
  ExpectGolden("elevation");
}

// Ground on the floor above the player hides that floor everywhere; out in
// the open the same floor is drawn.
TEST_P(MapSceneTest, RoofOverThePlayerHidesTheUpperFloor) {
  for (int rx = 4; rx <= 10; ++rx) {
    for (int ry = 2; ry <= 8; ++ry) {
      AppendObject(rx, ry, PF + 1, Item(WOODEN_FLOOR));
      if (ry == 2) AppendObject(rx, ry, PF + 1, Item(STONE_WALL));
    }
  }
  Frame();
  EXPECT_EQ(m_Map->GetTopFloor(), PF);
  ExpectGolden("under-roof");

  ClearField(7, 5, PF + 1, true);  // the field straight above the player
  ClearField(8, 6, PF + 1, true);  // and the one above him on the screen
  ClearField(6, 6, PF + 1, true);
  ClearField(7, 4, PF + 1, true);
  ClearField(7, 6, PF + 1, true);
  ClearField(8, 5, PF + 1, true);
  ClearField(8, 7, PF + 1, true);
  ClearField(9, 6, PF + 1, true);
  ClearField(6, 5, PF + 1, true);
  ClearField(7, 7, PF + 1, true);
  ClearField(9, 5, PF + 1, true);
  ClearField(8, 4, PF + 1, true);
  Frame();
  EXPECT_EQ(m_Map->GetTopFloor(), 7);
}

// A rat half way through a step east is drawn once, in the list of the field
// it enters, 16 pixels short of it.
TEST_P(MapSceneTest, WalkingCreatureMidStep) {
  constexpr std::uint32_t WALKER = 0x40000010;
  TCreature& Rat = Place(WALKER, "Rat", 10, 7, RAT);
  Rat.Speed = 110;
  DeleteObject(10, 7, PF, 1);
  AppendObject(11, 7, PF, Item(CREATURE, WALKER));
  Rat.X += 1;
  MoveCreature(Rat, 1, 0, 150);
  const int Duration = Rat.WalkDuration;
  m_Clock->AdvanceMilliseconds(Duration / 2);
  ProcessCreatures();
  ASSERT_EQ(GetOffsetX(Rat), -16);
  Frame();
  ASSERT_EQ(LabelsOf(WALKER), 1);
  for (const TCreatureLabel& Label : m_Map->GetCreatureLabels()) {
    if (Label.CreatureID != WALKER) continue;
    EXPECT_EQ(Label.x, 11 * 32 - 32 - 16 + 16);
    EXPECT_EQ(Label.y, 7 * 32 - 32);
  }
  ExpectGolden("mid-step");
}

// Night with a street lamp, a camp fire and the player's own glow, then the
// same scene with the light switched off.
TEST_P(MapSceneTest, LightOnAndOff) {
  SetAmbiente(40, 173);
  for (int Beat = 0; Beat < 256; ++Beat) StepAmbiente();
  AppendObject(5, 4, PF, Item(STREET_LAMP));
  AppendObject(11, 8, PF, Item(CAMP_FIRE));
  ExpectGolden("light-on");
  Preferences().LightEffects = false;
  ExpectGolden("light-off");
}

// Bars and names by health, a creature under a roof in grey, the marks of
// party, skull and war, and an NPC's speech icon.
TEST_P(MapSceneTest, NamesAndHealthBarsOfSeveralCreatures) {
  TCreature& Tobias = Place(0x40000001, "Tobias", 5, 5, TRADER);
  Tobias.OutfitData = {95, 113, 96, 115, 1};
  Tobias.SpeechFlag = 1;
  TCreature& Rat = Place(0x40000002, "Rat", 11, 5, RAT);
  Rat.Health = 25;
  TCreature& Bert = Place(0x10000002, "Bert", 6, 8, HUMAN);
  Bert.Health = 50;
  Bert.PARTYFlag = 2;
  Bert.PKFlag = 3;
  Bert.GUILDFlag = 1;
  TCreature& Cora = Place(0x10000003, "Cora", 10, 8, HUMAN);
  Cora.Health = 8;
  Cora.OutfitData = {10, 30, 50, 70, 0};
  for (int rx = 12; rx <= 15; ++rx) {
    for (int ry = 1; ry <= 3; ++ry) AppendObject(rx, ry, PF + 1, Item(WOODEN_FLOOR));
  }
  Place(0x40000003, "Hidden Rat", 14, 3, RAT);
  ExpectGolden("labels");
  EXPECT_EQ(m_Map->CreatureAtPoint(11 * 32 - 32, 5 * 32 - 32 + 10), 0x40000002u);
  EXPECT_EQ(m_Map->CreatureAtPoint(14 * 32 - 32, 3 * 32 - 32 + 10), 0u);
}

// Two speakers over one field: the tie rule starts the first box left and
// the second right, and as long as that lowers their overlap they go on
// until they no longer touch or reach the end of their room, half their
// width to either side of the field. (Boxes of which one is much narrower
// keep the same overlap after the first step, so they stop after two pixels.)
TEST_P(MapSceneTest, TwoTalkboxesOnOneField) {
  Place(0x40000001, "Tobias", 8, 3, TRADER);
  const int x = MAP_X - 8 + 8, y = MAP_Y - 6 + 3;
  SetTalkbox(TALK_SAY, "Tobias", x, y, MAP_Z, "Welcome to Kelmo, traveller!");
  SetTalkbox(TALK_SAY, "Ayla", x, y, MAP_Z, "Welcome to Kelmo, traveller!");
  ExpectGolden("talkboxes");
  const TTalkboxBounds First = GetTalkboxBounds(1), Second = GetTalkboxBounds(2);
  EXPECT_GE(Second.x - First.x, 10);
}

// The attack target framed red, the follow target green, the creature under
// the mouse white; under the mouse the target's frame turns lighter.
TEST_P(MapSceneTest, SelectionFramesOfTargetsAndTheCreatureUnderTheMouse) {
  constexpr std::uint32_t ATTACKED = 0x40000001, FOLLOWED = 0x40000002, POINTED = 0x40000003;
  Place(ATTACKED, "Rat", 6, 5, RAT);
  Place(FOLLOWED, "Rat", 10, 5, RAT);
  Place(POINTED, "Tobias", 8, 8, TRADER);
  CombatTargets().AttackTarget = ATTACKED;
  CombatTargets().FollowTarget = FOLLOWED;
  Frame();  // the labels that the mouse is matched against
  MouseMoveEvent(8 * 32 - 32 + 16, 8 * 32 - 32 + 10);
  ExpectGolden("selection");

  // Without light the frames keep their colours: the top left corner of each.
  Preferences().LightEffects = false;
  const auto Corner = [](const TImage& Image, int rx, int ry) {
    const size_t At = (static_cast<size_t>(ry * 32 - 32) * Image.Width + (rx * 32 - 32)) * 3;
    return TRGBColor{Image.Pixels[At], Image.Pixels[At + 1], Image.Pixels[At + 2]};
  };
  MouseMoveEvent(6 * 32 - 32 + 16, 5 * 32 - 32 + 10);
  Frame();
  const TImage OverAttacked = Frame();
  EXPECT_EQ(Corner(OverAttacked, 6, 5), (TRGBColor{248, 164, 164}));
  EXPECT_EQ(Corner(OverAttacked, 10, 5), (TRGBColor{64, 224, 64}));
  MouseMoveEvent(10 * 32 - 32 + 16, 5 * 32 - 32 + 10);
  const TImage OverFollowed = Frame();
  EXPECT_EQ(Corner(OverFollowed, 6, 5), (TRGBColor{224, 64, 64}));
  EXPECT_EQ(Corner(OverFollowed, 10, 5), (TRGBColor{180, 248, 180}));
  EXPECT_EQ(Corner(OverFollowed, 8, 8), TRGBColor(Corner(OverAttacked, 8, 8)));
  MouseMoveEvent(-100, -100);
  EXPECT_EQ(Corner(Frame(), 8, 8), Corner(OverFollowed, 8, 8));  // Tobias stays unframed
}

// The second frame of a scene where nothing moves finds every settled
// sprite in the field cache.
TEST_P(MapSceneTest, AStillSceneWritesNothingIntoTheFieldCache) {
  AppendObject(6, 4, PF, Item(TABLE));
  AppendObject(7, 4, PF, Item(BARREL));
  Frame();
  EXPECT_GT(m_Map->CacheCounters().SpritesWritten, 100);
  m_Map->ResetCacheCounters();
  Frame();
  EXPECT_EQ(m_Map->CacheCounters().SpritesWritten, 0);
  EXPECT_GT(m_Map->CacheCounters().SpritesFound, 100);
}

INSTANTIATE_TEST_SUITE_P(Engines, MapSceneTest, ::testing::Values(ENGINE_OPENGL, ENGINE_DIRECTX5),
                         [](const ::testing::TestParamInfo<int>& Info) {
                           return std::string(Info.param == ENGINE_OPENGL ? "OpenGL" : "Software");
                         });

}  // namespace
