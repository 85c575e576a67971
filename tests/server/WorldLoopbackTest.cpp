// A wire client walks through the test world on loopback: it enters, steps,
// runs into water, goes down the stairs and up again, and hears the NPC. The
// messages are read here from their layout, with the field counts that the
// client's block gives, so that every byte of them is accounted for.
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "core/Clock.h"
#include "net/Communication.h"
#include "tests/server/TestWorld.h"
#include "tests/server/WireClient.h"
#include "tools/server/Server.h"
#include "tools/server/WorldFile.h"

namespace {

using namespace testing_server;

const TSessionKey GAME_KEY = MakeSessionKey(0x80);
constexpr std::uint32_t AYLA = 1000;

struct TReadField {
  std::vector<int> Types;
  std::vector<std::uint32_t> Creatures;
};

// The messages of one payload, read as the client reads them; it follows the
// map position to know how many fields a description has.
class TWorldReader {
 public:
  explicit TWorldReader(const server::TObjectTypes& Types) : m_Types(Types) {}

  // The message types in order; fails the test on anything left over.
  std::vector<int> Read(const TBytes& Payload) {
    TReadBuffer In(Payload.data(), static_cast<int>(Payload.size()));
    std::vector<int> Types;
    Areas.clear();
    while (In.Position < In.Size) {
      const int Type = In.ReadU8();
      Types.push_back(Type);
      Area.clear();
      Message(Type, In);
      Areas.push_back(Area);
    }
    return Types;
  }

  int X = 0, Y = 0, Z = 0;
  std::vector<TReadField> Area;  // of the last description
  std::vector<std::vector<TReadField>> Areas;  // of each message of the last payload
  std::uint32_t Statement = 0;   // of the last STALK
  std::string Speaker;
  std::string Text;
  int HitPoints = 0;              // of the last SPLAYERDATACURRENT
  int Brightness = -1;            // of the last SAMBIENTE

 private:
  int Floors() const { return Z <= 7 ? 8 : std::min(Z + 2, 15) - (Z - 2) + 1; }

  void Message(int Type, TReadBuffer& In) {
    switch (Type) {
      case 15:
        return;
      case 130:  // daylight
        Brightness = In.ReadU8();
        In.ReadU8();
        return;
      case 160:  // the character's numbers: hit points, then 37 bytes of others
        HitPoints = In.ReadU16();
        for (int I = 0; I < 37; ++I) In.ReadU8();
        return;
      case 100:
        X = In.ReadU16(), Y = In.ReadU16(), Z = In.ReadU8();
        return ReadArea(In, 18 * 14 * Floors());
      case 101: --Y; return ReadArea(In, 18 * Floors());
      case 102: ++X; return ReadArea(In, 14 * Floors());
      case 103: ++Y; return ReadArea(In, 18 * Floors());
      case 104: --X; return ReadArea(In, 14 * Floors());
      case 190:
        ++X, ++Y, --Z;
        return ReadArea(In, 18 * 14 * (Z > 7 ? 1 : Z == 7 ? 6 : 0));
      case 191:
        --X, --Y, ++Z;
        return ReadArea(In, 18 * 14 * (Z > 8 ? (Z < 14 ? 1 : 0) : Z == 8 ? 3 : 0));
      case 106:
        In.ReadU16(), In.ReadU16(), In.ReadU8(), In.ReadU8();
        Area.assign(1, {});
        return Item(In, In.ReadU16(), Area[0]);
      case 108:
        In.ReadU16(), In.ReadU16(), In.ReadU8(), In.ReadU8();
        return;
      case 109:
        for (int I = 0; I < 2; ++I) In.ReadU16(), In.ReadU16(), In.ReadU8();
        In.ReadU8();
        return;
      case 170:
        Statement = In.ReadU32();
        Speaker = In.ReadNewString();
        In.ReadU16();
        EXPECT_EQ(In.ReadU8(), 1) << "said";
        In.ReadU16(), In.ReadU16(), In.ReadU8();
        Text = In.ReadNewString();
        return;
      case 181:
        In.ReadU8();
        return;
      default:
        ADD_FAILURE() << "unexpected message " << Type;
        In.Position = In.Size;
    }
  }

