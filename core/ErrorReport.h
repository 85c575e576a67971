#pragma once
// Failure reports: the program error box, the Error.txt entry of an exception,
// and the entries read back from Error.txt at the next start.
#include <array>
#include <cstdint>
#include <exception>
#include <functional>
#include <iosfwd>
#include <optional>
#include <source_location>
#include <string>
#include <vector>

#include "core/Exception.h"

// What the layers above know about the moment of failure. Each layer fills in
// its own sources at start; a missing source leaves its line out or writes the
// neutral text of the report format. Every source may throw: the report guards
// each step.
struct TReportSources {
  // Run by FailureDialog before the box: close the socket, leave full screen,
  // release the surface, hide the window.
  std::function<void()> CloseSocket;
  std::function<void()> ReleaseDisplay;

  std::function<std::string()> GraphicEngine;    // name and version data
  std::function<std::string()> OperatingSystem;  // name and " in " and mode
  std::function<std::string()> Processor;
  std::function<std::string()> VideoCard;
  std::function<std::vector<int>()> LastCommands;  // oldest first
  std::function<bool()> MainWindowExists;
  std::function<std::array<std::uint8_t, 16>()> LastPacket;
  std::function<std::optional<std::array<int, 3>>()> PlayerPosition;
  // Character name and world name, if a character is active.
  std::function<std::optional<std::array<std::string, 2>>()> PlayerName;
  std::function<std::string()> GameServerAddress;  // "host:port"
};

TReportSources& ReportSources();

// Set by the first report; a later report shows nothing.
bool IsFatalErrorReported();

std::string GetProgramErrorText(int Code);
std::string GetProgramErrorAdvice(int Code);
// The text of the program error box: text, " (Error Code N)", a blank line, advice.
std::string GetProgramErrorMessage(int Code);

// Show the box and end the program with exit code 1; returns at once, without
// showing anything, if a report was already made.
void ReportProgramError(PROGRAM_ERROR Code);
// Append the report to Error.txt, show the box, end with exit code 1. Returns
// at once if a report was already made.
void ReportException(const std::exception& Exception);
// A crash signal: the entry of ReportException with the fault's description,
// then the program error box of Code; ends with exit code 1, at once and
// silently if a report was already made.
[[noreturn]] void ReportCrash(PROGRAM_ERROR Code, const std::string& Description);
// The handler for platform::InstallCrashSignals: SIGSEGV is program error 34,
// SIGBUS 35; the entry tells the kind of access and the address.
[[noreturn]] void ReportCrashSignal(int Signal, const void* Address, bool Write);
// For a catch (...) block at the top of the program: reports whatever is being
// caught with the function that fits it, and so ends the program (unless a
// report was made before).
void ReportCurrentException(std::source_location Where = std::source_location::current());
// Releases socket and display, shows the box, ends with exit code 1.
[[noreturn]] void FailureDialog(const std::string& Text, const std::string& Title);

struct TErrorEntry {
  std::string Title;    // at most 63 characters
  std::string Date;     // at most 25
  std::string Lines;    // at most 2047, the report's lines joined
  std::string Comment;  // at most 511
};

// Reads Error.txt of the user directory, if there is one, into the entry list.
void ScanErrorFile();
// The entries of an error file's text.
std::vector<TErrorEntry> ReadErrorEntries(std::istream& File);
const std::vector<TErrorEntry>& GetErrorEntries();
void SetErrorComment(int Index, const std::string& Comment);
// Empties the list and deletes Error.txt.
void ClearErrorEntries();
