// The client's walking against the local server's pacing: the real client code
// signs in to the demo world, walks its own character ten fields with
// predicted steps and watches two wandering monsters. The server logs every
// step it performs with the program time at which it ends; the client's
// arrival time for the same step (WalkEndTime) must match it within a beat.
//
// The two processes keep their own program time, each counted from its own
// start on the system's monotonic clock, so their clocks differ by a constant
// offset and run at the same rate. The offset is bounded from the messages
// that pass between them, as a time service does it: a command that the
// client sends at client time c reaches the server at server time s, so the
// offset is at least c - s; a step that the server takes at server time s
// reaches the client at client time c, so the offset is at most c - s. Every
// arrival time, less any offset within those bounds, must lie within a beat of
// the server's end of that step.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "app/AutoLogin.h"
#include "app/MainLoop.h"
#include "app/Messages.h"
#include "core/Clock.h"
#include "core/MessageQueue.h"
#include "core/Paths.h"
#include "core/Preferences.h"
#include "core/ProgramState.h"
#include "net/AccountManager.h"
#include "net/ClientHooks.h"
#include "net/Commands.h"
#include "net/Communication.h"
#include "net/Connection.h"
#include "net/Login.h"
#include "net/Random.h"
#include "platform/MessageBox.h"
#include "tests/integration/HeadlessClient.h"
#include "tests/support/Harness.h"
#include "world/Creatures.h"
#include "world/Map.h"
#include "world/Objects.h"
#include "world/Player.h"
#include "world/PlayerMessages.h"
#include "world/WorldMessages.h"

namespace {

using namespace harness;
namespace fs = std::filesystem;

// The demo world's entry, and a walk of four fields south to the road and six
// west along it: no monster can reach those fields.
constexpr int START_X = 32000, START_Y = 32000, START_Z = 7;
constexpr int TARGET_X = START_X - 6, TARGET_Y = START_Y + 4;
constexpr int PLAYER_STEPS = 10;
// A seed with which both rats by the entry step in view within half a minute.
constexpr const char* SERVER_SEED = "7";
constexpr int MONSTERS = 2;
constexpr int STEPS_PER_MONSTER = 2;
// Both programs read their clocks in whole milliseconds, so a bound made of
// two readings may be one millisecond too tight.
constexpr int GRAIN = 1;

struct TPosition {
  int X = 0, Y = 0, Z = 0;
  bool operator==(const TPosition&) const = default;
};

// A step as the client saw it begin: the program time at which the picture
// reaches the field, and when the client learnt of the step.
struct TClientStep {
  std::uint32_t Creature = 0;
  TPosition To;
  int WalkEndTime = 0;
  int Started = 0;
  bool Predicted = false;
};

struct TServerStep {
  std::uint32_t Creature = 0;
  TPosition To;
  std::int64_t Time = 0;  // when the server took it
  std::int64_t Ends = 0;
};

// The server's log, read as far as it has been written.
struct TServerLogReading {
  std::vector<TServerStep> Steps;
  std::vector<std::int64_t> GoPathTimes;  // when CGOPATH came in
};

TServerLogReading ReadServerLog(const std::string& Log) {
  static const std::regex StepLine(
      R"(\{"time":(\d+),.*"step":\{"creature":(\d+),"from":\[[^\]]*\],"to":\[(\d+),(\d+),(\d+)\],"ends":(\d+)\})");
  static const std::regex GoPathLine(R"(\{"time":(\d+),.*"command":"CGOPATH")");
  TServerLogReading Reading;
  std::istringstream Lines(Log);
  std::string Line;
  std::smatch Match;
  while (std::getline(Lines, Line)) {
    if (std::regex_search(Line, Match, StepLine)) {
      Reading.Steps.push_back({static_cast<std::uint32_t>(std::stoul(Match[2])),
                               {std::stoi(Match[3]), std::stoi(Match[4]), std::stoi(Match[5])},
                               std::stoll(Match[1]),
                               std::stoll(Match[6])});
    } else if (std::regex_search(Line, Match, GoPathLine)) {
      Reading.GoPathTimes.push_back(std::stoll(Match[1]));
    }
  }
  return Reading;
}

// The path finder of this test: straight south or north, then east or west.
int StraightPath(int X, int Y, int) {
  const TWalkState& Walk = GetWalkState();
  std::vector<int> Steps;
  for (int y = Y; y != Walk.DestY && Steps.size() < MAX_WALK_STEPS; y += y < Walk.DestY ? 1 : -1)
    Steps.push_back(y < Walk.DestY ? 7 : 3);
  for (int x = X; x != Walk.DestX && Steps.size() < MAX_WALK_STEPS; x += x < Walk.DestX ? 1 : -1)
    Steps.push_back(x < Walk.DestX ? 1 : 5);
  SetWalkSteps(Steps);
  const int Planned = static_cast<int>(Steps.size());
  return Planned == std::abs(Walk.DestX - X) + std::abs(Walk.DestY - Y) ? 1 : 2;
}

class CreatureTimingTest : public CHeadlessClientTest {
 protected:
  CreatureTimingTest() {
    SetClockSource(nullptr);  // both processes on the monotonic clock
    ResetProgramState();
  }

