#include "graphics/Talkboxes.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

#include "core/Clock.h"
#include "core/Exception.h"
#include "core/Preferences.h"

namespace {

struct TTalkbox {
  int State = 0;  // 0 free, 1 shown, 2 hidden behind another
  int Serial = 0;
  int TTL = 0;
  int Mode = 0;
  int X = 0, Y = 0, Z = 0;
  int NumberOfLines = 0;
  std::array<std::array<char, TALKBOX_LINE_LENGTH>, TALKBOX_LINES> Line{};
  TTalkboxBounds Bounds;
};

struct TTalkState {
  std::array<TTalkbox, TALKBOXES> Boxes;
  int NextSerial = 0;
  int LastProcess = 0;
  bool Changed = false;
  std::string StatusMessage;
  int StatusBeats = 0;
};

TTalkState& State() {
  static TTalkState TheState;
  return TheState;
}

std::string_view LineOf(const TTalkbox& Box, int Line) { return Box.Line[Line].data(); }

void AddLine(TTalkbox& Box, std::string_view Text) {
  if (Box.NumberOfLines >= TALKBOX_LINES) return;
  auto& Line = Box.Line[Box.NumberOfLines++];
  const size_t Length = std::min(Text.size(), Line.size() - 1);
  std::memcpy(Line.data(), Text.data(), Length);
  Line[Length] = '\0';
}

// Lines of up to 39 characters, broken at the last blank or, in a word that
// is too long, after 38 characters with a hyphen.
void SplitText(TTalkbox& Box, std::string_view Text) {
  constexpr size_t LIMIT = TALKBOX_LINE_LENGTH - 1;
  while (!Text.empty()) {
    const size_t NewLine = Text.find('\n');
    if (NewLine != std::string_view::npos && NewLine <= LIMIT) {
      AddLine(Box, Text.substr(0, NewLine));
      Text.remove_prefix(NewLine + 1);
      continue;
    }
    if (Text.size() <= LIMIT) {
      AddLine(Box, Text);
      return;
    }
    const size_t Blank = Text.substr(0, LIMIT + 1).rfind(' ');
    if (Blank != std::string_view::npos && Blank > 0) {
      AddLine(Box, Text.substr(0, Blank));
      Text.remove_prefix(Blank + 1);
    } else {
      AddLine(Box, std::string(Text.substr(0, LIMIT - 1)) + "-");
      Text.remove_prefix(LIMIT - 1);
    }
  }
}

bool SamePlace(const TTalkbox& A, const TTalkbox& B) { return A.X == B.X && A.Y == B.Y && A.Z == B.Z; }

bool IsCentreQueueMode(int Mode) {
  return Mode == TALK_EVENT_MESSAGE || Mode == TALK_ADMIN_MESSAGE || Mode == TALK_GAMEMASTER_BROADCAST ||
         Mode == TALK_GAMEMASTER_MESSAGE;
}

bool SameGroup(const TTalkbox& A, const TTalkbox& B) {
  switch (A.Mode) {
    case TALK_SAY:
    case TALK_WHISPER:
    case TALK_YELL:
    case TALK_FROM_NPC:
      return B.Mode == A.Mode && SamePlace(A, B) && LineOf(A, 0) == LineOf(B, 0);
    case TALK_ANIMAL_LOW:
    case TALK_ANIMAL_LOUD:
      return (B.Mode == TALK_ANIMAL_LOW || B.Mode == TALK_ANIMAL_LOUD) && SamePlace(A, B);
    case TALK_PRIVATE_MESSAGE:
      return B.Mode == TALK_PRIVATE_MESSAGE;
    default:
      return IsCentreQueueMode(A.Mode) && IsCentreQueueMode(B.Mode);
  }
}

int FindFreeTalkbox() {
  TTalkState& S = State();
  for (;;) {
    for (int i = 0; i < TALKBOXES; ++i) {
      if (S.Boxes[i].State == 0) return i;
    }
    const auto Oldest = std::min_element(S.Boxes.begin(), S.Boxes.end(),
                                         [](const TTalkbox& A, const TTalkbox& B) { return A.Serial < B.Serial; });
    ClearTalkbox(static_cast<int>(Oldest - S.Boxes.begin()));
  }
}

// A new box waits behind those of its queue; it lives as much longer as the
// longest of them.
void Queue(int Slot, bool (*InQueue)(int Mode)) {
  TTalkState& S = State();
  int Longest = 0;
  for (int i = 0; i < TALKBOXES; ++i) {
    TTalkbox& Other = S.Boxes[i];
    if (i == Slot || Other.State == 0 || !InQueue(Other.Mode)) continue;
    if (S.Boxes[Slot].State == 1) S.Boxes[Slot].TTL /= 2;
    S.Boxes[Slot].State = 2;
    Longest = std::max(Longest, Other.TTL);
  }
  S.Boxes[Slot].TTL += Longest;
}

void Merge(int Slot) {
  TTalkState& S = State();
  TTalkbox& Box = S.Boxes[Slot];
  const bool Animal = Box.Mode == TALK_ANIMAL_LOW || Box.Mode == TALK_ANIMAL_LOUD;
  for (int i = 0; i < TALKBOXES; ++i) {
    TTalkbox& Other = S.Boxes[i];
    if (i == Slot || Other.State == 0 || !SameGroup(Box, Other)) continue;
    for (int Line = Animal ? 0 : 1; Line < Box.NumberOfLines && Other.NumberOfLines < TALKBOX_LINES; ++Line) {
      AddLine(Other, LineOf(Box, Line));
    }
    Box.State = 2;
  }
}

const char* HeaderFormat(int Mode) {
  switch (Mode) {
    case TALK_SAY: return "%s says:";
    case TALK_WHISPER: return "%s whispers:";
    case TALK_YELL: return "%s yells:";
    case TALK_FROM_NPC:
    case TALK_PRIVATE_MESSAGE:
    case TALK_GAMEMASTER_BROADCAST:
    case TALK_GAMEMASTER_MESSAGE: return "%s:";
    default: return nullptr;
  }
}

int NewBox(int Mode, int X, int Y, int Z, int TTL) {
  TTalkState& S = State();
  const int Slot = FindFreeTalkbox();
  TTalkbox& Box = S.Boxes[Slot];
  Box = TTalkbox{};
  Box.Serial = S.NextSerial++;
  Box.Mode = Mode;
  Box.X = X;
  Box.Y = Y;
  Box.Z = Z;
  Box.TTL = TTL;
  S.Changed = true;
  return Slot;
}

bool AlwaysFalse(int) { return false; }
bool IsPrivateMode(int Mode) { return Mode == TALK_PRIVATE_MESSAGE; }

// The Number-th shown box, counted from 1.
TTalkbox& Shown(int Number) {
  int Seen = 0;
  for (TTalkbox& Box : State().Boxes) {
    if (Box.State == 1 && ++Seen == Number) return Box;
  }
  ThrowException("talkbox number out of range", {{"Number", std::to_string(Number)}});
}

}  // namespace

