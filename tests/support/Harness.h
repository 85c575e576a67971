#pragma once
// A small harness for tests of the real programs: private directories, child
// processes with their own environment, a private X server, and waits for
// conditions with a time limit.
#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace harness {

using namespace std::chrono_literals;

// A fresh directory tree, removed at the end: a home with its XDG directories,
// a runtime directory, and a working directory for the program.
class CTestHome {
 public:
  CTestHome();
  ~CTestHome();
  CTestHome(const CTestHome&) = delete;
  CTestHome& operator=(const CTestHome&) = delete;

  const std::filesystem::path& Root() const { return m_Root; }
  std::filesystem::path UserDirectory() const { return m_Root / "data" / "Kelmo"; }
  std::filesystem::path WorkDirectory() const { return m_Root / "work"; }
  // XDG_DATA_HOME, XDG_CACHE_HOME, XDG_RUNTIME_DIR and HOME for a child.
  std::vector<std::string> Environment() const;
  // Copies the built data files into the working directory.
  void InstallDataFiles() const;

 private:
  std::filesystem::path m_Root;
};

class CProcess {
 public:
  // Starts Arguments[0] with the extra environment entries ("NAME=value") on
  // top of this process's, in WorkDirectory, with its standard output and
  // standard error in files.
  CProcess(const std::vector<std::string>& Arguments, const std::vector<std::string>& Environment,
           const std::filesystem::path& WorkDirectory);
  ~CProcess();
  CProcess(const CProcess&) = delete;
  CProcess& operator=(const CProcess&) = delete;

  pid_t Pid() const { return m_Pid; }
  void Signal(int Number) const;
  // The exit code, or 128 + signal number, once the process has ended.
  std::optional<int> WaitExit(std::chrono::milliseconds Limit);
  std::string StandardOutput() const;
  std::string StandardError() const;

 private:
  pid_t m_Pid = -1;
  std::optional<int> m_ExitCode;
  std::filesystem::path m_OutputFile;
  std::filesystem::path m_ErrorFile;
};

// A private X server on a display number of its own.
class CXServer {
 public:
  CXServer();
  ~CXServer();
  const std::string& Display() const { return m_Display; }

 private:
  bool StartOn(const std::string& Display);

  std::unique_ptr<CProcess> m_Process;
  std::string m_Display;
};

// The project's local server on free ports, logging to a file in Directory.
class CLocalServer {
 public:
  // Options go on the command line after the ports and the log, e.g.
  // {"--world", <file>}.
  explicit CLocalServer(const std::filesystem::path& Directory,
                        const std::vector<std::string>& Faults = {},
                        const std::vector<std::string>& Options = {});
  int LoginPort() const { return m_LoginPort; }
  int GamePort() const { return m_GamePort; }
  std::string Log() const;
  CProcess& Process() { return *m_Process; }

 private:
  int PortOf(const std::string& Kind) const;

  std::filesystem::path m_LogFile;
  std::unique_ptr<CProcess> m_Process;
  int m_LoginPort = 0;
  int m_GamePort = 0;
};

// Polls Condition until it holds or Limit has passed.
bool WaitFor(const std::function<bool()>& Condition, std::chrono::milliseconds Limit);
// Runs a command to its end and returns its standard output.
std::string RunCommand(const std::vector<std::string>& Arguments,
                       const std::vector<std::string>& Environment);
std::string ReadFile(const std::filesystem::path& Path);

}  // namespace harness
