#pragma once
// The user's settings and their file, Kelmo.cfg in the user directory. What an
// option does is the business of the module that reads it; here are its
// default, its kind and the file's schema.
#include <array>
#include <string>
#include <vector>

constexpr int HOTKEYS = 36;
constexpr int HOTKEY_LENGTH = 256;  // with the terminator of the text
constexpr int TUTORIAL_HINTS = 39;  // numbered from 1
constexpr int SKILL_BARS = 7;
constexpr int MAX_BRIGHTNESS = 128;
// NoStretching before anyone has set it.
constexpr int NO_STRETCHING_NOT_STATED = 2;

struct THotkey {
  std::string Text;  // at most HOTKEY_LENGTH - 1 bytes
  bool AutoSend = false;
  int ObjectType = 0;  // 0: a text hotkey
  int ObjectData = 0;
  int UseMode = 0;

  bool operator==(const THotkey&) const = default;
};

struct TFullscreenMode {
  int Width = 0;  // 0: none chosen
  int Height = 0;
  int Depth = 0;

  bool operator==(const TFullscreenMode&) const = default;
};

struct TWindowedMode {
  int X = -1;
  int Y = -1;
  int Width = 0;
  int Height = 0;
  bool Maximised = false;

  bool operator==(const TWindowedMode&) const = default;
};

struct TContentWindowEntry {
  int Kind = 0;
  int Height = 0;

  bool operator==(const TContentWindowEntry&) const = default;
};

// One object holds every option, with the defaults of a first start.
struct TPreferences {
  int Engine = -1;  // -1: not chosen yet
  TFullscreenMode FullscreenMode;
  int BasicBrightness = 32;
  bool WindowsMousepointer = true;
  bool LightEffects = true;
  bool TextualEffects = true;
  int CreatureInfo = 2;
  bool CreatureMarks = true;
  bool CreatureIcons = true;
  bool CreaturePvPFrames = true;
  int NoStretching = NO_STRETCHING_NOT_STATED;  // 1 is on
  bool Antialiasing = true;
  int ConfineFramerate = 50;
  std::array<THotkey, HOTKEYS> Hotkeys;
  TWindowedMode WindowedMode;
  int ConsoleHeight = 0;
  int AutomapZoom = 2;
  std::vector<TContentWindowEntry> ContentWindows;  // the side bar, top first
  std::array<int, 3> BuddySortmethods{1, 0, 2};
  bool BuddyHideOffline = false;
  std::vector<int> OpenDialogs;  // tutorial hint windows
  int LastMotD = 0;
  bool CooldownBar = true;
  bool InfoMessages = true;
  bool EventMessages = true;
  bool StatusMessages = true;
  bool StatusMsgOfOthers = true;
  bool TimeStamps = true;
  bool Levels = true;
  bool PrivateMessages = true;
  std::vector<int> OpenChannels;
  bool ClassicControl = false;
  bool AutoChaseOff = true;
  int AttackMode = 2;
  int ChaseMode = 0;
  int SecureMode = 1;  // 1 is on
  // The chat module's white and ignore lists, kept here until it owns them.
  std::vector<std::string> WhiteList;
  std::vector<std::string> IgnoreList;
  std::array<bool, TUTORIAL_HINTS + 1> KnownTutorialHints{};  // by hint number; 0 unused
  bool ExperienceBar = true;
  bool LevelBar = true;
  bool StaminaBar = true;
  bool MagLevelBar = true;
  std::array<bool, SKILL_BARS> SkillBars{true, true, true, true, true, true, true};
  bool OfflineTrainingBar = true;
  int SortOrderBuy = 0;
  int SortOrderSell = 2;
  bool BuyWithBackpacks = false;
  bool IgnoreCapacity = false;
  bool SellEquipped = false;

  bool operator==(const TPreferences&) const = default;
};

// The module: created with the defaults, not yet loaded.
void InitPreferences();
void ExitPreferences();
TPreferences& Preferences();

// Reads Kelmo.cfg over the defaults. A missing file is no failure (Version
// 1053). A damaged one is given up as a whole: defaults, false. A file from
// version 961 or older is first copied to Kelmo.cfg.bak.
bool LoadPreferences(int& Version);
// The reading step of LoadPreferences, on any file, with its failures: the
// script reader's, "Identifier expected", and for a Hotkey line "Illegal
// number" and "closing bracket expected".
void ReadPreferences(const std::string& Path, TPreferences& Values, int& Version);
// Writes Kelmo.cfg, all or nothing; does nothing unless LoadPreferences has
// run. A failure passes on, and the old file stays.
void SavePreferences();
void ResetPreferences();

// Clamped to 0 to MAX_BRIGHTNESS.
void SetBrightness(int Value);
// The window's size when it closes.
void SetWindowSize(int Width, int Height, bool Maximised);