  void StartServer() {
    m_Server = std::make_unique<CLocalServer>(Home.Root(), std::vector<std::string>{},
                                              std::vector<std::string>{"--world", KELMO_DEMO_WORLD, "--seed", SERVER_SEED});
  }

  // The client's modules as the program starts them, the world's included.
  void StartClient() {
    setenv("KELMO_LOGIN_HOSTS", ("127.0.0.1:" + std::to_string(m_Server->LoginPort())).c_str(), 1);
    setenv("KELMO_AUTOLOGIN", "demo:demo:Ayla", 1);
    StartModules(true);
    TClientHooks& Hooks = ClientHooks();
    Hooks.IsGameView = [this] { return m_GameView; };
    Hooks.EnterGameView = [this](std::uint32_t) {
      PrepareWorldForGame();
      m_GameView = true;
    };
    StartAutoLogin();
  }

  // One pass of the client's loop: the network, the queue, the tick when it
  // is due, the creatures; the path goes out when the walk asks for it.
  void Step() {
    PollNetwork();
    Handler.Drain(MessageQueue());
    if (GetProgramTime() >= m_NextTick) {
      m_NextTick += 100;
      RunTimerTick();
    }
    if (GetConnectionState() == GAME_RUNNING && ProcessCreatures()) SendGoPath(GetWalkSteps());
    Observe();
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }

  bool RunUntil(const std::function<bool()>& Condition, std::chrono::milliseconds Limit) {
    return WaitFor(
        [&] {
          for (int Pass = 0; Pass < 10; ++Pass) Step();
          return Condition();
        },
        Limit);
  }

  // Notes each step that has begun since the last pass, for the creatures
  // that the server has logged steps of.
  void Observe() {
    if (GetProgramTime() >= m_NextLogRead) {
      m_NextLogRead = GetProgramTime() + 100;
      for (const TServerStep& Step : ReadServerLog(m_Server->Log()).Steps) m_Walkers.insert(Step.Creature);
      m_Walkers.insert(GetPlayerID());
    }
    const TWalkState& Walk = GetWalkState();
    for (const std::uint32_t Id : m_Walkers) {
      const TCreature* Creature = Id != 0 ? FindCreature(Id) : nullptr;
      if (Creature == nullptr || !Creature->Walking || Creature->WalkDuration == 0) continue;
      int& Seen = m_LastWalkEnd[Id];
      if (Creature->WalkEndTime == Seen) continue;
      Seen = Creature->WalkEndTime;
      const bool Predicted = IsPlayer(*Creature) && (Walk.PredictedDx != 0 || Walk.PredictedDy != 0);
      const TPosition To{Creature->X + (Predicted ? Walk.PredictedDx : 0),
                         Creature->Y + (Predicted ? Walk.PredictedDy : 0), Creature->Z};
      m_Seen.push_back({Id, To, Creature->WalkEndTime, Creature->WalkEndTime - Creature->WalkDuration, Predicted});
    }
  }

  int MonstersWithSteps(int Steps) const {
    std::map<std::uint32_t, int> Count;
    for (const TClientStep& Step : m_Seen)
      if (Step.Creature >= FIRST_MONSTER_ID) ++Count[Step.Creature];
    return static_cast<int>(std::count_if(Count.begin(), Count.end(), [&](const auto& C) { return C.second >= Steps; }));
  }

  int PlayerSteps() const {
    return static_cast<int>(std::count_if(m_Seen.begin(), m_Seen.end(),
                                          [](const TClientStep& S) { return S.Creature == GetPlayerID(); }));
  }

  std::string ServerLog() const { return m_Server->Log(); }