  void ReadArea(TReadBuffer& In, int Count) {
    Area.assign(static_cast<std::size_t>(Count), {});
    int Skip = 0;
    for (TReadField& Field : Area) {
      if (Skip > 0) {
        --Skip;
        continue;
      }
      if (const int Head = In.ReadU16(); Head >= 0xFF00) {
        Skip = Head - 0xFF00;
        continue;
      }
      int Type = In.ReadU16();
      for (; Type < 0xFF00; Type = In.ReadU16()) Item(In, Type, Field);
      Skip = Type - 0xFF00;
    }
    EXPECT_EQ(Skip, 0) << "a skip beyond the area";
  }

  void Item(TReadBuffer& In, int Type, TReadField& Field) {
    if (Type == 99) {
      Field.Creatures.push_back(In.ReadU32());
      In.ReadU8(), In.ReadU8();
    } else if (Type == 97) {
      In.ReadU32();
      Field.Creatures.push_back(In.ReadU32());
      In.ReadU8();
      In.ReadNewString();
      In.ReadU8(), In.ReadU8();
      if (In.ReadU16() == 0)
        In.ReadU16();
      else
        for (int I = 0; I < 5; ++I) In.ReadU8();
      In.ReadU16(), In.ReadU8(), In.ReadU8(), In.ReadU16();
      for (int I = 0; I < 6; ++I) In.ReadU8();
      In.ReadU16(), In.ReadU8();
    } else {
      In.ReadU8();
      if (m_Types.HasData(Type)) In.ReadU8();
      if (m_Types.Object(Type).Phases > 1) In.ReadU8();
      Field.Types.push_back(Type);
    }
  }

  const server::TObjectTypes& m_Types;
};

class WorldLoopback : public testing::Test {
 protected:
  void SetUp() override {
    SetClockSource(Clock);
    server::TServerSettings Settings;
    Settings.LoginPort = 0;
    Settings.GamePort = 0;
    Settings.Seed = 5;
    Server = std::make_unique<server::TServer>(
        Settings, server::LoadAccountBook(std::filesystem::path(KELMO_SERVER_DATA_DIR) / "accounts.txt"),
        server::LoadRsaKey(TestKeyFile()), Log, server::LoadWorld(TestWorldFile(), Types));
  }
  void TearDown() override {
    Clients.clear();
    Server.reset();
    SetClockSource(nullptr);
  }

  template <typename TCondition>
  bool StepUntil(TCondition Done) {
    const auto Deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (!Done()) {
      if (std::chrono::steady_clock::now() > Deadline) return false;
      Server->Step();
    }
    return true;
  }

  TBytes NextPayload(CTestClient& Client, const TSessionKey* Key) {
    std::optional<TBytes> Packet;
    EXPECT_TRUE(StepUntil([&] { return (Packet = Client.TakePacket()).has_value(); })) << "no packet came";
    if (!Packet) return {};
    if (Key == nullptr) return OpenServerPacket(*Packet, nullptr);
    const TXTEASymmetricKey Cipher = XteaKey(*Key);
    return OpenServerPacket(*Packet, &Cipher);
  }

  // Steps a while of real time in which nothing must come.
  void ExpectNothing(CTestClient& Client) {
    const auto End = std::chrono::steady_clock::now() + std::chrono::milliseconds(100);
    while (std::chrono::steady_clock::now() < End) Server->Step();
    EXPECT_TRUE(Client.Inbox.empty());
  }

  void SendCommand(CTestClient& Client, const TBytes& Payload) {
    Client.SendBytes(EncipheredPacket(Payload, XteaKey(GAME_KEY)));
  }

