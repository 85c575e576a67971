#pragma once
// The three directories and the names of the files the client touches.
#include <string>

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
// on demand. Temporary directory: $XDG_CACHE_HOME/Kelmo. Program errors 20 to 23.
void InitPaths(const std::string& UserDirectoryOption);

const std::string& GetProgramDirectory();
const std::string& GetUserDirectory();
const std::string& GetTemporaryDirectory();

std::string GetFileName(TFileKind Kind, bool Temporary);
bool FileExists(const std::string& Path);

// Installs the temporary file of a kind over its final place. False if there
// is no temporary file or it could not be moved.
bool ReplaceWithTemporary(TFileKind Kind);
