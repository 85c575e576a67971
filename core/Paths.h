#pragma once
// The three directories and the names of the files the client touches.
#include <compare>
#include <string>
#include <vector>

enum class TFileKind : int {
  PROGRAM = 0,
  PATCHER = 1,
  ERROR_DISPLAY = 2,
  OBJECT_TYPES = 3,
  SPRITES = 4,
  PICTURES = 5,
  CONFIGURATION = 6,
  ERROR_FILE = 8,
  EXPORT = 9,
};

// Program directory: the current directory. User directory: the option if
// given (relative to the program directory), else $XDG_DATA_HOME/Kelmo, created
// on demand with its Automap folder. Temporary directory: $XDG_CACHE_HOME/Kelmo.
// Program errors 20 to 23.
void InitPaths(const std::string& UserDirectoryOption);

const std::string& GetProgramDirectory();
const std::string& GetUserDirectory();
const std::string& GetTemporaryDirectory();

std::string GetFileName(TFileKind Kind, bool Temporary);
std::string GetAutomapFileName(int SectorX, int SectorY, int SectorZ);
std::string GetChatLogFileName(const std::string& ChatName);
bool FileExists(const std::string& Path);

struct TAutomapSector {
  int X, Y, Z;
  auto operator<=>(const TAutomapSector&) const = default;
};
// The automap sectors that have a file, in ascending order.
std::vector<TAutomapSector> ListAutomapFiles();

// Installs the downloaded temporary file of a kind over its final place. The
// final file is replaced in one step, so it is never missing or half-written:
// a failure leaves the old one. Fails with "temporary file does not exist" or
// "outdated file does not exist"; false if the move itself failed.
bool ReplaceWithTemporary(TFileKind Kind);
