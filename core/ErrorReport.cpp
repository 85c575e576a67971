#include "core/ErrorReport.h"

#include <algorithm>
#include <cinttypes>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <istream>
#include <optional>

#include "core/Paths.h"
#include "core/Version.h"
#include "platform/MessageBox.h"

namespace {

// Where the advice of an unknown program error sends the user; set per deployment.
constexpr const char* SUPPORT_ADDRESS = "support@kelmo.example";

constexpr std::size_t MESSAGE_LENGTH = 1023;  // texts and advices fill 1024-byte buffers
constexpr std::size_t LINE_LENGTH = 1023;     // the scan's line buffer holds 1024 bytes
constexpr std::size_t TITLE_LENGTH = 63;
constexpr std::size_t DATE_LENGTH = 25;
constexpr std::size_t LINES_LENGTH = 2047;
constexpr std::size_t COMMENT_LENGTH = 511;
constexpr std::size_t ACTION_BYTES = 32;

constexpr const char* CRITICAL_ERROR_TEXT =
    "The Kelmo client encountered a critical error and had to be stopped.\r\n\r\n"
    "A detailed error report has been written to the error file which\r\n"
    "you are asked to submit at your next login.";

struct TErrorReportState {
  bool FatalErrorReported = false;
  TReportSources Sources;
  std::vector<TErrorEntry> Entries;
};

TErrorReportState& State() {
  static TErrorReportState Module;
  return Module;
}

// ---- Program error texts ----

constexpr const char* REINSTALL = "Please re-install the program.";
constexpr const char* RUN_AS_ADMINISTRATOR = "Please run Kelmo with full administration rights once.";
constexpr const char* CHOOSE_VIDEO_MODE = "Please choose another video graphics mode.";
constexpr const char* RESTART =
    "Please restart Kelmo. In case this problem occurs repeatedly\n"
    "please re-install the program.";

// Text and Advice may hold one "%s": the row's file name, the user directory.
struct TProgramError {
  int First;
  int Last;
  const char* Text;
  const char* Advice;
  std::optional<TFileKind> File = std::nullopt;
  bool Temporary = false;
};

const TProgramError PROGRAM_ERRORS[] = {
    {1, 1, "Cannot find file '%s'.", REINSTALL, TFileKind::OBJECT_TYPES},
    {2, 2, "Cannot find file '%s'.", REINSTALL, TFileKind::SPRITES},
    {3, 3, "Cannot find file '%s'.", REINSTALL, TFileKind::PICTURES},
    {4, 4, "Cannot open file '%s'.", REINSTALL, TFileKind::OBJECT_TYPES},
    {5, 5, "Cannot open file '%s'.", REINSTALL, TFileKind::SPRITES},
    {6, 6, "Cannot open file '%s'.", REINSTALL, TFileKind::PICTURES},
    {7, 7, "Cannot initialize Windows Sockets.", "Please check the network settings of your system."},
    {8, 8, "Cannot initialize DirectX.", "Please install DirectX version 5.0 or later."},
    {9, 9, "Too low color depth detected.",
     "Please switch to a graphics mode with a color depth of at least 16 bit."},
    {10, 12, "Cannot initialize video graphics mode.", CHOOSE_VIDEO_MODE},
    {13, 19, "Video surface allocation failed.", CHOOSE_VIDEO_MODE},
    {20, 20, "Cannot find application directory.", REINSTALL},
    {21, 21, "Cannot find directory for temporary files.",
     "Please ensure your operation system provides a directory\nfor common application data files."},
    {22, 22, "Cannot find user's application data directory.",
     "Please ensure your operation system provides a directory\nfor user specific application data files."},
    {23, 23, "Cannot create folder within user's application data directory.",
     "Please ensure you have 'write access' to your\nuser specific application data directory at\n'%s'"},
    {24, 24, "Cannot find file '%s'.", REINSTALL, TFileKind::PATCHER},
    {25, 25, "Cannot execute file '%s'.", REINSTALL, TFileKind::PATCHER},
    {26, 26, "Cannot rename file '%s'.", RUN_AS_ADMINISTRATOR, TFileKind::PATCHER},
    {27, 27, "Cannot rename file '%s'.", RUN_AS_ADMINISTRATOR, TFileKind::ERROR_DISPLAY, true},
    {28, 28, "The application is corrupted.", REINSTALL},
    {29, 29, "A Kelmo client is already running.", "You can run only one Kelmo client at once."},
    {30, 30, "Cannot open X Server display.", "Please ensure your X Server is running properly."},
    {31, 31, "X Server has no OpenGL extension.", "Please ensure your X Server features an OpenGL extension."},
    {32, 32, "X Server has no TrueColor.", "Please switch your X Server to TrueColor mode (24 or 32 bit)."},
    {33, 33, "Cannot create OpenGL context.", "Please install an accelerated graphic card driver."},
    {34, 34, "Segmentation Fault.", RESTART},
    {35, 35, "Bus Error.", RESTART},
    {36, 36, "Video surface allocation failed.",
     "Please avoid changing the screen resolution of Windows\nor other programs while Kelmo is running."},
};

const TProgramError* FindProgramError(int Code) {
  const auto Row = std::find_if(std::begin(PROGRAM_ERRORS), std::end(PROGRAM_ERRORS),
                                [Code](const TProgramError& E) { return E.First <= Code && Code <= E.Last; });
  return Row == std::end(PROGRAM_ERRORS) ? nullptr : Row;
}

std::string Limited(std::string Text, std::size_t Limit) {
  if (Text.size() > Limit) Text.resize(Limit);
  return Text;
}

// Puts Value in place of the first "%s" of Pattern.
std::string Filled(const char* Pattern, const std::string& Value) {
  std::string Text = Pattern;
  if (const auto At = Text.find("%s"); At != std::string::npos) Text.replace(At, 2, Value);
  return Limited(std::move(Text), MESSAGE_LENGTH);
}

// ---- Ending the program ----

[[noreturn]] void EndProcess() {
  // _Exit rather than exit: no destructors or exit handlers run on state that
  // may be what just failed, and it is safe inside the crash signal handler.
  std::fflush(nullptr);
  std::_Exit(1);
}

// False if a report was made before; the caller then shows nothing.
bool BeginReport() {
  if (State().FatalErrorReported) return false;
  State().FatalErrorReported = true;
  return true;
}

void RunGuarded(const std::function<void()>& Step) {
  if (!Step) return;
  try {
    Step();
  } catch (...) {
    // The program is ending with a report already; a second one would hide it.
  }
}

// ---- The Error.txt entry ----

using TLines = std::vector<std::string>;

std::string ErrorFilePath() {
  if (GetUserDirectory().empty()) return {};
  return GetFileName(TFileKind::ERROR_FILE, false);
}

std::string VersionText() {
  char Text[16];
  std::snprintf(Text, sizeof Text, "%d.%02d", VERSION_MAJOR, VERSION_MINOR);
  return Text;
}

// The date as the C runtime writes it, without asctime's line break.
std::string DateText() {
  const std::time_t Now = std::time(nullptr);
  const std::tm* Local = std::localtime(&Now);
  const char* Text = Local != nullptr ? std::asctime(Local) : nullptr;
  if (Text == nullptr) return "(unknown)";
  std::string Date = Text;
  if (!Date.empty() && Date.back() == '\n') Date.pop_back();
  return Date;
}

std::string Bytes(const std::vector<unsigned>& Values) {
  std::string Text;
  for (const unsigned Value : Values) {
    char Number[16];
    std::snprintf(Number, sizeof Number, " %03u", Value);
    Text += Number;
  }
  return Text;
}

std::string Known(const std::function<std::string()>& Source) {
  return Source ? Source() : "(unknown)";
}

TLines EngineLines(const TReportSources& S) {
  return {"Graphic Engine: " + (S.GraphicEngine ? S.GraphicEngine() : std::string("none"))};
}

TLines SystemLines(const TReportSources& S) {
  std::vector<unsigned> Commands;
  if (S.LastCommands)
    for (const int Command : S.LastCommands()) Commands.push_back(static_cast<unsigned>(Command));
  return {"Operating System: " + Known(S.OperatingSystem), "Processor: " + Known(S.Processor),
          "Video Card: " + Known(S.VideoCard), "Last Packet Types:" + Bytes(Commands)};
}

TLines ClientLines(const TReportSources& S) {
  TLines Lines;
  if (!S.MainWindowExists || !S.MainWindowExists()) return Lines;
  if (S.LastPacket) {
    const auto Packet = S.LastPacket();
    if (std::any_of(Packet.begin(), Packet.end(), [](std::uint8_t B) { return B != 0; }))
      Lines.push_back("Last Packet:" + Bytes(std::vector<unsigned>(Packet.begin(), Packet.end())));
  }
  if (const auto Position = S.PlayerPosition ? S.PlayerPosition() : std::nullopt) {
    const auto& [X, Y, Z] = *Position;
    Lines.push_back("Player Position: [" + std::to_string(X) + ", " + std::to_string(Y) + ", " +
                    std::to_string(Z) + "]");
  }
  return Lines;
}

TLines PlayerLines(const TReportSources& S) {
  TLines Lines;
  if (const auto Name = S.PlayerName ? S.PlayerName() : std::nullopt)
    Lines.push_back("Player Name: " + (*Name)[0] + " (" + (*Name)[1] + ")");
  const std::string Address =
      Limited(S.GameServerAddress ? S.GameServerAddress() : std::string(), ACTION_BYTES);
  std::vector<unsigned> Values;
  for (const char C : Address) Values.push_back(static_cast<unsigned char>(C));
  Lines.push_back("Player Action: " + Bytes(Values));
  return Lines;
}

// One step of the entry: its lines, or its failure line if a source threw.
TLines Guarded(TLines (*Step)(const TReportSources&), const char* FailureLine) {
  try {
    return Step(State().Sources);
  } catch (...) {
    return {FailureLine};
  }
}

void WriteErrorEntry(const std::string& What) {
  // A file that can't be opened is skipped; the box still comes.
  std::ofstream File;
  if (const std::string Path = ErrorFilePath(); !Path.empty()) File.open(Path, std::ios::app);
  // Each step goes to disk at once, so a crash inside the report keeps what came before.
  const auto Write = [&File](const TLines& Lines) {
    for (const std::string& Line : Lines) File << Line << '\n';
    File.flush();
  };
  Write({"+" + std::string(63, '-')});
  Write({"Debug Assertion " + VersionText() + " " + What});
  Write({DateText()});
  Write(Guarded(EngineLines, "Graphic Engine: (exception)"));
  Write(Guarded(SystemLines, "OutputControlErrorInformations: (exception)"));
  Write(Guarded(ClientLines, "OutputErrorInformations: (exception)"));
  Write(Guarded(PlayerLines, "Player Name: (exception)"));
  Write({std::string(64, '-')});
}

// ---- Reading Error.txt back ----

// The state machine of the scan: "+" opens an entry, whose first two lines are
// its title and date and the rest its report; "-" lines are frames.
class TErrorFileParser {
 public:
  void Take(const std::string& Line) {
    if (Line.starts_with('-')) return;
    if (Line.starts_with('+')) {
      m_Entries.emplace_back();
      m_State = 1;
      return;
    }
    switch (m_State) {
      case 0:
        return;
      case 1:
        m_Entries.back().Title = Limited(Line, TITLE_LENGTH);
        m_State = 2;
        return;
      case 2:
        m_Entries.back().Date = Limited(Line, DATE_LENGTH);
        m_State = 3;
        return;
      default:
        m_Entries.back().Lines = Limited(m_Entries.back().Lines + Line + '\n', LINES_LENGTH);
    }
  }

