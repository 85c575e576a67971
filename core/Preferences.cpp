#include "core/Preferences.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <memory>
#include <string_view>

#include "core/AtomicFile.h"
#include "core/Exception.h"
#include "core/Paths.h"
#include "core/Script.h"
#include "core/Text.h"
#include "core/Version.h"

namespace {

// Files of this version and older are kept as Kelmo.cfg.bak on the first load.
constexpr int LAST_VERSION_WITH_BACKUP = 961;

struct TPreferencesModule {
  TPreferences Values;
  bool Loaded = false;
};

std::unique_ptr<TPreferencesModule> Module;

TPreferencesModule& State() {
  Check(Module != nullptr, "Preferences!=NULL");
  return *Module;
}

int ClampBrightness(int Value) { return std::clamp(Value, 0, MAX_BRIGHTNESS); }

// ---- Values in the file

bool IsSpecial(TScriptReader& Reader, char Special) {
  return Reader.getToken() == TOKEN::SPECIAL && Reader.getSpecial() == Special;
}

// Anything but "yes" is false.
bool ReadBool(TScriptReader& Reader) { return Reader.readIdentifier() == "yes"; }

// "{a,b}": commas are skipped, every other token up to '}' is an entry.
template <typename TOnEntry>
void ReadList(TScriptReader& Reader, TOnEntry OnEntry) {
  Reader.readSymbol('{');
  for (Reader.nextToken(); !IsSpecial(Reader, '}'); Reader.nextToken()) {
    if (!IsSpecial(Reader, ',')) OnEntry(Reader);
  }
}

// The numbers of a tuple after its '(', each ended by ',' or, for the last, ')'.
template <std::size_t Count>
std::array<int, Count> ReadNumbers(TScriptReader& Reader) {
  std::array<int, Count> Numbers{};
  for (std::size_t I = 0; I < Count; ++I) {
    Numbers[I] = Reader.readNumber();
    Reader.readSymbol(I + 1 < Count ? ',' : ')');
  }
  return Numbers;
}

void WriteKey(TScriptWriter& Writer, const char* Key) {
  Writer.writeText(Key);
  Writer.writeText(" = ");
}

void WriteBool(TScriptWriter& Writer, bool Value) { Writer.writeText(Value ? "yes" : "no"); }

void WriteNumberLine(TScriptWriter& Writer, const char* Key, int Value) {
  WriteKey(Writer, Key);
  Writer.writeNumber(Value);
  Writer.writeLn();
}

// "(1,2,3)".
template <typename TRange>
void WriteTuple(TScriptWriter& Writer, const TRange& Numbers) {
  Writer.writeText("(");
  bool First = true;
  for (const int Number : Numbers) {
    if (!First) Writer.writeText(",");
    Writer.writeNumber(Number);
    First = false;
  }
  Writer.writeText(")");
}

// "{1,2,3}" of the indices whose flag is set.
template <std::size_t Count>
void WriteFlagList(TScriptWriter& Writer, const std::array<bool, Count>& Flags) {
  Writer.writeText("{");
  bool First = true;
  for (std::size_t I = 0; I < Count; ++I) {
    if (!Flags[I]) continue;
    if (!First) Writer.writeText(",");
    Writer.writeNumber(static_cast<int>(I));
    First = false;
  }
  Writer.writeText("}");
}

// ---- The keys

using TReadValue = void (*)(TScriptReader&, TPreferences&);
// Writes whole lines, as many as the option needs; null for keys of older
// versions, which are read and dropped.
using TWriteValue = void (*)(TScriptWriter&, const char* Key, const TPreferences&);

struct TKey {
  const char* Name;
  TReadValue Read;
  TWriteValue Write;
};

template <bool TPreferences::*Field>
void WriteBoolField(TScriptWriter& Writer, const char* Key, const TPreferences& Values) {
  WriteKey(Writer, Key);
  WriteBool(Writer, Values.*Field);
  Writer.writeLn();
}

template <int TPreferences::*Field>
void WriteIntField(TScriptWriter& Writer, const char* Key, const TPreferences& Values) {
  WriteNumberLine(Writer, Key, Values.*Field);
}

template <bool TPreferences::*Field>
constexpr TKey BoolKey(const char* Name) {
  return {Name, [](TScriptReader& Reader, TPreferences& Values) { Values.*Field = ReadBool(Reader); },
          WriteBoolField<Field>};
}

template <int TPreferences::*Field>
constexpr TKey IntKey(const char* Name) {
  return {Name, [](TScriptReader& Reader, TPreferences& Values) { Values.*Field = Reader.readNumber(); },
          WriteIntField<Field>};
}

void ReadFullscreenMode(TScriptReader& Reader, TPreferences& Values) {
  Reader.readSymbol('(');
  const auto [Width, Height, Depth] = ReadNumbers<3>(Reader);
  Values.FullscreenMode = {Width, Height, Depth};
}

void WriteFullscreenMode(TScriptWriter& Writer, const char* Key, const TPreferences& Values) {
  const TFullscreenMode& Mode = Values.FullscreenMode;
  if (Mode.Width == 0) return;
  WriteKey(Writer, Key);
  WriteTuple(Writer, std::array{Mode.Width, Mode.Height, Mode.Depth});
  Writer.writeLn();
}

void ReadBrightness(TScriptReader& Reader, TPreferences& Values) {
  Values.BasicBrightness = ClampBrightness(Reader.readNumber());
}

// Only "yes" states the option; otherwise it stays as it was.
void ReadNoStretching(TScriptReader& Reader, TPreferences& Values) {
  if (ReadBool(Reader)) Values.NoStretching = 1;
}

void WriteNoStretching(TScriptWriter& Writer, const char* Key, const TPreferences& Values) {
  WriteKey(Writer, Key);
  WriteBool(Writer, Values.NoStretching == 1);
  Writer.writeLn();
}

// A line feed at the end of the text sends it at once; others become blanks.
THotkey HotkeyFromText(std::string Text) {
  THotkey Hotkey;
  if (!Text.empty() && Text.back() == '\n') {
    Hotkey.AutoSend = true;
    Text.pop_back();
  }
  std::replace(Text.begin(), Text.end(), '\n', ' ');
  if (Text.size() >= HOTKEY_LENGTH) Text.resize(HOTKEY_LENGTH - 1);
  Hotkey.Text = std::move(Text);
  return Hotkey;
}

// (number,"text",object,action,count); older files end after the text.
void ReadHotkey(TScriptReader& Reader, TPreferences& Values) {
  Reader.readSymbol('(');
  const int Number = Reader.readNumber();
  if (Number < 0 || Number >= HOTKEYS) Reader.error("Illegal number");
  Reader.readSymbol(',');
  THotkey Hotkey = HotkeyFromText(Reader.readString());
  const char Next = Reader.readSpecial();
  if (Next == ',') {
    const auto [ObjectType, UseMode, ObjectData] = ReadNumbers<3>(Reader);
    Hotkey.ObjectType = ObjectType;
    Hotkey.UseMode = UseMode;
    Hotkey.ObjectData = ObjectData;
  } else if (Next != ')') {
    Reader.error("closing bracket expected");
  }
  Values.Hotkeys[static_cast<std::size_t>(Number)] = std::move(Hotkey);
}

void WriteHotkeys(TScriptWriter& Writer, const char* Key, const TPreferences& Values) {
  for (int Number = 0; Number < HOTKEYS; ++Number) {
    const THotkey& Hotkey = Values.Hotkeys[static_cast<std::size_t>(Number)];
    if (Hotkey.Text.empty() && Hotkey.ObjectType == 0) continue;
    WriteKey(Writer, Key);
    Writer.writeText("(");
    Writer.writeNumber(Number);
    Writer.writeText(",");
    Writer.writeString(Hotkey.AutoSend ? Hotkey.Text + "\n" : Hotkey.Text);
    Writer.writeText(",");
    Writer.writeNumber(Hotkey.ObjectType);
    Writer.writeText(",");
    Writer.writeNumber(Hotkey.UseMode);
    Writer.writeText(",");
    Writer.writeNumber(Hotkey.ObjectData);
    Writer.writeText(")");
    Writer.writeLn();
  }
}

void ReadWindowedMode(TScriptReader& Reader, TPreferences& Values) {
  TWindowedMode& Mode = Values.WindowedMode;
  Reader.readSymbol('(');
  Mode.X = Reader.readNumber();
  Reader.readSymbol(',');
  Mode.Y = Reader.readNumber();
  Reader.readSymbol(',');
  Mode.Width = Reader.readNumber();
  Reader.readSymbol(',');
  Mode.Height = Reader.readNumber();
  Reader.readSymbol(',');
  Mode.Maximised = ReadBool(Reader);
  Reader.readSymbol(')');
}

void WriteWindowedMode(TScriptWriter& Writer, const char* Key, const TPreferences& Values) {
  const TWindowedMode& Mode = Values.WindowedMode;
  WriteKey(Writer, Key);
  Writer.writeText("(");
  for (const int Number : {Mode.X, Mode.Y, Mode.Width, Mode.Height}) {
    Writer.writeNumber(Number);
    Writer.writeText(",");
  }
  WriteBool(Writer, Mode.Maximised);
  Writer.writeText(")");
  Writer.writeLn();
}

void ReadContentWindow(TScriptReader& Reader, TPreferences& Values) {
  Reader.readSymbol('(');
  const auto [Kind, Height] = ReadNumbers<2>(Reader);
  Values.ContentWindows.push_back({Kind, Height});
}

void WriteContentWindows(TScriptWriter& Writer, const char* Key, const TPreferences& Values) {
  for (const TContentWindowEntry& Window : Values.ContentWindows) {
    WriteKey(Writer, Key);
    WriteTuple(Writer, std::array{Window.Kind, Window.Height});
    Writer.writeLn();
  }
}

void ReadBuddySortmethods(TScriptReader& Reader, TPreferences& Values) {
  Reader.readSymbol('(');
  Values.BuddySortmethods = ReadNumbers<3>(Reader);
}

void WriteBuddySortmethods(TScriptWriter& Writer, const char* Key, const TPreferences& Values) {
  WriteKey(Writer, Key);
  WriteTuple(Writer, Values.BuddySortmethods);
  Writer.writeLn();
}

bool IsTutorialHint(int Number) { return Number >= 1 && Number <= TUTORIAL_HINTS; }

void ReadOpenDialog(TScriptReader& Reader, TPreferences& Values) {
  const int Hint = Reader.readNumber();
  if (IsTutorialHint(Hint)) Values.OpenDialogs.push_back(Hint);
}

void ReadOpenChannel(TScriptReader& Reader, TPreferences& Values) {
  Values.OpenChannels.push_back(Reader.readNumber());
}

template <std::vector<int> TPreferences::*Field>
void WriteNumberLines(TScriptWriter& Writer, const char* Key, const TPreferences& Values) {
  for (const int Number : Values.*Field) WriteNumberLine(Writer, Key, Number);
}

void ReadChaseMode(TScriptReader& Reader, TPreferences& Values) {
  Reader.readNumber();
  Values.ChaseMode = 0;  // each start begins without chasing
}

void ReadSecureMode(TScriptReader& Reader, TPreferences& Values) {
  Values.SecureMode = Reader.readNumber() == 1 ? 1 : 0;
}

template <std::vector<std::string> TPreferences::*Field>
void ReadNames(TScriptReader& Reader, TPreferences& Values) {
  ReadList(Reader, [&](TScriptReader& Entry) { (Values.*Field).push_back(Entry.getString()); });
}

template <std::vector<std::string> TPreferences::*Field>
void WriteNames(TScriptWriter& Writer, const char* Key, const TPreferences& Values) {
  WriteKey(Writer, Key);
  Writer.writeText("{");
  bool First = true;
  for (const std::string& Name : Values.*Field) {
    if (Name.empty()) continue;
    if (!First) Writer.writeText(",");
    Writer.writeString(Name);
    First = false;
  }
  Writer.writeText("}");
  Writer.writeLn();
}

void ReadKnownTutorialHints(TScriptReader& Reader, TPreferences& Values) {
  ReadList(Reader, [&](TScriptReader& Entry) {
    const int Hint = Entry.getNumber();
    if (IsTutorialHint(Hint)) Values.KnownTutorialHints[static_cast<std::size_t>(Hint)] = true;
  });
}

// The list names every skill that shows a bar.
void ReadSkillBars(TScriptReader& Reader, TPreferences& Values) {
  Values.SkillBars.fill(false);
  ReadList(Reader, [&](TScriptReader& Entry) {
    const int Skill = Entry.getNumber();
    if (Skill >= 0 && Skill < SKILL_BARS) Values.SkillBars[static_cast<std::size_t>(Skill)] = true;
  });
}

template <auto Field>
void WriteFlags(TScriptWriter& Writer, const char* Key, const TPreferences& Values) {
  WriteKey(Writer, Key);
  WriteFlagList(Writer, Values.*Field);
  Writer.writeLn();
}

// ---- Keys of older versions

void SkipIdentifier(TScriptReader& Reader, TPreferences&) { Reader.readIdentifier(); }
void SkipString(TScriptReader& Reader, TPreferences&) { Reader.readString(); }
void SkipNumber(TScriptReader& Reader, TPreferences&) { Reader.readNumber(); }
void SkipBool(TScriptReader& Reader, TPreferences&) { ReadBool(Reader); }

// (number,number,"text",identifier)
void SkipBuddy(TScriptReader& Reader, TPreferences&) {
  Reader.readSymbol('(');
  Reader.readNumber();
  Reader.readSymbol(',');
  Reader.readNumber();
  Reader.readSymbol(',');
  Reader.readString();
  Reader.readSymbol(',');
  Reader.readIdentifier();
  Reader.readSymbol(')');
}

void SkipList(TScriptReader& Reader, TPreferences&) {
  ReadList(Reader, [](TScriptReader& Entry) {
    if (Entry.getToken() != TOKEN::STRING) Entry.getNumber();
  });
}

using P = TPreferences;

// In the order of the file; Version comes before them all.
constexpr TKey KEYS[] = {
    IntKey<&P::Engine>("Engine"),
    {"FullscreenMode", ReadFullscreenMode, WriteFullscreenMode},
    {"BasicBrightness", ReadBrightness, WriteIntField<&P::BasicBrightness>},
    BoolKey<&P::WindowsMousepointer>("WindowsMousepointer"),
    BoolKey<&P::LightEffects>("LightEffects"),
    BoolKey<&P::TextualEffects>("TextualEffects"),
    IntKey<&P::CreatureInfo>("CreatureInfo"),
    BoolKey<&P::CreatureMarks>("CreatureMarks"),
    BoolKey<&P::CreatureIcons>("CreatureIcons"),
    BoolKey<&P::CreaturePvPFrames>("CreaturePvPFrames"),
    {"NoStretching", ReadNoStretching, WriteNoStretching},
    BoolKey<&P::Antialiasing>("Antialiasing"),
    IntKey<&P::ConfineFramerate>("ConfineFramerate"),
    {"Hotkey", ReadHotkey, WriteHotkeys},
    {"WindowedMode", ReadWindowedMode, WriteWindowedMode},
    IntKey<&P::ConsoleHeight>("ConsoleHeight"),
    IntKey<&P::AutomapZoom>("AutomapZoom"),
    {"ContentWindow", ReadContentWindow, WriteContentWindows},
    {"BuddySortmethods", ReadBuddySortmethods, WriteBuddySortmethods},
    BoolKey<&P::BuddyHideOffline>("BuddyHideOffline"),
    {"OpenDialogs", ReadOpenDialog, WriteNumberLines<&P::OpenDialogs>},
    IntKey<&P::LastMotD>("LastMotD"),
    BoolKey<&P::CooldownBar>("CooldownBar"),
    BoolKey<&P::InfoMessages>("InfoMessages"),
    BoolKey<&P::EventMessages>("EventMessages"),
    BoolKey<&P::StatusMessages>("StatusMessages"),
    BoolKey<&P::StatusMsgOfOthers>("StatusMsgOfOthers"),
    BoolKey<&P::TimeStamps>("TimeStamps"),
    BoolKey<&P::Levels>("Levels"),
    BoolKey<&P::PrivateMessages>("PrivateMessages"),
    {"OpenChannel", ReadOpenChannel, WriteNumberLines<&P::OpenChannels>},
    BoolKey<&P::ClassicControl>("ClassicControl"),
    BoolKey<&P::AutoChaseOff>("AutoChaseOff"),
    IntKey<&P::AttackMode>("AttackMode"),
    {"ChaseMode", ReadChaseMode, WriteIntField<&P::ChaseMode>},
    {"SecureMode", ReadSecureMode, WriteIntField<&P::SecureMode>},
    {"White", ReadNames<&P::WhiteList>, WriteNames<&P::WhiteList>},
    {"Ignore", ReadNames<&P::IgnoreList>, WriteNames<&P::IgnoreList>},
    {"KnownTutorialHints", ReadKnownTutorialHints, WriteFlags<&P::KnownTutorialHints>},
    BoolKey<&P::ExperienceBar>("ExperienceBar"),
    BoolKey<&P::LevelBar>("LevelBar"),
    BoolKey<&P::StaminaBar>("StaminaBar"),
    BoolKey<&P::MagLevelBar>("MagLevelBar"),
    {"SkillBars", ReadSkillBars, WriteFlags<&P::SkillBars>},
    BoolKey<&P::OfflineTrainingBar>("OfflineTrainingBar"),
    IntKey<&P::SortOrderBuy>("SortOrderBuy"),
    IntKey<&P::SortOrderSell>("SortOrderSell"),
    BoolKey<&P::BuyWithBackpacks>("BuyWithBackpacks"),
    BoolKey<&P::IgnoreCapacity>("IgnoreCapacity"),
    BoolKey<&P::SellEquipped>("SellEquipped"),
    {"TestServer", SkipIdentifier, nullptr},
    {"ServerAddress", SkipString, nullptr},
    {"ServerPort", SkipNumber, nullptr},
    {"LoginMessages", SkipBool, nullptr},
    {"Buddy", SkipBuddy, nullptr},
    {"KnownHints", SkipList, nullptr},
    {"ShowNewHints", SkipBool, nullptr},
};

// Identifiers come in lower case.
bool IsKey(std::string_view Identifier, std::string_view Name) {
  return std::equal(Identifier.begin(), Identifier.end(), Name.begin(), Name.end(),
                    [](char Read, char Named) { return Read == toLowerChar(Named); });
}

const TKey* FindKey(std::string_view Identifier) {
  for (const TKey& Key : KEYS) {
    if (IsKey(Identifier, Key.Name)) return &Key;
  }
  return nullptr;
}

void WriteFile(const std::string& Path, const TPreferences& Values) {
  TScriptWriter Writer;
  Writer.open(Path);
  Writer.writeText("# Kelmo - graphical Multi-User-Dungeon");
  Writer.writeLn();
  Writer.writeText("# DO NOT EDIT THIS FILE");
  Writer.writeLn();
  Writer.writeLn();
  WriteNumberLine(Writer, "Version", PROTOCOL_VERSION);
  for (const TKey& Key : KEYS) {
    if (Key.Write != nullptr) Key.Write(Writer, Key.Name, Values);
  }
  Writer.close();
}

void CopyFile(const std::string& Source, const std::string& Target) {
  TBinaryFileReader Reader;
  Reader.open(Source);
  std::vector<std::uint8_t> Bytes(static_cast<std::size_t>(Reader.getSize()));
  Reader.readBytes(Bytes);
  Reader.close();
  WriteFileAtomically(Target, [&](const std::string& Temporary) {
    TBinaryFileWriter Writer;
    Writer.open(Temporary);
    Writer.writeBytes(Bytes);
    Writer.close();
  });
}

}  // namespace

