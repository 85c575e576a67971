#include "tests/support/Harness.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <random>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <thread>

#ifndef KELMO_SERVER
#error "KELMO_SERVER must name the local server program"
#endif
#ifndef KELMO_DATA_DIR
#error "KELMO_DATA_DIR must name the folder of the built data files"
#endif

extern char** environ;

namespace harness {

namespace fs = std::filesystem;

namespace {

// This process's environment with the given entries replacing or adding.
std::vector<std::string> MergedEnvironment(const std::vector<std::string>& Extra) {
  std::map<std::string, std::string> Entries;
  auto Add = [&](const std::string& Entry) {
    const size_t Equals = Entry.find('=');
    if (Equals != std::string::npos) Entries[Entry.substr(0, Equals)] = Entry;
  };
  for (char** Entry = environ; *Entry != nullptr; ++Entry) Add(*Entry);
  for (const std::string& Entry : Extra) Add(Entry);
  std::vector<std::string> Result;
  for (auto& [Name, Entry] : Entries) Result.push_back(Entry);
  return Result;
}

std::vector<char*> Pointers(std::vector<std::string>& Texts) {
  std::vector<char*> Result;
  for (std::string& Text : Texts) Result.push_back(Text.data());
  Result.push_back(nullptr);
  return Result;
}

int DecodeStatus(int Status) {
  return WIFEXITED(Status) ? WEXITSTATUS(Status) : 128 + WTERMSIG(Status);
}

pid_t Spawn(const std::vector<std::string>& Arguments, const std::vector<std::string>& Environment,
            const fs::path& WorkDirectory, const fs::path& ErrorFile, const fs::path& OutputFile) {
  std::vector<std::string> Argv = Arguments;
  std::vector<std::string> Envp = MergedEnvironment(Environment);
  posix_spawn_file_actions_t Actions;
  posix_spawn_file_actions_init(&Actions);
  posix_spawn_file_actions_addchdir_np(&Actions, WorkDirectory.c_str());
  posix_spawn_file_actions_addopen(&Actions, 0, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&Actions, 1, OutputFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  posix_spawn_file_actions_addopen(&Actions, 2, ErrorFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  pid_t Pid = -1;
  const int Result = posix_spawnp(&Pid, Argv[0].c_str(), &Actions, nullptr, Pointers(Argv).data(),
                                  Pointers(Envp).data());
  posix_spawn_file_actions_destroy(&Actions);
  if (Result != 0) throw std::runtime_error("cannot start " + Argv[0]);
  return Pid;
}

fs::path UniqueTemporaryDirectory() {
  std::string Pattern = (fs::temp_directory_path() / "kelmo-test-XXXXXX").string();
  if (mkdtemp(Pattern.data()) == nullptr) throw std::runtime_error("mkdtemp failed");
  return Pattern;
}

}  // namespace

CTestHome::CTestHome() : m_Root(UniqueTemporaryDirectory()) {
  for (const char* Name : {"data", "cache", "runtime", "work"}) fs::create_directories(m_Root / Name);
  fs::permissions(m_Root / "runtime", fs::perms::owner_all);
}

CTestHome::~CTestHome() {
  std::error_code Error;
  fs::remove_all(m_Root, Error);
}

std::vector<std::string> CTestHome::Environment() const {
  return {"HOME=" + m_Root.string(), "XDG_DATA_HOME=" + (m_Root / "data").string(),
          "XDG_CACHE_HOME=" + (m_Root / "cache").string(),
          "XDG_RUNTIME_DIR=" + (m_Root / "runtime").string()};
}

void CTestHome::InstallDataFiles() const {
  for (const char* Name : {"Kelmo.dat", "Kelmo.spr", "Kelmo.pic"}) {
    fs::copy_file(fs::path(KELMO_DATA_DIR) / Name, WorkDirectory() / Name,
                  fs::copy_options::overwrite_existing);
  }
}

CProcess::CProcess(const std::vector<std::string>& Arguments,
                   const std::vector<std::string>& Environment, const fs::path& WorkDirectory)
    : m_ErrorFile(UniqueTemporaryDirectory() / "stderr.txt") {
  m_OutputFile = m_ErrorFile.parent_path() / "stdout.txt";
  m_Pid = Spawn(Arguments, Environment, WorkDirectory, m_ErrorFile, m_OutputFile);
}

CProcess::~CProcess() {
  if (!m_ExitCode) {
    Signal(SIGKILL);
    WaitExit(5s);
  }
  std::error_code Error;
  fs::remove_all(m_ErrorFile.parent_path(), Error);
}

void CProcess::Signal(int Number) const { kill(m_Pid, Number); }

std::optional<int> CProcess::WaitExit(std::chrono::milliseconds Limit) {
  WaitFor(
      [&] {
        int Status = 0;
        if (waitpid(m_Pid, &Status, WNOHANG) == m_Pid) m_ExitCode = DecodeStatus(Status);
        return m_ExitCode.has_value();
      },
      Limit);
  return m_ExitCode;
}

std::string CProcess::StandardOutput() const { return ReadFile(m_OutputFile); }
std::string CProcess::StandardError() const { return ReadFile(m_ErrorFile); }

// Xvfb's own choice of a free display races when tests start servers at the
// same moment, so each server gets a random display number of its own and
// another one if that number is taken.
CXServer::CXServer() {
  std::random_device Seed;
  std::uniform_int_distribution<int> Numbers(100, 30000);
  for (int Attempt = 0; Attempt < 20 && m_Display.empty(); ++Attempt) {
    const std::string Display = ":" + std::to_string(Numbers(Seed));
    if (StartOn(Display)) m_Display = Display;
  }
  if (m_Display.empty()) throw std::runtime_error("Xvfb did not start: " + m_Process->StandardError());
}

// Xvfb writes the display number to the descriptor once it accepts clients.
// It must not reset when its last client leaves: the reset closes every
// connection that comes in meanwhile, and a test's xdotool calls and a client
// starting come and go at any moment.
bool CXServer::StartOn(const std::string& Display) {
  int Pipe[2];
  if (pipe(Pipe) != 0) throw std::runtime_error("pipe failed");
  fcntl(Pipe[0], F_SETFD, FD_CLOEXEC);
  m_Process = std::make_unique<CProcess>(
      std::vector<std::string>{"Xvfb", Display, "-displayfd", std::to_string(Pipe[1]), "-screen",
                               "0", "1024x768x24", "-nolisten", "tcp", "-noreset"},
      std::vector<std::string>{}, fs::temp_directory_path());
  close(Pipe[1]);
  std::string Number;
  pollfd Poll{Pipe[0], POLLIN, 0};
  char C = 0;
  while (poll(&Poll, 1, 10000) > 0 && read(Pipe[0], &C, 1) == 1 && C != '\n') Number += C;
  close(Pipe[0]);
  return !Number.empty() && ":" + Number == Display;
}

CXServer::~CXServer() {
  m_Process->Signal(SIGTERM);
  m_Process->WaitExit(5s);
}

CLocalServer::CLocalServer(const fs::path& Directory, const std::vector<std::string>& Faults,
                           const std::vector<std::string>& Options)
    : m_LogFile(Directory / "server.log") {
  std::vector<std::string> Words = {KELMO_SERVER, "--login-port", "0", "--game-port", "0",
                                    "--log", m_LogFile.string()};
  Words.insert(Words.end(), Options.begin(), Options.end());
  for (const std::string& Fault : Faults) {
    Words.push_back("--fault");
    Words.push_back(Fault);
  }
  m_Process = std::make_unique<CProcess>(Words, std::vector<std::string>{}, Directory);
  WaitFor([&] { return PortOf("game") != 0; }, 10s);
  m_LoginPort = PortOf("login");
  m_GamePort = PortOf("game");
  if (m_GamePort == 0) throw std::runtime_error("the server did not start: " + m_Process->StandardError());
}

int CLocalServer::PortOf(const std::string& Kind) const {
  std::smatch Match;
  const std::string Output = m_Process->StandardOutput();
  if (!std::regex_search(Output, Match, std::regex(Kind + " port (\\d+)"))) return 0;
  return std::stoi(Match[1]);
}

std::string CLocalServer::Log() const { return ReadFile(m_LogFile); }

bool WaitFor(const std::function<bool()>& Condition, std::chrono::milliseconds Limit) {
  const auto Deadline = std::chrono::steady_clock::now() + Limit;
  while (!Condition()) {
    if (std::chrono::steady_clock::now() >= Deadline) return false;
    std::this_thread::sleep_for(20ms);
  }
  return true;
}

std::string RunCommand(const std::vector<std::string>& Arguments,
                       const std::vector<std::string>& Environment) {
  const fs::path Directory = UniqueTemporaryDirectory();
  const pid_t Pid = Spawn(Arguments, Environment, Directory, "/dev/null", Directory / "out.txt");
  int Status = 0;
  waitpid(Pid, &Status, 0);
  std::string Output = ReadFile(Directory / "out.txt");
  std::error_code Error;
  fs::remove_all(Directory, Error);
  return Output;
}

std::string ReadFile(const fs::path& Path) {
  std::ifstream File(Path, std::ios::binary);
  std::ostringstream Text;
  Text << File.rdbuf();
  return Text.str();
}

}  // namespace harness
