// The map store: scrolling on a block whose fields hold 0 to 10 objects each,
// a step with the refill of the new row, floor changes, and inserting and
// deleting on a full block.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>

#include "core/Clock.h"
#include "tools/databuild/TypeFile.h"
#include "world/Creatures.h"
#include "world/Map.h"
#include "world/Objects.h"

namespace {

constexpr int GROUND = 100;
constexpr int STONE = 101;

void LoadTypes() {
  TTypeFile File;
  TSpriteCounter Sprites;
  TObjectRecord Ground;
  Ground.Flags.push_back({BANK, {150}, {}});
  Ground.Sprites = Sprites.Take(1);
  TObjectRecord Stone;
  Stone.Sprites = Sprites.Take(1);
  File.Table(TTypeKind::OBJECT) = {Ground, Stone};
  const auto Path = std::filesystem::temp_directory_path() / "kelmo-bench-map.dat";
  WriteDatFile(File, Path.string());
  LoadObjects(Path.string());
  std::filesystem::remove(Path);
}

TObject Object(int Type) {
  TObject O;
  O.Type = Type;
  return O;
}

void FillField(int rx, int ry, int rz, int Objects) {
  if (Objects > 0) AppendObject(rx, ry, rz, Object(GROUND));
  for (int I = 1; I < Objects; ++I) AppendObject(rx, ry, rz, Object(STONE));
}

void FillEmptyFields(int Objects) {
  for (int rz = 0; rz < MAPSIZE_Z; ++rz) {
    for (int ry = 0; ry < MAPSIZE_Y; ++ry) {
      for (int rx = 0; rx < MAPSIZE_X; ++rx) {
        if (GetObjectCount(rx, ry, rz) == 0) FillField(rx, ry, rz, Objects);
      }
    }
  }
}

// The modules for one benchmark, on a block filled with Objects per field.
struct TMapSetUp {
  explicit TMapSetUp(int Objects) {
    LoadTypes();
    InitCreatures();
    InitMap({});
    SetMapPosition(1000, 1000, 10);
    FillEmptyFields(Objects);
  }
  ~TMapSetUp() {
    ExitMap();
    ExitCreatures();
    ExitObjects();
  }
  TMapSetUp(const TMapSetUp&) = delete;
  TMapSetUp& operator=(const TMapSetUp&) = delete;
};

struct TDirection {
  int dx, dy;
};
constexpr TDirection DIRECTIONS[] = {{1, 0}, {-1, 0}, {0, 1}, {0, -1}};
const char* const DIRECTION_NAMES[] = {"west", "east", "north", "south"};

// A shift there and back: after the first round only the two edge rows are
// empty, so the figure is the scrolling itself, whatever the block holds.
void BM_ShiftMap(benchmark::State& State) {
  const TDirection Direction = DIRECTIONS[State.range(0)];
  const TMapSetUp SetUp(static_cast<int>(State.range(1)));
  for (auto _ : State) {
    ShiftMap(Direction.dx, Direction.dy);
    ShiftMap(-Direction.dx, -Direction.dy);
  }
  State.SetLabel(DIRECTION_NAMES[State.range(0)]);
  State.SetItemsProcessed(State.iterations() * 2);
}
BENCHMARK(BM_ShiftMap)->ArgsProduct({{0, 1, 2, 3}, {0, 1, 5, 10}});

// One step as the game makes it: the shift, then the new row filled as the
// server describes it.
void BM_StepWithNewRow(benchmark::State& State) {
  const int Objects = static_cast<int>(State.range(0));
  const TMapSetUp SetUp(Objects);
  int Direction = 1;
  for (auto _ : State) {
    ShiftMap(Direction, 0);
    for (int rz = 0; rz < MAPSIZE_Z; ++rz) {
      for (int ry = 0; ry < MAPSIZE_Y; ++ry) FillField(Direction > 0 ? 0 : MAPSIZE_X - 1, ry, rz, Objects);
    }
    Direction = -Direction;
  }
  State.SetItemsProcessed(State.iterations());
}
BENCHMARK(BM_StepWithNewRow)->Arg(1)->Arg(5)->Arg(10);

// Down a floor and up again, underground: each clears whole floors.
void BM_ShiftFloors(benchmark::State& State) {
  const TMapSetUp SetUp(static_cast<int>(State.range(0)));
  for (auto _ : State) {
    ShiftFloors(1);
    ShiftFloors(-1);
  }
  State.SetItemsProcessed(State.iterations() * 2);
}
BENCHMARK(BM_ShiftFloors)->Arg(0)->Arg(10);

// On every field of a block with nine objects each: insert one (the stacking
// rule walks the pile, the pile moves up) and delete it again.
void BM_InsertDeleteOnFullBlock(benchmark::State& State) {
  const TMapSetUp SetUp(9);
  for (auto _ : State) {
    for (int rz = 0; rz < MAPSIZE_Z; ++rz) {
      for (int ry = 0; ry < MAPSIZE_Y; ++ry) {
        for (int rx = 0; rx < MAPSIZE_X; ++rx) {
          InsertObject(rx, ry, rz, Object(STONE));
          DeleteObject(rx, ry, rz, 1);
        }
      }
    }
  }
  State.SetItemsProcessed(State.iterations() * (MapPoint_High + 1) * 2);
}
BENCHMARK(BM_InsertDeleteOnFullBlock);

}  // namespace

BENCHMARK_MAIN();
