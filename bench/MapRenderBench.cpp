// Frame times of the map window under X with each engine, light on and
// no frame limit, at 1920 x 1080 and 800 x 600: a town (a few objects a field,
// 15 creatures) and a full scene (10 objects on every field of three floors,
// 100 walking creatures with names and bars, 200 effects, 10 talkboxes), each
// next to a frame that only clears the screen. Needs DISPLAY (an Xvfb does);
// prints the median and the 95th percentile of each and their ratio to the
// clear-only frame.
//
//   kelmo-bench-map-render [frames]
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/Clock.h"
#include "core/MessageQueue.h"
#include "core/Preferences.h"
#include "core/ProgramState.h"
#include "graphics/Engines.h"
#include "graphics/Fonts.h"
#include "graphics/Graphics.h"
#include "graphics/MapWindow.h"
#include "graphics/Talkboxes.h"
#include "gui/GUI.h"
#include "net/Communication.h"
#include "net/Connection.h"
#include "net/Login.h"
#include "net/Network.h"
#include "net/Xtea.h"
#include "platform/Window.h"
#include "tests/graphics/MapModules.h"
#include "world/Creatures.h"
#include "world/Map.h"
#include "world/Objects.h"
#include "world/WorldMessages.h"

#ifndef KELMO_DATA_DIR
#error "KELMO_DATA_DIR must name the folder of the built data files"
#endif

namespace {

constexpr std::uint32_t PLAYER = 0x10000001;
constexpr int MAP_X = 32000, MAP_Y = 32000;
constexpr int GRASS = 100;
constexpr int FIRST_ITEM = 166, LAST_ITEM = 196;
constexpr int HUMAN = 1, RAT = 4;

using mapmodules::Item;

int ItemAt(int rx, int ry, int n) { return FIRST_ITEM + (rx * 7 + ry * 13 + n * 5) % (LAST_ITEM - FIRST_ITEM + 1); }

TCreature& Place(std::uint32_t Id, const std::string& Name, int rx, int ry, int rz, int Outfit) {
  TCreature& Creature = NewCreature(0, Id);
  Creature.Name = Name;
  int x = rx, y = ry, z = rz;
  MapToWorld(x, y, z);
  Creature.X = x, Creature.Y = y, Creature.Z = z;
  Creature.Speed = 220;
  Creature.Health = 20 + static_cast<int>(Id % 80);
  Creature.OutfitType = Outfit;
  Creature.OutfitData = {static_cast<int>(Id % 133), 40, 60, 80, 0};
  Creature.OnMap = true;
  Creature.Direction = 2;
  InsertObject(rx, ry, rz, Item(CREATURE, Id));
  return Creature;
}

std::vector<TCreature*> Walkers;

// A town on the surface: grass, two or three things on each field, 15 people.
void Town() {
  SetMapPosition(MAP_X, MAP_Y, 7);
  SetAmbiente(60, 173);
  for (int rx = 0; rx < MAPSIZE_X; ++rx) {
    for (int ry = 0; ry < MAPSIZE_Y; ++ry) {
      AppendObject(rx, ry, 0, Item(GRASS));
      for (int n = 0; n < 1 + (rx + ry) % 3; ++n) AppendObject(rx, ry, 0, Item(ItemAt(rx, ry, n), 1));
    }
  }
  Place(PLAYER, "Ayla", 8, 6, 0, HUMAN);
  for (int n = 1; n < 15; ++n) Walkers.push_back(&Place(0x40000000 + n, "Citizen " + std::to_string(n), 1 + n % 15, 1 + n * 3 % 11, 0, n % 2 ? HUMAN : RAT));
}

// Underground, three floors of 10 things each; 100 walkers with labels, 200
// effects and 10 talkboxes on the player's floor.
void Full() {
  SetMapPosition(MAP_X, MAP_Y, 10);
  SetAmbiente(60, 173);
  const int PF = GetPlayerFloor();
  for (int rz = PF - 2; rz <= PF; ++rz) {
    for (int rx = 0; rx < MAPSIZE_X; ++rx) {
      for (int ry = 0; ry < MAPSIZE_Y; ++ry) {
        const bool Ground = rz == PF - 2;
        if (Ground) AppendObject(rx, ry, rz, Item(GRASS));
        for (int n = Ground ? 1 : 0; n < OBJECTS_PER_POINT; ++n) AppendObject(rx, ry, rz, Item(ItemAt(rx, ry, n + rz), 1));
      }
    }
  }
  Place(PLAYER, "Ayla", 8, 6, PF, HUMAN);
  for (int n = 1; n < 100; ++n) {
    const int rx = 1 + n % 15, ry = 1 + (n / 15) * 11 / 7 % 11;
    Walkers.push_back(&Place(0x40000000 + n, "Walker " + std::to_string(n), rx, ry, PF, n % 2 ? HUMAN : RAT));
  }
  for (int n = 0; n < EFFECTS; ++n) AddGraphicalEffect(1 + n % 15, 1 + n / 15 % 11, PF, 1 + n % 10);
  for (int n = 0; n < 10; ++n) {
    int x = 2 + n, y = 2 + n % 8, z = PF;
    MapToWorld(x, y, z);
    SetTalkbox(TALK_SAY, "Walker " + std::to_string(n + 1), x, y, z, "Fine weather for a walk in the cave!");
  }
}

// Keeps every walker in the middle of a step, back and forth.
void KeepWalking() {
  for (TCreature* Creature : Walkers) {
    if (Creature->Walking && Creature->WalkEndTime > GetProgramTime()) continue;
    const int dx = (Creature->CreatureID + GetProgramTime() / 1000) % 2 ? 1 : -1;
    MoveCreature(*Creature, dx, 0, 150);
  }
  ProcessCreatures();
}

struct TFigures {
  double Median = 0, P95 = 0;
  // Per frame: drawing operations, pixels, target changes, sprite page writes.
  long long Operations = 0, Pixels = 0, TargetChanges = 0, PageWrites = 0;
};

TFigures Measure(platform::CWindow& Window, int Frames, const std::function<void()>& Draw) {
  std::vector<double> Times;
  TFigures Figures;
  for (int n = 0; n < Frames + 20; ++n) {
    if (n == 20) ResetGraphicsCounters();
    const auto Start = std::chrono::steady_clock::now();
    if (!StartFrame(Window)) continue;
    Draw();
    FinishFrame();
    const double Ms = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - Start).count();
    if (n < 20) continue;
    Times.push_back(Ms);
    const TSurfaceCounters& C = GetSurface()->LastFrameCounters();
    Figures.Operations += C.Operations, Figures.Pixels += C.Pixels, Figures.TargetChanges += C.TargetChanges;
  }
  std::sort(Times.begin(), Times.end());
  const long long Count = static_cast<long long>(Times.size());
  Figures.Median = Times[Times.size() / 2];
  Figures.P95 = Times[std::min(Times.size() - 1, Times.size() * 95 / 100)];
  Figures.Operations /= Count, Figures.Pixels /= Count, Figures.TargetChanges /= Count;
  Figures.PageWrites = GraphicsCounters().PageWrites / Count;
  return Figures;
}