  // Logs in and sends CENTERWORLD.
  CTestClient& Enter(const std::string& Character = "Ayla") {
    auto& Client = *Clients.emplace_back(std::make_unique<CTestClient>());
    EXPECT_TRUE(Client.ConnectTo(Server->GamePort()));
    EXPECT_TRUE(StepUntil([&] { return Client.Connected; }));
    const TBytes Challenge = NextPayload(Client, nullptr);
    Client.SendBytes(
        PlainPacket(LoginGamePayload({GAME_KEY, 0, "demo", Character, "demo", LoadU32(Challenge, 1), Challenge[5]})));
    EXPECT_EQ(NextPayload(Client, &GAME_KEY).back(), 10) << "SPENDINGSTATEENTERED";
    SendCommand(Client, {15});
    return Client;
  }

  int LinesWith(const std::string& Text) const {
    return static_cast<int>(std::count_if(Lines.begin(), Lines.end(), [&](const std::string& Line) {
      return Line.find(Text) != std::string::npos;
    }));
  }

  std::vector<int> Receive(CTestClient& Client) { return Reader.Read(NextPayload(Client, &GAME_KEY)); }

  // The field (RX, RY) of the Layer-th floor of the last description of a whole block.
  const TReadField& Field(int Layer, int RX, int RY) const {
    return Reader.Area.at(static_cast<std::size_t>((Layer * 18 + RX) * 14 + RY));
  }