  std::unique_ptr<CLocalServer> m_Server;
  bool m_GameView = false;
  int m_NextTick = 0;
  int m_NextLogRead = 0;
  std::set<std::uint32_t> m_Walkers;
  std::map<std::uint32_t, int> m_LastWalkEnd;
  std::vector<TClientStep> m_Seen;
  int m_GoPathSent = -1;
};

TEST_F(CreatureTimingTest, ArrivalsMatchTheServersStepsWithinABeat) {
  StartServer();
  StartClient();
  ASSERT_TRUE(RunUntil(
      [] {
        const TCreature* Player = GetConnectionState() == GAME_RUNNING ? FindPlayer() : nullptr;
        return Player != nullptr && Player->OnMap;
      },
      10s))
      << ServerLog();
  const int Beat = GetSessionInfo().Beat;
  ASSERT_GT(Beat, 0);
  const TCreature& Player = *FindPlayer();
  ASSERT_EQ((TPosition{Player.X, Player.Y, Player.Z}), (TPosition{START_X, START_Y, START_Z}));

  // The monsters first, while both stay in view of the entry.
  ASSERT_TRUE(RunUntil([&] { return MonstersWithSteps(STEPS_PER_MONSTER) >= MONSTERS; }, 45s))
      << "monsters with " << STEPS_PER_MONSTER << " steps in view: " << MonstersWithSteps(STEPS_PER_MONSTER);

  // The local server sends no player numbers; a character with no hit points
  // would not step ahead of the server.
  SetHitPoints(100, 100);
  SetPathFinder(StraightPath);
  ASSERT_EQ(SetDestination(TARGET_X, TARGET_Y, START_Z, true, false), 1);
  m_GoPathSent = GetProgramTime();
  SendGoPath(GetWalkSteps());
  const bool Arrived =
      RunUntil([&] { return Player.X == TARGET_X && Player.Y == TARGET_Y && !Player.Walking; }, 15s);
  Observe();
  ASSERT_TRUE(Arrived) << "player steps " << PlayerSteps();
  EXPECT_EQ(PlayerSteps(), PLAYER_STEPS);
  const std::string Log = ServerLog();
  EXPECT_EQ(Log.find("\"error\""), std::string::npos) << Log;

  // The offset of the client's clock from the server's is at least this.
  const TServerLogReading Server = ReadServerLog(Log);
  ASSERT_EQ(Server.GoPathTimes.size(), 1u);
  const std::int64_t Lowest = m_GoPathSent - Server.GoPathTimes.front();

  // Each step that the client saw, with the server's record of it. A step
  // that the server announced is the last one to that field that it took
  // before the client learnt of it; a predicted step is the first one after.
  std::vector<bool> Taken(Server.Steps.size(), false);
  std::vector<std::pair<TClientStep, TServerStep>> Pairs;
  for (const TClientStep& Seen : m_Seen) {
    std::optional<size_t> Found;
    for (size_t Index = 0; Index < Server.Steps.size(); ++Index) {
      const TServerStep& S = Server.Steps[Index];
      if (Taken[Index] || S.Creature != Seen.Creature || !(S.To == Seen.To)) continue;
      if (Seen.Predicted) {
        Found = Index;
        break;
      }
      if (S.Time <= Seen.Started - Lowest + GRAIN) Found = Index;
    }
    ASSERT_TRUE(Found.has_value()) << "no server step for creature " << Seen.Creature << " to " << Seen.To.X
                                   << "," << Seen.To.Y << "," << Seen.To.Z << " begun by " << Seen.Started
                                   << " less an offset of at least " << Lowest << "\n"
                                   << Log;
    Taken[*Found] = true;
    Pairs.emplace_back(Seen, Server.Steps[*Found]);
  }

  // And at most this.
  std::int64_t Highest = INT64_MAX;
  for (const auto& [Seen, Logged] : Pairs)
    if (!Seen.Predicted) Highest = std::min(Highest, Seen.Started - Logged.Time);
  ASSERT_LE(Lowest, Highest + GRAIN) << "the clocks are not tied";
  EXPECT_LT(Highest - Lowest, Beat) << "the messages bound the offset to less than a beat";

  for (const auto& [Seen, Logged] : Pairs) {
    const std::int64_t Difference = Seen.WalkEndTime - Logged.Ends;
    const auto Step = [&] {
      std::ostringstream Text;
      Text << "creature " << Seen.Creature << " to " << Seen.To.X << "," << Seen.To.Y << (Seen.Predicted ? ", predicted" : "")
           << ": client start " << Seen.Started << " end " << Seen.WalkEndTime << ", server start " << Logged.Time
           << " end " << Logged.Ends << ", offset from " << Lowest << " to " << Highest;
      return Text.str();
    };
    EXPECT_GE(Difference, Lowest - Beat) << Step();
    EXPECT_LE(Difference, Highest + Beat) << Step();
  }
}

}  // namespace