  std::vector<TErrorEntry> Entries() && { return std::move(m_Entries); }

 private:
  int m_State = 0;
  std::vector<TErrorEntry> m_Entries;
};

// A line as the line buffer holds it, marked if it didn't fit.
std::string Buffered(std::string Line) {
  if (!Line.empty() && Line.back() == '\r') Line.pop_back();
  if (Line.size() > LINE_LENGTH) Line = Limited(std::move(Line), LINE_LENGTH) + " (truncated input line)";
  return Line;
}

}  // namespace

TReportSources& ReportSources() { return State().Sources; }

bool IsFatalErrorReported() { return State().FatalErrorReported; }

std::string GetProgramErrorText(int Code) {
  const TProgramError* Row = FindProgramError(Code);
  if (Row == nullptr) return "Unknown error.";
  return Filled(Row->Text, Row->File ? GetFileName(*Row->File, Row->Temporary) : std::string());
}

std::string GetProgramErrorAdvice(int Code) {
  const TProgramError* Row = FindProgramError(Code);
  if (Row == nullptr)
    return std::string("Please send a detailed bug report including the error code number\nto ") +
           SUPPORT_ADDRESS + ".";
  return Filled(Row->Advice, GetUserDirectory());
}

std::string GetProgramErrorMessage(int Code) {
  return GetProgramErrorText(Code) + " (Error Code " + std::to_string(Code) + ")\r\n\r\n" +
         GetProgramErrorAdvice(Code);
}

