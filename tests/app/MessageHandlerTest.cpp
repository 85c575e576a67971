// The main step's handling of the internal queue.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "app/Messages.h"
#include "core/Exception.h"
#include "core/Paths.h"
#include "core/ProgramState.h"
#include "net/Connection.h"

namespace {

namespace fs = std::filesystem;

class FakeHost : public IMessageHost {
 public:
  bool CanTakeMessages() const override { return Open; }
  void Terminate(bool Patch) override {
    Open = false;
    ++Terminations;
    PatchRequested = Patch;
  }

  bool Open = true;
  int Terminations = 0;
  bool PatchRequested = false;
};

class MessageHandlerTest : public ::testing::Test {
 protected:
  MessageHandlerTest() {
    setenv("KELMO_NONINTERACTIVE", "1", 1);
    ResetProgramState();
    SetConnectionState(OFFLINE);
  }
  ~MessageHandlerTest() override { SetConnectionState(OFFLINE); }

  FakeHost Host;
  CMessageHandler Handler{Host};
  CMessageQueue Queue;
};

TEST_F(MessageHandlerTest, WaitOfflineHoldsEverythingBehindItUntilTheConnectionIsDown) {
  SetConnectionState(GAME_RUNNING);
  Queue.Post(MSG_WAIT_OFFLINE);
  Queue.Post(MSG_ACTION_7);
  Handler.Drain(Queue);
  ASSERT_EQ(Queue.Size(), 2);
  EXPECT_EQ(Queue.Front()->Type, MSG_WAIT_OFFLINE);
  EXPECT_EQ(GetActionState(), ACTIONSTATE_NONE);

  SetConnectionState(OFFLINE);
  Handler.Drain(Queue);
  EXPECT_TRUE(Queue.IsEmpty());
  EXPECT_EQ(GetActionState(), 7);
}

TEST_F(MessageHandlerTest, NothingIsTakenWhileTheHostCannotTakeMessages) {
  Host.Open = false;
  Queue.Post(MSG_ACTION_9);
  Handler.Drain(Queue);
  EXPECT_EQ(Queue.Size(), 1);
  EXPECT_EQ(GetActionState(), ACTIONSTATE_NONE);
}

TEST_F(MessageHandlerTest, ActionMessagesSetTheActionState) {
  Queue.Post(MSG_ACTION_9);
  Handler.Drain(Queue);
  EXPECT_EQ(GetActionState(), 9);
  Queue.Post(MSG_ACTION_10);
  Handler.Drain(Queue);
  EXPECT_EQ(GetActionState(), 10);
}

TEST_F(MessageHandlerTest, TerminateEndsTheDrainAndLeavesTheRestWaiting) {
  Queue.Post(MSG_TERMINATE);
  Queue.Post(MSG_ACTION_7);
  Handler.Drain(Queue);
  EXPECT_EQ(Host.Terminations, 1);
  EXPECT_FALSE(Host.PatchRequested);
  EXPECT_EQ(Queue.Size(), 1);
}

TEST_F(MessageHandlerTest, TalkFlushEndsThisStepsDrain) {
  Queue.Post(MSG_TALK_FLUSH);
  Queue.Post(MSG_ACTION_7);
  Handler.Drain(Queue);
  EXPECT_EQ(Queue.Size(), 1);
}

TEST_F(MessageHandlerTest, UnknownTypeFailsWithItsNumber) {
  Queue.Post(93);
  try {
    Handler.Drain(Queue);
    FAIL() << "no failure";
  } catch (const TMyException& E) {
    EXPECT_EQ(E.Text(), "unknown message type");
    ASSERT_EQ(E.Values().size(), 1u);
    EXPECT_EQ(E.Values()[0].Value, "93");
  }
  EXPECT_EQ(Handler.CurrentType(), 93);
}

TEST_F(MessageHandlerTest, ReportOfAKindIsDroppedUnlessAReportCameJustBefore) {
  ::testing::internal::CaptureStderr();
  Queue.Post(MSG_REPORT, 2);
  Handler.Drain(Queue);
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");

  ::testing::internal::CaptureStderr();
  Queue.Post(MSG_REPORT, 0);
  Queue.Post(MSG_REPORT, 2);
  Handler.Drain(Queue);
  const std::string Log = ::testing::internal::GetCapturedStderr();
  size_t Count = 0;
  for (size_t At = Log.find("MSG_REPORT"); At != std::string::npos; At = Log.find("MSG_REPORT", At + 1))
    ++Count;
  EXPECT_EQ(Count, 2u) << Log;
}

TEST_F(MessageHandlerTest, MessageBoxShowsTitleAndText) {
  ::testing::internal::CaptureStderr();
  Queue.Post(MSG_MESSAGEBOX, std::string("Connection failed"), std::string("No host answered."));
  Handler.Drain(Queue);
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "[Connection failed] No host answered.\n");
}

TEST_F(MessageHandlerTest, PatchExitAsksThenTerminatesForThePatchOnlyIfTheProgramWasStaged) {
  char Pattern[] = "/tmp/kelmo-messages-XXXXXX";
  const fs::path Root = mkdtemp(Pattern);
  setenv("XDG_DATA_HOME", (Root / "data").c_str(), 1);
  setenv("XDG_CACHE_HOME", (Root / "cache").c_str(), 1);
  InitPaths("");

  ::testing::internal::CaptureStderr();
  Queue.Post(MSG_PATCH_EXIT);
  EXPECT_THROW(Handler.Drain(Queue), PROGRAM_ERROR);
  EXPECT_NE(::testing::internal::GetCapturedStderr().find("[Updating] Kelmo will shut down now"),
            std::string::npos);
  EXPECT_EQ(Host.Terminations, 0);

  std::ofstream(GetFileName(TFileKind::PROGRAM, true)) << "staged";
  Queue.Post(MSG_TERMINATE_PATCH);
  Handler.Drain(Queue);
  EXPECT_EQ(Host.Terminations, 1);
  EXPECT_TRUE(Host.PatchRequested);
  fs::remove_all(Root);
}

}  // namespace
