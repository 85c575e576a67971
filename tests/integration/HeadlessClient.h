#pragma once
// The client without a window, for tests against the real local server: the
// process takes the test home's environment, starts the client's modules in
// the program's order and runs the client's own loop on demand. Message boxes
// are swallowed unless a test installs its own handler.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>

#include "app/MainLoop.h"
#include "app/Messages.h"
#include "core/Clock.h"
#include "core/MessageQueue.h"
#include "core/Paths.h"
#include "core/Preferences.h"
#include "core/ProgramState.h"
#include "net/AccountManager.h"
#include "net/ClientHooks.h"
#include "net/Communication.h"
#include "net/Connection.h"
#include "net/Login.h"
#include "net/Random.h"
#include "platform/MessageBox.h"
#include "tests/support/Harness.h"
#include "world/Creatures.h"
#include "world/Map.h"
#include "world/Objects.h"
#include "world/PlayerMessages.h"
#include "world/WorldMessages.h"

namespace harness {

class CHeadlessClientTest : public ::testing::Test, public IMessageHost {
 protected:
  CHeadlessClientTest() {
    for (const std::string& Entry : Home.Environment()) {
      const size_t Equals = Entry.find('=');
      setenv(Entry.substr(0, Equals).c_str(), Entry.substr(Equals + 1).c_str(), 1);
    }
    unsetenv("KELMO_NONINTERACTIVE");
    unsetenv("KELMO_AUTOLOGIN");
    unsetenv("KELMO_LOGIN_HOSTS");
    InitPaths("");
    SetClockSource(Clock);
    platform::SetMessageBoxHandler([](const std::string&, const std::string&, platform::TBoxIcon) {});
    ResetProgramState();
    MessageQueue().Clear();
  }

  ~CHeadlessClientTest() override {
    ClientHooks() = TClientHooks{};
    if (m_Started) {
      ExitLogin();
      ExitConnection();
      ExitNetwork();
      ExitPreferences();
      if (m_World) {
        ExitCreatures();
        ExitMap();
        ExitObjects();
      }
      ExitRandom();
    }
    platform::SetMessageBoxHandler(nullptr);
    SetClockSource(nullptr);
    MessageQueue().Clear();
    TAccountManager::getInstance().clearCharacters();
    unsetenv("KELMO_AUTOLOGIN");
    unsetenv("KELMO_LOGIN_HOSTS");
  }

  bool CanTakeMessages() const override { return true; }
  void Terminate(bool) override {}

  // The modules as the program starts them: the network and the sign-in, and
  // with World the object types, the map, the creatures and the readers of
  // the world's messages, which enter the game view when the server says so.
  void StartModules(bool World) {
    m_Started = true;
    m_World = World;
    InitRandom();
    if (World) {
      LoadObjects(KELMO_DATA_DIR "/Kelmo.dat");
      InitMap(CreatureLeftMap);
      InitCreatures();
    }
    InitPreferences();
    InitNetwork();
    SetPaddingSource(GetRandomByte);
    InitConnection();
    InitLogin(false);
    if (!World) return;
    InstallWorldMessageReaders();
    InstallPlayerMessageReaders();
    ClientHooks().EnterGameView = [](std::uint32_t) { PrepareWorldForGame(); };
  }

  // One pass of the loop on the manual clock: the network, the queue, and a
  // tick of 100 ms.
  void Step() {
    PollNetwork();
    Handler.Drain(MessageQueue());
    Clock->AdvanceMilliseconds(100);
    RunTimerTick();
  }

  bool RunUntil(const std::function<bool()>& Condition, std::chrono::milliseconds Limit = std::chrono::seconds(10)) {
    return WaitFor(
        [&] {
          Step();
          return Condition();
        },
        Limit);
  }

  CTestHome Home;
  std::shared_ptr<TManualClock> Clock = std::make_shared<TManualClock>();
  CMessageHandler Handler{*this};

 private:
  bool m_Started = false;
  bool m_World = false;
};

}  // namespace harness