void ReportProgramError(PROGRAM_ERROR Code) {
  if (!BeginReport()) return;
  FailureDialog(GetProgramErrorMessage(static_cast<int>(Code)), "Kelmo Error");
}

void ReportException(const std::exception& Exception) {
  if (!BeginReport()) return;
  WriteErrorEntry(Exception.what());
  FailureDialog(CRITICAL_ERROR_TEXT, "Kelmo Error - Debug Assertion");
}

void ReportCurrentException(std::source_location Where) {
  try {
    throw;
  } catch (PROGRAM_ERROR Code) {
    ReportProgramError(Code);
  } catch (const TMyException& E) {
    ReportException(E);
  } catch (const std::exception& E) {
    ReportException(TMyException(Where, "standard exception occurred", {}, E.what()));
  } catch (...) {
    ReportException(TMyException(Where, "exception occurred"));
  }
}

void ReportCrash(PROGRAM_ERROR Code, const std::string& Description) {
  // A crash on the way out of a report can't return into the fault.
  if (!BeginReport()) EndProcess();
  WriteErrorEntry(Description);
  FailureDialog(GetProgramErrorMessage(static_cast<int>(Code)), "Kelmo Error");
}

void ReportCrashSignal(int Signal, const void* Address, bool Write) {
  const PROGRAM_ERROR Code =
      Signal == SIGBUS ? PROGRAM_ERROR::BUS_ERROR : PROGRAM_ERROR::SEGMENTATION_FAULT;
  char Access[64];
  std::snprintf(Access, sizeof Access, " (%s attempt at 0x%" PRIxPTR ")", Write ? "write" : "read",
                reinterpret_cast<std::uintptr_t>(Address));
  ReportCrash(Code, GetProgramErrorText(static_cast<int>(Code)) + Access);
}

