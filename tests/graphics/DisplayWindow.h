#pragma once
// A private X server and one hidden 800 x 600 window for the whole test
// program: made before the first test, closed after the last. A test file
// registers it once at namespace scope:
//   const auto* const Display = testdisplay::RegisterDisplay("KelmoSomeTest");
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "platform/Window.h"
#include "tests/support/Harness.h"

namespace testdisplay {

inline platform::CWindow* TheWindow = nullptr;

inline platform::CWindow& TestWindow() { return *TheWindow; }

class CDisplayEnvironment : public ::testing::Environment {
 public:
  explicit CDisplayEnvironment(std::string Name) : m_Name(std::move(Name)) {}

  void SetUp() override {
    m_X = std::make_unique<harness::CXServer>();
    setenv("DISPLAY", m_X->Display().c_str(), 1);
    std::string Error;
    ASSERT_TRUE(platform::CWindow::InitDisplay(m_Name.c_str(), Error)) << Error;
    m_Window = std::make_unique<platform::CWindow>("Kelmo", 800, 600);
    ASSERT_TRUE(m_Window->IsValid());
    m_Window->Show(false);
    TheWindow = m_Window.get();
  }
  void TearDown() override {
    TheWindow = nullptr;
    m_Window.reset();
    platform::CWindow::ShutdownDisplay();
    m_X.reset();
  }

 private:
  std::string m_Name;
  std::unique_ptr<harness::CXServer> m_X;
  std::unique_ptr<platform::CWindow> m_Window;
};

inline ::testing::Environment* RegisterDisplay(const char* Name) {
  return ::testing::AddGlobalTestEnvironment(new CDisplayEnvironment(Name));
}

}  // namespace testdisplay
