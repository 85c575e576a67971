// The client's world code against the real local server with the demo world,
// on loopback: it signs in, receives the map round the start, walks, falls
// through the hole into the cave and climbs the stairs back out. The loop is
// the client's own without a window.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "app/AutoLogin.h"
#include "app/MainLoop.h"
#include "app/Messages.h"
#include "core/Clock.h"
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
#include "world/PlayerMessages.h"
#include "world/WorldMessages.h"

namespace {

using namespace harness;

// Step codes of a path.
constexpr int EAST = 1;
constexpr int NORTH = 3;
constexpr int WEST = 5;
constexpr int SOUTH = 7;

struct TPlace {
  int X = 0, Y = 0, Z = 0;
  bool operator==(const TPlace&) const = default;
};

std::ostream& operator<<(std::ostream& Out, const TPlace& P) {
  return Out << '[' << P.X << ',' << P.Y << ',' << P.Z << ']';
}

// Places in the demo world.
constexpr TPlace START{32000, 32000, 7};
constexpr TPlace UNDER_THE_HOLE{31999, 32003, 8};    // the hole is right above
constexpr TPlace ABOVE_THE_STAIRS{31994, 32005, 7};  // one field on from the cave's stairs up
constexpr int HOLE = 141;                            // its object type

class WorldIntegrationTest : public CHeadlessClientTest {
 protected:
  WorldIntegrationTest() {
    setenv("KELMO_LOGIN_HOSTS", ("127.0.0.1:" + std::to_string(Server.LoginPort())).c_str(), 1);
    setenv("KELMO_AUTOLOGIN", "demo:demo:Ayla", 1);
    StartModules(true);
  }

  static TPlace MapPosition() {
    TPlace Place;
    GetMapPosition(Place.X, Place.Y, Place.Z);
    return Place;
  }

  // Walks the route and waits until the map position is the destination, the
  // field that the last step leads to. A monster may stand in the way: the
  // server refuses that step, and once the player has stood still for a while
  // the rest of the route goes out again.
  void Walk(const std::vector<int>& Steps, const TPlace& Destination) {
    const std::vector<TPlace> Route = Fields(MapPosition(), Steps);
    for (int Try = 0; Try < 10 && MapPosition() != Destination; ++Try) {
      const auto At = std::find(Route.begin(), Route.end(), MapPosition());
      ASSERT_NE(At, Route.end()) << "off the route at " << MapPosition();
      SendGoPath({Steps.begin() + (At - Route.begin()), Steps.end()});
      TPlace Last = MapPosition();
      auto Moved = std::chrono::steady_clock::now();
      RunUntil([&] {
        if (MapPosition() != Last) {
          Last = MapPosition();
          Moved = std::chrono::steady_clock::now();
        }
        return MapPosition() == Destination || std::chrono::steady_clock::now() - Moved > 2s;
      });
    }
    EXPECT_EQ(MapPosition(), Destination) << Server.Log();
  }

  // The fields on which each step of the route begins.
  static std::vector<TPlace> Fields(TPlace From, const std::vector<int>& Steps) {
    std::vector<TPlace> Route;
    for (const int Step : Steps) {
      Route.push_back(From);
      From.X += Step == EAST ? 1 : Step == WEST ? -1 : 0;
      From.Y += Step == SOUTH ? 1 : Step == NORTH ? -1 : 0;
    }
    return Route;
  }

  // The player's field in the block has a ground at the bottom and the own
  // creature on it, and the creature's record is where the map is.
  void ExpectPlayerOnItsField() const {
    const int RZ = GetPlayerFloor();
    const TObject Ground = GetObject(8, 6, RZ, 0);
    EXPECT_TRUE(Ground.Type != 0 && GetObjectFlag(Ground.Type, BANK))
        << "no ground under the player at " << MapPosition() << ": " << Ground.Type;
    const std::uint32_t Own = GetSessionInfo().PlayerId;
    bool Found = false;
    for (int P = 0; P < GetObjectCount(8, 6, RZ); ++P) {
      const TObject Object = GetObject(8, 6, RZ, P);
      Found = Found || (Object.Type == CREATURE && Object.Data == Own);
    }
    EXPECT_TRUE(Found) << "the own creature is not on the player's field at " << MapPosition();
    const TCreature* Player = FindPlayer();
    ASSERT_NE(Player, nullptr);
    EXPECT_EQ((TPlace{Player->X, Player->Y, Player->Z}), MapPosition());
    EXPECT_TRUE(Player->OnMap);
  }

  CLocalServer Server{Home.Root(), {}, {"--world", KELMO_DEMO_WORLD}};
};

TEST_F(WorldIntegrationTest, EntersTheDemoWorldWalksAndChangesFloors) {
  StartAutoLogin();
  ASSERT_TRUE(RunUntil([] { return GetConnectionState() == GAME_RUNNING && MapPosition() == START; }))
      << "map position " << MapPosition() << "\n"
      << Server.Log();
  ExpectPlayerOnItsField();

  // Round a square: each step comes back as the server's move.
  Walk({EAST}, {START.X + 1, START.Y, START.Z});
  ExpectPlayerOnItsField();
  Walk({SOUTH}, {START.X + 1, START.Y + 1, START.Z});
  Walk({WEST}, {START.X, START.Y + 1, START.Z});
  Walk({NORTH}, START);
  ExpectPlayerOnItsField();

  // Through the hole by the road into the cave.
  Walk({SOUTH, SOUTH, WEST, SOUTH}, UNDER_THE_HOLE);
  EXPECT_EQ(GetPlayerFloor(), 2);
  ExpectPlayerOnItsField();
  // The surface is now the floor above, one field up and to the left.
  EXPECT_EQ(GetObject(7, 5, 3, 0).Type, HOLE);

  // Out by the cave's stairs up, which lead one field on beyond them.
  Walk({SOUTH, SOUTH, WEST, WEST, WEST, WEST}, ABOVE_THE_STAIRS);
  EXPECT_EQ(GetPlayerFloor(), 0);
  ExpectPlayerOnItsField();

  const std::string Log = Server.Log();
  EXPECT_NE(Log.find("CGOEAST"), std::string::npos) << Log;
  EXPECT_NE(Log.find("CGOPATH"), std::string::npos) << Log;
  EXPECT_NE(Log.find("SBOTTOMFLOOR"), std::string::npos) << Log;
  EXPECT_NE(Log.find("STOPFLOOR"), std::string::npos) << Log;
  EXPECT_EQ(Log.find("\"error\""), std::string::npos) << Log;
}

}  // namespace
