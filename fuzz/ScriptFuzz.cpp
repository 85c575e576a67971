#include "fuzz/ScriptFuzz.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "core/Exception.h"
#include "core/Paths.h"
#include "core/Preferences.h"
#include "core/Script.h"

namespace fs = std::filesystem;

namespace {

// Plain characters, so that the exit handler still finds the name.
std::array<char, 4096> UserDirectory{};

void RemoveUserDirectory() {
  std::error_code Error;
  fs::remove_all(UserDirectory.data(), Error);
}

void MakeUserDirectory() {
  if (UserDirectory[0] != 0) return;
  const std::string Template = (fs::temp_directory_path() / "kelmo-script-fuzz-XXXXXX").string();
  if (Template.size() >= UserDirectory.size()) std::abort();
  Template.copy(UserDirectory.data(), Template.size());
  if (mkdtemp(UserDirectory.data()) == nullptr) {
    std::perror("mkdtemp");
    std::abort();
  }
  std::atexit(RemoveUserDirectory);
  setenv("XDG_CACHE_HOME", UserDirectory.data(), 1);
  InitPaths(UserDirectory.data());
}

[[noreturn]] void Finding(const char* Text) {
  std::fprintf(stderr, "finding: %s\n", Text);
  std::abort();
}

std::string ReadAll(const std::string& Path) {
  std::ifstream File(Path, std::ios::binary);
  return {std::istreambuf_iterator<char>(File), std::istreambuf_iterator<char>()};
}

// Asks each token for its value, as a user of the reader would.
void TakeValue(TScriptReader& Reader) {
  switch (Reader.getToken()) {
    case TOKEN::IDENTIFIER: Reader.getIdentifier(); break;
    case TOKEN::NUMBER: Reader.getNumber(); break;
    case TOKEN::STRING: Reader.getString(); break;
    case TOKEN::BYTES: Reader.getBytes(); break;
    case TOKEN::COORDINATE: Reader.getCoordinate(); break;
    case TOKEN::SPECIAL: Reader.getSpecial(); break;
    case TOKEN::ENDOFFILE: break;
  }
}

int CountTokens(const std::string& Path) {
  TScriptReader Reader;
  Reader.open(Path);
  int Tokens = 0;
  try {
    for (Reader.nextToken(); Reader.getToken() != TOKEN::ENDOFFILE; Reader.nextToken()) {
      TakeValue(Reader);
      ++Tokens;
    }
  } catch (const TMyException&) {
    return -1;
  }
  return Tokens;
}

// The module lives for one input, whatever becomes of it.
struct TPreferencesSession {
  TPreferencesSession() { InitPreferences(); }
  ~TPreferencesSession() { ExitPreferences(); }
  TPreferencesSession(const TPreferencesSession&) = delete;
  TPreferencesSession& operator=(const TPreferencesSession&) = delete;
};

// A file that loads comes out of the writer in a form that is a fixed point.
bool LoadAndCheck(const std::string& Path) {
  const TPreferencesSession Session;
  int Version = 0;
  if (!LoadPreferences(Version)) return false;
  SavePreferences();
  const std::string Saved = ReadAll(Path);
  if (!LoadPreferences(Version)) Finding("a saved file does not load");
  SavePreferences();
  if (ReadAll(Path) != Saved) Finding("a saved file does not save the same");
  return true;
}

}  // namespace

TScriptOutcome ReadScript(const std::uint8_t* Data, std::size_t Size) {
  MakeUserDirectory();
  const std::string Path = GetFileName(TFileKind::CONFIGURATION, false);
  std::ofstream(Path, std::ios::binary | std::ios::trunc)
      .write(reinterpret_cast<const char*>(Data), static_cast<std::streamsize>(Size));
  const int Tokens = CountTokens(Path);
  return {Tokens, LoadAndCheck(Path)};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size) {
  ReadScript(Data, Size);
  return 0;
}