// Unknown keys are passed over: a value after one fails as a key would.
void ReadPreferences(const std::string& Path, TPreferences& Values, int& Version) {
  TScriptReader Reader;
  Reader.open(Path);
  for (Reader.nextToken(); Reader.getToken() != TOKEN::ENDOFFILE; Reader.nextToken()) {
    if (Reader.getToken() != TOKEN::IDENTIFIER) Reader.error("Identifier expected");
    const std::string Identifier = Reader.getIdentifier();
    Reader.readSymbol('=');
    if (IsKey(Identifier, "Version")) {
      Version = Reader.readNumber();
    } else if (const TKey* Key = FindKey(Identifier)) {
      Key->Read(Reader, Values);
    }
  }
  Reader.close();
}

void InitPreferences() { Module = std::make_unique<TPreferencesModule>(); }

void ExitPreferences() { Module.reset(); }

TPreferences& Preferences() { return State().Values; }

bool LoadPreferences(int& Version) {
  State().Loaded = true;
  ResetPreferences();
  Version = PROTOCOL_VERSION;
  const std::string Path = GetFileName(TFileKind::CONFIGURATION, false);
  if (!FileExists(Path)) return true;
  try {
    ReadPreferences(Path, Preferences(), Version);
    if (Version <= LAST_VERSION_WITH_BACKUP) CopyFile(Path, GetFileName(TFileKind::CONFIGURATION, true));
    return true;
  } catch (const std::exception&) {
    ResetPreferences();
    Version = PROTOCOL_VERSION;
    return false;
  }
}

void SavePreferences() {
  const TPreferencesModule& Current = State();
  if (!Current.Loaded) return;
  WriteFileAtomically(GetFileName(TFileKind::CONFIGURATION, false),
                      [&](const std::string& Temporary) { WriteFile(Temporary, Current.Values); });
}

void ResetPreferences() { State().Values = TPreferences{}; }

void SetBrightness(int Value) { Preferences().BasicBrightness = ClampBrightness(Value); }

void SetWindowSize(int Width, int Height, bool Maximised) {
  TWindowedMode& Mode = Preferences().WindowedMode;
  Mode.Width = Width;
  Mode.Height = Height;
  Mode.Maximised = Maximised;
}