void Run(int Engine, int Width, int Height, int Frames) {
  platform::CWindow Window("Kelmo", Width, Height);
  Window.Show(false);
  for (const auto& [Name, Build] : {std::pair<const char*, void (*)()>{"town", Town}, {"full", Full}}) {
    mapmodules::Start();
    Preferences().LightEffects = true;
    mapmodules::LogIn(PLAYER);
    SelectEngine(Engine, Window);
    GetSurface()->Startup();
    PrepareWorldForGame();
    ClearTalkboxes();
    Walkers.clear();
    Build();
    CMapFrame Frame;
    Frame.SetSize(Width, Height);
    const TFigures Clear = Measure(Window, Frames, [] { GetSurface()->ClearSurface(SCREEN_SURFACE, {0, 0, 0}, 255); });
    const TFigures Map = Measure(Window, Frames, [&] {
      KeepWalking();
      GetSurface()->ClearSurface(SCREEN_SURFACE, {0, 0, 0}, 255);
      Frame.Draw(SCREEN_SURFACE, 0, 0);
    });
    std::printf("%-8s %4d x %4d %-5s map: median %6.2f ms, p95 %6.2f ms | clear only: median %5.2f ms, p95 %5.2f ms | "
                "ratio median %5.1f, p95 %5.1f\n",
                GetSurface()->Name(), Width, Height, Name, Map.Median, Map.P95, Clear.Median, Clear.P95, Map.Median / Clear.Median,
                Map.P95 / Clear.P95);
    std::printf("                     per frame: %lld operations, %lld pixels, %lld target changes, %lld sprite page writes\n",
                Map.Operations, Map.Pixels, Map.TargetChanges, Map.PageWrites);
    mapmodules::Stop();
  }
}

}  // namespace

int main(int argc, char** argv) {
  const int Frames = argc > 1 ? std::atoi(argv[1]) : 300;
  std::string Error;
  if (!platform::CWindow::InitDisplay("KelmoMapRenderBench", Error)) {
    std::fprintf(stderr, "no display: %s\n", Error.c_str());
    return 1;
  }
  for (const int Engine : {ENGINE_DIRECTX5, ENGINE_OPENGL}) {
    Run(Engine, 1920, 1080, Frames);
    Run(Engine, 800, 600, Frames);
  }
  platform::CWindow::ShutdownDisplay();
  return 0;
}