int SetTalkbox(int Mode, const std::string& Speaker, int X, int Y, int Z, const std::string& Text) {
  if ((Mode == TALK_FROM_NPC || Mode == TALK_PRIVATE_MESSAGE) && !Preferences().PrivateMessages) return -1;
  const int Fixed = Mode == TALK_PRIVATE_MESSAGE || Mode == TALK_GAMEMASTER_BROADCAST || Mode == TALK_GAMEMASTER_MESSAGE;
  const int Slot = Fixed ? NewBox(Mode, 0, 0, 0, 0) : NewBox(Mode, X, Y, Z, 0);
  TTalkbox& Box = State().Boxes[Slot];
  Box.TTL = (static_cast<int>(Text.size()) / 2 + 30) * 100;
  if (const char* Format = HeaderFormat(Mode)) {
    char Header[TALKBOX_LINE_LENGTH + 40];
    std::snprintf(Header, sizeof(Header), Format, Speaker.c_str());
    AddLine(Box, Header);
  }
  SplitText(Box, Text);
  Box.State = 1;
  if (Mode == TALK_SAY || Mode == TALK_WHISPER || Mode == TALK_YELL || Mode == TALK_FROM_NPC ||
      Mode == TALK_ANIMAL_LOW || Mode == TALK_ANIMAL_LOUD) {
    Merge(Slot);
  } else if (Mode == TALK_GAMEMASTER_BROADCAST || Mode == TALK_GAMEMASTER_MESSAGE) {
    Queue(Slot, IsCentreQueueMode);
  } else if (Mode == TALK_PRIVATE_MESSAGE) {
    Queue(Slot, IsPrivateMode);
  }
  return Slot;
}

void SetCentreTalkbox(int Mode, const std::string& Text) {
  TTalkState& S = State();
  if (Mode == TALK_INFO_MESSAGE) {
    for (int i = 0; i < TALKBOXES; ++i) {
      if (S.Boxes[i].State != 0 && S.Boxes[i].Mode == TALK_INFO_MESSAGE) ClearTalkbox(i);
    }
  }
  const int Length = static_cast<int>(Text.size());
  const bool Long = Mode == TALK_ADMIN_MESSAGE || Mode == TALK_EVENT_MESSAGE;
  const int Slot = NewBox(Mode, 0, 0, 0, (Length / 2 + 30) * (Long ? 200 : 100));
  SplitText(S.Boxes[Slot], Text);
  S.Boxes[Slot].State = 1;
  Queue(Slot, Mode == TALK_INFO_MESSAGE ? AlwaysFalse : IsCentreQueueMode);
}

