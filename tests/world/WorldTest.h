#pragma once
// What the world tests share: a manual clock and a fixed source of chance.
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "core/Clock.h"
#include "core/Exception.h"
#include "world/Animation.h"

namespace testing_world {

// The whole report of the failure that the action raises, the chain of
// guards included, or "(no failure)".
template <typename TAction>
std::string FailureReport(TAction&& Action) {
  try {
    Action();
  } catch (const TMyException& E) {
    return E.what();
  }
  return "(no failure)";
}

class TTimedTest : public testing::Test {
 protected:
  void SetUp() override {
    SetClockSource(m_Clock);
    SetAnimationRandomSource([this] { return m_Random; });
  }
  void TearDown() override {
    SetAnimationRandomSource({});
    SetClockSource(nullptr);
  }

  void Advance(int Milliseconds) { m_Clock->AdvanceMilliseconds(Milliseconds); }
  std::uint32_t Now() const { return static_cast<std::uint32_t>(GetProgramTime()); }
  // What the random source answers from now on.
  void SetRandom(std::uint32_t Value) { m_Random = Value; }

 private:
  std::shared_ptr<TManualClock> m_Clock = std::make_shared<TManualClock>();
  std::uint32_t m_Random = 0;
};

// A fresh directory per test, removed afterwards.
class TFileTest : public testing::Test {
 protected:
  void SetUp() override {
    const testing::TestInfo* Test = testing::UnitTest::GetInstance()->current_test_info();
    m_Root = std::filesystem::path(testing::TempDir()) /
             ("kelmo-world-" + std::to_string(getpid())) /
             (std::string(Test->test_suite_name()) + "." + Test->name());
    std::filesystem::create_directories(m_Root);
  }
  void TearDown() override { std::filesystem::remove_all(m_Root.parent_path()); }

  std::filesystem::path File(const std::string& Name) const { return m_Root / Name; }
  const std::filesystem::path& Root() const { return m_Root; }

 private:
  std::filesystem::path m_Root;
};

}  // namespace testing_world
