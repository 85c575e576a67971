#include "core/Paths.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "core/Exception.h"
#include "platform/Files.h"

namespace fs = std::filesystem;

namespace {

struct TDirectories {
  std::string Program;
  std::string User;
  std::string Temporary;
};

TDirectories& Directories() {
  static TDirectories Known;
  return Known;
}

std::string WithoutTrailingSeparators(std::string Path) {
  while (Path.size() > 1 && (Path.back() == '/' || Path.back() == '\\' || Path.back() == ':'))
    Path.pop_back();
  return Path;
}

// $Variable if set and absolute, else $HOME/Fallback; empty when neither exists.
std::string XdgDirectory(const char* Variable, const char* Fallback) {
  const char* Value = std::getenv(Variable);
  if (Value != nullptr && Value[0] == '/') return Value;
  const char* Home = std::getenv("HOME");
  if (Home == nullptr || Home[0] == 0) return {};
  return (fs::path(Home) / Fallback).string();
}

// Stores the directory first, so that a failure's advice can name it.
void EnsureDirectory(std::string& Directory, const std::string& Path, PROGRAM_ERROR Failure) {
  Directory = WithoutTrailingSeparators(Path);
  std::error_code Error;
  fs::create_directories(Directory, Error);
  if (!fs::is_directory(Directory, Error)) throw Failure;
}

}  // namespace

void InitPaths(const std::string& UserDirectoryOption) {
  TDirectories& Dirs = Directories();
  Dirs = {};
  std::error_code Error;
  const fs::path Current = fs::current_path(Error);
  if (Error) throw PROGRAM_ERROR::NO_APPLICATION_DIRECTORY;
  Dirs.Program = WithoutTrailingSeparators(Current.string());

  std::string User = UserDirectoryOption;
  if (!User.empty()) {
    User = (Current / User).lexically_normal().string();
  } else {
    const std::string Data = XdgDirectory("XDG_DATA_HOME", ".local/share");
    if (Data.empty()) throw PROGRAM_ERROR::NO_USER_DIRECTORY;
    User = (fs::path(Data) / "Kelmo").string();
  }
  EnsureDirectory(Dirs.User, User, PROGRAM_ERROR::USER_FOLDER_NOT_CREATED);
  std::string Automap;
  EnsureDirectory(Automap, Dirs.User + "/Automap", PROGRAM_ERROR::USER_FOLDER_NOT_CREATED);

  const std::string Cache = XdgDirectory("XDG_CACHE_HOME", ".cache");
  if (Cache.empty()) throw PROGRAM_ERROR::NO_TEMPORARY_DIRECTORY;
  EnsureDirectory(Dirs.Temporary, (fs::path(Cache) / "Kelmo").string(),
                  PROGRAM_ERROR::NO_TEMPORARY_DIRECTORY);
}

const std::string& GetProgramDirectory() { return Directories().Program; }
const std::string& GetUserDirectory() { return Directories().User; }
const std::string& GetTemporaryDirectory() { return Directories().Temporary; }

std::string GetFileName(TFileKind Kind, bool Temporary) {
  const TDirectories& Dirs = Directories();
  struct TPlace {
    const std::string& Directory;
    const char* Name;
  };
  auto Place = [&]() -> TPlace {
    switch (Kind) {
      case TFileKind::PROGRAM:
        return Temporary ? TPlace{Dirs.Temporary, "Kelmo.bak"} : TPlace{Dirs.Program, "kelmo"};
      case TFileKind::PATCHER:
        return Temporary ? TPlace{Dirs.Temporary, "Patch.bak"} : TPlace{Dirs.Program, "Patch.exe"};
      case TFileKind::ERROR_DISPLAY:
        return {Dirs.Temporary, Temporary ? "Showerror.bak" : "impossible_file.txt"};
      case TFileKind::OBJECT_TYPES:
        return Temporary ? TPlace{Dirs.Temporary, "Kelmo_dat.bak"} : TPlace{Dirs.Program, "Kelmo.dat"};
      case TFileKind::SPRITES:
        return Temporary ? TPlace{Dirs.Temporary, "Kelmo_spr.bak"} : TPlace{Dirs.Program, "Kelmo.spr"};
      case TFileKind::PICTURES:
        return Temporary ? TPlace{Dirs.Temporary, "Kelmo_pic.bak"} : TPlace{Dirs.Program, "Kelmo.pic"};
      case TFileKind::CONFIGURATION:
        return {Dirs.User, Temporary ? "Kelmo.cfg.bak" : "Kelmo.cfg"};
      case TFileKind::ERROR_FILE:
        return Temporary ? TPlace{Dirs.Temporary, "impossible_file.txt"} : TPlace{Dirs.User, "Error.txt"};
      case TFileKind::EXPORT:
        return {Dirs.User, "Kelmo.exp"};
    }
    return {Dirs.Temporary, "unknown_file.txt"};
  }();
  return Place.Directory + "/" + Place.Name;
}

bool FileExists(const std::string& Path) {
  std::error_code Error;
  return fs::is_regular_file(Path, Error);
}

std::string GetAutomapFileName(int SectorX, int SectorY, int SectorZ) {
  char Name[32];
  std::snprintf(Name, sizeof Name, "%03d%03d%02d.map", SectorX, SectorY, SectorZ);
  return GetUserDirectory() + "/Automap/" + Name;
}

std::string GetChatLogFileName(const std::string& ChatName) {
  return GetUserDirectory() + "/" + ChatName + ".txt";
}

std::vector<TAutomapSector> ListAutomapFiles() {
  std::vector<TAutomapSector> Sectors;
  std::error_code Error;
  for (const auto& Entry : fs::directory_iterator(GetUserDirectory() + "/Automap", Error)) {
    const std::string Name = Entry.path().filename().string();
    TAutomapSector Sector{};
    char Rest = 0;
    if (Name.size() == 12 && Name.ends_with(".map") &&
        std::sscanf(Name.c_str(), "%3d%3d%2d.ma%c", &Sector.X, &Sector.Y, &Sector.Z, &Rest) == 4 &&
        Sector.X >= 0 && Sector.X < 256 && Sector.Y >= 0 && Sector.Y < 256 && Sector.Z >= 0 &&
        Sector.Z < 16) {
      Sectors.push_back(Sector);
    }
  }
  std::sort(Sectors.begin(), Sectors.end());
  return Sectors;
}

namespace {

// Copies Source beside Target and renames it over Target: the rename is one
// step, so Target is either the old file or the whole new one.
bool CopyOver(const std::string& Source, const std::string& Target) {
  const std::string Staged = Target + ".new";
  std::error_code Error;
  if (!fs::copy_file(Source, Staged, fs::copy_options::overwrite_existing, Error)) return false;
  platform::SyncFile(Staged);
  fs::rename(Staged, Target, Error);
  if (Error) fs::remove(Staged, Error);
  return !Error;
}

}  // namespace

bool ReplaceWithTemporary(TFileKind Kind) {
  const std::string Temporary = GetFileName(Kind, true);
  const std::string Final = GetFileName(Kind, false);
  if (!FileExists(Temporary)) ThrowException("temporary file does not exist", {{"FileName", Temporary}});
  if (!FileExists(Final)) ThrowException("outdated file does not exist", {{"FileName", Final}});
  std::error_code Error;
  fs::rename(Temporary, Final, Error);
  if (Error && !CopyOver(Temporary, Final)) return false;
  fs::remove(Temporary, Error);
  return true;
}