void ClearTalkbox(int Position) {
  Check(Position >= 0 && Position < TALKBOXES, "In(Position,0,TALKBOXES-1)", {"Position", Position});
  TTalkState& S = State();
  TTalkbox& Box = S.Boxes[Position];
  if (Box.State == 1) {
    TTalkbox* Successor = nullptr;
    for (TTalkbox& Other : S.Boxes) {
      if (&Other == &Box || Other.State != 2 || !SameGroup(Box, Other)) continue;
      if (Successor == nullptr || Other.Serial < Successor->Serial) Successor = &Other;
    }
    if (Successor != nullptr) Successor->State = 1;
  }
  Box.State = 0;
  S.Changed = true;
}

void ClearTalkboxes() {
  TTalkState& S = State();
  for (TTalkbox& Box : S.Boxes) Box.State = 0;
  S.NextSerial = 0;
  S.LastProcess = GetProgramTime();
  S.Changed = true;
}

void ProcessTalkboxes() {
  TTalkState& S = State();
  const int Now = GetProgramTime();
  const int Elapsed = Now - S.LastProcess;
  S.LastProcess = Now;
  for (int i = 0; i < TALKBOXES; ++i) {
    TTalkbox& Box = S.Boxes[i];
    if (Box.State == 0) continue;
    Box.TTL -= Elapsed;
    if (Box.TTL <= 0) ClearTalkbox(i);
  }
}

int GetNumberOfTalkboxes() {
  const auto& Boxes = State().Boxes;
  return static_cast<int>(std::count_if(Boxes.begin(), Boxes.end(), [](const TTalkbox& B) { return B.State == 1; }));
}

int GetTalkboxMode(int Number) { return Shown(Number).Mode; }

void GetTalkboxPosition(int Number, int& X, int& Y, int& Z) {
  const TTalkbox& Box = Shown(Number);
  X = Box.X;
  Y = Box.Y;
  Z = Box.Z;
}

TRGBColor GetTalkboxColour(int Number) {
  switch (Shown(Number).Mode) {
    case TALK_SAY:
    case TALK_WHISPER:
    case TALK_YELL: return {240, 240, 0};
    case TALK_FROM_NPC:
    case TALK_PRIVATE_MESSAGE: return {96, 248, 248};
    case TALK_ANIMAL_LOW:
    case TALK_ANIMAL_LOUD: return {255, 102, 0};
    case TALK_EVENT_MESSAGE: return {240, 240, 240};
    case TALK_INFO_MESSAGE: return {0, 240, 0};
    default: return {248, 96, 96};
  }
}

int GetTalkboxLines(int Number) { return Shown(Number).NumberOfLines; }

const char* GetTalkboxLine(int Number, int Line) {
  const TTalkbox& Box = Shown(Number);
  Check(Line >= 0 && Line < Box.NumberOfLines, "In(Line,0,NumberOfLines-1)", {"Line", Line});
  return Box.Line[Line].data();
}

TTalkboxBounds GetTalkboxBounds(int Number) { return Shown(Number).Bounds; }
void SetTalkboxBounds(int Number, const TTalkboxBounds& Bounds) { Shown(Number).Bounds = Bounds; }

bool TalkboxesChanged() { return State().Changed; }
void SetTalkboxesChanged(bool Changed) { State().Changed = Changed; }

void SetStatusMessage(const std::string& Text) {
  TTalkState& S = State();
  S.StatusMessage = Text.substr(0, STATUSMESSAGE_LENGTH - 1);
  S.StatusBeats = Text.empty() ? 0 : 50;
  S.Changed = true;
}

const std::string& GetStatusMessage() { return State().StatusMessage; }

void ProcessStatusMessage() {
  TTalkState& S = State();
  if (S.StatusBeats > 0 && --S.StatusBeats == 0) SetStatusMessage("");
}

int TalkboxModeOfChatMode(int ChatMessageMode) {
  switch (ChatMessageMode) {
    case 1:
    case 9: return TALK_SAY;
    case 2: return TALK_WHISPER;
    case 3: return TALK_YELL;
    case 10:
    case 11: return TALK_FROM_NPC;
    case 35: return TALK_ANIMAL_LOW;
    case 36: return TALK_ANIMAL_LOUD;
    default: return 0;
  }
}
