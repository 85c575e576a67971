#pragma once
// The real client under a private X server, with a home of its own.
#include <gtest/gtest.h>

#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/Harness.h"

#ifndef KELMO_CLIENT
#error "KELMO_CLIENT must name the client program"
#endif

namespace harness {

class ClientTest : public ::testing::Test {
 public:
  ClientTest() { Home.InstallDataFiles(); }

  std::vector<std::string> Environment(const std::vector<std::string>& Extra) const {
    std::vector<std::string> Result = Home.Environment();
    Result.push_back("DISPLAY=" + X.Display());
    Result.push_back("KELMO_NONINTERACTIVE=1");
    Result.insert(Result.end(), Extra.begin(), Extra.end());
    return Result;
  }

  // The client with the command-line words and extra environment entries.
  std::unique_ptr<CProcess> StartClient(std::vector<std::string> Words = {},
                                        const std::vector<std::string>& ExtraEnvironment = {}) {
    Words.insert(Words.begin(), KELMO_CLIENT);
    return std::make_unique<CProcess>(Words, Environment(ExtraEnvironment), Home.WorkDirectory());
  }

  // The client's shown windows.
  std::vector<std::string> ClientWindows() const {
    std::istringstream Lines(
        RunCommand({"xdotool", "search", "--onlyvisible", "--class", "KelmoClient"}, {"DISPLAY=" + X.Display()}));
    std::vector<std::string> Windows;
    for (std::string Line; std::getline(Lines, Line);) {
      if (!Line.empty()) Windows.push_back(Line);
    }
    return Windows;
  }

  // The client windows once there are at least Count of them; fewer if they don't come.
  std::vector<std::string> WaitForWindows(size_t Count) {
    std::vector<std::string> Found;
    WaitFor(
        [&] {
          Found = ClientWindows();
          return Found.size() >= Count;
        },
        20s);
    if (Found.size() < Count) ReportWindowTree();
    return Found;
  }

  // What the X server holds when the client's windows do not show.
  void ReportWindowTree() const {
    std::cerr << RunCommand({"sh", "-c",
                             "echo windows of class KelmoClient, shown or not:; "
                             "xdotool search --class KelmoClient 2>&1; xwininfo -root -tree 2>&1"},
                            {"DISPLAY=" + X.Display()});
  }

  std::string Xdotool(const std::string& Command, const std::string& Window) const {
    return RunCommand({"xdotool", Command, Window}, {"DISPLAY=" + X.Display()});
  }

  CXServer X;
  CTestHome Home;
};

}  // namespace harness