  static inline std::shared_ptr<const server::TObjectTypes> Types = DemoTypes();
  TWorldReader Reader{*Types};
  std::shared_ptr<TManualClock> Clock = std::make_shared<TManualClock>();
  std::vector<std::string> Lines;
  server::TServerLog Log{[this](const std::string& Line, bool IsError) {
    Lines.push_back(Line);
    EXPECT_FALSE(IsError) << Line;
  }};
  std::unique_ptr<server::TServer> Server;
  std::vector<std::unique_ptr<CTestClient>> Clients;
};

TEST_F(WorldLoopback, EnteringSendsTheWholeBlockWithThePlayerAndTheNpc) {
  CTestClient& Client = Enter();
  EXPECT_EQ(Receive(Client), (std::vector<int>{15, 160, 130, 100}));
  EXPECT_EQ(Reader.HitPoints, 185) << "the client walks ahead only with hit points";
  EXPECT_EQ(Reader.Brightness, 250);
  EXPECT_EQ(Reader.X, 103);
  EXPECT_EQ(Reader.Y, 101);
  EXPECT_EQ(Reader.Z, 7);
  EXPECT_EQ(Field(0, 8, 6).Types, (std::vector<int>{102}));
  EXPECT_EQ(Field(0, 8, 6).Creatures, (std::vector<std::uint32_t>{AYLA}));
  EXPECT_EQ(Field(0, 6, 6).Creatures, (std::vector<std::uint32_t>{0x40000000})) << "Tess at [101,101,7]";
  EXPECT_EQ(Field(0, 6, 8).Types, (std::vector<int>{100, 170})) << "the coins at [101,103,7]";
  EXPECT_EQ(Field(0, 5, 5).Types, (std::vector<int>{107, 116})) << "the wall at [100,100,7]";
  EXPECT_TRUE(Field(0, 4, 4).Types.empty()) << "nothing at [99,99,7]";
  EXPECT_EQ(Field(1, 8, 6).Types, std::vector<int>{}) << "no floor above";
}

TEST_F(WorldLoopback, StepsArePacedAndLogged) {
  CTestClient& Client = Enter();
  Receive(Client);
  SendCommand(Client, {102});  // east, onto grass
  EXPECT_EQ(Receive(Client), (std::vector<int>{109, 102}));
  EXPECT_EQ(Reader.X, 104);
  SendCommand(Client, {104});  // back west, onto the road
  ExpectNothing(Client);
  Clock->AdvanceMilliseconds(299);
  ExpectNothing(Client);
  Clock->AdvanceMilliseconds(1);
  EXPECT_EQ(Receive(Client), (std::vector<int>{109, 104}));
  EXPECT_EQ(Reader.X, 103);
  EXPECT_EQ(LinesWith("\"step\":{\"creature\":1000,\"from\":[103,101,7],\"to\":[104,101,7],\"ends\":300}"), 1);
  EXPECT_EQ(LinesWith("{\"time\":300,\"connection\":0,\"server\":\"game\",\"step\":{\"creature\":1000,"
                      "\"from\":[104,101,7],\"to\":[103,101,7],\"ends\":500}}"),
            1);
  EXPECT_EQ(LinesWith("\"command\":\"CGOEAST\""), 1);
  EXPECT_EQ(LinesWith("\"command\":\"CGOWEST\""), 1);
}

TEST_F(WorldLoopback, StepIntoWaterIsSnappedBack) {
  CTestClient& Client = Enter();
  Receive(Client);
  SendCommand(Client, {108});  // south-west: the pool
  EXPECT_EQ(NextPayload(Client, &GAME_KEY), (TBytes{181, 2})) << "SSNAPBACK, still facing south";
  EXPECT_EQ(LinesWith("\"step\""), 0);
}

TEST_F(WorldLoopback, DownTheStairsAndUpAgain) {
  CTestClient& Client = Enter();
  Receive(Client);
  SendCommand(Client, {100, 2, 8, 8});  // CGOPATH south-east twice: onto the stairs down
  EXPECT_EQ(Receive(Client), (std::vector<int>{109, 103, 102}));
  Clock->AdvanceMilliseconds(900);  // three times the diagonal step's time
  EXPECT_EQ(Receive(Client), (std::vector<int>{108, 191, 103, 103, 102, 102}))
      << "off the surface, the cellar's floors round [103,101,8], then the rows to the landing";
  EXPECT_EQ(Reader.X, 105);
  EXPECT_EQ(Reader.Y, 103);
  EXPECT_EQ(Reader.Z, 8);
  const TReadField& Landing = Reader.Areas.at(1).at((0 * 18 + 10) * 14 + 8);
  EXPECT_EQ(Landing.Creatures, (std::vector<std::uint32_t>{AYLA})) << "the player, known, at [105,103,8]";
  EXPECT_EQ(Landing.Types, (std::vector<int>{108}));

  Clock->AdvanceMilliseconds(600);
  SendCommand(Client, {104});  // west onto the stairs up, which lead to [103,103,7]
  EXPECT_EQ(Receive(Client), (std::vector<int>{109, 190, 101, 104, 104, 104}));
  EXPECT_EQ(Reader.X, 103);
  EXPECT_EQ(Reader.Y, 103);
  EXPECT_EQ(Reader.Z, 7);
  EXPECT_EQ(LinesWith("\"to\":[105,103,8]"), 1);
  EXPECT_EQ(LinesWith("\"from\":[105,103,8],\"to\":[103,103,7]"), 1);
}

// Borin enters next to Ayla's start, steps and leaves: Ayla sees all of it.
TEST_F(WorldLoopback, OtherPlayersAppearMoveAndGo) {
  CTestClient& Ayla = Enter();
  Receive(Ayla);
  CTestClient& Borin = Enter("Borin");
  EXPECT_EQ(Receive(Borin), (std::vector<int>{15, 160, 130, 100}));
  EXPECT_EQ(Reader.X, 104) << "the start is taken, and a wall north of it: the field east";
  EXPECT_EQ(Receive(Ayla), (std::vector<int>{106}));
  EXPECT_EQ(Reader.Area.at(0).Creatures, (std::vector<std::uint32_t>{1001}));
  SendCommand(Borin, {102});
  EXPECT_EQ(Receive(Ayla), (std::vector<int>{109}));
  Receive(Borin);
  SendCommand(Borin, {20});
  EXPECT_EQ(Receive(Ayla), (std::vector<int>{108}));
  EXPECT_EQ(LinesWith("\"error\""), 0);
}

TEST_F(WorldLoopback, TheNpcTalksAtItsInterval) {
  CTestClient& Client = Enter();
  Receive(Client);
  Clock->AdvanceMilliseconds(4999);
  ExpectNothing(Client);
  Clock->AdvanceMilliseconds(1);
  EXPECT_EQ(Receive(Client), (std::vector<int>{170}));
  EXPECT_EQ(Reader.Speaker, "Tess");
  EXPECT_EQ(Reader.Text, "Fine weather.") << "the first line was said before anyone came";
  EXPECT_EQ(Reader.Statement, 2u);
}

}  // namespace
