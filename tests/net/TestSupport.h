#pragma once
// What the transport's tests share: the failure text of an action, and a
// fixture that runs each test on a freshly started module.
#include <gtest/gtest.h>

#include <string>

#include "core/Exception.h"
#include "net/Communication.h"
#include "net/Connection.h"

namespace testing_net {

// The text of the TMyException that the action raises, or "(no failure)".
template <typename TAction>
std::string FailureText(TAction&& Action) {
  try {
    Action();
  } catch (const TMyException& E) {
    return E.Text();
  }
  return "(no failure)";
}

class TNetworkTest : public testing::Test {
 protected:
  void SetUp() override {
    InitNetwork();
    SetConnectionState(GAME_RUNNING);
  }
  void TearDown() override {
    ExitNetwork();
    SetConnectionState(OFFLINE);
  }
};

}  // namespace testing_net