void FailureDialog(const std::string& Text, const std::string& Title) {
  State().FatalErrorReported = true;
  RunGuarded(State().Sources.CloseSocket);
  RunGuarded(State().Sources.ReleaseDisplay);
  platform::MessageBox(Title, Text, platform::TBoxIcon::FAILURE);
  EndProcess();
}

std::vector<TErrorEntry> ReadErrorEntries(std::istream& File) {
  TErrorFileParser Parser;
  std::string Line;
  for (;;) {
    std::getline(File, Line);
    if (File.bad()) {
      Parser.Take(Buffered(Line) + " (bad input file)");
      break;
    }
    if (File.fail()) break;
    Parser.Take(Buffered(Line));
  }
  return std::move(Parser).Entries();
}

void ScanErrorFile() {
  State().Entries.clear();
  const std::string Path = ErrorFilePath();
  if (Path.empty() || !FileExists(Path)) return;
  std::ifstream File(Path);
  State().Entries = ReadErrorEntries(File);
}

const std::vector<TErrorEntry>& GetErrorEntries() { return State().Entries; }

void SetErrorComment(int Index, const std::string& Comment) {
  std::vector<TErrorEntry>& Entries = State().Entries;
  const auto Count = static_cast<long long>(Entries.size());
  Check(Index >= 0 && Index < Count, "Index>=0&&Index<Count", {"Index", Index}, {"Count", Count});
  Entries[static_cast<std::size_t>(Index)].Comment = Limited(Comment, COMMENT_LENGTH);
}

void ClearErrorEntries() {
  State().Entries.clear();
  if (const std::string Path = ErrorFilePath(); !Path.empty()) {
    std::error_code Ignored;
    std::filesystem::remove(Path, Ignored);
  }
}
